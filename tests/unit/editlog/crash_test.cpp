// The engine is stopped dead in the midst of a session, and started again.
#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "platform/faults.h"
#include "platform/files_native.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "unit/support/log_session.h"
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iterator>
#include <set>
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
            if (EditLog.rPtr != ends.back()) { // something has changed
                states.push_back(SessionText());
                ends.push_back(EditLog.rPtr);
            }
            stateBehind.push_back(states.size() - 1);
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
    std::vector<size_t> stateBehind; // of each action, the changed ones and the others
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

volatile int sink;

// Runs out of stack long before it ends.
int Overflow(int depth) {
    if (depth < 0) return 0;
    volatile char room[1000];
    room[0] = static_cast<char>(depth);
    sink = Overflow(depth + 1) + room[0];
    return sink;
}

// What was finished is there again, whatever the program dies of, and wherever its window stands.
TEST_F(CrashTest, AProgramThatFaultsLosesNothingThatWasFinished) {
    constexpr void (*faults[])() = {
        [] { *reinterpret_cast<volatile int *>(8) = 1; },
        [] { abort(); },
        [] { std::terminate(); },
        [] { sink = Overflow(0); },
    };
    Random choice(5);
    for (size_t round = 0; round < 40; round++) {
        uint32_t actions = 1 + choice.below(ACTIONS);
        pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            start();
            for (int fault : {SIGSEGV, SIGBUS, SIGABRT}) signal(fault, SIG_DFL);
            CallOnFault(LogWriteFinished);
            Random random(SEED);
            for (uint32_t i = 0; i < actions; i++) SessionAction(random);
            // In the midst of the next one.
            SetPatternDelay(PatternFromId(1), PatternFromId(1)->delay + 1);
            faults[round % std::size(faults)]();
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it dies as it would have: " << status;
        start();
        EXPECT_EQ(SessionText(), states[stateBehind[actions - 1]]);
        end();
    }
}

size_t WriteHalf(size_t size) {
    return size / 2;
}

// Undone actions stay in the file until something is recorded in their place, and a flush may fail.
TEST_F(CrashTest, WhateverUndoAndTheDiskLeftInTheFileTheDocumentHasBeenThere) {
    for (uint32_t seed = 0; seed < 60; seed++) {
        start();
        Random random(seed);
        std::set<std::string> been = {SessionText()};
        bool diskFails = seed % 3 == 0;
        for (int i = 0; i < 150; i++) {
            auto step = [&](auto change) {
                change();
                FinishReplay();
                been.insert(SessionText());
            };
            step([&] { SessionAction(random); });
            if (random.once(4)) step(LogUndo);
            if (random.once(12)) step(LogUndo);
            if (random.once(8)) step(LogRedo);
            if (diskFails) WriteLimitHook = random.once(10) ? WriteHalf : nullptr;
            if (random.once(20)) LogFlush();
            // At any time the program may be gone.
            if (random.once(200)) break;
        }
        WriteLimitHook = nullptr;
        if (random.once(2)) LogFlush();
        LogCloseFile();
        FreshStore::TearDown(); // without the end of the program
        start();
        ASSERT_EQ(HeapFault(), "");
        EXPECT_TRUE(been.contains(SessionText())) << "seed " << seed;
        EXPECT_EQ(FindReferenceCircle(), 0);
        std::string last = SessionText();
        while (EditLog.rPtr > 0) ASSERT_EQ(LogUndo(), 1);
        while (EditLog.rPtr < EditLog.rEofPtr) ASSERT_EQ(LogRedo(), 1);
        EXPECT_EQ(SessionText(), last);
        end();
    }
}

} // namespace
