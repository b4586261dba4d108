// What a document must be after it has been saved and read again.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

struct SavedDocument {
    std::string settings;
    // The named patterns, with the unnamed ones where they are used, as they come back.
    std::map<std::string, std::string> patterns;
    // Reference patterns whose name leads to other bits by now than when they were made, as patterns have
    // come or changed since. Where no order of statements is found for them, they may come back otherwise,
    // and bits may be made for them.
    std::set<std::string> astray;
    // The order of statements says that all comes back.
    bool comesBack;
    // Named patterns that could not be read and are left out, which a save reports.
    uint32_t leftOut;
};

// What is to come back of the store as it is. It takes account of what a file cannot say: the parameters of a
// reference pattern, the eighth clock, a composite that does not begin with a reference or has no other one,
// and what the order of statements leaves out.
SavedDocument WhatIsSaved();

// The first difference of the store from what has been saved, or nothing.
std::string DifferenceFrom(const SavedDocument &saved);
