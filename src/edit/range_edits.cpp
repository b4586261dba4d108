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
    if (pattern->itemCount == 0) return false;
    const PatternItem &last = pattern->item(LastIndex(pattern));
    return last.isReference() && last.repeat() == REPEAT_FOREVER;
}

// A walk over the items from the last to the first: an item, its start, and its end.
class ItemPlace {
public:
    explicit ItemPlace(const Pattern *pattern) {
        uint64_t place = 0;
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            starts.push_back(place);
            place += ItemLength(pattern->item(i));
        }
        end = place;
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

// Cuts the data item in two at `time`, which lies inside it. Without room nothing is cut, and null is
// returned.
Pattern *CutItem(Pattern *pattern, const ItemPlace &place, uint64_t time) {
    uint32_t value = pattern->item(place.index).value();
    auto first = static_cast<TimeVal>(time - place.start);
    auto second = static_cast<TimeVal>(place.end - time);
    pattern = InsertTransition(pattern, After(place.index), value, second);
    if (pattern) SetItemDuration(pattern, place.index, first);
    return pattern;
}

bool IsData(const Pattern *pattern, uint16_t index) {
    return index < pattern->itemCount && !pattern->item(index).isReference();
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
    if (CachedLength(pattern) == TIME_FOREVER && EndsWithForever(pattern)) {
        // The endless tail goes whole, and the range ends with what remains.
        RemoveItem(pattern, LastIndex(pattern));
        to = TIME_FOREVER;
        TimeVal rest = ItemsDuration(pattern);
        // Those that refer to the pattern do not know yet.
        ForgetDuration(pattern);
        if (rest <= from) return pattern;
    }
    if (pattern->itemCount == 0) return pattern;
    ItemPlace place(pattern);
    uint64_t behind = PlaceOfEnd(to);
    // An item of no length that stands at the end of the stretch goes with it.
    while (behind <= place.start && behind < place.end && place.index > 0) place.moveDown();
    if (place.holds(behind) && IsData(pattern, place.index)) {
        Pattern *cut = CutItem(pattern, place, behind);
        if (!cut) return PatternFromId(pattern->id);
        pattern = cut;
        place.end = behind;
    }
    while (place.start > from) {
        RemoveItem(pattern, place.index);
        place.moveDown();
    }
    if (place.start < from) {
        // A reference is taken out whole or not at all.
        if (!IsData(pattern, place.index)) return pattern;
        Pattern *cut = CutItem(pattern, place, from);
        if (!cut) return pattern;
        pattern = cut;
        place.index = After(place.index);
    }
    if (place.index < pattern->itemCount) RemoveItem(pattern, place.index);
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
    if (pattern) {
        auto second = static_cast<uint16_t>(index + 2);
        pattern = InsertTransition(pattern, second, value, insert ? behind : behind - length);
    }
    if (pattern) SetItemDuration(pattern, index, offset);
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
    if (index > pattern->itemCount) index = pattern->itemCount;
    pattern = InsertTransition(pattern, index, value, std::min(to - from, MAX_ITEM_DURATION));
    if (!pattern) return;
    MergeItems(pattern, index);
    if (index != 0) MergeItems(pattern, Before(index));
}
