#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/primitives.h"
#include "display/renderer.h"
#include "edit/expand_bus.h"
#include "store/mutators.h"
#include <algorithm>

namespace {

using Names = std::vector<std::string>;
using Panes = std::vector<Pane>;

class Composition : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        rowHeight = WaveView.RowHeight;
    }
    static void makeRows(uint32_t count) {
        for (uint32_t i = 0; i < count; i++) MakeRow(("N" + std::to_string(i)).c_str());
        MeasureNameWidths();
        ForgetCalls();
    }
    void clip(Pane pane, int32_t top, int32_t bottom) {
        Headless.clip[static_cast<size_t>(pane)] = {0, top, 50, bottom};
    }
    // The rows whose waves were erased, in order.
    std::vector<int32_t> erasedWaves() {
        std::vector<int32_t> rows;
        for (const SurfaceCall &call : HeadlessSurface.calls) {
            bool row = call.kind == SurfaceCall::Kind::Fill && call.pane == Pane::Wave &&
                       call.rect.bottom - call.rect.top == rowHeight;
            if (row) rows.push_back((call.rect.top + static_cast<int32_t>(WaveView.TopPixel)) / rowHeight);
        }
        return rows;
    }
    static void clearChanged() {
        for (uint32_t id = 1; id <= HighestPatternId; id++) PatternFromId(id)->setChanged(false);
    }
    int32_t rowHeight = 0;
};

} // namespace

// --- paint messages ---

TEST_F(Composition, PaintingTheRulerDrawsIt) {
    PaintPane(Pane::Ruler);
    EXPECT_EQ(SelectedPanes(), Panes{Pane::Ruler});
    EXPECT_EQ(DrawnTexts().front(), "0");
}

TEST_F(Composition, PaintingDrawsTheRowsThatTheClipTouches) {
    makeRows(20);
    clip(Pane::Name, 2 * rowHeight, 4 * rowHeight - 1);
    PaintPane(Pane::Name);
    EXPECT_EQ(DrawnTexts(), (Names{"N2  T", "N3  T"}));
    EXPECT_EQ(PaintRange.paintFirstRow, 2u);
    EXPECT_EQ(PaintRange.paintLastRow, 4u);
}

TEST_F(Composition, AClipThatEndsWithARowTakesTheNextOneToo) {
    makeRows(20);
    clip(Pane::Wave, 2 * rowHeight, 4 * rowHeight);
    PaintPane(Pane::Wave);
    EXPECT_EQ(erasedWaves(), (std::vector{2, 3, 4}));
}

TEST_F(Composition, ScrolledRowsArePaintedAtTheirPlace) {
    makeRows(40);
    WaveView.TopRow = 7;
    WaveView.TopPixel = static_cast<uint32_t>(7 * rowHeight);
    clip(Pane::Wave, 0, rowHeight - 1);
    PaintPane(Pane::Wave);
    EXPECT_EQ(erasedWaves(), std::vector{7});
    EXPECT_EQ(Drawn()[0], Fill(0, 0, 0, 999, rowHeight - 1));
}

TEST_F(Composition, PaintingEndsWithTheLastRow) {
    makeRows(2);
    PaintPane(Pane::Wave);
    EXPECT_EQ(erasedWaves(), (std::vector{0, 1}));
    EXPECT_EQ(PaintRange.paintLastRow, 2u);
}

TEST_F(Composition, AnEmptyClipPaintsNothing) {
    makeRows(2);
    clip(Pane::Wave, 5, 5);
    PaintPane(Pane::Wave);
    Headless.clip[3] = {9, 0, 9, 100};
    PaintPane(Pane::Wave);
    EXPECT_TRUE(Drawn().empty());
}

TEST_F(Composition, PaintingBelowTheRowsDrawsNothing) {
    makeRows(2);
    clip(Pane::Name, 10 * rowHeight, 12 * rowHeight);
    PaintPane(Pane::Name);
    EXPECT_TRUE(Drawn().empty());
}

TEST_F(Composition, BeforeTheMetricsAreKnownNoRowIsPainted) {
    makeRows(2);
    WaveView.RowHeight = 0;
    PaintPane(Pane::Name);
    PaintPane(Pane::Wave);
    RepaintRowsFrom(0);
    EXPECT_TRUE(Drawn().empty());
}

// --- repaints ---

