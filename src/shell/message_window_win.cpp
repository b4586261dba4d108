#include "shell/message_window_win.h"

#include "shell/frame_win.h"

namespace {

constexpr const char *CLASS_NAME = "OGX.Murrel.MsgWindow";

LRESULT CALLBACK MessageWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

void CreateMessageWindow(HWND frame) {
    WNDCLASSA description = {};
    description.lpfnWndProc = MessageWindowProc;
    description.hInstance = Instance;
    description.lpszClassName = CLASS_NAME;
    RegisterClassA(&description);
    CreateWindowA(CLASS_NAME, "", WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, frame, nullptr, Instance, nullptr);
}
