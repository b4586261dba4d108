#include "headless/clipboard.h"
#include "edit/clipboard.h"
#include "shell/clipboard_view.h"

HeadlessClipboardState HeadlessClipboard;

void InitHeadlessClipboard() {
    HeadlessClipboard = {};
}

void HeadlessLoseClipboard() {
    DropClipFile();
    HeadlessClipboard.owned = false;
    HeadlessClipboard.offered.clear();
}

bool ViewOpenClipboard() {
    if (!HeadlessClipboard.works || HeadlessClipboard.open) return false;
    HeadlessClipboard.open = true;
    return true;
}

void ViewCloseClipboard() {
    HeadlessClipboard.open = false;
}

void ViewEmptyClipboard() {
    if (HeadlessClipboard.owned) DropClipFile();
    HeadlessClipboard.owned = true;
    HeadlessClipboard.offered.clear();
    ++HeadlessClipboard.emptied;
}

void ViewOfferFormat(uint32_t format) {
    HeadlessClipboard.offered.push_back(format);
}

void ViewGiveFormat(uint32_t format, std::span<const uint8_t> bytes) {
    HeadlessClipboard.givenFormat = format;
    HeadlessClipboard.given.assign(bytes.begin(), bytes.end());
}

bool ViewOwnsClipboard() {
    return HeadlessClipboard.owned;
}
