// The preview of a wave while one of its edges is dragged.
#include "display/drag_preview.h"
#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "display/primitives.h"
#include "display/renderer.h"
#include "store/mutators.h"
#include "store/queries.h"
#include "unit/support/random_document.h"
#include <algorithm>

namespace {

using Texts = std::vector<std::string>;

// A drag in `row` as it is when the mouse has just taken the edge; nothing limits it.
void BeginIn(uint32_t row, TimeVal edgeTime, uint16_t leftMode, uint16_t rightMode) {
    DragPreview = {};
    DragPreview.pattern = WaveRows[row].PatternId;
    DragPreview.edgeTime = edgeTime;
    DragPreview.highLimit = TIME_FOREVER;
    DragPreview.snapStep = 1;
    DragPreview.leftMode = leftMode;
    DragPreview.rightMode = rightMode;
    DragPreview.yBottom =
        static_cast<int32_t>(row - WaveView.TopRow + 1) * WaveView.RowHeight - Settings.WaveGap - 1;
    DragPreview.yTop = DragPreview.yBottom - WaveView.WaveHeight;
    DragPreview.height = WaveView.WaveHeight + 5;
    DragPreview.firstCall = true;
}

std::string Rectangle(const PixelRect &rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + "-" + std::to_string(rect.right) +
           "," + std::to_string(rect.bottom);
}

// What was done with the kept bitmaps, in order.
Texts BitmapCalls() {
    constexpr const char *names[] = {"edges", "tail"};
    Texts texts;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        std::string name = names[static_cast<size_t>(call.bitmap)];
        std::string rect = Rectangle(call.rect);
        std::string to;
        if (!call.points.empty())
            to = " to " + std::to_string(call.points[0].x) + "," + std::to_string(call.points[0].y);
        if (call.kind == SurfaceCall::Kind::KeepBitmap) texts.push_back("keep " + name + " " + rect);
        if (call.kind == SurfaceCall::Kind::CopyToBitmap) texts.push_back("save " + name + " " + rect + to);
        if (call.kind == SurfaceCall::Kind::CopyFromBitmap) texts.push_back("show " + name + " " + rect + to);
        if (call.kind == SurfaceCall::Kind::DrawToMemory) texts.push_back(call.on ? "memory" : "pane");
    }
    return texts;
}

// The calls without those that only set or select something, as single letters: f(ill), l(ine), s(ave),
// c(opy from a bitmap), and those drawn to memory in brackets.
std::string Order() {
    std::string order;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        if (call.kind == SurfaceCall::Kind::Fill) order += 'f';
        if (call.kind == SurfaceCall::Kind::Polyline) order += 'l';
        if (call.kind == SurfaceCall::Kind::CopyToBitmap) order += 's';
        if (call.kind == SurfaceCall::Kind::CopyFromBitmap) order += 'c';
        if (call.kind == SurfaceCall::Kind::DrawToMemory) order += call.on ? '(' : ')';
    }
    return order;
}

// What was drawn into the bitmap.
Texts DrawnToMemory() {
    std::vector<SurfaceCall> all = HeadlessSurface.calls;
    auto isSwitch = [](const SurfaceCall &call) { return call.kind == SurfaceCall::Kind::DrawToMemory; };
    auto from = std::find_if(all.begin(), all.end(), isSwitch);
    if (from == all.end()) return {};
    auto to = std::find_if(from + 1, all.end(), isSwitch);
    HeadlessSurface.calls.assign(from, to);
    Texts drawn = Drawn();
    HeadlessSurface.calls = all;
    return drawn;
}

// An edge at 100 in the second of three rows, dragged between 50 and 200.
class Dragging : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        for (const char *name : {"A", "B", "C"}) MakeRow(name, {{0, 100}, {1, 200}, {0, 700}});
        for (uint32_t row = 0; row < 3; row++) RowPattern(row)->setChanged(false);
    }
    void begin(uint16_t leftMode, uint16_t rightMode, uint32_t row = 1) {
        BeginIn(row, 100, leftMode, rightMode);
        DragPreview.lowLimit = 50;
        DragPreview.highLimit = rightMode == DRAG_TAIL ? TIME_FOREVER : 200;
        low = DragPreview.yBottom;
        high = DragPreview.yTop;
        top = high - 2;
        bottom = top + DragPreview.height;
    }
    // The strip between two columns, the second one outside.
    std::string strip(int32_t from, int32_t to) const { return Rectangle({from, top, to, bottom}); }
    std::string at(int32_t x) const { return " to " + std::to_string(x) + "," + std::to_string(top); }
    std::string column(int32_t x) const { return Rectangle({x, 0, x + 1, DragPreview.height}); }
    std::string erased(int32_t from, int32_t to) const { return Fill(0, from, top, to, bottom - 1); }
    int32_t low = 0, high = 0, top = 0, bottom = 0;
};

} // namespace

// --- where the edge goes ---

