#include "shell/mode_gestures.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/cursor_readout.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "edit/drag.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "shell/command_state.h"
#include "shell/mouse_gesture.h"
#include "shell/tracking.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>

GestureStateValue GestureState;

namespace {

using State = GestureStateValue;

// A press this near to a selected edge is one on it, in pixels.
constexpr int32_t EDGE_PIXELS = 2;

// Of the last press in the waves.
struct PressRecord {
    TimeVal LastPressTime;
    bool behindEnd; // at the end of the wave or behind it
    State before;   // what that press found
};
PressRecord Press;

void Begin(State state, void (*routine)(TimeVal time, uint32_t row)) {
    GestureState = state;
    TrackRoutine = routine;
}

bool IsTracking() {
    return GestureState == State::TimeRange || GestureState == State::QueryTracking ||
           GestureState == State::RowRange || GestureState == State::EdgeDrag ||
           GestureState == State::RowMove;
}

uint32_t LastRow() {
    return WaveView.RowCount - 1;
}

bool IsRowAlone(uint32_t row) {
    if (WaveView.SelectRow != row || WaveView.SelectRowLast != row) return false;
    for (uint32_t other = 0; other < WaveView.RowCount; other++)
        if (WaveRows[other].highlighted() != (other == row)) return false;
    return true;
}

// The pattern of the selected row where that is a row alone and can be edited, else null.
Pattern *EditedPattern() {
    uint32_t row = WaveView.SelectRow;
    if (!WaveRows || row >= WaveView.RowCount || !WaveRows[row].isWave()) return nullptr;
    return RowPattern(row);
}

void Reset() {
    ClearSelection();
    Begin(State::Idle, nullptr);
    Press = {};
    WaveView.SelectRow = WaveView.RowCount;
    WaveView.SelectRowLast = WaveView.RowCount;
    ShowSelection();
    SelectRowHighlight(WaveView.SelectRow, true);
}

// --- a press in the name column -------------------------------------------------------------------

uint32_t FirstHighlighted() {
    uint32_t row = 0;
    while (row < WaveView.RowCount && !WaveRows[row].highlighted()) row++;
    return row;
}

// Adds the row to the selection, or takes it out.
void ToggleRow(uint32_t row) {
    HighlightRow(row, !WaveRows[row].highlighted());
    WaveView.SelectRow = WaveRows[row].highlighted() ? row : FirstHighlighted();
    WaveView.SelectRowLast = WaveView.SelectRow;
    RowSelectionChanged();
    Begin(State::Idle, nullptr);
}

void PressInNames() {
    ClearSelection();
    uint32_t row = std::min(Mouse.row, LastRow());
    if (MouseGesture.keys.control) {
        ToggleRow(row);
        return;
    }
    if (WaveView.SelectRow > WaveView.SelectRowLast) std::swap(WaveView.SelectRow, WaveView.SelectRowLast);
    bool outside = row < WaveView.SelectRow || row > WaveView.SelectRowLast ||
                   WaveView.SelectRowLast >= WaveView.RowCount;
    if (outside) {
        SelectRowOnly(row, true);
        Begin(State::RowRange, TrackRowRange);
    } else {
        GrabRowOffset = row - WaveView.SelectRow;
        Begin(State::RowMove, TrackRowMove);
    }
}

// --- a press in the waves -------------------------------------------------------------------------

void StartQuery() {
    ClearSelection();
    Begin(State::QueryTracking, TrackQuery);
    ShowCursorTime();
}

void SelectTime(TimeVal start, TimeVal end) {
    WaveView.SelectStart = start;
    WaveView.SelectEnd = end;
}

// The range begins at the end of the wave, wherever the press was, and follows the mouse once that moves.
void TrackBehindEnd(TimeVal time, uint32_t row) {
    TrackSelect(time == Press.LastPressTime ? WaveView.SelectStart : time, row);
}

// At the end of the wave, or behind it: the end is selected, until a drag makes the wave longer.
void PressBehindEnd(Pattern *pattern) {
    TimeVal total = PatternDuration(pattern);
    Press = {Mouse.time, true, GestureState};
    SelectTime(total, total);
    WaveView.CursorTime = total;
    WaveView.SelectActive = true;
    SelectRange(pattern, total, total, Settings.ShowPatternWaveforms, 1);
    Begin(State::TimeRange, TrackBehindEnd);
}

// A press with something selected in the row: what it is in the middle of, or Idle for a new selection.
State PressOnSelection(uint32_t row, bool shift) {
    TimeVal time = RoundToGrid(Mouse.time);
    const SelFrame &frame = DeepestFrame();
    if (EditSelection.SelKind == SEL_EDGE) {
        TimeVal distance = std::max(time, frame.start) - std::min(time, frame.start);
        if (distance <= PixelsToTime(EDGE_PIXELS)) return State::OnSelection;
    }
    if (time < frame.start || time > frame.end) return State::Idle;
    if (BeginDrag(row, time, shift)) return State::EdgeDrag;
    return EditSelection.SelKind == SEL_PATTERN ? State::OnSelection : State::Idle;
}

// With Shift inside a level: a pulse is pulled out of it. False elsewhere.
bool PullOutPulse(Pattern *pattern, uint32_t row, TimeVal time) {
    SelectRange(pattern, time, time, Settings.ShowPatternWaveforms, 0);
    const SelFrame &frame = DeepestFrame();
    TimeVal unit = EditSelection.SelScale;
    if (EditSelection.SelKind != SEL_PULSE) return false;
    if (TimeSub(time, frame.start) < unit || TimeSub(frame.end, time) < unit) return false;
    EditSelection.SelKind = SEL_STRETCH;
    if (!BeginDrag(row, time, true)) return false;
    GestureState = State::EdgeDrag;
    WaveView.SelectActive = false;
    return true;
}

void StartSelection(Pattern *pattern, uint32_t row, bool shift) {
    EditSelection.SelKind = SEL_NONE;
    TimeVal time = RoundToGrid(Mouse.time);
    WaveView.SelectActive = true;
    WaveView.CursorTime = time;
    SelectTime(time, time);
    if (shift && time < PatternDuration(pattern) && PullOutPulse(pattern, row, time)) return;
    ShowSelectText();
    // This shows until the first movement.
    SetPrompt("empty line");
    Begin(State::TimeRange, TrackSelect);
}

void PressOnWave(Pattern *pattern, uint32_t row, bool shift) {
    EditGrid = {PatternUnit(pattern), pattern->delay};
    if (Mouse.time >= PatternDuration(pattern)) {
        PressBehindEnd(pattern);
        return;
    }
    bool selected = GestureState == State::Selected && EditSelection.SelKind != SEL_NONE;
    Begin(State::Idle, nullptr);
    if (selected) GestureState = PressOnSelection(row, shift);
    Press = {Mouse.time, false, State::Idle};
    if (GestureState == State::Idle) StartSelection(pattern, row, shift);
}

void PressInWaves(bool edit, bool shift) {
    uint32_t row = std::min(Mouse.row, LastRow());
    // Below the last row nothing is edited, nor on a row that only shows others.
    bool editing = edit && Mouse.row == row && WaveRows[row].isWave();
    if (!IsRowAlone(row)) {
        SelectRowOnly(row, true);
        EditSelection.SelKind = SEL_NONE;
        GestureState = State::RowPicked;
    }
    if (GestureState == State::RowPicked) GestureState = State::Idle;
    Pattern *pattern = editing ? RowPattern(row) : nullptr;
    if (pattern) {
        PressOnWave(pattern, row, shift);
    } else {
        StartQuery();
    }
}

void PressButton(bool edit, bool shift) {
    Press = {};
    if (WaveView.RowCount == 0) {
        WaveView.SelectRow = 0;
        ClearSelection();
        Begin(State::Idle, nullptr);
    } else if (Mouse.pane == Pane::Name) {
        PressInNames();
    } else if (Mouse.pane == Pane::Ruler) {
        // The ruler stands beside no row.
        StartQuery();
    } else {
        PressInWaves(edit, shift);
    }
}

// --- a release ------------------------------------------------------------------------------------

bool Moved() {
    return Mouse.time != Press.LastPressTime;
}

// What a click selects, or a drag over a range. With `pick` a click may hit an edge.
void SelectPressed(Pattern *pattern, int pick) {
    int drill = Settings.ShowPatternWaveforms;
    if (Moved()) {
        SelectRange(pattern, WaveView.SelectStart, WaveView.SelectEnd, drill, pick);
    } else if (EditSelection.SelKind != SEL_PATTERN || SelectParent() == SEL_NONE) {
        SelectRange(pattern, Mouse.time, Mouse.time, drill, pick);
    }
}

void ReleaseBehindEnd(Pattern *pattern) {
    if (WaveView.SelectEnd > WaveView.SelectStart) {
        SelectRange(pattern, WaveView.SelectEnd, WaveView.SelectEnd, Settings.ShowPatternWaveforms, 0);
    } else {
        SelectRange(pattern, WaveView.SelectStart, WaveView.SelectEnd, Settings.ShowPatternWaveforms, 1);
    }
}

void ReleaseDrag(Pattern *pattern) {
    if (Moved()) {
        ApplyDrag();
        WaveView.SelectActive = true;
    } else if (SelectParent() == SEL_NONE) {
        SelectRange(pattern, Mouse.time, Mouse.time, Settings.ShowPatternWaveforms, 0);
    }
}

void AdoptReleased() {
    AdoptSelection();
    if (EditSelection.SelKind == SEL_NONE) return;
    WaveView.CursorTime = std::clamp(WaveView.CursorTime, WaveView.SelectStart,
                                     std::max(WaveView.SelectStart, WaveView.SelectEnd));
}

void ReleaseInWaves() {
    Pattern *pattern = EditedPattern();
    if (!pattern) {
        ClearSelection();
        GestureState = State::Idle;
        return;
    }
    if (Press.behindEnd && !Moved()) {
        // The selected end stays as it is.
        GestureState = Press.before;
        return;
    }
    if (Press.behindEnd) {
        ReleaseBehindEnd(pattern);
    } else if (GestureState == State::EdgeDrag) {
        ReleaseDrag(pattern);
    } else {
        SelectPressed(pattern, GestureState == State::TimeRange ? 1 : 0);
    }
    AdoptReleased();
}

void ReleaseButton() {
    switch (GestureState) {
    case State::TimeRange:
    case State::EdgeDrag:
    case State::OnSelection:
        ReleaseInWaves();
        break;
    case State::QueryTracking:
    case State::RowRange:
    case State::RowMove:
        GestureState = State::Idle;
        break;
    default:
        break;
    }
    TrackRoutine = nullptr;
    if (WaveView.SelectRow < WaveView.RowCount && WaveView.SelectRow == WaveView.SelectRowLast)
        RowSelectionChanged();
    ShowSelection();
}

void RunPhase(bool edit) {
    switch (CommandState.CommandPhase) {
    case PHASE_STARTING:
    case PHASE_PASTING:
    case PHASE_ENDING:
        Reset();
        break;
    case PHASE_PRESSED:
    case PHASE_SHIFT_PRESSED:
        PressButton(edit, CommandState.CommandPhase == PHASE_SHIFT_PRESSED);
        break;
    case PHASE_RELEASED:
        ReleaseButton();
        break;
    default:
        break;
    }
}

// A press that begins to track has a text of its own.
bool HasPrompt() {
    if (!IsPress() || Press.behindEnd) return false;
    return GestureState == State::TimeRange || GestureState == State::QueryTracking;
}

} // namespace

