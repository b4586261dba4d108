#include "config/settings.h"
#include "display/drag_preview.h"
#include "display/overlay.h"
#include "display/viewport.h"
#include "editlog/edit_log.h"
#include "shell/commands.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/gesture_fixture.h"

// --- edges ----------------------------------------------------------------------------------------

TEST_F(EditGestures, TheRightEdgeOfAPulseIsDraggedBothWays) {
    uint16_t a = threeLevels();
    std::string before = StoreText();
    clickAt(150);
    press(190);
    EXPECT_EQ(GestureState, State::EdgeDrag);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT | CURSOR_TRACK);
    EXPECT_FALSE(Overlay.overlayOn) << "the preview works on the picture itself";
    move(220);
    EXPECT_EQ(DragPreview.dragTime, 230u);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    release(220);
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(items(a), "0:100 1:130 0:70");
    EXPECT_EQ(state(), "9 kind 3 100-230 cursor 150");
    drag(225, 165);
    EXPECT_EQ(items(a), "0:100 1:70 0:130");
    EXPECT_EQ(state(), "9 kind 3 100-170 cursor 150");
    EXPECT_EQ(edits(), 2);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(EditGestures, TheLeftEdgeOfAPulseIsDraggedBothWays) {
    uint16_t a = threeLevels();
    clickAt(150);
    drag(110, 60);
    EXPECT_EQ(items(a), "0:50 1:150 0:100");
    EXPECT_EQ(state(), "9 kind 3 50-200 cursor 150");
    drag(60, 130);
    EXPECT_EQ(items(a), "0:120 1:80 0:100");
    EXPECT_EQ(state(), "9 kind 3 120-200 cursor 150");
}

TEST_F(EditGestures, WithShiftTheRestMovesWithTheEdge) {
    uint16_t a = threeLevels();
    clickAt(150);
    drag(190, 240, SHIFT);
    EXPECT_EQ(items(a), "0:100 1:150 0:100");
    drag(240, 200, SHIFT);
    EXPECT_EQ(items(a), "0:100 1:110 0:100");
    drag(110, 150, SHIFT);
    EXPECT_EQ(items(a), "0:140 1:110 0:100");
    drag(150, 100, SHIFT);
    EXPECT_EQ(items(a), "0:90 1:110 0:100");
}

TEST_F(EditGestures, ANeighbourKeepsOneUnit) {
    uint16_t a = threeLevels();
    clickAt(150);
    drag(190, 600);
    EXPECT_EQ(items(a), "0:100 1:199 0:1");
    EXPECT_EQ(state(), "9 kind 3 100-299 cursor 150");
    drag(110, 0);
    EXPECT_EQ(items(a), "0:1 1:298 0:1");
    drag(299, 0);
    EXPECT_EQ(items(a), "0:1 1:1 0:298");
}

TEST_F(EditGestures, APressBesideTheFrameTakesItsEdgeByTheGrid) {
    uint16_t a = MakePattern("A", {{0, 10}, {1, 10}, {0, 10}});
    PatternFromId(a)->setFormat(1);
    PatternFromId(a)->period = 10;
    show(a);
    clickAt(150);
    press(204);
    EXPECT_EQ(GestureState, State::EdgeDrag);
    move(234);
    release(234);
    EXPECT_EQ(items(a), "0:10 1:13 0:7");
    press(235);
    EXPECT_EQ(GestureState, State::TimeRange);
    release(235);
}

TEST_F(EditGestures, TheEndOfTheWaveIsFree) {
    uint16_t a = threeLevels();
    clickAt(250);
    drag(290, 790);
    EXPECT_EQ(items(a), "0:100 1:100 0:600");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 800u);
}

TEST_F(EditGestures, AClickInTheFrameWalksOutAndMovesNothing) {
    uint16_t a = threeLevels();
    clickAt(150);
    press(190);
    move(205);
    release(205);
    EXPECT_EQ(items(a), "0:100 1:100 0:100") << "less than 20 pixels are a click";
    EXPECT_EQ(EditSelection.SelKind, SEL_WHOLE);
    EXPECT_EQ(edits(), 0);
}

