// The commands that move the time cursor or the selected row, and those of the mark.
#pragma once

#include "store/time_value.h"

// Moves the cursor, kept within the span, and brings it into view.
void JumpToTime(TimeVal t);
// Runs one of the commands 112 to 132.
void JumpCommand(uint32_t id);

// Puts the mark where the cursor is; takes it away.
void PlaceMark();
void HideMark();
