#include "edit/browsers.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/cursor_readout.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/buses.h"
#include "edit/clipboard.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "shell/command_ids.h"
#include "shell/command_state.h"
#include "shell/mode_gestures.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

void ShowStrip(const char *format, const std::string &name) {
    char text[PROMPT_SIZE + NAME_SIZE];
    snprintf(text, sizeof text, format, name.c_str());
    ShowErrorStrip(text);
}

void TellLists(const std::string &name) {
    if (PatternListHook) PatternListHook(name.c_str());
}

// --- remove ---------------------------------------------------------------------------------------

void HideRowsOf(uint16_t id) {
    for (uint32_t row = WaveView.RowCount; row-- > 0;) {
        if (WaveRows[row].PatternId == id) HideRow(row);
    }
}

bool SelectionNames(uint16_t id) {
    const auto &frames = EditSelection.SelFrames;
    return std::any_of(frames.begin(), frames.begin() + EditSelection.SelDepth,
                       [id](const SelFrame &frame) { return frame.patternId == id; });
}

void RemovePattern(uint16_t id) {
    if (SelectionNames(id)) ClearSelection();
    HideRowsOf(id);
    Pattern *pattern = PatternFromId(id);
    while (pattern->itemCount > 0) DeleteItem(pattern, static_cast<uint16_t>(pattern->itemCount - 1));
    DeletePattern(pattern);
}

// --- insert ---------------------------------------------------------------------------------------

bool SelectionTakesPattern() {
    switch (EditSelection.SelKind) {
    case SEL_EDGE:
    case SEL_WHOLE:
    case SEL_PULSE:
    case SEL_PATTERN:
    case SEL_SPAN:
        return true;
    default:
        return false;
    }
}

// Selects the place where the piece that was inserted ends, on the selected row's wave.
void GoBehind(TimeVal end) {
    DrawOverlay(false);
    SelectAtTime(end);
    WaveView.CursorTime = end;
    DrawOverlay(true);
}

// --- add ------------------------------------------------------------------------------------------

void DropLeadingDollars(std::string &name) {
    name.erase(0, name.find_first_not_of('$'));
}

void Canonicalize(std::string &name) {
    // A closing bracket may come behind.
    name.resize(name.size() + 2);
    CanonicalizeName(name.data());
    name.resize(strlen(name.c_str()));
}

// True if a file that has this canonical name in it reads as the same name.
bool CanBeSaved(const std::string &name) {
    auto endsToken = [&name](char c) { return c == ';' || (c == ')' && name[0] == '$'); };
    if (std::any_of(name.begin(), name.end(), endsToken)) return false;
    std::string again = name;
    Canonicalize(again);
    return again == name;
}

} // namespace

void ShowPatterns(std::span<const std::string> names) {
    int held = LogHoldOpen(1);
    for (const std::string &name : names) ShowWaveByName(name.c_str());
    LogHoldOpen(held);
    LogEndAction();
    RepaintChanged(false);
    ShowSelection();
}

bool MayRemovePatterns(std::span<const std::string> names) {
    for (const std::string &name : names) {
        const Pattern *pattern = FindPattern(name.c_str());
        bool first = &name == names.data();
        if (!pattern || (first && pattern->kind() != PatternKind::Plain)) continue;
        if (IsPatternReferenced(pattern->id)) return false;
    }
    return !names.empty();
}

void RemovePatterns(std::span<const std::string> names) {
    std::vector<std::string> removed;
    int held = LogHoldOpen(1);
    for (const std::string &name : names) {
        const Pattern *pattern = FindPattern(name.c_str());
        if (!pattern) continue;
        if (IsPatternReferenced(pattern->id)) {
            ShowStrip("Pattern %s used in other patterns", name);
        } else {
            RemovePattern(pattern->id);
            removed.push_back(name);
        }
    }
    LogHoldOpen(held);
    LogEndAction();
    ShowSelection();
    for (const std::string &name : removed) TellLists(name);
}

bool MayInsertPattern(const char *name) {
    const Pattern *pattern = FindPattern(name);
    const Pattern *selected = SelectedPattern();
    if (!pattern || pattern->hasProperties() || !selected) return false;
    return CommandState.CurrentCommand == COMMAND_EDIT_MODE && SelectionTakesPattern() &&
           pattern->width == selected->width;
}

void InsertPattern(const char *name) {
    Pattern *pattern = FindPattern(name);
    if (!pattern) return;
    int held = LogHoldOpen(1);
    TimeVal length = TimeMul(PatternDuration(pattern), EditSelection.SelScale);
    TimeVal end = TimeAdd(DeepestFrame().start, length);
    int placed = PasteAtSelection(pattern->id);
    LogEndAction();
    if (placed) {
        GoBehind(end);
        ShowCursorReadout();
        ShowSelection();
    }
    LogHoldOpen(held);
}

std::string NewWaveName(std::string_view text, int kind) {
    std::string name(text.substr(0, NEW_WAVE_NAME_LIMIT));
    if (name.empty()) return name;
    DropLeadingDollars(name);
    if (kind == NEW_WAVE_PATTERN) {
        std::string rest = name;
        Canonicalize(rest);
        return rest.empty() ? rest : "$" + name;
    }
    Canonicalize(name);
    // What stood in front of them may have been no part of the name.
    DropLeadingDollars(name);
    return name;
}

bool AddNewWave(std::string_view text, int kind) {
    std::string name = NewWaveName(text, kind);
    Canonicalize(name);
    if (name.empty()) return false;
    if (!CanBeSaved(name)) {
        ShowStrip("The name %s cannot be saved in a file", name);
        return false;
    }
    // A closing bracket may come behind.
    name.resize(name.size() + 2);
    const Pattern *pattern =
        FindOrCreateNode(name.data(), kind == NEW_WAVE_PATTERN ? 0 : static_cast<uint32_t>(kind));
    if (pattern) {
        ShowWaveByName(name.c_str());
        // One that was there may have got other parameters.
        ValidateDurations();
        RepaintChanged(false);
        TellLists(name.c_str());
        ShowSelection();
    }
    LogEndAction();
    return pattern != nullptr;
}