void InitModeGestures() {
    Begin(State::Idle, nullptr);
    Press = {};
    EditGrid = {};
    GrabRowOffset = 0;
}

void SetEditMode(bool edit) {
    // The mouse may have been let go elsewhere than where it was last seen.
    if (IsRelease() && IsTracking() && TrackRoutine) TrackRoutine(Mouse.time, Mouse.row);
    CommandState.CursorMode = edit ? CURSOR_SELECT : CURSOR_QUERY;
    DrawOverlay(false);
    RunPhase(edit);
    if (PanesExist() && !HasPrompt()) ShowCursorReadout();
    if (IsTracking()) CommandState.CursorMode |= CURSOR_TRACK;
    // The preview of a drag works on the picture itself.
    if (GestureState != State::EdgeDrag) DrawOverlay(true);
}

void EndModeGesture() {
    if (!IsTracking() && GestureState != State::OnSelection) return;
    bool edges = GestureState == State::EdgeDrag || GestureState == State::OnSelection;
    Begin(State::Idle, nullptr);
    Press = {};
    CommandState.CursorMode &= ~CURSOR_TRACK;
    DrawOverlay(false);
    if (!edges || EditSelection.SelKind == SEL_STRETCH) ClearSelection();
    AdoptSelection();
    RepaintChanged(false);
    ShowSelection();
    DrawOverlay(true);
}

void SelectAtTime(TimeVal time) {
    Pattern *pattern = EditedPattern();
    if (pattern) {
        time = std::min(time, PatternDuration(pattern));
        SelectRange(pattern, time, time, Settings.ShowPatternWaveforms, 1);
    } else {
        ClearSelection();
    }
    AdoptSelection();
}

void AdoptSelection() {
    WaveView.SelectActive = EditSelection.SelKind != SEL_NONE;
    GestureState = WaveView.SelectActive ? State::Selected : State::Idle;
    if (WaveView.SelectActive) SelectTime(DeepestFrame().start, DeepestFrame().end);
}
