#include "platform/files.h"
#include "platform/profile.h"
#include <cstdio>
#include <cstring>
#include <windows.h>

// The profile calls look for a path without a directory in the Windows directory, so they get full ones.

int ProfileString(const char *section, const char *key, const char *fallback, char *buffer, int size,
                  const char *path) {
    char full[MAX_PATH_SIZE];
    if (!FullPath(path, full)) {
        snprintf(buffer, static_cast<size_t>(size), "%s", fallback);
        return static_cast<int>(strlen(buffer));
    }
    return static_cast<int>(
        GetPrivateProfileStringA(section, key, fallback, buffer, static_cast<DWORD>(size), full));
}

bool SetProfileString(const char *section, const char *key, const char *value, const char *path) {
    char full[MAX_PATH_SIZE];
    if (!FullPath(path, full)) return false;
    bool written = WritePrivateProfileStringA(section, key, value, full) != 0;
    // Without this the change may stay in the system's cache.
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, full);
    return written;
}
