#include "unit/support/log_session.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstdio>

namespace {

constexpr uint32_t MOST_ITEMS = 40;
constexpr uint32_t MOST_PATTERNS = 60;

// A pattern in use, or null for an id that is not.
Pattern *AnyPattern(Random &random) {
    uint32_t id = 1 + random.below(HighestPatternId);
    return PatternInUse(id) ? PatternFromId(id) : nullptr;
}

// A name that no pattern bears, of a node or, with a "$", of a part.
std::string NewName(Random &random, char first) {
    char name[16];
    do {
        snprintf(name, sizeof name, "%c%06u", first, random.below(1000000));
    } while (FindPattern(name));
    return name;
}

bool IsShown(uint16_t id) {
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        if (WaveRows[row].PatternId == id) return true;
    }
    return false;
}

void ChangeItem(Random &random, Pattern *pattern) {
    auto index = static_cast<uint16_t>(random.below(pattern->itemCount));
    if (!pattern->item(index).isReference()) {
        if (random.once(2)) SetItemValue(pattern, index, random.below(4));
        SetItemDuration(pattern, index, random.below(1000));
        return;
    }
    SetItemRepeat(pattern, index, random.below(10));
    if (random.once(2)) SetItemScale(pattern, index, random.below(10));
    if (random.once(2)) SetItemFormat(pattern, index, random.below(5));
}

void InsertItem(Random &random, Pattern *pattern) {
    auto index = static_cast<uint16_t>(random.below(pattern->itemCount + 1u));
    const Pattern *target = AnyPattern(random);
    if (target && random.once(3) && !WouldCloseCircle(pattern->id, target->id)) {
        InsertReference(pattern, pattern->kind(), index, target->id, 1 + random.below(3), 1 + random.below(5),
                        random.below(4), random.below(4), random.below(5));
    } else if (pattern->kind() == PatternKind::Plain) {
        InsertTransition(pattern, index, random.below(4), 1 + random.below(500));
    }
}

void ChangeNode(Random &random, Pattern *pattern) {
    SetPatternDelay(pattern, random.below(100));
    if (random.once(2)) {
        SetPatternParams(pattern, 0, random.below(5), random.below(5), static_cast<int32_t>(random.below(50)),
                         random.below(101), random.below(16));
    }
}

void RemovePattern(Pattern *pattern) {
    uint16_t id = pattern->id;
    if (IsShown(id) || IsPatternReferenced(id)) return;
    while (PatternFromId(id)->itemCount > 0) {
        DeleteItem(PatternFromId(id), static_cast<uint16_t>(PatternFromId(id)->itemCount - 1));
    }
    DeletePattern(PatternFromId(id));
}

void AddPattern(Random &random) {
    if (HighestPatternId > MOST_PATTERNS) return;
    std::string name = random.once(3) ? "" : NewName(random, random.once(2) ? '$' : 'N');
    Pattern *pattern = CreatePattern(0, name.c_str(), 1);
    if (pattern) InsertItem(random, pattern);
}

void ChangeRows(Random &random, const Pattern *pattern) {
    if (random.once(2) && WaveView.RowCount > 0) {
        HideRow(random.below(WaveView.RowCount));
    } else if (pattern->nameLength) {
        ShowWaveByName(pattern->name());
    }
}

void ChangeTiming(Random &random) {
    auto end = static_cast<uint16_t>(random.below(60000));
    auto multiplier = static_cast<uint16_t>(1 + random.below(20));
    LogTiming(static_cast<uint16_t>(Settings.BasicUnit * 4 + Settings.Decimals), 9 * 4 + 2,
              static_cast<uint16_t>(Settings.ClockMultiplier), multiplier,
              static_cast<uint16_t>(Settings.EndTime), end);
    Settings.BasicUnit = 9;
    Settings.Decimals = 2;
    Settings.ClockMultiplier = multiplier;
    Settings.EndTime = end;
}

void Change(Random &random) {
    Pattern *pattern = AnyPattern(random);
    if (!pattern) return;
    switch (random.below(12)) {
    case 0:
        ChangeNode(random, pattern);
        break;
    case 1:
        AddPattern(random);
        break;
    case 2:
        RemovePattern(pattern);
        break;
    case 3:
        if (pattern->nameLength) RenamePattern(pattern, NewName(random, *pattern->name()).c_str());
        break;
    case 4:
        ChangeRows(random, pattern);
        break;
    case 5:
        ChangeTiming(random);
        break;
    case 6:
    case 7:
        if (pattern->itemCount > 0) ChangeItem(random, pattern);
        break;
    case 8:
        if (pattern->itemCount > 0) {
            DeleteItem(pattern, static_cast<uint16_t>(random.below(pattern->itemCount)));
        }
        break;
    default:
        if (pattern->itemCount < MOST_ITEMS) InsertItem(random, pattern);
        break;
    }
}

} // namespace

void BuildSessionDocument() {
    Settings.EndTime = 50000;
    uint16_t part = MakePattern("$000001", {{0, 5}, {1, 7}});
    uint16_t clock = MakePattern("N000002", {{0, 10}, {1, 10}});
    uint16_t node = MakePattern("N000003", {{2, 40}});
    AddReference(node, {part, 2, 3});
    uint16_t bus = MakePattern("N000004");
    AddReference(bus, {clock}, PatternKind::Composite);
    AddReference(bus, {node}, PatternKind::Composite);
    for (uint16_t id : {clock, node}) AddWaveRow(id, MAX_ROWS);
}

void SessionAction(Random &random) {
    for (uint32_t left = 1 + random.below(4); left > 0; left--) Change(random);
    LogEndAction();
}

std::string SessionText() {
    std::string text = StoreText() + "rows";
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        text += " " + std::to_string(WaveRows[row].PatternId);
    }
    return text + "\nunit " + std::to_string(Settings.BasicUnit) + " decimals " +
           std::to_string(Settings.Decimals) + " clock " + std::to_string(Settings.ClockMultiplier) +
           " end " + std::to_string(Settings.EndTime) + "\n";
}
