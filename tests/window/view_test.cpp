// The view driven with real mouse and keyboard: zooming, panning, jumping, the mark, picking rows, the wheel,
// and a file that is dropped.

#include "display/wave_view.h"
#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>
#include <shlobj.h>

namespace {

constexpr int TICK_OF_TENTH = 10;

class Viewing : public testing::Test {
protected:
    void SetUp() override {
        std::string text = "%ENDTIME = 400000;\n", list;
        for (int i = 0; i < 40; ++i) {
            std::string name = "NODE" + std::to_string(100 + i);
            text += name + " { In Default None 0 1 50 } = 0 " + std::to_string(8000 * (i + 1)) +
                    " 1 8000 0 50000;\n";
            list += "Wave " + name + "\n";
        }
        directory.write("many.wdl", text);
        directory.write("many.kel", list);
        directory.write("one.wdl", "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n");
        directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=0,0,900,480\r\n");
        editor = std::make_unique<Editor>(directory, "many.wdl");
        ASSERT_TRUE(editor->open());
    }

    WaveViewRecord view() const {
        WaveViewRecord record = {};
        editor->readMemory(editor->address("WaveView"), &record, sizeof record);
        return record;
    }
    bool promptIs(const std::string &text) const {
        return WaitFor([&] { return prompt() == text; }, 10);
    }
    std::string prompt() const {
        char text[256] = "";
        editor->readMemory(editor->address("PromptText"), text, sizeof text);
        text[255] = 0;
        return text;
    }
    // The view after something was done, once it has come true or stands still.
    testing::AssertionResult becomes(const std::function<bool(const WaveViewRecord &)> &wanted) const {
        if (WaitFor([&] { return wanted(view()); }, 10)) return testing::AssertionSuccess();
        WaveViewRecord now = view();
        return testing::AssertionFailure()
               << "scale " << now.Scale << " left " << now.ViewLeft << " cursor " << now.CursorTime
               << " mark " << now.MarkTime << " row " << now.SelectRow << " top " << now.TopRow << " prompt "
               << prompt();
    }
    testing::AssertionResult scaleBecomes(int32_t scale) const {
        return becomes([scale](const WaveViewRecord &now) { return now.Scale == scale; });
    }
    testing::AssertionResult cursorBecomes(TimeVal time) const {
        return becomes([time](const WaveViewRecord &now) { return now.CursorTime == time; });
    }
    POINT at(int pane, int x, int y) const {
        POINT place = {x, y};
        ClientToScreen(editor->pane(pane), &place);
        return place;
    }
    void moveTo(int pane, int x, int y) const {
        POINT place = at(pane, x, y);
        MoveMouse(place.x, place.y);
    }
    void click(int x, int y, int pane = 3) const {
        moveTo(pane, x, y);
        PressButton(true);
        ASSERT_TRUE(HasCapture(editor->pane(pane), true));
        PressButton(false);
        ASSERT_TRUE(HasCapture(editor->pane(pane), false));
    }
    void drag(int fromX, int toX) const {
        moveTo(3, fromX, 50);
        PressButton(true);
        ASSERT_TRUE(HasCapture(editor->pane(3), true));
        moveTo(3, (fromX + toX) / 2, 60);
        moveTo(3, toX, 60);
        PressButton(false);
        ASSERT_TRUE(HasCapture(editor->pane(3), false));
    }
    static void clickRight() {
        for (DWORD flag : {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP}) sendMouse(flag);
    }
    static void turnWheel(int turn, WORD key = 0) {
        if (key) sendKey(key, 0);
        sendMouse(MOUSEEVENTF_WHEEL, turn);
        if (key) sendKey(key, KEYEVENTF_KEYUP);
    }
    static void sendMouse(DWORD flags, int data = 0) {
        INPUT input = {};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flags;
        input.mi.mouseData = static_cast<DWORD>(data);
        SendInput(1, &input, sizeof input);
    }
    static void sendKey(WORD key, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        SendInput(1, &input, sizeof input);
    }
    // Drops a file on the main window, as the desktop does it: the list of names lies in the editor's memory.
    bool drop(const std::vector<std::string> &paths) const {
        std::string bytes(sizeof(DROPFILES), '\0');
        reinterpret_cast<DROPFILES *>(bytes.data())->pFiles = sizeof(DROPFILES);
        for (const std::string &path : paths) bytes += path + '\0';
        bytes += '\0';
        void *list = editor->plantBytes(bytes);
        return list && PostMessageA(editor->frame(), WM_DROPFILES, reinterpret_cast<WPARAM>(list), 0);
    }
    int rowMiddle(int row) const { return row * sizes.rowHeight + sizes.rowHeight / 2; }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Expected sizes = ExpectedSizes();
};

} // namespace

// --- zooming --------------------------------------------------------------------------------------

