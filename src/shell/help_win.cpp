#include "shell/help_win.h"

#include "shell/frame_win.h"
#include "shell/help.h"
#include "shell/reporting.h"
#include <cstdio>
#include <shellapi.h>
#include <vector>

UINT HelpHookMessage = 0;

namespace {

HHOOK helpHook = nullptr;

constexpr const char *REDIRECT_NAME = "kelvane-help.html";

LRESULT CALLBACK HelpFilter(int code, WPARAM wParam, LPARAM lParam) {
    if (code == MSGF_MENU) {
        const MSG &message = *reinterpret_cast<const MSG *>(lParam);
        if (message.message == WM_KEYDOWN && message.wParam == VK_F1 && FrameWindow)
            PostMessageA(FrameWindow, HelpHookMessage, HELP_IN_MENU, 0);
    }
    return CallNextHookEx(helpHook, code, wParam, lParam);
}

std::string Utf8(const char *text) {
    std::vector<wchar_t> wide(MAX_PATH_SIZE);
    if (!MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), MAX_PATH_SIZE)) return text;
    // No character takes more than three bytes.
    std::vector<char> bytes(3 * MAX_PATH_SIZE);
    int size = static_cast<int>(bytes.size());
    if (!WideCharToMultiByte(CP_UTF8, 0, wide.data(), -1, bytes.data(), size, nullptr, nullptr)) return text;
    return bytes.data();
}

// Writes the page that leads on to the manual; false if that fails. A shell that opens a local file drops
// the anchor, while a browser follows it out of a page.
bool WriteRedirect(const char *redirect, const std::string &page) {
    FileHandle file = OpenForWriting(redirect);
    if (file == NO_FILE) return false;
    bool whole = WriteBytes(file, page.data(), page.size()) == static_cast<int64_t>(page.size());
    CloseFile(file);
    return whole;
}

bool FormRedirectPath(char (&path)[MAX_PATH_SIZE]) {
    char directory[MAX_PATH_SIZE];
    DWORD length = GetTempPathA(sizeof directory, directory);
    if (length == 0 || length >= sizeof directory) return false;
    return snprintf(path, sizeof path, "%s%s", directory, REDIRECT_NAME) < MAX_PATH_SIZE;
}

// ShellExecute answers a number above 32 if it went well.
bool OpenFile(const char *path) {
    return reinterpret_cast<INT_PTR>(
               ShellExecuteA(FrameWindow, "open", path, nullptr, nullptr, SW_SHOWNORMAL)) > 32;
}

} // namespace

void InstallHelpHook() {
    HelpHookMessage = RegisterWindowMessageA("HelpHookMessage");
    helpHook = SetWindowsHookExA(WH_MSGFILTER, HelpFilter, nullptr, GetCurrentThreadId());
}

void RemoveHelpHook() {
    if (helpHook) UnhookWindowsHookEx(helpHook);
    helpHook = nullptr;
}

bool ShowHelpFile(const char *file, HelpTopic topic, uint16_t context) {
    switch (topic) {
    case HelpTopic::Contents:
        return WinHelpA(FrameWindow, file, HELP_INDEX, 0);
    case HelpTopic::Search:
        return WinHelpA(FrameWindow, file, HELP_PARTIALKEY, reinterpret_cast<ULONG_PTR>(""));
    case HelpTopic::UsingHelp:
        return WinHelpA(FrameWindow, file, HELP_HELPONHELP, 0);
    default:
        return WinHelpA(FrameWindow, file, HELP_CONTEXT, context);
    }
}

void CloseHelpFile(const char *file) {
    WinHelpA(FrameWindow, file, HELP_QUIT, 0);
}

void OpenManualPage(const char *path, const std::string &anchor) {
    char redirect[MAX_PATH_SIZE];
    bool leads =
        FormRedirectPath(redirect) && WriteRedirect(redirect, RedirectPage(FileUrl(Utf8(path), anchor)));
    if (!OpenFile(leads ? redirect : path))
        UserErrorFormat("No program shows the manual here.\nOpen this page with a web browser: %s", path);
}
