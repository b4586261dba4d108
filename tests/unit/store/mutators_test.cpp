#include "store/mutators.h"

#include "config/settings.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <functional>

namespace {

class Mutators : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        data = MakePattern("D", {{1, 10}, {0, 20}});
        target = MakePattern("$T", {{1, 5}});
        uses = MakePattern("U");
        AddReference(uses, {target, 2, 3});
        for (uint16_t id : {data, target, uses}) settle(id);
    }

    static void settle(uint16_t id) {
        PatternFromId(id)->setChanged(false);
        ItemsDuration(PatternFromId(id));
    }

    // Runs `change` twice: the first time it changes, the second time it must not.
    static void expectChange(uint16_t id, bool keepsDuration, const std::function<int(Pattern *)> &change) {
        settle(id);
        EXPECT_EQ(change(PatternFromId(id)), 1);
        EXPECT_TRUE(PatternFromId(id)->changed());
        EXPECT_EQ(PatternFromId(id)->durationValid(), keepsDuration);
        settle(id);
        EXPECT_EQ(change(PatternFromId(id)), 0);
        EXPECT_FALSE(PatternFromId(id)->changed());
        EXPECT_TRUE(PatternFromId(id)->durationValid());
    }

    Pattern *d() { return PatternFromId(data); }
    Pattern *u() { return PatternFromId(uses); }

    uint16_t data = 0, target = 0, uses = 0;
};

TEST_F(Mutators, ChangesMarkThePatternAndRepeatsOfThemDoNot) {
    expectChange(data, false, [](Pattern *p) { return SetPatternDelay(p, 7); });
    expectChange(data, false, [](Pattern *p) { return SetPatternParams(p, 1, 2, 3, 4, 5, 6); });
    expectChange(data, true, [](Pattern *p) { return SetItemValue(p, 0, 3); });
    expectChange(data, false, [](Pattern *p) { return SetItemDuration(p, 1, 99); });
    expectChange(uses, false, [](Pattern *p) { return SetItemRepeat(p, 0, 9); });
    expectChange(uses, false, [](Pattern *p) { return SetItemScale(p, 0, 9); });
    expectChange(uses, false, [](Pattern *p) { return SetItemFormat(p, 0, 3); });
}

TEST_F(Mutators, ParametersAreSetTogether) {
    SetPatternParams(d(), 3, 4, 2, -5, 30, 8);
    EXPECT_EQ(d()->stateTable(), 3u);
    EXPECT_EQ(d()->pinType(), 4u);
    EXPECT_EQ(d()->format(), SignalFormat::RZ);
    EXPECT_EQ(d()->period, -5);
    EXPECT_EQ(d()->duty, 30);
    EXPECT_EQ(d()->clock(), 8u);
    EXPECT_TRUE(d()->hasProperties());
    EXPECT_EQ(d()->itemCount, 2);
}

TEST_F(Mutators, EachParameterAloneIsAChange) {
    SetPatternParams(d(), 1, 1, 1, 1, 1, 1);
    for (int field = 0; field < 6; ++field) {
        int v[6] = {1, 1, 1, 1, 1, 1};
        v[field] = 2;
        EXPECT_EQ(SetPatternParams(d(), v[0], v[1], v[2], v[3], v[4], v[5]), 1) << field;
        SetPatternParams(d(), 1, 1, 1, 1, 1, 1);
    }
}

TEST_F(Mutators, ArgumentsAreMaskedToTheirFields) {
    SetPatternParams(d(), 19, 9, 12, 1, 65536 + 4, 17);
    EXPECT_EQ(d()->stateTable(), 3u);
    EXPECT_EQ(d()->pinType(), 1u);
    EXPECT_EQ(static_cast<uint32_t>(d()->format()), 4u);
    EXPECT_EQ(d()->duty, 4);
    EXPECT_EQ(d()->clock(), 1u);
    EXPECT_EQ(SetPatternParams(d(), 3, 1, 4, 1, 4, 1), 0);
}

TEST_F(Mutators, ADataItemKeepsItsFormWhenItsDurationChanges) {
    SetItemDuration(d(), 0, 0x7FFFFFFF);
    EXPECT_FALSE(d()->item(0).isReference());
    EXPECT_EQ(d()->item(0).duration(), 0x7FFFFFFFu);
    EXPECT_EQ(AddItemDuration(d(), 1, static_cast<uint32_t>(-5)), 1);
    EXPECT_EQ(d()->item(1).duration(), 15u);
    EXPECT_EQ(AddItemDuration(d(), 1, 0), 0);
}

TEST_F(Mutators, ARepeatOrScaleOfZeroIsOne) {
    EXPECT_EQ(SetItemRepeat(u(), 0, 0), 1);
    EXPECT_EQ(u()->item(0).repeat(), 1);
    EXPECT_EQ(SetItemRepeat(u(), 0, 1), 0);
    EXPECT_EQ(SetItemScale(u(), 0, 0), 1);
    EXPECT_EQ(u()->item(0).scale(), 1u);
    EXPECT_EQ(SetItemScale(u(), 0, 1), 0);
}

