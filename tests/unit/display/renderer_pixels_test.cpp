// What the eye sees of each way to draw.
#include "unit/display/display_fixture.h"

#include "display/primitives.h"
#include "display/renderer.h"
#include "store/state_table.h"

namespace {

constexpr uint32_t WHITE = 0xFFFFFF, BLACK = 0x000000, BLUE = 0x0000FF, RED = 0xFF0000, GREY = 0x808080,
                   GREEN = 0x008000;

class WavePixels : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        low = RowLow(0);
        middle = RowMiddle(0);
        high = RowHigh(0);
        half = WaveView.WaveHeight / 2;
        picture = std::make_unique<PaneImage>(Pane::Wave, 1000, WaveView.RowHeight);
        picture->clear(0x123456); // shows what was left undrawn
    }
    void TearDown() override {
        picture.reset();
        Display::TearDown();
    }
    void draw(const char *name, const Transitions &items, uint32_t width = 1) {
        MakeRow(name, items, width);
        DrawRowWaves(0);
    }
    uint32_t at(int32_t x, int32_t y) const { return picture->at(x, y); }
    // The number of pixels of a colour in the columns x0 to x1, over the row's height.
    int inColumns(uint32_t colour, int32_t x0, int32_t x1) const {
        return picture->count(colour, {x0, 0, x1 + 1, WaveView.RowHeight});
    }
    int32_t low = 0, middle = 0, high = 0, half = 0;
    std::unique_ptr<PaneImage> picture;
};

} // namespace

TEST_F(WavePixels, TheWholeRowIsErased) {
    draw("A", {});
    EXPECT_EQ(inColumns(WHITE, 0, 999), 1000 * WaveView.RowHeight);
}

TEST_F(WavePixels, ALowWave) {
    draw("A", {{0, 300}});
    EXPECT_EQ(at(1, low), BLUE);
    EXPECT_EQ(at(300, low), BLUE);
    EXPECT_EQ(at(301, low), WHITE);
    EXPECT_EQ(inColumns(BLUE, 0, 999), 300);
}

TEST_F(WavePixels, APulse) {
    draw("A", {{0, 100}, {1, 100}, {0, 100}});
    for (int32_t x : {100, 200}) {
        for (int32_t y = high; y <= low; y++) EXPECT_EQ(at(x, y), BLUE) << x << "," << y;
    }
    EXPECT_EQ(at(150, high), BLUE);
    EXPECT_EQ(at(150, low), WHITE);
    EXPECT_EQ(at(250, low), BLUE);
    EXPECT_EQ(at(250, high), WHITE);
}

TEST_F(WavePixels, AnUnknownState) {
    draw("A", {{2, 160}});
    EXPECT_NEAR(inColumns(RED, 0, 159), 160 * (WaveView.WaveHeight + 1) / 8, 20);
    EXPECT_EQ(picture->count(RED, {0, 0, 1000, high}), 0);
    EXPECT_EQ(picture->count(RED, {0, low + 1, 1000, WaveView.RowHeight}), 0);
    for (int32_t y = high; y <= low; y++) EXPECT_EQ(picture->count(RED, {0, y, 160, y + 1}), 20) << y;
}

TEST_F(WavePixels, AHighImpedanceState) {
    draw("A", {{3, 300}});
    EXPECT_EQ(at(150, high), GREY);
    EXPECT_EQ(inColumns(GREY, 0, 999), 300);
}

TEST_F(WavePixels, ABusHexagonWithItsValue) {
    draw("D[7:0]", {{0xA5, 200}}, 8);
    EXPECT_EQ(at(0, middle), BLUE);
    EXPECT_EQ(at(1, middle + 1), BLUE);
    EXPECT_EQ(at(1, middle - 1), BLUE);
    for (int32_t x = half; x <= 200 - half; x++) {
        EXPECT_EQ(at(x, high), BLUE) << x;
        EXPECT_EQ(at(x, low), BLUE) << x;
    }
    EXPECT_EQ(at(200, middle), BLUE);
    EXPECT_EQ(at(199, middle - 1), BLUE);
    EXPECT_EQ(at(half + 20, middle), WHITE);
    int32_t textWidth = TextWidth("A5");
    PixelRect text = {100 - textWidth / 2, high + 1, 100 + textWidth / 2, low};
    EXPECT_LT(picture->count(WHITE, text), (text.right - text.left) * (text.bottom - text.top) - 20);
}

TEST_F(WavePixels, AWedgeAtTheLeftEdgeClosesWhereTheValueEnds) {
    WaveView.ViewLeft = 296;
    draw("D[7:0]", {{1, 300}}, 8);
    EXPECT_EQ(at(3, middle + 1), BLUE);
    EXPECT_EQ(at(3, middle - 1), BLUE);
    EXPECT_EQ(at(4, middle), BLUE);
    EXPECT_EQ(at(0, middle), WHITE);
    EXPECT_EQ(inColumns(BLUE, 5, 999), 0);
}

