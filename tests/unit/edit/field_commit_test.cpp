// What the fields of the floating dialog write.
#include "edit/edit_dialog.h"

#include "config/settings.h"
#include "display/viewport.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"

namespace {

class FieldCommitTest : public EditingFixture {
protected:
    static bool enter(uint16_t id, const std::string &text) { return HeadlessTypeField(id, text, true); }
    static bool leave(uint16_t id, const std::string &text) { return HeadlessTypeField(id, text, false); }
    static std::string text(uint16_t id) { return HeadlessEditDialog.texts[id]; }
    // "A" with a reference to an unnamed pattern in its middle, which is scaled by 2 and repeated 3 times:
    // 0 to 10, 10 to 52 (one repetition takes 14), 52 to 60.
    void nested() {
        inner = MakePattern("", {{1, 3}, {0, 4}});
        a = MakePattern("A", {{1, 10}});
        AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
        AddTransition(a, 1, 8);
        before = StoreText();
    }
    void bit() {
        a = MakePattern("A", {{1, 10}, {0, 20}, {1, 30}});
        before = StoreText();
    }
    void bus() {
        a = MakePattern("A[7:0]", {{1, 10}, {2, 20}, {3, 30}});
        before = StoreText();
    }
    uint16_t a = 0, inner = 0;
    std::string before;
};

// --- duration -----------------------------------------------------------------------------------------

TEST_F(FieldCommitTest, DurationByEnterWalksOnToTheNextItem) {
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

TEST_F(FieldCommitTest, DurationByLeavingStaysOnTheItem) {
    bit();
    select(a, 15, 15);
    leave(EDIT_DURATION, "5");
    EXPECT_EQ(items(a), "1:10 0:5 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-15");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, EnterInDurationOnTheLastItemStaysOnIt) {
    bit();
    select(a, 40, 40);
    enter(EDIT_DURATION, "40");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-70");
}

TEST_F(FieldCommitTest, ADurationIsAtLeastOneUnit) {
    for (const char *typed : {"0", "", "none"}) {
        bit();
        select(a, 15, 15);
        leave(EDIT_DURATION, typed);
        EXPECT_EQ(items(a), "1:10 0:1 1:30") << typed;
        EXPECT_TRUE(undoGives(before));
    }
}

TEST_F(FieldCommitTest, ADurationIsRoundedToUnitsHalvesUp) {
    uint16_t sub = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 4, .repeat = 1});
    AddTransition(a, 1, 8);
    for (auto [typed, units] : {std::pair{"21", 5}, {"22", 6}, {"25", 6}, {"1", 1}, {"2", 1}}) {
        ASSERT_EQ(select(a, 11, 11), SEL_PULSE);
        ASSERT_EQ(DeepestFrame().patternId, sub);
        leave(EDIT_DURATION, typed);
        EXPECT_EQ(items(sub), "1:" + std::to_string(units) + " 0:4") << typed;
    }
}

TEST_F(FieldCommitTest, DurationInsideAReferenceIsSeenInAllRepetitions) {
    nested();
    // The second repetition's low part, from 30 to 38.
    ASSERT_EQ(select(a, 31, 31), SEL_PULSE);
    leave(EDIT_DURATION, "20");
    EXPECT_EQ(items(inner), "1:3 0:10");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 10U + 78 + 8);
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, DurationInASharedPatternChangesAllItsUses) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    uint16_t b = MakePattern("B");
    for (uint16_t id : {a, b}) AddReference(id, {.id = sub});
    ASSERT_EQ(select(sub, 1, 1), SEL_PULSE);
    leave(EDIT_DURATION, "13");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 27U);
    EXPECT_EQ(PatternDuration(PatternFromId(b)), 17U);
}

