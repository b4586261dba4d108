// Where the mouse is, in terms of the time axis and the row list.
#pragma once

#include "display/panes.h"
#include "store/time_value.h"

struct MouseRecord {
    TimeVal time; // under the mouse, rounded as the panel it is over wants it
    uint32_t row; // list row; may lie behind the last one
    Pane pane;    // in use by the mouse
};
// Written by the panels' mouse messages.
extern MouseRecord Mouse;
// Puts the start values in place.
void InitMouse();
