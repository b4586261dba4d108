#include "headless/dialogs.h"
#include "shell/about_box.h"
#include "shell/text_dialog.h"
#include <cstdio>

HeadlessDialogState HeadlessDialogs;

void InitHeadlessDialogs() {
    HeadlessDialogs = {};
}

void ShowAboutBox() {
    ++HeadlessDialogs.aboutBoxes;
}

int GetTextDialog(const char *label, char *buffer, int size) {
    HeadlessDialogs.textQuestions.emplace_back(label);
    HeadlessDialogs.textStarts.emplace_back(buffer);
    HeadlessDialogs.textSizes.push_back(size);
    if (HeadlessDialogs.textAnswers.empty()) return 0;
    snprintf(buffer, static_cast<size_t>(size), "%s", HeadlessDialogs.textAnswers.front().c_str());
    HeadlessDialogs.textAnswers.pop_front();
    return 1;
}
