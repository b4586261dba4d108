#include "platform/files.h"
#include <cstdio>
#include <cstring>
#include <shlobj.h>
#include <vector>
#include <windows.h>

const char PathSeparator = '\\';
const char *const TextLineEnd = "\r\n";

namespace {

// One call moves at most this many bytes.
constexpr size_t LARGEST_TRANSFER = 1 << 30;

DWORD TransferSize(size_t size) {
    return static_cast<DWORD>(size < LARGEST_TRANSFER ? size : LARGEST_TRANSFER);
}

HANDLE HandleOf(FileHandle file) {
    return reinterpret_cast<HANDLE>(file);
}

FileHandle Open(const char *path, DWORD access, DWORD creation) {
    HANDLE file = CreateFileA(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, creation,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    return file == INVALID_HANDLE_VALUE ? NO_FILE : reinterpret_cast<FileHandle>(file);
}

bool IsDirectory(const char *path) {
    DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

bool CanAccessFile(const char *path, FileAccess access) {
    DWORD attributes = GetFileAttributesA(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return false;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return true; // its mark says nothing about its files
    return access != FileAccess::Write || (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

FileHandle OpenForReading(const char *path) {
    return Open(path, GENERIC_READ, OPEN_EXISTING);
}

FileHandle OpenForWriting(const char *path) {
    return Open(path, GENERIC_WRITE, CREATE_ALWAYS);
}

FileHandle OpenForUpdate(const char *path) {
    return Open(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
}

FileHandle CreateForUpdate(const char *path) {
    return Open(path, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
}

bool SeekFile(FileHandle file, int64_t offset) {
    LARGE_INTEGER distance;
    distance.QuadPart = offset;
    return SetFilePointerEx(HandleOf(file), distance, nullptr, FILE_BEGIN) != 0;
}

int64_t FileSize(FileHandle file) {
    LARGE_INTEGER size;
    return GetFileSizeEx(HandleOf(file), &size) ? size.QuadPart : -1;
}

int64_t ReadBytes(FileHandle file, void *buffer, size_t size) {
    DWORD count = 0;
    return ReadFile(HandleOf(file), buffer, TransferSize(size), &count, nullptr) ? count : -1;
}

int64_t WriteBytes(FileHandle file, const void *bytes, size_t size) {
    DWORD count = 0;
    return WriteFile(HandleOf(file), bytes, TransferSize(size), &count, nullptr) ? count : -1;
}

void CloseFile(FileHandle file) {
    CloseHandle(HandleOf(file));
}

bool RemoveFile(const char *path) {
    return DeleteFileA(path) != 0;
}

bool ReplaceFileWith(const char *from, const char *to) {
    return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED) != 0;
}

bool MakeTemporaryFile(const char *prefix, char *out) {
    char directory[MAX_PATH_SIZE];
    DWORD length = GetTempPathA(MAX_PATH_SIZE, directory);
    bool made = length != 0 && length < MAX_PATH_SIZE && GetTempFileNameA(directory, prefix, 0, out) != 0;
    if (!made) out[0] = '\0';
    return made;
}

bool FullPath(const char *path, char *out) {
    out[0] = '\0';
    if (!*path) return false;
    char full[MAX_PATH_SIZE];
    DWORD length = GetFullPathNameA(path, MAX_PATH_SIZE, full, nullptr);
    if (length == 0 || length >= MAX_PATH_SIZE) return false;
    snprintf(out, MAX_PATH_SIZE, "%s", full);
    return true;
}

bool SetCurrentPath(const char *directory) {
    return SetCurrentDirectoryA(directory) != 0;
}

bool MakeDirectory(const char *path) {
    char full[MAX_PATH_SIZE];
    if (!FullPath(path, full)) return false;
    SHCreateDirectoryExA(nullptr, full, nullptr);
    return IsDirectory(full);
}

void ReadEnvironment(const char *name, char *out, size_t size) {
    DWORD length = GetEnvironmentVariableA(name, out, static_cast<DWORD>(size));
    if (length == 0 || length >= size) out[0] = '\0';
}

void UserConfigDirectory(char *out, size_t size) {
    ReadEnvironment("APPDATA", out, size);
}

void ProgramDirectory(char *out, size_t size) {
    DWORD length = GetModuleFileNameA(nullptr, out, static_cast<DWORD>(size));
    if (length >= size) length = 0;
    out[length] = '\0';
    char *separator = strrchr(out, '\\');
    if (separator) *separator = '\0';
}

void LowerCase(char *text) {
    CharLowerA(text);
}

void UpperCase(char *text) {
    CharUpperA(text);
}

bool StartProcess(const char *commandLine) {
    std::vector<char> writable(commandLine, commandLine + strlen(commandLine) + 1);
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process;
    if (!CreateProcessA(nullptr, writable.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return false;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return true;
}