TEST_F(FieldCommitTest, DurationOfAClockedNodeCountsPeriods) {
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

TEST_F(FieldCommitTest, ADurationIsHeldWithinItsField) {
    bit();
    select(a, 40, 40);
    leave(EDIT_DURATION, "4294967280");
    EXPECT_EQ(items(a), "1:10 0:20 1:2147483647");
    select(a, 40, 40);
    leave(EDIT_DURATION, "4294967280");
    EXPECT_EQ(actions(), 1) << "the second time nothing changes";
}

TEST_F(FieldCommitTest, TheSameDurationAgainLogsNothing) {
    bit();
    select(a, 15, 15);
    enter(EDIT_DURATION, "20");
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-60") << "but Enter walks on";
}

TEST_F(FieldCommitTest, AFrameBeyondThePaneIsScrolledTo) {
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

// --- value --------------------------------------------------------------------------------------------

TEST_F(FieldCommitTest, ValueByEnterWalksOn) {
    bus();
    select(a, 5, 5);
    enter(EDIT_VALUE, "7f");
    EXPECT_EQ(items(a), "127:10 2:20 3:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
    EXPECT_EQ(HeadlessEditDialog.focus, EDIT_VALUE);
    EXPECT_EQ(text(EDIT_VALUE), "2");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ValueByLeavingStays) {
    bus();
    select(a, 15, 15);
    leave(EDIT_VALUE, "9");
    EXPECT_EQ(items(a), "1:10 9:20 3:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
}

TEST_F(FieldCommitTest, EnterInValueOnTheLastItemStaysOnIt) {
    bus();
    select(a, 40, 40);
    enter(EDIT_VALUE, "9");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-60");
}

TEST_F(FieldCommitTest, ValuesAreReadAsHexadecimalAndMasked) {
    const std::pair<const char *, uint32_t> texts[] = {
        {"1FF", 0xFF}, {"0x3c", 0x3C}, {" 5", 5}, {"zz", 0}, {"", 0}, {"-1", 0xFF}, {"12 34", 0x12}};
    for (auto [typed, value] : texts) {
        bus();
        select(a, 15, 15);
        leave(EDIT_VALUE, typed);
        EXPECT_EQ(PatternFromId(a)->item(1).value(), value) << typed;
    }
    a = MakePattern("W[31:0]", {{1, 10}, {2, 20}});
    select(a, 15, 15);
    leave(EDIT_VALUE, "DEADBEEF");
    EXPECT_EQ(PatternFromId(a)->item(1).value(), 0xDEADBEEF);
}

TEST_F(FieldCommitTest, ValuesTypedAlongAWaveAreOneStepAndJoinWhenItIsLeft) {
    bus();
    select(a, 5, 5);
    enter(EDIT_VALUE, "3");
    enter(EDIT_VALUE, "3");
    EXPECT_EQ(items(a), "3:10 3:20 3:30") << "nothing vanishes under the cursor";
    EXPECT_EQ(PendingMerge, a);
    EXPECT_EQ(actions(), 1);
    uint16_t other = MakePattern("OTHER", {{1, 10}, {0, 10}});
    select(other, 5, 5);
    EXPECT_EQ(items(a), "3:60");
    EXPECT_EQ(PendingMerge, 0);
    EXPECT_EQ(actions(), 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(items(a), "1:10 2:20 3:30");
}

TEST_F(FieldCommitTest, TheSameValueAgainLogsNothing) {
    bus();
    select(a, 15, 15);
    leave(EDIT_VALUE, "2");
    EXPECT_EQ(EditLog.rPtr, 0);
    select(a, 15, 15);
    leave(EDIT_VALUE, "4");
    int32_t end = EditLog.rPtr;
    select(a, 15, 15);
    leave(EDIT_VALUE, "4");
    EXPECT_EQ(EditLog.rPtr, end) << "the mark is written again, and no other one";
    EXPECT_EQ(actions(), 1);
}

TEST_F(FieldCommitTest, ValueOfASpan) {
    bus();
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    leave(EDIT_VALUE, "9");
    EXPECT_EQ(items(a), "1:5 9:20 2:5 3:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 5-25") << "selected anew at its start";
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ValueOfASpanOfWholeItemsJoinsItsNeighbours) {
    bus();
    ASSERT_EQ(select(a, 0, 30), SEL_SPAN);
    leave(EDIT_VALUE, "3");
    EXPECT_EQ(items(a), "3:60");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ValueOfAWholeBus) {
    a = MakePattern("A[7:0]", {{1, 10}, {2, 20}});
    PatternFromId(a)->delay = 7;
    before = StoreText();
    ASSERT_EQ(select(a, 0, 100), SEL_WHOLE);
    leave(EDIT_VALUE, "1a5");
    EXPECT_EQ(items(a), "165:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/0 7-37");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ValueOfAnEndlessBus) {
    uint16_t sub = MakePattern("$s[7:0]", {{1, 3}, {2, 4}});
    a = MakePattern("A[7:0]", {{5, 10}});
    AddReference(a, {.id = sub, .repeat = REPEAT_FOREVER});
    before = StoreText();
    ASSERT_EQ(select(a, 0, TIME_FOREVER), SEL_WHOLE);
    leave(EDIT_VALUE, "6");
    EXPECT_EQ(items(a), "6:2147483647");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ValueOfAnEmptyBusWritesNothing) {
    a = MakePattern("A[7:0]");
    before = StoreText();
    select(a, 0, 100);
    EditSelection.SelKind = SEL_WHOLE;
    EditSelection.SelDepth = 1;
    EditSelection.SelFrames[0] = {0, 0, 0, a, 0};
    ShowSelection();
    for (uint16_t id : {EDIT_VALUE, EDIT_SCALE, EDIT_REPEAT}) {
        leave(id, "5");
        EXPECT_EQ(items(a), "") << id;
    }
}

TEST_F(FieldCommitTest, ValueInsideANestedRepeatedScaledBus) {
    inner = MakePattern("", {{1, 3}, {2, 4}}, 8);
    a = MakePattern("A[7:0]", {{1, 10}});
    AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
    AddTransition(a, 9, 8);
    before = StoreText();
    ASSERT_EQ(select(a, 31, 31), SEL_PULSE);
    enter(EDIT_VALUE, "fff");
    EXPECT_EQ(items(inner), "1:3 255:4");
    EXPECT_EQ(frame(), std::to_string(inner) + "/1 30-38") << "it is the last item of its pattern";
    EXPECT_TRUE(undoGives(before));
}

// --- states ---------------------------------------------------------------------------------------------

TEST_F(FieldCommitTest, AStateOfAPulse) {
    bit();
    select(a, 15, 15);
    ASSERT_TRUE(HeadlessPickState(2, false));
    EXPECT_EQ(items(a), "1:10 2:20 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
    EXPECT_EQ(HeadlessEditDialog.focus, EDIT_STATES) << "the keyboard stays in the list";
    EXPECT_FALSE(EditDialog.offered);
    EXPECT_EQ(HeadlessEditDialog.stateSelected, 2);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ADoubleClickWalksOn) {
    bit();
    select(a, 5, 5);
    HeadlessPickState(0, false);
    HeadlessPickState(0, true);
    EXPECT_EQ(items(a), "0:10 0:20 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
    HeadlessPickState(1, true);
    HeadlessPickState(0, true);
    EXPECT_EQ(items(a), "0:10 1:20 0:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-60") << "the last one stays";
    EXPECT_EQ(actions(), 1);
}

TEST_F(FieldCommitTest, AStateOfASpanAndOfAWholeBit) {
    bit();
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    HeadlessPickState(3, false);
    EXPECT_EQ(items(a), "1:5 3:20 0:5 1:30");
    EXPECT_TRUE(undoGives(before));
    ASSERT_EQ(select(a, 0, 60), SEL_WHOLE);
    HeadlessPickState(0, true);
    EXPECT_EQ(items(a), "0:60");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, NoStatePickedWritesNothing) {
    bit();
    select(a, 15, 15);
    HeadlessEditDialog.stateSelected = -1;
    PickState(1);
    EXPECT_EQ(EditLog.rPtr, 0);
    bus();
    select(a, 15, 15);
    HeadlessEditDialog.stateSelected = 1;
    PickState(1);
    EXPECT_EQ(EditLog.rPtr, 0) << "a bus has no states";
}

// --- scale ----------------------------------------------------------------------------------------------

TEST_F(FieldCommitTest, ScaleOfASpanWrapsIt) {
    bit();
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    leave(EDIT_SCALE, "3");
    uint16_t made = PatternFromId(a)->item(1).patternId();
    EXPECT_EQ(items(a), "1:5 [" + std::to_string(made) + " *3 #1] 0:5 1:30");
    EXPECT_EQ(items(made), "1:5 0:15");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 100U);
    // Selected from the old start to the old end, which is inside it, in whole units of it.
    EXPECT_EQ(frame(), std::to_string(made) + "/0 5-23");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ScaleOfAWholePatternWrapsIt) {
    a = MakePattern("A", {{1, 10}, {0, 20}});
    PatternFromId(a)->delay = 7;
    before = StoreText();
    ASSERT_EQ(select(a, 0, 100), SEL_WHOLE);
    leave(EDIT_SCALE, "2");
    uint16_t made = PatternFromId(a)->item(0).patternId();
    EXPECT_EQ(items(a), "[" + std::to_string(made) + " *2 #1]");
    EXPECT_EQ(items(made), "1:10 0:20");
    // Up to the items' length, without the delay: 60.
    EXPECT_EQ(EditSelection.SelKind, SEL_SPAN);
    EXPECT_EQ(frame(), std::to_string(made) + "/0 7-59");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ScaleOfAWholeThatIsOneReferenceMultiplies) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A");
    AddReference(a, {.id = sub, .scale = 5, .repeat = 2});
    before = StoreText();
    select(a, 0, 70);
    EditSelection.SelKind = SEL_WHOLE;
    ShowSelection();
    leave(EDIT_SCALE, "3");
    EXPECT_EQ(items(a), "[" + std::to_string(sub) + " *15 #2]");
    EXPECT_TRUE(undoGives(before));
    select(a, 0, 70);
    EditSelection.SelKind = SEL_WHOLE;
    ShowSelection();
    leave(EDIT_SCALE, "60000");
    EXPECT_EQ(items(a), "[" + std::to_string(sub) + " *65535 #2]") << "as far as it goes";
}

TEST_F(FieldCommitTest, ScaleOfAReference) {
    nested();
    ASSERT_EQ(select(a, 10, 52), SEL_PATTERN);
    leave(EDIT_SCALE, "5");
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(inner) + " *5 #3] 1:8");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-115");
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(text(EDIT_SCALE), "5");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, TheSameScaleAgainLogsNothing) {
    nested();
    select(a, 10, 52);
    leave(EDIT_SCALE, "2");
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(FieldCommitTest, Scale1DissolvesAWrapperThatIsRepeatedOnce) {
    inner = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = inner, .scale = 2});
    AddTransition(a, 1, 8);
    before = StoreText();
    ASSERT_EQ(select(a, 10, 24), SEL_PATTERN);
    leave(EDIT_SCALE, "1");
    EXPECT_EQ(items(a), "1:13 0:4 1:8");
    EXPECT_FALSE(PatternInUse(inner));
    EXPECT_EQ(frame(), std::to_string(a) + "/1 13-17");
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, Scale1LeavesARepeatedOrNamedPattern) {
    nested();
    select(a, 10, 52);
    leave(EDIT_SCALE, "1");
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(inner) + " *1 #3] 1:8");
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t b = MakePattern("B", {{1, 10}});
    AddReference(b, {.id = sub, .scale = 2});
    select(b, 10, 24);
    leave(EDIT_SCALE, "1");
    EXPECT_EQ(items(b), "1:10 [" + std::to_string(sub) + " *1 #1]");
}

TEST_F(FieldCommitTest, AScaleBelow1IsSetBackTo1) {
    for (const char *typed : {"0", "65536"}) {
        nested();
        select(a, 10, 52);
        // What stands in the field before the common end fills it anew.
        HeadlessType(EDIT_SCALE, typed);
        EditFieldEntered();
        EXPECT_EQ(PatternFromId(a)->item(1).scale(), 1U) << typed;
        EXPECT_EQ(text(EDIT_SCALE), "1");
    }
    nested();
    select(a, 10, 52);
    leave(EDIT_SCALE, "none");
    EXPECT_EQ(PatternFromId(a)->item(1).scale(), 1U) << "1 is the default";
}

TEST_F(FieldCommitTest, Scale1OfASpanOrAWholeChangesNothing) {
    bit();
    select(a, 5, 25);
    leave(EDIT_SCALE, "0");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(text(EDIT_SCALE), "1");
    select(a, 0, 60);
    leave(EDIT_SCALE, "1");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
}

// --- repeat ---------------------------------------------------------------------------------------------

TEST_F(FieldCommitTest, RepeatOfASpanWrapsItAndSelectsAllOfIt) {
    bit();
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    leave(EDIT_REPEAT, "3");
    uint16_t made = PatternFromId(a)->item(1).patternId();
    EXPECT_EQ(items(a), "1:5 [" + std::to_string(made) + " *1 #3] 0:5 1:30");
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(frame(), std::to_string(a) + "/1 5-65");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, RepeatOfAWholeWrapsItAndSelectsIt) {
    a = MakePattern("A", {{1, 10}, {0, 20}});
    PatternFromId(a)->delay = 7;
    before = StoreText();
    select(a, 0, 100);
    enter(EDIT_REPEAT, "4");
    uint16_t made = PatternFromId(a)->item(0).patternId();
    EXPECT_EQ(items(a), "[" + std::to_string(made) + " *1 #4]");
    EXPECT_EQ(frame(), std::to_string(a) + "/0 7-127");
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, RepeatOfAWholeThatIsOneReferenceMultiplies) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    for (auto [old, typed, result] : {std::tuple{2, "3", 6}, {2, "#", 65535}, {300, "300", 65534}}) {
        a = MakePattern("A");
        AddReference(a, {.id = sub, .repeat = static_cast<uint32_t>(old)});
        select(a, 0, 70);
        EditSelection.SelKind = SEL_WHOLE;
        ShowSelection();
        leave(EDIT_REPEAT, typed);
        EXPECT_EQ(PatternFromId(a)->item(0).repeat(), result) << typed;
    }
}

TEST_F(FieldCommitTest, RepeatOfAReference) {
    nested();
    select(a, 10, 52);
    leave(EDIT_REPEAT, "5");
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(inner) + " *2 #5] 1:8");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-80");
    EXPECT_EQ(text(EDIT_REPEAT), "5");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, Repeat1DissolvesAWrapperOfScale1) {
    inner = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{0, 10}});
    AddReference(a, {.id = inner, .repeat = 2});
    before = StoreText();
    select(a, 10, 24);
    leave(EDIT_REPEAT, "1");
    EXPECT_EQ(items(a), "0:10 1:3 0:4");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ARepeatBelow1IsSetBackTo1) {
    nested();
    select(a, 10, 52);
    leave(EDIT_REPEAT, "0");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), 1);
    EXPECT_EQ(text(EDIT_REPEAT), "1");
}

