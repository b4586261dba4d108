#include "config/settings.h"
#include "display/overlay.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "shell/commands.h"
#include "shell/tracking.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/drawn_picture.h"
#include "unit/edit/gesture_fixture.h"

// --- clicks and ranges ----------------------------------------------------------------------------

TEST_F(EditGestures, AClickSelectsTheLevelUnderIt) {
    uint16_t a = threeLevels();
    clickAt(150);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Bit Pulse = High");
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_EQ(edits(), 0);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, AClickNearAnEdgeSelectsTheEdge) {
    threeLevels();
    clickAt(102);
    EXPECT_EQ(state(), "9 kind 1 100-100 cursor 100");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Edge in Pattern A");
}

TEST_F(EditGestures, ADragOverLevelsSelectsTheSpan) {
    threeLevels();
    drag(50, 150);
    EXPECT_EQ(state(), "9 kind 6 50-150 cursor 150");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Interval in Pattern A");
    mode(COMMAND_EDIT_MODE);
    drag(250, 150);
    EXPECT_EQ(state(), "9 kind 6 150-250 cursor 150");
}

TEST_F(EditGestures, ADragInsideALevelMakesAPulse) {
    uint16_t a = threeLevels();
    std::string before = StoreText();
    drag(120, 160);
    EXPECT_EQ(items(a), "0:100 1:20 0:40 1:40 0:100");
    EXPECT_EQ(state(), "9 kind 3 120-160 cursor 160");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Bit Pulse = Low");
    EXPECT_EQ(edits(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(EditGestures, APressShowsItsOwnTextUntilTheMouseMoves) {
    threeLevels();
    press(120);
    EXPECT_STREQ(PromptText, "empty line");
    EXPECT_EQ(state(), "2 kind 0 120-120 cursor 120");
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT | CURSOR_TRACK);
    WatchDrawing();
    move(160);
    EXPECT_STREQ(PromptText, "Select from 120 to 160 ps");
    EXPECT_EQ(Overlay.frameX1, 160) << "the frame follows";
    move(160, 3);
    EXPECT_STREQ(PromptText, "Select from 120 to 160 ps");
    EXPECT_EQ(WhatWasDrawn(), "- +") << "once, and without a wave";
    move(200);
    EXPECT_STREQ(PromptText, "Select from 120 to 200 ps");
    move(90);
    EXPECT_STREQ(PromptText, "Select from 120 to 90 ps");
    move(120);
    EXPECT_STREQ(PromptText, "Select   at 120 ps");
    EXPECT_TRUE(Overlay.overlayOn);
    release(120);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    EXPECT_EQ(TrackRoutine, nullptr);
    EXPECT_STREQ(PromptText, "Time = 120 ps - Level = High");
}

TEST_F(EditGestures, WithoutARangeThePromptTellsTheCursor) {
    WaveView.CursorTime = 120;
    WaveView.SelectStart = 50;
    WaveView.SelectEnd = 70;
    WaveView.SelectActive = false;
    ShowSelectText();
    EXPECT_STREQ(PromptText, "Time = 120 ps");
    WaveView.SelectActive = true;
    ShowSelectText();
    EXPECT_STREQ(PromptText, "Select from 50 to 70 ps");
}

TEST_F(EditGestures, AReleaseElsewhereThanTheLastMoveCounts) {
    uint16_t a = threeLevels();
    press(120);
    release(160);
    EXPECT_EQ(items(a), "0:100 1:20 0:40 1:40 0:100");
}

TEST_F(EditGestures, TimesKeepToTheUnitFromTheDelayOn) {
    uint16_t a = MakePattern("A", {{0, 10}, {1, 10}});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 10;
    pattern->delay = 7;
    show(a);
    press(131);
    EXPECT_EQ(state(), "2 kind 0 127-127 cursor 127");
    move(168);
    EXPECT_EQ(WaveView.SelectEnd, 167u);
    move(2);
    EXPECT_EQ(WaveView.SelectEnd, 7u);
    move(171);
    EXPECT_EQ(WaveView.SelectEnd, 167u);
    release(171);
    EXPECT_EQ(items(a), "0:10 1:2 0:4 1:4");
    EXPECT_EQ(state(), "9 kind 3 127-167 cursor 167");
}

TEST_F(EditGestures, AClickCountsWhereItIsAndNotWhereTheGridIs) {
    uint16_t a = MakePattern("A", {{0, 1}, {1, 1}});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 100;
    show(a);
    clickAt(160);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 200");
    mode(COMMAND_EDIT_MODE);
    // On the grid this would be the end.
    clickAt(60);
    EXPECT_EQ(state(), "9 kind 3 0-100 cursor 100");
}

TEST_F(EditGestures, ADragThatTheGridBringsToOnePlaceMayHitAnEdge) {
    uint16_t a = MakePattern("A", {{0, 1}, {1, 1}, {0, 1}});
    PatternFromId(a)->setFormat(1);
    PatternFromId(a)->period = 100;
    show(a);
    press(155);
    move(190);
    release(190);
    EXPECT_EQ(state(), "9 kind 1 200-200 cursor 200");
}

TEST_F(EditGestures, TheMasterClockCountsInTheGrid) {
    Settings.ClockMultiplier = 5;
    uint16_t a = MakePattern("A", {{0, 10}, {1, 10}});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->setClock(1);
    pattern->period = 4;
    show(a);
    press(91);
    EXPECT_EQ(WaveView.SelectStart, 100u);
    release(91);
}

TEST_F(EditGestures, ASecondClickOnAPulseSelectsTheWholeWave) {
    threeLevels();
    clickAt(150);
    clickAt(150);
    EXPECT_EQ(state(), "9 kind 2 0-300 cursor 150");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Entire Pattern A");
    clickAt(150);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
}

TEST_F(EditGestures, ClicksOnAReferenceWalkOut) {
    around({part(), 2, 3});
    clickAt(230);
    EXPECT_EQ(state(), "9 kind 3 200-260 cursor 230");
    clickAt(230);
    // The cursor goes to the nearer end of a reference.
    EXPECT_EQ(state(), "9 kind 4 100-340 cursor 340");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Pattern $P");
    clickAt(230);
    EXPECT_EQ(state(), "9 kind 2 0-440 cursor 340");
}

TEST_F(EditGestures, AClickOnALoneSelectedReferenceEntersItAgain) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 2, 3});
    show(a);
    clickAt(130);
    EXPECT_EQ(state(), "9 kind 3 100-160 cursor 130");
    clickAt(130);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    clickAt(130);
    EXPECT_EQ(state(), "9 kind 3 100-160 cursor 160");
}

