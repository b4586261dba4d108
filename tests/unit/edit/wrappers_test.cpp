#include "edit/wrappers.h"

#include "edit/range_edits.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstdlib>

namespace {

using Texts = std::vector<std::string>;

class Wrappers : public FreshStore {
protected:
    void TearDown() override {
        EXPECT_EQ(HeapFault(), "");
        for (uint16_t id = 1; id <= HighestPatternId; id++) {
            EXPECT_FALSE(PatternInUse(id) && PatternFromId(id)->moved()) << id;
        }
        FreshStore::TearDown();
    }
    // The items as text: "value:duration", or "id*repeat*scale" for a reference.
    static Texts items(uint16_t id) {
        Texts result;
        for (uint32_t i = 0; i < PatternFromId(id)->itemCount; i++) {
            const PatternItem &item = PatternFromId(id)->item(i);
            result.push_back(item.isReference()
                                 ? std::to_string(item.patternId()) + "*" + std::to_string(item.repeat()) +
                                       "*" + std::to_string(item.scale())
                                 : std::to_string(item.value()) + ":" + std::to_string(item.duration()));
        }
        return result;
    }
    static std::string use(uint16_t id, int repeat = 1, int scale = 1) {
        return std::to_string(id) + "*" + std::to_string(repeat) + "*" + std::to_string(scale);
    }
    static Pattern *pattern(uint16_t id) {
        ValidateDurations();
        return PatternFromId(id);
    }
    static uint16_t targetOf(uint16_t id, uint32_t item) { return PatternFromId(id)->item(item).patternId(); }
};

const Transitions threeTens = {{1, 10}, {0, 10}, {1, 10}};

// --- wrapping ---------------------------------------------------------------------------------------

TEST_F(Wrappers, WholeItemsMoveIntoTheWrapper) {
    uint16_t id = MakePattern("b[3:0]", threeTens);
    Pattern *after = WrapRange(pattern(id), 10, 30, 3, 2);
    EXPECT_EQ(after, PatternFromId(id));
    uint16_t wrapper = targetOf(id, 1);
    EXPECT_EQ(items(id), (Texts{"1:10", use(wrapper, 2, 3)}));
    EXPECT_EQ(items(wrapper), (Texts{"0:10", "1:10"}));
    EXPECT_EQ(PatternFromId(wrapper)->width, 4);
    EXPECT_EQ(PatternFromId(wrapper)->nameLength, 0);
}

TEST_F(Wrappers, ItemsAreCutAtBothEnds) {
    uint16_t id = MakePattern("a", threeTens);
    WrapRange(pattern(id), 5, 25, 1, 4);
    uint16_t wrapper = targetOf(id, 1);
    EXPECT_EQ(items(id), (Texts{"1:5", use(wrapper, 4), "1:5"}));
    EXPECT_EQ(items(wrapper), (Texts{"1:5", "0:10", "1:5"}));
}

TEST_F(Wrappers, AnItemCutOnBothSidesGoesInWithoutItsFrontCut) {
    uint16_t id = MakePattern("a", {{1, 30}});
    WrapRange(pattern(id), 10, 20, 1, 1);
    uint16_t wrapper = targetOf(id, 1);
    EXPECT_EQ(items(id), (Texts{"1:10", use(wrapper), "1:10"}));
    EXPECT_EQ(items(wrapper), (Texts{"1:20"}));
}

TEST_F(Wrappers, AReferenceThatBeginsBeforeTheStretchStaysWhereItIs) {
    uint16_t named = MakePattern("$n", {{0, 10}});
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = named});
    AddTransition(id, 0, 10);
    WrapRange(pattern(id), 15, 30, 1, 2);
    uint16_t wrapper = targetOf(id, 2);
    EXPECT_EQ(items(id), (Texts{"1:10", use(named), use(wrapper, 2)}));
    EXPECT_EQ(items(wrapper), (Texts{"0:10"}));
}

TEST_F(Wrappers, WithoutRoomForTheCutsAndTheReferenceNothingIsWrapped) {
    uint16_t id = MakePattern("", {{1, 10}});
    while (PatternFromId(id)->used() + 8 <= MAX_RECORD_SIZE - 8) AddTransition(id, 0, 1);
    std::string before = StoreText();
    WrapRange(pattern(id), 2, 5, 1, 2);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(Wrappers, AReferenceToNothingIsDeletedAndLeftAloneByATidying) {
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = 3000});
    EXPECT_EQ(FlattenPattern(PatternFromId(id)), 0);
    EXPECT_EQ(items(id), (Texts{"1:10", use(3000)}));
    DeleteReference(PatternFromId(id), 1);
    EXPECT_EQ(items(id), (Texts{"1:10"}));
}

