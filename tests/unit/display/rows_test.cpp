#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "display/primitives.h"
#include "editlog/edit_log.h"
#include "store/mutators.h"
#include <algorithm>

using RowList = Display;

namespace {

using Names = std::vector<std::string>;
using RowSet = std::vector<uint32_t>;
const std::vector<std::string> TOO_MANY = {"Too many waveforms displayed"};

// Rows of `count` nodes named N0, N1, ...
void MakeRows(uint32_t count) {
    for (uint32_t i = 0; i < count; i++) MakeRow(("N" + std::to_string(i)).c_str());
    MeasureNameWidths();
}

void Highlight(std::initializer_list<uint32_t> rows) {
    for (uint32_t row : rows) WaveRows[row].setHighlighted(true);
}

int32_t WidthOf(const std::string &name) {
    return TextWidth((name + "  P").c_str());
}

} // namespace

// --- ShowWaveByName ---

TEST_F(RowList, ShowingAPatternAppendsARowAndSelectsIt) {
    MakeRows(2);
    uint16_t id = MakePattern("NEW", {{0, 10}});
    PatternFromId(id)->setChanged(false);
    EXPECT_EQ(ShowWaveByName("new"), PatternFromId(id));
    EXPECT_EQ(RowNames(), (Names{"N0", "N1", "NEW"}));
    EXPECT_TRUE(WaveRows[2].isWave());
    EXPECT_EQ(HighlightedRows(), RowSet{2});
    EXPECT_EQ(WaveView.SelectRow, 2u);
    EXPECT_EQ(WaveView.SelectRowLast, 2u);
    EXPECT_TRUE(PatternFromId(id)->changed());
}

TEST_F(RowList, OfTwoPatternsOfANameTheNewestIsShown) {
    MakePattern("SAME");
    uint16_t newest = MakePattern("same");
    EXPECT_EQ(ShowWaveByName("Same"), PatternFromId(newest));
    EXPECT_EQ(WaveRows[0].PatternId, newest);
}

TEST_F(RowList, AnUnknownNameShowsNothingAndSaysNothing) {
    MakeRows(1);
    EXPECT_EQ(ShowWaveByName("NOBODY"), nullptr);
    EXPECT_EQ(ShowWaveByName(""), nullptr);
    EXPECT_EQ(RowNames(), Names{"N0"});
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(RowList, APatternThatHasARowIsSelectedInItsFirstOne) {
    MakeRows(3);
    AppendRowOf(WaveRows[1].PatternId);
    Highlight({0, 3});
    ShowWaveByName("N1");
    EXPECT_EQ(RowNames(), (Names{"N0", "N1", "N2", "N1"}));
    EXPECT_EQ(HighlightedRows(), RowSet{1});
    EXPECT_EQ(WaveView.SelectRow, 1u);
}

TEST_F(RowList, ShowingScrollsTheRowIntoView) {
    MakeRows(60);
    ShowWaveByName("N50");
    EXPECT_GT(WaveView.TopRow, 0u);
    EXPECT_LE(WaveView.TopRow, 50u);
    EXPECT_EQ(WaveView.TopPixel, WaveView.TopRow * static_cast<uint32_t>(WaveView.RowHeight));
}

TEST_F(RowList, ACompositeIsNoWave) {
    uint16_t id = MakePattern("COMP");
    PatternFromId(id)->setKind(PatternKind::Composite);
    ShowWaveByName("COMP");
    EXPECT_FALSE(WaveRows[0].isWave());
}

TEST_F(RowList, Row256IsAcceptedAndRow257Refused) {
    MakeRows(255);
    MakePattern("LAST");
    MakePattern("BEYOND");
    EXPECT_NE(ShowWaveByName("LAST"), nullptr);
    EXPECT_EQ(WaveView.RowCount, 256u);
    EXPECT_TRUE(Headless.userErrors.empty());
    Names before = RowNames();
    EXPECT_NE(ShowWaveByName("BEYOND"), nullptr);
    EXPECT_EQ(Headless.userErrors, TOO_MANY);
    EXPECT_EQ(RowNames(), before);
    EXPECT_EQ(HighlightedRows(), RowSet{255});
}

TEST_F(RowList, ShowingRaisesTheNameWidth) {
    MakeRows(1);
    MakePattern("QUITE_A_LONG_NAME");
    ShowWaveByName("QUITE_A_LONG_NAME");
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf("QUITE_A_LONG_NAME"));
    MakePattern("S");
    ShowWaveByName("S");
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf("QUITE_A_LONG_NAME"));
}

