// The display's surface on GDI, for the files that talk to Windows.
#pragma once

#include "display/panes.h"
#include <windows.h>

// The main window's font, made once for the screen's resolution.
HFONT MainFont();

// A paint message's own context becomes the current picture of a panel, until SurfaceEndPaint.
void SurfaceBeginPaint(Pane pane, HDC context);
void SurfaceEndPaint();
// The context of the current picture, null without one.
HDC SurfaceContext();
// Gives back the context that is held for a panel; false if Windows refuses. True without one.
bool SurfaceRelease();
// Deletes font, pens and brushes.
void SurfaceFree();
// The solid colour of an index into ColorTable.
COLORREF SurfaceColour(int index);
