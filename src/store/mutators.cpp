#include "store/mutators.h"

#include "config/settings.h"
#include "editlog/log_records.h"
#include "store/name_index.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <algorithm>
#include <cstring>

namespace {

constexpr uint32_t SCALE_BITS = 0xFFFFu << 14;
constexpr uint32_t FORCED_FORMAT_BITS = 7u << 1;
// Bits of a reference item that have no meaning and stay as they are found.
constexpr uint32_t UNUSED_ITEM_BITS = 3u << 30;

void MarkTimesChanged(Pattern *pattern) {
    ForgetDuration(pattern);
    pattern->setChanged(true);
}

uint32_t Clamp16(uint32_t value) {
    return value & 0xFFFF;
}

LoggedParams ParamsOf(const Pattern *pattern) {
    return {static_cast<uint32_t>(pattern->period),      pattern->duty,
            static_cast<uint8_t>(pattern->stateTable()), static_cast<uint8_t>(pattern->clock()),
            static_cast<uint8_t>(pattern->format()),     static_cast<uint8_t>(pattern->pinType())};
}

bool SameParams(const LoggedParams &a, const LoggedParams &b) {
    return a.period == b.period && a.duty == b.duty && a.stateTable == b.stateTable && a.clock == b.clock &&
           a.format == b.format && a.pinType == b.pinType;
}

// The bytes that a record sets aside for a name.
uint32_t NameRoom(const char *name) {
    return *name ? static_cast<uint32_t>((strlen(name) + 1 + 3) & ~size_t{3}) : 0;
}

// Makes room for an item at `index`; the record has room for one more.
PatternItem *OpenItem(Pattern *pattern, uint16_t index) {
    PatternItem *items = pattern->items();
    if (index < pattern->itemCount) {
        memmove(items + index + 1, items + index, (pattern->itemCount - size_t{index}) * sizeof(PatternItem));
    }
    ++pattern->itemCount;
    return items + index;
}

} // namespace

bool DurationForgotten;

void ForgetDuration(Pattern *pattern) {
    pattern->setDurationValid(false);
    DurationForgotten = true;
}

int SetPatternDelay(Pattern *pattern, uint32_t delay) {
    if (pattern->delay == delay) return 0;
    LogDelay(pattern->id, pattern->delay, delay);
    pattern->delay = delay;
    MarkTimesChanged(pattern);
    return 1;
}

int SetPatternParams(Pattern *pattern, uint32_t stateTable, uint32_t pinType, uint32_t format, int32_t period,
                     uint32_t duty, uint32_t clock) {
    LoggedParams oldParams = ParamsOf(pattern);
    LoggedParams newParams = {static_cast<uint32_t>(period),         static_cast<uint16_t>(duty),
                              static_cast<uint8_t>(stateTable & 15), static_cast<uint8_t>(clock & 15),
                              static_cast<uint8_t>(format & 7),      static_cast<uint8_t>(pinType & 7)};
    if (SameParams(oldParams, newParams)) return 0;
    LogPatternParams(pattern->id, oldParams, newParams);
    pattern->setStateTable(newParams.stateTable);
    pattern->setPinType(newParams.pinType);
    pattern->setFormat(newParams.format);
    pattern->setClock(newParams.clock);
    pattern->period = period;
    pattern->duty = newParams.duty;
    MarkTimesChanged(pattern);
    return 1;
}

int SetItemValue(Pattern *pattern, uint16_t index, uint32_t value) {
    PatternItem &item = pattern->item(index);
    if (item.word1 == value) return 0;
    LogItemValue(pattern->id, index, item.word1, value);
    item.word1 = value;
    pattern->setChanged(true);
    return 1;
}

int SetItemDuration(Pattern *pattern, uint16_t index, uint32_t duration) {
    PatternItem &item = pattern->item(index);
    if (item.duration() == duration) return 0;
    LogItemDuration(pattern->id, index, item.duration(), duration);
    item.word0 = (item.word0 & 1) | (duration << 1);
    MarkTimesChanged(pattern);
    return 1;
}

int AddItemDuration(Pattern *pattern, uint16_t index, uint32_t delta) {
    return SetItemDuration(pattern, index, pattern->item(index).duration() + delta);
}

