// Walks that keep what they deliver.
#pragma once

#include "edit/walker.h"
#include "unit/support/plain_expansion.h"
#include <string>
#include <vector>

struct WalkResult {
    int answer;
    std::vector<WalkSegment> segments;
};

struct WalkWindow {
    TimeVal from = 0;
    TimeVal to = TIME_FOREVER;
    uint32_t flags = 0;
    TimeVal minDetail = 0;
};

// `limit` ends the walk with an answer of 0 after so many segments.
WalkResult Walk(uint16_t id, const WalkWindow &window = {}, size_t limit = SIZE_MAX);

// "start-end=value" for each segment, with "L" behind it for the last one, "~" for a coarse one, and the name
// in brackets instead of the value for a block.
std::string WalkText(uint16_t id, const WalkWindow &window = {});
std::string TextOf(const std::vector<WalkSegment> &segments);

// The levels, as the plain expansion gives them.
std::vector<PlainLevel> LevelsOf(const std::vector<WalkSegment> &segments);

// The pattern of a name.
uint16_t IdOf(const char *name);
