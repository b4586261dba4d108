// How deep references nest in the store as it is.
#pragma once

#include "store/pattern.h"

// True if a reference from `pattern` to `target` would make a chain of more than MAX_NESTING references.
// There is no circle among them. A target that is not in use has no depth.
bool WouldNestTooDeep(uint16_t pattern, uint16_t target);

// True if there is such a chain through the pattern.
bool NestsTooDeep(uint16_t pattern);
// True if a reference from `pattern`, which is in use, to `target` closes no circle and makes no such chain.
// Asked for one reference behind the other, as each is made: that takes no longer than making it.
bool MayRefer(uint16_t pattern, uint16_t target);
// A reference has been made; many may have come otherwise. The next MayRefer looks at all of them.
void ReferenceMade(uint16_t pattern, uint16_t target);
void ForgetNesting();
