// edit: what each line of a script does, prints and leaves.
#include "editlog/edit_log.h"
#include "run_cli.h"
#include "unit/support/fresh_store.h"
#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

const std::string DOCUMENT = "%AUTOASSIGN = 0;\n%ENDTIME = 300;\n$p = 0 5 1 5;\nw = 0 100 1 100 0 50;\n"
                             "v = 1 20 $p #3 0 10;\nB[3:0] = 5 10 a 20 (1 5 2 5)*2#3;\nc = $p + $p;\n";
const std::string ROWS = "Wave w\nWave v\nWave B[3:0]\nWave $p\nWave c\n";

class Edit : public testing::Test {
protected:
    void SetUp() override { open(DOCUMENT, ROWS); }
    void open(const std::string &text, const std::string &rows) {
        path = directory.write("a.wdl", text);
        directory.write("a.kel", rows);
    }
    // Plays the script at a scale where every unit of time can be pointed at.
    CliRun play(const std::string &script) {
        return RunCli({"edit", path, directory.write("script", "scale 4\nleft 0\n" + script), "-o", out});
    }
    // What such a script prints, where nothing goes wrong.
    std::string printed(const std::string &script) {
        CliRun run = play(script);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "") << script;
        return run.out;
    }
    // The items of a statement in the file that was written.
    std::string items(const std::string &name) const {
        std::string text = ReadWholeFile(out), found;
        size_t at = text.find("\n" + name + " ");
        if (at == std::string::npos) return "none";
        at = text.find("= ", at) + 2;
        for (char c : text.substr(at, text.find(';', at) - at)) {
            if (c == '\n') c = ' ';
            if (c != ' ' || (!found.empty() && found.back() != ' ')) found += c;
        }
        while (found.ends_with(' ')) found.pop_back();
        return found;
    }
    // The same behind a script that prints nothing.
    std::string itemsAfter(const std::string &script, const std::string &name = "w") {
        EXPECT_EQ(printed(script), "");
        return items(name);
    }
    // The line is not enabled where it stands, and changes nothing: what was done before is all.
    void notEnabled(const std::string &before, const std::string &line) {
        printed(before);
        std::string expected = ReadWholeFile(out);
        std::string status = printed(before + "status\nprompt\n");
        CliRun run = play(before + line + "\nstatus\nprompt\n");
        auto number = 3 + std::count(before.begin(), before.end(), '\n');
        EXPECT_EQ(run.err, std::to_string(number) + ": not enabled\n") << line;
        EXPECT_EQ(run.out, status) << line;
        EXPECT_EQ(run.status, 0) << line;
        EXPECT_EQ(ReadWholeFile(out), expected) << line;
    }

    ScratchDirectory directory;
    std::string path;
    std::string out = directory.file("out.wdl");
};

const std::string AS_IT_WAS = "0 100 1 100 0 50";

// --- the script -----------------------------------------------------------------------------------

TEST_F(Edit, WritesTheDocumentBehindWhatTheScriptPrinted) {
    std::string script = directory.write("script", "status\n");
    CliRun format = RunCli({"format", path});
    CliRun run = RunCli({"edit", path, script});
    EXPECT_EQ(run.out, "0 Nothing Selected\n" + format.out);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(ReadWholeFile(path), DOCUMENT);
}

TEST_F(Edit, WritesToAFileWhichMayBeTheDocument) {
    std::string script = directory.write("script", "show $p\nstatus\n");
    EXPECT_EQ(RunCli({"edit", "-o", path, path, script}).out, "0 Nothing Selected\n");
    EXPECT_EQ(ReadWholeFile(path), RunCli({"format", path}).out);
    EXPECT_EQ(ReadWholeFile(directory.file("a.kel")), ROWS);
    EXPECT_EQ(std::distance(fs::directory_iterator(directory.path), fs::directory_iterator()), 3);
}

TEST_F(Edit, ReadsStandardInputWithoutAScript) {
    std::string input = directory.write("input", "status\nselect w 110 120\n");
    CliRun run = RunCli({"edit", path, "-o", out}, ".", input);
    EXPECT_EQ(run.out, "0 Nothing Selected\n");
    EXPECT_EQ(items("w"), "0 100 1 10 0 10 1 80 0 50");
}

