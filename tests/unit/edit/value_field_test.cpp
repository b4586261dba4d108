// What the value field and the list of states of the floating dialog write.
#include "shell/commands.h"
#include "unit/edit/field_fixture.h"

namespace {

class ValueField : public FieldFixture {};

// --- value --------------------------------------------------------------------------------------------

TEST_F(ValueField, ValueByEnterWalksOn) {
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

TEST_F(ValueField, ValueByLeavingStays) {
    bus();
    select(a, 15, 15);
    leave(EDIT_VALUE, "9");
    EXPECT_EQ(items(a), "1:10 9:20 3:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
}

TEST_F(ValueField, EnterInValueOnTheLastItemStaysOnIt) {
    bus();
    select(a, 40, 40);
    enter(EDIT_VALUE, "9");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 30-60");
}

TEST_F(ValueField, ValuesAreReadAsHexadecimalAndMasked) {
    const std::pair<const char *, uint32_t> texts[] = {{"1FF", 0xFF},   {"0x3c", 0x3C},   {"0X3C", 0x3C},
                                                       {" 0x3c", 0x3C}, {"\t0x3c", 0x3C}, {" 5", 5},
                                                       {"zz", 0},       {"-1", 0xFF},     {"12 34", 0x12}};
    for (auto [typed, value] : texts) {
        bus();
        select(a, 15, 15);
        leave(EDIT_VALUE, typed);
        EXPECT_EQ(PatternFromId(a)->item(1).value(), value) << typed;
    }
    a = MakePattern("V[30:0]", {{1, 10}, {2, 20}});
    select(a, 15, 15);
    leave(EDIT_VALUE, "DEADBEEF");
    EXPECT_EQ(PatternFromId(a)->item(1).value(), 0x5EADBEEFU);
    a = MakePattern("W[31:0]", {{1, 10}, {2, 20}});
    select(a, 15, 15);
    leave(EDIT_VALUE, "DEADBEEF");
    EXPECT_EQ(PatternFromId(a)->item(1).value(), 0xDEADBEEF);
}

TEST_F(ValueField, BlanksAreNoEntry) {
    bus();
    for (const char *typed : {"", "   ", "\t"}) {
        for (bool byEnter : {false, true}) {
            select(a, 15, 15);
            byEnter ? enter(EDIT_VALUE, typed) : leave(EDIT_VALUE, typed);
            EXPECT_EQ(text(EDIT_VALUE), "2");
            EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
        }
    }
    // A field that shows nothing shows nothing again.
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    leave(EDIT_VALUE, " ");
    EXPECT_EQ(text(EDIT_VALUE), "");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(ValueField, ValuesTypedAlongAWaveAreOneStepAndJoinWhenItIsLeft) {
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

TEST_F(ValueField, AnEmptiedFieldEndsNoRow) {
    bus();
    select(a, 5, 5);
    enter(EDIT_VALUE, "7");
    enter(EDIT_VALUE, " ");
    enter(EDIT_VALUE, "8");
    EXPECT_EQ(actions(), 1);
}

TEST_F(ValueField, ValuesWithSomethingElseInBetweenAreStepsOfTheirOwn) {
    DispatchCommand(COMMAND_EDIT_MODE);
    struct {
        const char *what;
        void (*run)(uint16_t a);
    } between[] = {
        {"a click", [](uint16_t id) { select(id, 15, 15); }},
        {"another field", [](uint16_t) { enter(EDIT_DURATION, "20"); }},
        {"a value by leaving", [](uint16_t) { leave(EDIT_VALUE, "2"); }},
        {"a copy", [](uint16_t) { DispatchCommand(COMMAND_COPY); }},
        {"a command of the view", [](uint16_t) { DispatchCommand(COMMAND_ZOOM_IN_STEP); }},
        {"a question for help", [](uint16_t) { DispatchCommand(COMMAND_HELP); }},
    };
    for (const auto &step : between) {
        a = MakePattern("A[7:0]", {{1, 10}, {2, 20}, {3, 30}});
        select(a, 5, 5);
        enter(EDIT_VALUE, "7");
        ASSERT_EQ(frame(), std::to_string(a) + "/1 10-30");
        step.run(a);
        select(a, 15, 15);
        PendingMerge = a;
        enter(EDIT_VALUE, "8");
        LogUndo();
        EXPECT_EQ(items(a), "7:10 2:20 3:30") << step.what;
    }
}

TEST_F(ValueField, AMergeThatWaitsIsNeededForARow) {
    bus();
    select(a, 5, 5);
    enter(EDIT_VALUE, "7");
    PendingMerge = 0;
    enter(EDIT_VALUE, "8");
    EXPECT_EQ(actions(), 2);
}

TEST_F(ValueField, TheSameValueAgainLogsNothing) {
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

TEST_F(ValueField, ValueOfASpan) {
    bus();
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    leave(EDIT_VALUE, "9");
    EXPECT_EQ(items(a), "1:5 9:20 2:5 3:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 5-25") << "selected anew at its start";
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(ValueField, ValueOfASpanAtTheStartStaysThere) {
    bus();
    ASSERT_EQ(select(a, 0, 30), SEL_SPAN);
    leave(EDIT_VALUE, "9");
    EXPECT_EQ(items(a), "9:30 3:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(ValueField, ValueOfASpanInsideAScaledPatternOfADelayedWave) {
    inner = MakePattern("", {{1, 3}, {2, 4}, {3, 5}}, 8);
    a = MakePattern("A[7:0]", {{1, 10}});
    PatternFromId(a)->delay = 7;
    AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
    before = StoreText();
    // The second repetition begins at 41. The span is its units 1 to 9.
    ASSERT_EQ(select(a, 43, 59), SEL_SPAN);
    ASSERT_EQ(DeepestFrame().patternId, inner);
    leave(EDIT_VALUE, "9");
    EXPECT_EQ(items(inner), "1:1 9:8 3:3");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(ValueField, TheUsesOfAPatternKnowItsNewLength) {
    uint16_t leaf = MakePattern("$leaf[7:0]", {{1, 3}, {2, 4}});
    for (uint16_t kind : {SEL_SPAN, SEL_WHOLE}) {
        uint16_t sub = MakePattern("$s[7:0]", {{1, 3}, {2, 3}});
        AddReference(sub, {.id = leaf, .repeat = REPEAT_FOREVER});
        a = MakePattern("A[7:0]");
        AddReference(a, {.id = sub});
        ASSERT_EQ(select(sub, kind == SEL_SPAN ? 3 : 0, TIME_FOREVER), kind);
        ASSERT_EQ(PatternFromId(a)->duration, TIME_FOREVER);
        leave(EDIT_VALUE, "9");
        EXPECT_NE(PatternFromId(sub)->duration, TIME_FOREVER);
        EXPECT_EQ(PatternFromId(a)->duration, PatternFromId(sub)->duration);
        EXPECT_TRUE(PatternFromId(a)->durationValid());
    }
}

TEST_F(ValueField, EnterWalksOverAPulseOfOneUnit) {
    // One beyond the end is the item behind it; that is meant.
    a = MakePattern("A[7:0]", {{1, 10}, {2, 1}, {3, 30}});
    select(a, 5, 5);
    enter(EDIT_VALUE, "7");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 11-41");
}

TEST_F(ValueField, ValuesOfTwoWavesAreTwoSteps) {
    bus();
    uint16_t b = MakePattern("B[7:0]", {{1, 10}, {2, 20}});
    for (uint16_t id : {a, b}) {
        select(id, 5, 5);
        leave(EDIT_VALUE, "9");
    }
    EXPECT_EQ(actions(), 2);
}

TEST_F(ValueField, AWholeBusIsNoLongerThanAnItemCanBe) {
    a = MakePattern("A[7:0]", {{1, 0x7FFFFFFF}, {2, 0x11}});
    ASSERT_EQ(select(a, 0, TIME_FOREVER), SEL_WHOLE);
    leave(EDIT_VALUE, "6");
    EXPECT_EQ(items(a), "6:2147483647");
}

TEST_F(ValueField, ValueOfASpanOfWholeItemsJoinsItsNeighbours) {
    bus();
    ASSERT_EQ(select(a, 0, 30), SEL_SPAN);
    leave(EDIT_VALUE, "3");
    EXPECT_EQ(items(a), "3:60");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(ValueField, ValueOfAWholeBus) {
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

TEST_F(ValueField, ValueOfAnEndlessBus) {
    uint16_t sub = MakePattern("$s[7:0]", {{1, 3}, {2, 4}});
    a = MakePattern("A[7:0]", {{5, 10}});
    AddReference(a, {.id = sub, .repeat = REPEAT_FOREVER});
    before = StoreText();
    ASSERT_EQ(select(a, 0, TIME_FOREVER), SEL_WHOLE);
    leave(EDIT_VALUE, "6");
    EXPECT_EQ(items(a), "6:2147483647");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(ValueField, ValueOfAnEmptyBusWritesNothing) {
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

TEST_F(ValueField, ValueInsideANestedRepeatedScaledBus) {
    inner = MakePattern("", {{1, 3}, {2, 4}}, 8);
    a = MakePattern("A[7:0]", {{1, 10}});
    AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
    AddTransition(a, 9, 8);
    before = StoreText();
    ASSERT_EQ(select(a, 31, 31), SEL_PULSE);
    enter(EDIT_VALUE, "fff");
    EXPECT_EQ(items(inner), "1:3 255:4");
    EXPECT_EQ(PendingMerge, inner);
    EXPECT_EQ(frame(), std::to_string(inner) + "/1 30-38") << "it is the last item of its pattern";
    EXPECT_TRUE(undoGives(before));
}

// --- states ---------------------------------------------------------------------------------------------

class StatesList : public FieldFixture {};

TEST_F(StatesList, AStateOfAPulse) {
    bit();
    select(a, 15, 15);
    ASSERT_TRUE(HeadlessPickState(2, false));
    EXPECT_EQ(items(a), "1:10 2:20 1:30");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-30");
    EXPECT_EQ(HeadlessEditDialog.focus, EDIT_STATES) << "the keyboard stays in the list";
    EXPECT_EQ(HeadlessEditDialog.stateSelected, 2);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(StatesList, ADoubleClickWalksOn) {
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

TEST_F(StatesList, StatesPickedByDoubleClicksInARowAreOneStep) {
    // As the list tells it: each double click is a click first.
    bit();
    select(a, 5, 5);
    for (int32_t state : {2, 3, 0}) {
        HeadlessPickState(state, false);
        HeadlessPickState(state, true);
    }
    EXPECT_EQ(items(a), "2:10 3:20 0:30");
    EXPECT_EQ(actions(), 1);
    // A click alone ends the row.
    HeadlessPickState(1, false);
    EXPECT_EQ(actions(), 1);
    HeadlessPickState(2, false);
    EXPECT_EQ(actions(), 2);
}

TEST_F(StatesList, AStateOfASpanAndOfAWholeBit) {
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

TEST_F(StatesList, NoStatePickedWritesNothing) {
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

} // namespace
