// What a walk of items one after the other delivers.
#include "config/settings.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/support/fresh_store.h"
#include "walk_log.h"

namespace {

using Walker = FreshStore;

void SetParams(uint16_t id, SignalFormat format, int32_t period, uint32_t duty, uint32_t clock = 0) {
    SetPatternParams(PatternFromId(id), 0, 0, static_cast<uint32_t>(format), period, duty, clock);
}

uint16_t Clocked(const char *name, SignalFormat format, int32_t period, uint32_t duty,
                 const Transitions &items) {
    uint16_t id = MakePattern(name, items);
    SetParams(id, format, period, duty);
    return id;
}

TEST_F(Walker, DeliversTheLevelsOfAPatternInOrder) {
    EXPECT_EQ(WalkText(MakePattern("a", {{0, 5}, {1, 10}, {2, 3}})), "0-5=0 5-15=1 15-18=2L");
}

TEST_F(Walker, TellsLengthAndKindOfALevel) {
    WalkResult walk = Walk(MakePattern("a", {{0, 5}, {1, 10}}));
    EXPECT_EQ(walk.answer, 1);
    ASSERT_EQ(walk.segments.size(), 2u);
    EXPECT_EQ(walk.segments[0].length, 5u);
    EXPECT_EQ(walk.segments[0].segFlags, SegLevel);
    EXPECT_EQ(walk.segments[1].segFlags, SegLevel | SegLast);
}

TEST_F(Walker, GivesAPatternWithoutLengthNoCallAndTheAnswer0) {
    uint16_t empty = MakePattern("a");
    WalkResult walk = Walk(empty);
    EXPECT_EQ(walk.answer, 0);
    EXPECT_TRUE(walk.segments.empty());
    EXPECT_EQ(PatternValueAt(PatternFromId(empty), 7, false), 0u);
    EXPECT_EQ(Walk(MakePattern("b", {{1, 0}})).answer, 0);
}

TEST_F(Walker, AnswersWhatTheCallbackSaidLast) {
    uint16_t id = MakePattern("a", {{0, 5}, {1, 5}, {0, 5}});
    WalkResult walk = Walk(id, {}, 2);
    EXPECT_EQ(walk.answer, 0);
    EXPECT_EQ(walk.segments.size(), 2u);
}

TEST_F(Walker, StopsForACallbackThatAnswers0InsideANest) {
    uint16_t inner = MakePattern("$p", {{1, 1}, {0, 1}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .repeat = 100});
    AddTransition(id, 1, 5);
    EXPECT_EQ(Walk(id, {.flags = WalkNames | WalkWaves}, 3).segments.size(), 3u);
    EXPECT_EQ(Walk(id, {.flags = WalkNames | WalkWaves}, 1).segments.size(), 1u);
    EXPECT_EQ(Walk(id, {.minDetail = 10}, 1).segments.size(), 1u);
}

TEST_F(Walker, PassesOverItemsInFrontOfTheWindowAndStopsBehindIt) {
    uint16_t id = MakePattern("a", {{0, 5}, {1, 5}, {2, 5}, {3, 5}});
    EXPECT_EQ(WalkText(id, {.from = 5, .to = 10}), "5-10=1L");
    EXPECT_EQ(WalkText(id, {.from = 4, .to = 11}), "0-5=0 5-10=1 10-15=2L");
}

TEST_F(Walker, StartsAtTheLastUnitForAWindowBehindTheEnd) {
    uint16_t id = MakePattern("a", {{0, 5}, {1, 5}});
    EXPECT_EQ(WalkText(id, {.from = 10, .to = 20}), "5-10=1L");
    EXPECT_EQ(WalkText(id, {.from = TIME_FOREVER, .to = TIME_FOREVER}), "5-10=1L");
    EXPECT_EQ(PatternValueAt(PatternFromId(id), 4000, false), 1u);
}

TEST_F(Walker, EndsAWindowThatRunsBackward) {
    uint16_t id = MakePattern("a", {{0, 5}, {1, 5}, {2, 5}});
    EXPECT_EQ(WalkText(id, {.from = 7, .to = 2}), "5-10=1L");
    EXPECT_EQ(WalkText(id, {.from = 0, .to = 0}), "0-5=0L");
}

TEST_F(Walker, ShowsADelayAsALevelOf0InFront) {
    uint16_t id = MakePattern("a", {{1, 5}});
    SetPatternDelay(PatternFromId(id), 10);
    EXPECT_EQ(WalkText(id), "0-10=0 10-15=1L");
    EXPECT_EQ(WalkText(id, {.from = 3}), "3-10=0 10-15=1L");
    EXPECT_EQ(Walk(id, {.from = 3}).segments[0].length, 10u);
    EXPECT_EQ(WalkText(id, {.from = 10}), "10-15=1L");
}

TEST_F(Walker, EndsWithinADelayThatReachesTheWindowsEnd) {
    uint16_t id = MakePattern("a", {{1, 5}});
    SetPatternDelay(PatternFromId(id), 10);
    EXPECT_EQ(WalkText(id, {.to = 10}), "0-10=0L");
    EXPECT_EQ(WalkText(id, {.to = 4}), "0-10=0L");
    EXPECT_EQ(Walk(id, {.from = 50, .to = 4}).answer, 1);
    uint16_t onlyDelay = MakePattern("b");
    SetPatternDelay(PatternFromId(onlyDelay), 10);
    EXPECT_EQ(WalkText(onlyDelay), "0-10=0L");
}

TEST_F(Walker, RepeatsAndScalesAReference) {
    uint16_t inner = MakePattern("$p", {{1, 2}, {0, 3}});
    uint16_t id = MakePattern("a", {{0, 5}});
    AddReference(id, {.id = inner, .scale = 3, .repeat = 2});
    EXPECT_EQ(WalkText(id), "0-5=0 5-11=1 11-20=0 20-26=1 26-35=0L");
}

TEST_F(Walker, SkipsWholeRepetitionsInFrontOfTheWindow) {
    uint16_t inner = MakePattern("$p", {{1, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .scale = 3, .repeat = 2});
    EXPECT_EQ(WalkText(id, {.from = 20}), "15-30=1L");
}

TEST_F(Walker, PassesOverAReferenceThatEndsWhereTheWindowBegins) {
    uint16_t inner = MakePattern("$p", {{1, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .repeat = 2});
    AddTransition(id, 0, 5);
    EXPECT_EQ(WalkText(id, {.from = 10}), "10-15=0L");
    EXPECT_EQ(WalkText(id, {.from = 10, .flags = WalkNames}), "10-15=0L");
}

TEST_F(Walker, DeliversARepeatForeverUpToTheWindowsEnd) {
    uint16_t inner = MakePattern("$p", {{1, 5}, {0, 5}});
    uint16_t id = MakePattern("a", {{0, 7}});
    AddReference(id, {.id = inner, .repeat = REPEAT_FOREVER});
    EXPECT_EQ(WalkText(id, {.to = 25}), "0-7=0 7-12=1 12-17=0 17-22=1 22-27=0L");
    EXPECT_EQ(PatternDuration(PatternFromId(id)), TIME_FOREVER);
    EXPECT_EQ(WalkText(id, {.from = 4000000000u, .to = 4000000001u}), "3999999997-4000000002=1L");
}

TEST_F(Walker, DeliversARepeatForeverHoweverManyRoundsThatTakes) {
    uint16_t inner = MakePattern("$p", {{1, 1}, {0, 1}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .repeat = REPEAT_FOREVER});
    for (uint32_t flags : {0u, uint32_t{WalkNames}, uint32_t{WalkWaves}}) {
        WalkResult walk = Walk(id, {.to = 300000, .flags = flags});
        EXPECT_EQ(walk.segments.size(), flags & WalkNames ? 150000u : 300000u);
        EXPECT_EQ(walk.segments.back().end, 300000u);
        EXPECT_TRUE(walk.segments.back().segFlags & SegLast);
    }
}

TEST_F(Walker, EndsARepeatForeverThatMovesNothing) {
    // Its cached length is out of date.
    uint16_t inner = MakePattern("$p", {{1, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .repeat = REPEAT_FOREVER});
    PatternDuration(PatternFromId(id));
    DeleteItem(PatternFromId(inner), 0);
    EXPECT_EQ(WalkText(id), "");
}

TEST_F(Walker, ReachesTheEndOfTime) {
    uint16_t inner = MakePattern("$p", {{1, 5}, {0, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .repeat = REPEAT_FOREVER});
    WalkResult walk = Walk(id, {.from = TIME_FOREVER - 1});
    ASSERT_EQ(TextOf(walk.segments), "4294967290-4294967295=1L");
    EXPECT_EQ(walk.segments[0].length, 5u);
    // A product that does not fit is cut, and so is the end.
    uint16_t wide = MakePattern("$w", {{1, 0x40000000}});
    uint16_t scaled = MakePattern("b");
    AddReference(scaled, {.id = wide, .scale = 3});
    AddReference(scaled, {.id = wide, .scale = 3});
    walk = Walk(scaled, {.from = 0xC0000001u});
    ASSERT_EQ(TextOf(walk.segments), "3221225472-4294967295=1L");
    EXPECT_EQ(walk.segments[0].length, 0xC0000000u);
}

TEST_F(Walker, PassesOverWhatTakesNoTime) {
    uint16_t empty = MakePattern("$e");
    uint16_t id = MakePattern("a", {{1, 5}});
    AddReference(id, {.id = empty, .repeat = REPEAT_FOREVER});
    EXPECT_EQ(WalkText(id, {.to = 100}), "0-5=1");
    uint16_t other = MakePattern("b");
    AddReference(other, {.id = empty, .repeat = 3});
    AddTransition(other, 1, 2);
    EXPECT_EQ(WalkText(other), "0-2=1L");
}

TEST_F(Walker, GivesTheItemBehindAReferenceItsTurnAtTheWindowsEnd) {
    uint16_t inner = MakePattern("$p", {{1, 5}, {0, 5}});
    uint16_t id = MakePattern("a");
    for (int i = 0; i < 3; ++i) AddReference(id, {.id = inner});
    EXPECT_EQ(WalkText(id, {.to = 5}), "0-5=1L 5-10=1L 10-15=1L");
}

TEST_F(Walker, DoesNotGoThroughAHugeNestBehindTheWindow) {
    uint16_t id = MakePattern("$p0", {{1, 1}});
    for (int level = 1; level < 40; ++level) {
        uint16_t outer = MakePattern(("$p" + std::to_string(level)).c_str());
        AddReference(outer, {.id = id});
        AddReference(outer, {.id = id});
        id = outer;
    }
    WalkResult walk = Walk(id, {.to = 10});
    EXPECT_LT(walk.segments.size(), 100000u);
    EXPECT_EQ(walk.answer, 1);
}

TEST_F(Walker, DeliversAFineItemTwice) {
    uint16_t id = MakePattern("a", {{0, 3}, {1, 10}});
    EXPECT_EQ(WalkText(id, {.minDetail = 4}), "0-3=0~ 0-3=0~ 3-13=1L");
    EXPECT_EQ(WalkText(id, {.to = 3, .minDetail = 4}), "0-3=0~L 0-3=0~L");
    EXPECT_EQ(WalkText(id, {.minDetail = 3}), "0-3=0 3-13=1L");
    for (size_t limit : {1, 2}) {
        WalkResult walk = Walk(id, {.minDetail = 4}, limit);
        EXPECT_EQ(walk.answer, 0);
        EXPECT_EQ(TextOf(walk.segments), limit == 1 ? "0-3=0~" : "0-3=0~ 0-3=0~");
    }
}

TEST_F(Walker, JoinsTheRepetitionsOfAFineReference) {
    uint16_t inner = MakePattern("$p", {{1, 1}, {0, 1}});
    uint16_t id = MakePattern("a", {{3, 10}});
    AddReference(id, {.id = inner, .repeat = 10});
    AddTransition(id, 1, 10);
    EXPECT_EQ(WalkText(id, {.minDetail = 4}), "0-10=3 10-30=3~ 30-40=1L");
    WalkResult walk = Walk(id, {.from = 15, .minDetail = 4});
    EXPECT_EQ(TextOf(walk.segments), "14-30=0~ 30-40=1L");
    EXPECT_EQ(walk.segments[0].length, 16u);
    // At its very end nothing of it is left.
    walk = Walk(id, {.from = 30, .minDetail = 4});
    EXPECT_EQ(TextOf(walk.segments), "30-30=0~ 30-40=1L");
}

TEST_F(Walker, CollapsesAPatternBelowTheDetailLimitWhenItsInsideIsShown) {
    uint16_t id = MakePattern("a", {{1, 3}, {0, 3}});
    EXPECT_EQ(WalkText(id, {.flags = WalkWaves, .minDetail = 7}), "0-6=0~L");
    EXPECT_EQ(WalkText(id, {.from = 2, .flags = WalkWaves, .minDetail = 7}), "2-8=0~L");
    EXPECT_EQ(WalkText(id, {.flags = WalkWaves, .minDetail = 6}), "0-3=1~ 0-3=1~ 3-6=0~L 3-6=0~L");
    EXPECT_EQ(Walk(id, {.minDetail = 7}).segments.size(), 4u);
}

class Blocks : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        uint16_t unnamed = MakePattern("", {{0, 1}, {1, 2}});
        uint16_t inner = MakePattern("$in", {{1, 4}});
        uint16_t outer = MakePattern("$out", {{0, 3}});
        AddReference(outer, {.id = inner});
        id = MakePattern("a");
        AddReference(id, {.id = unnamed});
        AddReference(id, {.id = outer, .repeat = 2});
    }
    uint16_t id;
};

TEST_F(Blocks, StandForNamedPatternsButNotForUnnamedOnes) {
    EXPECT_EQ(WalkText(id, {.flags = WalkNames}), "0-1=0 1-3=1 3-10[$out] 10-17[$out]L");
}

TEST_F(Blocks, FollowTheInsideOfTheOutermostName) {
    EXPECT_EQ(WalkText(id, {.flags = WalkNames | WalkWaves}),
              "0-1=0 1-3=1 3-6=0 6-10=1 3-10[$out] 10-13=0 13-17=1L 10-17[$out]L");
}

TEST_F(Blocks, AreNotThereWithoutNames) {
    EXPECT_EQ(WalkText(id, {.flags = WalkWaves}), "0-1=0 1-3=1 3-6=0 6-10=1 10-13=0 13-17=1L");
}

TEST_F(Blocks, AreAlone) {
    for (uint32_t flags : {0u, 1u, 2u, 3u}) {
        for (const WalkSegment &s : Walk(id, {.flags = flags, .minDetail = 2}).segments) {
            uint32_t kind = s.segFlags & ~uint32_t{SegLast};
            EXPECT_TRUE(kind == SegLevel || kind == SegBlock || kind == SegCoarse);
        }
    }
}

TEST_F(Walker, ExpandsReturnToZero) {
    uint16_t id = Clocked("a", SignalFormat::RZ, 10, 50, {{1, 3}});
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-5=1 5-10=0 10-15=1 15-20=0 20-25=1 25-30=0L");
    EXPECT_EQ(WalkText(id), "0-30=1L");
}

TEST_F(Walker, ExpandsReturnToOneWithUnequalPhases) {
    uint16_t id = Clocked("a", SignalFormat::R1, 10, 30, {{0, 2}, {1, 1}});
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-3=0 3-10=1 10-13=0 13-20=1 20-30=1L");
}

TEST_F(Walker, TakesTheComplementOfABitFromItsStateTable) {
    uint16_t id = Clocked("a", SignalFormat::RC, 10, 50, {{0, 1}, {1, 1}, {2, 1}, {3, 1}});
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}),
              "0-5=0 5-10=1 10-15=1 15-20=0 20-25=2 25-30=0 30-35=3 35-40=0L");
}

