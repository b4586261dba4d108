// What lies over the panels of the running program: the cursor, the mark, the selection frame, and the
// mouse's marker in the ruler.

#include "display/wave_view.h"
#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <functional>
#include <gtest/gtest.h>

namespace {

constexpr const char *DOCUMENT = "%MASTERCLOCKMULT = 1;\n"
                                 "%SMALLESTUNIT = 12;\n"
                                 "%DECIMALS = 0;\n"
                                 "%ENDTIME = 1000;\n"
                                 "CLK { In Default None 0 1 50 } = (0 50 1 50)#10;\n"
                                 "DENSE { Out Default None 0 1 50 } = (0 1 1 1)#500;\n"
                                 "D[7:0] { Bid Default None 0 1 50 } = a5 300 5a 300 ff 400;\n";
constexpr const char *WAVE_LIST = "Wave CLK\nWave DENSE\nWave D[7:0]\n";
constexpr uint32_t SPAN_END = 1250;

// A window of the test's own in front of the program.
class Cover {
public:
    explicit Cover(const RECT &place)
        : window(CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, "Static", "",
                                 WS_POPUP | WS_VISIBLE, place.left, place.top, place.right - place.left,
                                 place.bottom - place.top, nullptr, nullptr, nullptr, nullptr)) {
        UpdateWindow(window);
    }
    ~Cover() {
        if (window) DestroyWindow(window);
    }
    Cover(const Cover &) = delete;
    Cover &operator=(const Cover &) = delete;
    HWND window;
};

