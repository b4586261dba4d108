#include "unit/editlog/log_fixture.h"

#include "headless/headless.h"
#include "platform/files_native.h"
#include "shell/reporting.h"
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

const std::string MARK = Word(0xFFFFFFFF);

class EditLogTest : public LogFixture {
protected:
    void TearDown() override {
        WriteLimitHook = nullptr;
        LogFixture::TearDown();
    }
};

// --- what is written ------------------------------------------------------------------------------

TEST_F(EditLogTest, AnEntryIsAsLongAsItsPayloadWithTwoLengthsRoundedUp) {
    const std::pair<uint32_t, int32_t> lengths[] = {{1, 12}, {4, 12}, {5, 16},  {6, 16},
                                                    {8, 16}, {9, 20}, {16, 24}, {24, 32}};
    for (auto [size, length] : lengths) {
        int32_t before = EditLog.rPtr;
        record("x", size);
        EXPECT_EQ(EditLog.rPtr - before, length) << size;
        EXPECT_EQ(EditLog.rEofPtr, EditLog.rPtr);
    }
}

TEST_F(EditLogTest, TheFileHoldsRecordsAndMarks) {
    action("one");
    record("first");
    action("second!");
    LogFlush();
    EXPECT_EQ(file(), Entry("one") + MARK + Entry("first") + Entry("second!") + MARK);
    EXPECT_EQ(EditLog.rBase, EditLog.rEofPtr);
    EXPECT_EQ(EditLog.Dirty, 0);
}

TEST_F(EditLogTest, NothingIsRecordedDuringAReplay) {
    EditLog.Recording = 0;
    EXPECT_EQ(LogAppend(4), nullptr);
    EXPECT_EQ(LogMark(), 0);
    LogEndAction();
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(EditLogTest, AnActionWithoutARecordGetsNoMark) {
    LogEndAction();
    EXPECT_EQ(EditLog.rPtr, 0);
    action("one");
    int32_t end = EditLog.rPtr;
    LogEndAction();
    EXPECT_EQ(EditLog.rPtr, end);
}

TEST_F(EditLogTest, ABlockIsWrittenWhenTheNextEntryWouldReachItsEnd) {
    // Entries of 64 bytes: with 17 of them 1,088 bytes are full, and one more would end at 1,152.
    for (int i = 0; i < 17; i++) record("x", 56);
    EXPECT_EQ(EditLog.rBase, 0);
    EXPECT_EQ(file(), "");
    record("y", 56);
    EXPECT_EQ(EditLog.rBase, 1088);
    EXPECT_EQ(file().size(), 1088U);
    EXPECT_EQ(EditLog.rPtr, 1152);
}

TEST_F(EditLogTest, OneByteLessThanTheWindowIsHeld) {
    for (int i = 0; i < 17; i++) record("x", 56);
    record("y", 52); // ends at 1,148
    EXPECT_EQ(EditLog.rBase, 0);
    LogMark(); // would end at 1,152
    EXPECT_EQ(EditLog.rBase, 1148);
    EXPECT_EQ(file().size(), 1148U);
}

TEST_F(EditLogTest, JoiningGoesOnWithTheLastAction) {
    action("one");
    LogJoinAction();
    action("two");
    LogFlush();
    EXPECT_EQ(file(), Entry("one") + Entry("two") + MARK);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two", "-one"}));
}

TEST_F(EditLogTest, JoiningStepsBackOverTheMarkAlone) {
    action("one");
    LogJoinAction();
    EXPECT_EQ(EditLog.rPtr, 12);
    EXPECT_EQ(EditLog.rEofPtr, 16);
    LogJoinAction();
    EXPECT_EQ(EditLog.rPtr, 12);
}

TEST_F(EditLogTest, JoiningAnEmptyLogChangesNothing) {
    LogJoinAction();
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(EditLogTest, ARecordLongerThanTheWindowIsHeldAndReadBack) {
    action("before");
    std::string text(5000, 'n');
    action(text);
    action("behind");
    LogFlush();
    EXPECT_EQ(file(), Entry("before") + MARK + Entry(text) + MARK + Entry("behind") + MARK);
    for (int i = 0; i < 3; i++) EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-behind", "-" + text, "-before"}));
    for (int i = 0; i < 3; i++) EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"before", text, "behind"}));
    // The window's bookkeeping tells of it, and goes on.
    EXPECT_EQ(Headless.programErrors, (Texts{"LogFlush rEofPtr > BufLen"}));
}

