// The text of the waveform data listing: a pattern's structure as a tree of indented lines.
#pragma once

#include "store/pattern.h"

// Calls `addLine` for each line of the pattern's listing, in order; it answers whether the line was taken.
// The first line that is not taken ends the listing: patterns that use each other twice over make more lines
// than any list can hold. Returns the number of lines taken.
using ListingSink = bool (*)(const char *line, void *context);
uint32_t ListPatternData(const Pattern *pattern, ListingSink addLine, void *context);
