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
// The label of a field has the field's number and this.
constexpr uint16_t EDIT_LABEL = 10;
// What a field takes, in characters.
constexpr int EDIT_TEXT_LENGTH = 80;
// What ListedStates says of an empty list.
constexpr uint16_t NO_STATES = 65535;

struct EditDialogRecord {
    uint16_t ActiveField;  // the field that has the keyboard, or 0
    bool FieldDirty;       // its text has changed since
    uint16_t KeepFocus;    // the field that gets the keyboard after the next ShowSelection, or 0
    bool ForeverAllowed;   // a repeat without end hides nothing
    uint16_t ListedStates; // the state table in the list
    bool ValueTyped;       // the last thing that was done is a value that Enter or a double click took
    int32_t DialogX;       // where the window stood when it was closed; both 0 until then
    int32_t DialogY;
};
// Written by the routines below, and the place by the window.
extern EditDialogRecord EditDialog;
// Puts the start values in place.
void InitEditDialog();

// Brings the dialog to the top, or makes it.
void OpenEditDialog();
// Puts the selection's text and numbers into the dialog, if it is open. Called by ShowSelection.
void FillEditDialog(const char *title);
// Whether the selection has a use for the control; as FillEditDialog found it for EDIT_FOREVER.
bool EditControlIsUsed(uint16_t id);

// What the window tells: it was made; a field got the keyboard, was typed in, lost the keyboard; the Enter
// key; the Esc key, which takes back what was typed, or, where nothing was, gives the keyboard to the waves.
void EditDialogOpened();
void EditFieldFocused(uint16_t id);
void EditFieldChanged(uint16_t id);
void EditFieldLeft(uint16_t id);
void EditFieldEntered();
void EditFieldCancelled();

// A field's text is taken; `enter` 1 if by the Enter key, 0 if the field lost the focus. A text that says
// nothing is no entry: the field shows again what it was.
void FieldCommit(uint16_t id, int enter);
void ShowFieldAgain(uint16_t id);
// The selected state is taken; `dblClick` has the place of `enter`.
void PickState(int dblClick);
void ForeverClicked(int checked);
// Something else is done, a press or a command: the next value is not typed in a row with the last one.
void EndTyping();
