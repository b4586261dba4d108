// The rubber-band preview while an edge of a wave is dragged. It works on the wave pane itself.
#pragma once

#include "store/time_value.h"

// What is drawn beside the edge. With DRAG_TAIL the wave's tail moves with it.
enum DragMode : uint16_t {
    DRAG_NOTHING = 0,
    DRAG_LOW = 1,
    DRAG_HIGH = 2,
    DRAG_BOTH = 3,
    DRAG_BUS = 4,
    DRAG_TAIL = 5, // right of the edge only
};

struct DragPreviewRecord {
    uint16_t pattern;            // of the row
    TimeVal grabOffset;          // edge time minus the time where the mouse took it, modulo 32 bits
    TimeVal lowLimit, highLimit; // between which the edge can be
    TimeVal edgeTime;            // the edge when the drag began
    TimeVal snapStep, snapOrigin;
    uint16_t leftMode, rightMode;
    int32_t yTop, yBottom, height; // pixels of the wave pane
    bool firstCall;
    TimeVal dragTime;         // the snapped time where the edge stands now
    uint16_t dragRight;       // 1 for the right edge of the item
    bool lowSaved, highSaved; // the pixel column at the limit was in the pane when the drag began
    uint32_t rowsDrawn;       // RowsDrawn when the preview was drawn last
};
// Filled by BeginDrag up to `dragRight`; DrawDragPreview writes `firstCall`, `dragTime` and the rest.
extern DragPreviewRecord DragPreview;
// Puts the start values in place.
void InitDragPreview();

// The tracking routine while an edge is dragged: moves the edge to the mouse's time, as far as snap and
// limits let it, and draws the row with it, from limit to limit. The row's pattern counts as changed then, so
// that the next RepaintChanged draws the row as it is. Nothing is drawn for a pattern that is gone.
void DrawDragPreview(TimeVal time, uint32_t row);