TEST_F(Edit, LeavesALogBesideTheFileAlone) {
    directory.write("a._KL", "not a log");
    printed("select w 110 120\n");
    EXPECT_EQ(ReadWholeFile(directory.file("a._KL")), "not a log");
}

TEST_F(Edit, PassesOverCommentsBlanksAndEmptyLines) {
    EXPECT_EQ(printed("# status\n\n   \t \n  # more\n\t status \t\n"), "0 Nothing Selected\n");
    EXPECT_EQ(printed("status\r\n\r\n# x\r\nstatus"), "0 Nothing Selected\n0 Nothing Selected\n");
    EXPECT_EQ(printed("press  w\t10\nrelease\t10\nstatus\n"), "3 Selected Bit Pulse = Low\n  0 100 0 2 0\n");
}

TEST_F(Edit, EndsAtALineThatIsNotUnderstood) {
    const std::string lines[] = {"bogus",
                                 "Status",
                                 "status 1",
                                 "show",
                                 "show $p w",
                                 "hide",
                                 "press w",
                                 "press w 1 2",
                                 "press w x",
                                 "press w -1",
                                 "press w 4294967296",
                                 "press w 1.5",
                                 "press w +1",
                                 "press w 0x1",
                                 "select w 1",
                                 "select w 1 2 3",
                                 "move",
                                 "release",
                                 "move a",
                                 "goto",
                                 "goto 1 2",
                                 "scale",
                                 "scale 5",
                                 "scale -27",
                                 "scale --1",
                                 "scale +1",
                                 "scale -",
                                 "scale 1x",
                                 "scale 1 2",
                                 "left",
                                 "left -1",
                                 "state",
                                 "state x",
                                 "state -1",
                                 "forever",
                                 "forever ON",
                                 "forever on off",
                                 "new",
                                 "new a inout",
                                 "new a In",
                                 "new a in out",
                                 "new $q in",
                                 "insert",
                                 "remove",
                                 "undo 2",
                                 "cut w",
                                 "press!",
                                 "state! ",
                                 "duration? 5",
                                 "prompt #",
                                 "dump x",
                                 "query # comment",
                                 "status\r x",
                                 std::string("show a\0b", 8)};
    for (const std::string &line : lines) {
        directory.write("out.wdl", "as it was");
        CliRun run = play("status\n" + line + "\nstatus\n");
        EXPECT_EQ(run.status, 2) << line;
        EXPECT_EQ(run.out, "0 Nothing Selected\n") << line;
        EXPECT_EQ(run.err, "4: not understood\n") << line;
        EXPECT_EQ(ReadWholeFile(out), "as it was") << line;
    }
}

TEST_F(Edit, TakesNumbersUpToTheirLimits) {
    printed("goto 4294967295\ngoto 0\ngoto 007\nleft 4294967295\nscale -26\nscale 4\nscale -0\nscale 00\n");
}

