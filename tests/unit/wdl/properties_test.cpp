#include "store/state_table.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include <cstdio>
#include <cstring>

namespace {

class Properties : public WdlTest {
protected:
    // The node after reading its block, from parameters that are all set to something else.
    const Pattern &Read(const char *block) {
        EXPECT_EQ(FirstError("a { H Global Default RC 11 22 33 }\n;\na {" + std::string(block) + "};\n"), "");
        return Named("a");
    }
};

std::string Shown(const Pattern &p) {
    return std::to_string(p.clock()) + " " + std::to_string(p.pinType()) + " " +
           std::to_string(p.stateTable()) + " " + std::to_string(static_cast<uint32_t>(p.format())) + " " +
           std::to_string(p.delay) + " " + std::to_string(p.period) + " " + std::to_string(p.duty);
}

void AddTable(const char *name) {
    StateTable *table = AllocStateTable(1);
    ASSERT_NE(table, nullptr);
    memset(table, 0, sizeof *table + sizeof(StateRow));
    snprintf(table->tableName, sizeof table->tableName, "%s", name);
    table->rowCount = 1;
}

} // namespace

TEST_F(Properties, SevenFieldsSetEverything) {
    EXPECT_EQ(Shown(Read(" A In Default NRZ 5 6 70 ")), "1 1 0 1 5 6 70");
    EXPECT_EQ(Shown(Read("H Out Default RZ 0 1 50")), "8 2 0 2 0 1 50");
    EXPECT_EQ(Shown(Read("B,Bid,Default,R1,0,1,50")), "2 3 0 3 0 1 50");
    EXPECT_EQ(Shown(Read("\tG\tGlobal Default\tRC 0 1 50")), "7 4 0 4 0 1 50");
}

TEST_F(Properties, MoreThanSevenFieldsUseTheFirstSeven) {
    EXPECT_EQ(Shown(Read("C In Default NRZ 5 6 70 80 90")), "3 1 0 1 5 6 70");
}

TEST_F(Properties, UnknownLettersGiveNoClockAndATestPin) {
    EXPECT_EQ(Shown(Read("Z Test Default None 0 1 50")), "0 0 0 0 0 1 50");
    EXPECT_EQ(Shown(Read("I x Default nrz 0 1 50")), "0 0 0 0 0 1 50");
    EXPECT_EQ(Shown(Read("@ x Default nrz 0 1 50")), "0 0 0 0 0 1 50");
    EXPECT_EQ(Shown(Read("a in Default NRZX 0 1 50")), "0 0 0 0 0 1 50");
    EXPECT_EQ(Shown(Read("Axx Bad Default None 0 1 50")), "1 3 0 0 0 1 50");
}

TEST_F(Properties, FieldsFillFromTheRight) {
    EXPECT_EQ(Shown(Read("In Default NRZ 5 6 70")), "0 1 0 1 5 6 70");
    EXPECT_EQ(Shown(Read("Default NRZ 5 6 70")), "0 0 0 1 5 6 70");
}

TEST_F(Properties, FewerThanFiveFieldsLeaveTheTiming) {
    EXPECT_EQ(Shown(Read("Default")), "0 0 0 4 11 22 33");
    EXPECT_EQ(Shown(Read("Default NRZ 5 6")), "0 0 0 4 11 22 33");
}

TEST_F(Properties, NumbersThatAreNone) {
    EXPECT_EQ(Shown(Read("Default NRZ x 6 70")), "0 0 0 1 0 6 70");
    EXPECT_EQ(Shown(Read("Default NRZ 5 x 70")), "0 0 0 1 5 22 33");
    EXPECT_EQ(Shown(Read("Default NRZ 5 6 x")), "0 0 0 1 5 6 0");
}

TEST_F(Properties, NumbersWrapTo32BitsAndDutyTo16) {
    EXPECT_EQ(Shown(Read("Default NRZ +5 -2 +70")), "0 0 0 1 5 -2 70");
    EXPECT_EQ(Shown(Read("Default NRZ -1 -2 65537")), "0 0 0 1 4294967295 -2 1");
    EXPECT_EQ(Shown(Read("Default NRZ 4294967296 4294967295 -1")), "0 0 0 1 4294967295 -1 65535");
}

TEST_F(Properties, StateTablesAreFoundByNameAndUnknownOnesAreTheFirst) {
    AddTable("Tri");
    AddTable("Seventh");
    EXPECT_EQ(Compile("a { Tri };\nb { tri };\nc { Seventhing };\nd { None };\n"), 1);
    EXPECT_EQ(Named("a").stateTable(), 1u);
    EXPECT_EQ(Named("b").stateTable(), 1u);
    EXPECT_EQ(Named("c").stateTable(), 2u);
    EXPECT_EQ(Named("d").stateTable(), 0u);
}

