// The program's start: the command line, and what happens once the main window stands.
#pragma once

#include "platform/files.h"
#include <string>
#include <vector>

// Words of the command line; the first one stands for the program and is empty.
std::vector<std::string> SplitCommandLine(const char *text);
// Sets DocumentPath, HierLinkMode, SyncMode and ShowSyncActivity.
void ParseCommandLine(const std::vector<std::string> &words);

// What comes before the main window: settings from their start values, design context, colours, command line.
void PrepareApplication(const char *commandLine);
// What comes after it: preferences, document, panels, view. 0 on success.
int RunAfterCreate();
