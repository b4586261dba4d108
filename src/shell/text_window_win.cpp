#include "shell/text_window_win.h"

#include "display/panes.h"
#include "shell/frame_win.h"
#include "shell/window_positions.h"
#include <vector>

namespace {

// What the list class itself does with a message.
WNDPROC ListClassProc = nullptr;

// A tag for each row of the list, and who is told of a chosen row; its answer says whether the row stays
// selected.
std::vector<uint32_t> RowTable;
bool (*RowCallback)(uint32_t tag, const char *text) = nullptr;

void ClearList(HWND window) {
    SendMessageA(window, LB_RESETCONTENT, 0, 0);
    RowTable.clear();
    ShowWindow(window, SW_HIDE);
}

void ChooseRow(HWND window) {
    LRESULT row = SendMessageA(window, LB_GETCURSEL, 0, 0);
    if (row < 0 || static_cast<size_t>(row) >= RowTable.size() || !RowCallback) return;
    LRESULT length = SendMessageA(window, LB_GETTEXTLEN, static_cast<WPARAM>(row), 0);
    if (length < 0) return;
    std::vector<char> text(static_cast<size_t>(length) + 1);
    SendMessageA(window, LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()));
    if (!RowCallback(RowTable[static_cast<size_t>(row)], text.data())) {
        SendMessageA(window, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    }
}

LRESULT CALLBACK ListWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) {
        ClearList(window);
        return 0;
    }
    LRESULT result = CallWindowProcA(ListClassProc, window, message, wParam, lParam);
    if (message == WM_LBUTTONUP) ChooseRow(window);
    return result;
}

WindowPlace StartPlace() {
    WindowPlace place;
    if (!ReadWindowPlace(TEXT_PLACE_KEY, place)) return DefaultTextPlace(ScreenWidth(), ScreenHeight());
    return FitToScreen(
        place, {ScreenWidth(), ScreenHeight(), GetSystemMetrics(SM_CXSIZE), GetSystemMetrics(SM_CYCAPTION)});
}

} // namespace

HWND CreateTextWindow(HWND frame) {
    WindowPlace place = StartPlace();
    HWND window = CreateWindowA(
        "Listbox", "", WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_VSCROLL | LBS_NOINTEGRALHEIGHT,
        place.left, place.top, place.right - place.left, place.bottom - place.top, frame, nullptr, Instance,
        nullptr);
    if (!window) return nullptr;
    ListClassProc = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListWndProc)));
    return window;
}

void DestroyTextWindow() {
    if (!TextWindow) return;
    SetWindowLongPtrA(TextWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListClassProc));
    DestroyWindow(TextWindow);
}