TEST_F(Wrappers, TheWholePatternIsWrapped) {
    uint16_t id = MakePattern("a", threeTens);
    WrapRange(pattern(id), 0, 30, 2, 1);
    uint16_t wrapper = targetOf(id, 0);
    EXPECT_EQ(items(id), (Texts{use(wrapper, 1, 2)}));
    EXPECT_EQ(items(wrapper), (Texts{"1:10", "0:10", "1:10"}));
}

TEST_F(Wrappers, AReferenceInTheStretchLivesOnInTheWrapper) {
    uint16_t owned = MakePattern("", {{1, 5}});
    uint16_t named = MakePattern("$n", {{0, 5}});
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = owned, .scale = 2, .repeat = 3, .format = 4});
    AddReference(id, {.id = named});
    AddReference(id, {.id = named});
    AddTransition(id, 0, 10);
    WrapRange(pattern(id), 10, 50, 1, 7);
    uint16_t wrapper = targetOf(id, 1);
    EXPECT_EQ(items(id), (Texts{"1:10", use(wrapper, 7), "0:10"}));
    EXPECT_EQ(items(wrapper), (Texts{use(owned, 3, 2), use(named), use(named)}));
    EXPECT_EQ(PatternFromId(wrapper)->item(0).forcedFormat(), 4U);
    EXPECT_EQ(items(owned), (Texts{"1:5"}));
}

TEST_F(Wrappers, AReferenceToNothingInTheStretchGoesAlong) {
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = 3000});
    AddTransition(id, 0, 10);
    WrapRange(pattern(id), 0, 20, 1, 2);
    uint16_t wrapper = targetOf(id, 0);
    EXPECT_EQ(items(id), (Texts{use(wrapper, 2)}));
    EXPECT_EQ(items(wrapper), (Texts{"1:10", use(3000), "0:10"}));
}

TEST_F(Wrappers, AnEndlessPatternIsWrappedWhole) {
    uint16_t sub = MakePattern("", {{1, 5}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub, .repeat = 65535});
    WrapRange(pattern(id), 0, TIME_FOREVER, 1, 2);
    uint16_t wrapper = targetOf(id, 0);
    EXPECT_EQ(items(id), (Texts{use(wrapper, 2)}));
    EXPECT_EQ(items(wrapper), (Texts{"0:10", use(sub, 65535)}));
}

TEST_F(Wrappers, AnEmptyReferenceBeforeAnEndlessTailGoesAlong) {
    uint16_t empty = MakePattern("$e");
    uint16_t sub = MakePattern("", {{1, 5}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = empty});
    AddReference(id, {.id = sub, .repeat = 65535});
    WrapRange(pattern(id), 0, TIME_FOREVER, 1, 2);
    uint16_t wrapper = targetOf(id, 0);
    EXPECT_EQ(items(id), (Texts{use(wrapper, 2)}));
    EXPECT_EQ(items(wrapper), (Texts{"0:10", use(empty), use(sub, 65535)}));
}

TEST_F(Wrappers, AnEndlessTailThatTakesNoTimeGoesAlong) {
    uint16_t empty = MakePattern("");
    uint16_t owned = MakePattern("");
    uint16_t id = MakePattern("a");
    AddReference(id, {empty});
    AddReference(id, {.id = owned, .repeat = REPEAT_FOREVER});
    ASSERT_EQ(ItemsDuration(pattern(id)), TIME_FOREVER);
    WrapRange(pattern(id), 0, TIME_FOREVER, 1, 2);
    uint16_t wrapper = targetOf(id, 1);
    EXPECT_EQ(items(id), (Texts{use(empty), use(wrapper, 2)}));
    EXPECT_EQ(items(wrapper), Texts{use(owned, REPEAT_FOREVER)});
    EXPECT_TRUE(PatternInUse(owned));
}

