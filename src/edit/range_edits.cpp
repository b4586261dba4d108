#include "edit/range_edits.h"

#include "edit/walker.h"
#include "edit/wrappers.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <vector>

namespace {

TimeVal CachedLength(Pattern *pattern) {
    return pattern->durationValid() ? pattern->duration : ItemsDuration(pattern);
}

void RemoveItem(Pattern *pattern, uint16_t index) {
    if (pattern->item(index).isReference())
        DeleteReference(pattern, index);
    else
        DeleteItem(pattern, index);
}

uint16_t LastIndex(const Pattern *pattern) {
    return static_cast<uint16_t>(pattern->itemCount - 1);
}

uint16_t After(uint16_t index) {
    return static_cast<uint16_t>(index + 1);
}

uint16_t Before(uint16_t index) {
    return static_cast<uint16_t>(index - 1);
}

bool EndsWithForever(const Pattern *pattern) {
    const PatternItem &last = pattern->item(LastIndex(pattern));
    return last.isReference() && last.repeat() == REPEAT_FOREVER;
}

// A walk over the items from the last to the first: an item, its start, and its end. An endless tail ends
// with time, even where one repetition takes none.
class ItemPlace {
public:
    ItemPlace(const Pattern *pattern, bool endless) {
        uint64_t place = 0;
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            starts.push_back(place);
            place += ItemLength(pattern->item(i));
        }
        end = endless ? std::max<uint64_t>(place, TIME_FOREVER) : place;
        index = LastIndex(pattern);
        start = starts[index];
    }
    void moveDown() {
        end = start;
        start = starts[--index];
    }
    bool holds(uint64_t place) const { return place > start && place < end; }

    uint16_t index;
    uint64_t start, end;

private:
    std::vector<uint64_t> starts;
};

bool IsData(const Pattern *pattern, uint16_t index) {
    return index < pattern->itemCount && !pattern->item(index).isReference();
}

// Cuts the data item in two at `time`, which lies inside it. There is room for the new one.
Pattern *CutItem(Pattern *pattern, const ItemPlace &place, uint64_t time) {
    uint32_t value = pattern->item(place.index).value();
    SetItemDuration(pattern, place.index, static_cast<TimeVal>(time - place.start));
    return InsertTransition(pattern, After(place.index), value, static_cast<TimeVal>(place.end - time));
}

// Room for the pieces that the two ends of a range are cut into, before anything is changed. Pieces that come
// into the place of items that go need none, nor does the one item that may come into the range's.
Pattern *MakeRoomForCuts(Pattern *pattern, const ItemPlace &last, TimeVal from, uint64_t to) {
    if (!IsData(pattern, last.index)) return pattern;
    size_t cuts = (last.holds(to) ? 1 : 0) + (last.start < from ? 1 : 0);
    return cuts == 0 ? pattern : PatternAlloc(pattern->id, static_cast<uint32_t>(cuts * sizeof(PatternItem)));
}

uint32_t ValueJustBefore(Pattern *root, TimeVal time) {
    return time == 0 ? 0 : PatternValueAt(root, time - 1, false);
}

void MoveLeftEdge(Pattern *root, Pattern *pattern, uint16_t index, TimeVal from, uint32_t steps, int insert) {
    if (index > 0 && IsData(pattern, Before(index))) {
        AddItemDuration(pattern, Before(index), steps);
        if (!insert) AddItemDuration(pattern, index, 0 - steps);
        return;
    }
    // There is no neighbour that could give time.
    uint32_t value = ValueJustBefore(root, from);
    if (pattern->item(index).value() == value || static_cast<int32_t>(steps) < 0) return;
    pattern = InsertTransition(pattern, index, value, steps);
    if (pattern && !insert) AddItemDuration(pattern, After(index), 0 - steps);
}

void MoveRightEdge(Pattern *root, Pattern *pattern, uint16_t index, TimeVal from, uint32_t steps,
                   int insert) {
    bool hasNeighbour = IsData(pattern, After(index));
    if (hasNeighbour || insert || from >= PatternDuration(root)) {
        AddItemDuration(pattern, index, steps);
        if (hasNeighbour && !insert) AddItemDuration(pattern, After(index), 0 - steps);
        return;
    }
    uint32_t value = PatternValueAt(root, TimeAdd(from, 1), false);
    if (pattern->item(index).value() == value || static_cast<int32_t>(steps) > 0) return;
    pattern = InsertTransition(pattern, After(index), value, 0 - steps);
    if (pattern) AddItemDuration(pattern, index, steps);
}

} // namespace

