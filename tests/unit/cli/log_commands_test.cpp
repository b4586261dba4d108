// log and recover: what stands in an edit log, and what it brings back.
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "run_cli.h"
#include "unit/support/fresh_store.h"
#include <algorithm>
#include <cstring>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

std::string Word(uint32_t word) {
    std::string bytes;
    for (int i = 0; i < 4; i++) bytes += static_cast<char>(word >> (8 * i));
    return bytes;
}

const std::string MARK = Word(ACTION_MARK);

// The entries of the file as the builders write them.
template <class Build>
std::string Entries(Build build) {
    InitEditLog();
    build();
    std::string bytes(EditLog.Buffer, EditLog.Buffer + EditLog.rPtr);
    InitEditLog();
    return bytes;
}

// An entry of these payload bytes, the frame apart.
std::string Entry(const std::string &payload) {
    auto length = static_cast<uint32_t>(payload.size() + 8);
    return Word(length) + payload + Word(length);
}

class LogCommands : public testing::Test {
protected:
    CliRun log(const std::string &bytes) { return RunCli({"log", directory.write("a._KL", bytes)}); }
    // A document of the two nodes A (id 1) and B (id 2), and its log.
    CliRun recover(const std::string &bytes, const std::string &text = "A = 0 10;\nB = 1 20;\n") {
        directory.write("a.wdl", text);
        directory.write("a._KL", bytes);
        return RunCli({"recover", directory.file("a.wdl"), "-o", directory.file("out.wdl")});
    }
    std::string out() { return ReadWholeFile(directory.file("out.wdl")); }
    bool outHolds(const std::string &text) { return out().find(text) != std::string::npos; }
    static std::string delay(uint16_t id, uint32_t before, uint32_t behind) {
        return Entries([&] { LogDelay(id, before, behind); });
    }
    std::string told(int actions, int bytes) {
        return directory.file("a.wdl") + ": " + std::to_string(actions) + " actions came back, " +
               std::to_string(bytes) + " bytes at the tail of the log were dropped\n";
    }
    ScratchDirectory directory;
};

// --- log ------------------------------------------------------------------------------------------

TEST_F(LogCommands, LogPrintsEveryKindWithItsFields) {
    CliRun run = log(Entries([] {
        LogDelay(1, 2, 4294967295);
        LogItemValue(1, 5, 6, 7);
        LogItemDuration(1, 5, 6, 7);
        LogItemRepeat(1, 5, 6, 65535);
        LogItemScale(1, 5, 6, 7);
        LogItemFormat(1, 5, 6, 7);
        LogPatternParams(1, {static_cast<uint32_t>(-3), 50, 1, 2, 3, 4},
                         {static_cast<uint32_t>(-5), 60, 6, 7, 8, 9});
        LogRename(1, "", "N\"\\\xE4\t");
        LogTiming(48, 37, 1, 2, 34464, 4);
        LogTransition(0, 1, 2, 4294967295, 3);
        LogTransition(1, 1, 2, 4, 3);
        LogReference(0, 1, 2, 3, 4, 5, 6, 7, 8, 9);
        LogReference(1, 1, 2, 3, 4, 5, 6, 7, 8, 9);
        LogPattern(0, 3999, 8, "D[7:0]");
        LogPattern(1, 3999, 0, "");
        LogRow(0, 1, 2);
        LogRow(1, 1, 255);
        LogMark();
    }));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(
        run.out,
        "0 RecDelay pattern=1 old=2 new=4294967295\n"
        "24 RecItemValue pattern=1 old=6 new=7 item=5\n"
        "48 RecItemDuration pattern=1 old=6 new=7 item=5\n"
        "72 RecItemRepeat pattern=1 old=6 new=65535 item=5\n"
        "92 RecItemScale pattern=1 old=6 new=7 item=5\n"
        "112 RecItemFormat pattern=1 old=6 new=7 item=5\n"
        "128 RecPatternParams pattern=1 oldPeriod=-3 newPeriod=-5 oldDuty=50 newDuty=60 oldStateTable=1 "
        "newStateTable=6 oldClock=2 newClock=7 oldFormat=3 newFormat=8 oldPinType=4 newPinType=9\n"
        "160 RecRename pattern=1 old=\"\" new=\"N\\\"\\\\\xC3\xA4\\t\"\n"
        "180 RecTiming oldUnit=48 oldClockMultiplier=1 newClockMultiplier=2 oldEndTime=34464 newEndTime=4 "
        "newUnit=37\n"
        "212 RecDeleteTransition pattern=1 value=4294967295 duration=3 item=2\n"
        "236 RecInsertTransition pattern=1 value=4 duration=3 item=2\n"
        "260 RecDeleteReference pattern=1 patternId=4 scale=5 repeat=6 item=3 sliceWidth=7 sliceOffset=8 "
        "forcedFormat=9 kind=2\n"
        "284 RecInsertReference pattern=1 patternId=4 scale=5 repeat=6 item=3 sliceWidth=7 sliceOffset=8 "
        "forcedFormat=9 kind=2\n"
        "308 RecDeletePattern pattern=3999 width=8 name=\"D[7:0]\"\n"
        "332 RecCreatePattern pattern=3999 width=0 name=\"\"\n"
        "348 RecRemoveRow pattern=1 row=2\n"
        "364 RecInsertRow pattern=1 row=255\n"
        "380 mark\n");
}

