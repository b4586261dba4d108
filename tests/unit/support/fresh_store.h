// Test fixtures that begin from a known state.
#pragma once

#include "store/pattern.h"
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

// Settings, names, view and messages at their start values, and an empty store with the state table
// "Default".
class FreshStore : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};

// A new pattern with data items of (value, duration), as if it had been loaded: the log knows nothing of it,
// nor of what the routines below add. Returns its id.
using Transitions = std::vector<std::pair<uint32_t, uint32_t>>;
uint16_t MakePattern(const char *name, const Transitions &items = {}, uint32_t width = 1);

struct Use {
    uint16_t id;
    uint32_t scale = 1;
    uint32_t repeat = 1;
    uint32_t sliceWidth = 0;
    uint32_t sliceOffset = 0;
    uint32_t format = 0;
};
// Appends a reference item to the pattern.
void AddReference(uint16_t pattern, const Use &use, PatternKind kind = PatternKind::Plain);
void AddTransition(uint16_t pattern, uint32_t value, uint32_t duration);

// Walks the heap record by record and tells the first thing that is wrong with it, or nothing.
std::string HeapFault();

// The whole store as text, for comparisons: ids, names, parameters and items.
std::string StoreText();

// A directory of its own for the running test, removed with all that is in it when the object goes.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory &) = delete;
    ScratchDirectory &operator=(const ScratchDirectory &) = delete;
    // The path of a file in it.
    std::string file(const std::string &name) const { return path + "/" + name; }
    // Writes a file in it and returns its path.
    std::string write(const std::string &name, const std::string &text) const;
    std::string path;
};
std::string ReadWholeFile(const std::string &path);
