// What the display draws with: lines, blocks and anchored text in list coordinates, that is in pixels of a
// panel whose rows are not scrolled. They draw on the current panel, and do nothing without one.
#pragma once

#include "display/surface.h"

// The colours by index: 0 to 15 those of ColorTable with a solid pen, and from here on with a dotted one.
constexpr int DOTTED = 16;

// Makes a panel the one that is drawn on.
void SelectPicture(Pane pane);
// While it is on, the bitmap of a wave's tail is drawn on instead, in its own pixels.
extern bool DrawToMemory;
void SetDrawToMemory(bool on);
// Selects pen, brush and text colour, `index` 0 to 31. The brush is hatched for 1 to 15, and solid for 0 and
// the dotted colours; in the background's colour it is solid too, so that what it erases gets one even
// colour.
void SetDrawColour(int index);
// The colour that stands out from the background: black, or white on black.
int ForegroundColour();
// Connects up to MAX_POLYLINE points; the last one is left out.
constexpr size_t MAX_POLYLINE = 10;
void DrawPolyline(std::span<const PixelPoint> points);
// A block whose right and bottom pixels belong to it.
struct Block {
    int32_t left, top, right, bottom;
};
void DrawOutline(const Block &block);
void FillBlock(const Block &block);
void EraseBlock(const Block &block);
// Draws a text at a point. The anchor is a digit laid out as on a keypad: 1 to 3 the text stands above the
// point, 4 to 6 it is centred on it, 7 to 9 it hangs below; 1, 4 and 7 the text begins there, 3, 6 and 9 it
// ends there. Inversion marks are taken off the text and shown as a line above it.
void DrawAnchoredText(int32_t x, int32_t y, int anchor, const char *text);
// The width of the text as it stands, in pixels.
int32_t TextWidth(const char *text);
