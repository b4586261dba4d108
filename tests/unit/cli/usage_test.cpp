// What all commands have in common: help, version, options, and what goes wrong.
#include "run_cli.h"
#include "unit/support/fresh_store.h"
#include <algorithm>
#include <filesystem>

namespace {

const std::vector<std::string> COMMANDS = {"check",   "format", "dump", "segments", "value",
                                           "listing", "render", "log",  "recover",  "edit"};

// A run that is refused: status, nothing on standard output, one line on standard error.
void ExpectRefused(const CliRun &run, int status) {
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
}

TEST(Usage, TellsTheVersionAlsoPerCommand) {
    CliRun run = RunCli({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.starts_with("kelvane-cli ")) << run.out;
    EXPECT_EQ(run.err, "");
    for (const std::string &command : COMMANDS) EXPECT_EQ(RunCli({command, "--version"}).out, run.out);
}

TEST(Usage, HelpsAlsoPerCommand) {
    CliRun run = RunCli({"--help"});
    EXPECT_EQ(run.status, 0);
    for (const std::string &command : COMMANDS) {
        EXPECT_NE(run.out.find("\n  " + command), std::string::npos) << command;
        CliRun help = RunCli({command, "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_NE(help.out.find("kelvane-cli " + command), std::string::npos) << help.out;
        // A log is read without a document.
        EXPECT_EQ(help.out.find("--simulator") != std::string::npos, command != "log") << command;
    }
}

TEST(Usage, RefusesWhatItDoesNotKnow) {
    std::string clock = Example("clock.wdl");
    ExpectRefused(RunCli({}), 2);
    EXPECT_EQ(RunCli({"bogus", clock}).err, "kelvane-cli: unknown command \"bogus\"\n");
    ExpectRefused(RunCli({"bogus", clock}), 2);
    for (const std::string &command : COMMANDS) {
        ExpectRefused(RunCli({command}), 2);
        ExpectRefused(RunCli({command, clock, "CLK", "5", "--bogus"}), 2);
    }
    ExpectRefused(RunCli({"dump", clock, clock}), 2);
    ExpectRefused(RunCli({"value", clock, "CLK", "5", "6"}), 2);
    ExpectRefused(RunCli({"value", clock, "CLK"}), 2);
    ExpectRefused(RunCli({"render", clock}), 2);
    ExpectRefused(RunCli({"format", clock, "-o", ""}), 2);
}

TEST(Usage, TakesTimesAsPlainDecimalCounts) {
    std::string clock = Example("clock.wdl");
    for (const char *time :
         {"-1", "+1", "1.5", "0x10", "5ns", "", " 5", "4294967296", "99999999999999999999"}) {
        ExpectRefused(RunCli({"value", clock, "CLK", "--", time}), 2);
        ExpectRefused(RunCli({"segments", clock, "CLK", std::string("--to=") + time}), 2);
    }
    EXPECT_EQ(RunCli({"value", clock, "CLK", "010"}).out, "1\n");
    EXPECT_EQ(RunCli({"value", clock, "CLK", "4294967295"}).status, 0);
}

TEST(Usage, TakesOptionsAndArgumentsInAnyOrder) {
    std::string clock = Example("clock.wdl");
    std::string expected = "20 40 20 1 5\n";
    EXPECT_EQ(RunCli({"segments", clock, "CLKDIV2", "--from", "25", "--to", "30"}).out, expected);
    EXPECT_EQ(RunCli({"segments", "--from", "25", "--to", "30", clock, "CLKDIV2"}).out, expected);
    EXPECT_EQ(RunCli({"segments", "--to=30", clock, "--from=25", "--radix", "2", "CLKDIV2"}).out, expected);
}

TEST(Usage, TakesOnlyTheRadixesOfTheDisplay) {
    std::string clock = Example("clock.wdl");
    for (const char *radix : {"2", "8", "10", "16"})
        EXPECT_EQ(RunCli({"check", clock, "--radix", radix}).status, 0);
    for (const char *radix : {"1", "3", "x", "-2", ""})
        ExpectRefused(RunCli({"check", clock, "--radix", radix}), 2);
}

TEST(Usage, TellsAPatternThatIsNotThere) {
    std::string clock = Example("clock.wdl");
    for (const std::vector<std::string> &arguments : {std::vector<std::string>{"segments", clock, "NOPE"},
                                                      {"value", clock, "NOPE", "5"},
                                                      {"listing", clock, "NOPE"}}) {
        CliRun run = RunCli(arguments);
        ExpectRefused(run, 1);
        EXPECT_EQ(run.err, clock + ": no pattern \"NOPE\"\n");
    }
    ExpectRefused(RunCli({"listing", clock, ""}), 1);
}

TEST(Usage, LooksNamesUpAsTheyAreTypedButForCase) {
    EXPECT_EQ(RunCli({"value", Example("clock.wdl"), "count[3:0]", "200"}).out, "9\n");
    EXPECT_EQ(RunCli({"value", Example("clock.wdl"), "COUNT[3-0]", "200"}).status, 1);
}

TEST(Usage, TakesAPatternWithTheNameOfACommand) {
    ScratchDirectory directory;
    std::string file = directory.write("a.wdl", "check = 1 5;\nvalue = 0 5;\n");
    EXPECT_EQ(RunCli({"value", file, "check", "2"}).out, "1\n");
    EXPECT_EQ(RunCli({"value", file, "value", "2"}).out, "0\n");
}

class Loading : public testing::Test {
protected:
    ScratchDirectory directory;
};

TEST_F(Loading, RefusesWhatCannotBeRead) {
    std::string missing = directory.file("none.wdl");
    std::string locked = directory.write("locked.wdl", "a = 1 5;\n");
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    for (const std::string &file :
         {missing, locked, directory.path, std::string(""), std::string(5000, 'x')}) {
        for (const std::string &command : COMMANDS) {
            std::vector<std::string> arguments = {command, file};
            if (command == "segments" || command == "value" || command == "listing") arguments.push_back("a");
            if (command == "value") arguments.push_back("1");
            if (command == "render" || command == "recover") {
                arguments.insert(arguments.end(), {"-o", directory.file("x.png")});
            }
            ExpectRefused(RunCli(arguments), 2);
        }
    }
    EXPECT_EQ(RunCli({"check", missing}).err, missing + ": cannot be read\n");
}

TEST_F(Loading, TakesAReadOnlyFile) {
    std::string file = directory.write("a.wdl", "a = 1 5;\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    EXPECT_EQ(RunCli({"value", file, "a", "2"}).out, "1\n");
}

TEST_F(Loading, TakesAnEmptyFile) {
    std::string file = directory.write("a.wdl", "");
    EXPECT_EQ(RunCli({"check", file}).out, file + ": 0 nodes, 0 patterns, 0 references, ends at 100000\n");
}

TEST_F(Loading, PutsFileLineAndColumnInFrontOfASyntaxError) {
    std::string file = directory.write("a.wdl", "a = 1 5;\nb = 1 ;\nc = 1 5;\n");
    CliRun run = RunCli({"dump", file});
    ExpectRefused(run, 1);
    EXPECT_EQ(run.err, file + ":2:7: Missing duration\n");
    // The name stands as it was given.
    EXPECT_EQ(RunCli({"check", "./a.wdl"}, directory.path).err, "./a.wdl:2:7: Missing duration\n");
}

TEST_F(Loading, ReportsAnErrorOfTheFirstColumn) {
    std::string file = directory.write("a.wdl", "=;\n");
    EXPECT_EQ(RunCli({"check", file}).err, file + ":1:1: Missing pattern name\n");
}

TEST_F(Loading, WritesNoFileOfItsOwn) {
    directory.write("bad.wdl", "b = 1 ;\n");
    directory.write("good.wdl", "b = 1 5;\n");
    RunCli({"check", "bad.wdl", "good.wdl"}, directory.path);
    RunCli({"format", "good.wdl"}, directory.path);
    int files = 0;
    for (auto &entry : std::filesystem::directory_iterator(directory.path)) files += entry.is_regular_file();
    EXPECT_EQ(files, 2);
}

TEST_F(Loading, TakesAFileOfAnyExtension) {
    std::string file = directory.write("a.txt", "a = 1 5;\n");
    EXPECT_EQ(RunCli({"value", file, "a", "2"}).out, "1\n");
}

TEST_F(Loading, TakesStateTablesAndHierarchyCharacterFromTheSimulatorsFile) {
    std::string file = directory.write("a.wdl", "x.y { In Tri None 0 1 50 } = 1 5;\n");
    std::string ini = directory.write(
        "sim.ini", "[SimControls]\nHierChar=/\n[StateTable]\nTri\n0 0 4 L Low L\n1 1 4 H High H\n");
    EXPECT_EQ(RunCli({"listing", file, "x.y"}).out, "x.y - Bit\n  Data - 1 - 5\n");
    EXPECT_EQ(RunCli({"listing", "--simulator", ini, file, "x/y"}).out, "x/y - Bit\n  Data - H - 5\n");
    EXPECT_EQ(RunCli({"listing", "--simulator", "sim.ini", "a.wdl", "x/y"}, directory.path).status, 0);
    CliRun run = RunCli({"listing", "--simulator", directory.file("none.ini"), file, "x/y"});
    ExpectRefused(run, 2);
    EXPECT_EQ(run.err, directory.file("none.ini") + ": cannot be read\n");
}

TEST_F(Loading, TakesNothingFromOneFileToTheNext) {
    std::string first = directory.write("a.wdl", "%ENDTIME = 7;\n$p = 0 5;\na = $p;\n");
    std::string second = directory.write("b.wdl", "b = 1 5;\n");
    EXPECT_EQ(RunCli({"check", first, second}).out,
              first + ": 1 nodes, 1 patterns, 0 references, ends at 7\n" + second +
                  ": 1 nodes, 0 patterns, 0 references, ends at 100000\n");
}

} // namespace
