// Actions that a hasty user might do to the document as it is, as lines of an edit script.
#pragma once

#include "unit/support/random_document.h"
#include <string>
#include <vector>

// The lines of one action: a gesture from the press to the release, or a single line. Most name what is there
// and hit near to edges. What leaves no record is not among them: a wave made of existing bits, and another
// pin type for a wave.
std::vector<std::string> RandomAction(Random &random);
