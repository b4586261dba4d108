// The platform's clipboard. The program tells the others there that it has something, and hands it over only
// when one of them asks.
#pragma once

#include <cstdint>
#include <span>

// Between these two the clipboard is ours alone. False if another program has it.
bool ViewOpenClipboard();
void ViewCloseClipboard();
// Takes the clipboard over. Whoever had it before, this program perhaps, drops what it held.
void ViewEmptyClipboard();
// Tells that there is something in the format, to be handed over when asked for.
void ViewOfferFormat(uint32_t format);
// Hands it over.
void ViewGiveFormat(uint32_t format, std::span<const uint8_t> bytes);
// True while nobody has taken the clipboard from the main window.
bool ViewOwnsClipboard();
