#include "store/queries.h"

#include "config/settings.h"
#include "store/mutators.h"
#include "store/name_index.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <bitset>
#include <vector>

void (*ExtendSpanHook)(TimeVal endTime) = nullptr;

namespace {

using IdSet = std::bitset<MAX_PATTERNS>;

void ExtendSpanTo(TimeVal endTime) {
    if (ExtendSpanHook) ExtendSpanHook(endTime);
}

TimeVal CachedItemsDuration(Pattern *pattern) {
    return pattern->durationValid() ? pattern->duration : ItemsDuration(pattern);
}

// Within a replay of the log a reference may name a pattern that is not in use; it counts as empty.
TimeVal LengthOfTarget(const PatternItem &item) {
    return PatternInUse(item.patternId()) ? CachedItemsDuration(PatternFromId(item.patternId())) : 0;
}

// One item after the other.
TimeVal SumOfItems(const Pattern *pattern) {
    TimeVal total = 0;
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference()) {
            total = TimeAdd(total, item.duration());
            continue;
        }
        TimeVal d = LengthOfTarget(item);
        if (d == TIME_FOREVER || item.repeat() == REPEAT_FOREVER) {
            total = TIME_FOREVER;
        } else if (total != TIME_FOREVER && d != 0) {
            total = TimeAdd(total, TimeMul(TimeMul(d, item.scale()), item.repeat()));
        }
    }
    return total;
}

bool IsNode(uint16_t id) {
    return PatternInUse(id) && PatternFromId(id)->hasProperties();
}

// Side by side: a bus exists as long as all of its members do.
TimeVal ShortestMember(const Pattern *pattern) {
    TimeVal total = pattern->itemCount ? TIME_FOREVER : 0;
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        TimeVal v = item.duration();
        if (item.isReference()) {
            TimeVal d = LengthOfTarget(item);
            if (IsNode(item.patternId())) d = PatternDuration(PatternFromId(item.patternId()));
            v = TimeMul(d, item.scale());
        }
        total = TimeMin(total, v);
    }
    return total;
}

// A pattern that ends in a repeat forever does not make the document endless.
bool EndsInRepeatForever(const Pattern *pattern) {
    if (pattern->itemCount == 0) return false;
    const PatternItem &last = pattern->item(pattern->itemCount - 1u);
    return last.isReference() && last.repeat() == REPEAT_FOREVER;
}

// The longest of `longest` and the pattern's full length, by the rule of the document's end.
TimeVal LongerOf(TimeVal longest, Pattern *pattern) {
    TimeVal d = PatternDuration(pattern);
    if (d == TIME_FOREVER) return EndsInRepeatForever(pattern) ? longest : TIME_FOREVER;
    return d > longest ? d : longest;
}

bool RefersToInvalid(const Pattern *pattern) {
    if (ReferenceItems[pattern->id] == 0) return false;
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference() || !PatternInUse(item.patternId())) continue;
        if (!PatternFromId(item.patternId())->durationValid()) return true;
    }
    return false;
}

// Whoever refers to a pattern whose length is not known does not know its own.
void SpreadForgotten() {
    DurationForgotten = false;
    bool again = true;
    while (again) {
        again = false;
        for (uint32_t id = 1; id <= HighestPatternId; ++id) {
            if (!PatternInUse(id)) continue;
            Pattern *pattern = PatternFromId(id);
            if (!pattern->durationValid() || !RefersToInvalid(pattern)) continue;
            pattern->setDurationValid(false);
            pattern->setChanged(true);
            again = true;
        }
    }
}

int IsMemberOfPlainNode(const char *member, void *) {
    return NameIndexVisitMember(
        member,
        [](Pattern *pattern, uint32_t, void *) {
            return pattern->hasProperties() && pattern->kind() == PatternKind::Plain;
        },
        nullptr);
}

