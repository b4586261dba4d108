#include "shell/tracking.h"

#include "display/composition.h"
#include "display/mouse_place.h"
#include "display/overlay.h"
#include "display/renderer.h"
#include "display/rows.h"
#include "shell/reporting.h"
#include <algorithm>
#include <cstdio>
#include <string>

EditGridRecord EditGrid;
uint32_t GrabRowOffset;

namespace {

void Prompt(const std::string &text) {
    SetPromptQuick(text.c_str());
}

void RedrawRows(uint32_t first, uint32_t last) {
    DrawOverlay(false);
    for (uint32_t row = first; row <= last; row++) {
        DrawRowName(row);
        DrawRowWaves(row);
    }
    DrawOverlay(true);
}

// The row above the selected ones goes behind them.
void MoveBlockUp() {
    WaveRow *above = WaveRows + WaveView.SelectRow - 1;
    std::rotate(above, above + 1, WaveRows + WaveView.SelectRowLast + 1);
    WaveView.SelectRow--;
    WaveView.SelectRowLast--;
}

// The row behind the selected ones goes in front of them.
void MoveBlockDown() {
    WaveRow *behind = WaveRows + WaveView.SelectRowLast + 1;
    std::rotate(WaveRows + WaveView.SelectRow, behind, behind + 1);
    WaveView.SelectRow++;
    WaveView.SelectRowLast++;
}

} // namespace

TimeVal RoundToGrid(TimeVal time) {
    if (time <= EditGrid.EditGridOrigin) return EditGrid.EditGridOrigin;
    return TimeAdd(EditGrid.EditGridOrigin, TimeRoundTo(time - EditGrid.EditGridOrigin, EditGrid.EditGrid));
}

void TrackSelect(TimeVal time, uint32_t) {
    time = RoundToGrid(time);
    if (time == WaveView.SelectEnd) return;
    DrawOverlay(false);
    WaveView.CursorTime = time;
    WaveView.SelectEnd = time;
    DrawOverlay(true);
    ShowSelectText();
}

void TrackQuery(TimeVal time, uint32_t row) {
    if (time != WaveView.CursorTime) {
        DrawOverlay(false);
        WaveView.CursorTime = time;
        DrawOverlay(true);
        ShowCursorTime();
    }
    // The ruler stands beside no row.
    if (Mouse.pane == Pane::Ruler || WaveView.RowCount == 0) return;
    row = std::min(row, WaveView.RowCount - 1);
    if (row != WaveView.SelectRow) SelectRowOnly(row, true);
}

void TrackRowRange(TimeVal, uint32_t row) {
    if (WaveView.SelectRow >= WaveView.RowCount || WaveView.SelectRowLast >= WaveView.RowCount) return;
    row = std::min(row, WaveView.RowCount - 1);
    if (row == WaveView.SelectRowLast) return;
    while (WaveView.SelectRowLast != row) {
        uint32_t last = WaveView.SelectRowLast;
        bool down = row > last;
        uint32_t next = down ? last + 1 : last - 1;
        bool grows = down ? last >= WaveView.SelectRow : last <= WaveView.SelectRow;
        HighlightRow(grows ? next : last, grows);
        WaveView.SelectRowLast = next;
    }
    RowSelectionChanged();
}

void TrackRowMove(TimeVal, uint32_t row) {
    if (WaveView.SelectRow > WaveView.SelectRowLast || WaveView.SelectRowLast >= WaveView.RowCount) return;
    uint32_t first = WaveView.SelectRow, last = WaveView.SelectRowLast;
    while (WaveView.SelectRow + GrabRowOffset > row && WaveView.SelectRow != 0) MoveBlockUp();
    while (WaveView.SelectRow + GrabRowOffset < row && WaveView.SelectRowLast + 1 < WaveView.RowCount)
        MoveBlockDown();
    if (WaveView.SelectRow == first) return;
    RedrawRows(std::min(first, WaveView.SelectRow), std::max(last, WaveView.SelectRowLast));
}

void ShowSelectText() {
    if (!WaveView.SelectActive) {
        ShowCursorTime();
        return;
    }
    std::string start = TimeFormat(WaveView.SelectStart);
    if (WaveView.SelectStart == WaveView.SelectEnd) {
        Prompt("Select   at " + start);
    } else {
        // The unit shows once.
        Prompt("Select from " + start.substr(0, start.find(' ')) + " to " + TimeFormat(WaveView.SelectEnd));
    }
}

void ShowCursorTime() {
    Prompt(std::string("Time = ") + TimeFormat(WaveView.CursorTime));
}

void HighlightRow(uint32_t row, bool on) {
    if (WaveRows[row].highlighted() == on) return;
    WaveRows[row].setHighlighted(on);
    DrawRowName(row);
}
