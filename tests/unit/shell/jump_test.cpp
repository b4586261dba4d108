#include "shell/jump_commands.h"

#include "config/settings.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "headless/dialogs.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "shell/mode_gestures.h"
#include "shell/mouse_gesture.h"
#include "store/pattern_store.h"
#include "unit/support/fresh_store.h"

namespace {

// A wave pane of 1000 by 600 pixels on a span of 0 to 5000, one pixel a time unit, with rows of 20 pixels.
class Jump : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitHeadlessDialogs();
        InitCommands();
        InitMouseGesture();
        InitModeGestures();
        Headless.panesExist = true;
        DisplayOpen = 1;
        WaveView.WavePaneWidth = 1000;
        WaveView.WavePaneHeight = 600;
        WaveView.RowHeight = 20;
        WaveView.SpanEnd = 5000;
        WaveView.TickMinor = 10;
        DispatchCommand(COMMAND_QUERY_MODE);
    }
    static uint16_t Row(const char *name, const Transitions &items, uint32_t width = 1) {
        uint16_t id = MakePattern(name, items, width);
        ShowWaveByName(name);
        SelectRowOnly(WaveView.RowCount - 1, true);
        return id;
    }
    static void Rows(int count) {
        for (int i = 0; i < count; i++) Row(("N" + std::to_string(i)).c_str(), {{0, 10}});
        ScrollRowsTo(0, false);
    }
    // Where the cursor is after a command from `from`.
    static TimeVal After(int id, TimeVal from) {
        WaveView.CursorTime = from;
        DispatchCommand(id);
        return WaveView.CursorTime;
    }
    static uint32_t RowAfter(int id) {
        DispatchCommand(id);
        return WaveView.SelectRow;
    }
};

} // namespace

// --- to a time ------------------------------------------------------------------------------------

TEST_F(Jump, StaysWithinTheSpan) {
    JumpToTime(TIME_FOREVER);
    EXPECT_EQ(WaveView.CursorTime, 5000u);
    WaveView.SpanStart = 100;
    JumpToTime(7);
    EXPECT_EQ(WaveView.CursorTime, 100u);
}

TEST_F(Jump, ToAPlaceInViewLeavesTheViewAlone) {
    WaveView.ViewLeft = 2000;
    Headless.invalidated.clear();
    for (TimeVal t : {2000, 2500, 3000}) JumpToTime(t);
    EXPECT_EQ(WaveView.ViewLeft, 2000u);
    EXPECT_TRUE(Headless.invalidated.empty());
}

TEST_F(Jump, ToAPlaceOutOfViewCentresIt) {
    WaveView.ViewLeft = 2000;
    JumpToTime(3001);
    EXPECT_EQ(WaveView.ViewLeft, 2501u);
    JumpToTime(2500);
    EXPECT_EQ(WaveView.ViewLeft, 2000u);
    JumpToTime(5000);
    EXPECT_EQ(WaveView.ViewLeft, 4000u);
    JumpToTime(0);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
}

TEST_F(Jump, InAnEndlessViewStaysOnTheAxis) {
    WaveView.SpanEnd = TIME_FOREVER;
    WaveView.Scale = MinScale();
    WaveView.ViewLeft = 0;
    JumpToTime(TIME_FOREVER);
    EXPECT_EQ(WaveView.CursorTime, TIME_FOREVER);
    WaveView.Scale = 0;
    JumpToTime(TIME_FOREVER);
    EXPECT_EQ(WaveView.ViewLeft, TIME_FOREVER - 1000);
}

TEST_F(Jump, UpdatesTheReadOutInAnyCase) {
    JumpToTime(70);
    EXPECT_STREQ(PromptText, "Time = 70 ps ");
    SetPrompt("something else");
    JumpToTime(70);
    EXPECT_STREQ(PromptText, "Time = 70 ps ");
}

TEST_F(Jump, TakesTheTimeSelectionAwayOnlyWhenTheCursorMoves) {
    WaveView.SelectActive = true;
    JumpToTime(0);
    EXPECT_TRUE(WaveView.SelectActive);
    JumpToTime(10);
    EXPECT_FALSE(WaveView.SelectActive);
}

TEST_F(Jump, TakesWhatLiesOverTheWavesAlong) {
    InitOverlay();
    DrawOverlay(true);
    JumpToTime(70);
    EXPECT_EQ(Overlay.cursorX, 70);
    PlaceMark();
    EXPECT_EQ(Overlay.markX, 70);
    EXPECT_TRUE(Overlay.overlayOn);
}

// --- the commands ---------------------------------------------------------------------------------

TEST_F(Jump, ToTheStartAndTheEndOfTheDocument) {
    Settings.EndTime = 4000;
    EXPECT_EQ(After(COMMAND_TO_START, 700), 0u);
    EXPECT_EQ(After(COMMAND_TO_END, 700), 4000u);
}

