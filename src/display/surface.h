// The narrow seam under the drawing primitives: what a platform does to put lines, fills and text on the
// panel that is current. All coordinates are pixels of the panel's client area. Without a current panel the
// drawing calls do nothing. Fonts and colours are the surface's own; `colour` is an index into ColorTable.
#pragma once

#include "display/panes.h"
#include <span>

struct PixelPoint {
    int32_t x, y;
};

struct PixelSize {
    int32_t width, height;
};

// Makes a panel current; text drawn on it leaves what is behind it. What was held for another one is given
// back first. None stays current if the panel does not exist.
void SurfaceSelect(Pane pane);
// The current panel.
Pane SurfacePane();

// A pen one pixel wide.
void SurfaceSetPen(int colour, bool dotted);
// A hatched brush draws lines rising to the right, and leaves its gaps as they are.
void SurfaceSetBrush(int colour, bool hatched);
void SurfaceSetTextColour(int colour, int background);

// Connects the points with the pen; the last point itself is left out.
void SurfacePolyline(std::span<const PixelPoint> points);
// Fills with the brush.
void SurfaceFill(const PixelRect &rect);
// Draws with the main window's font, the text's upper left corner at (left, top).
void SurfaceText(int32_t left, int32_t top, const char *text);
// The size that SurfaceText needs; also without a current panel.
PixelSize SurfaceTextSize(const char *text);
