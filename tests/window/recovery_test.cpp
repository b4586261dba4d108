// The program is killed in the midst of editing, and started again.
#include "shell/command_ids.h"
#include "shell/reporting.h"
#include "window/edit_driver.h"
#include <algorithm>

namespace {

constexpr int YES = 3, NO = 4;
constexpr int COPIES = 70;
// A copied row takes a record of 16 bytes and a mark, and a block of the log is written when the next entry
// would reach 1,152 bytes: with the mark of the 57th copy there are 1,140.
constexpr int COPIES_ON_DISK = 57;

std::string PromptOf(const Editor &editor) {
    char text[PROMPT_SIZE] = "";
    editor.readMemory(editor.address("PromptText"), text, sizeof text - 1);
    return text;
}

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

// Leaves a program that died in the midst of work with mouse and keyboard, and the next one with its
// question.
class RecoveryOfEdits : public EditDriver {
protected:
    static constexpr int A = 0, B = 1;
    void SetUp() override {
        openRows("%ENDTIME = 400;\n"
                 "A { In Default None 0 1 50 } = 0 400;\n"
                 "B[7:0] { In Default None 0 1 50 } = 11 100 22 200 33 100;\n",
                 {"A", "B[7:0]"});
        dragOver(A, 100, 200);
        ASSERT_TRUE(kindBecomes(SEL_PULSE));
        clickAt(B, 200);
        ASSERT_TRUE(kindBecomes(SEL_PULSE));
        typeInto(EDIT_VALUE, "5A");
        PressKey(VK_RETURN);
        ASSERT_TRUE(titleBecomes("Selected Bus Pulse = 33"));
        // A cut writes out all that was recorded, its own records too, but not the mark behind them.
        editor->command(COMMAND_CUT);
        ASSERT_TRUE(kindBecomes(SEL_NONE));
        ASSERT_GT(directory.read("edit._KL").size(), 76u);
        editor = nullptr;
        editor = std::make_unique<Editor>(directory, "edit.wdl");
    }
    void answer(int button) {
        Dialog question = editor->dialog();
        ASSERT_NE(question.window, nullptr);
        question.click(button);
        ASSERT_TRUE(editor->dialogGone());
        ASSERT_TRUE(editor->open());
    }
};

// The program faults in the midst of a gesture: a thread of it begins where no code is. Its last act is to
// bring to the log what was finished.
class Fault : public EditDriver {
protected:
    static constexpr int A = 0;
    void SetUp() override {
        openRows("%ENDTIME = 400;\n"
                 "A { In Default None 0 1 50 } = 0 400;\n",
                 {"A"});
        // Small enough to lie in memory alone.
        dragOver(A, 100, 200);
        ASSERT_TRUE(kindBecomes(SEL_PULSE));
        ASSERT_EQ(directory.read("edit._KL"), "");
    }
    void TearDown() override {
        PressButton(false);
        EditDriver::TearDown();
    }
    void faultAndRecover() {
        DWORD id = 0;
        GetWindowThreadProcessId(editor->frame(), &id);
        HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id);
        ASSERT_NE(process, nullptr);
        auto nowhere = reinterpret_cast<LPTHREAD_START_ROUTINE>(16);
        HANDLE thread = CreateRemoteThread(process, nullptr, 0, nowhere, nullptr, 0, nullptr);
        ASSERT_NE(thread, nullptr);
        EXPECT_TRUE(WaitFor([&] { return !directory.read("edit._KL").empty(); }));
        // What the system shows of the fault is not waited for.
        TerminateProcess(process, 1);
        WaitForSingleObject(process, 10000);
        CloseHandle(thread);
        CloseHandle(process);
        PressButton(false);
        editor = nullptr;
        editor = std::make_unique<Editor>(directory, "edit.wdl");
        Dialog question = editor->dialog();
        ASSERT_NE(question.window, nullptr);
        question.click(YES);
        ASSERT_TRUE(editor->dialogGone());
        ASSERT_TRUE(editor->open());
        EXPECT_EQ(PromptOf(*editor), "Recovered from the log: 1 action, without 0 bytes at its end.");
        EXPECT_EQ(saved("A"), "0 100 1 100 0 200");
    }
    void pressAt(TimeVal time) const {
        moveTo(3, xOf(time), rowMiddle(A));
        press();
        isDone();
    }
};

} // namespace

TEST_F(Fault, BetweenGesturesLosesNothing) {
    faultAndRecover();
}

TEST_F(Fault, WithTheButtonDownLosesNothing) {
    pressAt(300);
    faultAndRecover();
}

TEST_F(Fault, WhileARangeIsDraggedLosesNothing) {
    pressAt(300);
    moveTo(3, xOf(350), rowMiddle(A));
    isDone();
    faultAndRecover();
}

TEST_F(Fault, WhileAnEdgeIsDraggedLosesNothing) {
    pressAt(200);
    moveTo(3, xOf(240), rowMiddle(A));
    isDone();
    faultAndRecover();
}

TEST_F(Fault, WhileAValueIsTypedLosesNothing) {
    clickAt(A, 50);
    ASSERT_TRUE(kindBecomes(SEL_PULSE));
    typeInto(EDIT_DURATION, "55");
    faultAndRecover();
}

TEST_F(RecoveryOfEdits, AnsweredYesTheWavesHaveThemButTheOneThatWasNotDone) {
    answer(YES);
    editor->shoot("recovered-edits");
    EXPECT_EQ(saved("A"), "0 100 1 100 0 200");
    EXPECT_EQ(saved("B[7:0]"), "11 100 5a 200 33 100");
}

TEST_F(RecoveryOfEdits, AnsweredYesTheyCanBeUndone) {
    answer(YES);
    editor->command(COMMAND_UNDO);
    editor->command(COMMAND_UNDO);
    EXPECT_EQ(saved("A"), "0 400");
    EXPECT_EQ(saved("B[7:0]"), "11 100 22 200 33 100");
}

TEST_F(RecoveryOfEdits, AnsweredNoTheWavesAreThoseOfTheFile) {
    answer(NO);
    EXPECT_EQ(saved("A"), "0 400");
    EXPECT_EQ(saved("B[7:0]"), "11 100 22 200 33 100");
}

TEST_F(Recovery, AnsweredYesItBringsTheEditsBack) {
    Editor editor(directory, "plain.wdl");
    answer(editor, YES);
    ASSERT_TRUE(editor.open());
    // Behind the last whole action nothing was left.
    EXPECT_EQ(PromptOf(editor), "Recovered from the log: " + std::to_string(COPIES_ON_DISK) +
                                    " actions, without 0 bytes at its end.");
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
