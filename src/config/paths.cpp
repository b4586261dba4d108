#include "config/paths.h"
#include "config/settings.h"
#include "integration/suite/design_context.h"
#include "platform/profile.h"
#include "shell/file_names.h"
#include "shell/reporting.h"
#include <cstdio>

char ConfigDirectory[MAX_PATH_SIZE];
char SettingsIniPath[MAX_PATH_SIZE];
char ColorsIniPath[MAX_PATH_SIZE];
char HelpDirectory[MAX_PATH_SIZE];
char SimulatorIniPath[MAX_PATH_SIZE];
char SimulatorName[32];
char EditorCommand[MAX_PATH_SIZE];

namespace {

// Between the levels of a name, where the simulator's file names none. An empty value names none.
constexpr char DEFAULT_SEPARATOR = '.';

// A path of the context to `out`, empty without a context.
void CopyContextPath(const char *key, char (&out)[MAX_PATH_SIZE]) {
    out[0] = '\0';
    DesignContext context = OGXEDAOpenCurrentContext();
    if (!context) return; // never: the stand-in for the suite's library always has one
    OGXEDACopyContextPath(context, key, out);
    OGXEDACloseContext(context);
}

// An ini file in the configuration directory. A path that does not fit stays empty, so that no other file is
// taken for it.
void FormIniPath(char (&out)[MAX_PATH_SIZE], const char *name) {
    int length = snprintf(out, sizeof out, "%s%c%s.ini", ConfigDirectory, PathSeparator, name);
    if (!ConfigDirectory[0] || length >= MAX_PATH_SIZE) out[0] = '\0';
}

} // namespace

void InitPaths() {
    for (char *path :
         {ConfigDirectory, SettingsIniPath, ColorsIniPath, HelpDirectory, SimulatorIniPath, SimulatorName})
        path[0] = '\0';
    snprintf(EditorCommand, sizeof EditorCommand, "notepad.exe");
}

void ReadDesignContext() {
    CopyContextPath("config", ConfigDirectory);
    FormIniPath(SettingsIniPath, APPLICATION_TITLE);
    FormIniPath(ColorsIniPath, "WavColor");
}

void ReadHelpDirectory() {
    CopyContextPath("bin", HelpDirectory);
}

void ReadSimulatorSettings() {
    if (!SimulatorIniPath[0]) return;
    char name[MAX_PATH_SIZE];
    BaseName(SimulatorIniPath, name);
    snprintf(SimulatorName, sizeof SimulatorName, "%.31s", name);
    char separator[20];
    ProfileString("SimControls", "HierChar", "", separator, sizeof separator, SimulatorIniPath);
    Settings.HierChar = separator[0] ? separator[0] : DEFAULT_SEPARATOR;
}
