// Actions that a hasty user might do to the document as it is, as lines of an edit script.
#pragma once

#include "unit/support/random_document.h"
#include <string>
#include <vector>

// The lines of one action: a gesture from the press to the release, or a single line. Most name what is there
// and hit near to edges. What the log holds in part is not among them: a bus made of existing bits.
std::vector<std::string> RandomAction(Random &random);
