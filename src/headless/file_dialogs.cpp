#include "shell/file_dialogs.h"
#include "headless/headless.h"
#include <cstdio>

namespace {

// The next answer to `path`; false where it is "" or none is left, or where it does not fit.
bool Answer(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
            const char *ext) {
    Headless.fileQuestions.push_back({title ? title : "", label, ext, initialDir ? initialDir : "", path});
    if (Headless.fileAnswers.empty()) return false;
    std::string answer = Headless.fileAnswers.front();
    Headless.fileAnswers.pop_front();
    if (answer.empty() || answer.size() >= static_cast<size_t>(pathSize)) return false;
    snprintf(path, static_cast<size_t>(pathSize), "%s", answer.c_str());
    return true;
}

} // namespace

bool OpenFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext, bool /*keepDir*/) {
    return Answer(title, label, initialDir, path, pathSize, ext);
}

bool SaveFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext) {
    return Answer(title, label, initialDir, path, pathSize, ext);
}
