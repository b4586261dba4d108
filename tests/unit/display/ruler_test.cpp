#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/ruler.h"

namespace {

struct Tick {
    int32_t x;
    bool major;
    std::string label;
};

class Ruler : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        WaveView.SpanEnd = TIME_FOREVER;
    }
    static std::vector<Tick> ticks() {
        std::vector<Tick> found;
        ForEachRulerTick(
            ChooseRulerSteps(),
            [](const RulerTick &tick, void *context) {
                static_cast<std::vector<Tick> *>(context)->push_back(
                    {tick.x, tick.major, tick.label ? tick.label : ""});
            },
            &found);
        return found;
    }
    static std::vector<std::string> labels() {
        std::vector<std::string> found;
        for (const Tick &tick : ticks()) {
            if (!tick.label.empty()) found.push_back(tick.label);
        }
        return found;
    }
    static TimeVal minorAt(int32_t scale) {
        WaveView.Scale = scale;
        return ChooseRulerSteps().minor;
    }
    static std::string label(TimeVal t) {
        char text[TIME_TEXT_SIZE];
        FormatRulerLabel(t, text);
        return text;
    }
};

} // namespace

TEST_F(Ruler, TicksStandAtLeastEightPixelsApart) {
    EXPECT_EQ(minorAt(4), 1u);
    EXPECT_EQ(minorAt(3), 1u);
    EXPECT_EQ(minorAt(2), 2u);
    EXPECT_EQ(minorAt(1), 5u);
    EXPECT_EQ(minorAt(0), 10u);
    EXPECT_EQ(minorAt(-1), 20u);
    EXPECT_EQ(minorAt(-2), 50u);
    EXPECT_EQ(minorAt(-3), 100u);
    EXPECT_EQ(minorAt(-4), 200u);
    EXPECT_EQ(minorAt(-7), 2000u);
    EXPECT_EQ(minorAt(-10), 10000u);
    EXPECT_EQ(minorAt(-26), 1000000000u);
}

TEST_F(Ruler, OnAFinerScreenTicksStandAsFarApartToTheEye) {
    Headless.screenMagnification = 2.0;
    EXPECT_EQ(minorAt(4), 1u);
    EXPECT_EQ(minorAt(3), 2u);
    EXPECT_EQ(minorAt(0), 20u);
    WaveView.Scale = 4;
    EXPECT_EQ(ChooseRulerSteps().label, 20u); // a long tick every 160 pixels is half of what a label needs
}

TEST_F(Ruler, AScreenTooNarrowForTwoTicksEndsTheSearch) {
    Headless.screenWidth = 4;
    EXPECT_EQ(minorAt(-26), TIME_FOREVER);
    EXPECT_EQ(ticks().size(), 2u);
}

TEST_F(Ruler, EveryTenthTickIsLong) {
    WaveView.Scale = 4;
    RulerSteps steps = ChooseRulerSteps();
    EXPECT_EQ(steps.major, 10u);
    EXPECT_EQ(steps.label, 10u); // 160 pixels apart
}

TEST_F(Ruler, LabelsLessThanAHundredPixelsApartAreHalved) {
    WaveView.Scale = 3;
    EXPECT_EQ(ChooseRulerSteps().major, 10u); // 80 pixels apart
    EXPECT_EQ(ChooseRulerSteps().label, 20u);
    WaveView.Scale = 0;
    EXPECT_EQ(ChooseRulerSteps().label, 100u); // exactly 100
}

TEST_F(Ruler, TicksBeginAtTheFirstStepInView) {
    WaveView.ViewLeft = 95;
    std::vector<Tick> found = ticks();
    ASSERT_EQ(found.size(), 100u);
    EXPECT_EQ(found[0].x, 5);
    EXPECT_TRUE(found[0].major);
    EXPECT_EQ(found[0].label, "100");
    EXPECT_EQ(found[1].x, 15);
    EXPECT_FALSE(found[1].major);
    EXPECT_EQ(found[1].label, "");
    WaveView.ViewLeft = 100;
    EXPECT_EQ(ticks()[0].x, 0);
}

