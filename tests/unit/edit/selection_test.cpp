#include "edit/selection.h"

#include "config/settings.h"
#include "display/wave_view.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"

namespace {

constexpr int CLICK = 1;
constexpr int DRAG = 0;
constexpr int DRILL = 1;
constexpr int SHALLOW = 0;

// One pixel is one time unit, so that an edge is hit from 3 units away.
class Selection : public FreshStore {
protected:
    // Selects, and tells what is selected: the kind, and for each frame where it lies, in which pattern (by
    // its name, "-" without one) and item, and in which repetition if that is not the first.
    static std::string select(uint16_t id, TimeVal t1, TimeVal t2, int drill = DRILL, int pick = DRAG) {
        ValidateDurations();
        SelectRange(PatternFromId(id), t1, t2, drill, pick);
        return selected();
    }
    static std::string click(uint16_t id, TimeVal t, int drill = DRILL) {
        return select(id, t, t, drill, CLICK);
    }
    static std::string selected() {
        std::string text = std::to_string(EditSelection.SelKind);
        if (EditSelection.SelKind == SEL_NONE) return text;
        for (uint32_t i = 0; i < EditSelection.SelDepth; i++) {
            const SelFrame &frame = EditSelection.SelFrames[i];
            std::string name = PatternFromId(frame.patternId)->name();
            text += " " + std::to_string(frame.start) + "-" +
                    (frame.end == TIME_FOREVER ? "ever" : std::to_string(frame.end)) + "@" +
                    (name.empty() ? "-" : name) + ":" + std::to_string(frame.item);
            if (frame.repeatIndex) text += "#" + std::to_string(frame.repeatIndex);
        }
        return text;
    }
    static std::string items(uint16_t id) {
        const Pattern *pattern = PatternFromId(id);
        std::string text;
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            const PatternItem &item = pattern->item(i);
            text += (i ? " " : "") + (item.isReference() ? std::string("ref")
                                                         : std::to_string(item.value()) + ":" +
                                                               std::to_string(item.duration()));
        }
        return text;
    }
    // A node of three levels of 100: 0 to 100 low, to 200 high, to 300 low.
    static uint16_t threeLevels() { return MakePattern("A", {{0, 100}, {1, 100}, {0, 100}}); }
    // A pattern of 10 low and 30 high.
    static uint16_t part(const char *name = "$P") { return MakePattern(name, {{0, 10}, {1, 30}}); }
    // A node: 100 low, the part by `use`, 100 high.
    static uint16_t around(const Use &use) {
        uint16_t id = MakePattern("A", {{0, 100}});
        AddReference(id, use);
        AddTransition(id, 1, 100);
        return id;
    }
};

} // namespace

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

// --- references -----------------------------------------------------------------------------------

TEST_F(Selection, AClickGoesIntoTheReference) {
    uint16_t a = around({part()});
    EXPECT_EQ(click(a, 120), "3 100-140@A:1 110-140@$P:1");
    EXPECT_EQ(EditSelection.SelDepth, 2u);
    EXPECT_EQ(SelBase(), 100u);
    EXPECT_EQ(LocalTime(120), 20u);
    EXPECT_STREQ(SelectionRoot()->name(), "A");
    EXPECT_STREQ(SelectedPattern()->name(), "$P");
}

TEST_F(Selection, ANamedPatternIsOneThingWithoutDrill) {
    uint16_t a = around({part()});
    EXPECT_EQ(click(a, 120, SHALLOW), "4 100-140@A:1");
    EXPECT_EQ(select(a, 120, 130, SHALLOW), "4 100-140@A:1");
}

TEST_F(Selection, AnUnnamedPatternIsAlwaysEntered) {
    uint16_t a = around({MakePattern("", {{0, 10}, {1, 30}})});
    EXPECT_EQ(click(a, 120, SHALLOW), "3 100-140@A:1 110-140@-:1");
}

TEST_F(Selection, ALaterRepetitionIsRemembered) {
    uint16_t a = around({part(), 1, 5});
    EXPECT_EQ(select(a, 195, 195), "3 100-300@A:1#2 190-220@$P:1");
    EXPECT_EQ(SelBase(), 180u);
    EXPECT_EQ(LocalTime(195), 15u);
    EXPECT_EQ(select(a, 195, 205), "3 100-300@A:1#2 195-205@$P:2");
    EXPECT_EQ(items(PatternFromId(a)->item(1).patternId()), "0:10 1:5 0:10 1:15");
}

