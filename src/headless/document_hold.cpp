#include "shell/document_hold.h"
#include "headless/headless.h"
#include "platform/files.h"
#include <algorithm>

namespace {

std::string FullName(const char *path) {
    char full[MAX_PATH_SIZE];
    FullPath(path, full);
    return full;
}

} // namespace

bool HoldFile(const char *path) {
    std::string full = FullName(path);
    const auto &others = Headless.heldElsewhere;
    if (std::find(others.begin(), others.end(), full) != others.end()) return false;
    Headless.heldFile = full;
    return true;
}

void ShowHolderOf(const char *path) {
    Headless.holdersShown.push_back(FullName(path));
}
