#include "shell/commands.h"

#include "config/settings.h"
#include "display/panes.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "headless/dialogs.h"
#include "headless/edit_dialog.h"
#include "headless/headless.h"
#include "shell/mode_gestures.h"
#include "shell/mouse_gesture.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <algorithm>
#include <filesystem>
#include <map>

namespace {

class Commands : public FreshStore {
protected:
    void SetUp() override {
        before = std::filesystem::current_path();
        FreshStore::SetUp();
        InitHeadlessDialogs();
        InitCommands();
        InitMouseGesture();
        InitModeGestures();
        Headless.panesExist = true;
        DisplayOpen = 1;
    }
    void TearDown() override {
        // An opened file makes its directory the current one.
        std::filesystem::current_path(before);
        FreshStore::TearDown();
    }
    std::filesystem::path before;

    // A row per pattern; the last one is selected alone.
    static void ShowRows(const std::vector<const char *> &names) {
        for (const char *name : names) ShowWaveByName(name);
        SelectRowOnly(WaveView.RowCount - 1, true);
    }
    static std::map<uint32_t, bool> MenuState() {
        Headless.enabledCommands.clear();
        UpdateCommands();
        return {Headless.enabledCommands.begin(), Headless.enabledCommands.end()};
    }
    static size_t Repaints() {
        return static_cast<size_t>(
            std::count(Headless.invalidated.begin(), Headless.invalidated.end(), Pane::Wave));
    }
};

} // namespace

TEST_F(Commands, StartWithNoCommandAndTheQueryCursor) {
    EXPECT_EQ(CommandState.CurrentCommand, 0);
    EXPECT_EQ(CommandState.CommandPhase, PHASE_IDLE);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY);
}

TEST_F(Commands, EditModeHoldsOnAfterATransientCommand) {
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    DispatchCommand(COMMAND_HIDE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
}

TEST_F(Commands, QueryModeFollowsATransientCommandFromNowhere) {
    DispatchCommand(COMMAND_HIDE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY);
}

TEST_F(Commands, QueryAndEditModeReplaceEachOther) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY);
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
}

TEST_F(Commands, CtrlDOnlyEndsWhatRuns) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_CANCEL);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(Commands, EveryCommandRemovesTheErrorStripFirst) {
    for (int id : {-2, 0, COMMAND_REDRAW, COMMAND_HIDE, COMMAND_ABOUT, COMMAND_QUERY_MODE}) {
        Headless.strips.clear();
        DispatchCommand(id);
        ASSERT_FALSE(Headless.strips.empty()) << id;
        EXPECT_EQ(Headless.strips.front(), "") << id;
    }
}

TEST_F(Commands, WithoutACommandInForceThePromptAsksForOne) {
    DispatchCommand(-2);
    EXPECT_STREQ(PromptText, "Select A Command.  F1 for Help");
    DispatchCommand(COMMAND_ABOUT);
    EXPECT_STREQ(PromptText, "Select A Command.  F1 for Help");
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_STRNE(PromptText, "Select A Command.  F1 for Help");
}

TEST_F(Commands, ClosingEndsEditMode) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(0);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
}

// --- which mode is in force -----------------------------------------------------------------------

TEST_F(Commands, TheMenuMarksTheModeInForceAlsoBeneathAViewCommand) {
    auto marks = [] {
        UpdateCommands();
        return std::pair(Headless.checkedCommands[COMMAND_QUERY_MODE],
                         Headless.checkedCommands[COMMAND_EDIT_MODE]);
    };
    EXPECT_EQ(marks(), std::pair(false, false)) << "before the first command";
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_EQ(marks(), std::pair(false, true));
    DispatchCommand(COMMAND_PAN);
    EXPECT_EQ(marks(), std::pair(false, true));
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_EQ(marks(), std::pair(true, false));
    DispatchCommand(COMMAND_ZOOM_IN);
    EXPECT_EQ(marks(), std::pair(true, false));
}

TEST_F(Commands, ACancelledCloseBringsBackTheModeInForce) {
    EditLog.rPtr = 12;
    for (int mode : {COMMAND_EDIT_MODE, COMMAND_QUERY_MODE}) {
        DispatchCommand(mode);
        Headless.alertAnswers = {3};
        EXPECT_FALSE(MayClose());
        EXPECT_EQ(CommandState.CurrentCommand, mode);
        EXPECT_TRUE(Headless.checkedCommands[static_cast<uint32_t>(mode)]);
    }
    EditLog.rPtr = 0;
}