TEST_F(Selection, WhatCoversARepetitionIsTheReference) {
    uint16_t a = around({part(), 1, 5});
    EXPECT_EQ(select(a, 180, 220), "4 100-300@A:1#2");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    EXPECT_EQ(EditSelection.SelScale, 1u);
    EXPECT_EQ(select(a, 150, 195), "4 100-300@A:1#1");
    EXPECT_EQ(select(a, 100, 300), "4 100-300@A:1");
}

TEST_F(Selection, ASpanOverAllOfARepetitionGoesBackUp) {
    // One item fills the repetition, so that a click on it hits the whole of it.
    uint16_t one = MakePattern("$P", {{1, 40}});
    uint16_t a = around({one, 3, 5});
    EXPECT_EQ(click(a, 300), "4 100-700@A:1#1");
    EXPECT_EQ(EditSelection.SelScale, 1u);
    EXPECT_EQ(EditSelection.SelDepth, 1u);
}

TEST_F(Selection, ARangeAcrossTwoRepetitionsSelectsNothing) {
    uint16_t a = around({part(), 1, 5});
    EXPECT_EQ(select(a, 170, 200), "0");
    EXPECT_EQ(items(PatternFromId(a)->item(1).patternId()), "0:10 1:30");
}

TEST_F(Selection, InAScaledReferenceTheTimesFallBackToItsUnits) {
    uint16_t a = around({part(), 4, 2});
    // Repetitions of 160 from 100 and 260, with the edge at 140 and 300.
    EXPECT_EQ(select(a, 311, 350), "3 100-420@A:1#1 308-348@$P:2");
    EXPECT_EQ(EditSelection.SelScale, 4u);
    EXPECT_EQ(items(PatternFromId(a)->item(1).patternId()), "0:10 1:2 0:10 1:18");
    EXPECT_EQ(LocalTime(308), 12u);
}

TEST_F(Selection, LessThanAUnitOfAScaledReferenceIsAClick) {
    uint16_t a = around({part(), 4, 2});
    EXPECT_EQ(select(a, 313, 314), "3 100-420@A:1#1 300-420@$P:1");
    EXPECT_EQ(items(PatternFromId(a)->item(1).patternId()), "0:10 1:30");
}

TEST_F(Selection, ScalesOfALongWayDownMultiply) {
    uint16_t inner = part("$I");
    uint16_t middle = MakePattern("$M", {{0, 5}});
    AddReference(middle, {inner, 3, 2});
    uint16_t a = around({middle, 2, 2});
    // The middle takes 245 * 2 for a repetition; its reference begins at 5 * 2 in it, and takes 240 * 2.
    EXPECT_EQ(select(a, 900, 900), "3 100-1080@A:1#1 600-1080@$M:1#1 900-1080@$I:1");
    EXPECT_EQ(EditSelection.SelScale, 6u);
    EXPECT_EQ(SelBase(), 840u);
    EXPECT_EQ(LocalTime(906), 11u);
}

TEST_F(Selection, AnEndlessReferenceGivesItsRepetition) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {part(), 1, REPEAT_FOREVER});
    EXPECT_EQ(select(a, 4000100, 4000100), "3 100-ever@A:1#100000 4000100-4000110@$P:0");
    EXPECT_EQ(select(a, 1000015, 1000015), "3 100-ever@A:1#24997 999990-1000020@$P:1");
    EXPECT_EQ(select(a, 50, 4000100), "6 50-ever@A:0");
    EXPECT_EQ(select(a, 100, TIME_FOREVER), "4 100-ever@A:1");
    EXPECT_EQ(select(a, 0, TIME_FOREVER), "2 0-ever@A:0");
}

TEST_F(Selection, ACompositeTargetIsOneThing) {
    uint16_t bit = MakePattern("B", {{0, 10}, {1, 30}});
    uint16_t join = MakePattern("$C");
    AddReference(join, {bit}, PatternKind::Composite);
    uint16_t a = around({join, 1, 2});
    EXPECT_EQ(click(a, 150), "7 100-180@A:1#1");
    EXPECT_EQ(click(a, 150, SHALLOW), "7 100-180@A:1#1");
    EXPECT_EQ(select(a, 100, 180), "7 100-180@A:1");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
}

