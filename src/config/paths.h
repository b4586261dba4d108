// Where the program's files lie, and what the suite's design context says about that.
#pragma once

#include "platform/files.h"

// Each empty if there is none. Written at start-up.
extern char ConfigDirectory[MAX_PATH_SIZE];
extern char SettingsIniPath[MAX_PATH_SIZE]; // "Kelvane.ini"
extern char ColorsIniPath[MAX_PATH_SIZE];   // "WavColor.ini"
extern char HelpDirectory[MAX_PATH_SIZE];
extern char SimulatorIniPath[MAX_PATH_SIZE]; // the simulator's configuration
extern char SimulatorName[32];               // its base name, shown in the title
extern char EditorCommand[MAX_PATH_SIZE];    // shows the listing of syntax errors; "notepad.exe" by default

// Empties all of the above, and puts the default editor in place.
void InitPaths();
// Reads "config" of the design context and forms the paths that follow from it.
void ReadDesignContext();
// Reads "bin" of the design context into HelpDirectory.
void ReadHelpDirectory();
// The base name of SimulatorIniPath to SimulatorName, and `HierChar` from that file. Does nothing without
// one.
void ReadSimulatorSettings();
