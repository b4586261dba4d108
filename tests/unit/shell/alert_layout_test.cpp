#include "shell/alert_layout.h"
#include <gtest/gtest.h>

namespace {

// Base units of 8 by 16 pixels: a margin is 12 to each side and 12 above, lines step by 4 more than they are
// high, and 24 go to each button's label.
AlertMeasures Measures(std::vector<int> lines, std::vector<int> buttons, int iconSize = 0) {
    AlertMeasures m = {};
    m.baseX = 8;
    m.baseY = 16;
    m.lineHeight = 16;
    m.buttonHeight = 28;
    for (size_t i = 0; i < lines.size(); ++i) {
        m.lineThere[i] = lines[i] > 0;
        m.lineWidths[i] = lines[i];
    }
    for (size_t i = 0; i < buttons.size(); ++i) {
        m.buttonThere[i] = buttons[i] > 0;
        m.buttonWidths[i] = buttons[i];
    }
    m.iconThere = iconSize > 0;
    m.iconWidth = m.iconHeight = iconSize;
    return m;
}

using Box = std::vector<int>;
Box Of(const AlertPlace &r) {
    return {r.x, r.y, r.width, r.height};
}

} // namespace

TEST(AlertLayout, OneLineAndOneButtonHaveNoGapsForTheOthers) {
    AlertLayout layout = LayOutAlert(Measures({200}, {16}));
    EXPECT_EQ(layout.width, 200 + 24);
    EXPECT_EQ(layout.height, 16 + 36 + 28);
    EXPECT_EQ(Of(layout.lines[0]), Box({12, 12, 200, 16}));
    EXPECT_EQ(Of(layout.buttons[0]), Box({12 + 80, 40, 40, 28})) << "centred";
    for (int i : {1, 2}) {
        EXPECT_EQ(Of(layout.lines[i]), Box({0, 0, 0, 0}));
        EXPECT_EQ(Of(layout.buttons[i]), Box({0, 0, 0, 0}));
    }
}

TEST(AlertLayout, TheSpaceBelowTheButtonsEqualsTheSpaceAboveTheText) {
    AlertLayout layout = LayOutAlert(Measures({100, 50, 70}, {16}));
    EXPECT_EQ(layout.height - (layout.buttons[0].y + layout.buttons[0].height), 12);
}

TEST(AlertLayout, LinesStandBelowEachOther) {
    AlertLayout layout = LayOutAlert(Measures({100, 50, 70}, {16}));
    EXPECT_EQ(Of(layout.lines[0]), Box({12, 12, 100, 16}));
    EXPECT_EQ(Of(layout.lines[1]), Box({12, 32, 50, 16}));
    EXPECT_EQ(Of(layout.lines[2]), Box({12, 52, 70, 16}));
    EXPECT_EQ(layout.height, 3 * 16 + 2 * 4 + 36 + 28);
}

TEST(AlertLayout, AMissingLineInTheMiddleLeavesNoGap) {
    AlertLayout layout = LayOutAlert(Measures({100, 0, 70}, {16}));
    EXPECT_EQ(Of(layout.lines[2]), Box({12, 32, 70, 16}));
}

TEST(AlertLayout, ATallIconHasTheTextCentredAgainstIt) {
    AlertLayout layout = LayOutAlert(Measures({100}, {16}, 33));
    EXPECT_EQ(Of(layout.icon), Box({12, 12, 33, 33}));
    EXPECT_EQ(Of(layout.lines[0]), Box({12 + 33 + 16, 12 + 8, 100, 16})) << "half of 17, rounded down";
    EXPECT_EQ(layout.height, 33 + 36 + 28);
    EXPECT_EQ(layout.width, 33 + 16 + 100 + 24);
    EXPECT_EQ(layout.buttons[0].y, 12 + 33 + 12);
}

TEST(AlertLayout, TallTextHasTheIconCentredAgainstIt) {
    AlertLayout layout = LayOutAlert(Measures({100, 100, 100}, {16}, 33));
    EXPECT_EQ(Of(layout.icon), Box({12, 12 + 11, 33, 33})) << "half of 56 - 33, rounded down";
    EXPECT_EQ(layout.lines[0].y, 12);
    EXPECT_EQ(layout.height, 56 + 36 + 28);
}

TEST(AlertLayout, AllButtonsAreAsWideAsTheWidest) {
    AlertLayout layout = LayOutAlert(Measures({400}, {16, 36, 26}));
    // Three of 60 with 8 between them: 196. The spare 204 goes into four gaps of 51.
    EXPECT_EQ(Of(layout.buttons[0]), Box({12 + 51, 40, 60, 28}));
    EXPECT_EQ(Of(layout.buttons[1]), Box({12 + 51 + 119, 40, 60, 28}));
    EXPECT_EQ(Of(layout.buttons[2]), Box({12 + 51 + 238, 40, 60, 28}));
}

TEST(AlertLayout, AWideRowOfButtonsHasTheTextCentredAboveIt) {
    AlertLayout layout = LayOutAlert(Measures({50}, {16, 36}, 0));
    EXPECT_EQ(layout.width, 128 + 24);
    EXPECT_EQ(layout.lines[0].x, 12 + 39);
    EXPECT_EQ(layout.buttons[0].x, 12);
    EXPECT_EQ(layout.buttons[1].x, 12 + 68);
}

TEST(AlertLayout, AWideRowOfButtonsMovesTheIconToo) {
    AlertLayout layout = LayOutAlert(Measures({50}, {16, 36}, 16));
    EXPECT_EQ(layout.icon.x, 12 + (128 - 82) / 2);
    EXPECT_EQ(layout.lines[0].x, layout.icon.x + 16 + 16);
}