TEST_F(Viewing, CtrlIAndAClickZoomInAboutTheClickedPlace) {
    int32_t scale = view().Scale;
    PressKey('I', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Zoom In - Pick Center Point or Corner of Zoom Window"));
    click(400, 50);
    EXPECT_TRUE(scaleBecomes(scale + 1));
    TimeVal left = view().ViewLeft;
    EXPECT_GT(left, 0u);
    click(400, 50);
    EXPECT_TRUE(scaleBecomes(scale + 2));
    EXPECT_TRUE(editor->painted());
    editor->shoot("zoomed-in");
}

TEST_F(Viewing, ADragZoomsToTheRange) {
    WaveViewRecord before = view();
    PressKey('I', {VK_CONTROL});
    drag(200, 300);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.Scale > before.Scale + 1; }));
    TimeVal from = 200u << -before.Scale, to = 300u << -before.Scale;
    WaveViewRecord now = view();
    EXPECT_LE(now.ViewLeft, from + before.TickMinor);
    EXPECT_GE(now.ViewLeft + (static_cast<TimeVal>(now.WavePaneWidth) << -now.Scale), to - before.TickMinor);
}

TEST_F(Viewing, CtrlOAndAClickZoomOutAgain) {
    int32_t scale = view().Scale;
    PressKey('I', {VK_CONTROL});
    click(400, 50);
    ASSERT_TRUE(scaleBecomes(scale + 1));
    PressKey('O', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Zoom Out - Pick Center Point"));
    click(400, 50);
    EXPECT_TRUE(scaleBecomes(scale));
}

TEST_F(Viewing, ZoomingOutOfAllTellsThatThereIsNoMore) {
    int32_t scale = view().Scale;
    PressKey('O', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Zoom Out - At Minimum Scale"));
    moveTo(3, 400, 50);
    PressButton(true);
    PressButton(false);
    Dialog box = editor->dialog();
    ASSERT_NE(box.window, nullptr);
    std::vector<std::string> labels = box.labels();
    EXPECT_NE(std::find(labels.begin(), labels.end(), "Already at minimum scale"), labels.end());
    PressKey(VK_RETURN);
    EXPECT_TRUE(editor->dialogGone());
    EXPECT_EQ(view().Scale, scale);
}

TEST_F(Viewing, CtrlWAndAClickPan) {
    int32_t scale = view().Scale;
    PressKey('I', {VK_CONTROL});
    click(300, 50);
    ASSERT_TRUE(scaleBecomes(scale + 1));
    TimeVal left = view().ViewLeft;
    PressKey('W', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Pan - Pick Center Point"));
    click(view().WavePaneWidth / 2 - 100, 50);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.ViewLeft < left; }));
    EXPECT_EQ(view().Scale, scale + 1);
}

TEST_F(Viewing, CtrlFShowsAllAndComesBackWithTheNextClick) {
    int32_t all = view().Scale;
    PressKey('I', {VK_CONTROL});
    click(300, 50);
    click(300, 50);
    ASSERT_TRUE(scaleBecomes(all + 2));
    PressKey('F', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Full Fit - Click for Full Zoom"));
    click(100, 50);
    EXPECT_TRUE(scaleBecomes(all));
    EXPECT_TRUE(promptIs("Full Fit - Select New Center"));
    click(500, 50);
    EXPECT_TRUE(scaleBecomes(all + 2));
}

TEST_F(Viewing, CtrlSShowsAClockPeriodAsAPixelAndGoesOnAsZoomIn) {
    PressKey('S', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Full Zoom In - Pick Center Point"));
    int32_t before = view().Scale;
    click(300, 50);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.Scale > before; }));
    EXPECT_EQ(prompt().substr(0, 7), "Zoom In");
}

TEST_F(Viewing, TheRightButtonEndsAViewCommand) {
    PressKey('I', {VK_CONTROL});
    ASSERT_TRUE(promptIs("Zoom In - Pick Center Point or Corner of Zoom Window"));
    moveTo(3, 400, 50);
    clickRight();
    EXPECT_TRUE(WaitFor([&] { return prompt().starts_with("Time = "); }, 10));
    int32_t scale = view().Scale;
    click(300, 50);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.CursorTime > 0; }));
    EXPECT_EQ(view().Scale, scale);
}

// --- the cursor, rows and the mark ----------------------------------------------------------------

TEST_F(Viewing, AClickMovesTheCursorAndSelectsTheRow) {
    click(300, rowMiddle(2));
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 2 && now.CursorTime > 0; }));
    TimeVal exact = 300u << -view().Scale;
    EXPECT_NEAR(view().CursorTime, exact, view().TickMinor / TICK_OF_TENTH);
    EXPECT_TRUE(WaitFor([&] { return prompt().find(" - Level = ") != std::string::npos; }, 10)) << prompt();
    editor->shoot("cursor-and-row");
}

