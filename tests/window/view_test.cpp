// The view driven with real mouse and keyboard: zooming, panning, jumping, the mark, picking rows, the wheel,
// and a file that is dropped.

#include "shell/command_ids.h"
#include "window/view_driver.h"
#include <gtest/gtest.h>
#include <shlobj.h>

namespace {

constexpr int TICK_OF_TENTH = 10;

class Viewing : public ViewDriver {
protected:
    void SetUp() override {
        directory.write("one.wdl", "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n");
        openManyRows();
    }
    // Drops files on the main window, as the desktop does it: the list of names lies in the editor's memory.
    bool drop(const std::vector<std::string> &paths) const {
        std::string bytes(sizeof(DROPFILES), '\0');
        reinterpret_cast<DROPFILES *>(bytes.data())->pFiles = sizeof(DROPFILES);
        for (const std::string &path : paths) bytes += path + '\0';
        bytes += '\0';
        void *list = editor->plantBytes(bytes);
        return list && PostMessageA(editor->frame(), WM_DROPFILES, reinterpret_cast<WPARAM>(list), 0);
    }
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
    EXPECT_TRUE(promptIs("Zoom In - Pick Center Point"));
}

TEST_F(Viewing, TheRightButtonEndsAViewCommand) {
    PressKey('I', {VK_CONTROL});
    ASSERT_TRUE(promptIs("Zoom In - Pick Center Point or Corner of Zoom Window"));
    moveTo(3, 400, 50);
    ClickOther(MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP);
    EXPECT_TRUE(WaitFor([&] { return prompt().starts_with("Time = "); }, 10));
    int32_t scale = view().Scale;
    click(300, 50);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.CursorTime > 0; }));
    EXPECT_EQ(view().Scale, scale);
}

// --- the cursor, rows and the mark ----------------------------------------------------------------

TEST_F(Viewing, AClickInQueryModeMovesTheCursorAndSelectsTheRow) {
    PressKey(VK_F2);
    ASSERT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    click(300, rowMiddle(2));
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 2 && now.CursorTime > 0; }));
    TimeVal exact = 300u << -view().Scale;
    EXPECT_NEAR(view().CursorTime, exact, view().TickMinor / TICK_OF_TENTH);
    EXPECT_TRUE(WaitFor([&] { return prompt().find(" - Level = ") != std::string::npos; }, 10)) << prompt();
    editor->shoot("cursor-and-row");
}

TEST_F(Viewing, AClickOnANameSelectsTheRowAndADragTheRowsBetween) {
    click(20, rowMiddle(2), 2);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 2; }));
    moveTo(2, 20, rowMiddle(1));
    press(2);
    moveTo(2, 20, rowMiddle(4));
    release(2);
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
    TurnWheel(-120);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow > 0; }));
    TurnWheel(120);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow == 0; }));
    int32_t scale = view().Scale;
    TurnWheel(240, VK_CONTROL);
    EXPECT_TRUE(scaleBecomes(scale + 2));
    EXPECT_NEAR(view().ViewLeft, 100.0 * (1 << -scale) - 100.0 * (1 << (-scale - 2)), 1 << -scale);
    TimeVal left = view().ViewLeft;
    EXPECT_TRUE(editor->painted());
    TurnWheel(-120, VK_SHIFT);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.ViewLeft > left; }));
    TurnWheel(120, VK_SHIFT);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.ViewLeft == left; }));
}

TEST_F(Viewing, TheWheelWorksOverTheNamesToo) {
    moveTo(2, 20, 50);
    TurnWheel(-120);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow > 0; }));
}

// --- a file that is dropped -----------------------------------------------------------------------

TEST_F(Viewing, TheFirstOfTheDroppedFilesOpens) {
    EXPECT_TRUE(GetWindowLongA(editor->frame(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    ASSERT_TRUE(drop({directory.file("one.wdl"), directory.file("many.wdl")}));
    EXPECT_TRUE(WaitFor([&] { return editor->title() == "Kelvane - ONE"; }, 10)) << editor->title();
    EXPECT_EQ(view().RowCount, 1u) << "without a wave list all nodes are shown";
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
