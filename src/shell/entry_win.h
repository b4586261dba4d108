// The program's start, for whoever runs it within another process.
#pragma once

#include <windows.h>

// Reads the settings, makes the main window and opens the document that the command line names. False if the
// program is to end, which has been told.
bool StartApplication(HINSTANCE instance, HINSTANCE previous, const char *commandLine, int show);
