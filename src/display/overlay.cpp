#include "display/overlay.h"
#include "config/settings.h"
#include "display/primitives.h"
#include "display/viewport.h"
#include <algorithm>

OverlayRecord Overlay;

namespace {

// The frame around a wave, in pixels: its lower edge begins this far below the wave's gap, and so far above
// that its upper edge.
constexpr int32_t FRAME_BELOW_GAP = 2;
constexpr int32_t FRAME_ABOVE_WAVE = 7;
constexpr int32_t FRAME_THICKNESS = 2;

void DrawLine(PixelPoint from, PixelPoint to) {
    SurfacePolyline(std::array<PixelPoint, 2>{from, to});
}

bool IsColumn(int32_t x) {
    return x >= 0 && x < WaveView.WavePaneWidth;
}

void SaveColumn(SaveSlot slot, int32_t x) {
    SurfaceSaveUnder(slot, {x, 0, x + 1, WaveView.WavePaneHeight});
}

void DrawMark() {
    if (!WaveView.MarkActive) return;
    int32_t x = Overlay.markX = PixelOf(WaveView.MarkTime);
    if (!IsColumn(x)) return;
    SaveColumn(SaveSlot::Mark, x);
    DrawLine({x, 0}, {x, WaveView.WavePaneHeight});
}

void PlaceFrame() {
    int32_t start = PixelOf(WaveView.SelectStart), end = PixelOf(WaveView.SelectEnd);
    Overlay.frameX0 = std::max(std::min(start, end), 0);
    Overlay.frameX1 = std::min(std::max(start, end), WaveView.WavePaneWidth);
    // A row that is far off the pane counts as the nearest one that is wholly off it.
    int64_t below = static_cast<int64_t>(WaveView.SelectRow) - WaveView.TopRow;
    int32_t row = static_cast<int32_t>(std::clamp<int64_t>(below, -2, int64_t{VisibleRows()} + 2));
    Overlay.frameBottom = (row + 1) * WaveView.RowHeight - Settings.WaveGap + FRAME_BELOW_GAP;
    Overlay.frameTop = Overlay.frameBottom - WaveView.WaveHeight - FRAME_ABOVE_WAVE;
}

void SaveFrameEdge(SaveSlot slot, int32_t top) {
    int32_t left = std::max(Overlay.frameX0 - 1, 0);
    int32_t width = Overlay.frameX1 - Overlay.frameX0 + 3;
    SurfaceSaveUnder(slot, {left, top, left + width, top + FRAME_THICKNESS});
}

// Two pixels thick, with clipped corners, and without sides.
void DrawFrameLines() {
    int32_t x0 = Overlay.frameX0, x1 = Overlay.frameX1;
    int32_t top = Overlay.frameTop, bottom = Overlay.frameBottom;
    DrawLine({x0, top + 1}, {x0 + 1, top});
    DrawLine({x0, bottom}, {x0 + 1, bottom + 1});
    if (x1 != 0) {
        DrawLine({x1, top + 1}, {x1 - 1, top});
        DrawLine({x1, bottom}, {x1 - 1, bottom + 1});
    }
    if (x1 == x0) return;
    for (int32_t y : {top, top + 1, bottom, bottom + 1}) DrawLine({x0 + 1, y}, {x1 - 1, y});
}

void DrawFrame() {
    if (!WaveView.SelectActive) return;
    PlaceFrame();
    if (WaveView.SelectRow < WaveView.TopRow) return;
    // A range that lies wholly beside the pane leaves nothing between the edges.
    if (Overlay.frameX0 > Overlay.frameX1) return;
    SaveFrameEdge(SaveSlot::FrameTop, Overlay.frameTop);
    SaveFrameEdge(SaveSlot::FrameBottom, Overlay.frameBottom);
    DrawFrameLines();
}

void DrawCursor() {
    int32_t x = Overlay.cursorX = PixelOf(WaveView.CursorTime);
    if (!IsColumn(x)) return;
    SaveColumn(SaveSlot::Cursor, x);
    if (!WaveView.SelectActive) {
        DrawLine({x, 0}, {x, WaveView.WavePaneHeight});
        return;
    }
    // The inside of the frame stays free.
    DrawLine({x, 0}, {x, Overlay.frameTop});
    DrawLine({x, Overlay.frameBottom}, {x, WaveView.WavePaneHeight});
}

void PutOn() {
    SurfaceClipToPane(true);
    SetDrawColour(ForegroundColour());
    DrawMark();
    DrawFrame();
    DrawCursor();
    SurfaceClipToPane(false);
}

// By what was saved and where, as the view may have moved since. The layers overlap, so the last one goes
// first.
void TakeOff() {
    for (SaveSlot slot : {SaveSlot::Cursor, SaveSlot::FrameTop, SaveSlot::FrameBottom, SaveSlot::Mark})
        SurfaceRestoreUnder(slot);
    SurfaceDropSaved();
}

} // namespace

void InitOverlay() {
    Overlay = {};
}

void DrawOverlay(bool on) {
    if (!DisplayOpen || on == Overlay.overlayOn) return;
    Overlay.overlayOn = on;
    SelectPicture(Pane::Wave);
    if (on) {
        PutOn();
    } else {
        TakeOff();
    }
}
