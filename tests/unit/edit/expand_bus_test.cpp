#include "edit/expand_bus.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"

namespace {

class ExpandBus : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitEditLog();
        InitReplay();
        Settings.AutoClockAssign = true;
        DisplayOpen = 1;
    }
    void TearDown() override {
        EXPECT_EQ(HeapFault(), "");
        DisplayOpen = 0;
        InitEditLog();
        FreshStore::TearDown();
    }
    // A row for the pattern, selected, of which the log knows nothing.
    static void show(const char *name) {
        EditLog.Recording = 0;
        ShowWaveByName(name);
        EditLog.Recording = 1;
    }
    static std::string rows() {
        std::string text;
        for (uint32_t row = 0; row < WaveView.RowCount; ++row) {
            text += std::string(RowPattern(row)->name()) + " ";
        }
        return text;
    }
};

} // namespace

TEST_F(ExpandBus, EachBitGetsARowThatIsUndoneAndRedone) {
    MakePattern("D[1:0],x", {{5, 10}});
    MakePattern("D[1]", {{1, 3}});
    show("D[1:0],x");
    std::string before = StoreText();
    ExpandSelectedBus();
    EXPECT_EQ(rows(), "D[1:0],x D[1] D[0] x ");
    EXPECT_EQ(FindPattern("D[1]")->kind(), PatternKind::Plain);
    EXPECT_EQ(FindPattern("x")->kind(), PatternKind::Reference);
    EXPECT_EQ(FindPattern("x")->clock(), 0u);
    std::string after = StoreText();
    LogEndAction();
    LogUndo();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(rows(), "D[1:0],x ");
    LogRedo();
    EXPECT_EQ(StoreText(), after);
    EXPECT_EQ(rows(), "D[1:0],x D[1] D[0] x ");
}

TEST_F(ExpandBus, WithoutASelectedRowNothingHappens) {
    MakePattern("D[1:0]");
    show("D[1:0]");
    WaveView.SelectRow = NO_ROW;
    ExpandSelectedBus();
    EXPECT_EQ(rows(), "D[1:0] ");
    EXPECT_EQ(HighestPatternId, 1);
}

TEST_F(ExpandBus, AFullTableEndsItBehindTheBitsThatThereAre) {
    MakePattern("D[3:0]");
    show("D[3:0]");
    while (HighestPatternId < MAX_PATTERNS - 3) MakePattern("");
    ExpandSelectedBus();
    EXPECT_EQ(rows(), "D[3:0] D[3] D[2] ");
    EXPECT_EQ(Headless.userErrors, std::vector<std::string>{"Exceeding maximum number of patterns"});
}

TEST_F(ExpandBus, AFullListIsToldOnce) {
    uint16_t bus = MakePattern("D[3:0]");
    for (uint32_t i = 1; i < MAX_ROWS - 1; ++i) MakePattern(("n" + std::to_string(i)).c_str());
    EditLog.Recording = 0;
    for (uint32_t id = HighestPatternId; id >= bus; --id) ShowWaveByName(PatternFromId(id)->name());
    EditLog.Recording = 1;
    ASSERT_EQ(WaveView.RowCount, MAX_ROWS - 1);
    ExpandSelectedBus();
    EXPECT_EQ(WaveView.RowCount, MAX_ROWS);
    EXPECT_EQ(Headless.userErrors, std::vector<std::string>{"Too many waveforms displayed"});
    EXPECT_NE(FindPattern("D[2]"), nullptr);
    EXPECT_EQ(FindPattern("D[1]"), nullptr);
}
