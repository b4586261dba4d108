// Where the panels and the prompt line stand, after the start, after resizing and after dragging the border.

#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

std::string Text(const RECT &r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
}

class Layout : public testing::Test {
protected:
    void SetUp() override {
        directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=40,30,940,630\r\n");
        directory.write("one.wdl", "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n");
        directory.write("one.kel", "Wave A\n");
    }
    static RECT Client(HWND window) {
        RECT client;
        GetClientRect(window, &client);
        return client;
    }
    // Everything at its place for this width of the name column.
    static void ExpectPlaces(const Editor &editor, int names) {
        Expected sizes = ExpectedSizes();
        RECT client = Client(editor.frame());
        int bottom = client.bottom - sizes.promptHeight;
        auto place = [&](HWND window) { return Text(PlaceIn(editor.frame(), window)); };
        EXPECT_EQ(place(editor.pane(1)), Text({0, 0, client.right, sizes.rulerHeight}));
        EXPECT_EQ(place(editor.pane(2)), Text({0, sizes.rulerHeight, names, bottom}));
        EXPECT_EQ(place(editor.pane(3)), Text({names + 3, sizes.rulerHeight, client.right, bottom}));
        EXPECT_EQ(place(editor.prompt()), Text({0, bottom, client.right, client.bottom}));
    }
    // Drags the border with the mouse from the middle of the gap to `x` in the main window.
    static void DragBorder(const Editor &editor, int names, int x) {
        POINT from = {names + 1, 200}, to = {x, 220};
        ClientToScreen(editor.frame(), &from);
        ClientToScreen(editor.frame(), &to);
        MoveMouse(from.x, from.y);
        PressButton(true);
        EXPECT_TRUE(HasCapture(editor.frame(), true));
        for (int step = 1; step <= 4; ++step)
            MoveMouse(from.x + (to.x - from.x) * step / 4, from.y + (to.y - from.y) * step / 4);
        PressButton(false);
        EXPECT_TRUE(HasCapture(editor.frame(), false));
    }
    static testing::AssertionResult NamesBecome(const Editor &editor, int width) {
        int is = 0;
        bool become = WaitFor(
            [&] {
                RECT place = PlaceIn(editor.frame(), editor.pane(2));
                is = place.right - place.left;
                return is == width;
            },
            10);
        return (become ? testing::AssertionSuccess() : testing::AssertionFailure())
               << "the names are " << is << " wide, not " << width;
    }

    TestDirectory directory;
};

} // namespace

TEST_F(Layout, TheMainWindowStandsWhereItWasLeft) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(Text(PlaceOf(editor.frame())), "40,30,940,630");
}

TEST_F(Layout, APlaceOffTheScreenIsPulledIn) {
    int width = GetSystemMetrics(SM_CXSCREEN);
    directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=" + std::to_string(width + 500) + ",-90," +
                                               std::to_string(width + 1300) + ",500\r\n");
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(WaitFor([&] { return editor.pane(3) != nullptr; }));
    int left = width - GetSystemMetrics(SM_CXSIZE) - 5;
    EXPECT_EQ(Text(PlaceOf(editor.frame())), Text({left, 0, left + 800, 590}));
}

TEST_F(Layout, PanelsAndPromptLineStandAtTheirPlaces) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    ExpectPlaces(editor, ExpectedSizes().nameColumnWidth);
    editor.shoot("layout");
}

TEST_F(Layout, TheTextWindowStandsHiddenInTheLowerRightCorner) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    HWND text = editor.window("ListBox");
    ASSERT_NE(text, nullptr);
    EXPECT_FALSE(IsWindowVisible(text));
    EXPECT_EQ(GetWindow(text, GW_OWNER), editor.frame());
    int right = GetSystemMetrics(SM_CXSCREEN) - 20, bottom = GetSystemMetrics(SM_CYSCREEN) - 20;
    EXPECT_EQ(Text(PlaceOf(text)), Text({right - GetSystemMetrics(SM_CXSCREEN) / 3,
                                         bottom - GetSystemMetrics(SM_CYSCREEN) / 2, right, bottom}));
    // Closing only hides it.
    ShowWindow(text, SW_SHOWNOACTIVATE);
    SendMessageA(text, WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindow(text));
    EXPECT_FALSE(IsWindowVisible(text));
}

TEST_F(Layout, TheTextWindowIsPulledOntoTheScreenAndKeptForTheNextStart) {
    int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    RECT away = {width, height, width + 300, height + 200};
    directory.write("config\\Kelvane.ini", "[windows]\r\nText-Pos=" + Text(away) + "\r\n");
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    HWND text = editor.window("ListBox");
    int left = width - GetSystemMetrics(SM_CXSIZE) - 5, top = height - GetSystemMetrics(SM_CYCAPTION) - 5;
    EXPECT_EQ(Text(PlaceOf(text)), Text({left, top, left + 300, top + 200}));
    SetWindowPos(text, nullptr, 120, 90, 340, 210, SWP_NOZORDER | SWP_NOACTIVATE);
    editor.close();
    ASSERT_EQ(editor.ended(), 0u);
    std::string ini = directory.read("config\\Kelvane.ini");
    EXPECT_NE(ini.find("Text-Pos=120,90,460,300"), std::string::npos) << ini;
}

