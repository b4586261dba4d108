#include "shell/reporting_view.h"
#include <cstdarg>
#include <cstdio>
#include <cstring>

char PromptText[PROMPT_SIZE];
char PromptSubstitute[PROMPT_SIZE];
bool ErrorStripBusy;
uint32_t FileErrors;

namespace {

// Characters that a prompt fills at most.
constexpr int PROMPT_BUDGET = 253;
// What is shown of the error strip's text, bare and behind the prefix.
constexpr int BARE_STRIP_LIMIT = 249;
constexpr int PREFIXED_STRIP_LIMIT = 239;
constexpr const char *DEFAULT_ALERT_LINE = "Alert!";
constexpr const char *DEFAULT_ALERT_BUTTON = "OK";

char notices[PROMPT_SIZE];

void CopyPrompt(const char *text) {
    int used = 0;
    for (; *text && used < PROMPT_BUDGET; ++text) {
        if (*text != '@') {
            PromptText[used++] = *text;
            continue;
        }
        for (const char *c = PromptSubstitute; *c && used < PROMPT_BUDGET; ++c) PromptText[used++] = *c;
    }
    PromptText[used] = '\0';
}

void Prompt(const char *text, bool layOut) {
    if (text) {
        if (strncmp(text, PromptText, PROMPT_SIZE) == 0) return;
        CopyPrompt(text);
    }
    ViewShowPrompt(layOut);
}

int MessageBoxOf(MessageKind kind, const char *word, const char *text) {
    char caption[128];
    snprintf(caption, sizeof caption, "%.100s %s", APPLICATION_TITLE, word);
    ViewMessageBox(kind, caption, text);
    return 1;
}

} // namespace

void InitReporting() {
    notices[0] = '\0';
    PromptText[0] = '\0';
    PromptSubstitute[0] = '\0';
    ErrorStripBusy = false;
    FileErrors = 0;
}

void SetPrompt(const char *text) {
    Prompt(text, true);
}

void SetPromptQuick(const char *text) {
    Prompt(text, false);
}

void AddNotice(const char *text) {
    size_t used = strlen(notices);
    snprintf(notices + used, sizeof notices - used, "%s%s.", used ? "  " : "", text);
}

void ShowNotices() {
    if (notices[0]) SetPrompt(notices);
    notices[0] = '\0';
}

int ShowErrorStrip(const char *text) {
    constexpr int ALWAYS = 100;
    if (ErrorStripBusy) return ALWAYS;
    char shown[PROMPT_SIZE];
    if (text && text[0] == '\\')
        snprintf(shown, sizeof shown, "%.*s", BARE_STRIP_LIMIT, text + 1);
    else if (text)
        snprintf(shown, sizeof shown, "ERROR: %.*s", PREFIXED_STRIP_LIMIT, text);
    // Making the strip's window sends messages that would come back here.
    ErrorStripBusy = true;
    ViewShowStrip(text ? shown : nullptr);
    ErrorStripBusy = false;
    return ALWAYS;
}

int UserError(const char *text) {
    return MessageBoxOf(MessageKind::User, "Error", text);
}

int ProgramError(const char *text) {
    return MessageBoxOf(MessageKind::Program, "Program Error", text);
}

int UserErrorFormat(const char *format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return UserError(text);
}

void FileError(const char *format, const char *name) {
    char text[512];
    snprintf(text, sizeof text, format, name);
    UserError(text);
    FileErrors++;
}

int AlertBox(const char *line1, const char *line2, const char *line3, const char *button1,
             const char *button2, const char *button3, AlertIcon icon) {
    return AlertBoxCaption(line1, line2, line3, button1, button2, button3, icon, 0, APPLICATION_TITLE);
}

int AlertBoxCaption(const char *line1, const char *line2, const char *line3, const char *button1,
                    const char *button2, const char *button3, AlertIcon icon, int /*unused*/,
                    const char *caption) {
    AlertRequest request = {{line1 ? line1 : DEFAULT_ALERT_LINE, line2, line3},
                            {button1 ? button1 : DEFAULT_ALERT_BUTTON, button2, button3},
                            caption};
    return ViewAlert(request, icon);
}
