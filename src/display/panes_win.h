// The panels' windows, for the files that talk to Windows.
#pragma once

#include "display/panes.h"
#include "shell/frame_layout.h"
#include <windows.h>

// Null for a panel that does not exist.
HWND PaneWindow(Pane pane);
// The window class of the panels; false if Windows refuses it.
bool RegisterPaneClass(HBRUSH background);
// Puts the panels at their places.
void PlacePanes(const FrameLayout &layout);
// A message of the wheel, which goes to the panel under the pointer, whatever window got it.
void WheelOverPanes(UINT message, WPARAM wParam, LPARAM lParam);
// The size of the screen, in pixels.
void SetScreenSize(int32_t width, int32_t height);