namespace {

struct EdgeCase {
    const char *what;
    TimeVal time;      // of the mouse
    TimeVal grabbedAt; // the time where it took the edge
    TimeVal edgeTime;
    TimeVal low, high;
    TimeVal step, origin;
    TimeVal edge; // where it goes
};

constexpr TimeVal MOST = TIME_FOREVER;

constexpr EdgeCase edgeCases[] = {
    {"taken at the edge", 120, 100, 100, 0, MOST, 1, 0, 120},
    {"taken in front of it", 120, 98, 100, 0, MOST, 1, 0, 122},
    {"taken behind it", 120, 103, 100, 0, MOST, 1, 0, 117},
    {"not moved", 98, 98, 100, 0, MOST, 1, 0, 100},
    {"before time 0", 3, 110, 100, 0, MOST, 1, 0, 0},
    {"just at time 0", 10, 110, 100, 0, MOST, 1, 0, 0},
    {"rounded down", 128, 100, 100, 0, MOST, 10, 5, 125},
    {"rounded up", 131, 100, 100, 0, MOST, 10, 5, 135},
    {"half a step goes up", 130, 100, 100, 0, MOST, 10, 5, 135},
    {"half of an odd step", 101, 100, 100, 0, MOST, 3, 0, 102},
    {"at the grid's origin", 5, 100, 100, 0, MOST, 10, 5, 5},
    {"just behind the origin", 6, 100, 100, 0, MOST, 10, 5, 5},
    {"in front of the origin nothing is rounded", 3, 100, 100, 0, MOST, 10, 5, 3},
    {"at the low limit", 50, 100, 100, 50, 200, 1, 0, 50},
    {"below the low limit", 49, 100, 100, 50, 200, 1, 0, 50},
    {"at the high limit", 200, 100, 100, 50, 200, 1, 0, 200},
    {"above the high limit", 201, 100, 100, 50, 200, 1, 0, 200},
    {"the limit holds behind the rounding", 117, 100, 100, 0, 118, 10, 0, 118},
    {"the low one, too", 53, 100, 100, 52, 118, 10, 0, 52},
    {"limits the wrong way round", 80, 100, 100, 200, 50, 1, 0, 50},
    {"no room at all", 180, 100, 100, 100, 100, 1, 0, 100},
    {"no grid", 123, 100, 100, 0, MOST, 0, 0, 123},
    {"at the end of time", MOST, 100, 100, 0, MOST, 1, 0, MOST},
    {"beyond the end of time", MOST, 98, 100, 0, MOST, 1, 0, MOST},
    {"the grid's last line", MOST, 100, 100, 0, MOST, 10, 0, 4294967290},
    {"a line behind the end of time", MOST, 100, 100, 0, MOST, 3, 4294967290, MOST},
    {"a step as long as time", 2147483646, 100, 100, 0, MOST, MOST, 0, 0},
    {"more than half of it", 2147483649, 100, 100, 0, MOST, MOST, 0, MOST},
    {"a limit at the end of time", 70, 100, 100, MOST, MOST, 1, 0, MOST},
    {"an offset of 3,000,000,000 backward", 3000000005, 3000000000, 0, 0, MOST, 1, 0, 5},
    {"and before time 0", 2999999995, 3000000000, 0, 0, MOST, 1, 0, 0},
    {"an offset of 4,000,000,000 forward", 2, 1, 4000000000, 0, MOST, 1, 0, 4000000001},
    {"the longest offset forward", 0, 0, MOST, 0, MOST, 1, 0, MOST},
    {"and a step further", 1, 0, MOST, 0, MOST, 1, 0, MOST},
    {"the longest offset backward", MOST, MOST, 0, 0, MOST, 1, 0, 0},
    {"and a step back", MOST - 1, MOST, 0, 0, MOST, 1, 0, 0},
    {"an edge at time 0 to the end", MOST, 0, 0, 0, MOST, 1, 0, MOST},
    {"an edge at the end to time 0", 0, MOST, MOST, 0, MOST, 1, 0, 0},
};

} // namespace

TEST_F(Dragging, TheEdgeFollowsTheMouseWithinGridAndLimits) {
    for (const EdgeCase &test : edgeCases) {
        begin(DRAG_LOW, DRAG_HIGH);
        DragPreview.edgeTime = test.edgeTime;
        DragPreview.grabOffset = test.edgeTime - test.grabbedAt;
        DragPreview.lowLimit = test.low;
        DragPreview.highLimit = test.high;
        DragPreview.snapStep = test.step;
        DragPreview.snapOrigin = test.origin;
        DrawDragPreview(test.time, 1);
        EXPECT_EQ(DragPreview.dragTime, test.edge) << test.what;
    }
}

TEST_F(Dragging, TheEdgeMovesWithoutPanels) {
    Headless.panesExist = false;
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(130, 1);
    EXPECT_EQ(DragPreview.dragTime, 130u);
    EXPECT_TRUE(Drawn().empty());
    EXPECT_TRUE(RowPattern(1)->changed());
}

