// What the mouse does in Query mode and Edit mode: it picks rows, moves the cursor, selects what is to be
// edited, and drags it.
#pragma once

#include "store/time_value.h"

// How far a gesture has come.
enum class GestureStateValue : uint16_t {
    Idle = 0,
    RowPicked = 1,     // by the last press
    TimeRange = 2,     // a range of time follows the mouse
    QueryTracking = 3, // the cursor and the selected row follow the mouse
    RowRange = 4,      // a range of rows is dragged in the name column
    EdgeDrag = 5,      // an edge of a wave follows the mouse
    RowMove = 7,       // the selected rows follow the mouse
    OnSelection = 8,   // a press on what is selected already
    Selected = 9,      // something is selected
};
// Written by the routines below.
extern GestureStateValue GestureState;
// Puts the start values in place.
void InitModeGestures();

// One event of the mode in force, by CommandState.CommandPhase: its start or end, and a right or middle
// button, take the selection away; a press picks by Mouse and installs the TrackRoutine that follows it; a
// release selects, or does the edit that was dragged. With `edit` it is Edit mode, else Query mode, which
// edits nothing.
void SetEditMode(bool edit);
// Breaks off the gesture that the mouse is in the middle of, if there is one: nothing is edited.
void EndModeGesture();

// Selects in the selected row, where that is one that can be edited, as a click at `time` does; elsewhere
// nothing is selected then. The cursor stays.
void SelectAtTime(TimeVal time);
// The frame over the waves goes by the selection as it has become, and the next press knows of it.
void AdoptSelection();
