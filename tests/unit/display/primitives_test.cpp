#include "unit/display/display_fixture.h"

#include "display/primitives.h"

namespace {

using Kind = SurfaceCall::Kind;

class Primitives : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        SelectPicture(Pane::Wave);
        ForgetCalls();
    }
    // The last call of a kind.
    static SurfaceCall last(Kind kind) {
        for (size_t i = HeadlessSurface.calls.size(); i-- > 0;) {
            if (HeadlessSurface.calls[i].kind == kind) return HeadlessSurface.calls[i];
        }
        ADD_FAILURE() << "no such call";
        return {};
    }
    static void expectColour(int index, int colour, bool dotted, bool hatched) {
        SetDrawColour(index);
        EXPECT_EQ(last(Kind::Pen).colour, colour) << index;
        EXPECT_EQ(last(Kind::Pen).patterned, dotted) << index;
        EXPECT_EQ(last(Kind::Brush).colour, colour) << index;
        EXPECT_EQ(last(Kind::Brush).patterned, hatched) << index;
        EXPECT_EQ(last(Kind::TextColour).colour, colour) << index;
    }
    static PixelPoint textAt(int anchor) {
        DrawAnchoredText(200, 100, anchor, "Text");
        return last(Kind::Text).points[0];
    }
};

} // namespace

TEST_F(Primitives, LowColoursHaveSolidPensAndHatchedBrushes) {
    for (int index = 1; index <= 15; index++) expectColour(index, index, false, true);
}

TEST_F(Primitives, ColourZeroIsSolidWhite) {
    expectColour(0, 0, false, false);
}

TEST_F(Primitives, HighColoursHaveDottedPensAndSolidBrushes) {
    for (int index = 16; index <= 31; index++) expectColour(index, index - 16, true, false);
}

TEST_F(Primitives, Colour31IsDottedBlackWithASolidBrush) {
    expectColour(31, 15, true, false);
}

TEST_F(Primitives, FillsInTheBackgroundAreEvenWhateverItsColour) {
    ColorSettings[Background] = 9;
    expectColour(9, 9, false, false);
    expectColour(3, 3, false, true);
    expectColour(0, 0, false, false);
    EraseBlock({1, 2, 3, 4});
    EXPECT_EQ(Drawn(), std::vector{Fill(9, 1, 2, 3, 4)});
    ColorSettings[Background] = 0;
}

TEST_F(Primitives, WithoutAPanelNothingIsDrawn) {
    Headless.panesExist = false;
    SelectPicture(Pane::Wave);
    SetDrawColour(3);
    FillBlock({0, 0, 5, 5});
    DrawOutline({0, 0, 5, 5});
    DrawAnchoredText(1, 1, 5, "A");
    EXPECT_TRUE(Drawn().empty());
    EXPECT_GT(TextWidth("A"), 0);
}

TEST_F(Primitives, BlocksIncludeTheirLastPixels) {
    SetDrawColour(16);
    FillBlock({3, 4, 10, 20});
    EXPECT_EQ(Drawn(), std::vector{Fill(0, 3, 4, 10, 20)});
}

TEST_F(Primitives, EmptyBlocksAreNotFilled) {
    FillBlock({3, 4, 2, 20});
    FillBlock({3, 4, 10, 3});
    EXPECT_TRUE(Drawn().empty());
    FillBlock({3, 4, 3, 4});
    EXPECT_EQ(Drawn().size(), 1u);
}

TEST_F(Primitives, AnOutlineRunsDownRightUpAndBack) {
    SetDrawColour(15);
    DrawOutline({1, 2, 8, 9});
    EXPECT_EQ(Drawn(), std::vector{Line(15, {{1, 2}, {1, 9}, {8, 9}, {8, 2}, {1, 2}})});
}

TEST_F(Primitives, MoreThanTenPointsAreCut) {
    std::vector<PixelPoint> points(14, {1, 1});
    DrawPolyline(points);
    EXPECT_EQ(last(Kind::Polyline).points.size(), MAX_POLYLINE);
}

TEST_F(Primitives, TheWavePaneScrollsWithItsRows) {
    WaveView.TopPixel = 50;
    WaveView.NameTextWidth = 300;
    SetDrawColour(3);
    FillBlock({3, 60, 10, 70});
    DrawPolyline(std::vector<PixelPoint>{{1, 60}, {5, 60}});
    EXPECT_EQ(Drawn(), (std::vector{Hatch(3, 3, 10, 10, 20), Line(3, {{1, 10}, {5, 10}})}));
    EXPECT_EQ(textAt(7).y, 50);
}

