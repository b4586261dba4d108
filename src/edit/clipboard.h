// Cut, copy and paste. The clipboard is a file with the records that a cut wrote into the log; a paste
// replays them backward with the insertions going elsewhere. A copy is a cut that is rolled back at once.
#pragma once

#include "platform/files.h"

struct LogRecord;

// The clipboard's file, empty without one, and the width of the pattern of the last cut, copy or delete.
extern char ClipName[MAX_PATH_SIZE];
extern uint16_t ClipWidth;
void InitClipboard();

// Takes the selection out, or copies it: COMMAND_CUT, COMMAND_COPY or COMMAND_DELETE.
void CutCopyDelete(uint32_t command);
// Puts the clipboard at the selection, or with `patternId` a reference to that pattern. 1, or 0 after a
// message.
int PasteAtSelection(uint16_t patternId);
// Closes and deletes the clipboard's file.
void DropClipFile();
// One record of a paste's replay, walking backward. 1, or 0 if it does not fit.
int PasteRecord(const LogRecord &record);