TEST_F(Edit, RefusesWhatCannotBeReadOrWritten) {
    CliRun run = RunCli({"edit", path, directory.file("none")});
    EXPECT_EQ(run.err, directory.file("none") + ": cannot be read\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(RunCli({"edit", path, directory.path}).status, 2);
    EXPECT_EQ(RunCli({"edit", directory.file("none.wdl")}).status, 2);
    EXPECT_EQ(RunCli({"edit", directory.write("bad.wdl", "a = 1;\n")}).status, 1);
    run = RunCli({"edit", path, "-o", directory.file("no/out.wdl")});
    EXPECT_EQ(run.err, directory.file("no/out.wdl") + ": cannot be written\n");
    EXPECT_EQ(run.status, 2);
    run = RunCli({"edit", path, "--log", directory.file("no/log")});
    EXPECT_EQ(run.err, directory.file("no/log") + ": cannot be written\n");
    EXPECT_EQ(run.status, 2);
}

// --- rows -----------------------------------------------------------------------------------------

TEST_F(Edit, ShowAppendsARowOnce) {
    open(DOCUMENT, "Wave w\n");
    Json dump = Json::parse(printed("show v\nshow W\nshow $P\nshow v\ndump\n"));
    EXPECT_EQ(dump["rows"], (Json{"w", "v", "$p"}));
    dump = Json::parse(printed("show v\nshow $p\nundo\ndump\n"));
    EXPECT_EQ(dump["rows"], (Json{"w", "v"}));
    notEnabled("", "show x");
}

TEST_F(Edit, HideTakesTheRowAwayAndTheSelectionWithIt) {
    Json dump = Json::parse(printed("hide v\nhide c\ndump\n"));
    EXPECT_EQ(dump["rows"], (Json{"w", "B[3:0]", "$p"}));
    EXPECT_EQ(printed("select w 10 10\nhide w\nstatus\n"), "0 Nothing Selected\n");
    dump = Json::parse(printed("hide v\nundo\ndump\n"));
    EXPECT_EQ(dump["rows"], (Json{"w", "v", "B[3:0]", "$p", "c"}));
    notEnabled("hide v\n", "hide v");
    notEnabled("", "hide x");
}

// --- the view -------------------------------------------------------------------------------------

TEST_F(Edit, TheScaleTellsWhatIsNear) {
    // Three pixels make an edge.
    EXPECT_EQ(printed("select w 103 103\nstatus\n"), "3 Selected Bit Pulse = High\n  100 200 0 2 1\n");
    EXPECT_EQ(printed("scale 0\nselect w 103 103\nstatus\n"),
              "1 Selected Edge in Pattern w\n  100 100 0 2 1\n");
    EXPECT_EQ(printed("scale 0\nselect w 104 104\nstatus\n"),
              "3 Selected Bit Pulse = High\n  100 200 0 2 1\n");
    EXPECT_EQ(printed("scale -2\nselect w 112 112\nstatus\n"),
              "1 Selected Edge in Pattern w\n  100 100 0 2 1\n");
}

TEST_F(Edit, TheSpanIsFittedOnceAtTheStart) {
    // 375 units in 1000 pixels are 2 pixels each, so that an edge reaches one unit far.
    std::string fitted = directory.write("script", "select w 101 101\nstatus\nselect w 102 102\nstatus\n");
    CliRun run = RunCli({"edit", path, fitted, "-o", out});
    EXPECT_EQ(run.out, "1 Selected Edge in Pattern w\n  100 100 0 2 1\n"
                       "3 Selected Bit Pulse = High\n  100 200 0 2 1\n");
    // A longer span changes nothing of it.
    std::string longer =
        "select w 10 10\nduration 5000\nselect w 5001 5001\nstatus\nselect w 5002 5002\nstatus\n";
    run = RunCli({"edit", path, directory.write("script", longer), "-o", out});
    EXPECT_EQ(run.out, "1 Selected Edge in Pattern w\n  5000 5000 0 2 1\n"
                       "3 Selected Bit Pulse = High\n  5000 5100 0 2 1\n");
}

TEST_F(Edit, AWholeWaveIsDraggedOnlyWhereItsStartIsInView) {
    std::string drag = "select w 0 250\npress! w 10\nrelease 40\n";
    EXPECT_EQ(Json::parse(printed(drag + "dump\n"))["patterns"][1]["delay"], 30);
    EXPECT_EQ(Json::parse(printed("left 1\n" + drag + "dump\n"))["patterns"][1]["delay"], 0);
}

// --- the mouse ------------------------------------------------------------------------------------

TEST_F(Edit, AClickSelectsWhatIsThere) {
    EXPECT_EQ(printed("select w 150 150\nstatus\n"), "3 Selected Bit Pulse = High\n  100 200 0 2 1\n");
    EXPECT_EQ(printed("select B[3:0] 15 15\nstatus\n"), "3 Selected Bus Pulse = A\n  10 30 0 4 1\n");
    EXPECT_EQ(printed("select w 250 250\nstatus\n"), "1 Selected Edge in Pattern w\n  250 250 0 2 3\n");
    EXPECT_EQ(printed("select w 0 250\nstatus\n"), "2 Selected Entire Pattern w\n  0 250 0 2 0\n");
    EXPECT_EQ(printed("select v 20 50\nstatus\n"), "4 Selected Pattern $p\n  20 50 0 3 1\n");
    EXPECT_EQ(printed("select w 50 150\nstatus\n"), "6 Selected Interval in Pattern w\n  50 150 0 2 0\n");
}

TEST_F(Edit, ASelectionGoesDownIntoPatternsAndUpAgain) {
    EXPECT_EQ(printed("select v 37 37\nstatus\n"), "3 Selected Bit Pulse = High\n"
                                                   "  20 50 1 3 1\n"
                                                   "  35 40 0 1 1\n");
    // A stretch inside the level becomes a pulse.
    EXPECT_EQ(printed("select v 36 38\nstatus\n"), "3 Selected Bit Pulse = Low\n"
                                                   "  20 50 1 3 1\n"
                                                   "  36 38 0 1 2\n");
    EXPECT_EQ(printed("select v 30 40\nstatus\n"), "4 Selected Pattern $p\n  20 50 1 3 1\n");
    EXPECT_EQ(printed("select v 31 31\nselect v 25 45\nstatus\n"), "4 Selected Pattern $p\n  20 50 0 3 1\n");
}

TEST_F(Edit, ADragInsideALevelMakesAPulse) {
    EXPECT_EQ(itemsAfter("select w 120 150\n"), "0 100 1 20 0 30 1 50 0 50");
    EXPECT_EQ(itemsAfter("press w 150\nmove 10\nmove 130\nrelease 120\n"), "0 100 1 20 0 30 1 50 0 50");
    EXPECT_EQ(itemsAfter("select w 120 150\nundo\n"), AS_IT_WAS);
    EXPECT_EQ(itemsAfter("select w 120 150\nundo\nredo\n"), "0 100 1 20 0 30 1 50 0 50");
}

TEST_F(Edit, ADragOfAnEdgeMovesIt) {
    EXPECT_EQ(itemsAfter("select w 150 150\npress w 180\nrelease 190\n"), "0 100 1 110 0 40");
    EXPECT_EQ(itemsAfter("select w 150 150\npress w 110\nrelease 90\n"), "0 80 1 120 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\npress! w 180\nrelease 190\n"), "0 100 1 110 0 50");
}

