#include "edit/range_edits.h"

#include "config/settings.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "editlog/record_reader.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstdlib>

namespace {

class RangeEdits : public FreshStore {
protected:
    void TearDown() override {
        EXPECT_EQ(HeapFault(), "");
        FreshStore::TearDown();
    }
    // The items, each as (value, duration); a reference as (id, its length).
    static Transitions items(uint16_t id) {
        Transitions result;
        for (uint32_t i = 0; i < PatternFromId(id)->itemCount; i++) {
            const PatternItem &item = PatternFromId(id)->item(i);
            result.push_back(item.isReference() ? std::pair{uint32_t{item.patternId()}, ItemLength(item)}
                                                : std::pair{item.value(), item.duration()});
        }
        return result;
    }
    static Pattern *pattern(uint16_t id) {
        ValidateDurations();
        return PatternFromId(id);
    }
    static bool logged() { return EditLog.rPtr != 0; }
};

const Transitions threeTens = {{1, 10}, {0, 10}, {1, 10}};

TEST_F(RangeEdits, ALengthIsTheTargetsTimesScaleTimesRepeatModulo32Bits) {
    uint16_t sub = MakePattern("$s", {{1, 7}});
    uint16_t id = MakePattern("a", {{1, 5}});
    AddReference(id, {.id = sub, .scale = 3, .repeat = 4});
    AddReference(id, {.id = sub, .scale = 1, .repeat = 65535});
    AddReference(id, {.id = sub, .scale = 65535, .repeat = 65534});
    Pattern *a = pattern(id);
    EXPECT_EQ(ItemLength(a->item(0)), 5U);
    EXPECT_EQ(ItemLength(a->item(1)), 84U);
    EXPECT_EQ(ItemLength(a->item(2)), 7U * 65535);
    EXPECT_EQ(ItemLength(a->item(3)), static_cast<uint32_t>(7ULL * 65535 * 65534));
}

TEST_F(RangeEdits, AReferenceToNothingHasNoLength) {
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = 3000});
    EXPECT_EQ(ItemLength(PatternFromId(id)->item(0)), 0U);
}

TEST_F(RangeEdits, TheNextValueOfABitIsTheOtherLevel) {
    const Pattern *bit = pattern(MakePattern("a"));
    EXPECT_EQ(NextValue(bit, 0), 1U);
    EXPECT_EQ(NextValue(bit, 1), 0U);
    EXPECT_EQ(NextValue(bit, 3), 0U);
}

TEST_F(RangeEdits, TheNextValueOfABusIsMasked) {
    EXPECT_EQ(NextValue(pattern(MakePattern("b[7:0]")), 255), 0U);
    EXPECT_EQ(NextValue(pattern(MakePattern("b[7:0]")), 12), 13U);
    EXPECT_EQ(NextValue(pattern(MakePattern("c[31:0]")), 0xFFFFFFFF), 0U);
    EXPECT_EQ(NextValue(pattern(MakePattern("d[30:0]")), 0x7FFFFFFF), 0U);
    EXPECT_EQ(NextValue(pattern(MakePattern("c[31:0]")), 0x7FFFFFFF), 0x80000000U);
}

// --- taking a stretch out ---------------------------------------------------------------------------

struct Deletion {
    TimeVal from, to;
    Transitions left;
};

class DeleteRangeOfThreeTens : public RangeEdits, public testing::WithParamInterface<Deletion> {};

