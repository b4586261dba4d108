#include "editlog/recovery.h"

#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/editlog/log_fixture.h"
#include "unit/support/fresh_store.h"
#include "unit/support/traced_child.h"
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

const std::string MARK = Word(0xFFFFFFFF);
constexpr int YES = 1;
constexpr int NO = 2;

// An entry of the file as a builder of log records writes it.
template <class Build>
std::string EntryOf(Build build) {
    EditLogRecord before = EditLog;
    InitEditLog();
    build();
    std::string entry(EditLog.Buffer, EditLog.Buffer + EditLog.rPtr);
    EditLog = before;
    return entry;
}

// A document of one node, with a log beside it.
class RecoveryTest : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        snprintf(DocumentPath, sizeof DocumentPath, "%s", scratch.file("document.wdl").c_str());
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        node = MakePattern("NODE", {{0, 10}});
        original = StoreText();
    }
    void TearDown() override {
        LogDeleteFile();
        FreshStore::TearDown();
    }

    // One action that lengthens the delay from `from` to `to`.
    std::string delay(uint32_t from, uint32_t to) const {
        return EntryOf([&] { LogDelay(node, from, to); });
    }
    void leaveLog(const std::string &bytes) const { scratch.write("document._KL", bytes); }
    std::string file() const { return ReadWholeFile(path); }
    void recover(int answer = YES) {
        Headless.alertAnswers = {answer};
        LogReset(1);
    }
    static uint32_t delayNow(uint16_t id) { return PatternFromId(id)->delay; }

    ScratchDirectory scratch;
    std::string path = scratch.file("document._KL");
    uint16_t node;
    std::string original;
};

TEST_F(RecoveryTest, AResetForgetsWhatTheWindowHeld) {
    EditLog.rBase = 100;
    EditLog.rPtr = 200;
    EditLog.rEofPtr = 300;
    EditLog.Held = 50;
    EditLog.Dirty = 1;
    EditLog.Recording = 0;
    LogReset(0);
    EXPECT_EQ(EditLog.rBase, 0);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
    EXPECT_EQ(EditLog.Held, 0);
    EXPECT_EQ(EditLog.Dirty, 0);
    EXPECT_EQ(EditLog.Recording, 1);
}

// --- the question -----------------------------------------------------------------------------------

TEST_F(RecoveryTest, ALogThatIsLeftIsOfferedForRecovery) {
    leaveLog(delay(0, 7) + MARK + delay(7, 9) + MARK);
    recover();
    ASSERT_EQ(Headless.alerts.size(), 1U);
    EXPECT_EQ(Headless.alerts[0].lines, (Texts{"Recover file from system crash -", path}));
    EXPECT_EQ(Headless.alerts[0].buttons, (Texts{"Yes", "No"}));
    EXPECT_EQ(Headless.alerts[0].icon, 2);
    EXPECT_EQ(delayNow(node), 9U);
    EXPECT_EQ(IsDocumentModified(), 1);
    EXPECT_EQ(EditLog.Recording, 1);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
}

TEST_F(RecoveryTest, RecoveredEditsCanBeUndone) {
    leaveLog(delay(0, 7) + MARK + delay(7, 9) + MARK);
    recover();
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(delayNow(node), 7U);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(StoreText(), original);
    EXPECT_EQ(IsDocumentModified(), 0);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(delayNow(node), 7U);
}

TEST_F(RecoveryTest, TheAnswerNoBeginsAnEmptyLogAndLeavesTheFilesBytesUntilARecordComes) {
    std::string bytes = delay(0, 7) + MARK + delay(7, 9) + MARK;
    leaveLog(bytes);
    recover(NO);
    EXPECT_EQ(StoreText(), original);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(file(), bytes);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(StoreText(), original);
    // A second crash finds the new record, and nothing of what was not wanted.
    SetPatternDelay(PatternFromId(node), 5);
    LogFlush();
    LogCloseFile();
    EXPECT_EQ(file(), delay(0, 5));
}