TEST_F(Walker, TakesTheComplementFromTheTableOfTheNode) {
    StateTable *table = AllocStateTable(2);
    table->rowCount = 2;
    table->rows()[0] = {1, 4, 'H', "High", "H"};
    table->rows()[1] = {0, 4, 'L', "Low", "L"};
    uint16_t id = MakePattern("a", {{0, 1}, {1, 1}, {2, 1}});
    SetPatternParams(PatternFromId(id), 1, 0, 4, 10, 50, 0);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-10=0 10-20=1 20-25=2 25-30=1L");
}

TEST_F(Walker, ExpandsABusWithinItsWidth) {
    uint16_t id = MakePattern("b[3:0]", {{5, 1}});
    SetParams(id, SignalFormat::RC, 10, 50);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-5=5 5-10=10L");
    SetParams(id, SignalFormat::R1, 10, 50);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-5=5 5-10=15L");
    SetParams(id, SignalFormat::RZ, 10, 50);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-5=5 5-10=0L");
    uint16_t word = MakePattern("w[31:0]", {{5, 1}});
    SetParams(word, SignalFormat::R1, 10, 50);
    EXPECT_EQ(WalkText(word, {.flags = WalkSync}), "0-5=5 5-10=4294967295L");
}

TEST_F(Walker, ExpandsNothingWithADutyOf0Or100OrMore) {
    for (uint32_t duty : {0u, 100u, 150u, 65535u}) {
        uint16_t id = Clocked(("a" + std::to_string(duty)).c_str(), SignalFormat::RZ, 10, duty, {{1, 3}});
        EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-30=1L") << duty;
    }
}

