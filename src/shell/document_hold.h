// The hold that the running program has on its document's file, for every other one of these programs to see.
// It is gone with the process.
#pragma once

// Holds the file at `path`, which need not exist, under all of its names, and lets go of the one before; an
// empty path only lets go. False if another program holds the file; then the one before is still held.
bool HoldFile(const char *path);
// Brings the window of the program that holds the file to the front.
void ShowHolderOf(const char *path);
