// A slow and simple expansion of a pattern into all of its levels, to compare the walker with: no windows, no
// skipping, no detail limits, 64-bit times.
#pragma once

#include "store/pattern.h"
#include <vector>

struct PlainLevel {
    uint64_t start;
    uint64_t end;
    uint32_t value;

    bool operator==(const PlainLevel &) const = default;
};

// The levels of the pattern in rising time order, from 0 until one of them reaches `limit` or the pattern
// ends. With `sync` clocked formats are expanded.
std::vector<PlainLevel> ExpandPlainly(const Pattern *pattern, bool sync, uint64_t limit);

// What of the levels lies within `from` to `to`, neighbours of the same value joined, and nothing of length
// 0.
std::vector<PlainLevel> WithinWindow(const std::vector<PlainLevel> &levels, uint64_t from, uint64_t to);
