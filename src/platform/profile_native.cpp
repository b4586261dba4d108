#include "platform/file_replacement.h"
#include "platform/files.h"
#include "platform/profile.h"
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view BLANKS(" \t\v\f\x1a");
// Of UTF-8; some editors put it in front of the first section.
constexpr std::string_view BYTE_ORDER_MARK("\xef\xbb\xbf");

// Without blanks around it. A NUL ends a text early.
std::string_view Trimmed(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    size_t first = text.find_first_not_of(BLANKS);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

bool SameName(std::string_view a, std::string_view b) {
    auto same = [](char x, char y) {
        return tolower(static_cast<uint8_t>(x)) == tolower(static_cast<uint8_t>(y));
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

struct Line {
    size_t start = 0, end = 0; // offsets in the file's text, `end` behind the line end
    bool isEmpty = false, isSection = false, isKey = false;
    std::string_view name = {}, value = {};
};

// A line that begins with "[" but holds no "]" is an ordinary one, and one without "=" has no value to give.
// A comment needs no test of its own: its name begins with ";", which no key that is asked for does.
void Classify(Line &line, std::string_view text) {
    size_t first = text.find_first_not_of(BLANKS);
    line.isEmpty = first == text.npos;
    if (line.isEmpty) return;
    text.remove_prefix(first);
    size_t close = text.rfind(']');
    line.isSection = text[0] == '[' && close != text.npos;
    if (line.isSection) {
        line.name = Trimmed(text.substr(1, close - 1));
        return;
    }
    size_t equals = text.find('=');
    line.isKey = equals != text.npos;
    if (!line.isKey) return;
    line.name = Trimmed(text.substr(0, equals));
    line.value = Trimmed(text.substr(equals + 1));
}

// The line at `start`, which ends with a carriage return, a line feed or both.
Line LineAt(std::string_view text, size_t start) {
    Line line;
    line.start = start;
    line.end = text.size();
    size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    if (end < text.size()) line.end = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    Classify(line, text.substr(start, end - start));
    return line;
}

struct Place {
    bool sectionFound = false, keyFound = false;
    Line key;              // the key's line, if it is there
    size_t sectionEnd = 0; // behind the last line of the section that is not empty
};

Place FindKey(std::string_view text, std::string_view section, std::string_view key) {
    Place place;
    for (size_t start = text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0;
         start < text.size();) {
        Line line = LineAt(text, start);
        start = line.end;
        if (line.isSection && place.sectionFound) break;
        if (line.isSection && SameName(line.name, section)) place.sectionFound = true;
        if (!place.sectionFound) continue;
        if (!line.isEmpty) place.sectionEnd = line.end;
        if (line.isKey && SameName(line.name, key)) {
            place.keyFound = true;
            place.key = line;
            break;
        }
    }
    return place;
}

bool ReadWhole(const char *path, std::string &text) {
    FileHandle file = OpenForReading(path);
    if (file == NO_FILE) return false;
    char block[16384];
    int64_t count;
    while ((count = ReadBytes(file, block, sizeof block)) > 0) text.append(block, static_cast<size_t>(count));
    CloseFile(file);
    return count == 0;
}

bool WriteWhole(const char *path, std::string_view text) {
    FileReplacement file(path);
    return file.isOpen() && file.write(text) && file.finish() && file.commit();
}

std::string_view WithoutQuotes(std::string_view value) {
    bool quoted = value.size() >= 2 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0];
    return quoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace

int ProfileString(const char *section, const char *key, const char *fallback, char *buffer, int size,
                  const char *path) {
    std::string text;
    ReadWhole(path, text);
    Place place = FindKey(text, section, key);
    std::string_view value = place.keyFound ? WithoutQuotes(place.key.value) : fallback;
    size_t length = value.copy(buffer, static_cast<size_t>(size - 1));
    buffer[length] = '\0';
    return static_cast<int>(length);
}

bool SetProfileString(const char *section, const char *key, const char *value, const char *path) {
    std::string text;
    if (!ReadWhole(path, text) && CanAccessFile(path, FileAccess::Exists)) return false;
    const std::string lineEnd = text.find("\r\n") == text.npos ? TextLineEnd : "\r\n";
    std::string line = std::string(key) + "=" + value + lineEnd;
    Place place = FindKey(text, section, key);
    if (place.keyFound) {
        text.replace(place.key.start, place.key.end - place.key.start, line);
        return WriteWhole(path, text);
    }
    if (!place.sectionFound) {
        line = "[" + std::string(section) + "]" + lineEnd + line;
        place.sectionEnd = text.size();
    }
    bool lineOpen = place.sectionEnd > 0 && !strchr("\r\n", text[place.sectionEnd - 1]);
    text.insert(place.sectionEnd, (lineOpen ? lineEnd : "") + line);
    return WriteWhole(path, text);
}
