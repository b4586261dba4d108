#include "wdl/error_listing.h"

#include "config/paths.h"
#include "shell/file_names.h"
#include "wdl/lexer.h"
#include <cstdio>
#include <cstring>
#include <string>

bool WriteErrorListing = true;
void (*SyntaxErrorHook)(int line, int column, const char *message) = nullptr;
void (*WarningHook)(int line, int column, const char *message) = nullptr;
int32_t WdlErrorCount = 0;
int32_t WdlHadErrors = 0;
std::unique_ptr<TextWriter> WdlErrFile;

namespace {

char listingName[MAX_PATH_SIZE] = "";

void WriteEntry(const char *message, int charactersRead) {
    char text[64 + 3 * WDL_LINE_SIZE];
    snprintf(text, sizeof text, "Line %3d SyntaxError - %.256s\n%s\n%*s^\n", WdlLineNumber, message, WdlLine,
             charactersRead - 1, "");
    WdlErrFile->write(text);
}

void ShowListing() {
    const char *quote = strchr(listingName, ' ') ? "\"" : "";
    char command[2 * MAX_PATH_SIZE + 8];
    snprintf(command, sizeof command, "%s %s%s%s", EditorCommand, quote, listingName, quote);
    StartProcess(command);
}

} // namespace

void WdlSyntaxError(const char *message) {
    ++WdlErrorCount;
    // What is missing then is not the document's fault: whoever has opened the file tells of it.
    if (WdlFile->failed()) return;
    auto charactersRead = static_cast<int>(WdlReadPos - WdlLine);
    if (WdlErrFile) {
        WriteEntry(message, charactersRead);
        WdlHadErrors = 1;
    }
    if (SyntaxErrorHook) SyntaxErrorHook(WdlLineNumber, charactersRead > 1 ? charactersRead : 1, message);
}

void WdlWarning(uint32_t offset, const char *what, std::string_view word) {
    constexpr size_t longest = 40;
    if (!WarningHook) return;
    std::string message = what;
    if (!word.empty()) {
        std::string_view shown = word.substr(0, longest);
        message.append(" \"").append(shown).append(shown == word ? "\"" : "...\"");
    }
    WdlPlace place = WdlPlaceInToken(offset);
    WarningHook(place.line, place.column, message.c_str());
}

void OpenErrorListing(const char *path) {
    WdlErrorCount = 0;
    if (!WriteErrorListing) return;
    snprintf(listingName, sizeof listingName, "%s", FileNamePart(path));
    if (!SetExtension(listingName, ".err")) return;
    WdlErrFile = std::make_unique<TextWriter>(listingName);
    if (!WdlErrFile->isOpen()) WdlErrFile.reset();
}

void CloseErrorListing() {
    if (!WdlErrFile) return;
    WdlErrFile->close();
    WdlErrFile.reset();
    if (WdlHadErrors) {
        ShowListing();
    } else {
        RemoveFile(listingName);
    }
    WdlHadErrors = 0;
}
