#include "shell/view_gestures.h"

#include "display/overlay.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "display/zoom.h"
#include "shell/commands.h"
#include "shell/mode_gestures.h"
#include <algorithm>
#include <cstdlib>

namespace {

constexpr uint32_t LAST_GESTURE_COMMAND = 50;

// A step of the wheel moves the time by a labelled tick or so.
constexpr TimeVal TICKS_PER_STEP = 10;

enum class WheelUse { Rows, Time, Zoom };

void RunEvent(uint16_t phase) {
    DrawRulerCursor(false);
    CommandState.CommandPhase = phase;
    WaveView.ZoomCentre = Mouse.time;
    if (CommandState.CurrentCommand >= 1 && CommandState.CurrentCommand <= LAST_GESTURE_COMMAND) {
        ViewCommand(CommandState.CurrentCommand);
    } else {
        FinishCommand();
    }
    CommandState.CommandPhase = PHASE_IDLE;
    UpdateCommands();
    // What tracks the mouse begins with its first movement, which brings the marker back.
    if (!(CommandState.CursorMode & CURSOR_TRACK)) DrawRulerCursor(true);
}

void NotePlace(AxisPlace place) {
    Mouse.time = place.time;
    Mouse.row = place.row;
}

// The place of a pixel. What is held down stays in the panel of the press.
AxisPlace PlaceOf(Pane pane, int32_t x, int32_t y) {
    if (!MouseGesture.captured) Mouse.pane = pane;
    StickToPixel(x, y);
    return MouseToTimeRow(Mouse.pane, x, y);
}

// The whole steps in a turn, with what the turns before it left over.
int32_t WheelSteps(WheelUse use, int32_t turn) {
    int32_t &rest = MouseGesture.wheelRest[static_cast<int>(use)];
    // A turn in the other direction begins anew.
    if ((rest < 0) != (turn < 0)) rest = 0;
    rest += turn;
    int32_t steps = rest / WHEEL_STEP;
    rest %= WHEEL_STEP;
    return steps;
}

// Scrolling paints at once, which what lies over the picture must not be caught in.
void BareScroll(void (*scroll)(int32_t steps, int32_t rows), int32_t steps, int32_t rows) {
    DrawRulerCursor(false);
    DrawOverlay(false);
    scroll(steps, rows);
    DrawOverlay(true);
    DrawRulerCursor(true);
}

void ScrollTimeBySteps(int32_t steps, int32_t) {
    TimeVal way = TimeMul(TimeMul(WaveView.TickMinor, TICKS_PER_STEP), static_cast<TimeVal>(std::abs(steps)));
    ScrollTimeTo(steps < 0 ? TimeSub(WaveView.ViewLeft, way) : TimeAdd(WaveView.ViewLeft, way), true);
}

void ScrollRowsBySteps(int32_t steps, int32_t rows) {
    int64_t row = WaveView.TopRow + static_cast<int64_t>(steps) * rows;
    ScrollRowsTo(static_cast<uint32_t>(std::clamp<int64_t>(row, 0, WaveView.RowCount)), true);
}

// Under a pointer that stands still the view has moved: another time and row are there now.
void NoteViewMoved(Pane pane, PixelPoint at) {
    if (pane == Pane::None && !MouseGesture.captured) return;
    // The ruler's ticks, by which the mouse's time is rounded, are those of the last paint.
    UpdatePane(Pane::Ruler);
    MouseMoved(pane, at.x, at.y);
}

void ZoomBySteps(int32_t x, int32_t steps) {
    for (int32_t i = 0; i < std::abs(steps); i++) ZoomAbout(x, steps > 0);
}

} // namespace

void MouseMovedTo(AxisPlace place) {
    MouseRecord before = Mouse;
    NotePlace(place);
    if (before.time == Mouse.time && before.row == Mouse.row) return;
    // What the mouse drags follows it through the marker.
    DrawRulerCursor(false);
    DrawRulerCursor(true);
}

void LeftPressedAt(Pane pane, AxisPlace place, MouseKeys keys) {
    ShowErrorStrip(nullptr);
    if (!DisplayOpen || MouseGesture.captured) return;
    Mouse.pane = pane;
    NotePlace(place);
    MouseGesture.captured = true;
    MouseGesture.keys = keys;
    RunEvent(keys.shift ? PHASE_SHIFT_PRESSED : PHASE_PRESSED);
    MouseGesture.command = CommandState.CurrentCommand;
}

void LeftReleasedAt(AxisPlace place) {
    if (!MouseGesture.captured) return;
    NotePlace(place);
    MouseGesture.captured = false;
    ForgetPixel();
    // A command that came between has not seen the press.
    if (MouseGesture.command != CommandState.CurrentCommand) {
        EndModeGesture();
    } else if (DisplayOpen) {
        RunEvent(PHASE_RELEASED);
    }
}

void MouseMoved(Pane pane, int32_t x, int32_t y) {
    if (DisplayOpen) MouseMovedTo(PlaceOf(pane, x, y));
}

void LeftPressed(Pane pane, int32_t x, int32_t y, MouseKeys keys) {
    AxisPlace place = {};
    if (DisplayOpen && !MouseGesture.captured) {
        place = PlaceOf(pane, x, y);
        RememberPixel(x, y);
    }
    LeftPressedAt(pane, place, keys);
}

void LeftReleased(Pane pane, int32_t x, int32_t y) {
    if (MouseGesture.captured) LeftReleasedAt(PlaceOf(pane, x, y));
}

void OtherPressed() {
    ShowErrorStrip(nullptr);
}

void OtherReleased(Pane pane, int32_t x, int32_t y) {
    ShowErrorStrip(nullptr);
    if (!DisplayOpen || MouseGesture.captured) return;
    NotePlace(PlaceOf(pane, x, y));
    ForgetPixel();
    RunEvent(PHASE_PASTING);
}

void MouseCaptureLost() {
    if (!MouseGesture.captured) return;
    MouseGesture.captured = false;
    ForgetPixel();
    EndModeGesture();
    DrawRulerCursor(false);
    CommandState.CursorMode &= ~(CURSOR_RANGE | CURSOR_TRACK);
    if (CommandState.CurrentCommand == COMMAND_ZOOM_IN) {
        CommandState.CommandPhase = PHASE_STARTING;
        ViewCommand(COMMAND_ZOOM_IN);
        CommandState.CommandPhase = PHASE_IDLE;
    }
    DrawRulerCursor(true);
}

void WheelTurned(Pane pane, PixelPoint at, int32_t turn, MouseKeys keys, int32_t rows) {
    if (!DisplayOpen) return;
    if (keys.control) {
        int32_t inWaves = pane == Pane::Ruler  ? at.x - WaveView.NameColumnWidth
                          : pane == Pane::Wave ? at.x
                                               : 0;
        ZoomBySteps(std::max(inWaves, 0), WheelSteps(WheelUse::Zoom, turn));
    } else if (keys.shift) {
        BareScroll(ScrollTimeBySteps, -WheelSteps(WheelUse::Time, turn), rows);
    } else {
        BareScroll(ScrollRowsBySteps, -WheelSteps(WheelUse::Rows, turn), rows);
    }
    NoteViewMoved(pane, at);
}

void WheelTipped(Pane pane, PixelPoint at, int32_t turn) {
    if (!DisplayOpen) return;
    BareScroll(ScrollTimeBySteps, WheelSteps(WheelUse::Time, turn), 0);
    NoteViewMoved(pane, at);
}
