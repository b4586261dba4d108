// What the program's dialogs were asked, and what they answer, where there are no windows.
#pragma once

#include <deque>
#include <string>
#include <vector>

struct HeadlessDialogState {
    int aboutBoxes = 0;
    std::vector<std::string> textQuestions;
    std::vector<std::string> textStarts; // what stood in the field
    std::vector<int> textSizes;          // of the buffers
    std::deque<std::string> textAnswers; // with none left the question is cancelled
};
// Written by the dialogs and, for what is answered, by its users.
extern HeadlessDialogState HeadlessDialogs;
void InitHeadlessDialogs();
