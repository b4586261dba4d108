#include "edit/browsers.h"

#include "config/settings.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "edit/clipboard.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "headless/edit_dialog.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/commands.h"
#include "shell/mode_gestures.h"
#include "shell/mouse_gesture.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include "unit/edit/drawn_picture.h"
#include "unit/support/fresh_store.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/writer.h"
#include <algorithm>
#include <iterator>

namespace {

using Names = std::vector<std::string>;

class Browsers : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitCommands();
        InitMouseGesture();
        InitModeGestures();
        WaveView.SpanEnd = 1000;
        WaveView.RowHeight = 20;
        InitHeadlessSurface();
        OpenWindow();
        DisplayOpen = 1;
        DispatchCommand(COMMAND_EDIT_MODE);
        Headless.strips.clear();
    }
    void TearDown() override {
        EXPECT_EQ(HeapFault(), "");
        FreshStore::TearDown();
    }

    static uint16_t idOf(const char *name) {
        const Pattern *pattern = FindPattern(name);
        return pattern ? pattern->id : 0;
    }
    static Names rows() {
        Names names;
        for (uint32_t row = 0; row < WaveView.RowCount; row++) names.emplace_back(RowPattern(row)->name());
        return names;
    }
    static std::string rowText() {
        std::string text;
        for (const std::string &name : rows()) text += name + " ";
        return text;
    }
    // All that undo and redo have to bring back.
    static std::string state() { return StoreText() + rowText(); }
    // What the menu has been told last.
    static bool enabled(uint32_t id) {
        bool on = false;
        for (auto [command, state] : Headless.enabledCommands)
            if (command == id) on = state;
        return on;
    }
    static std::string strip() { return Headless.strips.empty() ? "" : Headless.strips.back(); }
    static void show(const char *name) {
        int32_t recording = EditLog.Recording;
        EditLog.Recording = 0;
        ShowWaveByName(name);
        EditLog.Recording = recording;
    }
    // What was done since the state was `before` is one step of undo and redo.
    static void expectOneStep(const std::string &before) {
        std::string after = state();
        EXPECT_NE(after, before);
        EXPECT_TRUE(LogAtMark());
        DispatchCommand(COMMAND_UNDO);
        EXPECT_EQ(state(), before);
        EXPECT_EQ(EditLog.rPtr, 0);
        DispatchCommand(COMMAND_REDO);
        EXPECT_EQ(state(), after);
        EXPECT_EQ(EditLog.rPtr, EditLog.rEofPtr);
    }
    // Selects in the pattern's row as a click or a drag does.
    static void select(const char *name, TimeVal from, TimeVal to) {
        ValidateDurations();
        for (uint32_t row = 0; row < WaveView.RowCount; row++) {
            if (RowPattern(row) == FindPattern(name)) SelectRowHighlight(row, true);
        }
        SelectRange(FindPattern(name), from, to, 1, 1);
        AdoptSelection();
    }
};

// --- show -----------------------------------------------------------------------------------------

TEST_F(Browsers, ShowAppendsARowForEachNameInOneStep) {
    MakePattern("a");
    MakePattern("b");
    MakePattern("$c");
    show("a");
    std::string before = state();
    ShowPatterns(Names{"$c", "b"});
    EXPECT_EQ(rows(), (Names{"a", "$c", "b"}));
    EXPECT_EQ(WaveView.SelectRow, 2u);
    EXPECT_TRUE(WaveRows[2].highlighted());
    EXPECT_FALSE(WaveRows[1].highlighted());
    expectOneStep(before);
}

TEST_F(Browsers, WhatIsShownIsDrawnAndCanBeHidden) {
    MakePattern("a", {{1, 5}});
    WatchDrawing();
    ShowPatterns(Names{"a"});
    EXPECT_EQ(WhatWasDrawn(), "n0 - w0 +");
    EXPECT_TRUE(enabled(COMMAND_HIDE));
}

