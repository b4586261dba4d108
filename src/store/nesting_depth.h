// How deep references nest in the store as it is.
#pragma once

#include "store/pattern.h"

// True if a reference from `pattern` to `target` would make a chain of more than MAX_NESTING references.
// There is no circle among them. A target that is not in use has no depth.
bool WouldNestTooDeep(uint16_t pattern, uint16_t target);