TEST_F(Jump, ToTheEndOfTheSelectedRow) {
    Settings.EndTime = 4000;
    Row("A", {{0, 100}, {1, 230}});
    EXPECT_EQ(After(COMMAND_TO_END, 700), 330u);
    PatternFromId(1)->delay = 20;
    EXPECT_EQ(After(COMMAND_TO_END, 700), 350u);
}

TEST_F(Jump, ByTicks) {
    EXPECT_EQ(After(COMMAND_TICK_LEFT, 700), 690u);
    EXPECT_EQ(After(COMMAND_TICK_RIGHT, 700), 710u);
    EXPECT_EQ(After(COMMAND_TEN_LEFT, 700), 600u);
    EXPECT_EQ(After(COMMAND_TEN_RIGHT, 700), 800u);
}

TEST_F(Jump, ByTicksStopsAtTheEndsOfTheSpan) {
    EXPECT_EQ(After(COMMAND_TICK_LEFT, 7), 0u);
    EXPECT_EQ(After(COMMAND_TEN_LEFT, 70), 0u);
    EXPECT_EQ(After(COMMAND_TICK_RIGHT, 4995), 5000u);
    EXPECT_EQ(After(COMMAND_TEN_RIGHT, 4995), 5000u);
    EXPECT_EQ(After(COMMAND_TICK_RIGHT, TIME_FOREVER), 5000u);
    WaveView.SpanEnd = TIME_FOREVER;
    WaveView.TickMinor = 0x80000000;
    EXPECT_EQ(After(COMMAND_TEN_RIGHT, 5), TIME_FOREVER);
    EXPECT_EQ(After(COMMAND_TEN_LEFT, TIME_FOREVER), 0u);
}

TEST_F(Jump, ToATimeThatIsAskedFor) {
    HeadlessDialogs.textAnswers = {"1.5 ns"};
    EXPECT_EQ(After(COMMAND_TO_TIME, 1234), 1500u);
    EXPECT_EQ(HeadlessDialogs.textQuestions, std::vector<std::string>{"Jump To Time:"});
    EXPECT_EQ(HeadlessDialogs.textStarts, std::vector<std::string>{TimeFormat(1234)});
    EXPECT_EQ(HeadlessDialogs.textSizes, std::vector<int>{31});
}

TEST_F(Jump, ToTextWithoutANumberIsToZero) {
    HeadlessDialogs.textAnswers = {"nowhere"};
    EXPECT_EQ(After(COMMAND_TO_TIME, 700), 0u);
}

TEST_F(Jump, ToATimeCanBeCancelled) {
    EXPECT_EQ(After(COMMAND_TO_TIME, 700), 700u);
}

TEST_F(Jump, ToATimeOffersTheLongestTimeThatItUnderstands) {
    WaveView.SpanEnd = TIME_FOREVER;
    Settings.Decimals = 3;
    WaveView.CursorTime = TIME_FOREVER;
    DispatchCommand(COMMAND_TO_TIME);
    ASSERT_EQ(HeadlessDialogs.textStarts.size(), 1u);
    HeadlessDialogs.textAnswers.push_back(HeadlessDialogs.textStarts[0]);
    EXPECT_EQ(After(COMMAND_TO_TIME, 5), TimeParse(TimeFormat(TIME_FOREVER)));
}

// --- the next change ------------------------------------------------------------------------------

TEST_F(Jump, ToTheNextChangeOfTheSelectedRow) {
    Row("A", {{0, 100}, {1, 50}, {0, 200}});
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 0), 100u);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 99), 100u);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 100), 150u);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 150), 350u);
}

TEST_F(Jump, ToTheNextChangePassesSegmentsOfTheSameLevel) {
    Row("A", {{0, 100}, {0, 50}, {0, 25}, {1, 200}});
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 10), 175u);
}

TEST_F(Jump, ToTheNextChangeStaysBehindTheEndOfTheRow) {
    Row("A", {{0, 100}, {1, 50}});
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 150), 150u);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 900), 900u);
}

TEST_F(Jump, ToTheNextChangeWithoutARowOrItemsDoesNothing) {
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 70), 70u);
    Row("EMPTY", {});
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 70), 70u);
}

TEST_F(Jump, ToTheNextChangeStopsAtTheEndOfTheSpan) {
    Row("A", {{0, TIME_FOREVER}});
    WaveView.SpanEnd = 5000;
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 70), 5000u);
}

TEST_F(Jump, ToTheNextChangeGoesInsideNestedPatterns) {
    uint16_t inner = MakePattern("INNER", {{0, 10}, {1, 10}});
    uint16_t id = MakePattern("A");
    AddReference(id, {.id = inner, .repeat = 4});
    ShowWaveByName("A");
    SelectRowOnly(0, true);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 25), 30u);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 30), 40u);
}

