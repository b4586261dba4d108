#include "config/settings.h"
#include "display/wave_view.h"
#include "editlog/edit_log.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/selection_fixture.h"

// --- pulses and spans of data ---------------------------------------------------------------------

TEST_F(Selection, AClickInsideALevelSelectsIt) {
    uint16_t a = threeLevels();
    EXPECT_EQ(click(a, 150), "3 100-200@A:1");
    EXPECT_EQ(EditSelection.SelValue, 1u);
    EXPECT_EQ(EditSelection.SelOffset, 50u);
    EXPECT_EQ(EditSelection.SelScale, 1u);
    EXPECT_EQ(EditSelection.SelRootUnit, 1u);
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    EXPECT_EQ(click(a, 10), "3 0-100@A:0");
    EXPECT_EQ(EditSelection.SelValue, 0u);
    EXPECT_EQ(click(a, 290), "3 200-300@A:2");
}

TEST_F(Selection, ARangeThatTouchesAnEndOfAnItemIsTheItem) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 100, 150), "3 100-200@A:1");
    EXPECT_EQ(select(a, 150, 200), "3 100-200@A:1");
    EXPECT_EQ(select(a, 200, 100), "3 100-200@A:1");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(Selection, ARangeOverItemsIsASpan) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 50, 200), "6 50-200@A:0");
    EXPECT_EQ(EditSelection.SelItems, 2u);
    EXPECT_EQ(EditSelection.SelOffset, 50u);
    EXPECT_EQ(select(a, 250, 100), "6 100-250@A:1");
    EXPECT_EQ(EditSelection.SelItems, 2u);
    EXPECT_EQ(EditSelection.SelOffset, 0u);
    EXPECT_EQ(select(a, 1, 299), "6 1-299@A:0");
    EXPECT_EQ(EditSelection.SelItems, 3u);
    click(a, 150);
    EXPECT_EQ(EditSelection.SelItems, 1u);
}

TEST_F(Selection, EverySelectionBeginsWithoutAnOffset) {
    uint16_t a = threeLevels();
    click(a, 150);
    EXPECT_EQ(EditSelection.SelOffset, 50u);
    select(a, 0, 300);
    EXPECT_EQ(EditSelection.SelOffset, 0u);
}

TEST_F(Selection, TheWholePatternIsSelectedAsSuch) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 0, 300), "2 0-300@A:0");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    EXPECT_EQ(select(a, 0, TIME_FOREVER), "2 0-300@A:0");
    EXPECT_EQ(select(a, 1, 300), "6 1-300@A:0");
    EXPECT_EQ(select(a, 0, 299), "6 0-299@A:0");
}

TEST_F(Selection, AStretchInsideALevelBecomesAPulse) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 120, 150), "3 120-150@A:2");
    EXPECT_EQ(items(a), "0:100 1:20 0:30 1:50 0:100");
    EXPECT_EQ(EditSelection.SelValue, 0u);
    EXPECT_TRUE(PatternFromId(a)->durationValid());
    LogEndAction();
    EXPECT_TRUE(LogAtMark());
}

TEST_F(Selection, ANewPulseOfABusHasTheNextValue) {
    uint16_t bus = MakePattern("D[7:0]", {{255, 100}, {3, 100}});
    EXPECT_EQ(select(bus, 20, 40), "3 20-40@D[7:0]:1");
    EXPECT_EQ(items(bus), "255:20 0:20 255:60 3:100");
}

TEST_F(Selection, WhatIsInFrontOfTheDelayCountsAsItsEnd) {
    uint16_t a = threeLevels();
    PatternFromId(a)->delay = 1000;
    EXPECT_EQ(select(a, 10, 20), "3 1000-1100@A:0");
    EXPECT_EQ(select(a, 10, 1300), "2 1000-1300@A:0");
    EXPECT_EQ(select(a, 10, 1150), "6 1000-1150@A:0");
    EXPECT_EQ(click(a, 999), "1 1000-1000@A:0");
    EXPECT_EQ(SelBase(), 1000u);
    EXPECT_EQ(LocalTime(1150), 150u);
    EXPECT_EQ(LocalTime(10), 0u);
}

TEST_F(Selection, InFrontOfTheDelayTheFirstReferenceIsEntered) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 1, 3});
    AddTransition(a, 0, 100);
    PatternFromId(a)->delay = 1000;
    EXPECT_EQ(select(a, 10, 20), "3 1000-1120@A:0 1000-1010@$P:0");
}