TEST_F(EditGestures, AnEdgeInALaterRepetitionMovesInAll) {
    uint16_t p = part();
    around({p, 2, 3});
    // Repetitions begin at 100, 180 and 260; in the second the level is high from 200 to 260.
    clickAt(230);
    drag(205, 229);
    EXPECT_EQ(items(p), "0:22 1:18");
    EXPECT_EQ(state(), "9 kind 3 224-260 cursor 230");
}

TEST_F(EditGestures, WithShiftInALaterRepetitionAllOfThemGrow) {
    uint16_t p = part();
    uint16_t a = around({p, 2, 3});
    clickAt(230);
    drag(250, 290, SHIFT);
    EXPECT_EQ(items(p), "0:10 1:50");
    EXPECT_EQ(state(), "9 kind 3 240-340 cursor 240");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 560u);
}

TEST_F(EditGestures, ABusIsDraggedLikeABit) {
    uint16_t bus = show(MakePattern("D[7:0]", {{1, 100}, {2, 100}, {3, 100}}));
    clickAt(150);
    drag(190, 240);
    EXPECT_EQ(items(bus), "1:100 2:150 3:50");
    drag(20, 60);
    EXPECT_EQ(items(bus), "1:20 2:40 1:40 2:150 3:50");
}

TEST_F(EditGestures, ADragWithRoundingBackToItsStartEditsNothing) {
    uint16_t a = MakePattern("A", {{0, 1}, {1, 1}, {0, 1}});
    PatternFromId(a)->setFormat(1);
    PatternFromId(a)->period = 100;
    show(a);
    clickAt(150);
    drag(190, 220);
    EXPECT_EQ(items(a), "0:1 1:1 0:1");
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 200");
    EXPECT_EQ(edits(), 0);
}

TEST_F(EditGestures, AReferenceIsNotDragged) {
    Settings.ShowPatternWaveforms = false;
    uint16_t a = around({part(), 2, 3});
    clickAt(230);
    press(300);
    EXPECT_EQ(GestureState, State::OnSelection);
    release(300);
    EXPECT_EQ(EditSelection.SelKind, SEL_WHOLE);
    clickAt(230);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    // Held and moved the press selects what the range covers, which is none yet.
    press(300);
    move(380);
    release(380);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN) << "the range is still that of the reference";
    EXPECT_EQ(items(a).substr(0, 6), "0:100 ");
}

// --- with Shift -----------------------------------------------------------------------------------

