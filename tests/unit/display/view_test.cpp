#include "unit/display/display_fixture.h"

#include "store/queries.h"

namespace {

using Panes = std::vector<Pane>;
const Panes WAVE_AND_RULER = {Pane::Wave, Pane::Ruler};

class View : public Display {
protected:
    static int32_t fit(TimeVal length) {
        FitScale(length);
        return WaveView.Scale;
    }
};

} // namespace

TEST_F(View, AShortRangeFillsAtLeastHalfThePane) {
    SetPaneSizes(100, 800, 600);
    EXPECT_EQ(fit(800), 0);
    EXPECT_EQ(fit(400), 0);
    EXPECT_EQ(fit(399), 1);
    EXPECT_EQ(fit(200), 1);
    EXPECT_EQ(fit(199), 2);
}

TEST_F(View, ALongRangeFitsThePane) {
    SetPaneSizes(100, 800, 600);
    EXPECT_EQ(fit(801), -1);
    EXPECT_EQ(fit(1600), -1);
    EXPECT_EQ(fit(1601), -2);
}

TEST_F(View, TheShortestDocumentIsMagnifiedSixteenTimes) {
    SetPaneSizes(100, 800, 600);
    WaveView.SpanEnd = 1;
    EXPECT_EQ(fit(1), 4);
    EXPECT_EQ(fit(0), 4);
}

TEST_F(View, AnEndlessDocumentStopsAtTheLeastScale) {
    SetPaneSizes(100, 800, 600);
    WaveView.SpanEnd = TIME_FOREVER;
    EXPECT_EQ(fit(TIME_FOREVER), -21);
    SetPaneSizes(100, 1, 600);
    EXPECT_EQ(fit(TIME_FOREVER), -21);
}

TEST_F(View, APaneWithoutWidthIsNoTrouble) {
    SetPaneSizes(100, 0, 0);
    EXPECT_EQ(fit(10), -21);
    EXPECT_EQ(fit(0), 0);
    SetPaneSizes(100, -5, -5);
    ZoomToRange(0, TIME_FOREVER);
    EXPECT_EQ(WaveView.ViewLeft, WaveView.SpanEnd);
}

TEST_F(View, ZoomingToTheSpanShowsItFromTheStart) {
    WaveView.SpanEnd = 125000;
    ZoomToRange(0, 125000);
    EXPECT_EQ(WaveView.Scale, -7);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
    EXPECT_EQ(Headless.invalidated, WAVE_AND_RULER);
}

TEST_F(View, ZoomingToARangeCentresIt) {
    WaveView.SpanEnd = 125000;
    ZoomToRange(50000, 52000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ZoomCentre, 51000u);
    EXPECT_EQ(WaveView.ViewLeft, 50000u);
}

TEST_F(View, TheEndsOfARangeMayComeInEitherOrder) {
    WaveView.SpanEnd = 125000;
    ZoomToRange(52000, 50000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 50000u);
}

TEST_F(View, TheCentreOfOddEndsIsTruncatedByHalves) {
    WaveView.SpanEnd = 125000;
    ZoomToRange(3, 5);
    EXPECT_EQ(WaveView.ZoomCentre, 3u);
}

TEST_F(View, ZoomingRepaintsEvenWhenNothingMoves) {
    ZoomToRange(0, 1000);
    Headless.invalidated.clear();
    ZoomToRange(0, 1000);
    EXPECT_EQ(Headless.invalidated, WAVE_AND_RULER);
}

TEST_F(View, CentringKeepsTheViewOnTheSpan) {
    WaveView.SpanEnd = 5000;
    CentreOn(2500, false);
    EXPECT_EQ(WaveView.ViewLeft, 2000u);
    CentreOn(100, false);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
    CentreOn(4990, false);
    EXPECT_EQ(WaveView.ViewLeft, 4000u);
}

TEST_F(View, CentringRepaintsOnlyWhatMovedUnlessItIsForced) {
    WaveView.SpanEnd = 5000;
    CentreOn(2500, false);
    Headless.invalidated.clear();
    CentreOn(2500, false);
    EXPECT_TRUE(Headless.invalidated.empty());
    CentreOn(2500, true);
    EXPECT_EQ(Headless.invalidated, WAVE_AND_RULER);
}

TEST_F(View, AnEndlessSpanEndsAtTheRightEdge) {
    WaveView.SpanEnd = TIME_FOREVER;
    WaveView.Scale = -10;
    CentreOn(TIME_FOREVER, false);
    EXPECT_EQ(WaveView.ViewLeft, TIME_FOREVER - 2 * (500u << 10));
}

TEST_F(View, AHalfPaneOfMoreThanHalfTheAxisStartsAtZero) {
    WaveView.SpanEnd = TIME_FOREVER;
    WaveView.Scale = -23;
    CentreOn(TIME_FOREVER, false);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
}