TEST_F(Selection, AClockMakesTheUnit) {
    uint16_t a = threeLevels();
    Settings.ClockMultiplier = 5;
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->setClock(1);
    pattern->period = 2;
    pattern->delay = 7;
    EXPECT_EQ(select(a, 1507, 1507), "3 1007-2007@A:1");
    EXPECT_EQ(EditSelection.SelScale, 10u);
    EXPECT_EQ(EditSelection.SelRootUnit, 10u);
    EXPECT_EQ(LocalTime(1507), 150u);
    EXPECT_EQ(select(a, 1107, 1207), "3 1107-1207@A:2");
    EXPECT_EQ(items(a), "0:100 1:10 0:10 1:80 0:100");
}

TEST_F(Selection, BetweenTwoUnitsThereIsNothingToSplit) {
    uint16_t a = threeLevels();
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 10;
    EXPECT_EQ(select(a, 1022, 1028), "3 1000-2000@A:1");
    EXPECT_EQ(select(a, 1004, 1058), "3 1000-2000@A:1");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(Selection, APatternWithoutAPeriodTakesNoTimeAndIsSurvived) {
    uint16_t a = threeLevels();
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 0;
    EXPECT_EQ(click(a, 0), "1 0-0@A:3");
    EXPECT_EQ(select(a, 0, 0), "2 0-0@A:0");
    EXPECT_EQ(select(a, 50, 70), "0");
    EXPECT_EQ(LocalTime(50), 0u);
}

TEST_F(Selection, AnItemOfNoLengthIsPassed) {
    uint16_t a = MakePattern("A", {{0, 0}, {1, 100}, {0, 0}, {1, 50}});
    EXPECT_EQ(select(a, 0, 40), "3 0-100@A:1");
    EXPECT_EQ(select(a, 100, 120), "3 100-150@A:3");
    EXPECT_EQ(select(a, 90, 150), "6 90-150@A:1");
    EXPECT_EQ(EditSelection.SelItems, 3u);
}

TEST_F(Selection, AnEmptyPatternIsSelectedWholeOrByItsEnd) {
    uint16_t a = MakePattern("A");
    PatternFromId(a)->delay = 20;
    EXPECT_EQ(click(a, 20), "1 20-20@A:0");
    EXPECT_EQ(select(a, 20, 20), "2 20-20@A:0");
    EXPECT_EQ(select(a, 5, 10), "2 20-20@A:0");
    EXPECT_EQ(click(a, 0), "1 20-20@A:0");
    EXPECT_EQ(select(a, 0, TIME_FOREVER), "2 20-20@A:0");
    EXPECT_EQ(SelectParent(), SEL_WHOLE);
}

// --- edges ----------------------------------------------------------------------------------------

TEST_F(Selection, AClickNearAnEdgeSelectsIt) {
    uint16_t a = threeLevels();
    for (TimeVal t : {97u, 100u, 103u}) EXPECT_EQ(click(a, t), "1 100-100@A:1") << t;
    EXPECT_EQ(click(a, 96), "3 0-100@A:0");
    EXPECT_EQ(click(a, 104), "3 100-200@A:1");
    EXPECT_EQ(click(a, 3), "1 0-0@A:0");
    EXPECT_EQ(click(a, 4), "3 0-100@A:0");
    EXPECT_EQ(click(a, 198), "1 200-200@A:2");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
}

TEST_F(Selection, TheSlackFollowsTheScale) {
    uint16_t a = threeLevels();
    WaveView.Scale = -2;
    EXPECT_EQ(click(a, 112), "1 100-100@A:1");
    EXPECT_EQ(click(a, 113), "3 100-200@A:1");
    WaveView.Scale = 1;
    EXPECT_EQ(click(a, 101), "1 100-100@A:1");
    EXPECT_EQ(click(a, 102), "3 100-200@A:1");
    WaveView.Scale = 2;
    EXPECT_EQ(click(a, 100), "1 100-100@A:1");
    EXPECT_EQ(click(a, 101), "3 100-200@A:1");
}

TEST_F(Selection, OnlyAClickHitsAnEdge) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 100, 100), "3 100-200@A:1");
    EXPECT_EQ(select(a, 99, 101, DRILL, CLICK), "6 99-101@A:0");
}