TEST_F(RowList, WhileADocumentIsReadOnlyTheTableChanges) {
    DisplayOpen = 0;
    MakePattern("A", {{0, 5}});
    ForgetCalls();
    ShowWaveByName("A");
    AddWaveRow(WaveRows[0].PatternId, 0);
    EXPECT_EQ(RowNames(), (Names{"A", "A"}));
    Highlight({1});
    DuplicateHighlightedRows();
    HideRow(1);
    EXPECT_EQ(RowNames(), (Names{"A", "A"}));
    HideHighlightedRows();
    EXPECT_EQ(RowNames(), Names{"A"});
    EXPECT_TRUE(HeadlessSurface.calls.empty());
    EXPECT_TRUE(Headless.invalidated.empty());
    EXPECT_EQ(HighlightedRows(), RowSet{});
    EXPECT_EQ(WaveView.NameTextWidth, 0);
}

TEST_F(RowList, WithoutATableNoRowIsMade) {
    uint16_t id = MakePattern("A");
    FreeWaveRows();
    AddWaveRow(id, 0);
    ShowNewRow(id);
    EXPECT_EQ(ShowWaveByName("A"), PatternFromId(id));
    EXPECT_EQ(WaveView.RowCount, 0u);
}

TEST_F(RowList, APatternThatIsGoneGetsNoRow) {
    AddWaveRow(3000, 0);
    EXPECT_EQ(WaveView.RowCount, 0u);
}

TEST_F(RowList, ARowWhosePatternIsGoneIsMeasuredWithoutAName) {
    MakeRows(1);
    PatternTable[WaveRows[0].PatternId] = 0;
    EXPECT_EQ(MeasureNameWidths(), WidthOf(""));
}

// --- AddWaveRow ---

TEST_F(RowList, ARowIsInsertedBeforeAnother) {
    MakeRows(3);
    Highlight({0, 2});
    uint16_t id = MakePattern("IN");
    AddWaveRow(id, 1);
    EXPECT_EQ(RowNames(), (Names{"N0", "IN", "N1", "N2"}));
    EXPECT_EQ(HighlightedRows(), RowSet{1});
    EXPECT_EQ(WaveView.SelectRow, 1u);
    EXPECT_EQ(WaveView.SelectRowLast, 1u);
}

TEST_F(RowList, ARowIsInsertedAtTheEnd) {
    MakeRows(2);
    AddWaveRow(MakePattern("END"), 2);
    EXPECT_EQ(RowNames(), (Names{"N0", "N1", "END"}));
}

TEST_F(RowList, AnInsertedRowStartsWithoutHandlesAndMarksItsPattern) {
    MakeRows(1);
    WaveRows[0].NetHandles[0] = 7;
    WaveRows[0].setNetCount(1);
    uint16_t id = WaveRows[0].PatternId;
    PatternFromId(id)->setChanged(false);
    AddWaveRow(id, 0);
    EXPECT_EQ(WaveRows[0].NetHandles[0], 0u);
    EXPECT_EQ(WaveRows[0].netCount(), 0u);
    EXPECT_EQ(WaveRows[1].netCount(), 1u);
    EXPECT_TRUE(PatternFromId(id)->changed());
}

TEST_F(RowList, AFullTableMovesItsRowsAndThenRefuses) {
    MakeRows(256);
    AddWaveRow(MakePattern("IN"), 254);
    EXPECT_EQ(Headless.userErrors, TOO_MANY);
    EXPECT_EQ(WaveView.RowCount, 256u);
    Names names = RowNames();
    EXPECT_EQ(names[253], "N253");
    EXPECT_EQ(names[254], "N254");
    EXPECT_EQ(names[255], "N254");
}

