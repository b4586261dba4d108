#include "unit/display/display_fixture.h"

namespace {

using Panes = std::vector<Pane>;

class Scrolling : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        WaveView.SpanEnd = 5000;
        WaveView.TickMinor = 10;
    }
    // Scrolls the time axis and returns the new left edge.
    static TimeVal time(ScrollCode code, int32_t thumb = 0) {
        ScrollMessage(Pane::Wave, ScrollBar::Horizontal, code, thumb);
        return WaveView.ViewLeft;
    }
    static uint32_t rows(ScrollCode code, int32_t thumb = 0) {
        ScrollMessage(Pane::Wave, ScrollBar::Vertical, code, thumb);
        return WaveView.TopRow;
    }
    static int32_t names(ScrollCode code, int32_t thumb = 0) {
        ScrollMessage(Pane::Name, ScrollBar::Horizontal, code, thumb);
        return WaveView.NameScroll;
    }
    static void makeRows(uint32_t count) {
        for (uint32_t i = 0; i < count; i++) MakeRow(("N" + std::to_string(i)).c_str());
    }
    // A pane with room for this many rows.
    static void showRows(int32_t count) { SetPaneSizes(100, 1000, count * WaveView.RowHeight + 5); }
};

HeadlessState::Bar &TimeBar() {
    return Headless.bars[3][0];
}
HeadlessState::Bar &RowBar() {
    return Headless.bars[3][1];
}
HeadlessState::Bar &NameBar() {
    return Headless.bars[2][0];
}

void ExpectBar(const HeadlessState::Bar &bar, int32_t maximum, int32_t position) {
    EXPECT_EQ(bar.maximum, maximum);
    EXPECT_EQ(bar.position, position);
}

} // namespace

// --- the time bar ---

TEST_F(Scrolling, ALineOfTimeIsAMinorTick) {
    WaveView.ViewLeft = 15;
    EXPECT_EQ(time(ScrollCode::LineDown), 25u);
    EXPECT_EQ(time(ScrollCode::LineUp), 15u);
    EXPECT_EQ(time(ScrollCode::LineUp), 5u);
    EXPECT_EQ(time(ScrollCode::LineUp), 0u);
}

TEST_F(Scrolling, APageOfTimeIsThePaneLessATick) {
    WaveView.ViewLeft = 1500;
    EXPECT_EQ(time(ScrollCode::PageDown), 2490u);
    EXPECT_EQ(time(ScrollCode::PageUp), 1500u);
    EXPECT_EQ(time(ScrollCode::PageUp), 510u);
    EXPECT_EQ(time(ScrollCode::PageUp), 0u);
}

TEST_F(Scrolling, APageOfAPaneNarrowerThanATickStays) {
    WaveView.TickMinor = 2000;
    WaveView.ViewLeft = 1500;
    EXPECT_EQ(time(ScrollCode::PageUp), 1500u);
    EXPECT_EQ(time(ScrollCode::PageDown), 1500u);
}

TEST_F(Scrolling, TheEndsOfTheTimeBar) {
    EXPECT_EQ(time(ScrollCode::Bottom), 5000u);
    EXPECT_EQ(time(ScrollCode::Top), 0u);
}

TEST_F(Scrolling, TimeMayScrollToTheEndOfTheSpanAndNoFurther) {
    WaveView.ViewLeft = 4995;
    EXPECT_EQ(time(ScrollCode::LineDown), 5000u);
    WaveView.SpanEnd = TIME_FOREVER;
    WaveView.ViewLeft = TIME_FOREVER - 3;
    EXPECT_EQ(time(ScrollCode::LineDown), TIME_FOREVER);
    EXPECT_EQ(time(ScrollCode::PageDown), TIME_FOREVER);
}

TEST_F(Scrolling, TheThumbIsAPartOfWhatThePaneDoesNotShow) {
    UpdateTimeScrollBar();
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 1000), 1000u);
    WaveView.SpanEnd = 1001000;
    UpdateTimeScrollBar();
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 5000), 500000u);
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 10000), 1000000u);
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 1), 100u);
}

TEST_F(Scrolling, AThumbWithoutARangeOnlyGoesToTheStart) {
    WaveView.SpanEnd = 800;
    WaveView.ViewLeft = 300;
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 1), 300u);
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 0), 0u);
}

TEST_F(Scrolling, AThumbOutOfRangeStaysOnTheAxis) {
    UpdateTimeScrollBar();
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 2000000000), 5000u);
    EXPECT_EQ(time(ScrollCode::ThumbPosition, -5), 0u);
    TimeBar().maximum = 0;
    EXPECT_EQ(time(ScrollCode::ThumbPosition, 7), 0u);
}

