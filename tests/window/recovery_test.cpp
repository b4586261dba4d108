// The program is killed in the midst of editing, and started again.
#include "shell/command_ids.h"
#include "window/editor.h"
#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr int YES = 3, NO = 4;
constexpr int COPIES = 70;
// A copied row takes a record of 16 bytes and a mark, and a block of the log is written when the next entry
// would reach 1,152 bytes: with the mark of the 57th copy there are 1,140.
constexpr int COPIES_ON_DISK = 57;

class Recovery : public testing::Test {
protected:
    // Leaves a program that died behind many copies of a row.
    void SetUp() override {
        directory.write("plain.wdl", "%ENDTIME=40;\nA { In Default None 0 1 50 }=0 10 1 10;\n");
        directory.write("plain.kel", "Wave A\n");
        Editor editor(directory, "plain.wdl");
        ASSERT_TRUE(editor.open());
        ASSERT_TRUE(editor.plantSelectedRow(0));
        for (int i = 0; i < COPIES; i++) editor.command(COMMAND_DUPLICATE);
        ASSERT_TRUE(WaitFor([&] { return directory.read("plain._KL").size() > 1000; }));
        ASSERT_TRUE(editor.painted());
    }
    std::ptrdiff_t savedRows() const {
        std::string rows = directory.read("plain.kel");
        return std::count(rows.begin(), rows.end(), '\n');
    }
    void answer(const Editor &editor, int button) const {
        Dialog question = editor.dialog();
        ASSERT_NE(question.window, nullptr);
        EXPECT_EQ(question.labels(), (std::vector<std::string>{"Recover file from system crash -",
                                                               directory.file("plain._KL"), "Yes", "No"}));
        editor.shoot("recovery", question.window);
        question.click(button);
        EXPECT_TRUE(editor.dialogGone());
    }
    TestDirectory directory;
};

} // namespace

TEST_F(Recovery, AnsweredYesItBringsTheEditsBack) {
    Editor editor(directory, "plain.wdl");
    answer(editor, YES);
    ASSERT_TRUE(editor.open());
    editor.shoot("recovered");
    editor.command(COMMAND_UNDO);
    editor.command(COMMAND_UNDO);
    editor.command(COMMAND_REDO);
    editor.command(COMMAND_SAVE);
    ASSERT_TRUE(editor.hasStrip("File successfully saved"));
    EXPECT_EQ(savedRows(), 1 + COPIES_ON_DISK - 1);
    EXPECT_EQ(directory.read("plain._KL"), "");
    editor.close();
    EXPECT_EQ(editor.ended(), DWORD{0});
    EXPECT_FALSE(directory.has("plain._KL"));
}

TEST_F(Recovery, AnsweredNoItStartsFromTheFile) {
    Editor editor(directory, "plain.wdl");
    answer(editor, NO);
    ASSERT_TRUE(editor.open());
    editor.command(COMMAND_SAVE);
    ASSERT_TRUE(editor.hasStrip("File successfully saved"));
    EXPECT_EQ(savedRows(), 1);
    // Nothing has changed, so that nothing is asked.
    editor.close();
    EXPECT_EQ(editor.ended(), DWORD{0});
}
