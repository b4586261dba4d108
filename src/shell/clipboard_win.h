// The main window's part in the platform's clipboard.
#pragma once

#include <windows.h>

// Makes our format known. Called when the main window, which will own the clipboard, is made.
void RegisterClipboard(HWND window);
// The menu has an entry for what other programs have put there under our format, if it has one of this
// number.
void UpdateClipboardEntry(HMENU menu);
// True if the message is about the clipboard; it is then done with.
bool HandleClipboardMessage(UINT message, WPARAM wParam);
