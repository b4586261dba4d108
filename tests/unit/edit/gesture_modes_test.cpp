#include "config/settings.h"
#include "display/overlay.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "edit/clipboard.h"
#include "edit/show_selection.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "shell/jump_commands.h"
#include "shell/tracking.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/drawn_picture.h"
#include "unit/edit/gesture_fixture.h"

// --- Query mode -----------------------------------------------------------------------------------

TEST_F(EditGestures, QueryModeEditsNothing) {
    uint16_t a = threeLevels();
    threeLevels("B");
    clickAt(150);
    mode(COMMAND_QUERY_MODE);
    EXPECT_EQ(state(), "0 kind 0 cursor 150");
    std::string before = StoreText();
    press(120);
    EXPECT_EQ(GestureState, State::QueryTracking);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY | CURSOR_TRACK);
    // The press alone does not move the cursor.
    EXPECT_STREQ(PromptText, "Time = 150 ps");
    WatchDrawing();
    move(160, 1);
    EXPECT_EQ(Overlay.cursorX, 160);
    EXPECT_EQ(WhatWasDrawn(), "- + n0 n1") << "the cursor moves, and no wave is drawn";
    EXPECT_EQ(rows(), "AB*");
    EXPECT_STREQ(PromptText, "Time = 160 ps");
    release(160, 1);
    EXPECT_EQ(state(), "0 kind 0 cursor 160");
    for (MouseKeys keys : {MouseKeys{}, SHIFT}) {
        drag(120, 160, keys);
        drag(400, 500, keys);
        clickAt(100, 0, keys);
    }
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, AQueryPressKeepsTheCursorUntilTheMarkerFollows) {
    threeLevels();
    mode(COMMAND_QUERY_MODE);
    WaveView.CursorTime = 77;
    Mouse = {120, 0, Pane::Wave};
    CommandState.CommandPhase = PHASE_PRESSED;
    FinishCommand();
    EXPECT_STREQ(PromptText, "Time = 77 ps");
    EXPECT_EQ(WaveView.CursorTime, 77u);
    CommandState.CommandPhase = PHASE_RELEASED;
    FinishCommand();
    EXPECT_EQ(WaveView.CursorTime, 120u);
}

TEST_F(EditGestures, BelowTheLastRowEditModeOnlyPicks) {
    uint16_t a = threeLevels();
    press(120, 5);
    EXPECT_EQ(GestureState, State::QueryTracking);
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_EQ(rows(), "A*");
    release(160, 5);
    EXPECT_EQ(rows(), "A*");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
}

TEST_F(EditGestures, ARowThatShowsOthersIsNotEdited) {
    uint16_t b0 = MakePattern("B0", {{0, 10}, {1, 30}});
    uint16_t bus = MakePattern("J");
    AddReference(bus, {b0}, PatternKind::Composite);
    show(bus);
    clickAt(20);
    EXPECT_EQ(state(), "0 kind 0 cursor 20");
    clickAt(300);
    EXPECT_EQ(state(), "0 kind 0 cursor 300");
    JumpToTime(20);
    EXPECT_EQ(state(), "0 kind 0 cursor 20");
}

TEST_F(EditGestures, TheRulerMovesTheCursorAndEndsTheSelection) {
    threeLevels();
    clickAt(150);
    LeftPressed(Pane::Ruler, 350, 3, {});
    LeftReleased(Pane::Ruler, 350, 3);
    EXPECT_EQ(state(), "0 kind 0 cursor 250");
    EXPECT_EQ(rows(), "A*");
    threeLevels("B");
    clickAt(150, 1);
    LeftPressed(Pane::Ruler, 350, 3, {});
    LeftReleased(Pane::Ruler, 350, 3);
    EXPECT_EQ(rows(), "AB*") << "the ruler stands beside no row";
}

