#include "unit/display/display_fixture.h"

#include "display/primitives.h"
#include "headless/picture.h"
#include "store/mutators.h"
#include <cstdlib>
#include <random>

namespace {

constexpr uint32_t WHITE = 0xFFFFFF, BLACK = 0x000000, BLUE = 0x0000FF;

// The pixels of a PNG file.
class Png {
public:
    explicit Png(const std::string &path) : image(cairo_image_surface_create_from_png(path.c_str())) {}
    ~Png() { cairo_surface_destroy(image); }
    Png(const Png &) = delete;
    Png &operator=(const Png &) = delete;
    int32_t width() const { return cairo_image_surface_get_width(image); }
    int32_t height() const { return cairo_image_surface_get_height(image); }
    uint32_t at(int32_t x, int32_t y) const {
        const unsigned char *line =
            cairo_image_surface_get_data(image) + y * cairo_image_surface_get_stride(image);
        return reinterpret_cast<const uint32_t *>(line)[x] & 0xFFFFFF;
    }
    int count(uint32_t colour, const PixelRect &rect) const {
        int found = 0;
        for (int32_t y = rect.top; y < rect.bottom; y++) {
            for (int32_t x = rect.left; x < rect.right; x++) found += at(x, y) == colour;
        }
        return found;
    }

private:
    cairo_surface_t *image;
};

class Picture : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        low = MakePattern("LOW", {{0, 1000}});
        high = MakePattern("HIGH_AND_LONG", {{1, 1000}});
        rowHeight = WaveView.RowHeight;
        names = TextWidth("HIGH_AND_LONG  P") + WaveView.FontCharWidth;
    }
    std::string render(const std::string &name, PictureRequest request) {
        std::string path = directory.file(name);
        request.path = path.c_str();
        if (request.rows.empty()) request.rows = {low, high};
        error.clear();
        drawn = RenderPicture(request, error);
        return path;
    }
    uint16_t low = 0, high = 0;
    int32_t rowHeight = 0, names = 0;
    bool drawn = false;
    std::string error;
    ScratchDirectory directory;
};

} // namespace

TEST_F(Picture, ShowsRulerNamesAndWavesAsTheWindowDoes) {
    Png png(render("a.png", {}));
    ASSERT_TRUE(drawn) << error;
    int32_t waves = names + 3 + 1; // grip and frame
    int32_t top = WaveView.RulerHeight + 1;
    int32_t lastLabel = TextWidth("1,000");
    EXPECT_EQ(png.width(), waves + 1000 - lastLabel / 2 + lastLabel + 1);
    EXPECT_EQ(png.height(), top + 2 * rowHeight + 1);
    EXPECT_EQ(png.at(0, 0), BLACK);
    EXPECT_EQ(png.at(waves - 1, top + 5), BLACK);
    EXPECT_EQ(png.at(waves - 2, top + 5), WHITE);
    EXPECT_EQ(png.at(waves + 500, top + RowLow(0)), BLUE);
    EXPECT_EQ(png.at(waves + 500, top + RowHigh(1)), BLUE);
    EXPECT_EQ(png.count(BLUE, {waves, top, waves + 1000, top + 2 * rowHeight}), 2 * 999);
    EXPECT_LT(png.count(WHITE, {1, top, names - 1, top + rowHeight}), (names - 2) * rowHeight - 30);
}

TEST_F(Picture, TheRulersTicksStandOverTheirTimes) {
    PictureRequest request;
    request.rows = {MakePattern("STEP", {{0, 500}, {1, 500}})};
    names = TextWidth("STEP  P") + WaveView.FontCharWidth;
    Png png(render("a.png", request));
    int32_t edge = names + 3 + 1 + 500;
    EXPECT_EQ(png.at(edge, WaveView.RulerHeight + 1 + RowMiddle(0)), BLUE);
    EXPECT_EQ(png.at(edge, WaveView.RulerHeight - 3), BLACK);
    EXPECT_EQ(png.at(edge - 1, WaveView.RulerHeight - 3), WHITE);
}

TEST_F(Picture, ARangeIsFittedAsByAZoom) {
    PictureRequest request;
    request.fitRange = true;
    request.from = 400;
    request.to = 600;
    request.rows = {MakePattern("STEP", {{0, 500}, {1, 500}})};
    names = TextWidth("STEP  P") + WaveView.FontCharWidth;
    Png png(render("a.png", request));
    EXPECT_EQ(png.at(names + 4 + 500, WaveView.RulerHeight + 1 + RowMiddle(0)), BLUE); // at scale 1 or 2
}