TEST_F(Wrappers, ItemsBeyondTheAxisGoAlong) {
    uint16_t owned = MakePattern("", {{1, 0x7FFFFFFF}});
    uint16_t id = MakePattern("a", {{0, 0x7FFFFFFF}, {1, 10}});
    AddReference(id, {.id = owned, .repeat = 2});
    AddReference(id, {.id = owned});
    WrapRange(pattern(id), 0x7FFFFFFF, TIME_FOREVER, 3, 1);
    uint16_t wrapper = targetOf(id, 1);
    EXPECT_EQ(items(id), (Texts{"0:2147483647", use(wrapper, 1, 3)}));
    EXPECT_EQ(items(wrapper), (Texts{"1:10", use(owned, 2), use(owned)}));
}

// What the allocator still gives.
int BlocksLeft;
void *LastBlocks(void *block, size_t size) {
    return BlocksLeft-- > 0 ? realloc(block, size) : nullptr;
}

// Plays an edit with ever more memory until it is done; until then it changes nothing. Returns how often it
// found none.
template <class Make, class Edit>
int TriesUntilDone(Make make, Edit edit) {
    for (int blocks = 0; blocks < 10; blocks++) {
        uint16_t id = make();
        ValidateDurations();
        std::string before = StoreText();
        auto *resize = ResizeBlock;
        BlocksLeft = blocks;
        ResizeBlock = LastBlocks;
        edit(id);
        ResizeBlock = resize;
        EXPECT_EQ(HeapFault(), "");
        if (StoreText() != before) return blocks;
        EXPECT_FALSE(Headless.programErrors.empty());
    }
    return 10;
}

TEST_F(Wrappers, WithoutMemoryAtAnyPointNothingIsWrapped) {
    // Large enough that the pattern, the wrapper and the pattern again each need a block of their own.
    Transitions many;
    for (uint32_t i = 0; i < 5000; i++) many.push_back({i & 1, 10});
    int tries = TriesUntilDone([&] { return MakePattern("a", many); },
                               [](uint16_t id) { WrapRange(PatternFromId(id), 5, 49995, 1, 2); });
    EXPECT_GE(tries, 2);
    EXPECT_LT(tries, 10);
}

TEST_F(Wrappers, WithoutMemoryForReferencesNothingIsWrappedEither) {
    uint16_t named = MakePattern("$n", {{1, 10}});
    auto makeReferences = [named] {
        uint16_t id = MakePattern("b", {{0, 10}});
        for (uint32_t i = 0; i < 5000; i++) AddReference(id, {.id = named});
        return id;
    };
    int tries =
        TriesUntilDone(makeReferences, [](uint16_t id) { WrapRange(PatternFromId(id), 5, 50010, 1, 2); });
    EXPECT_GE(tries, 2);
    EXPECT_LT(tries, 10);
}

TEST_F(Wrappers, WithoutMemoryAWrapperDoesNotDissolve) {
    Transitions many;
    for (uint32_t i = 0; i < 5000; i++) many.push_back({i & 1, 10});
    auto make = [&many] {
        uint16_t inner = MakePattern("", many);
        uint16_t id = MakePattern("a", {{0, 3}});
        AddReference(id, {.id = inner});
        AddTransition(id, 1, 3);
        // The block is full behind it.
        MakePattern("b", many);
        return id;
    };
    int tries = TriesUntilDone(make, [](uint16_t id) { FlattenPattern(PatternFromId(id)); });
    EXPECT_GE(tries, 1);
    EXPECT_LT(tries, 10);
}