TEST_F(Selection, ACompositeWaveHasNoFrameInside) {
    uint16_t b0 = MakePattern("B0", {{0, 10}, {1, 30}}), b1 = MakePattern("B1", {{0, 40}});
    for (PatternKind kind : {PatternKind::Composite, PatternKind::Reference}) {
        uint16_t join = MakePattern(kind == PatternKind::Composite ? "J" : "R");
        AddReference(join, {b0}, kind);
        AddReference(join, {b1}, kind);
        std::string name = PatternFromId(join)->name();
        EXPECT_EQ(select(join, 5, 5), "7 0-40@" + name + ":0");
        EXPECT_EQ(select(join, 0, 40), "2 0-40@" + name + ":0");
    }
}

TEST_F(Selection, APatternOfOneReferenceIsThatReference) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 2, 3});
    EXPECT_EQ(select(a, 0, TIME_FOREVER), "4 0-240@A:0");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    PatternFromId(a)->delay = 50;
    EXPECT_EQ(select(a, 0, 290), "4 50-290@A:0");
}

TEST_F(Selection, APatternOfOneEmptyReferenceIsWhole) {
    uint16_t a = MakePattern("A");
    AddReference(a, {MakePattern("$E")});
    EXPECT_EQ(select(a, 0, TIME_FOREVER), "2 0-0@A:0");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
}

TEST_F(Selection, APatternOfOneEndlessReferenceIsThatReference) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 1, REPEAT_FOREVER});
    EXPECT_EQ(select(a, 0, TIME_FOREVER), "4 0-ever@A:0");
}

// --- spans that end in references -----------------------------------------------------------------

TEST_F(Selection, ASpanEndsAtTheNearerEndOfAReference) {
    uint16_t a = around({part(), 1, 3});
    // The reference takes 100 to 220, with repetitions of 40.
    EXPECT_EQ(select(a, 50, 119), "3 0-100@A:0");
    EXPECT_EQ(EditSelection.SelItems, 1u);
    EXPECT_EQ(EditSelection.SelValue, 0u);
    EXPECT_EQ(select(a, 50, 120), "6 50-220@A:0");
    EXPECT_EQ(EditSelection.SelItems, 2u);
    EXPECT_EQ(select(a, 50, 220), "6 50-220@A:0");
    EXPECT_EQ(select(a, 50, 221), "6 50-221@A:0");
    EXPECT_EQ(EditSelection.SelItems, 3u);
}

TEST_F(Selection, ASpanStartsAtTheNearerEndOfAReference) {
    uint16_t a = around({part(), 1, 3});
    EXPECT_EQ(select(a, 150, 270), "6 100-270@A:1");
    EXPECT_EQ(EditSelection.SelItems, 2u);
    EXPECT_EQ(EditSelection.SelOffset, 0u);
    EXPECT_EQ(select(a, 200, 270), "6 100-270@A:1");
    // Past the last half repetition it starts behind, and what remains lies in the last item.
    EXPECT_EQ(select(a, 201, 270), "3 220-320@A:2");
    EXPECT_EQ(items(a), "0:100 ref 1:100");
}

TEST_F(Selection, ASpanThatSnapsBackToOneReferenceIsThatReference) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 1, 3});
    AddReference(a, {part("$Q")});
    AddTransition(a, 1, 10);
    EXPECT_EQ(select(a, 50, 139), "4 0-120@A:0");
    EXPECT_EQ(EditSelection.SelItems, 1u);
    EXPECT_EQ(select(a, 50, 140), "6 0-160@A:0");
}

TEST_F(Selection, ASpanIntoAnEndlessReferenceTakesItWhole) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}});
    AddReference(a, {part(), 1, REPEAT_FOREVER});
    EXPECT_EQ(select(a, 50, 219), "6 50-200@A:0");
    EXPECT_EQ(EditSelection.SelItems, 2u);
    EXPECT_EQ(select(a, 50, 220), "6 50-ever@A:0");
}

TEST_F(Selection, AnEmptyReferenceInFrontIsPassed) {
    uint16_t a = MakePattern("A");
    AddReference(a, {MakePattern("$E")});
    AddTransition(a, 0, 100);
    AddTransition(a, 1, 100);
    EXPECT_EQ(select(a, 50, 50), "3 0-100@A:1");
    EXPECT_EQ(select(a, 20, 30), "3 20-30@A:2");
}