TEST_F(EditGestures, WithoutRowsNothingIsSelected) {
    press(50);
    EXPECT_EQ(state(), "0 kind 0 cursor 0");
    EXPECT_EQ(WaveView.SelectRow, 0u);
    release(80);
    EXPECT_EQ(state(), "0 kind 0 cursor 0");
    threeLevels();
    clickAt(150);
    DispatchCommand(COMMAND_HIDE);
    EXPECT_EQ(WaveView.RowCount, 0u);
    WaveView.SelectRow = NO_ROW;
    TrackQuery(60, 3);
    EXPECT_EQ(WaveView.SelectRow, NO_ROW) << "there is no row to pick";
    EXPECT_EQ(WaveView.CursorTime, 60u);
    EditSelection.SelKind = SEL_PULSE;
    WaveView.SelectActive = true;
    press(50);
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_EQ(state(), "0 kind 0 cursor 60");
    release(50);
}

// --- what ends a selection ------------------------------------------------------------------------

TEST_F(EditGestures, AModeAndARightButtonTakeTheSelectionAway) {
    threeLevels();
    for (int way = 0; way < 3; way++) {
        clickAt(150);
        EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
        if (way == 0) mode(COMMAND_EDIT_MODE);
        if (way == 1) OtherReleased(Pane::Wave, 5, 5);
        if (way == 2) {
            mode(COMMAND_QUERY_MODE);
            mode(COMMAND_EDIT_MODE);
        }
        EXPECT_EQ(state(), "0 kind 0 cursor 150") << way;
        EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
        EXPECT_EQ(WaveView.SelectRowLast, WaveView.RowCount);
        EXPECT_EQ(rows(), "A");
        EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
    }
}

TEST_F(EditGestures, EachPhaseThatIsNoPressTakesTheSelectionAway) {
    threeLevels();
    for (auto phase : {PHASE_STARTING, PHASE_PASTING, PHASE_ENDING}) {
        clickAt(150);
        EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
        CommandState.CommandPhase = phase;
        SetEditMode(true);
        EXPECT_EQ(state(), "0 kind 0 cursor 150") << phase;
        EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
    }
}

TEST_F(EditGestures, EditModeOpensTheFloatingDialogAndQueryModeLeavesIt) {
    int shown = HeadlessEditDialog.shown;
    mode(COMMAND_QUERY_MODE);
    EXPECT_EQ(HeadlessEditDialog.shown, shown);
    EXPECT_TRUE(HeadlessEditDialog.open);
    mode(COMMAND_EDIT_MODE);
    EXPECT_GT(HeadlessEditDialog.shown, shown);
    shown = HeadlessEditDialog.shown;
    threeLevels();
    shown = HeadlessEditDialog.shown;
    clickAt(150);
    OtherReleased(Pane::Wave, 5, 5);
    EXPECT_EQ(HeadlessEditDialog.shown, shown);
}

TEST_F(EditGestures, UndoAndRedoTakeTheSelectionAway) {
    threeLevels();
    drag(120, 160);
    for (int command : {COMMAND_UNDO, COMMAND_REDO}) {
        clickAt(50);
        EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
        DispatchCommand(command);
        EXPECT_EQ(state(), "0 kind 0 cursor 50");
        EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    }
}

TEST_F(EditGestures, CutAndPasteTakeTheSelectionAway) {
    uint16_t a = threeLevels();
    clickAt(150);
    DispatchCommand(COMMAND_CUT);
    EXPECT_EQ(items(a), "0:200");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_FALSE(WaveView.SelectActive);
    clickAt(200);
    EXPECT_EQ(EditSelection.SelKind, SEL_EDGE);
    DispatchCommand(COMMAND_PASTE);
    EXPECT_EQ(items(a), "0:200 1:100");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
}

TEST_F(EditGestures, ANewDocumentHasNoSelection) {
    threeLevels();
    clickAt(150);
    PendingMerge = 1;
    Headless.alertAnswers = {2};
    DispatchCommand(COMMAND_NEW);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_EQ(EditSelection.SelDepth, 0);
    EXPECT_EQ(PendingMerge, 0);
    EXPECT_EQ(GestureState, State::Idle);
    EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
}

TEST_F(EditGestures, ACommandThatPicksOtherRowsLeavesTheSelection) {
    threeLevels();
    threeLevels("B");
    for (int command : {COMMAND_ROW_DOWN, COMMAND_DUPLICATE, COMMAND_HIDE}) {
        clickAt(150);
        DispatchCommand(command);
        EXPECT_EQ(EditSelection.SelKind, SEL_NONE) << command;
        EXPECT_FALSE(WaveView.SelectActive);
        EXPECT_EQ(GestureState, State::Idle);
        EXPECT_FALSE(CommandIsAllowed(COMMAND_DELETE));
    }
}

