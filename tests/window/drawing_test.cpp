// What the panels show: each kind of wave at its place and in its colour.

#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

constexpr uint32_t END_TIME = 1000;
constexpr uint32_t SPAN_END = 1250;
// The cursor stands at time 0 and takes the first column over the whole height.
constexpr int BESIDE_CURSOR = 1;

enum Row { LOW, HIGH, UNKNOWN, CLOCK, DENSE, BUS, NAMED, ROWS };

constexpr const char *DOCUMENT = "%MASTERCLOCKMULT = 1;\n"
                                 "%SMALLESTUNIT = 12;\n"
                                 "%DECIMALS = 0;\n"
                                 "%ENDTIME = 1000;\n"
                                 "LOW { In Default None 0 1 50 } = 0 1000;\n"
                                 "HIGH { In Default None 0 1 50 } = 1 1000;\n"
                                 "UNKNOWN { In Default None 0 1 50 } = 2 500 3 500;\n"
                                 "CLK { In Default None 0 1 50 } = (0 50 1 50)#10;\n"
                                 "DENSE { Out Default None 0 1 50 } = (0 1 1 1)#500;\n"
                                 "D[7:0] { Bid Default None 0 1 50 } = a5 300 5a 300 ff 400;\n"
                                 "$P = 0 100;\n"
                                 "NAMED { In Default None 0 1 50 } = $P 1 100 $P;\n";
constexpr const char *WAVE_LIST =
    "Wave LOW\nWave HIGH\nWave UNKNOWN\nWave CLK\nWave DENSE\nWave D[7:0]\nWave NAMED\n";

class Drawing : public testing::Test {
protected:
    void SetUp() override {
        directory.write("waves.wdl", DOCUMENT);
        directory.write("waves.kel", WAVE_LIST);
        directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=0,0,1000,640\r\n");
        editor = std::make_unique<Editor>(directory, "waves.wdl");
        ASSERT_TRUE(editor->open());
        waves = PictureOfClient(editor->pane(3));
        scale = ExpectedScale(SPAN_END, waves.width);
    }
    // The pixel column of a time.
    int x(uint32_t time) const { return static_cast<int>(scale > 0 ? time << scale : time >> -scale); }
    // How many pixels of a horizontal run from one time to another are of the colour. The line is drawn from
    // the right, and its last pixel, the leftmost one, left out.
    int onLine(uint32_t from, uint32_t to, int y, uint32_t colour) const {
        return waves.count(colour, x(from) + 1, y, x(to) + 1, y + 1);
    }
    int runLength(uint32_t from, uint32_t to) const { return x(to) - x(from); }
    int anyInk(int left, int top, int right, int bottom) const {
        return (right - left) * (bottom - top) - waves.count(colour::white, left, top, right, bottom);
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Picture waves;
    int scale = 0;
    Expected sizes = ExpectedSizes();
};

} // namespace

TEST_F(Drawing, ALowLineRunsAtTheBottomOfItsRow) {
    editor->shoot("drawing");
    EXPECT_EQ(onLine(0, END_TIME, sizes.low(LOW), colour::blue), runLength(0, END_TIME));
    EXPECT_EQ(anyInk(BESIDE_CURSOR, 0, x(END_TIME) + 1, sizes.low(LOW)), 0);
}

TEST_F(Drawing, AHighLineRunsAtTheTopOfItsRow) {
    EXPECT_EQ(onLine(0, END_TIME, sizes.high(HIGH), colour::blue), runLength(0, END_TIME));
    EXPECT_EQ(anyInk(BESIDE_CURSOR, sizes.high(HIGH) + 1, x(END_TIME) + 1, (HIGH + 1) * sizes.rowHeight), 0);
}

TEST_F(Drawing, AnUnknownIsARedHatchBetweenTheLevels) {
    int top = sizes.high(UNKNOWN), bottom = sizes.low(UNKNOWN) + 1;
    int area = x(500) * (bottom - top);
    int red = waves.count(colour::red, BESIDE_CURSOR, top, x(500) + 1, bottom);
    EXPECT_GT(red, area / 20);
    EXPECT_LT(red, area / 2);
    EXPECT_EQ(red + waves.count(colour::white, BESIDE_CURSOR, top, x(500), bottom) +
                  waves.count(colour::white, x(500), top, x(500) + 1, bottom) +
                  waves.count(colour::gray, x(500), top, x(500) + 1, bottom),
              (x(500) + 1 - BESIDE_CURSOR) * (bottom - top));
    EXPECT_EQ(anyInk(BESIDE_CURSOR, UNKNOWN * sizes.rowHeight, x(500), top), 0);
    EXPECT_EQ(anyInk(BESIDE_CURSOR, bottom, x(500), (UNKNOWN + 1) * sizes.rowHeight), 0);
}

TEST_F(Drawing, AHighImpedanceIsAGrayLineAtTheTop) {
    EXPECT_GE(onLine(500, END_TIME, sizes.high(UNKNOWN), colour::gray), runLength(500, END_TIME) - 1);
    EXPECT_EQ(waves.count(colour::gray, 0, sizes.middle(UNKNOWN), waves.width, sizes.middle(UNKNOWN) + 1), 0);
}

