#include "editlog/replay.h"

#include "config/settings.h"
#include "display/panes.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "editlog/record_reader.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <algorithm>

namespace {

using Texts = std::vector<std::string>;
using Payload = std::vector<uint8_t>;

constexpr int FORWARD = 0;
constexpr int BACKWARD = 1;

const Texts INVALID = {"ApplicationExecuteLog - Invalid Command"};

// The payload that a builder writes.
template <class Build>
Payload Recorded(Build build) {
    InitEditLog();
    build();
    Payload payload(EditLog.Buffer + 4, EditLog.Buffer + EditLog.rPtr - 4);
    InitEditLog();
    return payload;
}

int Execute(const Payload &payload, int direction, int mode = 0) {
    EditLog.Recording = 0;
    int result = ApplicationExecuteLog(payload, direction, 0, 0, mode);
    EditLog.Recording = 1;
    return result;
}

class ReplayTest : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        PatternListHook = nullptr;
        TimingHook = nullptr;
        PasteRecordHook = nullptr;
        node = MakePattern("NODE", {{0, 10}, {1, 20}, {2, 30}});
        part = MakePattern("$part", {{3, 5}});
        user = MakePattern("USER");
        AddReference(user, {part, 2, 3, 4, 5, 1});
    }
    void TearDown() override {
        PatternListHook = nullptr;
        TimingHook = nullptr;
        PasteRecordHook = nullptr;
        FreshStore::TearDown();
    }

    // Changes the document, and sees that the record goes both ways between the two states.
    template <class Build, class Change>
    void goesBothWays(Build build, Change change) {
        Payload payload = Recorded(build);
        std::string before = StoreText();
        EditLog.Recording = 0;
        change();
        EditLog.Recording = 1;
        std::string behind = StoreText();
        ASSERT_NE(before, behind);
        EXPECT_EQ(Execute(payload, BACKWARD), 1);
        EXPECT_EQ(StoreText(), before);
        EXPECT_EQ(Execute(payload, FORWARD), 1);
        EXPECT_EQ(StoreText(), behind);
        EXPECT_EQ(HeapFault(), "");
        EXPECT_TRUE(Headless.programErrors.empty());
    }

    // The record is told as an invalid command, and changes nothing.
    static void isRefused(const Payload &payload, int direction) {
        std::string before = StoreText();
        uint32_t rows = WaveView.RowCount;
        SettingsRecord settings = Settings;
        Headless.programErrors.clear();
        EXPECT_EQ(Execute(payload, direction), 0);
        EXPECT_EQ(Headless.programErrors, INVALID);
        EXPECT_EQ(StoreText(), before);
        EXPECT_EQ(WaveView.RowCount, rows);
        EXPECT_EQ(Settings.BasicUnit, settings.BasicUnit);
        EXPECT_EQ(Settings.EndTime, settings.EndTime);
        EXPECT_EQ(HeapFault(), "");
    }
    template <class Build>
    static void isRefusedBothWays(Build build) {
        Payload payload = Recorded(build);
        isRefused(payload, FORWARD);
        isRefused(payload, BACKWARD);
    }

    uint16_t node, part, user;
};

// --- every kind, both ways --------------------------------------------------------------------------

TEST_F(ReplayTest, Delay) {
    goesBothWays([&] { LogDelay(node, 0, 7); }, [&] { SetPatternDelay(PatternFromId(node), 7); });
}

TEST_F(ReplayTest, ItemValueAndDuration) {
    goesBothWays([&] { LogItemValue(node, 1, 1, 9); }, [&] { SetItemValue(PatternFromId(node), 1, 9); });
    goesBothWays([&] { LogItemDuration(node, 2, 30, 31); },
                 [&] { SetItemDuration(PatternFromId(node), 2, 31); });
}

TEST_F(ReplayTest, ItemRepeatScaleAndFormat) {
    goesBothWays([&] { LogItemRepeat(user, 0, 3, 65535); },
                 [&] { SetItemRepeat(PatternFromId(user), 0, 65535); });
    goesBothWays([&] { LogItemScale(user, 0, 2, 60000); },
                 [&] { SetItemScale(PatternFromId(user), 0, 60000); });
    goesBothWays([&] { LogItemFormat(user, 0, 1, 4); }, [&] { SetItemFormat(PatternFromId(user), 0, 4); });
}

