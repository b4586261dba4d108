// Logs whose bytes are not what was written.
#include "unit/editlog/log_fixture.h"

#include "headless/headless.h"
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

const std::string MARK = Word(0xFFFFFFFF);

class DamagedLogTest : public LogFixture {};

class DamagedLog : public LogFixture, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedLog, StopsARedoBeforeTheDamage) {
    installFile(Entry("one") + MARK + Entry("two") + GetParam(), false);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(replayed(), (Texts{"one", "two"}));
    EXPECT_EQ(EditLog.rPtr, 28);
    EXPECT_EQ(EditLog.rEofPtr, 28);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to read log file " + path}));
    EXPECT_EQ(LogRollback(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two"}));
}

TEST_P(DamagedLog, StopsAnUndoBehindTheDamage) {
    std::string bytes = Entry("one") + MARK + GetParam();
    installFile(bytes + Entry("two") + MARK, true);
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(replayed(), (Texts{"-two"}));
    EXPECT_EQ(EditLog.rPtr, static_cast<int32_t>(bytes.size()));
    EXPECT_EQ(EditLog.Recording, 1);
}

INSTANTIATE_TEST_SUITE_P(Frames, DamagedLog,
                         testing::Values(Word(0), Word(4), Word(7) + Word(7), Word(10) + Word(10),
                                         Word(10) + "xx" + Word(10), Word(12) + Word(0) + Word(16),
                                         Word(16) + Word(0) + Word(12), Word(0x7FFFFFFC), Word(0xFFFFFFFE),
                                         Word(0x80000000), Word(100000) + Word(100000)));

TEST_F(DamagedLogTest, AnEntryThatIsLongerThanAnyRecordIsReplayedByItsBeginning) {
    std::string padded = "long" + std::string(300000, '\0');
    std::string entry = Word(300012) + padded + Word(300012);
    installFile(Entry("one") + MARK + entry + MARK + Entry("two") + MARK, false);
    for (int i = 0; i < 3; i++) EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"one", "long", "two"}));
    for (int i = 0; i < 3; i++) EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two", "-long", "-one"}));
    EXPECT_TRUE(Headless.userErrors.empty());
    installFile(entry.substr(0, 300008) + Word(12) + MARK, false);
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(replayed(), Texts{});
    // The file may end where the entry goes on.
    installFile(entry + MARK, false);
    fs::resize_file(path, 200000);
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(Headless.userErrors, Texts(2, "Failed to read log file " + path));
}

TEST_F(DamagedLogTest, AFailedReadEndsARedoAndDropsNothing) {
    for (int i = 0; i < 100; i++) action(std::to_string(i), 12);
    for (int i = 0; i < 100; i++) LogUndo();
    LogFlush();
    LogCloseFile();
    Notes.clear();
    int32_t end = EditLog.rEofPtr;
    std::string whole = file();
    fs::resize_file(path, 1300);
    int redone = 0;
    while (redone < 100 && LogRedo()) redone++;
    EXPECT_GT(redone, 20);
    EXPECT_LT(redone, 100);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(EditLog.Recording, 1);
    LogCloseFile();
    scratch.write("document._KL", whole);
    while (redone < 100 && LogRedo()) redone++;
    EXPECT_EQ(redone, 100);
    EXPECT_EQ(Notes.size(), 100U);
}

TEST_F(DamagedLogTest, ARestTooShortForAWordEndsTheRedo) {
    // Together with what lay in the window it would read as a mark.
    memset(EditLog.Buffer, 0xFF, sizeof EditLog.Buffer);
    installFile(Entry("one") + MARK + "\xFF\xFF\xFF", false);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(replayed(), (Texts{"one"}));
    EXPECT_EQ(EditLog.rEofPtr, 16);
}

TEST_F(DamagedLogTest, APositionTooNearToTheStartForAnEntryIsNoMark) {
    installFile("abc", true);
    EXPECT_EQ(LogAtMark(), 0);
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(EditLog.rPtr, 3);
}

TEST_F(DamagedLogTest, AnEntryWithoutAPayloadIsReplayed) {
    installFile(Word(8) + Word(8) + MARK, false);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"", "-"}));
}

TEST_F(DamagedLogTest, MarksWithoutRecordsAreStepsThatDoNothing) {
    installFile(MARK + MARK + Entry("one") + MARK, false);
    for (int i = 0; i < 3; i++) EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"one"}));
    for (int i = 0; i < 3; i++) EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-one"}));
    EXPECT_EQ(EditLog.rPtr, 0);
}

} // namespace