TEST_F(EditLogTest, AFlushTellsOfMoreThanTheWindowAndOfNothing) {
    record("x", BufLen - 8);
    LogFlush();
    EXPECT_EQ(Headless.programErrors, Texts{});
    LogCloseFile();
    LogFlush();
    EXPECT_EQ(Headless.programErrors, Texts{});
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EditLog.Dirty = 1;
    LogFlush();
    EXPECT_EQ(Headless.programErrors, (Texts{"LogFlush rEofPtr == 0"}));
    EXPECT_EQ(EditLog.Dirty, 0);
    // An end in front of the window is not told of, and writes nothing.
    EditLog.Dirty = 1;
    EditLog.rEofPtr -= 4;
    LogFlush();
    EXPECT_EQ(Headless.programErrors.size(), 1U);
    EXPECT_EQ(EditLog.rBase, EditLog.rEofPtr);
    EXPECT_EQ(file().size(), static_cast<size_t>(BufLen));
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(EditLogTest, PaddingBeginsAsZeros) {
    memset(EditLog.Buffer, 0xFF, sizeof EditLog.Buffer);
    InitEditLog();
    const uint8_t *payload = LogAppend(1);
    EXPECT_EQ(LogWordAt(payload), 0U);
}

TEST_F(EditLogTest, ARecordBeyondEveryBoundIsNotTaken) {
    EXPECT_EQ(LogAppend(MAX_ENTRY), nullptr);
    EXPECT_EQ(LogAppend(0xFFFFFFFF), nullptr);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(EditLogTest, NearTheLimitOfPositionsNothingMoreIsRecorded) {
    EditLog.rPtr = EditLog.rBase = INT32_MAX - 1024;
    EditLog.rEofPtr = INT32_MAX - 512;
    EXPECT_EQ(LogAppend(16), nullptr);
    // What could be redone does not fit the document any more.
    EXPECT_EQ(EditLog.rEofPtr, INT32_MAX - 1024);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to write log file " + path}));
    EXPECT_EQ(EditLog.rPtr, INT32_MAX - 1024);
    EXPECT_EQ(LogMark(), INT32_MAX - 1024);
    EXPECT_EQ(Headless.userErrors, Texts(2, "Failed to write log file " + path));
    EXPECT_EQ(file(), "");
}

// --- undo and redo ----------------------------------------------------------------------------------

TEST_F(EditLogTest, AnEmptyLogHasNothingToUndoOrRedo) {
    EXPECT_EQ(LogAtMark(), 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogRollback(), 1);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_TRUE(Notes.empty());
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(EditLogTest, UndoGoesBackwardAndRedoForwardByActions) {
    action("one");
    record("two");
    action("three");
    int32_t end = EditLog.rPtr;
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-three", "-two"}));
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(EditLog.Recording, 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-one"}));
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"one"}));
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"two", "three"}));
    EXPECT_EQ(EditLog.rPtr, end);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(EditLogTest, ARecordAfterUndoEndsWhatCouldBeRedone) {
    action("one");
    action("two");
    action("three");
    LogFlush();
    std::string before = file();
    LogUndo();
    LogUndo();
    LogFlush();
    EXPECT_EQ(file(), before) << "nothing is cut without a new record";
    record("new");
    EXPECT_EQ(EditLog.rEofPtr, EditLog.rPtr);
    LogEndAction();
    EXPECT_EQ(file(), before);
    LogFlush();
    EXPECT_EQ(file(), Entry("one") + MARK + Entry("new") + MARK);
    Notes.clear();
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), Texts{});
}

