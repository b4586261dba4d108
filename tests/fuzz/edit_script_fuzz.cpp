// Any text as a script of edits on a small document: whatever stands in it, the document is sound behind each
// line, and can be undone, redone and written at the end.
#include "config/settings.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "edit/clipboard.h"
#include "editlog/edit_log.h"
#include "headless/edit_script.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/mouse_gesture.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/support/fresh_store.h"
#include "unit/support/sound_store.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/writer.h"
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// A bit, a bus, a clocked wave, nests with scales and repeats, a composite, a reference, and endless waves,
// one of them in its midst.
constexpr const char *DOCUMENT = "%AUTOASSIGN = 0;\n%MASTERCLOCKMULT = 3;\n%ENDTIME = 300;\n"
                                 "$p = 0 5 1 5;\n$n = 1 3 (0 2 1 2 $p)*2 #2 0 4;\n"
                                 "w = 0 100 1 100 0 50;\nv = 1 20 $n #3 0 10;\n"
                                 "B[3:0] { Default } = 5 10 a 20 (1 5 (2 5 3 5)#4)*2 #3 1 7;\n"
                                 "k { A In Default NRZ 7 2 50 } = 1 3 0 2 $p 1 4;\n"
                                 "c = $p + (0 3 1 4) + $n;\ne = 0 5 $p ##;\nB[2:1];\n"
                                 "m = 0 30 $p #65535 1 20 $p ##;\n";

void Require(const std::string &fault) {
    if (fault.empty()) return;
    fprintf(stderr, "does not hold: %s\n", fault.c_str());
    abort();
}

void OpenDocument() {
    if (PatternTable) PatternStoreFree();
    FreeWaveRows();
    InitHeadless();
    InitHeadlessSurface();
    InitSettings();
    InitReporting();
    InitWaveView();
    InitDocument();
    InitViewport();
    if (!AllocWaveRows() || !PatternStoreInit()) abort();
    LoadStateTables();
    WriteErrorListing = false;
    EditLog.Recording = 0;
    TextReader reader(DOCUMENT);
    if (!CompileWdl(&reader, "document.wdl")) abort();
    for (const char *row : {"w", "v", "B[3:0]", "k", "c", "e", "$n", "B[2:1]", "m"}) ShowWaveByName(row);
    ExtendSpan(Settings.EndTime);
    ValidateDurations();
    LogInit(LOG_SUFFIX);
    BeginEditScript();
}

// A line that is not understood does nothing.
void Play(std::string_view line) {
    PlayScriptLine(line, {[](const std::string &) {}, [] {}});
    if (!MouseGesture.captured) Require(DocumentFault());
}

void UndoAndRedo() {
    while (EditLog.rPtr > 0) {
        int32_t position = EditLog.rPtr;
        Play("undo");
        // Where a record cannot be undone, as that of a wave made of bits, the way back ends.
        if (EditLog.rPtr >= position) return;
    }
    while (EditLog.rPtr < EditLog.rEofPtr) {
        int32_t position = EditLog.rPtr;
        Play("redo");
        if (EditLog.rPtr <= position) return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    OpenDocument();
    std::string_view script(reinterpret_cast<const char *>(data), size);
    while (!script.empty()) {
        size_t length = script.find('\n');
        Play(script.substr(0, length));
        script.remove_prefix(length == std::string_view::npos ? script.size() : length + 1);
    }
    EndEditScript();
    Require(DocumentFault());
    UndoAndRedo();
    std::string text;
    WriteWdlText(
        [](const char *piece, int length, void *context) {
            static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
        },
        &text);
    DropClipFile();
    LogDeleteFile();
    return 0;
}