TEST_F(Scrolling, NothingMovesWhileAThumbIsDragged) {
    makeRows(60);
    WaveView.ViewLeft = 300;
    WaveView.TopRow = 3;
    WaveView.NameScroll = 2;
    for (ScrollCode code : {ScrollCode::ThumbTrack, ScrollCode::End}) {
        EXPECT_EQ(time(code, 50), 300u);
        EXPECT_EQ(rows(code, 50), 3u);
        EXPECT_EQ(names(code, 50), 2);
    }
    EXPECT_TRUE(Headless.invalidated.empty());
}

TEST_F(Scrolling, ScrollingTimeRepaintsRulerAndWavesAtOnce) {
    time(ScrollCode::LineDown);
    EXPECT_EQ(Headless.invalidated, (Panes{Pane::Ruler, Pane::Wave}));
    EXPECT_EQ(Headless.updated, (Panes{Pane::Ruler, Pane::Wave}));
    EXPECT_EQ(TimeBar().position, 10);
}

TEST_F(Scrolling, ScrollingTimeNowhereDoesNothing) {
    time(ScrollCode::LineUp);
    EXPECT_TRUE(Headless.invalidated.empty());
    EXPECT_TRUE(Headless.updated.empty());
}

TEST_F(Scrolling, ScrollingTimeLaterOnlySchedulesTheRepaint) {
    ScrollTimeTo(100, false);
    EXPECT_EQ(Headless.invalidated, (Panes{Pane::Ruler, Pane::Wave}));
    EXPECT_TRUE(Headless.updated.empty());
}

TEST_F(Scrolling, AShortExcessIsTheTimeBarsRange) {
    WaveView.ViewLeft = 250;
    UpdateTimeScrollBar();
    ExpectBar(TimeBar(), 4000, 250);
    WaveView.SpanEnd = 11000;
    UpdateTimeScrollBar();
    ExpectBar(TimeBar(), 10000, 250);
}

TEST_F(Scrolling, ALongExcessIsScaledToTenThousand) {
    WaveView.SpanEnd = 11001;
    WaveView.ViewLeft = 5000;
    UpdateTimeScrollBar();
    ExpectBar(TimeBar(), 10000, 4999);
    WaveView.SpanEnd = TIME_FOREVER;
    WaveView.ViewLeft = 0x80000000;
    UpdateTimeScrollBar();
    ExpectBar(TimeBar(), 10000, 5000);
}

TEST_F(Scrolling, APositionAtOrBeyondTheExcessIsTheTimeBarsEnd) {
    for (TimeVal end : {5000u, 2000000u}) {
        WaveView.SpanEnd = end;
        for (TimeVal left : {end - 1000, end - 999, end}) {
            WaveView.ViewLeft = left;
            UpdateTimeScrollBar();
            EXPECT_EQ(TimeBar().position, TimeBar().maximum) << left;
        }
    }
}

TEST_F(Scrolling, ASpanThatFitsHasATimeBarOfOneStep) {
    WaveView.SpanEnd = 1000;
    UpdateTimeScrollBar();
    ExpectBar(TimeBar(), 1, 0);
    WaveView.ViewLeft = 10;
    UpdateTimeScrollBar();
    ExpectBar(TimeBar(), 1, 1);
}

// --- the row bar ---

TEST_F(Scrolling, RowsScrollByLinesAndPages) {
    makeRows(50);
    showRows(10);
    EXPECT_EQ(rows(ScrollCode::LineUp), 0u);
    EXPECT_EQ(rows(ScrollCode::LineDown), 1u);
    EXPECT_EQ(rows(ScrollCode::PageDown), 11u);
    EXPECT_EQ(rows(ScrollCode::PageDown), 21u);
    EXPECT_EQ(rows(ScrollCode::PageUp), 11u);
    EXPECT_EQ(rows(ScrollCode::PageUp), 1u);
    EXPECT_EQ(rows(ScrollCode::PageUp), 0u);
    EXPECT_EQ(rows(ScrollCode::Bottom), 40u);
    EXPECT_EQ(rows(ScrollCode::LineDown), 40u);
    EXPECT_EQ(rows(ScrollCode::LineUp), 39u);
    EXPECT_EQ(rows(ScrollCode::Top), 0u);
}

TEST_F(Scrolling, TheRowThumbCountsWhereThePaneShowsMoreRowsThanTheOddComparisonAsks) {
    makeRows(200);
    showRows(10);
    ASSERT_GT(10u, 200u / static_cast<uint32_t>(WaveView.RowHeight));
    EXPECT_EQ(rows(ScrollCode::ThumbPosition, 33), 33u);
    EXPECT_EQ(rows(ScrollCode::ThumbPosition, 500), 190u);
    EXPECT_EQ(rows(ScrollCode::ThumbPosition, -2), 0u);
}

