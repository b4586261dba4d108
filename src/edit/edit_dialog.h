// The floating dialog that shows the numbers of the selection: each field writes straight back into the
// pattern, and one write is one undo step.
#pragma once

#include <cstdint>

// The dialog's controls.
enum EditDialogControl : uint16_t {
    EDIT_DURATION = 101,
    EDIT_VALUE = 102,
    EDIT_SCALE = 103,
    EDIT_REPEAT = 104,
    EDIT_STATES = 105,
    EDIT_FOREVER = 106,
};

// Brings the dialog to the top, or makes it.
void OpenEditDialog();
// Puts the selection's text and numbers into the dialog, if it is open. Called by ShowSelection.
void FillEditDialog(const char *title);
// A field's text is taken; `enter` 1 if by the Enter key, 0 if the field lost the focus.
void FieldCommit(uint16_t id, int enter);
// The selected state is taken; `dblClick` has the place of `enter`.
void PickState(int dblClick);
void ForeverClicked(int checked);
