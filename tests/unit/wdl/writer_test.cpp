#include "wdl/writer.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "integration/suite/message_service.h"
#include "platform/files.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "unit/wdl/wdl_test.h"
#include <cstdio>
#include <filesystem>

namespace {

class Writer : public WdlTest {
protected:
    // A path in a buffer that the writer may change.
    char *path(const char *name) {
        snprintf(buffer, sizeof buffer, "%s", scratch.file(name).c_str());
        return buffer;
    }
    std::string contents(const char *name) const { return ReadWholeFile(scratch.file(name)); }
    bool exists(const char *name) const { return std::filesystem::exists(scratch.file(name)); }

    ScratchDirectory scratch;
    char buffer[MAX_PATH_SIZE];
};

std::vector<std::string> broadcasts;

void KeepBroadcast(uint32_t messageClass, uint32_t detail, uint32_t data) {
    char text[MAX_PATH_SIZE] = "";
    MRStrGetCopy(data, text, sizeof text);
    broadcasts.push_back(std::to_string(messageClass) + " " + std::to_string(detail) + " " + text);
}

constexpr const char *PLAIN = " { Z Test Default None 0 1 50 } = ";

} // namespace

TEST_F(Writer, AnEmptyDocumentIsFiveLinesOfSettings) {
    Settings.ClockMultiplier = 3;
    Settings.BasicUnit = 9;
    Settings.AutoClockAssign = true;
    Settings.Decimals = 2;
    Settings.EndTime = 4294967295u;
    EXPECT_EQ(WrittenText(), "%MASTERCLOCKMULT = 3;\n"
                             "%SMALLESTUNIT    = 9;\n"
                             "%AUTOASSIGN      = 1;\n"
                             "%DECIMALS        = 2;\n"
                             "%ENDTIME         = 4294967295;\n");
}

TEST_F(Writer, TheExampleStatementsComeOutAsTheyStand) {
    Settings.AutoClockAssign = false;
    const char *text = "A { Z Test Default None 0 1 50 } = 1 10(0 5)#2 ;\n$p = 0 5 1 5;\n";
    ASSERT_EQ(Compile(text), 1);
    EXPECT_EQ(WrittenStatements(), text);
}

TEST_F(Writer, ANodeWithoutItemsHasAnEmptyList) {
    Settings.AutoClockAssign = false;
    MakePattern("a");
    EXPECT_EQ(WrittenStatements(), "a" + std::string(PLAIN) + ";\n");
}

TEST_F(Writer, PropertiesAreWrittenByName) {
    MakePattern("a");
    struct {
        uint32_t pinType, format, clock;
        const char *text;
    } cases[] = {
        {0, 0, 0, "Z Test Default None"}, {1, 1, 1, "A In Default NRZ"},    {2, 2, 2, "B Out Default RZ"},
        {3, 3, 7, "G Bid Default R1"},    {4, 4, 8, "I Global Default RC"},
    };
    for (const auto &c : cases) {
        SetPatternParams(PatternFromId(1), 0, c.pinType, c.format, -7, 65535, c.clock);
        SetPatternDelay(PatternFromId(1), 4294967294u);
        EXPECT_EQ(WrittenStatements(), "a { " + std::string(c.text) + " -2 -7 65535 } = ;\n");
    }
}

TEST_F(Writer, ParametersBeyondTheNamesAreWrittenAsTheFirst) {
    MakePattern("a");
    SetPatternParams(PatternFromId(1), 15, 7, 7, 1, 50, 15);
    EXPECT_EQ(WrittenStatements(), "a" + std::string(PLAIN) + ";\n");
}

TEST_F(Writer, ValuesAreDecimalInABitAndLowerCaseHexadecimalInABus) {
    MakePattern("$a", {{10, 5}, {4294967295u, 2147483647}});
    MakePattern("$b[7:0]", {{10, 5}, {4294967295u, 2147483647}, {0, 0}});
    EXPECT_EQ(WrittenStatements(), "$a = 10 5 -1 2147483647;\n$b[7:0] = a 5 ffffffff 2147483647 0 0;\n");
}

