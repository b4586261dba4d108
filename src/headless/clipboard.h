// The platform's clipboard where there is none.
#pragma once

#include <cstdint>
#include <vector>

struct HeadlessClipboardState {
    bool works = true; // whether it can be opened
    bool open = false;
    bool owned = true; // by this program
    int emptied = 0;
    std::vector<uint32_t> offered; // formats that something was told to be in
    uint32_t givenFormat = 0;
    std::vector<uint8_t> given; // what was handed over last
};
// Written by clipboard.cpp and, for `works` and `owned`, by its users.
extern HeadlessClipboardState HeadlessClipboard;
void InitHeadlessClipboard();
// Another program takes the clipboard.
void HeadlessLoseClipboard();
