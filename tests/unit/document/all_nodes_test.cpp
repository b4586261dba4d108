#include "document/all_nodes.h"

#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "document/startup.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const char *const NODES = "%ENDTIME = 400;\n$part = 1 5;\nC { Default } = 1 5;\nA { Default } = $part, 0 5;\n"
                          "B[1:0] { Default } = 2 5;\n";
constexpr const char *ALL_SHOWN = "No wave list: all nodes are shown.";

class AllNodes : public testing::Test {
protected:
    void SetUp() override {
        former = fs::current_path();
        InitHeadless();
        setenv("KELVANE_CONFIG", directory.path.c_str(), 1);
    }
    void TearDown() override {
        ReleaseDocument();
        unsetenv("KELVANE_CONFIG");
        fs::current_path(former);
    }
    // The start of the program, up to its first command.
    int start(const std::string &path) {
        InitCommands();
        PrepareApplication(path.c_str());
        int failed = RunAfterCreate();
        if (!failed) DispatchCommand(COMMAND_EDIT_MODE);
        return failed;
    }
    static Texts rows() {
        Texts names;
        for (uint32_t row = 0; row < WaveView.RowCount; row++) names.emplace_back(RowPattern(row)->name());
        return names;
    }
    ScratchDirectory directory;
    fs::path former;
};

TEST_F(AllNodes, AreShownInTheOrderOfTheirIdsWithoutAWaveList) {
    ASSERT_EQ(start(directory.write("doc.wdl", NODES)), 0);
    EXPECT_EQ(rows(), (Texts{"C", "A", "B[1:0]"}));
    EXPECT_STREQ(PromptText, ALL_SHOWN);
    EXPECT_GT(WaveView.NameTextWidth, 0);
    EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount) << "none is selected";
}

TEST_F(AllNodes, AreNoChangeOfTheDocument) {
    ASSERT_EQ(start(directory.write("doc.wdl", NODES)), 0);
    EXPECT_EQ(IsDocumentModified(), 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
    EXPECT_TRUE(MayClose());
    EXPECT_TRUE(Headless.alerts.empty());
    EXPECT_FALSE(fs::exists(directory.file("doc.kel")));
}

TEST_F(AllNodes, AWaveListIsKeptToEvenAnEmptyOne) {
    std::string path = directory.write("doc.wdl", NODES);
    directory.write("doc.kel", "Wave A\n");
    ASSERT_EQ(start(path), 0);
    EXPECT_EQ(rows(), Texts{"A"});
    EXPECT_STRNE(PromptText, ALL_SHOWN);
    directory.write("doc.kel", "");
    EXPECT_EQ(OpenDocument(path.c_str(), false), 1);
    EXPECT_EQ(rows(), Texts{});
}

TEST_F(AllNodes, AreShownOfAFileThatIsOpenedToo) {
    ASSERT_EQ(start(""), 0);
    EXPECT_STRNE(PromptText, ALL_SHOWN) << "an untitled document has none";
    Headless.fileAnswers = {directory.write("doc.wdl", NODES)};
    DispatchCommand(COMMAND_OPEN);
    EXPECT_EQ(rows(), (Texts{"C", "A", "B[1:0]"}));
    EXPECT_STREQ(PromptText, ALL_SHOWN);
    OpenFile(directory.write("other.wdl", "X { Default } = 1 5;\n").c_str());
    EXPECT_EQ(rows(), Texts{"X"});
    EXPECT_STREQ(PromptText, ALL_SHOWN);
}

TEST_F(AllNodes, AreAsManyAsThereCanBeRows) {
    std::string text;
    for (int i = 0; i < 300; i++) text += "N" + std::to_string(i) + " { Default } = 1 5;\n";
    ASSERT_EQ(start(directory.write("doc.wdl", text)), 0);
    EXPECT_EQ(WaveView.RowCount, MAX_ROWS);
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_STREQ(PromptText, "No wave list: the first 256 nodes are shown.");
}

TEST_F(AllNodes, AreNoneThatOnlyLookAtOthersAndNoFreeIds) {
    ASSERT_EQ(start(directory.write("doc.wdl", std::string(NODES) + "C,A;\n")), 0);
    ASSERT_NE(FindPattern("C,A"), nullptr);
    EXPECT_TRUE(FindPattern("C,A")->hasProperties());
    EXPECT_EQ(rows(), (Texts{"C", "A", "B[1:0]"}));
    WaveView.RowCount = 0;
    DeletePattern(FindPattern("C"));
    ShowNodesWithoutWaveList();
    EXPECT_EQ(rows(), (Texts{"A", "B[1:0]"}));
}

TEST_F(AllNodes, StandBeforeARecoveryThatCountsOnThem) {
    std::string path = directory.write("doc.wdl", NODES);
    ASSERT_EQ(start(path), 0);
    SelectRowOnly(1, true);
    DispatchCommand(COMMAND_HIDE);
    ASSERT_EQ(rows(), (Texts{"C", "B[1:0]"}));
    LogFlush();
    std::string log = ReadWholeFile(EditLog.LogFileName), name = EditLog.LogFileName;
    ReleaseDocument();
    directory.write(fs::path(name).filename().string(), log);
    ASSERT_EQ(start(path), 0);
    ASSERT_EQ(Headless.alerts.size(), 1u) << "the recovery is offered";
    EXPECT_EQ(rows(), (Texts{"C", "B[1:0]"}));
}

TEST_F(AllNodes, OfALoadByTheEngineAreNotShown) {
    ASSERT_EQ(start(""), 0);
    PatternStoreFree();
    snprintf(DocumentPath, MAX_PATH_SIZE, "%s", directory.write("doc.wdl", NODES).c_str());
    DisplayOpen = 0;
    ASSERT_EQ(LoadDocument(DocumentPath), 1);
    EXPECT_EQ(rows(), Texts{});
}

} // namespace