TEST_F(RecoveryTest, TheFirstRecordBehindARecoveryCutsTheFileThere) {
    // The log of an earlier document was shorter.
    LogBindToDocument(scratch.file("earlier.wdl").c_str());
    SetPatternDelay(PatternFromId(node), 3);
    LogFlush();
    SetPatternDelay(PatternFromId(node), 0);
    std::string finished = delay(0, 7) + MARK;
    leaveLog(finished + delay(7, 9) + delay(9, 11));
    recover();
    SetPatternDelay(PatternFromId(node), 5);
    LogFlush();
    LogCloseFile();
    EXPECT_EQ(file(), finished + delay(7, 5));
}

TEST_F(RecoveryTest, ThePromptLineTellsWhatCameBack) {
    leaveLog(delay(0, 7) + MARK + delay(7, 9) + MARK + delay(9, 4));
    recover();
    ShowNotices();
    EXPECT_STREQ(PromptText, "Recovered from the log: 2 actions, without 24 bytes at its end.");
    EditLog.LogFileName[0] = '\0'; // that run died, too
    leaveLog(delay(0, 7) + MARK);
    recover();
    ShowNotices();
    EXPECT_STREQ(PromptText, "Recovered from the log: 1 action, without 0 bytes at its end.");
    SetPrompt("");
    EditLog.LogFileName[0] = '\0'; // that run died, too
    leaveLog(delay(0, 7) + MARK);
    recover(NO);
    ShowNotices();
    EXPECT_STREQ(PromptText, "");
}

// A log that the disk does not give back is neither taken for its beginning nor written over.
TEST_F(RecoveryTest, ALogThatStopsBeingReadableStaysAsItIs) {
    if (!CanTraceCalls()) GTEST_SKIP() << "no process can be traced here";
    std::string bytes;
    for (uint32_t i = 0; i < 300; i++) bytes += delay(i, i + 1) + MARK;
    leaveLog(bytes);
    auto recoverIn = [&](unsigned read) {
        return RunTraced(
            [&] {
                MarkTracedCalls();
                recover();
                MarkTracedCalls();
                bool told =
                    Headless.userErrors == std::vector<std::string>{"Failed to read log file " + path};
                bool hasFile = EditLog.LogFileName[0] != '\0';
                SetPatternDelay(PatternFromId(node), 77);
                LogEndAction();
                LogFlush();
                _exit(file() != bytes ? hasFile ? 0 : 1 : told && !hasFile ? 2 : 3);
            },
            {.directory = "", .call = Call::Read, .number = read, .error = EIO});
    };
    TracedRun whole = recoverIn(0);
    ASSERT_EQ(whole.status, 0);
    ASSERT_GT(whole.calls, 5U);
    for (unsigned read = 1; read <= whole.calls; read++) {
        leaveLog(bytes);
        EXPECT_EQ(recoverIn(read).status, 2) << read;
    }
}

TEST_F(RecoveryTest, ALogThatStopsBeingReadableIsLeftAloneFromThenOn) {
    std::string bytes;
    for (uint32_t i = 0; i < 300; i++) bytes += delay(i, i + 1) + MARK;
    leaveLog(bytes);
    ExecuteLogHook = [](std::span<const uint8_t> payload, int direction, int32_t a, int32_t b, int mode) {
        // From here on the handle is that of something that cannot be read.
        int unreadable = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(unreadable, static_cast<int>(EditLog.LogHandle));
        close(unreadable);
        return ApplicationExecuteLog(payload, direction, a, b, mode);
    };
    recover();
    ExecuteLogHook = ApplicationExecuteLog;
    ASSERT_FALSE(Headless.userErrors.empty());
    for (const std::string &error : Headless.userErrors) EXPECT_EQ(error, "Failed to read log file " + path);
    EXPECT_STREQ(EditLog.LogFileName, "") << "there is no log file any more";
    uint32_t recovered = delayNow(node);
    EXPECT_GT(recovered, 10U);
    EXPECT_LT(recovered, 300U);
    SetPatternDelay(PatternFromId(node), 7);
    LogEndAction();
    LogFlush();
    EXPECT_EQ(file(), bytes);
    ShowNotices();
    EXPECT_NE(std::string(PromptText).find(": " + std::to_string(recovered) + " actions, without"),
              std::string::npos);
}

