// What each panel draws when it paints, and the repaints of parts.
#pragma once

#include "display/viewport.h"

// The rows of the paint in progress, the second one past the end.
struct PaintRangeRecord {
    uint32_t paintFirstRow, paintLastRow;
};
// Written by PaintPane.
extern PaintRangeRecord PaintRange;
// Puts the start values in place.
void InitComposition();

// Around a paint message and before an erase message of a panel: what lies over the picture goes off before
// the picture changes, and comes on again behind it.
void PaintBegins(Pane pane);
void PaintEnds(Pane pane);
void EraseBegins(Pane pane);
// A panel's bar was moved; see ScrollMessage.
void ScrollPane(Pane pane, ScrollBar bar, ScrollCode code, int32_t thumb);

// The body of a paint message.
void PaintPane(Pane pane);
void DrawRuler();
void DrawRowName(uint32_t row);
// Names and waves from `row` down, with the area below the last row cleared.
void RepaintRowsFrom(uint32_t row);
// The rows of patterns that changed since the last call, and of those that refer to such patterns,
// however deep. The overlay is left alone when no row is drawn, unless `forceOverlay` says otherwise: for a
// caller that has changed what the overlay shows.
void RepaintChanged(bool forceOverlay);
void RepaintAllRows();
void RepaintAll();
// Schedules a repaint of the three panels.
void InvalidateAllPanes();
