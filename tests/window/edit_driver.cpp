#include "window/edit_driver.h"

#include "shell/command_ids.h"
#include <algorithm>

void EditDriver::openRows(const std::string &statements, const std::vector<std::string> &names) {
    std::string list;
    for (const std::string &name : names) list += "Wave " + name + "\n";
    directory.write("edit.wdl", statements);
    directory.write("edit.kel", list);
    directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=0,0,900,480\r\n");
    editor = std::make_unique<Editor>(directory, "edit.wdl");
    ASSERT_TRUE(editor->open(true));
    edit = editor->editDialog();
    ASSERT_NE(edit.window, nullptr);
    SetWindowPos(edit.window, nullptr, 100, 560, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    ASSERT_TRUE(editor->painted());
}

EditSelectionRecord EditDriver::selection() const {
    EditSelectionRecord record = {};
    editor->readMemory(editor->address("EditSelection"), &record, sizeof record);
    return record;
}

EditDialogRecord EditDriver::dialogState() const {
    EditDialogRecord record = {};
    editor->readMemory(editor->address("EditDialog"), &record, sizeof record);
    return record;
}

testing::AssertionResult EditDriver::kindBecomes(uint16_t kind) const {
    if (WaitFor([&] { return selection().SelKind == kind && isDone() && selection().SelKind == kind; }, 10))
        return testing::AssertionSuccess();
    EditSelectionRecord now = selection();
    const SelFrame &frame = now.SelFrames[now.SelDepth ? now.SelDepth - 1u : 0];
    return testing::AssertionFailure() << "kind " << now.SelKind << " item " << frame.item << " from "
                                       << frame.start << " to " << frame.end << " title " << edit.title();
}

testing::AssertionResult EditDriver::fieldBecomes(int id, const std::string &text) const {
    if (WaitFor([&] { return edit.text(id) == text && isDone() && edit.text(id) == text; }, 10))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "field " << id << " says " << edit.text(id);
}

testing::AssertionResult EditDriver::titleBecomes(const std::string &text) const {
    if (WaitFor([&] { return edit.title() == text && isDone(); }, 10)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "title " << edit.title();
}

int EditDriver::xOf(TimeVal time) const {
    WaveViewRecord now = view();
    TimeVal offset = time - now.ViewLeft;
    return static_cast<int>(now.Scale >= 0 ? offset << now.Scale : offset >> -now.Scale);
}

void EditDriver::clickAt(int row, TimeVal time) const {
    click(xOf(time), rowMiddle(row));
    isDone();
}

void EditDriver::dragOver(int row, TimeVal from, TimeVal to) const {
    moveTo(3, xOf(from), rowMiddle(row));
    press();
    moveTo(3, xOf(from + (to - from) / 2), rowMiddle(row));
    moveTo(3, xOf(to), rowMiddle(row));
    isDone();
    release();
    isDone();
}

void EditDriver::typeText(const std::string &text) const {
    for (char c : text) {
        SHORT key = VkKeyScanA(c);
        std::vector<WORD> with;
        if (HIBYTE(key) & 1) with.push_back(VK_SHIFT);
        PressKey(LOBYTE(key), with);
    }
}

void EditDriver::typeInto(int id, const std::string &text) const {
    HWND field = GetDlgItem(edit.window, id);
    // In the field that has the keyboard already nothing would tell when the click has been seen.
    if (editor->focus() != field) edit.click(id);
    // Until the button is up the mouse selects.
    ASSERT_TRUE(WaitFor([&] { return editor->focus() == field; }, 10));
    ASSERT_TRUE(isDone() && HasCapture(field, false) && isDone());
    SendMessageA(field, EM_SETSEL, 0, -1);
    typeText(text);
    ASSERT_TRUE(fieldBecomes(id, text));
}

std::vector<std::string> EditDriver::states() const {
    HWND list = GetDlgItem(edit.window, EDIT_STATES);
    std::vector<std::string> names;
    LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
        // Between processes the text of a list comes as wide characters.
        wchar_t text[64] = L"";
        SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        names.emplace_back(text, text + wcslen(text));
    }
    return names;
}

bool EditDriver::isEnabled(int id) const {
    return IsWindowEnabled(GetDlgItem(edit.window, id));
}

std::string EditDriver::saved(const std::string &node) const {
    FILETIME before = {}, now = {};
    auto written = [&](FILETIME &time) {
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        GetFileAttributesExA(directory.file("edit.wdl").c_str(), GetFileExInfoStandard, &data);
        time = data.ftLastWriteTime;
    };
    written(before);
    editor->command(COMMAND_SAVE);
    WaitFor([&] {
        written(now);
        return CompareFileTime(&before, &now) != 0 && isDone();
    });
    std::string text = directory.read("edit.wdl");
    size_t at = text.find("\n" + node + " ");
    if (at == std::string::npos) return "no " + node + " in " + text;
    std::string statement = text.substr(at + 1, text.find(';', at) - at - 1);
    statement = statement.substr(statement.find('=') + 1);
    std::replace(statement.begin(), statement.end(), '\n', ' ');
    std::erase(statement, '\r');
    std::string joined;
    for (char c : statement)
        if (c != ' ' || (!joined.empty() && joined.back() != ' ')) joined += c;
    while (!joined.empty() && joined.back() == ' ') joined.pop_back();
    return joined;
}