TEST_F(RecoveryTest, ALogThatCannotBeEmptiedBehindASaveIsTold) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    LogReset(0);
    EXPECT_EQ(Headless.userErrors, Texts{"Failed to write log file " + path});
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
}

TEST_F(RecoveryTest, AnyOtherAnswerCountsAsNo) {
    leaveLog(delay(0, 7) + MARK);
    for (int answer : {0, 2, 3}) {
        recover(answer);
        EXPECT_EQ(StoreText(), original);
        leaveLog(delay(0, 7) + MARK);
    }
}

TEST_F(RecoveryTest, AnEmptyLogIsNotAskedAbout) {
    leaveLog("");
    recover();
    EXPECT_TRUE(Headless.alerts.empty());
    EXPECT_EQ(EditLog.rEofPtr, 0);
    EXPECT_EQ(EditLog.LogFileName, path);
}

TEST_F(RecoveryTest, WithoutALogOneIsMade) {
    recover();
    EXPECT_TRUE(Headless.alerts.empty());
    EXPECT_EQ(fs::file_size(path), 0U);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
}

TEST_F(RecoveryTest, ASaveAsksNothingAndBeginsAnEmptyLog) {
    leaveLog(delay(0, 7) + MARK);
    LogReset(0);
    EXPECT_TRUE(Headless.alerts.empty());
    EXPECT_EQ(file(), "");
    EXPECT_EQ(StoreText(), original);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
}

TEST_F(RecoveryTest, ASaveDeletesTheLogThatWasInUse) {
    recover();
    SetPatternDelay(PatternFromId(node), 5);
    LogEndAction();
    LogFlush();
    EXPECT_NE(file(), "");
    LogReset(0);
    EXPECT_EQ(file(), "");
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(delayNow(node), 5U);
}

TEST_F(RecoveryTest, ASaveUnderAnotherNameMovesTheLogThere) {
    recover();
    SetPatternDelay(PatternFromId(node), 5);
    LogFlush();
    snprintf(DocumentPath, sizeof DocumentPath, "%s", scratch.file("other.wdl").c_str());
    LogReset(0);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(EditLog.LogFileName, scratch.file("other._KL"));
}

TEST_F(RecoveryTest, AnUntitledDocumentHasATemporaryLogAndNothingToRecover) {
    DocumentPath[0] = '\0';
    recover();
    EXPECT_TRUE(Headless.alerts.empty());
    EXPECT_TRUE(fs::path(EditLog.LogFileName).filename().string().starts_with("_KL"));
    EXPECT_EQ(fs::file_size(EditLog.LogFileName), 0U);
}

// --- the tail ---------------------------------------------------------------------------------------

TEST_F(RecoveryTest, AnActionWithoutItsMarkIsTakenBack) {
    std::string whole = delay(0, 7) + MARK;
    leaveLog(whole + delay(7, 8) + delay(8, 9));
    recover();
    EXPECT_EQ(delayNow(node), 7U);
    EXPECT_EQ(EditLog.rPtr, static_cast<int32_t>(whole.size()));
    EXPECT_EQ(EditLog.rEofPtr, EditLog.rPtr);
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(delayNow(node), 7U);
}

TEST_F(RecoveryTest, ALogOfOneOpenActionBringsNothingBack) {
    leaveLog(delay(0, 7) + delay(7, 9));
    recover();
    EXPECT_EQ(StoreText(), original);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
}

