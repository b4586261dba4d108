#include "shell/mode_gestures.h"

#include "config/settings.h"
#include "display/drag_preview.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "edit/clipboard.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "shell/jump_commands.h"
#include "shell/view_gestures.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"

namespace {

using State = GestureStateValue;
constexpr int32_t ROW = 20;
constexpr MouseKeys SHIFT = {true, false};

// Edit mode on rows of 20 pixels, with a pixel to the time unit.
class EditGestures : public EditingFixture {
protected:
    void SetUp() override {
        EditingFixture::SetUp();
        WaveView.WavePaneWidth = 1000;
        WaveView.WavePaneHeight = 600;
        WaveView.RowHeight = ROW;
        WaveView.WaveHeight = 12;
        WaveView.NameColumnWidth = 100;
        WaveView.SpanEnd = 100000;
        WaveView.TickMinor = 10;
        mode(COMMAND_EDIT_MODE);
    }
    // Actions in the log since the last row was shown.
    static int edits() { return actions() - actionsBefore; }
    static inline int actionsBefore = 0;
    static void mode(int command) { DispatchCommand(command); }
    static uint16_t show(uint16_t id) {
        PatternFromId(id)->setHasProperties(true);
        ValidateDurations();
        ShowWaveByName(PatternFromId(id)->name());
        ScrollRowsTo(0, false);
        mode(CommandState.CurrentCommand);
        actionsBefore = actions();
        return id;
    }
    // A row of three levels of 100: low, high, low.
    static uint16_t threeLevels(const char *name = "A") {
        return show(MakePattern(name, {{0, 100}, {1, 100}, {0, 100}}));
    }
    static uint16_t part() { return MakePattern("$P", {{0, 10}, {1, 30}}); }
    static uint16_t around(const Use &use) {
        uint16_t id = MakePattern("A", {{0, 100}});
        AddReference(id, use);
        AddTransition(id, 1, 100);
        return show(id);
    }
    static int32_t middle(uint32_t row) { return static_cast<int32_t>(row) * ROW + ROW / 2; }
    static void press(int32_t x, uint32_t row = 0, MouseKeys keys = {}) {
        LeftPressed(Pane::Wave, x, middle(row), keys);
    }
    static void move(int32_t x, uint32_t row = 0) { MouseMoved(Pane::Wave, x, middle(row)); }
    static void release(int32_t x, uint32_t row = 0) { LeftReleased(Pane::Wave, x, middle(row)); }
    static void clickAt(int32_t x, uint32_t row = 0, MouseKeys keys = {}) {
        press(x, row, keys);
        release(x, row);
    }
    static void drag(int32_t from, int32_t to, MouseKeys keys = {}, uint32_t row = 0) {
        press(from, row, keys);
        move((from + to) / 2, row);
        move(to, row);
        release(to, row);
    }
    static void pressName(uint32_t row) { LeftPressed(Pane::Name, 5, middle(row), {}); }
    static void moveName(uint32_t row) { MouseMoved(Pane::Name, 5, middle(row)); }
    static void releaseName(uint32_t row) { LeftReleased(Pane::Name, 5, middle(row)); }
    static std::string rows() {
        std::string names;
        for (uint32_t row = 0; row < WaveView.RowCount; row++) {
            names += RowPattern(row)->name();
            if (WaveRows[row].highlighted()) names += "*";
        }
        return names;
    }
    static void fiveRows() {
        for (const char *name : {"A", "B", "C", "D", "E"}) show(MakePattern(name, {{0, 100}, {1, 100}}));
    }
    // The state, the kind, and the frame over the waves with the cursor.
    static std::string state() {
        std::string text =
            std::to_string(static_cast<int>(GestureState)) + " kind " + std::to_string(EditSelection.SelKind);
        if (WaveView.SelectActive)
            text += " " + std::to_string(WaveView.SelectStart) + "-" + std::to_string(WaveView.SelectEnd);
        return text + " cursor " + std::to_string(WaveView.CursorTime);
    }
};

} // namespace

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
    move(160);
    EXPECT_STREQ(PromptText, "Select from 120 to 160 ps");
    move(160, 3);
    EXPECT_STREQ(PromptText, "Select from 120 to 160 ps");
    move(200);
    EXPECT_STREQ(PromptText, "Select from 120 to 200 ps");
    move(90);
    EXPECT_STREQ(PromptText, "Select from 120 to 90 ps");
    move(120);
    EXPECT_STREQ(PromptText, "Select   at 120 ps");
    EXPECT_TRUE(Overlay.overlayOn);
    release(120);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    EXPECT_STREQ(PromptText, "Time = 120 ps - Level = High");
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
}

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
    // The press alone does not move the cursor.
    EXPECT_STREQ(PromptText, "Time = 150 ps");
    move(160, 1);
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
}

TEST_F(EditGestures, TheRulerMovesTheCursorAndEndsTheSelection) {
    threeLevels();
    clickAt(150);
    LeftPressed(Pane::Ruler, 350, 3, {});
    LeftReleased(Pane::Ruler, 350, 3);
    EXPECT_EQ(state(), "0 kind 0 cursor 250");
    EXPECT_EQ(rows(), "A*");
}

TEST_F(EditGestures, WithoutRowsNothingIsSelected) {
    press(50);
    EXPECT_EQ(state(), "0 kind 0 cursor 0");
    EXPECT_EQ(WaveView.SelectRow, 0u);
    release(80);
    EXPECT_EQ(state(), "0 kind 0 cursor 0");
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
        EXPECT_EQ(rows(), "A");
        EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
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

// --- rows -----------------------------------------------------------------------------------------

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
    moveName(3);
    EXPECT_EQ(rows(), "AEB*C*D*");
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
    LeftPressed(Pane::Name, 5, middle(3), SHIFT);
    releaseName(3);
    EXPECT_EQ(rows(), "ABCD*E");
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