TEST_F(Picture, TheWavePaneHasTheWidthAskedFor) {
    PictureRequest request;
    request.width = 1500; // wider than the screen
    request.fitRange = true;
    request.to = 1450;
    SetItemDuration(PatternFromId(low), 0, 1450);
    PatternFromId(low)->setDurationValid(false);
    WaveView.SpanEnd = 1450;
    Png png(render("a.png", request));
    EXPECT_EQ(png.width(), names + 3 + 2 + 1500);
    EXPECT_EQ(png.at(names + 4 + 1440, WaveView.RulerHeight + 1 + RowLow(0)), BLUE);
    request.width = 37;
    EXPECT_EQ(Png(render("a.png", request)).width(), names + 3 + 2 + 37);
}

TEST_F(Picture, APngIsMagnifiedByItsScale) {
    Png plain(render("a.png", {}));
    PictureRequest request;
    request.scale = 3;
    Png large(render("b.png", request));
    ASSERT_EQ(large.width(), 3 * plain.width());
    ASSERT_EQ(large.height(), 3 * plain.height());
    int32_t waves = names + 4, top = WaveView.RulerHeight + 1;
    for (int32_t y = top; y < top + 2 * rowHeight; y++) {
        for (int32_t x = waves; x < waves + 1000; x += 7) {
            EXPECT_EQ(large.at(3 * x + 1, 3 * y + 1), plain.at(x, y)) << x << "," << y;
        }
    }
}

TEST_F(Picture, VectorPicturesAreWritten) {
    std::string svg = ReadWholeFile(render("a.SVG", {}));
    EXPECT_TRUE(drawn) << error;
    EXPECT_NE(svg.find("<svg"), std::string::npos);
    std::string pdf = ReadWholeFile(render("a.pdf", {}));
    EXPECT_TRUE(drawn) << error;
    EXPECT_TRUE(pdf.starts_with("%PDF"));
}

TEST_F(Picture, VectorPicturesDrawEverything) {
    PictureRequest request;
    uint16_t sub = MakePattern("$SUB", {{2, 50}, {1, 50}});
    uint16_t user = MakePattern("USER", {});
    AddReference(user, {sub, 1, 3});
    uint16_t bus = MakePattern("D[7:0]", {{1, 7}, {2, 100}, {3, 893}}, 8);
    Settings.ShowGuidelines = true;
    request.rows = {user, bus};
    std::string svg = ReadWholeFile(render("a.svg", request));
    EXPECT_TRUE(drawn) << error;
    for (const char *text : {">USER  ", ">D[7:0]  ", ">02<", ">0<", ">500<", "stroke-dasharray", "url(#h"}) {
        EXPECT_NE(svg.find(text), std::string::npos) << text;
    }
}

// Where nothing but lines along the pixels is drawn, a viewer shows just what the PNG shows.
TEST_F(Picture, AnSvgHasThePixelsOfThePng) {
    std::mt19937 random(7);
    PictureRequest request;
    for (int row = 0; row < 12; row++) {
        Transitions items;
        for (int i = 0; i < 40; i++) items.push_back({random() % 2, 4 + random() % 60});
        request.rows.push_back(MakePattern(("R" + std::to_string(row)).c_str(), items));
    }
    request.fitRange = true;
    request.from = 37;
    request.to = 1100;
    Png png(render("a.png", request));
    std::string svg = render("a.svg", request);
    ASSERT_TRUE(drawn) << error;
    std::string shown = directory.file("shown.png");
    ASSERT_EQ(system(("rsvg-convert '" + svg + "' -o '" + shown + "'").c_str()), 0);
    Png viewed(shown);
    ASSERT_EQ(viewed.width(), png.width());
    ASSERT_EQ(viewed.height(), png.height());
    int32_t left = png.width() - 1001;
    for (int32_t y = WaveView.RulerHeight + 1; y < png.height(); y++) {
        for (int32_t x = left; x < png.width(); x++) {
            ASSERT_EQ(viewed.at(x, y), png.at(x, y)) << x << "," << y;
        }
    }
}

TEST_F(Picture, TheTextOfVectorPicturesIsText) {
    std::string pdf = render("a.pdf", {});
    std::string text = directory.file("text.txt");
    ASSERT_EQ(system(("pdftotext -layout '" + pdf + "' '" + text + "'").c_str()), 0);
    std::string words = ReadWholeFile(text);
    for (const char *word : {"LOW", "HIGH_AND_LONG", "500", "900"}) {
        EXPECT_NE(words.find(word), std::string::npos) << word << " in " << words;
    }
}

