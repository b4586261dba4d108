// The log at the beginning of a document's life, and what a crash has left of the one before.
#pragma once

#include <cstdint>

// Deletes the log in use and begins an empty one for the document in DocumentPath. A log that lies there
// already is what a run left that died: with `allowRecovery` the user is asked whether to replay it, and then
// its edits stand as edits that can be undone. Without, it is emptied: the document has been saved. A log
// that the disk does not give back is left as it is, and the program goes on without one.
void LogReset(int allowRecovery);

// What a recovery has brought back.
struct Recovered {
    uint32_t actions;  // whole actions
    uint32_t position; // behind the last record in effect: what follows in the file is dropped
    bool unreadable;   // the disk did not give what follows
};
// Replays the log from its beginning; its file is open in EditLog.LogHandle, and the log is at rest with its
// position at 0 and its end where the file ends. An action without a mark, or with a damaged entry, is taken
// back. What stands in an action before an entry that was refused stays, as an action of its own.
Recovered RecoverFromLog();
