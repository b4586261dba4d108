// The document's life: loading, opening, saving, and the question before a change loses data.
#pragma once

#include "platform/files.h"
#include "store/time_value.h"

// The document's path, empty for an untitled one. Its extension is not reliable: every use forces ".wdl"
// first. Written here and by the command line.
extern char DocumentPath[MAX_PATH_SIZE];
// Set once a save meets a file that is not writable; from then on every save asks for a name.
extern int32_t ForceSaveAs;
// The kind of tool in the suite: 6, the stimulus tool.
constexpr int ApplicationKind = 6;
// Opening may fall back to an untitled document.
constexpr bool AllowNewDocument = true;

// Reads the document; `path` (MAX_PATH_SIZE) is the buffer that holds its name and ends in ".kel" after
// success. Returns 1, or 0 after a message.
int LoadDocument(char *path);
// Rebuilds all document state from DocumentPath; 1 or 0. After a failure the windows are gone.
int ReloadDocument();
// Opens a document: `path`, one that the user is asked for, or, with `isNew`, an untitled one. 1 unless the
// load failed.
int OpenDocument(const char *path, bool isNew);
// Writes the document; 0 when the user gave up, or after a message when it could not be written.
int SaveDocument(bool saveAs);
// True if the caller may go on, asking the user whether to save first if there are changes.
int QuerySaveChanges(bool allowCancel);
int IsDocumentModified();
int BrowseForOpen(char *buffer, int size);
int BrowseForSave(char *buffer, int size);
// Writes the document, says so, and takes over the title. 0 after a message; then log, title and DocumentPath
// are as they were.
int WriteAndReport(const char *path);
// The same in silence when it is done. DocumentPath takes `path`, whose extension is forced and whose base
// name gets small letters.
int WriteDocumentFiles(const char *path);
// A request of the message service: code 0 makes a new named file, code 1 opens a named one. 1 if the code is
// one of these.
int OnFileRequest(uint32_t code, uint32_t stringHandle);
// The title from the document's name; empty for "<untitled>".
void SetMainTitle(const char *name);
// Frees what the document holds, deletes the log and writes the preferences.
void ReleaseDocument();

// Puts the start values in place, and installs what lower floors call.
void InitDocument();
