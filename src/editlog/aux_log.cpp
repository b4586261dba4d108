#include "editlog/aux_log.h"

#include "shell/reporting.h"
#include <algorithm>

AuxFileRecord AuxFile = {&EditLog.LogHandle, EditLog.LogFileName};

namespace {

constexpr int32_t WORD = 4;

int ReportAboutFile(const char *format) {
    FileError(format, AuxFile.name);
    return 0;
}

const uint8_t *At(int32_t position) {
    return EditLog.AuxBuffer + (position - EditLog.AuxBase);
}

bool WindowHolds(int32_t position, int32_t size) {
    return position >= EditLog.AuxBase && size <= EditLog.AuxBase + EditLog.AuxHeld - position;
}

// Reads up to `size` bytes from `base` on; the file may be shorter.
int ReadWindow(int32_t base, int32_t size) {
    EditLog.AuxBase = base;
    EditLog.AuxHeld = 0;
    if (!SeekFile(*AuxFile.handle, base)) return ReportAboutFile("Failed to read auxiliary log file %s");
    int64_t count = ReadBytes(*AuxFile.handle, EditLog.AuxBuffer, static_cast<size_t>(size));
    if (count < 0) return ReportAboutFile("Failed to read auxiliary log file %s");
    EditLog.AuxHeld = static_cast<int32_t>(count);
    return 1;
}

// The length of the record behind AuxPtr, which then lies wholly in the window; 0 if it cannot be read or is
// no record, which has been reported.
int32_t RecordBehind() {
    int32_t behind = EditLog.AuxPtr - EditLog.AuxBase;
    bool whole = behind >= 5 && WindowHolds(EditLog.AuxPtr - WORD, WORD) &&
                 behind > static_cast<int64_t>(LogWordAt(At(EditLog.AuxPtr - WORD)));
    if (!whole && !AuxFill(1)) return 0;
    if (WindowHolds(EditLog.AuxPtr - WORD, WORD)) {
        uint32_t word = LogWordAt(At(EditLog.AuxPtr - WORD));
        if (IsEntryLength(word, std::min(EditLog.AuxPtr, MAX_ENTRY))) {
            auto length = static_cast<int32_t>(word);
            int32_t start = EditLog.AuxPtr - length;
            if (!WindowHolds(start, length) && !ReadWindow(start, length)) return 0;
            if (WindowHolds(start, length) && LogWordAt(At(start)) == word) return length;
        }
    }
    return ReportAboutFile("Failed to read auxiliary log file %s");
}

int ReplayToMark(int32_t a, int32_t b, int mode) {
    while (!AuxAtMark()) {
        int32_t length = RecordBehind();
        if (length == 0) return 0;
        EditLog.AuxPtr -= length;
        std::span<const uint8_t> payload(At(EditLog.AuxPtr) + WORD,
                                         static_cast<size_t>(length - ENTRY_FRAME));
        if (!ExecuteLogHook || !ExecuteLogHook(payload, 1, a, b, mode)) {
            EditLog.AuxPtr = 0;
            return 0;
        }
    }
    return 1;
}

} // namespace

int AuxFill(int backward) {
    int32_t base = backward ? std::max(EditLog.AuxPtr - BufLen, 0) : EditLog.AuxPtr;
    int32_t count = backward ? std::min(EditLog.AuxPtr - base, BufLen) : BufLen;
    if (AuxFile.name[0] == '\0') return 0;
    if (*AuxFile.handle == NO_FILE) {
        *AuxFile.handle = OpenForUpdate(AuxFile.name);
        if (*AuxFile.handle == NO_FILE) return ReportAboutFile("Failed to open auxiliary log file %s");
    }
    return ReadWindow(base, count);
}

int AuxAtMark() {
    if (EditLog.AuxPtr - EditLog.AuxBase < 1) AuxFill(1);
    if (EditLog.AuxPtr == 0) return 1;
    return WindowHolds(EditLog.AuxPtr - WORD, WORD) && LogWordAt(At(EditLog.AuxPtr - WORD)) == ACTION_MARK;
}

int AuxReplayBackward(int32_t end, int32_t a, int32_t b, int mode) {
    EditLog.AuxPtr = end;
    int good = AuxFill(1) && ReplayToMark(a, b, mode);
    AuxClose();
    return good;
}

void AuxClose() {
    if (*AuxFile.handle != NO_FILE) CloseFile(*AuxFile.handle);
    *AuxFile.handle = NO_FILE;
    AuxFile = {&EditLog.LogHandle, EditLog.LogFileName};
}
