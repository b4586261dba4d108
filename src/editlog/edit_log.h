// The edit log: one file of small binary records that hold every change of the document, and the memory
// window through which it is written and read. It knows a record's length and where actions end, and nothing
// of what a record means.
//
// The file is a sequence of entries, little-endian, without a header. A record is its length L, the payload,
// padding to a multiple of 4, and L again; L counts the whole entry. The word 0xFFFFFFFF is a mark: it ends
// an action. So the word at a position tells a forward reader what stands there, and the word before it tells
// the same to a backward reader.
#pragma once

#include "platform/files.h"
#include <memory>
#include <span>
#include <vector>

// The window is this large: 1024 bytes behind the position and 128 ahead of it, or the other way round.
// Small, so that undo of a recent action reads nothing and memory does not depend on the length of the run.
constexpr int32_t BufLen = 1152;
// The largest entry that is recorded: a rename between two names as long as a pattern's record may be. An
// entry that is larger than the window is held behind it, for as long as it is in use; of one in a file that
// is larger than this its beginning is.
constexpr int32_t MAX_ENTRY = 2 * 65536 + 32;
constexpr int32_t ENTRY_ROOM = BufLen + MAX_ENTRY;

// The log's extension.
constexpr const char *LOG_SUFFIX = "._KL";

constexpr uint32_t ACTION_MARK = 0xFFFFFFFF;
// What an entry has besides its payload.
constexpr int32_t ENTRY_FRAME = 8;

struct EditLogRecord {
    int32_t Dirty;                 // 1 when Buffer holds bytes that are not yet in the file
    int32_t DirtyFrom;             // where the first of them lies, INT32_MAX for none
    int32_t LostFrom;              // where the flushes that failed since the last good one began, -1 for none
    int32_t FileEnd;               // the file ends here or before, INT32_MAX while that is unknown
    int32_t ReadFault;             // 1 when the disk has not given back what lies in the file
    int32_t Joined;                // where the open action was ended before it was reopened, -1 for nowhere
    uint8_t AuxBuffer[ENTRY_ROOM]; // read window for the auxiliary file
    int32_t AuxPtr;                // position in the auxiliary file
    int32_t AuxBase;               // file offset of AuxBuffer's first byte
    int32_t AuxHeld;               // bytes of AuxBuffer that stand for the file
    char LogSuffix[5];             // the extension with its dot
    char LogFileName[MAX_PATH_SIZE]; // full path; empty: there is no log file, and nothing is written or read
    uint8_t Buffer[ENTRY_ROOM];      // the window onto the log file
    int32_t Held;                    // bytes of Buffer that stand for the log
    int32_t rEofPtr;                 // logical end of the log; the file may be longer
    int32_t rPtr;                    // end of the last action in effect, at rest
    int32_t rBase;                   // file offset of Buffer's first byte
    FileHandle LogHandle;            // NO_FILE when closed
    int32_t Refused;                 // where the record lies that ended the last redo, -1 for none
    int32_t Recording;               // 1 while new records are accepted, 0 during a load and a replay
};
// Written by the log, and `Recording` by whoever brackets a load or a replay.
extern EditLogRecord EditLog;

// Applies one record; installed by the replay. `payload` is what stands between the two length words, padding
// included. `direction` is 1 backward, 0 forward; `a` and `b` are passed through; `mode` is 0 for undo, redo
// and recovery. 1, or 0 if the record could not be applied, which has been reported.
extern int (*ExecuteLogHook)(std::span<const uint8_t> payload, int direction, int32_t a, int32_t b, int mode);

// Puts the start values in place: an empty log without a file.
void InitEditLog();
// The same, with a temporary file to write to. At most 4 characters of the suffix count, its dot included.
// Where there can be none it reports that and goes on without a file.
void LogInit(const char *suffix);

// Begins a record: returns its payload's `size` bytes, to be filled at once; null when nothing is recorded.
// What could have been redone is out of reach from here on.
uint8_t *LogAppend(uint32_t size);
// Ends an action, whatever stands before; returns the position behind the mark.
int32_t LogMark();
// Ends an action, if one is open: what was recorded since the last end is one undo step.
void LogEndAction();
// 1 when the position is at the log's start or just behind a mark.
int LogAtMark();
// Steps back over the last mark, so that the next records join the last action.
void LogReopenAction();
void LogJoinAction();

// Replays backward to the nearest mark; what was undone can be redone. 1, or 0 if a record could not be read
// or applied; the position is then where the replay came to.
int LogUndoToMark();
// Undoes an action that is still open, and forgets it. 1 or 0.
int LogRollback();
// Forgets what was recorded from `start` on, where the open action began, without replaying it: for an edit
// that has been taken back otherwise. It moves the window as LogRollback does.
void LogForget(int32_t start);
// One step back, one step forward. With nothing to do they answer 1 and change nothing.
int LogUndo();
int LogRedo();
// Cuts off the record that the last redo ended with because it could not be applied. False if there is none.
// What its action did before stays, and stands open.
bool LogCutRefused();

// Writes the window to the file and empties it. What could not be written is reported and gone. The file is
// cut before the first new byte, so that nothing of what could be redone before stays behind it, and where a
// flush failed, so that a recovery stops there. Without a new record nothing is written and nothing cut.
void LogFlush();
// The last act of a program that dies: brings to the file what the window holds of finished actions. Tells
// nothing and takes no memory.
void LogWriteFinished();
// Moves the window to the position, with more of it behind (1) or ahead (0), and reads it. 1, or 0 when there
// is no file or it failed, which has been reported.
int LogFill(int backward);
// Opens the log's file if it is closed. False after a message.
bool LogOpenFile();
// The length of the open file, as far as positions reach.
int32_t LogFileLength();
// Closes the file until it is needed again, without a flush.
void LogCloseFile();
// Closes and deletes the log's file.
void LogDeleteFile();
// Chooses the log's file by the document's path: beside it with the suffix as extension, or a temporary one
// for an empty path. LogHandle stays open if a log was there already.
void LogBindToDocument(const char *documentPath);

// The word at an offset of a buffer. In one expression, which the compilers make a single load of: a replay
// reads many.
inline uint32_t LogWordAt(const uint8_t *bytes) {
    return bytes[0] | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 | uint32_t{bytes[3]} << 24;
}
// True for a length that an entry can have: a multiple of 4 from 8 on, and within `room` bytes.
bool IsEntryLength(uint32_t length, int64_t room);

// While it lives the log stands aside: it has been flushed as it stood, and when this ends its buffer,
// positions and file, and what can be redone, are as if nothing had been recorded. What is recorded meanwhile
// goes to memory. There is one at a time.
class LogAside {
public:
    LogAside();
    LogAside(const LogAside &) = delete;
    LogAside &operator=(const LogAside &) = delete;
    ~LogAside();
    // All that has been recorded so far, entry behind entry.
    const std::vector<uint8_t> &records();

private:
    std::unique_ptr<EditLogRecord> kept;
    std::vector<uint8_t> recorded;
};
