#include "editlog/edit_log.h"

#include "editlog/aux_log.h"
#include "shell/file_names.h"
#include "shell/reporting.h"
#include <algorithm>
#include <cstdio>
#include <cstring>

EditLogRecord EditLog;
int (*ExecuteLogHook)(std::span<const uint8_t> payload, int direction, int32_t a, int32_t b, int mode);

namespace {

constexpr int32_t WORD = 4;
// How much of a window lies behind the position when it is read backward, and when it is read forward.
constexpr int32_t BEHIND = 1024;
constexpr int32_t AHEAD = 128;

// Where a flush goes while the log stands aside.
std::vector<uint8_t> *memory;

void StoreWord(uint8_t *bytes, uint32_t word) {
    for (int i = 0; i < WORD; i++) bytes[i] = static_cast<uint8_t>(word >> (8 * i));
}

void StartEmpty() {
    EditLog.Recording = 1;
    EditLog.Refused = -1;
    EditLog.Dirty = 0;
    EditLog.DirtyFrom = INT32_MAX;
    EditLog.LostFrom = -1;
    EditLog.FileEnd = INT32_MAX;
    EditLog.ReadFault = 0;
    EditLog.Joined = -1;
    EditLog.rEofPtr = 0;
    EditLog.rPtr = 0;
    EditLog.rBase = 0;
    EditLog.Held = 0;
    EditLog.LogHandle = NO_FILE;
    EditLog.LogFileName[0] = '\0';
}

// The temporary name's prefix is the suffix without its dot.
bool MakeLogName() {
    const char *prefix = EditLog.LogSuffix[0] == '.' ? EditLog.LogSuffix + 1 : EditLog.LogSuffix;
    return MakeTemporaryFile(prefix, EditLog.LogFileName);
}

void ReportAboutFile(const char *format) {
    FileError(format, EditLog.LogFileName);
}

// True if the window holds these bytes of the log.
bool WindowHolds(int32_t position, int32_t size) {
    return position >= EditLog.rBase && size <= EditLog.rBase + EditLog.Held - position;
}

uint8_t *At(int32_t position) {
    return EditLog.Buffer + (position - EditLog.rBase);
}

// Reads bytes of the open file. False if there are fewer, or if the disk does not give them.
bool ReadFile(int32_t position, uint8_t *bytes, int32_t size) {
    bool good = SeekFile(EditLog.LogHandle, position);
    for (int64_t count = 0; good && size > 0; size -= static_cast<int32_t>(count)) {
        count = ReadBytes(EditLog.LogHandle, bytes, static_cast<size_t>(size));
        if (count == 0) return false;
        good = count > 0;
        if (good) bytes += count;
    }
    if (!good) EditLog.ReadFault = 1;
    return good;
}

// Reads `size` bytes of the log from `base` on into the window; the file is open. 1, or 0 after a message.
int ReadWindow(int32_t base, int32_t size) {
    if (EditLog.Dirty) LogFlush();
    EditLog.rBase = base;
    EditLog.Held = 0;
    if (size > 0 && !ReadFile(base, EditLog.Buffer, size)) {
        ReportAboutFile("Failed to read log file %s");
        return 0;
    }
    EditLog.Held = size;
    return 1;
}

bool HasFile() {
    return EditLog.LogFileName[0] != '\0';
}

// Nothing of the log lies before the position. Without a file that is so too where the memory begins.
bool AtStart() {
    return EditLog.rPtr == 0 || (!HasFile() && EditLog.rPtr == EditLog.rBase);
}

enum class Behind { Mark, Record, Unreadable };

// What stands just before the position.
Behind LookBehind() {
    bool start = AtStart();
    bool good = WindowHolds(EditLog.rPtr - WORD, WORD) || LogFill(1);
    if (start) return Behind::Mark;
    if (!good || !WindowHolds(EditLog.rPtr - WORD, WORD)) return Behind::Unreadable;
    return LogWordAt(At(EditLog.rPtr - WORD)) == ACTION_MARK ? Behind::Mark : Behind::Record;
}

// Where the position is too near to the log's limit for another entry, nothing is recorded any more.
bool HasPositions(int32_t length) {
    return EditLog.rPtr <= INT32_MAX - length - ENTRY_ROOM;
}

// Makes room for `length` bytes at the position, which becomes the log's end.
bool PrepareAppend(int32_t length) {
    EditLog.rEofPtr = EditLog.rPtr;
    EditLog.Held = std::min(EditLog.Held, EditLog.rPtr - EditLog.rBase);
    if (length + EditLog.rPtr - EditLog.rBase >= BufLen) LogFlush();
    if (!HasPositions(length)) {
        ReportAboutFile("Failed to write log file %s");
        return false;
    }
    // Behind an undo that could not read, the window may lie elsewhere.
    if (EditLog.rPtr < EditLog.rBase || EditLog.rPtr - EditLog.rBase > EditLog.Held) {
        EditLog.rBase = EditLog.rPtr;
        EditLog.Held = 0;
    }
    EditLog.DirtyFrom = std::min(EditLog.DirtyFrom, EditLog.rPtr);
    if (EditLog.rPtr < EditLog.Joined) EditLog.Joined = -1;
    EditLog.Dirty = 1;
    return true;
}

void FinishAppend(int32_t length) {
    EditLog.rPtr += length;
    EditLog.rEofPtr = EditLog.rPtr;
    EditLog.Held = EditLog.rPtr - EditLog.rBase;
}

int32_t Damaged() {
    ReportAboutFile("Failed to read log file %s");
    return 0;
}

// Reads the entry from `start` on into the window unless that holds it; of one that is too long for the
// window its beginning. 1, or 0 after a message.
int LoadEntry(int32_t start, int32_t length) {
    return WindowHolds(start, length) || ReadWindow(start, std::min(length, ENTRY_ROOM));
}

// The last word of an entry that has been loaded.
bool EndsWith(int32_t start, int32_t length, uint32_t word) {
    if (WindowHolds(start, length)) return LogWordAt(At(start + length - WORD)) == word;
    uint8_t bytes[WORD];
    return ReadFile(start + length - WORD, bytes, WORD) && LogWordAt(bytes) == word;
}

// True if the record behind the position, whose last word the window holds, lies wholly in it. One that
// begins where the window does is read anew, as long as there is a file to read.
bool WindowHoldsRecordBehind() {
    int32_t behind = EditLog.rPtr - EditLog.rBase;
    if (behind < 5) return false;
    int64_t length = LogWordAt(At(EditLog.rPtr - WORD));
    return HasFile() ? behind > length : behind >= length;
}

// The length of the record behind the position, as LookBehind has found it, which then lies wholly in the
// window. 0 if it cannot be read, or is no record; that has been reported.
int32_t RecordBehind() {
    if (!WindowHoldsRecordBehind() && !LogFill(1)) return 0;
    if (!WindowHolds(EditLog.rPtr - WORD, WORD)) return Damaged(); // never: what was held a fill brings back
    uint32_t word = LogWordAt(At(EditLog.rPtr - WORD));
    if (!IsEntryLength(word, EditLog.rPtr)) return Damaged();
    auto length = static_cast<int32_t>(word);
    int32_t start = EditLog.rPtr - length;
    if (!LoadEntry(start, length)) return 0;
    return LogWordAt(At(start)) == word ? length : Damaged();
}

// As LogFill(0) for the record of `length` bytes at the position, but reads nothing while the window holds
// that.
bool MoveWindowOn(int32_t length) {
    if (EditLog.Dirty || !WindowHolds(EditLog.rPtr, length)) return LogFill(0);
    int32_t passed = EditLog.rPtr - AHEAD - EditLog.rBase;
    EditLog.rBase += passed;
    EditLog.Held -= passed;
    memmove(EditLog.Buffer, EditLog.Buffer + passed, static_cast<size_t>(EditLog.Held));
    return true;
}

// Where the file must end before the window is written: behind it stand records that new ones have taken the
// place of, or such as a flush that failed has left half done.
int32_t FirstToCut() {
    return EditLog.LostFrom < 0 ? EditLog.DirtyFrom : std::min(EditLog.LostFrom, EditLog.DirtyFrom);
}

// Writes the window's first `size` bytes to the open file.
bool WriteWindow(int32_t size) {
    int32_t cut = FirstToCut();
    bool endsThere =
        EditLog.FileEnd <= cut || FileSize(EditLog.LogHandle) <= cut || SetFileLength(EditLog.LogHandle, cut);
    bool good = endsThere && SeekFile(EditLog.LogHandle, EditLog.rBase) &&
                WriteBytes(EditLog.LogHandle, EditLog.Buffer, static_cast<size_t>(size)) == size;
    EditLog.FileEnd = good ? std::max(cut, EditLog.rBase + size) : INT32_MAX;
    return good;
}

// Where the last finished action in effect ends, as far as the window holds the records behind it; else -1.
// An action that is open again was finished where it was ended: it gets its mark back.
int32_t EndOfFinished() {
    for (int32_t end = EditLog.rPtr; end > EditLog.rBase;) {
        if (end == EditLog.Joined) {
            StoreWord(At(end), ACTION_MARK);
            return end + WORD;
        }
        if (!WindowHolds(end - WORD, WORD)) return -1;
        uint32_t word = LogWordAt(At(end - WORD));
        if (word == ACTION_MARK) return end;
        if (!IsEntryLength(word, end - EditLog.rBase)) return -1;
        end -= static_cast<int32_t>(word);
    }
    return -1;
}

// Where the directory lets no file go, an empty one stays: a log with records must not lie beside a document
// that has them already.
void EmptyAndRemove(const char *path) {
    if (RemoveFile(path)) return;
    FileHandle file = CanAccessFile(path, FileAccess::Exists) ? CreateForUpdate(path) : NO_FILE;
    if (file != NO_FILE) CloseFile(file);
}

constexpr int32_t MARK_AHEAD = -1;

// There is nothing to be replayed from here on.
int32_t DamagedAhead() {
    EditLog.rEofPtr = EditLog.rPtr;
    return Damaged();
}

// The same for the record at the position, or MARK_AHEAD.
int32_t RecordAhead() {
    int32_t rest = EditLog.rEofPtr - EditLog.rPtr;
    if (rest < WORD) return DamagedAhead();
    if (!WindowHolds(EditLog.rPtr, WORD) && !LogFill(0)) return 0;
    uint32_t word = LogWordAt(At(EditLog.rPtr));
    if (word == ACTION_MARK) return MARK_AHEAD;
    if (!IsEntryLength(word, rest)) return DamagedAhead();
    auto length = static_cast<int32_t>(word);
    if (EditLog.rPtr - EditLog.rBase > AHEAD && HasFile() && !MoveWindowOn(length)) return 0;
    if (!WindowHolds(EditLog.rPtr, length) && !LogFill(0)) return 0;
    if (!LoadEntry(EditLog.rPtr, length)) return 0;
    return EndsWith(EditLog.rPtr, length, word) ? length : DamagedAhead();
}

int Execute(int32_t start, int32_t length, int direction) {
    int32_t held = std::min(length - ENTRY_FRAME, EditLog.Held - (start - EditLog.rBase) - WORD);
    std::span<const uint8_t> payload(At(start) + WORD, static_cast<size_t>(held));
    return ExecuteLogHook ? ExecuteLogHook(payload, direction, 0, 0, 0) : 0;
}

// The records up to the next mark, forward. 1 or 0.
int ReplayForward() {
    while (EditLog.rPtr < EditLog.rEofPtr) {
        int32_t length = RecordAhead();
        if (length == MARK_AHEAD) return 1;
        if (length == 0) return 0;
        int32_t start = EditLog.rPtr;
        EditLog.rPtr += length;
        EditLog.Recording = 0;
        if (!Execute(start, length, 0)) {
            // What follows is dropped.
            EditLog.rEofPtr = EditLog.rPtr;
            EditLog.Refused = start;
            return 0;
        }
    }
    return 1;
}

} // namespace

