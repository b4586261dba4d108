// Fails each call to the system that a command or a save reaches, one at a time, and each allocation of a
// command, and sees what is left: the input as it was, the output absent, old or whole, a status and a
// message, and no file that should not be there.
//
// Of the calls a sample is taken whose seed is printed; KELVANE_FAULT_SEED repeats it, and KELVANE_FAULTS=all
// takes every call.
#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "unit/support/traced_child.h"
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using Files = std::map<std::string, std::string>; // name and contents

constexpr unsigned SAMPLE = 4; // calls of each kind that are failed
constexpr unsigned MEMORY_SAMPLE = 12;

struct Kind {
    const char *name;
    Call call;
    int error;
};
constexpr Kind KINDS[] = {
    {"open", Call::Open, EMFILE},      {"read", Call::Read, EIO},     {"write", Call::Write, ENOSPC},
    {"flush", Call::Flush, EIO},       {"rename", Call::Rename, EIO}, {"seek", Call::Seek, EIO},
    {"truncate", Call::Truncate, EIO},
};

unsigned Seed() {
    static const unsigned seed = [] {
        const char *given = getenv("KELVANE_FAULT_SEED");
        unsigned chosen = given ? static_cast<unsigned>(strtoul(given, nullptr, 10)) : std::random_device()();
        printf("the sample's seed: KELVANE_FAULT_SEED=%u\n", chosen);
        return chosen;
    }();
    return seed;
}

// Numbers from 1 to `count`.
std::set<unsigned> Sample(unsigned count, unsigned size) {
    const char *which = getenv("KELVANE_FAULTS");
    bool all = which && strcmp(which, "all") == 0;
    static std::mt19937 random(Seed());
    std::set<unsigned> numbers;
    while (numbers.size() < (all ? count : std::min(count, size)))
        numbers.insert(all ? static_cast<unsigned>(numbers.size()) + 1 : 1 + random() % count);
    return numbers;
}

Files FilesIn(const std::string &directory) {
    Files files;
    for (const auto &entry : fs::directory_iterator(directory)) {
        if (entry.is_regular_file()) files[entry.path().filename()] = ReadWholeFile(entry.path());
    }
    return files;
}

const std::string DOCUMENT = "%AUTOASSIGN = 0;\n%ENDTIME = 300;\n$p = 0 5 1 5;\nw = 0 100 1 100 0 50;\n"
                             "v = 1 20 $p #3 0 10;\nB[3:0] = 5 10 a 20 (1 5 2 5)*2#3;\nc = $p + $p;\n";
const std::string ROWS = "Wave w\nWave v\nWave B[3:0]\nWave $p\nWave c\n";
// Enough for a few flushes, and what goes through the clipboard.
const std::string SCRIPT = [] {
    std::string text = "scale 4\nleft 0\nselect w 150 150\ncopy\ncut\nselect v 5 5\npaste\nundo\nredo\n";
    for (int i = 0; i < 30; i++) text += "new n" + std::to_string(i) + "\n";
    return text + "undo\nselect w 20 60\ncut\nundo\nstatus\n";
}();

struct Scenario {
    const char *name;
    Words arguments;     // of kelvane-cli; "@" in front of the name of a file stands for its directory
    std::string out;     // the file that is written, "" for standard output
    std::string oldOut;  // what it held before; "" for none
    std::string end;     // what a whole output ends with, where it is not the same each time
    bool hasLog = false; // an edit log is left, too
};

// An edit log as a crash would leave it beside the document.
class LogMaker : public FreshStore {
public:
    void TestBody() override {}
    std::string make() {
        SetUp();
        ScratchDirectory directory;
        snprintf(DocumentPath, sizeof DocumentPath, "%s", directory.write("a.wdl", DOCUMENT).c_str());
        PatternStoreFree();
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        LoadDocument(DocumentPath);
        LogReset(1);
        for (int i = 0; i < 60; i++) {
            InsertTransition(FindPattern("w"), 0, 1, 7);
            LogEndAction();
        }
        LogFlush();
        LogCloseFile();
        std::string bytes = ReadWholeFile(directory.file("a._KL"));
        LogDeleteFile();
        TearDown();
        return bytes;
    }
};

