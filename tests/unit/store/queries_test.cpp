#include "store/queries.h"

#include "config/settings.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "unit/support/fresh_store.h"

namespace {

class Queries : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        Settings.AutoClockAssign = false;
        spans.clear();
        ExtendSpanHook = [](TimeVal end) { spans.push_back(end); };
    }
    static TimeVal length(uint16_t id) { return PatternDuration(PatternFromId(id)); }
    static std::vector<TimeVal> spans;
};
std::vector<TimeVal> Queries::spans;

TEST_F(Queries, AnEmptyPatternLastsAsLongAsItsDelay) {
    uint16_t id = MakePattern("A");
    EXPECT_EQ(length(id), 0u);
    SetPatternDelay(PatternFromId(id), 30);
    EXPECT_EQ(length(id), 30u);
}

TEST_F(Queries, ANodeWithoutAFormatCountsTimeUnits) {
    uint16_t id = MakePattern("A", {{1, 10}, {0, 5}});
    SetPatternParams(PatternFromId(id), 0, 0, 0, 100, 50, 1);
    Settings.ClockMultiplier = 5;
    EXPECT_EQ(length(id), 15u);
}

TEST_F(Queries, ANodeWithAFormatCountsClockCycles) {
    uint16_t id = MakePattern("A", {{1, 3}});
    Settings.ClockMultiplier = 5;
    SetPatternParams(PatternFromId(id), 0, 0, 1, 10, 50, 1);
    EXPECT_EQ(length(id), 150u);
    SetPatternParams(PatternFromId(id), 0, 0, 1, 10, 50, 0);
    EXPECT_EQ(length(id), 30u);
    SetPatternDelay(PatternFromId(id), 7);
    EXPECT_EQ(length(id), 37u);
}

TEST_F(Queries, TheUnitWrapsInPlain32Bits) {
    uint16_t id = MakePattern("A", {{1, 1}});
    Settings.ClockMultiplier = 65536;
    SetPatternParams(PatternFromId(id), 0, 0, 1, 65537, 50, 1);
    EXPECT_EQ(length(id), 65536u);
}

TEST_F(Queries, LengthsSaturate) {
    uint16_t id = MakePattern("A", {{1, 0x7FFFFFFF}, {0, 0x7FFFFFFF}, {1, 1}});
    EXPECT_EQ(length(id), 4294967295u);
    AddTransition(id, 0, 5);
    EXPECT_EQ(length(id), TIME_FOREVER);
}

TEST_F(Queries, AReferenceCountsScaleTimesRepeat) {
    uint16_t ten = MakePattern("$T", {{1, 10}});
    uint16_t none = MakePattern("$N");
    uint16_t id = MakePattern("A");
    AddReference(id, {ten, 2, 3});
    EXPECT_EQ(length(id), 60u);
    AddReference(id, {none, 9, 9});
    EXPECT_EQ(length(id), 60u);
}

TEST_F(Queries, AReferenceTakesTheItemsLengthOfItsTarget) {
    uint16_t target = MakePattern("T", {{1, 10}});
    SetPatternDelay(PatternFromId(target), 100);
    uint16_t id = MakePattern("A");
    AddReference(id, {target});
    EXPECT_EQ(length(id), 10u);
}

TEST_F(Queries, ARepeatForeverIsEndlessEvenOfNothing) {
    uint16_t none = MakePattern("$N");
    uint16_t id = MakePattern("A", {{1, 5}});
    AddReference(id, {none, 1, 65535});
    AddReference(id, {none});
    EXPECT_EQ(length(id), TIME_FOREVER);
}

TEST_F(Queries, AnEndlessTargetMakesThePatternEndless) {
    uint16_t inner = MakePattern("$I", {{1, 5}});
    uint16_t endless = MakePattern("$E");
    AddReference(endless, {inner, 1, 65535});
    uint16_t id = MakePattern("A");
    AddReference(id, {endless, 3, 2});
    EXPECT_EQ(length(id), TIME_FOREVER);
}

TEST_F(Queries, ACompositeLastsAsLongAsItsShortestMember) {
    uint16_t a = MakePattern("$A", {{1, 30}});
    uint16_t b = MakePattern("$B", {{1, 20}});
    uint16_t id = MakePattern("C");
    AddReference(id, {a, 1, 5});
    AddReference(id, {b}, PatternKind::Composite);
    EXPECT_EQ(length(id), 20u) << "a repeat plays no part";
    uint16_t scaled = MakePattern("S");
    AddReference(scaled, {a});
    AddReference(scaled, {b, 2}, PatternKind::Composite);
    EXPECT_EQ(length(scaled), 30u);
}