TEST_P(DeleteRangeOfThreeTens, LeavesTheRest) {
    uint16_t id = MakePattern("a", threeTens);
    Pattern *after = DeleteRange(pattern(id), GetParam().from, GetParam().to);
    EXPECT_EQ(after, PatternFromId(id));
    EXPECT_EQ(items(id), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(
    Stretches, DeleteRangeOfThreeTens,
    testing::Values(Deletion{5, 25, {{1, 5}, {1, 5}}}, Deletion{10, 20, {{1, 10}, {1, 10}}},
                    Deletion{0, 30, {}}, Deletion{0, 5, {{1, 5}, {0, 10}, {1, 10}}},
                    Deletion{0, 10, {{0, 10}, {1, 10}}}, Deletion{25, 30, {{1, 10}, {0, 10}, {1, 5}}},
                    Deletion{20, 30, {{1, 10}, {0, 10}}}, Deletion{20, 99, {{1, 10}, {0, 10}}},
                    Deletion{9, 21, {{1, 9}, {1, 9}}}, Deletion{10, 25, {{1, 10}, {1, 5}}},
                    Deletion{5, 20, {{1, 5}, {1, 10}}},
                    Deletion{12, 15, {{1, 10}, {0, 2}, {0, 5}, {1, 10}}}));

TEST_F(RangeEdits, AnItemOfNoLengthAtTheEndOfTheStretchGoesWithIt) {
    uint16_t id = MakePattern("a", {{1, 10}, {0, 0}});
    DeleteRange(pattern(id), 0, 10);
    EXPECT_EQ(items(id), Transitions{});
    id = MakePattern("b", {{1, 10}, {0, 0}, {1, 0}, {0, 10}});
    DeleteRange(pattern(id), 0, 10);
    EXPECT_EQ(items(id), (Transitions{{0, 10}}));
    id = MakePattern("c", {{1, 10}, {0, 0}, {0, 10}});
    DeleteRange(pattern(id), 5, 10);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {0, 10}}));
}

TEST_F(RangeEdits, AnItemOfNoLengthAtTheStartOfTheStretchStays) {
    uint16_t id = MakePattern("a", {{1, 10}, {0, 0}, {0, 10}});
    DeleteRange(pattern(id), 10, 15);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 0}, {0, 5}}));
}

TEST_F(RangeEdits, AReferenceInsideTheStretchGoesWithWhatItOwns) {
    uint16_t owned = MakePattern("", {{1, 5}});
    uint16_t named = MakePattern("$n", {{1, 5}});
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = owned, .repeat = 2});
    AddReference(id, {.id = named, .repeat = 2});
    AddTransition(id, 0, 10);
    DeleteRange(pattern(id), 5, 35);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {0, 5}}));
    EXPECT_FALSE(PatternInUse(owned));
    EXPECT_TRUE(PatternInUse(named));
}

TEST_F(RangeEdits, AReferenceGoesWholeOrNotAtAll) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    for (auto [from, to, left] :
         {Deletion{5, 15, {{1, 5}, {0, 10}}}, Deletion{15, 25, {{1, 10}, {sub, 10}, {0, 5}}}}) {
        uint16_t id = MakePattern("a", {{1, 10}});
        AddReference(id, {.id = sub});
        AddTransition(id, 0, 10);
        DeleteRange(pattern(id), from, to);
        EXPECT_EQ(items(id), left);
    }
}

TEST_F(RangeEdits, CuttingToTheEndOfAnEndlessPatternRemovesTheForeverItemWhole) {
    uint16_t sub = MakePattern("$s", {{1, 5}});
    uint16_t id = MakePattern("a", threeTens);
    AddReference(id, {.id = sub, .repeat = 65535});
    DeleteRange(pattern(id), 15, TIME_FOREVER);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 5}}));
}

TEST_F(RangeEdits, AForeverItemInAPatternWithADelayTakesNoMoreThanTheStretch) {
    uint16_t sub = MakePattern("$s", {{1, 5}});
    uint16_t id = MakePattern("a", threeTens);
    AddReference(id, {.id = sub, .repeat = 65535});
    SetPatternDelay(PatternFromId(id), 7);
    DeleteRange(pattern(id), 15, TIME_FOREVER);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 5}}));
}

class EndlessPattern : public RangeEdits {
protected:
    // Three items of ten, and a part of five without end behind them. `valid` tells if its length is known.
    uint16_t threeTensAndTail(bool valid = true) {
        part = MakePattern("$s", {{1, 5}});
        uint16_t id = MakePattern("a", threeTens);
        AddReference(id, {.id = part, .repeat = REPEAT_FOREVER});
        Pattern *a = pattern(id);
        if (!valid) {
            a->duration = 0;
            a->setDurationValid(false);
        }
        return id;
    }
    // The tail as one of the items.
    std::pair<uint32_t, uint32_t> tail() const { return {part, 5 * 65535}; }
    uint16_t part = 0;
};