TEST_F(EditGestures, WithoutPatternWaveformsAClickSelectsTheReference) {
    Settings.ShowPatternWaveforms = false;
    around({part(), 2, 3});
    clickAt(230);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(state(), "9 kind 4 100-340 cursor 340");
    clickAt(230);
    EXPECT_EQ(EditSelection.SelKind, SEL_WHOLE);
}

TEST_F(EditGestures, ACursorInTheMiddleOfAReferenceGoesToItsStart) {
    Settings.ShowPatternWaveforms = false;
    around({part(), 2, 3});
    clickAt(220);
    EXPECT_EQ(WaveView.CursorTime, 100u);
    mode(COMMAND_EDIT_MODE);
    clickAt(221);
    EXPECT_EQ(WaveView.CursorTime, 340u);
    mode(COMMAND_EDIT_MODE);
    clickAt(219);
    EXPECT_EQ(WaveView.CursorTime, 100u);
}

TEST_F(EditGestures, APressOnASelectedEdgeThenSelectsThePulse) {
    threeLevels();
    clickAt(100);
    press(102);
    EXPECT_EQ(GestureState, State::OnSelection);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    release(102);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 100");
}

TEST_F(EditGestures, APressBesideASelectedEdgeSelectsAnew) {
    threeLevels();
    clickAt(100);
    press(103);
    EXPECT_EQ(GestureState, State::TimeRange);
    release(103);
    EXPECT_EQ(state(), "9 kind 1 100-100 cursor 100");
    press(97);
    EXPECT_EQ(GestureState, State::TimeRange);
    release(97);
    press(98);
    EXPECT_EQ(GestureState, State::OnSelection);
    release(98);
    EXPECT_EQ(state(), "9 kind 3 0-100 cursor 100");
}

TEST_F(EditGestures, APressBesideTheFrameSelectsAnew) {
    threeLevels();
    clickAt(150);
    press(250);
    EXPECT_EQ(state(), "2 kind 0 250-250 cursor 250");
    release(250);
    EXPECT_EQ(state(), "9 kind 3 200-300 cursor 250");
}

