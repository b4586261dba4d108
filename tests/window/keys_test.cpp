// The keyboard between the floating dialog and the main window, with and without Keys To Waves, and the
// menu's marks.

#include "shell/command_ids.h"
#include "window/edit_driver.h"

namespace {

class Keys : public EditDriver {
protected:
    void SetUp() override {
        openRows("%ENDTIME = 400;\n"
                 "A { In Default None 0 1 50 } = 1 100 0 200 1 100;\n"
                 "B[7:0] { In Default None 0 1 50 } = 11 100 22 200 33 100;\n",
                 {"A", "B[7:0]"});
    }
    HWND control(int id) const { return GetDlgItem(edit.window, id); }
    bool focusIs(HWND window) const {
        return WaitFor([&] { return editor->focus() == window && isDone() && editor->focus() == window; },
                       10);
    }
    bool wavesHaveTheKeyboard() const { return focusIs(editor->frame()); }
    bool fieldHasTheKeyboard(int id) const { return focusIs(control(id)); }
    void choose(WORD menu, WORD entry) const {
        PressKey(menu, {VK_MENU});
        ASSERT_TRUE(popupComes());
        PressKey(entry);
        ASSERT_TRUE(WaitFor([] { return FindWindowA("#32768", nullptr) == nullptr; }, 10));
    }
    bool popupComes() const {
        return WaitFor(
            [] {
                HWND popup = FindWindowA("#32768", nullptr);
                return popup && IsWindowVisible(popup);
            },
            10);
    }
    void turnOn() const {
        choose('O', 'K');
        ASSERT_TRUE(isDone());
    }
    static constexpr int A = 0, B = 1;
};

} // namespace

// --- Keys To Waves --------------------------------------------------------------------------------

TEST_F(Keys, ASelectionLeavesTheKeyboardToTheWaves) {
    turnOn();
    clickAt(B, 50);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    EXPECT_TRUE(wavesHaveTheKeyboard());
    PressKey(VK_RIGHT, {VK_SHIFT});
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.CursorTime > 0; }));
    EXPECT_TRUE(wavesHaveTheKeyboard());
    clickAt(B, 50);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    PressKey(VK_DELETE);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("B[7:0]"), "22 200 33 100");
}

TEST_F(Keys, ADigitOrALetterBeginsTheTextOfTheFirstField) {
    turnOn();
    clickAt(B, 50);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    ASSERT_TRUE(wavesHaveTheKeyboard());
    PressKey('A');
    EXPECT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    PressKey('5');
    EXPECT_TRUE(fieldBecomes(EDIT_VALUE, "a5"));
    editor->shoot("keys-to-waves");
    PressKey(VK_RETURN);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 22"));
    EXPECT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    typeText("b6");
    PressKey(VK_RETURN);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 33"));
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(wavesHaveTheKeyboard());
    EXPECT_EQ(saved("B[7:0]"), "a5 100 b6 200 33 100");
}

TEST_F(Keys, TheKeysOfTheWavesWorkFromInsideAFieldAndTakeWhatWasTyped) {
    turnOn();
    clickAt(B, 150);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 22"));
    PressKey('7');
    ASSERT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    TimeVal before = view().CursorTime;
    PressKey(VK_LEFT);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.CursorTime < before; }));
    EXPECT_TRUE(wavesHaveTheKeyboard());
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 07"));
    PressKey(VK_TAB);
    ASSERT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    PressKey('C', {VK_CONTROL});
    EXPECT_TRUE(wavesHaveTheKeyboard());
    clickAt(B, 50);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    PressKey(VK_TAB);
    ASSERT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    PressKey(VK_DELETE);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("B[7:0]"), "7 200 33 100");
}

TEST_F(Keys, TabGoesToTheDialogAndEscapeBackWithWhatWasTypedTakenBack) {
    turnOn();
    clickAt(A, 50);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = High"));
    std::string duration = edit.text(EDIT_DURATION);
    PressKey(VK_TAB);
    ASSERT_TRUE(fieldHasTheKeyboard(EDIT_DURATION));
    typeText("7");
    ASSERT_TRUE(fieldBecomes(EDIT_DURATION, "7"));
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(wavesHaveTheKeyboard());
    EXPECT_TRUE(fieldBecomes(EDIT_DURATION, duration));
    EXPECT_EQ(saved("A"), "1 100 0 200 1 100");
}

TEST_F(Keys, TheMarkIsKeptForTheNextStart) {
    turnOn();
    editor->close();
    ASSERT_EQ(editor->ended(), 0u);
    EXPECT_NE(directory.read("config\\Kelvane.ini").find("Keys To Waves=1"), std::string::npos);
    editor = std::make_unique<Editor>(directory, "edit.wdl");
    ASSERT_TRUE(editor->open(true));
    edit = editor->editDialog();
    SetWindowPos(edit.window, nullptr, 100, 560, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    clickAt(B, 50);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    EXPECT_TRUE(wavesHaveTheKeyboard());
    choose('O', 'K');
    clickAt(B, 150);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 22"));
    EXPECT_TRUE(fieldHasTheKeyboard(EDIT_VALUE)) << "it can be turned off";
}

// --- in both cases --------------------------------------------------------------------------------

TEST_F(Keys, EscapeLeadsFromTheDialogToTheMainWindowAndTabBack) {
    clickAt(B, 50);
    ASSERT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(wavesHaveTheKeyboard());
    EXPECT_TRUE(IsWindowVisible(edit.window));
    PressKey(VK_TAB);
    EXPECT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(wavesHaveTheKeyboard());
    PressKey(VK_DELETE);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("B[7:0]"), "22 200 33 100");
}

