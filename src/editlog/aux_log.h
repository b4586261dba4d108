// A second file in the log's format that is read beside the log: the clipboard's. Outside a paste it is the
// log itself.
#pragma once

#include "editlog/edit_log.h"

// The handle and the name of the file. Written by whoever reads another one, and put back by AuxClose.
struct AuxFileRecord {
    FileHandle *handle;
    char *name; // of MAX_PATH_SIZE bytes
};
extern AuxFileRecord AuxFile;

// Moves the window to AuxPtr, behind it (1) or ahead of it (0), and reads it. 1, or 0 after a message.
int AuxFill(int backward);
// 1 when AuxPtr is at the start or just behind a mark.
int AuxAtMark();
// Replays the file from offset `end` down to its start or to the nearest mark, as undo would, and closes it.
// `a`, `b` and `mode` go to the replay. 1, or 0 if a record could not be read or applied.
int AuxReplayBackward(int32_t end, int32_t a, int32_t b, int mode);
// Closes the file, and points AuxFile back at the log.
void AuxClose();
