#include "edit/wrappers.h"

#include "edit/range_edits.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include <algorithm>

namespace {

// Appends the piece of a pattern's item that lies between two times to `wrapper`. A reference goes in whole,
// and its target is marked, so that taking the stretch out does not destroy it. False without room.
bool CopyPiece(uint16_t wrapper, const PatternItem &item, TimeVal duration) {
    Pattern *target = PatternFromId(wrapper);
    if (!item.isReference())
        return InsertTransition(target, target->itemCount, item.value(), duration) != nullptr;
    if (!InsertReference(target, PatternKind::Plain, target->itemCount, item.patternId(), item.scale(),
                         item.repeat(), 0, 0, item.forcedFormat())) {
        return false;
    }
    if (PatternInUse(item.patternId())) PatternFromId(item.patternId())->setMoved(true);
    return true;
}

// Takes back what a wrapper without room has got.
void DropWrapper(uint16_t id) {
    Pattern *wrapper = PatternFromId(id);
    while (wrapper->itemCount > 0) {
        auto last = static_cast<uint16_t>(wrapper->itemCount - 1);
        uint16_t target = wrapper->item(last).isReference() ? wrapper->item(last).patternId() : 0;
        DeleteItem(wrapper, last);
        if (PatternInUse(target)) PatternFromId(target)->setMoved(false);
    }
    DeletePattern(wrapper);
}

// How many reference items there are to a pattern; more than one for an unnamed pattern only where a damaged
// log has made them. Such a pattern is left alone.
uint32_t CountReferences(uint16_t id) {
    uint32_t count = 0;
    for (uint16_t user = 1; user <= HighestPatternId; user++) {
        if (!PatternInUse(user) || ReferenceItems[user] == 0) continue;
        const Pattern *pattern = PatternFromId(user);
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            if (pattern->item(i).isReference() && pattern->item(i).patternId() == id) count++;
        }
    }
    return count;
}

bool DoesNothing(const PatternItem &item) {
    const Pattern *target = PatternFromId(item.patternId());
    return target->kind() == PatternKind::Plain && item.scale() == 1 && item.repeat() == 1 &&
           item.forcedFormat() == 0 && target->nameLength == 0;
}

// Puts the items of the reference's target in its place. False without room: the reference stands as it did.
bool Dissolve(uint16_t id, uint16_t index) {
    uint16_t target = PatternFromId(id)->item(index).patternId();
    uint16_t count = PatternFromId(target)->itemCount;
    // For all of them at once, so that it is all or nothing.
    if (!PatternAlloc(id, count * sizeof(PatternItem))) return false;
    DeleteItem(PatternFromId(id), index);
    for (int i = count - 1; i >= 0; i--) {
        const PatternItem item = PatternFromId(target)->item(static_cast<uint32_t>(i));
        Pattern *pattern = PatternFromId(id);
        if (item.isReference()) {
            InsertReference(pattern, PatternKind::Plain, index, item.patternId(), item.scale(), item.repeat(),
                            0, 0, item.forcedFormat());
        } else {
            MergeItems(InsertTransition(pattern, index, item.value(), item.duration()), index);
        }
    }
    Pattern *empty = PatternFromId(target);
    while (empty->itemCount > 0) DeleteItem(empty, static_cast<uint16_t>(empty->itemCount - 1));
    DeletePattern(empty);
    return true;
}

int FlattenTree(uint16_t id, uint32_t owners);

void FlattenItem(uint16_t id, uint16_t index) {
    Pattern *pattern = PatternFromId(id);
    // The members of a composite lie side by side: each is a channel, and stays one.
    bool composite = pattern->kind() == PatternKind::Composite;
    if (!pattern->item(index).isReference()) {
        if (!composite) MergeItems(pattern, index);
        return;
    }
    uint16_t target = pattern->item(index).patternId();
    if (!PatternInUse(target)) return;
    if (FlattenTree(target, 1)) {
        DeleteItem(PatternFromId(id), index);
    } else if (!composite && DoesNothing(PatternFromId(id)->item(index)) && CountReferences(target) == 1) {
        Dissolve(id, index);
    }
}

// FlattenPattern for a pattern that is referred to `owners` times, if at all.
int FlattenTree(uint16_t id, uint32_t owners) {
    for (int index = PatternFromId(id)->itemCount - 1; index >= 0; index--)
        FlattenItem(id, static_cast<uint16_t>(index));
    Pattern *pattern = PatternFromId(id);
    if (pattern->nameLength != 0 || pattern->itemCount != 0 || CountReferences(id) > owners) return 0;
    DeletePattern(pattern);
    return 1;
}