TEST_F(FieldCommitTest, ASharpInTheMiddleOfAWaveIsNoNumber) {
    nested();
    select(a, 10, 52);
    ASSERT_FALSE(EditDialog.ForeverAllowed);
    leave(EDIT_REPEAT, "##");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), 1);
    EXPECT_FALSE(HeadlessEditDialog.foreverChecked);
}

TEST_F(FieldCommitTest, TheSameRepeatAgainLogsNothing) {
    nested();
    select(a, 10, 52);
    leave(EDIT_REPEAT, "3");
    EXPECT_EQ(EditLog.rPtr, 0);
}

// --- forever --------------------------------------------------------------------------------------------

TEST_F(FieldCommitTest, ForeverOfTheLastReference) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .repeat = 2});
    before = StoreText();
    select(a, 10, 24);
    ASSERT_TRUE(HeadlessClickForever(true));
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(sub) + " *1 #65535]");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-4294967295");
    EXPECT_TRUE(HeadlessEditDialog.foreverChecked);
    EXPECT_EQ(text(EDIT_REPEAT), "##");
    EXPECT_FALSE(HeadlessEditDialog.enabled[EDIT_REPEAT]);
    EXPECT_EQ(actions(), 1);
    ASSERT_TRUE(HeadlessClickForever(false));
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(sub) + " *1 #1]");
    EXPECT_FALSE(HeadlessEditDialog.foreverChecked);
    EXPECT_TRUE(LogUndo() && undoGives(before));
}