TEST_F(Walker, SurvivesAnyPeriod) {
    for (int32_t period : {0, -1, INT32_MIN, INT32_MAX, 1, 42949673}) {
        for (uint32_t multiplier : {0u, 1u, 4294967295u}) {
            Settings.ClockMultiplier = multiplier;
            uint16_t id = MakePattern("a", {{1, 3}, {0, 2}});
            SetParams(id, SignalFormat::RC, period, 50, 1);
            uint16_t forced = MakePattern("b");
            AddReference(forced, {.id = id, .scale = 65535, .repeat = 9, .format = 2});
            SetParams(forced, SignalFormat::None, period, 99, 1);
            for (TimeVal from : {0u, 17u, TIME_FOREVER - 1}) {
                Walk(id, {.from = from, .flags = WalkSync}, 100);
                Walk(forced, {.from = from, .flags = WalkSync}, 100);
            }
            DeletePattern(PatternFromId(forced));
            DeletePattern(PatternFromId(id));
        }
    }
}

TEST_F(Walker, DoesNotExpandWhatTheFormatDoesNotChange) {
    uint16_t id = Clocked("a", SignalFormat::RZ, 10, 50, {{0, 2}, {1, 1}});
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-20=0 20-25=1 25-30=0L");
    EXPECT_EQ(WalkText(Clocked("b", SignalFormat::NRZ, 10, 50, {{1, 2}}), {.flags = WalkSync}), "0-20=1L");
}

