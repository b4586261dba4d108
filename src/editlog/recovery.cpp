#include "editlog/recovery.h"

#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include <cstdio>

namespace {

bool UserWantsRecovery() {
    return AlertBox("Recover file from system crash -", EditLog.LogFileName, nullptr, "Yes", "No", nullptr,
                    AlertIcon::Warning) == 1;
}

// Tells in the prompt line what came back of a log of `size` bytes.
void TellRecovered(const Recovered &recovered, int64_t size) {
    char text[128];
    snprintf(text, sizeof text, "Recovered from the log: %u action%s, without %lld byte%s at its end",
             recovered.actions, recovered.actions == 1 ? "" : "s",
             static_cast<long long>(size - recovered.position), size - recovered.position == 1 ? "" : "s");
    AddNotice(text);
}

} // namespace

Recovered RecoverFromLog() {
    Recovered recovered = {};
    int held = LogHoldOpen(1);
    EditLog.ReadFault = 0;
    int good = 1;
    while (good && EditLog.rPtr < EditLog.rEofPtr) {
        good = LogRedo();
        if (good && LogAtMark()) recovered.actions++;
    }
    // The crash came in the midst of an action, or the file is damaged.
    if (!LogCutRefused()) LogRollback();
    EditLog.rEofPtr = EditLog.rPtr;
    recovered.position = static_cast<uint32_t>(EditLog.rPtr);
    recovered.unreadable = EditLog.ReadFault != 0;
    LogEndAction();
    FinishReplay();
    LogHoldOpen(held);
    return recovered;
}

void LogReset(int allowRecovery) {
    EditLog.rBase = 0;
    EditLog.rEofPtr = 0;
    EditLog.rPtr = 0;
    EditLog.Held = 0;
    EditLog.Dirty = 0;
    EditLog.DirtyFrom = INT32_MAX;
    EditLog.LostFrom = -1;
    EditLog.Joined = -1;
    EditLog.Recording = 1;
    LogDeleteFile();
    LogBindToDocument(DocumentPath);
    if (EditLog.LogHandle == NO_FILE) return;
    if (!allowRecovery) {
        // It belonged to what the save has replaced.
        if (!SetFileLength(EditLog.LogHandle, 0))
            FileError("Failed to write log file %s", EditLog.LogFileName);
    } else if (LogFileLength() != 0 && UserWantsRecovery()) {
        int64_t size = FileSize(EditLog.LogHandle);
        EditLog.rEofPtr = LogFileLength();
        Recovered recovered = RecoverFromLog();
        TellRecovered(recovered, size);
        LogCloseFile();
        // Without a log file the one that cannot be read stays as it is.
        if (recovered.unreadable) EditLog.LogFileName[0] = '\0';
    }
    // The file keeps what lies behind the log's end until there is a new record.
    LogCloseFile();
}