TEST_F(Composition, RepaintingFromARowClearsEverythingBelow) {
    makeRows(3);
    RepaintRowsFrom(1);
    std::vector<std::string> drawn = Drawn();
    EXPECT_EQ(drawn[0], Fill(0, 0, rowHeight, 100, 600));
    EXPECT_EQ(DrawnTexts(), (Names{"N1  T", "N2  T"}));
    EXPECT_EQ(erasedWaves(), (std::vector{1, 2}));
    EXPECT_NE(std::find(drawn.begin(), drawn.end(), Fill(0, 0, rowHeight, 1000, 600)), drawn.end());
}

TEST_F(Composition, RepaintingStartsWithTheFirstVisibleRow) {
    makeRows(40);
    WaveView.TopRow = 5;
    WaveView.TopPixel = static_cast<uint32_t>(5 * rowHeight);
    RepaintRowsFrom(2);
    EXPECT_EQ(Drawn()[0], Fill(0, 0, 0, 100, 600));
    EXPECT_EQ(erasedWaves().front(), 5);
}

TEST_F(Composition, RepaintingEndsWithThePane) {
    makeRows(40);
    SetPaneSizes(100, 1000, 3 * rowHeight);
    RepaintRowsFrom(0);
    EXPECT_EQ(erasedWaves(), (std::vector{0, 1, 2}));
    ForgetCalls();
    SetPaneSizes(100, 1000, 3 * rowHeight + 1);
    RepaintRowsFrom(0);
    EXPECT_EQ(erasedWaves(), (std::vector{0, 1, 2, 3}));
}

TEST_F(Composition, RepaintingBehindTheLastRowOnlyClears) {
    makeRows(2);
    RepaintRowsFrom(2);
    std::string cursor = Line(15, {{0, 0}, {0, 600}});
    EXPECT_EQ(Drawn(),
              (Names{Fill(0, 0, 2 * rowHeight, 100, 600), Fill(0, 0, 2 * rowHeight, 1000, 600), cursor}));
    ForgetCalls();
    RepaintRowsFrom(NO_ROW);
    EXPECT_EQ(Drawn().size(), 3u);
}

TEST_F(Composition, WithoutPanelsNothingIsRepainted) {
    makeRows(2);
    Headless.panesExist = false;
    RepaintRowsFrom(0);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(Composition, RepaintingAllDrawsRulerNamesAndWaves) {
    makeRows(2);
    RepaintAll();
    Panes panes = SelectedPanes();
    EXPECT_EQ(panes.front(), Pane::Ruler);
    Names texts = DrawnTexts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "N1  T"), texts.end());
    EXPECT_EQ(erasedWaves(), (std::vector{0, 1}));
}

TEST_F(Composition, RepaintingAllRowsLeavesNamesAndRuler) {
    makeRows(3);
    RepaintAllRows();
    EXPECT_EQ(erasedWaves(), (std::vector{0, 1, 2}));
    EXPECT_TRUE(DrawnTexts().empty());
}

TEST_F(Composition, AllPanelsCanBeScheduled) {
    InvalidateAllPanes();
    EXPECT_EQ(Headless.invalidated, (Panes{Pane::Ruler, Pane::Name, Pane::Wave}));
}

// --- changed patterns ---

TEST_F(Composition, OnlyRowsOfChangedPatternsAreRepainted) {
    makeRows(4);
    clearChanged();
    PatternFromId(WaveRows[2].PatternId)->setChanged(true);
    RepaintChanged(false);
    EXPECT_EQ(erasedWaves(), std::vector{2});
    EXPECT_FALSE(PatternFromId(WaveRows[2].PatternId)->changed());
}

