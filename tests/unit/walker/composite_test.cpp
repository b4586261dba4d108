// What the walk of a composite delivers: its members' bits side by side.
#include "config/settings.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "walk_log.h"

namespace {

class Composites : public FreshStore {
protected:
    // A composite of these members, as a plus sign makes it.
    uint16_t composite(const char *name, const std::vector<Use> &members,
                       PatternKind kind = PatternKind::Composite) {
        uint16_t id = MakePattern(name);
        for (const Use &use : members) AddReference(id, use, kind);
        return id;
    }
    void setParams(uint16_t id, SignalFormat format, int32_t period, uint32_t duty) {
        SetPatternParams(PatternFromId(id), 0, 0, static_cast<uint32_t>(format), period, duty, 0);
    }
};

TEST_F(Composites, JoinTheirMembersWithTheFirstOneHighest) {
    uint16_t a = MakePattern("$a", {{1, 4}, {0, 6}});
    uint16_t b = MakePattern("$b[1:0]", {{2, 7}, {3, 3}});
    uint16_t id = composite("c[2:0]", {{.id = a}, {.id = b}});
    EXPECT_EQ(WalkText(id), "0-4=6 4-7=2 7-10=3L");
}

TEST_F(Composites, LastAsLongAsTheShortestMember) {
    uint16_t a = MakePattern("$a", {{1, 4}, {0, 2}});
    uint16_t b = MakePattern("$b", {{0, 100}});
    EXPECT_EQ(WalkText(composite("c[1:0]", {{.id = a}, {.id = b}})), "0-4=2 4-6=0L");
}

TEST_F(Composites, EndAtTheWindowsEnd) {
    uint16_t a = MakePattern("$a", {{1, 4}, {0, 6}, {1, 5}});
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    EXPECT_EQ(WalkText(id, {.to = 4}), "0-4=3L");
    EXPECT_EQ(WalkText(id, {.from = 5, .to = 6}), "0-4=3 4-10=0L");
    EXPECT_EQ(Walk(id, {.to = 0}).answer, 1);
    EXPECT_EQ(WalkText(id, {.to = 0}), "");
}

TEST_F(Composites, StopForACallbackThatAnswers0) {
    uint16_t a = MakePattern("$a", {{1, 4}, {0, 6}, {1, 5}});
    WalkResult walk = Walk(composite("c[1:0]", {{.id = a}, {.id = a}}), {}, 2);
    EXPECT_EQ(walk.answer, 0);
    EXPECT_EQ(walk.segments.size(), 2u);
}

TEST_F(Composites, TakeAMemberAsOftenAsItRepeats) {
    uint16_t a = MakePattern("$a", {{1, 4}});
    uint16_t b = MakePattern("$b", {{0, 4}});
    EXPECT_EQ(WalkText(composite("c[3:0]", {{.id = a, .repeat = 3}, {.id = b}})), "0-4=14L");
}

TEST_F(Composites, KeepTheFirst32Members) {
    uint16_t a = MakePattern("$a", {{1, 4}});
    uint16_t b = MakePattern("$b", {{0, 4}});
    EXPECT_EQ(WalkText(composite("c", {{.id = a}, {.id = b, .repeat = 31}, {.id = a}})), "0-4=2147483648L");
    EXPECT_EQ(WalkText(composite("d", {{.id = a, .repeat = 65535}})), "0-4=4294967295L");
}

TEST_F(Composites, LoseTheHighestBitsBeyond32) {
    uint16_t a = MakePattern("$a", {{1, 4}});
    uint16_t w = MakePattern("$w[31:0]", {{0x80000002, 4}});
    EXPECT_EQ(WalkText(composite("c", {{.id = a}, {.id = w}})), "0-4=2147483650L");
    EXPECT_EQ(WalkText(composite("d", {{.id = w}, {.id = a}})), "0-4=5L");
}

TEST_F(Composites, MaskAValueThatIsTooWide) {
    uint16_t a = MakePattern("$a", {{7, 4}});
    uint16_t b = MakePattern("$b", {{0, 4}});
    EXPECT_EQ(WalkText(composite("c", {{.id = b}, {.id = a}, {.id = b}})), "0-4=2L");
}

TEST_F(Composites, RepeatAndScaleInsideAMember) {
    uint16_t p = MakePattern("$p", {{1, 2}, {0, 1}});
    uint16_t a = MakePattern("$a", {{0, 2}});
    AddReference(a, {.id = p, .scale = 2, .repeat = 2});
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    EXPECT_EQ(WalkText(id), "0-2=0 2-6=3 6-8=0 8-12=3 12-14=0L");
    uint16_t twice = composite("d[1:0]", {{.id = a, .scale = 2}, {.id = a, .scale = 2}});
    EXPECT_EQ(WalkText(twice, {.to = 12}), "0-4=0 4-12=3L");
}

TEST_F(Composites, SkipWholeRepetitionsInFrontOfTheWindow) {
    uint16_t p = MakePattern("$p", {{1, 2}, {0, 3}});
    uint16_t a = MakePattern("$a");
    AddReference(a, {.id = p, .repeat = REPEAT_FOREVER});
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    EXPECT_EQ(WalkText(id, {.from = 4000000000u, .to = 4000000004u}),
              "0-4000000002=3 4000000002-4000000005=0L");
    EXPECT_EQ(PatternValueAt(PatternFromId(id), 4000000003u, false), 0u);
    EXPECT_EQ(PatternValueAt(PatternFromId(id), TIME_FOREVER - 1, false), 0u);
}

TEST_F(Composites, PassOverAReferenceThatEndsWhereTheWindowBegins) {
    uint16_t p = MakePattern("$p", {{1, 5}});
    uint16_t a = MakePattern("$a");
    AddReference(a, {.id = p, .repeat = 2});
    AddTransition(a, 0, 5);
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    EXPECT_EQ(WalkText(id, {.from = 10}), "0-15=0L");
}

TEST_F(Composites, PassOverMembersItemsThatTakeNoTime) {
    uint16_t e = MakePattern("$e");
    uint16_t a = MakePattern("$a");
    AddReference(a, {.id = e, .repeat = 65534});
    AddTransition(a, 1, 5);
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    EXPECT_EQ(WalkText(id), "0-5=3L");
    EXPECT_EQ(WalkText(id, {.from = 3}), "0-5=3L");
    SetItemRepeat(PatternFromId(a), 0, REPEAT_FOREVER);
    ValidateDurations();
    EXPECT_EQ(WalkText(id, {.from = 3, .to = 4}), "0-5=3L");
    EXPECT_EQ(WalkText(id, {.from = 3}), "0-5=3 5-4294967295=3L");
}

TEST_F(Composites, BeginBehindADelayWithoutEnd) {
    uint16_t n = MakePattern("n", {{1, 10}});
    SetPatternDelay(PatternFromId(n), TIME_FOREVER);
    EXPECT_EQ(WalkText(composite("c", {{.id = n}}, PatternKind::Reference)), "0-4294967295=0L");
}

TEST_F(Composites, RepeatAMemberForeverHoweverManyRoundsThatTakes) {
    uint16_t inner = MakePattern("$p", {{1, 1}, {0, 1}});
    uint16_t endless = MakePattern("$e");
    AddReference(endless, {.id = inner, .repeat = REPEAT_FOREVER});
    uint16_t id = composite("c[1:0]", {{.id = endless}, {.id = MakePattern("$h", {{1, 300000}})}});
    WalkResult walk = Walk(id);
    EXPECT_EQ(walk.segments.size(), 300000u);
    EXPECT_EQ(walk.segments.back().value, 1u);
    EXPECT_EQ(walk.segments[walk.segments.size() - 2].value, 3u);
    EXPECT_EQ(walk.segments.back().end, 300000u);
}

TEST_F(Composites, EndWhenACachedLengthIsOutOfDate) {
    uint16_t leaf = MakePattern("$p0", {{1, 5}});
    uint16_t member = leaf;
    for (int level = 1; level < 6; ++level) {
        uint16_t outer = MakePattern(("$p" + std::to_string(level)).c_str());
        AddReference(outer, {.id = member, .repeat = 65534});
        member = outer;
    }
    uint16_t id = composite("c[1:0]", {{.id = member}, {.id = member}});
    PatternDuration(PatternFromId(id));
    DeleteItem(PatternFromId(leaf), 0);
    EXPECT_EQ(WalkText(id), "0-4294967295=0L");
}

TEST_F(Composites, ShowAMembersDelayAs0) {
    uint16_t n = MakePattern("n", {{1, 10}});
    SetPatternDelay(PatternFromId(n), 3);
    uint16_t m = MakePattern("m", {{1, 20}});
    EXPECT_EQ(WalkText(composite("c[1:0]", {{.id = n, .sliceWidth = 1}, {.id = m, .sliceWidth = 1}},
                                 PatternKind::Reference)),
              "0-3=1 3-13=3L");
}

TEST_F(Composites, CutSlicesOutOfABus) {
    uint16_t bus = MakePattern("d[7:0]", {{0xA5, 4}, {0x3C, 4}});
    EXPECT_EQ(
        WalkText(composite("hi", {{.id = bus, .sliceWidth = 4, .sliceOffset = 4}}, PatternKind::Reference)),
        "0-4=10 4-8=3L");
    EXPECT_EQ(
        WalkText(composite("b1", {{.id = bus, .sliceWidth = 1, .sliceOffset = 2}}, PatternKind::Reference)),
        "0-4=1 4-8=1L");
    // No slice width is the whole width.
    EXPECT_EQ(WalkText(composite("all", {{.id = bus}}, PatternKind::Reference)), "0-4=165 4-8=60L");
}

TEST_F(Composites, ExpandTheFormatsOfTheirNodes) {
    uint16_t bus = MakePattern("d[3:0]", {{5, 2}});
    for (auto [format, text] : {std::pair{SignalFormat::RZ, "0-5=1 5-10=0 10-15=1 15-20=0L"},
                                {SignalFormat::R1, "0-5=1 5-10=3 10-15=1 15-20=3L"},
                                {SignalFormat::RC, "0-5=1 5-10=2 10-15=1 15-20=2L"},
                                {SignalFormat::NRZ, "0-20=1L"}}) {
        setParams(bus, format, 10, 50);
        uint16_t id = composite("s", {{.id = bus, .sliceWidth = 2}}, PatternKind::Reference);
        EXPECT_EQ(WalkText(id, {.flags = WalkSync}), text);
        EXPECT_EQ(WalkText(id), "0-20=1L");
        DeletePattern(PatternFromId(id));
    }
}

TEST_F(Composites, ExpandNothingWithoutASecondPhase) {
    uint16_t n = MakePattern("n", {{1, 2}});
    for (uint32_t duty : {0u, 100u, 101u, 60000u}) {
        setParams(n, SignalFormat::RZ, 10, duty);
        uint16_t id = composite("s", {{.id = n, .sliceWidth = 1}}, PatternKind::Reference);
        EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-20=1L") << duty;
        DeletePattern(PatternFromId(id));
    }
}

TEST_F(Composites, SkipWholePeriodsInFrontOfTheWindow) {
    uint16_t n = MakePattern("n", {{1, 1000}, {0, 1}, {1, 1}});
    setParams(n, SignalFormat::RZ, 10, 50);
    uint16_t id = composite("s", {{.id = n, .sliceWidth = 1}}, PatternKind::Reference);
    EXPECT_EQ(WalkText(id, {.from = 9987, .to = 9996, .flags = WalkSync}),
              "0-9985=1 9985-9990=0 9990-9995=1 9995-10000=0L");
    // All phases of the first item lie in front of the window.
    EXPECT_EQ(WalkText(id, {.from = 10000, .to = 10011, .flags = WalkSync}),
              "0-10005=0 10005-10010=0 10010-10015=1L");
}

TEST_F(Composites, ForceAFormatInAMember) {
    uint16_t p = MakePattern("$p", {{1, 1}});
    uint16_t n = MakePattern("n", {{1, 1}});
    AddReference(n, {.id = p, .format = 1});
    AddReference(n, {.id = p, .format = 3});
    setParams(n, SignalFormat::RZ, 10, 50);
    uint16_t id = composite("s", {{.id = n, .sliceWidth = 1}}, PatternKind::Reference);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync}), "0-5=1 5-10=0 10-20=1 20-25=1 25-30=1L");
    uint16_t forced = composite("t", {{.id = n, .sliceWidth = 1, .format = 1}}, PatternKind::Reference);
    EXPECT_EQ(WalkText(forced, {.to = 20, .flags = WalkSync}), "0-10=1 10-20=1L");
}

