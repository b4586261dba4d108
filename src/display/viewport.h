// Maps the time axis and the row list onto the panels: scale, zoom, scroll bars, and the panels' sizes.
#pragma once

#include "display/panes.h"
#include "display/wave_view.h"

// Between time and pixels at the present scale. Both saturate: pixels at the screen's width, times at
// TIME_FOREVER.
int32_t TimeToPixels(TimeVal delta);
TimeVal PixelsToTime(int32_t pixels);
// The pixel column of a time in the wave pane; at most one screen width off the pane.
int32_t PixelOf(TimeVal t);

// How many pixels of this screen look as large as so many of an ordinary one.
int32_t OnThisScreen(int32_t pixels);

int32_t MinScale();
int32_t MaxScale();

// Clamps and installs ZoomCentre at the present scale. Callers set ScaleBeforeApply first.
void ApplyView();
// Chooses the scale for a length of time.
void FitScale(TimeVal length);
// Shows the time from `a` to `b`.
void ZoomToRange(TimeVal a, TimeVal b);
// Centres `t` at the present scale; with `force` the panels repaint even if nothing moved.
void CentreOn(TimeVal t, bool force);
// Raises FullSpanEnd and SpanEnd to a quarter beyond `endTime`.
void ExtendSpan(TimeVal endTime);
// Lets the store tell the viewport how long the document is. Called once at the start.
void InitViewport();

// The virtual field, in pixels, at whose right end the names stand, and how far it is shifted to the left.
int32_t NameFieldWidth();
int32_t NameShift();

// A place in a panel as a time and a row.
struct AxisPlace {
    TimeVal time;
    uint32_t row;
};
// The place of a pixel of a panel's client area. Left of the waves it is the time at their left edge; on the
// ruler the row is 0. Where several time units share a pixel, the time is rounded to a tenth of a tick.
AxisPlace MouseToTimeRow(Pane pane, int32_t x, int32_t y);

void UpdateTimeScrollBar();
void UpdateRowScrollBar();
void UpdateNameScrollBar();

// The codes of a scroll message, with the platform's numbers.
enum class ScrollCode : uint32_t {
    LineUp = 0,
    LineDown = 1,
    PageUp = 2,
    PageDown = 3,
    ThumbPosition = 4,
    ThumbTrack = 5,
    Top = 6,
    Bottom = 7,
    End = 8,
};
// A panel's bar was moved; `thumb` is the position for ThumbPosition.
void ScrollMessage(Pane pane, ScrollBar bar, ScrollCode code, int32_t thumb);
void ScrollTimeTo(TimeVal t, bool now);
void ScrollRowsTo(uint32_t row, bool now);
void EnsureRowVisible(uint32_t row);
// The number of whole rows that the wave pane has room for.
uint32_t VisibleRows();
// A panel has got another size.
void PaneResized(Pane pane);

// The width of the name column at the start: the saved one, or the default, within its limits. Pixels.
int32_t InitialNameColumnWidth(bool saved, int32_t savedWidth);