TEST_F(EditGestures, AShiftDragInsideALevelPullsOutAPulse) {
    uint16_t a = threeLevels();
    std::string before = StoreText();
    press(120, 0, SHIFT);
    EXPECT_EQ(state(), "5 kind 5 cursor 120");
    EXPECT_EQ(DragPreview.edgeTime, 120u);
    move(160);
    release(160);
    EXPECT_EQ(items(a), "0:100 1:20 0:40 1:80 0:100");
    EXPECT_EQ(state(), "9 kind 3 120-160 cursor 120");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 340u);
    EXPECT_EQ(edits(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(EditGestures, AShiftDragToTheLeftPullsOutNothing) {
    uint16_t a = threeLevels();
    drag(160, 120, SHIFT);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 160");
}

TEST_F(EditGestures, AShiftClickInsideALevelKeepsTheTotal) {
    uint16_t a = threeLevels();
    clickAt(120, 0, SHIFT);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_EQ(state(), "9 kind 2 0-300 cursor 120");
    EXPECT_EQ(edits(), 0);
}

TEST_F(EditGestures, AShiftPressOnAnEdgeSelectsARange) {
    uint16_t a = threeLevels();
    press(100, 0, SHIFT);
    EXPECT_EQ(GestureState, State::TimeRange);
    EXPECT_STREQ(PromptText, "empty line");
    release(100);
    EXPECT_EQ(state(), "9 kind 1 100-100 cursor 100");
    mode(COMMAND_EDIT_MODE);
    drag(100, 140, SHIFT);
    EXPECT_EQ(state(), "9 kind 3 100-200 cursor 140");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(EditGestures, AShiftPressOneUnitInsideALevelPullsOut) {
    threeLevels();
    for (int32_t x : {101, 199}) {
        mode(COMMAND_EDIT_MODE);
        press(x, 0, SHIFT);
        EXPECT_EQ(GestureState, State::EdgeDrag) << x;
        EXPECT_EQ(DragPreview.edgeTime, static_cast<TimeVal>(x));
        release(x);
    }
    for (int32_t x : {100, 200}) {
        mode(COMMAND_EDIT_MODE);
        press(x, 0, SHIFT);
        EXPECT_EQ(GestureState, State::TimeRange) << x;
        release(x);
    }
}

TEST_F(EditGestures, AUnitOfTheLevelItselfIsWhatAShiftPressNeeds) {
    around({part(), 2, 3});
    // In the second repetition the level is high from 200 to 260, with units of 2.
    for (auto [x, begun] : {std::pair{201, State::TimeRange},
                            {202, State::EdgeDrag},
                            {258, State::EdgeDrag},
                            {259, State::TimeRange}}) {
        mode(COMMAND_EDIT_MODE);
        press(x, 0, SHIFT);
        EXPECT_EQ(GestureState, begun) << x;
        release(x);
    }
}

TEST_F(EditGestures, AShiftPressInASelectedPulseDragsItsEdge) {
    threeLevels();
    clickAt(150);
    press(190, 0, SHIFT);
    EXPECT_EQ(state(), "5 kind 3 100-200 cursor 150");
    EXPECT_EQ(DragPreview.rightMode, DRAG_TAIL);
    EXPECT_EQ(DragPreview.dragRight, 1);
    release(190);
}

TEST_F(EditGestures, AShiftPressOnAReferenceStartsNoPulse) {
    Settings.ShowPatternWaveforms = false;
    around({part(), 2, 3});
    press(230, 0, SHIFT);
    EXPECT_EQ(GestureState, State::TimeRange);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    release(230);
    EXPECT_EQ(EditSelection.SelKind, SEL_WHOLE);
}

TEST_F(EditGestures, AShiftDragInALaterRepetitionPullsOutInAll) {
    uint16_t p = part();
    around({p, 1, 3});
    // The second repetition takes 140 to 180, and is high from 150 on.
    drag(160, 190, SHIFT);
    EXPECT_EQ(items(p), "0:10 1:10 0:30 1:20");
    EXPECT_EQ(state(), "9 kind 3 190-220 cursor 190");
}

TEST_F(EditGestures, AShiftDragOfTheWholeWaveMovesItsStart) {
    uint16_t a = threeLevels();
    std::string before = StoreText();
    clickAt(150);
    clickAt(150);
    EXPECT_EQ(EditSelection.SelKind, SEL_WHOLE);
    press(50, 0, SHIFT);
    EXPECT_EQ(GestureState, State::EdgeDrag);
    move(130);
    release(130);
    EXPECT_EQ(PatternFromId(a)->delay, 80u);
    EXPECT_EQ(state(), "9 kind 2 80-380 cursor 150");
    drag(100, 70, SHIFT);
    EXPECT_EQ(PatternFromId(a)->delay, 50u);
    drag(200, 0, SHIFT);
    EXPECT_EQ(PatternFromId(a)->delay, 0u);
    EXPECT_EQ(edits(), 3);
    LogUndo();
    LogUndo();
    EXPECT_TRUE(undoGives(before));
}

TEST_F(EditGestures, WithoutShiftTheWholeWaveStays) {
    uint16_t a = threeLevels();
    clickAt(150);
    clickAt(150);
    press(150);
    EXPECT_EQ(GestureState, State::TimeRange);
    release(150);
    EXPECT_EQ(PatternFromId(a)->delay, 0u);
}

TEST_F(EditGestures, AWaveOfOneReferenceIsDraggedAsAWhole) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 2, 3});
    show(a);
    clickAt(130);
    clickAt(130);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    drag(130, 190, SHIFT);
    EXPECT_EQ(PatternFromId(a)->delay, 60u);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(DeepestFrame().start, 60u);
    EXPECT_EQ(DeepestFrame().end, 300u);
    // Not moved, the press goes into the reference again.
    clickAt(100, 0, SHIFT);
    EXPECT_EQ(state(), "9 kind 3 80-140 cursor 140");
}