TEST_F(Edit, AShiftPressInALevelPullsOutAPulse) {
    EXPECT_EQ(itemsAfter("press! w 120\nmove 130\nrelease 150\n"), "0 100 1 20 0 30 1 80 0 50");
    EXPECT_EQ(itemsAfter("press! w 120\nrelease 120\n"), AS_IT_WAS);
}

TEST_F(Edit, WhatIsHeldAtTheEndIsLetGoOf) {
    EXPECT_EQ(itemsAfter("press w 120\nmove 150\n"), AS_IT_WAS);
    EXPECT_EQ(itemsAfter("press! w 120\nmove 150\n"), AS_IT_WAS);
}

TEST_F(Edit, TimesAreTakenAsTheyStand) {
    // Neither rounded to what a pixel is, nor held at the press.
    EXPECT_EQ(itemsAfter("scale -3\nselect w 121 122\n"), "0 100 1 21 0 1 1 78 0 50");
}

TEST_F(Edit, WithTheButtonDownOnlyItsOwnLinesAreEnabled) {
    for (const char *line :
         {"press w 1", "press! w 1", "select w 1 2", "show v",   "hide v",     "duration 5",
          "value 1",   "scaleby 2",  "repeat 2",     "state 1",  "forever on", "cut",
          "copy",      "paste",      "delete",       "undo",     "redo",       "query",
          "edit",      "insert $p",  "new n",        "remove c", "goto 5"}) {
        notEnabled("select w 50 50\nundo\npress w 120\nmove 130\n", line);
    }
    std::string text = printed("press w 120\nmove 130\nstatus\nprompt\nscale 3\nleft 1\ndump\n");
    EXPECT_TRUE(text.starts_with("0 Nothing Selected\nSelect from 120 to 130 ps\t\n{")) << text;
    EXPECT_EQ(items("w"), AS_IT_WAS);
}

TEST_F(Edit, WithTheButtonUpThereIsNothingToMoveOrRelease) {
    notEnabled("", "move 5");
    notEnabled("select w 120 150\n", "release 5");
}

TEST_F(Edit, APressNeedsARow) {
    notEnabled("hide v\n", "press v 5");
    notEnabled("", "press! x 5");
    notEnabled("hide v\n", "select v 5 10");
}

TEST_F(Edit, AWaveOfOthersIsNotEdited) {
    EXPECT_EQ(printed("select c 3 3\nstatus\nselect c 3 7\nstatus\n"),
              "0 Nothing Selected\n0 Nothing Selected\n");
    EXPECT_EQ(items("c"), "$p +$p");
}

// --- the dialog -----------------------------------------------------------------------------------