TEST_F(Mutators, ARepeatOf65535IsForever) {
    SetItemRepeat(u(), 0, 65535);
    EXPECT_EQ(u()->item(0).repeat(), REPEAT_FOREVER);
    EXPECT_EQ(PatternDuration(u()), TIME_FOREVER);
}

TEST_F(Mutators, TheFieldsOfAReferenceAreSetOneByOne) {
    AddReference(uses, {target, 65535, 4, 31, 30, 4});
    u()->item(1).word0 |= 3u << 30;
    SetItemScale(u(), 1, 2);
    SetItemFormat(u(), 1, 1);
    SetItemRepeat(u(), 1, 9);
    const PatternItem &item = u()->item(1);
    EXPECT_TRUE(item.isReference());
    EXPECT_EQ(item.scale(), 2u);
    EXPECT_EQ(item.sliceWidth(), 31u);
    EXPECT_EQ(item.sliceOffset(), 30u);
    EXPECT_EQ(item.forcedFormat(), 1u);
    EXPECT_EQ(item.repeat(), 9);
    EXPECT_EQ(item.patternId(), target);
    EXPECT_EQ(item.word0 >> 30, 3u);
}

TEST_F(Mutators, ItemsAreInsertedAtTheirPlace) {
    InsertTransition(d(), 1, 5, 6);
    EXPECT_EQ(d()->itemCount, 3);
    EXPECT_EQ(d()->item(1).value(), 5u);
    EXPECT_EQ(d()->item(1).duration(), 6u);
    EXPECT_EQ(d()->item(2).value(), 0u);
    InsertTransition(d(), 0, 1, 0x80000001u);
    EXPECT_EQ(d()->item(0).duration(), 1u) << "a duration has 31 bits";
    EXPECT_TRUE(d()->changed());
    EXPECT_FALSE(d()->durationValid());
}

TEST_F(Mutators, TheLastInsertedReferenceGivesThePatternItsKind) {
    AddReference(uses, {target}, PatternKind::Composite);
    EXPECT_EQ(u()->kind(), PatternKind::Composite);
    AddReference(uses, {target}, PatternKind::Plain);
    EXPECT_EQ(u()->kind(), PatternKind::Plain);
}

TEST_F(Mutators, ADeletedItemLeavesSlack) {
    DeleteItem(d(), 0);
    EXPECT_EQ(d()->itemCount, 1);
    EXPECT_EQ(d()->item(0).duration(), 20u);
    EXPECT_FALSE(d()->durationValid());
    uint32_t place = PatternTable[data];
    EXPECT_EQ(PatternAlloc(data), d());
    EXPECT_EQ(PatternTable[data], place);
    DeleteItem(u(), 0);
    EXPECT_EQ(u()->itemCount, 0);
}

TEST_F(Mutators, EqualNeighboursMerge) {
    EXPECT_EQ(MergeItems(d(), 0), 0) << "different values";
    EXPECT_EQ(MergeItems(d(), 1), 0) << "the last item";
    EXPECT_EQ(MergeItems(d(), 65535), 0) << "the index behind wraps to 0, which is no neighbour of it";
    SetItemValue(d(), 1, 1);
    EXPECT_EQ(MergeItems(d(), 0), 1);
    ASSERT_EQ(d()->itemCount, 1);
    EXPECT_EQ(d()->item(0).duration(), 30u);
}

TEST_F(Mutators, ReferencesDoNotMerge) {
    AddReference(uses, {target, 2, 3});
    EXPECT_EQ(MergeItems(u(), 0), 0);
    AddTransition(uses, 1, 1);
    EXPECT_EQ(MergeItems(u(), 1), 0);
}

TEST_F(Mutators, AllNeighboursMerge) {
    uint16_t id = MakePattern("M", {{1, 1}, {1, 2}, {0, 3}, {0, 4}, {0, 5}, {1, 6}});
    MergeAllItems(PatternFromId(id));
    const Pattern *p = PatternFromId(id);
    ASSERT_EQ(p->itemCount, 3);
    EXPECT_EQ(p->item(0).duration(), 3u);
    EXPECT_EQ(p->item(1).duration(), 12u);
    EXPECT_EQ(p->item(2).duration(), 6u);
    MergeAllItems(PatternFromId(MakePattern("E")));
    MergeAllItems(PatternFromId(MakePattern("S", {{1, 1}})));
}

TEST_F(Mutators, ANewNodeHasItsDefaults) {
    const Pattern *p = CreatePattern(0, "A[3:0]", 99);
    EXPECT_EQ(p->width, 4) << "the name gives the width";
    EXPECT_TRUE(p->isBus());
    EXPECT_TRUE(p->hasProperties());
    EXPECT_EQ(p->clock(), 1u);
    EXPECT_EQ(p->period, 1);
    EXPECT_EQ(p->duty, 50);
    EXPECT_EQ(p->delay, 0u);
    EXPECT_EQ(p->duration, 0u);
    EXPECT_EQ(p->itemCount, 0);
    EXPECT_EQ(p->nameLength, 8);
    EXPECT_EQ(p->free, 0);
    EXPECT_EQ(p->kind(), PatternKind::Plain);
    EXPECT_EQ(p->format(), SignalFormat::None);
    EXPECT_EQ(p->stateTable(), 0u);
    EXPECT_EQ(p->pinType(), 0u);
}

