#include "unit/display/display_fixture.h"

#include "platform/files.h"
#include <cstdio>

namespace {

using Names = std::vector<std::string>;

class WaveList : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        DisplayOpen = 0;
        for (const char *name : {"CLK", "RESET", "D[7:0]"}) MakePattern(name);
    }
    // Reads a list of this text for the document "doc.wdl"; returns the path that the reader leaves.
    std::string read(const std::string &text) {
        directory.write("doc.kel", text);
        return readPath(directory.file("doc.wdl"));
    }
    static std::string readPath(const std::string &path) {
        char buffer[MAX_PATH_SIZE];
        snprintf(buffer, sizeof buffer, "%s", path.c_str());
        ReadWaveList(buffer);
        return buffer;
    }
    ScratchDirectory directory;
};

} // namespace

TEST_F(WaveList, EachLineShowsAPattern) {
    EXPECT_EQ(read("Wave RESET\nWave CLK\n"), directory.file("doc.kel"));
    EXPECT_EQ(RowNames(), (Names{"RESET", "CLK"}));
}

TEST_F(WaveList, AMissingFileLeavesTheRows) {
    AppendRowOf(1);
    EXPECT_EQ(readPath(directory.file("doc.wdl")), directory.file("doc.kel"));
    EXPECT_EQ(RowNames(), Names{"CLK"});
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(WaveList, AnEmptyFileShowsNothing) {
    read("");
    EXPECT_EQ(WaveView.RowCount, 0u);
}

TEST_F(WaveList, ADirectoryInItsPlaceIsNoList) {
    std::string path = directory.write("other.wdl", "");
    ASSERT_EQ(system(("mkdir " + directory.file("other.kel")).c_str()), 0);
    readPath(path);
    EXPECT_EQ(WaveView.RowCount, 0u);
}

TEST_F(WaveList, TheKeywordCountsByThreeLettersOfAnyCase) {
    read("wavE CLK\nWAVEFORM RESET\nwav D[7:0]\n");
    EXPECT_EQ(RowNames(), (Names{"CLK", "RESET", "D[7:0]"}));
}

TEST_F(WaveList, OtherLinesAreSkipped) {
    read("Wa CLK\n Wave CLK\nRow CLK\n\nWave\nWave   \nWave RESET\n");
    EXPECT_EQ(RowNames(), Names{"RESET"});
}

TEST_F(WaveList, BlanksAndTabsSeparateTheWords) {
    read("Wave\t  CLK   more words\nWave RESET\r\n");
    EXPECT_EQ(RowNames(), (Names{"CLK", "RESET"}));
}

TEST_F(WaveList, NamesAreFoundInAnyCase) {
    read("Wave clk\n");
    EXPECT_EQ(RowNames(), Names{"CLK"});
}

TEST_F(WaveList, ANameThatIsGoneIsSkipped) {
    read("Wave NOBODY\nWave CLK\n");
    EXPECT_EQ(RowNames(), Names{"CLK"});
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(WaveList, APatternNamedTwiceGetsOneRow) {
    read("Wave CLK\nWave RESET\nWave CLK\n");
    EXPECT_EQ(RowNames(), (Names{"CLK", "RESET"}));
}

TEST_F(WaveList, TheLastLineNeedsNoLineFeed) {
    read("Wave CLK");
    EXPECT_EQ(RowNames(), Names{"CLK"});
}

TEST_F(WaveList, ALineEndsAt256Characters) {
    std::string name(251, 'A'); // fills the line behind "Wave "
    MakePattern(name.c_str());
    read("Wave " + name + "\n");
    EXPECT_EQ(RowNames(), Names{name});
}

TEST_F(WaveList, TheRestOfALongerLineIsALineOfItsOwn) {
    std::string name(251, 'A');
    MakePattern(name.c_str());
    read("Wave " + name + "Wave CLK\n");
    EXPECT_EQ(RowNames(), (Names{name, "CLK"}));
}

TEST_F(WaveList, MoreThan256RowsAreReportedAndDropped) {
    std::string text;
    for (int i = 0; i < 258; i++) {
        std::string name = "N" + std::to_string(i);
        MakePattern(name.c_str());
        text += "Wave " + name + "\n";
    }
    read(text);
    EXPECT_EQ(WaveView.RowCount, 256u);
    EXPECT_EQ(Headless.userErrors, (Names{"Too many waveforms displayed", "Too many waveforms displayed"}));
}

TEST_F(WaveList, NulBytesAndHighBytesDoNoHarm) {
    std::string text("Wave C\0LK\nWave \xFF\xFE\nWave RESET\n", 29);
    read(text);
    EXPECT_EQ(RowNames(), Names{"RESET"});
}

TEST_F(WaveList, AnUntitledDocumentHasNone) {
    EXPECT_EQ(readPath(""), "");
    EXPECT_EQ(WaveView.RowCount, 0u);
}