TEST_F(Queries, ANodeInACompositeCountsWithItsFullLength) {
    uint16_t node = MakePattern("N", {{1, 10}});
    SetPatternDelay(PatternFromId(node), 5);
    uint16_t id = MakePattern("C");
    AddReference(id, {node, 1, 1, 1}, PatternKind::Reference);
    EXPECT_EQ(length(id), 15u);
}

TEST_F(Queries, AnEmptyCompositeHasNoLength) {
    uint16_t id = MakePattern("C");
    PatternFromId(id)->setKind(PatternKind::Composite);
    EXPECT_EQ(length(id), 0u);
}

// Within a replay of the log.
TEST_F(Queries, AMemberThatIsNotThereIsAsLongAsNothing) {
    uint16_t id = MakePattern("$A");
    AddReference(id, {MakePattern("$B", {{1, 10}})}, PatternKind::Composite);
    EXPECT_EQ(length(id), 10u);
    AddReference(id, {77}, PatternKind::Composite);
    EXPECT_EQ(length(id), 0u);
}

TEST_F(Queries, WithoutAViewLengthsAreMeasuredAllTheSame) {
    ExtendSpanHook = nullptr;
    MakePattern("$A", {{1, 10}});
    EXPECT_EQ(UpdateFullDuration(), 10u);
}

TEST_F(Queries, FreeIdsHaveNoEnd) {
    uint16_t id = MakePattern("$A", {{1, 100}});
    MakePattern("$B", {{1, 10}});
    EXPECT_EQ(LongestPatternEnd(), 100u);
    DeletePattern(PatternFromId(id));
    EXPECT_EQ(LongestPatternEnd(), 10u);
}

TEST_F(Queries, AnEndlessDelayMakesTheDocumentEndless) {
    SetPatternDelay(PatternFromId(MakePattern("$A")), TIME_FOREVER);
    EXPECT_EQ(LongestPatternEnd(), TIME_FOREVER);
}

TEST_F(Queries, AnEmptyStoreExtendsTheSpanByNothing) {
    EXPECT_EQ(UpdateFullDuration(), 0u);
    EXPECT_EQ(spans, std::vector<TimeVal>{0});
    EXPECT_EQ(LongestPatternEnd(), 0u);
    EXPECT_EQ(spans.size(), 1u);
}

TEST_F(Queries, TheLongestPatternExtendsTheSpan) {
    MakePattern("A", {{1, 10}});
    MakePattern("B", {{1, 30}});
    MakePattern("C", {{1, 20}});
    EXPECT_EQ(UpdateFullDuration(), 30u);
    EXPECT_EQ(spans, std::vector<TimeVal>{30});
    EXPECT_EQ(UpdateFullDuration(), 0u) << "nothing has changed since";
    EXPECT_EQ(LongestPatternEnd(), 30u);
}

TEST_F(Queries, ARepeatForeverAtTheEndDoesNotMakeTheDocumentEndless) {
    uint16_t inner = MakePattern("$I", {{1, 5}});
    uint16_t id = MakePattern("A", {{1, 10}});
    AddReference(id, {inner, 1, 65535});
    EXPECT_EQ(UpdateFullDuration(), 5u);
    EXPECT_EQ(LongestPatternEnd(), 5u);
}

TEST_F(Queries, AForeverElsewhereMakesTheDocumentEndless) {
    uint16_t inner = MakePattern("$I", {{1, 5}});
    uint16_t nested = MakePattern("", {{1, 5}});
    AddReference(nested, {inner, 1, 65535});
    uint16_t id = MakePattern("A");
    AddReference(id, {nested});
    EXPECT_EQ(UpdateFullDuration(), TIME_FOREVER);
    uint16_t behind = MakePattern("B");
    AddReference(behind, {inner, 1, 65535});
    AddTransition(behind, 1, 5);
    EXPECT_EQ(UpdateFullDuration(), TIME_FOREVER);
}

TEST_F(Queries, APatternMeasuredOnTheWayDoesNotCountByItself) {
    uint16_t outer = MakePattern("A");
    uint16_t node = MakePattern("N", {{1, 10}});
    SetPatternDelay(PatternFromId(node), 500);
    AddReference(outer, {node});
    EXPECT_EQ(UpdateFullDuration(), 10u);
}

