#include "unit/display/display_fixture.h"

using TimeMapping = Display;

namespace {

void Scale(int32_t scale) {
    WaveView.Scale = scale;
}

} // namespace

TEST_F(TimeMapping, APositiveScaleMagnifies) {
    Scale(3);
    EXPECT_EQ(TimeToPixels(5), 40);
    EXPECT_EQ(PixelsToTime(47), 5u);
}

TEST_F(TimeMapping, ANegativeScaleShrinks) {
    Scale(-4);
    EXPECT_EQ(TimeToPixels(47), 2);
    EXPECT_EQ(PixelsToTime(3), 48u);
}

TEST_F(TimeMapping, ScaleZeroIsOnePixelAUnit) {
    Scale(0);
    EXPECT_EQ(TimeToPixels(700), 700);
    EXPECT_EQ(PixelsToTime(700), 700u);
}

TEST_F(TimeMapping, PixelsEndAtTheScreensWidth) {
    for (int32_t scale : {4, 1, 0, -1, -21}) {
        Scale(scale);
        EXPECT_EQ(TimeToPixels(TIME_FOREVER), 1024) << scale;
    }
    Scale(4);
    EXPECT_EQ(TimeToPixels(63), 1008);
    EXPECT_EQ(TimeToPixels(64), 1024);
    EXPECT_EQ(TimeToPixels(65), 1024);
    EXPECT_EQ(TimeToPixels(0x10000001), 1024); // whose shift would leave 32 bits
}

TEST_F(TimeMapping, TimesEndAtForever) {
    Scale(-26);
    EXPECT_EQ(PixelsToTime(63), 63u << 26);
    EXPECT_EQ(PixelsToTime(64), TIME_FOREVER);
    EXPECT_EQ(PixelsToTime(INT32_MAX), TIME_FOREVER);
}

TEST_F(TimeMapping, NoScaleShiftsOutOfRange) {
    for (int32_t scale : {40, 32, -32, -40, INT32_MIN, INT32_MAX}) {
        Scale(scale);
        EXPECT_EQ(TimeToPixels(0), 0);
        EXPECT_EQ(TimeToPixels(TIME_FOREVER), scale > 0 ? 1024 : 0) << scale;
        EXPECT_EQ(PixelsToTime(5), scale > 0 ? 0u : TIME_FOREVER) << scale;
    }
}

TEST_F(TimeMapping, NegativePixelsAreNoTime) {
    Scale(-3);
    EXPECT_EQ(PixelsToTime(-5), 0u);
}

TEST_F(TimeMapping, PixelsCountFromTheLeftEdgeOfTheView) {
    WaveView.ViewLeft = 500;
    EXPECT_EQ(PixelOf(500), 0);
    EXPECT_EQ(PixelOf(510), 10);
    EXPECT_EQ(PixelOf(490), -10);
}

TEST_F(TimeMapping, AFarPointLiesOneScreenWidthOff) {
    WaveView.ViewLeft = 0x80000000;
    EXPECT_EQ(PixelOf(0), -1024);
    EXPECT_EQ(PixelOf(TIME_FOREVER), 1024);
}

TEST_F(TimeMapping, TheLeastScaleShowsNoMoreThanTheAxisOnTheScreen) {
    for (auto [width, scale] :
         {std::pair(1024, -21), {640, -22}, {1023, -22}, {1920, -21}, {32, -26}, {31, -26}, {1, -26}}) {
        Headless.screenWidth = width;
        EXPECT_EQ(MinScale(), scale) << width;
    }
}

TEST_F(TimeMapping, TheGreatestScaleFollowsTheSpan) {
    for (auto [length, scale] : {std::pair(1u, 4),
                                 {1u << 27, 4},
                                 {1u << 28, 3},
                                 {1u << 29, 2},
                                 {1u << 30, 1},
                                 {1u << 31, 0},
                                 {TIME_FOREVER, 0},
                                 {0u, 4}}) {
        WaveView.SpanEnd = length;
        EXPECT_EQ(MaxScale(), scale) << length;
    }
}
