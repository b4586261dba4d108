#include "display/ruler_cursor.h"
#include "display/mouse_place.h"
#include "display/primitives.h"
#include "display/viewport.h"
#include "shell/commands.h"
#include <algorithm>

RulerCursorRecord RulerCursor;
void (*TrackRoutine)(TimeVal time, uint32_t row);

namespace {

constexpr int32_t FRAMES_AND_GRIP = 3; // pixels from the name column's width to the wave pane's first column
// The marker's own sizes, in pixels of an ordinary screen.
constexpr int32_t BAND_HEIGHT = 10;
constexpr int32_t TRIANGLE_HALF_WIDTH = 4;
constexpr int32_t TRIANGLE_HEIGHT = 8;
constexpr int RIGHT_END = 6; // anchor of a text

int32_t RulerColumn(TimeVal t) {
    return WaveView.NameColumnWidth + PixelOf(t) + FRAMES_AND_GRIP;
}

// Where the mouse time's text ends: a quarter of the name column from its right edge, one to six characters.
int32_t LabelRight() {
    if (WaveView.FontCharWidth <= 0) return WaveView.NameColumnWidth;
    int32_t characters = WaveView.NameColumnWidth / WaveView.FontCharWidth / 4;
    return WaveView.NameColumnWidth - WaveView.FontCharWidth * std::clamp(characters, 1, 6);
}

PixelRect DraggedRange() {
    int32_t anchor = RulerColumn(WaveView.ZoomAnchor), mouse = RulerColumn(Mouse.time);
    return {std::min(anchor, mouse), WaveView.RulerHeight - OnThisScreen(BAND_HEIGHT),
            std::max(anchor, mouse), WaveView.RulerHeight};
}

std::array<PixelPoint, 4> TriangleAtMouse() {
    PixelPoint tip = {RulerColumn(Mouse.time), WaveView.RulerHeight - WaveView.FontHeight / 2};
    int32_t top = tip.y - OnThisScreen(TRIANGLE_HEIGHT), half = OnThisScreen(TRIANGLE_HALF_WIDTH);
    return {tip, {tip.x - half, top}, {tip.x + half, top}, tip};
}

void ShowMouseTime() {
    SetDrawColour(ForegroundColour());
    DrawAnchoredText(LabelRight(), WaveView.RulerHeight / 2, RIGHT_END, TimeFormat(Mouse.time));
}

void EraseMouseTime() {
    EraseBlock({0, 0, LabelRight(), WaveView.RulerHeight - 3});
}

void Place() {
    RulerCursor.band = (CommandState.CursorMode & CURSOR_RANGE) != 0;
    if (RulerCursor.band) {
        RulerCursor.range = DraggedRange();
    } else {
        RulerCursor.triangle = TriangleAtMouse();
    }
}

void ToggleTriangle() {
    if (RulerCursor.on) {
        ShowMouseTime();
    } else {
        EraseMouseTime();
    }
    SurfaceXorPolygon(RulerCursor.triangle);
    if ((CommandState.CursorMode & CURSOR_TRACK) && TrackRoutine) TrackRoutine(Mouse.time, Mouse.row);
}

} // namespace

void InitRulerCursor() {
    RulerCursor = {};
    TrackRoutine = nullptr;
}

void DrawRulerCursor(bool on) {
    if (on == RulerCursor.on || !PanesExist()) return;
    // What is taken off is what was put on, whatever the mouse has done since.
    if (on) Place();
    RulerCursor.on = on;
    SelectPicture(Pane::Ruler);
    if (RulerCursor.band) {
        SurfaceInvert(RulerCursor.range);
    } else {
        ToggleTriangle();
    }
}
