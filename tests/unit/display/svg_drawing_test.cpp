#include "headless/svg_drawing.h"

#include "config/settings.h"
#include "headless/headless_font.h"
#include <cmath>
#include <gtest/gtest.h>
#include <memory>

namespace {

constexpr int WHITE = 0, BLUE = 3, BLACK = 15;

class Svg : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(ColorTable[BLUE], 0x0000FFu);
        SvgBegin(drawing, {100, 50});
        SvgSelectPanel(drawing, {10, 20}, {80, 30});
        start = drawing.text.size();
    }
    void line(std::vector<PixelPoint> points, int colour = BLUE) {
        SvgPolyline(drawing, colour, false, points);
    }
    // What was drawn since the start of the panel.
    std::string drawn() {
        SvgEnd(drawing);
        std::string text = drawing.text.substr(start);
        constexpr std::string_view end = "</g>\n</svg>\n";
        EXPECT_TRUE(text.ends_with(end)) << text;
        return text.substr(0, text.size() - end.size());
    }
    SvgDrawing drawing;
    size_t start = 0;
};

} // namespace

TEST_F(Svg, APictureHasItsSizeAndAPanelItsPlaceAndClip) {
    EXPECT_EQ(drawing.text,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100\" height=\"50\" viewBox=\"0 0 100 50\" "
              "font-family=\"DejaVu Sans, sans-serif\" font-size=\"11\">\n"
              "<clipPath id=\"p0\"><path d=\"M0 0h80v30h-80z\"/></clipPath>\n"
              "<g transform=\"translate(10 20)\" clip-path=\"url(#p0)\" fill=\"none\" "
              "stroke-linecap=\"square\">\n");
    EXPECT_EQ(drawn(), "");
}

