#include "platform/files_native.h"
#include "platform/files.h"
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>
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

// Links that lead to links, at most.
constexpr int MOST_LINKS = 40;

FileHandle Refuse(int why) {
    errno = why;
    return NO_FILE;
}

// The file's extended attributes, among them its access lists. False if one cannot be given; those of the
// system's security follow from the place.
bool CopyAttributes(int from, int to) {
    ssize_t size = flistxattr(from, nullptr, 0);
    if (size <= 0) return true;
    std::vector<char> names(static_cast<size_t>(size));
    size = flistxattr(from, names.data(), names.size());
    for (const char *name = names.data(); name < names.data() + size; name += strlen(name) + 1) {
        if (strncmp(name, "security.", 9) == 0) continue;
        ssize_t length = fgetxattr(from, name, nullptr, 0);
        if (length < 0) return false;
        std::vector<char> value(static_cast<size_t>(length));
        length = fgetxattr(from, name, value.data(), value.size());
        if (length < 0 || fsetxattr(to, name, value.data(), static_cast<size_t>(length), 0) != 0)
            return false;
    }
    return true;
}

// Gives `to` what `from` has besides its bytes.
bool CopyTraits(int from, int to) {
    struct stat old, fresh;
    if (fstat(from, &old) != 0 || fstat(to, &fresh) != 0) return false;
    bool owned = old.st_uid == fresh.st_uid && old.st_gid == fresh.st_gid;
    // The mode behind the owner, as a new owner loses bits of it.
    return (owned || fchown(to, old.st_uid, old.st_gid) == 0) && CopyAttributes(from, to) &&
           fchmod(to, old.st_mode & 07777) == 0;
}

// The directory of a file.
std::string Directory(const std::string &path) {
    size_t slash = path.rfind('/');
    if (slash == path.npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
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
    if ((status.st_mode & (writing ? 0222 : 0444)) != 0) return ::access(path, writing ? W_OK : R_OK) == 0;
    errno = EACCES;
    return false;
}

FileHandle OpenForReading(const char *path) {
    if (!CanAccessFile(path, FileAccess::Read)) return NO_FILE;
    int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (file >= 0 && (fstat(file, &status) != 0 || S_ISDIR(status.st_mode))) {
        close(file);
        return Refuse(EISDIR);
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

FileHandle CreateNewFile(const char *path, bool ownerOnly) {
    return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly ? 0600 : 0666);
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
    ssize_t count = write(static_cast<int>(file), bytes, WriteLimitHook ? WriteLimitHook(size) : size);
    if (count == 0 && size > 0) errno = ENOSPC;
    return count;
}

bool SetFileLength(FileHandle file, int64_t length) {
    return ftruncate(static_cast<int>(file), length) == 0;
}

bool FlushFile(FileHandle file) {
    return fsync(static_cast<int>(file)) == 0;
}

std::string FileFailure() {
    return std::generic_category().message(errno);
}

void CloseFile(FileHandle file) {
    close(static_cast<int>(file));
}

bool RemoveFile(const char *path) {
    return unlink(path) == 0;
}

bool RenameFile(const char *from, const char *to) {
    struct stat status;
    if (lstat(to, &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return rename(from, to) == 0;
}

bool AdoptTraits(FileHandle file, const char *path) {
    int old = open(path, O_RDONLY | O_CLOEXEC);
    bool good = old >= 0 && CopyTraits(old, static_cast<int>(file));
    if (old >= 0) close(old);
    return good;
}

bool ReplaceFileWith(const char *from, const char *to) {
    struct stat old;
    bool there = lstat(to, &old) == 0;
    return (!there || (S_ISREG(old.st_mode) && old.st_nlink == 1)) && rename(from, to) == 0;
}

std::string FollowLinks(const char *path) {
    std::string target = path;
    for (int links = 0; links < MOST_LINKS; links++) {
        std::error_code error;
        fs::path next = fs::read_symlink(target, error);
        if (error) return target;
        target = next.is_absolute() ? next.string() : Directory(target) + "/" + next.string();
    }
    errno = ELOOP;
    return "";
}

bool IsDevice(const char *path) {
    struct stat status;
    return stat(path, &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

bool IsDirectory(const char *path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
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