TEST_F(RecoveryTest, AfterARecoveryTheLogGoesOn) {
    std::string whole = delay(0, 7) + MARK;
    leaveLog(whole + delay(7, 8));
    recover();
    SetPatternDelay(PatternFromId(node), 20);
    LogEndAction();
    LogFlush();
    LogCloseFile();
    EXPECT_EQ(file(), whole + delay(7, 20) + MARK);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(delayNow(node), 7U);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(StoreText(), original);
}

TEST_F(RecoveryTest, LongLogsComeBackWhole) {
    std::string bytes;
    for (uint32_t i = 0; i < 5000; i++) bytes += delay(i, i + 1) + MARK;
    leaveLog(bytes);
    recover();
    EXPECT_EQ(delayNow(node), 5000U);
    for (int i = 0; i < 5000; i++) ASSERT_EQ(LogUndo(), 1);
    EXPECT_EQ(StoreText(), original);
    EXPECT_TRUE(Headless.userErrors.empty());
}

// --- damage -------------------------------------------------------------------------------------------

class DamagedRecovery : public RecoveryTest, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedRecovery, StopsAtTheDamageAndTakesTheOpenActionBack) {
    std::string whole = delay(0, 7) + MARK;
    leaveLog(whole + delay(7, 8) + GetParam());
    recover();
    EXPECT_EQ(delayNow(node), 7U);
    EXPECT_EQ(EditLog.rPtr, static_cast<int32_t>(whole.size()));
    EXPECT_EQ(EditLog.rEofPtr, EditLog.rPtr);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to read log file " + path}));
    EXPECT_TRUE(Headless.programErrors.empty());
    EXPECT_EQ(EditLog.Recording, 1);
}

INSTANTIATE_TEST_SUITE_P(Frames, DamagedRecovery,
                         testing::Values(Word(0), Word(4) + Word(4), Word(11) + Word(0) + Word(0),
                                         Word(24) + Word(1), std::string("abc"),
                                         Word(16) + Word(0) + Word(0) + Word(20), Word(0x7FFFFFFC),
                                         Word(0x80000000), Word(0xFFFFFFFE)));

TEST_F(RecoveryTest, BehindARefusedRecordWhatItsActionDidBeforeStays) {
    std::string bytes = delay(0, 7) + MARK + delay(7, 8);
    std::string refused = EntryOf([] { LogDelay(99, 0, 1); });
    leaveLog(bytes + refused + delay(8, 9) + MARK);
    recover();
    EXPECT_EQ(delayNow(node), 8U);
    EXPECT_EQ(Headless.programErrors, Texts{"ApplicationExecuteLog - Invalid Command"});
    EXPECT_TRUE(Headless.userErrors.empty());
    // It is an action of its own.
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(delayNow(node), 7U);
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(delayNow(node), 8U);
    SetPatternDelay(PatternFromId(node), 20);
    LogEndAction();
    LogFlush();
    LogCloseFile();
    // But for the unused bytes of the record.
    EXPECT_TRUE(file().starts_with(bytes + MARK + delay(8, 20).substr(0, 16)));
}

TEST_F(RecoveryTest, ARefusedRecordIsNotTakenBack) {
    // Backward it would fit: it would delete the node.
    std::string refused = EntryOf([&] { LogPattern(1, node, 1, "NODE"); });
    leaveLog(delay(0, 7) + MARK + refused + MARK);
    recover();
    EXPECT_EQ(delayNow(node), 7U);
    EXPECT_EQ(EditLog.rPtr, 28);
    EXPECT_EQ(EditLog.rEofPtr, 28);
    EXPECT_EQ(LogUndo(), 1);
    EXPECT_EQ(StoreText(), original);
}

TEST_F(RecoveryTest, ReferencesThatWaitedForTheirPatternInVainAreDeleted) {
    leaveLog(EntryOf([&] { LogReference(1, node, 0, 1, 99, 1, 1, 0, 0, 0); }) + MARK);
    recover();
    EXPECT_EQ(StoreText(), original);
    EXPECT_EQ(PatternFromId(node)->itemCount, 1);
}