TEST_F(Properties, ABlockMayRunOverLines) {
    EXPECT_EQ(FirstError("a { A In\nDefault\nNRZ 5 6 70\n} = 1 5;\n"), "");
    EXPECT_EQ(Shown(Named("a")), "1 1 0 1 5 6 70");
}

// --- what is passed over ---

namespace {

std::vector<std::string> warnings;

void KeepWarning(int line, int column, const char *message) {
    warnings.push_back(std::to_string(line) + ":" + std::to_string(column) + " " + message);
}

class PassedOver : public WdlTest {
protected:
    using Lines = std::vector<std::string>;
    void SetUp() override {
        WdlTest::SetUp();
        WarningHook = KeepWarning;
    }
    void TearDown() override {
        WarningHook = nullptr;
        WdlTest::TearDown();
    }
    // What is told of a text without errors.
    Lines of(const std::string &text) {
        warnings.clear();
        EXPECT_EQ(FirstError(text), "") << text;
        return warnings;
    }
};

} // namespace

TEST_F(PassedOver, NothingOfWhatTheWriterWrites) {
    for (const char *text :
         {"a { Z Test Default None 0 1 50 } = ;\n", "a { A In Default NRZ -1 -1 50 } = ;\n",
          "a { H Global Default RC 5 1 50 };\n", "a { B Bid Default R1 5 1 50 };\n",
          "a { G Out Default RZ +5 1 50 };\n", "a { default };\n", "%ENDTIME = +7;\n",
          "%ENDTIME         = 100000;\n%DECIMALS=3;\n%AUTOASSIGN = -1 ;\n%SMALLESTUNIT\n =\n 12\n;\n",
          "%VERSION = 4.2;\n%AUTOEXPORT = yes;\n%BUSREVERSE = no;\n%ENDTIME =;\n"}) {
        EXPECT_EQ(of(text), Lines()) << text;
    }
}

TEST_F(PassedOver, APropertyWordThatMeansNothing) {
    EXPECT_EQ(of("a { I Test Default None 0 1 50 };\n"), Lines{"1:5 unknown property word \"I\""});
    EXPECT_EQ(of("a { Z in Default None 0 1 50 };\n"), Lines{"1:7 unknown property word \"in\""});
    EXPECT_EQ(of("a { Z In Tri-state None 0 1 50 };\n"), Lines{"1:10 unknown property word \"Tri-sta\""});
    EXPECT_EQ(of("a { Z In Default nrz 0 1 50 };\n"), Lines{"1:18 unknown property word \"nrz\""});
    EXPECT_EQ(of("a { Default\n NRZ x\n 1 5% };\n"),
              (Lines{"2:6 unknown property word \"x\"", "3:4 unknown property word \"5%\""}));
    EXPECT_EQ(of("a { Default NRZ 0 - 5 };\n"), Lines{"1:19 unknown property word \"-\""});
}

TEST_F(PassedOver, WordsInABlockThatIsTooShortOrTooLong) {
    EXPECT_EQ(of("a { In Default };\n"),
              (Lines{"1:5 unknown property word \"In\"", "1:8 unknown property word \"Default\""}));
    EXPECT_EQ(of("a { Z In Default None 0 1 50 60 ns };\n"),
              (Lines{"1:30 unknown property word \"60\"", "1:33 unknown property word \"ns\""}));
    EXPECT_EQ(of("a { Default " + std::string(100, 'x') + " };\n"),
              Lines{"1:13 unknown property word \"" + std::string(40, 'x') + "...\""});
}

TEST_F(PassedOver, ADirectiveWithoutItsEnd) {
    EXPECT_EQ(of("\n  %DECIMALS = 2\nA = 1 5;\nB = 1 5;\n"),
              Lines{"2:3 directive without its end, passed over: \"A = 1 5\""});
    EXPECT_EQ(of("%ENDTIME = 7\n"), Lines{"1:1 directive without its end"});
    EXPECT_EQ(of("%VERSION = 7\n$p\n"), Lines{"1:1 directive without its end, passed over: \"$p\""});
    EXPECT_EQ(of("%ENDTIME = 100 ns;\n"), Lines{"1:16 passed over: \"ns\""});
    EXPECT_EQ(of("%ENDTIME = soon ;\n"), Lines{"1:12 passed over: \"soon\""});
}
