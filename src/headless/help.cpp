#include "headless/help.h"

HeadlessHelpState HeadlessHelp;

void InitHeadlessHelp() {
    HeadlessHelp = {};
}

bool ShowHelpFile(const char *file, HelpTopic topic, uint16_t context) {
    HeadlessHelp.fileCalls.push_back({file, topic, context});
    return HeadlessHelp.fileWorks;
}

void CloseHelpFile(const char *file) {
    HeadlessHelp.closedFiles.emplace_back(file);
}

void OpenManualPage(const char *path, const std::string &anchor) {
    HeadlessHelp.pages.push_back({path, anchor});
}
