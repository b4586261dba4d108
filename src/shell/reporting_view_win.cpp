#include "shell/reporting_view.h"

#include "display/surface_win.h"
#include "shell/frame_win.h"

namespace {

HWND ErrorStripWindow = nullptr;

void RemoveStrip() {
    if (ErrorStripWindow) {
        DestroyWindow(ErrorStripWindow);
        ErrorStripWindow = nullptr;
    }
    if (FrameWindow) UpdateWindow(FrameWindow);
}

// Directly above the prompt line.
HWND CreateStrip(const char *text) {
    RECT frame;
    GetWindowRect(FrameWindow, &frame);
    int border = GetSystemMetrics(SM_CXFRAME);
    int height = GetSystemMetrics(SM_CYMENU);
    int top = frame.bottom - 2 * height - GetSystemMetrics(SM_CYFRAME);
    HWND strip = CreateWindowA("STATIC", text, WS_POPUP | WS_BORDER | SS_NOPREFIX | SS_LEFTNOWORDWRAP,
                               frame.left + border, top, frame.right - frame.left - 2 * border, height,
                               FrameWindow, nullptr, Instance, nullptr);
    if (!strip) return nullptr;
    SendMessageA(strip, WM_SETFONT, reinterpret_cast<WPARAM>(MainFont()), FALSE);
    ShowWindow(strip, SW_SHOWNOACTIVATE);
    UpdateWindow(strip);
    return strip;
}

} // namespace

void ViewShowStrip(const char *text) {
    // The main window takes the strip that it owns with it.
    if (ErrorStripWindow && !IsWindow(ErrorStripWindow)) ErrorStripWindow = nullptr;
    if (!text || !FrameWindow) {
        RemoveStrip();
        return;
    }
    if (ErrorStripWindow) {
        SetWindowTextA(ErrorStripWindow, text);
        return;
    }
    HWND focus = GetFocus();
    ErrorStripWindow = CreateStrip(text);
    if (focus && GetFocus() != focus) SetFocus(focus);
}

void ViewMessageBox(MessageKind kind, const char *caption, const char *text) {
    UINT icon = kind == MessageKind::User ? MB_ICONEXCLAMATION : MB_ICONHAND;
    MessageBoxA(FrameWindow, text, caption, MB_OK | icon);
}
