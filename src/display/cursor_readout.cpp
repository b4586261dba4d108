#include "display/cursor_readout.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/walker.h"
#include "shell/command_ids.h"
#include "shell/frame.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include <string>

namespace {

Pattern *SelectedPattern() {
    // While the program ends there may be a selection but no rows any more.
    return WaveView.SelectRow < WaveView.RowCount ? RowPattern(WaveView.SelectRow) : nullptr;
}

std::string MarkDelta() {
    if (!WaveView.MarkActive) return "";
    // The two texts differ in their blanks, and are meant to.
    if (WaveView.MarkTime > WaveView.CursorTime) {
        return std::string("- Delta= -") + TimeFormat(WaveView.MarkTime - WaveView.CursorTime) + " ";
    }
    return std::string("- Delta = ") + TimeFormat(WaveView.CursorTime - WaveView.MarkTime) + " ";
}

std::string ClockCycle(const Pattern *pattern) {
    bool clocked = pattern->format() != SignalFormat::None && pattern->clock() != 0;
    uint32_t unit = clocked ? Settings.ClockMultiplier : 1;
    // Compared as 16 bits.
    if (static_cast<uint16_t>(unit) <= 1 || WaveView.CursorTime < pattern->delay) return "";
    return std::string("- Cycle = ") + TimePlainText(WaveView.CursorTime / unit) + " ";
}

std::string ValueAtCursor(Pattern *pattern) {
    uint32_t value = PatternValueAt(pattern, WaveView.CursorTime, Settings.ShowSyncActivity);
    if (pattern->isBus()) {
        char text[BUS_TEXT_SIZE] = "";
        return std::string("- Bus = ") + FormatBusValue(value, pattern->width, text, sizeof text);
    }
    const StateTable *table = StateTableOrDefault(pattern->stateTable());
    return std::string("- Level = ") + StateRowOf(table, value).stateName;
}

} // namespace

bool BusIsSelected() {
    const Pattern *pattern = SelectedPattern();
    return pattern && pattern->isBus() && pattern->kind() == PatternKind::Plain;
}

void ShowCursorReadout() {
    std::string line = std::string("Time = ") + TimeFormat(WaveView.CursorTime) + " " + MarkDelta();
    if (Pattern *pattern = SelectedPattern()) line += ClockCycle(pattern) + ValueAtCursor(pattern);
    SetPrompt(line.c_str());
    EnableCommand(COMMAND_EXPAND_BUS, BusIsSelected());
}