TEST_F(Mutators, ClocksAreAssignedToNodesOnlyAndOnlyWhenAsked) {
    EXPECT_EQ(CreatePattern(0, "$x", 1)->clock(), 0u);
    EXPECT_FALSE(CreatePattern(0, "$y", 1)->hasProperties());
    EXPECT_EQ(CreatePattern(0, "", 1)->clock(), 0u);
    Settings.AutoClockAssign = false;
    EXPECT_EQ(CreatePattern(0, "N", 1)->clock(), 0u);
}

TEST_F(Mutators, AnUnnamedPatternTakesTheGivenWidth) {
    const Pattern *p = CreatePattern(0, "", 7);
    EXPECT_EQ(p->width, 7);
    EXPECT_TRUE(p->isBus());
    EXPECT_EQ(p->nameLength, 0);
    EXPECT_STREQ(p->name(), "");
}

TEST_F(Mutators, AWidthBeyondItsFieldIsHeldAtTheTop) {
    EXPECT_EQ(CreatePattern(0, "$A[0:65536]", 1)->width, 65535);
}

TEST_F(Mutators, ADeletedPatternGivesItsIdBack) {
    SetPatternDelay(d(), 3);
    EXPECT_EQ(DeletePattern(d()), data);
    EXPECT_FALSE(PatternInUse(data));
    EXPECT_EQ(FindPattern("D"), nullptr);
}

TEST_F(Mutators, RenamingKeepsTheItemsAndTheWidth) {
    for (const char *name : {"E", "EEEEEEEEEEEEEEEEEEEEEEEEE", "EEEE", "E[7:0]"}) {
        settle(data);
        RenamePattern(d(), name);
        EXPECT_STREQ(d()->name(), name);
        EXPECT_EQ(d()->nameLength, (strlen(name) + 4) & ~3u);
        EXPECT_EQ(d()->item(0).duration(), 10u);
        EXPECT_EQ(d()->item(1).duration(), 20u);
        EXPECT_EQ(d()->width, 1);
        EXPECT_FALSE(d()->isBus());
        EXPECT_TRUE(d()->durationValid());
        EXPECT_TRUE(d()->changed());
        EXPECT_EQ(FindPattern(name), d());
        EXPECT_EQ(HeapFault(), "");
    }
    EXPECT_EQ(FindPattern("D"), nullptr);
}

TEST_F(Mutators, ANameMuchLongerThanTheReservedRoomMovesTheRecord) {
    std::string name(1000, 'x');
    RenamePattern(d(), name.c_str());
    MakePattern("After", {{1, 1}});
    EXPECT_EQ(name, d()->name());
    EXPECT_EQ(d()->item(1).duration(), 20u);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(Mutators, AnIndexBehindTheEndMeansTheEnd) {
    uint16_t id = MakePattern("A", {{1, 10}});
    InsertTransition(PatternFromId(id), 7, 0, 20);
    InsertReference(PatternFromId(id), PatternKind::Plain, 65535, MakePattern("$SUB"), 1, 1, 0, 0, 0);
    ASSERT_EQ(PatternFromId(id)->itemCount, 3);
    EXPECT_EQ(PatternFromId(id)->item(1).duration(), 20u);
    EXPECT_TRUE(PatternFromId(id)->item(2).isReference());
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(Mutators, ItemsThatAreTooLongTogetherStayApart) {
    uint16_t id = MakePattern("L", {{1, MAX_ITEM_DURATION - 4}, {1, 5}, {1, 4}});
    EXPECT_EQ(MergeItems(PatternFromId(id), 0), 0);
    EXPECT_EQ(PatternFromId(id)->itemCount, 3);
    DeleteItem(PatternFromId(id), 1);
    EXPECT_EQ(MergeItems(PatternFromId(id), 0), 1);
    EXPECT_EQ(PatternFromId(id)->item(0).duration(), MAX_ITEM_DURATION);
}

TEST_F(Mutators, ReferencesAreCountedWhereverTheyComeAndGo) {
    uint16_t target = MakePattern("$SUB", {{0, 10}});
    uint16_t id = MakePattern("USER", {{0, 10}});
    EXPECT_EQ(ReferenceItems[id], 0u);
    AddReference(id, {target});
    AddTransition(id, 1, 5);
    AddReference(id, {target, 2, 3});
    AddReference(id, {target});
    EXPECT_EQ(ReferenceItems[id], 3u);
    EXPECT_EQ(ReferenceItems[target], 0u);
    DeleteItem(PatternFromId(id), 1);
    EXPECT_EQ(ReferenceItems[id], 2u);
    DropItem(PatternFromId(id), 2);
    DeleteItem(PatternFromId(id), 0); // data
    EXPECT_EQ(ReferenceItems[id], 1u);
    EXPECT_EQ(HeapFault(), "");
    DeletePattern(PatternFromId(id));
    CreatePattern(id, "AGAIN", 0);
    EXPECT_EQ(ReferenceItems[id], 0u);
}

} // namespace
