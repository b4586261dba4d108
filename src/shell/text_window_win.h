// The Text window: a list of rows beside the main window. Nothing fills it yet; its place is kept.
#pragma once

#include <windows.h>

// Hidden, owned by the frame, at its stored place.
HWND CreateTextWindow(HWND frame);
void DestroyTextWindow();
