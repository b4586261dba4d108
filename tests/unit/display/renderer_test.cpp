#include "unit/display/display_fixture.h"

#include "display/primitives.h"
#include "display/renderer.h"
#include "store/mutators.h"
#include "store/state_table.h"
#include <algorithm>
#include <cstring>

namespace {

using Calls = std::vector<std::string>;

constexpr int BLUE = 3, RED = 6, GREY = 7, BLACK = 15;

class Renderer : public Display {
protected:
    // Draws row 0 and returns what was drawn over the erased row.
    static Calls draw(uint32_t row = 0) {
        ForgetCalls();
        DrawRowWaves(row);
        return DrawnOnTop();
    }
    // A row of a one-bit node with these items, drawn.
    static Calls scalar(const Transitions &items) {
        MakeRow("S", items);
        return draw();
    }
    // Hands a segment to a row of a one-bit node, or of a bus.
    static Calls segment(const WalkSegment &segment) {
        SelectPicture(Pane::Wave);
        ForgetCalls();
        DrawSegment(&segment);
        return DrawnOnTop();
    }
    static WalkSegment level(TimeVal start, TimeVal end, uint32_t value, uint32_t flags = 0) {
        return {start, end, end - start, value, SegLevel | flags, nullptr};
    }
    static WalkSegment coarse(TimeVal start, TimeVal end, uint32_t flags = 0) {
        return {start, end, end - start, 0, SegCoarse | flags, nullptr};
    }
    int32_t low = 0, middle = 0, high = 0, half = 0;
    void SetUp() override {
        Display::SetUp();
        low = RowLow(0);
        middle = RowMiddle(0);
        high = RowHigh(0);
        half = WaveView.WaveHeight / 2;
    }
    std::string dense(int32_t x0, int32_t x1) { return Hatch(BLACK, x0, high, x1, low); }
};

// A state table "Test" of these levels, colours and names, for the node's `stateTable` 1.
struct State {
    int8_t level;
    uint8_t colour;
    const char *name;
};
void MakeTable(std::initializer_list<State> states) {
    StateTable *table = AllocStateTable(static_cast<uint32_t>(states.size()));
    table->rowCount = static_cast<uint16_t>(states.size());
    StateRow *row = table->rows();
    for (const State &state : states) {
        *row = {};
        row->level = state.level;
        row->colorIndex = state.colour;
        snprintf(row->stateName, sizeof row->stateName, "%s", state.name);
        row++;
    }
}

} // namespace

// --- the row ---

TEST_F(Renderer, ARowsLevelsLieBetweenItsGaps) {
    MakeRow("A");
    PrepareRowDraw(RowPattern(0), 3);
    EXPECT_EQ(RowDraw.yBottom, 4 * WaveView.RowHeight - Settings.WaveGap - 1);
    EXPECT_EQ(RowDraw.yTop, RowDraw.yBottom - WaveView.WaveHeight);
    EXPECT_EQ(RowDraw.yMiddle, RowDraw.yBottom - WaveView.WaveHeight / 2);
}

TEST_F(Renderer, ARowIsErasedOverThePane) {
    MakeRow("A");
    MakeRow("B");
    ForgetCalls();
    DrawRowWaves(1);
    EXPECT_EQ(SelectedPanes(), std::vector{Pane::Wave});
    EXPECT_EQ(Drawn()[0], Fill(0, 0, WaveView.RowHeight, 999, 2 * WaveView.RowHeight - 1));
}

TEST_F(Renderer, TheGuidelineRunsAlongTheRowsLastLine) {
    Settings.ShowGuidelines = true;
    MakeRow("A", {});
    int32_t y = WaveView.RowHeight - 1;
    EXPECT_EQ(draw(), Calls{Dots(BLACK, {{0, y}, {1023, y}})});
}

