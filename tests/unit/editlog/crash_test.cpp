// The engine is stopped dead in the midst of a session, and started again.
#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "platform/files_native.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "unit/support/log_session.h"
#include <csignal>
#include <cstring>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr uint32_t SEED = 7;
constexpr int ACTIONS = 400;

// Where the session ends: at which write, and how much of that is done.
int writesLeft;
bool stopping;
enum class Stop { Before, Midway, Behind } stopPlace;

int writesCounted;

size_t CountWrite(size_t size) {
    writesCounted++;
    return size;
}

size_t StopAtWrite(size_t size) {
    if (stopping) _exit(0);
    if (--writesLeft > 0) return size;
    if (stopPlace == Stop::Before) _exit(0);
    stopping = true;
    return stopPlace == Stop::Midway ? size / 2 + 1 : size;
}

class CrashTest : public FreshStore {
protected:
    void SetUp() override {
        start();
        Random random(SEED);
        states.push_back(SessionText());
        ends.push_back(0);
        writesCounted = 0;
        WriteLimitHook = CountWrite;
        for (int i = 0; i < ACTIONS; i++) {
            SessionAction(random);
            if (EditLog.rPtr == ends.back()) continue; // nothing changed
            states.push_back(SessionText());
            ends.push_back(EditLog.rPtr);
        }
        WriteLimitHook = nullptr;
        end();
    }
    void TearDown() override {} // the last document has gone by then

    // The program begins with the document and its log.
    void start() {
        FreshStore::SetUp();
        snprintf(DocumentPath, sizeof DocumentPath, "%s", scratch.file("document.wdl").c_str());
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        BuildSessionDocument();
        DisplayOpen = 1;
        LogReset(1);
        ValidateDurations();
    }
    void end() {
        LogDeleteFile();
        FreshStore::TearDown();
    }

    // The session of the states in a process of its own, with a hook for its writes.
    pid_t runSession(size_t (*hook)(size_t)) {
        pid_t child = fork();
        if (child != 0) return child;
        start();
        WriteLimitHook = hook;
        stopping = false;
        Random random(SEED);
        for (int i = 0; i < ACTIONS && !stopping; i++) SessionAction(random);
        _exit(0);
    }

    size_t actionsInFile() const {
        std::error_code error;
        auto size = static_cast<int32_t>(fs::file_size(path, error));
        if (error) return 0;
        size_t count = 0;
        while (count + 1 < ends.size() && ends[count + 1] <= size) count++;
        return count;
    }

    // Starts again, and sees what comes back, and that the log goes on from there.
    void expectRecovery() {
        size_t count = actionsInFile();
        start();
        EXPECT_EQ(SessionText(), states[count]) << count;
        EXPECT_EQ(EditLog.rPtr, ends[count]);
        EXPECT_EQ(EditLog.rEofPtr, ends[count]);
        EXPECT_EQ(HeapFault(), "");
        Random random(SEED + 1);
        for (int i = 0; i < 20; i++) SessionAction(random);
        std::string last = SessionText();
        while (EditLog.rPtr > 0) ASSERT_EQ(LogUndo(), 1);
        EXPECT_EQ(SessionText(), states[0]);
        while (EditLog.rPtr < EditLog.rEofPtr) ASSERT_EQ(LogRedo(), 1);
        EXPECT_EQ(SessionText(), last);
        EXPECT_TRUE(Headless.programErrors.empty());
        end();
    }

    ScratchDirectory scratch;
    std::string path = scratch.file("document._KL");
    // The document behind each action, and where the log ends there.
    std::vector<std::string> states;
    std::vector<int32_t> ends;
};

TEST_F(CrashTest, AtEveryWriteTheActionsInTheFileComeBack) {
    ASSERT_GT(writesCounted, 20);
    for (Stop place : {Stop::Before, Stop::Midway, Stop::Behind}) {
        for (int write = 1; write <= writesCounted; write++) {
            stopPlace = place;
            writesLeft = write;
            pid_t child = runSession(StopAtWrite);
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
            expectRecovery();
        }
    }
}

TEST_F(CrashTest, AtAnyInstantTheActionsInTheFileComeBack) {
    Random random(3);
    for (int i = 0; i < 30; i++) {
        pid_t child = runSession(nullptr);
        ASSERT_GT(child, 0);
        usleep(random.below(40000));
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        expectRecovery();
    }
}

// Undone actions stay in the file, and what is recorded over them leaves the rest of them behind it. So what
// comes back need not be a document that was there, but it is a sound one.
TEST_F(CrashTest, WhateverUndoLeftInTheFileTheDocumentIsSound) {
    for (uint32_t seed = 0; seed < 40; seed++) {
        start();
        Random random(seed);
        for (int i = 0; i < 150; i++) {
            SessionAction(random);
            if (random.once(4)) LogUndo();
            if (random.once(12)) LogUndo();
            if (random.once(8)) LogRedo();
            if (random.once(20)) LogFlush();
        }
        LogFlush();
        LogCloseFile();
        FreshStore::TearDown(); // without the end of the program
        start();
        ASSERT_EQ(HeapFault(), "");
        EXPECT_EQ(FindReferenceCircle(), 0);
        std::string last = SessionText();
        while (EditLog.rPtr > 0) ASSERT_EQ(LogUndo(), 1);
        while (EditLog.rPtr < EditLog.rEofPtr) ASSERT_EQ(LogRedo(), 1);
        EXPECT_EQ(SessionText(), last);
        end();
    }
}

} // namespace