TEST_F(Writer, ScaleRepeatAndFormatFollowTheirItem) {
    Settings.AutoClockAssign = false;
    uint16_t p = MakePattern("$p", {{1, 5}});
    uint16_t q = MakePattern("", {{1, 5}});
    uint16_t a = MakePattern("a");
    AddReference(a, {.id = p, .scale = 2, .repeat = 3, .format = 1});
    AddReference(a, {.id = q, .scale = 65535, .repeat = 65534, .format = 4});
    AddReference(a, {.id = p, .repeat = REPEAT_FOREVER});
    EXPECT_EQ(WrittenStatements(),
              "$p = 1 5;\na" + std::string(PLAIN) + " $p *2 #3 @NRZ (1 5)*65535 #65534 @RC \n   $p ## ;\n");
}

TEST_F(Writer, CompositeMembersAreJoinedByPlusWithoutABlankBehindIt) {
    ASSERT_EQ(Compile("$a = $p + $q + $r;\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p +$q +$r ;\n$p = ;\n$q = ;\n$r = ;\n");
    ASSERT_EQ(CompileAfresh("$a = (1 5) + $q + (0 5);\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a = (1 5)+$q (0 5);\n$q = ;\n");
    ASSERT_EQ(CompileAfresh("$a = $p + (1 5);\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p (1 5);\n$p = ;\n");
}

TEST_F(Writer, AnUnnamedSecondMemberGetsItsPlusWhenANamedOneFollows) {
    ASSERT_EQ(Compile("$a = $p + (1 5) + (0 5) + $q;\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p +(1 5)(0 5)+$q ;\n$p = ;\n$q = ;\n");
}

TEST_F(Writer, ReferencePatternsComeLastAsBareNames) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\nD[1:0];\nD[0];\nx;\nx,D[1];\n"), 1);
    EXPECT_EQ(WrittenStatements(), "D[1:0]" + std::string(PLAIN) + ";\nx" + PLAIN + ";\nD[0];\nx,D[1];\n");
}

TEST_F(Writer, LinesWrapBehindTheItemThatPassesColumn60) {
    Transitions items;
    for (uint32_t i = 0; i < 30; ++i) items.push_back({i % 2, 100 + i});
    MakePattern("$a", items);
    EXPECT_EQ(WrittenStatements(), "$a = 0 100 1 101 0 102 1 103 0 104 1 105 0 106 1 107 0 108 1 109\n"
                                   "   0 110 1 111 0 112 1 113 0 114 1 115 0 116 1 117 0 118 1 119\n"
                                   "   0 120 1 121 0 122 1 123 0 124 1 125 0 126 1 127 0 128 1 129\n"
                                   "  ;\n");
}

TEST_F(Writer, AnItemOfExactly60CharactersDoesNotWrap) {
    MakePattern(("$" + std::string(51, 'a')).c_str(), {{1, 5}, {0, 5}, {1, 5}});
    // The name, blank, "= " and "1 5" make 58 characters, and each further item 4.
    EXPECT_EQ(WrittenStatements(), "$" + std::string(51, 'a') + " = 1 5 0 5\n   1 5;\n");
    PatternStoreFree();
    PatternStoreInit();
    MakePattern(("$" + std::string(49, 'a')).c_str(), {{1, 5}, {0, 5}, {1, 5}});
    EXPECT_EQ(WrittenStatements(), "$" + std::string(49, 'a') + " = 1 5 0 5 1 5\n  ;\n");
    PatternStoreFree();
    PatternStoreInit();
    MakePattern(("$" + std::string(50, 'a')).c_str(), {{1, 5}, {0, 5}, {1, 5}});
    EXPECT_EQ(WrittenStatements(), "$" + std::string(50, 'a') + " = 1 5 0 5\n   1 5;\n")
        << "61 characters do";
}

TEST_F(Writer, NestedItemsWrapToo) {
    uint16_t nested = MakePattern(
        "", {{1, 1000000000}, {0, 1000000000}, {1, 1000000000}, {0, 1000000000}, {1, 1000000000}});
    uint16_t a = MakePattern("$a", {{1, 5}});
    AddReference(a, {.id = nested, .repeat = 7});
    AddTransition(a, 0, 5);
    EXPECT_EQ(WrittenStatements(),
              "$a = 1 5(1 1000000000 0 1000000000 1 1000000000 0 1000000000 1 1000000000\n"
              "  )#7  0 5;\n");
}

TEST_F(Writer, UnnamedPatternsHaveNoStatementOfTheirOwn) {
    MakePattern("", {{1, 5}});
    EXPECT_EQ(WrittenStatements(), "");
}

TEST_F(Writer, FreeIdsArePassedOver) {
    MakePattern("$a");
    MakePattern("$b");
    MakePattern("$c");
    DeletePattern(PatternFromId(2));
    EXPECT_EQ(WrittenStatements(), "$a = ;\n$c = ;\n");
}

// --- files ---

TEST_F(Writer, TheFileIsTheTextAndTheWaveListHoldsTheRows) {
    MakePattern("a", {{1, 5}});
    uint16_t unnamed = MakePattern("", {{1, 5}});
    MakePattern("b", {{0, 5}});
    WaveRows[0].PatternId = 3;
    WaveRows[1].PatternId = unnamed;
    WaveRows[2].PatternId = 1;
    WaveView.RowCount = 3;
    char *name = path("doc.wdl");
    WriteWdlFile(name);
    EXPECT_EQ(contents("doc.wdl"), WrittenText());
    EXPECT_EQ(contents("doc.kel"), "Wave b\nWave \nWave a\n");
    EXPECT_EQ(name, scratch.file("doc.kel"));
}

TEST_F(Writer, AnEmptyDocumentHasAnEmptyWaveList) {
    WriteWdlFile(path("doc.wdl"));
    EXPECT_EQ(contents("doc.wdl"), WrittenText());
    EXPECT_TRUE(exists("doc.kel"));
    EXPECT_EQ(contents("doc.kel"), "");
}

TEST_F(Writer, AnOldFileIsReplacedWhole) {
    scratch.write("doc.wdl", std::string(5000, 'x'));
    scratch.write("doc.kel", std::string(5000, 'x'));
    WriteWdlFile(path("doc.wdl"));
    EXPECT_EQ(contents("doc.wdl"), WrittenText());
    EXPECT_EQ(contents("doc.kel"), "");
}

TEST_F(Writer, TheSavedFileIsBroadcast) {
    broadcasts.clear();
    BroadcastListener = KeepBroadcast;
    WriteWdlFile(path("doc.wdl"));
    BroadcastListener = nullptr;
    ASSERT_EQ(broadcasts.size(), 1u);
    EXPECT_EQ(broadcasts[0], "7 2 " + scratch.file("doc.wdl"));
}

TEST_F(Writer, AFileThatCannotBeOpenedSkipsTheBroadcastAndTheWaveList) {
    std::filesystem::create_directory(scratch.file("doc.wdl"));
    broadcasts.clear();
    BroadcastListener = KeepBroadcast;
    char *name = path("doc.wdl");
    WriteWdlFile(name);
    BroadcastListener = nullptr;
    EXPECT_TRUE(broadcasts.empty());
    EXPECT_FALSE(exists("doc.kel"));
    EXPECT_EQ(name, scratch.file("doc.wdl"));
}

TEST_F(Writer, TheFileIsWrittenEvenIfTheWaveListCannotBe) {
    std::filesystem::create_directory(scratch.file("doc.kel"));
    WriteWdlFile(path("doc.wdl"));
    EXPECT_EQ(contents("doc.wdl"), WrittenText());
}

TEST_F(Writer, TheLogsHoldIsAsItWas) {
    for (int hold : {0, 1}) {
        LogHoldOpen(hold);
        WriteWdlFile(path("doc.wdl"));
        EXPECT_EQ(LogHoldOpen(0), hold);
    }
}
