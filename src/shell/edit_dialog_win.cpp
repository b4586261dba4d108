#include "shell/edit_dialog_win.h"

#include "config/settings.h"
#include "edit/edit_dialog.h"
#include "resource.h"
#include "shell/commands.h"
#include "shell/dialog_items_win.h"
#include "shell/edit_dialog_view.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"
#include <initializer_list>

namespace {

HWND editDialog = nullptr;

void OpenDialog(HWND dialog) {
    editDialog = dialog;
    if (EditDialog.DialogX != 0 || EditDialog.DialogY != 0)
        SetWindowPos(dialog, nullptr, EditDialog.DialogX, EditDialog.DialogY, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    for (int id = EDIT_DURATION; id <= EDIT_REPEAT; id++) LimitItemText(dialog, id, EDIT_TEXT_LENGTH);
    EditDialogOpened();
}

void CloseDialog(HWND dialog) {
    // What was typed is taken, as when the field is left.
    if (uint16_t id = EditDialog.ActiveField) EditFieldLeft(id);
    RECT place = {};
    GetWindowRect(dialog, &place);
    EditDialog.DialogX = place.left;
    EditDialog.DialogY = place.top;
    DestroyWindow(dialog);
}

void TakeFieldMessage(uint16_t id, WORD what) {
    if (what == EN_SETFOCUS) EditFieldFocused(id);
    if (what == EN_CHANGE) EditFieldChanged(id);
    if (what == EN_KILLFOCUS && EditDialog.ActiveField == id) EditFieldLeft(id);
}

void TakeCommand(HWND dialog, WORD id, WORD what) {
    switch (id) {
    case IDOK:
        EditFieldEntered();
        break;
    case IDCANCEL:
        EditFieldCancelled();
        break;
    case EDIT_STATES:
        if (what == LBN_SELCHANGE || what == LBN_DBLCLK) PickState(what == LBN_DBLCLK);
        break;
    case EDIT_FOREVER:
        if (what == BN_CLICKED) ForeverClicked(IsItemChecked(dialog, EDIT_FOREVER));
        break;
    default:
        TakeFieldMessage(id, what);
        break;
    }
}

// A key of the waves came from the dialog. What was typed is taken first, as the field is left.
void RunKeyOfWaves(uint32_t command) {
    FocusWaves();
    if (CommandIsAllowed(command)) DispatchCommand(static_cast<int32_t>(command));
}

bool IsKey(WPARAM wParam, LPARAM lParam) {
    return HIWORD(wParam) == 1 && lParam == 0;
}

INT_PTR CALLBACK EditProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        OpenDialog(dialog);
        return FALSE;
    case WM_COMMAND:
        if (IsKey(wParam, lParam)) {
            RunKeyOfWaves(static_cast<uint32_t>(CommandOf(wParam)));
        } else {
            TakeCommand(dialog, LOWORD(wParam), HIWORD(wParam));
        }
        return TRUE;
    case WM_SYSCOMMAND:
        return OpenMenuByKey(wParam, lParam);
    case WM_CLOSE:
        CloseDialog(dialog);
        return TRUE;
    case WM_DESTROY:
        // The frame takes its dialogs along when it goes.
        editDialog = nullptr;
        EditDialog.ActiveField = 0;
        EditDialog.FieldDirty = false;
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

bool EditDialogIsOpen() {
    return editDialog != nullptr;
}

void ShowEditDialog() {
    if (!editDialog &&
        !CreateDialogParamA(Instance, MAKEINTRESOURCEA(DIALOG_EDIT), FrameWindow, EditProc, 0)) {
        ProgramError("CreateDialog Failure in OpenEditDialog");
        return;
    }
    SetWindowPos(editDialog, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void SetEditDialogTitle(const char *title) {
    SetWindowTextSafe(editDialog, title);
}

void EnableEditItem(uint16_t id, bool on) {
    EnableItem(editDialog, id, on);
    EnableItem(editDialog, id + EDIT_LABEL, on);
}

void SetEditText(uint16_t id, const char *text) {
    SetItemTextIfChanged(editDialog, id, text);
}

void GetEditText(uint16_t id, char *buffer, size_t size) {
    GetItemText(editDialog, id, buffer, static_cast<int>(size));
}

void FocusEditField(uint16_t id) {
    HWND field = editDialog ? GetDlgItem(editDialog, id) : nullptr;
    if (!field) return;
    if (GetFocus() != field) SetFocus(field);
    if (id != EDIT_STATES) SelectItemText(editDialog, id);
}

void CheckForever(bool on) {
    CheckItem(editDialog, EDIT_FOREVER, on ? BST_CHECKED : BST_UNCHECKED);
}

uint16_t FocusedEditControl() {
    HWND focus = GetFocus();
    bool inside = editDialog && focus && IsChild(editDialog, focus);
    return inside ? static_cast<uint16_t>(GetDlgCtrlID(focus)) : 0;
}

void FocusWaves() {
    if (FrameWindow) SetFocus(FrameWindow);
}

void TypeIntoEditField(uint16_t id, char c) {
    if (editDialog) SendDlgItemMessageA(editDialog, id, WM_CHAR, static_cast<unsigned char>(c), 1);
}

bool TakenByWaves(HACCEL keys, MSG *message) {
    bool here = Settings.KeysToWaves && editDialog && GetActiveWindow() == editDialog;
    return here && TranslateAcceleratorA(editDialog, keys, message);
}

void ClearStateList() {
    ListClear(editDialog, EDIT_STATES);
}

void AddState(const char *name) {
    ListAdd(editDialog, EDIT_STATES, name);
}

void ShowStateList() {
    ListRedraw(editDialog, EDIT_STATES);
}

void SelectState(int32_t row) {
    ListSetSelected(editDialog, EDIT_STATES, row);
}

int32_t SelectedState() {
    return ListFirstSelected(editDialog, EDIT_STATES);
}
