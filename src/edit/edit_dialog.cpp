#include "edit/edit_dialog.h"

#include "config/settings.h"
#include "edit/edit_dialog_focus.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "shell/edit_dialog_view.h"
#include "store/queries.h"
#include "store/state_table.h"
#include <algorithm>
#include <cstdio>
#include <string>

EditDialogRecord EditDialog;

namespace {

constexpr const char *FOREVER_TEXT = "##";

// Set while the program fills the fields, which is no typing.
bool filling = false;

// --- what is shown --------------------------------------------------------------------------------

// The reference that is selected; null where the selection is none.
const PatternItem *SelectedReference() {
    const Pattern *pattern = SelectedPattern();
    uint16_t item = DeepestFrame().item;
    bool kindFits = EditSelection.SelKind == SEL_PATTERN || EditSelection.SelKind == SEL_COMPOSITE;
    if (!kindFits || !pattern || item >= pattern->itemCount) return nullptr;
    return pattern->item(item).isReference() ? &pattern->item(item) : nullptr;
}

uint16_t SelectedRepeat() {
    const PatternItem *reference = SelectedReference();
    return reference ? reference->repeat() : 1;
}

// A repeat without end may stand only at the tail of a node. Anywhere else it would hide what follows.
bool IsAtTail() {
    Pattern *root = SelectionRoot();
    if (!root || !root->hasProperties()) return false;
    if (EditSelection.SelKind == SEL_WHOLE) return true;
    if (EditSelection.SelDepth != 1) return false;
    const SelFrame &frame = DeepestFrame();
    if (EditSelection.SelKind == SEL_PATTERN) return frame.item + 1 == root->itemCount;
    return EditSelection.SelKind == SEL_SPAN && frame.end == PatternDuration(root);
}

std::string DurationText() {
    const SelFrame &frame = DeepestFrame();
    return SelectionHasDuration() ? TimeFormat(frame.end - frame.start) : "";
}

std::string ValueText() {
    if (EditSelection.SelKind != SEL_PULSE) return "";
    char text[16];
    snprintf(text, sizeof text, "%X", EditSelection.SelValue);
    return text;
}

std::string ScaleText() {
    if (!SelectionHasScale()) return "";
    const PatternItem *reference = SelectedReference();
    return std::to_string(reference ? reference->scale() : 1);
}

std::string RepeatText() {
    if (!SelectionHasRepeat()) return "";
    uint16_t repeat = SelectedRepeat();
    return repeat == REPEAT_FOREVER ? FOREVER_TEXT : std::to_string(repeat);
}

std::string TextOf(uint16_t id) {
    switch (id) {
    case EDIT_DURATION:
        return DurationText();
    case EDIT_VALUE:
        return ValueText();
    case EDIT_SCALE:
        return ScaleText();
    default:
        return RepeatText();
    }
}

// --- filling --------------------------------------------------------------------------------------

void ListStates(uint16_t tableIndex) {
    if (EditDialog.ListedStates == tableIndex) return;
    EditDialog.ListedStates = tableIndex;
    ClearStateList();
    if (tableIndex != NO_STATES) {
        StateTable *table = StateTableOrDefault(tableIndex);
        for (uint32_t i = 0; i < table->rowCount; i++) AddState(table->rows()[i].stateName);
    }
    ShowStateList();
}

// The row of the selected value, as it is named: the last one for a value beyond the table.
int32_t StateRowToShow() {
    if (EditSelection.SelKind != SEL_PULSE) return -1;
    int32_t last = StateTableOrDefault(EditSelection.SelStateTable)->rowCount - 1;
    return static_cast<int32_t>(std::min<int64_t>(EditSelection.SelValue, last));
}

void FillStates() {
    bool enabled = SelectionHasStates();
    EnableEditItem(EDIT_STATES, enabled);
    ListStates(enabled ? EditSelection.SelStateTable : NO_STATES);
    if (enabled) SelectState(StateRowToShow());
}

void FillField(uint16_t id) {
    EnableEditItem(id, EditControlIsUsed(id));
    SetEditText(id, TextOf(id).c_str());
}

bool IsField(uint16_t id) {
    return id >= EDIT_DURATION && id <= EDIT_REPEAT;
}

} // namespace

void InitEditDialog() {
    EditDialog = {};
    EditDialog.ListedStates = NO_STATES;
    filling = false;
}

void OpenEditDialog() {
    ShowEditDialog();
}

bool EditControlIsUsed(uint16_t id) {
    switch (id) {
    case EDIT_DURATION:
        return SelectionHasDuration();
    case EDIT_VALUE:
        return SelectionHasValue();
    case EDIT_SCALE:
        return SelectionHasScale();
    case EDIT_REPEAT:
        // Until the check box takes "forever" away.
        return SelectionHasRepeat() && SelectedRepeat() != REPEAT_FOREVER;
    case EDIT_STATES:
        return SelectionHasStates();
    case EDIT_FOREVER:
        return EditDialog.ForeverAllowed;
    default:
        return false;
    }
}

void FillEditDialog(const char *title) {
    EditDialog.ForeverAllowed = IsAtTail();
    if (!EditDialogIsOpen()) {
        EditDialog.KeepFocus = 0;
        return;
    }
    uint16_t before = FocusedEditControl();
    // What was typed belongs to what was selected; a field that is disabled now must not write it.
    EditDialog.FieldDirty = false;
    filling = true;
    SetEditDialogTitle(title);
    for (uint16_t id = EDIT_DURATION; id <= EDIT_REPEAT; id++) FillField(id);
    FillStates();
    EnableEditItem(EDIT_FOREVER, EditDialog.ForeverAllowed);
    CheckForever(SelectedRepeat() == REPEAT_FOREVER);
    PlaceEditFocus(before);
    filling = false;
}

void ShowFieldAgain(uint16_t id) {
    EditDialog.FieldDirty = false;
    filling = true;
    SetEditText(id, TextOf(id).c_str());
    filling = false;
}

void EndTyping() {
    EditDialog.ValueTyped = false;
}

void EditDialogOpened() {
    ClearStateList();
    ShowStateList();
    EditDialog.ListedStates = NO_STATES;
    EditDialog.ActiveField = 0;
    EditDialog.FieldDirty = false;
}

void EditFieldFocused(uint16_t id) {
    if (!IsField(id)) return;
    EditDialog.ActiveField = id;
    EditDialog.FieldDirty = false;
}

void EditFieldChanged(uint16_t id) {
    if (filling || id != EditDialog.ActiveField) return;
    EditDialog.FieldDirty = true;
}

void EditFieldLeft(uint16_t id) {
    EditDialog.ActiveField = 0;
    if (!EditDialog.FieldDirty) return;
    EditDialog.FieldDirty = false;
    FieldCommit(id, 0);
}

void EditFieldEntered() {
    if (EditDialog.ActiveField == 0) return;
    EditDialog.FieldDirty = false;
    FieldCommit(EditDialog.ActiveField, 1);
}

void EditFieldCancelled() {
    // A text that was typed is taken back first; with Keys To Waves a field is only lent the keyboard.
    bool leave = Settings.KeysToWaves || !EditDialog.FieldDirty;
    EditDialog.KeepFocus = EditDialog.ActiveField;
    FillEditDialog(SelectionText().c_str());
    if (leave) FocusWaves();
}
