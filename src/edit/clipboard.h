// Cut, copy and paste. The clipboard is a file with the records that a cut wrote into the log; a paste
// replays them backward with the insertions going elsewhere. A copy is a cut that is taken back at once.
#pragma once

#include "platform/files.h"

struct LogRecord;

// The clipboard's file, empty without one, and its handle while it is open.
extern char ClipName[MAX_PATH_SIZE];
extern FileHandle ClipHandle;
// The width of the pattern of the last cut, copy or delete.
extern uint16_t ClipWidth;
// The number under which the platform knows the clipboard's format; 0 before the main window stands, which
// sets it.
extern uint32_t ClipFormat;
// Puts the start values in place, without a file, and installs PasteRecord in the replay.
void InitClipboard();

// Takes the selection out, or copies it: COMMAND_CUT, COMMAND_COPY or COMMAND_DELETE.
void CutCopyDelete(uint32_t command);
// Puts the clipboard in the place of the selection, or with `patternId` a reference to that pattern. 1, or 0
// after a message, with everything as it was.
int PasteAtSelection(uint16_t patternId);

// Puts the log's records from `start` on into a new file, and takes the platform's clipboard for it.
void CutToClipFile(int32_t start);
// Replays the file backward. What it inserts is recorded.
void ReplayClipFile();
// Hands the file over in that format, or does nothing for a format that is not ours.
void RenderClipFormat(uint32_t format);
// The same for all formats, when the program ends and others may still want them.
void RenderAllClipFormats();
// Closes and deletes the file.
void DropClipFile();

// Prepares the next replay: what it inserts begins at `index` of the pattern. PasteEnd gives the index behind
// the last item inserted there, and takes away nested patterns that the file made and did not use.
void PasteBegin(uint16_t patternId, uint16_t index);
uint16_t PasteEnd();
// One record of a paste's replay, walking backward. 1, or 0 if it does not fit, which has been reported.
int PasteRecord(const LogRecord &record);
