#include "unit/display/display_fixture.h"

#include "display/primitives.h"

namespace {

constexpr uint32_t WHITE = 0xFFFFFF, BLACK = 0x000000, BLUE = 0x0000FF, RED = 0xFF0000;

class CairoSurface : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        SelectPicture(Pane::Wave);
        picture = std::make_unique<PaneImage>(Pane::Wave, 100, 60);
    }
    void TearDown() override {
        picture.reset();
        Display::TearDown();
    }
    PaneImage &image() { return *picture; }

private:
    std::unique_ptr<PaneImage> picture;
};

} // namespace

TEST_F(CairoSurface, ALineLeavesItsLastPixelOut) {
    SetDrawColour(3);
    DrawPolyline(std::vector<PixelPoint>{{10, 5}, {20, 5}});
    EXPECT_EQ(image().at(9, 5), WHITE);
    EXPECT_EQ(image().at(10, 5), BLUE);
    EXPECT_EQ(image().at(19, 5), BLUE);
    EXPECT_EQ(image().at(20, 5), WHITE);
    EXPECT_EQ(image().count(BLUE, {0, 0, 100, 60}), 10);
}

TEST_F(CairoSurface, ALineToTheLeftLeavesItsLeftPixelOut) {
    SetDrawColour(3);
    DrawPolyline(std::vector<PixelPoint>{{20, 5}, {10, 5}});
    EXPECT_EQ(image().at(10, 5), WHITE);
    EXPECT_EQ(image().at(20, 5), BLUE);
}

TEST_F(CairoSurface, CornersBelongToThePolyline) {
    SetDrawColour(3);
    DrawPolyline(std::vector<PixelPoint>{{20, 5}, {10, 5}, {10, 15}});
    EXPECT_EQ(image().at(10, 5), BLUE);
    EXPECT_EQ(image().at(10, 14), BLUE);
    EXPECT_EQ(image().at(10, 15), WHITE);
}

TEST_F(CairoSurface, ASlopeTakesOnePixelAStep) {
    SetDrawColour(3);
    DrawPolyline(std::vector<PixelPoint>{{10, 10}, {20, 20}});
    for (int i = 0; i < 10; i++) EXPECT_EQ(image().at(10 + i, 10 + i), BLUE) << i;
    EXPECT_EQ(image().count(BLUE, {0, 0, 100, 60}), 10);
}

TEST_F(CairoSurface, SteepAndFlatSlopesReachTheirEnds) {
    SetDrawColour(3);
    DrawPolyline(std::vector<PixelPoint>{{50, 40}, {45, 20}, {15, 15}});
    EXPECT_EQ(image().at(50, 40), BLUE);
    EXPECT_EQ(image().at(45, 20), BLUE);
    EXPECT_EQ(image().count(BLUE, {0, 0, 100, 60}), 20 + 30);
}

TEST_F(CairoSurface, DotsAreThreePixelsLong) {
    SetDrawColour(31);
    DrawPolyline(std::vector<PixelPoint>{{0, 5}, {12, 5}});
    for (int x = 0; x < 12; x++) EXPECT_EQ(image().at(x, 5), x / 3 % 2 == 0 ? BLACK : WHITE) << x;
}

TEST_F(CairoSurface, AHatchIsLinesRisingToTheRight) {
    SetDrawColour(6);
    FillBlock({16, 16, 39, 31});
    EXPECT_EQ(image().count(RED, {16, 16, 40, 32}), 24 * 16 / 8);
    EXPECT_EQ(image().count(WHITE, {16, 16, 40, 32}), 24 * 16 * 7 / 8);
    for (int i = 0; i < 8; i++) EXPECT_EQ(image().at(23 - i, 16 + i), RED) << i;
    EXPECT_EQ(image().count(RED, {0, 0, 100, 60}), 24 * 16 / 8);
}

TEST_F(CairoSurface, TheGapsOfAHatchStayAsTheyWere) {
    image().clear(0xFFFF00);
    SetDrawColour(6);
    FillBlock({16, 16, 39, 31});
    EXPECT_EQ(image().count(0xFFFF00, {16, 16, 40, 32}), 24 * 16 * 7 / 8);
}

TEST_F(CairoSurface, ASolidFillCoversItsBlock) {
    SetDrawColour(16 + 3);
    FillBlock({5, 6, 14, 15});
    EXPECT_EQ(image().count(BLUE, {5, 6, 15, 16}), 100);
    EXPECT_EQ(image().count(BLUE, {0, 0, 100, 60}), 100);
}

TEST_F(CairoSurface, EveryColourIsDrawnAsItIs) {
    for (int colour = 0; colour < 16; colour++) {
        SetDrawColour(16 + colour);
        FillBlock({0, 0, 0, 0});
        EXPECT_EQ(image().at(0, 0), ColorTable[static_cast<size_t>(colour)]) << colour;
    }
}

TEST_F(CairoSurface, TextLeavesItsGround) {
    image().clear(0xFFFF00);
    SetDrawColour(15);
    DrawAnchoredText(10, 10, 7, "MMM");
    PixelSize size = SurfaceTextSize("MMM");
    PixelRect box = {10, 10, 10 + size.width, 10 + size.height};
    int ground = image().count(0xFFFF00, box);
    EXPECT_GT(ground, 0);
    EXPECT_LT(ground, size.width * size.height - 10);
    EXPECT_EQ(image().count(0xFFFF00, {0, 0, 100, 60}), 6000 - (size.width * size.height - ground));
}