TEST_F(Drawing, AClockHasVerticalEdgesBetweenItsLevels) {
    for (uint32_t edge = 50; edge < END_TIME; edge += 50) {
        EXPECT_EQ(waves.count(colour::blue, x(edge), sizes.high(CLOCK) + 1, x(edge) + 1, sizes.low(CLOCK)),
                  sizes.low(CLOCK) - sizes.high(CLOCK) - 1)
            << edge;
    }
    // Between two edges only the level is drawn.
    EXPECT_EQ(anyInk(x(50) + 1, sizes.high(CLOCK) + 1, x(100), sizes.low(CLOCK) + 1), 0);
    EXPECT_EQ(waves.count(colour::blue, x(50) + 1, sizes.high(CLOCK), x(100), sizes.high(CLOCK) + 1),
              runLength(50, 100) - 1);
}

TEST_F(Drawing, WhatIsTooFineIsABlackHatchedBand) {
    int top = sizes.high(DENSE), bottom = sizes.low(DENSE) + 1;
    int area = x(END_TIME) * (bottom - top);
    int black = waves.count(colour::black, BESIDE_CURSOR, top, x(END_TIME) + 1, bottom);
    EXPECT_GT(black, area / 20);
    EXPECT_LT(black, area / 2);
    EXPECT_EQ(waves.count(colour::blue, 0, top, x(END_TIME) + 1, bottom), 0);
    EXPECT_EQ(anyInk(BESIDE_CURSOR, DENSE * sizes.rowHeight, waves.width, top), 0);
}

TEST_F(Drawing, ABusIsAHexagonWithItsValue) {
    int half = sizes.half();
    for (auto [from, to] : {std::pair<uint32_t, uint32_t>{0, 300}, {300, 600}, {600, END_TIME}}) {
        int flat = x(to) - half - (x(from) + half);
        EXPECT_GE(waves.count(colour::blue, x(from) + half, sizes.low(BUS), x(to) - half, sizes.low(BUS) + 1),
                  flat);
        EXPECT_GE(
            waves.count(colour::blue, x(from) + half, sizes.high(BUS), x(to) - half, sizes.high(BUS) + 1),
            flat);
        // Outside the slopes the corners are empty.
        EXPECT_EQ(anyInk(x(from) + 1, sizes.low(BUS) - half / 4, x(from) + half / 2, sizes.low(BUS) + 1), 0);
        EXPECT_NE(waves.at(x(to), sizes.middle(BUS)), colour::white);
    }
}

TEST_F(Drawing, TheValueStandsInTheMiddleOfTheHexagon) {
    int width = TextWidthOf("A5");
    int middle = (x(0) + x(300)) / 2;
    int top = sizes.high(BUS) + 1, bottom = sizes.low(BUS);
    EXPECT_GT(waves.count(colour::blue, middle - width / 2, top, middle + width / 2 + 1, bottom), 10);
    EXPECT_EQ(anyInk(x(0) + sizes.half() + 1, top, middle - width / 2 - 2, bottom), 0);
    EXPECT_EQ(anyInk(middle + width / 2 + 3, top, x(300) - sizes.half() - 1, bottom), 0);
}

TEST_F(Drawing, ANamedPatternStandsInABlackFrameWithItsName) {
    int top = sizes.high(NAMED) - 2, bottom = sizes.low(NAMED) + 2;
    for (auto [from, to] : {std::pair<uint32_t, uint32_t>{0, 100}, {200, 300}}) {
        int width = x(to) - x(from);
        for (int y : {top, bottom})
            EXPECT_GE(waves.count(colour::black, x(from), y, x(to) + 1, y + 1), width) << y;
        // The wave's own edges may stand in the frame's sides.
        for (int side : {x(from), x(to)})
            EXPECT_GE(anyInk(side, top, side + 1, bottom + 1), bottom - top - 1) << side;
        int middle = (x(from) + x(to)) / 2, text = TextWidthOf("$P");
        EXPECT_GT(waves.count(colour::black, middle - text / 2, top + 1, middle + text / 2 + 1, bottom), 8);
    }
    EXPECT_EQ(waves.count(colour::black, x(100) + 1, top, x(200), bottom + 1), 0);
}

TEST_F(Drawing, BelowTheLastRowAndBehindTheEndThePaneIsEmpty) {
    EXPECT_EQ(anyInk(BESIDE_CURSOR, ROWS * sizes.rowHeight, waves.width, waves.height), 0);
    EXPECT_EQ(anyInk(x(END_TIME) + 1, 0, waves.width, waves.height), 0);
}

TEST_F(Drawing, NamesStandRightAlignedInTheMiddleOfTheirRows) {
    Picture names = PictureOfClient(editor->pane(2));
    int right = std::max(names.width, 0) - sizes.charWidth / 2;
    for (int row = 0; row < ROWS; ++row) {
        int top = row * sizes.rowHeight, bottom = top + sizes.rowHeight;
        EXPECT_GT(names.count(colour::black, right - 20, top, right + 1, bottom), 0) << row;
        EXPECT_EQ(
            names.count(colour::black, 0, top, names.width, top + sizes.rowHeight / 2 - sizes.fontHeight / 2),
            0)
            << row;
    }
    EXPECT_EQ(names.count(colour::black, 0, ROWS * sizes.rowHeight, names.width, names.height), 0);
}

