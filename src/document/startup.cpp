#include "document/startup.h"

#include "config/paths.h"
#include "config/settings.h"
#include "display/composition.h"
#include "display/drag_preview.h"
#include "display/mouse_place.h"
#include "display/overlay.h"
#include "display/renderer.h"
#include "display/row_metrics.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "document/all_nodes.h"
#include "document/document.h"
#include "document/held_document.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "platform/faults.h"
#include "shell/file_names.h"
#include "shell/frame.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <cstdio>

namespace {

bool IsBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

// An option counts by its first characters.
bool BeginsWithOption(const std::string &word, std::string_view option) {
    return word.size() >= option.size() &&
           EqualIgnoringCase(std::string_view(word).substr(0, option.size()), option);
}

void TakeDocumentPath(const std::string &word) {
    if (word.size() >= MAX_PATH_SIZE) {
        UserError("File name is too long");
        return;
    }
    snprintf(DocumentPath, MAX_PATH_SIZE, "%s", word.c_str());
}

// Everything to its start value.
void InitState() {
    InitSettings();
    InitPaths();
    InitReporting();
    InitWaveView();
    InitMouse();
    InitOverlay();
    InitDragPreview();
    InitComposition();
    InitRulerCursor();
    InitDocument();
}

} // namespace

std::vector<std::string> SplitCommandLine(const char *text) {
    std::vector<std::string> words = {""};
    for (;;) {
        while (*text != '\0' && IsBlank(*text)) ++text;
        if (*text == '\0') return words;
        std::string word;
        if (*text == '"') {
            for (++text; *text != '\0' && *text != '"' && *text != '\n'; ++text) word += *text;
        } else {
            for (; !IsBlank(*text); ++text) word += *text;
        }
        words.push_back(word);
        if (*text != '\0') ++text;
    }
}

void ParseCommandLine(const std::vector<std::string> &words) {
    for (size_t i = 1; i < words.size(); ++i) {
        const std::string &word = words[i];
        if (!word.starts_with('-')) {
            TakeDocumentPath(word);
        } else if (BeginsWithOption(word, "-cvn")) {
            Settings.HierLinkMode = true;
        } else if (BeginsWithOption(word, "-sy")) {
            // Three characters are enough for "-sync".
            Settings.SyncMode = true;
            Settings.ShowSyncActivity = true;
        }
    }
}

void PrepareApplication(const char *commandLine) {
    InitState();
    LogInit(LOG_SUFFIX);
    CallOnFault(LogWriteFinished);
    ReadDesignContext();
    LoadColors(ColorsIniPath);
    ParseCommandLine(SplitCommandLine(commandLine));
}

int RunAfterCreate() {
    LoadPreferences();
    BuildLevelColour();
    if (!AllocWaveRows()) return 1; // never: at the start there is memory for so little
    if (!TakeDocument(DocumentPath) || !LoadDocument(DocumentPath)) return 1;
    ShowNodesWithoutWaveList();
    InitWaveMetrics();
    LogReset(1);
    int held = LogHoldOpen(1);
    ValidateDurations();
    LogHoldOpen(held);
    OpenWindow();
    ZoomToRange(0, WaveView.SpanEnd);
    WaveView.CursorTime = DocumentStart;
    ReadSimulatorSettings();
    char name[MAX_PATH_SIZE];
    BaseName(DocumentPath, name);
    SetMainTitle(name);
    SetPrompt("Use Control-C to Stop Paint");
    PostCommand(Settings.StartupCommand);
    DisplayOpen = 1;
    MeasureNameWidths();
    UpdateTimeScrollBar();
    UpdateRowScrollBar();
    UpdateNameScrollBar();
    return 0;
}