TEST_F(LogCommands, LogPrintsNothingForAnEmptyFile) {
    CliRun run = log("");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.err, "");
}

TEST_F(LogCommands, LogTakesMarksWhereverTheyStand) {
    EXPECT_EQ(log(MARK + MARK).out, "0 mark\n4 mark\n");
}

TEST_F(LogCommands, LogEndsAtADamagedEntryAndTellsItsOffset) {
    std::string good = delay(1, 0, 7) + MARK;
    std::string printed = "0 RecDelay pattern=1 old=0 new=7\n24 mark\n";
    const std::string damaged[] = {
        Word(0) + good,
        Word(4) + Word(4),
        Word(7) + std::string(20, '\0'),
        Word(9) + std::string(20, '\0'),
        Word(26) + std::string(40, '\0'),
        Word(26) + delay(1, 0, 7).substr(4, 16) + "xx" + Word(26),
        Word(0xFFFFFFFE) + good,
        Word(0xFFFFFFFC) + good,
        Word(24),
        delay(1, 0, 7).substr(0, 23),
        Word(24) + delay(1, 0, 7).substr(4, 16) + Word(20),
        "a",
        "abc",
        Word(8) + Word(8),
        Entry(std::string(16, '\0')),              // kind 0
        Entry("\x0C" + std::string(15, '\0')),     // kind 12
        Entry("\x0D" + std::string(15, '\0')),     // kind 13
        Entry("\x14" + std::string(15, '\0')),     // kind 20
        Entry("\x01\x01" + std::string(18, '\0')), // kind 257
        Entry("\x01" + std::string(7, '\0')),      // too short for its fields
        Entry("\x07" + std::string(19, '\0')),
        Entry("\x12" + std::string(3, '\0')),
        Entry(std::string("\x08\0\1\0", 4) + "name"),      // no NUL
        Entry(std::string("\x08\0\1\0abc\0", 8) + "name"), // no NUL behind the second name
        Entry(std::string("\x10\0\1\0\1\0", 6) + "na"),
    };
    for (const std::string &bytes : damaged) {
        CliRun run = log(good + bytes);
        EXPECT_EQ(run.status, 1) << bytes;
        EXPECT_EQ(run.out, printed) << bytes;
        EXPECT_EQ(run.err, directory.file("a._KL") + ": damaged entry at offset 28\n");
    }
}

TEST_F(LogCommands, LogDoesNotLookBehindTheLastField) {
    std::string longer = Entry(std::string("\x12\0\1\0\2\0", 6) + std::string(300000 - 6, '\xFF'));
    EXPECT_EQ(log(longer + MARK).out, "0 RecRemoveRow pattern=1 row=2\n300008 mark\n");
}