bool IsEntryLength(uint32_t length, int64_t room) {
    return length >= ENTRY_FRAME && length % WORD == 0 && length <= room;
}

void InitEditLog() {
    StartEmpty();
    memset(EditLog.Buffer, 0, sizeof EditLog.Buffer);
    EditLog.AuxPtr = 0;
    EditLog.AuxBase = 0;
    EditLog.AuxHeld = 0;
    EditLog.LogSuffix[0] = '\0';
    AuxFile = {&EditLog.LogHandle, EditLog.LogFileName};
}

void LogInit(const char *suffix) {
    InitEditLog();
    snprintf(EditLog.LogSuffix, sizeof EditLog.LogSuffix, "%s", suffix);
    FileHandle file = MakeLogName() ? CreateForUpdate(EditLog.LogFileName) : NO_FILE;
    if (file == NO_FILE) {
        ReportAboutFile("Failed to create log file %s");
        LogDeleteFile();
        return;
    }
    CloseFile(file);
}

uint8_t *LogAppend(uint32_t size) {
    if (EditLog.Recording == 0 || size > MAX_ENTRY - 11) return nullptr;
    uint32_t length = (size + 11) & ~3u;
    if (!PrepareAppend(static_cast<int32_t>(length))) return nullptr;
    uint8_t *entry = At(EditLog.rPtr);
    StoreWord(entry, length);
    StoreWord(entry + length - WORD, length);
    FinishAppend(static_cast<int32_t>(length));
    return entry + WORD;
}