TEST_F(EditLogTest, AFlushCutsTheFileWhereOneBeforeItFailed) {
    action("one");
    action("two");
    LogFlush();
    LogUndo();
    action("lost");
    WriteLimitHook = [](size_t size) { return size / 2; };
    LogFlush();
    action("lost, too");
    WriteLimitHook = [](size_t) { return size_t{0}; };
    LogFlush();
    WriteLimitHook = nullptr;
    EXPECT_EQ(Headless.userErrors, Texts(2, "Failed to write log file " + path));
    EXPECT_EQ(FileErrors, 2U);
    int32_t lostEnd = EditLog.rPtr;
    action("new");
    LogFlush();
    std::string whole = Entry("one") + MARK;
    whole.resize(static_cast<size_t>(lostEnd));
    EXPECT_EQ(file(), whole + Entry("new") + MARK) << "a hole that a recovery stops at";
    // Only once.
    action("more");
    LogFlush();
    EXPECT_EQ(file(), whole + Entry("new") + MARK + Entry("more") + MARK);
    Notes.clear();
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(LogUndo(), 0) << "the hole begins where this action does";
    EXPECT_EQ(replayed(), (Texts{"-more", "-new"}));
    EXPECT_EQ(EditLog.rPtr, lostEnd);
}

// --- the log aside --------------------------------------------------------------------------------

TEST_F(EditLogTest, WhatIsRecordedWhileTheLogStandsAsideGoesToMemoryAlone) {
    action("one");
    action("two");
    action("three");
    LogUndo();
    record("open");
    std::string fileBefore, expected;
    {
        LogAside aside;
        fileBefore = file();
        EXPECT_EQ(fileBefore, Entry("one") + MARK + Entry("two") + MARK + Entry("open"))
            << "it has been flushed";
        EXPECT_TRUE(aside.records().empty());
        for (int i = 0; i < 200; i++) {
            record("aside" + std::to_string(i));
            expected += Entry("aside" + std::to_string(i));
            if (i == 0) {
                std::string recorded(aside.records().begin(), aside.records().end());
                EXPECT_EQ(recorded, expected);
            }
        }
        EXPECT_EQ(std::string(aside.records().begin(), aside.records().end()), expected);
        EXPECT_EQ(file(), fileBefore);
    }
    EXPECT_EQ(file(), fileBefore);
    record("on");
    LogEndAction();
    LogFlush();
    EXPECT_EQ(file(), fileBefore + Entry("on") + MARK);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(LogUndo(), 1);
    Notes.clear();
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"two"}));
}

TEST_F(EditLogTest, WhatCanBeRedoneAndTheBuffersBytesOutliveTheLogAside) {
    action("one");
    action("two");
    LogUndo();
    int32_t position = EditLog.rPtr, end = EditLog.rEofPtr;
    std::vector<uint8_t> buffer(EditLog.Buffer, EditLog.Buffer + BufLen);
    {
        LogAside aside;
        record("aside");
    }
    EXPECT_EQ(EditLog.rPtr, position);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(EditLog.rBase, end) << "as a flush leaves it";
    EXPECT_EQ(std::vector<uint8_t>(EditLog.Buffer, EditLog.Buffer + BufLen), buffer);
    EXPECT_EQ(EditLog.LogFileName, path);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two", "two", "-two", "-one"}));
}

// --- the last act of a program that dies ------------------------------------------------------------

