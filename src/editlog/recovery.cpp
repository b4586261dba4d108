#include "editlog/recovery.h"

#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"

namespace {

bool UserWantsRecovery() {
    return AlertBox("Recover file from system crash -", EditLog.LogFileName, nullptr, "Yes", "No", nullptr,
                    AlertIcon::Warning) == 1;
}

} // namespace

Recovered RecoverFromLog() {
    Recovered recovered = {};
    int held = LogHoldOpen(1);
    int good = 1;
    while (good && EditLog.rPtr < EditLog.rEofPtr) {
        good = LogRedo();
        if (good && LogAtMark()) recovered.actions++;
    }
    // The crash came in the midst of an action, or the file is damaged.
    if (!LogCutRefused()) LogRollback();
    EditLog.rEofPtr = EditLog.rPtr;
    recovered.position = static_cast<uint32_t>(EditLog.rPtr);
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
    EditLog.Recording = 1;
    LogDeleteFile();
    LogBindToDocument(DocumentPath);
    if (EditLog.LogHandle == NO_FILE) return;
    EditLog.rEofPtr = LogFileLength();
    if (EditLog.rEofPtr != 0 && allowRecovery && UserWantsRecovery()) {
        RecoverFromLog();
    } else {
        EditLog.rEofPtr = 0;
    }
    // The file keeps what lies behind the log's end; only rEofPtr tells where that is.
    LogCloseFile();
}
