#include "shell/window_positions.h"

#include "config/paths.h"
#include "shell/frame_layout.h"
#include "unit/support/fresh_store.h"

namespace {

constexpr ScreenMeasures screen = {1024, 768, 18, 20};

bool operator==(const WindowPlace &a, const WindowPlace &b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

std::string Text(const PixelRect &r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

class StoredPlaces : public testing::Test {
protected:
    void SetUp() override {
        InitPaths();
        snprintf(SettingsIniPath, sizeof SettingsIniPath, "%s", directory.file("Kelvane.ini").c_str());
    }
    void TearDown() override { InitPaths(); }
    ScratchDirectory directory;
};

} // namespace

TEST(WindowPlaces, FourNumbersMakeAPlace) {
    WindowPlace place;
    ASSERT_TRUE(ParseWindowPlace("10,-20,300,400", place));
    EXPECT_TRUE((place == WindowPlace{10, -20, 300, 400}));
    EXPECT_TRUE(ParseWindowPlace(" 1, 2, 3, 4 rest", place));
}

TEST(WindowPlaces, TextThatDoesNotHoldFourNumbersIsNoPlace) {
    WindowPlace place;
    for (const char *text : {"", "1", "1,2,3", "1,2,3,", "1,2,,4", "a,2,3,4", "1 2 3 4", "1;2;3;4"})
        EXPECT_FALSE(ParseWindowPlace(text, place)) << text;
}

TEST(WindowPlaces, NumbersBeyondAScreenAreCut) {
    WindowPlace place;
    ASSERT_TRUE(ParseWindowPlace("-99999999999999999999,0,99999999999999999999,5", place));
    EXPECT_TRUE((place == WindowPlace{-32767, 0, 32767, 5}));
    FitToScreen(place, screen);
}

TEST(WindowPlaces, APlaceOnTheScreenStays) {
    WindowPlace place = {100, 50, 500, 400};
    EXPECT_TRUE(FitToScreen(place, screen) == place);
}

TEST(WindowPlaces, APlaceLeftOfTheScreenIsPulledRight) {
    EXPECT_TRUE((FitToScreen({-400, 10, 36, 300}, screen) == WindowPlace{-395, 10, 41, 300}));
    EXPECT_TRUE((FitToScreen({-400, 10, 37, 300}, screen) == WindowPlace{-400, 10, 37, 300}));
}

TEST(WindowPlaces, APlaceRightOfTheScreenIsPulledLeft) {
    EXPECT_TRUE((FitToScreen({1006, 10, 1406, 300}, screen) == WindowPlace{1001, 10, 1401, 300}));
    EXPECT_TRUE((FitToScreen({1005, 10, 1405, 300}, screen) == WindowPlace{1005, 10, 1405, 300}));
}

TEST(WindowPlaces, APlaceAboveOrBelowTheScreenIsPulledInside) {
    EXPECT_TRUE((FitToScreen({10, -30, 400, 300}, screen) == WindowPlace{10, 0, 400, 330}));
    EXPECT_TRUE((FitToScreen({10, 748, 400, 900}, screen) == WindowPlace{10, 743, 400, 895}));
    EXPECT_TRUE((FitToScreen({10, 747, 400, 900}, screen) == WindowPlace{10, 747, 400, 900}));
}

TEST(WindowPlaces, TheTextWindowStandsInTheLowerRightCorner) {
    EXPECT_TRUE((DefaultTextPlace(1200, 900) == WindowPlace{780, 430, 1180, 880}));
}

TEST_F(StoredPlaces, APlaceIsStoredUnderItsKeyAndReadBack) {
    WindowPlace place;
    EXPECT_FALSE(ReadWindowPlace(FRAME_PLACE_KEY, place));
    StoreWindowPlace(FRAME_PLACE_KEY, {1, 2, 300, 400});
    ASSERT_TRUE(ReadWindowPlace(FRAME_PLACE_KEY, place));
    EXPECT_TRUE((place == WindowPlace{1, 2, 300, 400}));
    std::string text = ReadWholeFile(SettingsIniPath);
    EXPECT_NE(text.find("[windows]"), std::string::npos) << text;
    EXPECT_NE(text.find("Main-Pos=1,2,300,400"), std::string::npos) << text;
}

TEST_F(StoredPlaces, EachWindowHasAKeyOfItsOwn) {
    StoreWindowPlace(FRAME_PLACE_KEY, {1, 2, 3, 4});
    StoreWindowPlace(TEXT_PLACE_KEY, {5, 6, 7, 8});
    StoreWindowPlace(NAME_PLACE_KEY, {9, 10, 11, 12});
    std::string text = ReadWholeFile(SettingsIniPath);
    for (const char *line : {"Main-Pos=1,2,3,4", "Text-Pos=5,6,7,8", "Name-Pos=9,10,11,12"})
        EXPECT_NE(text.find(line), std::string::npos) << text;
}

TEST_F(StoredPlaces, WithoutAConfigurationNothingIsStored) {
    SettingsIniPath[0] = '\0';
    StoreWindowPlace(FRAME_PLACE_KEY, {1, 2, 300, 400});
    WindowPlace place;
    EXPECT_FALSE(ReadWindowPlace(FRAME_PLACE_KEY, place));
}

// --- the layout of the main window ----------------------------------------------------------------

TEST(FrameLayouts, PanelsAndPromptShareTheClientArea) {
    FrameLayout layout = LayOutFrame({800, 600, 20, 34, 100});
    EXPECT_EQ(Text(layout.ruler), "0,0,800,34");
    EXPECT_EQ(Text(layout.names), "0,34,100,580");
    EXPECT_EQ(Text(layout.waves), "103,34,800,580");
    EXPECT_EQ(Text(layout.prompt), "0,580,800,600");
}

TEST(FrameLayouts, ATinyWindowLeavesThePanelsEmptyButNotNegative) {
    FrameLayout layout = LayOutFrame({50, 30, 20, 34, 100});
    EXPECT_EQ(Text(layout.names), "0,34,100,34");
    EXPECT_EQ(Text(layout.waves), "103,34,103,34");
}

TEST(Splitter, TakesAPressOnTheGapAndItsEdges) {
    EXPECT_FALSE(OnSplitter(99, 100));
    EXPECT_TRUE(OnSplitter(100, 100));
    EXPECT_TRUE(OnSplitter(103, 100));
    EXPECT_FALSE(OnSplitter(104, 100));
}

TEST(Splitter, LeavesRoomForTheScrollArrows) {
    EXPECT_EQ(SplitterAt(200, 100, 800, 16), 200);
    EXPECT_EQ(SplitterAt(-5, 100, 800, 16), 16);
    EXPECT_EQ(SplitterAt(799, 100, 800, 16), 768);
}

TEST(Splitter, StaysInAWindowThatIsTooNarrow) {
    EXPECT_EQ(SplitterAt(20, 10, 47, 16), 10);
    EXPECT_EQ(SplitterAt(20, 10, 48, 16), 16);
}
