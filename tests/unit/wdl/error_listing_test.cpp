#include "config/paths.h"
#include "headless/headless.h"
#include "platform/files.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/lexer.h"
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace {

// Runs in a directory of its own, with the listing on.
class ErrorListing : public WdlTest {
protected:
    void SetUp() override {
        WdlTest::SetUp();
        WriteErrorListing = true;
        before = std::filesystem::current_path();
        std::filesystem::current_path(scratch.path);
    }
    void TearDown() override {
        std::filesystem::current_path(before);
        WdlTest::TearDown();
    }
    int Load(std::string_view text, const char *path) {
        TextReader reader(text);
        return CompileWdl(&reader, path);
    }
    bool exists(const char *name) const { return std::filesystem::exists(scratch.file(name)); }
    std::string listing(const char *name) const { return ReadWholeFile(scratch.file(name)); }

    ScratchDirectory scratch;
    std::filesystem::path before;
};

} // namespace

TEST_F(ErrorListing, HoldsTheLineTheMessageAndACaret) {
    EXPECT_EQ(Load("a = 1 5;\nb = xyz ;\n", "doc.wdl"), 0);
    EXPECT_EQ(listing("doc.err"), "Line   2 SyntaxError - Illegal use of name\n"
                                  "b = xyz ;\n"
                                  "\n"
                                  "       ^\n");
}

TEST_F(ErrorListing, ALineThatIsTooLongCountsAsTheOneBeforeIt) {
    EXPECT_EQ(Load("a = 1 5;\nb = 1 5;", "doc.wdl"), 0);
    EXPECT_EQ(listing("doc.err"), "Line   1 SyntaxError - Line is too long - Max is 1024 characters\n"
                                  "b = 1 5;\n"
                                  " ^\n");
}

TEST_F(ErrorListing, TakesLongLineNumbersAndTheLongestLine) {
    std::string text(1234, '\n');
    std::string line = std::string(1013, ' ') + "= 1 5;x";
    EXPECT_EQ(Load(text + line + "\n", "doc.wdl"), 0);
    EXPECT_EQ(listing("doc.err"), "Line 1235 SyntaxError - Missing pattern name\n" + line + "\n\n" +
                                      std::string(1013, ' ') + "^\n");
}

TEST_F(ErrorListing, HoldsWhatTheTokenInHandAdds) {
    EXPECT_EQ(Load("a = @nrz = 1 5;\n", "doc.wdl"), 0);
    EXPECT_EQ(listing("doc.err"), "Line   1 SyntaxError - Invalid pin type\na = @nrz = 1 5;\n\n        ^\n"
                                  "Line   1 SyntaxError - Invalid operation on right of '='\n"
                                  "a = @nrz = 1 5;\n\n         ^\n");
}

TEST_F(ErrorListing, BearsTheDocumentsBaseNameInTheCurrentDirectory) {
    EXPECT_EQ(Load("= ;\n", "/some/where/design.wdl"), 0);
    EXPECT_TRUE(exists("design.err"));
    EXPECT_EQ(Load("= ;\n", "C:\\some\\where\\other.wdl"), 0);
    EXPECT_TRUE(exists("other.err"));
}

TEST_F(ErrorListing, OpensInTheEditor) {
    snprintf(EditorCommand, sizeof EditorCommand, "edit -n");
    EXPECT_EQ(Load("= ;\n", "doc.wdl"), 0);
    ASSERT_EQ(Headless.startedProcesses.size(), 1u);
    EXPECT_EQ(Headless.startedProcesses[0], "edit -n doc.err");
    EXPECT_EQ(Load("= ;\n", "/dir/my doc.wdl"), 0);
    ASSERT_EQ(Headless.startedProcesses.size(), 2u);
    EXPECT_EQ(Headless.startedProcesses[1], "edit -n \"my doc.err\"");
}

TEST_F(ErrorListing, OpensInNotepadWhereNothingElseIsSet) {
    EXPECT_EQ(Load("= ;\n", "doc.wdl"), 0);
    ASSERT_EQ(Headless.startedProcesses.size(), 1u);
    EXPECT_EQ(Headless.startedProcesses[0], "notepad.exe doc.err");
}

TEST_F(ErrorListing, IsRemovedAfterACleanLoad) {
    scratch.write("doc.err", "left over\n");
    EXPECT_EQ(Load("a = 1 5;\n", "doc.wdl"), 1);
    EXPECT_FALSE(exists("doc.err"));
    EXPECT_TRUE(Headless.startedProcesses.empty());
}

TEST_F(ErrorListing, OverwritesAnEarlierOne) {
    scratch.write("doc.err", "left over\n");
    EXPECT_EQ(Load("= ;\n", "doc.wdl"), 0);
    EXPECT_EQ(listing("doc.err").substr(0, 8), "Line   1");
}

TEST_F(ErrorListing, IsNotTouchedWhenItIsNotWanted) {
    WriteErrorListing = false;
    scratch.write("doc.err", "left over\n");
    EXPECT_EQ(Load("= ;\n", "doc.wdl"), 0);
    EXPECT_EQ(Load("a = ;\n", "doc.wdl"), 1);
    EXPECT_EQ(listing("doc.err"), "left over\n");
    EXPECT_TRUE(Headless.startedProcesses.empty());
    EXPECT_EQ(errors.size(), 1u);
}

TEST_F(ErrorListing, ThatCannotBeCreatedIsDoneWithout) {
    std::filesystem::create_directory(scratch.file("doc.err"));
    EXPECT_EQ(Load("= ;\n", "doc.wdl"), 0);
    EXPECT_EQ(Load("a = ;\n", "doc.wdl"), 1);
    EXPECT_TRUE(std::filesystem::is_directory(scratch.file("doc.err")));
    EXPECT_TRUE(Headless.startedProcesses.empty());
    std::string longName(300, 'n');
    EXPECT_EQ(Load("= ;\n", (longName + ".wdl").c_str()), 0);
}

TEST_F(ErrorListing, TellsEachErrorToTheHook) {
    EXPECT_EQ(Load("\n  a = 1 5 = ;\n", "doc.wdl"), 0);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].line, 2);
    EXPECT_EQ(errors[0].column, 11);
    EXPECT_EQ(errors[0].message, "Invalid operation on right of '='");
}

TEST_F(ErrorListing, HoldsNothingWhereTheDiskDoesNotGiveTheFile) {
    std::string text;
    while (text.size() < 150000) text += "        \n";
    std::string path = scratch.write("doc.wdl", text);
    int handle = open(path.c_str(), O_RDONLY);
    close(handle); // the next file gets the same one
    TextReader reader(path.c_str());
    OpenErrorListing("doc.wdl");
    InitWdlLexer(&reader);
    ASSERT_NE(WdlReadLine(), 0);
    int unreadable = open("/dev/null", O_WRONLY);
    dup2(unreadable, handle);
    close(unreadable);
    // The line in which the block ends is cut off.
    while (WdlErrorCount == 0 && WdlReadLine() != 0) {}
    EXPECT_EQ(WdlErrorCount, 1);
    EXPECT_TRUE(reader.failed());
    EXPECT_TRUE(errors.empty());
    CloseErrorListing();
    EXPECT_FALSE(exists("doc.err"));
    EXPECT_TRUE(Headless.startedProcesses.empty());
}
