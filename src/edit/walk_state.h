// The walk in progress, shared by the two halves of the walker: items one after the other, and the channels
// of composites.
#pragma once

#include "edit/walker.h"
#include "store/pattern_store.h"

struct WalkStateRecord {
    WalkSegment segment;
    uint32_t WalkFlags;
    TimeVal Cursor;      // the running time
    const Pattern *Root; // the pattern that the walk began at
    WalkCallback Callback;
    TimeVal To;        // end of the window, at most Total
    uint32_t Format;   // the SignalFormat in force at the present depth
    TimeVal Total;     // full length of the root
    TimeVal From;      // start of the window, below Total
    TimeVal MinDetail; // shorter items are not told apart
    int Answer;        // the callback's last one, 1 without any
    uint32_t Behind;   // references that got their turn behind the window
};
// One walk at a time. Written by the walker alone.
extern WalkStateRecord WalkState;

// Hands the segment from `start` to `end` to the callback; `kind` is SegLevel, SegBlock or SegCoarse. The
// value is what the segment holds. True if the walk goes on.
inline bool DeliverSegment(uint32_t kind, TimeVal start, TimeVal end, TimeVal length) {
    WalkSegment &segment = WalkState.segment;
    segment.start = start;
    segment.end = end;
    segment.length = length;
    segment.segFlags = end >= WalkState.To ? kind | SegLast : kind;
    WalkState.Answer = WalkState.Callback(&segment);
    return WalkState.Answer != 0;
}

// The pattern that a reference item uses, or null for an id that no record bears.
inline const Pattern *ReferredPattern(const PatternItem &item) {
    return PatternInUse(item.patternId()) ? PatternFromId(item.patternId()) : nullptr;
}

// What is left of a reference item's repetitions.
struct Repetitions {
    TimeVal one;    // length of one; 0 takes no time at all and is passed over
    TimeVal all;    // length of all that are left
    uint16_t count; // REPEAT_FOREVER stays
};

// `unit` is the scale of the item's own use times the unit around it.
inline Repetitions RepetitionsOf(const PatternItem &item, const Pattern *target, TimeVal unit) {
    TimeVal one = TimeMul(target->duration, unit);
    bool forever = item.repeat() == REPEAT_FOREVER;
    return {one, forever ? TIME_FOREVER : TimeMul(one, item.repeat()), item.repeat()};
}

// Drops the repetitions that end at or before the window when the first one begins at `time`; returns the
// time at which the first of the rest begins.
inline TimeVal SkipRepetitions(Repetitions &left, TimeVal time) {
    if (time >= WalkState.From) return time;
    TimeVal skipped = (WalkState.From - time) / left.one;
    TimeVal length = skipped * left.one;
    if (left.count != REPEAT_FOREVER) {
        left.count = static_cast<uint16_t>(left.count - skipped);
        left.all -= length;
    }
    return time + length;
}

// How a clocked format divides a period.
struct ClockPhases {
    TimeVal period;
    TimeVal high; // the part that shows the value

    // True if there is a second part with the other value.
    bool divided() const { return high != 0 && high < period; }
};
inline ClockPhases PhasesOf(const Pattern *node, uint32_t period) {
    return {period, node->duty * period / 100};
}

// All ones over `width` bits; a width that is a multiple of 32 gives the whole word.
constexpr uint32_t BitMask(uint32_t width) {
    return 0xFFFFFFFFu >> ((32 - width) % 32);
}

// Walks the members of a composite side by side. True if the walk goes on.
bool WalkComposite(const Pattern *pattern, TimeVal unit);
