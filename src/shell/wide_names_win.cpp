#include "shell/wide_names_win.h"

#include "shell/reporting.h"
#include <cstdio>

namespace {

// Characters that the code page lacks come out as others that look alike, or as question marks.
std::string NarrowAsFarAsPossible(const wchar_t *text) {
    int size = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return "";
    std::string narrow(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text, -1, narrow.data(), size, nullptr, nullptr);
    narrow.pop_back();
    return narrow;
}

void TellOutside(const wchar_t *name) {
    UserErrorFormat("The name %s cannot be used: this version of Windows has no code page for its characters",
                    NarrowAsFarAsPossible(name).c_str());
}

// Behind the program's name, which has quotes where it has blanks.
const wchar_t *BehindProgram(const wchar_t *line) {
    wchar_t end = *line == L'"' ? L'"' : L' ';
    if (*line == L'"') ++line;
    while (*line && *line != end && (end == L'"' || *line > L' ')) ++line;
    if (*line) ++line;
    while (*line && *line <= L' ') ++line;
    return line;
}

} // namespace

std::wstring Widen(const char *text) {
    int size = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    if (size <= 0) return L"";
    std::wstring wide(static_cast<size_t>(size), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), size);
    wide.pop_back();
    return wide;
}

std::optional<std::string> Narrow(const wchar_t *text) {
    std::string narrow = NarrowAsFarAsPossible(text);
    if (Widen(narrow.c_str()) != text) return std::nullopt;
    return narrow;
}

bool TakeFileName(const wchar_t *name, char *out, size_t size) {
    std::optional<std::string> narrow = Narrow(name);
    if (!narrow) {
        TellOutside(name);
    } else if (narrow->size() >= size) {
        UserError("File name is too long");
    } else {
        snprintf(out, size, "%s", narrow->c_str());
        return true;
    }
    return false;
}

std::string CommandLineArguments() {
    const wchar_t *arguments = BehindProgram(GetCommandLineW());
    std::optional<std::string> narrow = Narrow(arguments);
    if (!narrow) TellOutside(arguments);
    return narrow.value_or("");
}
