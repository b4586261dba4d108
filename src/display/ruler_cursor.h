// The mouse's marker in the ruler: a triangle under the mouse time with the time beside it, or, while a range
// is dragged, a band over the range.
#pragma once

#include "display/surface.h"
#include "store/time_value.h"
#include <array>

// What stands in the ruler, as it was drawn.
struct RulerCursorRecord {
    bool on;
    bool band;                          // the band, else the triangle
    std::array<PixelPoint, 4> triangle; // closed
    PixelRect range;                    // of the band
};
// Written by DrawRulerCursor.
extern RulerCursorRecord RulerCursor;
// Puts the start values in place; no routine is installed.
void InitRulerCursor();

// Shows the marker at the mouse's time, or takes it off by inverting the same pixels again.
void DrawRulerCursor(bool on);

// Follows the mouse while a gesture runs: called with the mouse's time and list row by each change of the
// marker. Installed by the gestures; null without one.
extern void (*TrackRoutine)(TimeVal time, uint32_t row);
