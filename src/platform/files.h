// Files and paths. Text files read and write alike on every platform: a line ends in a line feed, a carriage
// return in front of it is dropped on reading, and nothing else in a file has a meaning.
#pragma once

#include <cstddef>
#include <cstdint>

// Room for a path, its NUL included.
constexpr int MAX_PATH_SIZE = 260;

enum class FileAccess { Exists = 0, Write = 2, Read = 4 };
// True if the file (or directory) at `path` can be used in this way. A file that is marked read-only is not
// writable, whoever asks.
bool CanAccessFile(const char *path, FileAccess access);

// A raw file, by the platform's handle; -1 for none.
using FileHandle = intptr_t;
constexpr FileHandle NO_FILE = -1;
// Both refuse a directory. OpenForWriting makes the file or empties it, unless it is marked read-only.
FileHandle OpenForReading(const char *path);
FileHandle OpenForWriting(const char *path);
// Reading and writing: one that is there, and one that is made or emptied, for its owner alone.
FileHandle OpenForUpdate(const char *path);
FileHandle CreateForUpdate(const char *path);
// Moves to an offset from the file's start, in bytes, which may lie behind its end.
bool SeekFile(FileHandle file, int64_t offset);
// The file's size in bytes, or -1.
int64_t FileSize(FileHandle file);
// The number of bytes moved, 0 at the end of the file, or -1 for a failure.
int64_t ReadBytes(FileHandle file, void *buffer, size_t size);
int64_t WriteBytes(FileHandle file, const void *bytes, size_t size);
void CloseFile(FileHandle file);

bool RemoveFile(const char *path);
// Moves `from` over `to`, which may exist.
bool ReplaceFileWith(const char *from, const char *to);

// Makes an empty file of a new name in the directory for temporary files; its path to `out` (MAX_PATH_SIZE).
// At most three characters of the prefix count. False, with an empty path, if there can be none.
bool MakeTemporaryFile(const char *prefix, char *out);

// The full path to `out` (MAX_PATH_SIZE bytes); an empty path, or one that does not fit, gives an empty
// result and false.
bool FullPath(const char *path, char *out);
// The process's current directory; false if there is no such directory.
bool SetCurrentPath(const char *directory);
// Makes a directory, with its parents; true if it is there afterwards.
bool MakeDirectory(const char *path);

// The separator that joins a directory and a name: "\" under Windows, "/" natively. Both separate when read.
extern const char PathSeparator;
// The line end that text files are written with.
extern const char *const TextLineEnd;

// An environment variable to `out`, empty if it is not set or too long.
void ReadEnvironment(const char *name, char *out, size_t size);
// The directory for the configuration of programs: %APPDATA% under Windows; $XDG_CONFIG_HOME, else ~/.config,
// natively. Empty if there is none.
void UserConfigDirectory(char *out, size_t size);
// The directory of the running program.
void ProgramDirectory(char *out, size_t size);

// The case mapping of the ANSI code page, in place. Natively, where names are UTF-8, only ASCII letters
// change.
void LowerCase(char *text);
void UpperCase(char *text);

// Starts a program; `commandLine` holds its name and arguments, each in double quotes if it holds blanks.
// True if it runs.
bool StartProcess(const char *commandLine);
