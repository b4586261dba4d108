// Applies the log's records to the document, backward and forward: undo, redo and recovery change it by
// nothing else. It goes through the mutators, which record nothing meanwhile.
//
// A log may be damaged, or may not belong to the document. So each record is checked against the document
// before anything is done; one that does not fit is told as an invalid command, and the replay stops there.
#pragma once

#include <cstdint>
#include <span>

struct LogRecord;

// One record, as ExecuteLogHook is given it. In mode 5 it is a record of the clipboard and goes to
// PasteRecordHook; modes other than 0 and 5 do nothing and answer 1.
int ApplicationExecuteLog(std::span<const uint8_t> payload, int direction, int32_t a, int32_t b, int mode);

// Ends a replay of one or more records. Within it a reference may name a pattern that is not in use, as a
// nested pattern may be deleted before the reference to it; references that still do are deleted here,
// without a record. Durations are not validated. May move no records.
void FinishReplay();

// Installs ApplicationExecuteLog, and forgets what a replay has left to do.
void InitReplay();

// Each is null while nobody has installed it.
//
// A pattern of this name was made or deleted: lists of patterns are out of date.
extern void (*PatternListHook)(const char *name);
// The document's time unit, its clock or its end have changed.
extern void (*TimingHook)();
// One record of a paste, walking backward: 1, or 0 if it does not fit. Without it a paste is refused.
extern int (*PasteRecordHook)(const LogRecord &record);
