#include "unit/display/display_fixture.h"

using RowMetrics = Display;

TEST_F(RowMetrics, FollowTheFontAndTheSettings) {
    FontMetrics font = MainFontMetrics();
    Settings.WaveTextPadding = 3;
    Settings.WaveGap = 5;
    InitWaveMetrics();
    EXPECT_EQ(WaveView.FontHeight, font.height + font.height % 2);
    EXPECT_EQ(WaveView.FontCharWidth, font.averageWidth);
    EXPECT_EQ(WaveView.WaveHeight, WaveView.FontHeight + 6);
    EXPECT_EQ(WaveView.RowHeight, WaveView.WaveHeight + 10);
    EXPECT_EQ(WaveView.RulerHeight, 2 * WaveView.FontHeight + 2);
}

TEST_F(RowMetrics, TheFontsHeightIsMadeEven) {
    Headless.fontHeight = 13;
    InitWaveMetrics();
    EXPECT_EQ(WaveView.FontHeight, 14);
    Headless.fontHeight = 14;
    InitWaveMetrics();
    EXPECT_EQ(WaveView.FontHeight, 14);
}

TEST_F(RowMetrics, TooSmallSettingsAreRaisedForGood) {
    Settings.WaveTextPadding = 1;
    Settings.WaveGap = -3;
    InitWaveMetrics();
    EXPECT_EQ(Settings.WaveTextPadding, 2);
    EXPECT_EQ(Settings.WaveGap, 4);
    EXPECT_EQ(WaveView.RowHeight, WaveView.FontHeight + 4 + 8);
}

TEST_F(RowMetrics, TheLeastSettingsStay) {
    Settings.WaveTextPadding = 2;
    Settings.WaveGap = 4;
    InitWaveMetrics();
    EXPECT_EQ(Settings.WaveTextPadding, 2);
    EXPECT_EQ(Settings.WaveGap, 4);
}