TEST_F(EditLogTest, AProgramThatDiesWritesWhatIsFinished) {
    action("one");
    record("open");
    LogWriteFinished();
    EXPECT_EQ(file(), Entry("one") + MARK);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(EditLogTest, AProgramThatDiesLeavesTheFileWhenNothingNewIsFinished) {
    LogWriteFinished();
    EXPECT_EQ(file(), "");
    action("one");
    action("two");
    LogFlush();
    LogUndo();
    std::string before = file();
    LogWriteFinished();
    EXPECT_EQ(file(), before);
    record("open");
    LogWriteFinished();
    EXPECT_EQ(file(), before);
    strcpy(EditLog.LogFileName, "");
    LogEndAction();
    LogWriteFinished();
    EXPECT_EQ(file(), before);
}

TEST_F(EditLogTest, AProgramThatDiesBehindTheFlushOfHalfAnActionWritesNothing) {
    action("one");
    record("half");
    LogFlush();
    record("more");
    std::string before = file();
    LogWriteFinished();
    EXPECT_EQ(file(), before);
}

TEST_F(EditLogTest, AProgramThatDiesCutsWhatWasUndone) {
    action("one");
    action("two");
    action("three");
    LogFlush();
    LogUndo();
    LogUndo();
    action("new");
    LogWriteFinished();
    EXPECT_EQ(file(), Entry("one") + MARK + Entry("new") + MARK);
}

TEST_F(EditLogTest, AProgramThatDiesKeepsWhatAnActionHeldBeforeItWasReopened) {
    action("one");
    action("joined");
    LogJoinAction();
    record("half");
    LogWriteFinished();
    EXPECT_EQ(file(), Entry("one") + MARK + Entry("joined") + MARK);
}

TEST_F(EditLogTest, AnActionIsNotFinishedWhereOneEndedThatWasUndoneSince) {
    action("1");
    action("2");
    LogJoinAction();
    LogRollback();
    // The position is now in front of the place where the second one ended, which falls between two records.
    record("3");
    record("4");
    LogWriteFinished();
    EXPECT_EQ(file(), Entry("1") + MARK);
}

TEST_F(EditLogTest, AProgramThatDiesInTheMidstOfAnUndoKeepsWhatLiesBefore) {
    action("one");
    action("two");
    auto *execute = ExecuteLogHook;
    ExecuteLogHook = [](std::span<const uint8_t>, int, int32_t, int32_t, int) {
        LogWriteFinished();
        return 1;
    };
    LogUndo();
    ExecuteLogHook = execute;
    EXPECT_EQ(file(), Entry("one") + MARK);
}

TEST_F(EditLogTest, AProgramThatDiesWritesNothingWhereItsLogIsGone) {
    action("one");
    fs::remove(path);
    LogWriteFinished();
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(Headless.userErrors.empty());
}

// What made the program die may have written into the log's memory.
TEST_F(EditLogTest, AProgramThatDiesWithADamagedLogWritesNothing) {
    using Damage = void (*)();
    const Damage damages[] = {[] { EditLog.rBase = EditLog.rPtr + 4; }, [] { EditLog.Held = 0; },
                              [] { EditLog.rPtr = EditLog.rBase + 2; },
                              [] { memset(EditLog.Buffer, 0, sizeof EditLog.Buffer); }};
    action("one");
    record("open");
    const EditLogRecord before = EditLog;
    for (Damage damage : damages) {
        EditLog = before;
        damage();
        LogWriteFinished();
        EXPECT_EQ(file(), "");
    }
    EditLog = before;
    LogWriteFinished();
    EXPECT_EQ(file(), Entry("one") + MARK);
}

TEST_F(EditLogTest, AnOpenActionIsRolledBackAndForgotten) {
    action("one");
    int32_t end = EditLog.rPtr;
    record("two");
    record("three");
    EXPECT_EQ(LogRollback(), 1);
    EXPECT_EQ(replayed(), (Texts{"-three", "-two"}));
    EXPECT_EQ(EditLog.rPtr, end);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), Texts{});
}

TEST_F(EditLogTest, RedoRollsAnOpenActionBackFirst) {
    action("one");
    record("open");
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-open"}));
    EXPECT_EQ(EditLog.rPtr, 16);
}

TEST_F(EditLogTest, AnOpenActionThatCannotBeRolledBackEndsUndoAndRedo) {
    for (auto *step : {LogUndo, LogRedo}) {
        action("one");
        record("bad");
        record("two");
        int32_t start = EditLog.rPtr - 24;
        RefusedText = "bad";
        EXPECT_EQ(step(), 0);
        EXPECT_EQ(replayed(), Texts{"-two"}) << "the action before it stays";
        EXPECT_EQ(EditLog.rPtr, start);
        EXPECT_EQ(EditLog.rEofPtr, start) << "the open action is forgotten";
        EXPECT_EQ(EditLog.Recording, 1);
    }
}

