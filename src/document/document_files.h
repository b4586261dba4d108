// The document's two files, the stimulus file and the wave list, and how a save puts them in place.
//
// A save writes both beside the old ones, under their names with NEW_SUFFIX behind them, and brings them to
// the disk. Then it gives the log another extension, ASIDE_SUFFIX: from this step on it is decided, and the
// new files take their places. So whenever the program is killed, the log never lies beside a document that
// has its edits already: without a log set aside the old document stands with its log, and the new files are
// waste; with one the new files are whole, and whoever opens the document next ends the save.
//
// Where no file can be made beside the old ones, they are written over in place, and the log is emptied
// afterwards; only there a kill can do harm.
#pragma once

constexpr const char *NEW_SUFFIX = "._KN";
constexpr const char *ASIDE_SUFFIX = "._KM";

// Writes the document to `path` (MAX_PATH_SIZE), tells the sibling tools, and writes the wave list beside it;
// `path` then ends in ".kel". The caller empties the log and calls EndSave. False after a message, with the
// files and the log as they were. A wave list that cannot be put in its place although it was written is
// told, but the document is saved then.
bool WriteWdlFile(char *path);
// Forgets the log that WriteWdlFile has set aside. `path` may have any extension.
void EndSave(const char *path);
// Ends what a save of `path` has left that was killed: puts in place what was decided, and takes away what
// was not. False after a message, where the disk does not let it.
bool SettleSave(const char *path);
