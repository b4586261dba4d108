// The lines of the waveform data listing.
#include "config/paths.h"
#include "config/settings.h"
#include "display/data_listing.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include "unit/support/fresh_store.h"

namespace {

using Lines = std::vector<std::string>;

class DataListing : public FreshStore {
protected:
    Lines list(uint16_t id) {
        Lines lines;
        ListPatternData(
            PatternFromId(id),
            [](const char *line, void *context) {
                static_cast<Lines *>(context)->push_back(line);
                return true;
            },
            &lines);
        return lines;
    }
    // The lines that a list with room for so many takes. It is not asked again once it has refused one.
    static uint32_t Taken(uint16_t id, int room) {
        uint32_t taken = ListPatternData(
            PatternFromId(id),
            [](const char *, void *context) { return (*static_cast<int *>(context))-- > 0; }, &room);
        EXPECT_GE(room, -1);
        return taken;
    }
    uint16_t slices(const char *name, const std::vector<Use> &uses) {
        uint16_t id = MakePattern(name);
        for (const Use &use : uses) AddReference(id, use, PatternKind::Reference);
        return id;
    }
};

TEST_F(DataListing, ListsTheStatesOfABit) {
    EXPECT_EQ(
        list(MakePattern("CLK", {{0, 10}, {1, 1000000}, {2, 3}, {3, 4}})),
        (Lines{"CLK - Bit", "  Data - 0 - 10", "  Data - 1 - 1000000", "  Data - X - 3", "  Data - Z - 4"}));
}

TEST_F(DataListing, ReadsAStateBeyondTheTableAsItsLastOne) {
    EXPECT_EQ(list(MakePattern("CLK", {{77, 10}})), (Lines{"CLK - Bit", "  Data - Z - 10"}));
}

TEST_F(DataListing, ListsTheValuesOfABusInLowerCaseHexadecimalWhateverTheRadix) {
    Settings.BusRadix = 2;
    EXPECT_EQ(list(MakePattern("D[11:0]", {{0xABC, 5}, {0xFFFF1, 6}})),
              (Lines{"D[11:0] - Bus [12]", "  Data - abc - 5", "  Data - ff1 - 6"}));
    EXPECT_EQ(list(MakePattern("E[4:0]", {{3, 5}})), (Lines{"E[4:0] - Bus [5]", "  Data - 03 - 5"}));
    EXPECT_EQ(list(MakePattern("F[31:0]", {{0xFEDCBA98, 5}})),
              (Lines{"F[31:0] - Bus [32]", "  Data - fedcba98 - 5"}));
}

TEST_F(DataListing, PutsTheDelayUnderTheHead) {
    uint16_t id = MakePattern("CLK", {{1, 5}});
    SetPatternDelay(PatternFromId(id), 1000);
    EXPECT_EQ(list(id), (Lines{"CLK - Bit", "  Offset 1,000 ps", "  Data - 1 - 5"}));
}

TEST_F(DataListing, IndentsNestedPatternsWithTheirScaleAndRepeat) {
    uint16_t unnamed = MakePattern("", {{0, 1}});
    uint16_t inner = MakePattern("$in", {{1, 2}});
    AddReference(inner, {.id = unnamed, .scale = 3, .repeat = 2});
    uint16_t id = MakePattern("A");
    AddReference(id, {.id = inner});
    AddReference(id, {.id = unnamed, .scale = 2});
    AddReference(id, {.id = inner, .repeat = REPEAT_FOREVER});
    EXPECT_EQ(list(id),
              (Lines{"A - Bit", "  $in", "    Data - 1 - 2", "    (...) Scale 3 Repeat 2",
                     "      Data - 0 - 1", "  (...) Scale 2", "    Data - 0 - 1", "  $in Repeat Forever",
                     "    Data - 1 - 2", "    (...) Scale 3 Repeat 2", "      Data - 0 - 1"}));
}

TEST_F(DataListing, ListsTheMembersOfAComposite) {
    uint16_t a = MakePattern("$a", {{1, 2}});
    uint16_t id = MakePattern("B[1:0]");
    AddReference(id, {.id = a}, PatternKind::Composite);
    AddReference(id, {.id = a}, PatternKind::Composite);
    EXPECT_EQ(list(id), (Lines{"B[1:0] - Bus [2]", "  $a", "    Data - 1 - 2", "  $a", "    Data - 1 - 2"}));
}

TEST_F(DataListing, NamesTheBitsOfAViewFromTheTop) {
    uint16_t bus = MakePattern("D[7:0]");
    uint16_t bit = MakePattern("CS");
    EXPECT_EQ(
        list(slices("v", {{.id = bus, .sliceWidth = 1, .sliceOffset = 5},
                          {.id = bus, .sliceWidth = 1, .sliceOffset = 7},
                          {.id = bus, .sliceWidth = 1, .sliceOffset = 6},
                          {.id = bus, .sliceWidth = 2, .sliceOffset = 5},
                          {.id = bus, .sliceWidth = 2, .sliceOffset = 6},
                          {.id = bus, .sliceWidth = 4, .sliceOffset = 0},
                          {.id = bit, .sliceWidth = 1}})),
        (Lines{"v - Reference", "      D[7:0] - 3th bit", "      D[7:0] - 1st bit", "      D[7:0] - 2nd bit",
               "      D[7:0] - 2nd thru 3th bits", "      D[7:0] - 1st thru 1st bits",
               "      D[7:0] - 5th thru 8th bits", "          CS"}));
}

TEST_F(DataListing, SurvivesASliceBeyondItsBus) {
    uint16_t bus = MakePattern("D[1:0]");
    EXPECT_EQ(list(slices("v", {{.id = bus, .sliceWidth = 9, .sliceOffset = 31}})).size(), 2u);
    EXPECT_EQ(list(slices("w", {{.id = bus}}))[1], "      D[1:0] - 2nd bit");
}

TEST_F(DataListing, TakesNamesOfAnyLength) {
    std::string name = "N" + std::string(900, 'x');
    uint16_t id = MakePattern(name.c_str(), {{1, 2}});
    EXPECT_EQ(list(id)[0], name + " - Bit");
    EXPECT_EQ(list(slices("v", {{.id = id, .sliceWidth = 1}}))[1], "  " + name);
}

TEST_F(DataListing, UsesTheTopBitsStateTableForWhatIsNestedAndTheFirstForABus) {
    StateTable *table = AllocStateTable(2);
    ASSERT_NE(table, nullptr);
    table->rowCount = 2;
    table->rows()[0] = {0, 4, 'L', "Low", "L"};
    table->rows()[1] = {1, 4, 'H', "High", "H"};
    uint16_t part = MakePattern("$p", {{1, 2}});
    uint16_t bit = MakePattern("A");
    AddReference(bit, {.id = part});
    SetPatternParams(PatternFromId(bit), 1, 0, 0, 1, 50, 0);
    EXPECT_EQ(list(bit)[2], "    Data - H - 2");
    uint16_t bus = MakePattern("B[1:0]");
    AddReference(bus, {.id = part}, PatternKind::Composite);
    SetPatternParams(PatternFromId(bus), 1, 0, 0, 1, 50, 0);
    EXPECT_EQ(list(bus)[2], "    Data - 1 - 2");
}

TEST_F(DataListing, CountsTheLinesThatWereTaken) {
    uint16_t id = MakePattern("A", {{0, 1}, {1, 1}, {0, 1}});
    EXPECT_EQ(Taken(id, 2), 2u);
    EXPECT_EQ(Taken(id, 100), 4u);
}

TEST_F(DataListing, PassesOverReferencesToNothing) {
    uint16_t part = MakePattern("$p", {{1, 2}});
    uint16_t id = MakePattern("A");
    AddReference(id, {.id = 3000});
    AddReference(id, {.id = part});
    EXPECT_EQ(list(id), (Lines{"A - Bit", "  $p", "    Data - 1 - 2"}));
    uint16_t reference = slices("B", {{.id = 3000, .sliceWidth = 1}, {.id = part, .sliceWidth = 1}});
    AddTransition(reference, 1, 5);
    EXPECT_EQ(list(reference), (Lines{"B - Reference", "          $p"}));
}

TEST_F(DataListing, EndsWithTheFirstLineThatIsNotTaken) {
    uint16_t delayed = MakePattern("B", {{1, 1}});
    PatternFromId(delayed)->delay = 5;
    uint16_t reference = slices("C", {{.id = delayed}, {.id = delayed}});
    for (uint16_t pattern : {delayed, reference})
        for (int room : {0, 1, 2}) EXPECT_EQ(Taken(pattern, room), static_cast<uint32_t>(room));
    // Each pattern uses the one before twice, which makes more lines than anybody could wait for.
    uint16_t id = MakePattern("$0", {{1, 1}});
    for (int i = 1; i < 200; ++i) {
        uint16_t outer = MakePattern(("$" + std::to_string(i)).c_str());
        for (int use : {1, 2}) AddReference(outer, {.id = id, .scale = static_cast<uint16_t>(use)});
        id = outer;
    }
    EXPECT_EQ(Taken(id, 1000), 1000u);
}

} // namespace
