// Pictures of what stands on the screen.
#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <windows.h>

// 0xRRGGBB, top line first.
struct Picture {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;

    // Outside the picture it is none of the colours that there are.
    uint32_t at(int x, int y) const;
    // How many pixels of the colour lie in the rectangle; right and bottom lie outside.
    int count(uint32_t colour, int left, int top, int right, int bottom) const;
    // The part of it, cut to the picture.
    Picture part(int left, int top, int right, int bottom) const;
    bool operator==(const Picture &) const = default;
};

// What is visible of the screen in a rectangle, of a whole window, and of its client area.
Picture PictureOfScreen(const RECT &rect);
Picture PictureOfWindow(HWND window);
Picture PictureOfClient(HWND window);

// Writes a PNG file; false if that fails.
bool WritePng(const Picture &picture, const std::string &path);
