// The floating dialog, typed into with the real keyboard.

#include "shell/command_ids.h"
#include "window/edit_driver.h"

namespace {

class EditDialogWindow : public EditDriver {
protected:
    void SetUp() override {
        openRows("%ENDTIME = 400;\n"
                 "A { In Default None 0 1 50 } = 1 100 0 200 1 100;\n"
                 "B[7:0] { In Default None 0 1 50 } = 11 100 22 200 33 100;\n"
                 "C { In Default None 0 1 50 } = 1 100 (1 20 0 30) #2 *2 0 100;\n",
                 {"A", "B[7:0]", "C"});
    }
    HWND control(int id) const { return GetDlgItem(edit.window, id); }
    bool focusIs(int id) const {
        return WaitFor([&] { return editor->focus() == control(id); }, 10);
    }
    // The middle of a row of the list of states, on the screen.
    POINT stateAt(int row) const {
        HWND list = control(EDIT_STATES);
        RECT place = {};
        SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
        POINT middle = {20, (place.top + place.bottom) / 2};
        ClientToScreen(list, &middle);
        return middle;
    }
    void clickState(int row) const {
        POINT place = stateAt(row);
        ClickAt(place.x, place.y);
    }
    void doubleClickState(int row) const {
        clickState(row);
        PressButton(true);
        PressButton(false);
    }
    static constexpr int A = 0, B = 1, C = 2;
};

} // namespace

TEST_F(EditDialogWindow, OpensInEditModeWithoutTakingTheKeyboard) {
    EXPECT_EQ(edit.title(), "Nothing Selected");
    for (int id = EDIT_DURATION; id <= EDIT_FOREVER; ++id) EXPECT_FALSE(isEnabled(id)) << id;
    EXPECT_EQ(edit.text(111), "Duration:");
    EXPECT_EQ(edit.text(112), "Value:");
    EXPECT_EQ(edit.text(113), "Scale:");
    EXPECT_EQ(edit.text(114), "Repeat:");
    EXPECT_EQ(edit.text(EDIT_FOREVER), "Forever");
    std::vector<std::string> labels = edit.labels();
    EXPECT_NE(std::find(labels.begin(), labels.end(), "States:"), labels.end());
    EXPECT_EQ(GetForegroundWindow(), editor->frame());
    editor->shoot("edit-dialog-empty", edit.window);
}

TEST_F(EditDialogWindow, ShowsABitPulseAndTakesADurationByEnter) {
    clickAt(A, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    EXPECT_TRUE(titleBecomes("Selected Bit Pulse = High"));
    EXPECT_TRUE(isEnabled(EDIT_DURATION) && isEnabled(111) && isEnabled(EDIT_STATES));
    EXPECT_FALSE(isEnabled(EDIT_VALUE) || isEnabled(112) || isEnabled(EDIT_SCALE) || isEnabled(EDIT_REPEAT));
    EXPECT_FALSE(states().empty());
    editor->shoot("edit-dialog-bit", edit.window);
    ASSERT_TRUE(focusIs(EDIT_DURATION));
    typeText("150");
    PressKey(VK_RETURN);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectStart == 150; }));
    EXPECT_EQ(selection().SelFrames[0].item, 1) << "on to the next item";
    EXPECT_TRUE(focusIs(EDIT_DURATION));
    typeText("250");
    PressKey(VK_RETURN);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectStart == 400; }));
    EXPECT_EQ(saved("A"), "1 150 0 250 1 100");
}

TEST_F(EditDialogWindow, TakesADurationByLeaving) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_DURATION, "50");
    PressKey(VK_TAB);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectEnd == 150; }));
    EXPECT_EQ(selection().SelFrames[0].item, 1) << "it stays on the item";
    EXPECT_EQ(saved("A"), "1 100 0 50 1 100");
}

TEST_F(EditDialogWindow, AClickInTheWavesTakesWhatWasTyped) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_DURATION, "50");
    clickAt(B, 50);
    EXPECT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    EXPECT_EQ(saved("A"), "1 100 0 50 1 100");
}

TEST_F(EditDialogWindow, EscapeTakesBackWhatWasTyped) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    std::string before = edit.text(EDIT_DURATION);
    typeInto(EDIT_DURATION, "50");
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(fieldBecomes(EDIT_DURATION, before));
    EXPECT_TRUE(IsWindow(edit.window));
    clickAt(B, 50);
    EXPECT_EQ(saved("A"), "1 100 0 200 1 100");
}