TEST_F(RecoveryTest, AReferenceMayWaitForAPatternOfALaterAction) {
    std::string bytes = EntryOf([&] { LogReference(1, node, 0, 1, 99, 1, 1, 0, 0, 0); }) + MARK;
    leaveLog(bytes + EntryOf([] { LogPattern(1, 99, 1, ""); }) + MARK);
    recover();
    EXPECT_EQ(PatternFromId(node)->itemCount, 2);
}

// --- rows ---------------------------------------------------------------------------------------------

TEST_F(RecoveryTest, RowsComeBackWithAndWithoutAWindow) {
    for (bool window : {false, true}) {
        WaveView.RowCount = 0;
        WaveView.SelectRow = NO_ROW;
        DisplayOpen = window;
        Headless.panesExist = window;
        leaveLog(EntryOf([&] { LogRow(1, node, 0); }) + EntryOf([&] { LogRow(1, node, 1); }) + MARK +
                 EntryOf([&] { LogRow(0, node, 0); }) + MARK);
        recover();
        ASSERT_EQ(WaveView.RowCount, 1U) << window;
        EXPECT_EQ(WaveRows[0].PatternId, node);
        EXPECT_EQ(LogUndo(), 1);
        EXPECT_EQ(WaveView.RowCount, 2U);
        LogDeleteFile();
    }
}

TEST_F(RecoveryTest, BehindTheStartTheLengthsAreThoseOfTheRecoveredDocument) {
    leaveLog(EntryOf([&] { LogItemDuration(node, 0, 10, 100); }) + MARK);
    recover();
    ValidateDurations();
    EXPECT_EQ(PatternDuration(PatternFromId(node)), 100U);
}

// --- through the document -----------------------------------------------------------------------------

class DocumentRecovery : public RecoveryTest {
protected:
    void SetUp() override {
        RecoveryTest::SetUp();
        before = fs::current_path();
        scratch.write("document.wdl", "NODE = 0 10;\n");
    }
    void TearDown() override {
        fs::current_path(before);
        RecoveryTest::TearDown();
    }
    fs::path before;
};

TEST_F(DocumentRecovery, OpeningADocumentOffersItsLog) {
    leaveLog(delay(0, 7) + MARK);
    Headless.alertAnswers = {YES};
    EXPECT_EQ(OpenDocument(DocumentPath, false), 1);
    EXPECT_EQ(FindPattern("NODE")->delay, 7U);
    EXPECT_EQ(IsDocumentModified(), 1);
    EXPECT_EQ(PatternDuration(FindPattern("NODE")), 17U);
}

TEST_F(DocumentRecovery, ASaveMakesRecoveredEditsLastAndEmptiesTheLog) {
    leaveLog(EntryOf([&] { LogItemDuration(node, 0, 10, 100); }) + MARK);
    Headless.alertAnswers = {YES};
    OpenDocument(DocumentPath, false);
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(file(), "");
    EXPECT_EQ(IsDocumentModified(), 0);
    EXPECT_NE(ReadWholeFile(scratch.file("document.wdl")).find("0 100"), std::string::npos);
}

TEST_F(DocumentRecovery, ACleanEndLeavesNoLog) {
    OpenDocument(DocumentPath, false);
    EXPECT_TRUE(fs::exists(path));
    ReleaseDocument();
    EXPECT_FALSE(fs::exists(path));
    ASSERT_EQ(PatternStoreInit(), 1);
}

TEST_F(DocumentRecovery, ADocumentThatIsOpenedAgainHasForgottenItsLog) {
    OpenDocument(DocumentPath, false);
    SetPatternDelay(FindPattern("NODE"), 5);
    LogEndAction();
    LogFlush();
    Headless.alertAnswers = {NO};
    OpenDocument(DocumentPath, false);
    EXPECT_EQ(Headless.alerts.size(), 1U); // whether to save
    EXPECT_EQ(FindPattern("NODE")->delay, 0U);
    EXPECT_EQ(file(), "");
}

} // namespace
