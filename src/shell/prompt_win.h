// The prompt line's window.
#pragma once

#include <windows.h>

bool RegisterPromptClass();
HWND CreatePromptWindow(HWND frame);
// Its height, in pixels.
int PromptHeight();
