// Numbers shared by the resource script and the program. Command ids stand in shell/command_ids.h.
#pragma once

#define KELVANE_VERSION_NUMBERS 0, 1, 0, 0
#define KELVANE_VERSION_TEXT "0.1.0"

// Dialogs.
#define DIALOG_ABOUT 2
#define DIALOG_ALERT 9
#define DIALOG_GET_TEXT 10
#define DIALOG_EDIT 193
#define DIALOG_LISTING 196

// About box.
#define ABOUT_TITLE 100
#define ABOUT_VERSION 101

// Alert box: three lines, three buttons, the icon.
#define ALERT_LINE 0
#define ALERT_BUTTON 3
#define ALERT_ICON 6

// The one-line question.
#define GET_TEXT_LABEL 100
#define GET_TEXT_FIELD 101

// The structure of a wave.
#define LISTING_LIST 101