TEST_F(FieldCommitTest, ForeverTypedAsASharp) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .repeat = 2});
    select(a, 10, 24);
    enter(EDIT_REPEAT, "#");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), REPEAT_FOREVER);
}

TEST_F(FieldCommitTest, ForeverOfAWholeAndOfASpanUpToTheEnd) {
    bit();
    select(a, 0, 60);
    ASSERT_TRUE(HeadlessClickForever(true));
    uint16_t made = PatternFromId(a)->item(0).patternId();
    EXPECT_EQ(items(a), "[" + std::to_string(made) + " *1 #65535]");
    EXPECT_EQ(frame(), std::to_string(a) + "/0 0-4294967295");
    EXPECT_TRUE(undoGives(before));
    ASSERT_EQ(select(a, 20, 60), SEL_SPAN);
    ASSERT_TRUE(HeadlessClickForever(true));
    made = PatternFromId(a)->item(2).patternId();
    EXPECT_EQ(items(a), "1:10 0:10 [" + std::to_string(made) + " *1 #65535]");
    EXPECT_EQ(items(made), "0:10 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 20-4294967295");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ForeverUncheckedOnASelectionThatIsNoReferenceChangesNothing) {
    bit();
    select(a, 0, 60);
    HeadlessClickForever(false);
    EXPECT_EQ(StoreText(), before);
}

