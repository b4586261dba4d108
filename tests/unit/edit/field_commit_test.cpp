// What no field of the floating dialog writes.
#include "display/wave_view.h"
#include "unit/edit/field_fixture.h"

namespace {

class FieldCommitTest : public FieldFixture {};

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

TEST_F(FieldCommitTest, ScaleAndRepeatOfACompositeInASequenceChangeNothing) {
    uint16_t x = MakePattern("X", {{1, 50}});
    uint16_t c = MakePattern("$c[1:0]");
    for (int i = 0; i < 2; i++) AddReference(c, {.id = x}, PatternKind::Composite);
    a = MakePattern("A[1:0]", {{1, 10}});
    AddReference(a, {.id = c, .scale = 2});
    before = StoreText();
    ASSERT_EQ(select(a, 20, 30), SEL_COMPOSITE);
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

TEST_F(FieldCommitTest, ASelectionThatDoesNotFitItsPatternAnyMoreWritesNothing) {
    uint16_t sub = MakePattern("$s[7:0]", {{1, 3}});
    bus();
    AddReference(a, {.id = sub, .scale = 2, .repeat = 2});
    before = StoreText();
    const std::pair<uint16_t, uint16_t> misfits[] = {
        {SEL_PULSE, 4}, {SEL_PULSE, 3}, {SEL_PATTERN, 4}, {SEL_PATTERN, 0}, {SEL_SPAN, 0}};
    for (auto [kind, item] : misfits) {
        for (uint16_t id : {EDIT_DURATION, EDIT_VALUE, EDIT_SCALE, EDIT_REPEAT}) {
            select(a, 5, 5);
            EditSelection.SelKind = kind;
            EditSelection.SelFrames[0].item = item;
            if (kind == SEL_SPAN) EditSelection.SelFrames[0].end = EditSelection.SelFrames[0].start;
            HeadlessEditDialog.texts[id] = "5";
            FieldCommit(id, 1);
            EXPECT_EQ(StoreText(), before) << kind << " " << item << " " << id;
            EXPECT_EQ(EditLog.rPtr, 0);
        }
    }
}

TEST_F(FieldCommitTest, WhereNothingIsLeftToSelectTheCursorAndItsRangeStay) {
    a = MakePattern("A");
    AddReference(a, {.id = MakePattern(""), .scale = 2});
    before = StoreText();
    select(a, 0, 100);
    EditSelection.SelKind = SEL_PATTERN;
    ShowSelection();
    WaveView.SelectStart = 70;
    WaveView.SelectEnd = 90;
    WaveView.CursorTime = 80;
    ASSERT_TRUE(leave(EDIT_SCALE, "1"));
    EXPECT_EQ(items(a), "");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_EQ(WaveView.SelectStart, 70U);
    EXPECT_EQ(WaveView.SelectEnd, 90U);
    EXPECT_EQ(WaveView.CursorTime, 80U);
    EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(FieldCommitTest, ATextIsCutAt80Characters) {
    bus();
    select(a, 15, 15);
    leave(EDIT_VALUE, std::string(79, '0') + "12");
    EXPECT_EQ(PatternFromId(a)->item(1).value(), 1U);
    HeadlessEditDialog.texts[EDIT_VALUE] = std::string(79, '0') + "34";
    FieldCommit(EDIT_VALUE, 0);
    EXPECT_EQ(PatternFromId(a)->item(1).value(), 3U) << "whatever the window lets through";
}

TEST_F(FieldCommitTest, TheLogFileIsHeldOpenForTheWriteOnly) {
    bit();
    for (int held : {0, 1}) {
        LogHoldOpen(held);
        select(a, 15, 15);
        leave(EDIT_DURATION, "5");
        HeadlessPickState(3, false);
        EXPECT_EQ(LogHoldOpen(0), held);
    }
}

TEST_F(FieldCommitTest, WithoutTheRowsPatternTheSelectionStaysWhereItIs) {
    nested();
    ASSERT_EQ(select(a, 11, 11), SEL_PULSE);
    std::string selected = frame();
    DeletePattern(PatternFromId(a));
    HeadlessEditDialog.texts[EDIT_DURATION] = "10";
    FieldCommit(EDIT_DURATION, 1);
    EXPECT_EQ(items(inner), "1:5 0:4");
    EXPECT_EQ(frame(), selected);
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