TEST_F(Wrappers, WithoutAFreeIdNothingIsWrapped) {
    uint16_t id = MakePattern("a", threeTens);
    while (HighestPatternId < MAX_PATTERNS - 1) MakePattern("");
    std::string before = StoreText();
    WrapRange(pattern(id), 10, 30, 3, 2);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(Wrappers, AWrapperThatWouldNestTooDeepIsTakenBack) {
    uint16_t below = MakePattern("", {{1, 1}});
    for (uint32_t depth = 1; depth <= MAX_NESTING; depth++) {
        uint16_t above = MakePattern(depth == MAX_NESTING ? "a" : "", {{1, 1}});
        AddReference(above, {.id = below});
        below = above;
    }
    uint16_t top = below;
    std::string before = StoreText();
    TimeVal total = pattern(top)->duration;
    WrapRange(PatternFromId(top), 0, total, 1, 2);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(Headless.userErrors, (Texts{"Patterns are nested too deeply"}));
    uint16_t inner = targetOf(top, 1);
    total = PatternFromId(inner)->duration;
    WrapRange(PatternFromId(inner), 0, 1, 1, 2);
    EXPECT_NE(StoreText(), before);
}

TEST_F(Wrappers, DepthIsCountedAboveAndBelow) {
    std::vector<uint16_t> chain;
    for (uint32_t i = 0; i <= MAX_NESTING; i++) {
        chain.push_back(MakePattern("", {{1, 1}}));
        if (i > 0) AddReference(chain[i - 1], {.id = chain[i]});
    }
    uint16_t alone = MakePattern("", {{1, 1}});
    EXPECT_TRUE(WouldNestTooDeep(chain.back(), alone));
    EXPECT_FALSE(WouldNestTooDeep(chain[MAX_NESTING - 1], alone));
    EXPECT_TRUE(WouldNestTooDeep(alone, chain[0]));
    EXPECT_FALSE(WouldNestTooDeep(alone, chain[1]));
    EXPECT_FALSE(WouldNestTooDeep(alone, 3999));
}

// --- flattening -------------------------------------------------------------------------------------

TEST_F(Wrappers, AWrapperThatDoesNothingDissolves) {
    uint16_t inner = MakePattern("", {{0, 5}, {1, 5}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = inner});
    AddTransition(id, 1, 10);
    EXPECT_EQ(FlattenPattern(pattern(id)), 0);
    EXPECT_EQ(items(id), (Texts{"0:15", "1:15"}));
    EXPECT_FALSE(PatternInUse(inner));
}

TEST_F(Wrappers, ANestOfWrappersDissolvesAllTheWay) {
    uint16_t deepest = MakePattern("", {{0, 5}});
    uint16_t named = MakePattern("$n", {{1, 3}});
    uint16_t inner = MakePattern("", {{1, 5}});
    AddReference(inner, {.id = deepest});
    AddReference(inner, {.id = named, .scale = 2, .repeat = 3, .format = 1});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner});
    FlattenPattern(pattern(id));
    EXPECT_EQ(items(id), (Texts{"1:5", "0:5", use(named, 3, 2)}));
    EXPECT_EQ(PatternFromId(id)->item(2).forcedFormat(), 1U);
}

class KeptWrapper : public Wrappers, public testing::WithParamInterface<Use> {};

TEST_P(KeptWrapper, StaysAsItIs) {
    Use how = GetParam();
    uint16_t inner = MakePattern("", {{0, 5}, {1, 5}});
    uint16_t id = MakePattern("a", {{0, 10}});
    how.id = inner;
    AddReference(id, how);
    FlattenPattern(pattern(id));
    EXPECT_TRUE(PatternInUse(inner));
    EXPECT_EQ(items(id),
              (Texts{"0:10", use(inner, static_cast<int>(how.repeat), static_cast<int>(how.scale))}));
}

INSTANTIATE_TEST_SUITE_P(Uses, KeptWrapper,
                         testing::Values(Use{.id = 0, .repeat = 2}, Use{.id = 0, .scale = 2},
                                         Use{.id = 0, .format = 1}, Use{.id = 0, .repeat = 65535}));

TEST_F(Wrappers, ANamedPatternStaysAndIsTidiedInside) {
    uint16_t named = MakePattern("$n", {{1, 3}, {1, 4}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = named});
    FlattenPattern(pattern(id));
    EXPECT_EQ(items(id), (Texts{use(named)}));
    EXPECT_EQ(items(named), (Texts{"1:7"}));
}

TEST_F(Wrappers, AnEmptyUnnamedPatternGoesWithItsReference) {
    uint16_t empty = MakePattern("");
    uint16_t around = MakePattern("");
    AddReference(around, {.id = empty, .repeat = 5});
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = around, .scale = 3});
    AddTransition(id, 1, 10);
    FlattenPattern(pattern(id));
    EXPECT_EQ(items(id), (Texts{"1:20"}));
    EXPECT_FALSE(PatternInUse(empty));
    EXPECT_FALSE(PatternInUse(around));
}

TEST_F(Wrappers, AnUnnamedPatternWithoutItemsIsDeletedItself) {
    uint16_t id = MakePattern("");
    EXPECT_EQ(FlattenPattern(pattern(id)), 1);
    EXPECT_FALSE(PatternInUse(id));
}