TEST_F(Edit, DurationWritesThePulsesLength) {
    EXPECT_EQ(printed("select w 150 150\nduration 30\nstatus\n"),
              "3 Selected Bit Pulse = High\n  100 130 0 2 1\n");
    EXPECT_EQ(items("w"), "0 100 1 30 0 50");
    EXPECT_EQ(printed("select w 150 150\nduration! 30\nstatus\n"),
              "3 Selected Bit Pulse = Low\n  130 180 0 2 2\n");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration\n"), "0 100 1 1 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration  2 ns \n"), "0 100 1 2000 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration #5\n"), "0 100 1 5 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration none\n"), "0 100 1 1 0 50");
    notEnabled("", "duration 30");
    notEnabled("select w 50 150\n", "duration 30");
}

TEST_F(Edit, ValueWritesABus) {
    EXPECT_EQ(itemsAfter("select B[3:0] 15 15\nvalue 7\n", "B[3:0]"), "5 10 7 20(1 5 2 5)*2 #3");
    EXPECT_EQ(itemsAfter("select B[3:0] 15 15\nvalue ff\n", "B[3:0]"), "5 10 f 20(1 5 2 5)*2 #3");
    EXPECT_EQ(printed("select B[3:0] 5 5\nvalue! 3\nstatus\n"), "3 Selected Bus Pulse = A\n  10 30 0 4 1\n");
    notEnabled("select w 150 150\n", "value 1");
}

TEST_F(Edit, EqualNeighboursJoinWhenTheSelectionLeavesThem) {
    // While it stays it is one step; the end of the script takes it away.
    std::string typed = "select B[3:0] 5 5\nvalue! 3\nvalue 3\n";
    Json dump = Json::parse(printed(typed + "dump\n"));
    EXPECT_EQ(dump["patterns"][3]["items"].size(), 3u);
    EXPECT_EQ(items("B[3:0]"), "3 30(1 5 2 5)*2 #3");
    EXPECT_EQ(itemsAfter(typed + "goto 0\nundo\n", "B[3:0]"), "5 10 a 20(1 5 2 5)*2 #3");
}

TEST_F(Edit, StateWritesABit) {
    EXPECT_EQ(itemsAfter("select w 150 150\nstate 3\n"), "0 100 3 100 0 50");
    EXPECT_EQ(printed("select w 150 150\nstate! 3\nstatus\n"),
              "3 Selected Bit Pulse = Low\n  200 250 0 2 2\n");
    EXPECT_EQ(itemsAfter("select w 50 150\nstate 2\n"), "0 50 2 100 1 50 0 50");
    notEnabled("select w 150 150\n", "state 4");
    notEnabled("select B[3:0] 15 15\n", "state 0");
    notEnabled("", "state 0");
}

TEST_F(Edit, ScaleAndRepeatWriteAReference) {
    EXPECT_EQ(itemsAfter("select v 20 50\nscaleby 3\nrepeat 2\n", "v"), "1 20 $p *3 #2 0 10");
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat! 7\n", "v"), "1 20 $p #7 0 10");
    EXPECT_EQ(itemsAfter("select w 50 150\nscaleby! 2\n"), "0 50(0 50 1 50)*2 1 50 0 50");
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat\n", "v"), "1 20 $p 0 10");
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat " + std::string(79, ' ') + "5\n", "v"), "1 20 $p #5 0 10");
    // The text is cut to 80 characters.
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat " + std::string(79, '0') + "23\n", "v"), "1 20 $p #2 0 10");
    notEnabled("select w 150 150\n", "scaleby 2");
    notEnabled("select w 150 150\n", "repeat 2");
}

TEST_F(Edit, ForeverIsForTheTailOfANode) {
    std::string tail = "select v 60 60\ninsert $p\nselect v 60 70\n";
    EXPECT_EQ(printed(tail + "status\n"), "4 Selected Pattern $p\n  60 70 0 3 3\n");
    EXPECT_EQ(itemsAfter(tail + "forever on\n", "v"), "1 20 $p #3 0 10 $p ##");
    EXPECT_EQ(itemsAfter(tail + "forever on\nforever on\n", "v"), "1 20 $p #3 0 10 $p ##");
    EXPECT_EQ(itemsAfter(tail + "forever on\nforever off\n", "v"), "1 20 $p #3 0 10 $p");
    EXPECT_EQ(itemsAfter(tail + "repeat ##\n", "v"), "1 20 $p #3 0 10 $p ##");
    notEnabled(tail + "forever on\n", "repeat 2");
    notEnabled("select v 20 50\n", "forever on");
}

