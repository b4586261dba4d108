// edit: the script, its rows, view, mouse and dialog.
#include "edit_fixture.h"
#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

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
    for (const std::string &line :
         {std::string("bogus"), std::string("status 1"), std::string("show a\0b", 8)}) {
        directory.write("out.wdl", "as it was");
        CliRun run = play("status\n" + line + "\nstatus\n");
        EXPECT_EQ(run.status, 2) << line;
        EXPECT_EQ(run.out, "0 Nothing Selected\n") << line;
        EXPECT_EQ(run.err, "4: not understood\n") << line;
        EXPECT_EQ(ReadWholeFile(out), "as it was") << line;
    }
}

TEST_F(Edit, RefusesWhatCannotBeReadOrWritten) {
    CliRun run = RunCli({"edit", path, directory.file("none")});
    EXPECT_EQ(run.err, directory.file("none") + ": cannot be read\n");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(RunCli({"edit", path, directory.path}).status, 2);
    EXPECT_EQ(RunCli({"edit", directory.file("none.wdl")}).status, 2);
    EXPECT_EQ(RunCli({"edit", directory.write("bad.wdl", "a = 1;\n")}).status, 1);
    run = RunCli({"edit", path, "-o", directory.file("no/out.wdl")});
    EXPECT_EQ(run.err, directory.file("no/out.wdl") + ": cannot be written: No such file or directory\n");
    EXPECT_EQ(run.status, 2);
    run = RunCli({"edit", path, "--log", directory.file("no/log")});
    EXPECT_EQ(run.err, directory.file("no/log") + ": cannot be written: No such file or directory\n");
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
    notEnabled("hide v\n", {"hide v", "hide x"});
    // That row alone, whatever was highlighted.
    dump = Json::parse(printed("query\nselect v 5 5\nhide w\ndump\n"));
    EXPECT_EQ(dump["rows"], (Json{"v", "B[3:0]", "$p", "c"}));
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
    notEnabled("select w 50 50\nundo\npress w 120\nmove 130\n",
               {"press w 1",   "press! w 1", "select w 1 2", "show v",     "hide v",     "duration 5",
                "duration! 5", "value 1",    "value! 1",     "scaleby 2",  "scaleby! 2", "repeat 2",
                "repeat! 2",   "state 1",    "state! 1",     "forever on", "cut",        "copy",
                "paste",       "delete",     "undo",         "redo",       "query",      "edit",
                "insert $p",   "new n",      "remove c",     "goto 5"});
    // Though the selection would take them.
    notEnabled(
        "select w 150 150\ncopy\npress w 180\nmove 190\n",
        {"duration 5", "duration! 5", "state 0", "state! 0", "cut", "copy", "paste", "delete", "insert $p"});
    notEnabled("select B[3:0] 15 15\npress B[3:0] 28\nmove 29\n", {"value 1", "value! 1"});
    notEnabled("select v 60 60\ninsert $p\nselect v 60 70\npress v 69\nmove 68\n",
               {"scaleby 2", "scaleby! 2", "repeat 2", "repeat! 2", "forever on"});
    std::string text = printed("press w 120\nmove 130\nstatus\nprompt\nscale 3\nleft 1\ndump\n");
    EXPECT_TRUE(text.starts_with("0 Nothing Selected\nSelect from 120 to 130 ps\t\n{")) << text;
    EXPECT_EQ(items("w"), AS_IT_WAS);
}

TEST_F(Edit, WithTheButtonUpThereIsNothingToMoveOrRelease) {
    notEnabled("", "move 5");
    notEnabled("select w 120 150\n", "release 5");
}

TEST_F(Edit, APressNeedsARow) {
    notEnabled("hide v\n",
               {"press v 5", "press! v 5", "select v 5 10", "press x 5", "press! x 5", "select x 5 10"});
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
    // A text without a digit is no entry.
    EXPECT_EQ(itemsAfter("select w 150 150\nduration\n"), "0 100 1 100 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration  2 ns \n"), "0 100 1 2000 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration #5\n"), "0 100 1 5 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\nduration none\n"), "0 100 1 100 0 50");
    notEnabled("", {"duration 30", "duration! 30"});
    notEnabled("select w 50 150\n", {"duration 30", "duration! 30"});
}

TEST_F(Edit, ValueWritesABus) {
    EXPECT_EQ(itemsAfter("select B[3:0] 15 15\nvalue 7\n", "B[3:0]"), "5 10 7 20(1 5 2 5)*2 #3");
    EXPECT_EQ(itemsAfter("select B[3:0] 15 15\nvalue ff\n", "B[3:0]"), "5 10 f 20(1 5 2 5)*2 #3");
    EXPECT_EQ(printed("select B[3:0] 5 5\nvalue! 3\nstatus\n"), "3 Selected Bus Pulse = A\n  10 30 0 4 1\n");
    notEnabled("select w 150 150\n", {"value 1", "value! 1"});
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
    notEnabled("select w 150 150\n", {"state 4", "state! 4", "state 4294967295"});
    notEnabled("select B[3:0] 15 15\n", {"state 0", "state! 0"});
    notEnabled("", {"state 0", "state! 0"});
}

TEST_F(Edit, ScaleAndRepeatWriteAReference) {
    EXPECT_EQ(itemsAfter("select v 20 50\nscaleby 3\nrepeat 2\n", "v"), "1 20 $p *3 #2 0 10");
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat! 7\n", "v"), "1 20 $p #7 0 10");
    EXPECT_EQ(itemsAfter("select w 50 150\nscaleby! 2\n"), "0 50(0 50 1 50)*2 1 50 0 50");
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat\n", "v"), "1 20 $p #3 0 10");
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat " + std::string(79, ' ') + "5\n", "v"), "1 20 $p #5 0 10");
    // The text is cut to 80 characters.
    EXPECT_EQ(itemsAfter("select v 20 50\nrepeat " + std::string(79, '0') + "23\n", "v"), "1 20 $p #2 0 10");
    notEnabled("select w 150 150\n", {"scaleby 2", "scaleby! 2", "repeat 2", "repeat! 2"});
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

} // namespace