// --- Duplicate ---

TEST_F(RowList, DuplicatesFollowInOrderAndTakeTheHighlight) {
    MakeRows(4);
    Highlight({1, 3});
    WaveRows[1].NetHandles[0] = 11;
    WaveRows[1].setNetCount(1);
    DuplicateHighlightedRows();
    EXPECT_EQ(RowNames(), (Names{"N0", "N1", "N2", "N3", "N1", "N3"}));
    EXPECT_EQ(HighlightedRows(), (RowSet{4, 5}));
    EXPECT_EQ(WaveRows[4].NetHandles[0], 11u);
    EXPECT_EQ(WaveRows[4].netCount(), 1u);
    EXPECT_EQ(WaveView.SelectRow, 4u);
    EXPECT_EQ(WaveView.SelectRowLast, 5u);
}

TEST_F(RowList, WithNothingHighlightedNothingIsDuplicated) {
    MakeRows(2);
    WaveView.SelectRow = 1;
    ForgetCalls();
    DuplicateHighlightedRows();
    EXPECT_EQ(WaveView.RowCount, 2u);
    EXPECT_EQ(WaveView.SelectRow, 1u);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(RowList, DuplicatingUpToTheLimitReportsItOnce) {
    MakeRows(255);
    Highlight({3, 9, 12});
    DuplicateHighlightedRows();
    EXPECT_EQ(WaveView.RowCount, 256u);
    EXPECT_EQ(Headless.userErrors, TOO_MANY);
    EXPECT_EQ(RowNames()[255], "N3");
    EXPECT_EQ(HighlightedRows(), (RowSet{9, 12, 255}));
}

// --- Hide ---

TEST_F(RowList, HidingARowClosesTheGap) {
    MakeRows(3);
    WaveView.SelectRow = 0;
    HideRow(1);
    EXPECT_EQ(RowNames(), (Names{"N0", "N2"}));
    EXPECT_EQ(WaveView.SelectRow, NO_ROW);
}

TEST_F(RowList, HidingARowThatIsNotThereDoesNothing) {
    MakeRows(2);
    HideRow(2);
    HideRow(NO_ROW);
    EXPECT_EQ(RowNames(), (Names{"N0", "N1"}));
}

TEST_F(RowList, HidingTheWidestNameShrinksTheWidth) {
    MakeRow("A");
    MakeRow("THE_WIDEST_OF_THEM");
    MakeRow("MIDDLE");
    MeasureNameWidths();
    HideRow(1);
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf("MIDDLE"));
}

TEST_F(RowList, HidingAnotherNameDoesNotMeasureAgain) {
    MakeRow("A");
    MakeRow("THE_WIDEST_OF_THEM");
    WaveView.NameTextWidth = 500; // only a new measurement would change it
    HideRow(0);
    EXPECT_EQ(WaveView.NameTextWidth, 500);
}

TEST_F(RowList, HidingTheOnlyRowLeavesNoWidth) {
    MakeRow("A");
    MeasureNameWidths();
    HideRow(0);
    EXPECT_EQ(WaveView.RowCount, 0u);
    EXPECT_EQ(WaveView.NameTextWidth, 0);
}

TEST_F(RowList, HidingTheHighlightedRowsClearsTheSelection) {
    MakeRows(5);
    Highlight({1, 2, 4});
    WaveView.SelectActive = true;
    WaveView.SelectRow = 1;
    HideHighlightedRows();
    EXPECT_EQ(RowNames(), (Names{"N0", "N3"}));
    EXPECT_EQ(WaveView.SelectRow, 2u);
    EXPECT_EQ(WaveView.SelectRowLast, 2u);
    EXPECT_FALSE(WaveView.SelectActive);
}

