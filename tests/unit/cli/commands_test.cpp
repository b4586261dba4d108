// What each command prints and writes.
#include "run_cli.h"
#include "unit/support/fresh_store.h"
#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

class Commands : public testing::Test {
protected:
    std::string file(const std::string &text) { return directory.write("a.wdl", text); }
    ScratchDirectory directory;
};

TEST_F(Commands, CheckCountsNodesPatternsAndReferences) {
    std::string path =
        file("%ENDTIME = 200;\n$p = 0 5 1 5;\nA[3:0] = 1 5 (2 5) $p;\nB = $p;\nA[1];\nA[3:2];\n");
    CliRun run = RunCli({"check", path});
    EXPECT_EQ(run.out, path + ": 2 nodes, 1 patterns, 2 references, ends at 200\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST_F(Commands, CheckGoesOnBehindABadFileAndEndsWithTheWorstStatus) {
    std::string good = directory.write("good.wdl", "a = 1 5;\n");
    std::string bad = directory.write("bad.wdl", "a = 1 ;\n");
    std::string none = directory.file("none.wdl");
    std::string summary = good + ": 1 nodes, 0 patterns, 0 references, ends at 100000\n";
    CliRun run = RunCli({"check", bad, good, good});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, summary + summary);
    run = RunCli({"check", none, bad, good});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, summary);
    EXPECT_EQ(run.err, none + ": cannot be read\n" + bad + ":1:7: Missing duration\n");
    EXPECT_EQ(RunCli({"check", good, bad}).status, 1);
}

TEST_F(Commands, CheckWarnsOfWhatTheReaderPassesOver) {
    std::string path = file("%DECIMALS = 2\nA = 1 5;\nB { In Default } = 1 5;\n");
    CliRun run = RunCli({"check", path});
    EXPECT_EQ(run.out, path + ": 1 nodes, 0 patterns, 0 references, ends at 100000\n");
    EXPECT_EQ(run.err, path + ":1:1: warning: directive without its end, passed over: \"A = 1 5\"\n" + path +
                           ":3:5: warning: unknown property word \"In\"\n" + path +
                           ":3:8: warning: unknown property word \"Default\"\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(RunCli({"format", path}).err, "");
}

TEST_F(Commands, AFileThatIsNoTextIsRefusedAsSuch) {
    std::string path = file(std::string("\x7f"
                                        "ELF\0\n",
                                        6));
    CliRun run = RunCli({"check", path});
    EXPECT_EQ(run.err, path + ": not a text file\n");
    EXPECT_EQ(run.status, 1);
}

TEST_F(Commands, CheckCountsASubPatternThatLooksAtBitsAsBoth) {
    std::string path = file("$D[1:0] = 1 5;\n$D[1];\nD[1:0];\nD[0];\n");
    EXPECT_EQ(RunCli({"check", path}).out, path + ": 1 nodes, 2 patterns, 2 references, ends at 100000\n");
}

const std::string FORMATTED = "%MASTERCLOCKMULT = 1;\n%SMALLESTUNIT    = 12;\n%AUTOASSIGN      = 1;\n"
                              "%DECIMALS        = 0;\n%ENDTIME         = 100000;\n"
                              "$p = 0 5 1 5;\nA { Z Test Default None 0 1 50 } = 1 10(0 5)#2  $p *3 ## ;\n";
const std::string UNFORMATTED = "$p = 0 5,1 5;\nA { Default } = 1 10 ( 0 5 ) #2\n $p *3 ##;\n";

TEST_F(Commands, FormatWritesAsTheEditorSaves) {
    CliRun run = RunCli({"format", file(UNFORMATTED)});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, FORMATTED);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(ReadWholeFile(directory.file("a.wdl")), UNFORMATTED);
}

