#include "shell/dialog_items_win.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int SHOWN_TEXT_SIZE = 513;

HWND Item(HWND dialog, int id) {
    return dialog ? GetDlgItem(dialog, id) : nullptr;
}

// The answer of the control, or `none` if it does not exist.
LRESULT Ask(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam, LRESULT none) {
    HWND control = Item(dialog, id);
    return control ? SendMessageA(control, message, wParam, lParam) : none;
}

LRESULT AskText(HWND dialog, int id, UINT message, WPARAM wParam, const char *text, LRESULT none) {
    return Ask(dialog, id, message, wParam, reinterpret_cast<LPARAM>(text), none);
}

} // namespace

void SetWindowTextSafe(HWND window, const char *text) {
    if (window) SetWindowTextA(window, text);
}

void SetItemText(HWND dialog, int id, const char *text) {
    SetWindowTextSafe(Item(dialog, id), text);
}

void SetItemTextIfChanged(HWND dialog, int id, const char *text) {
    HWND control = Item(dialog, id);
    if (!control) return;
    char shown[SHOWN_TEXT_SIZE];
    GetWindowTextA(control, shown, sizeof shown);
    if (strcmp(shown, text) != 0) SetWindowTextA(control, text);
}

void SetItemNumberIfChanged(HWND dialog, int id, UINT value, bool isSigned) {
    if (!Item(dialog, id)) return;
    BOOL isNumber = FALSE;
    UINT shown = GetDlgItemInt(dialog, id, &isNumber, isSigned);
    if (!isNumber || shown != value) SetDlgItemInt(dialog, id, value, isSigned);
}

int GetItemText(HWND dialog, int id, char *buffer, int size) {
    buffer[0] = '\0';
    HWND control = Item(dialog, id);
    return control ? GetWindowTextA(control, buffer, size) : 0;
}

void SelectItemText(HWND dialog, int id) {
    Ask(dialog, id, EM_SETSEL, 0, 32767, 0);
}

void LimitItemText(HWND dialog, int id, int limit) {
    Ask(dialog, id, EM_LIMITTEXT, static_cast<WPARAM>(limit), 0, 0);
}

void EnableItem(HWND dialog, int id, bool on) {
    HWND control = Item(dialog, id);
    if (!control) return;
    if (!on && GetFocus() == control) SetFocus(GetParent(control));
    EnableWindow(control, on);
}

void ShowItem(HWND dialog, int id, bool on) {
    HWND control = Item(dialog, id);
    if (control) ShowWindow(control, on ? SW_SHOW : SW_HIDE);
}

void CheckItem(HWND dialog, int id, UINT state) {
    if (Item(dialog, id)) CheckDlgButton(dialog, id, state);
}

void UncheckItem(HWND dialog, int id) {
    CheckItem(dialog, id, BST_UNCHECKED);
}

bool IsItemChecked(HWND dialog, int id) {
    return Item(dialog, id) && IsDlgButtonChecked(dialog, id) == BST_CHECKED;
}

void CheckRadioItem(HWND dialog, int selected, int first, int last) {
    if (dialog) CheckRadioButton(dialog, first, last, selected);
}

void ListClear(HWND dialog, int id) {
    Ask(dialog, id, WM_SETREDRAW, FALSE, 0, 0);
    Ask(dialog, id, LB_RESETCONTENT, 0, 0, 0);
}

bool ListAdd(HWND dialog, int id, const char *text) {
    return AskText(dialog, id, LB_ADDSTRING, 0, text, LB_ERR) >= 0;
}

void ListRedraw(HWND dialog, int id) {
    HWND control = Item(dialog, id);
    if (!control) return;
    SendMessageA(control, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(control, nullptr, TRUE);
}

void ListDelete(HWND dialog, int id, int row) {
    Ask(dialog, id, LB_DELETESTRING, static_cast<WPARAM>(row), 0, 0);
}

void ListReplace(HWND dialog, int id, int row, const char *text) {
    LRESULT state = Ask(dialog, id, LB_GETSEL, static_cast<WPARAM>(row), 0, LB_ERR);
    if (state == LB_ERR) return;
    ListDelete(dialog, id, row);
    AskText(dialog, id, LB_INSERTSTRING, static_cast<WPARAM>(row), text, LB_ERR);
    if (state > 0) ListSetSelected(dialog, id, row);
}

int ListGetText(HWND dialog, int id, int row, char *buffer, int size) {
    buffer[0] = '\0';
    LRESULT length = Ask(dialog, id, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0, LB_ERR);
    if (length < 0) return 0;
    // The list writes the whole text, whatever the room.
    std::vector<char> whole(static_cast<size_t>(length) + 1);
    AskText(dialog, id, LB_GETTEXT, static_cast<WPARAM>(row), whole.data(), LB_ERR);
    snprintf(buffer, static_cast<size_t>(size), "%s", whole.data());
    return static_cast<int>(strlen(buffer));
}

int ListNextSelected(HWND dialog, int id, int from) {
    LRESULT selected = Ask(dialog, id, LB_GETSELCOUNT, 0, 0, 0);
    if (selected == 0) return -1;
    if (selected < 0) return static_cast<int>(Ask(dialog, id, LB_GETCURSEL, 0, 0, -1));
    LRESULT rows = Ask(dialog, id, LB_GETCOUNT, 0, 0, 0);
    for (int row = from; row < rows; ++row) {
        if (Ask(dialog, id, LB_GETSEL, static_cast<WPARAM>(row), 0, 0) > 0) return row;
    }
    return -1;
}

int ListFirstSelected(HWND dialog, int id) {
    return ListNextSelected(dialog, id, 0);
}

void ListSetSelected(HWND dialog, int id, int row) {
    if (Ask(dialog, id, LB_GETSELCOUNT, 0, 0, LB_ERR) >= 0) {
        Ask(dialog, id, LB_SETSEL, row >= 0, row >= 0 ? row : -1, 0);
    } else {
        Ask(dialog, id, LB_SETCURSEL, static_cast<WPARAM>(row), 0, 0);
    }
}

void ComboAdd(HWND dialog, int id, const char *text) {
    AskText(dialog, id, CB_ADDSTRING, 0, text, CB_ERR);
}

int ComboGetSelection(HWND dialog, int id) {
    return static_cast<int>(Ask(dialog, id, CB_GETCURSEL, 0, 0, -1));
}

void ComboSetSelection(HWND dialog, int id, int index) {
    Ask(dialog, id, CB_SETCURSEL, static_cast<WPARAM>(index), 0, 0);
}

void DefaultPrinterString(char *buffer, int size) {
    GetProfileStringA("windows", "Device", "", buffer, static_cast<DWORD>(size));
}
