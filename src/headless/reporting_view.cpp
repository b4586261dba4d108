#include "shell/reporting_view.h"
#include "headless/headless.h"
#include <cstdio>

namespace {

void Print(const std::string &text) {
    if (Headless.printMessages && !text.empty()) fprintf(stderr, "%s\n", text.c_str());
}

std::vector<std::string> Present(const char *const (&texts)[3]) {
    std::vector<std::string> present;
    for (const char *text : texts)
        if (text && *text) present.emplace_back(text);
    return present;
}

std::string Joined(const std::vector<std::string> &lines) {
    std::string text;
    for (const std::string &line : lines) text += (text.empty() ? "" : " ") + line;
    return text;
}

} // namespace

void ViewShowPrompt(bool layOut) {
    if (layOut) ++Headless.promptLayouts;
    Headless.prompts.emplace_back(PromptText);
}

void ViewShowStrip(const char *text) {
    Headless.strip = text ? text : "";
    Headless.strips.push_back(Headless.strip);
    Headless.stripWasBusy = ErrorStripBusy;
    Print(Headless.strip);
}

void ViewMessageBox(MessageKind kind, const char *caption, const char *text) {
    auto &messages = kind == MessageKind::User ? Headless.userErrors : Headless.programErrors;
    messages.emplace_back(text);
    Headless.captions.emplace_back(caption);
    Print(text);
}

int ViewAlert(const AlertRequest &request, AlertIcon icon) {
    HeadlessAlert alert;
    alert.lines = Present(request.lines);
    alert.buttons = Present(request.buttons);
    alert.caption = request.caption ? request.caption : "";
    alert.icon = static_cast<int>(icon);
    Print(Joined(alert.lines));
    Headless.alerts.push_back(std::move(alert));
    if (Headless.alertAnswers.empty()) return 1;
    int answer = Headless.alertAnswers.front();
    Headless.alertAnswers.pop_front();
    return answer;
}