TEST_F(Keys, AltAndF10OpenTheMenuFromInsideTheDialog) {
    clickAt(B, 50);
    ASSERT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
    typeText("9");
    PressKey('V', {VK_MENU});
    ASSERT_TRUE(popupComes()) << "Alt with a letter";
    PressKey('P');
    ASSERT_TRUE(commandBecomes(COMMAND_PAN));
    editor->command(COMMAND_EDIT_MODE);
    ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    EXPECT_EQ(saved("B[7:0]"), "9 100 22 200 33 100") << "what was typed is taken as the field is left";
    for (WORD key : {VK_MENU, VK_F10}) {
        clickAt(B, 50);
        ASSERT_TRUE(fieldHasTheKeyboard(EDIT_VALUE));
        PressKey(key);
        PressKey(VK_DOWN);
        ASSERT_TRUE(popupComes()) << key;
        PressKey('S');
        EXPECT_TRUE(editor->hasStrip("File successfully saved")) << "the first menu is File";
        editor->command(COMMAND_EDIT_MODE);
        ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    }
}

// --- the dialog that was closed, and the mode in force --------------------------------------------

TEST_F(Keys, UndoAndRedoLeaveTheDialogClosed) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->toFront();
    PressKey(VK_DELETE);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    ASSERT_TRUE(editor->closeEditDialog());
    editor->toFront();
    for (bool redo : {false, true}) {
        PressKey(VK_F9, redo ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{});
        ASSERT_TRUE(isDone());
        EXPECT_FALSE(IsWindow(edit.window));
        EXPECT_FALSE(WaitFor([&] { return !editor->editDialogGone(); }, 0.5));
    }
    PressKey(VK_F9);
    ASSERT_TRUE(isDone());
    EXPECT_FALSE(WaitFor([&] { return !editor->editDialogGone(); }, 0.5));
    EXPECT_EQ(saved("A"), "1 100 0 200 1 100");
    editor->command(COMMAND_EDIT_MODE);
    EXPECT_NE(editor->editDialog().window, nullptr) << "its command opens it";
}

TEST_F(Keys, CancelOnClosingBringsBackTheModeInForce) {
    ASSERT_TRUE(editor->plantChange());
    for (int mode : {COMMAND_EDIT_MODE, COMMAND_QUERY_MODE}) {
        editor->command(mode);
        ASSERT_TRUE(commandBecomes(mode));
        editor->close();
        Dialog question = editor->dialog();
        ASSERT_NE(question.window, nullptr);
        question.click(5);
        ASSERT_TRUE(editor->dialogGone());
        EXPECT_TRUE(commandBecomes(mode));
    }
}

TEST_F(Keys, TheMenuMarksTheModeInForceWithADot) {
    auto menu = [&](const std::string &name) {
        editor->toFront();
        PressKey('E', {VK_MENU});
        EXPECT_TRUE(popupComes());
        HWND popup = FindWindowA("#32768", nullptr);
        Picture last, now;
        WaitFor([&] {
            last = now;
            now = PictureOfWindow(popup);
            return now == last;
        });
        editor->shoot(name, popup);
        PressKey(VK_ESCAPE);
        PressKey(VK_ESCAPE);
        return now;
    };
    // The column of the marks, in front of the last entry and of the one before it.
    auto marked = [](const Picture &popup, int fromEnd) {
        int entry = GetSystemMetrics(SM_CYMENU), bottom = popup.height - 3 - fromEnd * (entry - 2);
        uint32_t paper = popup.at(4, bottom - 2);
        int ink = 0;
        for (int y = bottom - entry + 6; y < bottom - 3; y++)
            for (int x = 4; x < 14; x++) ink += popup.at(x, y) != paper;
        return ink > 8;
    };
    Picture edits = menu("menu-edit-mode");
    editor->command(COMMAND_QUERY_MODE);
    ASSERT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    Picture queries = menu("menu-query-mode");
    EXPECT_TRUE(marked(edits, 0));
    EXPECT_FALSE(marked(edits, 1));
    EXPECT_FALSE(marked(queries, 0));
    EXPECT_TRUE(marked(queries, 1));
}

// --- who lies above whom --------------------------------------------------------------------------

TEST_F(Keys, TheFloatingDialogStaysAboveTheMainWindow) {
    SetWindowPos(edit.window, nullptr, 500, 250, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    auto isAbove = [&] {
        HWND window = edit.window;
        while (window && window != editor->frame()) window = GetWindow(window, GW_HWNDNEXT);
        return window == editor->frame();
    };
    // The frames of its controls, whatever they say.
    auto isShown = [&] {
        editor->painted();
        RECT place = PlaceOf(edit.window);
        Picture all = PictureOfScreen(place);
        int paper = all.count(colour::white, 0, 30, all.width, all.height);
        return paper < all.width * (all.height - 30) * 3 / 4;
    };
    clickAt(A, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(wavesHaveTheKeyboard());
    auto stays = [&](const char *what) {
        // The order is put right a moment after the main window has become active, and is to stay.
        auto right = [&] { return isAbove() && isShown(); };
        EXPECT_TRUE(WaitFor(right, 5)) << what;
        EXPECT_FALSE(WaitFor([&] { return !right(); }, 0.5)) << what;
        editor->shoot(std::string("floating-") + what);
    };
    stays("key");
    RECT frame = PlaceOf(editor->frame());
    ClickAt(frame.left + 200, frame.top + 10);
    stays("caption");
    click(40, 300);
    PressKey(VK_ESCAPE);
    stays("waves");
    editor->toFront();
    stays("front");
    ClickAt(PlaceOf(editor->prompt()).left + 5, PlaceOf(editor->prompt()).top + 5);
    stays("prompt");
}
