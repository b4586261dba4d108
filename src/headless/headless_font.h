// The font that stands for the main window's where there is no window.
#pragma once

#include "display/panes.h"
#include <cairo.h>

FontMetrics HeadlessFontMetrics();
// The width of a text, whose bytes are taken as Latin-1, in pixels.
int32_t HeadlessFontWidth(const char *text);
// Draws the text with its upper left corner at the origin, in the context's colour, exactly as wide as it is
// measured. `crisp` for pictures of one pixel for each of the screen's, where the letters fit the pixels.
void HeadlessFontDraw(cairo_t *context, const char *text, bool crisp);
