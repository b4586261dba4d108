// What each panel draws when it paints, and the repaints of parts.
#pragma once

#include "display/panes.h"
#include "display/wave_view.h"

// The rows of the paint in progress, the second one past the end.
struct PaintRangeRecord {
    uint32_t paintFirstRow, paintLastRow;
};
extern PaintRangeRecord PaintRange;

// The body of a paint message.
void PaintPane(Pane pane);
void DrawRuler();
void DrawRowName(uint32_t row);
// Names and waves from `row` down, with the area below the last row cleared.
void RepaintRowsFrom(uint32_t row);
// The rows of patterns that changed since the last call, and of those that refer to such patterns.
void RepaintChanged();
void RepaintAllRows();
void RepaintAll();
// Schedules a repaint of the three panels.
void InvalidateAllPanes();
