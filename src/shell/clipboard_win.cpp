#include "shell/clipboard_win.h"

#include "edit/clipboard.h"
#include "shell/clipboard_view.h"
#include "shell/reporting.h"
#include <cstring>

namespace {

// Kept apart from FrameWindow, which is forgotten before the last formats are asked for.
HWND owner = nullptr;

constexpr UINT FOREIGN_FORMAT_ENTRY = 196;

} // namespace

void RegisterClipboard(HWND window) {
    owner = window;
    ClipFormat = RegisterClipboardFormatA(APPLICATION_TITLE);
}

void UpdateClipboardEntry(HMENU menu) {
    if (ClipFormat == 0 || !OpenClipboard(owner)) return;
    bool there = IsClipboardFormatAvailable(ClipFormat);
    EnableMenuItem(menu, FOREIGN_FORMAT_ENTRY, MF_BYCOMMAND | (there ? MF_ENABLED : MF_GRAYED));
    CloseClipboard();
}

bool HandleClipboardMessage(UINT message, WPARAM wParam) {
    switch (message) {
    case WM_RENDERFORMAT:
        RenderClipFormat(static_cast<uint32_t>(wParam));
        return true;
    case WM_RENDERALLFORMATS:
        RenderAllClipFormats();
        return true;
    case WM_DESTROYCLIPBOARD:
        DropClipFile();
        return true;
    default:
        return false;
    }
}

bool ViewOpenClipboard() {
    return OpenClipboard(owner);
}

void ViewCloseClipboard() {
    CloseClipboard();
}

void ViewEmptyClipboard() {
    EmptyClipboard();
}

void ViewOfferFormat(uint32_t format) {
    SetClipboardData(format, nullptr);
}

void ViewGiveFormat(uint32_t format, std::span<const uint8_t> bytes) {
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes.size());
    if (!block) return;
    if (void *room = GlobalLock(block)) {
        memcpy(room, bytes.data(), bytes.size());
        GlobalUnlock(block);
    }
    if (!SetClipboardData(format, block)) GlobalFree(block);
}

bool ViewOwnsClipboard() {
    return owner && GetClipboardOwner() == owner;
}
