// F1 and the help menu, as far as the page that the browser is given.

#include "shell/command_ids.h"
#include "window/editor.h"
#include <gtest/gtest.h>

namespace {

constexpr const char *REDIRECT = "kelvane-help.html";

class HelpKeys : public testing::Test {
protected:
    void SetUp() override {
        directory.write("a.wdl", "%ENDTIME=40;\nA { In Default None 0 1 50 }=0 10 1 10;\n");
        GetEnvironmentVariableA("TMP", before, sizeof before);
        // Where the program puts the page that leads into the manual.
        SetEnvironmentVariableA("TMP", directory.path.c_str());
        editor = std::make_unique<Editor>(directory, "a.wdl");
        ASSERT_TRUE(editor->open());
    }
    void TearDown() override {
        editor.reset();
        SetEnvironmentVariableA("TMP", before[0] ? before : nullptr);
    }
    // Waits for a page that leads to this place in the manual beside the program.
    bool opened(const std::string &place) const {
        return WaitFor(
            [&] { return directory.read(REDIRECT).find("/manual/" + place + "\"") != std::string::npos; },
            10);
    }
    // Comes back from what the page was shown by: a browser, or the message that there is none.
    void comeBack() const {
        WaitFor([&] { return GetForegroundWindow() != editor->frame(); }, 3);
        if (ClassOf(GetForegroundWindow()) == "#32770") {
            Dialog box{GetForegroundWindow()};
            std::string text = box.labels().back();
            EXPECT_NE(text.find("Open this page with a web browser: "), std::string::npos) << text;
            EXPECT_NE(text.find("\\manual\\"), std::string::npos) << text;
            PressKey(VK_RETURN);
            EXPECT_TRUE(editor->dialogGone());
        }
        editor->toFront();
    }
    bool nothingOpened() const { return editor->painted() && !directory.has(REDIRECT); }

    char before[MAX_PATH] = "";
    TestDirectory directory;
    std::unique_ptr<Editor> editor;
};

} // namespace

TEST_F(HelpKeys, F1OpensTheManualAtTheModeInForce) {
    PressKey(VK_F2);
    PressKey(VK_F1);
    EXPECT_TRUE(opened("commands.html#command-214"));
}

TEST_F(HelpKeys, F1WorksFromInsideAFloatingDialog) {
    PressKey(VK_F2);
    editor->command(COMMAND_SHOW_WAVEFORM_DATA);
    ASSERT_NE(editor->dialog().window, nullptr);
    PressKey(VK_F1);
    EXPECT_TRUE(opened("commands.html#command-214"));
}

TEST_F(HelpKeys, F1InAMenuOpensTheHighlightedEntry) {
    PressKey('V', {VK_MENU});
    PressKey(VK_F1);
    // The first entry is highlighted by the key that opened the menu.
    EXPECT_TRUE(opened("commands.html#command-2"));
    PressKey(VK_ESCAPE);
    PressKey(VK_ESCAPE);
}

TEST_F(HelpKeys, F1OnASubmenuOpensNothing) {
    PressKey(VK_F10);
    PressKey(VK_F1);
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(nothingOpened());
}

TEST_F(HelpKeys, TheHelpMenuOpensTheManual) {
    PressKey('H', {VK_MENU});
    PressKey('C');
    EXPECT_TRUE(opened("index.html"));
    comeBack();
    PressKey('H', {VK_MENU});
    PressKey('S');
    EXPECT_TRUE(opened("commands.html"));
    comeBack();
    PressKey('H', {VK_MENU});
    PressKey('H');
    EXPECT_TRUE(opened("index.html#help"));
}
