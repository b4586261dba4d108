#include "shell/help.h"

#include "config/paths.h"
#include "headless/headless.h"
#include "headless/help.h"
#include "shell/commands.h"
#include "unit/support/fresh_store.h"
#include <filesystem>

namespace {

// The manual stands where a program that is installed has it: beside the program, which is the test here.
class Help : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitPaths();
        InitHeadlessHelp();
        InitCommands();
        char program[MAX_PATH_SIZE];
        ProgramDirectory(program, sizeof program);
        manual = std::string(program) + "/manual";
        std::filesystem::create_directory(manual);
        for (const char *page : {"/index.html", "/commands.html"}) WritePage(manual + page);
    }
    void TearDown() override {
        std::filesystem::remove_all(manual);
        InitPaths();
        InitHeadlessHelp();
        ToolHelpIdHook = nullptr;
        MenuSelectItem = MenuSelectFlags = 0;
        FreshStore::TearDown();
    }
    static void WritePage(const std::string &path) { CloseFile(OpenForWriting(path.c_str())); }
    // The page and anchor that were opened, as one text; empty if it was not exactly one.
    std::string opened() const {
        if (HeadlessHelp.pages.size() != 1) return "";
        const auto &page = HeadlessHelp.pages.front();
        EXPECT_TRUE(page.path.starts_with(manual + "/")) << page.path;
        return page.path.substr(manual.size() + 1) + "#" + page.anchor;
    }
    void installHelpFile() {
        directory.write("kel.hlp", "help");
        snprintf(HelpDirectory, sizeof HelpDirectory, "%s", directory.path.c_str());
    }
    static HeadlessHelpState::FileCall FileCall() {
        EXPECT_EQ(HeadlessHelp.fileCalls.size(), 1u);
        return HeadlessHelp.fileCalls.empty() ? HeadlessHelpState::FileCall{}
                                              : HeadlessHelp.fileCalls.front();
    }

    ScratchDirectory directory;
    std::string manual;
};

std::string HelpFile() {
    char path[MAX_PATH_SIZE];
    FormHelpFilePath(path);
    return path;
}

} // namespace

TEST_F(Help, TheFileStandsAloneWithoutADirectory) {
    EXPECT_EQ(HelpFile(), "kel.hlp");
}

TEST_F(Help, TheFileStandsInTheHelpDirectory) {
    snprintf(HelpDirectory, sizeof HelpDirectory, "bin");
    EXPECT_EQ(HelpFile(), std::string("bin") + PathSeparator + "kel.hlp");
}

TEST_F(Help, ADirectoryWithoutRoomForTheNameGivesNoFile) {
    std::string longest(MAX_PATH_SIZE - 1, 'x');
    snprintf(HelpDirectory, sizeof HelpDirectory, "%s", longest.c_str());
    EXPECT_EQ(HelpFile(), "");
    HelpContents();
    EXPECT_EQ(opened(), "index.html#");
}

TEST_F(Help, F1OpensTheManualAtTheCommandInForce) {
    CommandState.CurrentCommand = COMMAND_EDIT_MODE;
    DispatchCommand(COMMAND_HELP);
    EXPECT_EQ(opened(), "commands.html#command-220");
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE) << "help does not end the command";
}

TEST_F(Help, WithoutACommandF1OpensTheFirstPage) {
    HelpOnCurrentCommand();
    EXPECT_EQ(opened(), "index.html#");
}

TEST_F(Help, ContentsOpensTheFirstPage) {
    DispatchCommand(COMMAND_HELP_CONTENTS);
    EXPECT_EQ(opened(), "index.html#");
}

TEST_F(Help, SearchOpensTheListOfCommands) {
    DispatchCommand(COMMAND_HELP_SEARCH);
    EXPECT_EQ(opened(), "commands.html#");
}

TEST_F(Help, HowToUseHelpOpensWhatTheManualSaysAboutItself) {
    DispatchCommand(COMMAND_HELP_ON_HELP);
    EXPECT_EQ(opened(), "index.html#help");
}

TEST_F(Help, TheHelpFileIsTakenWhereItExists) {
    installHelpFile();
    CommandState.CurrentCommand = COMMAND_ZOOM_IN;
    DispatchCommand(COMMAND_HELP);
    auto call = FileCall();
    EXPECT_EQ(call.file, HelpFile());
    EXPECT_EQ(call.topic, HelpTopic::Context);
    EXPECT_EQ(call.context, COMMAND_ZOOM_IN);
    EXPECT_TRUE(HeadlessHelp.pages.empty());
}

TEST_F(Help, AHelpFileBesideTheProgramIsTakenWithoutADirectory) {
    char program[MAX_PATH_SIZE];
    ProgramDirectory(program, sizeof program);
    std::string file = std::string(program) + "/kel.hlp";
    WritePage(file);
    HelpContents();
    std::filesystem::remove(file);
    EXPECT_EQ(FileCall().file, "kel.hlp");
    EXPECT_TRUE(HeadlessHelp.pages.empty());
}