TEST_F(Composites, SurviveAnyPeriod) {
    uint16_t n = MakePattern("n", {{1, 3}, {0, 0}, {1, 0x7FFFFFFF}});
    uint16_t id = composite("s", {{.id = n, .scale = 65535}, {.id = n}}, PatternKind::Reference);
    for (int32_t period : {0, -1, INT32_MIN, INT32_MAX, 1, 42949673}) {
        for (uint32_t duty : {1u, 50u, 99u, 65535u}) {
            setParams(n, SignalFormat::RC, period, duty);
            ValidateDurations();
            for (TimeVal from : {0u, 17u, TIME_FOREVER - 1}) {
                Walk(id, {.from = from, .flags = WalkSync}, 100);
                Walk(id, {.from = from, .flags = WalkSync, .minDetail = TIME_FOREVER}, 100);
            }
        }
    }
}

TEST_F(Composites, ShowFineItemsAsActivity) {
    uint16_t a = MakePattern("$a", {{1, 2}, {0, 8}});
    uint16_t b = MakePattern("$b", {{0, 10}});
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = b}});
    EXPECT_EQ(WalkText(id, {.minDetail = 3}), "0-2=0~ 2-10=0L");
}

TEST_F(Composites, ShowFineRepetitionsAsActivity) {
    uint16_t p = MakePattern("$p", {{1, 1}, {0, 1}});
    uint16_t a = MakePattern("$a", {{1, 5}});
    AddReference(a, {.id = p, .repeat = 10});
    AddTransition(a, 0, 5);
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    EXPECT_EQ(WalkText(id, {.minDetail = 3}), "0-5=3 5-25=3~ 25-30=0L");
}