// Bytes by which the pattern grows, at most, while a stretch of it is wrapped.
constexpr uint32_t WRAP_ROOM = 2 * sizeof(PatternItem);

// What WrapRange makes of one item: its piece inside the stretch, and where the reference will stand.
struct Stretch {
    uint64_t from, to;
    uint16_t anchor;
};

// Takes the item at `index`, from `start` up to `end`, into the wrapper. False without room.
bool WrapItem(uint16_t id, uint16_t wrapper, uint16_t index, uint64_t start, uint64_t end, Stretch &stretch) {
    const PatternItem item = PatternFromId(id)->item(index);
    uint64_t cut = 0;
    if (!item.isReference()) {
        if (stretch.from > start) {
            // The stretch begins in this item, and what is in front of it stays.
            cut = stretch.from - start;
            stretch.anchor++;
        }
        // The later cut replaces the earlier one: no span begins and ends in one data item.
        if (stretch.to < end) cut = end - stretch.to;
    }
    return CopyPiece(wrapper, item, static_cast<TimeVal>(end - start - cut));
}

// Copies the stretch into the wrapper. False without room.
bool FillWrapper(uint16_t id, uint16_t wrapper, Stretch &stretch) {
    uint64_t start = 0;
    for (uint16_t index = 0; index < PatternFromId(id)->itemCount && start < stretch.to; index++) {
        const PatternItem &item = PatternFromId(id)->item(index);
        uint64_t end = start + ItemLength(item);
        // An endless tail goes with whatever ends behind its start, even where one repetition takes no time.
        bool last = index + 1 == PatternFromId(id)->itemCount;
        if (last && item.isReference() && item.repeat() == REPEAT_FOREVER)
            end = std::max<uint64_t>(end, TIME_FOREVER);
        // A reference is taken out whole or not at all.
        bool before = end <= stretch.from || (item.isReference() && start < stretch.from);
        if (before) {
            stretch.anchor = static_cast<uint16_t>(index + 1);
        } else if (!WrapItem(id, wrapper, index, start, end, stretch)) {
            return false;
        }
        start = end;
    }
    return true;
}

} // namespace

Pattern *WrapRange(Pattern *pattern, TimeVal from, TimeVal to, uint32_t scale, uint32_t repeat) {
    uint16_t id = pattern->id;
    // Room for what the two ends of the stretch are cut into, and for the reference in its place.
    if (!PatternAlloc(id, WRAP_ROOM)) return PatternFromId(id);
    Pattern *made = CreatePattern(0, "", PatternFromId(id)->width);
    if (!made) return PatternFromId(id);
    uint16_t wrapper = made->id;
    Stretch stretch = {from, PlaceOfEnd(to), 0};
    bool good = FillWrapper(id, wrapper, stretch);
    if (good && WouldNestTooDeep(id, wrapper)) {
        UserError("Patterns are nested too deeply");
        good = false;
    }
    // The wrapper may have taken the room.
    good = good && PatternAlloc(id, WRAP_ROOM);
    if (!good) {
        DropWrapper(wrapper);
        return PatternFromId(id);
    }
    DeleteRange(PatternFromId(id), from, to);
    return InsertReference(PatternFromId(id), PatternKind::Plain, stretch.anchor, wrapper, scale, repeat, 0,
                           0, 0);
}

int FlattenPattern(Pattern *pattern) {
    // One that is still in use stays, empty as it may be.
    return FlattenTree(pattern->id, 0);
}

void DeleteReference(Pattern *pattern, uint16_t index) {
    uint16_t id = pattern->item(index).patternId();
    DeleteItem(pattern, index);
    if (!PatternInUse(id)) return;
    Pattern *target = PatternFromId(id);
    if (target->moved()) {
        // It has only moved into a new wrapper.
        target->setMoved(false);
        return;
    }
    if (target->nameLength != 0 || CountReferences(id) != 0) return;
    while (target->itemCount > 0) {
        auto last = static_cast<uint16_t>(target->itemCount - 1);
        if (target->item(last).isReference())
            DeleteReference(target, last);
        else
            DeleteItem(target, last);
    }
    DeletePattern(target);
}