TEST_F(EditLogTest, APayloadIsReplayedWithItsPaddingAndNoMore) {
    static std::vector<size_t> sizes;
    sizes.clear();
    ExecuteLogHook = [](std::span<const uint8_t> payload, int, int32_t, int32_t, int) {
        sizes.push_back(payload.size());
        return 1;
    };
    action("one", 5);
    LogUndo();
    LogRedo();
    EXPECT_EQ(sizes, (std::vector<size_t>{8, 8}));
}

TEST_F(EditLogTest, AFlushBehindAnUndoLeavesTheWindowBehindTheEnd) {
    action("one");
    action("two");
    LogUndo();
    LogFlush();
    EXPECT_EQ(EditLog.rBase, 32);
    action("new");
    EXPECT_EQ(EditLog.rBase, 16);
    LogFlush();
    EXPECT_EQ(file(), Entry("one") + MARK + Entry("new") + MARK);
}

TEST_F(EditLogTest, UndoOfAnOpenActionUndoesTheOneBeforeToo) {
    action("one");
    record("open");
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-open", "-one"}));
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(EditLogTest, ABackwardWindowHasThePositionAt1024) {
    for (int i = 0; i < 100; i++) action(std::to_string(i), 12); // 24 bytes each
    LogFlush();
    EXPECT_EQ(LogFill(1), 1);
    EXPECT_EQ(EditLog.rBase, EditLog.rPtr - 1024);
    EXPECT_EQ(EditLog.Held, 1024);
    for (int i = 0; i < 60; i++) LogUndo();
    LogFill(1);
    EXPECT_EQ(EditLog.rPtr, 40 * 24);
    EXPECT_EQ(EditLog.rBase, 0);
    EXPECT_EQ(EditLog.Held, BufLen);
}

TEST_F(EditLogTest, AForwardWindowHasThePositionAt128) {
    for (int i = 0; i < 100; i++) action(std::to_string(i), 12);
    for (int i = 0; i < 50; i++) LogUndo();
    EXPECT_EQ(LogFill(0), 1);
    EXPECT_EQ(EditLog.rBase, EditLog.rPtr - 128);
    EXPECT_EQ(EditLog.Held, BufLen);
}

TEST_F(EditLogTest, ARedoMovesTheWindowOnWithEachRecordAndReadsOnlyWhatItLacks) {
    for (int i = 0; i < 100; i++) action(std::to_string(i), 12); // 24 bytes each
    for (int i = 0; i < 100; i++) LogUndo();
    Notes.clear();
    for (int i = 0; i < 40; i++) {
        int32_t start = EditLog.rPtr;
        LogCloseFile();
        ASSERT_EQ(LogRedo(), 1);
        EXPECT_EQ(EditLog.rBase, start > 128 ? start - 128 : 0) << i;
        // The first window reaches to 1,152.
        EXPECT_TRUE(EditLog.LogHandle == NO_FILE || i == 0 || start + 24 > 1152) << i;
    }
    EXPECT_EQ(Notes.size(), 40U);
    EXPECT_EQ(Notes.back().text, "39");
}

TEST_F(EditLogTest, ARedoAt128BytesIntoTheWindowLeavesItWhereItIs) {
    for (int i = 0; i < 8; i++) action(std::to_string(i), 20); // 32 bytes each
    for (int i = 0; i < 7; i++) LogUndo();
    for (int i = 0; i < 4; i++) LogRedo(); // the last begins at 128
    EXPECT_EQ(file(), "");
}

TEST_F(EditLogTest, LongLogsAreWalkedAcrossManyWindows) {
    Texts all;
    for (int i = 0; i < 500; i++) {
        all.push_back(std::to_string(i));
        action(all.back(), static_cast<uint32_t>(4 + i % 60));
    }
    Texts backward;
    for (auto text = all.rbegin(); text != all.rend(); ++text) backward.push_back("-" + *text);
    for (int i = 0; i < 500; i++) ASSERT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), backward);
    for (int i = 0; i < 500; i++) ASSERT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), all);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(EditLogTest, UndoOfWhatIsInTheWindowReadsNothing) {
    action("one");
    action("two");
    LogUndo();
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(file(), "");
}

