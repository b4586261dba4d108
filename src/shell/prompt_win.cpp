#include "shell/prompt_win.h"

#include "display/surface_win.h"
#include "shell/frame_win.h"
#include "shell/reporting_view.h"
#include <cstring>

namespace {

constexpr const char *CLASS_NAME = "VRDPROMPT";

void PaintPrompt(HWND window) {
    // The line must not make the main window paint as well.
    RECT client;
    GetClientRect(FrameWindow, &client);
    ValidateRect(FrameWindow, &client);

    PAINTSTRUCT paint;
    HDC context = BeginPaint(window, &paint);
    HGDIOBJ before = SelectObject(context, MainFont());
    SetTextColor(context, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(context, GetSysColor(COLOR_WINDOW));
    TextOutA(context, 1, 0, PromptText, static_cast<int>(strlen(PromptText)));
    SelectObject(context, before);
    EndPaint(window, &paint);
}

LRESULT CALLBACK PromptWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_PAINT) return DefWindowProcA(window, message, wParam, lParam);
    PaintPrompt(window);
    return 0;
}

} // namespace

bool RegisterPromptClass() {
    WNDCLASSA description = {};
    description.lpfnWndProc = PromptWndProc;
    description.hInstance = Instance;
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
    description.lpszClassName = CLASS_NAME;
    return RegisterClassA(&description) != 0;
}

HWND CreatePromptWindow(HWND frame) {
    RECT client;
    GetClientRect(frame, &client);
    return CreateWindowA(CLASS_NAME, "VRDPrompt", WS_CHILD | WS_CLIPSIBLINGS | WS_VISIBLE, 0,
                         client.bottom - PromptHeight(), client.right, PromptHeight(), frame, nullptr,
                         Instance, nullptr);
}

int PromptHeight() {
    return GetSystemMetrics(SM_CYMENU);
}

void ViewShowPrompt(bool layOut) {
    if (!PromptWindow) return;
    if (layOut) {
        RECT client;
        GetClientRect(FrameWindow, &client);
        MoveWindow(PromptWindow, 0, client.bottom - PromptHeight(), client.right, PromptHeight(), TRUE);
    }
    InvalidateRect(PromptWindow, nullptr, TRUE);
    UpdateWindow(PromptWindow);
}