int SetItemRepeat(Pattern *pattern, uint16_t index, uint32_t repeat) {
    PatternItem &item = pattern->item(index);
    auto count = static_cast<uint16_t>(Clamp16(repeat) == 0 ? 1 : repeat);
    if (item.repeat() == count) return 0;
    LogItemRepeat(pattern->id, index, item.repeat(), count);
    item.word1 = item.patternId() | static_cast<uint32_t>(count) << 16;
    MarkTimesChanged(pattern);
    return 1;
}

int SetItemScale(Pattern *pattern, uint16_t index, uint32_t scale) {
    PatternItem &item = pattern->item(index);
    uint32_t factor = Clamp16(scale) == 0 ? 1 : Clamp16(scale);
    if (item.scale() == factor) return 0;
    LogItemScale(pattern->id, index, static_cast<uint16_t>(item.scale()), static_cast<uint16_t>(factor));
    item.word0 = (item.word0 & ~SCALE_BITS) | factor << 14;
    MarkTimesChanged(pattern);
    return 1;
}

int SetItemFormat(Pattern *pattern, uint16_t index, uint32_t format) {
    PatternItem &item = pattern->item(index);
    uint32_t forced = format & 7;
    if (item.forcedFormat() == forced) return 0;
    LogItemFormat(pattern->id, index, static_cast<uint8_t>(item.forcedFormat()),
                  static_cast<uint8_t>(forced));
    item.word0 = (item.word0 & ~FORCED_FORMAT_BITS) | forced << 1;
    MarkTimesChanged(pattern);
    return 1;
}

Pattern *InsertTransition(Pattern *pattern, uint16_t index, uint32_t value, uint32_t duration) {
    pattern = PatternAlloc(pattern->id);
    if (!pattern) return nullptr;
    index = std::min(index, pattern->itemCount);
    LogTransition(1, pattern->id, index, value, duration);
    PatternItem *item = OpenItem(pattern, index);
    item->word0 = duration << 1;
    item->word1 = value;
    MarkTimesChanged(pattern);
    return pattern;
}

Pattern *InsertReference(Pattern *pattern, PatternKind kind, uint16_t index, uint16_t patternId,
                         uint32_t scale, uint32_t repeat, uint32_t sliceWidth, uint32_t sliceOffset,
                         uint32_t forcedFormat) {
    pattern = PatternAlloc(pattern->id);
    if (!pattern) return nullptr;
    index = std::min(index, pattern->itemCount);
    LogReference(1, pattern->id, static_cast<uint32_t>(kind), index, patternId, static_cast<uint16_t>(scale),
                 static_cast<uint16_t>(repeat), static_cast<uint8_t>(sliceWidth),
                 static_cast<uint8_t>(sliceOffset), static_cast<uint8_t>(forcedFormat));
    PatternItem *item = OpenItem(pattern, index);
    item->word0 = (item->word0 & UNUSED_ITEM_BITS) | Clamp16(scale) << 14 | (sliceWidth & 31) << 9 |
                  (sliceOffset & 31) << 4 | (forcedFormat & 7) << 1 | 1;
    item->word1 = patternId | Clamp16(repeat) << 16;
    pattern->setKind(kind);
    ++ReferenceItems[pattern->id];
    ReferenceMade(pattern->id, patternId);
    MarkTimesChanged(pattern);
    return pattern;
}

void DeleteItem(Pattern *pattern, uint16_t index) {
    const PatternItem item = pattern->item(index);
    if (item.isReference()) {
        LogReference(0, pattern->id, static_cast<uint32_t>(pattern->kind()), index, item.patternId(),
                     static_cast<uint16_t>(item.scale()), item.repeat(),
                     static_cast<uint8_t>(item.sliceWidth()), static_cast<uint8_t>(item.sliceOffset()),
                     static_cast<uint8_t>(item.forcedFormat()));
    } else {
        LogTransition(0, pattern->id, index, item.value(), item.duration());
    }
    DropItem(pattern, index);
    MarkTimesChanged(pattern);
}

