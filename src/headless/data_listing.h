// What the window "Hierarchy" shows, where there are no windows.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct HeadlessListingState {
    bool open = false;
    int raised = 0; // how often it was brought to the top
    std::vector<std::string> lines;
    bool drawing = true;
    int redraws = 0;
    bool logHeld = false; // the log was held open while the list was filled last
    size_t room = 100000; // lines that the list takes
};
// Written by data_listing.cpp and, for its room, by its users.
extern HeadlessListingState HeadlessListing;
void InitHeadlessListing();