TEST_F(EditDialogWindow, ValuesAreTypedAlongABusAsOneStep) {
    clickAt(B, 50);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
    EXPECT_TRUE(isEnabled(EDIT_VALUE) && isEnabled(EDIT_DURATION));
    EXPECT_FALSE(isEnabled(EDIT_STATES));
    EXPECT_EQ(edit.text(EDIT_VALUE), "11");
    ASSERT_TRUE(focusIs(EDIT_VALUE));
    editor->shoot("edit-dialog-bus", edit.window);
    for (const char *value : {"A0", "A0", "B1"}) {
        typeText(value);
        PressKey(VK_RETURN);
        ASSERT_TRUE(isDone());
    }
    EXPECT_TRUE(titleBecomes("Selected Bus Pulse = B1")) << "the last item stays";
    EXPECT_EQ(edit.text(EDIT_VALUE), "B1");
    clickAt(A, 50);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = High"));
    EXPECT_EQ(saved("B[7:0]"), "a0 300 b1 100");
}

TEST_F(EditDialogWindow, F9InAFieldUndoesInTheDocument) {
    clickAt(B, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    ASSERT_TRUE(focusIs(EDIT_VALUE));
    typeText("7");
    PressKey(VK_RETURN);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 22"));
    PressKey(VK_F9);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    clickAt(B, 50);
    EXPECT_TRUE(titleBecomes("Selected Bus Pulse = 11"));
}

TEST_F(EditDialogWindow, ValueOfASpan) {
    dragOver(B, 40, 160);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    EXPECT_TRUE(titleBecomes("Selected Interval in Pattern B[7:0]"));
    ASSERT_TRUE(focusIs(EDIT_VALUE));
    typeText("5");
    PressKey(VK_RETURN);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    EXPECT_EQ(saved("B[7:0]"), "11 40 5 120 22 140 33 100");
}

TEST_F(EditDialogWindow, StatesArePickedFromTheList) {
    clickAt(A, 150);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = Low"));
    EXPECT_EQ(SendMessageA(control(EDIT_STATES), LB_GETCURSEL, 0, 0), 0);
    clickState(2);
    EXPECT_TRUE(titleBecomes("Selected Bit Pulse = " + states()[2]));
    EXPECT_TRUE(focusIs(EDIT_STATES));
    // The arrow keys go through the list, and stay in it.
    PressKey(VK_DOWN);
    EXPECT_TRUE(titleBecomes("Selected Bit Pulse = " + states()[3]));
    EXPECT_TRUE(focusIs(EDIT_STATES));
    EXPECT_EQ(saved("A"), "1 100 3 200 1 100");
}

TEST_F(EditDialogWindow, ScaleAndRepeatOfASpanAndOfAReference) {
    dragOver(A, 60, 300);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    EXPECT_EQ(edit.text(EDIT_SCALE), "1");
    typeInto(EDIT_REPEAT, "2");
    PressKey(VK_RETURN);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    EXPECT_TRUE(fieldBecomes(EDIT_REPEAT, "2"));
    typeInto(EDIT_SCALE, "3");
    PressKey(VK_TAB);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectEnd == 60 + 2 * 3 * 240; }));
    EXPECT_TRUE(fieldBecomes(EDIT_SCALE, "3"));
    editor->shoot("edit-dialog-reference", edit.window);
    EXPECT_EQ(saved("A"), "1 60(1 40 0 200)*3 #2 1 100");
}

TEST_F(EditDialogWindow, ADoubleClickOnAStateWalksOn) {
    clickAt(A, 50);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = High"));
    clickState(2);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = " + states()[2]));
    EXPECT_EQ(selection().SelFrames[0].item, 0) << "one click stays on the item";
    doubleClickState(3);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = Low")) << "on to the next item";
    EXPECT_EQ(selection().SelFrames[0].item, 1);
    EXPECT_EQ(saved("A"), "3 100 0 200 1 100");
}

TEST_F(EditDialogWindow, AStateOfASpanAndOfAWholeWave) {
    dragOver(A, 40, 160);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    clickState(3);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = " + states()[3]));
    EXPECT_EQ(saved("A"), "1 40 3 120 0 140 1 100");
    dragOver(A, 0, 400);
    ASSERT_TRUE(titleBecomes("Selected Entire Pattern A"));
    clickState(0);
    ASSERT_TRUE(titleBecomes("Selected Bit Pulse = Low"));
    EXPECT_EQ(saved("A"), "0 400");
}

TEST_F(EditDialogWindow, AValueByLeavingStays) {
    clickAt(B, 150);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 22"));
    typeInto(EDIT_VALUE, "1C5");
    edit.click(EDIT_DURATION);
    EXPECT_TRUE(titleBecomes("Selected Bus Pulse = C5")) << "as far as the bus is wide";
    EXPECT_TRUE(focusIs(EDIT_VALUE)) << "the field keeps the keyboard";
    EXPECT_EQ(saved("B[7:0]"), "11 100 c5 200 33 100");
}

