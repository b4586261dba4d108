#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/selection_fixture.h"

// --- references -----------------------------------------------------------------------------------

TEST_F(Selection, AClickGoesIntoTheReference) {
    uint16_t a = around({part()});
    EXPECT_EQ(click(a, 120), "3 100-140@A:1 110-140@$P:1");
    EXPECT_EQ(EditSelection.SelDepth, 2u);
    EXPECT_EQ(SelBase(), 100u);
    EXPECT_EQ(LocalTime(120), 20u);
    EXPECT_STREQ(SelectionRoot()->name(), "A");
    EXPECT_STREQ(SelectedPattern()->name(), "$P");
    EXPECT_EQ(click(a, 105), "3 100-140@A:1 100-110@$P:0") << "nothing of the last search is left";
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
    EXPECT_EQ(select(a, 150, 190), "4 100-300@A:1#1") << "just as long as one";
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
    EXPECT_EQ(EditSelection.SelOffset, 0u);
    EXPECT_EQ(items(a), "0:100 ref 1:100");
    AddTransition(a, 0, 100);
    EXPECT_EQ(select(a, 201, 370), "6 220-370@A:2");
    EXPECT_EQ(EditSelection.SelItems, 2u);
}

TEST_F(Selection, ASpanFromReferenceToReferenceSnapsAtBothEnds) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {part(), 1, 3});
    AddReference(a, {part("$Q"), 1, 3});
    AddTransition(a, 1, 100);
    EXPECT_EQ(select(a, 150, 260), "6 100-340@A:1");
    EXPECT_EQ(EditSelection.SelItems, 2u);
    EXPECT_EQ(select(a, 150, 239), "4 100-220@A:1");
}

TEST_F(Selection, ASpanThatSnapsBackToOneLevelIsThatLevel) {
    uint16_t a = MakePattern("A", {{1, 70}, {0, 100}});
    AddReference(a, {part(), 1, 3});
    EXPECT_EQ(select(a, 120, 189), "3 70-170@A:1");
    EXPECT_EQ(EditSelection.SelItems, 1u);
    EXPECT_EQ(select(a, 120, 190), "6 120-290@A:1");
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

TEST_F(Selection, AnEmptyReferenceTakesNoTimeHoweverOftenItRepeats) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {MakePattern("$E"), 1, REPEAT_FOREVER});
    AddTransition(a, 1, 100);
    EXPECT_EQ(select(a, 150, 150), "3 100-200@A:2");
    EXPECT_EQ(select(a, 50, 150), "6 50-150@A:0");
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
