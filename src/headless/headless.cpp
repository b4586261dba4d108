#include "headless/headless.h"
#include "platform/files_native.h"

HeadlessState Headless;

namespace {

bool RecordProcess(const char *commandLine) {
    Headless.startedProcesses.emplace_back(commandLine);
    return true;
}

} // namespace

void InitHeadless() {
    Headless = HeadlessState();
    StartProcessHook = RecordProcess;
}

void ForgetHeadlessRecord() {
    Headless.userErrors.clear();
    Headless.programErrors.clear();
    Headless.captions.clear();
    Headless.alerts.clear();
    Headless.strips.clear();
    Headless.prompts.clear();
    Headless.titles.clear();
    Headless.postedCommands.clear();
    Headless.enabledCommands.clear();
    Headless.invalidated.clear();
    Headless.updated.clear();
}
