// What edits draw in the panes, from the calls that the surface records.
#pragma once

#include <string>

// Forgets what has been drawn so far, and watches from now on.
void WatchDrawing();
// What has been drawn since, in order: "-" where the overlay is taken off and "+" where it is put on, "n2"
// for the name of row 2 and "w2" for its wave.
std::string WhatWasDrawn();
