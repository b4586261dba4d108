// The main window as the engine sees it.
#pragma once

#include <cstdint>

// The text of the title bar.
void FrameSetTitle(const char *title);
// Repaints the whole main window.
void FrameInvalidate();
// Enables a menu entry, or grays it.
void EnableCommand(uint32_t id, bool on);
// Puts the mark in front of a menu entry, or takes it away: a dot for the modes, of which one is in force, a
// tick for what can be on or off.
void CheckCommand(uint32_t id, bool on);
// Draws the menu bar anew, for who changes what stands in it.
void RedrawMenuBar();
// Puts a command into the message queue, to run after the current message.
void PostCommand(uint32_t id);
// Shows the hourglass until the next mouse move.
void ShowWaitCursor();
// Asks the main window to close.
void FrameClose();
// Removes the windows and the graphic objects.
void ReleaseWindows();
// Brings the program in front of the others.
void FrameToFront();
