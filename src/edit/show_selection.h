// Tells the user what is selected: the text, the floating dialog's fields and what the menu allows.
#pragma once

#include <cstdint>
#include <string>

// A pattern whose equal neighbours are joined once the selection has left it, 0 for none: while values are
// typed along a wave, an item must not vanish under the cursor. Written by the floating dialog and by
// ShowSelection.
extern uint16_t PendingMerge;
// Puts the start values in place: nothing is selected, and no merge waits.
void InitShowSelection();

// The text for the selection as it is.
std::string SelectionText();
// Does a pending merge that is due, moves view and cursor to what is selected, and refreshes dialog and menu.
void ShowSelection();
// True where the fields of the floating dialog may be used, by the kind of the selection.
bool SelectionHasDuration();
bool SelectionHasValue();
bool SelectionHasScale();
bool SelectionHasRepeat();
bool SelectionHasStates();
// True where the selection can be cut, copied and deleted, and where a paste can go to it: then it is as wide
// as what was cut, copied or deleted last.
bool SelectionCanBeCut();
bool SelectionTakesPaste();