TEST_F(EndlessPattern, AStretchThatEndsBeforeTheTailMovesItEarlier) {
    for (bool valid : {true, false}) {
        uint16_t id = threeTensAndTail(valid);
        DeleteRange(PatternFromId(id), 5, 15);
        EXPECT_EQ(items(id), (Transitions{{1, 5}, {0, 5}, {1, 10}, tail()})) << valid;
        // Up to where the tail begins.
        DeleteRange(pattern(id), 10, 20);
        EXPECT_EQ(items(id), (Transitions{{1, 5}, {0, 5}, tail()})) << valid;
        EXPECT_EQ(PatternDuration(pattern(id)), TIME_FOREVER);
    }
}

TEST_F(EndlessPattern, AStretchThatReachesIntoTheTailTakesItWhole) {
    for (bool valid : {true, false}) {
        uint16_t id = threeTensAndTail(valid);
        DeleteRange(PatternFromId(id), 5, 31);
        EXPECT_EQ(items(id), (Transitions{{1, 5}})) << valid;
    }
}

TEST_F(EndlessPattern, ATailOfNoLengthIsReachedIntoBehindItsStartAlone) {
    uint16_t nothing = MakePattern("$n");
    for (auto [to, left] : {std::pair{10u, 2}, {11u, 1}, {TIME_FOREVER, 1}}) {
        uint16_t id = MakePattern("a", {{1, 10}});
        AddReference(id, {.id = nothing, .repeat = REPEAT_FOREVER});
        DeleteRange(pattern(id), 5, to);
        EXPECT_EQ(PatternFromId(id)->itemCount, left) << to;
        EXPECT_EQ(PatternFromId(id)->item(0).duration(), 5U);
    }
}

TEST_F(EndlessPattern, ALevelInItsMidstLeavesTheTail) {
    uint16_t id = threeTensAndTail();
    ReplaceRange(pattern(id), 5, 25, 1, 3);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {3, 20}, {1, 5}, tail()}));
    ReplaceRange(pattern(id), 5, 40, 1, 2);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {2, 35}}));
}

// --- room -------------------------------------------------------------------------------------------

TEST_F(RangeEdits, ACutIsTheShorterLengthAndThenTheNewItem) {
    uint16_t id = MakePattern("a", {{1, 10}, {0, 10}});
    DeleteRange(pattern(id), 4, 7);
    const uint16_t kinds[] = {RecItemDuration, RecInsertTransition, RecItemDuration, RecInsertTransition,
                              RecDeleteTransition};
    int32_t at = 0;
    for (uint16_t kind : kinds) {
        LogRecord record;
        auto length = static_cast<int32_t>(LogWordAt(EditLog.Buffer + at));
        ASSERT_TRUE(ReadRecord({EditLog.Buffer + at + 4, static_cast<size_t>(length - ENTRY_FRAME)}, record));
        EXPECT_EQ(record.kind, kind) << at;
        at += length;
    }
    EXPECT_EQ(at, EditLog.rPtr);
}

// An edit of a pattern of ten items with room for no more or for one; nothing changes and nothing is
// recorded.
class WithoutRoom : public RangeEdits {
protected:
    // Items of ten, as many as a record holds but for `free`.
    static uint16_t full(uint32_t free) {
        uint16_t id = MakePattern("a", {{1, 10}});
        EditLog.Recording = 0;
        while (PatternFromId(id)->used() + (1 + free) * sizeof(PatternItem) <= MAX_RECORD_SIZE)
            InsertTransition(PatternFromId(id), PatternFromId(id)->itemCount, 0, 10);
        EditLog.Recording = 1;
        ValidateDurations();
        return id;
    }
    template <class Edit>
    static void changesNothing(Edit edit) {
        std::string before = StoreText();
        size_t told = Headless.userErrors.size() + Headless.programErrors.size();
        edit();
        EXPECT_EQ(StoreText(), before);
        EXPECT_FALSE(logged());
        EXPECT_GT(Headless.userErrors.size() + Headless.programErrors.size(), told);
    }
};

TEST_F(WithoutRoom, ARangeInOneItemIsNotCut) {
    for (uint32_t free : {0, 1}) {
        uint16_t id = full(free);
        changesNothing([&] { EXPECT_EQ(DeleteRange(pattern(id), 12, 18), nullptr); });
        changesNothing([&] { ReplaceRange(pattern(id), 12, 18, 2, 5); });
        changesNothing([&] { SplitItem(pattern(id), 1, 2, 3, 0); });
        changesNothing([&] { SplitItem(pattern(id), 1, 2, 3, 1); });
    }
}