TEST_F(RowList, HidingSeveralRowsMeasuresAgainIfTheWidestWasAmongThem) {
    MakeRow("THE_WIDEST_OF_THEM");
    MakeRow("A");
    MakeRow("MIDDLE");
    MeasureNameWidths();
    Highlight({0, 1});
    HideHighlightedRows();
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf("MIDDLE"));
}

TEST_F(RowList, HidingSeveralRowsRemembersThatTheWidestWasTheFirstToGo) {
    MakeRow("A");
    MakeRow("MIDDLE");
    MakeRow("THE_WIDEST_OF_THEM");
    MeasureNameWidths();
    Highlight({0, 2});
    HideHighlightedRows();
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf("MIDDLE"));
}

TEST_F(RowList, TheOverlayIsOffWhileTheHighlightedRowsGo) {
    MakeRows(3);
    Highlight({1});
    DrawOverlay(true);
    static bool wasOn;
    wasOn = true;
    RowSelectionHook = [] { wasOn = Overlay.overlayOn; };
    HideHighlightedRows();
    RowSelectionHook = nullptr;
    EXPECT_FALSE(wasOn) << "when whoever follows the rows hears of it";
    EXPECT_TRUE(Overlay.overlayOn);
}

TEST_F(RowList, AHiddenRowIsTakenOutOfThePictureUnderTheOverlay) {
    MakeRows(3);
    WaveView.CursorTime = 100;
    PaneImage image(Pane::Wave);
    RepaintAll();
    DrawOverlay(true);
    HideRow(1);
    EXPECT_TRUE(Overlay.overlayOn);
    DrawOverlay(false);
    // Two low lines are left, without a trace of the cursor.
    for (uint32_t row : {0u, 1u}) EXPECT_EQ(image.at(100, RowLow(row)), 0x0000FFu) << row;
    EXPECT_EQ(image.count(0x000000, {0, 0, 1000, 600}), 0);
    EXPECT_EQ(image.count(0x0000FF, {0, RowLow(1) + 1, 1000, 600}), 0);
}

TEST_F(RowList, HidingAllRowsLeavesAnEmptyList) {
    MakeRows(3);
    Highlight({0, 1, 2});
    HideHighlightedRows();
    EXPECT_EQ(WaveView.RowCount, 0u);
    EXPECT_EQ(WaveView.NameTextWidth, 0);
}

TEST_F(RowList, HidingRedrawsOnlyFromTheLowestRowRemoved) {
    MakeRows(5);
    Highlight({2, 3});
    ForgetCalls();
    HideHighlightedRows();
    EXPECT_EQ(DrawnTexts(), Names{"N4  T"});
}

// --- what a change of the list shows ---

namespace {

const std::string WIDE(60, 'W');

// More rows than the pane has room for.
class LongRowList : public RowList {
protected:
    void SetUp() override {
        RowList::SetUp();
        MakeRows(60);
        UpdateRowScrollBar();
        ForgetCalls();
    }
    static int32_t rowBar() {
        return Headless.bars[static_cast<int>(Pane::Wave)][static_cast<int>(ScrollBar::Vertical)].maximum;
    }
    static int32_t nameBar() {
        return Headless.bars[static_cast<int>(Pane::Name)][static_cast<int>(ScrollBar::Horizontal)].maximum;
    }
    static int32_t hiddenRows() {
        return static_cast<int32_t>(WaveView.RowCount) - static_cast<int32_t>(VisibleRows());
    }
    static int32_t hiddenNames() {
        return WaveView.NameTextWidth + WaveView.FontCharWidth - WaveView.NameColumnWidth;
    }
    // The rows whose waves were erased, counted from the top of the list.
    static RowSet drawnWaves() {
        RowSet rows;
        for (const SurfaceCall &call : HeadlessSurface.calls) {
            if (call.kind != SurfaceCall::Kind::Fill || call.pane != Pane::Wave) continue;
            if (call.rect.bottom - call.rect.top != WaveView.RowHeight) continue;
            rows.push_back((static_cast<uint32_t>(call.rect.top) + WaveView.TopPixel) /
                           static_cast<uint32_t>(WaveView.RowHeight));
        }
        return rows;
    }
    static void expectBarsFit() {
        EXPECT_EQ(rowBar(), hiddenRows());
        EXPECT_EQ(nameBar(), std::max(hiddenNames(), 1));
    }
};

} // namespace