TEST_F(Dragging, OfAPatternThatIsGoneNothingIsDrawn) {
    begin(DRAG_LOW, DRAG_TAIL);
    for (uint16_t id : {0, 3000, 0xFFFF}) {
        DragPreview.pattern = id;
        DrawDragPreview(130, 1);
        EXPECT_EQ(DragPreview.dragTime, 130u);
        EXPECT_TRUE(HeadlessSurface.calls.empty()) << id;
    }
    PatternStoreFree();
    DragPreview.pattern = 1;
    DrawDragPreview(140, 1);
    EXPECT_EQ(DragPreview.dragTime, 140u);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
    ASSERT_EQ(PatternStoreInit(), 1);
}

// --- what is drawn ---

TEST_F(Dragging, TheLinesBesideTheEdge) {
    for (uint16_t left = DRAG_NOTHING; left <= DRAG_BUS; left++) {
        for (uint16_t right = DRAG_NOTHING; right <= DRAG_BUS; right++) {
            begin(left, right);
            ForgetCalls();
            DrawDragPreview(120, 1);
            Texts expected = {erased(50, 200)};
            for (auto [mode, from, to] : {std::tuple(left, 50, 120), std::tuple(right, 120, 200)}) {
                if (mode == 1 || mode == 3 || mode == 4)
                    expected.push_back(Dots(15, {{from, low}, {to, low}}));
                if (mode == 2 || mode == 3 || mode == 4)
                    expected.push_back(Dots(15, {{from, high}, {to, high}}));
            }
            if (right == 3 || right == 4) expected.push_back(Dots(15, {{120, high}, {120, low}}));
            if (right != 0 && right != left) expected.push_back(Line(15, {{120, high}, {120, low}}));
            EXPECT_EQ(Drawn(), expected) << left << " " << right;
        }
    }
}

TEST_F(Dragging, BothColumnsAreSavedOnceAndPutBackEachTime) {
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(120, 1);
    std::string size = Rectangle({0, 0, 2, WaveView.RowHeight});
    Texts restored = {"show edges " + column(0) + at(50), "show edges " + column(1) + at(200)};
    Texts expected = {"keep edges " + size, "save edges " + strip(50, 51) + " to 0,0",
                      "save edges " + strip(200, 201) + " to 1,0"};
    expected.insert(expected.end(), restored.begin(), restored.end());
    EXPECT_EQ(BitmapCalls(), expected);
    EXPECT_EQ(Order(), "ssfcclll");
    EXPECT_FALSE(DragPreview.firstCall);
    ForgetCalls();
    DrawDragPreview(130, 1);
    EXPECT_EQ(BitmapCalls(), restored);
    EXPECT_EQ(Order(), "fcclll");
}

TEST_F(Dragging, WhereTheEdgeStoodAtALimitTheColumnIsNotPutBack) {
    begin(DRAG_LOW, DRAG_HIGH);
    DragPreview.lowLimit = 100;
    DrawDragPreview(120, 1);
    EXPECT_EQ(BitmapCalls().back(), "show edges " + column(1) + at(200));
    EXPECT_EQ(Order(), "ssfclll");
    begin(DRAG_LOW, DRAG_HIGH);
    DragPreview.highLimit = 100;
    ForgetCalls();
    DrawDragPreview(80, 1);
    EXPECT_EQ(BitmapCalls().back(), "show edges " + column(0) + at(50));
    EXPECT_EQ(Order(), "ssfclll");
}

TEST_F(Dragging, AnEdgeAtTheLowLimitHasNothingOnItsLeft) {
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(50, 1);
    EXPECT_EQ(Drawn(), (Texts{erased(50, 200), Dots(15, {{50, high}, {200, high}}),
                              Line(15, {{50, high}, {50, low}})}));
}

TEST_F(Dragging, AnEdgeAtTheHighLimitHasNothingOnItsRight) {
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(200, 1);
    EXPECT_EQ(Drawn(), (Texts{erased(50, 200), Dots(15, {{50, low}, {200, low}}),
                              Line(15, {{200, high}, {200, low}})}));
    begin(DRAG_BUS, DRAG_BUS);
    ForgetCalls();
    DrawDragPreview(200, 1); // not even the vertical
    EXPECT_EQ(Drawn().size(), 3u);
}

TEST_F(Dragging, AHighLimitBehindThePaneEndsAtThePane) {
    begin(DRAG_LOW, DRAG_HIGH);
    DragPreview.highLimit = TIME_FOREVER;
    DrawDragPreview(120, 1);
    EXPECT_EQ(Drawn()[0], erased(50, 1000));
    EXPECT_EQ(Drawn()[2], Dots(15, {{120, high}, {1000, high}}));
    // Beside the pane no column has anything to save.
    EXPECT_EQ(BitmapCalls().back(), "show edges " + column(0) + at(50));
}