TEST_F(WithoutRoom, NorAtOneEnd) {
    uint16_t id = full(0);
    changesNothing([&] { DeleteRange(pattern(id), 12, 20); });
    changesNothing([&] { DeleteRange(pattern(id), 10, 18); });
    changesNothing([&] { DeleteRange(pattern(id), 5, 88); });
    changesNothing([&] { ReplaceRange(pattern(id), 10, 18, 1, 5); });
    changesNothing([&] { ExtendPattern(pattern(id), 10, 10); });
    changesNothing([&] { MoveEdge(pattern(id), pattern(id), 0, 0, 0, 3, 1, 0); });
}

TEST_F(WithoutRoom, AtOneEndRoomForOneIsEnough) {
    for (auto [from, to] : {std::pair{12u, 20u}, {10u, 18u}}) {
        uint16_t id = full(1);
        uint16_t count = PatternFromId(id)->itemCount;
        EXPECT_NE(DeleteRange(pattern(id), from, to), nullptr);
        EXPECT_EQ(PatternFromId(id)->itemCount, count);
        EXPECT_EQ(PatternFromId(id)->item(1).duration(), 2U);
    }
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(WithoutRoom, NorBesideAReference) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = full(1);
    AddReference(id, {.id = sub});
    auto last = static_cast<uint16_t>(PatternFromId(id)->itemCount - 2);
    TimeVal end = pattern(id)->duration - 10;
    changesNothing([&] { MoveEdge(pattern(id), pattern(id), last, 1, end, end - 3, 1, 0); });
    // Nothing of a reference is cut away that would give room.
    changesNothing([&] { ReplaceRange(pattern(id), end + 2, end + 5, last, 5); });
}

TEST_F(WithoutRoom, WhereTheRecordEndsAtABlockTheSecondCutMovesIt) {
    // The record ends an item's size in front of the block's end, and there is a free block behind it.
    StoreCopy small = CopyStore();
    for (int i = 0; i < 2; i++) full(0);
    ASSERT_GE(HeapSize, static_cast<int32_t>(2 * HEAP_BLOCK));
    RestoreStore(small);
    MakePattern("other", threeTens);
    uint16_t id = MakePattern("a", {{1, 10}, {0, 10}});
    while (PatternTable[id] + PatternFromId(id)->used() < HEAP_BLOCK - 8) AddTransition(id, 1, 10);
    ASSERT_EQ(PatternTable[id] + PatternFromId(id)->used(), HEAP_BLOCK - 8);
    ASSERT_EQ(TopPatternId, id);
    uint16_t count = PatternFromId(id)->itemCount;
    auto *resize = ResizeBlock;
    ResizeBlock = [](void *, size_t) -> void * { return nullptr; };
    EXPECT_NE(DeleteRange(pattern(id), 2, 7), nullptr);
    ResizeBlock = resize;
    EXPECT_EQ(PatternFromId(id)->itemCount, count + 1);
    EXPECT_EQ(PatternFromId(id)->item(0).duration(), 2U);
    EXPECT_EQ(PatternFromId(id)->item(1).duration(), 3U);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(WithoutRoom, WhatNeedsNoneIsDone) {
    uint16_t id = full(0);
    uint16_t count = PatternFromId(id)->itemCount;
    // Whole items, and one in their place.
    ReplaceRange(pattern(id), 10, 30, 1, 7);
    EXPECT_EQ(PatternFromId(id)->itemCount, count - 1);
    EXPECT_EQ(PatternFromId(id)->item(1).duration(), 20U);
    id = full(0);
    DeleteRange(pattern(id), 15, 30);
    EXPECT_EQ(PatternFromId(id)->itemCount, count - 1);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(WithoutRoom, ASplitInTheSlackOfARecordLeavesItsNeighbourAlone) {
    // The record is closed, with what a deleted item has left.
    for (int slack : {0, 1, 2}) {
        uint16_t id = MakePattern("a", threeTens);
        for (int i = 0; i < slack; i++) AddTransition(id, 0, 10);
        uint16_t neighbour = MakePattern("b", threeTens);
        for (int i = 0; i < slack; i++) DeleteItem(PatternFromId(id), 3);
        SplitItem(pattern(id), 1, 2, 3, 0);
        EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 2}, {1, 3}, {0, 5}, {1, 10}}));
        EXPECT_EQ(items(neighbour), threeTens);
        EXPECT_EQ(HeapFault(), "");
    }
}

