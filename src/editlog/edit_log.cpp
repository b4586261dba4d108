#include "editlog/edit_log.h"

EditLogRecord EditLog = {0, 1};

void LogReset(int) {
    EditLog.rPtr = 0;
}

void LogDeleteFile() {
    EditLog.rPtr = 0;
}

void LogCloseFile() {}

void LogEndAction() {}