TEST_F(Dragging, LimitsLeftOfThePaneAreLeftAlone) {
    WaveView.ViewLeft = 150;
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(160, 1);
    EXPECT_EQ(Drawn()[0], erased(-100, 50));
    EXPECT_EQ(BitmapCalls().back(), "show edges " + column(1) + at(50));
    DragPreview.highLimit = 140;
    ForgetCalls();
    RowsDrawn++;
    DrawDragPreview(160, 1);
    EXPECT_EQ(Drawn()[0], erased(-100, -10));
}

TEST_F(Dragging, AColumnThatWasBesideThePaneIsNotPutBackIntoIt) {
    WaveView.ViewLeft = 60;
    begin(DRAG_LOW, DRAG_HIGH);
    DragPreview.highLimit = 1200;
    DrawDragPreview(120, 1);
    WaveView.ViewLeft = 0; // scrolled
    WaveView.WavePaneWidth = 1500;
    ForgetCalls();
    RowsDrawn++;
    DrawDragPreview(120, 1);
    EXPECT_TRUE(BitmapCalls().empty());
}

TEST_F(Dragging, ASavedColumnFollowsTheView) {
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(120, 1);
    WaveView.ViewLeft = 20;
    ForgetCalls();
    RowsDrawn++;
    DrawDragPreview(120, 1);
    EXPECT_EQ(BitmapCalls(),
              (Texts{"show edges " + column(0) + at(30), "show edges " + column(1) + at(180)}));
}

TEST_F(Dragging, TheRowIsInPixelsOfThePane) {
    WaveView.TopRow = 1;
    WaveView.TopPixel = static_cast<uint32_t>(WaveView.RowHeight);
    begin(DRAG_LOW, DRAG_HIGH);
    EXPECT_LT(low, WaveView.RowHeight);
    DrawDragPreview(120, 1);
    EXPECT_EQ(Drawn()[0], erased(50, 200));
    EXPECT_EQ(Drawn()[1], Dots(15, {{50, low}, {120, low}}));
}

TEST_F(Dragging, OnABlackBackgroundTheLinesAreWhite) {
    ColorSettings[Background] = 15;
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(120, 1);
    EXPECT_EQ(Drawn(), (Texts{Fill(15, 50, top, 200, bottom - 1), Dots(0, {{50, low}, {120, low}}),
                              Dots(0, {{120, high}, {200, high}}), Line(0, {{120, high}, {120, low}})}));
    ColorSettings[Background] = 0;
}

TEST_F(Dragging, AColouredBackgroundIsErasedEvenly) {
    ColorSettings[Background] = 4;
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(120, 1);
    EXPECT_EQ(Drawn()[0], Fill(4, 50, top, 200, bottom - 1));
    ColorSettings[Background] = 0;
}

TEST_F(Dragging, ThePatternCountsAsChanged) {
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(120, 1);
    EXPECT_TRUE(RowPattern(1)->changed());
    EXPECT_FALSE(RowPattern(0)->changed());
    RepaintChanged(false);
    EXPECT_FALSE(RowPattern(1)->changed());
    DrawDragPreview(121, 1); // not the first call alone
    EXPECT_TRUE(RowPattern(1)->changed());
}

TEST_F(Dragging, AnEdgeThatHasNotMovedIsNotDrawnAgain) {
    begin(DRAG_LOW, DRAG_HIGH);
    DragPreview.snapStep = 10;
    DrawDragPreview(120, 1);
    ForgetCalls();
    DrawDragPreview(120, 1);
    DrawDragPreview(124, 1); // the same place on the grid
    EXPECT_TRUE(HeadlessSurface.calls.empty());
    DrawDragPreview(125, 1);
    EXPECT_FALSE(HeadlessSurface.calls.empty());
}

TEST_F(Dragging, AnEdgeIsDrawnAgainWhenItsRowWas) {
    begin(DRAG_LOW, DRAG_HIGH);
    DrawDragPreview(120, 1);
    for (auto repaint : {+[] { PaintPane(Pane::Wave); }, +[] { RepaintRowsFrom(0); }, RepaintAllRows,
                         +[] { RepaintChanged(false); }}) {
        repaint();
        ForgetCalls();
        DrawDragPreview(120, 1);
        EXPECT_EQ(Order(), "fcclll");
        EXPECT_TRUE(RowPattern(1)->changed());
    }
}

TEST_F(Dragging, TheFirstCallDrawsWhereverTheEdgeIs) {
    begin(DRAG_LOW, DRAG_HIGH);
    DragPreview.dragTime = 100;
    DragPreview.rowsDrawn = RowsDrawn;
    DrawDragPreview(100, 1);
    EXPECT_EQ(Order(), "ssfcclll");
}

