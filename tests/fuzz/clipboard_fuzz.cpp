// Damaged clipboard files, pasted into a small document: the store stays sound, what was pasted is one step
// of undo that brings back exactly what was there, and redo what came of it.
//
// The first byte chooses where it is pasted.
#include "config/settings.h"
#include "display/composition.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "headless/clipboard.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/support/fresh_store.h"
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// One file each for all runs of this process.
const std::string Base = fs::temp_directory_path() / ("kelvane-clipboard-fuzz-" + std::to_string(getpid()));
const std::string LogPath = Base + ".log", ClipPath = Base + ".clip";

void RemoveThem() {
    RemoveFile(LogPath.c_str());
    RemoveFile(ClipPath.c_str());
}

void Require(bool holds, const char *what) {
    if (holds) return;
    fprintf(stderr, "does not hold: %s\n", what);
    abort();
}

void Write(const std::string &path, const void *data, size_t size) {
    FileHandle file = OpenForWriting(path.c_str());
    Require(file != NO_FILE && WriteBytes(file, data, size) == static_cast<int64_t>(size), "temporary file");
    CloseFile(file);
}

// A node with a nested pattern, one with a reference to a named pattern, a bus, and a composite.
void MakeDocument() {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t inner = MakePattern("", {{1, 5}, {0, 5}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
    AddTransition(a, 0, 20);
    uint16_t b = MakePattern("B", {{0, 10}});
    AddReference(b, {.id = sub, .repeat = 2});
    AddReference(b, {.id = sub, .repeat = REPEAT_FOREVER});
    MakePattern("D[7:0]", {{17, 10}, {34, 20}});
    uint16_t c = MakePattern("C[1:0]");
    for (uint16_t id : {a, b}) AddReference(c, {.id = id}, PatternKind::Composite);
    ValidateDurations();
}

void Start() {
    InitReporting();
    InitWaveView();
    InitOverlay();
    InitComposition();
    InitDocument();
    InitHeadless();
    InitHeadlessClipboard();
    InitClipboard();
    InitShowSelection();
    InitEditDialog();
    Require(AllocWaveRows() && PatternStoreInit(), "memory");
    LoadStateTables();
    MakeDocument();
    Write(LogPath, "", 0);
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", LogPath.c_str());
}

void Stop() {
    LogCloseFile();
    EditLog.LogFileName[0] = '\0';
    ClipName[0] = '\0';
    PatternStoreFree();
    FreeWaveRows();
}

// Each place is of another kind.
void SelectPlace(uint8_t place) {
    const struct {
        const char *name;
        TimeVal from, to;
        int pick;
    } places[] = {{"A", 10, 10, 1},      {"A", 90, 90, 1},          {"A", 5, 5, 0},
                  {"A", 12, 12, 0},      {"A", 4, 80, 0},           {"A", 0, TIME_FOREVER, 0},
                  {"B", 12, 30, 0},      {"B", 0, TIME_FOREVER, 0}, {"$s", 1, 1, 0},
                  {"D[7:0]", 15, 15, 0}, {"D[7:0]", 30, 30, 1},     {"C[1:0]", 0, 0, 1}};
    const auto &chosen = places[place % std::size(places)];
    SelectRange(FindPattern(chosen.name), chosen.from, chosen.to, 1, chosen.pick);
}

void RequireSound() {
    std::string fault = HeapFault();
    Require(fault.empty(), fault.c_str());
    Require(FindReferenceCircle() == 0, "no circle of references");
    for (uint16_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        Require(pattern->nameLength != 0 || IsPatternReferenced(id), "no pattern is lost");
        for (uint32_t i = 0; i < pattern->itemCount; i++)
            Require(!pattern->item(i).isReference() || PatternInUse(pattern->item(i).patternId()),
                    "each reference leads to a pattern");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    InitHeadless();
    InitSettings();
    InitViewport();
    atexit(RemoveThem);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    Start();
    std::string before = StoreText();
    SelectPlace(data[0]);
    const Pattern *target = SelectedPattern();
    Require(target != nullptr, "something is selected");
    ClipWidth = target->width;
    bool overwritesNested = EditSelection.SelKind == SEL_PATTERN;
    Write(ClipPath, data + 1, size - 1);
    snprintf(ClipName, sizeof ClipName, "%s", ClipPath.c_str());
    int good = PasteAtSelection(0);
    LogEndAction();
    // A reference that is overwritten leaves the pattern that it alone used.
    if (!overwritesNested) RequireSound();
    std::string after = StoreText();
    if (!good) Require(after == before, "a paste that is refused changes nothing");
    int changed = EditLog.rPtr != 0;
    Require(LogUndo() == 1, "the paste can be undone");
    FinishReplay();
    Require(StoreText() == before, "undo brings back what was there");
    Require(EditLog.rPtr == 0, "it is one step");
    if (changed) {
        Require(LogRedo() == 1, "and redone");
        FinishReplay();
        Require(StoreText() == after, "redo brings back what came of it");
    }
    ValidateDurations();
    Stop();
    return 0;
}
