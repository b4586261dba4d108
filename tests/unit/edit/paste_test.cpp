// Where a paste goes, and what it refuses.
#include "display/overlay.h"
#include "display/wave_view.h"
#include "edit/show_selection.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "unit/edit/clipboard_fixture.h"

namespace {

class PasteInto : public PasteFixture {};

TEST_F(PasteInto, AnEdgeInserts) {
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "1:10 5:6 0:20 1:30");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_EQ(PatternFromId(a)->duration, 66U);
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, TheEndEdgeAppends) {
    ASSERT_EQ(click(a, 60), SEL_EDGE);
    paste();
    EXPECT_EQ(items(a), "1:10 0:20 1:30 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, APulseIsReplaced) {
    ASSERT_EQ(select(a, 15, 15), SEL_PULSE);
    paste();
    EXPECT_EQ(items(a), "1:10 5:6 1:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ASpanIsReplacedBehindItsCutFirstItem) {
    ASSERT_EQ(select(a, 4, 20), SEL_SPAN);
    ASSERT_NE(EditSelection.SelOffset, 0U);
    paste();
    EXPECT_EQ(items(a), "1:4 5:6 0:10 1:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ASpanOfWholeItemsIsReplaced) {
    ASSERT_EQ(select(a, 10, 60), SEL_SPAN);
    ASSERT_EQ(EditSelection.SelOffset, 0U);
    paste();
    EXPECT_EQ(items(a), "1:10 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ASpanOfWholeItemsAtTheStartIsReplacedThere) {
    ASSERT_EQ(select(a, 0, 30), SEL_SPAN);
    paste();
    EXPECT_EQ(items(a), "5:6 1:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, WhatDoesNotFitThePatternAnyMoreIsNotTakenAway) {
    select(a, 15, 15);
    EditSelection.SelFrames[0].item = 9;
    paste();
    EXPECT_EQ(items(a), "1:10 0:20 1:30 5:6");
    EXPECT_TRUE(undoGives(before));
    select(a, 0, 30);
    EditSelection.SelFrames[0].end = 0;
    paste();
    EXPECT_EQ(items(a), "5:6 1:10 0:20 1:30") << "a span of no length";
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AWaveThatTakesNoTimeLosesAnItem) {
    uint16_t empty = MakePattern("$empty");
    uint16_t b = MakePattern("B");
    for (int i = 0; i < 2; i++) AddReference(b, {.id = empty});
    ASSERT_EQ(select(b, 0, 10), SEL_WHOLE);
    paste();
    EXPECT_EQ(items(b), "5:6 [" + std::to_string(empty) + " *1 #1]");
}

TEST_F(PasteInto, WhatAReplacedReferenceOwnedStaysForTheUndo) {
    uint16_t inner = MakePattern("", {{1, 3}, {0, 4}});
    uint16_t b = MakePattern("B", {{1, 10}});
    AddReference(b, {.id = inner, .repeat = 2});
    before = StoreText();
    ASSERT_EQ(select(b, 10, 24), SEL_PATTERN);
    paste();
    EXPECT_EQ(items(b), "1:10 5:6");
    EXPECT_EQ(items(inner), "1:3 0:4");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ThePictureAndWhatLiesOverItFollow) {
    DrawOverlay(true);
    WaveView.SelectActive = true;
    click(a, 10);
    static bool wasOn;
    wasOn = true;
    ExtendSpanHook = [](TimeVal) { wasOn = Overlay.overlayOn; };
    paste();
    ExtendSpanHook = nullptr;
    EXPECT_FALSE(wasOn) << "when the axis may become longer";
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_FALSE(PatternFromId(a)->changed()) << "drawn";
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
    ClipWidth = 2;
    click(a, 10);
    paste();
    EXPECT_TRUE(Overlay.overlayOn) << "after a message, too";
}

TEST_F(PasteInto, WithoutRoomNothingIsPastedAndWhatItWasToReplaceStays) {
    uint16_t source = MakePattern("S2", {{7, 1}, {5, 6}, {8, 6}, {7, 1}});
    ASSERT_EQ(select(source, 1, 13), SEL_SPAN);
    copy();
    // Room for one item more.
    uint16_t sub = MakePattern("$sub", {{1, 3}});
    uint16_t full = MakePattern("FULL");
    uint32_t room = (MAX_RECORD_SIZE - PatternFromId(full)->used()) / sizeof(PatternItem);
    for (uint32_t i = 0; i + 1 < room; i++) AddTransition(full, i == 1 ? 5 : i & 1, 10);
    before = StoreText();
    ASSERT_EQ(click(full, 10), SEL_EDGE);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_EQ(Headless.userErrors, Texts{"Pattern has too many items"});
    EXPECT_EQ(Headless.programErrors, Texts{}) << "the record is not to blame";
    EXPECT_EQ(EditLog.rPtr, 0);
    // In the place of something: the pulse goes, and comes back.
    AddTransition(full, 1, 10);
    before = StoreText();
    select(full, 15, 15);
    ASSERT_EQ(EditSelection.SelKind, SEL_PULSE);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(StoreText(), before);
    // A span that would have to be cut.
    ASSERT_EQ(select(full, 15, 28), SEL_SPAN);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(StoreText(), before);
    // A reference to a pattern.
    ASSERT_EQ(click(full, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(sub), 0);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PasteInto, WithoutAnIdForANestedPatternNothingIsPasted) {
    uint16_t inner = MakePattern("", {{1, 3}, {0, 4}});
    uint16_t source = MakePattern("S2", {{1, 5}});
    AddReference(source, {.id = inner, .repeat = 2});
    ASSERT_EQ(select(source, 0, 19), SEL_WHOLE);
    copy();
    while (HighestPatternId < MAX_PATTERNS - 1) MakePattern("");
    before = StoreText();
    select(a, 15, 15);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(Headless.userErrors, Texts{"Exceeding maximum number of patterns"});
}

TEST_F(PasteInto, ANestOf32Bits) {
    uint16_t inner = MakePattern("", {{0xDEADBEEF, 3}, {1, 4}}, 32);
    uint16_t source = MakePattern("S2[31:0]", {{1, 5}});
    AddReference(source, {.id = inner, .repeat = 2});
    ASSERT_EQ(select(source, 5, 19), SEL_PATTERN);
    copy();
    uint16_t target = MakePattern("T[31:0]", {{1, 5}});
    ASSERT_EQ(click(target, 5), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    uint16_t copied = PatternFromId(target)->item(1).patternId();
    EXPECT_EQ(items(copied), "3735928559:3 1:4");
    EXPECT_EQ(PatternFromId(copied)->width, 32);
}

TEST_F(PasteInto, AWholePatternIsReplaced) {
    ASSERT_EQ(select(a, 0, 60), SEL_WHOLE);
    paste();
    EXPECT_EQ(items(a), "5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AReferenceIsReplaced) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t b = MakePattern("B", {{1, 10}});
    AddReference(b, {.id = sub, .repeat = 2});
    before = StoreText();
    ASSERT_EQ(select(b, 10, 24), SEL_PATTERN);
    paste();
    EXPECT_EQ(items(b), "1:10 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ANestedPatternIsEditedInPlace) {
    uint16_t inner = MakePattern("", {{1, 4}, {0, 4}});
    uint16_t b = MakePattern("B", {{0, 10}});
    AddReference(b, {.id = inner, .scale = 2, .repeat = 2});
    AddTransition(b, 1, 1);
    before = StoreText();
    // The second half of the second repetition.
    ASSERT_EQ(select(b, 36, 36), SEL_PULSE);
    ASSERT_EQ(DeepestFrame().patternId, inner);
    ASSERT_EQ(DeepestFrame().item, 1);
    paste();
    EXPECT_EQ(items(inner), "1:4 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, EqualLevelsJoinAtBothSeams) {
    uint16_t source = MakePattern("S2", {{0, 1}, {1, 5}, {0, 6}, {1, 7}, {0, 1}});
    select(source, 1, 19);
    ASSERT_EQ(EditSelection.SelKind, SEL_SPAN);
    copy();
    uint16_t b = MakePattern("B", {{1, 10}, {1, 20}});
    ASSERT_EQ(click(b, 10), SEL_EDGE);
    before = StoreText();
    paste();
    EXPECT_EQ(items(b), "1:15 0:6 1:27");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AtTheStartOnlyTheLastSeamJoins) {
    uint16_t b = MakePattern("B", {{5, 10}, {5, 20}});
    ASSERT_EQ(click(b, 0), SEL_EDGE);
    paste();
    EXPECT_EQ(items(b), "5:16 5:20");
}

TEST_F(PasteInto, AnotherWidthIsRefusedAndNothingChanges) {
    uint16_t bus = MakePattern("BUS[7:0]", {{1, 10}, {2, 10}});
    before = StoreText();
    ASSERT_EQ(select(bus, 15, 15), SEL_PULSE);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Clipboard bit count not consistant");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE) << "the selection stands";
    EXPECT_EQ(actions(), 0);
}

TEST_F(PasteInto, NothingSelectedGetsNothing) {
    ClearSelection();
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(PasteInto, OnlyItsOwnKindChangesAnEmptyPattern) {
    // A channel of a composite that is pasted among levels stays one item of a sequence.
    uint16_t x = MakePattern("X", {{2, 50}});
    uint16_t c = MakePattern("C[1:0]");
    for (int i = 0; i < 2; i++) AddReference(c, {.id = x}, PatternKind::Composite);
    ValidateDurations();
    SelectRange(PatternFromId(c), 10, 20, 1, 0);
    ASSERT_EQ(EditSelection.SelKind, SEL_COMPOSITE);
    ShowSelection();
    copy();
    ClipWidth = 1;
    before = StoreText();
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(PatternFromId(a)->kind(), PatternKind::Plain);
    EXPECT_TRUE(undoGives(before));
    uint16_t b = MakePattern("B");
    ASSERT_EQ(click(b, 0), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(PatternFromId(b)->kind(), PatternKind::Composite);
}

TEST_F(PasteInto, AnUndoneAndRedonePasteIsTheSame) {
    click(a, 10);
    paste();
    std::string after = StoreText();
    EXPECT_TRUE(undoGives(before));
    EXPECT_EQ(LogRedo(), 1);
    FinishReplay();
    EXPECT_EQ(StoreText(), after);
}

// --- a reference to a pattern ---------------------------------------------------------------------

TEST_F(PasteInto, AReferenceToAPatternGoesToTheSelection) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    before = StoreText();
    ASSERT_EQ(select(a, 15, 15), SEL_PULSE);
    EXPECT_EQ(PasteAtSelection(sub), 1);
    LogEndAction();
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(sub) + " *1 #1] 1:30");
    EXPECT_EQ(PatternFromId(a)->item(1).forcedFormat(), 0U);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AReferenceBehindTheEndGoesToTheEnd) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    click(a, 10);
    EditSelection.SelFrames[0].item = 9;
    EXPECT_EQ(PasteAtSelection(sub), 1);
    EXPECT_EQ(items(a), "1:10 0:20 1:30 [" + std::to_string(sub) + " *1 #1]");
}

TEST_F(PasteInto, AReferenceToNothingBesideIsNoReasonToRefuse) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    AddReference(a, {.id = 3000});
    click(a, 10);
    EXPECT_EQ(PasteAtSelection(sub), 1);
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(sub) + " *1 #1] 0:20 1:30 [3000 *1 #1]");
}

TEST_F(PasteInto, AReferenceOfAnotherWidthIsRefused) {
    uint16_t sub = MakePattern("$s", {{1, 3}}, 4);
    PatternFromId(sub)->width = 4;
    before = StoreText();
    select(a, 15, 15);
    EXPECT_EQ(PasteAtSelection(sub), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Pattern bit count not consistant");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(PasteAtSelection(3999), 0) << "a pattern that is not there";
}

TEST_F(PasteInto, ACircleOfReferencesIsRefusedAndThePatternStandsAsBefore) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("$outer");
    AddReference(outer, {.id = inner});
    AddTransition(outer, 0, 3);
    before = StoreText();
    int32_t end = EditLog.rPtr;
    ASSERT_EQ(select(inner, 1, 1), SEL_PULSE);
    EXPECT_EQ(PasteAtSelection(outer), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, end);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
}

TEST_F(PasteInto, APieceThatRefersToItsTargetIsRefused) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("OUTER", {{1, 5}});
    AddReference(outer, {.id = inner, .repeat = 2});
    ASSERT_EQ(select(outer, 5, 19), SEL_PATTERN);
    copy();
    before = StoreText();
    ASSERT_EQ(click(inner, 3), SEL_EDGE);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(actions(), 0);
}

TEST_F(PasteInto, ACircleIsTakenBackWithoutALogFileToo) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("$outer");
    AddReference(outer, {.id = inner});
    ASSERT_EQ(select(inner, 1, 1), SEL_PULSE);
    EditLog.LogFileName[0] = '\0';
    before = StoreText();
    EXPECT_EQ(PasteAtSelection(outer), 0);
    EXPECT_EQ(StoreText(), before);
}

// A chain of patterns, each of which refers to the one before; the last one's id.
uint16_t Chain(int patterns) {
    uint16_t id = 0;
    for (int i = 0; i < patterns; i++) {
        uint16_t next = MakePattern(("$c" + std::to_string(i)).c_str(), {{1, 1}});
        for (int times = 0; id && times < 5; times++) AddReference(next, {.id = id});
        id = next;
    }
    return id;
}

TEST_F(PasteInto, ANestOfUnnamedPatternsOf20LevelsAndMoreIsTakenBack) {
    for (int levels : {18, 19, 20, 21, 40}) {
        uint16_t nest = MakePattern("", {{1, 3}, {0, 4}});
        for (int level = 1; level < levels; level++) {
            uint16_t outer = MakePattern("", {{1, 1}});
            AddReference(outer, {.id = nest});
            nest = outer;
        }
        uint16_t source = MakePattern("S2", {{1, 5}});
        AddReference(source, {.id = nest, .repeat = 2});
        select(source, 5, TIME_FOREVER);
        ASSERT_EQ(EditSelection.SelKind, SEL_PATTERN);
        copy();
        std::string expected = items(a);
        before = StoreText();
        size_t strips = Headless.strips.size();
        ASSERT_EQ(select(a, 0, TIME_FOREVER), SEL_WHOLE);
        bool fits = levels < 19;
        EXPECT_EQ(paste(), fits) << levels;
        EXPECT_EQ(Headless.strips.size(), strips + !fits);
        if (fits)
            EXPECT_TRUE(undoGives(before));
        else
            EXPECT_EQ(items(a), expected) << levels;
        EXPECT_EQ(StoreText(), before);
        EXPECT_EQ(HeapFault(), "");
        EXPECT_EQ(Headless.programErrors, Texts{});
    }
}

TEST_F(PasteInto, ANestOf20LevelsIsRefused) {
    uint16_t deep = Chain(19);
    before = StoreText();
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(deep), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
}

TEST_F(PasteInto, ANestIsAsDeepAsItsLongestWayDown) {
    // The same 17 levels are reached by way of 2 levels, which is good, and then of 3.
    uint16_t deep = Chain(17);
    uint16_t middle = MakePattern("$middle");
    AddReference(middle, {.id = deep});
    uint16_t top = MakePattern("$top");
    AddReference(top, {.id = deep});
    click(a, 10);
    EXPECT_EQ(PasteAtSelection(top), 1);
    LogEndAction();
    AddReference(top, {.id = middle});
    before = StoreText();
    click(a, 10);
    EXPECT_EQ(PasteAtSelection(top), 0);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(PasteInto, ARefusalLeavesTheNextPasteItsFullDepth) {
    uint16_t deep = Chain(18);
    uint16_t deeper = MakePattern("$deeper");
    AddReference(deeper, {.id = deep});
    for (int i = 0; i < 3; i++) {
        click(a, 10);
        EXPECT_EQ(PasteAtSelection(deeper), 0);
    }
    click(a, 10);
    EXPECT_EQ(PasteAtSelection(deep), 1);
}

TEST_F(PasteInto, ANestOf19LevelsIsTakenAndQuicklyFoundGood) {
    uint16_t deep = Chain(18);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(deep), 1) << "though there are 5 to the 17th ways down";
}

TEST_F(PasteInto, DeepNestsAboveThePatternCountToo) {
    // Patterns that nest as deep as they may, with the target in the middle.
    uint16_t id = a;
    for (int i = 0; i < 250; i++) {
        uint16_t next = MakePattern(("$u" + std::to_string(i)).c_str());
        AddReference(next, {.id = id});
        id = next;
    }
    uint16_t fits = Chain(6);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(fits), 1);
    uint16_t deeper = MakePattern("$deeper");
    AddReference(deeper, {.id = fits});
    before = StoreText();
    ASSERT_EQ(click(a, 0), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(deeper), 0);
    EXPECT_EQ(StoreText(), before);
    // A value that reads like that pattern's id is no reference to it.
    uint16_t source = MakePattern("S2", {{7, 1}, {deeper, 6}, {7, 1}});
    select(source, 3, 3);
    copy();
    ASSERT_EQ(click(a, 0), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
}

} // namespace