TEST_F(Commands, ACancelledCloseEndsAViewCommandAndKeepsTheModeBeneath) {
    EditLog.rPtr = 12;
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_PAN);
    Headless.alertAnswers = {3};
    EXPECT_FALSE(MayClose());
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_FALSE(CommandState.ViewCommandSaved);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    EditLog.rPtr = 0;
}

TEST_F(Commands, AnUnchangedDocumentMayCloseWithoutAQuestion) {
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_TRUE(MayClose());
    EXPECT_TRUE(Headless.alerts.empty());
}

// --- the floating dialog that the user has closed -------------------------------------------------

TEST_F(Commands, OnlyTheCommandOfEditModeOpensTheFloatingDialog) {
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_TRUE(HeadlessEditDialog.open);
    HeadlessCloseEditDialog();
    for (int id : {COMMAND_UNDO, COMMAND_REDO, COMMAND_PASTE, COMMAND_HIDE, COMMAND_REDRAW, COMMAND_NEW}) {
        DispatchCommand(id);
        EXPECT_FALSE(HeadlessEditDialog.open) << id;
        EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE) << id;
    }
    MayClose();
    EXPECT_FALSE(HeadlessEditDialog.open);
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_TRUE(HeadlessEditDialog.open) << "in Edit mode, too";
    HeadlessCloseEditDialog();
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_FALSE(HeadlessEditDialog.open);
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_TRUE(HeadlessEditDialog.open);
}

// --- notices --------------------------------------------------------------------------------------

TEST_F(Commands, ANoticeShowsWhenTheCommandIsOverAndGivesWayToTheNextPrompt) {
    AddNotice("Three came back");
    AddNotice("All are shown");
    EXPECT_STRNE(PromptText, "Three came back.  All are shown.");
    DispatchCommand(COMMAND_EDIT_MODE);
    EXPECT_STREQ(PromptText, "Three came back.  All are shown.");
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_STREQ(PromptText, "Time = 0 ps ");
}

TEST_F(Commands, TheMenuMarksWhetherTheKeysGoToTheWaves) {
    UpdateCommands();
    EXPECT_FALSE(Headless.checkedCommands[COMMAND_KEYS_TO_WAVES]);
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_KEYS_TO_WAVES);
    EXPECT_TRUE(Settings.KeysToWaves);
    EXPECT_TRUE(Headless.checkedCommands[COMMAND_KEYS_TO_WAVES]);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_KEYS_TO_WAVES);
    EXPECT_FALSE(Settings.KeysToWaves);
    EXPECT_FALSE(Headless.checkedCommands[COMMAND_KEYS_TO_WAVES]);
}

TEST_F(Commands, ANewCommandClearsThePromptSubstitute) {
    snprintf(PromptSubstitute, PROMPT_SIZE, "CLK");
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_STREQ(PromptSubstitute, "");
}

TEST_F(Commands, ExitAsksTheMainWindowToClose) {
    DispatchCommand(COMMAND_EXIT);
    EXPECT_EQ(Headless.frameCloses, 1);
}

TEST_F(Commands, AboutShowsTheBoxAndKeepsTheMode) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ABOUT);
    EXPECT_EQ(HeadlessDialogs.aboutBoxes, 1);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
}

TEST_F(Commands, CommandsThatAreNotBuiltDoNothing) {
    DispatchCommand(COMMAND_EDIT_MODE);
    for (int id : {COMMAND_UNDO, COMMAND_PASTE, COMMAND_PRINT, COMMAND_HELP, COMMAND_HELP_CONTENTS}) {
        DispatchCommand(id);
        EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE) << id;
    }
    DispatchCommand(1280);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
}

// --- the document's commands ----------------------------------------------------------------------

TEST_F(Commands, OpenAsksForAFileAndReturnsToTheModeBefore) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_OPEN);
    ASSERT_EQ(Headless.fileQuestions.size(), 1u);
    EXPECT_EQ(Headless.fileQuestions[0].label, "Stimulus Files");
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
}

TEST_F(Commands, NewMakesAnUntitledDocumentWithoutAQuestion) {
    MakePattern("CLK", {{0, 10}});
    DispatchCommand(COMMAND_NEW);
    EXPECT_TRUE(Headless.fileQuestions.empty());
    EXPECT_EQ(HighestPatternId, 0);
    ASSERT_FALSE(Headless.titles.empty());
    EXPECT_EQ(Headless.titles.back(), "Kelvane - <untitled>");
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
}