TEST_F(Composites, ShowPhasesBelowTwiceTheLimitAsActivity) {
    uint16_t n = MakePattern("n", {{1, 4}});
    setParams(n, SignalFormat::RZ, 10, 50);
    uint16_t id = composite("s", {{.id = n, .sliceWidth = 1}}, PatternKind::Reference);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync, .minDetail = 3}), "0-40=0~L");
    EXPECT_EQ(Walk(id, {.flags = WalkSync, .minDetail = 2}).segments.size(), 8u);
    // Twice the limit is not above it.
    uint16_t m = MakePattern("m", {{1, 4}});
    setParams(m, SignalFormat::RZ, 8, 50);
    id = composite("t", {{.id = m, .sliceWidth = 1}}, PatternKind::Reference);
    EXPECT_EQ(WalkText(id, {.flags = WalkSync, .minDetail = 2}), "0-32=0~L");
}

TEST_F(Composites, ShowNestingBeyondTenLevelsAsActivity) {
    auto nest = [](int levels) {
        uint16_t id = MakePattern("", {{1, 4}});
        for (int level = 0; level < levels; ++level) {
            uint16_t outer = MakePattern("");
            AddReference(outer, {.id = id});
            id = outer;
        }
        return id;
    };
    EXPECT_EQ(WalkText(composite("c", {{.id = nest(10)}, {.id = nest(10)}})), "0-4=3L");
    EXPECT_EQ(WalkText(composite("d", {{.id = nest(10)}, {.id = nest(11)}})), "0-4=2~L");
}