TEST_F(CairoSurface, DrawingEndsAtThePanelsEdges) {
    HeadlessSurface.target.origin[3] = {20, 10};
    HeadlessSurface.target.size[3] = {30, 20};
    SetDrawColour(16 + 3);
    FillBlock({-500, -500, 500, 500});
    EXPECT_EQ(image().count(BLUE, {20, 10, 50, 30}), 600);
    EXPECT_EQ(image().count(BLUE, {0, 0, 100, 60}), 600);
}

TEST_F(CairoSurface, TheWidthOfATextIsThatOfItsLetters) {
    EXPECT_EQ(TextWidth(""), 0);
    EXPECT_EQ(TextWidth("AB"), TextWidth("A") + TextWidth("B"));
    EXPECT_GT(TextWidth("\xE9"), 0);
    EXPECT_EQ(TextWidth("\x01"), TextWidth(" "));
}

// --- bitmaps that are kept ---

namespace {

// The pixels of colour red that a copy of a rectangle of the bitmap brings to (50, 30).
int CopiedRed(PaneImage &image, const PixelRect &from) {
    image.clear(WHITE);
    SurfaceCopyFromBitmap(KeptBitmap::Tail, from, {50, 30});
    return image.count(RED, {0, 0, 100, 60});
}

} // namespace

TEST_F(CairoSurface, ABitmapIsDrawnOnInsteadOfThePane) {
    ASSERT_TRUE(SurfaceKeepBitmap(KeptBitmap::Tail, {10, 5}));
    SetDrawColour(3);
    SetDrawToMemory(true);
    SetDrawColour(6 + DOTTED);
    FillBlock({0, 0, 9, 4});
    SetDrawToMemory(false);
    EXPECT_EQ(image().count(WHITE, {0, 0, 100, 60}), 6000);
    EXPECT_EQ(CopiedRed(image(), {0, 0, 10, 5}), 50);
    EXPECT_EQ(image().at(50, 30), RED);
    EXPECT_EQ(image().at(59, 34), RED);
}

TEST_F(CairoSurface, ACopyEndsWithTheBitmapAndWithThePane) {
    SurfaceKeepBitmap(KeptBitmap::Tail, {10, 5});
    SetDrawToMemory(true);
    SetDrawColour(6 + DOTTED);
    FillBlock({0, 0, 9, 4});
    SetDrawToMemory(false);
    EXPECT_EQ(CopiedRed(image(), {0, 0, 1000, 1000}), 50);
    EXPECT_EQ(CopiedRed(image(), {-5, -2, 10, 5}), 50);
    EXPECT_EQ(image().at(54, 32), WHITE);
    EXPECT_EQ(image().at(55, 32), RED);
    EXPECT_EQ(CopiedRed(image(), {8, 4, 20, 20}), 2);
    EXPECT_EQ(CopiedRed(image(), {10, 0, 20, 5}), 0);
    EXPECT_EQ(CopiedRed(image(), {5, 0, 5, 5}), 0);
    EXPECT_EQ(CopiedRed(image(), {9, 4, 0, 0}), 0);
    image().clear(WHITE);
    SurfaceCopyFromBitmap(KeptBitmap::Tail, {0, 0, 10, 5}, {-6, 58});
    EXPECT_EQ(image().count(RED, {0, 0, 100, 60}), 8);
    // The other way, a part of the pane into the middle of the bitmap and beyond it.
    image().clear(BLUE);
    SurfaceCopyToBitmap({90, 50, 200, 200}, KeptBitmap::Tail, {7, 3});
    SurfaceCopyToBitmap({-3, -3, 1, 1}, KeptBitmap::Tail, {-3, -3});
    EXPECT_EQ(CopiedRed(image(), {0, 0, 10, 5}), 50 - 6 - 1);
}

TEST_F(CairoSurface, ABitmapIsMadeAnewOnlyToGrow) {
    EXPECT_TRUE(SurfaceKeepBitmap(KeptBitmap::Edges, {2, 20}));
    EXPECT_FALSE(SurfaceKeepBitmap(KeptBitmap::Edges, {2, 20}));
    EXPECT_FALSE(SurfaceKeepBitmap(KeptBitmap::Edges, {1, 5}));
    EXPECT_TRUE(SurfaceKeepBitmap(KeptBitmap::Edges, {1, 21}));
    EXPECT_FALSE(SurfaceKeepBitmap(KeptBitmap::Edges, {2, 21})); // the width has stayed
    EXPECT_FALSE(SurfaceKeepBitmap(KeptBitmap::Tail, {0, 20}));
    EXPECT_FALSE(SurfaceKeepBitmap(KeptBitmap::Tail, {20, -1}));
}

TEST_F(CairoSurface, WithoutABitmapNothingIsDrawnOrCopied) {
    SetDrawToMemory(true);
    FillBlock({0, 0, 50, 50});
    SetDrawToMemory(false);
    SurfaceCopyToBitmap({0, 0, 10, 10}, KeptBitmap::Tail, {0, 0});
    EXPECT_EQ(CopiedRed(image(), {0, 0, 10, 10}), 0);
    EXPECT_EQ(image().count(WHITE, {0, 0, 100, 60}), 6000);
}
