// F1 in an open menu: a message hook of the thread tells the main window of it.
#pragma once

#include <windows.h>

// The message that the hook posts to the main window, with the first parameter HELP_IN_MENU. Written by
// InstallHelpHook.
extern UINT HelpHookMessage;
constexpr WPARAM HELP_IN_MENU = 2;

void InstallHelpHook();
void RemoveHelpHook();
