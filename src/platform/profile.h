// Ini files, read and written as the profile calls of Windows do it, on every platform: sections and keys
// compare without case, the first of several counts, a line that begins with ";" is a comment.
#pragma once

#include <cstddef>

// The value of `key` in `section` of the file, without quotes and blanks around it, cut to `size` - 1
// characters; `fallback` if there is none. Returns its length.
int ProfileString(const char *section, const char *key, const char *fallback, char *buffer, int size,
                  const char *path);
// The value as a decimal integer, as far as it reads as one, clamped to 32 bits; 0 if it does not begin with
// one, `fallback` if there is no such key or its value is empty.
int ProfileInteger(const char *section, const char *key, int fallback, const char *path);
// Sets a key, making the section and the file where they are missing and keeping all other lines; false if
// the file cannot be written.
bool SetProfileString(const char *section, const char *key, const char *value, const char *path);