TEST_F(LogCommands, LogRefusesWhatCannotBeRead) {
    for (const std::string &name : {directory.file("none"), directory.path, std::string("")}) {
        CliRun run = RunCli({"log", name});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, name + ": cannot be read\n");
    }
}

// --- recover --------------------------------------------------------------------------------------

TEST_F(LogCommands, RecoverWritesTheDocumentWithItsEdits) {
    std::string bytes = Entries([] {
        LogItemDuration(1, 0, 10, 15);
        LogTransition(1, 1, 1, 1, 25);
        LogMark();
        LogRename(2, "B", "RENAMED");
        LogMark();
    });
    CliRun run = recover(bytes);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, told(2, 0));
    EXPECT_TRUE(outHolds("0 15 1 25")) << out();
    EXPECT_TRUE(outHolds("RENAMED")) << out();
    // What comes back is what the editor would save.
    fs::copy(directory.file("out.wdl"), directory.file("again.wdl"));
    EXPECT_EQ(RunCli({"format", directory.file("again.wdl")}).out, out());
}

TEST_F(LogCommands, RecoverChangesNeitherTheFileNorItsLog) {
    std::string bytes = delay(1, 0, 7) + MARK + delay(1, 7, 8);
    recover(bytes);
    EXPECT_EQ(ReadWholeFile(directory.file("a._KL")), bytes);
    EXPECT_EQ(ReadWholeFile(directory.file("a.wdl")), "A = 0 10;\nB = 1 20;\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory.path), fs::directory_iterator()), 3);
}

TEST_F(LogCommands, RecoverTakesAReadOnlyLog) {
    directory.write("a.wdl", "A = 0 10;\n");
    directory.write("a._KL", Entries([] { LogItemDuration(1, 0, 10, 15); }) + MARK);
    fs::permissions(directory.file("a._KL"), fs::perms::owner_read);
    CliRun run = RunCli({"recover", directory.file("a.wdl"), "-o", directory.file("out.wdl")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(outHolds("0 15"));
}

TEST_F(LogCommands, RecoverDropsAnActionWithoutItsMark) {
    CliRun run = recover(delay(1, 0, 7) + MARK + delay(1, 7, 8) + delay(1, 8, 9));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, told(1, 48));
}

TEST_F(LogCommands, RecoverTakesAnEmptyLog) {
    CliRun run = recover("");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, told(0, 0));
    EXPECT_EQ(out(), RunCli({"format", directory.file("a.wdl")}).out);
}

TEST_F(LogCommands, RecoverStopsBeforeADamagedEntry) {
    std::string whole = Entries([] { LogItemDuration(1, 0, 10, 15); }) + MARK;
    for (const std::string &damage : {Word(0), Word(4), std::string("abc"), Word(1000), Word(24) + MARK}) {
        CliRun run =
            recover(whole + Entries([] { LogItemDuration(1, 0, 15, 16); }) + damage + delay(1, 0, 7) + MARK);
        EXPECT_EQ(run.status, 0);
        EXPECT_TRUE(run.err.starts_with("Failed to read log file " + directory.file("a._KL") + "\n"));
        EXPECT_TRUE(run.err.ends_with(told(1, static_cast<int>(24 + damage.size() + 28)))) << run.err;
        EXPECT_TRUE(outHolds("0 15")) << out();
    }
}

TEST_F(LogCommands, RecoverKeepsWhatAnActionDidBeforeARecordThatDoesNotFit) {
    std::string whole = Entries([] { LogItemDuration(1, 0, 10, 15); }) + MARK;
    std::string begun = Entries([] { LogItemDuration(1, 0, 15, 16); });
    // Backward some of these would fit.
    const std::string misfits[] = {
        delay(99, 0, 1),
        Entries([] { LogPattern(1, 2, 1, "B"); }),
        Entries([] { LogItemRepeat(1, 0, 1, 2); }),
        Entries([] { LogReference(1, 1, 0, 0, 1, 1, 1, 0, 0, 0); }),
        Entries([] { LogRow(0, 1, 0); }),
        Entry("\x0C" + std::string(15, '\0')),
        Entry("\x01" + std::string(7, '\0')),
    };
    for (const std::string &misfit : misfits) {
        CliRun run = recover(whole + begun + misfit + MARK);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err,
                  "ApplicationExecuteLog - Invalid Command\n" + told(1, static_cast<int>(misfit.size() + 4)));
        EXPECT_TRUE(outHolds("0 16")) << out();
        EXPECT_TRUE(outHolds("1 20")) << out();
    }
}

