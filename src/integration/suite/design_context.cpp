#include "integration/suite/design_context.h"
#include "platform/files.h"
#include <cstdio>
#include <cstring>

namespace {

constexpr DesignContext STAND_IN = 1;
// Names the configuration directory, if it is set.
constexpr const char *CONFIG_VARIABLE = "KELVANE_CONFIG";

// Empty if there is no place for it, or it cannot be made.
void ConfigurationPath(char (&path)[MAX_PATH_SIZE]) {
    ReadEnvironment(CONFIG_VARIABLE, path, sizeof path);
    if (!path[0]) {
        char user[MAX_PATH_SIZE];
        UserConfigDirectory(user, sizeof user);
        if (!user[0] || snprintf(path, sizeof path, "%s%cKelvane", user, PathSeparator) >= MAX_PATH_SIZE)
            path[0] = '\0';
    }
    // The current directory changes while the program runs.
    char full[MAX_PATH_SIZE];
    bool made = FullPath(path, full) && MakeDirectory(full);
    snprintf(path, sizeof path, "%s", made ? full : "");
}

} // namespace

DesignContext OGXEDAOpenCurrentContext() {
    return STAND_IN;
}

void OGXEDACopyContextPath(DesignContext, const char *key, char *buffer) {
    char path[MAX_PATH_SIZE] = "";
    if (strcmp(key, "config") == 0) ConfigurationPath(path);
    if (strcmp(key, "bin") == 0) ProgramDirectory(path, sizeof path);
    snprintf(buffer, sizeof path, "%s", path);
}

void OGXEDACopyContextSymbol(DesignContext, const char *, char *buffer) {
    buffer[0] = '\0';
}

void OGXEDACloseContext(DesignContext) {}
