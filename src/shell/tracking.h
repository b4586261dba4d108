// What follows the mouse while a button is held in Query mode and Edit mode. Each routine is a TrackRoutine
// of the ruler's marker.
#pragma once

#include "store/time_value.h"

// Steps of time that a selection by mouse keeps to.
struct EditGridRecord {
    TimeVal EditGrid;       // one unit of the row's pattern
    TimeVal EditGridOrigin; // where the pattern begins
};
// Written by a press in the waves.
extern EditGridRecord EditGrid;
// The grid's nearest time, at least its origin.
TimeVal RoundToGrid(TimeVal time);

// Between the first of the selected rows and the one that the mouse has taken. Written by a press in the
// name column.
extern uint32_t GrabRowOffset;

// The cursor and the end of the selected range follow the mouse.
void TrackSelect(TimeVal time, uint32_t row);
// The cursor and the selected row follow the mouse.
void TrackQuery(TimeVal time, uint32_t row);
// The range of selected rows reaches from where it began to the mouse.
void TrackRowRange(TimeVal time, uint32_t row);
// The selected rows move through the list with the mouse.
void TrackRowMove(TimeVal time, uint32_t row);

// The selected time, or the cursor's, in the prompt line.
void ShowSelectText();
void ShowCursorTime();

// Highlights a row or takes the highlight away.
void HighlightRow(uint32_t row, bool on);
