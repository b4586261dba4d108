// A log of which the disk gives a part back and not the rest, so that one read of an entry succeeds and the
// next one fails. The file is the memory of the test itself: one stretch of it is in place, and what lies
// before and behind reads as an error.
#include "unit/editlog/log_fixture.h"

#include "headless/headless.h"
#include <cstring>
#include <filesystem>
#include <sys/mman.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

constexpr int32_t BEGIN = 0x10000000;
constexpr int32_t SIZE = 65536;

class UnreadableLog : public LogFixture {
protected:
    void SetUp() override {
        LogFixture::SetUp();
        void *wanted = reinterpret_cast<void *>(uintptr_t{BEGIN});
        stretch = mmap(wanted, SIZE, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
        if (stretch != wanted) GTEST_SKIP() << "there is no room at that place";
        fs::remove(path);
        fs::create_symlink("/proc/self/mem", path);
    }
    void TearDown() override {
        AuxClose();
        if (stretch != MAP_FAILED) munmap(stretch, SIZE);
        LogFixture::TearDown();
    }

    // Puts bytes at an offset of the stretch; returns the position behind them.
    int32_t put(int32_t offset, const std::string &bytes) const {
        memcpy(static_cast<char *>(stretch) + offset, bytes.data(), bytes.size());
        return BEGIN + offset + static_cast<int32_t>(bytes.size());
    }
    // Makes `end` the log's end, with the position there or at `position`.
    static void setEnd(int32_t position, int32_t end) {
        EditLog.rPtr = position;
        EditLog.rEofPtr = end;
        EditLog.rBase = position;
        EditLog.Held = 0;
    }
    void expectFailedRead() const {
        EXPECT_EQ(Headless.userErrors, Texts{"Failed to read log file " + path});
        EXPECT_EQ(EditLog.ReadFault, 1);
        EXPECT_EQ(EditLog.Recording, 1);
    }

    void *stretch = MAP_FAILED;
};

const std::string MARK = Word(0xFFFFFFFF);

TEST_F(UnreadableLog, AnUndoStopsBehindAnEntryWhoseBeginningCannotBeRead) {
    int32_t end = put(2000, Word(8000) + Entry("one") + MARK);
    setEnd(end, end);
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(replayed(), Texts{"-one"});
    EXPECT_EQ(EditLog.rPtr, BEGIN + 2004);
    expectFailedRead();
}

TEST_F(UnreadableLog, ARedoStopsBeforeAnEntryWhoseEndCannotBeRead) {
    put(SIZE - 1500, MARK + Entry("one") + MARK + Word(5000));
    int32_t position = BEGIN + SIZE - 1500 + 20; // of the last one
    setEnd(position - 16, position + 5000);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(replayed(), Texts{"one"});
    EXPECT_EQ(EditLog.rPtr, position);
    EXPECT_EQ(EditLog.rEofPtr, position + 5000) << "it may be readable another time";
    expectFailedRead();
}

class UnreadableClipboard : public UnreadableLog {
protected:
    // Replays backward what ends at `end`.
    int replayTo(int32_t end) {
        AuxFile = {&handle, EditLog.LogFileName};
        return AuxReplayBackward(end, 0, 0, 5);
    }
    void expectFailedRead() const {
        EXPECT_EQ(Headless.userErrors, Texts{"Failed to read auxiliary log file " + path});
        EXPECT_EQ(handle, NO_FILE);
    }
    FileHandle handle = NO_FILE;
};

TEST_F(UnreadableClipboard, AReplayStopsWhereNothingCanBeReadAnyMore) {
    std::string bytes;
    Texts backward;
    while (bytes.size() < 2048) {
        backward.insert(backward.begin(), "-" + std::to_string(backward.size()));
        bytes += Entry(backward.front().substr(1));
    }
    EXPECT_EQ(replayTo(put(0, bytes)), 0);
    expectFailedRead();
    // The first window lies in the stretch, the second one begins before it.
    Texts seen = replayed();
    EXPECT_GT(seen.size(), 50U);
    backward.resize(seen.size());
    EXPECT_EQ(seen, backward);
}

TEST_F(UnreadableClipboard, AReplayStopsBehindAnEntryWhoseBeginningCannotBeRead) {
    EXPECT_EQ(replayTo(put(2000, Word(8000) + Entry("one"))), 0);
    EXPECT_EQ(replayed(), Texts{"-one"});
    expectFailedRead();
}

TEST_F(UnreadableClipboard, AReplayStopsBehindAnEntryOfWhichTheMidstCannotBeRead) {
    put(1000, Word(20000));
    int32_t end = put(1000 + 20000 - 4, Word(20000));
    ASSERT_EQ(munmap(static_cast<char *>(stretch) + 8192, 4096), 0);
    EXPECT_EQ(replayTo(end), 0);
    EXPECT_EQ(replayed(), Texts{});
    expectFailedRead();
}

} // namespace