TEST_F(Dragging, TheWavesAreDrawnOn) {
    SelectPicture(Pane::Ruler);
    begin(DRAG_LOW, DRAG_HIGH);
    ForgetCalls();
    DrawDragPreview(120, 1);
    EXPECT_EQ(SelectedPanes(), std::vector{Pane::Wave});
}

// --- the tail ---

TEST_F(Dragging, TheTailIsDrawnOnceAndCopiedEachTime) {
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(120, 1);
    int32_t from = Settings.WaveGap - 3;
    auto tailTo = [&](int32_t x) {
        return "show tail " + Rectangle({0, from, 1001 - x, from + DragPreview.height}) + at(x);
    };
    EXPECT_EQ(
        BitmapCalls(),
        (Texts{"keep edges " + Rectangle({0, 0, 2, WaveView.RowHeight}),
               "keep tail " + Rectangle({0, 0, Headless.screenWidth, WaveView.RowHeight}), "memory", "pane",
               "save edges " + strip(50, 51) + " to 0,0", "save edges " + strip(120, 121) + " to 1,0",
               "show edges " + column(0) + at(50), tailTo(120)}));
    Texts drawn = Drawn();
    EXPECT_EQ(drawn[drawn.size() - 2], erased(50, 120));
    EXPECT_EQ(drawn.back(), Dots(15, {{50, low}, {120, low}}));
    ForgetCalls();
    DrawDragPreview(140, 1);
    EXPECT_EQ(BitmapCalls(), (Texts{"show edges " + column(0) + at(50), tailTo(140)}));
    EXPECT_EQ(Order(), "fclc");
}

TEST_F(Dragging, TheTailIsARowOfItsOwnThatBeginsAtTheEdge) {
    WaveView.ViewLeft = 30;
    WaveView.TopRow = 1;
    WaveView.TopPixel = static_cast<uint32_t>(WaveView.RowHeight);
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(120, 1);
    int32_t bottomLine = WaveView.RowHeight - 1;
    EXPECT_EQ(DrawnToMemory(), (Texts{Fill(0, 0, 0, Headless.screenWidth - 1, bottomLine),
                                      Line(3, {{200, RowHigh(0)}, {0, RowHigh(0)}}),
                                      Line(3, {{900, RowLow(0)}, {200, RowLow(0)}, {200, RowHigh(0)}})}));
    EXPECT_EQ(WaveView.ViewLeft, 30u);
    EXPECT_EQ(WaveView.WavePaneWidth, 1000);
    EXPECT_FALSE(DrawToMemory);
}

TEST_F(Dragging, TheTailIsAsLongAsTheScreenIsWide) {
    Headless.screenWidth = 3000;
    uint16_t id = MakeRow("LONG", {{0, 100}, {1, 5000}});
    WaveView.SpanEnd = 6000;
    begin(DRAG_LOW, DRAG_TAIL, 3);
    DragPreview.pattern = id;
    DrawDragPreview(120, 3);
    EXPECT_EQ(DrawnToMemory().back(), Line(3, {{3000, RowHigh(0)}, {0, RowHigh(0)}}));
    EXPECT_EQ(BitmapCalls().back(),
              "show tail " +
                  Rectangle({0, Settings.WaveGap - 3, 881, Settings.WaveGap - 3 + DragPreview.height}) +
                  at(120));
}

TEST_F(Dragging, TheTailEndsWithTheSpanOfABusTooWideForThePane) {
    Headless.screenWidth = 3000;
    MakeRow("BUS[7:0]", {{1, 100}, {2, 5000}}, 8);
    RowPattern(3)->setBus(true);
    WaveView.SpanEnd = 6000;
    begin(DRAG_BUS, DRAG_TAIL, 3);
    DrawDragPreview(120, 3);
    Texts drawn = DrawnToMemory();
    // The value stands in the middle of a pane as wide as the screen.
    EXPECT_TRUE(std::any_of(drawn.begin(), drawn.end(),
                            [](const std::string &text) { return text.starts_with("3 text '02' 1"); }));
}

TEST_F(Dragging, TheTailShowsTheClocksPhasesInAnyCase) {
    RowPattern(1)->setFormat(static_cast<uint32_t>(SignalFormat::RZ));
    RowPattern(1)->setClock(true);
    RowPattern(1)->period = 20;
    Settings.ClockMultiplier = 1;
    Settings.ShowSyncActivity = false;
    auto segments = [&](TimeVal edge) {
        begin(DRAG_LOW, DRAG_TAIL);
        DragPreview.edgeTime = edge;
        ForgetCalls();
        DrawDragPreview(edge, 1);
        return DrawnToMemory();
    };
    Texts without = segments(2000);
    Settings.ShowSyncActivity = true;
    EXPECT_EQ(segments(2000), without);
    EXPECT_GT(without.size(), 4u);
}

TEST_F(Dragging, TheTailHasNoVerticalAtTheEdge) {
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(120, 1);
    for (const std::string &text : Drawn()) EXPECT_FALSE(text.starts_with("15 line")) << text;
}