void DropItem(Pattern *pattern, uint16_t index) {
    if (pattern->item(index).isReference()) --ReferenceItems[pattern->id];
    --pattern->itemCount;
    PatternItem *items = pattern->items();
    memmove(items + index, items + index + 1, (pattern->itemCount - size_t{index}) * sizeof(PatternItem));
}

bool CanMergeItems(const Pattern *pattern, uint16_t index) {
    if (index + 1u >= pattern->itemCount) return false;
    const PatternItem &first = pattern->item(index);
    const PatternItem &second = pattern->item(index + 1u);
    if (first.isReference() || second.isReference() || first.value() != second.value()) return false;
    return first.duration() <= MAX_ITEM_DURATION - second.duration();
}

int MergeItems(Pattern *pattern, uint16_t index) {
    if (!CanMergeItems(pattern, index)) return 0;
    auto next = static_cast<uint16_t>(index + 1);
    SetItemDuration(pattern, index, pattern->item(index).duration() + pattern->item(next).duration());
    DeleteItem(pattern, next);
    return 1;
}

void MergeAllItems(Pattern *pattern) {
    for (int index = pattern->itemCount - 2; index >= 0; --index) {
        MergeItems(pattern, static_cast<uint16_t>(index));
    }
}

Pattern *CreatePattern(uint32_t id, const char *name, uint32_t width) {
    uint32_t nameRoom = NameRoom(name);
    Pattern *pattern = PatternAlloc(id, nameRoom);
    // With the store full there may be a record all the same, but it is another one's.
    if (!pattern || TopPatternId == 0) return nullptr;
    bool isNode = *name != '\0' && *name != '$';
    pattern->free = 0;
    pattern->flags = 0;
    pattern->setHasProperties(isNode);
    pattern->setClock(isNode && Settings.AutoClockAssign ? 1 : 0);
    pattern->period = 1;
    pattern->delay = 0;
    pattern->duration = 0;
    pattern->MatchMask = 0;
    pattern->size = 0;
    pattern->duty = 50;
    pattern->itemCount = 0;
    ReferenceItems[pattern->id] = 0;
    pattern->nameLength = static_cast<uint16_t>(nameRoom);
    pattern->reserved = 0;
    if (nameRoom) {
        memset(pattern->nameBytes(), 0, nameRoom);
        memcpy(pattern->nameBytes(), name, strlen(name));
    }
    uint32_t members = nameRoom ? CountBusMembers(name) : width;
    pattern->width = static_cast<uint16_t>(members < 65535 ? members : 65535);
    pattern->setBus(pattern->width > 1);
    NameIndexAdd(pattern);
    LogPattern(1, pattern->id, static_cast<uint16_t>(width), name);
    return pattern;
}

uint16_t DeletePattern(Pattern *pattern) {
    // Into the log, so that an undo brings the parameters back; the 100 percent here are meant.
    SetPatternParams(pattern, 0, 0, 0, 1, 100, 0);
    if (pattern->delay != 0) SetPatternDelay(pattern, 0);
    LogPattern(0, pattern->id, pattern->width, pattern->name());
    return PatternRelease(pattern);
}

void RenamePattern(Pattern *pattern, const char *newName) {
    auto newLength = static_cast<int>(NameRoom(newName));
    int shift = newLength - pattern->nameLength;
    size_t extent = pattern->nameLength ? pattern->nameLength + pattern->itemCount * sizeof(PatternItem) : 0;
    if (shift != 0) {
        pattern = PatternAlloc(pattern->id, shift > 0 ? static_cast<uint32_t>(shift) : 0);
        if (!pattern) return;
    }
    NameIndexRemove(pattern);
    if (shift != 0) {
        char *items = reinterpret_cast<char *>(pattern->items());
        memmove(items + shift, items, pattern->itemCount * sizeof(PatternItem));
    }
    // Behind the move, so that an old name that lost its end to the items reads on into them; that is meant.
    // It ends with the record's old extent at the latest.
    LogRename(pattern->id, {pattern->nameBytes(), extent}, newName);
    pattern->nameLength = static_cast<uint16_t>(newLength);
    memset(pattern->nameBytes(), 0, static_cast<size_t>(newLength));
    memcpy(pattern->nameBytes(), newName, strlen(newName));
    NameIndexAdd(pattern);
    pattern->setChanged(true);
}
