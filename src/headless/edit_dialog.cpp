#include "headless/edit_dialog.h"
#include "shell/edit_dialog_view.h"
#include <cstdio>

HeadlessEditDialogState HeadlessEditDialog;

namespace {

bool IsField(uint16_t id) {
    return id >= EDIT_DURATION && id <= EDIT_REPEAT;
}

bool IsEnabled(uint16_t id) {
    return HeadlessEditDialog.open && HeadlessEditDialog.enabled[id];
}

} // namespace

void InitHeadlessEditDialog() {
    HeadlessEditDialog = {};
}

void HeadlessFocus(uint16_t id) {
    uint16_t before = HeadlessEditDialog.focus;
    if (before == id) return;
    HeadlessEditDialog.focus = id;
    if (IsField(before)) EditFieldLeft(before);
    if (IsField(id) && HeadlessEditDialog.focus == id) EditFieldFocused(id);
}

bool HeadlessType(uint16_t id, const std::string &text) {
    if (!IsEnabled(id)) return false;
    HeadlessFocus(id);
    SetEditText(id, text.substr(0, EDIT_TEXT_LENGTH).c_str());
    EditFieldChanged(id);
    return true;
}

bool HeadlessTypeField(uint16_t id, const std::string &text, bool enter) {
    if (!HeadlessType(id, text)) return false;
    if (enter)
        EditFieldEntered();
    else
        HeadlessFocus(0);
    return true;
}

bool HeadlessPickState(int32_t row, bool dblClick) {
    if (!IsEnabled(EDIT_STATES) || row < 0 || row >= static_cast<int32_t>(HeadlessEditDialog.states.size()))
        return false;
    HeadlessFocus(EDIT_STATES);
    HeadlessEditDialog.stateSelected = row;
    PickState(dblClick);
    return true;
}

bool HeadlessClickForever(bool checked) {
    if (!IsEnabled(EDIT_FOREVER)) return false;
    HeadlessFocus(EDIT_FOREVER);
    HeadlessEditDialog.foreverChecked = checked;
    ForeverClicked(checked);
    return true;
}

void HeadlessCloseEditDialog() {
    HeadlessFocus(0);
    HeadlessEditDialog.open = false;
}

bool EditDialogIsOpen() {
    return HeadlessEditDialog.open;
}

void ShowEditDialog() {
    ++HeadlessEditDialog.shown;
    if (HeadlessEditDialog.open) return;
    HeadlessEditDialog.open = true;
    EditDialogOpened();
}

void SetEditDialogTitle(const char *title) {
    HeadlessEditDialog.title = title;
}

void EnableEditItem(uint16_t id, bool on) {
    if (!on && HeadlessEditDialog.focus == id) HeadlessFocus(0);
    HeadlessEditDialog.enabled[id] = on;
}

void SetEditText(uint16_t id, const char *text) {
    if (HeadlessEditDialog.texts[id] == text) return;
    HeadlessEditDialog.texts[id] = text;
    EditFieldChanged(id);
}

void GetEditText(uint16_t id, char *buffer, size_t size) {
    snprintf(buffer, size, "%s", HeadlessEditDialog.texts[id].c_str());
}

void FocusEditField(uint16_t id) {
    if (HeadlessEditDialog.open && HeadlessEditDialog.focus != id) HeadlessFocus(id);
}

void CheckForever(bool on) {
    HeadlessEditDialog.foreverChecked = on;
}

uint16_t FocusedEditControl() {
    return HeadlessEditDialog.open ? HeadlessEditDialog.focus : 0;
}

void FocusWaves() {
    HeadlessFocus(0);
}

void TypeIntoEditField(uint16_t id, char c) {
    SetEditText(id, std::string(1, c).c_str());
}

void ClearStateList() {
    HeadlessEditDialog.states.clear();
    HeadlessEditDialog.stateSelected = -1;
    ++HeadlessEditDialog.listings;
}

void AddState(const char *name) {
    HeadlessEditDialog.states.emplace_back(name);
}

void ShowStateList() {}

void SelectState(int32_t row) {
    HeadlessEditDialog.stateSelected = row;
}

int32_t SelectedState() {
    return HeadlessEditDialog.stateSelected;
}
