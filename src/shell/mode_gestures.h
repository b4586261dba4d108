// What the mouse does in Query mode and Edit mode: it picks rows and moves the cursor.
#pragma once

#include <cstdint>

// How far a gesture has come.
enum class GestureStateValue : uint16_t {
    Idle = 0,
    QueryTracking = 3, // the cursor and the selected row follow the mouse
    RowRange = 4,      // a range of rows is dragged in the name column
};
// Written by the routines below.
extern GestureStateValue GestureState;
// Forgets the gesture in progress, if there is one. Puts the start values in place, too.
void EndModeGesture();

// One event of the mode in force, by CommandState.CommandPhase: its start or end, and a right or middle
// button, take the selection away; a press picks by Mouse and installs the TrackRoutine that follows it; a
// release ends the gesture. Callers take the overlay off first.
void RunModeGesture();
