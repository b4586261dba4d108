#include "shell/mode_gestures.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/wave_view.h"
#include "shell/command_state.h"
#include "shell/mouse_gesture.h"
#include <algorithm>
#include <cstdio>

GestureStateValue GestureState;

namespace {

void Begin(GestureStateValue state, void (*routine)(TimeVal time, uint32_t row)) {
    GestureState = state;
    TrackRoutine = routine;
}

void Reset() {
    WaveView.SelectActive = false;
    EndModeGesture();
    WaveView.SelectRow = WaveView.RowCount;
    WaveView.SelectRowLast = WaveView.RowCount;
    SelectRowHighlight(WaveView.SelectRow, true);
}

// --- the cursor -----------------------------------------------------------------------------------

uint32_t LastRow() {
    return WaveView.RowCount - 1;
}

void MoveCursorTo(TimeVal time) {
    if (time == WaveView.CursorTime) return;
    DrawOverlay(false);
    WaveView.CursorTime = time;
    DrawOverlay(true);
    char line[PROMPT_SIZE];
    snprintf(line, sizeof line, "Time = %s", TimeFormat(time));
    SetPromptQuick(line);
}

void TrackQuery(TimeVal time, uint32_t row) {
    MoveCursorTo(time);
    // The ruler stands beside no row.
    if (Mouse.pane == Pane::Ruler || WaveView.RowCount == 0) return;
    row = std::min(row, LastRow());
    if (row != WaveView.SelectRow) SelectRowOnly(row, true);
}

void PressInWaves() {
    WaveView.SelectActive = false;
    Begin(GestureStateValue::QueryTracking, TrackQuery);
    // A click on one of several selected rows leaves it alone selected.
    if (Mouse.pane == Pane::Wave) SelectRowOnly(std::min(Mouse.row, LastRow()), true);
    TrackQuery(Mouse.time, Mouse.row);
}

// --- rows in the name column ----------------------------------------------------------------------

void Highlight(uint32_t row, bool on) {
    if (WaveRows[row].highlighted() == on) return;
    WaveRows[row].setHighlighted(on);
    DrawRowName(row);
}

// Selects the rows from the one where the range began to `row`, in either direction.
void TrackRowRange(TimeVal, uint32_t row) {
    if (WaveView.RowCount == 0) return;
    WaveView.SelectRowLast = std::min(row, LastRow());
    auto [first, last] = std::minmax(WaveView.SelectRow, WaveView.SelectRowLast);
    for (uint32_t other = 0; other < WaveView.RowCount; other++) {
        Highlight(other, other >= first && other <= last);
    }
    RowSelectionChanged();
}

uint32_t FirstHighlighted() {
    uint32_t row = 0;
    while (row < WaveView.RowCount && !WaveRows[row].highlighted()) row++;
    return row;
}

// Adds the row to the selection, or takes it out.
void ToggleRow(uint32_t row) {
    Highlight(row, !WaveRows[row].highlighted());
    WaveView.SelectRow = WaveRows[row].highlighted() ? row : FirstHighlighted();
    WaveView.SelectRowLast = WaveView.SelectRow;
    RowSelectionChanged();
}

void PressInNames() {
    WaveView.SelectActive = false;
    uint32_t row = std::min(Mouse.row, LastRow());
    if (MouseGesture.keys.control) {
        ToggleRow(row);
        return;
    }
    Begin(GestureStateValue::RowRange, TrackRowRange);
    if (MouseGesture.keys.shift && WaveView.SelectRow < WaveView.RowCount) {
        TrackRowRange(Mouse.time, row);
    } else {
        SelectRowOnly(row, true);
    }
}

void Press() {
    if (WaveView.RowCount == 0) {
        WaveView.SelectRow = 0;
        WaveView.SelectActive = false;
        EndModeGesture();
    } else if (Mouse.pane == Pane::Name) {
        PressInNames();
    } else {
        PressInWaves();
    }
}

} // namespace

void EndModeGesture() {
    GestureState = GestureStateValue::Idle;
    TrackRoutine = nullptr;
}

void RunModeGesture() {
    switch (CommandState.CommandPhase) {
    case PHASE_STARTING:
    case PHASE_PASTING:
    case PHASE_ENDING:
        Reset();
        break;
    case PHASE_PRESSED:
    case PHASE_SHIFT_PRESSED:
        Press();
        break;
    case PHASE_RELEASED:
        if (TrackRoutine) TrackRoutine(Mouse.time, Mouse.row);
        EndModeGesture();
        break;
    default:
        break;
    }
    if (GestureState != GestureStateValue::Idle) CommandState.CursorMode |= CURSOR_TRACK;
}
