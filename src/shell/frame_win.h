// The main window and its fellows, for the files that talk to Windows.
#pragma once

#include <windows.h>

// Written by entry_win.cpp.
extern HINSTANCE Instance;
// Null while they do not stand. Written by frame_win.cpp alone.
extern HWND FrameWindow;
extern HWND PromptWindow;
extern HWND TextWindow;

// Makes window classes, cursors, the main window, the prompt line, the Text window and the message window,
// and shows the main window. The classes are registered only for a null `previous`. False if a class failed.
bool InitWavesInst(HINSTANCE previous, int show);

// Puts the panels and the prompt line at their places in the main window.
void LayOutFrameWindow();
// The client area's size and what else the layout depends on.
struct FrameMeasures MeasureFrame();
// A dialog's WM_SYSCOMMAND: where it is a key that opens a menu, the main window's opens, but for the one of
// the dialog's own that the space bar opens. True if so.
bool OpenMenuByKey(WPARAM wParam, LPARAM lParam);
// The cursor for a CursorMode.
HCURSOR CursorFor(int mode);

// A command message's parameter as a command id: the ids are even.
inline int CommandOf(WPARAM parameter) {
    return LOWORD(parameter) & ~1;
}