TEST_F(LogCommands, RecoverKnowsTheRowsOfTheWaveList) {
    directory.write("a.kel", "Wave B\n");
    CliRun run = recover(Entries([] {
        LogTransition(0, 2, 0, 1, 20);
        LogPattern(0, 2, 1, "B");
        LogMark();
    }));
    EXPECT_TRUE(run.err.starts_with("ApplicationExecuteLog - Invalid Command\n")) << run.err;
    run = recover(Entries([] {
        LogRow(0, 2, 0);
        LogTransition(0, 2, 0, 1, 20);
        LogPattern(0, 2, 1, "B");
        LogMark();
    }));
    EXPECT_EQ(run.err, told(1, 0));
    EXPECT_FALSE(outHolds("B {")) << out();
}

TEST_F(LogCommands, RecoverDeletesReferencesThatNameNothing) {
    CliRun run = recover(Entries([] { LogReference(1, 1, 0, 1, 99, 1, 1, 0, 0, 0); }) + MARK);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(out(), RunCli({"format", directory.file("a.wdl")}).out);
}

TEST_F(LogCommands, RecoverNeedsALogAnOutputAndAGoodFile) {
    directory.write("a.wdl", "A = 0 10;\n");
    CliRun run = RunCli({"recover", directory.file("a.wdl"), "-o", directory.file("out.wdl")});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, directory.file("a._KL") + ": cannot be read\n");
    EXPECT_FALSE(fs::exists(directory.file("out.wdl")));
    directory.write("a._KL", "");
    EXPECT_EQ(RunCli({"recover", directory.file("a.wdl")}).status, 2);
    EXPECT_EQ(RunCli({"recover", directory.file("a.wdl"), "-o", directory.file("none/out.wdl")}).status, 2);
    directory.write("a.wdl", "A = 0 ;\n");
    EXPECT_EQ(RunCli({"recover", directory.file("a.wdl"), "-o", directory.file("out.wdl")}).status, 1);
    EXPECT_FALSE(fs::exists(directory.file("out.wdl")));
}

TEST_F(LogCommands, RecoverWritesOverNoneOfTheFilesThatItReads) {
    std::string document = "A = 0 10;\n", log = Entries([] { LogItemDuration(1, 0, 10, 15); }) + MARK;
    directory.write("a.wdl", document);
    directory.write("a._KL", log);
    fs::create_hard_link(directory.file("a.wdl"), directory.file("other.wdl"));
    fs::create_symlink("a.kel", directory.file("list"));
    for (const auto &[out, role] : {std::pair("a.wdl", "the document"),
                                    {"other.wdl", "the document"},
                                    {"a._KL", "the document's log"},
                                    {"a.kel", "the wave list"},
                                    {"list", "the wave list"}}) {
        CliRun run = RunCli({"recover", "a.wdl", "-o", out}, directory.path);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, std::string(out) + ": cannot be the output as well as " + role + "\n");
    }
    EXPECT_EQ(ReadWholeFile(directory.file("a.wdl")), document);
    EXPECT_EQ(ReadWholeFile(directory.file("a._KL")), log);
    EXPECT_FALSE(fs::exists(directory.file("a.kel")));
}

TEST_F(LogCommands, LogTakesNoOptionThatMeansNothing) {
    std::string log = directory.write("log", "");
    EXPECT_EQ(RunCli({"log", log}).status, 0);
    EXPECT_EQ(RunCli({"log", log, "--radix", "2"}).status, 2);
    EXPECT_EQ(RunCli({"log", log, "--simulator", log}).status, 2);
    EXPECT_EQ(RunCli({"log", "--help"}).out.find("--radix"), std::string::npos);
}

} // namespace
