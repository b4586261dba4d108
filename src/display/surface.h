// The narrow seam under the drawing primitives: what a platform does to put lines, fills and text on the
// panel that is current. All coordinates are pixels of the panel's client area. Without a current panel the
// drawing calls do nothing. Fonts and colours are the surface's own; `colour` is an index into ColorTable.
#pragma once

#include "display/panes.h"
#include <span>

struct PixelPoint {
    int32_t x, y;
};

struct PixelSize {
    int32_t width, height;
};

// Makes a panel current; text drawn on it leaves what is behind it. What was held for another one is given
// back first. None stays current if the panel does not exist.
void SurfaceSelect(Pane pane);
// The current panel.
Pane SurfacePane();

// A pen one pixel wide.
void SurfaceSetPen(int colour, bool dotted);
// A hatched brush draws lines rising to the right, and leaves its gaps as they are.
void SurfaceSetBrush(int colour, bool hatched);
void SurfaceSetTextColour(int colour, int background);

// Connects the points with the pen; the last point itself is left out.
void SurfacePolyline(std::span<const PixelPoint> points);
// Fills with the brush.
void SurfaceFill(const PixelRect &rect);
// Draws with the main window's font, the text's upper left corner at (left, top).
void SurfaceText(int32_t left, int32_t top, const char *text);

// Pixels of the current panel that are set aside until they are put back. Each slot holds one rectangle.
enum class SaveSlot { Mark, FrameTop, FrameBottom, Cursor };
constexpr size_t SAVE_SLOTS = 4;
void SurfaceSaveUnder(SaveSlot slot, const PixelRect &rect);
// Puts them back where they were taken; does nothing if the slot is empty.
void SurfaceRestoreUnder(SaveSlot slot);
// Empties all slots.
void SurfaceDropSaved();
// Keeps drawing within the client area of the current panel, until it is called with false. Pen, brush and
// text colour are then as they were before.
void SurfaceClipToPane(bool on);
// Inverts what lies within a polygon or a rectangle; a second call takes it back.
void SurfaceXorPolygon(std::span<const PixelPoint> points);
void SurfaceInvert(const PixelRect &rect);

// Bitmaps beside the panels, which stay as long as the drawing objects: columns at the limits of a drag, and
// the tail of a wave that is dragged.
enum class KeptBitmap { Edges, Tail };
constexpr size_t KEPT_BITMAPS = 2;
// Sees that the bitmap has at least this size, and the colours of the current panel. True if it was made, so
// that it holds nothing yet.
bool SurfaceKeepBitmap(KeptBitmap bitmap, PixelSize size);
// Copy between the current panel and a bitmap; what lies outside of one of them is left as it is.
void SurfaceCopyToBitmap(const PixelRect &from, KeptBitmap bitmap, PixelPoint to);
void SurfaceCopyFromBitmap(KeptBitmap bitmap, const PixelRect &from, PixelPoint to);
// Draws on the bitmap of the tail instead of the current panel, until it is called with false; in between no
// panel is selected. Pen, brush and text colour of the panel are then as they were before.
void SurfaceDrawToMemory(bool on);

// The size that SurfaceText needs; also without a current panel.
PixelSize SurfaceTextSize(const char *text);