TEST_F(Browsers, ShowOfWhatIsShownSelectsItAndRecordsNothing) {
    MakePattern("a");
    MakePattern("b");
    show("a");
    show("b");
    ShowPatterns(Names{"A"});
    EXPECT_EQ(rows(), (Names{"a", "b"}));
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(Browsers, ShowPassesOverANameThatNoPatternBears) {
    MakePattern("a");
    ShowPatterns(Names{"x", "a", "y"});
    EXPECT_EQ(rows(), (Names{"a"}));
    ShowPatterns(Names{});
    EXPECT_EQ(rows(), (Names{"a"}));
}

TEST_F(Browsers, ShowTellsWhenTheTableOfRowsIsFull) {
    for (int i = 0; i < 257; i++) {
        std::string name = "n" + std::to_string(i);
        MakePattern(name.c_str());
        if (i < 255) show(name.c_str());
    }
    ShowPatterns(Names{"n255", "n256"});
    EXPECT_EQ(WaveView.RowCount, 256u);
    EXPECT_EQ(Headless.userErrors, (Names{"Too many waveforms displayed"}));
}

// --- remove ---------------------------------------------------------------------------------------

class Removal : public Browsers {
protected:
    void SetUp() override {
        Browsers::SetUp();
        used = MakePattern("$used", {{1, 5}});
        user = MakePattern("$user");
        AddReference(user, {used});
        // A composite and a reference that are in use.
        usedComposite = MakePattern("$comp");
        AddReference(usedComposite, {used}, PatternKind::Composite);
        AddReference(usedComposite, {used}, PatternKind::Composite);
        node = MakePattern("node", {{1, 5}});
        AddReference(node, {usedComposite});
    }
    uint16_t used, user, usedComposite, node;
};

TEST_F(Removal, RemoveIsOfferedForPatternsThatNoneUses) {
    EXPECT_FALSE(MayRemovePatterns(Names{}));
    EXPECT_TRUE(MayRemovePatterns(Names{"node"}));
    EXPECT_TRUE(MayRemovePatterns(Names{"node", "$user"}));
    EXPECT_FALSE(MayRemovePatterns(Names{"$used"}));
    EXPECT_FALSE(MayRemovePatterns(Names{"$used", "node"}));
    EXPECT_FALSE(MayRemovePatterns(Names{"node", "$used"}));
    EXPECT_TRUE(MayRemovePatterns(Names{"$none", "node"}));
    EXPECT_FALSE(MayRemovePatterns(Names{"$none", "$used"}));
}

TEST_F(Removal, OnlyAPlainPatternIsLookedAtInTheFirstPlace) {
    EXPECT_TRUE(MayRemovePatterns(Names{"$comp"}));
    EXPECT_TRUE(MayRemovePatterns(Names{"$comp", "node"}));
    EXPECT_FALSE(MayRemovePatterns(Names{"node", "$comp"}));
    EXPECT_FALSE(MayRemovePatterns(Names{"$comp", "$used"}));
}

TEST_F(Removal, ThePatternGoesWithItsRowsAndItemsInOneStep) {
    show("node");
    show("$user");
    SelectRowHighlight(0, true);
    int32_t recording = EditLog.Recording;
    EditLog.Recording = 0;
    DuplicateHighlightedRows();
    EditLog.Recording = recording;
    AddTransition(node, 3, 7);
    SetPatternParams(PatternFromId(node), 0, 2, 1, 9, 33, 1);
    SetPatternDelay(PatternFromId(node), 44);
    InitEditLog();
    std::string before = state();
    RemovePatterns(Names{"node"});
    EXPECT_EQ(FindPattern("node"), nullptr);
    EXPECT_FALSE(PatternInUse(node));
    EXPECT_TRUE(PatternInUse(usedComposite));
    EXPECT_EQ(rows(), (Names{"$user"}));
    EXPECT_EQ(strip(), "");
    expectOneStep(before);
}

TEST_F(Removal, SeveralGoInOneStepAndOneThatIsInUseStays) {
    std::string before = state();
    RemovePatterns(Names{"$comp", "$nothing", "$user"});
    EXPECT_EQ(strip(), "ERROR: Pattern $comp used in other patterns");
    EXPECT_TRUE(PatternInUse(usedComposite));
    EXPECT_FALSE(PatternInUse(user));
    expectOneStep(before);
}

TEST_F(Removal, APatternIsFreeOnceItsUserIsGone) {
    RemovePatterns(Names{"$user", "node", "$comp", "$used"});
    EXPECT_EQ(StoreText(), "");
    EXPECT_EQ(strip(), "");
}

TEST_F(Removal, ParametersLikeThoseOfADeletionComeBackAsTheyWere) {
    // The deletion of such a pattern has no record of its parameters.
    Settings.AutoClockAssign = true;
    SetPatternParams(PatternFromId(node), 0, 0, 0, 1, 100, 0);
    InitEditLog();
    std::string before = state();
    RemovePatterns(Names{"node"});
    expectOneStep(before);
}

TEST_F(Removal, TheSelectionGoesIfItLiesInThePattern) {
    show("node");
    show("$user");
    select("node", 0, 5);
    ASSERT_EQ(EditSelection.SelKind, SEL_PULSE);
    RemovePatterns(Names{"$user"});
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
    RemovePatterns(Names{"node"});
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_FALSE(WaveView.SelectActive);
}

TEST_F(Removal, TheSelectionGoesIfItWentThroughThePattern) {
    uint16_t top = MakePattern("$top", {{0, 5}});
    uint16_t nested = MakePattern("", {{0, 5}, {1, 5}});
    AddReference(top, {nested});
    show("$top");
    select("$top", 10, 15);
    ASSERT_EQ(EditSelection.SelKind, SEL_PULSE);
    ASSERT_EQ(DeepestFrame().patternId, nested);
    RemovePatterns(Names{"$top"});
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
}

TEST_F(Removal, AMergeThatWaitsInThePatternIsForgotten) {
    uint16_t id = MakePattern("w", {{1, 5}, {1, 5}});
    show("w");
    select("w", 0, 5);
    PendingMerge = id;
    RemovePatterns(Names{"w"});
    EXPECT_EQ(PendingMerge, 0);
    EXPECT_FALSE(PatternInUse(id));
}

// --- insert ---------------------------------------------------------------------------------------

class Insertion : public Browsers {
protected:
    void SetUp() override {
        Browsers::SetUp();
        piece = MakePattern("$piece", {{1, 3}, {0, 4}});
        wave = MakePattern("w", {{0, 100}, {1, 100}});
        ValidateDurations();
        show("w");
    }
    uint16_t piece, wave;
};

TEST_F(Insertion, ItIsOfferedForTheKindsThatTakeAPattern) {
    select("w", 0, 100);
    bool offered[] = {false, true, true, true, true, false, true, false};
    for (uint16_t kind = 0; kind < std::size(offered); kind++) {
        EditSelection.SelKind = kind;
        EXPECT_EQ(MayInsertPattern("$piece"), offered[kind]) << kind;
    }
}

TEST_F(Insertion, ItIsOfferedInEditModeAlone) {
    DispatchCommand(COMMAND_QUERY_MODE);
    select("w", 0, 100);
    EXPECT_FALSE(MayInsertPattern("$piece"));
    DispatchCommand(COMMAND_EDIT_MODE);
    select("w", 0, 100);
    EXPECT_TRUE(MayInsertPattern("$piece"));
}

TEST_F(Insertion, ItIsOfferedForNamedPatternsOfTheSameWidth) {
    MakePattern("$bus[1:0]", {{1, 3}});
    MakePattern("v", {{1, 3}});
    select("w", 0, 100);
    EXPECT_FALSE(MayInsertPattern("$bus[1:0]"));
    EXPECT_FALSE(MayInsertPattern("v"));
    EXPECT_FALSE(MayInsertPattern("$none"));
    EXPECT_FALSE(MayInsertPattern(""));
    MakePattern("", {{1, 3}});
    EXPECT_FALSE(MayInsertPattern(""));
    EXPECT_TRUE(MayInsertPattern("$PIECE"));
}

TEST_F(Insertion, TheSelectionGoesOnBehindThePiece) {
    std::string before = state();
    OpenEditDialog();
    select("w", 100, 100);
    ASSERT_EQ(EditSelection.SelKind, SEL_EDGE);
    WatchDrawing();
    InsertPattern("$piece");
    EXPECT_EQ(WhatWasDrawn(), "- w0 + - +");
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(Overlay.cursorX, 107);
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Edge in Pattern w");
    const Pattern *pattern = PatternFromId(wave);
    ASSERT_EQ(pattern->itemCount, 3);
    EXPECT_EQ(pattern->item(1).patternId(), piece);
    EXPECT_EQ(EditSelection.SelKind, SEL_EDGE);
    EXPECT_EQ(DeepestFrame().start, 107u);
    EXPECT_EQ(WaveView.CursorTime, 107u);
    EXPECT_EQ(WaveView.SelectStart, 107u);
    EXPECT_EQ(WaveView.SelectEnd, 107u);
    EXPECT_TRUE(WaveView.SelectActive);
    EXPECT_EQ(GestureState, GestureStateValue::Selected);
    EXPECT_STREQ(PromptText, "Time = 107 ps - Level = High");
    // Ready for the next one.
    InsertPattern("$piece");
    EXPECT_EQ(PatternFromId(wave)->itemCount, 4);
    EXPECT_EQ(WaveView.CursorTime, 114u);
    DispatchCommand(COMMAND_UNDO);
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(state(), before);
}

TEST_F(Insertion, APulseIsReplacedInOneStep) {
    std::string before = state();
    select("w", 0, 100);
    InsertPattern("$piece");
    EXPECT_EQ(PatternFromId(wave)->itemCount, 2);
    EXPECT_EQ(PatternDuration(PatternFromId(wave)), 107u);
    EXPECT_EQ(WaveView.CursorTime, 7u);
    expectOneStep(before);
}

TEST_F(Insertion, ThePieceCountsInTheUnitsOfItsPlace) {
    SetPatternParams(PatternFromId(wave), 0, 0, 1, 10, 50, 0);
    SetPatternDelay(PatternFromId(wave), 5);
    select("w", 1005, 1005);
    ASSERT_EQ(EditSelection.SelKind, SEL_EDGE);
    InsertPattern("$piece");
    EXPECT_EQ(WaveView.CursorTime, 1075u);
    EXPECT_EQ(DeepestFrame().start, 1075u);
}

TEST_F(Insertion, WhatHasNoEndIsHeldAtTheTotal) {
    AddReference(piece, {MakePattern("", {{0, 2}, {1, 2}}), 1, REPEAT_FOREVER});
    ValidateDurations();
    select("w", 0, 100);
    InsertPattern("$piece");
    EXPECT_EQ(PatternDuration(PatternFromId(wave)), TIME_FOREVER);
    EXPECT_EQ(WaveView.CursorTime, TIME_FOREVER);
    EXPECT_EQ(DeepestFrame().end, TIME_FOREVER);
}

TEST_F(Insertion, WithoutASelectedWaveNothingIsSelectedBehindIt) {
    select("w", 100, 100);
    WaveView.SelectRow = NO_ROW;
    InsertPattern("$piece");
    EXPECT_EQ(PatternFromId(wave)->itemCount, 3);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_EQ(GestureState, GestureStateValue::Idle);
}

TEST_F(Insertion, APatternThatIsGoneIsNotPutAnywhere) {
    std::string before = state();
    select("w", 100, 100);
    InsertPattern("$none");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(EditSelection.SelKind, SEL_EDGE);
}

TEST_F(Insertion, APatternIsNotPutIntoItself) {
    show("$piece");
    std::string before = state();
    select("$piece", 3, 3);
    ASSERT_EQ(EditSelection.SelKind, SEL_EDGE);
    InsertPattern("$piece");
    EXPECT_EQ(strip(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
}

// --- add ------------------------------------------------------------------------------------------

TEST_F(Browsers, ANameIsReadByItsKind) {
    constexpr int PATTERN = NEW_WAVE_PATTERN;
    EXPECT_EQ(NewWaveName("$$$foo", PATTERN), "$foo");
    EXPECT_EQ(NewWaveName("$$$foo", 0), "foo");
    EXPECT_EQ(NewWaveName("foo", PATTERN), "$foo");
    EXPECT_EQ(NewWaveName("A<3..0>", 0), "A[30]");
    EXPECT_EQ(NewWaveName("A<3:0>", 4), "A[3:0]");
    EXPECT_EQ(NewWaveName("A<3:0>", PATTERN), "$A<3:0>");
    EXPECT_EQ(NewWaveName(" a b ", 0), "ab");
    EXPECT_EQ(NewWaveName(")$a", 0), "a");
    EXPECT_EQ(NewWaveName("", 0), "");
    EXPECT_EQ(NewWaveName("", PATTERN), "");
    EXPECT_EQ(NewWaveName("$$", 0), "");
    for (const char *text : {"$", "$$", "$)", " ", "]"}) EXPECT_EQ(NewWaveName(text, PATTERN), "") << text;
    EXPECT_EQ(NewWaveName(" ) ", 0), "");
    EXPECT_EQ(NewWaveName(std::string(90, 'a'), 0), std::string(80, 'a'));
    EXPECT_EQ(NewWaveName(std::string(90, 'a'), PATTERN), "$" + std::string(80, 'a'));
    // A bracket that was left out comes on top.
    EXPECT_EQ(NewWaveName(std::string(78, 'a') + "[1", 0), std::string(78, 'a') + "[1]");
}

TEST_F(Browsers, AddMakesANodeAndShowsItInOneStep) {
    std::string before = state();
    WatchDrawing();
    EXPECT_TRUE(AddNewWave("A<3:0>", 2));
    EXPECT_EQ(WhatWasDrawn(), "n0 - w0 +");
    EXPECT_TRUE(enabled(COMMAND_HIDE));
    const Pattern *pattern = FindPattern("A[3:0]");
    ASSERT_NE(pattern, nullptr);
    EXPECT_EQ(pattern->pinType(), 2u);
    EXPECT_EQ(pattern->width, 4);
    EXPECT_TRUE(pattern->hasProperties());
    EXPECT_EQ(rows(), (Names{"A[3:0]"}));
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_TRUE(LogAtMark());
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(state(), before);
}

TEST_F(Browsers, APinTypeThatAddGivesIsUndoneAndRedone) {
    std::string before = state();
    EXPECT_TRUE(AddNewWave("Q", 1));
    expectOneStep(before);
    EXPECT_EQ(FindPattern("Q")->pinType(), 1u);
    InitEditLog();
    MakePattern("D[1:0]", {{1, 5}});
    before = state();
    EXPECT_TRUE(AddNewWave("D[1]", 4));
    expectOneStep(before);
    EXPECT_EQ(FindPattern("D[1]")->pinType(), 4u);
}

TEST_F(Browsers, AddOnANodeThatIsThereIsAChangeThatCanBeUndone) {
    MakePattern("B", {{1, 5}});
    show("B");
    ValidateDurations();
    std::string before = state();
    EXPECT_TRUE(AddNewWave("B", 2));
    EXPECT_NE(EditLog.rPtr, 0);
    EXPECT_FALSE(DurationForgotten);
    expectOneStep(before);
    EXPECT_EQ(FindPattern("B")->pinType(), 2u);
}

TEST_F(Browsers, AddMakesAPatternOfNoPinType) {
    std::string before = state();
    EXPECT_TRUE(AddNewWave("$p", NEW_WAVE_PATTERN));
    const Pattern *pattern = FindPattern("$p");
    ASSERT_NE(pattern, nullptr);
    EXPECT_FALSE(pattern->hasProperties());
    EXPECT_EQ(pattern->pinType(), 0u);
    EXPECT_EQ(rows(), (Names{"$p"}));
    expectOneStep(before);
}

TEST_F(Browsers, AddOfWhatExistsShowsItAndTakesItsNewKind) {
    uint16_t id = MakePattern("a", {{1, 5}});
    EXPECT_TRUE(AddNewWave("A", 3));
    EXPECT_EQ(rows(), (Names{"a"}));
    EXPECT_EQ(PatternFromId(id)->pinType(), 3u);
    EXPECT_TRUE(AddNewWave("a", 0));
    EXPECT_EQ(PatternFromId(id)->pinType(), 3u);
    EXPECT_EQ(WaveView.RowCount, 1u);
    uint16_t sub = MakePattern("$s", {{1, 5}});
    EXPECT_TRUE(AddNewWave("s", NEW_WAVE_PATTERN));
    EXPECT_EQ(PatternFromId(sub)->pinType(), 0u);
}

TEST_F(Browsers, AddMakesABusOfBitsThatExist) {
    MakePattern("d[0]", {{1, 5}});
    EXPECT_TRUE(AddNewWave("d[1:0]", 0));
    EXPECT_EQ(FindPattern("d[1:0]")->kind(), PatternKind::Reference);
    EXPECT_NE(FindPattern("d[1]"), nullptr);
    EXPECT_EQ(rows(), (Names{"d[1:0]"}));
    EXPECT_FALSE(WaveRows[0].isWave());
}

TEST_F(Browsers, AddOfNoNameDoesNothing) {
    for (const char *text : {"", "$", "$$", " ", ")"}) EXPECT_FALSE(AddNewWave(text, 0)) << text;
    for (const char *text : {"", "$", "$$", "$ ", ")"})
        EXPECT_FALSE(AddNewWave(text, NEW_WAVE_PATTERN)) << text;
    EXPECT_EQ(state(), "");
    EXPECT_EQ(strip(), "");
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(Browsers, AddOfABusThatIsTooWideTellsSo) {
    EXPECT_FALSE(AddNewWave("A[32:0]", 1));
    EXPECT_EQ(strip(), "ERROR: Bus width exceeds 32 bits");
    EXPECT_EQ(state(), "");
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_TRUE(AddNewWave("A[31:0]", 1));
}

TEST_F(Browsers, TheListsAreToldOfWhatIsAddedAndRemoved) {
    static std::vector<std::string> told;
    told.clear();
    PatternListHook = [](const char *name) { told.emplace_back(name); };
    AddNewWave("x", 1);
    AddNewWave("x", NEW_WAVE_PATTERN);
    const std::string names[] = {"x", "$x"};
    RemovePatterns(names);
    PatternListHook = nullptr;
    EXPECT_EQ(told, (std::vector<std::string>{"x", "$x", "x", "$x"}));
}

TEST_F(Browsers, AddRefusesANameThatEndsInAFileBeforeItsEnd) {
    EXPECT_FALSE(AddNewWave("a;b", 0));
    EXPECT_EQ(strip(), "ERROR: The name a;b cannot be saved in a file");
    EXPECT_FALSE(AddNewWave("p;", NEW_WAVE_PATTERN));
    EXPECT_EQ(strip(), "ERROR: The name $p; cannot be saved in a file");
    EXPECT_EQ(state(), "");
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(Browsers, AddRefusesANameWhoseSeparatorCannotBeRead) {
    for (char separator : {' ', '\xE4'}) {
        Settings.HierChar = separator;
        EXPECT_FALSE(AddNewWave("a-b", NEW_WAVE_PATTERN));
        EXPECT_EQ(strip(), std::string("ERROR: The name $a") + separator + "b cannot be saved in a file");
    }
    EXPECT_EQ(state(), "");
}

// Whatever name is taken, the file that is saved has it.
class NamesInFiles : public Browsers, public testing::WithParamInterface<char> {
protected:
    ScratchDirectory scratch;

    void SetUp() override {
        Browsers::SetUp();
        WriteErrorListing = false;
    }
    void TearDown() override {
        WriteErrorListing = true;
        Browsers::TearDown();
    }
    // Saves the document and reads it back.
    int readBack() {
        std::string text;
        WriteWdlText(
            [](const char *piece, int length, void *context) {
                static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
            },
            &text);
        TearDown();
        SetUp();
        Settings.HierChar = GetParam();
        EditLog.Recording = 0;
        std::string path = scratch.write("a.wdl", text);
        TextReader file(path.c_str());
        path.resize(MAX_PATH_SIZE);
        return CompileWdl(&file, path.data());
    }
};

TEST_P(NamesInFiles, HoldEveryNameThatIsTaken) {
    int taken = 0;
    for (int kind : {0, NEW_WAVE_PATTERN}) {
        for (int c = 1; c < 256; c++) {
            for (const char *form : {"?x", "x?", "x?y", "?", "x[1?0]", "??x", "x(?)y", "_?", "'?x"}) {
                std::string name = form;
                std::replace(name.begin(), name.end(), '?', static_cast<char>(c));
                Settings.HierChar = GetParam();
                if (!AddNewWave(name, kind)) {
                    EXPECT_EQ(StoreText(), "") << name;
                    continue;
                }
                taken++;
                std::string stored = RowPattern(0)->name();
                // A sub-pattern is looked for where it is used.
                std::string user;
                if (kind == NEW_WAVE_PATTERN) {
                    uint16_t id = MakePattern("$USER", {}, 1);
                    AddReference(id, {idOf(stored.c_str())});
                }
                ASSERT_EQ(readBack(), 1) << name << " as " << stored;
                ASSERT_NE(FindPattern(stored.c_str()), nullptr) << name << " as " << stored;
                EXPECT_EQ(FindPattern(stored.c_str())->name(), stored);
                if (kind == NEW_WAVE_PATTERN) {
                    ASSERT_EQ(FindPattern("$USER")->itemCount, 1) << stored;
                    EXPECT_EQ(FindPattern("$USER")->item(0).patternId(), idOf(stored.c_str()));
                }
                TearDown();
                SetUp();
            }
        }
    }
    EXPECT_GT(taken, 1000);
}

INSTANTIATE_TEST_SUITE_P(Separators, NamesInFiles, testing::Values('.', '(', '/', '_'));

} // namespace