TEST_F(Walker, MeasuresPeriodsInMasterClocks) {
    Settings.ClockMultiplier = 3;
    uint16_t id = MakePattern("a", {{1, 2}});
    SetParams(id, SignalFormat::RZ, 10, 50, 1);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-15=1 15-30=0 30-45=1 45-60=0L");
}

TEST_F(Walker, BeginsAnExpansionWithThePeriodOfTheWindowsStart) {
    uint16_t id = Clocked("a", SignalFormat::RZ, 10, 50, {{1, 4}});
    EXPECT_EQ(WalkText(id, {.from = 17, .to = 26, .flags = WalkSync}), "10-15=1 15-20=0 20-25=1 25-30=0L");
}

TEST_F(Walker, ShowsPhasesBelowTheDetailLimitAsActivity) {
    uint16_t id = Clocked("a", SignalFormat::RZ, 10, 50, {{1, 4}});
    EXPECT_EQ(WalkText(id, {.flags = WalkSync, .minDetail = 6}), "0-40=1~L");
    EXPECT_EQ(Walk(id, {.flags = WalkSync, .minDetail = 5}).segments.size(), 8u);
}

TEST_F(Walker, ForcesAFormatOnAReferenceAlone) {
    uint16_t inner = MakePattern("$p", {{1, 10}});
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = inner, .format = 2});
    AddTransition(id, 1, 10);
    SetParams(id, SignalFormat::None, 10, 50);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-10=1 10-15=1 15-20=0 20-30=1L");
}

