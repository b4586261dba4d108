// edit: commands, patterns, what is printed, and the log.
#include "edit_fixture.h"
#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

// --- commands -------------------------------------------------------------------------------------

TEST_F(Edit, WhatIsCutOrCopiedIsPasted) {
    EXPECT_EQ(itemsAfter("select w 150 150\ncut\nselect w 0 0\npaste\n"), "1 100 0 150");
    EXPECT_EQ(itemsAfter("select v 20 50\ncopy\nselect w 200 200\npaste\n"), "0 100 1 100 $p #3 0 50");
    EXPECT_EQ(itemsAfter("select w 150 150\ndelete\n"), "0 150");
    EXPECT_EQ(itemsAfter("select w 150 150\ncut\nundo\n"), AS_IT_WAS);
    notEnabled("", {"cut", "copy", "delete", "paste"});
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
    notEnabled("select w 100 100\n", {"insert x", "insert v"});
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
    notEnabled("", {"remove $p", "remove x"});
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
    fs::create_directory(directory.file("sub"));
    fs::create_symlink(path, directory.file("link"));
    fs::create_symlink("out.wdl", directory.file("link to nothing"));
    for (const auto &[other, roles] :
         {std::pair(path, "the log as well as the document"),
          {directory.file("sub/../a.wdl"), "the log as well as the document"},
          {directory.file("link"), "the log as well as the document"},
          {directory.file("a.kel"), "the log as well as the wave list"},
          {script, "the log as well as the script"},
          {out, "the log as well as the output"},
          {directory.file("link to nothing"), "the log as well as the output"}}) {
        fs::remove(out);
        std::string before = ReadWholeFile(other);
        CliRun run = RunCli({"edit", path, script, "-o", out, "--log", other});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, other + ": cannot be " + roles + "\n");
        EXPECT_EQ(ReadWholeFile(other), before);
        EXPECT_FALSE(fs::exists(out));
    }
}

TEST_F(EditLogFile, NeitherIsTheOutputOrTheScript) {
    std::string script = directory.write("script", "status\n");
    fs::remove(directory.file("a.kel"));
    for (const auto &[other, role] : {std::pair(directory.file("a.kel"), "the wave list"),
                                      {directory.file("./a.kel"), "the wave list"},
                                      {directory.file("a._KL"), "the document's log"}}) {
        CliRun run = RunCli({"edit", path, script, "-o", other});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.err, other + ": cannot be the output as well as " + role + "\n");
        EXPECT_FALSE(fs::exists(other));
    }
    CliRun run = RunCli({"edit", path, script, "-o", script});
    EXPECT_EQ(run.err, script + ": cannot be the script as well as the output\n");
    EXPECT_EQ(ReadWholeFile(script), "status\n");
    EXPECT_EQ(RunCli({"edit", path, path}).err, path + ": cannot be the script as well as the document\n");
    // The document may be the output, and devices are no files.
    EXPECT_EQ(RunCli({"edit", path, script, "-o", path}).status, 0);
    EXPECT_EQ(RunCli({"edit", path, "/dev/null", "-o", "/dev/null"}).status, 0);
}

TEST_F(EditLogFile, ThatFailsEndsTheScriptAndNothingIsWritten) {
    std::string script = directory.write("script", "select w 150 150\ncut\nstatus\nundo\nstatus\n");
    CliRun run = RunCli({"edit", path, script, "-o", out, "--log", "/dev/full"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err.substr(0, run.err.find('\n')), "Failed to write log file /dev/full");
    EXPECT_EQ(run.out, "") << "the lines behind it are not played";
    EXPECT_FALSE(fs::exists(out));
}

TEST_F(EditLogFile, WithoutATemporaryFileNothingIsWritten) {
    std::string script = directory.write("script", "status\n");
    CliRun run =
        RunCli({"edit", path, script, "-o", out}, ".", "/dev/null", "TMPDIR=" + directory.file("none"));
    EXPECT_EQ(run.status, 2);
    EXPECT_TRUE(run.err.starts_with("Failed to create log file ")) << run.err;
    EXPECT_FALSE(fs::exists(out));
}

TEST_F(EditLogFile, IsLeftBehindByAScriptThatIsNotUnderstood) {
    EXPECT_EQ(playLogged("select w 150 150\ncut\nbogus\n").status, 2);
    EXPECT_EQ(listing(), "0 RecDeleteTransition pattern=2 value=1 duration=100 item=1\n");
    EXPECT_FALSE(fs::exists(out));
}

} // namespace
