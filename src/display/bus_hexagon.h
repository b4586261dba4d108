// The shape of a bus value: a hexagon, or what is left of it where the value is short or the pane ends.
#pragma once

#include "display/surface.h"
#include <array>

struct HexagonShape {
    std::array<PixelPoint, 7> points;
    size_t count;
    int32_t x0, x1; // the ends after clamping
    int32_t room;   // pixels for the value's text; none if not above 0
};

// The shape of a value from x0 to x1 pixels, around `middle` and `half` pixels high to either side, in a pane
// `paneWidth` wide. What lies left of the pane is cut off where the whole shape would meet the edge.
HexagonShape ShapeHexagon(int32_t x0, int32_t x1, int32_t middle, int32_t half, int32_t paneWidth);
