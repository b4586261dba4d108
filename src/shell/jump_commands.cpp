#include "shell/jump_commands.h"

#include "config/settings.h"
#include "display/cursor_readout.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "edit/walker.h"
#include "shell/command_ids.h"
#include "shell/command_state.h"
#include "shell/mode_gestures.h"
#include "shell/text_dialog.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <cstdio>

namespace {

constexpr int JUMP_TEXT_SIZE = 31;
constexpr TimeVal LONG_STEP = 10; // ticks

bool IsRow(uint32_t row) {
    return WaveRows && row < WaveView.RowCount;
}

Pattern *SelectedRowPattern() {
    return IsRow(WaveView.SelectRow) ? RowPattern(WaveView.SelectRow) : nullptr;
}

// --- the next change ------------------------------------------------------------------------------

// An endless repetition of one value never changes. The search goes on where this many segments have brought
// it, a moment's work, when it is asked for again.
constexpr uint32_t MOST_SEGMENTS = 1 << 22;

// What the walk to the next change has found.
struct ChangeSearch {
    bool covered;   // a segment covers the cursor
    uint32_t value; // of that segment
    TimeVal end;    // of the last segment of that value
    uint32_t segments;
};
ChangeSearch Search;

int NoteSegment(const WalkSegment *segment) {
    if (!Search.covered) {
        if (segment->end <= WaveView.CursorTime) return 1;
        Search = {true, segment->value, segment->end, 1};
        return 1;
    }
    if (segment->value != Search.value) return 0;
    Search.end = segment->end;
    return ++Search.segments < MOST_SEGMENTS;
}

void JumpToNextChange() {
    Pattern *pattern = SelectedRowPattern();
    if (!pattern) return;
    bool edit = CommandState.CurrentCommand == COMMAND_EDIT_MODE;
    Search = {};
    WalkPattern(NoteSegment, pattern, WaveView.CursorTime, WaveView.SpanEnd,
                edit ? WalkWaves : WalkWaves | WalkSync, 0);
    if (Search.covered) JumpToTime(Search.end);
}

// --- other places ---------------------------------------------------------------------------------

void AskForTime() {
    char text[JUMP_TEXT_SIZE];
    snprintf(text, sizeof text, "%s", TimeFormat(WaveView.CursorTime));
    if (GetTextDialog("Jump To Time:", text, sizeof text)) JumpToTime(TimeParse(text));
}

void JumpToEnd() {
    Pattern *pattern = SelectedRowPattern();
    JumpToTime(pattern ? PatternDuration(pattern) : Settings.EndTime);
}

// --- rows -----------------------------------------------------------------------------------------

// `otherwise` if no row is highlighted.
uint32_t FirstHighlighted(uint32_t otherwise) {
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        if (WaveRows[row].highlighted()) return row;
    }
    return otherwise;
}
uint32_t LastHighlighted(uint32_t otherwise) {
    for (uint32_t row = WaveView.RowCount; row-- > 0;) {
        if (WaveRows[row].highlighted()) return row;
    }
    return otherwise;
}

void SelectRow(uint32_t row) {
    SelectRowOnly(row, true);
    EnsureRowVisible(row);
}

void SelectRowAbove() {
    if (!IsRow(0)) return;
    uint32_t row = FirstHighlighted(WaveView.TopRow);
    SelectRow(row > 0 ? row - 1 : 0);
}

void SelectRowBelow() {
    if (!IsRow(0)) return;
    uint32_t last = WaveView.RowCount - 1;
    uint32_t row = LastHighlighted(std::min(VisibleRows(), last));
    SelectRow(row < last ? row + 1 : last);
}

// --- the mark -------------------------------------------------------------------------------------

void SetMark(bool active) {
    DrawOverlay(false);
    WaveView.MarkTime = WaveView.CursorTime;
    WaveView.MarkActive = active;
    DrawOverlay(true);
}

// In Edit mode the selection goes where the cursor goes; elsewhere it ends.
void MoveSelection(TimeVal time) {
    EndModeGesture();
    int held = LogHoldOpen(1);
    if (CommandState.CurrentCommand == COMMAND_EDIT_MODE) {
        SelectAtTime(time);
    } else {
        ClearSelection();
        AdoptSelection();
    }
    ShowSelection();
    LogHoldOpen(held);
}

} // namespace

void JumpToTime(TimeVal t) {
    t = std::clamp(t, std::min(WaveView.SpanStart, WaveView.SpanEnd), WaveView.SpanEnd);
    if (t != WaveView.CursorTime) {
        DrawOverlay(false);
        MoveSelection(t);
        WaveView.CursorTime = t;
        DrawOverlay(true);
    }
    TimeVal right = TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth));
    if (t < WaveView.ViewLeft || t > right) CentreOn(t, false);
    ShowCursorReadout();
}

void JumpCommand(uint32_t id) {
    TimeVal tick = WaveView.TickMinor;
    switch (id) {
    case COMMAND_NEXT_CHANGE:
        JumpToNextChange();
        break;
    case COMMAND_TO_MARKER:
        JumpToTime(WaveView.MarkTime);
        break;
    case COMMAND_TO_TIME:
        AskForTime();
        break;
    case COMMAND_TO_START:
        JumpToTime(0);
        break;
    case COMMAND_TO_END:
        JumpToEnd();
        break;
    case COMMAND_TICK_LEFT:
        JumpToTime(TimeSub(WaveView.CursorTime, tick));
        break;
    case COMMAND_TICK_RIGHT:
        JumpToTime(TimeAdd(WaveView.CursorTime, tick));
        break;
    case COMMAND_TEN_LEFT:
        JumpToTime(TimeSub(WaveView.CursorTime, TimeMul(tick, LONG_STEP)));
        break;
    case COMMAND_TEN_RIGHT:
        JumpToTime(TimeAdd(WaveView.CursorTime, TimeMul(tick, LONG_STEP)));
        break;
    case COMMAND_ROW_UP:
        SelectRowAbove();
        break;
    case COMMAND_ROW_DOWN:
        SelectRowBelow();
        break;
    default:
        break;
    }
}

void PlaceMark() {
    SetMark(true);
}

void HideMark() {
    SetMark(false);
}