TEST_F(Svg, ALinesLastPixelIsLeftOut) {
    line({{1, 5}, {4, 5}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M1.5 5.5h2\"/>\n");
}

TEST_F(Svg, ALineOfOnePixelIsAPoint) {
    line({{4, 5}, {4, 4}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M4.5 5.5h0\"/>\n");
}

TEST_F(Svg, ALineWithoutLengthIsNothing) {
    line({{4, 5}, {4, 5}});
    line({{4, 5}});
    line({});
    EXPECT_EQ(drawn(), "");
}

TEST_F(Svg, TheCornersOfALineAreKept) {
    line({{9, 5}, {2, 5}, {2, 1}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M9.5 5.5h-7v-3\"/>\n");
}

TEST_F(Svg, ASlopeGoesFromMiddleToMiddle) {
    line({{0, 5}, {3, 8}, {9, 8}, {12, 5}, {9, 2}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M0.5 5.5l3 3h6l3-3l-3-3\"/>\n");
}

TEST_F(Svg, LinesThatTouchAreOnePath) {
    line({{4, 5}, {0, 5}});          // ends at 1, as below
    line({{9, 1}, {4, 1}, {4, 5}});  // ends where the first one began
    line({{12, 5}, {9, 5}, {9, 1}}); // ends where the second one began
    line({{20, 5}, {20, 9}});        // touches nothing
    line({{20, 9}, {24, 9}});        // goes on behind the last one's last pixel
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M1.5 5.5h3v-4h5v4h3m8 0v4h3\"/>\n");
}

TEST_F(Svg, AnotherColourIsAnotherPath) {
    line({{0, 5}, {4, 5}});
    line({{4, 5}, {8, 5}}, BLACK);
    line({{8, 5}, {12, 5}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M0.5 5.5h3\"/>\n"
                       "<path stroke=\"#000\" d=\"M4.5 5.5h3\"/>\n"
                       "<path stroke=\"#00f\" d=\"M8.5 5.5h3\"/>\n");
}

TEST_F(Svg, ADottedLineBeginsWithADot) {
    SvgPolyline(drawing, BLUE, true, std::array<PixelPoint, 3>{{{0, 5}, {20, 5}, {20, 0}}});
    EXPECT_EQ(
        drawn(),
        "<path stroke=\"#00f\" stroke-dasharray=\"3\" stroke-linecap=\"butt\" d=\"M0 5.5L20 5.5\"/>\n"
        "<path stroke=\"#00f\" stroke-dasharray=\"3\" stroke-linecap=\"butt\" d=\"M20.5 6L20.5 1\"/>\n");
}

TEST_F(Svg, WhatIsDrawnLaterLiesAbove) {
    line({{0, 5}, {4, 5}});
    SvgRectangle(drawing, WHITE, false, {0, 0, 5, 6});
    line({{0, 5}, {4, 5}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M0.5 5.5h3\"/>\n"
                       "<path fill=\"#fff\" d=\"M0 0h5v6h-5z\"/>\n"
                       "<path stroke=\"#00f\" d=\"M0.5 5.5h3\"/>\n");
}

TEST_F(Svg, AHatchIsDefinedOnce) {
    SvgRectangle(drawing, BLUE, true, {0, 0, 5, 6});
    SvgRectangle(drawing, BLUE, true, {9, 0, 14, 6});
    EXPECT_EQ(drawn(), "<pattern id=\"h3\" width=\"8\" height=\"8\" patternUnits=\"userSpaceOnUse\">"
                       "<path stroke=\"#00f\" d=\"M-1 1L1-1M0 8L8 0M7 9L9 7\"/></pattern>\n"
                       "<path fill=\"url(#h3)\" d=\"M0 0h5v6h-5z\"/>\n"
                       "<path fill=\"url(#h3)\" d=\"M9 0h5v6h-5z\"/>\n");
}

TEST_F(Svg, AnEmptyRectangleIsNothing) {
    SvgRectangle(drawing, BLUE, true, {3, 0, 3, 6});
    SvgRectangle(drawing, BLUE, false, {0, 6, 3, 6});
    EXPECT_EQ(drawn(), "");
}

TEST_F(Svg, TextStandsAsItIs) {
    SvgText(drawing, BLACK, {3, 11}, 40, "A<B> & \"C\"");
    SvgText(drawing, BLACK, {3, 22}, 30, "CLK  I");
    SvgText(drawing, BLACK, {3, 33}, 30, "");
    EXPECT_EQ(drawn(),
              "<text x=\"3\" y=\"11\" textLength=\"40\" fill=\"#000\">A&lt;B&gt; &amp; \"C\"</text>\n"
              "<text x=\"3\" y=\"22\" textLength=\"30\" fill=\"#000\" xml:space=\"preserve\">"
              "CLK  I</text>\n");
}

TEST_F(Svg, ColoursAreAsShortAsTheyCanBe) {
    for (int colour = 0; colour < 16; colour++) {
        SvgRectangle(drawing, colour, false, {0, 0, 1, 1});
    }
    std::string text = drawn();
    EXPECT_NE(text.find("#fff"), std::string::npos);
    EXPECT_NE(text.find("#808080"), std::string::npos) << text; // halves have no short form
}

TEST_F(Svg, AnotherPanelEndsTheFirstOne) {
    line({{0, 5}, {4, 5}});
    SvgSelectPanel(drawing, {10, 20}, {80, 30}); // the same
    line({{4, 5}, {8, 5}});
    SvgSelectPanel(drawing, {10, 50}, {80, 30});
    line({{8, 5}, {12, 5}});
    EXPECT_EQ(drawn(), "<path stroke=\"#00f\" d=\"M0.5 5.5h7\"/>\n"
                       "</g>\n"
                       "<clipPath id=\"p1\"><path d=\"M0 0h80v30h-80z\"/></clipPath>\n"
                       "<g transform=\"translate(10 50)\" clip-path=\"url(#p1)\" fill=\"none\" "
                       "stroke-linecap=\"square\">\n"
                       "<path stroke=\"#00f\" d=\"M8.5 5.5h3\"/>\n");
}

// The widths that pictures are laid out with are those of the font that they are drawn with.
TEST(HeadlessFont, ItsWidthsAreTheFonts) {
    cairo_font_options_t *options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    cairo_font_face_t *face =
        cairo_toy_font_face_create(HEADLESS_FONT_FAMILY, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_matrix_t size, device;
    cairo_matrix_init_scale(&size, HEADLESS_FONT_SIZE, HEADLESS_FONT_SIZE);
    cairo_matrix_init_identity(&device);
    cairo_scaled_font_t *font = cairo_scaled_font_create(face, &size, &device, options);
    for (int c = 1; c < 256; c++) {
        char text[2] = {static_cast<char>(c), 0};
        cairo_text_extents_t extents;
        cairo_scaled_font_text_extents(font, HeadlessFontText(text).c_str(), &extents);
        EXPECT_EQ(HeadlessFontWidth(text), std::lround(extents.x_advance)) << c;
    }
    cairo_font_extents_t extents;
    cairo_scaled_font_extents(font, &extents);
    EXPECT_EQ(HEADLESS_FONT_ASCENT, std::ceil(extents.ascent));
    EXPECT_EQ(HeadlessFontMetrics().height, std::ceil(extents.ascent) + std::ceil(extents.descent));
    cairo_scaled_font_destroy(font);
    cairo_font_face_destroy(face);
    cairo_font_options_destroy(options);
}

TEST(HeadlessFont, ATextIsLatin1) {
    EXPECT_EQ(HeadlessFontText("a\xE4\x7F\x9F\t"), "a\xC3\xA4   ");
}
