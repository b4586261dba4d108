// Where the panels and the prompt line stand in the main window's client area. All in pixels.
#pragma once

#include "display/panes.h"

// The gap between the name and the wave panel, by which the border is dragged.
constexpr int32_t SPLITTER_WIDTH = 3;

struct FrameMeasures {
    int32_t clientWidth, clientHeight;
    int32_t promptHeight, rulerHeight;
    int32_t nameColumnWidth;
};

struct FrameLayout {
    PixelRect ruler, names, waves, prompt;
};

FrameLayout LayOutFrame(const FrameMeasures &measures);

// True if a press at `x` in the main window takes the splitter.
bool OnSplitter(int32_t x, int32_t nameColumnWidth);
// Where the splitter stands while the mouse is at `x`; `before` is where it stood. A window too narrow leaves
// it there.
int32_t SplitterAt(int32_t x, int32_t before, int32_t clientWidth, int32_t scrollArrowWidth);