TEST_F(Dragging, ATailDraggedToTheLowLimitHasNothingOnItsLeft) {
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(120, 1);
    ForgetCalls();
    DrawDragPreview(20, 1);
    EXPECT_EQ(Drawn(), Texts{erased(50, 50)});
    EXPECT_EQ(BitmapCalls().back(),
              "show tail " +
                  Rectangle({0, Settings.WaveGap - 3, 951, Settings.WaveGap - 3 + DragPreview.height}) +
                  at(50));
}

TEST_F(Dragging, ATailThatBeginsLeftOfThePaneReachesAsFarAsThereIsOne) {
    WaveView.ViewLeft = 400;
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(100, 1);
    // The screen has 1024 pixels, of which 724 are left.
    EXPECT_EQ(BitmapCalls().back(),
              "show tail " +
                  Rectangle({0, Settings.WaveGap - 3, 1024, Settings.WaveGap - 3 + DragPreview.height}) +
                  at(-300));
}

TEST_F(Dragging, BitmapsAreMadeAnewWhenTheScreenOrTheRowsHaveGrown) {
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(120, 1);
    ForgetCalls();
    begin(DRAG_LOW, DRAG_TAIL);
    DrawDragPreview(120, 1);
    EXPECT_EQ(Order().substr(0, 1), "("); // the tail is another one
    EXPECT_EQ(BitmapCalls().front(), "memory");
    Headless.screenWidth = 1600;
    ForgetCalls();
    DrawDragPreview(121, 1);
    EXPECT_EQ(BitmapCalls().front(), "keep tail " + Rectangle({0, 0, 1600, WaveView.RowHeight}));
    EXPECT_EQ(BitmapCalls()[1], "memory"); // in the middle of the drag
    WaveView.RowHeight += 4;
    ForgetCalls();
    DrawDragPreview(122, 1);
    Texts calls = BitmapCalls();
    EXPECT_EQ(calls[0], "keep edges " + Rectangle({0, 0, 2, WaveView.RowHeight}));
    EXPECT_EQ(calls[1], "keep tail " + Rectangle({0, 0, 1600, WaveView.RowHeight}));
    EXPECT_EQ(std::count_if(calls.begin(), calls.end(), [](auto &call) { return call.starts_with("save"); }),
              2);
    Headless.screenWidth = 1024; // a smaller one has room
    WaveView.RowHeight -= 4;
    ForgetCalls();
    DrawDragPreview(123, 1);
    EXPECT_EQ(BitmapCalls().front().substr(0, 4), "show");
}

// --- pixels ---

namespace {

// A pane with rows of dense waves, painted before each drag.
class DraggedPixels : public Display {
protected:
    static constexpr int32_t WIDTH = 400;
    void SetUp() override {
        Display::SetUp();
        HeadlessSurface.recording = false;
        Headless.screenWidth = 600;
        height = 5 * WaveView.RowHeight;
        SetPaneSizes(100, WIDTH, height);
        pane = std::make_unique<PaneImage>(Pane::Wave, WIDTH, height);
        for (uint32_t i = 0; i < 5; i++) {
            Transitions items;
            for (uint32_t k = 0; k < 120; k++) items.push_back({(k + i) % 4, 1 + (k * 7 + i * 3) % 19});
            MakeRow(("N" + std::to_string(i)).c_str(), items);
        }
        WaveView.SpanEnd = 1500;
    }
    void TearDown() override {
        pane.reset();
        Display::TearDown();
    }
    void paint() {
        SelectPicture(Pane::Wave);
        EraseBlock({0, static_cast<int32_t>(WaveView.TopPixel), WIDTH,
                    static_cast<int32_t>(WaveView.TopPixel) + height});
        PaintPane(Pane::Wave);
    }
    std::vector<uint32_t> pixels() const {
        std::vector<uint32_t> all;
        for (int32_t y = 0; y < height; y++) {
            for (int32_t x = 0; x < WIDTH; x++) all.push_back(pane->at(x, y));
        }
        return all;
    }
    // The first pixel that differs between two paintings, other than those within a rectangle.
    std::string changedOutside(const std::vector<uint32_t> &a, const std::vector<uint32_t> &b,
                               const PixelRect &inside) const {
        for (int32_t y = 0; y < height; y++) {
            for (int32_t x = 0; x < WIDTH; x++) {
                bool within = x >= inside.left && x < inside.right && y >= inside.top && y < inside.bottom;
                size_t i = static_cast<size_t>(y) * WIDTH + static_cast<size_t>(x);
                if (!within && a[i] != b[i]) return std::to_string(x) + "," + std::to_string(y);
            }
        }
        return "";
    }
    int32_t height = 0;
    std::unique_ptr<PaneImage> pane;
};

} // namespace

