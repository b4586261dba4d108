// Small random documents whose every wave the plain expansion can tell.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

struct RandomWaves {
    std::vector<uint16_t> plain;      // nodes and sub-patterns, with nested composites in them
    std::vector<uint16_t> composites; // composites and slices of nodes
};

// Fills the empty store. Composites have members of plain data only, and a period divides the items of its
// node.
RandomWaves MakeRandomWaves(std::mt19937 &random);
