// Where things must stand, worked out from the rules and the screen's own measures.
#pragma once

#include <cstdint>
#include <string>
#include <windows.h>

// All in pixels.
struct Expected {
    int fontHeight, charWidth;
    int waveGap, waveHeight, rowHeight;
    int rulerHeight, promptHeight;
    int nameColumnWidth; // as long as nothing is stored

    int low(int row) const { return (row + 1) * rowHeight - waveGap - 1; }
    int half() const { return waveHeight / 2; }
    int middle(int row) const { return low(row) - half(); }
    int high(int row) const { return low(row) - 2 * half(); }
};
Expected ExpectedSizes();
// The width of a text in the font of the panels.
int TextWidthOf(const std::string &text);
// The scale at which `length` fits a wave panel of this width, as a power of two of pixels per time unit.
int ExpectedScale(uint32_t length, int paneWidth);

namespace colour {
constexpr uint32_t white = 0xFFFFFF;
constexpr uint32_t black = 0x000000;
constexpr uint32_t blue = 0x0000FF;
constexpr uint32_t red = 0xFF0000;
constexpr uint32_t gray = 0x808080;
} // namespace colour
