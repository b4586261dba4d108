// New, Open, Save, Save As and leaving, through the real menus and dialogs, and the files that are left.

#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

// Blanks and order as the program does not write them, so that a save can be seen.
constexpr const char *TYPED = "%ENDTIME=40;\nA { In Default None 0 1 50 }=0   10 1 10;\n";
constexpr const char *SAVED = "%MASTERCLOCKMULT = 1;\r\n"
                              "%SMALLESTUNIT    = 12;\r\n"
                              "%AUTOASSIGN      = 1;\r\n"
                              "%DECIMALS        = 0;\r\n"
                              "%ENDTIME         = 40;\r\n"
                              "A { Z In Default None 0 1 50 } = 0 10 1 10;\r\n";

class Document : public testing::Test {
protected:
    void SetUp() override {
        directory.write("plain.wdl", TYPED);
        directory.write("plain.kel", "Wave A\n");
        directory.write("other.wdl", "%ENDTIME=40;\nB { In Default None 0 1 50 }=1 10;\n");
        directory.write("other.kel", "Wave B\n");
    }
    void start(const std::string &arguments) {
        editor = std::make_unique<Editor>(directory, arguments);
        ASSERT_TRUE(editor->open());
    }
    // Chooses an entry of a menu with the keyboard.
    void choose(WORD menu, WORD entry) const {
        editor->toFront();
        PressKey(menu, {VK_MENU});
        PressKey(entry);
    }
    void expectQuestion(const Dialog &question, const std::string &name) const {
        ASSERT_NE(question.window, nullptr);
        EXPECT_EQ(question.title(), "Kelvane");
        EXPECT_EQ(question.labels(),
                  (std::vector<std::string>{"Data has been modified:", name, "Do you wish to save changes ?",
                                            "YES", "NO", "Cancel"}));
    }
    bool titleBecomes(const std::string &title) const {
        return WaitFor([&] { return editor->title() == title; });
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
};

constexpr int YES = 3, NO = 4, CANCEL = 5;

} // namespace

TEST_F(Document, SaveWritesBothFilesAndSaysSo) {
    start("plain.wdl");
    choose('F', 'S');
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    EXPECT_EQ(directory.read("plain.wdl"), SAVED);
    EXPECT_EQ(directory.read("plain.kel"), "Wave A\r\n");
    EXPECT_EQ(editor->title(), "Kelvane - PLAIN");
    EXPECT_FALSE(directory.has("plain.err"));
    editor->shoot("saved");
}

TEST_F(Document, TheStripStandsAboveThePromptLineAndLeavesTheKeyboardAlone) {
    start("plain.wdl");
    editor->command(COMMAND_SAVE);
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    RECT frame = PlaceOf(editor->frame()), strip = PlaceOf(editor->strip());
    int border = GetSystemMetrics(SM_CXFRAME), line = GetSystemMetrics(SM_CYMENU);
    EXPECT_EQ(strip.left, frame.left + border);
    EXPECT_EQ(strip.right, frame.right - border);
    EXPECT_EQ(strip.top, frame.bottom - 2 * line - GetSystemMetrics(SM_CYFRAME));
    EXPECT_EQ(strip.bottom, strip.top + line);
    EXPECT_EQ(editor->focus(), editor->frame());
}