TEST_F(Wrappers, ANamedPatternWithoutItemsStays) {
    uint16_t id = MakePattern("a");
    EXPECT_EQ(FlattenPattern(pattern(id)), 0);
    EXPECT_TRUE(PatternInUse(id));
}

TEST_F(Wrappers, AnEmptyUnnamedPatternInUseStays) {
    uint16_t inner = MakePattern("");
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = inner});
    EXPECT_EQ(FlattenPattern(pattern(inner)), 0);
    EXPECT_TRUE(PatternInUse(inner));
}

TEST_F(Wrappers, LevelsOfACompositeStayApart) {
    uint16_t high = MakePattern("$h", {{1, 3}});
    uint16_t id = MakePattern("$c", {}, 3);
    AddReference(id, {.id = high}, PatternKind::Composite);
    AddTransition(id, 1, 5);
    AddTransition(id, 1, 5);
    FlattenPattern(pattern(id));
    EXPECT_EQ(items(id), (Texts{use(high), "1:5", "1:5"}));
}

TEST_F(Wrappers, TheMembersOfACompositeStayApart) {
    uint16_t high = MakePattern("", {{1, 3}, {1, 4}}), low = MakePattern("", {{0, 3}});
    uint16_t id = MakePattern("", {}, 2);
    AddReference(id, {.id = high}, PatternKind::Composite);
    AddReference(id, {.id = low}, PatternKind::Composite);
    uint16_t top = MakePattern("a[1:0]");
    AddReference(top, {.id = id});
    FlattenPattern(pattern(top));
    EXPECT_EQ(items(id), (Texts{use(high), use(low)}));
    EXPECT_EQ(items(high), (Texts{"1:7"}));
    EXPECT_EQ(items(top), (Texts{use(id)}));
}

TEST_F(Wrappers, WithoutRoomAWrapperStays) {
    uint16_t inner = MakePattern("", {{0, 5}, {1, 5}, {0, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner});
    for (uint32_t i = 0; PatternFromId(id)->used() + 8 <= MAX_RECORD_SIZE; i++) AddTransition(id, i % 2, 1);
    FlattenPattern(pattern(id));
    EXPECT_EQ(items(id)[0], use(inner));
    EXPECT_EQ(items(inner).size(), 3U);
}

TEST_F(Wrappers, AnUnnamedPatternWithTwoReferencesIsLeftAlone) {
    uint16_t inner = MakePattern("", {{0, 5}, {1, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner});
    AddReference(id, {.id = inner});
    FlattenPattern(pattern(id));
    EXPECT_EQ(items(id), (Texts{use(inner), use(inner)}));
    DeleteReference(PatternFromId(id), 0);
    EXPECT_TRUE(PatternInUse(inner));
    DeleteReference(PatternFromId(id), 0);
    EXPECT_FALSE(PatternInUse(inner));
}

// --- deleting references ------------------------------------------------------------------------------

TEST_F(Wrappers, AnUnnamedTargetGoesWithItsReferenceAllTheWayDown) {
    uint16_t deepest = MakePattern("", {{0, 5}});
    uint16_t named = MakePattern("$n", {{1, 3}});
    uint16_t inner = MakePattern("", {{1, 5}});
    AddReference(inner, {.id = deepest});
    AddReference(inner, {.id = named});
    uint16_t id = MakePattern("a", {{1, 5}});
    AddReference(id, {.id = inner});
    DeleteReference(pattern(id), 1);
    EXPECT_EQ(items(id), (Texts{"1:5"}));
    EXPECT_FALSE(PatternInUse(inner));
    EXPECT_FALSE(PatternInUse(deepest));
    EXPECT_TRUE(PatternInUse(named));
}

TEST_F(Wrappers, ANamedTargetLivesOn) {
    uint16_t named = MakePattern("$n", {{1, 3}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = named});
    DeleteReference(pattern(id), 0);
    EXPECT_TRUE(PatternInUse(named));
    EXPECT_EQ(items(named), (Texts{"1:3"}));
}

TEST_F(Wrappers, AMovedTargetLivesOnAndLosesItsMark) {
    uint16_t inner = MakePattern("", {{1, 3}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = inner});
    PatternFromId(inner)->setMoved(true);
    DeleteReference(pattern(id), 0);
    EXPECT_TRUE(PatternInUse(inner));
    EXPECT_FALSE(PatternFromId(inner)->moved());
}

} // namespace
