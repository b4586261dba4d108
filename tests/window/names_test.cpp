// File names outside the code page that Windows began with.

#include "shell/command_ids.h"
#include "window/editor.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

namespace fs = std::filesystem;

const std::string NAME = "Za\u017C\u00F3\u0142\u0107 \u03A9 \u6CE2";
constexpr const char *TEXT = "%ENDTIME = 40;\nA { In Default None 0 1 50 } = 0 10 1 10;\n";

std::wstring WideTitle(const Editor &editor) {
    wchar_t text[200] = L"";
    DWORD_PTR length = 0;
    SendMessageTimeoutW(editor.frame(), WM_GETTEXT, 200, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, 10000,
                        &length);
    return text;
}

class Names : public testing::Test {
protected:
    void write(const std::string &name) const { std::ofstream(place(name), std::ios::binary) << TEXT; }
    fs::path place(const std::string &name) const { return fs::path(directory.path) / Wide(name); }
    bool has(const std::string &name) const { return fs::exists(place(name)); }
    TestDirectory directory;
};

// A copy of the program that asks for no code page, as an old Windows takes it.
class OldWindows : public Names {
protected:
    void SetUp() override {
        std::string image =
            (std::stringstream() << std::ifstream(ProgramPath, std::ios::binary).rdbuf()).str();
        size_t wish = image.find(">UTF-8</activeCodePage>");
        ASSERT_NE(wish, std::string::npos);
        image.replace(wish, 6, ">en-US");
        before = ProgramPath;
        ProgramPath = directory.write("old.exe", image);
        fs::copy_file(fs::path(before).replace_extension(".map"), directory.file("old.map"));
    }
    void TearDown() override { ProgramPath = before; }
    // What the program says of the name; then it goes on.
    static void expectRefused(const Editor &editor) {
        Dialog box = editor.dialog();
        ASSERT_NE(box.window, nullptr);
        std::string text = box.labels().back();
        EXPECT_NE(text.find("cannot be used: this version of Windows has no code page for its characters"),
                  std::string::npos)
            << text;
        editor.shoot("name-outside", box.window);
        PressKey(VK_RETURN);
        EXPECT_TRUE(editor.dialogGone());
    }
    std::string before;
};

} // namespace

TEST_F(Names, AnyNameOpensFromTheCommandLine) {
    write(NAME + ".wdl");
    Editor editor(directory, "\"" + NAME + ".wdl\"");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(WideTitle(editor), Wide("Kelvane - " + NAME));
    editor.shoot("name-unicode");
    EXPECT_GT(PictureOfClient(editor.pane(3)).count(0x0000FF, 0, 0, 500, 40), 0);
    editor.command(COMMAND_SAVE);
    ASSERT_TRUE(editor.hasStrip("File successfully saved"));
    EXPECT_TRUE(has(NAME + ".kel"));
}

TEST_F(Names, AnyNameOpensAndSavesThroughTheDialogs) {
    write(NAME + ".wdl");
    Editor editor(directory, "");
    ASSERT_TRUE(editor.open());
    editor.command(COMMAND_OPEN);
    Dialog dialog = editor.dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile(directory.path + "\\" + NAME + ".wdl");
    ASSERT_TRUE(editor.dialogGone());
    ASSERT_TRUE(WaitFor([&] { return WideTitle(editor).find(L'\u6CE2') != std::wstring::npos; }));
    EXPECT_EQ(WideTitle(editor), Wide("Kelvane - ZA\u017B\u00D3\u0141\u0106 \u03A9 \u6CE2"));
    editor.command(COMMAND_SAVE_AS);
    dialog = editor.dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile("\u03A8 new");
    ASSERT_TRUE(editor.hasStrip("File successfully saved"));
    EXPECT_TRUE(has("\u03C8 new.wdl")) << "in small letters, in the document's folder";
}

TEST_F(Names, SaveAsAndOpenBeginInTheDocumentsFolder) {
    fs::create_directory(fs::path(directory.file("deep")));
    directory.write("deep\\doc.wdl", TEXT);
    directory.write("deep\\near.wdl", TEXT);
    Editor editor(directory, "deep\\doc.wdl");
    ASSERT_TRUE(editor.open());
    editor.command(COMMAND_SAVE_AS);
    Dialog dialog = editor.dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile("copy");
    ASSERT_TRUE(editor.hasStrip("File successfully saved"));
    EXPECT_TRUE(directory.has("deep\\copy.wdl"));
    editor.command(COMMAND_OPEN);
    dialog = editor.dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile("near.wdl");
    EXPECT_TRUE(WaitFor([&] { return editor.title() == "Kelvane - NEAR"; }));
}

TEST_F(OldWindows, ANameOutsideTheCodePageIsToldAtTheStart) {
    write(NAME + ".wdl");
    Editor editor(directory, "\"" + NAME + ".wdl\"");
    expectRefused(editor);
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - <untitled>");
}

TEST_F(OldWindows, ANameOutsideTheCodePageIsToldByOpenAndSaveAs) {
    write(NAME + ".wdl");
    directory.write("plain.wdl", TEXT);
    Editor editor(directory, "plain.wdl");
    ASSERT_TRUE(editor.open());
    for (int command : {COMMAND_OPEN, COMMAND_SAVE_AS}) {
        editor.command(command);
        Dialog dialog = editor.dialog();
        ASSERT_NE(dialog.window, nullptr);
        dialog.giveFile(directory.path + "\\" + (command == COMMAND_OPEN ? NAME : std::string("\u03A8")) +
                        ".wdl");
        ASSERT_TRUE(WaitFor([&] { return !IsWindow(dialog.window); }));
        expectRefused(editor);
        EXPECT_EQ(editor.title(), "Kelvane - plain");
    }
    EXPECT_FALSE(has("\u03C8.wdl"));
}