TEST_F(Document, TheNextCommandAndAMoveRemoveTheStrip) {
    start("plain.wdl");
    editor->command(COMMAND_SAVE);
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    editor->command(COMMAND_REDRAW);
    EXPECT_TRUE(WaitFor([&] { return editor->strip() == nullptr; }));
    editor->command(COMMAND_SAVE);
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    SetWindowPos(editor->frame(), nullptr, 70, 60, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_TRUE(WaitFor([&] { return editor->strip() == nullptr; }));
}

TEST_F(Document, SavingAMissingFileMakesItWithoutAQuestion) {
    start("fresh.wdl");
    editor->command(COMMAND_SAVE);
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    EXPECT_NE(directory.read("fresh.wdl").find("%ENDTIME"), std::string::npos);
    EXPECT_TRUE(directory.has("fresh.kel"));
}

TEST_F(Document, SaveAsWritesUnderTheNameGivenAndKeepsTheOldFile) {
    start("plain.wdl");
    choose('F', 'A');
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    editor->shoot("save-as", dialog.window);
    dialog.giveFile(directory.file("Copy.wdl"));
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    EXPECT_EQ(directory.read("copy.wdl"), SAVED);
    EXPECT_EQ(directory.read("copy.kel"), "Wave A\r\n");
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
    EXPECT_EQ(editor->title(), "Kelvane - COPY");
}

TEST_F(Document, SaveAsAddsTheExtension) {
    start("plain.wdl");
    editor->command(COMMAND_SAVE_AS);
    editor->dialog().giveFile(directory.file("bare"));
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    EXPECT_EQ(directory.read("bare.wdl"), SAVED);
}

TEST_F(Document, CancellingSaveAsWritesNothing) {
    start("plain.wdl");
    editor->command(COMMAND_SAVE_AS);
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.click(IDCANCEL);
    ASSERT_TRUE(editor->dialogGone());
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(editor->strip(), nullptr);
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
    EXPECT_EQ(editor->title(), "Kelvane - plain");
}

TEST_F(Document, AnUntitledDocumentIsSavedThroughTheDialog) {
    start("");
    editor->command(COMMAND_SAVE);
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile(directory.file("first.wdl"));
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    EXPECT_TRUE(directory.has("first.wdl"));
    EXPECT_EQ(editor->title(), "Kelvane - FIRST");
}

TEST_F(Document, AFileMadeReadOnlyIsSavedUnderAnotherName) {
    start("plain.wdl");
    SetFileAttributesA(directory.file("plain.wdl").c_str(), FILE_ATTRIBUTE_READONLY);
    editor->command(COMMAND_SAVE);
    Dialog alert = editor->dialog();
    ASSERT_NE(alert.window, nullptr);
    EXPECT_EQ(alert.labels(), (std::vector<std::string>{"This file is read only:", "plain.wdl", "OK"}));
    editor->shoot("alert-read-only", alert.window);
    alert.click(YES);
    Dialog dialog = editor->dialog(alert.window);
    ASSERT_NE(dialog.window, nullptr);
    dialog.giveFile(directory.file("second.wdl"));
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    EXPECT_EQ(directory.read("second.wdl"), SAVED);
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
    // From now on every save asks.
    editor->command(COMMAND_SAVE);
    Dialog again = editor->dialog();
    EXPECT_EQ(again.text(0), "This file is read only:");
    EXPECT_EQ(again.text(1), "second.wdl");
}

TEST_F(Document, NewThrowsTheDocumentAwayAndLeavesItsFile) {
    start("plain.wdl");
    choose('F', 'N');
    ASSERT_TRUE(titleBecomes("Kelvane - <untitled>"));
    ASSERT_TRUE(editor->painted());
    Picture waves = PictureOfClient(editor->pane(3));
    // Nothing but the cursor, in the first column.
    EXPECT_EQ(waves.count(colour::black, 0, 0, 1, waves.height), waves.height);
    EXPECT_EQ(waves.count(colour::white, 1, 0, waves.width, waves.height), (waves.width - 1) * waves.height);
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
}

TEST_F(Document, OpenShowsTheFileChosen) {
    start("plain.wdl");
    choose('F', 'O');
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    editor->shoot("open", dialog.window);
    dialog.giveFile(directory.file("other.wdl"));
    ASSERT_TRUE(titleBecomes("Kelvane - OTHER"));
    ASSERT_TRUE(editor->painted());
    // The one node of the other file is high from the start.
    Expected sizes = ExpectedSizes();
    EXPECT_EQ(PictureOfClient(editor->pane(3)).at(4, sizes.high(0)), colour::blue);
}

TEST_F(Document, CancellingOpenKeepsTheDocument) {
    start("plain.wdl");
    // The ruler follows the mouse, which goes to the dialog's button.
    Picture names = PictureOfClient(editor->pane(2));
    Picture waves = PictureOfClient(editor->pane(3));
    editor->command(COMMAND_OPEN);
    Dialog dialog = editor->dialog();
    ASSERT_NE(dialog.window, nullptr);
    dialog.click(IDCANCEL);
    ASSERT_TRUE(editor->dialogGone());
    editor->toFront();
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(editor->title(), "Kelvane - plain");
    EXPECT_TRUE(PictureOfClient(editor->pane(2)) == names);
    EXPECT_TRUE(PictureOfClient(editor->pane(3)) == waves);
}

// --- leaving --------------------------------------------------------------------------------------

TEST_F(Document, ExitLeavesAnUnchangedDocumentWithoutAQuestion) {
    start("plain.wdl");
    choose('F', 'X');
    EXPECT_EQ(editor->ended(), 0u);
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
    EXPECT_FALSE(directory.has("plain.err"));
    EXPECT_TRUE(directory.has("config\\Kelvane.ini"));
}

TEST_F(Document, YesSavesAndLeaves) {
    start("plain.wdl");
    ASSERT_TRUE(editor->plantChange());
    choose('F', 'X');
    Dialog question = editor->dialog();
    expectQuestion(question, "plain.wdl");
    editor->shoot("alert-modified", question.window);
    question.click(YES);
    EXPECT_EQ(editor->ended(), 0u);
    EXPECT_EQ(directory.read("plain.wdl"), SAVED);
}

TEST_F(Document, NoLeavesTheFileAsItIs) {
    start("plain.wdl");
    ASSERT_TRUE(editor->plantChange());
    editor->close();
    Dialog question = editor->dialog();
    expectQuestion(question, "plain.wdl");
    question.click(NO);
    EXPECT_EQ(editor->ended(), 0u);
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
}

TEST_F(Document, CancelStaysInTheProgram) {
    start("plain.wdl");
    ASSERT_TRUE(editor->plantChange());
    editor->close();
    Dialog question = editor->dialog();
    expectQuestion(question, "plain.wdl");
    question.click(CANCEL);
    ASSERT_TRUE(editor->dialogGone());
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(editor->running());
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
    // The change is still there.
    editor->close();
    EXPECT_NE(editor->dialog().window, nullptr);
}

TEST_F(Document, EscIsCancelAndEnterIsYes) {
    start("plain.wdl");
    ASSERT_TRUE(editor->plantChange());
    editor->close();
    ASSERT_NE(editor->dialog().window, nullptr);
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(editor->dialogGone());
    EXPECT_TRUE(editor->running());
    editor->close();
    ASSERT_NE(editor->dialog().window, nullptr);
    PressKey(VK_RETURN);
    EXPECT_EQ(editor->ended(), 0u);
    EXPECT_EQ(directory.read("plain.wdl"), SAVED);
}

TEST_F(Document, AfterASaveThereIsNothingToAsk) {
    start("plain.wdl");
    ASSERT_TRUE(editor->plantChange());
    editor->command(COMMAND_SAVE);
    ASSERT_TRUE(editor->hasStrip("File successfully saved"));
    editor->close();
    EXPECT_EQ(editor->ended(), 0u);
}

TEST_F(Document, AnUntitledChangeAsksForANameAndCancellingThatStays) {
    start("");
    ASSERT_TRUE(editor->plantChange());
    editor->close();
    Dialog question = editor->dialog();
    expectQuestion(question, "(Untitled)");
    question.click(YES);
    Dialog save = editor->dialog(question.window);
    ASSERT_NE(save.window, nullptr);
    save.click(IDCANCEL);
    ASSERT_TRUE(editor->dialogGone());
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(editor->running());
}

TEST_F(Document, OpenAndNewAskAboutAChangeFirst) {
    start("plain.wdl");
    ASSERT_TRUE(editor->plantChange());
    for (int command : {COMMAND_OPEN, COMMAND_NEW}) {
        editor->command(command);
        Dialog question = editor->dialog();
        expectQuestion(question, "plain.wdl");
        question.click(CANCEL);
        ASSERT_TRUE(editor->dialogGone());
        EXPECT_EQ(editor->title(), "Kelvane - plain");
    }
    editor->command(COMMAND_NEW);
    editor->dialog().click(NO);
    EXPECT_TRUE(titleBecomes("Kelvane - <untitled>"));
    EXPECT_EQ(directory.read("plain.wdl"), TYPED);
}

TEST_F(Document, TheEndOfTheSessionAsksToo) {
    start("plain.wdl");
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(editor->frame(), WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, 20000, &answer);
    EXPECT_EQ(answer, 1u);
    ASSERT_TRUE(editor->plantChange());
    PostMessageA(editor->frame(), WM_QUERYENDSESSION, 0, 0);
    Dialog question = editor->dialog();
    expectQuestion(question, "plain.wdl");
    question.click(CANCEL);
    EXPECT_TRUE(editor->dialogGone());
    EXPECT_TRUE(editor->running());
}

TEST_F(Document, TheEndOfTheSessionLeavesThePlacesAndNoLog) {
    start("plain.wdl");
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(editor->frame(), WM_ENDSESSION, FALSE, 0, SMTO_NORMAL, 20000, &answer);
    EXPECT_FALSE(directory.has("config\\Kelvane.ini"));
    SendMessageTimeoutA(editor->frame(), WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 20000, &answer);
    EXPECT_NE(directory.read("config\\Kelvane.ini").find("Main-Pos="), std::string::npos);
    // What may still come until the process is ended does no harm.
    editor->command(COMMAND_REDRAW);
    InvalidateRect(editor->pane(3), nullptr, TRUE);
    editor->close();
    EXPECT_EQ(editor->ended(), 0u);
}
