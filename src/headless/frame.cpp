#include "shell/frame.h"
#include "headless/headless.h"

void FrameSetTitle(const char *title) {
    Headless.titles.emplace_back(title);
}

void FrameInvalidate() {
    ++Headless.frameInvalidations;
}

void EnableCommand(uint32_t id, bool on) {
    Headless.enabledCommands.emplace_back(id, on);
}

void CheckCommand(uint32_t id, bool on) {
    Headless.checkedCommands[id] = on;
}

void RedrawMenuBar() {}

void PostCommand(uint32_t id) {
    Headless.postedCommands.push_back(id);
}

void ShowWaitCursor() {
    ++Headless.waitCursors;
}

void FrameClose() {
    ++Headless.frameCloses;
}

void ReleaseWindows() {
    ++Headless.windowsReleased;
    Headless.panesExist = false;
}

void FrameToFront() {
    ++Headless.framesToFront;
}
