#include "shell/about_box.h"

#include "resource.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"

namespace {

INT_PTR CALLBACK AboutProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
    case WM_INITDIALOG:
        SetDlgItemTextA(dialog, ABOUT_TITLE, APPLICATION_TITLE);
        SetDlgItemTextA(dialog, ABOUT_VERSION, "Version " KELVANE_VERSION_TEXT);
        return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
        EndDialog(dialog, IDOK);
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

void ShowAboutBox() {
    DialogBoxParamA(Instance, MAKEINTRESOURCEA(DIALOG_ABOUT), FrameWindow, AboutProc, 0);
}
