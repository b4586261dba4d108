// The font that stands for the main window's where there is no window.
#pragma once

#include "display/panes.h"
#include <cairo.h>
#include <string>

constexpr const char *HEADLESS_FONT_FAMILY = "DejaVu Sans";
constexpr int HEADLESS_FONT_SIZE = 11;   // pixels
constexpr int HEADLESS_FONT_ASCENT = 11; // pixels from a line's top to its baseline

FontMetrics HeadlessFontMetrics();
// The width of a text, whose bytes are taken as Latin-1, in pixels. Known without the font itself, so that
// nothing looks for fonts before something is drawn, and a picture has the same layout on every machine.
int32_t HeadlessFontWidth(const char *text);
// The text as UTF-8. Control characters have no shape and become blanks.
std::string HeadlessFontText(const char *text);
// Draws the text with its upper left corner at the origin, in the context's colour, exactly as wide as it is
// measured. `crisp` for pictures of one pixel for each of the screen's, where the letters fit the pixels.
void HeadlessFontDraw(cairo_t *context, const char *text, bool crisp);