// The allocator gives nothing from the `n`th call on.
int CallsLeft;
void *FailingBlock(void *block, size_t size) {
    return CallsLeft-- > 0 ? realloc(block, size) : nullptr;
}

TEST_F(WithoutRoom, NorWithoutMemory) {
    uint16_t id = MakePattern("a", threeTens);
    // The heap is full to the last item.
    uint16_t filler = MakePattern("b");
    EditLog.Recording = 0;
    while (HeapSize - static_cast<int32_t>(PatternFromId(filler)->used()) >
           static_cast<int32_t>(PatternTable[filler]) + 8)
        InsertTransition(PatternFromId(filler), 0, 1, 1);
    EditLog.Recording = 1;
    auto *resize = ResizeBlock;
    ResizeBlock = FailingBlock;
    CallsLeft = 0;
    changesNothing([&] { DeleteRange(pattern(id), 12, 18); });
    changesNothing([&] { ReplaceRange(pattern(id), 12, 18, 2, 5); });
    changesNothing([&] { SplitItem(pattern(id), 1, 2, 3, 1); });
    ResizeBlock = resize;
}

TEST_F(RangeEdits, AForeverItemAloneLeavesWhatIsInFrontOfIt) {
    uint16_t sub = MakePattern("$s", {{1, 5}});
    uint16_t id = MakePattern("a", {{1, 10}});
    AddReference(id, {.id = sub, .repeat = 65535});
    DeleteRange(pattern(id), 10, TIME_FOREVER);
    EXPECT_EQ(items(id), (Transitions{{1, 10}}));
    // Its deletion is all that is recorded.
    EXPECT_EQ(EditLog.rPtr, 24);
    AddReference(id, {.id = sub, .repeat = 65535});
    DeleteRange(pattern(id), 20, TIME_FOREVER);
    EXPECT_EQ(items(id), (Transitions{{1, 10}}));
}

TEST_F(RangeEdits, AnEndlessLengthWithoutAForeverItemIsCutAsItStands) {
    // The last item is a data item whose word for repeat reads 65535.
    uint16_t sub = MakePattern("$s", {{1, 0x7FFFFFFF}});
    uint16_t id = MakePattern("b[31:0]");
    AddReference(id, {.id = sub, .repeat = 3});
    AddTransition(id, 0xFFFF0000, 10);
    EXPECT_EQ(pattern(id)->duration, TIME_FOREVER);
    DeleteRange(pattern(id), 0, ItemLength(PatternFromId(id)->item(0)));
    EXPECT_EQ(items(id), (Transitions{{0xFFFF0000, 10}}));
}

TEST_F(RangeEdits, ItemsBeyondTheAxisAreCountedFromTheStart) {
    constexpr TimeVal longest = 0x7FFFFFFF;
    uint16_t id = MakePattern("a", {{1, longest}, {0, longest}, {1, longest}});
    EXPECT_EQ(pattern(id)->duration, TIME_FOREVER);
    DeleteRange(pattern(id), 5, 15);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {1, longest - 15}, {0, longest}, {1, longest}}));
    DeleteRange(pattern(id), longest, TIME_FOREVER);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {1, longest - 15}, {0, 10}}));
}

TEST_F(RangeEdits, WhatRefersToAnEndlessPatternLearnsThatItIsEmpty) {
    uint16_t sub = MakePattern("$s", {{1, 5}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = sub, .repeat = 65535});
    uint16_t user = MakePattern("$u");
    AddReference(user, {.id = id});
    EXPECT_EQ(pattern(user)->duration, TIME_FOREVER);
    DeleteRange(pattern(id), 0, TIME_FOREVER);
    EXPECT_EQ(pattern(user)->duration, 0U);
}

