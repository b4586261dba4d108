// The five ways in which the program speaks to the user: the prompt line, the error strip, two message boxes
// and the alert box. Everything goes through these entries.
#pragma once

#include <cstdint>

// The program's title.
constexpr const char *APPLICATION_TITLE = "Kelvane";

// Puts the start values in place: no prompt, no substitute, no strip in the making.
void InitReporting();

// --- the prompt line ---------------------------------------------------------------------------------
constexpr int PROMPT_SIZE = 256;
// The text shown, and the text that replaces an "@" in a prompt. Written by SetPrompt, and by the commands.
extern char PromptText[PROMPT_SIZE];
extern char PromptSubstitute[PROMPT_SIZE];

// Shows the text in the prompt line, unless it stands there already; null only repaints. SetPrompt lays the
// line out anew, SetPromptQuick only repaints it.
void SetPrompt(const char *text);
void SetPromptQuick(const char *text);

// A sentence on what the start or a command has done, for the prompt line. It waits until that is over, as
// the prompts of what goes on meanwhile would hide it; several are shown side by side. ShowNotices shows
// those that wait, if there are any.
void AddNotice(const char *text);
void ShowNotices();

// --- the error strip -------------------------------------------------------------------------------------
// Shows the strip with "ERROR: " and the text, or with the bare text behind a leading backslash; null removes
// it. Always returns 100.
int ShowErrorStrip(const char *text);
// Set while the strip is being shown or removed, which makes ShowErrorStrip do nothing. Written by it.
extern bool ErrorStripBusy;

// --- message boxes -----------------------------------------------------------------------------------------
// Modal, with one OK button. UserError is for what a user can cause, ProgramError for what should not happen.
// Both return 1.
int UserError(const char *text);
int ProgramError(const char *text);
// The same with a "%s" or "%d" format; the text is cut at 511 characters.
[[gnu::format(printf, 1, 2)]] int UserErrorFormat(const char *format, ...);
// A UserError about one of the program's own files (the log, the clipboard's), with the file's name for the
// "%s" of the format. FileErrors counts them, for whoever must not go on after one.
void FileError(const char *format, const char *name);
extern uint32_t FileErrors;

// --- the alert box
// -------------------------------------------------------------------------------------------
enum class AlertIcon { None = 0, Stop = 1, Warning = 2, Question = 3, Information = 4 };

// What an alert shows. A null or empty text is not there.
struct AlertRequest {
    const char *lines[3];
    const char *buttons[3];
    const char *caption;
};

// Modal; returns 1, 2 or 3 for the button pressed, 0 for Esc. A missing first line reads "Alert!", a missing
// first button "OK".
int AlertBox(const char *line1, const char *line2, const char *line3, const char *button1,
             const char *button2, const char *button3, AlertIcon icon);
// The same with a caption of its own; `unused` is not looked at.
int AlertBoxCaption(const char *line1, const char *line2, const char *line3, const char *button1,
                    const char *button2, const char *button3, AlertIcon icon, int unused,
                    const char *caption);