// --- failures ---------------------------------------------------------------------------------------

TEST_F(EditLogTest, ARefusedRecordStopsTheUndoBeforeIt) {
    action("one");
    record("bad");
    int32_t behind = EditLog.rPtr;
    record("two");
    LogEndAction();
    RefusedText = "bad";
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(replayed(), (Texts{"-two"}));
    EXPECT_EQ(EditLog.rPtr, behind - 12);
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(EditLogTest, ARefusedRecordStopsTheRedoAndDropsWhatFollows) {
    record("one");
    record("bad");
    int32_t behind = EditLog.rPtr;
    record("two");
    LogEndAction();
    LogUndo();
    Notes.clear();
    RefusedText = "bad";
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(replayed(), (Texts{"one"}));
    EXPECT_EQ(EditLog.rPtr, behind);
    EXPECT_EQ(EditLog.rEofPtr, behind);
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(EditLogTest, OnlyWhatTheLastRedoRefusedIsCutOff) {
    action("one");
    action("bad");
    LogUndo();
    RefusedText = "bad";
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_TRUE(LogCutRefused());
    EXPECT_EQ(EditLog.rPtr, 16);
    EXPECT_EQ(EditLog.rEofPtr, 16);
    EXPECT_FALSE(LogCutRefused());
    RefusedText = "";
    action("bad");
    LogUndo();
    RefusedText = "bad";
    EXPECT_EQ(LogRedo(), 0);
    RefusedText = "";
    LogRollback();
    action("two");
    LogUndo();
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_FALSE(LogCutRefused());
}

TEST_F(EditLogTest, TheFirstRecordOfTheLogCanBeCutOff) {
    installFile(Entry("bad") + MARK, false);
    RefusedText = "bad";
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_TRUE(LogCutRefused());
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
}

TEST_F(EditLogTest, ARedoFarIntoTheWindowWritesFirstWhatTheFileLacks) {
    for (int i = 0; i < 10; i++) action(std::to_string(i), 12); // 24 bytes each
    for (int i = 0; i < 9; i++) LogUndo();
    for (int i = 0; i < 5; i++) LogRedo(); // the fifth begins at 120
    EXPECT_EQ(file(), "");
    LogRedo();
    EXPECT_EQ(file().size(), 240U);
    EXPECT_EQ(EditLog.rBase, 144 - 128);
}

TEST_F(EditLogTest, AFileThatCannotBeOpenedIsToldAndTheNameKept) {
    action("one");
    fs::remove(path);
    LogFlush();
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to open log file " + path}));
    EXPECT_EQ(EditLog.LogFileName, path);
    EXPECT_EQ(EditLog.Dirty, 0);
    EXPECT_EQ(EditLog.rBase, EditLog.rEofPtr);
}

TEST_F(EditLogTest, AFileThatCannotBeOpenedForReadingStopsTheUndoAndTheLogGoesOnInMemory) {
    action("one");
    LogFlush();
    LogCloseFile();
    fs::remove(path);
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to open log file " + path}));
    EXPECT_STREQ(EditLog.LogFileName, "");
    EXPECT_EQ(EditLog.Recording, 1);
    action("two");
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two"}));
}

TEST_F(EditLogTest, TheRecordWhereTheWindowBeginsIsReadAnewFromTheFile) {
    action("one");
    fs::remove(path);
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to open log file " + path}));
    // Without a file the memory serves. The mark was stepped over, so what follows joins the action.
    action("two");
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two", "-one"}));
}

TEST_F(EditLogTest, AFileThatIsEmptiedInTheMidstOfAnUndoStopsIt) {
    action("one");
    record("two");
    action(std::string(5000, 'n'));
    LogFlush();
    static std::string name;
    name = path;
    ExecuteLogHook = [](std::span<const uint8_t>, int, int32_t, int32_t, int) {
        fs::resize_file(name, 0);
        return 1;
    };
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to read log file " + path}));
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(EditLogTest, AFileThatIsEmptiedInTheMidstOfARedoStopsIt) {
    record("one");
    action(std::string(2000, 'n'));
    LogUndo();
    LogFlush();
    static std::string name;
    name = path;
    ExecuteLogHook = [](std::span<const uint8_t>, int, int32_t, int32_t, int) {
        fs::resize_file(name, 0);
        return 1;
    };
    EXPECT_EQ(LogRedo(), 0);
    EXPECT_EQ(EditLog.rPtr, 12) << "behind the first record";
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to read log file " + path}));
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(EditLogTest, AFileThatCannotBeCutIsNotWritten) {
    action("one");
    action("two");
    LogFlush();
    LogUndo();
    std::string before = file();
    int readOnly = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    dup2(readOnly, static_cast<int>(EditLog.LogHandle));
    close(readOnly);
    action("new");
    LogFlush();
    EXPECT_EQ(file(), before);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to write log file " + path}));
    LogCloseFile();
    action("more");
    LogFlush();
    EXPECT_EQ(file().substr(0, 16), Entry("one") + MARK);
    EXPECT_EQ(file().substr(32), Entry("more") + MARK) << "behind a hole where the new one was";
}

TEST_F(EditLogTest, WithNothingToReplayWithUndoStopsBeforeTheRecord) {
    action("one");
    ExecuteLogHook = nullptr;
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(EditLog.Recording, 1);
}

TEST_F(EditLogTest, AFileThatGotShorterIsToldAsAFailedRead) {
    for (int i = 0; i < 100; i++) action(std::to_string(i), 12);
    LogFlush();
    LogCloseFile();
    fs::resize_file(path, 1000);
    std::string rest = file();
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to read log file " + path}));
    EXPECT_EQ(EditLog.Held, 0);
    // What is recorded behind it does not write over what is there.
    action("new");
    LogFlush();
    EXPECT_EQ(file().substr(0, 1000), rest);
    EXPECT_EQ(file().substr(2400), Entry("new") + MARK);
}

TEST_F(EditLogTest, AFileWithoutPositionsIsToldAtEachUse) {
    action("one");
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    LogFlush();
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to write log file " + path}));
    EXPECT_EQ(LogUndo(), 0);
    EXPECT_EQ(Headless.userErrors,
              (Texts{"Failed to write log file " + path, "Failed to read log file " + path}));
    EXPECT_EQ(EditLog.ReadFault, 1);
    EXPECT_EQ(replayed(), Texts{});
}

TEST_F(EditLogTest, ALogWithoutAFileWorksInMemoryAndDropsWhatIsFlushed) {
    EditLog.LogFileName[0] = '\0';
    action("one");
    action("two");
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-two", "-one"}));
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(replayed(), (Texts{"one", "two"}));
    LogFlush();
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(LogRollback(), 1);
    EXPECT_EQ(replayed(), Texts{});
    EXPECT_TRUE(Headless.userErrors.empty());
    action("three");
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(replayed(), (Texts{"-three"}));
}

TEST_F(EditLogTest, AFailedWriteIsToldOnceAndLeavesAHole) {
    if (!fs::exists("/dev/full")) GTEST_SKIP();
    action("lost");
    int32_t hole = EditLog.rPtr;
    fs::remove(path);
    fs::create_symlink("/dev/full", path);
    LogFlush();
    LogCloseFile();
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to write log file " + path}));
    fs::remove(path);
    scratch.write("document._KL", "");
    action("kept");
    LogFlush();
    EXPECT_EQ(file(), std::string(static_cast<size_t>(hole), '\0') + Entry("kept") + MARK);
    EXPECT_EQ(Headless.userErrors.size(), 1U);
}

} // namespace