int32_t LogMark() {
    if (EditLog.Recording == 0) return 0;
    if (!PrepareAppend(WORD)) return EditLog.rPtr;
    StoreWord(At(EditLog.rPtr), ACTION_MARK);
    FinishAppend(WORD);
    EditLog.Joined = -1;
    return EditLog.rPtr;
}

void LogEndAction() {
    if (EditLog.Recording != 0 && !LogAtMark()) LogMark();
}

int LogAtMark() {
    return LookBehind() == Behind::Mark;
}

void LogReopenAction() {
    if (!LogAtMark() || AtStart()) return;
    EditLog.rPtr -= WORD;
    EditLog.Joined = EditLog.rPtr;
}

void LogJoinAction() {
    LogReopenAction();
}

int LogUndoToMark() {
    int good = 1;
    Behind behind = LookBehind();
    for (; good && behind == Behind::Record; behind = LookBehind()) {
        int32_t length = RecordBehind();
        EditLog.Recording = 0;
        EditLog.rPtr -= length;
        good = length != 0 && Execute(EditLog.rPtr, length, 1);
    }
    EditLog.Recording = 1;
    return good && behind == Behind::Mark;
}

int LogRollback() {
    Behind behind = LookBehind();
    if (behind == Behind::Mark) return 1;
    int good = behind == Behind::Record && LogUndoToMark();
    EditLog.rEofPtr = EditLog.rPtr;
    return good;
}

