#include "edit/range_edits.h"

#include "config/settings.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"

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

TEST_F(RangeEdits, AnyStretchOfAnEndlessPatternReachesToItsEnd) {
    for (bool valid : {true, false}) {
        uint16_t sub = MakePattern("$s", {{1, 5}});
        uint16_t id = MakePattern("a", threeTens);
        AddReference(id, {.id = sub, .repeat = 65535});
        Pattern *a = pattern(id);
        if (!valid) {
            a->duration = 0;
            a->setDurationValid(false);
        }
        DeleteRange(a, 5, 15);
        EXPECT_EQ(items(id), (Transitions{{1, 5}})) << valid;
    }
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
