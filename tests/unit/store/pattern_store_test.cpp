#include "store/pattern_store.h"

#include "headless/headless.h"
#include "store/mutators.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstring>
#include <map>
#include <random>

namespace {

class PatternStore : public FreshStore {
protected:
    // An unnamed pattern whose record takes `bytes` when it is closed, and its id.
    static uint16_t recordOfSize(uint32_t bytes) {
        uint16_t id = MakePattern("", Transitions((bytes - 36) / 8, {1, 1}));
        EXPECT_EQ(PatternFromId(id)->used(), bytes & ~3u);
        return id;
    }
    static void addBlock() {
        HeapSize = 2 * 65536;
        PatternHeap = static_cast<uint8_t *>(ResizeBlock(PatternHeap, 2 * 65536));
        memset(PatternHeap + 65536, 0, 65536);
    }
    static Pattern *close() { return PatternAlloc(0); }
};

void *RefuseMemory(void *, size_t) {
    return nullptr;
}

int requestsToRefusal;
void *RefuseOnce(void *block, size_t size) {
    return --requestsToRefusal == 0 ? nullptr : realloc(block, size);
}

TEST_F(PatternStore, TheFirstRecordStandsAtOffset4) {
    EXPECT_EQ(HeapSize, 65536);
    EXPECT_EQ(HeapTop, 4);
    uint16_t id = MakePattern("A");
    EXPECT_EQ(id, 1);
    EXPECT_EQ(PatternTable[id], 4u);
    EXPECT_EQ(HeapTop, 4);
    EXPECT_EQ(TopPatternId, id);
}

TEST_F(PatternStore, TheNextRecordClosesTheOpenOne) {
    uint16_t a = MakePattern("A", {{0, 5}, {1, 5}});
    uint16_t b = MakePattern("B");
    EXPECT_EQ(PatternFromId(a)->size, 36 + 4 + 16);
    EXPECT_EQ(PatternTable[b], 4u + 56u);
    EXPECT_EQ(TopPatternId, b);
}

TEST_F(PatternStore, AppendingToTheOpenRecordCopiesNothing) {
    uint16_t id = MakePattern("A");
    uint32_t place = PatternTable[id];
    for (uint32_t i = 0; i < 1000; ++i) AddTransition(id, i, 1);
    EXPECT_EQ(PatternTable[id], place);
    EXPECT_EQ(HoleBytes, 0);
}

TEST_F(PatternStore, ARecordNotAtTheTopMovesThereAndLeavesAHole) {
    uint16_t a = MakePattern("A", {{0, 5}});
    MakePattern("B");
    AddTransition(a, 1, 5);
    EXPECT_EQ(HoleBytes, 48);
    EXPECT_EQ(TopPatternId, a);
    EXPECT_EQ(PatternFromId(a)->itemCount, 2);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, ARecordThatWouldEndOnTheBoundaryGetsAFillerInFront) {
    for (bool onBoundary : {false, true}) {
        PatternStoreFree();
        ASSERT_TRUE(PatternStoreInit());
        addBlock(); // so that there is room behind the boundary
        // 80 bytes are asked for a new record; the top stands 80 or 88 bytes in front of the boundary.
        MakePattern("A", Transitions(onBoundary ? 8171 : 8170, {1, 1}));
        MakePattern("ABCD");
        uint16_t id = MakePattern("");
        EXPECT_EQ(PatternTable[id], onBoundary ? 65536u : 65536u - 88);
        EXPECT_EQ(HoleBytes, onBoundary ? 80 : 0);
        EXPECT_EQ(HeapFault(), "");
    }
}

TEST_F(PatternStore, TheFillerUpToTheFirstBoundaryCountsAsAHole) {
    recordOfSize(65516);
    uint16_t id = MakePattern("A");
    EXPECT_EQ(PatternTable[id], 65536u);
    EXPECT_EQ(HoleBytes, 16);
    EXPECT_EQ(HeapSize, 2 * 65536);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, ARecordThatGrowsExactlyToTheBoundaryIsCopiedPastIt) {
    addBlock();                             // so that it could grow where it stands
    uint16_t a = MakePattern("", {{1, 1}}); // 44 bytes: top at 48
    close();
    PatternRelease(PatternFromId(2));
    // An unnamed record of 36 + 8n from 48: 65536 - 48 - 36 = 65452 is 4 short of a multiple of 8.
    uint16_t b = MakePattern("abc", {}); // head of 40: items end on the boundary
    for (uint32_t i = 0; i < (65536 - 48 - 40) / 8; ++i) AddTransition(b, 1, 1);
    EXPECT_EQ(PatternTable[b] + PatternFromId(b)->used(), 65536u);
    EXPECT_EQ(PatternTable[b], 48u);
    AddTransition(b, 1, 1);
    EXPECT_EQ(PatternTable[b], 65536u);
    EXPECT_EQ(HoleBytes, 65536 - 48);
    EXPECT_EQ(HeapFault(), "");
    EXPECT_NE(a, b);
}

TEST_F(PatternStore, ARecordThatStepsOverTheBoundaryStaysWhereItIs) {
    HeapSize = 2 * 65536;
    PatternHeap = static_cast<uint8_t *>(ResizeBlock(PatternHeap, 2 * 65536));
    memset(PatternHeap + 65536, 0, 65536);
    MakePattern("", {{1, 1}});    // top at 48
    uint16_t b = MakePattern(""); // head of 36: the items pass the boundary by 4
    for (uint32_t i = 0; i < (65536 - 48 - 36) / 8; ++i) AddTransition(b, 1, 1);
    EXPECT_EQ(PatternTable[b] + PatternFromId(b)->used(), 65532u);
    AddTransition(b, 1, 1);
    EXPECT_EQ(PatternTable[b], 48u);
    EXPECT_EQ(PatternTable[b] + PatternFromId(b)->used(), 65540u);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, AReleasedTopRecordGivesItsPlaceStraightBack) {
    MakePattern("A");
    uint16_t b = MakePattern("B", {{1, 1}});
    uint32_t place = PatternTable[b];
    EXPECT_EQ(PatternRelease(PatternFromId(b)), b);
    EXPECT_EQ(HoleBytes, 0);
    EXPECT_EQ(HeapTop, static_cast<int32_t>(place));
    EXPECT_EQ(TopPatternId, 0);
    uint16_t c = MakePattern("C");
    EXPECT_EQ(PatternTable[c], place);
}

TEST_F(PatternStore, TheLowestFreeIdIsTakenAndTheHighestIdStays) {
    MakePattern("A");
    uint16_t b = MakePattern("B");
    MakePattern("C");
    PatternRelease(PatternFromId(b));
    EXPECT_EQ(HighestPatternId, 3);
    EXPECT_EQ(MakePattern("D"), b);
    EXPECT_EQ(HighestPatternId, 3);
}

TEST_F(PatternStore, AGivenFreeIdIsRestored) {
    Pattern *pattern = CreatePattern(77, "A", 1);
    EXPECT_EQ(pattern->id, 77);
    EXPECT_EQ(HighestPatternId, 77);
    EXPECT_EQ(MakePattern("B"), 1);
}

TEST_F(PatternStore, The4000thPatternIsRefused) {
    for (uint32_t i = 1; i < MAX_PATTERNS; ++i) ASSERT_EQ(MakePattern("", {{i, 1}}), i);
    EXPECT_TRUE(Headless.userErrors.empty());
    std::string before = StoreText();
    EXPECT_EQ(CreatePattern(0, "A name that is longer than what the last record holds", 1), nullptr);
    EXPECT_EQ(Headless.userErrors, std::vector<std::string>{"Exceeding maximum number of patterns"});
    EXPECT_EQ(TopPatternId, 0);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(HeapFault(), "");
    // With nothing open there is nothing that it could have looked at.
    EXPECT_EQ(PatternAlloc(0), nullptr);
}

TEST_F(PatternStore, WithARecordOpenARefusalReturnsItsAddress) {
    Pattern *open = CreatePattern(0, "A", 1);
    EXPECT_EQ(PatternAlloc(4000), open);
    EXPECT_EQ(TopPatternId, 0);
    EXPECT_EQ(Headless.userErrors.size(), 1u);
}

TEST_F(PatternStore, AThirdOfTheHeapInHolesIsCompactedAndNotMore) {
    for (bool justEnough : {false, true}) {
        PatternStoreFree();
        ASSERT_TRUE(PatternStoreInit());
        // A hole of 21844 or 21852 bytes: the threshold is 21845, and it is strict.
        uint16_t hole = MakePattern("", Transitions((21844 - 36) / 8 + (justEnough ? 1 : 0), {1, 1}));
        uint16_t keep = recordOfSize(43660);
        PatternRelease(PatternFromId(hole));
        EXPECT_EQ(HoleBytes, justEnough ? 21852 : 21844);
        uint16_t next = MakePattern("N");
        EXPECT_EQ(HeapSize, justEnough ? 65536 : 2 * 65536) << justEnough;
        if (justEnough) {
            EXPECT_EQ(PatternTable[keep], 4u);
            EXPECT_EQ(HoleBytes, 0);
        }
        EXPECT_EQ(HeapFault(), "");
        EXPECT_NE(next, keep);
    }
}

TEST_F(PatternStore, HolesOfExactlyAThirdMakeTheHeapGrow) {
    uint16_t a = recordOfSize(32764);
    uint16_t b = recordOfSize(32764); // the first block has a filler of 4 bytes
    recordOfSize(32764);
    MakePattern("D", Transitions(4091, {1, 1})); // and so has the second one
    recordOfSize(32764);
    recordOfSize(32764);
    PatternRelease(PatternFromId(a));
    PatternRelease(PatternFromId(b));
    ASSERT_EQ(HeapSize, 3 * 65536);
    ASSERT_EQ(HoleBytes, 65536);
    MakePattern("N");
    EXPECT_EQ(HeapSize, 4 * 65536);
}

TEST_F(PatternStore, ARecordWithSlackTakesAnItemWithoutMoving) {
    uint16_t a = MakePattern("A", {{0, 1}, {1, 1}, {0, 1}});
    MakePattern("B");
    DeleteItem(PatternFromId(a), 1);
    uint32_t place = PatternTable[a];
    uint16_t top = TopPatternId;
    AddTransition(a, 1, 1);
    EXPECT_EQ(PatternTable[a], place);
    EXPECT_EQ(TopPatternId, top);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, SlackOfHalfAnItemIsNotEnough) {
    uint16_t a = MakePattern("abcd", {{0, 1}});
    uint16_t b = MakePattern("B", {{7, 7}});
    RenamePattern(PatternFromId(a), "abc");
    ASSERT_EQ(PatternFromId(a)->itemCount, 1);
    MakePattern("C");
    AddTransition(a, 9, 9);
    AddTransition(a, 9, 9);
    EXPECT_EQ(PatternFromId(b)->item(0).value(), 7u);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, ARecordEndsBefore65536Bytes) {
    uint16_t id = MakePattern("", Transitions(8187, {1, 1}));
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_EQ(PatternFromId(id)->used(), 65532u);
    std::string before = StoreText();
    EXPECT_EQ(InsertTransition(PatternFromId(id), 0, 1, 1), nullptr);
    EXPECT_EQ(Headless.userErrors, std::vector<std::string>{"Pattern has too many items"});
    EXPECT_EQ(InsertReference(PatternFromId(id), PatternKind::Plain, 0, id, 1, 1, 0, 0, 0), nullptr);
    EXPECT_EQ(StoreText(), before);
    close();
    EXPECT_EQ(HeapFault(), "");
    EXPECT_EQ(PatternFromId(id)->size, 65532);
    // There is room for a longer name as long as the whole fits.
    DeleteItem(PatternFromId(id), 0);
    RenamePattern(PatternFromId(id), "1234567");
    EXPECT_EQ(PatternFromId(id)->used(), 65532u);
    RenamePattern(PatternFromId(id), "12345678901");
    EXPECT_EQ(std::string(PatternFromId(id)->name()), "1234567");
    EXPECT_EQ(HeapFault(), "");
}

// The open record's size is that before its last item, so that less than it takes seems to be needed.
TEST_F(PatternStore, ARecordThatMovesOutOfAFullHeapNeedsRoomForAllOfIt) {
    uint16_t hole = MakePattern("abc", Transitions(2726, {1, 1}));
    MakePattern("def", Transitions(2725, {0, 1}));
    uint16_t open = MakePattern("", Transitions(2726, {1, 2}));
    ASSERT_EQ(PatternTable[open] + PatternFromId(open)->used(), 65536u);
    PatternRelease(PatternFromId(hole));
    std::string before = StoreText();
    // The holes give room for the record as it is, and not for another item.
    ASSERT_EQ(HoleBytes, static_cast<int32_t>(PatternFromId(open)->used() + 4));
    AddTransition(open, 0, 7);
    EXPECT_EQ(HeapSize, 2 * 65536);
    EXPECT_EQ(HeapFault(), "");
    EXPECT_EQ(PatternFromId(open)->item(2726).duration(), 7u);
    DeleteItem(PatternFromId(open), 2726);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(PatternStore, WithoutMemoryAChangeIsRefusedAndNothingIsLost) {
    recordOfSize(65500);
    std::string before = StoreText();
    ResizeBlock = RefuseMemory;
    EXPECT_EQ(CreatePattern(0, "B", 1), nullptr);
    EXPECT_EQ(Headless.programErrors, std::vector<std::string>{"Unable to reallocate pattern memory"});
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(HeapFault(), "");
    while (InsertTransition(PatternFromId(1), 0, 1, 1)) {}
    RenamePattern(PatternFromId(1), "a name that does not fit");
    EXPECT_EQ(std::string(PatternFromId(1)->name()), "");
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, AStoreThatCannotBeMadeSaysWhichBlockIsMissing) {
    PatternStoreFree();
    ResizeBlock = RefuseMemory;
    EXPECT_EQ(PatternStoreInit(), 0);
    EXPECT_EQ(Headless.programErrors,
              (std::vector<std::string>{"Unable to Allocate Pattern Memory for WDL",
                                        "Unable to Allocate State Table Memory for WDL"}));
    // The table of the patterns, their heap, and the state tables.
    const char *const messages[] = {"Unable to Allocate Pattern Memory for WDL",
                                    "Unable to Allocate Pattern Memory for WDL",
                                    "Unable to Allocate State Table Memory for WDL"};
    for (int block = 0; block < 3; ++block) {
        PatternStoreFree();
        Headless.programErrors.clear();
        requestsToRefusal = block + 1;
        ResizeBlock = RefuseOnce;
        EXPECT_EQ(PatternStoreInit(), 0);
        EXPECT_EQ(Headless.programErrors, std::vector<std::string>{messages[block]});
    }
    ResizeBlock = realloc;
}

TEST_F(PatternStore, ACopyBringsBackAPatternWhoseIdANamedOneHasTakenSince) {
    uint16_t unnamed = MakePattern("", {{1, 7}});
    uint16_t free = MakePattern("");
    DeletePattern(PatternFromId(free));
    std::string before = StoreText();
    StoreCopy copy = CopyStore();
    DeletePattern(PatternFromId(unnamed));
    ASSERT_EQ(MakePattern("N"), unnamed);
    ASSERT_EQ(MakePattern("M"), free);
    RestoreStore(copy);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(FindPattern("N"), nullptr);
    EXPECT_EQ(MakePattern("N"), free);
    EXPECT_EQ(FindPattern("N")->id, free);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, ANamedRecordHasRoomForItsName) {
    // The first block is nearly full: 80 bytes would fit, the name would not.
    recordOfSize(65404);
    std::string name(900, 'N');
    uint16_t id = MakePattern(name.c_str());
    EXPECT_EQ(PatternTable[id], 65536u);
    EXPECT_EQ(std::string(PatternFromId(id)->name()), name);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(PatternStore, TheLogHoldTellsWhatItWas) {
    EXPECT_EQ(LogHoldOpen(1), 0);
    EXPECT_EQ(LogHoldOpen(1), 1);
    EXPECT_EQ(LogHoldOpen(0), 1);
    EXPECT_EQ(LogHoldOpen(0), 0);
}

// A simple model of the store, and random work on both.
struct ModelPattern {
    std::string name;
    std::vector<std::pair<uint32_t, uint32_t>> items;
};
using Model = std::map<uint16_t, ModelPattern>;

std::string ModelFault(const Model &model) {
    size_t inUse = 0;
    for (uint32_t id = 1; id < MAX_PATTERNS; ++id) inUse += PatternInUse(id);
    if (inUse != model.size()) return "another number of patterns";
    for (const auto &[id, expected] : model) {
        if (!PatternInUse(id)) return "a pattern is missing";
        const Pattern *pattern = PatternFromId(id);
        if (pattern->id != id || pattern->name() != expected.name) return "another id or name";
        if (pattern->itemCount != expected.items.size()) return "another number of items";
        for (size_t i = 0; i < expected.items.size(); ++i) {
            const PatternItem &item = pattern->item(static_cast<uint32_t>(i));
            if (item.value() != expected.items[i].first || item.duration() != expected.items[i].second) {
                return "another item";
            }
        }
    }
    return "";
}

class RandomStore : public PatternStore {
protected:
    void step(std::mt19937 &random, Model &model, uint32_t bulk);
    void insert(std::mt19937 &random, Model &model, uint16_t id, uint32_t count);
    static uint16_t pick(std::mt19937 &random, const Model &model) {
        auto place = model.begin();
        std::advance(place, static_cast<ptrdiff_t>(random() % model.size()));
        return place->first;
    }
    static std::string randomName(std::mt19937 &random) {
        return random() % 3 == 0 ? "" : std::string(1 + random() % (random() % 20 ? 12 : 900), 'n');
    }
};

void RandomStore::insert(std::mt19937 &random, Model &model, uint16_t id, uint32_t count) {
    auto &items = model[id].items;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t value = random();
        uint32_t duration = random() >> 1;
        auto index = static_cast<uint16_t>(random() % 4 ? items.size() : random() % (items.size() + 1));
        if (!InsertTransition(PatternFromId(id), index, value, duration)) return;
        items.insert(items.begin() + index, {value, duration});
    }
}

void RandomStore::step(std::mt19937 &random, Model &model, uint32_t bulk) {
    uint32_t action = random() % 10;
    if (model.empty() || action < 2) {
        std::string name = randomName(random);
        if (Pattern *pattern = CreatePattern(0, name.c_str(), 1)) model[pattern->id] = {name, {}};
        return;
    }
    uint16_t id = pick(random, model);
    auto &expected = model[id];
    if (action < 6) {
        insert(random, model, id, 1 + random() % bulk);
    } else if (action < 8) {
        for (uint32_t n = random() % bulk; n > 0 && !expected.items.empty(); --n) {
            auto index = static_cast<uint16_t>(random() % expected.items.size());
            DeleteItem(PatternFromId(id), index);
            expected.items.erase(expected.items.begin() + index);
        }
    } else if (action == 8) {
        std::string name = randomName(random);
        size_t errors = Headless.userErrors.size();
        RenamePattern(PatternFromId(id), name.c_str());
        if (Headless.userErrors.size() == errors) expected.name = name;
    } else {
        PatternRelease(PatternFromId(id));
        model.erase(id);
    }
}

TEST_F(RandomStore, AgreesWithASimpleModelAfterEveryStep) {
    for (uint32_t seed = 1; seed <= 40; ++seed) {
        PatternStoreFree();
        ASSERT_TRUE(PatternStoreInit());
        std::mt19937 random(seed);
        Model model;
        uint32_t bulk = seed % 4 == 0 ? 3000 : seed % 2 ? 8 : 400;
        int steps = bulk > 1000 ? 60 : 400;
        for (int i = 0; i < steps; ++i) {
            step(random, model, bulk);
            ASSERT_EQ(ModelFault(model), "") << "seed " << seed << " step " << i;
            ASSERT_EQ(HeapFault(), "") << "seed " << seed << " step " << i;
        }
    }
}

} // namespace