void LogForget(int32_t start) {
    auto *execute = ExecuteLogHook;
    ExecuteLogHook = [](std::span<const uint8_t>, int, int32_t, int32_t, int) { return 1; };
    LogRollback();
    ExecuteLogHook = execute;
    if (EditLog.rPtr == start) return;
    // The disk did not give back what was recorded, or there is no file.
    EditLog.rPtr = start;
    EditLog.rEofPtr = start;
    EditLog.rBase = start;
    EditLog.Held = 0;
    EditLog.Dirty = 0;
    EditLog.DirtyFrom = INT32_MAX;
}

int LogUndo() {
    if (!LogRollback()) return 0;
    if (AtStart()) return 1;
    EditLog.rPtr -= WORD;
    return LogUndoToMark();
}

int LogRedo() {
    EditLog.Refused = -1;
    if (!LogRollback()) return 0;
    int good = ReplayForward();
    if (good && EditLog.rPtr < EditLog.rEofPtr) EditLog.rPtr += WORD;
    EditLog.Recording = 1;
    return good;
}

bool LogCutRefused() {
    if (EditLog.Refused < 0) return false;
    EditLog.rPtr = EditLog.rEofPtr = EditLog.Refused;
    EditLog.Refused = -1;
    return true;
}

void LogFlush() {
    if (EditLog.Dirty && memory) {
        memory->insert(memory->end(), EditLog.Buffer, EditLog.Buffer + EditLog.Held);
    } else if (EditLog.Dirty && HasFile()) {
        int32_t size = EditLog.rEofPtr - EditLog.rBase;
        if (size > BufLen)
            ProgramError("LogFlush rEofPtr > BufLen");
        else if (size == 0)
            ProgramError("LogFlush rEofPtr == 0");
        bool good = LogOpenFile();
        if (good && !WriteWindow(std::clamp(size, 0, EditLog.Held))) {
            ReportAboutFile("Failed to write log file %s");
            good = false;
        }
        EditLog.LostFrom = good ? -1 : FirstToCut();
    }
    // In every case: what could not be written is gone, and there is no second try.
    EditLog.Dirty = 0;
    EditLog.DirtyFrom = INT32_MAX;
    EditLog.rBase = EditLog.rEofPtr;
    EditLog.Held = 0;
}

