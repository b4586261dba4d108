// File names as Windows gives them, in wide characters, and as the program holds them, in its code page. That
// is UTF-8, for which the manifest asks; an old Windows, which knows no such wish, has one of 256 characters
// or so.
#pragma once

#include <optional>
#include <string>
#include <windows.h>

// The text in wide characters.
std::wstring Widen(const char *text);
// The text in the code page; nothing if that lacks one of its characters.
std::optional<std::string> Narrow(const wchar_t *text);
// A name that the user has given, to `out` of `size` bytes. False, after a message, if it is too long, or has
// characters that the code page lacks.
bool TakeFileName(const wchar_t *name, char *out, size_t size);
// The arguments that the program was started with; empty, after a message, where they have such characters.
std::string CommandLineArguments();