TEST_F(EditGestures, ACommandThatLeavesTheRowsKeepsTheSelection) {
    threeLevels();
    clickAt(150);
    DispatchCommand(COMMAND_PLACE_MARK);
    DispatchCommand(COMMAND_REDRAW);
    DispatchCommand(COMMAND_ROW_UP);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
    DispatchCommand(COMMAND_ZOOM_IN);
    OtherReleased(Pane::Wave, 5, 5);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
}

TEST_F(EditGestures, ACommandBreaksADragOff) {
    uint16_t a = threeLevels();
    clickAt(150);
    press(190);
    move(240);
    DispatchCommand(COMMAND_PLACE_MARK);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(TrackRoutine, nullptr);
    move(280);
    release(280);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
}

TEST_F(EditGestures, AMouseThatIsTakenAwayBreaksTheGestureOff) {
    uint16_t a = threeLevels();
    press(120);
    move(160);
    MouseCaptureLost();
    EXPECT_EQ(state(), "0 kind 0 cursor 160");
    release(160);
    press(120, 0, SHIFT);
    move(160);
    MouseCaptureLost();
    EXPECT_EQ(state(), "0 kind 0 cursor 120");
    clickAt(150);
    press(190);
    move(240);
    MouseCaptureLost();
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_FALSE(PatternFromId(a)->changed()) << "the preview is painted over";
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    press(700);
    MouseCaptureLost();
    EXPECT_EQ(state(), "0 kind 0 cursor 300");
}

// --- jumps ----------------------------------------------------------------------------------------

TEST_F(EditGestures, AJumpTakesTheSelectionAlong) {
    threeLevels();
    clickAt(150);
    WaveView.TickMinor = 60;
    DispatchCommand(COMMAND_TICK_RIGHT);
    EXPECT_EQ(state(), "9 kind 3 200-300 cursor 210");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Bit Pulse = Low");
    DispatchCommand(COMMAND_TICK_LEFT);
    DispatchCommand(COMMAND_TO_START);
    EXPECT_EQ(state(), "9 kind 1 0-0 cursor 0");
    DispatchCommand(COMMAND_TO_END);
    EXPECT_EQ(state(), "9 kind 1 300-300 cursor 300");
    DispatchCommand(COMMAND_TICK_RIGHT);
    EXPECT_EQ(state(), "9 kind 1 300-300 cursor 360") << "the cursor goes on behind the wave";
}

TEST_F(EditGestures, AJumpInAReferenceKeepsTheCursorWhereItWent) {
    Settings.ShowPatternWaveforms = false;
    around({part(), 2, 3});
    clickAt(50);
    WaveView.TickMinor = 150;
    DispatchCommand(COMMAND_TICK_RIGHT);
    EXPECT_EQ(state(), "9 kind 4 100-340 cursor 200");
}

TEST_F(EditGestures, AJumpToWhereTheCursorIsKeepsTheSelection) {
    threeLevels();
    drag(50, 150);
    JumpToTime(150);
    EXPECT_EQ(EditSelection.SelKind, SEL_SPAN);
}

TEST_F(EditGestures, AJumpWithoutARowToEditSelectsNothing) {
    threeLevels();
    clickAt(150);
    mode(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_TICK_RIGHT);
    EXPECT_EQ(state(), "0 kind 0 cursor 160");
}

TEST_F(EditGestures, AJumpInQueryModeEndsASelection) {
    threeLevels();
    mode(COMMAND_QUERY_MODE);
    clickAt(150);
    SelectAtTime(150);
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
    DispatchCommand(COMMAND_TICK_RIGHT);
    EXPECT_EQ(state(), "0 kind 0 cursor 160");
}

TEST_F(EditGestures, APressAfterAJumpDragsWhatIsSelected) {
    uint16_t a = threeLevels();
    clickAt(250);
    JumpToTime(150);
    drag(190, 240);
    EXPECT_EQ(items(a), "0:100 1:150 0:50");
}
