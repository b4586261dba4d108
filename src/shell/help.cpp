#include "shell/help.h"

#include "config/paths.h"
#include "shell/commands.h"
#include "shell/reporting.h"
#include <cstdio>
#include <string_view>

uint32_t (*ToolHelpIdHook)(uint32_t id);
uint16_t MenuSelectItem;
uint16_t MenuSelectFlags;

namespace {

constexpr const char *HELP_FILE = "kel.hlp";
constexpr const char *MANUAL_FOLDER = "manual";
constexpr uint32_t FIRST_TOOL = 1024;
constexpr uint32_t LAST_TOOL = 2046;

// Flags of a menu entry, as Windows numbers them.
constexpr uint16_t MENU_POPUP = 0x10;
constexpr uint16_t MENU_SYSTEM = 0x2000;

bool IsTool(uint32_t id) {
    return id >= FIRST_TOOL && id <= LAST_TOOL;
}

// `out` stays empty where the path does not fit.
void JoinPath(char (&out)[MAX_PATH_SIZE], const char *directory, const char *name) {
    int length = snprintf(out, sizeof out, "%s%c%s", directory, PathSeparator, name);
    if (length >= MAX_PATH_SIZE) out[0] = '\0';
}

bool HelpFileExists(const char *path) {
    if (!path[0]) return false;
    if (CanAccessFile(path, FileAccess::Read)) return true;
    // A name without a directory is also looked for beside the program.
    char directory[MAX_PATH_SIZE], beside[MAX_PATH_SIZE];
    ProgramDirectory(directory, sizeof directory);
    JoinPath(beside, directory, path);
    return beside[0] && CanAccessFile(beside, FileAccess::Read);
}

bool FindHelpFile(char (&path)[MAX_PATH_SIZE]) {
    FormHelpFilePath(path);
    return HelpFileExists(path);
}

void ShowManual(const ManualPlace &place) {
    char directory[MAX_PATH_SIZE], manual[MAX_PATH_SIZE], path[MAX_PATH_SIZE];
    ProgramDirectory(directory, sizeof directory);
    JoinPath(manual, directory, MANUAL_FOLDER);
    JoinPath(path, manual, place.page.c_str());
    if (!manual[0] || !path[0] || !CanAccessFile(path, FileAccess::Read)) {
        UserErrorFormat("The manual is missing: %s", path);
        return;
    }
    OpenManualPage(path, place.anchor);
}

// Letters, digits and a few marks stand for themselves in a URL.
bool IsPlainInUrl(char c) {
    constexpr std::string_view marks = "-._~/:";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           marks.find(c) != std::string_view::npos;
}

std::string UrlText(const std::string &path) {
    std::string text;
    for (char c : path) {
        if (c == '\\') c = '/';
        if (IsPlainInUrl(c)) {
            text += c;
            continue;
        }
        char code[4];
        snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += code;
    }
    return text;
}

} // namespace

void FormHelpFilePath(char (&path)[MAX_PATH_SIZE]) {
    if (HelpDirectory[0]) {
        JoinPath(path, HelpDirectory, HELP_FILE);
    } else {
        snprintf(path, sizeof path, "%s", HELP_FILE);
    }
}

uint16_t HelpContextOf(uint32_t id) {
    if (IsTool(id) && ToolHelpIdHook) id = ToolHelpIdHook(id);
    return static_cast<uint16_t>(id);
}

ManualPlace PlaceInManual(HelpTopic topic, uint16_t context) {
    switch (topic) {
    case HelpTopic::Search:
        return {"commands.html", ""};
    case HelpTopic::UsingHelp:
        return {"index.html", "help"};
    case HelpTopic::Context:
        if (context == 0) break;
        if (IsTool(context)) return {"commands.html", "own-tools"};
        return {"commands.html", "command-" + std::to_string(context)};
    case HelpTopic::Contents:
        break;
    }
    return {"index.html", ""};
}

std::string FileUrl(const std::string &path, const std::string &anchor) {
    std::string text = UrlText(path);
    // A share begins with the name of its machine; anything else has an empty one.
    std::string url;
    if (text.starts_with("//")) {
        url = "file:" + text;
    } else {
        url = (text.starts_with('/') ? "file://" : "file:///") + text;
    }
    return anchor.empty() ? url : url + "#" + anchor;
}

std::string RedirectPage(const std::string &url) {
    return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">\n<title>Kelvane</title>\n"
           "<meta http-equiv=\"refresh\" content=\"0; url=" +
           url + "\">\n</head><body><p><a href=\"" + url + "\">The manual</a></p></body></html>\n";
}

void ShowHelp(HelpTopic topic, uint16_t context) {
    char file[MAX_PATH_SIZE];
    if (FindHelpFile(file) && ShowHelpFile(file, topic, context)) return;
    ShowManual(PlaceInManual(topic, context));
}

void HelpOnCurrentCommand() {
    ShowHelp(HelpTopic::Context, HelpContextOf(CommandState.CurrentCommand));
}

void HelpContents() {
    ShowHelp(HelpTopic::Contents, 0);
}

void HelpSearch() {
    ShowHelp(HelpTopic::Search, 0);
}

void HelpOnHelp() {
    ShowHelp(HelpTopic::UsingHelp, 0);
}

void QuitHelp() {
    char file[MAX_PATH_SIZE];
    if (FindHelpFile(file)) CloseHelpFile(file);
}

void HelpOnMenuItem() {
    if (MenuSelectFlags & (MENU_POPUP | MENU_SYSTEM)) return;
    ShowHelp(HelpTopic::Context, HelpContextOf(MenuSelectItem));
}
