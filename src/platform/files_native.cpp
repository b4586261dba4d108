#include "platform/files_native.h"
#include "platform/files.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

const char PathSeparator = '/';
const char *const TextLineEnd = "\n";
bool (*StartProcessHook)(const char *commandLine) = nullptr;
size_t (*WriteLimitHook)(size_t size) = nullptr;

namespace {

bool CopyOut(const char *text, char *out, size_t size) {
    bool fits = strlen(text) < size;
    snprintf(out, size, "%s", fits ? text : "");
    return fits;
}

// The full path without "." and doubled separators. ".." takes its directory away, but not behind a symbolic
// link, where the text and the file system disagree.
fs::path Normalized(const fs::path &absolute) {
    fs::path result = "/";
    for (const fs::path &part : absolute.relative_path()) {
        std::error_code ignored;
        if (part == ".") continue;
        if (part == ".." && !fs::is_symlink(result, ignored))
            result = result.parent_path();
        else
            result /= part;
    }
    return result;
}

std::vector<std::string> SplitWords(const char *commandLine) {
    std::vector<std::string> words;
    bool inWord = false, quoted = false;
    for (const char *c = commandLine; *c; ++c) {
        bool blank = *c == ' ' || *c == '\t';
        if (blank && !quoted) {
            inWord = false;
            continue;
        }
        if (!inWord) words.emplace_back();
        inWord = true;
        if (*c == '"')
            quoted = !quoted;
        else
            words.back() += *c;
    }
    return words;
}

} // namespace

// The permission bits count for the superuser too, as the read-only mark does under Windows.
bool CanAccessFile(const char *path, FileAccess access) {
    struct stat status;
    if (stat(path, &status) != 0) return false;
    if (access == FileAccess::Exists) return true;
    bool writing = access == FileAccess::Write;
    return (status.st_mode & (writing ? 0222 : 0444)) != 0 && ::access(path, writing ? W_OK : R_OK) == 0;
}

FileHandle OpenForReading(const char *path) {
    if (!CanAccessFile(path, FileAccess::Read)) return NO_FILE;
    int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (file >= 0 && (fstat(file, &status) != 0 || S_ISDIR(status.st_mode))) {
        close(file);
        return NO_FILE;
    }
    return file;
}

FileHandle OpenForWriting(const char *path) {
    if (CanAccessFile(path, FileAccess::Exists) && !CanAccessFile(path, FileAccess::Write)) return NO_FILE;
    return open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}

FileHandle OpenForUpdate(const char *path) {
    if (!CanAccessFile(path, FileAccess::Read) || !CanAccessFile(path, FileAccess::Write)) return NO_FILE;
    return open(path, O_RDWR | O_CLOEXEC);
}

FileHandle CreateForUpdate(const char *path) {
    if (CanAccessFile(path, FileAccess::Exists) && !CanAccessFile(path, FileAccess::Write)) return NO_FILE;
    return open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

bool SeekFile(FileHandle file, int64_t offset) {
    return lseek(static_cast<int>(file), offset, SEEK_SET) == offset;
}

int64_t FileSize(FileHandle file) {
    struct stat status;
    return fstat(static_cast<int>(file), &status) == 0 ? status.st_size : -1;
}

int64_t ReadBytes(FileHandle file, void *buffer, size_t size) {
    return read(static_cast<int>(file), buffer, size);
}

int64_t WriteBytes(FileHandle file, const void *bytes, size_t size) {
    return write(static_cast<int>(file), bytes, WriteLimitHook ? WriteLimitHook(size) : size);
}

void CloseFile(FileHandle file) {
    close(static_cast<int>(file));
}

bool RemoveFile(const char *path) {
    return unlink(path) == 0;
}

bool ReplaceFileWith(const char *from, const char *to) {
    return rename(from, to) == 0;
}

bool MakeTemporaryFile(const char *prefix, char *out) {
    out[0] = '\0';
    std::error_code error;
    std::string name =
        (fs::temp_directory_path(error) / (std::string(prefix).substr(0, 3) + "XXXXXX")).string();
    if (error || name.size() >= MAX_PATH_SIZE) return false;
    int file = mkstemp(name.data());
    if (file < 0) return false;
    close(file);
    return CopyOut(name.c_str(), out, MAX_PATH_SIZE);
}

bool FullPath(const char *path, char *out) {
    out[0] = '\0';
    if (!*path) return false;
    std::error_code error;
    fs::path absolute = fs::absolute(path, error);
    return !error && CopyOut(Normalized(absolute).c_str(), out, MAX_PATH_SIZE);
}

bool SetCurrentPath(const char *directory) {
    return chdir(directory) == 0;
}

bool MakeDirectory(const char *path) {
    std::error_code ignored;
    fs::create_directories(path, ignored);
    return fs::is_directory(path, ignored);
}

void ReadEnvironment(const char *name, char *out, size_t size) {
    const char *value = getenv(name);
    CopyOut(value ? value : "", out, size);
}

void UserConfigDirectory(char *out, size_t size) {
    ReadEnvironment("XDG_CONFIG_HOME", out, size);
    if (out[0] == '/') return;
    char home[MAX_PATH_SIZE];
    ReadEnvironment("HOME", home, sizeof home);
    out[0] = '\0';
    if (home[0] == '/') CopyOut((std::string(home) + "/.config").c_str(), out, size);
}

void ProgramDirectory(char *out, size_t size) {
    std::error_code error;
    fs::path program = fs::read_symlink("/proc/self/exe", error);
    CopyOut(error ? "" : program.parent_path().c_str(), out, size);
}

void LowerCase(char *text) {
    for (; *text; ++text)
        if (*text >= 'A' && *text <= 'Z') *text = static_cast<char>(*text - 'A' + 'a');
}

void UpperCase(char *text) {
    for (; *text; ++text)
        if (*text >= 'a' && *text <= 'z') *text = static_cast<char>(*text - 'a' + 'A');
}

bool StartProcess(const char *commandLine) {
    if (StartProcessHook) return StartProcessHook(commandLine);
    std::vector<std::string> words = SplitWords(commandLine);
    if (words.empty()) return false;
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string &word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process;
    return posix_spawnp(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0;
}