TEST_F(EditDialogWindow, ValueOfAWholeBus) {
    dragOver(B, 0, 400);
    ASSERT_TRUE(titleBecomes("Selected Entire Pattern B[7:0]"));
    EXPECT_EQ(edit.text(EDIT_VALUE), "");
    ASSERT_TRUE(focusIs(EDIT_VALUE));
    typeText("7f");
    PressKey(VK_RETURN);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 7F"));
    EXPECT_EQ(saved("B[7:0]"), "7f 400");
}

TEST_F(EditDialogWindow, ADurationIsAtLeastOneUnit) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_DURATION, "0");
    PressKey(VK_RETURN);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectStart == 101; }));
    EXPECT_EQ(saved("A"), "1 100 0 1 1 100");
}

TEST_F(EditDialogWindow, RepeatOfASpanByEnterAndByLeaving) {
    dragOver(A, 100, 400);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    typeInto(EDIT_REPEAT, "2");
    PressKey(VK_RETURN);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    dragOver(B, 100, 400);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    typeInto(EDIT_REPEAT, "3");
    edit.click(EDIT_SCALE);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    EXPECT_TRUE(fieldBecomes(EDIT_REPEAT, "3"));
    EXPECT_EQ(saved("A"), "1 100(0 200 1 100)#2");
    EXPECT_EQ(saved("B[7:0]"), "11 100(22 200 33 100)#3");
}

TEST_F(EditDialogWindow, ScaleOfASpanByEnterAndByLeaving) {
    dragOver(A, 100, 400);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    typeInto(EDIT_SCALE, "2");
    PressKey(VK_RETURN);
    // The old stretch is selected, which lies within the first scaled item now.
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    dragOver(B, 100, 400);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    typeInto(EDIT_SCALE, "3");
    edit.click(EDIT_REPEAT);
    ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 22"));
    EXPECT_EQ(saved("A"), "1 100(0 200 1 100)*2");
    EXPECT_EQ(saved("B[7:0]"), "11 100(22 200 33 100)*3");
}

TEST_F(EditDialogWindow, ScaleAndRepeatOfAWholeWave) {
    dragOver(A, 0, 400);
    ASSERT_TRUE(titleBecomes("Selected Entire Pattern A"));
    ASSERT_TRUE(focusIs(EDIT_REPEAT));
    typeText("3");
    PressKey(VK_RETURN);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    EXPECT_EQ(saved("A"), "(1 100 0 200 1 100)#3");
    dragOver(B, 0, 400);
    ASSERT_TRUE(titleBecomes("Selected Entire Pattern B[7:0]"));
    typeInto(EDIT_SCALE, "2");
    PressKey(VK_RETURN);
    ASSERT_TRUE(isDone());
    EXPECT_EQ(saved("B[7:0]"), "(11 100 22 200 33 100)*2");
}

TEST_F(EditDialogWindow, ScaleAndRepeat1DissolveAReference) {
    dragOver(C, 100, 300);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    EXPECT_EQ(edit.text(EDIT_SCALE), "2");
    EXPECT_EQ(edit.text(EDIT_REPEAT), "2");
    typeInto(EDIT_REPEAT, "0");
    PressKey(VK_RETURN);
    ASSERT_TRUE(fieldBecomes(EDIT_REPEAT, "1"));
    EXPECT_EQ(saved("C"), "1 100(1 20 0 30)*2 0 100");
    dragOver(C, 100, 200);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    typeInto(EDIT_SCALE, "1");
    PressKey(VK_RETURN);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    EXPECT_EQ(saved("C"), "1 120 0 130");
}

