// Random documents, the same ones for the same seed on every machine, for tests that compare two ways to the
// same result.
#pragma once

#include <cstdint>
#include <random>
#include <string>

class Random {
public:
    explicit Random(uint32_t seed) : engine(seed) {}
    // From 0 to `limit` - 1.
    uint32_t below(uint32_t limit) { return limit == 0 ? 0 : engine() % limit; }
    // True once in `times`.
    bool once(uint32_t times) { return below(times) == 0; }
    uint32_t word() { return engine(); }

private:
    std::mt19937 engine;
};

// Adds the state tables that a random document uses to those of the store.
void AddRandomStateTables();

// Fills the empty store with nodes, buses, sub-patterns and their bits, and the settings of the document, by
// the routines that edits go through. What the stimulus language cannot say does not occur in it.
void BuildRandomDocument(uint32_t seed);

// Fills the empty store with a few patterns that hold each other's bits, in both cases of letters, used
// before they are defined, composites and all, some of them deleted again.
void BuildTangledDocument(uint32_t seed);

// The store and the document's settings as text that does not depend on ids: the named patterns by name, the
// unnamed ones where they are used. Equal texts are equal documents.
std::string DocumentText();
