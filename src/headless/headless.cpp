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
