// A picture as SVG text: paths, rectangles and real text in the order in which they are drawn. It needs no
// fonts, and lines that touch become one path.
#pragma once

#include "display/surface.h"
#include <array>
#include <string>
#include <string_view>
#include <vector>

struct SvgDrawing {
    std::string text;                  // what is finished
    bool inPanel = false;              // a panel's group is open
    PixelPoint origin = {};            // of that panel
    int panels = 0;                    // groups so far, which name their clips
    std::vector<PixelPoint> line;      // the corners of the line that is open, its last pixel drawn
    std::string path;                  // the path of all lines before it
    PixelPoint pathEnd = {};           // where that path ends
    int pathColour = 0;                // of both, a place in ColorTable
    std::array<bool, 16> hatched = {}; // the colours of ColorTable whose hatch is defined
};

// Begins a picture of this size, in pixels.
void SvgBegin(SvgDrawing &drawing, PixelSize size);
// Draws on a panel from here on: what lies outside of it is not shown, and its upper left corner is the
// origin. Nothing happens if that panel is the present one.
void SvgSelectPanel(SvgDrawing &drawing, PixelPoint origin, PixelSize size);
// Connects the pixels with a line one pixel wide that ends before the last one. `colour` is a place in
// ColorTable, as below.
void SvgPolyline(SvgDrawing &drawing, int colour, bool dotted, std::span<const PixelPoint> points);
// Fills a rectangle; a hatched one with lines that rise to the right.
void SvgRectangle(SvgDrawing &drawing, int colour, bool hatched, const PixelRect &rect);
// Text on a baseline, `width` pixels wide whatever the reader's font is. `utf8` may hold any character.
void SvgText(SvgDrawing &drawing, int colour, PixelPoint baseline, int32_t width, std::string_view utf8);
// Ends the picture; its text is then whole.
void SvgEnd(SvgDrawing &drawing);