TEST_F(Commands, FormatWritesToAFile) {
    CliRun run = RunCli({"format", file(UNFORMATTED), "-o", directory.file("out.wdl")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(ReadWholeFile(directory.file("out.wdl")), FORMATTED);
    EXPECT_FALSE(fs::exists(directory.file("out.kel")));
}

TEST_F(Commands, FormatReplacesTheFileItselfAndKeepsItsPermissions) {
    std::string path = file(UNFORMATTED);
    auto mode =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::group_write;
    fs::permissions(path, mode);
    EXPECT_EQ(RunCli({"format", path, "-o", path}).status, 0);
    EXPECT_EQ(ReadWholeFile(path), FORMATTED);
    EXPECT_EQ(fs::status(path).permissions(), mode);
    EXPECT_EQ(std::distance(fs::directory_iterator(directory.path), fs::directory_iterator()), 1);
}

TEST_F(Commands, FormatFollowsALink) {
    std::string path = file(UNFORMATTED);
    fs::create_symlink("a.wdl", directory.file("link.wdl"));
    EXPECT_EQ(RunCli({"format", path, "-o", directory.file("link.wdl")}).status, 0);
    EXPECT_TRUE(fs::is_symlink(directory.file("link.wdl")));
    EXPECT_EQ(ReadWholeFile(path), FORMATTED);
}

TEST_F(Commands, FormatLeavesAFileAloneThatItMayNotWrite) {
    std::string path = file(UNFORMATTED);
    fs::permissions(path, fs::perms::owner_read);
    CliRun run = RunCli({"format", path, "-o", path});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, path + ": cannot be written: Permission denied\n");
    EXPECT_EQ(ReadWholeFile(path), UNFORMATTED);
    EXPECT_EQ(RunCli({"format", path, "-o", directory.path}).status, 2);
    EXPECT_EQ(RunCli({"format", path, "-o", directory.file("none/x.wdl")}).status, 2);
}

TEST_F(Commands, FormatLeavesTheOutputAloneWhenTheFileHasErrors) {
    std::string out = directory.write("out.wdl", "old\n");
    EXPECT_EQ(RunCli({"format", file("a = 1 ;\n"), "-o", out}).status, 1);
    EXPECT_EQ(ReadWholeFile(out), "old\n");
}

TEST_F(Commands, FormatTellsAFullDevice) {
    CliRun run = RunCli({"format", file(UNFORMATTED), "-o", "/dev/full"});
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_EQ(RunCli({"format", file(UNFORMATTED), "-o", "/dev/null"}).status, 0);
}

TEST_F(Commands, DumpPrintsTheDocumentInOrder) {
    std::string path = file("%ENDTIME = 200;\n%AUTOASSIGN = 0;\n$p = 0 5 1 5;\n"
                            "A[3:0] { B In Default RZ 3 4 25 } = a 5 $p *2 #3 @RZ ;\n"); // refused below
    EXPECT_EQ(RunCli({"dump", path}).status, 1);
    path = file("%ENDTIME = 200;\n%AUTOASSIGN = 0;\n$p = 0 5 1 5;\nA[3:0] { B In Default RZ 3 4 25 } = a 5 "
                "$p *2 #3;\n"
                "C { Default } = $p @R1 ;\nA[2:1];\n");
    directory.write("a.kel", "Wave C\nWave A[2:1]\n");
    CliRun run = RunCli({"dump", path});
    EXPECT_EQ(run.status, 0);
    Json dump = Json::parse(run.out);
    EXPECT_EQ(
        dump.dump(),
        R"({"settings":{"ClockMultiplier":1,"BasicUnit":12,"AutoClockAssign":0,"Decimals":0,"EndTime":200,)"
        R"("SpanEnd":)" +
            dump["settings"]["SpanEnd"].dump() +
            R"(},"stateTables":[{"tableName":"Default","rows":[)"
            R"({"level":0,"colorIndex":4,"stateChar":"0","stateName":"Low","stateAbbrev":"0"},)"
            R"({"level":1,"colorIndex":4,"stateChar":"1","stateName":"High","stateAbbrev":"1"},)"
            R"({"level":2,"colorIndex":1,"stateChar":"X","stateName":"Unknown","stateAbbrev":"X"},)"
            R"({"level":1,"colorIndex":2,"stateChar":"Z","stateName":"High-Z","stateAbbrev":"Z"}]}],)"
            R"("patterns":[{"id":1,"name":"$p","kind":0,"bus":0,"hasProperties":0,"clock":0,"stateTable":0,)"
            R"("format":0,"pinType":0,"period":1,"delay":0,"duty":50,"width":1,"itemsDuration":10,)"
            R"("fullDuration":10,"items":[{"value":0,"duration":5},{"value":1,"duration":5}]},)"
            R"({"id":2,"name":"A[3:0]","kind":0,"bus":1,"hasProperties":1,"clock":2,"stateTable":0,)"
            R"("format":2,"pinType":1,"period":4,"delay":3,"duty":25,"width":4,"itemsDuration":65,)"
            R"("fullDuration":263,"items":[{"value":10,"duration":5},{"patternId":1,"repeat":3,"scale":2,)"
            R"("forcedFormat":0,"sliceOffset":0,"sliceWidth":0}]},)"
            R"({"id":3,"name":"C","kind":0,"bus":0,"hasProperties":1,"clock":0,"stateTable":0,"format":0,)"
            R"("pinType":0,"period":1,"delay":0,"duty":50,"width":1,"itemsDuration":10,"fullDuration":10,)"
            R"("items":[{"patternId":1,"repeat":1,"scale":1,"forcedFormat":3,"sliceOffset":0,"sliceWidth":0}]},)"
            R"({"id":4,"name":"A[2:1]","kind":2,"bus":1,"hasProperties":1,"clock":0,"stateTable":0,"format":0,)"
            R"("pinType":0,"period":1,"delay":0,"duty":50,"width":2,"itemsDuration":263,"fullDuration":263,)"
            R"("items":[{"patternId":2,"repeat":1,"scale":1,"forcedFormat":0,"sliceOffset":1,"sliceWidth":2}]}],)"
            R"("rows":["C","A[2:1]"]})");
    // The longest pattern and a quarter.
    EXPECT_EQ(dump["settings"]["SpanEnd"], 263 + 263 / 4);
}

TEST_F(Commands, DumpShowsUnnamedPatternsAndSignedPeriods) {
    Json dump = Json::parse(RunCli({"dump", file("A { Default NRZ 0 4294967295 50 } = (1 5);\n")}).out);
    EXPECT_EQ(dump["patterns"][0]["period"], -1);
    EXPECT_EQ(dump["patterns"][1]["name"], "");
    EXPECT_EQ(dump["rows"], Json::array());
}

TEST_F(Commands, DumpTakesBytesOfStateTablesAsLatin1) {
    std::string ini = directory.write("s.ini", "[StateTable]\nT\xE4"
                                               "b\n0 0 4 \xD8 \xFC"
                                               "ber \xE9\n");
    Json dump = Json::parse(RunCli({"dump", file("a = 1 5;\n"), "--simulator", ini}).out);
    EXPECT_EQ(dump["stateTables"][1]["tableName"], "T\u00E4b");
    EXPECT_EQ(dump["stateTables"][1]["rows"][0]["stateChar"], "\u00D8");
    EXPECT_EQ(dump["stateTables"][1]["rows"][0]["stateName"], "\u00FCber");
    EXPECT_EQ(dump["stateTables"][1]["rows"][0]["stateAbbrev"], "\u00E9");
}

TEST_F(Commands, SegmentsPrintsALineForEachCall) {
    std::string path = file("%ENDTIME = 20;\n$p = 0 2 1 3;\nA { Default } = 1 5 $p #2 (2 5);\n");
    EXPECT_EQ(RunCli({"segments", path, "A"}).out,
              "0 5 5 1 4\n5 7 2 0 4\n7 10 3 1 4\n10 12 2 0 4\n12 15 3 1 4\n15 20 5 2 5\n");
    EXPECT_EQ(RunCli({"segments", path, "A", "--names"}).out,
              "0 5 5 1 4\n5 10 5 1 2 $p\n10 15 5 1 2 $p\n15 20 5 2 5\n");
    EXPECT_EQ(RunCli({"segments", path, "A", "--names", "--waves", "--from", "6", "--to", "8"}).out,
              "5 7 2 0 4\n7 10 3 1 5\n5 10 5 1 3 $p\n10 15 5 2 5\n");
    EXPECT_EQ(RunCli({"segments", path, "A", "--min-detail", "3", "--to", "9"}).out,
              "0 5 5 1 4\n5 7 2 0 16\n5 7 2 0 16\n7 10 3 1 5\n10 15 5 2 5\n");
}

TEST_F(Commands, SegmentsEndsAtTheSpanIfNothingElseIsSaid) {
    std::string path = file("%ENDTIME = 20;\nA { Default } = (0 10 1 10)##;\n");
    EXPECT_EQ(RunCli({"segments", path, "A"}).out, "0 10 10 0 4\n10 20 10 1 4\n20 30 10 0 5\n");
    EXPECT_EQ(RunCli({"segments", path, "A", "--to", "0"}).out, "0 10 10 0 5\n");
}

TEST_F(Commands, SegmentsOfASpanWithoutEndEndBehindWhatEnds) {
    // What is endless in the midst of a wave makes the document endless.
    std::string endless = "W = 0 5 (0 100)*65535 #65534 1 5;\nA { Default } = (0 100)##;\n";
    // The longest pattern that ends, and a quarter more.
    std::string path = file("%ENDTIME = 20;\n" + endless + "L = 0 160;\n");
    EXPECT_EQ(RunCli({"segments", path, "A"}).out, "0 100 100 0 4\n100 200 100 0 5\n");
    EXPECT_EQ(RunCli({"segments", path, "A", "--to", "300"}).out,
              "0 100 100 0 4\n100 200 100 0 4\n200 300 100 0 5\n");
    // Or the end time.
    path = file("%ENDTIME = 240;\n" + endless);
    EXPECT_EQ(RunCli({"segments", path, "A", "--from", "100"}).out, "100 200 100 0 4\n200 300 100 0 5\n");
    // An end time that is none does not count.
    path = file("%ENDTIME = 4294967295;\n" + endless + "L = 0 160;\n");
    EXPECT_EQ(RunCli({"segments", path, "A"}).out, "0 100 100 0 4\n100 200 100 0 5\n");
}

TEST_F(Commands, SegmentsReachTheWindowsEndInHoweverManyRounds) {
    std::string out = RunCli({"segments", file("A { Default } = (0 1 1 1)##;\n"), "A", "--to", "200000"}).out;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 200000);
    EXPECT_TRUE(out.ends_with("\n199999 200000 1 1 5\n"));
}

