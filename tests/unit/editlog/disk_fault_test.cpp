// What the disk can do to a log while the program runs: the fault is told, the edit stands, and nothing else
// is harmed.
#include "display/wave_view.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "platform/files_native.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "unit/support/log_session.h"
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

class DiskFault : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        snprintf(DocumentPath, sizeof DocumentPath, "%s", scratch.file("document.wdl").c_str());
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        BuildSessionDocument();
        DisplayOpen = 1;
        LogReset(1);
        original = SessionText();
    }
    void TearDown() override {
        WriteLimitHook = nullptr;
        LogDeleteFile();
        FreshStore::TearDown();
    }

    // As a command does it: the file is held open for the length of an action.
    void edit(int actions) {
        for (int i = 0; i < actions; i++) {
            int held = LogHoldOpen(1);
            SessionAction(random);
            LogHoldOpen(held);
        }
    }
    // Undoes what can be undone.
    static void undoAll() {
        int held = LogHoldOpen(1);
        while (EditLog.rPtr > 0) {
            int32_t before = EditLog.rPtr;
            if (!LogUndo() || EditLog.rPtr == before) break;
        }
        FinishReplay();
        LogHoldOpen(held);
    }
    void expectSound() {
        EXPECT_EQ(HeapFault(), "");
        EXPECT_EQ(FindReferenceCircle(), 0);
        EXPECT_EQ(EditLog.Recording, 1);
        ValidateDurations();
    }
    // The newest action can always be undone: it lies in memory.
    void expectTheLogGoesOn() {
        std::string before = SessionText();
        LogEndAction();
        SetPatternDelay(PatternFromId(1), PatternFromId(1)->delay + 1);
        LogEndAction();
        EXPECT_EQ(LogUndo(), 1);
        EXPECT_EQ(SessionText(), before);
    }

    ScratchDirectory scratch;
    std::string path = scratch.file("document._KL");
    std::string original;
    Random random{11};
};

TEST_F(DiskFault, ALogThatIsDeletedWhileTheProgramRuns) {
    edit(100);
    fs::remove(path);
    std::string before = SessionText();
    edit(100);
    EXPECT_NE(SessionText(), before);
    ASSERT_FALSE(Headless.userErrors.empty());
    EXPECT_EQ(Headless.userErrors.front(), "Failed to open log file " + path);
    expectTheLogGoesOn();
    undoAll();
    expectSound();
    EXPECT_STREQ(EditLog.LogFileName, "");
    edit(100);
    expectTheLogGoesOn();
    expectSound();
}

TEST_F(DiskFault, ALogThatIsReplacedByOtherBytes) {
    for (const std::string &bytes : {std::string(100000, '\xFF'), std::string(100000, '\0'),
                                     std::string(100000, '\x10'), std::string("short"), std::string()}) {
        edit(100);
        LogFlush();
        LogCloseFile();
        scratch.write("document._KL", bytes);
        edit(30);
        undoAll();
        expectSound();
        edit(100);
        expectTheLogGoesOn();
        expectSound();
        LogReset(0);
    }
}

TEST_F(DiskFault, ALogThatIsReplacedByADirectory) {
    edit(100);
    fs::remove(path);
    fs::create_directory(path);
    edit(100);
    undoAll();
    ASSERT_FALSE(Headless.userErrors.empty());
    EXPECT_TRUE(Headless.userErrors.front().ends_with(path));
    expectSound();
    expectTheLogGoesOn();
    LogDeleteFile();
    EXPECT_TRUE(fs::is_directory(path));
}

TEST_F(DiskFault, ALogThatMayNotBeWrittenAnyMore) {
    edit(50);
    fs::permissions(path, fs::perms::owner_read);
    edit(100);
    ASSERT_FALSE(Headless.userErrors.empty());
    EXPECT_EQ(Headless.userErrors.front(), "Failed to open log file " + path);
    expectTheLogGoesOn();
    undoAll();
    expectSound();
}

size_t WriteNothing(size_t) {
    return 0;
}

size_t WriteHalf(size_t size) {
    return size / 2;
}

TEST_F(DiskFault, AFullDisk) {
    edit(100);
    EXPECT_TRUE(Headless.userErrors.empty());
    for (auto *hook : {WriteNothing, WriteHalf}) {
        WriteLimitHook = hook;
        Headless.userErrors.clear();
        std::string before = SessionText();
        edit(100);
        EXPECT_NE(SessionText(), before);
        ASSERT_FALSE(Headless.userErrors.empty());
        for (const std::string &error : Headless.userErrors)
            EXPECT_EQ(error, "Failed to write log file " + path);
        expectTheLogGoesOn();
        // When there is room again, the log goes on, with a hole where the lost blocks belonged.
        WriteLimitHook = nullptr;
        edit(100);
        undoAll();
        expectSound();
        expectTheLogGoesOn();
    }
}

TEST_F(DiskFault, AHoleInTheFileEndsARecoveryBeforeIt) {
    edit(100);
    LogFlush();
    std::string before = SessionText();
    WriteLimitHook = WriteNothing;
    edit(60);
    LogFlush();
    WriteLimitHook = nullptr;
    edit(60);
    LogFlush();
    LogCloseFile();
    FreshStore::TearDown(); // without the end of the program
    SetUp();
    EXPECT_EQ(SessionText(), before);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to read log file " + path}));
    expectTheLogGoesOn();
}

TEST_F(DiskFault, ALogThatCannotBeMade) {
    snprintf(DocumentPath, sizeof DocumentPath, "%s", scratch.file("none/document.wdl").c_str());
    LogReset(1);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to create log file " + scratch.file("none/document._KL")}));
    edit(100);
    EXPECT_EQ(Headless.userErrors.size(), 1U);
    expectTheLogGoesOn();
    undoAll();
    expectSound();
    EXPECT_TRUE(Headless.programErrors.empty());
}

} // namespace