class OverThePanels : public testing::Test {
protected:
    void SetUp() override {
        directory.write("waves.wdl", DOCUMENT);
        directory.write("waves.kel", WAVE_LIST);
        directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=20,20,1000,640\r\n");
        // Beside the window to come, as the ruler's marker follows the mouse.
        MoveMouse(GetSystemMetrics(SM_CXSCREEN) - 2, GetSystemMetrics(SM_CYSCREEN) - 2);
        editor = std::make_unique<Editor>(directory, "waves.wdl");
        ASSERT_TRUE(editor->open());
    }
    Picture waves() const { return PictureOfClient(editor->pane(3)); }
    int x(uint32_t time) const {
        int scale = ExpectedScale(SPAN_END, waves().width);
        return static_cast<int>(scale > 0 ? time << scale : time >> -scale);
    }
    // Changes the view in the program's memory, as the commands of the mark and the gestures will do it, and
    // redraws.
    bool plant(const std::function<void(WaveViewRecord &)> &change) const {
        WaveViewRecord view;
        uint8_t *place = editor->address("WaveView");
        if (!place || !editor->readMemory(place, &view, sizeof view)) return false;
        change(view);
        if (!editor->writeMemory(place, &view, sizeof view)) return false;
        editor->command(COMMAND_REDRAW);
        return editor->painted();
    }
    bool plantAll() const {
        return plant([](WaveViewRecord &view) {
            view.CursorTime = 420;
            view.MarkTime = 130;
            view.MarkActive = true;
            view.SelectActive = true;
            view.SelectRow = 1;
            view.SelectStart = 300;
            view.SelectEnd = 600;
        });
    }
    void resize(int width, int height) const {
        SetWindowPos(editor->frame(), nullptr, 0, 0, width, height,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        EXPECT_TRUE(editor->painted());
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Expected sizes = ExpectedSizes();
};

} // namespace

TEST_F(OverThePanels, TheCursorStandsAtTimeZeroFromTheStart) {
    Picture picture = waves();
    EXPECT_EQ(picture.count(colour::black, 0, 0, 1, picture.height), picture.height);
    EXPECT_EQ(picture.count(colour::black, 1, 0, 2, sizes.rowHeight), 0);
}

TEST_F(OverThePanels, TheMousesMarkerStandsInTheRulerFromTheStart) {
    Picture ruler = PictureOfClient(editor->pane(1));
    RECT names = {};
    GetClientRect(editor->pane(2), &names);
    int column = names.right + 5, tip = sizes.rulerHeight - sizes.fontHeight / 2;
    // It inverts what it covers: the background beside the tick becomes black, and the tick white.
    EXPECT_EQ(ruler.count(colour::black, column - 2, tip - 6, column, tip - 5), 2);
    EXPECT_EQ(ruler.count(colour::black, column + 1, tip - 6, column + 3, tip - 5), 2);
    EXPECT_EQ(ruler.at(column, tip - 3), colour::white);
    EXPECT_EQ(ruler.count(colour::black, column - 8, tip - 6, column - 4, tip - 5), 0);
    EXPECT_GT(ruler.count(colour::black, 0, 0, sizes.nameColumnWidth - sizes.charWidth, ruler.height), 10);
}

TEST_F(OverThePanels, MarkFrameAndCursorLieOverTheWavesAndComeOffAgain) {
    Picture before = waves();
    ASSERT_TRUE(plantAll());
    editor->shoot("overlay");
    Picture picture = waves();
    EXPECT_EQ(picture.count(colour::black, x(130), 0, x(130) + 1, picture.height), picture.height);
    int bottom = 2 * sizes.rowHeight - sizes.waveGap + 2, top = bottom - sizes.waveHeight - 7;
    for (int y : {top, top + 1, bottom, bottom + 1})
        EXPECT_GE(picture.count(colour::black, x(300) + 1, y, x(600), y + 1), x(600) - x(300) - 2) << y;
    EXPECT_EQ(picture.count(colour::black, x(420), 0, x(420) + 1, top), top);
    EXPECT_EQ(picture.count(colour::black, x(420), bottom, x(420) + 1, picture.height),
              picture.height - bottom);
    EXPECT_GT(picture.count(colour::white, x(420), top + 2, x(420) + 1, bottom), 0);
    ASSERT_TRUE(plant([](WaveViewRecord &view) {
        view.CursorTime = 0;
        view.MarkActive = false;
        view.SelectActive = false;
        view.SelectRow = NO_ROW;
    }));
    EXPECT_TRUE(waves() == before);
}

TEST_F(OverThePanels, ItSurvivesBeingCovered) {
    ASSERT_TRUE(plantAll());
    Picture before = waves();
    RECT place = PlaceOf(editor->pane(3));
    for (auto [left, top, right, bottom] :
         {std::tuple(x(100), 10, x(200), 60), {x(350), 0, x(450), 40}, {-20, 20, x(700), 90}}) {
        {
            RECT part = {place.left + left, place.top + top, place.left + right, place.top + bottom};
            Cover cover(part);
            ASSERT_TRUE(WaitFor([&] { return !(waves() == before); }));
        }
        ASSERT_TRUE(editor->painted());
        EXPECT_TRUE(waves() == before) << left;
    }
}

TEST_F(OverThePanels, ItSurvivesResizing) {
    ASSERT_TRUE(plantAll());
    Picture before = waves();
    RECT place = PlaceOf(editor->frame());
    int width = place.right - place.left, height = place.bottom - place.top;
    for (auto [w, h] : {std::pair(width - 500, height - 300), {width - 77, height - 200}, {width, height}})
        resize(w, h);
    EXPECT_TRUE(waves() == before);
}

TEST_F(OverThePanels, ScrollingToAndFroLeavesNothingBehind) {
    ASSERT_TRUE(plantAll());
    resize(500, 300);
    Picture before = waves();
    for (WPARAM there : {SB_LINEDOWN, SB_PAGEDOWN}) {
        SendMessageA(editor->pane(3), WM_HSCROLL, there, 0);
        EXPECT_TRUE(editor->painted());
        EXPECT_FALSE(waves() == before);
        SendMessageA(editor->pane(3), WM_HSCROLL, SB_TOP, 0);
        EXPECT_TRUE(editor->painted());
        EXPECT_TRUE(waves() == before) << there;
    }
    // One that cannot go further changes nothing.
    SendMessageA(editor->pane(3), WM_HSCROLL, SB_LINEUP, 0);
    EXPECT_TRUE(waves() == before);
}

TEST_F(OverThePanels, APressOnTheBorderThatMovesNothingLeavesItOn) {
    Picture before = waves();
    POINT grip = {sizes.nameColumnWidth, 200};
    ClientToScreen(editor->frame(), &grip);
    ClickAt(grip.x, grip.y);
    EXPECT_TRUE(HasCapture(editor->frame(), false));
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(waves() == before);
}

TEST_F(OverThePanels, ALoadStartsWithTheCursorAtZeroAgain) {
    ASSERT_TRUE(plantAll());
    editor->command(COMMAND_NEW);
    ASSERT_TRUE(WaitFor([&] { return editor->title().find("untitled") != std::string::npos; }));
    ASSERT_TRUE(editor->painted());
    Picture picture = waves();
    EXPECT_EQ(picture.count(colour::black, 0, 0, picture.width, picture.height), picture.height);
    EXPECT_EQ(picture.count(colour::black, 0, 0, 1, picture.height), picture.height);
}