TEST_F(Help, AToolsContextIsAskedForByKeyAndMenu) {
    installHelpFile();
    ToolHelpIdHook = [](uint32_t id) { return id - 1273; };
    CommandState.CurrentCommand = 1280;
    HelpOnCurrentCommand();
    MenuSelectItem = 1282;
    MenuSelectFlags = 0;
    HelpOnMenuItem();
    ASSERT_EQ(HeadlessHelp.fileCalls.size(), 2u);
    EXPECT_EQ(HeadlessHelp.fileCalls[0].context, 7);
    EXPECT_EQ(HeadlessHelp.fileCalls[1].context, 9);
}

TEST_F(Help, TheMenuAsksTheHelpFileForItsTopics) {
    installHelpFile();
    for (int id : {COMMAND_HELP_CONTENTS, COMMAND_HELP_SEARCH, COMMAND_HELP_ON_HELP}) DispatchCommand(id);
    ASSERT_EQ(HeadlessHelp.fileCalls.size(), 3u);
    EXPECT_EQ(HeadlessHelp.fileCalls[0].topic, HelpTopic::Contents);
    EXPECT_EQ(HeadlessHelp.fileCalls[1].topic, HelpTopic::Search);
    EXPECT_EQ(HeadlessHelp.fileCalls[2].topic, HelpTopic::UsingHelp);
}

TEST_F(Help, AHelpFileThatCannotBeShownGivesTheManual) {
    installHelpFile();
    HeadlessHelp.fileWorks = false;
    HelpContents();
    EXPECT_EQ(opened(), "index.html#");
}

TEST_F(Help, AManualThatIsNotThereIsToldOf) {
    std::filesystem::remove_all(manual);
    HelpContents();
    ASSERT_EQ(Headless.userErrors.size(), 1u);
    EXPECT_EQ(Headless.userErrors[0], "The manual is missing: " + manual + "/index.html");
    EXPECT_TRUE(HeadlessHelp.pages.empty());
}

TEST_F(Help, LeavingClosesTheHelpFileOnly) {
    QuitHelp();
    EXPECT_TRUE(HeadlessHelp.closedFiles.empty());
    installHelpFile();
    QuitHelp();
    EXPECT_EQ(HeadlessHelp.closedFiles, std::vector<std::string>{HelpFile()});
}

TEST_F(Help, F1InAMenuIsAboutTheHighlightedEntry) {
    CommandState.CurrentCommand = COMMAND_EDIT_MODE;
    MenuSelectItem = COMMAND_SAVE;
    MenuSelectFlags = 0x80; // highlighted with the mouse
    HelpOnMenuItem();
    EXPECT_EQ(opened(), "commands.html#command-154");
}

TEST_F(Help, F1OnASubmenuOrTheSystemMenuDoesNothing) {
    MenuSelectItem = COMMAND_SAVE;
    for (int flags : {0x10, 0x2000, 0x90, 0xFFFF}) {
        MenuSelectFlags = static_cast<uint16_t>(flags);
        HelpOnMenuItem();
    }
    EXPECT_TRUE(HeadlessHelp.pages.empty());
}

TEST_F(Help, AToolHasTheHelpContextOfItsOwn) {
    ToolHelpIdHook = [](uint32_t id) { return id == 1280 ? 0x10007u : 99u; };
    EXPECT_EQ(HelpContextOf(1280), 7) << "cut to 16 bits";
    EXPECT_EQ(HelpContextOf(1024), 99);
    EXPECT_EQ(HelpContextOf(2046), 99);
    EXPECT_EQ(HelpContextOf(1023), 1023);
    EXPECT_EQ(HelpContextOf(2047), 2047);
}

TEST_F(Help, ToolsWithoutHelpShareAPlaceInTheManual) {
    EXPECT_EQ(HelpContextOf(1280), 1280);
    for (uint16_t id : {1024, 1280, 2046})
        EXPECT_EQ(PlaceInManual(HelpTopic::Context, id).anchor, "own-tools");
    EXPECT_EQ(PlaceInManual(HelpTopic::Context, 1023).anchor, "command-1023");
}

TEST(HelpUrl, ADriveLetterFollowsThreeSlashes) {
    EXPECT_EQ(FileUrl("C:\\Tools\\manual\\index.html", "help"), "file:///C:/Tools/manual/index.html#help");
}

TEST(HelpUrl, APathFromTheRootHasItsOwnSlash) {
    EXPECT_EQ(FileUrl("/opt/manual/index.html", ""), "file:///opt/manual/index.html");
}

TEST(HelpUrl, AShareKeepsItsMachine) {
    EXPECT_EQ(FileUrl("\\\\host\\share\\a.html", ""), "file://host/share/a.html");
}

TEST(HelpUrl, CharactersWithAMeaningAreWrittenByTheirCodes) {
    EXPECT_EQ(FileUrl("/a b#c%d\"<\xC3\xA4.html", "x"), "file:///a%20b%23c%25d%22%3C%C3%A4.html#x");
}

TEST(HelpUrl, TheRedirectLeadsToTheUrl) {
    std::string page = RedirectPage("file:///C:/m/commands.html#command-30");
    EXPECT_NE(page.find("content=\"0; url=file:///C:/m/commands.html#command-30\""), std::string::npos);
    // For a browser that does not follow by itself.
    EXPECT_NE(page.find("<a href=\"file:///C:/m/commands.html#command-30\">"), std::string::npos);
}