TEST_F(RangeEdits, OfAnEmptyStretchAtTheStartTheItemThereGoes) {
    uint16_t id = MakePattern("a", {{1, 10}, {0, 10}});
    DeleteRange(pattern(id), 0, 0);
    EXPECT_EQ(items(id), (Transitions{{0, 10}}));
}

TEST_F(RangeEdits, AnEmptyPatternStaysEmpty) {
    uint16_t id = MakePattern("a");
    DeleteRange(pattern(id), 0, 10);
    EXPECT_FALSE(logged());
}

// --- pulses -----------------------------------------------------------------------------------------

TEST_F(RangeEdits, SplittingKeepsTheTotal) {
    uint16_t id = MakePattern("a", {{1, 10}});
    SplitItem(pattern(id), 0, 2, 3, 0);
    EXPECT_EQ(items(id), (Transitions{{1, 2}, {0, 3}, {1, 5}}));
}

TEST_F(RangeEdits, SplittingWithInsertMovesWhatIsBehind) {
    uint16_t id = MakePattern("a", {{1, 10}});
    SplitItem(pattern(id), 0, 2, 3, 1);
    EXPECT_EQ(items(id), (Transitions{{1, 2}, {0, 3}, {1, 8}}));
}

TEST_F(RangeEdits, ABusPulseOfTheLastValueIsFollowedByZero) {
    uint16_t id = MakePattern("b[7:0]", {{255, 10}});
    SplitItem(pattern(id), 0, 2, 3, 0);
    EXPECT_EQ(items(id), (Transitions{{255, 2}, {0, 3}, {255, 5}}));
}

TEST_F(RangeEdits, APulseWithoutLengthIsNone) {
    uint16_t id = MakePattern("a", {{1, 10}});
    SplitItem(pattern(id), 0, 2, 0, 1);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, APulseAtTheEndLeavesAnItemOfNoLengthBehindIt) {
    uint16_t id = MakePattern("a", {{1, 10}});
    SplitItem(pattern(id), 0, 7, 3, 0);
    EXPECT_EQ(items(id), (Transitions{{1, 7}, {0, 3}, {1, 0}}));
}

