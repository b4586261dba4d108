// The three panels and their scroll bars as the engine sees them: the part of the display that a window does.
#pragma once

#include <cstdint>

enum class Pane { None = 0, Ruler = 1, Name = 2, Wave = 3 };

struct PixelRect {
    int32_t left, top, right, bottom; // right and bottom lie outside
};

struct FontMetrics {
    int32_t height;       // of a line of the main window's font
    int32_t averageWidth; // of a character
};

enum class ScrollBar { Horizontal, Vertical };

// False until the panels have been made.
bool PanesExist();
// Schedules a repaint of the whole panel, erased first.
void InvalidatePane(Pane pane);
// Paints at once what has been scheduled.
void UpdatePane(Pane pane);
// Sets the range, from 0, and the position of a panel's bar, with redraw.
void SetPaneScrollBar(Pane pane, ScrollBar bar, int32_t maximum, int32_t position);
// The range's maximum, as set last.
int32_t PaneScrollMaximum(Pane pane, ScrollBar bar);
// The client area's width and height in pixels.
void PaneClientSize(Pane pane, int32_t &width, int32_t &height);
// The part of the panel that the paint in progress has to draw, in its client pixels.
PixelRect PaneClipBox(Pane pane);

FontMetrics MainFontMetrics();
// Of the display, in pixels.
int32_t ScreenWidth();
int32_t ScreenHeight();
// Width of a vertical scroll bar, and of the largest client area, in pixels.
int32_t ScrollBarWidth();
int32_t FullScreenWidth();
// Pixels per inch over 96: by how much a size meant for an ordinary screen grows. 1.0 for 96.
double ScreenMagnification();

// Makes the three panels in the main window. False after a message.
bool OpenWindow();
