// What the fields for scale and repeat and the box "Forever" of the floating dialog write.
#include "unit/edit/field_fixture.h"

namespace {

class ScaleField : public FieldFixture {};
class RepeatField : public FieldFixture {};
class ForeverBox : public FieldFixture {};

// --- scale ----------------------------------------------------------------------------------------------

TEST_F(ScaleField, ScaleOfASpanWrapsIt) {
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

TEST_F(ScaleField, OfASpanInsideAScaledPatternOfADelayedWave) {
    for (uint16_t field : {EDIT_SCALE, EDIT_REPEAT}) {
        inner = MakePattern("", {{1, 3}, {0, 4}, {1, 5}});
        a = MakePattern("A", {{1, 10}});
        PatternFromId(a)->delay = 7;
        AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
        before = StoreText();
        // The second repetition begins at 41. The span is its units 1 to 9.
        ASSERT_EQ(select(a, 43, 59), SEL_SPAN);
        leave(field, "3");
        uint16_t made = PatternFromId(inner)->item(1).patternId();
        EXPECT_EQ(items(made), "1:2 0:4 1:2");
        EXPECT_EQ(items(inner),
                  "1:1 [" + std::to_string(made) + (field == EDIT_SCALE ? " *3 #1] 1:3" : " *1 #3] 1:3"));
        EXPECT_EQ(PatternDuration(PatternFromId(a)), 17U + 3 * 2 * 28) << "durations are valid again";
        EXPECT_TRUE(undoGives(before));
    }
}

TEST_F(ScaleField, AWaveThatIsOneReferenceTakingNoTimeKeepsScaleAndRepeat) {
    uint16_t empty = MakePattern("$e");
    a = MakePattern("A");
    AddReference(a, {.id = empty, .scale = 2, .repeat = 3});
    before = StoreText();
    ASSERT_EQ(select(a, 0, 10), SEL_WHOLE);
    leave(EDIT_SCALE, "5");
    EXPECT_EQ(items(a), "[" + std::to_string(empty) + " *10 #3]");
    ASSERT_EQ(select(a, 0, 10), SEL_WHOLE);
    leave(EDIT_REPEAT, "4");
    EXPECT_EQ(items(a), "[" + std::to_string(empty) + " *10 #12]");
    EXPECT_EQ(actions(), 2);
    EXPECT_TRUE(LogUndo() && undoGives(before));
    // Of a composite they are not taken.
    uint16_t c = MakePattern("C[1:0]");
    AddReference(c, {.id = empty}, PatternKind::Composite);
    ValidateDurations();
    SelectRange(PatternFromId(c), 0, 10, 0, 0);
    EditSelection.SelKind = SEL_WHOLE;
    std::string composite = StoreText();
    leave(EDIT_SCALE, "5");
    EXPECT_EQ(StoreText(), composite);
}

TEST_F(ScaleField, BlanksAreNoEntry) {
    nested();
    ASSERT_EQ(select(a, 10, 52), SEL_PATTERN);
    for (const char *typed : {"", " ", "\t "}) {
        for (bool byEnter : {false, true}) {
            byEnter ? enter(EDIT_SCALE, typed) : leave(EDIT_SCALE, typed);
            EXPECT_EQ(text(EDIT_SCALE), "2");
            byEnter ? enter(EDIT_REPEAT, typed) : leave(EDIT_REPEAT, typed);
            EXPECT_EQ(text(EDIT_REPEAT), "3");
        }
    }
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    // What scans as no number is 1 as ever.
    leave(EDIT_REPEAT, "x");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), 1);
}

TEST_F(ScaleField, AWholeThatOnlyBeginsWithAReferenceOrIsALevelIsWrapped) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    for (uint16_t field : {EDIT_SCALE, EDIT_REPEAT}) {
        std::string change = field == EDIT_SCALE ? " *2 #1]" : " *1 #2]";
        a = MakePattern("A");
        AddReference(a, {.id = sub, .scale = 2, .repeat = 2});
        AddTransition(a, 0, 10);
        ASSERT_EQ(select(a, 0, 38), SEL_WHOLE);
        leave(field, "2");
        EXPECT_EQ(items(a), "[" + std::to_string(PatternFromId(a)->item(0).patternId()) + change);
        EXPECT_EQ(items(PatternFromId(a)->item(0).patternId()), "[" + std::to_string(sub) + " *2 #2] 0:10");
        uint16_t b = MakePattern("B", {{1, 10}});
        ASSERT_EQ(select(b, 0, 10), SEL_WHOLE);
        leave(field, "2");
        EXPECT_EQ(items(b), "[" + std::to_string(PatternFromId(b)->item(0).patternId()) + change);
    }
}

TEST_F(ScaleField, TheUsesOfAPatternKnowItsNewLength) {
    uint16_t leaf = MakePattern("$leaf", {{1, 3}, {0, 4}});
    for (uint16_t field : {EDIT_SCALE, EDIT_REPEAT}) {
        for (uint16_t kind : {SEL_SPAN, SEL_WHOLE, SEL_PATTERN}) {
            uint16_t sub = MakePattern("$s", {{1, 10}, {0, 20}});
            AddReference(sub, {.id = leaf});
            a = MakePattern("A");
            AddReference(a, {.id = sub, .repeat = 5});
            TimeVal from = kind == SEL_SPAN ? 10 : kind == SEL_WHOLE ? 0 : 30;
            ASSERT_EQ(select(sub, from, 37), kind);
            leave(field, "2");
            EXPECT_TRUE(PatternFromId(a)->durationValid());
            EXPECT_EQ(PatternFromId(a)->duration, 5 * (37 + 37 - from)) << field << " " << kind;
        }
    }
}

