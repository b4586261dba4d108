// Cut, copy, paste and delete by menu and keys, through the desktop's clipboard.

#include "edit/edit_dialog.h"
#include "shell/command_ids.h"
#include "window/edit_driver.h"

namespace {

class ClipboardWindow : public EditDriver {
protected:
    void SetUp() override {
        openRows("%ENDTIME = 400;\n"
                 "A { In Default None 0 1 50 } = 1 100 0 200 1 100;\n"
                 "B[7:0] { In Default None 0 1 50 } = 11 100 22 200 33 100;\n"
                 "C { In Default None 0 1 50 } = 0 400;\n",
                 {"A", "B[7:0]", "C"});
        format = RegisterClipboardFormatA("Kelvane");
    }
    void TearDown() override {
        if (editor && editor->running()) {
            editor->close();
            // A question whether to save comes when there are changes.
            EXPECT_TRUE(WaitFor([&] { return !editor->running() || !editor->dialogs().empty(); }));
            if (editor->running() && !editor->dialogs().empty()) editor->dialogs().front().click(4);
            EXPECT_EQ(editor->ended(), 0u);
        }
    }
    bool ownerIs(HWND window) const {
        return WaitFor([&] { return GetClipboardOwner() == window; }, 10);
    }
    std::string clipFile() const {
        char name[MAX_PATH] = "";
        editor->readMemory(editor->address("ClipName"), name, sizeof name);
        return name;
    }
    static bool exists(const std::string &path) {
        return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    // What the desktop's clipboard holds in our format.
    std::string clipboard() const {
        std::string bytes;
        if (!WaitFor([] { return OpenClipboard(nullptr) != 0; }, 10)) return "cannot be opened";
        if (HANDLE block = GetClipboardData(format)) {
            if (const void *data = GlobalLock(block)) {
                bytes.assign(static_cast<const char *>(data), GlobalSize(block));
                GlobalUnlock(block);
            }
        }
        CloseClipboard();
        return bytes;
    }
    static std::string ReadAll(const std::string &path) {
        std::string bytes;
        if (FILE *file = fopen(path.c_str(), "rb")) {
            for (int c; (c = fgetc(file)) != EOF;) bytes += static_cast<char>(c);
            fclose(file);
        }
        return bytes;
    }
    // Without the floating dialog, to which each selection of a level gives the keyboard.
    void keepKeys() {
        ASSERT_TRUE(editor->closeEditDialog());
        editor->toFront();
    }
    UINT format = 0;
    static constexpr int A = 0, B = 1, C = 2;
};

} // namespace

TEST_F(ClipboardWindow, CutAndPasteByTheMenu) {
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->toFront();
    PressKey('E', {VK_MENU});
    PressKey('T');
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_TRUE(ownerIs(editor->frame()));
    clickAt(C, 0);
    ASSERT_TRUE(kindBecomes(SEL_EDGE));
    PressKey('E', {VK_MENU});
    PressKey('P');
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("A"), "1 200");
    EXPECT_EQ(saved("C"), "0 600");
}

TEST_F(ClipboardWindow, CopyPasteAndDeleteByKeys) {
    keepKeys();
    clickAt(B, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    PressKey('C', {VK_CONTROL});
    ASSERT_TRUE(ownerIs(editor->frame()));
    EXPECT_EQ(selection().SelKind, SEL_PULSE);
    clickAt(B, 400);
    ASSERT_TRUE(kindBecomes(SEL_EDGE));
    PressKey('V', {VK_CONTROL});
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("B[7:0]"), "11 100 22 200 33 100 22 200");
    keepKeys();
    clickAt(B, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    PressKey(VK_DELETE);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("B[7:0]"), "22 200 33 100 22 200");
}

TEST_F(ClipboardWindow, TheOtherKeysDoTheSame) {
    keepKeys();
    dragOver(A, 40, 160);
    ASSERT_TRUE(kindBecomes(SEL_SPAN));
    PressKey(VK_INSERT, {VK_CONTROL});
    ASSERT_TRUE(ownerIs(editor->frame()));
    PressKey(VK_DELETE, {VK_SHIFT});
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    clickAt(C, 400);
    ASSERT_TRUE(kindBecomes(SEL_EDGE));
    PressKey(VK_INSERT, {VK_SHIFT});
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("A"), "1 40 0 140 1 100");
    EXPECT_EQ(saved("C"), "0 400 1 60 0 60");
}

