// Plays a script of edits on the open document, line by line, as a user's hands would: through the same
// gestures, dialog fields, commands and edit log as the window.
#pragma once

#include <string>
#include <string_view>

// Makes the panels, shows the whole span, and starts Edit mode, as the program does it behind a load.
void BeginEditScript();

enum class ScriptOutcome {
    Done,
    NotEnabled,   // the line names what is not there, or what may not be done now: it has changed nothing
    NotUnderstood // there is no such line
};

// What a script prints goes here.
struct ScriptOutput {
    void (*print)(const std::string &text);
    void (*dump)(); // prints the document
};

// Plays one line, without its line end. Empty lines and comments do nothing.
ScriptOutcome PlayScriptLine(std::string_view line, const ScriptOutput &output);

// Lets go of what is held, and takes the selection away, so that a merge that waits is done.
void EndEditScript();
