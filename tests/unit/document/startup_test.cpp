#include "document/startup.h"

#include "config/paths.h"
#include "config/settings.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstdlib>
#include <filesystem>

namespace {

using Words = std::vector<std::string>;

class CommandLine : public testing::Test {
protected:
    void SetUp() override {
        InitHeadless();
        InitSettings();
        DocumentPath[0] = '\0';
    }
    static std::string pathAfter(const char *text) {
        ParseCommandLine(SplitCommandLine(text));
        return DocumentPath;
    }
};

TEST_F(CommandLine, WordsAreCutAtBlanks) {
    EXPECT_EQ(SplitCommandLine(""), Words{""});
    EXPECT_EQ(SplitCommandLine("  \t "), Words{""});
    EXPECT_EQ(SplitCommandLine(" a.wdl\t-cvn  b "), (Words{"", "a.wdl", "-cvn", "b"}));
}

TEST_F(CommandLine, AQuotedWordKeepsItsBlanks) {
    EXPECT_EQ(SplitCommandLine("\"my file.wdl\" -x"), (Words{"", "my file.wdl", "-x"}));
    EXPECT_EQ(SplitCommandLine("\"open end"), (Words{"", "open end"}));
    EXPECT_EQ(SplitCommandLine("\"line\nend\""), (Words{"", "line", "end\""}));
    EXPECT_EQ(SplitCommandLine("a\"b c\""), (Words{"", "a\"b", "c\""}));
    EXPECT_EQ(SplitCommandLine("\"a\"b"), (Words{"", "a", "b"}));
}

TEST_F(CommandLine, MoreWordsThanAnyoneTypesAreHeld) {
    std::string text;
    for (int i = 0; i < 500; ++i) text += "w ";
    EXPECT_EQ(SplitCommandLine(text.c_str()).size(), 501u);
}

TEST_F(CommandLine, BytesAbove127BelongToNames) {
    EXPECT_EQ(pathAfter("gr\xFC\xDF.wdl"), "gr\xFC\xDF.wdl");
}

TEST_F(CommandLine, TheLastNameCounts) {
    EXPECT_EQ(pathAfter("one.wdl two.wdl"), "two.wdl");
    EXPECT_EQ(pathAfter("\"a b.wdl\""), "a b.wdl");
}

TEST_F(CommandLine, NoNameLeavesThePathEmpty) {
    EXPECT_EQ(pathAfter("-x -cvn"), "");
}

TEST_F(CommandLine, OptionsCountByTheirBeginningWithoutCase) {
    pathAfter("-CVNxyz");
    EXPECT_TRUE(Settings.HierLinkMode);
    EXPECT_FALSE(Settings.SyncMode);
    for (const char *option : {"-sync", "-SYNC", "-sy", "-System"}) {
        InitSettings();
        pathAfter(option);
        EXPECT_TRUE(Settings.SyncMode) << option;
        EXPECT_TRUE(Settings.ShowSyncActivity) << option;
        EXPECT_FALSE(Settings.HierLinkMode) << option;
    }
}

TEST_F(CommandLine, UnknownOptionsAreIgnored) {
    pathAfter("-s -cv -other -");
    EXPECT_FALSE(Settings.SyncMode);
    EXPECT_FALSE(Settings.HierLinkMode);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(CommandLine, ANameLongerThanAPathIsRefused) {
    EXPECT_EQ(pathAfter(std::string(260, 'x').c_str()), "");
    EXPECT_EQ(Headless.userErrors, Words{"File name is too long"});
    EXPECT_EQ(pathAfter(std::string(259, 'x').c_str()).size(), 259u);
}

class Start : public testing::Test {
protected:
    void SetUp() override {
        InitHeadless();
        Headless.panesExist = false;
        setenv("KELVANE_CONFIG", directory.path.c_str(), 1);
    }
    void TearDown() override {
        ReleaseDocument();
        unsetenv("KELVANE_CONFIG");
    }
    int start(const std::string &commandLine) {
        PrepareApplication(commandLine.c_str());
        return RunAfterCreate();
    }
    ScratchDirectory directory;
};

TEST_F(Start, WithoutArgumentsTheDocumentIsUntitledAndEmpty) {
    EXPECT_EQ(start(""), 0);
    EXPECT_EQ(Headless.titles, Words{"Kelvane - <untitled>"});
    EXPECT_EQ(HighestPatternId, 0);
    EXPECT_EQ(DisplayOpen, 1);
    EXPECT_STREQ(PromptText, "Use Control-C to Stop Paint");
    EXPECT_EQ(Headless.postedCommands, std::vector<uint32_t>{220});
    for (const auto &entry : std::filesystem::directory_iterator(directory.path)) {
        ADD_FAILURE() << "a file was made: " << entry.path();
    }
}

TEST_F(Start, TheTitleKeepsTheCaseAsTyped) {
    std::string path = directory.write("MyDoc.wdl", "A { Default } = 1 5;\n");
    EXPECT_EQ(start(path), 0);
    EXPECT_EQ(Headless.titles, Words{"Kelvane - MyDoc"});
    EXPECT_NE(FindPattern("A"), nullptr);
}

TEST_F(Start, TheWholeSpanIsShown) {
    std::string path = directory.write("doc.wdl", "%ENDTIME=8000;\nA { Default } = 1 5;\n");
    EXPECT_EQ(start(path), 0);
    EXPECT_EQ(WaveView.SpanEnd, 10000u);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
    EXPECT_GE(PixelsToTime(WaveView.WavePaneWidth), 10000u);
    EXPECT_EQ(WaveView.CursorTime, 0u);
}

TEST_F(Start, ABadFileEndsTheStart) {
    EXPECT_NE(start(directory.write("doc.wdl", "A")), 0);
    EXPECT_EQ(Headless.userErrors, Words{"Compilation errors in file doc.wdl"});
    EXPECT_EQ(DisplayOpen, 0);
    std::filesystem::remove("doc.err");
}

TEST_F(Start, PreferencesAndColoursAreReadFromTheConfigDirectory) {
    directory.write("Kelvane.ini", "[Preferences]\nBus Radix=8\nKEL End Time=5000\n");
    directory.write("WavColor.ini", "[Colors]\nBackground=15\n");
    EXPECT_EQ(start(""), 0);
    EXPECT_EQ(Settings.BusRadix, 8u);
    EXPECT_EQ(Settings.EndTime, 5000u);
    EXPECT_EQ(ColorSettings[Background], 15);
    EXPECT_EQ(std::string(ConfigDirectory), directory.path);
}

TEST_F(Start, LeavingWritesThePreferences) {
    EXPECT_EQ(start(""), 0);
    ReleaseDocument();
    EXPECT_NE(ReadWholeFile(directory.file("Kelvane.ini")).find("KEL End Time=100000"), std::string::npos);
    EXPECT_EQ(PatternHeap, nullptr);
}

} // namespace