TEST_F(View, TheSpanIsAQuarterLongerThanTheDocument) {
    WaveView.SpanEnd = 0;
    ExtendSpan(1000);
    EXPECT_EQ(WaveView.SpanEnd, 1250u);
    EXPECT_EQ(FullSpanEnd, 1250u);
}

TEST_F(View, TheSpanOnlyGrows) {
    WaveView.SpanEnd = 1250;
    FullSpanEnd = 7;
    ExtendSpan(1000);
    ExtendSpan(10);
    EXPECT_EQ(WaveView.SpanEnd, 1250u);
    EXPECT_EQ(FullSpanEnd, 7u);
}

TEST_F(View, TheSpanEndsAtForever) {
    ExtendSpan(0xE0000000);
    EXPECT_EQ(WaveView.SpanEnd, TIME_FOREVER);
    ExtendSpan(TIME_FOREVER);
    EXPECT_EQ(WaveView.SpanEnd, TIME_FOREVER);
}

TEST_F(View, AGrowingSpanShowsInScrollBarAndRuler) {
    ExtendSpan(4000);
    EXPECT_EQ(Headless.bars[3][0].maximum, 4000);
    EXPECT_EQ(Headless.invalidated, Panes{Pane::Ruler});
}

TEST_F(View, WavesWithoutEndAreDrawnOnWhereTheSpanGrowsInThePane) {
    WaveView.SpanEnd = 900;
    ExtendSpan(4000);
    EXPECT_EQ(Headless.invalidated, (Panes{Pane::Ruler, Pane::Wave}));
    Headless.invalidated.clear();
    ExtendSpan(8000);
    EXPECT_EQ(Headless.invalidated, Panes{Pane::Ruler}) << "the old end is out of sight";
}

TEST_F(View, TheSpanGrowsSilentlyWhileADocumentIsRead) {
    DisplayOpen = 0;
    ExtendSpan(4000);
    EXPECT_EQ(WaveView.SpanEnd, 5000u);
    EXPECT_EQ(Headless.bars[3][0].maximum, 0);
    EXPECT_TRUE(Headless.invalidated.empty());
}

TEST_F(View, TheSpanFollowsTheLongestPattern) {
    MakePattern("LONG", {{0, 8000}});
    UpdateFullDuration();
    EXPECT_EQ(WaveView.SpanEnd, 10000u);
}

TEST_F(View, ResizingTheWavePaneTakesItsSize) {
    WaveView.SpanEnd = 5000;
    for (int i = 0; i < 30; i++) MakeRow(("N" + std::to_string(i)).c_str());
    Headless.paneWidth[3] = 700;
    Headless.paneHeight[3] = 10 * WaveView.RowHeight + 3;
    PaneResized(Pane::Wave);
    EXPECT_EQ(WaveView.WavePaneWidth, 700);
    EXPECT_EQ(VisibleRows(), 10u);
    EXPECT_EQ(Headless.bars[3][0].maximum, 4300);
    EXPECT_EQ(Headless.bars[3][1].maximum, 20);
}

TEST_F(View, ResizingTheNameColumnUpdatesItsBar) {
    MakeRow("A_RATHER_LONG_NAME_FOR_THE_COLUMN");
    MeasureNameWidths();
    WaveView.NameColumnWidth = 50;
    PaneResized(Pane::Name);
    EXPECT_EQ(Headless.bars[2][0].maximum, WaveView.NameTextWidth + WaveView.FontCharWidth - 50);
}

TEST_F(View, ResizingTheRulerUpdatesNoBar) {
    MakeRow("A_RATHER_LONG_NAME_FOR_THE_COLUMN");
    WaveView.NameTextWidth = 400;
    PaneResized(Pane::Ruler);
    EXPECT_EQ(Headless.bars[2][0].maximum, 0);
}

TEST_F(View, TheNameColumnStartsAtItsSavedWidthWithinLimits) {
    int32_t least = ScrollBarWidth();
    int32_t most = FullScreenWidth() - 2 * ScrollBarWidth();
    EXPECT_EQ(InitialNameColumnWidth(false, 444), 100);
    EXPECT_EQ(InitialNameColumnWidth(true, 180), 180);
    EXPECT_EQ(InitialNameColumnWidth(true, 3), least);
    EXPECT_EQ(InitialNameColumnWidth(true, -70), least);
    EXPECT_EQ(InitialNameColumnWidth(true, 5000), most);
}

TEST_F(View, TheFieldOfTheNamesIsAtLeastTheColumn) {
    WaveView.NameTextWidth = 20;
    EXPECT_EQ(NameFieldWidth(), 100);
    EXPECT_EQ(NameShift(), 0);
    WaveView.NameTextWidth = 150;
    EXPECT_EQ(NameFieldWidth(), 150 + WaveView.FontCharWidth);
    EXPECT_EQ(NameShift(), 50 + WaveView.FontCharWidth);
    WaveView.NameScroll = 30;
    EXPECT_EQ(NameShift(), 20 + WaveView.FontCharWidth);
}
