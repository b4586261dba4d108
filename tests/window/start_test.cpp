// What stands on the screen after a start, for each kind of command line.

#include "shell/commands.h"
#include "window/editor.h"
#include <cstddef>
#include <gtest/gtest.h>

namespace {

class Start : public testing::Test {
protected:
    TestDirectory directory;
};

constexpr const char *ONE_NODE = "%ENDTIME = 40;\n"
                                 "A { In Default None 0 1 50 } = 0 10 1 10;\n";
constexpr const char *OTHER_NODE = "%ENDTIME = 40;\n"
                                   "B { In Default None 0 1 50 } = 1 10;\n";

} // namespace

TEST_F(Start, WithoutAFileOpensAnUntitledDocumentAndMakesNoFile) {
    Editor editor(directory, "");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - <untitled>");
    editor.shoot("start-untitled");
    editor.close();
    EXPECT_EQ(editor.ended(), 0u);
    EXPECT_FALSE(directory.has(".wdl"));
    EXPECT_FALSE(directory.has(".kel"));
}

TEST_F(Start, WithAFileShowsItsNameAsTyped) {
    directory.write("Plain.wdl", ONE_NODE);
    Editor editor(directory, "Plain.wdl");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - Plain");
}

TEST_F(Start, TheExtensionMayBeLeftOut) {
    directory.write("plain.wdl", ONE_NODE);
    directory.write("plain.kel", "Wave A\n");
    Editor editor(directory, "plain");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - plain");
    EXPECT_GT(PictureOfClient(editor.pane(3)).count(0x0000FF, 0, 0, 500, 40), 0);
}

TEST_F(Start, AMissingFileIsAnEmptyDocumentOfThatName) {
    Editor editor(directory, "missing.wdl");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - missing");
    EXPECT_FALSE(directory.has("missing.wdl"));
}

TEST_F(Start, OfTwoFilesTheLastOneCounts) {
    directory.write("one.wdl", ONE_NODE);
    directory.write("two.wdl", OTHER_NODE);
    Editor editor(directory, "one.wdl two.wdl");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - two");
}

TEST_F(Start, AQuotedNameWithBlanksArrivesWhole) {
    directory.write("my own file.wdl", ONE_NODE);
    directory.write("my own file.kel", "Wave A\n");
    Editor editor(directory, "\"my own file.wdl\"");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - my own file");
    EXPECT_GT(PictureOfClient(editor.pane(3)).count(0x0000FF, 0, 0, 500, 40), 0);
}

TEST_F(Start, OptionsAreNotFiles) {
    directory.write("one.wdl", ONE_NODE);
    Editor editor(directory, "-SYNC one.wdl -unknown");
    ASSERT_TRUE(editor.open());
    EXPECT_EQ(editor.title(), "Kelvane - one");
}

TEST_F(Start, WorkBeginsInEditModeAndTheKeysChangeIt) {
    directory.write("one.wdl", ONE_NODE);
    Editor editor(directory, "one.wdl");
    ASSERT_TRUE(editor.open());
    auto modeBecomes = [&](uint16_t mode) {
        return WaitFor([&] {
            uint16_t current = 0;
            editor.readMemory(editor.address("CommandState"), &current, sizeof current);
            return current == mode;
        });
    };
    static_assert(offsetof(CommandStateRecord, CurrentCommand) == 0);
    EXPECT_TRUE(modeBecomes(COMMAND_EDIT_MODE));
    PressKey(VK_F2);
    EXPECT_TRUE(modeBecomes(COMMAND_QUERY_MODE));
    PressKey('E', {VK_MENU});
    PressKey('E');
    EXPECT_TRUE(modeBecomes(COMMAND_EDIT_MODE));
    PressKey('Q', {VK_CONTROL});
    EXPECT_TRUE(modeBecomes(COMMAND_QUERY_MODE));
}
