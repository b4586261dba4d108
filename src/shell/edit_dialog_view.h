// The window of the floating dialog as the engine sees it. Its controls are those of EditDialogControl. All
// but the first two do nothing while it is closed.
#pragma once

#include <cstddef>
#include <cstdint>

bool EditDialogIsOpen();
// Makes the window, without taking the keyboard from the main window, or brings it to the top.
void ShowEditDialog();

void SetEditDialogTitle(const char *title);
// A field goes with its label.
void EnableEditItem(uint16_t id, bool on);
void SetEditText(uint16_t id, const char *text);
// The text of a field, cut to `size` - 1 characters.
void GetEditText(uint16_t id, char *buffer, size_t size);
// Gives a field, with its text selected, or the list the keyboard.
void FocusEditField(uint16_t id);
void CheckForever(bool on);

// The control of the dialog that has the keyboard, or 0.
uint16_t FocusedEditControl();
// Gives the main window the keyboard, where the keys act on the waves.
void FocusWaves();
// Types a character into the field that has the keyboard.
void TypeIntoEditField(uint16_t id, char c);

// The list of states. -1 is no row.
void ClearStateList();
void AddState(const char *name);
void ShowStateList(); // ends the changes
void SelectState(int32_t row);
int32_t SelectedState();