TEST_F(Selection, AnEmptyReferenceInsideASpanStaysInIt) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {MakePattern("$E")});
    AddTransition(a, 1, 100);
    AddTransition(a, 0, 100);
    EXPECT_EQ(select(a, 50, 150), "6 50-150@A:0");
    EXPECT_EQ(EditSelection.SelItems, 3u);
}

TEST_F(Selection, AReferenceThatNeverRepeatsIsPassed) {
    uint16_t a = around({part()});
    PatternFromId(a)->item(1).word1 &= 0xFFFF;
    PatternFromId(a)->setDurationValid(false);
    EXPECT_EQ(select(a, 150, 150), "3 100-200@A:2");
}

TEST_F(Selection, AReferenceToNothingTakesNoTime) {
    uint16_t a = around({part()});
    ValidateDurations();
    PatternFromId(a)->item(1).word1 = 77 | 1u << 16;
    SelectRange(PatternFromId(a), 120, 120, DRILL, CLICK);
    EXPECT_EQ(selected(), "3 100-200@A:2");
}

// --- behind the end -------------------------------------------------------------------------------

TEST_F(Selection, ARangeBehindTheEndMakesThePatternLonger) {
    uint16_t a = threeLevels();
    EXPECT_EQ(select(a, 310, 350), "3 300-350@A:3");
    EXPECT_EQ(items(a), "0:100 1:100 0:100 1:50");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 350u);
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

// --- depth ----------------------------------------------------------------------------------------

TEST_F(Selection, ANestDeeperThanTheFramesStopsAtTheLastOne) {
    uint16_t inner = part("$D");
    for (int i = 0; i < 30; i++) {
        uint16_t outer = MakePattern("", {{0, 1}});
        AddReference(outer, {inner});
        inner = outer;
    }
    uint16_t a = around({inner});
    select(a, 150, 150);
    EXPECT_EQ(EditSelection.SelDepth, MAX_FRAMES);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(DeepestFrame().start, 119u);
    EXPECT_EQ(DeepestFrame().end, 170u);
    RebuildFrames(0);
    EXPECT_EQ(EditSelection.SelDepth, MAX_FRAMES);
    EXPECT_EQ(DeepestFrame().start, 119u);
    for (uint32_t depth = MAX_FRAMES - 1; depth > 0; depth--) {
        EXPECT_EQ(SelectParent(), SEL_PATTERN);
        EXPECT_EQ(EditSelection.SelDepth, depth);
    }
    EXPECT_EQ(SelectParent(), SEL_WHOLE);
}

TEST_F(Selection, TimesBeyondTheEndSaturate) {
    uint16_t big = MakePattern("$B", {{0, 0x7FFFFFFF}, {1, 0x7FFFFFFF}});
    uint16_t a = around({big, 60000, 60000});
    EXPECT_EQ(select(a, 4000000000, 4000000000), "3 100-ever@A:1 100-ever@$B:0");
    RebuildFrames(1);
    EXPECT_EQ(selected(), "3 100-ever@A:1 4294967295-ever@$B:1");
    EXPECT_EQ(select(a, 50, TIME_FOREVER), "6 50-ever@A:0");
}

// --- the way up -----------------------------------------------------------------------------------

TEST_F(Selection, TheParentOfAnItemIsItsReference) {
    uint16_t a = around({part(), 3, 2});
    select(a, 300, 300);
    EXPECT_EQ(selected(), "3 100-340@A:1#1 250-340@$P:1");
    EXPECT_EQ(SelectParent(), SEL_PATTERN);
    EXPECT_EQ(selected(), "4 100-340@A:1#1");
    EXPECT_EQ(EditSelection.SelScale, 1u);
    EXPECT_EQ(SelectParent(), SEL_WHOLE);
    EXPECT_EQ(selected(), "2 0-440@A:0");
    EXPECT_EQ(SelectParent(), SEL_WHOLE);
}

TEST_F(Selection, TheParentOfALoneReferenceIsNothing) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part(), 3, 2});
    select(a, 100, 100);
    EXPECT_EQ(SelectParent(), SEL_PATTERN);
    EXPECT_EQ(SelectParent(), SEL_NONE);
    EXPECT_EQ(SelectParent(), SEL_NONE);
}

