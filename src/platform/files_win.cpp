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

// Names the system keeps for a file behind a prefix that other calls do not take.
constexpr const char *LONG_PREFIX = "\\\\?\\";
constexpr const char *LONG_SHARE_PREFIX = "\\\\?\\UNC\\";

// The file's handle to ask about it, also for one that others have open; INVALID_HANDLE_VALUE if it is not
// there.
HANDLE OpenToAsk(const char *path) {
    return CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// True if the file has names besides this one.
bool HasOtherNames(const char *path) {
    HANDLE file = OpenToAsk(path);
    if (file == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION information;
    bool others = GetFileInformationByHandle(file, &information) && information.nNumberOfLinks > 1;
    CloseHandle(file);
    return others;
}

// How many bytes a character has in the code page; 0 for half of a pair.
int NarrowSize(wchar_t c) {
    if (c >= 0xD800 && c <= 0xDFFF) return 0;
    return WideCharToMultiByte(CP_ACP, 0, &c, 1, nullptr, 0, nullptr, nullptr);
}

// In place: a letter whose other case takes another number of bytes stays, and so does a text that is none of
// the code page.
void MapCase(char *text, DWORD(WINAPI *map)(wchar_t *, DWORD)) {
    int size = static_cast<int>(strlen(text)) + 1;
    std::vector<wchar_t> wide(static_cast<size_t>(size));
    int count = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text, -1, wide.data(), size);
    for (int i = 0; i < count; ++i) {
        wchar_t &c = wide[static_cast<size_t>(i)], other = c;
        map(&other, 1);
        if (NarrowSize(c) != 0 && NarrowSize(other) == NarrowSize(c)) c = other;
    }
    if (count > 0) WideCharToMultiByte(CP_ACP, 0, wide.data(), count, text, size, nullptr, nullptr);
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

// What a new file may be read by follows from its directory; nothing narrower is asked for.
FileHandle CreateNewFile(const char *path, bool) {
    return Open(path, GENERIC_WRITE, CREATE_NEW);
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

bool SetFileLength(FileHandle file, int64_t length) {
    return SeekFile(file, length) && SetEndOfFile(HandleOf(file));
}

bool FlushFile(FileHandle file) {
    return FlushFileBuffers(HandleOf(file)) != 0;
}

std::string FileFailure() {
    DWORD why = GetLastError();
    char text[256];
    DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, why, 0,
                                  text, sizeof text, nullptr);
    while (length > 0 && strchr(" .\r\n", text[length - 1])) --length;
    return length > 0 ? std::string(text, length) : "error " + std::to_string(why);
}

void CloseFile(FileHandle file) {
    CloseHandle(HandleOf(file));
}

bool RemoveFile(const char *path) {
    return DeleteFileA(path) != 0;
}

bool RenameFile(const char *from, const char *to) {
    return MoveFileExA(from, to, MOVEFILE_WRITE_THROUGH) != 0;
}

// ReplaceFile does it.
bool AdoptTraits(FileHandle, const char *) {
    return true;
}

bool ReplaceFileWith(const char *from, const char *to) {
    if (!CanAccessFile(to, FileAccess::Exists)) return RenameFile(from, to);
    return !HasOtherNames(to) && ReplaceFileA(to, from, nullptr, 0, nullptr, nullptr);
}

std::string FollowLinks(const char *path) {
    HANDLE file = OpenToAsk(path);
    if (file == INVALID_HANDLE_VALUE) return path;
    char name[MAX_PATH_SIZE];
    DWORD length = GetFinalPathNameByHandleA(file, name, sizeof name, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
    CloseHandle(file);
    if (length == 0 || length >= sizeof name) return path;
    std::string target = name;
    if (target.starts_with(LONG_SHARE_PREFIX)) return "\\\\" + target.substr(strlen(LONG_SHARE_PREFIX));
    return target.starts_with(LONG_PREFIX) ? target.substr(strlen(LONG_PREFIX)) : target;
}

bool IsDevice(const char *path) {
    HANDLE file = OpenToAsk(path);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD type = GetFileType(file);
    CloseHandle(file);
    return type != FILE_TYPE_DISK;
}

bool IsDirectory(const char *path) {
    DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
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
    MapCase(text, CharLowerBuffW);
}

void UpperCase(char *text) {
    MapCase(text, CharUpperBuffW);
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