TEST_F(DraggedPixels, NothingBesideTheLimitsChanges) {
    WaveView.ViewLeft = 100;
    paint();
    std::vector<uint32_t> before = pixels();
    for (uint16_t mode = DRAG_NOTHING; mode <= DRAG_BUS; mode++) {
        BeginIn(2, 220, mode, mode == DRAG_BUS ? DRAG_BUS : DRAG_BUS - mode - 1);
        DragPreview.lowLimit = 170;
        DragPreview.highLimit = 260;
        PixelRect span = {71, DragPreview.yTop - 2, 160, DragPreview.yTop - 2 + DragPreview.height};
        for (TimeVal time : {220u, 171u, 259u, 100u, 499u, 230u}) {
            DrawDragPreview(time, 2);
            EXPECT_NE(pixels(), before) << mode << " " << time;
            if (time > 171 && time < 259) {
                // One dot of a line may stand on the column at the low limit.
                span.left = 70;
                EXPECT_EQ(changedOutside(before, pixels(), span), "") << mode << " " << time;
            }
            PixelRect with = {70, span.top, 161, span.bottom};
            EXPECT_EQ(changedOutside(before, pixels(), with), "") << mode << " " << time;
        }
        RepaintChanged(false);
        DrawOverlay(false);
        EXPECT_EQ(pixels(), before) << mode;
    }
}

TEST_F(DraggedPixels, TheColumnsAtTheLimitsStandAgainWhenTheEdgeHasLeft) {
    paint();
    BeginIn(2, 220, DRAG_LOW, DRAG_HIGH);
    DragPreview.lowLimit = 170;
    DragPreview.highLimit = 260;
    std::vector<uint32_t> low, high;
    auto column = [&](int32_t x) {
        std::vector<uint32_t> all;
        for (int32_t y = 0; y < height; y++) all.push_back(pane->at(x, y));
        return all;
    };
    std::vector<uint32_t> before = column(260);
    DrawDragPreview(260, 2);
    EXPECT_NE(column(260), before);
    DrawDragPreview(200, 2);
    EXPECT_EQ(column(260), before);
}

TEST_F(DraggedPixels, NoEdgeStaysBehind) {
    paint();
    BeginIn(2, 220, DRAG_LOW, DRAG_HIGH);
    DragPreview.lowLimit = 170;
    DragPreview.highLimit = 260;
    DrawDragPreview(200, 2);
    std::vector<uint32_t> straight = pixels();
    for (TimeVal time : {171u, 259u, 170u, 260u, 230u, 200u}) DrawDragPreview(time, 2);
    EXPECT_EQ(pixels(), straight);
}

TEST_F(DraggedPixels, AnEdgeAtALimitGoesWithTheDrag) {
    // The edge stands at the limit: nothing of it may stay there.
    uint16_t id = MakeRow("EDGE", {{0, 100}, {1, 100}, {0, 100}});
    WaveView.TopRow = 5;
    WaveView.TopPixel = static_cast<uint32_t>(5 * WaveView.RowHeight);
    paint();
    for (bool atLow : {true, false}) {
        paint();
        BeginIn(5, 100, DRAG_LOW, DRAG_HIGH);
        DragPreview.pattern = id;
        DragPreview.lowLimit = atLow ? 100 : 20;
        DragPreview.highLimit = atLow ? 180 : 100;
        int32_t middle = (DragPreview.yTop + DragPreview.yBottom) / 2;
        EXPECT_NE(pane->at(100, middle), 0xFFFFFFu);
        DrawDragPreview(atLow ? 120 : 80, 5);
        EXPECT_EQ(pane->at(100, middle), 0xFFFFFFu) << atLow;
    }
}

TEST_F(DraggedPixels, TheTailIsTheRowItselfMovedByTheDrag) {
    Transitions levels, values;
    for (uint32_t k = 0; k < 60; k++) {
        levels.push_back({k & 1, 6 + (k * 7) % 19});
        values.push_back({(k * 37) & 255, 8 + (k * 13) % 50});
    }
    MakeRow("LEVELS", levels);
    MakeRow("BUS[7:0]", values, 8);
    RowPattern(6)->setBus(true);
    for (uint32_t row : {5u, 6u}) {
        WaveView.TopRow = row - 1;
        WaveView.TopPixel = (row - 1) * static_cast<uint32_t>(WaveView.RowHeight);
        const Transitions &items = row == 5 ? levels : values;
        TimeVal edge = 0;
        for (uint32_t k = 0; edge < 200; k++) edge += items[k].second;
        for (int32_t by : {0, 1, 37, -50, -99}) {
            WaveView.ViewLeft = 100;
            paint();
            BeginIn(row, edge, row == 5 ? DRAG_LOW : DRAG_BUS, DRAG_TAIL);
            DragPreview.lowLimit = 90;
            std::vector<uint32_t> before = pixels();
            DrawDragPreview(edge, row);
            DrawDragPreview(edge + static_cast<TimeVal>(by), row);
            std::vector<uint32_t> dragged = pixels();
            EXPECT_NE(dragged, before);
            WaveView.ViewLeft = 100 - static_cast<TimeVal>(by);
            paint();
            // At the edge itself the row has a vertical. At its end a value cut off by the pane stands in the
            // middle of what can be seen of it.
            int32_t from = static_cast<int32_t>(edge) + by - 100 + 1;
            for (int32_t y = DragPreview.yTop - 2; y < DragPreview.yTop - 2 + DragPreview.height; y++) {
                for (int32_t x = from; x < WIDTH - 60; x++) {
                    ASSERT_EQ(dragged[static_cast<size_t>(y) * WIDTH + static_cast<size_t>(x)],
                              pane->at(x, y))
                        << row << " by " << by << " at " << x << "," << y;
                }
            }
        }
    }
}

