// Who has the keyboard: the waves or the floating dialog. A selection gives it to the dialog, unless the user
// leaves it to the waves by Keys To Waves.
#pragma once

#include <cstdint>

// The dialog shows another selection. KeepFocus, else the first field that the selection has a use for, gets
// the keyboard. With Keys To Waves the control that has it, `before` (0 for none), keeps it, or gives it to
// the waves if it is disabled now.
void PlaceEditFocus(uint16_t before);

// The keyboard goes from the waves to the dialog, to the first enabled field. False if it stays.
bool EnterEditDialog();
// A character was typed in the waves. With Keys To Waves a digit, a letter or "#" begins the text of the
// first enabled field; false for any other, and where no field is enabled.
bool TypedInWaves(char c);