TEST_F(ReplayTest, PatternParams) {
    goesBothWays(
        [&] {
            LogPatternParams(node, {1, 50, 0, 1, 0, 0}, {static_cast<uint32_t>(-5), 33, 2, 3, 4, 1});
        },
        [&] { SetPatternParams(PatternFromId(node), 2, 1, 4, -5, 33, 3); });
}

TEST_F(ReplayTest, Rename) {
    goesBothWays([&] { LogRename(node, "NODE", "A_MUCH_LONGER_NAME"); },
                 [&] { RenamePattern(PatternFromId(node), "A_MUCH_LONGER_NAME"); });
    EXPECT_EQ(FindPattern("node"), nullptr);
    EXPECT_EQ(FindPattern("a_much_longer_name"), PatternFromId(node));
}

TEST_F(ReplayTest, ARenameOfAnUnnamedPatternTakesTheNameAwayAgain) {
    uint16_t unnamed = MakePattern("", {{1, 5}});
    Payload payload = Recorded([&] { LogRename(unnamed, "", "$new"); });
    EXPECT_EQ(std::string(payload.begin() + 5, payload.begin() + 9), "$new");
    std::string before = StoreText();
    EXPECT_EQ(Execute(payload, FORWARD), 1);
    EXPECT_STREQ(PatternFromId(unnamed)->name(), "$new");
    EXPECT_EQ(Execute(payload, BACKWARD), 1);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(PatternFromId(unnamed)->nameLength, 0);
}

TEST_F(ReplayTest, Timing) {
    Settings.BasicUnit = 12;
    Settings.Decimals = 3;
    Settings.ClockMultiplier = 10;
    Settings.EndTime = 500;
    Payload payload = Recorded([] { LogTiming(9 * 4 + 1, 12 * 4 + 3, 7, 10, 400, 500); });
    EXPECT_EQ(Execute(payload, BACKWARD), 1);
    EXPECT_EQ(Settings.BasicUnit, 9);
    EXPECT_EQ(Settings.Decimals, 1);
    EXPECT_EQ(Settings.ClockMultiplier, 7U);
    EXPECT_EQ(Settings.EndTime, 400U);
    EXPECT_EQ(Execute(payload, FORWARD), 1);
    EXPECT_EQ(Settings.BasicUnit, 12);
    EXPECT_EQ(Settings.Decimals, 3);
    EXPECT_EQ(Settings.ClockMultiplier, 10U);
    EXPECT_EQ(Settings.EndTime, 500U);
}

TEST_F(ReplayTest, TimesBeyond16BitsComeBackCut) {
    Payload payload = Recorded(
        [] { LogTiming(48, 48, static_cast<uint16_t>(65537), 1, static_cast<uint16_t>(100000), 5); });
    EXPECT_EQ(Execute(payload, BACKWARD), 1);
    EXPECT_EQ(Settings.EndTime, 34464U);
    EXPECT_EQ(Settings.ClockMultiplier, 1U);
}

TEST_F(ReplayTest, AChangedClockReachesTheLengthsThatHangOnIt) {
    // A composite keeps the full lengths of the nodes in it.
    SetPatternParams(PatternFromId(node), 0, 0, static_cast<uint32_t>(SignalFormat::NRZ), 10, 50, 1);
    uint16_t bus = MakePattern("BUS[1:0]");
    AddReference(bus, {node}, PatternKind::Composite);
    ValidateDurations();
    EXPECT_EQ(PatternDuration(PatternFromId(bus)), 600U);
    Execute(Recorded([] { LogTiming(48, 48, 1, 5, 100, 100); }), FORWARD);
    ValidateDurations();
    EXPECT_EQ(PatternDuration(PatternFromId(bus)), 3000U);
}

TEST_F(ReplayTest, TransitionsDeletedAndInserted) {
    goesBothWays([&] { LogTransition(0, node, 1, 1, 20); }, [&] { DeleteItem(PatternFromId(node), 1); });
    goesBothWays([&] { LogTransition(1, node, 0, 77, 4); },
                 [&] { InsertTransition(PatternFromId(node), 0, 77, 4); });
}

