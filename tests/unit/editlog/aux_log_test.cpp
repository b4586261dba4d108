// The second file, which a paste replays.
#include "unit/editlog/log_fixture.h"

#include "headless/headless.h"
#include <sys/stat.h>

namespace {

using Texts = std::vector<std::string>;

const std::string MARK = Word(0xFFFFFFFF);

class AuxLogTest : public LogFixture {
protected:
    // Replays a file of these bytes backward.
    int replay(const std::string &bytes, int mode = 5) {
        std::string other = scratch.write("clip", bytes);
        snprintf(name, sizeof name, "%s", other.c_str());
        AuxFile = {&handle, name};
        return AuxReplayBackward(static_cast<int32_t>(bytes.size()), 0, 0, mode);
    }
    FileHandle handle = NO_FILE;
    char name[MAX_PATH_SIZE] = "";
};

TEST_F(AuxLogTest, ReplaysAWholeFileBackward) {
    EXPECT_EQ(replay(Entry("one") + Entry("two") + Entry("three")), 1);
    EXPECT_EQ(Notes, (std::vector<Replayed>{{"three", 1, 5}, {"two", 1, 5}, {"one", 1, 5}}));
    EXPECT_EQ(handle, NO_FILE);
    EXPECT_EQ(AuxFile.name, EditLog.LogFileName);
    EXPECT_EQ(AuxFile.handle, &EditLog.LogHandle);
}

TEST_F(AuxLogTest, StopsAtAMark) {
    EXPECT_EQ(replay(Entry("one") + MARK + Entry("two")), 1);
    EXPECT_EQ(replayed(), (Texts{"-two"}));
}

TEST_F(AuxLogTest, GoesThroughManyWindowsAndLongRecords) {
    std::string bytes, text(4000, 'n');
    Texts backward;
    for (int i = 0; i < 300; i++) {
        bytes += Entry(std::to_string(i));
        backward.insert(backward.begin(), "-" + std::to_string(i));
    }
    bytes += Entry(text);
    backward.insert(backward.begin(), "-" + text);
    EXPECT_EQ(replay(bytes), 1);
    EXPECT_EQ(replayed(), backward);
}

TEST_F(AuxLogTest, AnEmptyFileReplaysNothing) {
    EXPECT_EQ(replay(""), 1);
    EXPECT_TRUE(Notes.empty());
}

TEST_F(AuxLogTest, ARefusedRecordEndsIt) {
    RefusedText = "two";
    EXPECT_EQ(replay(Entry("one") + Entry("two") + Entry("three")), 0);
    EXPECT_EQ(replayed(), (Texts{"-three"}));
    EXPECT_EQ(EditLog.AuxPtr, 0);
    EXPECT_EQ(handle, NO_FILE);
}

TEST_F(AuxLogTest, DamageEndsIt) {
    EXPECT_EQ(replay(Word(99) + Entry("two")), 0);
    EXPECT_EQ(replayed(), (Texts{"-two"}));
    EXPECT_EQ(Headless.userErrors, (Texts{std::string("Failed to read auxiliary log file ") + name}));
}

TEST_F(AuxLogTest, LengthsThatDoNotAgreeEndIt) {
    EXPECT_EQ(replay(Entry("one") + Word(16) + Word(0) + Word(12)), 0);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(Headless.userErrors, (Texts{std::string("Failed to read auxiliary log file ") + name}));
}

TEST_F(AuxLogTest, AnEntryLongerThanAnyRecordEndsIt) {
    EXPECT_EQ(replay(Word(300008) + std::string(300000, '\0') + Word(300008)), 0);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(Headless.userErrors, (Texts{std::string("Failed to read auxiliary log file ") + name}));
}

TEST_F(AuxLogTest, AWindowEndsOrBeginsAtThePosition) {
    snprintf(name, sizeof name, "%s", scratch.write("clip", std::string(3000, 'x')).c_str());
    AuxFile = {&handle, name};
    EditLog.AuxPtr = 2000;
    EXPECT_EQ(AuxFill(1), 1);
    EXPECT_EQ(EditLog.AuxBase, 2000 - BufLen);
    EXPECT_EQ(EditLog.AuxHeld, BufLen);
    EXPECT_EQ(AuxFill(0), 1);
    EXPECT_EQ(EditLog.AuxBase, 2000);
    EXPECT_EQ(EditLog.AuxHeld, 1000);
    EditLog.AuxPtr = 100;
    EXPECT_EQ(AuxFill(1), 1);
    EXPECT_EQ(EditLog.AuxBase, 0);
    EXPECT_EQ(EditLog.AuxHeld, 100);
    AuxClose();
}

TEST_F(AuxLogTest, AFileThatIsNotThereIsTold) {
    snprintf(name, sizeof name, "%s", scratch.file("nothing").c_str());
    AuxFile = {&handle, name};
    EXPECT_EQ(AuxReplayBackward(16, 0, 0, 5), 0);
    EXPECT_EQ(Headless.userErrors, (Texts{std::string("Failed to open auxiliary log file ") + name}));
}

TEST_F(AuxLogTest, AFileThatIsShorterThanItsEndIsTold) {
    snprintf(name, sizeof name, "%s", scratch.write("clip", Entry("one")).c_str());
    AuxFile = {&handle, name};
    EXPECT_EQ(AuxReplayBackward(400, 0, 0, 5), 0);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(Headless.userErrors, (Texts{std::string("Failed to read auxiliary log file ") + name}));
}

TEST_F(AuxLogTest, AFileWithoutPositionsIsTold) {
    snprintf(name, sizeof name, "%s", scratch.file("pipe").c_str());
    ASSERT_EQ(mkfifo(name, 0600), 0);
    AuxFile = {&handle, name};
    EXPECT_EQ(AuxReplayBackward(16, 0, 0, 5), 0);
    EXPECT_EQ(Headless.userErrors, (Texts{std::string("Failed to read auxiliary log file ") + name}));
    EXPECT_EQ(handle, NO_FILE);
}

TEST_F(AuxLogTest, WithNothingToReplayItIsNoReplay) {
    ExecuteLogHook = nullptr;
    EXPECT_EQ(replay(Entry("one")), 0);
    EXPECT_EQ(EditLog.AuxPtr, 0);
    EXPECT_EQ(handle, NO_FILE);
}

TEST_F(AuxLogTest, WithoutANameNothingIsSaid) {
    AuxFile = {&handle, name};
    EXPECT_EQ(AuxReplayBackward(16, 0, 0, 5), 0);
    EXPECT_TRUE(Headless.userErrors.empty());
}

} // namespace
