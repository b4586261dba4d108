// The log at the beginning of a document's life, and what a crash has left of the one before.
#pragma once

// Deletes the log in use and begins an empty one for the document in DocumentPath. A log that lies there
// already is what a run left that died: with `allowRecovery` the user is asked whether to replay it, and then
// its edits stand as edits that can be undone.
void LogReset(int allowRecovery);