TEST_F(Queries, AnEditReachesEveryPatternAbove) {
    uint16_t ids[4];
    ids[0] = MakePattern("$0", {{1, 10}});
    for (int i = 1; i < 4; ++i) {
        ids[i] = MakePattern(("$" + std::to_string(i)).c_str());
        AddReference(ids[i], {ids[i - 1], 1, 2});
    }
    uint16_t apart = MakePattern("X", {{1, 1}});
    ValidateDurations();
    for (uint16_t id : ids) PatternFromId(id)->setChanged(false);
    PatternFromId(apart)->setChanged(false);

    SetItemDuration(PatternFromId(ids[0]), 0, 11);
    EXPECT_EQ(ValidateDurations(), 88u);
    for (uint16_t id : ids) {
        EXPECT_TRUE(PatternFromId(id)->changed()) << id;
        EXPECT_TRUE(PatternFromId(id)->durationValid()) << id;
    }
    EXPECT_FALSE(PatternFromId(apart)->changed());
}

TEST_F(Queries, AskingInTheMidstOfAnEditHidesNothingFromThoseAbove) {
    uint16_t low = MakePattern("$LOW", {{0, 10}});
    uint16_t middle = MakePattern("$MID");
    AddReference(middle, {low});
    uint16_t top = MakePattern("$TOP");
    AddReference(top, {middle});
    ValidateDurations();
    SetItemDuration(PatternFromId(low), 0, 25);
    EXPECT_EQ(PatternDuration(PatternFromId(low)), 25u);
    EXPECT_EQ(PatternDuration(PatternFromId(top)), 25u);
    EXPECT_TRUE(PatternFromId(top)->changed());
    ValidateDurations();
    EXPECT_EQ(PatternFromId(middle)->duration, 25u);
}

// Of the parameters, too.
TEST_F(Queries, AskingBehindNewParametersHidesNothingFromThoseAbove) {
    uint16_t node = MakePattern("N", {{0, 10}});
    uint16_t bus = MakePattern("C");
    AddReference(bus, {node});
    AddReference(bus, {node}, PatternKind::Composite);
    ValidateDurations();
    EXPECT_EQ(length(bus), 10u);
    SetPatternParams(PatternFromId(node), 0, 0, 1, 7, 50, 0);
    EXPECT_EQ(length(node), 70u);
    EXPECT_EQ(length(bus), 70u);
    EXPECT_TRUE(PatternFromId(bus)->changed());
}

TEST_F(Queries, BusMembersCompareWithCase) {
    MakePattern("A[3:0]");
    EXPECT_NE(IsNodeBusMember("A[2]"), 0);
    EXPECT_NE(IsNodeBusMember("X,A[0]"), 0);
    EXPECT_EQ(IsNodeBusMember("a[2]"), 0);
    EXPECT_EQ(IsNodeBusMember("A[4]"), 0);
    EXPECT_NE(FindPattern("a[3:0]"), nullptr) << "whole names compare without";
}

TEST_F(Queries, OnlyPlainNodesHaveMembers) {
    uint16_t sub = MakePattern("$S[1:0]");
    uint16_t node = MakePattern("N[1:0]");
    AddReference(node, {sub}, PatternKind::Composite);
    EXPECT_EQ(IsNodeBusMember("$S[1]"), 0);
    EXPECT_EQ(IsNodeBusMember("N[1]"), 0);
}

TEST_F(Queries, TellsWhetherAPatternIsReferredTo) {
    uint16_t target = MakePattern("$T", {{1, 1}});
    uint16_t user = MakePattern("U", {{target, target}});
    EXPECT_EQ(IsPatternReferenced(target), 0);
    AddReference(user, {target});
    EXPECT_EQ(IsPatternReferenced(target), 1);
    EXPECT_EQ(IsPatternReferenced(user), 0);
}

TEST_F(Queries, CirclesAreSeenBeforeTheyClose) {
    uint16_t a = MakePattern("$A");
    uint16_t b = MakePattern("$B");
    uint16_t c = MakePattern("$C");
    AddReference(a, {b});
    AddReference(a, {b});
    AddReference(b, {c});
    EXPECT_FALSE(WouldCloseCircle(a, c));
    EXPECT_TRUE(WouldCloseCircle(c, a));
    EXPECT_TRUE(WouldCloseCircle(c, c));
    EXPECT_EQ(FindReferenceCircle(), 0);
    AddReference(c, {a});
    EXPECT_NE(FindReferenceCircle(), 0);
    EXPECT_TRUE(WouldCloseCircle(MakePattern("$D"), a)) << "there is one in what the target refers to";
}

TEST_F(Queries, ACircleThatStandsAllTheSameIsNotWalkedForever) {
    uint16_t a = MakePattern("$A", {{1, 10}});
    uint16_t b = MakePattern("$B");
    AddReference(b, {a});
    AddReference(a, {b});
    EXPECT_EQ(ValidateDurations(), 10u);
}

} // namespace
