// The border between names and waves, dragged with the mouse in the main window's client area.
#pragma once

#include <windows.h>

// The mouse messages of the main window; `x` in its client pixels.
void SplitterPress(HWND frame, int x);
void SplitterMove(HWND frame, int x);
void SplitterRelease(HWND frame);
// The mouse was taken away: the border stays where it was.
void SplitterCancel();