// --- commands -------------------------------------------------------------------------------------

TEST_F(Edit, WhatIsCutOrCopiedIsPasted) {
    EXPECT_EQ(itemsAfter("select w 150 150\ncut\nselect w 0 0\npaste\n"), "1 100 0 150");
    EXPECT_EQ(itemsAfter("select v 20 50\ncopy\nselect w 200 200\npaste\n"), "0 100 1 100 $p #3 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\ndelete\n"), "0 150");
    EXPECT_EQ(itemsAfter("select w 150 150\ncut\nundo\n"), AS_IT_WAS);
    for (const char *command : {"cut", "copy", "delete", "paste"}) notEnabled("", command);
    notEnabled("select w 150 150\n", "paste");
    notEnabled("select w 150 150\ncopy\nselect B[3:0] 15 15\n", "paste");
}

TEST_F(Edit, UndoAndRedoAreAlwaysEnabled) {
    EXPECT_EQ(itemsAfter("undo\nredo\nredo\nselect w 120 150\nundo\nundo\nredo\nredo\n"),
              "0 100 1 20 0 30 1 50 0 50");
}

TEST_F(Edit, UndoHasNoLimit) {
    std::string script = "select w 150 150\n", back;
    for (int i = 0; i < 2000; i++) {
        script += "duration " + std::to_string(10 + i) + "\n";
        back += "undo\n";
    }
    EXPECT_EQ(itemsAfter(script + back), AS_IT_WAS);
}

TEST_F(Edit, QueryModeEditsNothing) {
    EXPECT_EQ(printed("query\nselect w 120 150\nstatus\nprompt\n"),
              "0 Nothing Selected\nTime = 150 ps - Level = High\t\n");
    EXPECT_EQ(items("w"), AS_IT_WAS);
    EXPECT_EQ(itemsAfter("query\nselect w 120 150\nedit\nselect w 120 150\n"), "0 100 1 20 0 30 1 50 0 50");
    EXPECT_EQ(printed("select w 150 150\nquery\nstatus\n"), "0 Nothing Selected\n");
}

TEST_F(Edit, GotoMovesCursorAndSelection) {
    EXPECT_EQ(printed("select w 50 50\ngoto 150\nstatus\nprompt\n"),
              "3 Selected Bit Pulse = High\n  100 200 0 2 1\nTime = 150 ps - Level = High\t\n");
    EXPECT_EQ(printed("select w 50 50\ngoto 300\nstatus\n"),
              "1 Selected Edge in Pattern w\n  250 250 0 2 3\n");
    // Clamped to the span.
    EXPECT_EQ(printed("goto 4294967295\nprompt\n"), "Time = 375 ps \t\n");
    EXPECT_EQ(printed("query\nselect w 5 5\ngoto 150\nstatus\nprompt\n"),
              "0 Nothing Selected\nTime = 150 ps - Level = High\t\n");
    // What a jump has selected can be dragged.
    EXPECT_EQ(itemsAfter("select w 50 50\ngoto 150\npress w 180\nrelease 190\n"), "0 100 1 110 0 40");
}

// --- patterns -------------------------------------------------------------------------------------

TEST_F(Edit, InsertGoesOnBehindThePiece) {
    EXPECT_EQ(printed("select w 100 100\ninsert $p\nstatus\nprompt\ninsert $p\nstatus\n"),
              "1 Selected Edge in Pattern w\n  110 110 0 2 2\nTime = 110 ps - Level = High\t\n"
              "1 Selected Edge in Pattern w\n  120 120 0 2 3\n");
    EXPECT_EQ(items("w"), "0 100 $p $p 1 100 0 50");
    EXPECT_EQ(itemsAfter("select w 100 100\ninsert $p\ninsert $p\nundo\n"), "0 100 $p 1 100 0 50");
    notEnabled("", "insert $p");
    notEnabled("select w 100 100\n", "insert x");
    notEnabled("select w 100 100\n", "insert v");
    notEnabled("select B[3:0] 10 10\n", "insert $p");
    notEnabled("query\nselect w 100 100\n", "insert $p");
}