TEST_F(Picture, TheRulersLastLabelIsWhole) {
    PictureRequest request;
    request.width = 800; // with a label at its right end
    request.fitRange = true;
    request.to = 800;
    int32_t label = TextWidth("800");
    Png png(render("a.png", request));
    int32_t waves = names + 4;
    EXPECT_EQ(png.width(), waves + 800 - label / 2 + label + 1);
    PixelRect beyond = {waves + 801, 1, png.width() - 1, WaveView.RulerHeight - 2};
    EXPECT_LT(png.count(WHITE, beyond), (beyond.right - beyond.left) * (beyond.bottom - beyond.top) - 10);
    EXPECT_EQ(png.at(waves + 800, WaveView.RulerHeight + 10), BLACK); // the wave pane keeps its width
}

TEST_F(Picture, MoreRowsThanTheTableHoldsAreDrawn) {
    PictureRequest request;
    request.rows.assign(300, low);
    request.rows[299] = high;
    Png png(render("a.png", request));
    ASSERT_TRUE(drawn) << error;
    int32_t top = WaveView.RulerHeight + 1;
    EXPECT_EQ(png.height(), top + 300 * rowHeight + 1);
    EXPECT_EQ(png.at(names + 4 + 500, top + 255 * rowHeight + RowLow(0)), BLUE);
    EXPECT_EQ(png.at(names + 4 + 500, top + 256 * rowHeight + RowLow(0)), BLUE);
    EXPECT_EQ(png.at(names + 4 + 500, top + 299 * rowHeight + RowHigh(0)), BLUE);
}

TEST_F(Picture, ADocumentWithoutRowsIsAnEmptyPicture) {
    std::string path = directory.file("a.png");
    PictureRequest request;
    request.path = path.c_str();
    EXPECT_TRUE(RenderPicture(request, error)) << error;
    EXPECT_EQ(Png(path).height(), WaveView.RulerHeight + rowHeight + 2);
}

TEST_F(Picture, TheDocumentsViewStaysAsItIs) {
    AppendRowOf(high);
    WaveRows[0].setHighlighted(true);
    WaveView.ViewLeft = 12;
    WaveView.Scale = -1;
    DisplayOpen = 0;
    PatternFromId(low)->setChanged(true);
    render("a.png", {});
    EXPECT_EQ(RowNames(), std::vector<std::string>{"HIGH_AND_LONG"});
    EXPECT_TRUE(WaveRows[0].highlighted());
    EXPECT_EQ(WaveView.ViewLeft, 12u);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(DisplayOpen, 0);
    EXPECT_EQ(HeadlessSurface.target.context, nullptr);
    EXPECT_TRUE(PatternFromId(low)->changed());
}

TEST_F(Picture, OnlyThreeKindsOfPictureAreKnown) {
    for (const char *name : {"a.bmp", "a", "png", "a.png.txt", "dir.png/a", ""}) {
        std::string path = name;
        PictureRequest request;
        request.path = path.c_str();
        error.clear();
        EXPECT_FALSE(RenderPicture(request, error)) << name;
        EXPECT_EQ(error, "the picture's name must end in .png, .svg or .pdf");
    }
}

TEST_F(Picture, WhatCannotBeWrittenIsTold) {
    for (const char *name : {"none/a.png", "none/a.svg", "none/a.pdf"}) {
        render(name, {});
        EXPECT_FALSE(drawn) << name;
        EXPECT_TRUE(error.starts_with("cannot be written: No such file or directory")) << error;
    }
}

TEST_F(Picture, SizesThatNoPictureCanHaveAreRefused) {
    for (auto [width, scale] : {std::pair(0, 1),
                                {-5, 1},
                                {32768, 1},
                                {1000, 0},
                                {1000, -1},
                                {1000, 100},
                                {30000, 2},
                                {INT32_MAX, INT32_MAX}}) {
        PictureRequest request;
        request.width = width;
        request.scale = scale;
        render("a.png", request);
        EXPECT_FALSE(drawn) << width << " " << scale;
        EXPECT_FALSE(error.empty());
    }
}

TEST_F(Picture, ARowMustShowAPattern) {
    PictureRequest request;
    request.rows = {low, 77};
    render("a.png", request);
    EXPECT_FALSE(drawn);
    EXPECT_EQ(error, "a row shows no pattern");
}