TEST_F(Primitives, TheNameColumnScrollsBothWays) {
    WaveView.TopPixel = 50;
    WaveView.NameTextWidth = 300;
    int32_t shift = 200 + WaveView.FontCharWidth;
    SelectPicture(Pane::Name);
    SetDrawColour(3);
    FillBlock({shift + 3, 60, shift + 10, 70});
    EXPECT_EQ(Drawn(), std::vector{Hatch(3, 3, 10, 10, 20)});
    EXPECT_EQ(textAt(7).x, 200 - shift);
}

TEST_F(Primitives, TheRulerDoesNotScroll) {
    WaveView.TopPixel = 50;
    WaveView.NameTextWidth = 300;
    SelectPicture(Pane::Ruler);
    SetDrawColour(3);
    FillBlock({3, 6, 10, 7});
    EXPECT_EQ(Drawn(), std::vector{Hatch(3, 3, 6, 10, 7)});
}

TEST_F(Primitives, AnchorsAreLaidOutAsOnAKeypad) {
    PixelSize size = SurfaceTextSize("Text");
    int32_t lefts[] = {200, 200 - size.width / 2, 200 - size.width};
    int32_t tops[] = {100 - size.height, 100 - size.height / 2, 100};
    for (int anchor = 1; anchor <= 9; anchor++) {
        PixelPoint point = textAt(anchor);
        EXPECT_EQ(point.x, lefts[(anchor - 1) % 3]) << anchor;
        EXPECT_EQ(point.y, tops[(anchor - 1) / 3]) << anchor;
    }
}

TEST_F(Primitives, OnlyTheLowBitsOfAnAnchorCount) {
    EXPECT_EQ(textAt(16 + 7).y, 100);
    EXPECT_EQ(textAt(0).x, 200);
    EXPECT_EQ(textAt(15).y, 100);
}

TEST_F(Primitives, ACentredTextOfOddHeightLosesTheHalfPixel) {
    int32_t height = SurfaceTextSize("Text").height;
    EXPECT_EQ(textAt(5).y, 100 - height / 2);
    WaveView.TopPixel = 300; // also left of and above the origin
    DrawAnchoredText(200, 100, 5, "Text");
    EXPECT_EQ(last(Kind::Text).points[0].y, -200 - height / 2);
}

TEST_F(Primitives, AnInvertedNameHasALineInPlaceOfItsMark) {
    SetDrawColour(15);
    DrawAnchoredText(50, 40, 7, "'RESET");
    int32_t width = TextWidth("RESET");
    EXPECT_EQ(Drawn(), (std::vector{TextAt(15, "RESET", 50, 40), Line(15, {{50, 39}, {50 + width, 39}})}));
}

TEST_F(Primitives, AMarkAtAnyWordPutsTheLineOverAllOfIt) {
    SetDrawColour(15);
    DrawAnchoredText(50, 40, 7, "A,'B");
    int32_t width = TextWidth("A,B");
    EXPECT_EQ(Drawn(), (std::vector{TextAt(15, "A,B", 50, 40), Line(15, {{50, 39}, {50 + width, 39}})}));
}

TEST_F(Primitives, MarksCountOnlyAtTheStartOfAWord) {
    for (auto [text, shown] : {std::pair("_WR", "WR"),
                               {"TOP._OE", "TOP.OE"},
                               {"A-'B", "A-B"},
                               {"A 'B", "A B"},
                               {"A\\_B", "A\\B"},
                               {"_A_B,'C'", "A_B,C'"}}) {
        ForgetCalls();
        DrawAnchoredText(0, 0, 7, text);
        EXPECT_EQ(DrawnTexts(), std::vector<std::string>{shown});
        EXPECT_EQ(Drawn().size(), 2u) << text;
    }
    for (const char *text : {"A_B", "A'", "D[_1]", "D<'2>", "D{_3}"}) {
        ForgetCalls();
        DrawAnchoredText(0, 0, 7, text);
        EXPECT_EQ(DrawnTexts(), std::vector<std::string>{text});
        EXPECT_EQ(Drawn().size(), 1u) << text;
    }
}

TEST_F(Primitives, VeryLongTextsAreCutSafely) {
    DrawAnchoredText(0, 0, 5, std::string(5000, 'W').c_str());
    EXPECT_LT(last(Kind::Text).text.size(), 5000u);
    DrawAnchoredText(0, 0, 5, "");
    EXPECT_EQ(last(Kind::Text).text, "");
}