TEST_F(Selection, TheParentOfALoneLevelIsTheWholePattern) {
    uint16_t a = MakePattern("A", {{0, 100}});
    select(a, 20, 20);
    EXPECT_EQ(selected(), "3 0-100@A:0");
    EXPECT_EQ(SelectParent(), SEL_WHOLE);
}

TEST_F(Selection, WithoutASelectionThereIsNoParent) {
    EXPECT_EQ(SelectParent(), SEL_NONE);
    SelectRange(nullptr, 0, 1, DRILL, CLICK);
    EXPECT_EQ(SelectParent(), SEL_NONE);
    EXPECT_EQ(SelectedPattern(), nullptr);
    EXPECT_EQ(SelectionRoot(), nullptr);
    EXPECT_EQ(SelBase(), 0u);
}

// --- frames after an edit -------------------------------------------------------------------------

TEST_F(Selection, TheFramesFollowAnEdit) {
    uint16_t p = part();
    uint16_t a = around({p, 2, 3});
    select(a, 300, 300);
    EXPECT_EQ(selected(), "3 100-340@A:1#2 280-340@$P:1");
    SetItemDuration(PatternFromId(p), 0, 15);
    SetItemDuration(PatternFromId(a), 0, 200);
    ValidateDurations();
    RebuildFrames(0);
    EXPECT_EQ(selected(), "3 200-470@A:1#2 410-470@$P:1");
    EXPECT_EQ(EditSelection.SelScale, 2u);
    EXPECT_EQ(SelBase(), 380u);
    EXPECT_EQ(LocalTime(410), 15u);
    RebuildFrames(-1);
    EXPECT_EQ(selected(), "3 200-470@A:1#2 380-410@$P:0");
    EXPECT_EQ(EditSelection.SelValue, 0u);
}

TEST_F(Selection, AnItemBehindTheLastIsTheLast) {
    uint16_t a = threeLevels();
    click(a, 150);
    RebuildFrames(5);
    EXPECT_EQ(selected(), "3 200-300@A:2");
    RebuildFrames(-7);
    EXPECT_EQ(selected(), "3 0-100@A:0");
}

TEST_F(Selection, AReferenceInTheDeepestFrameScalesToo) {
    uint16_t a = around({part(), 3, 2});
    select(a, 300, 300);
    SelectParent();
    RebuildFrames(0);
    EXPECT_EQ(selected(), "4 100-340@A:1#1");
    EXPECT_EQ(EditSelection.SelScale, 3u);
    EXPECT_EQ(SelBase(), 0u);
}

TEST_F(Selection, AnEndlessReferenceStaysEndless) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {part(), 1, REPEAT_FOREVER});
    select(a, 1000, 1000);
    SelectParent();
    RebuildFrames(0);
    EXPECT_EQ(selected(), "4 100-ever@A:1#22");
}

TEST_F(Selection, FramesOfWhatIsGoneEndTheSelection) {
    uint16_t p = MakePattern("", {{0, 10}, {1, 30}});
    uint16_t a = around({p});
    select(a, 120, 120);
    EXPECT_EQ(EditSelection.SelDepth, 2u);
    // The reference gives way to a level: the path ends there.
    DeleteItem(PatternFromId(a), 1);
    ValidateDurations();
    RebuildFrames(0);
    EXPECT_EQ(selected(), "3 100-200@A:1");
    EXPECT_EQ(EditSelection.SelDepth, 1u);
    while (PatternFromId(a)->itemCount) DeleteItem(PatternFromId(a), 0);
    RebuildFrames(0);
    EXPECT_EQ(selected(), "0");
    EXPECT_EQ(SelectedPattern(), nullptr);
    select(a, 0, 0);
    PatternRelease(PatternFromId(a));
    EXPECT_EQ(SelectedPattern(), nullptr);
    EXPECT_EQ(SelectionRoot(), nullptr);
    EXPECT_EQ(SelectParent(), SEL_NONE);
    RebuildFrames(0);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
}

TEST_F(Selection, ClearingTakesTheFrameAwayToo) {
    uint16_t a = threeLevels();
    click(a, 150);
    WaveView.SelectActive = true;
    ClearSelection();
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_FALSE(WaveView.SelectActive);
}