TEST_F(RangeEdits, APulseThatDoesNotFitIsNone) {
    uint16_t id = MakePattern("a", {{1, 10}});
    SplitItem(pattern(id), 0, 11, 1, 1);
    SplitItem(pattern(id), 0, 8, 3, 0);
    SplitItem(pattern(id), 1, 0, 3, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, WithoutRoomForBothItemsNothingIsSplit) {
    uint16_t id = MakePattern("", {{1, 10}});
    while (PatternFromId(id)->used() + 8 <= MAX_RECORD_SIZE - 8) AddTransition(id, 0, 1);
    std::string before = StoreText();
    SplitItem(pattern(id), 0, 2, 3, 1);
    EXPECT_EQ(StoreText(), before);
    EXPECT_FALSE(Headless.userErrors.empty() && Headless.programErrors.empty());
}

// --- edges ------------------------------------------------------------------------------------------

struct EdgeMove {
    uint16_t index;
    int right;
    TimeVal from, to;
    int insert;
    Transitions result;
};

class EdgesOfThreeTens : public RangeEdits, public testing::WithParamInterface<EdgeMove> {};

TEST_P(EdgesOfThreeTens, Move) {
    uint16_t id = MakePattern("a", threeTens);
    const EdgeMove &move = GetParam();
    MoveEdge(pattern(id), PatternFromId(id), move.index, move.right, move.from, move.to, 1, move.insert);
    EXPECT_EQ(items(id), move.result);
    EXPECT_EQ(logged(), move.result != threeTens);
}

INSTANTIATE_TEST_SUITE_P(Moves, EdgesOfThreeTens,
                         testing::Values(EdgeMove{1, 0, 10, 13, 0, {{1, 13}, {0, 7}, {1, 10}}},
                                         EdgeMove{1, 0, 10, 4, 0, {{1, 4}, {0, 16}, {1, 10}}},
                                         EdgeMove{1, 0, 10, 13, 1, {{1, 13}, {0, 10}, {1, 10}}},
                                         EdgeMove{1, 1, 20, 17, 0, {{1, 10}, {0, 7}, {1, 13}}},
                                         EdgeMove{1, 1, 20, 23, 0, {{1, 10}, {0, 13}, {1, 7}}},
                                         EdgeMove{1, 1, 20, 23, 1, {{1, 10}, {0, 13}, {1, 10}}},
                                         // At the start the value in front counts as 0.
                                         EdgeMove{0, 0, 0, 4, 0, {{0, 4}, {1, 6}, {0, 10}, {1, 10}}},
                                         EdgeMove{0, 0, 0, 4, 1, {{0, 4}, {1, 10}, {0, 10}, {1, 10}}},
                                         // The end of the wave.
                                         EdgeMove{2, 1, 30, 36, 0, {{1, 10}, {0, 10}, {1, 16}}},
                                         EdgeMove{2, 1, 30, 24, 1, {{1, 10}, {0, 10}, {1, 4}}},
                                         EdgeMove{2, 1, 30, 30, 0, threeTens}));

TEST_F(RangeEdits, TheLeftEdgeOfALowFirstItemDoesNotMove) {
    uint16_t id = MakePattern("a", {{0, 10}, {1, 10}});
    MoveEdge(pattern(id), PatternFromId(id), 0, 0, 0, 4, 1, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, AMoveOfLessThanAUnitChangesNothing) {
    uint16_t id = MakePattern("a", threeTens);
    MoveEdge(pattern(id), PatternFromId(id), 1, 0, 100, 109, 10, 0);
    MoveEdge(pattern(id), PatternFromId(id), 1, 0, 100, 91, 10, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, WithoutAUnitNothingMoves) {
    uint16_t id = MakePattern("a", threeTens);
    MoveEdge(pattern(id), PatternFromId(id), 1, 0, 10, 13, 0, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, AReferenceHasNoEdgesToMove) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a", threeTens);
    AddReference(id, {.id = sub});
    for (int right : {0, 1}) MoveEdge(pattern(id), PatternFromId(id), 3, right, 30, 33, 1, 0);
    MoveEdge(pattern(id), PatternFromId(id), 4, 0, 40, 37, 1, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, AnEdgeAtAReferenceMovesOnlyAwayFromIt) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub});
    AddTransition(id, 0, 10);
    MoveEdge(pattern(id), PatternFromId(id), 0, 1, 10, 13, 1, 0);
    MoveEdge(pattern(id), PatternFromId(id), 2, 0, 20, 17, 1, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, AnEdgeAtAReferenceThatStaysMakesNoItem) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub});
    MoveEdge(pattern(id), PatternFromId(id), 0, 1, 10, 10, 1, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, TheValueBehindAnEdgeIsThatOneUnitLater) {
    uint16_t sub = MakePattern("$s", {{0, 1}, {1, 10}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub});
    MoveEdge(pattern(id), PatternFromId(id), 0, 1, 10, 7, 1, 0);
    EXPECT_EQ(items(id), (Transitions{{0, 7}, {1, 3}, {sub, 11}}));
}

TEST_F(RangeEdits, StepsAreTruncatedTowardZero) {
    uint16_t id = MakePattern("a", threeTens);
    MoveEdge(pattern(id), PatternFromId(id), 1, 0, 100, 71, 10, 0);
    EXPECT_EQ(items(id), (Transitions{{1, 8}, {0, 12}, {1, 10}}));
}

TEST_F(RangeEdits, BehindAReferenceALeftEdgeTakesTheValueInFront) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = sub});
    AddTransition(id, 0, 10);
    MoveEdge(pattern(id), PatternFromId(id), 1, 0, 10, 13, 1, 0);
    EXPECT_EQ(items(id), (Transitions{{sub, 10}, {1, 3}, {0, 7}}));
}

TEST_F(RangeEdits, BehindAReferenceOfItsOwnValueALeftEdgeDoesNotMove) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = sub});
    AddTransition(id, 1, 10);
    MoveEdge(pattern(id), PatternFromId(id), 1, 0, 10, 13, 1, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, BeforeAReferenceARightEdgeTakesTheValueBehind) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub});
    MoveEdge(pattern(id), PatternFromId(id), 0, 1, 10, 7, 1, 0);
    EXPECT_EQ(items(id), (Transitions{{0, 7}, {1, 3}, {sub, 10}}));
}

