// The commands Undo and Redo: one action back, one action forward. What goes wrong has been told by the log,
// and the document is what the replay came to.
#pragma once

void UndoAction();
void RedoAction();

// Called behind each undo and redo, for the dialogs that show patterns or their parameters; null while there
// are none.
extern void (*AfterUndoHook)();