TEST_F(DraggedPixels, ATailLeavesWhatIsLeftOfItsLimitAndTheOtherRows) {
    paint();
    std::vector<uint32_t> before = pixels();
    BeginIn(2, 220, DRAG_LOW, DRAG_TAIL);
    DragPreview.lowLimit = 170;
    PixelRect right = {170, DragPreview.yTop - 2, WIDTH, DragPreview.yTop - 2 + DragPreview.height};
    for (TimeVal time : {220u, 300u, 150u, 399u, 5000u, 171u}) {
        DrawDragPreview(time, 2);
        EXPECT_NE(pixels(), before) << time;
        EXPECT_EQ(changedOutside(before, pixels(), right), "") << time;
    }
    RepaintChanged(false);
    DrawOverlay(false);
    EXPECT_EQ(pixels(), before);
}

TEST_F(DraggedPixels, AnUnmovedTailLooksAsTheRowDid) {
    paint();
    Transitions levels;
    for (uint32_t k = 0; k < 60; k++) levels.push_back({k & 1, 10});
    MakeRow("LEVELS", levels);
    WaveView.TopRow = 3;
    WaveView.TopPixel = static_cast<uint32_t>(3 * WaveView.RowHeight);
    paint();
    std::vector<uint32_t> before = pixels();
    BeginIn(5, 200, DRAG_NOTHING, DRAG_TAIL);
    DragPreview.lowLimit = 200;
    DrawDragPreview(200, 5);
    PixelRect edge = {200, DragPreview.yTop - 2, 201, DragPreview.yTop - 2 + DragPreview.height};
    EXPECT_EQ(changedOutside(before, pixels(), edge), "");
}

// Whatever a drag holds, no pixel beside its strip changes, and the row can be drawn again.
TEST_F(DraggedPixels, RandomDragsStayWithinTheirStrip) {
    MakeRow("BUS[7:0]", {{1, 30}, {2, 50}, {3, 400}, {4, 20}, {255, 60}}, 8);
    RowPattern(5)->setBus(true);
    Random random(7);
    auto anyTime = [&]() -> TimeVal {
        switch (random.below(4)) {
        case 0:
            return random.word();
        case 1:
            return random.once(2) ? 0 : TIME_FOREVER;
        default:
            return random.below(1500);
        }
    };
    for (int round = 0; round < 400; round++) {
        WaveView.ViewLeft = random.below(500);
        WaveView.Scale = static_cast<int32_t>(random.below(6)) - 3;
        WaveView.TopRow = random.below(3);
        WaveView.TopPixel = WaveView.TopRow * static_cast<uint32_t>(WaveView.RowHeight);
        Headless.screenWidth = 400 + static_cast<int32_t>(random.below(300));
        paint();
        std::vector<uint32_t> before = pixels();
        BeginIn(random.below(6), anyTime(), static_cast<uint16_t>(random.below(7)),
                static_cast<uint16_t>(random.below(7)));
        DragPreview.grabOffset = anyTime();
        DragPreview.lowLimit = anyTime();
        DragPreview.highLimit = anyTime();
        DragPreview.snapStep = anyTime();
        DragPreview.snapOrigin = anyTime();
        for (int move = 0; move < 3; move++) DrawDragPreview(anyTime(), random.word());
        bool tail = DragPreview.rightMode == DRAG_TAIL;
        TimeVal first = std::min(DragPreview.lowLimit, DragPreview.dragTime);
        PixelRect strip = {PixelOf(first), DragPreview.yTop - 2,
                           tail ? WIDTH : PixelOf(DragPreview.highLimit) + 1,
                           DragPreview.yTop - 2 + DragPreview.height};
        ASSERT_EQ(changedOutside(before, pixels(), strip), "") << round;
        // The view changes in the middle of the drag.
        WaveView.ViewLeft = random.below(500);
        WaveView.TopRow = random.below(6);
        WaveView.TopPixel = WaveView.TopRow * static_cast<uint32_t>(WaveView.RowHeight);
        Headless.screenWidth = 400 + static_cast<int32_t>(random.below(400));
        DrawDragPreview(anyTime(), 0);
        paint();
    }
}
