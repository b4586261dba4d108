#include "load.h"

#include "config/paths.h"
#include "config/settings.h"
#include "display/renderer.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/lexer.h"
#include <cstdio>
#include <cstring>

namespace {

// The file being loaded, as it was given.
const char *loadedFile = "";

void PrintSyntaxError(int line, int column, const char *message) {
    if (strcmp(message, NOT_A_TEXT) == 0) {
        PrintError(loadedFile, "not a text file");
    } else {
        fprintf(stderr, "%s:%d:%d: %s\n", loadedFile, line, column, message);
    }
}

void PrintWarning(int line, int column, const char *message) {
    fprintf(stderr, "%s:%d:%d: warning: %s\n", loadedFile, line, column, message);
}

void FreeDocument() {
    if (PatternTable) PatternStoreFree();
    if (WaveRows) FreeWaveRows();
}

// The engine as it stands at the start of the editor.
void InitEngine(const CommonOptions &options) {
    InitHeadless();
    InitHeadlessSurface();
    InitSettings();
    InitColors();
    InitPaths();
    InitReporting();
    InitWaveView();
    InitDocument();
    InitViewport();
    BuildLevelColour();
    Headless.printMessages = true;
    Settings.BusRadix = options.radix;
    EditLog.Recording = 0;
    WriteErrorListing = false;
    SyntaxErrorHook = PrintSyntaxError;
}

bool UseSimulator(const std::string &path) {
    if (path.empty()) return true;
    TextReader file(path.c_str());
    std::string why;
    if (file.isOpen() && ReadsToItsEnd(path.c_str(), why) && FullPath(path.c_str(), SimulatorIniPath)) {
        ReadSimulatorSettings();
        return true;
    }
    PrintError(path, "cannot be read");
    return false;
}

int Compile(TextReader &file, const CommonOptions &options) {
    char path[MAX_PATH_SIZE];
    memcpy(path, options.file.c_str(), options.file.size() + 1);
    ResetDocumentSettings();
    WdlVersion = 4;
    FullSpanEnd = Settings.DefEndTime;
    LoadStateTables();
    if (!CompileWdl(&file, path)) {
        if (!file.failed()) return EXIT_BAD_DOCUMENT;
        PrintError(options.file, "cannot be read: " + file.failure());
        return EXIT_BAD_USAGE;
    }
    UpdateFullDuration();
    std::string why = ReadWaveList(path);
    if (!why.empty()) {
        PrintError(path, "cannot be read: " + why);
        return EXIT_BAD_USAGE;
    }
    ExtendSpan(Settings.EndTime);
    ValidateDurations();
    return EXIT_DONE;
}

} // namespace

int LoadDocumentFile(const CommonOptions &options, Warnings warnings) {
    FreeDocument();
    InitEngine(options);
    WarningHook = warnings == Warnings::Printed ? PrintWarning : nullptr;
    loadedFile = options.file.c_str();
    if (options.file.size() >= MAX_PATH_SIZE) {
        PrintError(options.file, "the path is too long");
        return EXIT_BAD_USAGE;
    }
    TextReader file(loadedFile);
    if (!file.isOpen()) {
        PrintError(options.file, "cannot be read");
        return EXIT_BAD_USAGE;
    }
    if (!UseSimulator(options.simulator)) return EXIT_BAD_USAGE;
    if (!AllocWaveRows() || !PatternStoreInit()) {
        PrintError(options.file, "out of memory");
        return EXIT_BAD_USAGE;
    }
    return Compile(file, options);
}

Pattern *FindNamedPattern(const CommonOptions &options, const std::string &name) {
    Pattern *pattern = FindPattern(name.c_str());
    if (!pattern) PrintError(options.file, "no pattern \"" + name + "\"");
    return pattern;
}
