// Nested patterns that hold a stretch of another one so that it can be scaled and repeated: made, and taken
// away when they no longer do anything. See range_edits.h on times and addresses.
#pragma once

#include "store/pattern.h"

// Turns the stretch from `from` up to `to` into one reference to a new unnamed pattern.
Pattern *WrapRange(Pattern *pattern, TimeVal from, TimeVal to, uint32_t scale, uint32_t repeat);
// Joins equal neighbours and dissolves wrappers that do nothing, all the way down. 1 if `pattern` itself was
// empty and unnamed and is gone, else 0.
int FlattenPattern(Pattern *pattern);
// Removes a reference, and the pattern that it alone owned.
void DeleteReference(Pattern *pattern, uint16_t index);