// --- what none of them does -----------------------------------------------------------------------------

TEST_F(FieldCommitTest, AnEdgeAndAPulseToComeWriteNothing) {
    bit();
    for (uint16_t kind : {SEL_NONE, SEL_EDGE, SEL_STRETCH}) {
        select(a, 15, 15);
        EditSelection.SelKind = kind;
        ShowSelection();
        for (uint16_t id = EDIT_DURATION; id <= EDIT_FOREVER; id++) {
            EXPECT_FALSE(HeadlessEditDialog.enabled[id]) << kind << " " << id;
            EXPECT_FALSE(HeadlessType(id, "5"));
            HeadlessEditDialog.texts[id] = "5";
            FieldCommit(id, 1);
        }
        HeadlessEditDialog.stateSelected = 0;
        PickState(1);
        ForeverClicked(1);
    }
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(FieldCommitTest, AFieldThatTheKindDoesNotHaveWritesNothing) {
    bit();
    select(a, 15, 15);
    for (uint16_t id : {EDIT_VALUE, EDIT_SCALE, EDIT_REPEAT}) {
        HeadlessEditDialog.texts[id] = "5";
        FieldCommit(id, 1);
    }
    select(a, 0, 60);
    HeadlessEditDialog.texts[EDIT_DURATION] = "5";
    FieldCommit(EDIT_DURATION, 1);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(FieldCommitTest, ScaleAndRepeatOfAChannelChangeNothing) {
    uint16_t x = MakePattern("X", {{1, 50}});
    uint16_t c = MakePattern("C[1:0]");
    for (int i = 0; i < 2; i++) AddReference(c, {.id = x, .scale = 2}, PatternKind::Composite);
    before = StoreText();
    ASSERT_EQ(select(c, 10, 20), SEL_COMPOSITE);
    EXPECT_TRUE(leave(EDIT_SCALE, "3"));
    EXPECT_TRUE(leave(EDIT_REPEAT, "3"));
    EXPECT_EQ(StoreText(), before);
}

TEST_F(FieldCommitTest, AWholeCompositeIsNotReplacedOrWrapped) {
    uint16_t x = MakePattern("X", {{1, 50}});
    uint16_t c = MakePattern("C[1:0]");
    for (int i = 0; i < 2; i++) AddReference(c, {.id = x}, PatternKind::Composite);
    before = StoreText();
    ASSERT_EQ(select(c, 0, 50), SEL_WHOLE);
    leave(EDIT_VALUE, "1");
    leave(EDIT_SCALE, "3");
    leave(EDIT_REPEAT, "3");
    EXPECT_EQ(StoreText(), before);
}

TEST_F(FieldCommitTest, ATextIsCutAt80Characters) {
    bus();
    select(a, 15, 15);
    leave(EDIT_VALUE, std::string(79, '0') + "12");
    EXPECT_EQ(PatternFromId(a)->item(1).value(), 1U);
}

TEST_F(FieldCommitTest, APatternThatIsGoneIsNotWrittenTo) {
    bit();
    select(a, 15, 15);
    HeadlessEditDialog.texts[EDIT_DURATION] = "5";
    DeletePattern(PatternFromId(a));
    FieldCommit(EDIT_DURATION, 1);
    EXPECT_FALSE(PatternInUse(a));
}

} // namespace
