#include "edit/edit_dialog_focus.h"

#include "config/settings.h"
#include "edit/edit_dialog.h"
#include "shell/edit_dialog_view.h"

namespace {

// In the order in which they want the keyboard; 0 if none is enabled.
uint16_t FirstEnabledField() {
    for (uint16_t id : {EDIT_VALUE, EDIT_DURATION, EDIT_REPEAT, EDIT_SCALE})
        if (EditControlIsUsed(id)) return id;
    return 0;
}

bool BeginsText(char c) {
    return c == '#' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The check box has no text to select.
void KeepFocusAt(uint16_t id) {
    if (!EditControlIsUsed(id)) {
        FocusWaves();
    } else if (id != EDIT_FOREVER) {
        FocusEditField(id);
    }
}

} // namespace

void PlaceEditFocus(uint16_t before) {
    uint16_t keep = EditDialog.KeepFocus;
    EditDialog.KeepFocus = 0;
    if (Settings.KeysToWaves) {
        if (before) KeepFocusAt(before);
        return;
    }
    uint16_t id = EditControlIsUsed(keep) ? keep : FirstEnabledField();
    if (id) FocusEditField(id);
}

bool EnterEditDialog() {
    // Whatever has states has a field, too.
    uint16_t id = FirstEnabledField();
    if (!id || !EditDialogIsOpen()) return false;
    FocusEditField(id);
    return true;
}

bool TypedInWaves(char c) {
    uint16_t id = FirstEnabledField();
    if (!Settings.KeysToWaves || !BeginsText(c) || !id || !EditDialogIsOpen()) return false;
    FocusEditField(id);
    TypeIntoEditField(id, c);
    return true;
}