TEST_F(ScaleField, OnlyADissolvedReferenceTidiesItsPattern) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}, {1, 5}});
    AddReference(a, {.id = sub});
    select(a, 15, 22);
    leave(EDIT_SCALE, "3");
    leave(EDIT_REPEAT, "2");
    EXPECT_EQ(items(a), "1:10 1:5 [" + std::to_string(sub) + " *3 #2]");
}

TEST_F(ScaleField, ACountHas16Bits) {
    for (uint16_t field : {EDIT_SCALE, EDIT_REPEAT}) {
        nested();
        select(a, 10, 52);
        leave(field, "65541");
        EXPECT_EQ(
            field == EDIT_SCALE ? PatternFromId(a)->item(1).scale() : PatternFromId(a)->item(1).repeat(), 5U);
    }
}

TEST_F(ScaleField, WhatIs1In16BitsWrapsNothing) {
    bit();
    for (uint16_t field : {EDIT_SCALE, EDIT_REPEAT}) {
        for (const char *typed : {"65536", "65537"}) {
            ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
            leave(field, typed);
            EXPECT_EQ(StoreText(), before) << field << " " << typed;
        }
    }
}

TEST_F(ScaleField, ScaleOfAWholePatternWrapsIt) {
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

TEST_F(ScaleField, ScaleOfAWholeThatIsOneReferenceMultiplies) {
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

TEST_F(ScaleField, ScaleOfAReference) {
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

TEST_F(ScaleField, TheSameScaleAgainLogsNothing) {
    nested();
    select(a, 10, 52);
    leave(EDIT_SCALE, "2");
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(ScaleField, Scale1DissolvesAWrapperThatIsRepeatedOnce) {
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

TEST_F(ScaleField, Scale0DissolvesAsScale1Does) {
    inner = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = inner, .scale = 2});
    ASSERT_EQ(select(a, 10, 24), SEL_PATTERN);
    leave(EDIT_SCALE, "0");
    EXPECT_EQ(items(a), "1:13 0:4");
}

TEST_F(ScaleField, Scale1LeavesARepeatedOrNamedPattern) {
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

TEST_F(ScaleField, AScaleBelow1IsSetBackTo1) {
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

TEST_F(ScaleField, Scale1OfASpanOrAWholeChangesNothing) {
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

TEST_F(RepeatField, RepeatOfASpanWrapsItAndSelectsAllOfIt) {
    bit();
    ASSERT_EQ(select(a, 5, 25), SEL_SPAN);
    leave(EDIT_REPEAT, "3");
    uint16_t made = PatternFromId(a)->item(1).patternId();
    EXPECT_EQ(items(a), "1:5 [" + std::to_string(made) + " *1 #3] 0:5 1:30");
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(frame(), std::to_string(a) + "/1 5-65");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(RepeatField, RepeatOfAWholeWrapsItAndSelectsIt) {
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

TEST_F(RepeatField, RepeatOfAWholeThatIsOneReferenceMultiplies) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    for (auto [old, typed, result] :
         {std::tuple{2, "3", 6}, {2, "#", 65535}, {65535, "2", 65535}, {300, "300", 65534}}) {
        a = MakePattern("A");
        AddReference(a, {.id = sub, .repeat = static_cast<uint32_t>(old)});
        select(a, 0, 70);
        EditSelection.SelKind = SEL_WHOLE;
        ShowSelection();
        leave(EDIT_REPEAT, typed);
        EXPECT_EQ(PatternFromId(a)->item(0).repeat(), result) << typed;
    }
}

TEST_F(RepeatField, RepeatOfAReference) {
    nested();
    select(a, 10, 52);
    leave(EDIT_REPEAT, "5");
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(inner) + " *2 #5] 1:8");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 10-80");
    EXPECT_EQ(text(EDIT_REPEAT), "5");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(RepeatField, Repeat1DissolvesAWrapperOfScale1) {
    inner = MakePattern("", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{0, 10}});
    AddReference(a, {.id = inner, .repeat = 2});
    before = StoreText();
    select(a, 10, 24);
    leave(EDIT_REPEAT, "1");
    EXPECT_EQ(items(a), "0:10 1:3 0:4");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(RepeatField, ARepeatBelow1IsSetBackTo1) {
    nested();
    select(a, 10, 52);
    leave(EDIT_REPEAT, "0");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), 1);
    EXPECT_EQ(text(EDIT_REPEAT), "1");
}

TEST_F(RepeatField, ASharpInTheMiddleOfAWaveIsNoNumber) {
    nested();
    select(a, 10, 52);
    ASSERT_FALSE(EditDialog.ForeverAllowed);
    leave(EDIT_REPEAT, "##");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), 1);
    EXPECT_FALSE(HeadlessEditDialog.foreverChecked);
}

TEST_F(RepeatField, TheSameRepeatAgainLogsNothing) {
    nested();
    select(a, 10, 52);
    leave(EDIT_REPEAT, "3");
    EXPECT_EQ(EditLog.rPtr, 0);
}

// --- forever --------------------------------------------------------------------------------------------

TEST_F(ForeverBox, ForeverOfTheLastReference) {
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

TEST_F(ForeverBox, ForeverTypedAsASharp) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .repeat = 2});
    select(a, 10, 24);
    enter(EDIT_REPEAT, "#");
    EXPECT_EQ(PatternFromId(a)->item(1).repeat(), REPEAT_FOREVER);
}

TEST_F(ForeverBox, ForeverOfAWholeAndOfASpanUpToTheEnd) {
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

TEST_F(ForeverBox, ForeverUncheckedOnASelectionThatIsNoReferenceChangesNothing) {
    bit();
    select(a, 0, 60);
    HeadlessClickForever(false);
    EXPECT_EQ(StoreText(), before);
}

} // namespace
