// A picture of the panels as the editor's window would show them.
#pragma once

#include "store/time_value.h"
#include <string>
#include <vector>

struct PictureRequest {
    const char *path = ""; // its extension tells the format: ".png", ".svg" or ".pdf"
    TimeVal from = 0;      // the range to show, in time units
    TimeVal to = 0;
    bool fitRange = false;      // false for the whole span
    int width = 1000;           // of the wave pane, in pixels
    std::vector<uint16_t> rows; // pattern ids, top to bottom
    int scale = 1;              // how many pixels of a PNG, in both directions, a pixel of the screen takes
};

// Draws ruler, name column and wave pane without scroll bars, the name column as wide as the longest name.
// The rows and the view of the document stay as they are. The picture's file is replaced when all of it has
// been written. False with a message in `error` if that is not possible.
bool RenderPicture(const PictureRequest &request, std::string &error);