class Faults : public testing::TestWithParam<Scenario> {
protected:
    void SetUp() override {
        fs::create_directory(scratch.file("work"));
        fs::create_directory(scratch.file("tmp"));
        log = LogMaker().make();
        ASSERT_GT(log.size(), 1000U);
    }

    void prepare() {
        for (const char *directory : {"work", "tmp"}) {
            for (const auto &entry : fs::directory_iterator(scratch.file(directory)))
                fs::remove_all(entry.path());
        }
        scratch.write("work/a.wdl", DOCUMENT);
        scratch.write("work/a.kel", ROWS);
        scratch.write("work/a._KL", log);
        scratch.write("work/script", SCRIPT);
        if (!GetParam().oldOut.empty()) scratch.write("work/" + GetParam().out, GetParam().oldOut);
    }

    int openOutput(const char *name) const {
        return open(scratch.file(name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    }

    // In the child: becomes kelvane-cli.
    void becomeProgram(int out, int error) {
        Words words = {KELVANE_CLI};
        for (const std::string &word : GetParam().arguments)
            words.push_back(word.starts_with("@") ? scratch.file("work/" + word.substr(1)) : word);
        std::vector<char *> arguments;
        for (std::string &word : words) arguments.push_back(word.data());
        arguments.push_back(nullptr);
        setenv("TMPDIR", scratch.file("tmp").c_str(), 1);
        dup2(out, 1);
        dup2(error, 2);
        execv(KELVANE_CLI, arguments.data());
        _exit(99);
    }

    TracedRun run(const TracedFault &fault) {
        prepare();
        int out = openOutput("stdout"), error = openOutput("stderr");
        TracedRun result = RunTraced(
            [&] {
                PrepareTracedProgram();
                becomeProgram(out, error);
            },
            fault);
        close(out);
        close(error);
        return result;
    }

    // The exit status, or minus a signal.
    int runWith(const char *variable, const std::string &value) {
        prepare();
        int out = openOutput("stdout"), error = openOutput("stderr");
        pid_t child = fork();
        if (child == 0) {
            setenv("LD_PRELOAD", FAILING_MEMORY, 1);
            setenv("ASAN_OPTIONS", "verify_asan_link_order=0:alloc_dealloc_mismatch=0:detect_leaks=0", 1);
            setenv(variable, value.c_str(), 1);
            becomeProgram(out, error);
        }
        close(out);
        close(error);
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    std::string said() const { return ReadWholeFile(scratch.file("stderr")); }
    std::string output() const {
        return ReadWholeFile(GetParam().out.empty() ? scratch.file("stdout")
                                                    : scratch.file("work/" + GetParam().out));
    }
    std::string oldOutput() const { return GetParam().out == "a.wdl" ? DOCUMENT : GetParam().oldOut; }
    bool isWhole(const std::string &text) const {
        return GetParam().end.empty() ? text == whole : text.ends_with(GetParam().end);
    }

    void expectSound(int status) {
        SCOPED_TRACE("status " + std::to_string(status) + ", said: " + said());
        EXPECT_TRUE(status == 0 || status == 2);
        EXPECT_EQ(said().find("Sanitizer"), std::string::npos);
        std::string written = output();
        if (status == 0) {
            EXPECT_TRUE(isWhole(written)) << written;
        } else {
            EXPECT_NE(said(), "");
            EXPECT_TRUE(GetParam().out.empty() || written == oldOutput() || isWhole(written)) << written;
        }
        Files files = FilesIn(scratch.file("work"));
        if (GetParam().out != "a.wdl") {
            EXPECT_EQ(files["a.wdl"], DOCUMENT);
        }
        EXPECT_EQ(files["a.kel"], ROWS);
        EXPECT_EQ(files["a._KL"], log);
        EXPECT_EQ(files["script"], SCRIPT);
        for (const char *name : {"a.wdl", "a.kel", "a._KL", "script"}) files.erase(name);
        files.erase(GetParam().out);
        if (GetParam().hasLog) files.erase("log");
        EXPECT_TRUE(files.empty()) << files.begin()->first << " is left";
        files = FilesIn(scratch.file("tmp"));
        EXPECT_TRUE(files.empty()) << files.begin()->first << " is left";
    }

    ScratchDirectory scratch;
    std::string log;   // beside the document
    std::string whole; // what the output holds when nothing fails
};

TEST_P(Faults, EachCallThatFails) {
    if (!CanTraceCalls()) GTEST_SKIP() << "no process can be traced here";
    for (const Kind &kind : KINDS) {
        TracedFault fault = {.directory = scratch.path, .call = kind.call, .error = kind.error};
        TracedRun counted = run(fault);
        ASSERT_EQ(counted.status, 0) << said();
        whole = output();
        ASSERT_FALSE(whole.empty());
        for (unsigned number : Sample(counted.calls, SAMPLE)) {
            for (bool goesOn : {false, true}) {
                SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(number) + " of " +
                             std::to_string(counted.calls) + (goesOn ? " and all behind it" : ""));
                fault.number = number;
                fault.goesOn = goesOn;
                TracedRun failed = run(fault);
                // Where nothing can be written any more, nothing can be said.
                if (goesOn && kind.call == Call::Write && said().empty()) scratch.write("stderr", "nothing");
                expectSound(failed.status);
            }
        }
    }
}

TEST_P(Faults, EachAllocationThatFails) {
    ASSERT_EQ(runWith("COUNT_ALLOCATIONS", scratch.file("count")), 0) << said();
    whole = output();
    auto count = static_cast<unsigned>(strtoul(ReadWholeFile(scratch.file("count")).c_str(), nullptr, 10));
    ASSERT_GT(count, 100U);
    for (unsigned number : Sample(count, MEMORY_SAMPLE)) {
        SCOPED_TRACE("allocation " + std::to_string(number) + " of " + std::to_string(count));
        expectSound(runWith("FAIL_ALLOCATION", std::to_string(number)));
    }
}

const Scenario SCENARIOS[] = {
    {"FormatToStandardOutput", {"format", "@a.wdl"}, "", "", ""},
    {"FormatToANewFile", {"format", "@a.wdl", "-o", "@out.wdl"}, "out.wdl", "", ""},
    {"FormatOverAFile", {"format", "@a.wdl", "-o", "@out.wdl"}, "out.wdl", "old text\n", ""},
    {"FormatInPlace", {"format", "@a.wdl", "-o", "@a.wdl"}, "a.wdl", "", ""},
    {"Edit", {"edit", "@a.wdl", "@script", "-o", "@out.wdl", "--log", "@log"}, "out.wdl", "old\n", "", true},
    {"EditWithATemporaryLog", {"edit", "@a.wdl", "@script", "-o", "@out.wdl"}, "out.wdl", "", ""},
    {"Recover", {"recover", "@a.wdl", "-o", "@out.wdl"}, "out.wdl", "old\n", ""},
    {"RenderSvg", {"render", "@a.wdl", "-o", "@a.svg"}, "a.svg", "old\n", ""},
    {"RenderPng", {"render", "@a.wdl", "-o", "@a.png"}, "a.png", "old\n", "IEND\xAE\x42\x60\x82"},
    {"RenderPdf", {"render", "@a.wdl", "-o", "@a.pdf"}, "a.pdf", "", "%%EOF\n"},
};
INSTANTIATE_TEST_SUITE_P(Commands, Faults, testing::ValuesIn(SCENARIOS),
                         [](const auto &info) { return std::string(info.param.name); });

// --- a save by the editor -----------------------------------------------------------------------------

class SaveFaults : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        PatternStoreFree();
        fs::create_directory(scratch.file("work"));
        fs::create_directory(scratch.file("tmp"));
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        setenv("TMPDIR", scratch.file("tmp").c_str(), 1);
    }
    void TearDown() override {
        if (former)
            setenv("TMPDIR", former->c_str(), 1);
        else
            unsetenv("TMPDIR");
        FreshStore::TearDown();
    }