// A walk over everything that a pattern refers to, deepest first, with a stack of its own. `done` keeps what
// has been walked to its end between walks. True if the walk meets `wanted`, or comes back to a pattern that
// it is inside of.
bool WalkReferences(uint16_t start, uint16_t wanted, IdSet &done) {
    struct Place {
        uint16_t id;
        uint32_t next;
    };
    IdSet inside;
    std::vector<Place> stack = {{start, 0}};
    inside.set(start);
    while (!stack.empty()) {
        Place &place = stack.back();
        const Pattern *pattern = PatternFromId(place.id);
        if (place.next == pattern->itemCount) {
            inside.reset(place.id);
            done.set(place.id);
            stack.pop_back();
            continue;
        }
        const PatternItem &item = pattern->item(place.next++);
        if (!item.isReference() || !PatternInUse(item.patternId())) continue;
        uint16_t target = item.patternId();
        if (target == wanted || inside.test(target)) return true;
        if (done.test(target)) continue;
        inside.set(target);
        stack.push_back({target, 0});
    }
    return false;
}

} // namespace

uint32_t PatternUnit(const Pattern *pattern) {
    if (pattern->format() == SignalFormat::None) return 1;
    uint32_t unit = pattern->clock() != 0 ? Settings.ClockMultiplier : 1;
    return unit * static_cast<uint32_t>(pattern->period);
}

TimeVal PatternDuration(Pattern *pattern) {
    TimeVal d = CachedItemsDuration(pattern);
    return TimeAdd(TimeMul(d, PatternUnit(pattern)), pattern->delay);
}

TimeVal ItemsDuration(Pattern *pattern) {
    // Whoever asks in the midst of an edit, to draw a row say, must not hide it from those that refer to the
    // pattern.
    if (DurationForgotten) SpreadForgotten();
    // The loader and the replay keep references free of circles; should there be one all the same, it ends
    // here, with a length of 0 for the way back.
    pattern->duration = 0;
    pattern->setDurationValid(true);
    TimeVal total = pattern->kind() == PatternKind::Plain ? SumOfItems(pattern) : ShortestMember(pattern);
    pattern->duration = total;
    return total;
}

TimeVal UpdateFullDuration() {
    TimeVal longest = 0;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id) || PatternFromId(id)->durationValid()) continue;
        longest = LongerOf(longest, PatternFromId(id));
    }
    ExtendSpanTo(longest);
    return longest;
}

TimeVal ValidateDurations() {
    SpreadForgotten();
    return UpdateFullDuration();
}

TimeVal LongestPatternEnd() {
    TimeVal longest = 0;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (PatternInUse(id)) longest = LongerOf(longest, PatternFromId(id));
    }
    return longest;
}

Pattern *FindPattern(const char *name) {
    uint16_t id = NameIndexFind(name);
    return id ? PatternFromId(id) : nullptr;
}

int IsNodeBusMember(const char *name) {
    return ForEachBusMember(name, IsMemberOfPlainNode, nullptr);
}

int IsPatternReferenced(uint16_t id) {
    for (uint32_t user = HighestPatternId; user >= 1; --user) {
        if (!PatternInUse(user)) continue;
        const Pattern *pattern = PatternFromId(user);
        if (ReferenceItems[pattern->id] == 0) continue;
        for (uint32_t i = 0; i < pattern->itemCount; ++i) {
            if (pattern->item(i).isReference() && pattern->item(i).patternId() == id) return 1;
        }
    }
    return 0;
}

bool WouldCloseCircle(uint16_t pattern, uint16_t target) {
    IdSet done;
    return pattern == target || (PatternInUse(target) && WalkReferences(target, pattern, done));
}

uint16_t FindReferenceCircle() {
    IdSet done;
    for (uint16_t id = 1; id <= HighestPatternId; ++id) {
        if (PatternInUse(id) && !done.test(id) && WalkReferences(id, 0, done)) return id;
    }
    return 0;
}
