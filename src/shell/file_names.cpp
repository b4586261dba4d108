#include "shell/file_names.h"
#include <cstdio>
#include <cstring>

namespace {

// The separators of Windows, which count on every platform.
bool IsSeparator(char c) {
    return c == '\\' || c == '/' || c == ':';
}

// Where the extension of a path begins, or its end if there is none.
size_t ExtensionStart(const char *path) {
    const char *name = FileNamePart(path);
    const char *dot = strrchr(name, '.');
    return dot ? static_cast<size_t>(dot - path) : strlen(path);
}

// The last separator of directories that the platform knows, null if there is none.
char *LastDirectorySeparator(char *path) {
    char *last = strrchr(path, '/');
    char *backslash = PathSeparator == '\\' ? strrchr(path, '\\') : nullptr;
    return !last || (backslash && backslash > last) ? backslash : last;
}

} // namespace

bool SetExtension(char *path, const char *ext) {
    if (!*path) return false;
    size_t stem = ExtensionStart(path);
    if (stem + strlen(ext) >= MAX_PATH_SIZE) return false;
    snprintf(path + stem, MAX_PATH_SIZE - stem, "%s", ext);
    return true;
}

const char *FileNamePart(const char *path) {
    const char *name = path;
    for (; *path; ++path)
        if (IsSeparator(*path)) name = path + 1;
    return name;
}

char *FileNamePart(char *path) {
    return path + (FileNamePart(static_cast<const char *>(path)) - path);
}

char *DirectoryOf(const char *path, char *out) {
    if (!FullPath(path, out)) return nullptr;
    char *last = LastDirectorySeparator(out);
    if (!last) return nullptr;
    char separator = *last;
    *last = '\0';
    // A root keeps its separator.
    if (!LastDirectorySeparator(out)) {
        last[0] = separator;
        last[1] = '\0';
    }
    return out;
}

bool ChangeToDirectoryOf(const char *path) {
    if (FileNamePart(path) == path) return true;
    char directory[MAX_PATH_SIZE];
    return DirectoryOf(path, directory) && SetCurrentPath(directory);
}

void BaseName(const char *path, char *out) {
    const char *name = FileNamePart(path);
    size_t length = ExtensionStart(path) - static_cast<size_t>(name - path);
    if (length >= MAX_PATH_SIZE) length = MAX_PATH_SIZE - 1;
    memmove(out, name, length);
    out[length] = '\0';
}