TEST_F(EditGestures, ASelectionInAnotherRowIsLeft) {
    threeLevels();
    threeLevels("B");
    clickAt(150, 0);
    clickAt(150, 1);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 150");
    EXPECT_STREQ(SelectedPattern()->name(), "B");
    EXPECT_EQ(rows(), "AB*");
}

TEST_F(EditGestures, AClickOnASpanSelectsAnew) {
    threeLevels();
    drag(50, 150);
    clickAt(120);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 120");
}

// --- the end of the wave --------------------------------------------------------------------------

TEST_F(EditGestures, AClickAtTheEndSelectsTheEndEdge) {
    uint16_t a = threeLevels();
    for (int32_t x : {300, 340, 900}) {
        mode(COMMAND_EDIT_MODE);
        clickAt(x);
        EXPECT_EQ(state(), "0 kind 1 300-300 cursor 300") << x;
        EXPECT_EQ(DeepestFrame().item, 3) << x;
        EXPECT_EQ(HeadlessEditDialog.title, "Selected Edge in Pattern A");
    }
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_STREQ(PromptText, "Time = 300 ps - Level = Low");
}

TEST_F(EditGestures, AClickBehindTheEndLeavesTheNextPressAsItWouldBe) {
    threeLevels();
    clickAt(150);
    clickAt(400);
    EXPECT_EQ(state(), "9 kind 1 300-300 cursor 300");
    press(298);
    EXPECT_EQ(GestureState, State::OnSelection);
    release(298);
    EXPECT_EQ(state(), "9 kind 3 200-300 cursor 300");
    mode(COMMAND_EDIT_MODE);
    clickAt(400);
    press(298);
    EXPECT_EQ(GestureState, State::TimeRange);
    release(298);
    EXPECT_EQ(state(), "9 kind 1 300-300 cursor 300");
}

TEST_F(EditGestures, AClickBehindTheEndOfAnotherRowForgetsTheFirst) {
    threeLevels();
    threeLevels("B");
    clickAt(150, 0);
    clickAt(400, 1);
    EXPECT_EQ(state(), "0 kind 1 300-300 cursor 300");
    EXPECT_STREQ(SelectedPattern()->name(), "B");
}

TEST_F(EditGestures, ADragBehindTheEndAndBackToItsPressIsAClick) {
    uint16_t a = threeLevels();
    press(400);
    move(450);
    EXPECT_EQ(WaveView.SelectEnd, 450u);
    move(400);
    release(400);
    EXPECT_EQ(state(), "0 kind 1 300-300 cursor 300");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, APressBehindTheEndShowsTheEnd) {
    threeLevels();
    press(400);
    EXPECT_STREQ(PromptText, "Time = 300 ps - Level = Low");
    EXPECT_EQ(WaveView.SelectStart, 300u);
    EXPECT_EQ(EditSelection.SelKind, SEL_EDGE);
    release(400);
}

TEST_F(EditGestures, ADragBehindTheEndMakesTheWaveLonger) {
    uint16_t a = threeLevels();
    std::string before = StoreText();
    drag(310, 350);
    EXPECT_EQ(items(a), "0:100 1:100 0:100 1:50");
    EXPECT_EQ(state(), "9 kind 3 300-350 cursor 350");
    EXPECT_EQ(edits(), 1);
    EXPECT_TRUE(undoGives(before));
    drag(500, 400);
    EXPECT_EQ(items(a), "0:100 1:100 0:100 1:100");
}

TEST_F(EditGestures, ADragFromBehindTheEndIntoTheWaveSelects) {
    uint16_t a = threeLevels();
    drag(400, 150);
    EXPECT_EQ(state(), "9 kind 6 150-300 cursor 150");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, ASmallDragOnTheEndIsAClickThere) {
    uint16_t a = threeLevels();
    PatternFromId(a)->setFormat(1);
    PatternFromId(a)->period = 1;
    drag(400, 300);
    EXPECT_EQ(state(), "9 kind 1 300-300 cursor 300");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, ADragFromTheWaveOverItsEndStopsThere) {
    uint16_t a = threeLevels();
    drag(250, 500);
    EXPECT_EQ(state(), "9 kind 3 200-300 cursor 300");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, AnEmptyWaveIsBegunByADrag) {
    uint16_t a = show(MakePattern("A"));
    drag(10, 60);
    EXPECT_EQ(items(a), "1:60");
    EXPECT_EQ(state(), "9 kind 3 0-60 cursor 60");
}