TEST_F(Commands, SegmentsOfAWindowThatRunsBackwardAreNone) {
    std::string path = file("%ENDTIME = 20;\nA { Default } = 1 5 0 15;\n");
    for (const std::vector<std::string> &times : {std::vector<std::string>{"--from", "8", "--to", "7"},
                                                  {"--from", "100"},
                                                  {"--from", "1", "--to", "0"}}) {
        std::vector<std::string> arguments = {"segments", path, "A"};
        arguments.insert(arguments.end(), times.begin(), times.end());
        CliRun run = RunCli(arguments);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.out, "");
    }
    EXPECT_EQ(RunCli({"segments", path, "A", "--from", "7", "--to", "7"}).out, "5 20 15 0 5\n");
}

TEST_F(Commands, SegmentsExpandsFormatsOnRequest) {
    std::string path = file("A { Default RZ 0 10 50 } = 1 2;\n");
    EXPECT_EQ(RunCli({"segments", path, "A"}).out, "0 20 20 1 5\n");
    EXPECT_EQ(RunCli({"segments", path, "A", "--sync"}).out,
              "0 5 5 1 4\n5 10 5 0 4\n10 15 5 1 4\n15 20 5 0 5\n");
}

TEST_F(Commands, SegmentsOfAPatternWithoutLengthPrintsNothing) {
    CliRun run = RunCli({"segments", file("A = ;\n"), "A"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
}

TEST_F(Commands, ValuePrintsDecimal) {
    std::string path = file("A[31:0] { Default } = ffffffff 5 1f 5;\nB { Default RZ 0 10 50 } = 1 2;\n");
    EXPECT_EQ(RunCli({"value", path, "A[31:0]", "4"}).out, "4294967295\n");
    EXPECT_EQ(RunCli({"value", path, "A[31:0]", "5", "--radix", "2"}).out, "31\n");
    EXPECT_EQ(RunCli({"value", path, "A[31:0]", "4294967295"}).out, "31\n");
    EXPECT_EQ(RunCli({"value", path, "B", "7"}).out, "1\n");
    EXPECT_EQ(RunCli({"value", "--sync", path, "B", "7"}).out, "0\n");
}

TEST_F(Commands, ListingPrintsTheLines) {
    std::string path = file("$p = 0 5 1 5;\nD[7:0] { Default } = a5 10 $p *2 ##;\nD[5];\n");
    EXPECT_EQ(RunCli({"listing", path, "D[7:0]"}).out,
              "D[7:0] - Bus [8]\n  Data - a5 - 10\n  $p Scale 2 Repeat Forever\n    Data - 0 - 5\n    Data - "
              "1 - 5\n");
    EXPECT_EQ(RunCli({"listing", path, "D[5]"}).out, "D[5] - Reference\n      D[7:0] - 3th bit\n");
}

class Pictures : public Commands {
protected:
    CliRun render(const std::vector<std::string> &more, const std::string &picture = "x.svg") {
        std::vector<std::string> arguments = {"render", Example("clock.wdl"), "-o", directory.file(picture)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunCli(arguments);
    }
    std::string picture(const std::string &name = "x.svg") { return ReadWholeFile(directory.file(name)); }
    // Width and height as a PNG's head tells them.
    std::pair<uint32_t, uint32_t> pngSize() {
        std::string png = picture("x.png");
        auto number = [&](size_t at) {
            uint32_t n = 0;
            for (size_t i = 0; i < 4; ++i) n = n << 8 | static_cast<unsigned char>(png.at(at + i));
            return n;
        };
        return {number(16), number(20)};
    }
};

TEST_F(Pictures, ComeInTheFormatOfTheirExtension) {
    for (auto [name, head] :
         {std::pair{"x.png", "\x89PNG"}, {"x.svg", "<?xml"}, {"x.pdf", "%PDF"}, {"x.PNG", "\x89PNG"}}) {
        CliRun run = render({}, name);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.out + run.err, "");
        EXPECT_TRUE(picture(name).starts_with(head)) << name;
    }
}

TEST_F(Pictures, GrowWithWidthScaleAndRows) {
    ASSERT_EQ(render({"--rows", "CLK"}, "x.png").status, 0);
    auto [width, height] = pngSize();
    ASSERT_EQ(render({"--rows", "CLK", "--width", "1100"}, "x.png").status, 0);
    // The ruler goes on as far as its last label needs: 64 pixels beyond the waves' 1000, 48 beyond 1100.
    EXPECT_EQ(width, 1064u);
    EXPECT_EQ(pngSize().first, 1148u);
    ASSERT_EQ(render({"--rows", "CLK", "--scale", "3"}, "x.png").status, 0);
    EXPECT_EQ(pngSize(), (std::pair{3 * width, 3 * height}));
    ASSERT_EQ(render({"--rows", "CLK,LOAD,CLK"}, "x.png").status, 0);
    EXPECT_GT(pngSize().second, height);
}

TEST_F(Pictures, ShowTheWaveListOrAllNodes) {
    render({});
    std::string byList = picture();
    render({"--rows", "CLK,CLKDIV2,_RESET,LOCKED,ENABLE,LOAD,PRESET[3:0],COUNT[3:0],DONE"});
    EXPECT_EQ(picture(), byList);
    directory.write("a.wdl", ReadWholeFile(Example("clock.wdl")));
    std::string out = directory.file("x.svg");
    ASSERT_EQ(RunCli({"render", directory.file("a.wdl"), "-o", out}).status, 0);
    std::string allNodes = picture();
    EXPECT_NE(allNodes, byList);
    render({"--rows", "CLK,CLKDIV2,_RESET,LOCKED,ENABLE,LOAD,COUNT[3:0],PRESET[3:0],DONE"});
    EXPECT_EQ(picture(), allNodes);
}

TEST_F(Pictures, TakeNamesThatHoldCommas) {
    std::vector<std::string> arguments = {"render", Example("sdram.wdl"), "-o", directory.file("x.png"),
                                          "--rows"};
    arguments.push_back("_CS,_RAS,_CAS,_WE,CKE");
    EXPECT_EQ(RunCli(arguments).status, 0);
}

TEST_F(Pictures, ShowTheRangeAskedFor) {
    render({});
    std::string whole = picture();
    render({"--from", "0", "--to", "1000"});
    EXPECT_EQ(picture(), whole);
    render({"--from", "100", "--to", "300"});
    EXPECT_NE(picture(), whole);
}

TEST_F(Pictures, ShowBusValuesInTheRadixAskedFor) {
    render({"--rows", "COUNT[3:0]"});
    std::string hexadecimal = picture();
    render({"--rows", "COUNT[3:0]", "--radix", "10"});
    EXPECT_NE(picture(), hexadecimal);
}

TEST_F(Pictures, AreRefusedWithAReason) {
    for (const std::vector<std::string> &more : {std::vector<std::string>{"--width", "0"},
                                                 {"--width", "99999"},
                                                 {"--width", "x"},
                                                 {"--scale", "0"},
                                                 {"--scale", "-1"},
                                                 {"--scale", "30000"}}) {
        CliRun run = render(more, "x.png");
        EXPECT_EQ(run.status, 2) << more[0] << more[1];
        EXPECT_NE(run.err, "");
    }
    EXPECT_EQ(render({}, "x.gif").status, 2);
    EXPECT_EQ(render({}, "none/x.png").status, 2);
    CliRun run = render({"--rows", "CLK,NOPE"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, Example("clock.wdl") + ": no pattern \"NOPE\"\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory.path), fs::directory_iterator()), 0);
}

} // namespace
