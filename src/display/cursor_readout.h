// The prompt line's account of the cursor: its time, and what the selected row shows there.
#pragma once

// Puts the read-out into the prompt line, and enables Expand Bus by BusIsSelected.
void ShowCursorReadout();
// True if a row is selected that shows a bus of its own, not a composite or a reference.
bool BusIsSelected();