TEST_F(Scrolling, ElseTheRowThumbOnlyGoesToTheTop) {
    makeRows(200);
    showRows(3);
    ASSERT_LE(3u, 200u / static_cast<uint32_t>(WaveView.RowHeight));
    rows(ScrollCode::PageDown);
    EXPECT_EQ(rows(ScrollCode::ThumbPosition, 33), 3u);
    EXPECT_EQ(rows(ScrollCode::ThumbPosition, 0), 0u);
}

TEST_F(Scrolling, ScrollingRowsRepaintsNamesAndWavesAtOnce) {
    makeRows(50);
    showRows(10);
    rows(ScrollCode::LineDown);
    EXPECT_EQ(Headless.invalidated, (Panes{Pane::Name, Pane::Wave}));
    EXPECT_EQ(Headless.updated, (Panes{Pane::Name, Pane::Wave}));
    EXPECT_EQ(WaveView.TopPixel, static_cast<uint32_t>(WaveView.RowHeight));
    ExpectBar(RowBar(), 40, 1);
}

TEST_F(Scrolling, RowsThatFitDoNotScroll) {
    makeRows(5);
    showRows(10);
    EXPECT_EQ(rows(ScrollCode::LineDown), 0u);
    EXPECT_EQ(rows(ScrollCode::Bottom), 0u);
    EXPECT_TRUE(Headless.invalidated.empty());
}

TEST_F(Scrolling, ARowInViewStaysWhereItIs) {
    makeRows(50);
    showRows(10);
    ScrollRowsTo(5, false);
    for (uint32_t row : {5u, 10u, 15u}) {
        EnsureRowVisible(row);
        EXPECT_EQ(WaveView.TopRow, 5u) << row;
    }
}

TEST_F(Scrolling, ARowOutOfViewComesToTheTop) {
    makeRows(50);
    showRows(10);
    EnsureRowVisible(11);
    EXPECT_EQ(WaveView.TopRow, 11u);
    EnsureRowVisible(4);
    EXPECT_EQ(WaveView.TopRow, 4u);
    EnsureRowVisible(49);
    EXPECT_EQ(WaveView.TopRow, 40u);
    EXPECT_TRUE(Headless.updated.empty());
}

TEST_F(Scrolling, WithoutRowsTheRowBarRests) {
    WaveView.TopRow = 4;
    WaveView.TopPixel = 100;
    UpdateRowScrollBar();
    ExpectBar(RowBar(), 1, 0);
    EXPECT_EQ(WaveView.TopRow, 0u);
    EXPECT_EQ(WaveView.TopPixel, 0u);
}

TEST_F(Scrolling, RowsThatFitLeaveTheRowBarAtRest) {
    makeRows(10);
    showRows(10);
    UpdateRowScrollBar();
    ExpectBar(RowBar(), 1, 0);
}

TEST_F(Scrolling, AListThatShrankPullsTheViewBack) {
    makeRows(50);
    showRows(10);
    ScrollRowsTo(40, false);
    Headless.invalidated.clear();
    WaveView.RowCount = 45;
    UpdateRowScrollBar();
    EXPECT_EQ(WaveView.TopRow, 35u);
    EXPECT_EQ(WaveView.TopPixel, 35u * static_cast<uint32_t>(WaveView.RowHeight));
    ExpectBar(RowBar(), 35, 35);
    EXPECT_EQ(Headless.invalidated, (Panes{Pane::Wave, Pane::Name}));
}

TEST_F(Scrolling, AListThatFitsAgainStartsAtTheTop) {
    makeRows(50);
    showRows(10);
    ScrollRowsTo(40, false);
    WaveView.RowCount = 10;
    UpdateRowScrollBar();
    EXPECT_EQ(WaveView.TopRow, 0u);
    ExpectBar(RowBar(), 1, 0);
}

TEST_F(Scrolling, TheRowBarIsLeftAloneWhileADocumentIsRead) {
    makeRows(50);
    DisplayOpen = 0;
    UpdateRowScrollBar();
    ExpectBar(RowBar(), 0, 0);
}

TEST_F(Scrolling, APaneWithoutHeightShowsNoRow) {
    makeRows(5);
    SetPaneSizes(100, 1000, 0);
    EXPECT_EQ(VisibleRows(), 0u);
    WaveView.RowHeight = 0;
    EXPECT_EQ(VisibleRows(), 0u);
    EXPECT_EQ(rows(ScrollCode::ThumbPosition, 3), 0u);
}

