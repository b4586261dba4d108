// The floating dialog where there is no window: a test or a script types into it.
#pragma once

#include "edit/edit_dialog.h"
#include <map>
#include <string>
#include <vector>

struct HeadlessEditDialogState {
    bool open = false;
    int shown = 0; // how often it was made or brought to the top
    std::string title;
    std::map<uint16_t, std::string> texts; // of the fields
    std::map<uint16_t, bool> enabled;
    bool foreverChecked = false;
    uint16_t focus = 0; // the control that has the keyboard, 0 for the main window
    std::vector<std::string> states;
    int listings = 0; // how often the list was made anew
    int32_t stateSelected = -1;
};
// Written by edit_dialog.cpp.
extern HeadlessEditDialogState HeadlessEditDialog;
void InitHeadlessEditDialog();

// What a user does. False, and nothing is done, where the control is not enabled.
//
// Gives the field the keyboard, replaces its text, and takes that: by the Enter key, or by leaving.
bool HeadlessTypeField(uint16_t id, const std::string &text, bool enter);
// Gives the field the keyboard and replaces its text.
bool HeadlessType(uint16_t id, const std::string &text);
// Gives a control the keyboard, 0 the main window.
void HeadlessFocus(uint16_t id);
bool HeadlessPickState(int32_t row, bool dblClick);
bool HeadlessClickForever(bool checked);
void HeadlessCloseEditDialog();
