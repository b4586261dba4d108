// Flattens a pattern into segments of a value each, over a window of time, without building the list.
#pragma once

#include "store/pattern.h"

enum SegFlags : uint32_t {
    SegLast = 1,   // `end` has reached the pattern's total time or the end of the window
    SegBlock = 2,  // one repetition of the named nested pattern `pattern`
    SegLevel = 4,  // a level
    SegCoarse = 16 // finer than the detail limit: activity, not a single value
};

struct WalkSegment {
    TimeVal start;
    TimeVal end;
    TimeVal length;
    uint32_t value;
    uint32_t segFlags;
    const Pattern *pattern; // meaningful with SegBlock
};

enum WalkFlag : uint32_t {
    WalkNames = 1, // report each repetition of a named nested pattern as a block
    WalkWaves = 2, // show the inside of named nested patterns too
    WalkSync = 8,  // expand the clocked formats into their phases
};

// Answers nonzero to go on. It must not change the store or start another walk.
using WalkCallback = int (*)(const WalkSegment *segment);

// Calls back for each segment of `pattern` within `from` to `to`, in rising time order; the first and last
// may reach beyond. Items shorter than `minDetail` are not told apart. All times in time units. Returns the
// last answer of the callback, 1 without any, 0 for a pattern of no length.
int WalkPattern(WalkCallback callback, Pattern *pattern, TimeVal from, TimeVal to, uint32_t flags,
                TimeVal minDetail);

// The value at `time`; with `sync` the one that a clocked format gives at that moment.
uint32_t PatternValueAt(Pattern *pattern, TimeVal time, bool sync);

// The pattern that the walk in progress began at.
const Pattern *WalkRoot();
