#include "store/state_table.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/compiler.h"
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
