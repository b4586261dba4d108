#include "shell/data_listing_window.h"

#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "headless/data_listing.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "store/pattern_store.h"
#include "unit/support/fresh_store.h"

namespace {

using Lines = std::vector<std::string>;

class DataListingWindow : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitHeadlessListing();
        InitCommands();
        Headless.panesExist = true;
        MakePattern("A", {{0, 10}});
        MakePattern("B", {{1, 20}});
        for (const char *name : {"A", "B"}) ShowWaveByName(name);
        // From here on a row that is shown is a change.
        DisplayOpen = 1;
    }
    void TearDown() override {
        CloseDataListing();
        FreshStore::TearDown();
    }
    static const Lines &Shown() { return HeadlessListing.lines; }
};

const Lines LINES_OF_A = {"A - Bit", "  Data - 0 - 10"};
const Lines LINES_OF_B = {"B - Bit", "  Data - 1 - 20"};

} // namespace

TEST_F(DataListingWindow, OpensWithThePatternOfTheSelectedRow) {
    SelectRowOnly(0, true);
    DispatchCommand(COMMAND_SHOW_WAVEFORM_DATA);
    EXPECT_TRUE(HeadlessListing.open);
    EXPECT_EQ(Shown(), LINES_OF_A);
    EXPECT_TRUE(HeadlessListing.drawing);
    EXPECT_EQ(HeadlessListing.raised, 0);
}

TEST_F(DataListingWindow, ComesToTheTopWhenItIsOpenedAgain) {
    SelectRowOnly(0, true);
    OpenDataListing();
    OpenDataListing();
    EXPECT_EQ(HeadlessListing.raised, 1);
    EXPECT_EQ(Shown(), LINES_OF_A) << "each line once";
}

TEST_F(DataListingWindow, FollowsTheSelectionOfARow) {
    SelectRowOnly(0, true);
    OpenDataListing();
    SelectRowOnly(1, true);
    EXPECT_EQ(Shown(), LINES_OF_B);
    SelectRowHighlight(0, true);
    EXPECT_EQ(Shown(), LINES_OF_A);
}

TEST_F(DataListingWindow, IsEmptyWithSeveralRowsSelected) {
    SelectRowOnly(0, true);
    OpenDataListing();
    WaveView.SelectRowLast = 1;
    SelectRowHighlight(1, false);
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(DataListingWindow, IsEmptyWithoutASelectedRow) {
    WaveView.SelectRow = WaveView.SelectRowLast = NO_ROW;
    OpenDataListing();
    EXPECT_EQ(Shown(), Lines{});
    WaveView.SelectRow = WaveView.SelectRowLast = 2;
    FillDataListing();
    EXPECT_EQ(Shown(), Lines{}) << "a row behind the last one";
}

TEST_F(DataListingWindow, IsEmptiedWhenTheSelectedRowIsHidden) {
    SelectRowOnly(1, true);
    OpenDataListing();
    HideHighlightedRows();
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(DataListingWindow, IsEmptiedWhenARowIsHiddenByItself) {
    SelectRowOnly(1, true);
    OpenDataListing();
    HideRow(1);
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(DataListingWindow, ShowsTheCopyOfADuplicatedRow) {
    SelectRowOnly(1, true);
    OpenDataListing();
    HeadlessListing.redraws = 0;
    DuplicateHighlightedRows();
    EXPECT_EQ(Shown(), LINES_OF_B);
    EXPECT_GT(HeadlessListing.redraws, 0);
}

TEST_F(DataListingWindow, StaysClosedAndUntouchedUntilItIsOpened) {
    FillDataListing();
    SelectRowOnly(0, true);
    EXPECT_EQ(HeadlessListing.redraws, 0);
    OpenDataListing();
    CloseDataListing();
    HeadlessListing.redraws = 0;
    SelectRowOnly(1, true);
    EXPECT_FALSE(HeadlessListing.open);
    EXPECT_EQ(HeadlessListing.redraws, 0);
}

TEST_F(DataListingWindow, HoldsTheLogOpenWhileItIsFilledForTheFirstTime) {
    OpenDataListing();
    EXPECT_TRUE(HeadlessListing.logHeld);
    FillDataListing();
    EXPECT_FALSE(HeadlessListing.logHeld);
    LogHoldOpen(1);
    ChooseDataListingLine();
    EXPECT_EQ(LogHoldOpen(0), 1) << "a choice leaves the log as it was";
}

TEST_F(DataListingWindow, IsCutWhereTheListIsFull) {
    HeadlessListing.room = 1;
    SelectRowOnly(0, true);
    OpenDataListing();
    EXPECT_EQ(Shown(), Lines{LINES_OF_A[0]});
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(DataListingWindow, IsCutWhereNobodyReadsOn) {
    uint16_t id = MakePattern("LONG");
    for (uint32_t i = 0; i < 2000; ++i) AddTransition(id, i % 2, 1);
    uint16_t outer = MakePattern("OUTER");
    for (int i = 0; i < 12; ++i) AddReference(outer, {.id = id});
    ShowWaveByName("OUTER");
    SelectRowOnly(2, true);
    OpenDataListing();
    EXPECT_EQ(Shown().size(), 20000u);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(DataListingWindow, IsEmptiedWithTheDocument) {
    SelectRowOnly(0, true);
    OpenDataListing();
    Headless.alertAnswers = {2}; // the rows need not be saved
    OpenDocument("", true);
    EXPECT_EQ(Shown(), Lines{});
}