TEST_F(LongRowList, AnInsertedRowChangesTheBars) {
    AddWaveRow(MakePattern(WIDE.c_str()), 3);
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf(WIDE));
    EXPECT_EQ(rowBar(), 61 - static_cast<int32_t>(VisibleRows()));
    expectBarsFit();
}

TEST_F(LongRowList, AnInsertedRowIsDrawnWithThoseBelow) {
    AddWaveRow(MakePattern("IN"), 20);
    RowSet rows = drawnWaves();
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front(), 20u);
    EXPECT_EQ(rows.back(), VisibleRows());
    EXPECT_EQ(DrawnTexts()[0], "IN  T");
    EXPECT_EQ(DrawnTexts()[1], "N20  T");
}

TEST_F(LongRowList, AnInsertedRowIsScrolledIntoView) {
    AddWaveRow(MakePattern("IN"), 50);
    EXPECT_GT(WaveView.TopRow, 0u);
    EXPECT_LE(WaveView.TopRow, 50u);
}

TEST_F(LongRowList, AShownRowChangesTheBars) {
    MakePattern(WIDE.c_str());
    ShowWaveByName(WIDE.c_str());
    EXPECT_EQ(rowBar(), 61 - static_cast<int32_t>(VisibleRows()));
    expectBarsFit();
}

TEST_F(LongRowList, DuplicatesChangeTheBarAndAreScrolledIntoView) {
    Highlight({0, 1});
    DuplicateHighlightedRows();
    EXPECT_EQ(rowBar(), 62 - static_cast<int32_t>(VisibleRows()));
    EXPECT_GT(WaveView.TopRow, 0u);
}

TEST_F(LongRowList, ADuplicateThatNeedsNoScrollingChangesTheBarToo) {
    ScrollRowsTo(60, false);
    uint32_t top = WaveView.TopRow;
    Highlight({0});
    DuplicateHighlightedRows();
    EXPECT_EQ(WaveView.TopRow, top);
    EXPECT_EQ(rowBar(), 61 - static_cast<int32_t>(VisibleRows()));
}

TEST_F(LongRowList, HiddenRowsChangeTheBar) {
    HideRow(4);
    EXPECT_EQ(rowBar(), 59 - static_cast<int32_t>(VisibleRows()));
    Highlight({0, 1});
    HideHighlightedRows();
    EXPECT_EQ(rowBar(), 57 - static_cast<int32_t>(VisibleRows()));
}

TEST_F(RowList, DuplicatesAreDrawn) {
    MakeRows(3);
    Highlight({1});
    ForgetCalls();
    DuplicateHighlightedRows();
    EXPECT_EQ(DrawnTexts(), (Names{"N1  T", "N1  T"})); // the source's name, and the copy's
    std::string erased = Fill(0, 0, 3 * WaveView.RowHeight, 999, 4 * WaveView.RowHeight - 1);
    std::vector<std::string> drawn = Drawn();
    EXPECT_NE(std::find(drawn.begin(), drawn.end(), erased), drawn.end());
}

TEST_F(RowList, NamesAreMeasuredOnTheirPanel) {
    MakeRow("A");
    ForgetCalls();
    MeasureNameWidths();
    EXPECT_EQ(SelectedPanes(), std::vector{Pane::Name});
}

// --- names, selection, handles ---

TEST_F(RowList, TheWidestNameIsMeasured) {
    MakeRow("A");
    MakeRow("LONGER_NAME");
    EXPECT_EQ(MeasureNameWidths(), WidthOf("LONGER_NAME"));
    EXPECT_EQ(WaveView.NameTextWidth, WidthOf("LONGER_NAME"));
}

