// The edit log as the document sees it. Nothing is recorded yet: the log file joins later.
#pragma once

#include <cstdint>

struct EditLogRecord {
    int32_t rPtr;      // position behind the last action in effect; not 0 means that the document is modified
    int32_t Recording; // 1 while new records are accepted
};
// Written by the log and by whoever brackets a load or a replay.
extern EditLogRecord EditLog;

// Empties the log; with `offerRecovery` at a document's start, after offering what a crash left.
void LogReset(int offerRecovery);
// Closes and deletes the log.
void LogDeleteFile();
// Closes the file until it is needed again.
void LogCloseFile();
// Ends an undo step.
void LogEndAction();