TEST_F(Jump, ToTheNextChangeSeesTheClockOnlyOutsideEditMode) {
    uint16_t id = Row("A", {{1, 4}, {0, 4}});
    PatternFromId(id)->setFormat(2);
    PatternFromId(id)->period = 20;
    PatternFromId(id)->duty = 50;
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 0), 10u);
    DispatchCommand(COMMAND_EDIT_MODE);
    SelectRowOnly(0, true);
    EXPECT_EQ(After(COMMAND_NEXT_CHANGE, 0), 80u);
}

// --- rows -----------------------------------------------------------------------------------------

TEST_F(Jump, UpAndDownMoveTheSelectedRow) {
    Rows(5);
    SelectRowOnly(2, true);
    EXPECT_EQ(RowAfter(COMMAND_ROW_UP), 1u);
    EXPECT_EQ(RowAfter(COMMAND_ROW_DOWN), 2u);
    EXPECT_TRUE(WaveRows[2].highlighted());
    EXPECT_FALSE(WaveRows[1].highlighted());
}

TEST_F(Jump, UpAndDownStopAtTheEndsOfTheList) {
    Rows(3);
    SelectRowOnly(0, true);
    EXPECT_EQ(RowAfter(COMMAND_ROW_UP), 0u);
    SelectRowOnly(2, true);
    EXPECT_EQ(RowAfter(COMMAND_ROW_DOWN), 2u);
}

TEST_F(Jump, UpGoesFromTheFirstAndDownFromTheLastOfSeveralRows) {
    Rows(9);
    for (uint32_t row : {3, 4, 5}) WaveRows[row].setHighlighted(true);
    WaveRows[8].setHighlighted(false);
    EXPECT_EQ(RowAfter(COMMAND_ROW_UP), 2u);
    for (uint32_t row : {3, 4, 5}) WaveRows[row].setHighlighted(true);
    EXPECT_EQ(RowAfter(COMMAND_ROW_DOWN), 6u);
}

TEST_F(Jump, WithoutASelectionUpStartsAtTheTopAndDownAtTheBottomOfThePage) {
    Rows(60);
    SelectRowHighlight(NO_ROW, true);
    ScrollRowsTo(10, false);
    EXPECT_EQ(RowAfter(COMMAND_ROW_UP), 9u);
    SelectRowHighlight(NO_ROW, true);
    ScrollRowsTo(0, false);
    EXPECT_EQ(RowAfter(COMMAND_ROW_DOWN), 31u);
    EXPECT_EQ(WaveView.TopRow, 30u);
}

TEST_F(Jump, WithoutASelectionDownInAShortListSelectsTheLastRow) {
    Rows(3);
    SelectRowHighlight(NO_ROW, true);
    EXPECT_EQ(RowAfter(COMMAND_ROW_DOWN), 2u);
}

TEST_F(Jump, UpScrollsTheRowIntoView) {
    Rows(60);
    ScrollRowsTo(20, false);
    SelectRowOnly(20, true);
    EXPECT_EQ(RowAfter(COMMAND_ROW_UP), 19u);
    EXPECT_EQ(WaveView.TopRow, 19u);
}

TEST_F(Jump, UpAndDownInAnEmptyListDoNothing) {
    DispatchCommand(COMMAND_ROW_UP);
    DispatchCommand(COMMAND_ROW_DOWN);
    EXPECT_EQ(WaveView.RowCount, 0u);
    EXPECT_GE(WaveView.SelectRow, WaveView.RowCount);
}

// --- the mark -------------------------------------------------------------------------------------

TEST_F(Jump, ToTheMarkThatWasPlaced) {
    WaveView.CursorTime = 300;
    DispatchCommand(COMMAND_PLACE_MARK);
    EXPECT_TRUE(WaveView.MarkActive);
    EXPECT_EQ(WaveView.MarkTime, 300u);
    EXPECT_EQ(After(COMMAND_TO_MARKER, 4900), 300u);
    EXPECT_STREQ(PromptText, "Time = 300 ps - Delta = 0 ps ");
}

TEST_F(Jump, TheReadOutTellsTheDistanceToAMarkBehindTheCursor) {
    WaveView.CursorTime = 15;
    DispatchCommand(COMMAND_PLACE_MARK);
    JumpToTime(10);
    EXPECT_STREQ(PromptText, "Time = 10 ps - Delta= -5 ps ");
    JumpToTime(17);
    EXPECT_STREQ(PromptText, "Time = 17 ps - Delta = 2 ps ");
}

TEST_F(Jump, HidingTheMarkTakesItToTheCursor) {
    WaveView.CursorTime = 300;
    DispatchCommand(COMMAND_PLACE_MARK);
    JumpToTime(500);
    DispatchCommand(COMMAND_HIDE_MARK);
    EXPECT_FALSE(WaveView.MarkActive);
    EXPECT_EQ(WaveView.MarkTime, 500u);
    EXPECT_STREQ(PromptText, "Time = 500 ps ");
}

TEST_F(Jump, AJumpKeepsTheModeAndEndsAViewCommand) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ZOOM_IN);
    DispatchCommand(COMMAND_TICK_RIGHT);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_EQ(WaveView.CursorTime, 10u);
}