TEST_F(Renderer, OnABlackBackgroundTheGuidelineIsWhite) {
    Settings.ShowGuidelines = true;
    ColorSettings[Background] = 15;
    MakeRow("A", {});
    int32_t y = WaveView.RowHeight - 1;
    draw();
    EXPECT_EQ(Drawn(), (Calls{Fill(BLACK, 0, 0, 999, y), Dots(0, {{0, y}, {1023, y}})}));
    ColorSettings[Background] = 0;
}

TEST_F(Renderer, WithoutGuidelinesThereIsNone) {
    MakeRow("A", {});
    EXPECT_EQ(draw(), Calls{});
}

TEST_F(Renderer, RowsOutsideThePaneAreNotDrawn) {
    for (int i = 0; i < 40; i++) MakeRow(("N" + std::to_string(i)).c_str());
    WaveView.TopRow = 2;
    uint32_t visible = VisibleRows();
    for (auto [row, drawn] :
         {std::pair(1u, false), {2u, true}, {2 + visible, true}, {3 + visible, false}, {40u, false}}) {
        draw(row);
        EXPECT_EQ(!HeadlessSurface.calls.empty(), drawn) << row;
    }
}

TEST_F(Renderer, NothingIsDrawnBelowTheLastRow) {
    MakeRow("A");
    draw(1);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(Renderer, ARowOfAFreeIdIsNotDrawn) {
    AppendRowOf(MakePattern("GONE"));
    DeletePattern(RowPattern(0));
    EXPECT_EQ(draw(), Calls{});
}

// --- lines ---

TEST_F(Renderer, LowIsALineAtTheBottom) {
    EXPECT_EQ(scalar({{0, 500}}), Calls{Line(BLUE, {{500, low}, {0, low}})});
}

TEST_F(Renderer, HighIsALineAtTheTop) {
    EXPECT_EQ(scalar({{1, 500}}), Calls{Line(BLUE, {{500, high}, {0, high}})});
}

TEST_F(Renderer, HighImpedanceIsALineAtTheTopInItsOwnColour) {
    EXPECT_EQ(scalar({{3, 500}}), Calls{Line(GREY, {{500, high}, {0, high}})});
}

TEST_F(Renderer, AChangeOfLevelHasAnEdge) {
    EXPECT_EQ(scalar({{0, 100}, {1, 200}, {0, 50}}),
              (Calls{Line(BLUE, {{100, low}, {0, low}}), Line(BLUE, {{300, high}, {100, high}, {100, low}}),
                     Line(BLUE, {{350, low}, {300, low}, {300, high}})}));
}

TEST_F(Renderer, StatesOfOneLevelHaveNoEdgeBetweenThem) {
    EXPECT_EQ(scalar({{1, 100}, {3, 200}}),
              (Calls{Line(BLUE, {{100, high}, {0, high}}), Line(GREY, {{300, high}, {100, high}})}));
}

TEST_F(Renderer, TheFirstSegmentHasNoEdge) {
    WaveView.ViewLeft = 50;
    EXPECT_EQ(scalar({{0, 100}, {1, 200}})[0], Line(BLUE, {{50, low}, {0, low}}));
    WaveView.ViewLeft = 150;
    EXPECT_EQ(draw(), Calls{Line(BLUE, {{150, high}, {0, high}})});
}

TEST_F(Renderer, AWaveIsCutAtThePanesEdges) {
    WaveView.SpanEnd = 100000;
    WaveView.ViewLeft = 200;
    EXPECT_EQ(scalar({{0, 50000}}), Calls{Line(BLUE, {{1001, low}, {0, low}})});
}

TEST_F(Renderer, TheWalkEndsWithTheSpan) {
    WaveView.SpanEnd = 300;
    EXPECT_EQ(
        scalar({{0, 200}, {1, 100}, {0, 100}}),
        (Calls{Line(BLUE, {{200, low}, {0, low}}), Line(BLUE, {{300, high}, {200, high}, {200, low}})}));
}

// --- blocks of a state ---

TEST_F(Renderer, AWaveWithoutEndIsDrawnToTheEndOfTheAxis) {
    // The axis ends in the midst of the second repetition's longer item.
    WaveView.SpanEnd = 600;
    AddReference(MakeRow("A", {}), {MakePattern("$a", {{0, 100}, {1, 300}}), 1, REPEAT_FOREVER});
    AddReference(MakeRow("D[7:0]", {}, 8), {MakePattern("$d", {{1, 100}, {2, 300}}, 8), 1, REPEAT_FOREVER});
    for (uint32_t row : {0, 1}) {
        draw(row);
        int32_t right = 0;
        for (const SurfaceCall &call : HeadlessSurface.calls) {
            if (call.kind != SurfaceCall::Kind::Polyline) continue;
            for (const PixelPoint &point : call.points) right = std::max(right, point.x);
        }
        EXPECT_EQ(right, 600) << row;
    }
}

TEST_F(Renderer, UnknownIsAHatchedBlock) {
    EXPECT_EQ(scalar({{2, 100}}), Calls{Hatch(RED, 0, high, 100, low)});
}

TEST_F(Renderer, AChangeBetweenLineAndBlockHasNoEdge) {
    EXPECT_EQ(scalar({{0, 100}, {2, 100}, {1, 100}}),
              (Calls{Line(BLUE, {{100, low}, {0, low}}), Hatch(RED, 100, high, 200, low),
                     Line(BLUE, {{300, high}, {200, high}})}));
}

TEST_F(Renderer, ABoxedStateHoldsItsName) {
    MakeTable({{3, 5, "Pull"}});
    MakeRow("S", {{0, 100}});
    RowPattern(0)->setStateTable(1);
    EXPECT_EQ(draw(), (Calls{Line(13, {{0, high}, {0, low}, {100, low}, {100, high}, {0, high}}),
                             TextAround(13, "Pull", 50, middle)}));
}

TEST_F(Renderer, ANameThatDoesNotFitItsBoxIsDropped) {
    MakeTable({{3, 5, "Pull"}});
    MakeRow("S", {{0, 100}});
    RowPattern(0)->setStateTable(1);
    TimeVal fits = static_cast<TimeVal>(TextWidth("Pull") + 2);
    SetItemDuration(RowPattern(0), 0, fits);
    EXPECT_EQ(draw().size(), 2u);
    SetItemDuration(RowPattern(0), 0, fits - 1);
    EXPECT_EQ(draw().size(), 1u);
}

TEST_F(Renderer, AHatchedStateShowsNoName) {
    MakeTable({{2, 3, "Weak"}});
    MakeRow("S", {{0, 100}});
    RowPattern(0)->setStateTable(1);
    EXPECT_EQ(draw(), Calls{Hatch(14, 0, high, 100, low)});
}

TEST_F(Renderer, ABlockWithoutWidthIsALine) {
    for (int8_t kind : {int8_t{2}, int8_t{3}}) MakeTable({{kind, 1, "X"}});
    for (uint32_t table : {1u, 2u}) {
        uint16_t id = MakePattern("S", {});
        PatternFromId(id)->setStateTable(table);
        PrepareRowDraw(PatternFromId(id), 0);
        EXPECT_EQ(segment(level(40, 40, 0)), (Calls{dense(0, 40), Line(RED, {{40, high}, {40, low}})}));
    }
}

TEST_F(Renderer, AValueBeyondTheTableIsItsLastState) {
    EXPECT_EQ(scalar({{99, 500}}), Calls{Line(GREY, {{500, high}, {0, high}})});
    SetItemValue(RowPattern(0), 0, 0xFFFFFFFF);
    EXPECT_EQ(draw(), Calls{Line(GREY, {{500, high}, {0, high}})});
}

TEST_F(Renderer, ColoursOfStatesFollowTheirIndex) {
    MakeTable(
        {{0, 0, ""}, {0, 1, ""}, {0, 2, ""}, {0, 3, ""}, {0, 4, ""}, {0, 5, ""}, {0, 6, ""}, {0, 255, ""}});
    MakeRow("S", {{0, 10}, {1, 10}, {2, 10}, {3, 10}, {4, 10}, {5, 10}, {6, 10}, {7, 10}});
    RowPattern(0)->setStateTable(1);
    Calls drawn = draw();
    int colours[] = {0, 6, 7, 14, 3, 13, 13, 13}; // an index beyond the last is the last one
    ASSERT_EQ(drawn.size(), 8u);
    for (int i = 0; i < 8; i++)
        EXPECT_EQ(drawn[i], Line(colours[i], {{10 * i + 10, low}, {10 * i, low}})) << i;
}

TEST_F(Renderer, ColoursOfStatesStayAsTheyWereAtTheStart) {
    ColorSettings[SignalWave] = 9;
    EXPECT_EQ(scalar({{0, 500}}), Calls{Line(BLUE, {{500, low}, {0, low}})});
    BuildLevelColour();
    EXPECT_EQ(draw(), Calls{Line(9, {{500, low}, {0, low}})});
    ColorSettings[SignalWave] = 3;
}

TEST_F(Renderer, AnUnknownLevelDrawsNothing) {
    MakeTable({{-1, 4, "Odd"}, {0, 4, "Low"}});
    MakeRow("S", {{0, 100}, {1, 100}});
    RowPattern(0)->setStateTable(1);
    EXPECT_EQ(draw(), Calls{Line(BLUE, {{200, low}, {100, low}})});
}

// --- dense bands ---

TEST_F(Renderer, ARunTooFineToShowBecomesABandBeforeTheNextSegment) {
    MakeRow("S", {});
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(segment(level(0, 100, 0)), Calls{Line(BLUE, {{100, low}, {0, low}})});
    EXPECT_EQ(segment(coarse(100, 101)), Calls{});
    EXPECT_EQ(segment(coarse(101, 130)), Calls{});
    EXPECT_EQ(segment(level(130, 200, 0)), (Calls{dense(100, 130), Line(BLUE, {{200, low}, {130, low}})}));
}

TEST_F(Renderer, ARunTooFineToShowAtTheEndBecomesABand) {
    MakeRow("S", {});
    PrepareRowDraw(RowPattern(0), 0);
    segment(level(0, 100, 0));
    EXPECT_EQ(segment(coarse(100, 150)), Calls{});
    EXPECT_EQ(segment(coarse(150, 300, SegLast)), Calls{dense(100, 300)});
}

TEST_F(Renderer, BandsHaveTheColourOfTheNames) {
    ColorSettings[WaveName] = 9;
    MakeRow("S", {});
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(segment(coarse(0, 100, SegLast)), Calls{Hatch(9, 0, high, 100, low)});
    ColorSettings[WaveName] = 15;
}

TEST_F(Renderer, ALastRunThatIsDrawnAlreadyHasNoBand) {
    MakeRow("S", {});
    PrepareRowDraw(RowPattern(0), 0);
    segment(level(0, 100, 0));
    EXPECT_EQ(segment(coarse(50, 100, SegLast)), Calls{});
}

TEST_F(Renderer, ABandKeepsTheLevelBeforeIt) {
    MakeRow("S", {});
    PrepareRowDraw(RowPattern(0), 0);
    segment(level(0, 100, 0));
    segment(coarse(100, 130));
    EXPECT_EQ(segment(level(130, 200, 1)),
              (Calls{dense(100, 130), Line(BLUE, {{200, high}, {130, high}, {130, low}})}));
}

TEST_F(Renderer, ARowOfFineItemsIsOneBand) {
    WaveView.Scale = -3;
    WaveView.SpanEnd = 8000;
    Transitions items;
    for (uint32_t i = 0; i < 800; i++) items.push_back({i & 1, 10});
    // The walker delivers a fine item twice, so the band at the end is filled twice.
    EXPECT_EQ(scalar(items), (Calls{dense(0, 1000), dense(0, 1000)}));
}

TEST_F(Renderer, ItemsOfTwoPixelsAreDrawn) {
    WaveView.Scale = -3;
    EXPECT_EQ(scalar({{0, 16}, {1, 16}}),
              (Calls{Line(BLUE, {{2, low}, {0, low}}), Line(BLUE, {{4, high}, {2, high}, {2, low}})}));
    SetItemDuration(RowPattern(0), 0, 15);
    SetItemDuration(RowPattern(0), 1, 15);
    EXPECT_EQ(draw(), (Calls{dense(0, 3), dense(0, 3)}));
}

// --- named blocks ---

namespace {

class NamedBlocks : public Renderer {
protected:
    void SetUp() override {
        Renderer::SetUp();
        sub = MakePattern("$BYTE", {{0, 40}, {1, 60}});
        MakeRow("S", {});
        AddReference(WaveRows[0].PatternId, {sub, 1, 2});
    }
    std::string block(int32_t x0, int32_t x1) {
        return Line(BLACK, {{x0, high - 2}, {x0, low + 2}, {x1, low + 2}, {x1, high - 2}, {x0, high - 2}});
    }
    std::string name(int32_t x) { return TextAround(BLACK, "$BYTE", x, middle); }
    uint16_t sub = 0;
};

} // namespace

TEST_F(NamedBlocks, EachRepetitionIsABlockWithItsName) {
    Settings.ShowPatternWaveforms = false;
    EXPECT_EQ(draw(), (Calls{block(0, 100), name(50), block(100, 200), name(150)}));
}

TEST_F(NamedBlocks, TheWavesInsideAreDrawnUnderTheBlock) {
    EXPECT_EQ(draw(),
              (Calls{Line(BLUE, {{40, low}, {0, low}}), Line(BLUE, {{100, high}, {40, high}, {40, low}}),
                     block(0, 100), name(50), Line(BLUE, {{140, low}, {100, low}, {100, high}}),
                     Line(BLUE, {{200, high}, {140, high}, {140, low}}), block(100, 200), name(150)}));
}

TEST_F(NamedBlocks, WithoutNamesOnlyTheWavesAreDrawn) {
    Settings.ShowPatternNames = false;
    EXPECT_EQ(draw().size(), 4u);
    EXPECT_TRUE(DrawnTexts().empty());
}

TEST_F(NamedBlocks, ANameThatDoesNotFitIsDropped) {
    Settings.ShowPatternWaveforms = false;
    int32_t width = TextWidth("$BYTE");
    for (auto [extra, shown] : {std::pair(1, false), {2, true}}) {
        SetItemDuration(PatternFromId(sub), 0, static_cast<uint32_t>(width + extra - 1));
        SetItemDuration(PatternFromId(sub), 1, 1);
        PatternFromId(sub)->setDurationValid(false);
        RowPattern(0)->setDurationValid(false);
        draw();
        EXPECT_EQ(!DrawnTexts().empty(), shown);
    }
}

TEST_F(NamedBlocks, ABlockWithoutWidthIsALine) {
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(segment({40, 40, 0, 0, SegBlock, PatternFromId(sub)}),
              (Calls{dense(0, 40), Line(BLACK, {{40, high - 2}, {40, low + 2}})}));
}

TEST_F(NamedBlocks, ABlockIsCutAtThePanesEdges) {
    Settings.ShowPatternWaveforms = false;
    WaveView.ViewLeft = 30;
    EXPECT_EQ(draw()[0], block(0, 70));
}

// --- bus values ---

namespace {

class BusValues : public Renderer {
protected:
    Calls bus(const Transitions &items, const char *name = "D[7:0]", uint32_t width = 8) {
        MakeRow(name, items, width);
        return draw();
    }
    std::string hexagon(int32_t x0, int32_t x1) {
        return Line(BLUE, {{x0, middle},
                           {x0 + half, low},
                           {x1 - half, low},
                           {x1, middle},
                           {x1 - half, high},
                           {x0 + half, high},
                           {x0, middle}});
    }
    std::string text(const std::string &value, int32_t x) { return TextAround(BLUE, value, x, middle); }
};

} // namespace

TEST_F(BusValues, AreHexagonsWithTheirValue) {
    EXPECT_EQ(bus({{0xA5, 100}, {7, 200}}),
              (Calls{hexagon(0, 100), text("A5", 50), hexagon(100, 300), text("07", 200)}));
}

TEST_F(BusValues, FollowTheRadix) {
    Settings.BusRadix = 2;
    EXPECT_EQ(bus({{0xA5, 300}})[1], text("10100101", 150));
    Settings.BusRadix = 8;
    EXPECT_EQ(draw()[1], text("245", 150));
    Settings.BusRadix = 10;
    EXPECT_EQ(draw()[1], text("165", 150));
    Settings.BusRadix = 1;
    EXPECT_EQ(draw()[1], text("", 150));
}

TEST_F(BusValues, TheirTextMustFitBetweenThePoints) {
    int32_t width = TextWidth("A5");
    bus({{0xA5, static_cast<uint32_t>(width + 2 * half)}});
    EXPECT_EQ(DrawnTexts(), Calls{"A5"});
    SetItemDuration(RowPattern(0), 0, static_cast<uint32_t>(width + 2 * half - 1));
    draw();
    EXPECT_EQ(DrawnTexts(), Calls{});
}

TEST_F(BusValues, AShortValueIsADiamond) {
    int32_t length = 2 * half - 2; // half of it is below the height
    EXPECT_EQ(bus({{1, 100}, {2, static_cast<uint32_t>(length)}})[2], Line(BLUE, {{100, middle},
                                                                                  {100 + length / 2, high},
                                                                                  {100 + length, middle},
                                                                                  {100 + length / 2, low},
                                                                                  {100, middle}}));
}

TEST_F(BusValues, AValueOfNoLengthIsALine) {
    MakeRow("D[7:0]", {}, 8);
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(segment(level(40, 40, 1)), (Calls{dense(0, 40), Line(BLUE, {{40, high}, {40, low}})}));
}

TEST_F(BusValues, KeepTheirTrueStartLeftOfThePane) {
    WaveView.ViewLeft = 105;
    bus({{1, 100}, {2, 300}});
    EXPECT_EQ(draw()[1], hexagon(-5, 295));
}

TEST_F(BusValues, AFarStartLeavesThePaneFlat) {
    WaveView.ViewLeft = 300;
    EXPECT_EQ(bus({{1, 500}})[0], hexagon(-half, 200));
}

TEST_F(BusValues, AFarEndLeavesThePaneFlat) {
    WaveView.SpanEnd = 100000;
    EXPECT_EQ(bus({{1, 50000}})[0], hexagon(0, 1000 + half));
}

TEST_F(BusValues, AValueThatEndsJustInsideThePaneIsAWedge) {
    WaveView.ViewLeft = 296;
    int32_t d = 4 * half / ((4 + half + 1) / 2);
    EXPECT_EQ(bus({{1, 300}})[0], Line(BLUE, {{0, middle + d}, {4, middle}, {0, middle - d}}));
}

TEST_F(BusValues, ADiamondThatStartsLeftOfThePaneIsCut) {
    int32_t length = 2 * half - 4;
    WaveView.ViewLeft = 103;
    int32_t w = (length + 1) / 2;
    int32_t d = -3 * half / w;
    EXPECT_EQ(
        bus({{1, 100}, {2, static_cast<uint32_t>(length)}})[1],
        Line(BLUE, {{0, middle + d}, {w - 3, high}, {length - 3, middle}, {w - 3, low}, {0, middle - d}}));
}

TEST_F(BusValues, TheMarginLeftOfThePaneIsDrawnAsABandUpToAValueThatStartsAtIt) {
    WaveView.ViewLeft = 100;
    EXPECT_EQ(bus({{1, 100}, {2, 300}}), (Calls{dense(-half, 0), hexagon(0, 300), text("02", 150)}));
}

TEST_F(BusValues, AnyWidthIsSafe) {
    bus({{0xFFFFFFFF, 900}}, "D[31:0]", 32);
    EXPECT_EQ(DrawnTexts(), Calls{"FFFFFFFF"});
    for (uint32_t radix : {2u, 8u, 10u, 16u}) {
        Settings.BusRadix = radix;
        for (uint16_t width : {uint16_t{0}, uint16_t{33}, uint16_t{65535}}) {
            RowPattern(0)->width = width;
            draw();
        }
    }
}

// --- extremes ---

TEST_F(Renderer, NoScaleAndNoPlaceOnTheAxisIsTrouble) {
    MakeRow("S", {{0, 0x7FFFFFFF}, {2, 0x7FFFFFFF}, {1, 1}});
    MakeRow("D[31:0]", {{5, 0x7FFFFFFF}, {6, 0x7FFFFFFF}, {7, 1}}, 32);
    uint16_t sub = MakePattern("$SUB", {{0, 3}, {1, 5}});
    MakeRow("R", {});
    AddReference(WaveRows[2].PatternId, {sub, 65535, REPEAT_FOREVER});
    WaveView.SpanEnd = TIME_FOREVER;
    for (int32_t scale : {-40, -26, -21, -1, 0, 1, 4, 40}) {
        for (TimeVal left : {0u, 1u, 0x7FFFFFFEu, 0xFFFFFFF0u, TIME_FOREVER}) {
            WaveView.Scale = scale;
            WaveView.ViewLeft = left;
            for (uint32_t row = 0; row < 3; row++) draw(row);
            for (const SurfaceCall &call : HeadlessSurface.calls) {
                for (PixelPoint p : call.points) {
                    EXPECT_LE(std::abs(p.x), 1024 + 3 * half) << scale << " " << left;
                }
            }
        }
    }
}

TEST_F(Renderer, ClippingReachesAMarginBeyondThePaneForABus) {
    MakeRow("D[7:0]", {}, 8);
    WaveView.ViewLeft = 500;
    PrepareRowDraw(RowPattern(0), 0);
    TimeVal margin = static_cast<TimeVal>(half);
    EXPECT_EQ(RowDraw.clipStart, 500 - margin);
    EXPECT_EQ(RowDraw.clipEnd, 500 + 1000 + margin + 1);
    WaveView.ViewLeft = 3;
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(RowDraw.clipStart, 0u);
    WaveView.ViewLeft = TIME_FOREVER - 1000 - margin;
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(RowDraw.clipEnd, TIME_FOREVER);
    WaveView.ViewLeft--;
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(RowDraw.clipEnd, TIME_FOREVER);
    WaveView.ViewLeft--;
    PrepareRowDraw(RowPattern(0), 0);
    EXPECT_EQ(RowDraw.clipEnd, TIME_FOREVER - 1);
}

TEST_F(Renderer, TheWalksOptionsFollowTheSettings) {
    Settings.ShowPatternNames = Settings.ShowPatternWaveforms = Settings.ShowSyncActivity = false;
    EXPECT_EQ(DisplayWalkFlags(), 0u);
    Settings.ShowPatternNames = true;
    EXPECT_EQ(DisplayWalkFlags(), 1u);
    Settings.ShowPatternWaveforms = true;
    EXPECT_EQ(DisplayWalkFlags(), 3u);
    Settings.ShowSyncActivity = true;
    EXPECT_EQ(DisplayWalkFlags(), 11u);
}