TEST_F(Commands, SaveWritesTheDocumentUnderItsName) {
    ScratchDirectory directory;
    snprintf(DocumentPath, sizeof DocumentPath, "%s", directory.file("plain.wdl").c_str());
    DispatchCommand(COMMAND_SAVE);
    EXPECT_TRUE(Headless.fileQuestions.empty());
    EXPECT_TRUE(CanAccessFile(directory.file("plain.wdl").c_str(), FileAccess::Read));
    EXPECT_EQ(Headless.strips.back(), "File successfully saved");
}

TEST_F(Commands, SaveAsAsksForTheName) {
    ScratchDirectory directory;
    snprintf(DocumentPath, sizeof DocumentPath, "%s", directory.file("plain.wdl").c_str());
    Headless.fileAnswers.push_back(directory.file("other.wdl"));
    DispatchCommand(COMMAND_SAVE_AS);
    ASSERT_EQ(Headless.fileQuestions.size(), 1u);
    EXPECT_EQ(Headless.fileQuestions[0].path, "plain.wdl");
    EXPECT_TRUE(CanAccessFile(directory.file("other.wdl").c_str(), FileAccess::Read));
    EXPECT_FALSE(CanAccessFile(directory.file("plain.wdl").c_str(), FileAccess::Read));
}

// --- rows -----------------------------------------------------------------------------------------

TEST_F(Commands, HideAndDuplicateActOnTheHighlightedRows) {
    MakePattern("A", {{0, 10}});
    MakePattern("B", {{1, 10}});
    ShowRows({"A", "B"});
    DispatchCommand(COMMAND_DUPLICATE);
    EXPECT_EQ(WaveView.RowCount, 3u);
    DispatchCommand(COMMAND_HIDE);
    EXPECT_EQ(WaveView.RowCount, 2u);
}

TEST_F(Commands, ExpandBusShowsItsBits) {
    MakePattern("D[1:0]", {{2, 10}});
    ShowRows({"D[1:0]"});
    DispatchCommand(COMMAND_EXPAND_BUS);
    ASSERT_EQ(WaveView.RowCount, 3u);
    EXPECT_STREQ(PatternFromId(WaveRows[1].PatternId)->name(), "D[1]");
}

// --- what may be chosen ---------------------------------------------------------------------------

TEST_F(Commands, OnlyWhatIsBuiltIsEnabledWithoutASelection) {
    std::vector<uint32_t> enabled;
    for (auto [id, on] : MenuState())
        if (on) enabled.push_back(id);
    EXPECT_EQ(
        enabled,
        (std::vector<uint32_t>{
            COMMAND_REDRAW,     COMMAND_ZOOM_FIT,      COMMAND_ZOOM_IN_STEP,  COMMAND_ZOOM_OUT_STEP,
            COMMAND_ZOOM_IN,    COMMAND_ZOOM_OUT,      COMMAND_PAN,           COMMAND_FULL_FIT,
            COMMAND_FULL_SCALE, COMMAND_UNDO,          COMMAND_REDO,          COMMAND_SHOW_WAVEFORM_DATA,
            COMMAND_PLACE_MARK, COMMAND_TO_TIME,       COMMAND_TO_START,      COMMAND_TO_END,
            COMMAND_TICK_LEFT,  COMMAND_TICK_RIGHT,    COMMAND_TEN_LEFT,      COMMAND_TEN_RIGHT,
            COMMAND_ROW_UP,     COMMAND_ROW_DOWN,      COMMAND_KEYS_TO_WAVES, COMMAND_NEW,
            COMMAND_OPEN,       COMMAND_SAVE,          COMMAND_SAVE_AS,       COMMAND_EXIT,
            COMMAND_HELP,       COMMAND_HELP_CONTENTS, COMMAND_HELP_SEARCH,   COMMAND_HELP_ON_HELP,
            COMMAND_ABOUT,      COMMAND_QUERY_MODE,    COMMAND_EDIT_MODE}));
}

TEST_F(Commands, HideAndDuplicateNeedASelectedRow) {
    MakePattern("A", {{0, 10}});
    ShowRows({"A"});
    EXPECT_TRUE(MenuState()[COMMAND_HIDE]);
    EXPECT_TRUE(MenuState()[COMMAND_DUPLICATE]);
    WaveView.SelectRow = NO_ROW;
    EXPECT_FALSE(MenuState()[COMMAND_HIDE]);
    EXPECT_FALSE(MenuState()[COMMAND_DUPLICATE]);
}

