#include "shell/view_gestures.h"

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
    CommandState.CommandPhase = phase;
    WaveView.ZoomCentre = Mouse.time;
    if (CommandState.CurrentCommand >= 1 && CommandState.CurrentCommand <= LAST_GESTURE_COMMAND) {
        ViewCommand(CommandState.CurrentCommand);
    } else {
        FinishCommand();
    }
    CommandState.CommandPhase = PHASE_IDLE;
    UpdateCommands();
}

void NotePlace(Pane pane, int32_t x, int32_t y) {
    if (!MouseGesture.captured) Mouse.pane = pane;
    StickToPixel(x, y);
    AxisPlace place = MouseToTimeRow(Mouse.pane, x, y);
    Mouse.time = place.time;
    Mouse.row = place.row;
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

void ScrollTimeBySteps(int32_t steps) {
    TimeVal way = TimeMul(TimeMul(WaveView.TickMinor, TICKS_PER_STEP), static_cast<TimeVal>(std::abs(steps)));
    ScrollTimeTo(steps < 0 ? TimeSub(WaveView.ViewLeft, way) : TimeAdd(WaveView.ViewLeft, way), true);
}

void ScrollRowsBySteps(int32_t steps, int32_t rows) {
    int64_t row = WaveView.TopRow + static_cast<int64_t>(steps) * rows;
    ScrollRowsTo(static_cast<uint32_t>(std::clamp<int64_t>(row, 0, WaveView.RowCount)), true);
}

void ZoomBySteps(int32_t x, int32_t steps) {
    for (int32_t i = 0; i < std::abs(steps); i++) ZoomAbout(x, steps > 0);
}

} // namespace

void MouseMoved(Pane pane, int32_t x, int32_t y) {
    if (!DisplayOpen) return;
    TimeVal time = Mouse.time;
    uint32_t row = Mouse.row;
    NotePlace(pane, x, y);
    if (time == Mouse.time && row == Mouse.row) return;
    if (MouseGesture.captured) TrackModeGesture();
}

void LeftPressed(Pane pane, int32_t x, int32_t y, MouseKeys keys) {
    ShowErrorStrip(nullptr);
    if (!DisplayOpen || MouseGesture.captured) return;
    NotePlace(pane, x, y);
    RememberPixel(x, y);
    MouseGesture.captured = true;
    MouseGesture.keys = keys;
    RunEvent(keys.shift ? PHASE_SHIFT_PRESSED : PHASE_PRESSED);
}

void LeftReleased(Pane pane, int32_t x, int32_t y) {
    if (!MouseGesture.captured) return;
    NotePlace(pane, x, y);
    MouseGesture.captured = false;
    ForgetPixel();
    if (DisplayOpen) RunEvent(PHASE_RELEASED);
}

void OtherPressed() {
    ShowErrorStrip(nullptr);
}

void OtherReleased(Pane pane, int32_t x, int32_t y) {
    ShowErrorStrip(nullptr);
    if (!DisplayOpen || MouseGesture.captured) return;
    NotePlace(pane, x, y);
    ForgetPixel();
    RunEvent(PHASE_PASTING);
}

void MouseCaptureLost() {
    if (!MouseGesture.captured) return;
    MouseGesture.captured = false;
    ForgetPixel();
    WaveView.ZoomPhase = 0;
    GestureState = GestureStateValue::Idle;
}

void WheelTurned(Pane pane, int32_t x, int32_t turn, MouseKeys keys, int32_t rows) {
    if (!DisplayOpen) return;
    if (keys.control) {
        int32_t inWaves = pane == Pane::Ruler ? x - WaveView.NameColumnWidth : pane == Pane::Wave ? x : 0;
        ZoomBySteps(std::max(inWaves, 0), WheelSteps(WheelUse::Zoom, turn));
    } else if (keys.shift) {
        ScrollTimeBySteps(-WheelSteps(WheelUse::Time, turn));
    } else {
        ScrollRowsBySteps(-WheelSteps(WheelUse::Rows, turn), rows);
    }
}

void WheelTipped(int32_t turn) {
    if (DisplayOpen) ScrollTimeBySteps(WheelSteps(WheelUse::Time, turn));
}