// --- the name bar ---

namespace {

// Names 150 pixels wider than the column, character width included.
class NameScrolling : public Scrolling {
protected:
    void SetUp() override {
        Scrolling::SetUp();
        makeRows(3);
        WaveView.FontCharWidth = 7;
        WaveView.NameTextWidth = 243;
    }
};

} // namespace

TEST_F(NameScrolling, NamesScrollByCharacters) {
    EXPECT_EQ(names(ScrollCode::LineUp), 7);
    EXPECT_EQ(names(ScrollCode::LineUp), 14);
    EXPECT_EQ(names(ScrollCode::LineDown), 7);
    EXPECT_EQ(names(ScrollCode::LineDown), 0);
    EXPECT_EQ(names(ScrollCode::LineDown), 0);
}

TEST_F(NameScrolling, NamesScrollByPages) {
    EXPECT_EQ(names(ScrollCode::PageUp), 93);
    EXPECT_EQ(names(ScrollCode::PageUp), 150);
    EXPECT_EQ(names(ScrollCode::PageUp), 150);
    EXPECT_EQ(names(ScrollCode::LineUp), 150);
    EXPECT_EQ(names(ScrollCode::PageDown), 57);
    EXPECT_EQ(names(ScrollCode::PageDown), 0);
}

TEST_F(NameScrolling, TheNameThumbCountsFromTheLeft) {
    EXPECT_EQ(names(ScrollCode::ThumbPosition, 0), 150);
    EXPECT_EQ(names(ScrollCode::ThumbPosition, 100), 50);
    EXPECT_EQ(names(ScrollCode::ThumbPosition, 150), 0);
    EXPECT_EQ(names(ScrollCode::ThumbPosition, 5000), 0);
}

TEST_F(NameScrolling, TheEndsOfTheNameBar) {
    EXPECT_EQ(names(ScrollCode::Top), 150);
    EXPECT_EQ(names(ScrollCode::Bottom), 0);
}

TEST_F(NameScrolling, NamesThatFitDoNotScroll) {
    WaveView.NameTextWidth = 40;
    for (ScrollCode code :
         {ScrollCode::LineUp, ScrollCode::PageUp, ScrollCode::ThumbPosition, ScrollCode::Top}) {
        EXPECT_EQ(names(code, 30), 0);
    }
    EXPECT_TRUE(Headless.invalidated.empty());
}

TEST_F(NameScrolling, ScrollingNamesRepaintsTheColumn) {
    names(ScrollCode::LineUp);
    EXPECT_EQ(Headless.invalidated, Panes{Pane::Name});
    ExpectBar(NameBar(), 150, 143);
}

TEST_F(NameScrolling, TheNameBarStandsRightForTheNamesEnds) {
    UpdateNameScrollBar();
    ExpectBar(NameBar(), 150, 150);
    WaveView.NameScroll = 40;
    UpdateNameScrollBar();
    ExpectBar(NameBar(), 150, 110);
    WaveView.NameScroll = 400;
    UpdateNameScrollBar();
    ExpectBar(NameBar(), 150, 0);
}

TEST_F(NameScrolling, NamesThatFitHaveANameBarOfOneStep) {
    WaveView.NameTextWidth = 93;
    UpdateNameScrollBar();
    ExpectBar(NameBar(), 1, 1);
    WaveView.NameScroll = 5;
    UpdateNameScrollBar();
    ExpectBar(NameBar(), 1, 0);
}

TEST_F(NameScrolling, WithoutRowsNamesAreNotScrolled) {
    WaveView.RowCount = 0;
    WaveView.NameScroll = 5;
    UpdateNameScrollBar();
    EXPECT_EQ(WaveView.NameScroll, 0);
    ExpectBar(NameBar(), 1, 1);
}

TEST_F(NameScrolling, TheNameBarIsLeftAloneWhileADocumentIsRead) {
    DisplayOpen = 0;
    WaveView.NameScroll = 5;
    UpdateNameScrollBar();
    ExpectBar(NameBar(), 0, 0);
    EXPECT_EQ(WaveView.NameScroll, 5);
    WaveView.RowCount = 0;
    UpdateNameScrollBar();
    EXPECT_EQ(WaveView.NameScroll, 0);
}

TEST_F(NameScrolling, TheRulerHasNoBars) {
    ScrollMessage(Pane::Ruler, ScrollBar::Horizontal, ScrollCode::LineDown, 0);
    ScrollMessage(Pane::Name, ScrollBar::Vertical, ScrollCode::LineDown, 0);
    EXPECT_TRUE(Headless.invalidated.empty());
}
