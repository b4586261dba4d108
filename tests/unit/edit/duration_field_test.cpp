// What the duration field of the floating dialog writes.
#include "display/overlay.h"
#include "display/viewport.h"
#include "shell/reporting.h"
#include "unit/edit/field_fixture.h"

namespace {

class DurationField : public FieldFixture {};

TEST_F(DurationField, DurationByEnterWalksOnToTheNextItem) {
    bit();
    ASSERT_EQ(select(a, 5, 5), SEL_PULSE);
    ASSERT_TRUE(enter(EDIT_DURATION, "15"));
    EXPECT_EQ(items(a), "1:15 0:20 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 15-35");
    EXPECT_EQ(WaveView.SelectStart, 15U);
    EXPECT_EQ(WaveView.SelectEnd, 35U);
    EXPECT_EQ(WaveView.CursorTime, 15U) << "held within the selection";
    EXPECT_EQ(HeadlessEditDialog.focus, EDIT_DURATION);
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(20));
    EXPECT_EQ(PromptText, std::string("Time = ") + TimeFormat(15) + " ");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(DurationField, DurationByLeavingStaysOnTheItem) {
    bit();
    select(a, 15, 15);
    leave(EDIT_DURATION, "5");
    EXPECT_EQ(items(a), "1:10 0:5 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-15");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(DurationField, TheCursorIsHeldWithinTheSelection) {
    bit();
    select(a, 15, 15);
    WaveView.CursorTime = 29;
    leave(EDIT_DURATION, "5");
    EXPECT_EQ(WaveView.CursorTime, 15U);
    EXPECT_EQ(WaveView.SelectStart, 10U);
    EXPECT_EQ(WaveView.SelectEnd, 15U);
    EXPECT_FALSE(PatternFromId(a)->changed()) << "drawn";
}

TEST_F(DurationField, EnterInDurationOnTheLastItemStaysOnIt) {
    bit();
    select(a, 40, 40);
    enter(EDIT_DURATION, "40");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-70");
}

TEST_F(DurationField, ADurationIsAtLeastOneUnit) {
    for (const char *typed : {"0", "0 ns", "-0"}) {
        bit();
        select(a, 15, 15);
        leave(EDIT_DURATION, typed);
        EXPECT_EQ(items(a), "1:10 0:1 1:30") << typed;
        EXPECT_TRUE(undoGives(before));
    }
}

TEST_F(DurationField, ATextWithoutADigitIsNoEntry) {
    bit();
    for (const char *typed : {"", "  ", " \t ", "none", "-", "ns", "."}) {
        for (bool byEnter : {false, true}) {
            select(a, 15, 15);
            std::string shown = text(EDIT_DURATION), selected = frame();
            byEnter ? enter(EDIT_DURATION, typed) : leave(EDIT_DURATION, typed);
            EXPECT_EQ(text(EDIT_DURATION), shown) << typed;
            EXPECT_EQ(frame(), selected) << "and Enter does not walk on";
            EXPECT_EQ(HeadlessEditDialog.focus, byEnter ? EDIT_DURATION : 0);
            EXPECT_FALSE(EditDialog.FieldDirty);
        }
    }
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(DurationField, ADurationIsRoundedToUnitsHalvesUp) {
    uint16_t sub = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 4, .repeat = 1});
    AddTransition(a, 1, 8);
    for (auto [typed, units] : {std::pair{"21", 5}, {"22", 6}, {"25", 6}, {"1", 1}, {"2", 1}}) {
        ASSERT_EQ(select(a, 11, 11), SEL_PULSE);
        ASSERT_EQ(DeepestFrame().patternId, sub);
        leave(EDIT_DURATION, typed);
        EXPECT_EQ(items(sub), "1:" + std::to_string(units) + " 0:4") << typed;
        EXPECT_EQ(frame(), std::to_string(sub) + "/0 10-" + std::to_string(10 + 4 * units));
    }
}

TEST_F(DurationField, EnterWalksOnInAScaledPattern) {
    uint16_t sub = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 4});
    AddTransition(a, 1, 8);
    ASSERT_EQ(select(a, 11, 11), SEL_PULSE);
    enter(EDIT_DURATION, "24");
    EXPECT_EQ(frame(), std::to_string(sub) + "/1 34-50");
}

TEST_F(DurationField, EnterWalksOnToAPulseOfTwoUnits) {
    a = MakePattern("A", {{1, 10}, {0, 2}, {1, 30}});
    select(a, 5, 5);
    enter(EDIT_DURATION, "20");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 20-22");
}

