#include "display/wave_view.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/selection_fixture.h"

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

TEST_F(Selection, TheParentOfAReferenceInFrontOfOthersIsTheWholePattern) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part()});
    AddTransition(a, 0, 100);
    select(a, 20, 20);
    EXPECT_EQ(SelectParent(), SEL_PATTERN);
    EXPECT_EQ(SelectParent(), SEL_WHOLE);
    EXPECT_EQ(selected(), "2 0-140@A:0");
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

TEST_F(Selection, TheUnitsOfAllLevelsCountInTheBase) {
    uint16_t middle = MakePattern("$M", {{0, 5}});
    AddReference(middle, {part("$I"), 3, 2});
    uint16_t a = MakePattern("A", {{0, 10}});
    AddReference(a, {middle, 2, 2});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 10;
    // The middle's repetitions take 245 units of 20 from 100 on. In the second, its reference begins 100
    // later and takes 40 units of 60 for a repetition.
    EXPECT_EQ(select(a, 8000, 8000), "3 100-9900@A:1#1 5100-9900@$M:1#1 7500-8100@$I:0");
    EXPECT_EQ(EditSelection.SelScale, 60u);
    EXPECT_EQ(SelBase(), 7500u);
    EXPECT_EQ(LocalTime(8100), 10u);
}

TEST_F(Selection, AReferenceToAnotherPatternEndsThePath) {
    uint16_t p = part(), q = part("$Q");
    uint16_t a = around({p});
    select(a, 120, 120);
    DeleteItem(PatternFromId(a), 1);
    InsertReference(PatternFromId(a), PatternKind::Plain, 1, q, 1, 2, 0, 0, 0);
    ValidateDurations();
    RebuildFrames(0);
    EXPECT_EQ(selected(), "4 100-180@A:1");
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

TEST_F(Selection, WhereAPatternOnThePathIsGoneThereIsNoSelection) {
    uint16_t p = MakePattern("", {{0, 10}, {1, 30}});
    uint16_t a = around({p});
    select(a, 120, 120);
    ASSERT_EQ(EditSelection.SelDepth, 2u);
    uint32_t place = PatternTable[p];
    PatternTable[p] = 0;
    RebuildFrames(0);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    PatternTable[p] = place;
    select(a, 120, 120);
    PatternTable[a] = 0;
    EXPECT_EQ(SelBase(), 100u) << "the frame still tells where it was";
    EXPECT_EQ(SelectParent(), SEL_NONE);
    EXPECT_EQ(SelectionRoot(), nullptr);
}

TEST_F(Selection, TheBaseIsWhereTheFrameWasWhereItsReferenceIsGone) {
    uint16_t a = around({MakePattern("", {{0, 10}, {1, 30}}), 1, 3});
    select(a, 160, 160);
    ASSERT_EQ(SelBase(), 140u) << "in the second repetition";
    // First a level stands in the reference's place, then nothing.
    for (int i = 0; i < 2; i++) {
        DeleteItem(PatternFromId(a), 1);
        EXPECT_EQ(SelBase(), 100u);
    }
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
