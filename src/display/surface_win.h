// The surface over the platform's graphics: the current picture, the font and the cache of drawing objects,
// for the files that talk to Windows.
#pragma once

#include "display/panes.h"
#include <windows.h>

// The panel's window that is drawn on, and the context held for it; null without one. Written by this file.
extern HWND PictureWindow;
extern HDC PictureDC;
// The memory context that stands in for it while everything is drawn to memory; else null.
extern HDC MemoryDC;

// Make a paint message's context the current picture, and forget it when the painting is over. A context that
// is still held for a panel has been released before.
void BeginPicture(Pane pane, HDC context);
void EndPicture();
// Gives a held context back and forgets it; if Windows refuses, `failure` is shown as a program error.
void ReleasePicture(const char *failure);

// The font of the panels, the prompt line and the strip; sized by the screen's resolution and made at the
// first call. Null if it cannot be made.
HFONT MainFont();
// The brush of a colour of ColorTable, made at the first call and kept.
HBRUSH SolidBrush(int colour);
// Deletes font, pens and brushes, at the end of the program.
void ReleaseGraphicObjects();