TEST_F(Selection, SharedPatternsAreFoundInEachUse) {
    uint16_t p = part();
    uint16_t a = around({p});
    AddReference(a, {p});
    EXPECT_EQ(select(a, 250, 250), "3 240-280@A:3 250-280@$P:1");
    EXPECT_EQ(select(a, 255, 260), "3 240-280@A:3 255-260@$P:2");
    EXPECT_EQ(items(p), "0:10 1:5 0:5 1:20");
    EXPECT_EQ(select(a, 117, 117), "3 100-140@A:1 115-120@$P:2");
}

// --- texts and fields -----------------------------------------------------------------------------

TEST_F(Selection, ATextTellsEachKind) {
    uint16_t a = around({part(), 1, 3});
    EXPECT_EQ(SelectionText(), "Nothing Selected");
    click(a, 100);
    EXPECT_EQ(SelectionText(), "Selected Edge in Pattern A");
    select(a, 0, TIME_FOREVER);
    EXPECT_EQ(SelectionText(), "Selected Entire Pattern A");
    select(a, 50, 50);
    EXPECT_EQ(SelectionText(), "Selected Bit Pulse = Low");
    select(a, 300, 300);
    EXPECT_EQ(SelectionText(), "Selected Bit Pulse = High");
    select(a, 100, 220);
    EXPECT_EQ(SelectionText(), "Selected Pattern $P");
    select(a, 50, 300);
    EXPECT_EQ(SelectionText(), "Selected Interval in Pattern A");
    EditSelection.SelKind = SEL_STRETCH;
    EXPECT_EQ(SelectionText(), "Nothing Selected");
    EditSelection.SelKind = SEL_COMPOSITE;
    EXPECT_EQ(SelectionText(), "Selected Composite Bus");
}

TEST_F(Selection, AnUnnamedPatternIsTextedInBrackets) {
    uint16_t a = around({MakePattern("", {{0, 10}, {1, 30}, {0, 10}})});
    select(a, 100, 150);
    EXPECT_EQ(SelectionText(), "Selected Pattern (...)");
    select(a, 105, 125);
    EXPECT_EQ(SelectionText(), "Selected Interval in Pattern (...)");
    click(a, 110);
    EXPECT_EQ(SelectionText(), "Selected Edge in Pattern (...)");
}

TEST_F(Selection, AValueBeyondTheStateTableReadsAsItsLast) {
    uint16_t a = MakePattern("A", {{77, 100}, {0, 100}});
    select(a, 50, 50);
    std::string last = SelectionText();
    PatternFromId(a)->item(0).word1 = 100;
    select(a, 50, 50);
    EXPECT_EQ(SelectionText(), last);
    EXPECT_NE(last, "Selected Bit Pulse = Low");
}

TEST_F(Selection, TheValueOfABusIsInItsRadix) {
    uint16_t bus = MakePattern("D[7:0]", {{0xA5, 100}, {3, 100}});
    select(bus, 50, 50);
    char text[BUS_TEXT_SIZE];
    EXPECT_EQ(SelectionText(),
              std::string("Selected Bus Pulse = ") + FormatBusValue(0xA5, 8, text, sizeof text));
    Settings.BusRadix = 10;
    EXPECT_EQ(SelectionText(), "Selected Bus Pulse = 165");
}

namespace {

std::string Fields() {
    std::string text;
    if (SelectionHasDuration()) text += "duration ";
    if (SelectionHasValue()) text += "value ";
    if (SelectionHasScale()) text += "scale ";
    if (SelectionHasRepeat()) text += "repeat ";
    if (SelectionHasStates()) text += "states ";
    return text;
}

} // namespace

TEST_F(Selection, EachKindHasItsFields) {
    for (uint32_t width : {1u, 8u}) {
        uint16_t id = MakePattern(width == 1 ? "A" : "D[7:0]", {{0, 100}, {1, 100}});
        std::string level = width == 1 ? "scale repeat states " : "value scale repeat ";
        select(id, 50, 50);
        EXPECT_EQ(Fields(), width == 1 ? "duration states " : "duration value ");
        const std::string expected[] = {"", "", level, Fields(), "scale repeat ", "", level, "scale repeat "};
        for (uint16_t kind = SEL_NONE; kind <= SEL_COMPOSITE; kind++) {
            EditSelection.SelKind = kind;
            EXPECT_EQ(Fields(), expected[kind]) << kind << " of width " << width;
        }
    }
}