TEST_F(Edit, AnInsertThatWouldRunInCirclesIsTold) {
    CliRun run = play("select $p 5 5\ninsert $p\nprompt\ngoto 1\nprompt\n");
    EXPECT_EQ(run.err, "ERROR: Recursion violation in paste\n");
    EXPECT_TRUE(run.out.find("\tERROR: Recursion violation in paste\n") != std::string::npos) << run.out;
    EXPECT_TRUE(run.out.ends_with("\t\n")) << run.out;
    EXPECT_EQ(items("$p"), "0 5 1 5");
}

TEST_F(Edit, NewMakesAWaveOfItsKind) {
    Json dump = Json::parse(printed("new a\nnew b test\nnew c1 in\nnew d out\nnew e bid\nnew f global\n"
                                    "new G<7:0> in\nnew $$q\ndump\n"));
    std::string made;
    for (size_t i = 6; i < dump["patterns"].size(); i++) {
        const Json &pattern = dump["patterns"][i];
        made += pattern["name"].get<std::string>() + std::to_string(pattern["pinType"].get<int>()) + " ";
    }
    EXPECT_EQ(made, "a0 b0 c11 d2 e3 f4 G[7:0]1 $q0 ");
    EXPECT_EQ(dump["rows"].size(), 13u);
    dump = Json::parse(printed("new a in\nundo\ndump\n"));
    EXPECT_EQ(dump["patterns"].size(), 6u);
    EXPECT_EQ(dump["rows"].size(), 5u);
    Json longer = Json::parse(printed("new " + std::string(90, 'x') + "\ndump\n"));
    EXPECT_EQ(longer["patterns"][6]["name"], std::string(80, 'x'));
    notEnabled("", "new )");
    CliRun run = play("new w[40:1]\nnew a;b\nprompt\n");
    EXPECT_EQ(run.err, "ERROR: Bus width exceeds 32 bits\nERROR: The name a;b cannot be saved in a file\n");
    EXPECT_EQ(run.out, "Time = 0 ps \tERROR: The name a;b cannot be saved in a file\n");
}

TEST_F(Edit, RemoveTakesThePatternAndItsRowAway) {
    Json dump = Json::parse(printed("select w 150 150\nremove w\nstatus\n"
                                    "dump\n")
                                .substr(19));
    EXPECT_EQ(dump["patterns"].size(), 5u);
    EXPECT_EQ(dump["rows"], (Json{"v", "B[3:0]", "$p", "c"}));
    EXPECT_EQ(itemsAfter("select w 150 150\nremove w\nundo\n"), AS_IT_WAS);
    EXPECT_EQ(printed("select w 150 150\nremove w\nstatus\n"), "0 Nothing Selected\n");
    EXPECT_EQ(printed("select w 150 150\nremove v\nstatus\n"),
              "3 Selected Bit Pulse = High\n  100 200 0 2 1\n");
    notEnabled("", "remove $p");
    notEnabled("", "remove x");
}

