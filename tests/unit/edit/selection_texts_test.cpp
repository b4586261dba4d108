#include "config/settings.h"
#include "edit/show_selection.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/edit/selection_fixture.h"

TEST_F(Selection, ATextTellsEachKind) {
    uint16_t a = around({part(), 1, 3});
    EXPECT_EQ(SelectionText(), "Nothing Selected");
    click(a, 100);
    EXPECT_EQ(SelectionText(), "Selected Edge in Pattern A");
    select(a, 0, TIME_FOREVER);
    EXPECT_EQ(SelectionText(), "Selected Entire Pattern A");
    select(a, 50, 50);
    EXPECT_EQ(SelectionText(), "Selected Bit Pulse = Low");
    select(a, 300, 300);
    EXPECT_EQ(SelectionText(), "Selected Bit Pulse = High");
    select(a, 100, 220);
    EXPECT_EQ(SelectionText(), "Selected Pattern $P");
    select(a, 50, 300);
    EXPECT_EQ(SelectionText(), "Selected Interval in Pattern A");
    EditSelection.SelKind = SEL_STRETCH;
    EXPECT_EQ(SelectionText(), "Nothing Selected");
    EditSelection.SelKind = SEL_COMPOSITE;
    EXPECT_EQ(SelectionText(), "Selected Composite Bus");
}

TEST_F(Selection, AnUnnamedPatternIsTextedInBrackets) {
    uint16_t a = around({MakePattern("", {{0, 10}, {1, 30}, {0, 10}})});
    select(a, 100, 150);
    EXPECT_EQ(SelectionText(), "Selected Pattern (...)");
    select(a, 105, 125);
    EXPECT_EQ(SelectionText(), "Selected Interval in Pattern (...)");
    click(a, 110);
    EXPECT_EQ(SelectionText(), "Selected Edge in Pattern (...)");
}

TEST_F(Selection, AReferenceThatIsGoneHasNoName) {
    uint16_t a = MakePattern("A");
    AddReference(a, {part()});
    select(a, 0, TIME_FOREVER);
    EXPECT_EQ(SelectionText(), "Selected Pattern $P");
    DeepestFrame().item = 1;
    EXPECT_EQ(SelectionText(), "Selected Pattern (...)");
    DeepestFrame().item = 0;
    PatternRelease(PatternFromId(PatternFromId(a)->item(0).patternId()));
    EXPECT_EQ(SelectionText(), "Selected Pattern (...)");
}

TEST_F(Selection, AStateIsNamedByTheTableOfTheRowsWave) {
    StateTable *table = AllocStateTable(2);
    ASSERT_NE(table, nullptr);
    table->rowCount = 2;
    table->rows()[0] = {0, 4, 'L', "Driven low", "L"};
    table->rows()[1] = {1, 4, 'H', "Driven high", "H"};
    uint16_t a = around({part()});
    PatternFromId(a)->setStateTable(1);
    select(a, 50, 50);
    EXPECT_EQ(SelectionText(), "Selected Bit Pulse = Driven low");
    select(a, 120, 120);
    EXPECT_EQ(EditSelection.SelDepth, 2);
    EXPECT_EQ(SelectionText(), "Selected Bit Pulse = Driven high") << "in a pattern with a table of its own";
}

TEST_F(Selection, AValueBeyondTheStateTableReadsAsItsLast) {
    uint16_t a = MakePattern("A", {{77, 100}, {0, 100}});
    select(a, 50, 50);
    std::string last = SelectionText();
    PatternFromId(a)->item(0).word1 = 100;
    select(a, 50, 50);
    EXPECT_EQ(SelectionText(), last);
    EXPECT_NE(last, "Selected Bit Pulse = Low");
}

TEST_F(Selection, TheValueOfABusIsInItsRadix) {
    uint16_t bus = MakePattern("D[7:0]", {{0xA5, 100}, {3, 100}});
    select(bus, 50, 50);
    char text[BUS_TEXT_SIZE];
    EXPECT_EQ(SelectionText(),
              std::string("Selected Bus Pulse = ") + FormatBusValue(0xA5, 8, text, sizeof text));
    Settings.BusRadix = 10;
    EXPECT_EQ(SelectionText(), "Selected Bus Pulse = 165");
}

namespace {

std::string Fields() {
    std::string text;
    if (SelectionHasDuration()) text += "duration ";
    if (SelectionHasValue()) text += "value ";
    if (SelectionHasScale()) text += "scale ";
    if (SelectionHasRepeat()) text += "repeat ";
    if (SelectionHasStates()) text += "states ";
    return text;
}

} // namespace

TEST_F(Selection, EachKindHasItsFields) {
    for (uint32_t width : {1u, 8u}) {
        uint16_t id = MakePattern(width == 1 ? "A" : "D[7:0]", {{0, 100}, {1, 100}});
        std::string level = width == 1 ? "scale repeat states " : "value scale repeat ";
        select(id, 50, 50);
        EXPECT_EQ(Fields(), width == 1 ? "duration states " : "duration value ");
        const std::string expected[] = {"", "", level, Fields(), "scale repeat ", "", level, "scale repeat "};
        for (uint16_t kind = SEL_NONE; kind <= SEL_COMPOSITE; kind++) {
            EditSelection.SelKind = kind;
            EXPECT_EQ(Fields(), expected[kind]) << kind << " of width " << width;
        }
    }
}