TEST_F(DurationField, EnterWalksOverAPulseOfOneUnit) {
    // One beyond the end is the item behind it; that is meant.
    a = MakePattern("A", {{1, 10}, {0, 1}, {1, 30}});
    select(a, 5, 5);
    enter(EDIT_DURATION, "20");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 21-51");
}

TEST_F(DurationField, OfABusKeepsTheKeyboard) {
    bus();
    select(a, 5, 5);
    enter(EDIT_DURATION, "15");
    EXPECT_EQ(HeadlessEditDialog.focus, EDIT_DURATION) << "though the value would come first";
}

TEST_F(DurationField, InsideANamedPatternThatIsShownOpen) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .repeat = 2});
    Settings.ShowPatternWaveforms = 1;
    ValidateDurations();
    SelectRange(PatternFromId(a), 11, 11, 1, 0);
    ShowSelection();
    ASSERT_EQ(DeepestFrame().patternId, sub);
    enter(EDIT_DURATION, "5");
    EXPECT_EQ(items(sub), "1:5 0:4");
    EXPECT_EQ(frame(), std::to_string(sub) + "/1 15-19") << "it stays open";
}

TEST_F(DurationField, DurationInsideAReferenceIsSeenInAllRepetitions) {
    nested();
    // The second repetition's low part, from 30 to 38.
    ASSERT_EQ(select(a, 31, 31), SEL_PULSE);
    leave(EDIT_DURATION, "20");
    EXPECT_EQ(items(inner), "1:3 0:10");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 10U + 78 + 8);
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(DurationField, DurationInASharedPatternChangesAllItsUses) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    uint16_t b = MakePattern("B");
    for (uint16_t id : {a, b}) AddReference(id, {.id = sub});
    ASSERT_EQ(select(sub, 1, 1), SEL_PULSE);
    leave(EDIT_DURATION, "13");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 27U);
    EXPECT_EQ(PatternDuration(PatternFromId(b)), 17U);
}

TEST_F(DurationField, DurationOfAClockedNodeCountsPeriods) {
    a = MakePattern("A", {{1, 10}, {0, 20}});
    Settings.ClockMultiplier = 1;
    SetPatternParams(PatternFromId(a), 0, 0, static_cast<uint32_t>(SignalFormat::NRZ), 5, 50, 0);
    LogEndAction();
    ASSERT_EQ(select(a, 10, 10), SEL_PULSE);
    ASSERT_EQ(EditSelection.SelScale, 5U);
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(50));
    leave(EDIT_DURATION, "63");
    EXPECT_EQ(items(a), "1:13 0:20");
}

TEST_F(DurationField, ADurationIsHeldWithinItsField) {
    bit();
    select(a, 40, 40);
    leave(EDIT_DURATION, "4294967280");
    EXPECT_EQ(items(a), "1:10 0:20 1:2147483647");
    select(a, 40, 40);
    leave(EDIT_DURATION, "4294967280");
    EXPECT_EQ(actions(), 1) << "the second time nothing changes";
}

TEST_F(DurationField, TheSameDurationAgainLogsNothing) {
    bit();
    select(a, 15, 15);
    enter(EDIT_DURATION, "20");
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-60") << "but Enter walks on";
}

TEST_F(DurationField, AFrameWithItsMiddleAtThePanesEdgeIsNotScrolledTo) {
    a = MakePattern("A", {{1, 10}, {0, 20}, {1, 20}});
    WaveView.SpanEnd = 1000;
    WaveView.WavePaneWidth = 40;
    WaveView.Scale = 0;
    select(a, 15, 15);
    WaveView.ViewLeft = 0;
    DrawOverlay(true);
    enter(EDIT_DURATION, "20"); // on to 30 to 50
    EXPECT_EQ(WaveView.ViewLeft, 0U);
    leave(EDIT_DURATION, "40"); // 30 to 70
    EXPECT_NE(WaveView.ViewLeft, 0U);
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(Overlay.cursorX,
              static_cast<int32_t>(WaveView.CursorTime) - static_cast<int32_t>(WaveView.ViewLeft));
}

TEST_F(DurationField, AFrameBeyondThePaneIsScrolledTo) {
    bit();
    WaveView.SpanEnd = 1000;
    WaveView.WavePaneWidth = 40;
    WaveView.Scale = 0;
    select(a, 5, 5);
    WaveView.ViewLeft = 0;
    enter(EDIT_DURATION, "10"); // on to 10 to 30, whose middle is in view
    EXPECT_EQ(WaveView.ViewLeft, 0U);
    enter(EDIT_DURATION, "30"); // on to 40 to 70, whose middle is not
    EXPECT_EQ(WaveView.ViewLeft, 55U);
}

} // namespace
