#include "display/rows.h"
#include "display/viewport.h"
#include "shell/command_state.h"
#include "unit/edit/drawn_picture.h"
#include "unit/edit/gesture_fixture.h"

TEST_F(EditGestures, ARangeOfRowsGrowsAndShrinksWithTheMouse) {
    fiveRows();
    pressName(2);
    EXPECT_EQ(GestureState, State::RowRange);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT | CURSOR_TRACK);
    EXPECT_EQ(rows(), "ABC*DE");
    moveName(4);
    EXPECT_EQ(rows(), "ABC*D*E*");
    moveName(3);
    EXPECT_EQ(rows(), "ABC*D*E");
    moveName(0);
    EXPECT_EQ(rows(), "A*B*C*DE");
    EXPECT_EQ(WaveView.SelectRow, 2u);
    EXPECT_EQ(WaveView.SelectRowLast, 0u);
    moveName(9);
    EXPECT_EQ(rows(), "ABC*D*E*");
    releaseName(9);
    EXPECT_EQ(GestureState, State::Idle);
}

TEST_F(EditGestures, SelectedRowsMoveWithTheMouse) {
    fiveRows();
    pressName(3);
    moveName(1);
    releaseName(1);
    EXPECT_EQ(rows(), "AB*C*D*E");
    pressName(2);
    EXPECT_EQ(GestureState, State::RowMove);
    EXPECT_EQ(WaveView.SelectRow, 1u) << "in order now";
    EXPECT_EQ(WaveView.SelectRowLast, 3u);
    WatchDrawing();
    moveName(3);
    EXPECT_EQ(rows(), "AEB*C*D*");
    EXPECT_EQ(WhatWasDrawn(), "- n1 w1 n2 w2 n3 w3 n4 w4 +") << "the three and the one that they have passed";
    moveName(9);
    EXPECT_EQ(rows(), "AEB*C*D*");
    moveName(2);
    EXPECT_EQ(rows(), "AB*C*D*E");
    moveName(0);
    EXPECT_EQ(rows(), "B*C*D*AE");
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_EQ(WaveView.SelectRowLast, 2u);
    releaseName(0);
    EXPECT_EQ(GestureState, State::Idle);
    EXPECT_EQ(edits(), 0);
}

TEST_F(EditGestures, AClickInTheSelectedRowsKeepsThem) {
    fiveRows();
    pressName(1);
    moveName(3);
    releaseName(3);
    pressName(2);
    releaseName(2);
    EXPECT_EQ(rows(), "AB*C*D*E");
    pressName(4);
    releaseName(4);
    EXPECT_EQ(rows(), "ABCDE*");
}

TEST_F(EditGestures, APressOnANameEndsTheSelection) {
    threeLevels();
    clickAt(150);
    pressName(0);
    EXPECT_EQ(state(), "7 kind 0 cursor 150");
    releaseName(0);
    EXPECT_EQ(state(), "0 kind 0 cursor 150");
    EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
}

TEST_F(EditGestures, ShiftPicksANameAsAnyPressDoes) {
    fiveRows();
    pressName(1);
    releaseName(1);
    pressName(3, SHIFT);
    releaseName(3);
    EXPECT_EQ(rows(), "ABCD*E");
}

TEST_F(EditGestures, AReleaseWithOneRowSelectedTellsWhoFollowsIt) {
    fiveRows();
    pressName(1);
    static int told;
    RowSelectionHook = [] { told++; };
    told = 0;
    releaseName(1);
    EXPECT_EQ(told, 1);
    press(50, 2);
    told = 0;
    release(50, 2);
    EXPECT_EQ(told, 1);
    pressName(0);
    moveName(2);
    told = 0;
    releaseName(2);
    EXPECT_EQ(told, 0) << "there is no one row to follow";
    RowSelectionHook = nullptr;
}

TEST_F(EditGestures, BelowTheLastNameThatIsPicked) {
    fiveRows();
    pressName(9);
    EXPECT_EQ(rows(), "ABCDE*");
    EXPECT_EQ(WaveView.SelectRow, 4u);
    EXPECT_EQ(WaveView.SelectRowLast, 4u);
    releaseName(9);
}

TEST_F(EditGestures, ControlTakesRowsInAndOut) {
    fiveRows();
    static int told;
    told = 0;
    RowSelectionHook = [] { told++; };
    auto toggle = [](uint32_t row) {
        int before = told;
        pressName(row, CONTROL);
        EXPECT_GT(told, before);
        EXPECT_EQ(GestureState, State::Idle);
        EXPECT_EQ(WaveView.SelectRowLast, WaveView.SelectRow);
        releaseName(row);
    };
    toggle(1);
    EXPECT_EQ(rows(), "AB*CDE");
    EXPECT_EQ(WaveView.SelectRow, 1u);
    toggle(3);
    EXPECT_EQ(rows(), "AB*CD*E");
    EXPECT_EQ(WaveView.SelectRow, 3u);
    toggle(9);
    EXPECT_EQ(rows(), "AB*CD*E*");
    toggle(4);
    EXPECT_EQ(rows(), "AB*CD*E");
    EXPECT_EQ(WaveView.SelectRow, 1u) << "the first that is left";
    clickAt(50, 1);
    EXPECT_EQ(rows(), "AB*CDE") << "a row with others beside it is picked alone";
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
    toggle(1);
    EXPECT_EQ(rows(), "ABCDE");
    EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    RowSelectionHook = nullptr;
}

TEST_F(EditGestures, ARowThatIsGoneIsNoRangeToMove) {
    fiveRows();
    pressName(2);
    releaseName(2);
    HideRow(2);
    EXPECT_EQ(WaveView.SelectRow, NO_ROW);
    pressName(3);
    EXPECT_EQ(GestureState, State::RowRange);
    EXPECT_EQ(rows(), "ABDE*");
    releaseName(3);
}

TEST_F(EditGestures, OneRowOfManySelectedIsPickedAloneInTheWaves) {
    fiveRows();
    pressName(1);
    moveName(3);
    releaseName(3);
    clickAt(50, 1);
    EXPECT_EQ(rows(), "AB*CDE");
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
}