TEST_F(Ruler, TicksEndWithThePane) {
    std::vector<Tick> found = ticks();
    EXPECT_EQ(found.back().x, 1000);
    EXPECT_EQ(found.size(), 101u);
}

TEST_F(Ruler, TicksEndWithTheSpan) {
    WaveView.SpanEnd = 425;
    EXPECT_EQ(ticks().back().x, 420);
    WaveView.ViewLeft = 425;
    EXPECT_TRUE(ticks().empty());
}

TEST_F(Ruler, TicksEndAtTheTopOfTheNumberRange) {
    WaveView.ViewLeft = TIME_FOREVER - 25;
    std::vector<Tick> found = ticks();
    ASSERT_EQ(found.size(), 3u); // 4294967270, ...80 and ...90
    EXPECT_EQ(found.back().x, 20);
    WaveView.ViewLeft = TIME_FOREVER - 2;
    EXPECT_TRUE(ticks().empty());
}

TEST_F(Ruler, LabelsShowTheTimeWithoutItsUnit) {
    EXPECT_EQ(label(0), "0");
    EXPECT_EQ(label(1500), "1,500");
    EXPECT_EQ(label(20), "20");
}

TEST_F(Ruler, LabelsDropZerosBehindThePoint) {
    Settings.Decimals = 3;
    EXPECT_EQ(label(1500), "1.5");
    EXPECT_EQ(label(2000), "2");
    EXPECT_EQ(label(20000), "20");
    EXPECT_EQ(label(1205), "1.205");
    EXPECT_EQ(label(5), ".005");
    EXPECT_EQ(label(0), ""); // no digit stands in front of the point
}

TEST_F(Ruler, EveryLabelledTickIsLong) {
    EXPECT_EQ(labels(), (std::vector<std::string>{"0", "100", "200", "300", "400", "500", "600", "700", "800",
                                                  "900", "1,000"}));
    WaveView.Scale = 3;
    EXPECT_EQ(labels(), (std::vector<std::string>{"0", "20", "40", "60", "80", "100", "120"}));
}

// --- drawn ---

TEST_F(Ruler, IsClearedOverBothPanes) {
    DrawRuler();
    EXPECT_EQ(SelectedPanes(), std::vector{Pane::Ruler});
    EXPECT_EQ(Drawn()[0], Fill(0, 0, 0, 1102, WaveView.RulerHeight - 1));
}

TEST_F(Ruler, SetsTheMinorStepOfTheView) {
    WaveView.Scale = -3;
    DrawRuler();
    EXPECT_EQ(WaveView.TickMinor, 100u);
}

TEST_F(Ruler, DrawsShortLongAndLabelledTicks) {
    WaveView.Scale = 3; // labels at 0, 20, ...; long ticks without one at 10, 30, ...
    WaveView.SpanEnd = 10;
    DrawRuler();
    std::vector<std::string> drawn = DrawnOnTop();
    int32_t origin = 98 + 5;
    int32_t bottom = WaveView.RulerHeight;
    int32_t font = WaveView.FontHeight;
    PixelSize zero = SurfaceTextSize("0");
    ASSERT_EQ(drawn.size(), 2u + 9u + 2u);
    EXPECT_EQ(drawn[0], Line(15, {{origin, bottom}, {origin, bottom - font + 2}}));
    EXPECT_EQ(drawn[1], TextAt(15, "0", origin - zero.width / 2, bottom - font - zero.height));
    EXPECT_EQ(drawn[2], Line(15, {{origin + 8, bottom}, {origin + 8, bottom - font / 2}}));
    EXPECT_EQ(drawn[11], Line(15, {{origin + 80, bottom}, {origin + 80, bottom - font + 2}}));
    EXPECT_EQ(drawn[12], Line(15, {{origin + 80, bottom}, {origin + 80, bottom - font}}));
}

TEST_F(Ruler, HasTheColourOfTheNames) {
    ColorSettings[WaveName] = 9;
    WaveView.SpanEnd = 10;
    DrawRuler();
    ColorSettings[WaveName] = 15;
    std::vector<std::string> drawn = DrawnOnTop();
    ASSERT_FALSE(drawn.empty());
    for (const std::string &call : drawn) EXPECT_TRUE(call.starts_with("9 ")) << call;
}