TEST_F(ReplayTest, ReferencesDeletedAndInserted) {
    goesBothWays([&] { LogReference(0, user, 0, 0, part, 2, 3, 4, 5, 1); },
                 [&] { DeleteItem(PatternFromId(user), 0); });
    goesBothWays(
        [&] { LogReference(1, user, 0, 0, part, 65535, 65535, 31, 30, 7); },
        [&] { InsertReference(PatternFromId(user), PatternKind::Plain, 0, part, 65535, 65535, 31, 30, 7); });
}

TEST_F(ReplayTest, AnInsertedReferenceBringsTheKindOfItsPattern) {
    uint16_t bus = MakePattern("BUS[1:0]");
    Payload payload = Recorded([&] { LogReference(0, bus, 1, 0, node, 1, 1, 0, 0, 0); });
    EXPECT_EQ(Execute(payload, BACKWARD), 1);
    EXPECT_EQ(PatternFromId(bus)->kind(), PatternKind::Composite);
    EXPECT_EQ(PatternFromId(bus)->itemCount, 1);
}

TEST_F(ReplayTest, ADeletionDoesNotLookAtTheItemsForm) {
    EXPECT_EQ(Execute(Recorded([&] { LogTransition(0, user, 0, 1, 1); }), FORWARD), 1);
    EXPECT_EQ(PatternFromId(user)->itemCount, 0);
    EXPECT_EQ(Execute(Recorded([&] { LogReference(0, node, 0, 1, part, 1, 1, 0, 0, 0); }), FORWARD), 1);
    EXPECT_EQ(PatternFromId(node)->itemCount, 2);
}

TEST_F(ReplayTest, PatternsDeletedAndCreated) {
    uint16_t gone = MakePattern("GONE[7:0]");
    // As the records before that of the deletion leave them.
    EditLog.Recording = 0;
    SetPatternParams(PatternFromId(gone), 0, 0, 0, 1, 100, 0);
    EditLog.Recording = 1;
    goesBothWays([&] { LogPattern(0, gone, 8, "GONE[7:0]"); }, [&] { DeletePattern(PatternFromId(gone)); });
    uint16_t made = 0;
    // The width that was given counts for an unnamed pattern only.
    Payload unnamed = Recorded([] { LogPattern(1, 3999, 5, ""); });
    EXPECT_EQ(Execute(unnamed, FORWARD), 1);
    made = 3999;
    EXPECT_EQ(PatternFromId(made)->width, 5);
    EXPECT_EQ(Execute(unnamed, BACKWARD), 1);
    EXPECT_FALSE(PatternInUse(made));
    Payload named = Recorded([] { LogPattern(1, 77, 0, "D[3:0]"); });
    EXPECT_EQ(Execute(named, FORWARD), 1);
    EXPECT_EQ(PatternFromId(77)->width, 4);
    EXPECT_TRUE(PatternFromId(77)->isBus());
}

TEST_F(ReplayTest, RowsRemovedAndInserted) {
    for (uint16_t id : {node, part, user}) AddWaveRow(id, 99);
    Payload removal = Recorded([&] { LogRow(0, part, 1); });
    EXPECT_EQ(Execute(removal, FORWARD), 1);
    ASSERT_EQ(WaveView.RowCount, 2U);
    EXPECT_EQ(WaveRows[1].PatternId, user);
    EXPECT_EQ(Execute(removal, BACKWARD), 1);
    ASSERT_EQ(WaveView.RowCount, 3U);
    EXPECT_EQ(WaveRows[1].PatternId, part);
    Payload insertion = Recorded([&] { LogRow(1, node, 3); });
    EXPECT_EQ(Execute(insertion, FORWARD), 1);
    ASSERT_EQ(WaveView.RowCount, 4U);
    EXPECT_EQ(WaveRows[3].PatternId, node);
    EXPECT_EQ(Execute(insertion, BACKWARD), 1);
    EXPECT_EQ(WaveView.RowCount, 3U);
}

// --- places in the list of items --------------------------------------------------------------------

