#include "display/rows.h"
#include "display/composition.h"
#include "display/overlay.h"
#include "display/primitives.h"
#include "display/viewport.h"
#include "editlog/log_records.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <algorithm>
#include <cstdio>

uint32_t (*HierDisplayNetHook)(const char *name);
void (*RowSelectionHook)();

namespace {

constexpr const char *TOO_MANY_ROWS = "Too many waveforms displayed";

bool IsRow(uint32_t row) {
    return row < WaveView.RowCount;
}

void LogRowInserted(uint32_t row) {
    LogRow(1, WaveRows[row].PatternId, static_cast<uint16_t>(row));
}
void LogRowRemoved(uint32_t row) {
    LogRow(0, WaveRows[row].PatternId, static_cast<uint16_t>(row));
}

int BindNet(const char *member, void *context) {
    auto *row = static_cast<WaveRow *>(context);
    uint32_t count = row->netCount();
    if (count >= MAX_NETS) return 1;
    row->NetHandles[count] = HierDisplayNetHook(member);
    row->setNetCount(count + 1);
    return 0;
}

void BindNets(uint32_t row) {
    const Pattern *pattern = RowPattern(row);
    if (!HierDisplayNetHook || !pattern) return;
    // The name is copied, as the link may call back into the store.
    char name[NAME_SIZE];
    snprintf(name, sizeof name, "%s", pattern->name());
    ForEachBusMember(name, BindNet, &WaveRows[row]);
}

void FillRow(uint32_t row, uint16_t patternId) {
    Pattern *pattern = PatternFromId(patternId);
    WaveRows[row] = {};
    WaveRows[row].PatternId = patternId;
    WaveRows[row].setIsWave(pattern->kind() == PatternKind::Plain);
    pattern->setChanged(true);
}

int32_t MeasureRowName(uint32_t row) {
    char text[ROW_TEXT_SIZE];
    MeasuredNameText(RowPattern(row), text);
    return TextWidth(text);
}

void RaiseNameTextWidth(uint32_t row) {
    SelectPicture(Pane::Name);
    WaveView.NameTextWidth = std::max(WaveView.NameTextWidth, MeasureRowName(row));
}

void UpdateRowBars() {
    UpdateRowScrollBar();
    UpdateNameScrollBar();
}

// Takes the row out of the table, and notes whether its name may have been the widest.
void RemoveRow(uint32_t row, bool &widestGone) {
    LogRowRemoved(row);
    if (!widestGone) widestGone = MeasureRowName(row) >= WaveView.NameTextWidth;
    std::copy(WaveRows + row + 1, WaveRows + WaveView.RowCount, WaveRows + row);
    WaveView.RowCount--;
}

void ShowRemoval(uint32_t firstRow, bool widestGone) {
    if (WaveView.RowCount == 0) {
        WaveView.NameTextWidth = 0;
    } else if (widestGone) {
        MeasureNameWidths();
    }
    UpdateRowBars();
    if (DisplayOpen) RepaintRowsFrom(firstRow);
}

void SetHighlight(uint32_t row, bool on) {
    if (WaveRows[row].highlighted() == on) return;
    WaveRows[row].setHighlighted(on);
    if (DisplayOpen) DrawRowName(row);
}

uint32_t FindRow(uint16_t patternId) {
    uint32_t row = 0;
    while (row < WaveView.RowCount && WaveRows[row].PatternId != patternId) row++;
    return row;
}

// Appends a row; false, after a message, if the table is full.
bool AppendRow(uint16_t patternId) {
    uint32_t row = WaveView.RowCount;
    if (row >= MAX_ROWS) {
        UserError(TOO_MANY_ROWS);
        return false;
    }
    FillRow(row, patternId);
    WaveView.RowCount++;
    BindNets(row);
    if (!DisplayOpen) return true;
    RaiseNameTextWidth(row);
    UpdateRowBars();
    LogRowInserted(row);
    return true;
}

// Copies the row to the end of the list, where the highlight goes with it.
void DuplicateRow(uint32_t row) {
    uint32_t copy = WaveView.RowCount;
    LogRow(1, WaveRows[row].PatternId, static_cast<uint16_t>(copy));
    WaveRows[copy] = WaveRows[row];
    WaveView.RowCount++;
    SetHighlight(row, false);
}

} // namespace