TEST_F(RangeEdits, BeforeAReferenceOfItsOwnValueARightEdgeDoesNotMove) {
    uint16_t sub = MakePattern("$s", {{0, 10}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub});
    MoveEdge(pattern(id), PatternFromId(id), 0, 1, 10, 7, 1, 0);
    EXPECT_FALSE(logged());
}

TEST_F(RangeEdits, BeforeAReferenceARightEdgeWithInsertMovesTheReference) {
    uint16_t sub = MakePattern("$s", {{1, 10}});
    uint16_t id = MakePattern("a", {{0, 10}});
    AddReference(id, {.id = sub});
    MoveEdge(pattern(id), PatternFromId(id), 0, 1, 10, 14, 1, 1);
    EXPECT_EQ(items(id), (Transitions{{0, 14}, {sub, 10}}));
}

TEST_F(RangeEdits, AnEdgeInANestedPatternMovesInItsUnits) {
    uint16_t sub = MakePattern("", threeTens);
    uint16_t id = MakePattern("a");
    AddReference(id, {.id = sub, .scale = 5, .repeat = 2});
    Pattern *root = pattern(id);
    MoveEdge(root, PatternFromId(sub), 1, 1, 100, 85, 5, 0);
    EXPECT_EQ(items(sub), (Transitions{{1, 10}, {0, 7}, {1, 13}}));
}

// --- longer, and another level ------------------------------------------------------------------------

TEST_F(RangeEdits, APatternGrowsByAlternatingLevels) {
    uint16_t id = MakePattern("a", {{1, 10}});
    ExtendPattern(pattern(id), 10, 5);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 5}}));
    ExtendPattern(pattern(id), 15, 0);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 5}}));
}

TEST_F(RangeEdits, APatternGrowsByTheLevelAfterThatOfTheTime) {
    uint16_t id = MakePattern("a", {{1, 10}, {0, 10}});
    ExtendPattern(pattern(id), 9, 5);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {0, 10}, {0, 5}}));
}

TEST_F(RangeEdits, WithoutRoomAPatternStaysAsItIs) {
    uint16_t id = MakePattern("", {{1, 10}});
    while (PatternFromId(id)->used() + 8 <= MAX_RECORD_SIZE) AddTransition(id, 0, 1);
    std::string before = StoreText();
    EXPECT_EQ(ExtendPattern(pattern(id), 5, 5), PatternFromId(id));
    EXPECT_EQ(StoreText(), before);
}

TEST_F(RangeEdits, AnEmptyPatternGrowsToo) {
    uint16_t id = MakePattern("a");
    EXPECT_EQ(ExtendPattern(pattern(id), 0, 5), PatternFromId(id));
    EXPECT_EQ(items(id), (Transitions{{1, 5}}));
}

TEST_F(RangeEdits, AReplacedStretchJoinsItsNeighbours) {
    uint16_t id = MakePattern("a", threeTens);
    ReplaceRange(pattern(id), 10, 20, 1, 1);
    EXPECT_EQ(items(id), (Transitions{{1, 30}}));
}

TEST_F(RangeEdits, AReplacedStretchBehindTheLastItemIsAppended) {
    uint16_t id = MakePattern("b[3:0]", {{1, 10}, {2, 10}, {3, 10}});
    ReplaceRange(pattern(id), 20, 30, 7, 5);
    EXPECT_EQ(items(id), (Transitions{{1, 10}, {2, 10}, {5, 10}}));
}

TEST_F(RangeEdits, AReplacedStretchOfAnotherValueStands) {
    uint16_t id = MakePattern("b[3:0]", {{1, 10}, {2, 10}, {3, 10}});
    ReplaceRange(pattern(id), 5, 25, 1, 7);
    EXPECT_EQ(items(id), (Transitions{{1, 5}, {7, 20}, {3, 5}}));
}

TEST_F(RangeEdits, AReplacedStretchAtTheStartJoinsWhatIsBehind) {
    uint16_t id = MakePattern("a", threeTens);
    ReplaceRange(pattern(id), 0, 15, 0, 0);
    EXPECT_EQ(items(id), (Transitions{{0, 20}, {1, 10}}));
}

} // namespace