TEST_F(ReplayTest, ADeletionBeyondTheEndTakesTheLastItem) {
    for (uint16_t index : {3, 65535}) {
        uint16_t last = PatternFromId(node)->itemCount;
        Execute(Recorded([&] { LogTransition(0, node, index, 0, 0); }), FORWARD);
        EXPECT_EQ(PatternFromId(node)->itemCount, last - 1);
    }
    EXPECT_EQ(PatternFromId(node)->item(0).duration(), 10U);
}

TEST_F(ReplayTest, ADeletionWithoutItemsChangesNothing) {
    uint16_t empty = MakePattern("EMPTY");
    std::string before = StoreText();
    EXPECT_EQ(Execute(Recorded([&] { LogTransition(0, empty, 0, 0, 0); }), FORWARD), 1);
    EXPECT_EQ(Execute(Recorded([&] { LogReference(1, empty, 0, 9, part, 1, 1, 0, 0, 0); }), BACKWARD), 1);
    EXPECT_EQ(StoreText(), before);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(ReplayTest, AnInsertionBeyondTheEndGoesToTheEnd) {
    Execute(Recorded([&] { LogTransition(1, node, 4, 8, 80); }), FORWARD);
    ASSERT_EQ(PatternFromId(node)->itemCount, 4);
    EXPECT_EQ(PatternFromId(node)->item(3).value(), 8U);
    Execute(Recorded([&] { LogReference(0, node, 0, 65535, part, 1, 1, 0, 0, 0); }), BACKWARD);
    ASSERT_EQ(PatternFromId(node)->itemCount, 5);
    EXPECT_EQ(PatternFromId(node)->item(4).patternId(), part);
}

// --- what does not fit ------------------------------------------------------------------------------

TEST_F(ReplayTest, KindsThatDoNotExist) {
    for (uint16_t kind : {0, 12, 13, 20, 21, 22, 255, 256, 0x1000, 65535}) {
        Payload payload(64, 0);
        payload[0] = static_cast<uint8_t>(kind);
        payload[1] = static_cast<uint8_t>(kind >> 8);
        payload[2] = static_cast<uint8_t>(node);
        isRefused(payload, FORWARD);
        isRefused(payload, BACKWARD);
    }
}

TEST_F(ReplayTest, PayloadsThatAreTooShort) {
    const Payload payloads[] = {
        Recorded([&] { LogDelay(node, 0, 7); }),
        Recorded([&] { LogItemValue(node, 1, 1, 9); }),
        Recorded([&] { LogItemFormat(user, 0, 1, 4); }),
        Recorded([&] { LogPatternParams(node, {}, {}); }),
        Recorded([&] { LogTransition(1, node, 0, 77, 4); }),
        Recorded([&] { LogReference(1, user, 0, 0, part, 1, 1, 0, 0, 0); }),
        Recorded([&] { LogTiming(48, 49, 1, 1, 5, 6); }),
        Recorded([&] { LogRow(1, node, 0); }),
    };
    const size_t sizes[] = {12, 14, 8, 24, 14, 16, 22, 6};
    for (size_t i = 0; i < std::size(payloads); i++) {
        for (size_t size = 0; size < sizes[i]; size++) {
            isRefused({payloads[i].begin(), payloads[i].begin() + static_cast<std::ptrdiff_t>(size)},
                      FORWARD);
        }
    }
}

TEST_F(ReplayTest, NamesWithoutAnEnd) {
    Payload payload = Recorded([&] { LogRename(node, "NODE", "OTHER"); });
    std::replace(payload.begin() + 4, payload.end(), uint8_t{0}, uint8_t{'x'});
    isRefused(payload, FORWARD);
    payload = Recorded([&] { LogPattern(1, 99, 1, "NEW"); });
    std::replace(payload.begin() + 6, payload.end(), uint8_t{0}, uint8_t{'x'});
    isRefused(payload, FORWARD);
}

TEST_F(ReplayTest, PatternsThatAreNotInUse) {
    for (uint16_t id : {0, 99, 3999, 4000, 65535}) {
        isRefusedBothWays([&] { LogDelay(id, 0, 7); });
        isRefusedBothWays([&] { LogItemValue(id, 0, 0, 7); });
        isRefusedBothWays([&] { LogItemRepeat(id, 0, 1, 7); });
        isRefusedBothWays([&] { LogItemFormat(id, 0, 1, 7); });
        isRefusedBothWays([&] { LogPatternParams(id, {}, {}); });
        isRefusedBothWays([&] { LogRename(id, "A", "B"); });
        isRefusedBothWays([&] { LogTransition(1, id, 0, 1, 1); });
        isRefusedBothWays([&] { LogReference(1, id, 0, 0, part, 1, 1, 0, 0, 0); });
        isRefusedBothWays([&] { LogRow(1, id, 0); });
        isRefused(Recorded([&] { LogPattern(0, id, 1, "X"); }), FORWARD);
    }
}

TEST_F(ReplayTest, CreationsUnderAnImpossibleId) {
    for (uint16_t id : {uint16_t{0}, uint16_t{4000}, uint16_t{65535}, node, part}) {
        isRefused(Recorded([&] { LogPattern(1, id, 1, "X"); }), FORWARD);
        isRefused(Recorded([&] { LogPattern(0, id, 1, "X"); }), BACKWARD);
    }
}

TEST_F(ReplayTest, ItemsThatAreNotOfTheKindsForm) {
    isRefusedBothWays([&] { LogItemValue(user, 0, 1, 2); });
    isRefusedBothWays([&] { LogItemDuration(user, 0, 1, 2); });
    isRefusedBothWays([&] { LogItemRepeat(node, 0, 1, 2); });
    isRefusedBothWays([&] { LogItemScale(node, 0, 1, 2); });
    isRefusedBothWays([&] { LogItemFormat(node, 0, 1, 2); });
}

TEST_F(ReplayTest, ItemsThatAreNotThere) {
    for (uint16_t index : {3, 4, 65535}) {
        isRefusedBothWays([&] { LogItemValue(node, index, 1, 2); });
        isRefusedBothWays([&] { LogItemDuration(node, index, 1, 2); });
        isRefusedBothWays([&] { LogItemRepeat(user, index, 1, 2); });
        isRefusedBothWays([&] { LogItemScale(user, index, 1, 2); });
        isRefusedBothWays([&] { LogItemFormat(user, index, 1, 2); });
    }
}

TEST_F(ReplayTest, ReferencesToImpossibleIds) {
    for (uint16_t target : {0, 4000, 65535}) {
        isRefused(Recorded([&] { LogReference(1, user, 0, 0, target, 1, 1, 0, 0, 0); }), FORWARD);
        isRefused(Recorded([&] { LogReference(0, user, 0, 0, target, 1, 1, 0, 0, 0); }), BACKWARD);
    }
}

TEST_F(ReplayTest, ReferencesThatWouldCloseACircle) {
    isRefused(Recorded([&] { LogReference(1, user, 0, 0, user, 1, 1, 0, 0, 0); }), FORWARD);
    isRefused(Recorded([&] { LogReference(1, part, 0, 0, user, 1, 1, 0, 0, 0); }), FORWARD);
    uint16_t above = MakePattern("ABOVE");
    AddReference(above, {user});
    isRefused(Recorded([&] { LogReference(1, part, 0, 0, above, 1, 1, 0, 0, 0); }), FORWARD);
}

TEST_F(ReplayTest, ReferencesThatWouldNestTooDeep) {
    uint16_t below = MakePattern("$0", {{1, 1}});
    uint16_t first = below;
    for (uint32_t i = 1; i <= MAX_NESTING; i++) {
        uint16_t above = MakePattern(("$" + std::to_string(i)).c_str());
        AddReference(above, {below});
        below = above;
    }
    isRefused(Recorded([&] { LogReference(1, node, 0, 0, below, 1, 1, 0, 0, 0); }), FORWARD);
    isRefused(Recorded([&] { LogReference(1, first, 0, 0, node, 1, 1, 0, 0, 0); }), FORWARD);
    uint16_t nextToTop = PatternFromId(below)->item(0).patternId();
    EXPECT_EQ(Execute(Recorded([&] { LogReference(1, node, 0, 0, nextToTop, 1, 1, 0, 0, 0); }), FORWARD), 1);
}

TEST_F(ReplayTest, ADeletionOfAPatternThatARowShows) {
    AddWaveRow(part, 0);
    isRefused(Recorded([&] { LogPattern(0, part, 1, "$part"); }), FORWARD);
    isRefused(Recorded([&] { LogPattern(1, part, 1, "$part"); }), BACKWARD);
}

TEST_F(ReplayTest, RowsThatAreNotThereOrHaveNoRoom) {
    isRefused(Recorded([&] { LogRow(0, node, 0); }), FORWARD);
    isRefused(Recorded([&] { LogRow(1, node, 1); }), FORWARD);
    AddWaveRow(node, 0);
    isRefused(Recorded([&] { LogRow(0, node, 1); }), FORWARD);
    isRefused(Recorded([&] { LogRow(0, node, 2); }), BACKWARD);
    while (WaveView.RowCount < MAX_ROWS) AddWaveRow(node, 0);
    isRefused(Recorded([&] { LogRow(1, node, 0); }), FORWARD);
    isRefused(Recorded([&] { LogRow(0, node, 256); }), BACKWARD);
    FreeWaveRows();
    isRefused(Recorded([&] { LogRow(1, node, 0); }), FORWARD);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(ReplayTest, AUnitThatTheProgramDoesNotKnowIsStored) {
    EXPECT_EQ(Execute(Recorded([] { LogTiming(16 * 4, 48, 1, 1, 5, 6); }), BACKWARD), 1);
    EXPECT_EQ(Settings.BasicUnit, 16);
    EXPECT_EQ(Settings.Decimals, 0);
    EXPECT_EQ(Execute(Recorded([] { LogTiming(48, 65535, 1, 1, 5, 6); }), FORWARD), 1);
    EXPECT_EQ(Settings.BasicUnit, 16383);
    EXPECT_EQ(Settings.Decimals, 3);
    EXPECT_EQ(Settings.EndTime, 6U);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(ReplayTest, AMultiplierOfWhichNothingIsLeftCountsAsOne) {
    Settings.ClockMultiplier = 7;
    Payload payload = Recorded([] { LogTiming(48, 48, static_cast<uint16_t>(65536), 7, 5, 5); });
    EXPECT_EQ(Execute(payload, BACKWARD), 1);
    EXPECT_EQ(Settings.ClockMultiplier, 1U);
    EXPECT_EQ(Execute(payload, FORWARD), 1);
    EXPECT_EQ(Settings.ClockMultiplier, 7U);
}

TEST_F(ReplayTest, NamesTooLongForARecordAreTold) {
    for (size_t length : {65000UL, 65531UL, 65532UL, 65535UL, 65536UL, 100000UL}) {
        std::string name(length, 'n');
        std::string before = StoreText();
        Headless.userErrors.clear();
        bool fits = length == 65000;
        int result = Execute(Recorded([&] { LogRename(node, "NODE", name); }), FORWARD);
        EXPECT_EQ(result, fits ? 1 : 0) << length;
        EXPECT_EQ(StoreText() == before, !fits);
        EXPECT_EQ(Headless.userErrors.size(), fits ? 0U : 1U);
        result = Execute(Recorded([&] { LogPattern(1, 99, 1, name.c_str()); }), FORWARD);
        EXPECT_EQ(result, fits ? 1 : 0) << length;
        if (fits) {
            Execute(Recorded([&] { LogPattern(0, 99, 1, ""); }), FORWARD);
            Execute(Recorded([&] { LogRename(node, "", "NODE"); }), FORWARD);
        }
        EXPECT_EQ(HeapFault(), "");
    }
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(ReplayTest, AFullRecordRefusesAnItem) {
    EditLog.Recording = 0;
    while (PatternFromId(node)->used() + 8 <= MAX_RECORD_SIZE) {
        InsertTransition(PatternFromId(node), PatternFromId(node)->itemCount, 1, 1);
    }
    uint16_t count = PatternFromId(node)->itemCount;
    EXPECT_EQ(Execute(Recorded([&] { LogTransition(1, node, 0, 1, 1); }), FORWARD), 0);
    EXPECT_EQ(Execute(Recorded([&] { LogReference(1, node, 0, 0, part, 1, 1, 0, 0, 0); }), FORWARD), 0);
    EXPECT_EQ(PatternFromId(node)->itemCount, count);
    EXPECT_EQ(Headless.userErrors, (Texts{"Pattern has too many items", "Pattern has too many items"}));
    EXPECT_TRUE(Headless.programErrors.empty());
}

// --- references to patterns that are not in use -------------------------------------------------------

TEST_F(ReplayTest, WithinAReplayAReferenceMayNameAPatternThatIsNotInUse) {
    EXPECT_EQ(Execute(Recorded([&] { LogReference(1, user, 0, 1, 99, 1, 1, 0, 0, 0); }), FORWARD), 1);
    EXPECT_EQ(PatternFromId(user)->itemCount, 2);
    ValidateDurations();
    EXPECT_EQ(PatternDuration(PatternFromId(user)), 30U);
    EXPECT_EQ(Execute(Recorded([] { LogPattern(1, 99, 1, ""); }), FORWARD), 1);
    FinishReplay();
    EXPECT_EQ(PatternFromId(user)->itemCount, 2);
}

TEST_F(ReplayTest, AtItsEndSuchReferencesAreDeletedWithoutARecord) {
    uint16_t bus = MakePattern("BUS[1:0]");
    AddReference(bus, {part}, PatternKind::Composite);
    AddReference(bus, {node}, PatternKind::Composite);
    ValidateDurations();
    EXPECT_EQ(Execute(Recorded([&] { LogPattern(0, part, 1, "$part"); }), FORWARD), 1);
    ValidateDurations();
    FinishReplay();
    EXPECT_EQ(PatternFromId(user)->itemCount, 0);
    ASSERT_EQ(PatternFromId(bus)->itemCount, 1);
    EXPECT_EQ(PatternFromId(bus)->item(0).patternId(), node);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.Recording, 1);
    ValidateDurations();
    EXPECT_EQ(PatternDuration(PatternFromId(bus)), 60U);
}

// --- modes, hooks and brackets ------------------------------------------------------------------------

TEST_F(ReplayTest, OtherModesDoNothing) {
    std::string before = StoreText();
    for (int mode : {1, 2, 3, 4, 6, -1}) {
        EXPECT_EQ(Execute(Recorded([&] { LogDelay(node, 0, 7); }), FORWARD, mode), 1);
        EXPECT_EQ(Execute({}, FORWARD, mode), 1);
    }
    EXPECT_EQ(StoreText(), before);
    EXPECT_TRUE(Headless.programErrors.empty());
}

uint16_t pastedKind;

TEST_F(ReplayTest, APasteGetsTheDecodedRecord) {
    Payload payload = Recorded([&] { LogTransition(0, node, 0, 1, 1); });
    EXPECT_EQ(Execute(payload, BACKWARD, 5), 0);
    PasteRecordHook = [](const LogRecord &record) {
        pastedKind = record.kind;
        return 1;
    };
    pastedKind = 0;
    std::string before = StoreText();
    EXPECT_EQ(Execute(payload, BACKWARD, 5), 1);
    EXPECT_EQ(pastedKind, RecDeleteTransition);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(Execute({}, BACKWARD, 5), 0);
    EXPECT_EQ(Headless.programErrors, INVALID);
}

Texts toldNames;
int toldTimings;

TEST_F(ReplayTest, ListsAndDialogsAreToldOfWhatConcernsThem) {
    toldNames.clear();
    toldTimings = 0;
    PatternListHook = [](const char *name) { toldNames.emplace_back(name); };
    TimingHook = [] { toldTimings++; };
    for (const char *name : {"A", "$b", ""}) {
        Payload payload = Recorded([&] { LogPattern(1, 99, 1, name); });
        Execute(payload, FORWARD);
        Execute(payload, BACKWARD);
    }
    EXPECT_EQ(toldNames, (Texts{"A", "A", "$b", "$b"}));
    EXPECT_EQ(toldTimings, 0);
    DisplayOpen = 1;
    Headless.panesExist = true;
    Execute(Recorded([] { LogTiming(48, 48, 1, 1, 5, 6); }), FORWARD);
    EXPECT_EQ(toldTimings, 1);
    EXPECT_EQ(Headless.invalidated.size(), 3U);
}

TEST_F(ReplayTest, ChangedNamesAndPinTypesReachTheNameColumn) {
    AddWaveRow(node, 0);
    DisplayOpen = 1;
    Headless.panesExist = true;
    MeasureNameWidths();
    int32_t width = WaveView.NameTextWidth;
    Execute(Recorded([&] { LogRename(node, "NODE", "A_MUCH_LONGER_NAME"); }), FORWARD);
    FinishReplay();
    EXPECT_GT(WaveView.NameTextWidth, width);
    EXPECT_EQ(Headless.invalidated, std::vector<Pane>{Pane::Name});
    Execute(Recorded([&] { LogPatternParams(node, {}, {1, 50, 0, 0, 0, 2}); }), FORWARD);
    FinishReplay();
    EXPECT_EQ(Headless.invalidated.size(), 2U);
    FinishReplay();
    EXPECT_EQ(Headless.invalidated.size(), 2U);
}

TEST_F(ReplayTest, WhileADocumentIsReadThereIsNoNameColumn) {
    DisplayOpen = 0;
    Headless.panesExist = true;
    Execute(Recorded([&] { LogRename(node, "NODE", "OTHER"); }), FORWARD);
    Execute(Recorded([] { LogTiming(48, 48, 1, 1, 5, 6); }), FORWARD);
    FinishReplay();
    EXPECT_TRUE(Headless.invalidated.empty());
}

TEST_F(ReplayTest, NothingIsRecordedByAReplay) {
    Execute(Recorded([&] { LogTransition(1, node, 0, 77, 4); }), FORWARD);
    EXPECT_EQ(EditLog.rPtr, 0);
}

// --- together with the log ----------------------------------------------------------------------------

TEST_F(ReplayTest, ADeletedPatternComesBackWholeUnderItsOldId) {
    SetPatternDelay(PatternFromId(node), 5);
    SetPatternParams(PatternFromId(node), 1, 2, 3, 4, 5, 6);
    LogEndAction();
    std::string before = StoreText();
    while (PatternFromId(node)->itemCount > 0) {
        DeleteItem(PatternFromId(node), static_cast<uint16_t>(PatternFromId(node)->itemCount - 1));
    }
    DeletePattern(PatternFromId(node));
    LogEndAction();
    std::string behind = StoreText();
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(StoreText(), behind);
    LogUndo();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(ReplayTest, AResetPatternHasTheParametersOfADeletionInTheLog) {
    SetPatternParams(PatternFromId(node), 1, 2, 3, 4, 5, 6);
    InitEditLog();
    DeletePattern(PatternFromId(node));
    LogRecord record;
    ASSERT_TRUE(ReadRecord({EditLog.Buffer + 4, 24}, record));
    EXPECT_EQ(record.kind, RecPatternParams);
    EXPECT_EQ(record.newParams.period, 1U);
    EXPECT_EQ(record.newParams.duty, 100);
    EXPECT_EQ(record.newParams.stateTable + record.newParams.format + record.newParams.pinType +
                  record.newParams.clock,
              0);
}

TEST_F(ReplayTest, ANameThatReadsOnIntoTheItemsComesBackAsTheLogHasIt) {
    // The shorter name has moved the items over the end of the longer one before it is recorded.
    RenamePattern(PatternFromId(node), "LONGER_NAME_1234");
    LogEndAction();
    RenamePattern(PatternFromId(node), "S");
    LogEndAction();
    EXPECT_EQ(LogUndo(), 1);
    std::string name = PatternFromId(node)->name();
    EXPECT_EQ(name.substr(0, 4), "LONG");
    EXPECT_EQ(HeapFault(), "");
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_STREQ(PatternFromId(node)->name(), "S");
    EXPECT_EQ(PatternFromId(node)->item(2).duration(), 30U);
}

TEST_F(ReplayTest, EachRecordIsABracketAroundTheOpenFile) {
    ScratchDirectory scratch;
    Payload payload = Recorded([&] { LogDelay(node, 0, 7); });
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", scratch.write("a._KL", "").c_str());
    int held = LogHoldOpen(1);
    LogOpenFile();
    Execute(payload, FORWARD);
    EXPECT_NE(EditLog.LogHandle, NO_FILE);
    LogHoldOpen(held);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    LogOpenFile();
    Execute(payload, BACKWARD);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    LogDeleteFile();
}

} // namespace
