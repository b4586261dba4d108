#include "display/cursor_readout.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include "unit/support/fresh_store.h"

namespace {

class CursorReadout : public FreshStore {
protected:
    static void Select(const char *name) {
        ShowWaveByName(name);
        WaveView.SelectRow = 0;
    }
    static std::string At(TimeVal time) {
        WaveView.CursorTime = time;
        ShowCursorReadout();
        return PromptText;
    }
};

} // namespace

TEST_F(CursorReadout, GivesTheTimeAloneWithoutASelectedRow) {
    EXPECT_EQ(At(10), "Time = 10 ps ");
}

TEST_F(CursorReadout, CountsTheDistanceToTheMark) {
    WaveView.MarkActive = true;
    WaveView.MarkTime = 15;
    EXPECT_EQ(At(10), "Time = 10 ps - Delta= -5 ps ");
    EXPECT_EQ(At(17), "Time = 17 ps - Delta = 2 ps ");
    EXPECT_EQ(At(15), "Time = 15 ps - Delta = 0 ps ");
}

TEST_F(CursorReadout, NamesTheLevelOfABit) {
    MakePattern("A", {{0, 10}, {1, 10}});
    Select("A");
    EXPECT_EQ(At(5), "Time = 5 ps - Level = Low");
    EXPECT_EQ(At(15), "Time = 15 ps - Level = High");
}

TEST_F(CursorReadout, ALevelBeyondTheTableReadsAsTheLastState) {
    MakePattern("A", {{77, 10}});
    Select("A");
    EXPECT_EQ(At(5), "Time = 5 ps - Level = High-Z");
}

TEST_F(CursorReadout, GivesTheValueOfABusInTheRadix) {
    MakePattern("D[7:0]", {{0xA5, 10}}, 8);
    Select("D[7:0]");
    EXPECT_EQ(At(5), "Time = 5 ps - Bus = A5");
}

TEST_F(CursorReadout, CountsClockCyclesOfAClockedNode) {
    uint16_t id = MakePattern("A", {{0, 100}});
    PatternFromId(id)->setFormat(2);
    PatternFromId(id)->setClock(1);
    PatternFromId(id)->period = 1;
    PatternFromId(id)->delay = 5;
    Settings.ClockMultiplier = 10;
    Select("A");
    EXPECT_EQ(At(25).substr(0, 28), "Time = 25 ps - Cycle = 2 - L");
    EXPECT_EQ(At(4).find("Cycle"), std::string::npos);
    Settings.ClockMultiplier = 65537;
    EXPECT_EQ(At(25).find("Cycle"), std::string::npos);
}

TEST_F(CursorReadout, CountsNoCyclesWithoutBothFormatAndClock) {
    uint16_t id = MakePattern("A", {{0, 100}});
    Settings.ClockMultiplier = 10;
    Select("A");
    PatternFromId(id)->setClock(1);
    EXPECT_EQ(At(25), "Time = 25 ps - Level = Low");
    PatternFromId(id)->setClock(0);
    PatternFromId(id)->setFormat(2);
    EXPECT_EQ(At(25).find("Cycle"), std::string::npos);
}

TEST_F(CursorReadout, CountsCyclesFromTheDelayOn) {
    uint16_t id = MakePattern("A", {{0, 100}});
    PatternFromId(id)->setFormat(1);
    PatternFromId(id)->setClock(1);
    PatternFromId(id)->delay = 25;
    Settings.ClockMultiplier = 10;
    Select("A");
    EXPECT_EQ(At(25).substr(0, 26), "Time = 25 ps - Cycle = 2 -");
    EXPECT_EQ(At(24).find("Cycle"), std::string::npos);
}

TEST_F(CursorReadout, TellsThePhaseOfAClockedFormatWhereItIsShown) {
    uint16_t id = MakePattern("A", {{1, 10}});
    SetPatternParams(PatternFromId(id), 0, 0, static_cast<uint32_t>(SignalFormat::RZ), 10, 50, 0);
    Select("A");
    Settings.ShowSyncActivity = false;
    std::string plain = At(7);
    Settings.ShowSyncActivity = true;
    EXPECT_EQ(plain, "Time = 7 ps - Level = High");
    EXPECT_EQ(At(7), "Time = 7 ps - Level = Low");
}

TEST_F(CursorReadout, NamesTheLevelByTheWavesOwnStateTable) {
    StateTable *table = AllocStateTable(2);
    ASSERT_NE(table, nullptr);
    table->rowCount = 2;
    table->rows()[0] = {0, 4, 'L', "Driven low", "L"};
    table->rows()[1] = {1, 4, 'H', "Driven high", "H"};
    uint16_t id = MakePattern("A", {{1, 10}});
    SetPatternParams(PatternFromId(id), 1, 0, 0, 1, 50, 0);
    Select("A");
    EXPECT_EQ(At(5), "Time = 5 ps - Level = Driven high");
}

TEST_F(CursorReadout, EnablesExpandBusByTheSelection) {
    MakePattern("D[7:0]", {{0xA5, 10}}, 8);
    At(0);
    EXPECT_EQ(Headless.enabledCommands.back(), (std::pair<uint32_t, bool>{98, false}));
    Select("D[7:0]");
    At(0);
    EXPECT_EQ(Headless.enabledCommands.back(), (std::pair<uint32_t, bool>{98, true}));
}
