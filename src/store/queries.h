// Questions about the store as a whole: lengths, names, uses.
#pragma once

#include "store/pattern.h"

// The items' length in time units, scaled by the node's clock, with the delay added. Fills the cache.
TimeVal PatternDuration(Pattern *pattern);
// Recomputes the items' length, in the items' units, and stores it.
TimeVal ItemsDuration(Pattern *pattern);
// The time units of one item time unit of a node: its clock's period if it has a format, else 1.
uint32_t PatternUnit(const Pattern *pattern);

// Computes the patterns whose cache is not valid and extends the span; returns the longest length seen.
TimeVal UpdateFullDuration();
// Spreads invalidation to all referring patterns first.
TimeVal ValidateDurations();
// The longest full length of all patterns.
TimeVal LongestPatternEnd();

// Told the longest length by UpdateFullDuration, so that the span can follow. Installed by the viewport.
extern void (*ExtendSpanHook)(TimeVal endTime);

// The pattern of this name, ignoring case, the highest id first; null if there is none.
Pattern *FindPattern(const char *name);
// Nonzero if some single name of `name` is one of a node's. Compares with case.
int IsNodeBusMember(const char *name);
// 1 if any record holds a reference item to `id`.
int IsPatternReferenced(uint16_t id);

// True if a reference from `pattern` to `target` would close a circle, or there is one among what `target`
// refers to.
bool WouldCloseCircle(uint16_t pattern, uint16_t target);
// The lowest id of a pattern that refers to itself, directly or through others, or 0.
uint16_t FindReferenceCircle();
