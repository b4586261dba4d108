// Helpers on file names, in place; a path has at most MAX_PATH_SIZE bytes.
#pragma once

#include "platform/files.h"

// Replaces the extension by `ext` (with its dot), or adds it. An empty path stays empty, as does the path
// where the result would not fit; then it returns false.
bool SetExtension(char *path, const char *ext);
// Points behind the last backslash, "/" or ":".
char *FileNamePart(char *path);
const char *FileNamePart(const char *path);
// The directory of the full path, to `out` (MAX_PATH_SIZE); null if there is none.
char *DirectoryOf(const char *path, char *out);
// True for an empty path and one without a drive or a separator; otherwise makes its directory the current
// one.
bool ChangeToDirectoryOf(const char *path);
// The file name part without its extension, to `out` (MAX_PATH_SIZE).
void BaseName(const char *path, char *out);