TEST_F(Layout, ANameColumnWiderThanTheScreenIsCut) {
    directory.write("config\\Kelvane.ini", "[windows]\r\nName-Pos=0,0,30000,100\r\n");
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(WaitFor([&] { return editor.pane(3) != nullptr; }));
    EXPECT_TRUE(NamesBecome(editor, GetSystemMetrics(SM_CXFULLSCREEN) - 2 * GetSystemMetrics(SM_CXVSCROLL)));
}

TEST_F(Layout, TheMessageWindowIsNeverShown) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    HWND window = editor.window("OGX.Murrel.MsgWindow");
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(IsWindowVisible(window));
}

TEST_F(Layout, OnlyTheNamesAndTheWavesHaveScrollBars) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    constexpr LONG bars = WS_HSCROLL | WS_VSCROLL;
    EXPECT_EQ(GetWindowLongA(editor.pane(1), GWL_STYLE) & bars, 0);
    EXPECT_EQ(GetWindowLongA(editor.pane(2), GWL_STYLE) & bars, WS_HSCROLL);
    EXPECT_EQ(GetWindowLongA(editor.pane(3), GWL_STYLE) & bars, bars);
}

TEST_F(Layout, ResizingMovesThemAlongAndPaintsAnew) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    for (SIZE size : {SIZE{700, 500}, SIZE{1000, 760}, SIZE{420, 300}}) {
        SetWindowPos(editor.frame(), nullptr, 10, 10, size.cx, size.cy, SWP_NOZORDER);
        ASSERT_TRUE(editor.painted());
        ExpectPlaces(editor, ExpectedSizes().nameColumnWidth);
        EXPECT_GT(PictureOfClient(editor.pane(3)).count(colour::blue, 0, 0, 400, 40), 0);
    }
    editor.shoot("layout-small");
}

TEST_F(Layout, MaximizingAndRestoringKeepTheLayout) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    ShowWindow(editor.frame(), SW_MAXIMIZE);
    ASSERT_TRUE(editor.painted());
    ExpectPlaces(editor, ExpectedSizes().nameColumnWidth);
    ShowWindow(editor.frame(), SW_RESTORE);
    ASSERT_TRUE(editor.painted());
    ExpectPlaces(editor, ExpectedSizes().nameColumnWidth);
    EXPECT_EQ(Text(PlaceOf(editor.frame())), "40,30,940,630");
}

TEST_F(Layout, DraggingTheBorderMovesNamesAndWaves) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    int names = ExpectedSizes().nameColumnWidth;
    DragBorder(editor, names, names + 80);
    ASSERT_TRUE(NamesBecome(editor, names + 80));
    ASSERT_TRUE(editor.painted());
    ExpectPlaces(editor, names + 80);
    editor.shoot("layout-border-dragged");
}

TEST_F(Layout, TheBorderLeavesRoomForTheScrollArrows) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    int names = ExpectedSizes().nameColumnWidth;
    int arrow = GetSystemMetrics(SM_CXHSCROLL);
    DragBorder(editor, names, 2);
    EXPECT_TRUE(NamesBecome(editor, arrow));
    ASSERT_TRUE(editor.painted());
    int width = Client(editor.frame()).right;
    DragBorder(editor, arrow, width - 3);
    EXPECT_TRUE(NamesBecome(editor, width - 2 * arrow));
}

TEST_F(Layout, TheRubberLineLeavesNothingBehind) {
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    int names = ExpectedSizes().nameColumnWidth;
    // An erased panel takes the mouse's marker off the ruler, and a painted ruler shows it again.
    auto picture = [&] {
        InvalidateRect(editor.pane(1), nullptr, TRUE);
        EXPECT_TRUE(editor.painted());
        return editor.picture();
    };
    Picture before = picture();
    DragBorder(editor, names, names + 90);
    ASSERT_TRUE(NamesBecome(editor, names + 90));
    ASSERT_TRUE(editor.painted());
    DragBorder(editor, names + 90, names);
    ASSERT_TRUE(NamesBecome(editor, names));
    ASSERT_TRUE(editor.painted());
    EXPECT_TRUE(picture() == before);
}

TEST_F(Layout, ThePlacesAreLeftForTheNextStart) {
    int names = ExpectedSizes().nameColumnWidth;
    {
        Editor editor(directory, "one.wdl");
        ASSERT_TRUE(editor.open());
        SetWindowPos(editor.frame(), nullptr, 60, 50, 800, 500, SWP_NOZORDER);
        ASSERT_TRUE(editor.painted());
        DragBorder(editor, names, names + 40);
        ASSERT_TRUE(NamesBecome(editor, names + 40));
        editor.close();
        ASSERT_EQ(editor.ended(), 0u);
    }
    std::string ini = directory.read("config\\Kelvane.ini");
    EXPECT_NE(ini.find("Main-Pos=60,50,860,550"), std::string::npos) << ini;
    EXPECT_NE(ini.find("Text-Pos="), std::string::npos) << ini;
    EXPECT_NE(ini.find("Name-Pos="), std::string::npos) << ini;
    EXPECT_NE(ini.find("[Preferences]"), std::string::npos) << ini;
    Editor again(directory, "one.wdl");
    ASSERT_TRUE(again.open());
    EXPECT_EQ(Text(PlaceOf(again.frame())), "60,50,860,550");
    ExpectPlaces(again, names + 40);
}

TEST_F(Layout, ADamagedPlaceCountsAsNone) {
    directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=1,2,x\r\nName-Pos=,,,\r\n");
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    ExpectPlaces(editor, ExpectedSizes().nameColumnWidth);
}
