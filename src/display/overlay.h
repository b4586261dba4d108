// What lies over the finished waves: the mark, the selection frame and the cursor. They are drawn over saved
// pixels, so that they come and go without a wave being drawn again. Whoever changes the picture under them
// takes them off first and puts them on again behind it.
#pragma once

#include <cstdint>

// Where the layers were when last drawn, in pixels of the wave pane.
struct OverlayRecord {
    bool overlayOn; // drawn at present
    int32_t cursorX;
    int32_t markX;
    int32_t frameX0, frameX1;      // left and right of the selection frame
    int32_t frameTop, frameBottom; // the upper lines of its upper and its lower edge
};
// Written by DrawOverlay.
extern OverlayRecord Overlay;
// Puts the start values in place.
void InitOverlay();

// Puts the overlay on by the present view, or takes it off by what was saved. Does nothing while a document
// is being read, or if it is so already.
void DrawOverlay(bool on);