TEST_F(Commands, TheNextChangeNeedsASelectedRow) {
    MakePattern("A", {{0, 10}});
    ShowRows({"A"});
    EXPECT_TRUE(MenuState()[COMMAND_NEXT_CHANGE]);
    WaveView.SelectRow = WaveView.RowCount;
    EXPECT_FALSE(MenuState()[COMMAND_NEXT_CHANGE]);
}

TEST_F(Commands, TheMarkCanBeReachedAndHiddenWhileItIsPlaced) {
    for (int id : {COMMAND_HIDE_MARK, COMMAND_TO_MARKER}) EXPECT_FALSE(MenuState()[id]) << id;
    DispatchCommand(COMMAND_PLACE_MARK);
    for (int id : {COMMAND_HIDE_MARK, COMMAND_TO_MARKER}) EXPECT_TRUE(MenuState()[id]) << id;
    DispatchCommand(COMMAND_HIDE_MARK);
    for (int id : {COMMAND_HIDE_MARK, COMMAND_TO_MARKER}) EXPECT_FALSE(MenuState()[id]) << id;
}

TEST_F(Commands, ClosingADocumentTakesItsMarkAway) {
    DispatchCommand(COMMAND_PLACE_MARK);
    DispatchCommand(COMMAND_NEW);
    for (int id : {COMMAND_HIDE_MARK, COMMAND_TO_MARKER}) EXPECT_FALSE(MenuState()[id]) << id;
}

TEST_F(Commands, ExpandBusNeedsABusOfItsOwn) {
    MakePattern("A", {{0, 10}});
    uint16_t bus = MakePattern("D[1:0]", {{2, 10}});
    ShowRows({"D[1:0]", "A"});
    EXPECT_FALSE(MenuState()[COMMAND_EXPAND_BUS]);
    WaveView.SelectRow = 0;
    EXPECT_TRUE(MenuState()[COMMAND_EXPAND_BUS]);
    PatternFromId(bus)->setKind(PatternKind::Reference);
    EXPECT_FALSE(MenuState()[COMMAND_EXPAND_BUS]);
}

TEST_F(Commands, ACommandUpdatesTheMenu) {
    MakePattern("A", {{0, 10}});
    ShowRows({"A"});
    DispatchCommand(COMMAND_HIDE);
    std::map<uint32_t, bool> last(Headless.enabledCommands.begin(), Headless.enabledCommands.end());
    for (auto [id, on] : Headless.enabledCommands) last[id] = on;
    EXPECT_FALSE(last[COMMAND_HIDE]);
    EXPECT_TRUE(last[COMMAND_SAVE]);
}

// --- view commands interrupt others ---------------------------------------------------------------

TEST_F(Commands, AViewCommandInterruptsTheModeAndGivesItBack) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ZOOM_IN);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
    EXPECT_TRUE(CommandState.ViewCommandSaved);
    DispatchCommand(COMMAND_PAN);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_PAN);
    DispatchCommand(COMMAND_DELETE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_FALSE(CommandState.ViewCommandSaved);
}

TEST_F(Commands, ARedrawEndsAViewCommand) {
    DispatchCommand(COMMAND_EDIT_MODE);
    WaveView.ZoomPhase = 0;
    DispatchCommand(COMMAND_FULL_FIT);
    WaveView.ZoomPhase = 1;
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_EQ(WaveView.ZoomPhase, 0);
}

TEST_F(Commands, AChangeOfModeEndsAViewCommandFirst) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ZOOM_OUT);
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_FALSE(CommandState.ViewCommandSaved);
}

TEST_F(Commands, AViewCommandShowsItsPromptAndTheZoomCursorAtOnce) {
    WaveView.SpanEnd = 100000;
    DispatchCommand(COMMAND_EDIT_MODE);
    const std::map<int, std::string> prompts = {
        {COMMAND_ZOOM_IN, "Zoom In - Pick Center Point or Corner of Zoom Window"},
        {COMMAND_ZOOM_OUT, "Zoom Out - Pick Center Point"},
        {COMMAND_PAN, "Pan - Pick Center Point"},
        {COMMAND_FULL_FIT, "Full Fit - Click for Full Zoom"},
        {COMMAND_FULL_SCALE, "Full Zoom In - Pick Center Point"},
    };
    for (auto &[id, prompt] : prompts) {
        DispatchCommand(id);
        EXPECT_EQ(PromptText, prompt);
        EXPECT_EQ(CommandState.CursorMode, CURSOR_ZOOM);
    }
}

TEST_F(Commands, AViewCommandKeepsTheSelectedRowThroughItsEnd) {
    MakePattern("A", {{0, 10}});
    DispatchCommand(COMMAND_EDIT_MODE);
    ShowRows({"A"});
    DispatchCommand(COMMAND_ZOOM_IN);
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_TRUE(WaveRows[0].highlighted());
}