TEST_F(Selection, TheEndHasTheItemBehindTheLast) {
    uint16_t a = threeLevels();
    for (TimeVal t : {297u, 300u, 303u}) EXPECT_EQ(click(a, t), "1 300-300@A:3") << t;
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    EXPECT_EQ(click(a, 296), "3 200-300@A:2");
}

TEST_F(Selection, TheEndIsNoItemForADrag) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 300, 300), "0");
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
}

TEST_F(Selection, OneOfManyEdgesInASlackIsTheFirst) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 2}, {0, 2}, {1, 100}});
    EXPECT_EQ(click(a, 101), "1 100-100@A:1");
    EXPECT_EQ(click(a, 104), "1 102-102@A:2");
}

TEST_F(Selection, AnEdgeInsideAReferenceIsFoundWithItsPlace) {
    uint16_t a = around({part(), 2, 3});
    // Repetitions of 80 begin at 100, 180 and 260.
    EXPECT_EQ(click(a, 201), "1 200-200@$P:1#1");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    EXPECT_EQ(SelectedPattern()->name(), std::string("$P"));
    EXPECT_EQ(click(a, 182), "1 180-180@$P:0#1");
    EXPECT_EQ(click(a, 281), "1 280-280@$P:1#2");
    EXPECT_EQ(click(a, 102), "1 100-100@A:1");
    EXPECT_EQ(click(a, 339), "1 340-340@A:2");
}

TEST_F(Selection, TheEndOfARepetitionIsNoEdge) {
    uint16_t a = around({part(), 2, 3});
    EXPECT_EQ(click(a, 179), "3 100-340@A:1 120-180@$P:1");
}

TEST_F(Selection, WithoutDrillNoEdgeInsideIsHit) {
    uint16_t a = around({part(), 2, 3});
    EXPECT_EQ(click(a, 201, SHALLOW), "4 100-340@A:1#1");
    EXPECT_EQ(click(a, 98, SHALLOW), "1 100-100@A:1");
    EXPECT_EQ(click(a, 338, SHALLOW), "1 340-340@A:2");
}

TEST_F(Selection, AMissedEdgeDoesNotShiftWhatIsSelected) {
    uint16_t a = around({part(), 2, 3});
    EXPECT_EQ(click(a, 220), "3 100-340@A:1#1 200-260@$P:1");
    EXPECT_EQ(EditSelection.SelScale, 2u);
}

TEST_F(Selection, AnEdgeIsFoundPastEmptyReferences) {
    uint16_t empty = MakePattern("$E");
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {empty});
    AddTransition(a, 1, 100);
    EXPECT_EQ(click(a, 100), "1 100-100@A:1");
    EXPECT_EQ(click(a, 150), "3 100-200@A:2");
}

// --- behind the end -------------------------------------------------------------------------------

TEST_F(Selection, ARangeBehindTheEndMakesThePatternLonger) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 310, 350), "3 300-350@A:3");
    EXPECT_EQ(items(a), "0:100 1:100 0:100 1:50");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 350u);
}

TEST_F(Selection, WhatUsesALongerPatternGrowsWithIt) {
    uint16_t a = threeLevels();
    uint16_t b = MakePattern("B");
    AddReference(b, {a, 1, 2});
    ValidateDurations();
    EXPECT_EQ(PatternDuration(PatternFromId(b)), 600u);
    select(a, 310, 350);
    EXPECT_EQ(PatternDuration(PatternFromId(b)), 700u);
}

TEST_F(Selection, TheNewEndIsRoundedToTheUnit) {
    uint16_t a = MakePattern("A", {{0, 10}, {1, 10}});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 10;
    EXPECT_EQ(select(a, 210, 255), "3 200-260@A:2");
    EXPECT_EQ(items(a), "0:10 1:10 0:6");
    EXPECT_EQ(select(a, 261, 264), "0");
    EXPECT_EQ(items(a), "0:10 1:10 0:6");
}

TEST_F(Selection, WithADelayTheNewEndStaysInTheNewItem) {
    uint16_t a = MakePattern("A", {{0, 10}});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 10;
    pattern->delay = 3;
    EXPECT_EQ(select(a, 110, 120), "3 103-113@A:1");
}

TEST_F(Selection, AnItemNeverGrowsLongerThanItsField) {
    uint16_t a = MakePattern("A", {{0, 10}});
    EXPECT_EQ(select(a, TIME_FOREVER - 10, TIME_FOREVER), "3 10-2147483657@A:1");
    EXPECT_EQ(PatternFromId(a)->item(1).duration(), 0x7FFFFFFFu);
}
