// The drag of what is selected: an edge of a pulse, a pulse that is pulled out of a level, or the start of a
// whole wave.
#pragma once

#include "store/time_value.h"

// Prepares DragPreview for a drag of the selection from `time` on, in the list row `row`. With `insert` all
// behind the edge moves with it; otherwise it moves between its neighbours. 1 if a drag starts, and the
// preview then follows the mouse; 0 if the selection cannot be dragged there.
int BeginDrag(uint32_t row, TimeVal time, bool insert);
// Ends the drag: does to the pattern what the preview showed, and selects what was dragged.
void ApplyDrag();