    // Ends with 0 when the save says that it worked, with NO_LOG, OLD_LIST or both when that was all but the
    // new log or the wave list, with 2 when it says that it did not, and with more for what is wrong.
    static constexpr int NO_LOG = 1, OLD_LIST = 4;
    TracedRun save(const TracedFault &fault) {
        for (const auto &entry : fs::directory_iterator(scratch.file("work"))) fs::remove_all(entry.path());
        scratch.write("work/a.wdl", DOCUMENT);
        scratch.write("work/a.kel", ROWS);
        return RunTraced([this] { editAndSave(); }, fault);
    }
    [[noreturn]] void editAndSave() {
        snprintf(DocumentPath, sizeof DocumentPath, "%s", scratch.file("work/a.wdl").c_str());
        if (!LoadDocument(DocumentPath)) _exit(90);
        DisplayOpen = 1;
        LogReset(1);
        for (int i = 0; i < 60; i++) {
            InsertTransition(FindPattern("w"), 0, 1, 7);
            LogEndAction();
        }
        HideRow(0);
        LogEndAction();
        LogFlush();
        int32_t position = EditLog.rPtr;
        std::string log = ReadWholeFile(scratch.file("work/a._KL"));
        MarkTracedCalls();
        int saved = SaveDocument(false);
        MarkTracedCalls();
        const auto &errors = Headless.userErrors;
        bool told =
            errors.size() == 1 && errors[0].starts_with("Unable to write file " + scratch.file("work/a."));
        bool kept = EditLog.rPtr == position && Headless.titles.empty() && Headless.strips.empty() &&
                    ReadWholeFile(scratch.file("work/a._KL")) == log;
        if (!saved) _exit(!told ? 93 : !kept ? 94 : 2);
        // Where the document is in its place, the wave list and the new log may still fail, which is told.
        Words rest = errors;
        bool noList =
            !rest.empty() && rest[0].starts_with("Unable to write file " + scratch.file("work/a.kel"));
        if (noList) rest.erase(rest.begin());
        bool noLog = rest == Words{"Failed to create log file " + scratch.file("work/a._KL")};
        if (!rest.empty() && !noLog) _exit(91);
        _exit(EditLog.rPtr != 0 ? 92 : (noLog ? NO_LOG : 0) + (noList ? OLD_LIST : 0));
    }

