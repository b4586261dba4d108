// The hidden window through which the suite's message service will reach the program.
#pragma once

#include <windows.h>

void CreateMessageWindow(HWND frame);