TEST_F(Drawing, TheRulerHasATickAtEachStepAndALabelAtTheLongOnes) {
    Picture ruler = PictureOfClient(editor->pane(1));
    RECT names = {};
    GetClientRect(editor->pane(2), &names);
    int origin = names.right + 5;
    // The step of the series 1, 2, 5, 10, ... that is 8 pixels wide at least on an ordinary screen.
    int dpi = MulDiv(100, sizes.nameColumnWidth, 100);
    uint32_t minor = 1;
    for (uint32_t step : {1u, 2u, 5u, 10u, 20u, 50u, 100u, 200u}) {
        minor = step;
        if (x(step) >= 8 * dpi / 100) break;
    }
    int bottom = ruler.height;
    int minorTop = sizes.rulerHeight - sizes.fontHeight / 2;
    int majorTop = sizes.rulerHeight - sizes.fontHeight + 2;
    for (uint32_t time = 0; time <= SPAN_END && x(time) < waves.width; time += minor) {
        int column = x(time) + origin;
        // The mouse's marker stands on the tick of time 0, down to the height of a minor tick.
        int top = time % (minor * 10) == 0 && time != 0 ? majorTop : minorTop;
        EXPECT_EQ(ruler.count(colour::black, column, top + 1, column + 1, bottom), bottom - top - 1) << time;
        if (time + minor <= SPAN_END) {
            EXPECT_EQ(ruler.count(colour::black, column + 1, minorTop + 1, x(time + minor) + origin, bottom),
                      0)
                << time;
        }
    }
    uint32_t label = x(minor * 10) < 100 * dpi / 100 ? minor * 20 : minor * 10;
    for (uint32_t time : {0u, label}) {
        int column = x(time) + origin;
        EXPECT_GT(ruler.count(colour::black, column - 12, 0, column + 12, sizes.fontHeight), 5) << time;
    }
    EXPECT_EQ(ruler.count(colour::black, x(label / 2) + origin - 5, 0, x(label / 2) + origin + 5,
                          sizes.fontHeight - 2),
              0);
}

TEST_F(Drawing, ThePromptLineShowsTheCursorsTime) {
    Picture prompt = PictureOfClient(editor->prompt());
    int width = TextWidthOf("Time = 0 ps ");
    EXPECT_GT(prompt.width * prompt.height -
                  prompt.count(prompt.at(prompt.width - 2, 2), 0, 0, prompt.width, prompt.height),
              20);
    EXPECT_EQ(prompt.count(prompt.at(prompt.width - 2, 2), 1 + width, 0, prompt.width, prompt.height),
              (prompt.width - 1 - width) * prompt.height);
}

TEST_F(Drawing, RedrawGivesTheSamePicture) {
    Picture before = editor->picture();
    editor->command(2);
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(editor->picture() == before);
}

TEST_F(Drawing, AValueMovesIntoWhatCanBeSeenOfItsHexagon) {
    SetWindowPos(editor->frame(), nullptr, 0, 0, 1000 - waves.width + x(800), 640, SWP_NOZORDER);
    ASSERT_TRUE(editor->painted());
    Picture resized = editor->picture();
    editor->shoot("drawing-cut");
    editor->command(2);
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(editor->picture() == resized);
}

TEST_F(Drawing, WhatWasCoveredIsPaintedAgain) {
    Picture before = editor->picture();
    ShowWindow(editor->frame(), SW_MINIMIZE);
    ASSERT_TRUE(WaitFor([&] { return IsIconic(editor->frame()) != 0; }));
    ShowWindow(editor->frame(), SW_RESTORE);
    editor->toFront();
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(editor->picture() == before);
}

TEST_F(Drawing, TheRowsOfAnExpandedBusAreDrawnAtOnce) {
    constexpr int BITS = 8;
    ASSERT_TRUE(editor->plantSelectedRow(BUS));
    editor->command(COMMAND_EXPAND_BUS);
    ASSERT_TRUE(WaitFor([&] {
        Picture names = PictureOfClient(editor->pane(2));
        int last = ROWS + BITS - 1;
        return names.count(colour::black, 0, last * sizes.rowHeight, names.width,
                           (last + 1) * sizes.rowHeight) > 0;
    }));
    ASSERT_TRUE(editor->painted());
    Picture expanded = PictureOfClient(editor->pane(3));
    for (int row = ROWS; row < ROWS + BITS; ++row) {
        EXPECT_GT(expanded.count(colour::blue, BESIDE_CURSOR, row * sizes.rowHeight, expanded.width,
                                 (row + 1) * sizes.rowHeight),
                  runLength(0, END_TIME) / 2)
            << row;
    }
    editor->command(COMMAND_REDRAW);
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(PictureOfClient(editor->pane(3)) == expanded);
}
