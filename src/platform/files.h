// Files and paths. Text files read and write alike on every platform: a line ends in a line feed, a carriage
// return in front of it is dropped on reading, and nothing else in a file has a meaning.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

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
// Makes a file of a name that nothing bears yet, for writing; for its owner alone if so asked.
FileHandle CreateNewFile(const char *path, bool ownerOnly);
// Moves to an offset from the file's start, in bytes, which may lie behind its end.
bool SeekFile(FileHandle file, int64_t offset);
// The file's size in bytes, or -1.
int64_t FileSize(FileHandle file);
// The number of bytes moved, 0 at the end of the file, or -1 for a failure.
int64_t ReadBytes(FileHandle file, void *buffer, size_t size);
int64_t WriteBytes(FileHandle file, const void *bytes, size_t size);
// Cuts the file at `length` bytes, or fills it up with zeros to there.
bool SetFileLength(FileHandle file, int64_t length);
// True when all that was written lies on the disk.
bool FlushFile(FileHandle file);
void CloseFile(FileHandle file);
// Why the routine that has just failed did so, in the system's words.
std::string FileFailure();

bool RemoveFile(const char *path);
// Gives a file another name, which nothing may bear.
bool RenameFile(const char *from, const char *to);
// Gives the open file what the one at `path` has besides its bytes (permissions, owner, attributes), as far
// as that has to be done before ReplaceFileWith. False if it cannot.
bool AdoptTraits(FileHandle file, const char *path);
// Moves `from` over `to` in one step, so that at each moment `to` is the old file or the new one. False, with
// both as they were, if it cannot, or where the old one has other names that would keep the old bytes.
bool ReplaceFileWith(const char *from, const char *to);
// The name of the file that `path` leads to through symbolic links; it need not be there. Empty for a circle.
std::string FollowLinks(const char *path);
// True for what is no file with bytes of its own, like a pipe or a terminal.
bool IsDevice(const char *path);
bool IsDirectory(const char *path);

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
