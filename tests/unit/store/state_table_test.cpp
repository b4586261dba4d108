#include "store/state_table.h"

#include "config/paths.h"
#include "headless/headless.h"
#include "store/pattern_store.h"
#include "unit/support/fresh_store.h"

namespace {

class StateTables : public FreshStore {
protected:
    void load(const std::string &text) {
        snprintf(SimulatorIniPath, MAX_PATH_SIZE, "%s", directory.write("sim.ini", text).c_str());
        EXPECT_EQ(LoadStateTables(), 1);
    }
    static int find(const std::string &name) {
        char buffer[300];
        snprintf(buffer, sizeof buffer, "%s", name.c_str());
        return FindStateTable(buffer);
    }
    static const StateRow &row(uint32_t table, uint32_t state) {
        return StateRowOf(StateTableAt(table), state);
    }
    static uint32_t tables() {
        uint32_t count = 0;
        while (StateTableAt(count)) ++count;
        return count;
    }
    ScratchDirectory directory;
};

std::string Row(uint32_t state, const std::string &name) {
    return std::to_string(state) + " 1 4 H " + name + " H\n";
}

void *RefuseMemory(void *, size_t) {
    return nullptr;
}

TEST_F(StateTables, TheBuiltInTableHasFourStates) {
    EXPECT_EQ(tables(), 1u);
    ASSERT_EQ(find("Default"), 0);
    const StateTable *table = StateTableAt(0);
    ASSERT_EQ(table->rowCount, 4);
    struct {
        int level;
        int colorIndex;
        char stateChar;
        const char *name;
        const char *abbrev;
    } expected[] = {{0, 4, '0', "Low", "0"},
                    {1, 4, '1', "High", "1"},
                    {2, 1, 'X', "Unknown", "X"},
                    {1, 2, 'Z', "High-Z", "Z"}};
    for (uint32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(row(0, i).level, expected[i].level);
        EXPECT_EQ(row(0, i).colorIndex, expected[i].colorIndex);
        EXPECT_EQ(row(0, i).stateChar, expected[i].stateChar);
        EXPECT_STREQ(row(0, i).stateName, expected[i].name);
        EXPECT_STREQ(row(0, i).stateAbbrev, expected[i].abbrev);
    }
    EXPECT_EQ(StateBlockSize, 2912);
    EXPECT_EQ(StateBlockUsed, 512u + 4 * 24 + 10);
    EXPECT_EQ(reinterpret_cast<uint16_t *>(StateBlock)[0], 512);
}

TEST_F(StateTables, ASectionDefinesATable) {
    load("[StateTable\nTri\n0 0 4 L Low L\n1 1 4 H High H\n");
    ASSERT_EQ(find("Tri"), 1);
    EXPECT_EQ(StateTableAt(1)->rowCount, 2);
    EXPECT_STREQ(row(1, 1).stateName, "High");
    EXPECT_EQ(row(1, 0).stateChar, 'L');
}

TEST_F(StateTables, LongerSectionNamesCountAndOthersEndTheArea) {
    load("Ignored\n0 0 4 L Low L\n[statetable2]\nOne\n0 0 4 L Low L\n[Other]\nTwo\n0 0 4 L Low L\n");
    EXPECT_EQ(find("One"), 1);
    EXPECT_EQ(find("Two"), -1);
    EXPECT_EQ(find("Ignored"), -1);
}

TEST_F(StateTables, CommentsStandAtTheStartOfALine) {
    load("[StateTable\n;Zero\nTri\n;0 0 4 L Low L\n ; 1 2 3 4 5 6\n1 1 4 H High H\n");
    EXPECT_EQ(find("Zero"), -1);
    EXPECT_EQ(StateTableAt(1)->rowCount, 2);
    EXPECT_STREQ(row(1, 0).stateName, "4") << "behind blanks it is a row like any other, of state 0";
}

TEST_F(StateTables, RowsInBetweenAreUndefined) {
    load("[StateTable\nTri\n0 0 4 L Low L\n5 1 4 H High H\n");
    EXPECT_EQ(StateTableAt(1)->rowCount, 6);
    for (uint32_t i = 1; i <= 4; ++i) {
        EXPECT_EQ(row(1, i).level, 2);
        EXPECT_EQ(row(1, i).colorIndex, 1);
        EXPECT_EQ(row(1, i).stateChar, '?');
        EXPECT_STREQ(row(1, i).stateName, "??");
        EXPECT_STREQ(row(1, i).stateAbbrev, "??");
    }
}

TEST_F(StateTables, TheHighestStateIs255) {
    load("[StateTable\nTri\n" + Row(255, "Last") + Row(256, "Beyond") + "-1 1 4 H Minus H\n");
    EXPECT_EQ(StateTableAt(1)->rowCount, 256);
    EXPECT_STREQ(row(1, 255).stateName, "Last");
}

TEST_F(StateTables, FieldsAreSeparatedByBlanksCommasApostrophesAndEqualsSigns) {
    load("[StateTable\nTri\n0=1,4,,'H'  \"On, = high\"\t\"O N\" more\n");
    EXPECT_EQ(row(1, 0).level, 1);
    EXPECT_EQ(row(1, 0).stateChar, 'H');
    EXPECT_STREQ(row(1, 0).stateName, "On, = high");
    EXPECT_STREQ(row(1, 0).stateAbbrev, "O N");
}

TEST_F(StateTables, ATableMayBeNamedInSmallOrInLargeLetters) {
    for (char first : {'a', 'z', 'A', 'Z'}) {
        std::string name(1, first);
        load("[StateTable\n" + name + "\n0 0 4 L Low L\n");
        EXPECT_EQ(find(name), 1) << name;
    }
    // What stands beside the letters begins no name.
    for (char first : {'`', '{', '@', '[', '_'}) {
        load("[StateTable\nTri\n " + std::string(1, first) + "x\n0 0 4 L Low L\n");
        EXPECT_EQ(tables(), 2u) << first;
        EXPECT_EQ(find("Tri"), 1) << first;
    }
}

TEST_F(StateTables, WithoutMemoryForOneTableTheNextOnesAreRead) {
    ResizeBlock = RefuseMemory;
    load("[StateTable\nBig\n" + Row(255, "Last") + "Tri\n0 0 4 L Low L\n");
    ResizeBlock = realloc;
    EXPECT_EQ(find("Big"), -1);
    EXPECT_EQ(find("Tri"), 1);
    EXPECT_STREQ(row(1, 0).stateName, "Low");
}

TEST_F(StateTables, NumbersMayHaveBlanksAndASignInFront) {
    load("[StateTable\nTri\n\" +1\" -5 +7 H High H\n\" \" 99999999999 -99999999999 L Low L\n");
    EXPECT_EQ(StateTableAt(1)->rowCount, 2);
    EXPECT_STREQ(row(1, 1).stateName, "High");
    EXPECT_EQ(row(1, 1).level, -1);
    EXPECT_EQ(row(1, 1).colorIndex, 7);
    // What holds no number is 0, and what is beyond 32 bits the largest or the smallest of them.
    EXPECT_STREQ(row(1, 0).stateName, "Low");
    EXPECT_EQ(row(1, 0).level, 2147483647 % 4);
    EXPECT_EQ(row(1, 0).colorIndex, static_cast<uint8_t>(-2147483647));
}

TEST_F(StateTables, RowsMayComeInAnyOrder) {
    load("[StateTable\nTri\n" + Row(2, "Two") + Row(0, "None") + Row(1, "One"));
    EXPECT_EQ(StateTableAt(1)->rowCount, 3);
    EXPECT_STREQ(row(1, 0).stateName, "None");
    EXPECT_STREQ(row(1, 2).stateName, "Two");
}

TEST_F(StateTables, TheLastLineMayLackItsEnd) {
    load("[StateTable\nTri\n0 1 4 H High \"X");
    EXPECT_STREQ(row(1, 0).stateAbbrev, "X");
    load("[StateTable\nTri\n0 1 4 H High XY");
    EXPECT_STREQ(row(1, 0).stateAbbrev, "XY");
    load("[StateTable\nTri\n0 1 4 H High H\nTri");
    EXPECT_EQ(find("Tri"), -1) << "it has been taken away again";
}

TEST_F(StateTables, NamesAreCut) {
    load("[StateTable\nTristates and more\n0 0 4 L ABCDEFGHIJKLMNOPQRST WXYZ\n");
    EXPECT_STREQ(StateTableAt(1)->tableName, "Tristat");
    EXPECT_EQ(find("TRISTATES"), 1);
    EXPECT_STREQ(row(1, 0).stateName, "ABCDEFGHIJKLMNOP");
    EXPECT_STREQ(row(1, 0).stateAbbrev, "WXY");
}

TEST_F(StateTables, ALineOfFewerThanSixFieldsIsSkipped) {
    load("[StateTable\nTri\n0 0 4 L Low\n\n   \n");
    EXPECT_EQ(find("Tri"), -1);
}

TEST_F(StateTables, LevelsKeepTheirSignInTheRemainder) {
    load("[StateTable\nTri\n0 -1 4 L Low L\n1 7 300 H High H\n2 x y Z Odd Z\n");
    EXPECT_EQ(row(1, 0).level, -1);
    EXPECT_EQ(row(1, 1).level, 3);
    EXPECT_EQ(row(1, 1).colorIndex, 300 - 256);
    EXPECT_EQ(row(1, 2).level, 0);
    EXPECT_EQ(row(1, 2).colorIndex, 0);
}

TEST_F(StateTables, ATableOfTheSameNameReplacesTheFormerOne) {
    load("[StateTable\nOne\n0 0 4 L A L\nTwo\n0 0 4 L B L\nONE\n0 0 4 L C L\n");
    EXPECT_EQ(find("Two"), 1);
    EXPECT_EQ(find("One"), 2);
    EXPECT_STREQ(row(2, 0).stateName, "C");
    EXPECT_EQ(tables(), 3u);
}

TEST_F(StateTables, TheFileMayReplaceDefault) {
    load("[StateTable\nDEFAULT\n0 3 4 D Mine D\n");
    EXPECT_EQ(find("Default"), 0);
    EXPECT_EQ(tables(), 1u);
    EXPECT_STREQ(row(0, 0).stateName, "Mine");
}

TEST_F(StateTables, ANameWithoutRowsTakesTheFormerTableAway) {
    load("[StateTable\nDefault\n");
    EXPECT_EQ(tables(), 0u);
    EXPECT_EQ(find("Default"), -1);
    // What refers to a table still finds one.
    EXPECT_STREQ(StateTableOrDefault(0)->tableName, "Default");
    EXPECT_STREQ(StateRowOf(StateTableOrDefault(7), 1).stateName, "High");
}

TEST_F(StateTables, RowsInFrontOfAnyNameMakeNoTable) {
    load("[StateTable\n0 0 4 L Low L\n");
    EXPECT_EQ(tables(), 1u);
}

TEST_F(StateTables, The21stTableIsDroppedAndLoadingGoesOn) {
    std::string text = "[StateTable\n";
    for (int i = 0; i < 21; ++i)
        text += "T" + std::string(1, static_cast<char>('a' + i)) + "\n" + Row(0, "S");
    load(text + "Ta\n" + Row(0, "Again"));
    // Taking a table out of a full list leaves no slot, so that the last one is refused as well.
    EXPECT_EQ(Headless.userErrors, std::vector<std::string>(3, "Maximum number of state tables exceeded"));
    EXPECT_EQ(find("Ts"), 18);
}

TEST_F(StateTables, TheLastSlotKeepsItsValueWhenAFullListIsClosedUp) {
    while (tables() < MAX_STATE_TABLES) ASSERT_NE(AllocStateTable(1), nullptr);
    auto *slots = reinterpret_cast<uint16_t *>(StateBlock);
    uint16_t last = slots[19];
    DeleteStateTable(3);
    EXPECT_EQ(slots[18], last);
    EXPECT_EQ(slots[19], last);
    EXPECT_EQ(slots[20], 0);
    DeleteStateTable(20);
    EXPECT_EQ(slots[19], last);
}

TEST_F(StateTables, TablesBeyondTheReachOfTheSlotsAreRefused) {
    std::string text = "[StateTable\n";
    for (int i = 0; i < 15; ++i) text += "Big\n" + Row(255, "S");
    load(text);
    EXPECT_FALSE(Headless.userErrors.empty());
    for (uint32_t i = 0; const StateTable *table = StateTableAt(i); ++i) {
        EXPECT_LE(table->rowCount, 256);
        EXPECT_NE(row(i, 255).stateName[0], '\0');
    }
}

TEST_F(StateTables, TheBlockGrowsAndKeepsItsTables) {
    load("[StateTable\nBig\n" + Row(255, "Last"));
    EXPECT_EQ(StateBlockSize, static_cast<int32_t>(512 + 106 + 256 * 24 + 10 + 2400));
    EXPECT_STREQ(row(0, 1).stateName, "High");
}

TEST_F(StateTables, WithoutMemoryTheTableIsDropped) {
    ResizeBlock = RefuseMemory;
    load("[StateTable\nBig\n" + Row(255, "Last"));
    EXPECT_EQ(Headless.programErrors, std::vector<std::string>{"Unable to reallocate state table memory"});
    EXPECT_EQ(find("Big"), -1);
    EXPECT_EQ(find("Default"), 0);
    ResizeBlock = realloc;
}

TEST_F(StateTables, AMissingFileLeavesTheBuiltInTable) {
    snprintf(SimulatorIniPath, MAX_PATH_SIZE, "%s", directory.file("none.ini").c_str());
    EXPECT_EQ(LoadStateTables(), 1);
    EXPECT_EQ(tables(), 1u);
}

TEST_F(StateTables, AStateBeyondTheTableIsItsLastRow) {
    EXPECT_EQ(StateLevel(0, 0), 0);
    EXPECT_EQ(StateLevel(0, 3), 1);
    EXPECT_EQ(StateLevel(0, 4), 1);
    EXPECT_EQ(StateLevel(0, 0xFFFFFFFF), 1);
    EXPECT_EQ(StateLevel(9, 1), 0);
}

TEST_F(StateTables, ATableWithoutRowsHasUndefinedStates) {
    ASSERT_NE(AllocStateTable(0), nullptr);
    EXPECT_STREQ(row(1, 0).stateName, "??");
    EXPECT_EQ(StateLevel(1, 7), 2);
}

TEST_F(StateTables, WithoutTheStoreThereIsTheBuiltInTableAlone) {
    PatternStoreFree();
    EXPECT_EQ(tables(), 0u);
    EXPECT_EQ(find("Default"), -1);
    EXPECT_STREQ(StateTableOrDefault(0)->tableName, "Default");
}

TEST_F(StateTables, LongLinesAreReadInPieces) {
    load("[StateTable\nTri\n0 0 4 L Low L" + std::string(300, ' ') + "\n1 1 4 H High H\n");
    EXPECT_EQ(StateTableAt(1)->rowCount, 2);
}

TEST_F(StateTables, BytesAbove127AreOrdinaryCharacters) {
    load("[StateTable\nTri\n0 0 4 \xB5 \xC4rger L\n");
    EXPECT_EQ(row(1, 0).stateChar, '\xB5');
    EXPECT_STREQ(row(1, 0).stateName, "\xC4rger");
}

} // namespace