TEST_F(Viewing, ClicksOnNamesSelectRowsAndShiftExtends) {
    click(20, rowMiddle(1), 2);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 1; }));
    // A move would tell the system which keys are really held.
    moveTo(2, 20, rowMiddle(4));
    sendKey(VK_SHIFT, 0);
    PressButton(true);
    PressButton(false);
    sendKey(VK_SHIFT, KEYEVENTF_KEYUP);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRowLast == 4; }));
    EXPECT_EQ(view().SelectRow, 1u);
    EXPECT_TRUE(editor->painted());
    editor->shoot("rows-selected");
    PressKey(VK_F5);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.RowCount == 36; }));
}

TEST_F(Viewing, TheKeysMoveTheCursorAndTheRow) {
    PressKey(VK_END);
    EXPECT_TRUE(cursorBecomes(400000));
    PressKey(VK_HOME);
    EXPECT_TRUE(cursorBecomes(0));
    TimeVal tick = view().TickMinor;
    PressKey(VK_RIGHT);
    EXPECT_TRUE(cursorBecomes(tick));
    PressKey(VK_RIGHT, {VK_SHIFT});
    EXPECT_TRUE(cursorBecomes(11 * tick));
    PressKey(VK_LEFT);
    EXPECT_TRUE(cursorBecomes(10 * tick));
    PressKey(VK_LEFT, {VK_SHIFT});
    EXPECT_TRUE(cursorBecomes(0));
    click(20, rowMiddle(1), 2);
    PressKey(VK_DOWN);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 2; }));
    PressKey(VK_UP);
    PressKey(VK_UP);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 0; }));
}

TEST_F(Viewing, PlusJumpsToTheNextChangeAndMinusToTheMark) {
    click(20, rowMiddle(1), 2);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 1; }));
    PressKey(VK_HOME);
    PressKey(VK_ADD);
    EXPECT_TRUE(cursorBecomes(16000));
    editor->command(COMMAND_PLACE_MARK);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.MarkActive && now.MarkTime == 16000; }));
    PressKey(VK_ADD);
    EXPECT_TRUE(cursorBecomes(24000));
    EXPECT_TRUE(WaitFor([&] { return prompt().find("- Delta = 8") != std::string::npos; }, 10)) << prompt();
    EXPECT_TRUE(editor->painted());
    editor->shoot("mark-and-cursor");
    PressKey(VK_SUBTRACT);
    EXPECT_TRUE(cursorBecomes(16000));
    editor->command(COMMAND_HIDE_MARK);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return !now.MarkActive; }));
    PressKey(VK_HOME);
    EXPECT_TRUE(cursorBecomes(0));
    // Without a mark the entry is gray, and the key does nothing.
    PressKey(VK_SUBTRACT);
    PressKey(VK_RIGHT);
    EXPECT_TRUE(cursorBecomes(view().TickMinor));
}

TEST_F(Viewing, ToTimeAsksForTheTime) {
    editor->command(COMMAND_TO_TIME);
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    std::vector<std::string> labels = dialog.labels();
    EXPECT_NE(std::find(labels.begin(), labels.end(), "Jump To Time:"), labels.end());
    for (char digit : std::string("1234")) PressKey(static_cast<WORD>(digit));
    PressKey(VK_RETURN);
    EXPECT_TRUE(editor->dialogGone());
    EXPECT_TRUE(cursorBecomes(1234));
}

// --- the wheel ------------------------------------------------------------------------------------

TEST_F(Viewing, TheWheelScrollsRowsAndTimeAndZooms) {
    moveTo(3, 100, 50);
    turnWheel(-120);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow > 0; }));
    turnWheel(120);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow == 0; }));
    int32_t scale = view().Scale;
    turnWheel(240, VK_CONTROL);
    EXPECT_TRUE(scaleBecomes(scale + 2));
    EXPECT_NEAR(view().ViewLeft, 100.0 * (1 << -scale) - 100.0 * (1 << (-scale - 2)), 1 << -scale);
    TimeVal left = view().ViewLeft;
    EXPECT_TRUE(editor->painted());
    turnWheel(-120, VK_SHIFT);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.ViewLeft > left; }));
    turnWheel(120, VK_SHIFT);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.ViewLeft == left; }));
}

TEST_F(Viewing, TheWheelWorksOverTheNamesToo) {
    moveTo(2, 20, 50);
    turnWheel(-120);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow > 0; }));
}

// --- a file that is dropped -----------------------------------------------------------------------

TEST_F(Viewing, TheFirstOfTheDroppedFilesOpens) {
    EXPECT_TRUE(GetWindowLongA(editor->frame(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    ASSERT_TRUE(drop({directory.file("one.wdl"), directory.file("many.wdl")}));
    EXPECT_TRUE(WaitFor([&] { return editor->title() == "Kelvane - ONE"; }, 10)) << editor->title();
    EXPECT_EQ(view().RowCount, 0u);
    EXPECT_TRUE(editor->painted());
}

TEST_F(Viewing, ADroppedFileAsksBeforeChangesAreLost) {
    ASSERT_TRUE(editor->plantChange());
    ASSERT_TRUE(drop({directory.file("one.wdl")}));
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(editor->dialogGone());
    EXPECT_EQ(editor->title(), "Kelvane - many");
}
