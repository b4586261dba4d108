#include "edit/clipboard.h"

uint16_t ClipWidth;

void CutCopyDelete(uint32_t) {}
int PasteAtSelection(uint16_t) {
    return 0;
}
