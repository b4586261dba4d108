// Which help was shown, where there are no windows.
#pragma once

#include "shell/help.h"
#include <vector>

struct HeadlessHelpState {
    struct Page {
        std::string path, anchor;
    };
    struct FileCall {
        std::string file;
        HelpTopic topic;
        uint16_t context;
    };
    std::vector<Page> pages;
    std::vector<FileCall> fileCalls;
    std::vector<std::string> closedFiles;
    bool fileWorks = true; // what showing the help file answers
};
// Written by help.cpp and, for what is answered, by its users.
extern HeadlessHelpState HeadlessHelp;
void InitHeadlessHelp();