    ScratchDirectory scratch;
    std::optional<std::string> former =
        getenv("TMPDIR") ? std::optional<std::string>(getenv("TMPDIR")) : std::nullopt;
};

TEST_F(SaveFaults, EachCallThatFails) {
    if (!CanTraceCalls()) GTEST_SKIP() << "no process can be traced here";
    for (const Kind &kind : KINDS) {
        TracedFault fault = {.directory = "", .call = kind.call, .error = kind.error};
        TracedRun counted = save(fault);
        ASSERT_EQ(counted.status, 0);
        Files whole = FilesIn(scratch.file("work"));
        for (unsigned number : Sample(counted.calls, SAMPLE)) {
            for (bool goesOn : {false, true}) {
                SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(number) + " of " +
                             std::to_string(counted.calls) + (goesOn ? " and all behind it" : ""));
                fault.number = number;
                fault.goesOn = goesOn;
                TracedRun failed = save(fault);
                int status = failed.status;
                EXPECT_TRUE(status == 2 || (status & ~(NO_LOG | OLD_LIST)) == 0) << status;
                Files files = FilesIn(scratch.file("work"));
                if (status != 2) {
                    Files expected = whole;
                    if (status & NO_LOG) files["a._KL"] = "";
                    if (status & OLD_LIST) expected["a.kel"] = ROWS;
                    EXPECT_EQ(files, expected);
                } else {
                    EXPECT_EQ(files["a.wdl"], DOCUMENT);
                    EXPECT_EQ(files["a.kel"], ROWS);
                    EXPECT_NE(files["a._KL"], "");
                    EXPECT_EQ(files.size(), 3U);
                }
                EXPECT_TRUE(FilesIn(scratch.file("tmp")).empty());
            }
        }
    }
}

} // namespace
