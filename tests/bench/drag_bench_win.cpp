#include "bench/drag_bench_win.h"
#include "config/settings.h"
#include "display/composition.h"
#include "display/drag_preview.h"
#include "display/mouse_place.h"
#include "display/renderer.h"
#include "display/row_table.h"
#include "display/ruler_cursor.h"
#include "display/surface_win.h"
#include "display/viewport.h"
#include "shell/commands.h"
#include "shell/view_gestures.h"
#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

constexpr uint32_t DRAGGED_ROW = 22; // in the middle of the window, one of the nodes with many edges
constexpr TimeVal DRAGGED_EDGE = 900;
constexpr TimeVal DRAG_ROOM = 40;

// As a press on the edge leaves it behind.
void TakeEdge(uint16_t rightMode) {
    DragPreview = {};
    DragPreview.pattern = WaveRows[DRAGGED_ROW].PatternId;
    DragPreview.edgeTime = DRAGGED_EDGE;
    DragPreview.lowLimit = DRAGGED_EDGE - DRAG_ROOM;
    DragPreview.highLimit = rightMode == DRAG_TAIL ? TIME_FOREVER : DRAGGED_EDGE + DRAG_ROOM;
    DragPreview.snapStep = 1;
    DragPreview.leftMode = DRAG_LOW;
    DragPreview.rightMode = rightMode;
    DragPreview.yBottom = static_cast<int32_t>(DRAGGED_ROW + 1) * WaveView.RowHeight - Settings.WaveGap - 1;
    DragPreview.yTop = DragPreview.yBottom - WaveView.WaveHeight;
    DragPreview.height = WaveView.WaveHeight + 5;
    DragPreview.firstCall = true;
    TrackRoutine = DrawDragPreview;
    CommandState.CursorMode |= CURSOR_TRACK;
}

template <class Work>
double MicrosecondsOf(Work work) {
    LARGE_INTEGER frequency, from, to;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&from);
    work();
    ReleasePicture("drag_bench");
    GdiFlush();
    QueryPerformanceCounter(&to);
    return 1e6 * static_cast<double>(to.QuadPart - from.QuadPart) / static_cast<double>(frequency.QuadPart);
}

// What a movement of the mouse takes, with all that it does: the marker in the ruler, and the edge that
// follows it.
double MicrosecondsOfMove(int32_t x) {
    int32_t y = static_cast<int32_t>(DRAGGED_ROW) * WaveView.RowHeight + WaveView.RowHeight / 2;
    return MicrosecondsOf([&] { MouseMoved(Pane::Wave, x, y); });
}

// A drag, pixel by pixel, and paintings of the row take turns, so that what else runs on the machine troubles
// both.
bool Measure(uint16_t rightMode, int rounds, double &row, double &drag) {
    EraseBegins(Pane::Wave);
    DrawRulerCursor(true);
    TakeEdge(rightMode);
    MicrosecondsOfMove(DRAGGED_EDGE); // the first one makes the bitmaps
    for (int i = 1; i <= rounds; i++) {
        int32_t aside = i % static_cast<int32_t>(DRAG_ROOM);
        drag = std::min(drag, MicrosecondsOfMove(static_cast<int32_t>(DRAGGED_EDGE) + aside));
        row = std::min(row, MicrosecondsOf([] { DrawRowWaves(DRAGGED_ROW); }));
    }
    bool followed = DragPreview.dragTime == Mouse.time && !DragPreview.firstCall;
    if (!followed) fprintf(stderr, "paint_bench: the edge does not follow the mouse\n");
    TrackRoutine = nullptr;
    CommandState.CursorMode &= ~CURSOR_TRACK;
    return followed;
}

} // namespace

bool MeasureDrags(int rounds, DragFigures &least) {
    constexpr double never = std::numeric_limits<double>::max();
    least = {never, never, never};
    return Measure(DRAG_HIGH, rounds, least.row, least.drag) &&
           Measure(DRAG_TAIL, rounds, least.row, least.tail);
}
