#include "window/view_driver.h"

#include <algorithm>

void ViewDriver::open(const std::string &name, bool keepEditDialog) {
    directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=0,0,900,480\r\n");
    editor = std::make_unique<Editor>(directory, name + ".wdl");
    ASSERT_TRUE(editor->open(keepEditDialog));
}

void ViewDriver::openManyRows() {
    std::string text = "%ENDTIME = 400000;\n", list;
    for (int i = 0; i < 40; ++i) {
        std::string name = "NODE" + std::to_string(100 + i);
        text +=
            name + " { In Default None 0 1 50 } = 0 " + std::to_string(8000 * (i + 1)) + " 1 8000 0 50000;\n";
        list += "Wave " + name + "\n";
    }
    directory.write("many.wdl", text);
    directory.write("many.kel", list);
    open("many");
}

// --- what the program knows -----------------------------------------------------------------------

WaveViewRecord ViewDriver::view() const {
    WaveViewRecord record = {};
    editor->readMemory(editor->address("WaveView"), &record, sizeof record);
    return record;
}

CommandStateRecord ViewDriver::command() const {
    CommandStateRecord record = {};
    editor->readMemory(editor->address("CommandState"), &record, sizeof record);
    return record;
}

std::string ViewDriver::prompt() const {
    char text[256] = "";
    editor->readMemory(editor->address("PromptText"), text, sizeof text);
    text[255] = 0;
    return text;
}

bool ViewDriver::isDone() const {
    DWORD_PTR result;
    return SendMessageTimeoutA(editor->frame(), WM_NULL, 0, 0, SMTO_NORMAL, 10000, &result) != 0;
}

testing::AssertionResult
ViewDriver::becomes(const std::function<bool(const WaveViewRecord &)> &wanted) const {
    if (WaitFor([&] { return wanted(view()) && isDone() && wanted(view()); }, 10))
        return testing::AssertionSuccess();
    WaveViewRecord now = view();
    return testing::AssertionFailure()
           << "scale " << now.Scale << " left " << now.ViewLeft << " cursor " << now.CursorTime << " mark "
           << now.MarkTime << " row " << now.SelectRow << " top " << now.TopRow << " command "
           << command().CurrentCommand << " prompt " << prompt();
}

testing::AssertionResult ViewDriver::scaleBecomes(int32_t scale) const {
    return becomes([scale](const WaveViewRecord &now) { return now.Scale == scale; });
}

testing::AssertionResult ViewDriver::leftBecomes(TimeVal time) const {
    return becomes([time](const WaveViewRecord &now) { return now.ViewLeft == time; });
}

testing::AssertionResult ViewDriver::cursorBecomes(TimeVal time) const {
    return becomes([time](const WaveViewRecord &now) { return now.CursorTime == time; });
}

testing::AssertionResult ViewDriver::topBecomes(uint32_t row) const {
    return becomes([row](const WaveViewRecord &now) { return now.TopRow == row; });
}

testing::AssertionResult ViewDriver::commandBecomes(int id) const {
    return becomes([&](const WaveViewRecord &) { return command().CurrentCommand == id; });
}

bool ViewDriver::promptIs(const std::string &text) const {
    return WaitFor([&] { return prompt() == text && isDone() && prompt() == text; }, 10);
}

void ViewDriver::expectError(const std::string &line) const {
    Dialog box = editor->dialog();
    ASSERT_NE(box.window, nullptr);
    std::vector<std::string> labels = box.labels();
    EXPECT_NE(std::find(labels.begin(), labels.end(), line), labels.end());
    PressKey(VK_RETURN);
    ASSERT_TRUE(editor->dialogGone());
}

// --- the mouse ------------------------------------------------------------------------------------

POINT ViewDriver::at(int pane, int x, int y) const {
    POINT place = {x, y};
    ClientToScreen(editor->pane(pane), &place);
    return place;
}

void ViewDriver::moveTo(int pane, int x, int y) const {
    POINT place = at(pane, x, y);
    MoveMouse(place.x, place.y);
}

void ViewDriver::press(int pane) const {
    PressButton(true);
    ASSERT_TRUE(HasCapture(editor->pane(pane), true));
}

void ViewDriver::release(int pane) const {
    PressButton(false);
    ASSERT_TRUE(HasCapture(editor->pane(pane), false));
}

void ViewDriver::click(int x, int y, int pane) const {
    moveTo(pane, x, y);
    press(pane);
    release(pane);
}

void ViewDriver::drag(int fromX, int toX) const {
    moveTo(3, fromX, 50);
    press();
    moveTo(3, (fromX + toX) / 2, 60);
    moveTo(3, toX, 60);
    release();
}

void SendMouse(DWORD flags, int data) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = static_cast<DWORD>(data);
    SendInput(1, &input, sizeof input);
}

void SendKey(WORD key, DWORD flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

void ClickOther(DWORD down, DWORD up) {
    SendMouse(down);
    SendMouse(up);
}

void TurnWheel(int turn, WORD key) {
    if (key) SendKey(key, 0);
    SendMouse(MOUSEEVENTF_WHEEL, turn);
    if (key) SendKey(key, KEYEVENTF_KEYUP);
}