TEST_F(RowList, NothingIsMeasuredWhileADocumentIsRead) {
    MakeRow("A");
    WaveView.NameTextWidth = 33;
    DisplayOpen = 0;
    EXPECT_EQ(MeasureNameWidths(), 33);
}

TEST_F(RowList, SelectingARowRedrawsOnlyTheNamesThatChange) {
    MakeRows(4);
    Highlight({0});
    ForgetCalls();
    SelectRowHighlight(2, true);
    EXPECT_EQ(HighlightedRows(), RowSet{2});
    EXPECT_EQ(DrawnTexts(), (Names{"N0  T", "N2  T"}));
}

TEST_F(RowList, ARowCanJoinTheHighlight) {
    MakeRows(3);
    Highlight({0});
    WaveView.SelectRow = 0;
    SelectRowHighlight(2, false);
    EXPECT_EQ(HighlightedRows(), (RowSet{0, 2}));
    EXPECT_EQ(WaveView.SelectRow, 0u);
    SelectRowOnly(1, false);
    EXPECT_EQ(HighlightedRows(), (RowSet{0, 1, 2}));
    EXPECT_EQ(WaveView.SelectRow, 1u);
}

TEST_F(RowList, SelectingNoRowClearsTheHighlight) {
    MakeRows(3);
    Highlight({0, 1});
    SelectRowHighlight(WaveView.RowCount, true);
    EXPECT_EQ(HighlightedRows(), RowSet{});
}

namespace {

Names askedNets;
uint32_t AnswerNet(const char *name) {
    askedNets.emplace_back(name);
    return static_cast<uint32_t>(askedNets.size() % 3); // 0 among them
}

class LinkedRows : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        askedNets.clear();
        HierDisplayNetHook = AnswerNet;
    }
    void TearDown() override {
        HierDisplayNetHook = nullptr;
        Display::TearDown();
    }
};

} // namespace

TEST_F(LinkedRows, ANewRowAsksForEachNetOfItsBus) {
    MakePattern("D[2:0]", {}, 3);
    ShowWaveByName("D[2:0]");
    EXPECT_EQ(askedNets, (Names{"D[2]", "D[1]", "D[0]"}));
    EXPECT_EQ(WaveRows[0].netCount(), 3u);
    EXPECT_EQ(WaveRows[0].NetHandles[0], 1u);
    EXPECT_EQ(WaveRows[0].NetHandles[1], 2u);
    EXPECT_EQ(WaveRows[0].NetHandles[2], 0u);
}

TEST_F(LinkedRows, AnInsertedRowAsksForItsNets) {
    MakeRows(1);
    AddWaveRow(MakePattern("IN"), 0);
    EXPECT_EQ(askedNets, Names{"IN"});
    EXPECT_EQ(WaveRows[0].netCount(), 1u);
}

TEST_F(LinkedRows, RebindingAsksForAllRowsInOrderBehindTheOldHandles) {
    MakeRows(2);
    WaveRows[0].setNetCount(1);
    WaveRows[0].NetHandles[0] = 99;
    RebindNetHandles();
    EXPECT_EQ(askedNets, (Names{"N0", "N1"}));
    EXPECT_EQ(WaveRows[0].netCount(), 2u);
    EXPECT_EQ(WaveRows[0].NetHandles[0], 99u);
    EXPECT_EQ(WaveRows[0].NetHandles[1], 1u);
}

TEST_F(LinkedRows, ARowWhosePatternIsGoneAsksForNothing) {
    MakeRows(2);
    PatternTable[WaveRows[0].PatternId] = 0;
    RebindNetHandles();
    EXPECT_EQ(askedNets, Names{"N1"});
    EXPECT_EQ(WaveRows[0].netCount(), 0u);
}

TEST_F(LinkedRows, NoMoreThan32HandlesAreKept) {
    MakePattern("W[31:0]", {}, 32);
    ShowWaveByName("W[31:0]");
    RebindNetHandles();
    EXPECT_EQ(WaveRows[0].netCount(), 32u);
}