TEST_F(WavePixels, AHexagonCutByTheLeftEdgeHasItsSlopesInTheirPlaces) {
    draw("D[7:0]", {{1, 300}}, 8);
    std::vector<uint32_t> whole;
    for (int32_t x = 5; x < 300; x++) {
        for (int32_t y = high; y <= low; y++) whole.push_back(at(x, y) == BLUE);
    }
    WaveView.ViewLeft = 5;
    DrawRowWaves(0);
    size_t i = 0;
    int32_t textLeft = 295 / 2 - 20, textRight = 295 / 2 + 20;
    for (int32_t x = 0; x < 295; x++) {
        for (int32_t y = high; y <= low; y++, i++) {
            if (x > textLeft && x < textRight && y > high && y < low) continue;
            EXPECT_EQ(at(x, y) == BLUE, whole[i]) << x << "," << y;
        }
    }
}

TEST_F(WavePixels, ADiamond) {
    int32_t w = half - 2;
    draw("D[7:0]", {{1, 100}, {2, static_cast<uint32_t>(2 * w)}}, 8);
    EXPECT_EQ(at(100, middle), BLUE);
    EXPECT_EQ(at(100 + w, high), BLUE);
    EXPECT_EQ(at(100 + 2 * w, middle), BLUE);
    EXPECT_EQ(at(100 + w, low), BLUE);
    EXPECT_EQ(at(100 + w, middle), WHITE);
}

TEST_F(WavePixels, ANamedBlock) {
    Settings.ShowPatternWaveforms = false;
    uint16_t sub = MakePattern("$BYTE", {{0, 200}});
    uint16_t id = MakeRow("S", {});
    AddReference(id, {sub});
    DrawRowWaves(0);
    for (int32_t x : {0, 100, 200}) {
        EXPECT_EQ(at(x, high - 2), BLACK) << x;
        EXPECT_EQ(at(x, low + 2), BLACK) << x;
    }
    for (int32_t y = high - 2; y <= low + 2; y++) EXPECT_EQ(at(200, y), BLACK) << y;
    EXPECT_EQ(at(20, middle), WHITE);
    int32_t textWidth = TextWidth("$BYTE");
    PixelRect text = {100 - textWidth / 2, high, 100 + textWidth / 2, low};
    EXPECT_LT(picture->count(WHITE, text), (text.right - text.left) * (text.bottom - text.top) - 40);
}

TEST_F(WavePixels, ADenseBand) {
    WaveView.Scale = -3;
    WaveView.SpanEnd = 8000;
    Transitions items;
    for (uint32_t i = 0; i < 128; i++) items.push_back({i & 1, 10});
    draw("S", items); // 1280 time units are 160 pixels
    EXPECT_EQ(inColumns(BLUE, 0, 999), 0);
    for (int32_t y = high; y <= low; y++) EXPECT_EQ(picture->count(BLACK, {0, y, 160, y + 1}), 20) << y;
    EXPECT_EQ(inColumns(BLACK, 161, 999), 0);
}

TEST_F(WavePixels, ABoxedStateWithItsName) {
    StateTable *table = AllocStateTable(1);
    table->rowCount = 1;
    table->rows()[0] = {3, 5, 'P', "Pull", "P"};
    MakeRow("S", {{0, 200}});
    RowPattern(0)->setStateTable(1);
    DrawRowWaves(0);
    EXPECT_EQ(at(0, middle), GREEN);
    EXPECT_EQ(at(200, middle), GREEN);
    EXPECT_EQ(at(100, high), GREEN);
    EXPECT_EQ(at(100, low), GREEN);
    EXPECT_EQ(at(30, middle), WHITE);
}

TEST_F(WavePixels, AGuideline) {
    Settings.ShowGuidelines = true;
    draw("A", {});
    int32_t y = WaveView.RowHeight - 1;
    for (int32_t x = 0; x < 30; x++) EXPECT_EQ(at(x, y), x / 3 % 2 == 0 ? BLACK : WHITE) << x;
    EXPECT_EQ(inColumns(BLACK, 0, 999), picture->count(BLACK, {0, y, 1000, y + 1}));
}

TEST_F(WavePixels, AColouredBackgroundIsEven) {
    ColorSettings[Background] = 4;
    draw("A", {{0, 300}});
    EXPECT_EQ(inColumns(0xFFFF00, 0, 999), 1000 * WaveView.RowHeight - 300);
    ColorSettings[Background] = 0;
}
