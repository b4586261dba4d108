// What the prompt line, the error strip and the boxes look like: the part of reporting that a window does.
#pragma once

#include "shell/reporting.h"

// Paints PromptText; with `layOut` the line is first put at its place.
void ViewShowPrompt(bool layOut);
// Shows `text` as it stands in the strip, or removes the strip for null.
void ViewShowStrip(const char *text);
enum class MessageKind { User, Program };
// A modal message box with one OK button.
void ViewMessageBox(MessageKind kind, const char *caption, const char *text);
// Runs the alert; returns 1, 2 or 3, or 0 for Esc.
int ViewAlert(const AlertRequest &request, AlertIcon icon);