TEST_F(Composites, RunInsideAPattern) {
    uint16_t a = MakePattern("$a", {{1, 4}, {0, 2}});
    uint16_t b = MakePattern("$b", {{0, 3}, {1, 3}});
    uint16_t inner = composite("$c[1:0]", {{.id = a}, {.id = b}});
    uint16_t id = MakePattern("d[1:0]", {{0, 5}});
    AddReference(id, {.id = inner, .scale = 2, .repeat = 2});
    AddTransition(id, 3, 1);
    EXPECT_EQ(WalkText(id), "0-5=0 5-11=2 11-13=3 13-17=1 17-23=2 23-25=3 25-29=1 29-30=3L");
    EXPECT_EQ(WalkText(id, {.from = 20, .to = 24}), "17-23=2 23-25=3L 25-26=3L");
    EXPECT_EQ(WalkText(id, {.from = 20, .to = 24, .flags = WalkNames}), "17-29[$c[1:0]]L 29-30=3L");
    EXPECT_EQ(PatternValueAt(PatternFromId(id), 12, false), 3u);
}

TEST_F(Composites, BeginInsideAPatternBehindTheirMembersDelay) {
    uint16_t n = MakePattern("n", {{1, 4}});
    SetPatternDelay(PatternFromId(n), 3);
    uint16_t inner = composite("$c", {{.id = n}});
    uint16_t id = MakePattern("d", {{0, 5}});
    AddReference(id, {.id = inner});
    EXPECT_EQ(WalkText(id), "0-5=0 5-8=0 8-12=1L");
}

TEST_F(Composites, WithoutMembersShowNothingButTheirDelay) {
    uint16_t p = MakePattern("$p", {{1, 2}});
    uint16_t id = composite("c", {{.id = p}});
    DeleteItem(PatternFromId(id), 0);
    EXPECT_EQ(Walk(id).answer, 0);
    SetPatternDelay(PatternFromId(id), 5);
    EXPECT_EQ(WalkText(id), "0-4294967295=0L");
}

TEST_F(Composites, PassOverReferencesToNothing) {
    uint16_t a = MakePattern("$a", {{1, 4}});
    // It takes no time and has no bit.
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = 3000}, {.id = a}});
    EXPECT_EQ(Walk(id).answer, 0);
    SetPatternDelay(PatternFromId(id), 5);
    EXPECT_EQ(WalkText(id), "0-4=3");
    uint16_t b = MakePattern("$b", {{0, 4}});
    AddReference(b, {.id = 3000});
    AddTransition(b, 1, 2);
    EXPECT_EQ(WalkText(composite("d", {{.id = b}})), "0-4=0 4-6=1L");
}

TEST_F(Composites, PassOverADataItemAmongTheirMembers) {
    uint16_t a = MakePattern("$a", {{1, 4}});
    uint16_t id = composite("c[1:0]", {{.id = a}, {.id = a}});
    AddTransition(id, 1, 9);
    EXPECT_EQ(WalkText(id), "0-4=3L");
}

} // namespace
