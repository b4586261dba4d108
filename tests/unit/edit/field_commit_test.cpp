// What no field of the floating dialog writes.
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