TEST_F(Composition, WithNothingChangedNothingIsRepainted) {
    makeRows(4);
    clearChanged();
    RepaintChanged(false);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(Composition, BothRowsOfAPatternAreRepainted) {
    makeRows(3);
    AppendRowOf(WaveRows[0].PatternId);
    clearChanged();
    PatternFromId(WaveRows[0].PatternId)->setChanged(true);
    RepaintChanged(false);
    EXPECT_EQ(erasedWaves(), (std::vector{0, 3}));
}

TEST_F(Composition, AChangeDeepInsideRepaintsTheRowsOfAllThatUseIt) {
    // The user of the user has the lowest id, so the flag needs more than one pass.
    uint16_t top = MakeRow("TOP", {});
    uint16_t middle = MakePattern("$MIDDLE");
    uint16_t deep = MakePattern("$DEEP", {{0, 5}});
    MakeRow("OTHER");
    AddReference(top, {middle});
    AddReference(middle, {deep});
    clearChanged();
    ForgetCalls();
    PatternFromId(deep)->setChanged(true);
    RepaintChanged(false);
    EXPECT_EQ(erasedWaves(), std::vector{0});
    for (uint16_t id : {top, middle, deep}) EXPECT_FALSE(PatternFromId(id)->changed());
}

TEST_F(Composition, APatternThatHeldDataAloneIsRepaintedOnceItUsesAChangedOne) {
    uint16_t user = MakeRow("USER", {{0, 5}, {1, 5}});
    uint16_t used = MakePattern("$USED", {{0, 5}});
    RepaintChanged(false);
    PatternFromId(used)->setChanged(true);
    RepaintChanged(false); // sees data alone in the user
    DeleteItem(PatternFromId(user), 1);
    AddReference(user, {used});
    RepaintChanged(false);
    ForgetCalls();
    PatternFromId(used)->setChanged(true);
    RepaintChanged(false);
    EXPECT_EQ(erasedWaves(), std::vector{0});
}

TEST_F(Composition, TheFlagsOfPatternsWithoutARowAreCleared) {
    uint16_t id = MakePattern("HIDDEN");
    PatternFromId(id)->setChanged(true);
    RepaintChanged(false);
    EXPECT_FALSE(PatternFromId(id)->changed());
}

TEST_F(Composition, AReferenceToNothingSpreadsNoChange) {
    AddReference(MakeRow("A", {}), {3000});
    uint16_t other = MakePattern("OTHER");
    clearChanged();
    PatternFromId(other)->setChanged(true);
    RepaintChanged(false);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(Composition, ARowWhosePatternIsGoneIsPassedOver) {
    makeRows(3);
    PatternTable[WaveRows[1].PatternId] = 0;
    RepaintChanged(true);
    EXPECT_EQ(erasedWaves(), (std::vector{0, 2}));
}

TEST_F(Composition, WithoutAStoreNothingIsRepainted) {
    // Between two documents.
    makeRows(2);
    PatternStoreFree();
    RepaintChanged(true);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
    PaintPane(Pane::Wave);
    EXPECT_EQ(RowPattern(0), nullptr);
    EXPECT_TRUE(Drawn().empty());
}

TEST_F(Composition, WhileADocumentIsReadTheFlagsStay) {
    makeRows(1);
    DisplayOpen = 0;
    PatternFromId(1)->setChanged(true);
    RepaintChanged(false);
    EXPECT_TRUE(PatternFromId(1)->changed());
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(Composition, ANewRowIsDrawnByTheRepaintThatFollows) {
    makeRows(1);
    MakePattern("NEW", {{1, 10}});
    clearChanged();
    ShowWaveByName("NEW");
    ForgetCalls();
    RepaintChanged(false);
    EXPECT_EQ(erasedWaves(), std::vector{1});
}

TEST_F(Composition, TheRowsOfAnExpandedBusAreDrawn) {
    makeRows(1);
    uint16_t bus = MakeRow("D[1:0]", {{2, 1000}}, 2);
    PatternFromId(bus)->setBus(true);
    RepaintChanged(false);
    WaveView.SelectRow = 1;
    ForgetCalls();
    ExpandSelectedBus();
    EXPECT_EQ(RowNames(), (Names{"N0", "D[1:0]", "D[1]", "D[0]"}));
    EXPECT_EQ(erasedWaves(), (std::vector{2, 3}));
    Names drawn = Drawn();
    for (uint32_t row : {2u, 3u}) {
        int32_t y = row == 2 ? RowHigh(row) : RowLow(row);
        EXPECT_NE(std::find(drawn.begin(), drawn.end(), Line(3, {{1000, y}, {0, y}})), drawn.end()) << row;
    }
    for (uint32_t row = 0; row < 4; row++) EXPECT_FALSE(RowPattern(row)->changed()) << row;
}

TEST_F(Composition, TwoRowsOfOnePatternDeepInsideAreBothRepainted) {
    uint16_t top = MakeRow("TOP", {});
    MakeRow("OTHER");
    AppendRowOf(top);
    uint16_t deep = MakePattern("$DEEP", {{0, 5}});
    AddReference(top, {deep});
    AppendRowOf(deep);
    clearChanged();
    ForgetCalls();
    SetItemValue(PatternFromId(deep), 0, 1);
    RepaintChanged(false);
    EXPECT_EQ(erasedWaves(), (std::vector{0, 2, 3}));
}