TEST_F(Walker, LeavesOutWhatLiesBehindTheLastWholePeriod) {
    uint16_t inner = MakePattern("$p", {{1, 25}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .format = 2});
    AddTransition(id, 1, 10);
    SetParams(id, SignalFormat::None, 10, 50);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-5=1 5-10=0 10-15=1 15-20=0 20-30=1");
    // A window that begins there passes over the item.
    EXPECT_EQ(WalkText(id, {.from = 22, .flags = WalkSync}), "25-35=1L");
    // An item of less than a period shows nothing.
    SetParams(id, SignalFormat::None, 26, 50);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "25-35=1L");
}

TEST_F(Walker, PassesOverAReferenceToAnIdOutOfUse) {
    uint16_t inner = MakePattern("$p", {{1, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner});
    AddTransition(id, 1, 5);
    EXPECT_EQ(PatternDuration(PatternFromId(id)), 10u);
    DeletePattern(PatternFromId(inner));
    EXPECT_EQ(WalkText(id), "0-5=1");
}

TEST_F(Walker, EndsWhenACachedLengthIsOutOfDate) {
    uint16_t leaf = MakePattern("$p0", {{1, 5}});
    uint16_t id = leaf;
    for (int level = 1; level < 6; ++level) {
        uint16_t outer = MakePattern(("$p" + std::to_string(level)).c_str());
        AddReference(outer, {.id = id, .repeat = 65534});
        id = outer;
    }
    PatternDuration(PatternFromId(id));
    DeleteItem(PatternFromId(leaf), 0);
    EXPECT_EQ(Walk(id).answer, 1);
}

TEST_F(Walker, NamesTheRootOfTheWalkInProgress) {
    uint16_t id = MakePattern("a", {{1, 5}});
    static const Pattern *seen;
    WalkPattern(
        [](const WalkSegment *) {
            seen = WalkRoot();
            return 1;
        },
        PatternFromId(id), 0, 5, 0, 0);
    EXPECT_EQ(seen, PatternFromId(id));
}

TEST_F(Walker, AnswersTheValueAtATime) {
    uint16_t id = MakePattern("a", {{3, 5}, {1, 5}, {2, 5}});
    Pattern *pattern = PatternFromId(id);
    EXPECT_EQ(PatternValueAt(pattern, 0, false), 3u);
    EXPECT_EQ(PatternValueAt(pattern, 4, false), 3u);
    EXPECT_EQ(PatternValueAt(pattern, 5, false), 1u);
    EXPECT_EQ(PatternValueAt(pattern, 14, false), 2u);
    EXPECT_EQ(PatternValueAt(pattern, 15, false), 2u);
}

TEST_F(Walker, AnswersTheValueThatAClockedFormatGives) {
    uint16_t id = Clocked("a", SignalFormat::RZ, 10, 50, {{1, 3}});
    Pattern *pattern = PatternFromId(id);
    EXPECT_EQ(PatternValueAt(pattern, 14, true), 1u);
    EXPECT_EQ(PatternValueAt(pattern, 15, true), 0u);
    EXPECT_EQ(PatternValueAt(pattern, 15, false), 1u);
    EXPECT_EQ(PatternValueAt(pattern, 30, true), 0u);
}

TEST_F(Walker, AnswersTheValueNearTheEndOfTime) {
    uint16_t inner = MakePattern("$p", {{1, 5}, {0, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner, .repeat = REPEAT_FOREVER});
    EXPECT_EQ(PatternValueAt(PatternFromId(id), TIME_FOREVER, false), 1u);
    EXPECT_EQ(PatternValueAt(PatternFromId(id), TIME_FOREVER - 6, false), 0u);
}

} // namespace
