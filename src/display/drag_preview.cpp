#include "display/drag_preview.h"
#include "config/settings.h"
#include "display/primitives.h"
#include "display/renderer.h"
#include "display/viewport.h"
#include "store/pattern_store.h"
#include <algorithm>

DragPreviewRecord DragPreview;

namespace {

// How far the preview's strip begins above the high level, and the wave's tail above it in a row of its own.
constexpr int32_t ABOVE_WAVE = 2;
constexpr int32_t ABOVE_TAIL = 3;
// A run shorter than this many pixels is drawn as a dense band, as in the row itself.
constexpr int32_t RESOLUTION = 2;

// Pixel columns of the wave pane: the two that the preview changes nothing beyond, and the edge.
struct DragColumns {
    int32_t low, edge, high;
};

// The columns of the bitmap that keeps what stood at the limits.
constexpr int32_t LOW_EDGE = 0, HIGH_EDGE = 1, EDGES = 2;

bool MovesTail() {
    return DragPreview.rightMode == DRAG_TAIL;
}

// Where the edge is with the mouse at `time`, on the snap grid and within the limits.
TimeVal EdgeAt(TimeVal time) {
    const DragPreviewRecord &drag = DragPreview;
    // As a time it is exact, which the offset, modulo 32 bits, is not.
    TimeVal grabbedAt = drag.edgeTime - drag.grabOffset;
    int64_t moved = int64_t{drag.edgeTime} + time - grabbedAt;
    TimeVal edge = static_cast<TimeVal>(std::clamp<int64_t>(moved, 0, TIME_FOREVER));
    if (edge > drag.snapOrigin && drag.snapStep > 0)
        edge = TimeAdd(drag.snapOrigin, TimeRoundTo(edge - drag.snapOrigin, drag.snapStep));
    return TimeMin(std::max(edge, drag.lowLimit), drag.highLimit);
}

DragColumns PlaceColumns() {
    int32_t edge = PixelOf(DragPreview.dragTime);
    int32_t high = MovesTail() ? edge : std::min(PixelOf(DragPreview.highLimit), WaveView.WavePaneWidth);
    return {PixelOf(DragPreview.lowLimit), edge, high};
}

int32_t StripTop() {
    return DragPreview.yTop - ABOVE_WAVE;
}

// Draws what stands right of the edge at the drag's beginning into the bitmap, a screen's width of it: as a
// first row, in a pane as wide as the screen that begins at the edge.
void DrawTail(Pattern *pattern) {
    WaveViewRecord view = WaveView;
    WaveView.ViewLeft = DragPreview.edgeTime;
    WaveView.WavePaneWidth = ScreenWidth();
    TimeVal end = TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth));
    SetDrawToMemory(true);
    PrepareRowDraw(pattern, 0);
    WalkPattern(DrawSegment, pattern, WaveView.ViewLeft, end, DisplayWalkFlags() | WalkSync,
                PixelsToTime(RESOLUTION));
    SetDrawToMemory(false);
    WaveView.ViewLeft = view.ViewLeft;
    WaveView.WavePaneWidth = view.WavePaneWidth;
}

// True if there was something to save: a column beside the pane has no pixels.
bool SaveEdge(int32_t x, int32_t column) {
    if (x < 0 || x >= WaveView.WavePaneWidth) return false;
    SurfaceCopyToBitmap({x, StripTop(), x + 1, StripTop() + DragPreview.height}, KeptBitmap::Edges,
                        {column, 0});
    return true;
}

void RestoreEdge(int32_t x, int32_t column) {
    SurfaceCopyFromBitmap(KeptBitmap::Edges, {column, 0, column + 1, DragPreview.height}, {x, StripTop()});
}

void DrawLine(PixelPoint from, PixelPoint to) {
    SurfacePolyline(std::array<PixelPoint, 2>{from, to});
}

void DrawLevels(uint16_t mode, int32_t from, int32_t to) {
    bool both = mode == DRAG_BOTH || mode == DRAG_BUS;
    if (mode == DRAG_LOW || both) DrawLine({from, DragPreview.yBottom}, {to, DragPreview.yBottom});
    if (mode == DRAG_HIGH || both) DrawLine({from, DragPreview.yTop}, {to, DragPreview.yTop});
}

void DrawVertical(int32_t x) {
    DrawLine({x, DragPreview.yTop}, {x, DragPreview.yBottom});
}

void CopyTail(const DragColumns &at) {
    int32_t top = Settings.WaveGap - ABOVE_TAIL;
    int32_t width = std::min(WaveView.WavePaneWidth - at.high + 1, ScreenWidth());
    SurfaceCopyFromBitmap(KeptBitmap::Tail, {0, top, width, top + DragPreview.height}, {at.edge, StripTop()});
}

// Erases from limit to limit. Where the edge did not stand at a limit, that column belongs to what stays.
void ClearSpan(const DragColumns &at) {
    const DragPreviewRecord &drag = DragPreview;
    SetDrawColour(ColorSettings[Background]);
    if (at.low <= at.high) SurfaceFill({at.low, StripTop(), at.high + 1, StripTop() + drag.height});
    if (drag.lowSaved && drag.edgeTime > drag.lowLimit) RestoreEdge(at.low, LOW_EDGE);
    if (drag.highSaved && !MovesTail() && drag.edgeTime < drag.highLimit) RestoreEdge(at.high, HIGH_EDGE);
}

void DrawSpan(const DragColumns &at) {
    const DragPreviewRecord &drag = DragPreview;
    SetDrawColour(DOTTED + ForegroundColour());
    if (at.edge > at.low) DrawLevels(drag.leftMode, at.low, at.edge);
    if (MovesTail()) {
        CopyTail(at);
    } else if (at.edge < at.high) {
        DrawLevels(drag.rightMode, at.edge, at.high);
        if (drag.rightMode == DRAG_BOTH || drag.rightMode == DRAG_BUS) DrawVertical(at.edge);
    }
    if (drag.rightMode == DRAG_NOTHING || MovesTail() || drag.rightMode == drag.leftMode) return;
    SetDrawColour(ForegroundColour());
    DrawVertical(at.edge);
}

} // namespace

void InitDragPreview() {
    DragPreview = {};
}

void DrawDragPreview(TimeVal time, uint32_t) {
    DragPreviewRecord &drag = DragPreview;
    TimeVal before = drag.dragTime;
    drag.dragTime = EdgeAt(time);
    if (!PatternTable || !PatternInUse(drag.pattern)) return;
    Pattern *pattern = PatternFromId(drag.pattern);
    pattern->setChanged(true);
    // A movement of the mouse calls twice, and an edge on a coarse grid rarely moves.
    if (!drag.firstCall && drag.dragTime == before && drag.rowsDrawn == RowsDrawn) return;
    SelectPicture(Pane::Wave);
    // A bitmap that had to be made in the middle of a drag begins like the drag.
    bool edgesMade = SurfaceKeepBitmap(KeptBitmap::Edges, {EDGES, WaveView.RowHeight});
    bool tailMade = MovesTail() && SurfaceKeepBitmap(KeptBitmap::Tail, {ScreenWidth(), WaveView.RowHeight});
    if (MovesTail() && (drag.firstCall || tailMade)) DrawTail(pattern);
    DragColumns at = PlaceColumns();
    if (drag.firstCall || edgesMade) {
        drag.lowSaved = SaveEdge(at.low, LOW_EDGE);
        drag.highSaved = SaveEdge(at.high, HIGH_EDGE);
    }
    drag.firstCall = false;
    drag.rowsDrawn = RowsDrawn;
    ClearSpan(at);
    DrawSpan(at);
}