TEST_F(Commands, AnInterruptedCommandGetsItsPromptSubstituteBack) {
    DispatchCommand(COMMAND_EDIT_MODE);
    snprintf(PromptSubstitute, PROMPT_SIZE, "CLK");
    DispatchCommand(COMMAND_ZOOM_IN);
    snprintf(PromptSubstitute, PROMPT_SIZE, "other");
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_STREQ(PromptSubstitute, "CLK");
}

TEST_F(Commands, AChangeOfModeTakesTheSelectionAway) {
    MakePattern("A", {{0, 10}});
    ShowRows({"A"});
    WaveView.SelectActive = true;
    DispatchCommand(COMMAND_QUERY_MODE);
    EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
    EXPECT_FALSE(WaveRows[0].highlighted());
    EXPECT_FALSE(WaveView.SelectActive);
}

TEST_F(Commands, TheScreenCommandsZoomAtOnce) {
    WaveView.SpanEnd = 4000;
    WaveView.WavePaneWidth = 1000;
    DispatchCommand(COMMAND_ZOOM_FIT);
    EXPECT_EQ(WaveView.Scale, -2);
    DispatchCommand(COMMAND_ZOOM_IN_STEP);
    EXPECT_EQ(WaveView.Scale, -1);
    DispatchCommand(COMMAND_ZOOM_OUT_STEP);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_EQ(CommandState.CommandPhase, PHASE_IDLE);
}

TEST_F(Commands, AnInterruptedCommandGetsItsPlacesBack) {
    DispatchCommand(COMMAND_EDIT_MODE);
    WaveView.ZoomCentre = 123;
    WaveView.ZoomAnchor = 45;
    DispatchCommand(COMMAND_ZOOM_IN);
    WaveView.ZoomCentre = WaveView.ZoomAnchor = 7;
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_EQ(WaveView.ZoomCentre, 123u);
    EXPECT_EQ(WaveView.ZoomAnchor, 45u);
}

TEST_F(Commands, CtrlDEndsAViewCommandToo) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_FULL_FIT);
    DispatchCommand(COMMAND_CANCEL);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_FALSE(CommandState.ViewCommandSaved);
}

TEST_F(Commands, ANumberAmongTheViewCommandsThatIsNoneEndsAsTheyDo) {
    for (int id : {20, 28, 40, 48}) {
        DispatchCommand(COMMAND_EDIT_MODE);
        DispatchCommand(id);
        EXPECT_TRUE(CommandState.ViewCommandSaved);
        DispatchCommand(COMMAND_QUERY_MODE);
        EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE) << id;
        EXPECT_FALSE(CommandState.ViewCommandSaved) << id;
    }
}

TEST_F(Commands, WithoutPanelsTheScreenCommandsDoNothing) {
    Headless.panesExist = false;
    WaveView.SpanEnd = 4000;
    WaveView.WavePaneWidth = 1000;
    DispatchCommand(COMMAND_ZOOM_FIT);
    EXPECT_EQ(WaveView.Scale, 0);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
}

TEST_F(Commands, TheEndOfAViewCommandTakesItsPromptAway) {
    Headless.panesExist = false; // nothing else to tell
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_PAN);
    EXPECT_STREQ(PromptText, "Pan - Pick Center Point");
    DispatchCommand(COMMAND_REDRAW);
    EXPECT_STREQ(PromptText, "");
}

// --- a file that is dropped -----------------------------------------------------------------------

TEST_F(Commands, ADroppedFileOpensWithoutAQuestionAndTheModeComesBack) {
    ScratchDirectory directory;
    std::string path =
        directory.write("one.wdl", "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n");
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ZOOM_IN);
    OpenFile(path.c_str());
    EXPECT_TRUE(Headless.fileQuestions.empty());
    EXPECT_NE(FindPattern("A"), nullptr);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_FALSE(CommandState.ViewCommandSaved);
}

TEST_F(Commands, ADroppedFileDoesNotLoseChanges) {
    ScratchDirectory directory;
    std::string path =
        directory.write("one.wdl", "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n");
    MakePattern("OLD", {{0, 10}});
    EditLog.rPtr = 4;
    Headless.alertAnswers.push_back(3);
    OpenFile(path.c_str());
    ASSERT_EQ(Headless.alerts.size(), 1u);
    EXPECT_NE(FindPattern("OLD"), nullptr);
    EditLog.rPtr = 0;
}