TimeVal ItemLength(const PatternItem &item) {
    if (!item.isReference()) return item.duration();
    if (!PatternInUse(item.patternId())) return 0;
    return PatternFromId(item.patternId())->duration * item.scale() * item.repeat();
}

uint32_t NextValue(const Pattern *pattern, uint32_t value) {
    if (!pattern->isBus()) return value == 0 ? 1 : 0;
    uint32_t mask = pattern->width >= 32 ? 0xFFFFFFFF : (1u << pattern->width) - 1;
    return (value + 1) & mask;
}

Pattern *DeleteRange(Pattern *pattern, TimeVal from, TimeVal to) {
    if (pattern->itemCount == 0) return pattern;
    uint64_t behind = PlaceOfEnd(to);
    bool endless = CachedLength(pattern) == TIME_FOREVER && EndsWithForever(pattern);
    ItemPlace place(pattern, endless);
    if (endless && behind > place.start) {
        // The endless tail goes whole, and the range ends with what remains.
        RemoveItem(pattern, place.index);
        TimeVal rest = ItemsDuration(pattern);
        // Those that refer to the pattern do not know yet.
        ForgetDuration(pattern);
        if (rest <= from) return pattern;
        behind = UINT64_MAX;
        place = ItemPlace(pattern, false);
    }
    // An item of no length that stands at the end of the stretch goes with it.
    while (behind <= place.start && behind < place.end && place.index > 0) place.moveDown();
    pattern = MakeRoomForCuts(pattern, place, from, behind);
    if (!pattern) return nullptr;
    if (place.holds(behind) && IsData(pattern, place.index)) {
        pattern = CutItem(pattern, place, behind);
        place.end = behind;
    }
    while (place.start > from) {
        RemoveItem(pattern, place.index);
        place.moveDown();
    }
    if (place.start < from) {
        // A reference is taken out whole or not at all.
        if (!IsData(pattern, place.index)) return pattern;
        pattern = CutItem(pattern, place, from);
        place.index = After(place.index);
    }
    RemoveItem(pattern, place.index);
    return pattern;
}

void SplitItem(Pattern *pattern, uint16_t index, TimeVal offset, TimeVal length, int insert) {
    if (length == 0 || !IsData(pattern, index)) return;
    uint32_t value = pattern->item(index).value();
    TimeVal behind = pattern->item(index).duration() - offset;
    if (offset > pattern->item(index).duration() || (!insert && length > behind)) return;
    // For both items at once: half a pulse would shift what is behind it.
    pattern = PatternAlloc(pattern->id, 2 * sizeof(PatternItem));
    if (!pattern) return;
    pattern = InsertTransition(pattern, After(index), NextValue(pattern, value), length);
    pattern = InsertTransition(pattern, After(After(index)), value, insert ? behind : behind - length);
    SetItemDuration(pattern, index, offset);
}

void MoveEdge(Pattern *root, Pattern *pattern, uint16_t index, int right, TimeVal from, TimeVal to,
              TimeVal unit, int insert) {
    if (unit == 0 || !IsData(pattern, index)) return;
    int64_t steps = (static_cast<int64_t>(to) - static_cast<int64_t>(from)) / unit;
    if (steps == 0) return;
    if (right)
        MoveRightEdge(root, pattern, index, from, static_cast<uint32_t>(steps), insert);
    else
        MoveLeftEdge(root, pattern, index, from, static_cast<uint32_t>(steps), insert);
}

Pattern *ExtendPattern(Pattern *pattern, TimeVal time, TimeVal units) {
    if (units == 0) return pattern;
    uint32_t value = NextValue(pattern, PatternValueAt(pattern, time, false));
    Pattern *extended = InsertTransition(pattern, pattern->itemCount, value, units);
    return extended ? extended : pattern;
}

void ReplaceRange(Pattern *pattern, TimeVal from, TimeVal to, uint16_t index, uint32_t value) {
    pattern = DeleteRange(pattern, from, to);
    if (!pattern) return;
    if (index > pattern->itemCount) index = pattern->itemCount;
    pattern = InsertTransition(pattern, index, value, std::min(to - from, MAX_ITEM_DURATION));
    if (!pattern) return;
    MergeItems(pattern, index);
    if (index != 0) MergeItems(pattern, Before(index));
}
