// Which references may be made: what the levels tell beside a look at the whole store.
#include "editlog/edit_log.h"
#include "store/mutators.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "unit/support/random_document.h"

namespace {

class NestingDepth : public FreshStore {
protected:
    static constexpr uint32_t PATTERNS = 300;

    void SetUp() override {
        FreshStore::SetUp();
        EditLog.Recording = 0;
        for (uint32_t i = 1; i <= PATTERNS; i++) MakePattern("", {{1, 1}});
    }
    static void refer(uint16_t pattern, uint16_t target) {
        InsertReference(PatternFromId(pattern), PatternKind::Plain, 0, target, 1, 1, 0, 0, 0);
    }
    static bool fits(uint16_t pattern, uint16_t target) {
        return !WouldCloseCircle(pattern, target) && !WouldNestTooDeep(pattern, target);
    }
    // Near the limit: a chain through most of the patterns, in an order of its own.
    static std::vector<uint16_t> makeChain(uint32_t length, Random &random) {
        std::vector<uint16_t> ids;
        for (uint16_t id = 1; id <= PATTERNS; id++) ids.push_back(id);
        for (size_t i = ids.size(); i-- > 1;) std::swap(ids[i], ids[random.below(static_cast<uint32_t>(i))]);
        ids.resize(length + 1);
        for (size_t i = 0; i + 1 < ids.size(); i++) refer(ids[i], ids[i + 1]);
        return ids;
    }
    static void dropAnyReference(Random &random) {
        auto id = static_cast<uint16_t>(1 + random.below(PATTERNS));
        Pattern *pattern = PatternFromId(id);
        if (ReferenceItems[id] > 0)
            DeleteItem(pattern, static_cast<uint16_t>(random.below(ReferenceItems[id])));
    }
};

class RandomNesting : public NestingDepth, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomNesting, TheLevelsAllowWhatALookAtAllAllows) {
    Random random(GetParam());
    std::vector<uint16_t> chain = makeChain(random.once(2) ? MAX_NESTING : 200, random);
    StoreCopy before = CopyStore();
    int allowed = 0, refused = 0;
    for (int i = 0; i < 1500; i++) {
        auto pattern = static_cast<uint16_t>(1 + random.below(PATTERNS));
        // Some targets are not in use.
        auto target = static_cast<uint16_t>(1 + random.below(PATTERNS + 20));
        if (random.once(3)) pattern = chain[random.below(static_cast<uint32_t>(chain.size()))];
        if (random.once(3)) target = chain[random.below(static_cast<uint32_t>(chain.size()))];
        bool expected = fits(pattern, target);
        // An edit asks otherwise, or not at all.
        bool asks = !random.once(4);
        if (asks) {
            ASSERT_EQ(MayRefer(pattern, target), expected) << pattern << " to " << target << " at " << i;
        }
        if (expected && !random.once(10)) refer(pattern, target);
        (expected ? allowed : refused)++;
        for (uint32_t drops = random.below(3); drops > 0; drops--) dropAnyReference(random);
        if (random.once(200)) RestoreStore(before);
        if (random.once(200)) before = CopyStore();
    }
    EXPECT_GT(allowed, 100);
    EXPECT_GT(refused, 20);
    EXPECT_EQ(FindReferenceCircle(), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomNesting, testing::Range(1u, 7u));

TEST_F(NestingDepth, AChainThroughAPatternIsCountedBothWays) {
    Random random(1);
    std::vector<uint16_t> chain = makeChain(MAX_NESTING, random);
    for (uint16_t id : {chain.front(), chain[100], chain.back()}) EXPECT_FALSE(NestsTooDeep(id));
    uint16_t above = MakePattern("");
    refer(above, chain.front());
    for (uint16_t id : {above, chain.front(), chain[100], chain.back()}) EXPECT_TRUE(NestsTooDeep(id));
}

TEST_F(NestingDepth, AFreeIdIsNoPartOfAChain) {
    Random random(1);
    std::vector<uint16_t> chain = makeChain(MAX_NESTING, random);
    uint16_t spare = 1;
    while (ReferenceItems[spare] != 0 || spare == chain.back()) ++spare;
    DeletePattern(PatternFromId(spare));
    EXPECT_FALSE(NestsTooDeep(chain[100]));
}

TEST_F(NestingDepth, LevelsThatAreTooHighForWhatIsLeftAreCountedAnew) {
    for (uint16_t id = 1; id < MAX_NESTING; id++) refer(id, static_cast<uint16_t>(id + 1));
    ASSERT_TRUE(MayRefer(MAX_NESTING, MAX_NESTING + 1));
    refer(MAX_NESTING, MAX_NESTING + 1);
    EXPECT_FALSE(MayRefer(MAX_NESTING + 1, MAX_NESTING + 2)) << "the chain is as long as it may be";
    ASSERT_TRUE(MayRefer(1, 2)) << "counts them";
    DeleteItem(PatternFromId(1), 0);
    EXPECT_TRUE(MayRefer(MAX_NESTING + 1, MAX_NESTING + 2)) << "the chain is shorter by one";
}

TEST_F(NestingDepth, AReferenceThatNobodyAskedForIsPartOfACircle) {
    refer(1, 2);
    ASSERT_TRUE(MayRefer(5, 6)) << "counts the levels";
    refer(2, 3);
    EXPECT_FALSE(MayRefer(3, 2));
    EXPECT_FALSE(MayRefer(3, 1));
}

TEST_F(NestingDepth, AReferenceToNoIdAtAllIsPassedOver) {
    refer(1, MAX_PATTERNS);
    refer(1, 65535);
    refer(1, 2);
    EXPECT_TRUE(MayRefer(2, 3));
    EXPECT_FALSE(MayRefer(2, 1));
}

} // namespace
