#include "shell/undo.h"

#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "headless/dialogs.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/commands.h"
#include "shell/mode_gestures.h"
#include "shell/mouse_gesture.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"

namespace {

using Texts = std::vector<std::string>;

// Edits of a document with two rows, through the log.
class UndoTest : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitHeadlessDialogs();
        InitHeadlessSurface();
        InitCommands();
        InitMouseGesture();
        EndModeGesture();
        AfterUndoHook = nullptr;
        node = MakePattern("NODE", {{0, 10}, {1, 20}});
        part = MakePattern("$part", {{1, 5}});
        AddReference(node, {part});
        ShowWaveByName("NODE");
        Headless.panesExist = true;
        DisplayOpen = 1;
        ValidateDurations();
        DispatchCommand(COMMAND_EDIT_MODE);
        original = StoreText();
    }
    void TearDown() override {
        AfterUndoHook = nullptr;
        FreshStore::TearDown();
    }
    void lengthen(uint32_t duration) const {
        SetItemDuration(PatternFromId(part), 0, duration);
        LogEndAction();
        ValidateDurations();
    }
    uint16_t node, part;
    std::string original;
};

TEST_F(UndoTest, StepsBackAndForth) {
    lengthen(50);
    std::string changed = StoreText();
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(StoreText(), original);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(StoreText(), changed);
    EXPECT_EQ(IsDocumentModified(), 1);
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(IsDocumentModified(), 0);
}

TEST_F(UndoTest, IsAlwaysEnabledAndDoesNothingWithAnEmptyLog) {
    EXPECT_TRUE(CommandIsAllowed(COMMAND_UNDO));
    EXPECT_TRUE(CommandIsAllowed(COMMAND_REDO));
    for (int id : {COMMAND_UNDO, COMMAND_REDO}) {
        DispatchCommand(id);
        EXPECT_EQ(StoreText(), original);
    }
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_TRUE(Headless.programErrors.empty());
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(UndoTest, KeepsEditModeAndReturnsToQueryModeFromIt) {
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_QUERY_MODE);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
}

TEST_F(UndoTest, TakesTheSelectionAway) {
    for (int id : {COMMAND_UNDO, COMMAND_REDO}) {
        SelectRowOnly(0, true);
        WaveView.SelectActive = true;
        DispatchCommand(id);
        EXPECT_FALSE(WaveView.SelectActive);
        EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
        EXPECT_FALSE(WaveRows[0].highlighted());
    }
}

TEST_F(UndoTest, BringsTheLengthsUpToDate) {
    lengthen(50);
    EXPECT_EQ(PatternDuration(PatternFromId(node)), 80U);
    DispatchCommand(COMMAND_UNDO);
    EXPECT_TRUE(PatternFromId(node)->durationValid());
    EXPECT_EQ(PatternFromId(node)->duration, 35U);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(PatternFromId(node)->duration, 80U);
}

TEST_F(UndoTest, LeavesNoRowToRepaint) {
    lengthen(50);
    DispatchCommand(COMMAND_UNDO);
    EXPECT_FALSE(PatternFromId(part)->changed());
    EXPECT_FALSE(PatternFromId(node)->changed());
}

TEST_F(UndoTest, RecordsNothingAndNeedsNoMarkOfItsOwn) {
    lengthen(50);
    int32_t end = EditLog.rEofPtr;
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(EditLog.Recording, 1);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(EditLog.rPtr, end);
}

TEST_F(UndoTest, RestoresHiddenRowsAndPatternsInOneStep) {
    ShowWaveByName("$part");
    LogEndAction();
    SelectRowOnly(0, true);
    WaveRows[1].setHighlighted(true);
    DispatchCommand(COMMAND_HIDE);
    EXPECT_EQ(WaveView.RowCount, 0U);
    DispatchCommand(COMMAND_UNDO);
    ASSERT_EQ(WaveView.RowCount, 2U);
    EXPECT_EQ(WaveRows[0].PatternId, node);
    EXPECT_EQ(WaveRows[1].PatternId, part);
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(WaveView.RowCount, 1U);
    DispatchCommand(COMMAND_REDO);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(WaveView.RowCount, 0U);
}

TEST_F(UndoTest, ShowsRowsWhoseReferencesWaitForTheirPattern) {
    // The nested pattern goes before the reference to it, and between the two a row is removed, so that the
    // rows are painted in the midst of the replay.
    ShowWaveByName("$part");
    uint16_t nested = MakePattern("");
    AddReference(part, {nested});
    LogEndAction();
    std::string before = StoreText();
    DeletePattern(PatternFromId(nested));
    HideRow(0);
    DeleteItem(PatternFromId(part), 1);
    LogEndAction();
    std::string behind = StoreText();
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(WaveView.RowCount, 2U);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(StoreText(), behind);
    EXPECT_EQ(WaveView.RowCount, 1U);
}

TEST_F(UndoTest, ShowsWhatAStoppedReplayHasReached) {
    SetPatternDelay(PatternFromId(node), 3);
    LogEndAction();
    SetPatternDelay(PatternFromId(node), 4);
    // A record that fits nothing.
    uint8_t *payload = LogAppend(8);
    std::fill(payload, payload + 8, uint8_t{0});
    SetPatternDelay(PatternFromId(node), 5);
    LogEndAction();
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(PatternFromId(node)->delay, 4U);
    EXPECT_EQ(Headless.programErrors, Texts{"ApplicationExecuteLog - Invalid Command"});
    EXPECT_TRUE(PatternFromId(node)->durationValid());
    // The log goes on from there.
    SetPatternDelay(PatternFromId(node), 9);
    LogEndAction();
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(UndoTest, LeavesNoReferenceThatNamesNothing) {
    // As if the log and the document were not in step.
    uint16_t extra = MakePattern("EXTRA", {{0, 5}});
    LogPattern(1, part, 1, "$part");
    LogEndAction();
    DispatchCommand(COMMAND_UNDO);
    EXPECT_FALSE(PatternInUse(part));
    EXPECT_EQ(PatternFromId(node)->itemCount, 2);
    EXPECT_EQ(PatternFromId(node)->duration, 30U);
    EXPECT_TRUE(PatternInUse(extra));
}

int refreshes;

TEST_F(UndoTest, RefreshesTheDialogsBehindEachStep) {
    refreshes = 0;
    AfterUndoHook = [] { refreshes++; };
    DispatchCommand(COMMAND_UNDO);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(refreshes, 2);
}

TEST_F(UndoTest, GivesTheLogBackItsClosedFile) {
    ScratchDirectory scratch;
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", scratch.write("a._KL", "").c_str());
    lengthen(50);
    LogFlush();
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(StoreText(), original);
    LogDeleteFile();
}

} // namespace
