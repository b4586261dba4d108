#include "editlog/recovery.h"

#include "document/document.h"
#include "editlog/edit_log.h"
#include "shell/reporting.h"
#include <algorithm>

namespace {

bool UserWantsRecovery() {
    return AlertBox("Recover file from system crash -", EditLog.LogFileName, nullptr, "Yes", "No", nullptr,
                    AlertIcon::Warning) == 1;
}

// The length of the log that is there, as far as positions reach.
int32_t LogFileLength() {
    return static_cast<int32_t>(
        std::clamp<int64_t>(FileSize(EditLog.LogHandle), 0, INT32_MAX - 2 * ENTRY_ROOM));
}

// An action without a mark came to its end with the crash: it is undone and cut off.
void Recover() {
    while (EditLog.rPtr < EditLog.rEofPtr) {
        if (!LogRedo()) break;
    }
    LogRollback();
}

} // namespace

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
        Recover();
    } else {
        EditLog.rEofPtr = 0;
    }
    // The file keeps what lies behind the log's end; only rEofPtr tells where that is.
    LogCloseFile();
}