TEST_F(Edit, RemoveOfACompositeInUseIsTold) {
    open("$p = 0 5;\n$c = $p + $p;\nw = $c;\n", "");
    CliRun run = play("remove $c\nprompt\nundo\nprompt\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "ERROR: Pattern $c used in other patterns\n");
    EXPECT_EQ(run.out, "Time = 0 ps \tERROR: Pattern $c used in other patterns\nTime = 0 ps \t\n");
    EXPECT_EQ(items("$c"), "$p +$p");
}

// --- what is printed ------------------------------------------------------------------------------

TEST_F(Edit, PromptTellsAPressThatBeginsToTrack) {
    EXPECT_EQ(printed("press w 120\nprompt\nmove 130\nprompt\nrelease 130\nprompt\n"),
              "empty line\t\nSelect from 120 to 130 ps\t\nTime = 130 ps - Level = High\t\n");
    EXPECT_EQ(printed("query\npress w 120\nprompt\nmove 130\nprompt\nrelease 130\nprompt\n"),
              "Time = 0 ps\t\nTime = 130 ps\t\nTime = 130 ps - Level = High\t\n");
}

TEST_F(Edit, ALevelBeyondTheTableReadsAsTheLastState) {
    open("w = 9 100;\n", "Wave w\n");
    EXPECT_EQ(printed("select w 50 50\nstatus\nprompt\n"),
              "3 Selected Bit Pulse = High-Z\n  0 100 0 1 0\nTime = 50 ps - Level = High-Z\t\n");
}

TEST_F(Edit, DumpIsThatOfTheWrittenFile) {
    CliRun run = play("select w 120 150\nselect v 20 50\nscaleby 3\ndump\n");
    EXPECT_EQ(Json::parse(run.out)["patterns"], Json::parse(RunCli({"dump", out}).out)["patterns"]);
}

// --- the log --------------------------------------------------------------------------------------

class EditLogFile : public Edit {
protected:
    CliRun playLogged(const std::string &script) {
        return RunCli(
            {"edit", path, directory.write("script", "scale 4\n" + script), "-o", out, "--log", log});
    }
    std::string listing() { return RunCli({"log", log}).out; }
    std::string log = directory.file("log");
};

TEST_F(EditLogFile, IsBegunAnewAndHoldsWhatWasFlushed) {
    directory.write("log", "an old one");
    EXPECT_EQ(playLogged("select w 120 150\nundo\n").status, 0);
    // An undo back to the start of the log reads it from there, which flushes what it recorded.
    EXPECT_EQ(listing(), "0 RecInsertTransition pattern=2 value=0 duration=30 item=2\n"
                         "24 RecInsertTransition pattern=2 value=1 duration=50 item=3\n"
                         "48 RecItemDuration pattern=2 old=100 new=20 item=1\n"
                         "72 mark\n");
    EXPECT_EQ(playLogged("select w 120 150\n").status, 0);
    EXPECT_EQ(ReadWholeFile(log), "");
    // A cut flushes what it has recorded, and leaves the rest in the buffer.
    playLogged("select w 120 150\nselect w 210 210\ncut\n");
    EXPECT_EQ(listing(), "0 RecInsertTransition pattern=2 value=0 duration=30 item=2\n"
                         "24 RecInsertTransition pattern=2 value=1 duration=50 item=3\n"
                         "48 RecItemDuration pattern=2 old=100 new=20 item=1\n"
                         "72 mark\n"
                         "76 RecDeleteTransition pattern=2 value=0 duration=50 item=4\n");
}

TEST_F(EditLogFile, HasZerosForPadding) {
    playLogged("select w 120 150\nselect w 210 210\ncut\n");
    std::string bytes = ReadWholeFile(log);
    ASSERT_EQ(bytes.size(), 100u);
    std::string first = bytes.substr(0, 24);
    EXPECT_EQ(first, std::string("\x18\0\0\0"
                                 "\x0b\0\x02\0"
                                 "\0\0\0\0"
                                 "\x1e\0\0\0"
                                 "\x02\0\0\0"
                                 "\x18\0\0\0",
                                 24));
}

TEST_F(EditLogFile, IsTheSameWithEveryRun) {
    std::string script =
        "select w 120 150\nnew q in\nselect v 20 50\nscaleby 3\ncopy\nselect w 0 0\npaste\ncut\n"
        "remove w\nselect v 0 0\ncopy\nselect v 5 5\ncut\n";
    playLogged(script);
    std::string bytes = ReadWholeFile(log);
    EXPECT_NE(bytes, "");
    playLogged(script);
    EXPECT_EQ(ReadWholeFile(log), bytes);
}

TEST_F(EditLogFile, BringsTheEditsBack) {
    // Behind the cut a second one, so that the first is flushed with its mark.
    playLogged("select w 150 150\ncut\nselect v 5 5\ncut\n");
    fs::copy(log, directory.file("a._KL"));
    std::string recovered = directory.file("recovered.wdl");
    EXPECT_EQ(RunCli({"recover", path, "-o", recovered}).status, 0);
    std::string text = ReadWholeFile(recovered);
    EXPECT_NE(text.find("= 0 150;"), std::string::npos) << text;
}

TEST_F(EditLogFile, IsNoneOfTheOtherFiles) {
    std::string script = directory.write("script", "status\n");
    for (const std::string &other : {path, script, out}) {
        std::string before = ReadWholeFile(other);
        CliRun run = RunCli({"edit", path, script, "-o", out, "--log", other});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, other + ": cannot be the log as well\n");
        EXPECT_EQ(ReadWholeFile(other), before);
    }
}

TEST_F(EditLogFile, IsLeftBehindByAScriptThatIsNotUnderstood) {
    EXPECT_EQ(playLogged("select w 150 150\ncut\nbogus\n").status, 2);
    EXPECT_EQ(listing(), "0 RecDeleteTransition pattern=2 value=1 duration=100 item=1\n");
    EXPECT_FALSE(fs::exists(out));
}

} // namespace