TEST_F(ClipboardWindow, InAFieldTheKeysAreTheFields) {
    clickAt(B, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_VALUE, "5A");
    SendMessageA(GetDlgItem(edit.window, EDIT_VALUE), EM_SETSEL, 0, -1);
    PressKey('C', {VK_CONTROL});
    ASSERT_TRUE(WaitFor([] { return IsClipboardFormatAvailable(CF_TEXT) != 0; }, 10));
    EXPECT_FALSE(IsClipboardFormatAvailable(format));
    EXPECT_EQ(clipFile(), "");
}

TEST_F(ClipboardWindow, TheFormatIsRenderedWhenAnotherProgramAsks) {
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_COPY);
    ASSERT_TRUE(ownerIs(editor->frame()));
    ASSERT_TRUE(isDone());
    std::string file = ReadAll(clipFile());
    ASSERT_FALSE(file.empty());
    std::string length = {static_cast<char>(file.size()), 0, 0, 0};
    EXPECT_EQ(clipboard().substr(0, 4 + file.size()), length + file);
    EXPECT_TRUE(exists(clipFile()));
}

TEST_F(ClipboardWindow, AnotherProgramTakesTheClipboard) {
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_COPY);
    ASSERT_TRUE(ownerIs(editor->frame()));
    ASSERT_TRUE(isDone());
    std::string file = clipFile();
    ASSERT_TRUE(exists(file));
    ASSERT_TRUE(WaitFor([] { return OpenClipboard(GetDesktopWindow()) != 0; }, 10));
    EmptyClipboard();
    CloseClipboard();
    EXPECT_TRUE(WaitFor([&] { return clipFile().empty(); }, 10));
    EXPECT_FALSE(exists(file));
    // A paste then takes the selection away and adds nothing.
    editor->command(COMMAND_PASTE);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    EXPECT_EQ(saved("A"), "1 100 1 100");
}

TEST_F(ClipboardWindow, ASecondEditorTakesItAndPastesItsOwn) {
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_COPY);
    ASSERT_TRUE(ownerIs(editor->frame()));
    ASSERT_TRUE(isDone());
    std::string file = clipFile();
    std::unique_ptr<Editor> first = std::move(editor);
    Dialog firstEdit = edit;
    TestDirectory other;
    other.write("edit.wdl", "%ENDTIME = 400;\nX { In Default None 0 1 50 } = 1 100 0 300;\n");
    other.write("edit.kel", "Wave X\n");
    other.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=0,0,900,480\r\n");
    editor = std::make_unique<Editor>(other, "edit.wdl");
    ASSERT_TRUE(editor->open());
    clickAt(0, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_COPY);
    EXPECT_TRUE(ownerIs(editor->frame()));
    EXPECT_TRUE(WaitFor([&] { return !exists(file); }, 10)) << "the first one drops its file";
    editor->close();
    EXPECT_EQ(editor->ended(), 0u);
    editor = std::move(first);
    edit = firstEdit;
}

TEST_F(ClipboardWindow, TheClipboardOutlivesTheProgramAndItsFileDoesNot) {
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_COPY);
    ASSERT_TRUE(ownerIs(editor->frame()));
    ASSERT_TRUE(isDone());
    std::string name = clipFile();
    std::string file = ReadAll(name);
    editor->close();
    EXPECT_EQ(editor->ended(), 0u);
    EXPECT_FALSE(exists(name));
    std::string length = {static_cast<char>(file.size()), 0, 0, 0};
    EXPECT_EQ(clipboard().substr(0, 4 + file.size()), length + file);
}

TEST_F(ClipboardWindow, CutIsUndoneAndRedone) {
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_CUT);
    ASSERT_TRUE(kindBecomes(SEL_NONE));
    editor->command(COMMAND_UNDO);
    ASSERT_TRUE(isDone());
    editor->command(COMMAND_REDO);
    ASSERT_TRUE(isDone());
    editor->command(COMMAND_UNDO);
    ASSERT_TRUE(isDone());
    clickAt(A, 200);
    EXPECT_TRUE(titleBecomes("Selected Bit Pulse = Low"));
}

TEST_F(ClipboardWindow, AnotherWidthIsTold) {
    clickAt(B, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_COPY);
    ASSERT_TRUE(isDone());
    clickAt(A, 200);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    editor->command(COMMAND_PASTE);
    EXPECT_TRUE(editor->hasStrip("ERROR: Clipboard bit count not consistant"));
}
