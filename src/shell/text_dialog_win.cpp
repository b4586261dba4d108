#include "shell/text_dialog.h"

#include "resource.h"
#include "shell/dialog_items_win.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"

namespace {

// Where the dialog stood last in this run.
RECT TextDialogPlace = {};

struct TextQuestion {
    const char *label;
    char *buffer;
    int size;
};

void OpenQuestion(HWND dialog, const TextQuestion &question) {
    SetWindowTextA(dialog, APPLICATION_TITLE);
    SetItemText(dialog, GET_TEXT_LABEL, question.label);
    LimitItemText(dialog, GET_TEXT_FIELD, question.size - 1);
    SetItemTextIfChanged(dialog, GET_TEXT_FIELD, question.buffer);
    SelectItemText(dialog, GET_TEXT_FIELD);
    if (TextDialogPlace.left == 0 && TextDialogPlace.top == 0) return;
    SetWindowPos(dialog, nullptr, TextDialogPlace.left, TextDialogPlace.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void CloseQuestion(HWND dialog, bool ok) {
    auto *question = reinterpret_cast<TextQuestion *>(GetWindowLongPtrA(dialog, DWLP_USER));
    if (ok) GetItemText(dialog, GET_TEXT_FIELD, question->buffer, question->size);
    GetWindowRect(dialog, &TextDialogPlace);
    EndDialog(dialog, ok);
}

INT_PTR CALLBACK QuestionProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrA(dialog, DWLP_USER, lParam);
        OpenQuestion(dialog, *reinterpret_cast<TextQuestion *>(lParam));
        SetFocus(GetDlgItem(dialog, GET_TEXT_FIELD));
        return FALSE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
        CloseQuestion(dialog, LOWORD(wParam) == IDOK);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

int GetTextDialog(const char *label, char *buffer, int size) {
    TextQuestion question = {label, buffer, size};
    HWND owner = GetActiveWindow();
    INT_PTR answer = DialogBoxParamA(Instance, MAKEINTRESOURCEA(DIALOG_GET_TEXT), owner ? owner : FrameWindow,
                                     QuestionProc, reinterpret_cast<LPARAM>(&question));
    return answer == 1;
}