void LogWriteFinished() {
    int32_t held = EditLog.rPtr - EditLog.rBase;
    if (!EditLog.Dirty || !HasFile() || held < 0 || held > EditLog.Held) return;
    int32_t end = EndOfFinished();
    if (end <= EditLog.DirtyFrom) return;
    if (EditLog.LogHandle == NO_FILE) EditLog.LogHandle = OpenForUpdate(EditLog.LogFileName);
    if (EditLog.LogHandle != NO_FILE) WriteWindow(end - EditLog.rBase);
    EditLog.Dirty = 0;
}

int LogFill(int backward) {
    if (EditLog.LogFileName[0] == '\0') return 0;
    if (!LogOpenFile()) {
        EditLog.LogFileName[0] = '\0';
        return 0;
    }
    int32_t base = std::max(EditLog.rPtr - (backward ? BEHIND : AHEAD), 0);
    return ReadWindow(base, std::clamp(EditLog.rEofPtr - base, 0, BufLen));
}

bool LogOpenFile() {
    if (EditLog.LogHandle != NO_FILE) return true;
    EditLog.LogHandle = OpenForUpdate(EditLog.LogFileName);
    if (EditLog.LogHandle != NO_FILE) return true;
    ReportAboutFile("Failed to open log file %s");
    return false;
}

int32_t LogFileLength() {
    return static_cast<int32_t>(
        std::clamp<int64_t>(FileSize(EditLog.LogHandle), 0, INT32_MAX - 2 * ENTRY_ROOM));
}

void LogCloseFile() {
    if (EditLog.LogHandle != NO_FILE) CloseFile(EditLog.LogHandle);
    EditLog.LogHandle = NO_FILE;
}

void LogDeleteFile() {
    LogCloseFile();
    if (HasFile()) EmptyAndRemove(EditLog.LogFileName);
    EditLog.LogFileName[0] = '\0';
}

void LogBindToDocument(const char *documentPath) {
    EditLog.LogHandle = NO_FILE;
    EditLog.FileEnd = INT32_MAX;
    if (*documentPath == '\0') {
        MakeLogName();
        return;
    }
    if (FullPath(documentPath, EditLog.LogFileName)) {
        SetExtension(EditLog.LogFileName, EditLog.LogSuffix);
        EditLog.LogHandle = OpenForUpdate(EditLog.LogFileName);
        if (EditLog.LogHandle != NO_FILE) return;
        FileHandle file = CreateForUpdate(EditLog.LogFileName);
        if (file != NO_FILE) {
            CloseFile(file);
            return;
        }
    }
    ReportAboutFile("Failed to create log file %s");
    EditLog.LogFileName[0] = '\0';
}

LogAside::LogAside() {
    LogFlush();
    LogCloseFile();
    kept = std::make_unique<EditLogRecord>(EditLog);
    StartEmpty();
    memory = &recorded;
}

LogAside::~LogAside() {
    memory = nullptr;
    EditLog = *kept;
}

const std::vector<uint8_t> &LogAside::records() {
    LogFlush();
    return recorded;
}
