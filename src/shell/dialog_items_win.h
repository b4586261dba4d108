// Wrappers for what dialogs do with their controls. Each does nothing without a dialog or without the
// control, so that a refresh can run whether or not its dialog is open.
#pragma once

#include <windows.h>

void SetWindowTextSafe(HWND window, const char *text);
void SetItemText(HWND dialog, int id, const char *text);
// Sets the text, or the number, only if the control shows another one.
void SetItemTextIfChanged(HWND dialog, int id, const char *text);
void SetItemNumberIfChanged(HWND dialog, int id, UINT value, bool isSigned);
// The length of the text, cut to `size` - 1 characters; 0 and an empty text without a dialog.
int GetItemText(HWND dialog, int id, char *buffer, int size);
void SelectItemText(HWND dialog, int id);
void LimitItemText(HWND dialog, int id, int limit);

// A control that loses the focus by being disabled hands it to its parent.
void EnableItem(HWND dialog, int id, bool on);
void ShowItem(HWND dialog, int id, bool on);
void CheckItem(HWND dialog, int id, UINT state);
void UncheckItem(HWND dialog, int id);
bool IsItemChecked(HWND dialog, int id);
void CheckRadioItem(HWND dialog, int selected, int first, int last);

// Empties a list and stops its drawing until ListRedraw.
void ListClear(HWND dialog, int id);
bool ListAdd(HWND dialog, int id, const char *text);
void ListRedraw(HWND dialog, int id);
void ListDelete(HWND dialog, int id, int row);
// Replaces a row's text; the row stays selected or not.
void ListReplace(HWND dialog, int id, int row, const char *text);
// A row's text, cut to `size` - 1 characters; its length, or 0 if there is no such row.
int ListGetText(HWND dialog, int id, int row, char *buffer, int size);
// The first selected row at or behind `from`, -1 if there is none. A list of single selection gives its
// selected row whatever `from` is.
int ListNextSelected(HWND dialog, int id, int from);
int ListFirstSelected(HWND dialog, int id);
// Selects a row; -1 clears the selection.
void ListSetSelected(HWND dialog, int id, int row);

void ComboAdd(HWND dialog, int id, const char *text);
// -1 without a selection.
int ComboGetSelection(HWND dialog, int id);
void ComboSetSelection(HWND dialog, int id, int index);

// The default printer's name, driver and port.
void DefaultPrinterString(char *buffer, int size);
