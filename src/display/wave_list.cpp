// The reader of the wave list, the text file beside a document that says which patterns are shown.
#include "display/rows.h"
#include "platform/text_file.h"
#include "shell/file_names.h"
#include "store/signal_name.h"
#include <cstring>
#include <string_view>

namespace {

constexpr int LINE_SIZE = 257; // lines of up to 256 characters
constexpr const char *BLANKS = " \t\r\n\v\f";

// The second word of the line, ended in place; null if there is none.
char *SecondWord(char *line) {
    line += strspn(line, BLANKS);
    line += strcspn(line, BLANKS);
    line += strspn(line, BLANKS);
    if (*line == 0) return nullptr;
    line[strcspn(line, BLANKS)] = 0;
    return line;
}

bool IsWaveLine(const char *line) {
    return EqualIgnoringCase(std::string_view(line).substr(0, 3), "WAV");
}

} // namespace

std::string ReadWaveList(char *path) {
    if (!SetExtension(path, ".kel")) return "";
    TextReader file(path);
    char line[LINE_SIZE];
    while (file.readLine(line, sizeof line) >= 0) {
        if (!IsWaveLine(line)) continue;
        if (const char *name = SecondWord(line)) ShowWaveByName(name);
    }
    return file.failure();
}
