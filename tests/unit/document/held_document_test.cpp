#include "document/held_document.h"

#include "document/document.h"
#include "document/startup.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const char *const SIMPLE = "A { Default } = 1 5;\n";

class HeldDocument : public testing::Test {
protected:
    void SetUp() override {
        former = fs::current_path();
        InitHeadless();
        setenv("KELVANE_CONFIG", directory.path.c_str(), 1);
        one = directory.write("one.wdl", SIMPLE);
        two = directory.write("two.wdl", "B { Default } = 1 5;\n");
    }
    void TearDown() override {
        ReleaseDocument();
        unsetenv("KELVANE_CONFIG");
        fs::current_path(former);
    }
    int start(const std::string &path) {
        InitCommands();
        PrepareApplication(path.c_str());
        return RunAfterCreate();
    }
    static Texts told(const std::string &name) { return {name + " is already open in another window"}; }

    ScratchDirectory directory;
    fs::path former;
    std::string one, two;
};

TEST_F(HeldDocument, TheProgramHoldsWhatItOpens) {
    ASSERT_EQ(start(one), 0);
    EXPECT_EQ(Headless.heldFile, one);
    EXPECT_EQ(OpenDocument(two.c_str(), false), 1);
    EXPECT_EQ(Headless.heldFile, two);
    EXPECT_EQ(OpenDocument("", true), 1);
    EXPECT_EQ(Headless.heldFile, "") << "an untitled document is nobody else's";
}

TEST_F(HeldDocument, TheExtensionDoesNotMatter) {
    ASSERT_EQ(start(directory.file("one.kel")), 0);
    EXPECT_EQ(Headless.heldFile, one);
    Headless.heldElsewhere = {two};
    EXPECT_EQ(OpenDocument(directory.file("two").c_str(), false), 1);
    EXPECT_EQ(Headless.holdersShown, Texts{two});
}

TEST_F(HeldDocument, AStartOnWhatAnotherOneHoldsEndsAndTouchesNothing) {
    std::string log = directory.write("one._KL", "the other one's");
    Headless.heldElsewhere = {one};
    EXPECT_NE(start(one), 0);
    EXPECT_EQ(Headless.userErrors, told("one.wdl"));
    EXPECT_EQ(Headless.holdersShown, Texts{one});
    EXPECT_TRUE(Headless.alerts.empty()) << "no recovery is offered";
    ReleaseDocument();
    EXPECT_EQ(ReadWholeFile(log), "the other one's");
}

TEST_F(HeldDocument, OpenKeepsTheDocumentThatItHas) {
    std::string log = directory.write("two._KL", "the other one's");
    ASSERT_EQ(start(one), 0);
    Headless.heldElsewhere = {two};
    Headless.fileAnswers = {two};
    DispatchCommand(COMMAND_OPEN);
    EXPECT_EQ(Headless.userErrors, told("two.wdl"));
    EXPECT_EQ(Headless.holdersShown, Texts{two});
    EXPECT_EQ(Headless.heldFile, one);
    EXPECT_NE(FindPattern("A"), nullptr);
    EXPECT_EQ(std::string(DocumentPath), directory.file("one.kel"));
    EXPECT_EQ(ReadWholeFile(log), "the other one's");
}

TEST_F(HeldDocument, SaveAsOntoAHeldFileWritesNothing) {
    ASSERT_EQ(start(one), 0);
    EditLog.rPtr = 12;
    Headless.heldElsewhere = {two};
    Headless.fileAnswers = {two};
    EXPECT_EQ(SaveDocument(true), 0);
    EXPECT_EQ(Headless.userErrors, told("two.wdl"));
    EXPECT_EQ(Headless.holdersShown, Texts{two});
    EXPECT_EQ(Headless.heldFile, one);
    EXPECT_EQ(IsDocumentModified(), 1);
    EXPECT_EQ(ReadWholeFile(two), "B { Default } = 1 5;\n");
    EditLog.rPtr = 0;
}

TEST_F(HeldDocument, SaveAsTakesTheNewFileAndLetsGoOfTheOldOne) {
    ASSERT_EQ(start(one), 0);
    Headless.fileAnswers = {directory.file("three.wdl")};
    EXPECT_EQ(SaveDocument(true), 1);
    EXPECT_EQ(Headless.heldFile, directory.file("three.wdl"));
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(HeldDocument, ASaveAsThatFailsKeepsTheDocumentsFile) {
    ASSERT_EQ(start(one), 0);
    Headless.fileAnswers = {directory.file("missing/three.wdl")};
    EXPECT_EQ(SaveDocument(true), 0);
    EXPECT_EQ(Headless.heldFile, one);
}

TEST_F(HeldDocument, ARequestedFileThatIsHeldLeavesTheDocument) {
    ASSERT_EQ(start(one), 0);
    Headless.heldElsewhere = {two};
    Headless.fileAnswers = {two};
    EXPECT_EQ(OnFileRequest(0, 0), 1);
    EXPECT_EQ(Headless.userErrors, told("two.wdl"));
    EXPECT_EQ(Headless.heldFile, one);
    EXPECT_NE(FindPattern("A"), nullptr);
}

TEST_F(HeldDocument, TheFileDialogsBeginInTheDocumentsFolder) {
    ASSERT_EQ(start(one), 0);
    DispatchCommand(COMMAND_OPEN);
    DispatchCommand(COMMAND_SAVE_AS);
    ASSERT_EQ(Headless.fileQuestions.size(), 2u);
    EXPECT_EQ(Headless.fileQuestions[0].directory, directory.path);
    EXPECT_EQ(Headless.fileQuestions[1].directory, directory.path);
    EXPECT_EQ(Headless.fileQuestions[1].path, "one.wdl");
    OpenDocument("", true);
    DispatchCommand(COMMAND_SAVE_AS);
    EXPECT_EQ(Headless.fileQuestions[2].directory, "") << "an untitled one has none";
}

} // namespace