TEST_F(EditDialogWindow, AnEdgeHasNoFields) {
    clickAt(A, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    clickAt(A, 300);
    ASSERT_TRUE(titleBecomes("Selected Edge in Pattern A"));
    for (int id = EDIT_DURATION; id <= EDIT_FOREVER; ++id) {
        EXPECT_FALSE(isEnabled(id)) << id;
        if (id <= EDIT_REPEAT) {
            EXPECT_FALSE(isEnabled(id + EDIT_LABEL)) << id;
            EXPECT_EQ(edit.text(id), "") << id;
        }
    }
    EXPECT_TRUE(states().empty());
}

TEST_F(EditDialogWindow, ForeverAtTheTailOnly) {
    dragOver(A, 40, 200);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    EXPECT_FALSE(isEnabled(EDIT_FOREVER)) << "in the middle of the wave";
    dragOver(A, 200, 400);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    ASSERT_TRUE(isEnabled(EDIT_FOREVER));
    edit.click(EDIT_FOREVER);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    EXPECT_TRUE(fieldBecomes(EDIT_REPEAT, "##"));
    EXPECT_FALSE(isEnabled(EDIT_REPEAT));
    EXPECT_EQ(SendMessageA(control(EDIT_FOREVER), BM_GETCHECK, 0, 0), BST_CHECKED);
    editor->shoot("edit-dialog-forever", edit.window);
    edit.click(EDIT_FOREVER);
    EXPECT_TRUE(WaitFor([&] { return isEnabled(EDIT_REPEAT) || selection().SelKind != SEL_PATTERN; }, 10));
    EXPECT_EQ(SendMessageA(control(EDIT_FOREVER), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_EQ(saved("A"), "1 100 0 200 1 100") << "what is repeated once is no pattern any more";
}

TEST_F(EditDialogWindow, ForeverIsWritten) {
    dragOver(A, 200, 400);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    edit.click(EDIT_FOREVER);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    dragOver(B, 0, 400);
    ASSERT_TRUE(titleBecomes("Selected Entire Pattern B[7:0]"));
    typeInto(EDIT_REPEAT, "#");
    PressKey(VK_RETURN);
    ASSERT_TRUE(kindBecomes(SEL_PATTERN));
    EXPECT_EQ(SendMessageA(control(EDIT_FOREVER), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(saved("A"), "1 100 0 100(0 100 1 100)##");
    EXPECT_EQ(saved("B[7:0]"), "(11 100 22 200 33 100)##");
}

TEST_F(EditDialogWindow, WhileItHasTheKeyboardTheKeysOfTheWavesAreItsOwn) {
    clickAt(B, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    ASSERT_TRUE(focusIs(EDIT_VALUE));
    PressKey(VK_DELETE);
    ASSERT_TRUE(WaitFor([this] { return edit.text(EDIT_VALUE).empty(); }));
    EXPECT_EQ(selection().SelKind, SEL_PULSE);
    // An edge has no field that could take it.
    PressKey(VK_ESCAPE);
    clickAt(A, 100);
    ASSERT_TRUE(kindBecomes(SEL_EDGE));
    PressKey(VK_RIGHT);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    EXPECT_EQ(saved("B[7:0]"), "11 100 22 200 33 100");
}

TEST_F(EditDialogWindow, StaysInQueryModeAndReturnsToItsPlace) {
    editor->command(COMMAND_QUERY_MODE);
    ASSERT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    EXPECT_TRUE(IsWindowVisible(edit.window));
    SetWindowPos(edit.window, nullptr, 321, 555, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    PostMessageA(edit.window, WM_CLOSE, 0, 0);
    ASSERT_TRUE(editor->editDialogGone());
    editor->command(COMMAND_EDIT_MODE);
    edit = editor->editDialog();
    ASSERT_NE(edit.window, nullptr);
    EXPECT_TRUE(WaitFor([&] { return PlaceOf(edit.window).left == 321; }, 5));
    EXPECT_EQ(PlaceOf(edit.window).top, 555);
    EXPECT_EQ(GetForegroundWindow(), editor->frame()) << "it does not take the keyboard";
}

TEST_F(EditDialogWindow, ClosingItTakesWhatWasTyped) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_DURATION, "50");
    PostMessageA(edit.window, WM_CLOSE, 0, 0);
    ASSERT_TRUE(editor->editDialogGone());
    EXPECT_EQ(saved("A"), "1 100 0 50 1 100");
    // Without it editing goes on.
    clickAt(A, 50);
    EXPECT_TRUE(kindBecomes(SEL_PULSE));
}

TEST_F(EditDialogWindow, LeavesWithTheProgram) {
    clickAt(A, 150);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_DURATION, "77");
    editor->toFront();
    editor->close();
    Dialog question = editor->dialog();
    ASSERT_NE(question.window, nullptr) << "what was typed counts as a change";
    question.click(4);
    EXPECT_EQ(editor->ended(), 0u);
}

TEST_F(EditDialogWindow, NoLabelIsCut) {
    // The dialog's font, made anew, as that of another process is out of reach.
    HDC context = GetDC(nullptr);
    int height = -MulDiv(8, GetDeviceCaps(context, LOGPIXELSY), 72);
    HFONT font =
        CreateFontA(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "MS Sans Serif");
    HGDIOBJ before = SelectObject(context, font);
    for (int id : {111, 112, 113, 114, static_cast<int>(EDIT_FOREVER)}) {
        std::string text = TextOf(control(id));
        SIZE size = {};
        GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
        RECT client = {};
        GetClientRect(control(id), &client);
        int mark = id == EDIT_FOREVER ? GetSystemMetrics(SM_CXMENUCHECK) + 4 : 0;
        EXPECT_LE(size.cx + mark, client.right) << text;
        EXPECT_LE(size.cy, client.bottom + 1) << text;
    }
    SelectObject(context, before);
    DeleteObject(font);
    ReleaseDC(nullptr, context);
}