void AddWaveRow(uint16_t patternId, uint32_t position) {
    if (!WaveRows || !PatternInUse(patternId)) return;
    position = std::min(position, WaveView.RowCount);
    // The rows move before the limit is looked at; a full table has room for one more.
    std::copy_backward(WaveRows + position, WaveRows + WaveView.RowCount, WaveRows + WaveView.RowCount + 1);
    if (WaveView.RowCount >= MAX_ROWS) {
        UserError(TOO_MANY_ROWS);
        return;
    }
    WaveView.RowCount++;
    FillRow(position, patternId);
    if (DisplayOpen) {
        RaiseNameTextWidth(position);
        UpdateRowBars();
        RepaintRowsFrom(position);
        EnsureRowVisible(position);
        SelectRowOnly(position, true);
    }
    BindNets(position);
}

Pattern *ShowWaveByName(const char *name) {
    Pattern *pattern = FindPattern(name);
    if (!pattern || !WaveRows) return pattern;
    uint16_t id = pattern->id;
    uint32_t row = FindRow(id);
    if (row == WaveView.RowCount && !AppendRow(id)) return PatternFromId(id);
    if (DisplayOpen) {
        EnsureRowVisible(row);
        SelectRowHighlight(row, true);
    }
    return PatternFromId(id);
}

void ShowNewRow(uint16_t patternId) {
    if (WaveRows) AppendRow(patternId);
}

void DuplicateHighlightedRows() {
    uint32_t firstNew = WaveView.RowCount;
    for (uint32_t row = 0; row < firstNew; row++) {
        if (!WaveRows[row].highlighted()) continue;
        if (WaveView.RowCount >= MAX_ROWS) {
            UserError(TOO_MANY_ROWS);
            break;
        }
        DuplicateRow(row);
    }
    if (WaveView.RowCount == firstNew) return;
    WaveView.SelectRow = firstNew;
    WaveView.SelectRowLast = WaveView.RowCount - 1;
    RowSelectionChanged();
    if (!DisplayOpen) return;
    UpdateRowBars();
    RepaintRowsFrom(firstNew);
    EnsureRowVisible(WaveView.SelectRowLast);
}

void HideRow(uint32_t row) {
    if (!IsRow(row)) return;
    bool widestGone = false;
    RemoveRow(row, widestGone);
    WaveView.SelectRow = NO_ROW;
    RowSelectionChanged();
    ShowRemoval(row, widestGone);
}

void HideHighlightedRows() {
    uint32_t lowest = NO_ROW;
    bool widestGone = false;
    for (uint32_t row = WaveView.RowCount; row-- > 0;) {
        if (!WaveRows[row].highlighted()) continue;
        RemoveRow(row, widestGone);
        lowest = row;
    }
    DrawOverlay(false);
    WaveView.SelectRow = WaveView.RowCount;
    WaveView.SelectRowLast = WaveView.RowCount;
    WaveView.SelectActive = false;
    RowSelectionChanged();
    ShowRemoval(lowest, widestGone);
    DrawOverlay(true);
}

int32_t MeasureNameWidths() {
    if (!DisplayOpen) return WaveView.NameTextWidth;
    WaveView.NameTextWidth = 0;
    int held = LogHoldOpen(1);
    for (uint32_t row = 0; row < WaveView.RowCount; row++) RaiseNameTextWidth(row);
    LogHoldOpen(held);
    return WaveView.NameTextWidth;
}

void RebindNetHandles() {
    for (uint32_t row = 0; row < WaveView.RowCount; row++) BindNets(row);
}

void SelectRowOnly(uint32_t row, bool clearOthers) {
    WaveView.SelectRow = row;
    WaveView.SelectRowLast = row;
    SelectRowHighlight(row, clearOthers);
}

void SelectRowHighlight(uint32_t row, bool exclusive) {
    if (exclusive) {
        for (uint32_t other = 0; other < WaveView.RowCount; other++) {
            if (other != row) SetHighlight(other, false);
        }
        WaveView.SelectRow = row;
        WaveView.SelectRowLast = row;
    }
    if (row < WaveView.RowCount) SetHighlight(row, true);
    RowSelectionChanged();
}

void RowSelectionChanged() {
    if (RowSelectionHook) RowSelectionHook();
}
