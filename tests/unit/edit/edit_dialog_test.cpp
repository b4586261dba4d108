// What the floating dialog shows of a selection, and how the keyboard goes through it.
#include "edit/edit_dialog.h"

#include "config/settings.h"
#include "display/wave_view.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/edit/editing_fixture.h"
#include <cstring>

namespace {

using Texts = std::vector<std::string>;

class EditDialogTest : public EditingFixture {
protected:
    static std::string text(uint16_t id) { return HeadlessEditDialog.texts[id]; }
    static bool enabled(uint16_t id) { return HeadlessEditDialog.enabled[id]; }
    // The enabled controls, in the order of their numbers.
    static std::vector<int> enabledControls() {
        std::vector<int> ids;
        for (uint16_t id = EDIT_DURATION; id <= EDIT_FOREVER; id++)
            if (enabled(id)) ids.push_back(id);
        return ids;
    }
    static uint16_t focus() { return HeadlessEditDialog.focus; }
    static StateTable *addTable(const char *name, const Texts &states) {
        StateTable *table = AllocStateTable(static_cast<uint32_t>(states.size()));
        strcpy(table->tableName, name);
        table->rowCount = static_cast<uint16_t>(states.size());
        for (size_t i = 0; i < states.size(); i++) {
            table->rows()[i] = {};
            strcpy(table->rows()[i].stateName, states[i].c_str());
        }
        return table;
    }
};

const Transitions ITEMS = {{1, 10}, {0, 20}, {1, 30}};
const Transitions BUS_ITEMS = {{0xAB, 10}, {2, 20}, {3, 30}};

// --- which fields -----------------------------------------------------------------------------------

TEST_F(EditDialogTest, NothingSelectedHasNoFields) {
    ClearSelection();
    ShowSelection();
    EXPECT_EQ(enabledControls(), std::vector<int>{});
    for (uint16_t id = EDIT_DURATION; id <= EDIT_REPEAT; id++) EXPECT_EQ(text(id), "");
    EXPECT_EQ(HeadlessEditDialog.states, Texts{});
    EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
    EXPECT_EQ(focus(), 0) << "the keyboard stays where it is";
}

TEST_F(EditDialogTest, AnEdgeHasNone) {
    uint16_t a = MakePattern("A", ITEMS);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(enabledControls(), std::vector<int>{});
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Edge in Pattern A");
}

TEST_F(EditDialogTest, AWholeBit) {
    uint16_t a = MakePattern("A", ITEMS);
    ASSERT_EQ(select(a, 0, 60), SEL_WHOLE);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_SCALE, EDIT_REPEAT, EDIT_STATES, EDIT_FOREVER}));
    EXPECT_EQ(text(EDIT_DURATION), "");
    EXPECT_EQ(text(EDIT_VALUE), "");
    EXPECT_EQ(text(EDIT_SCALE), "1");
    EXPECT_EQ(text(EDIT_REPEAT), "1");
    EXPECT_EQ(HeadlessEditDialog.stateSelected, -1);
    EXPECT_EQ(focus(), EDIT_REPEAT);
}

TEST_F(EditDialogTest, AWholeBus) {
    uint16_t a = MakePattern("A[7:0]", BUS_ITEMS);
    ASSERT_EQ(select(a, 0, 60), SEL_WHOLE);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_VALUE, EDIT_SCALE, EDIT_REPEAT, EDIT_FOREVER}));
    EXPECT_EQ(text(EDIT_VALUE), "");
    EXPECT_EQ(HeadlessEditDialog.states, Texts{});
    EXPECT_EQ(focus(), EDIT_VALUE);
}

TEST_F(EditDialogTest, ABitPulse) {
    uint16_t a = MakePattern("A", ITEMS);
    ASSERT_EQ(select(a, 15, 15), SEL_PULSE);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_DURATION, EDIT_STATES}));
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(20));
    EXPECT_EQ(text(EDIT_VALUE), "0");
    EXPECT_EQ(text(EDIT_SCALE), "");
    EXPECT_EQ(text(EDIT_REPEAT), "");
    EXPECT_EQ(HeadlessEditDialog.stateSelected, 0);
    EXPECT_FALSE(HeadlessEditDialog.states.empty());
    EXPECT_EQ(focus(), EDIT_DURATION);
}

TEST_F(EditDialogTest, ABusPulse) {
    uint16_t a = MakePattern("A[7:0]", BUS_ITEMS);
    ASSERT_EQ(select(a, 5, 5), SEL_PULSE);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_DURATION, EDIT_VALUE}));
    EXPECT_EQ(text(EDIT_VALUE), "AB");
    EXPECT_EQ(HeadlessEditDialog.stateSelected, -1);
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(10));
    EXPECT_EQ(focus(), EDIT_VALUE);
}

TEST_F(EditDialogTest, ASpanOfABitAndOfABus) {
    uint16_t bit = MakePattern("A", ITEMS);
    ASSERT_EQ(select(bit, 5, 25), SEL_SPAN);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_SCALE, EDIT_REPEAT, EDIT_STATES}));
    EXPECT_EQ(HeadlessEditDialog.stateSelected, -1);
    uint16_t bus = MakePattern("B[7:0]", BUS_ITEMS);
    ASSERT_EQ(select(bus, 5, 25), SEL_SPAN);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_VALUE, EDIT_SCALE, EDIT_REPEAT}));
    EXPECT_EQ(text(EDIT_VALUE), "");
}

TEST_F(EditDialogTest, AReferenceShowsItsScaleAndRepeat) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 3, .repeat = 12});
    AddTransition(a, 1, 1);
    ASSERT_EQ(select(a, 10, 262), SEL_PATTERN);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_SCALE, EDIT_REPEAT}));
    EXPECT_EQ(text(EDIT_SCALE), "3");
    EXPECT_EQ(text(EDIT_REPEAT), "12");
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Pattern $s");
    EXPECT_EQ(focus(), EDIT_REPEAT);
}

TEST_F(EditDialogTest, ASpanThatBeginsWithAReferenceHasScaleAndRepeat1) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 3, .repeat = 2});
    AddTransition(a, 0, 8);
    ASSERT_EQ(select(a, 10, 60), SEL_SPAN);
    ASSERT_EQ(DeepestFrame().item, 1);
    EXPECT_EQ(text(EDIT_SCALE), "1");
    EXPECT_EQ(text(EDIT_REPEAT), "1");
}

TEST_F(EditDialogTest, AReferenceThatIsGoneHasScaleAndRepeat1) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 3, .repeat = 2});
    ASSERT_EQ(select(a, 10, 52), SEL_PATTERN);
    DeleteItem(PatternFromId(a), 1);
    ShowSelection();
    EXPECT_EQ(text(EDIT_SCALE), "1");
    EXPECT_EQ(text(EDIT_REPEAT), "1");
}

TEST_F(EditDialogTest, TheGreatestRepeatThatEndsIsANumber) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .repeat = 65534});
    ASSERT_EQ(select(a, 10, 10 + 7 * 65534), SEL_PATTERN);
    EXPECT_EQ(text(EDIT_REPEAT), "65534");
    EXPECT_TRUE(enabled(EDIT_REPEAT));
    EXPECT_FALSE(HeadlessEditDialog.foreverChecked);
}

TEST_F(EditDialogTest, AChannelOfAComposite) {
    uint16_t x = MakePattern("X", {{1, 50}});
    uint16_t c = MakePattern("C[1:0]");
    for (int i = 0; i < 2; i++) AddReference(c, {.id = x, .scale = 2}, PatternKind::Composite);
    ASSERT_EQ(select(c, 10, 20), SEL_COMPOSITE);
    EXPECT_EQ(enabledControls(), (std::vector<int>{EDIT_SCALE, EDIT_REPEAT}));
    EXPECT_EQ(text(EDIT_SCALE), "2");
}

TEST_F(EditDialogTest, ARepeatWithoutEndShowsTwoSharpsAndIsTakenAwayByItsBox) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub, .scale = 3, .repeat = REPEAT_FOREVER});
    ASSERT_EQ(select(a, 10, TIME_FOREVER), SEL_PATTERN);
    EXPECT_EQ(text(EDIT_REPEAT), "##");
    EXPECT_FALSE(enabled(EDIT_REPEAT));
    EXPECT_TRUE(HeadlessEditDialog.foreverChecked);
    EXPECT_TRUE(enabled(EDIT_FOREVER));
    EXPECT_EQ(focus(), EDIT_SCALE);
    // One beside it is not checked.
    select(a, 5, 5);
    EXPECT_FALSE(HeadlessEditDialog.foreverChecked);
}

// --- forever ----------------------------------------------------------------------------------------

TEST_F(EditDialogTest, ForeverIsForTheTailOfANode) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = sub});
    AddTransition(a, 0, 10);
    AddReference(a, {.id = sub});
    // 10, 17, 27, 34
    select(a, 0, 34);
    EXPECT_TRUE(enabled(EDIT_FOREVER)) << "the whole";
    ASSERT_EQ(select(a, 10, 17), SEL_PATTERN);
    EXPECT_FALSE(enabled(EDIT_FOREVER)) << "a reference in the middle";
    ASSERT_EQ(select(a, 27, 34), SEL_PATTERN);
    EXPECT_TRUE(enabled(EDIT_FOREVER)) << "the last one";
    ASSERT_EQ(select(a, 5, 20), SEL_SPAN);
    EXPECT_FALSE(enabled(EDIT_FOREVER)) << "a span in the middle";
    ASSERT_EQ(select(a, 20, 34), SEL_SPAN);
    EXPECT_TRUE(enabled(EDIT_FOREVER)) << "one up to the end";
    ASSERT_EQ(select(a, 20, 20), SEL_PULSE);
    EXPECT_FALSE(enabled(EDIT_FOREVER));
    EXPECT_FALSE(EditDialog.ForeverAllowed);
}

TEST_F(EditDialogTest, ForeverIsForTheTailOfADelayedNode) {
    uint16_t a = MakePattern("A", ITEMS);
    PatternFromId(a)->delay = 7;
    ASSERT_EQ(select(a, 20, 67), SEL_SPAN);
    EXPECT_TRUE(enabled(EDIT_FOREVER));
}

TEST_F(EditDialogTest, ForeverIsNotForSubPatterns) {
    uint16_t sub = MakePattern("$s", ITEMS);
    ASSERT_EQ(select(sub, 0, 60), SEL_WHOLE);
    EXPECT_FALSE(enabled(EDIT_FOREVER));
}

TEST_F(EditDialogTest, ForeverIsNotForTheInsideOfAReference) {
    uint16_t leaf = MakePattern("$leaf", {{1, 2}, {0, 2}});
    uint16_t inner = MakePattern("", {{1, 3}});
    AddReference(inner, {.id = leaf, .repeat = 2});
    uint16_t a = MakePattern("A", {{1, 10}});
    AddReference(a, {.id = inner, .repeat = 2});
    ASSERT_EQ(select(a, 24, 32), SEL_PATTERN);
    ASSERT_EQ(EditSelection.SelDepth, 2);
    EXPECT_FALSE(enabled(EDIT_FOREVER));
    uint16_t inner2 = MakePattern("", {{1, 3}, {0, 4}, {1, 5}});
    uint16_t b = MakePattern("B", {{1, 10}});
    AddReference(b, {.id = inner2});
    ASSERT_EQ(select(b, 14, 22), SEL_SPAN);
    ASSERT_EQ(EditSelection.SelDepth, 2);
    EXPECT_FALSE(enabled(EDIT_FOREVER));
}

// --- states -----------------------------------------------------------------------------------------

TEST_F(EditDialogTest, TheListIsMadeAnewOnlyForAnotherTable) {
    addTable("Other", {"Zero", "One", "Weak"});
    uint16_t a = MakePattern("A", ITEMS);
    uint16_t b = MakePattern("B", ITEMS);
    PatternFromId(b)->setStateTable(1);
    select(a, 15, 15);
    Texts first = HeadlessEditDialog.states;
    int listings = HeadlessEditDialog.listings;
    select(a, 5, 5);
    EXPECT_EQ(HeadlessEditDialog.listings, listings);
    EXPECT_EQ(HeadlessEditDialog.stateSelected, 1);
    select(b, 5, 5);
    EXPECT_EQ(HeadlessEditDialog.states, (Texts{"Zero", "One", "Weak"}));
    EXPECT_EQ(EditDialog.ListedStates, 1);
    click(b, 10);
    EXPECT_EQ(HeadlessEditDialog.states, Texts{}) << "without the field it is empty";
    EXPECT_EQ(EditDialog.ListedStates, NO_STATES);
    select(a, 5, 5);
    EXPECT_EQ(HeadlessEditDialog.states, first);
}

TEST_F(EditDialogTest, AValueBeyondTheTableIsItsLastState) {
    addTable("Other", {"Zero", "One", "Weak"});
    uint16_t a = MakePattern("A", {{1, 10}, {77, 10}});
    PatternFromId(a)->setStateTable(1);
    select(a, 15, 15);
    EXPECT_EQ(HeadlessEditDialog.stateSelected, 2);
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Bit Pulse = Weak");
    EXPECT_EQ(text(EDIT_VALUE), "4D");
}

// --- the keyboard -------------------------------------------------------------------------------------

TEST_F(EditDialogTest, TheFieldToKeepComesFirstAndOnlyOnce) {
    uint16_t a = MakePattern("A[7:0]", BUS_ITEMS);
    EditDialog.KeepFocus = EDIT_DURATION;
    select(a, 5, 5);
    EXPECT_EQ(focus(), EDIT_DURATION);
    EXPECT_EQ(EditDialog.KeepFocus, 0);
    select(a, 5, 5);
    EXPECT_EQ(focus(), EDIT_VALUE);
    // One that this selection does not have is passed over.
    EditDialog.KeepFocus = EDIT_VALUE;
    uint16_t b = MakePattern("B", ITEMS);
    select(b, 5, 5);
    EXPECT_EQ(focus(), EDIT_DURATION);
}

TEST_F(EditDialogTest, AFieldThatLosesTheFocusUntypedWritesNothing) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 5, 5);
    HeadlessFocus(EDIT_DURATION);
    EXPECT_EQ(EditDialog.ActiveField, EDIT_DURATION);
    HeadlessFocus(0);
    EXPECT_EQ(EditDialog.ActiveField, 0);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(EditDialogTest, LeavingATypedFieldWritesIt) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 5, 5);
    ASSERT_TRUE(HeadlessType(EDIT_DURATION, "33"));
    EXPECT_TRUE(EditDialog.FieldDirty);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
    HeadlessFocus(EDIT_STATES);
    EXPECT_EQ(items(a), "1:33 0:20 1:30");
    EXPECT_FALSE(EditDialog.FieldDirty);
}

TEST_F(EditDialogTest, AnotherSelectionForgetsWhatWasTyped) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 5, 5);
    HeadlessType(EDIT_DURATION, "33");
    // By a key of the main window: the field is disabled, and loses the focus so.
    click(a, 10);
    EXPECT_EQ(focus(), 0);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
    select(a, 5, 5);
    HeadlessType(EDIT_DURATION, "33");
    select(a, 15, 15);
    HeadlessFocus(0);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
    // A field that both selections have is empty now, and that is not to be written either.
    uint16_t b = MakePattern("B[7:0]", BUS_ITEMS);
    select(b, 5, 5);
    HeadlessType(EDIT_VALUE, "33");
    ASSERT_EQ(select(b, 5, 25), SEL_SPAN);
    ASSERT_EQ(focus(), EDIT_VALUE);
    HeadlessFocus(0);
    EXPECT_EQ(items(b), "171:10 2:20 3:30");
}

TEST_F(EditDialogTest, EscapePutsTheTextBack) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 5, 5);
    HeadlessType(EDIT_DURATION, "33");
    EditFieldCancelled();
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(10));
    EXPECT_EQ(focus(), EDIT_DURATION);
    HeadlessFocus(0);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
}

TEST_F(EditDialogTest, EscapeStaysInItsField) {
    uint16_t a = MakePattern("A[7:0]", BUS_ITEMS);
    select(a, 5, 5);
    HeadlessType(EDIT_DURATION, "33");
    EditFieldCancelled();
    EXPECT_EQ(focus(), EDIT_DURATION) << "though the value would come first";
}

TEST_F(EditDialogTest, WhatNoFieldTakesIsForgottenToo) {
    uint16_t a = MakePattern("A", ITEMS);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EditDialog.ActiveField = EDIT_DURATION;
    EditDialog.FieldDirty = true;
    EditFieldEntered();
    EXPECT_FALSE(EditDialog.FieldDirty);
    EditDialog.FieldDirty = true;
    EditFieldLeft(EDIT_DURATION);
    EXPECT_FALSE(EditDialog.FieldDirty);
    EXPECT_EQ(EditDialog.ActiveField, 0);
}

TEST_F(EditDialogTest, AFieldThatGetsTheFocusIsNotDirty) {
    EditDialog.FieldDirty = true;
    EditFieldFocused(EDIT_SCALE);
    EXPECT_FALSE(EditDialog.FieldDirty);
}

TEST_F(EditDialogTest, EnterWithoutAnActiveFieldDoesNothing) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 5, 5);
    HeadlessFocus(EDIT_STATES);
    EditFieldEntered();
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(EditDialogTest, OnlyTheActiveFieldGetsDirty) {
    EditFieldFocused(EDIT_SCALE);
    EditFieldChanged(EDIT_REPEAT);
    EXPECT_FALSE(EditDialog.FieldDirty);
    EditFieldChanged(EDIT_SCALE);
    EXPECT_TRUE(EditDialog.FieldDirty);
    EditFieldFocused(EDIT_STATES);
    EXPECT_EQ(EditDialog.ActiveField, EDIT_SCALE) << "the list is no field";
    EditDialog.FieldDirty = false;
}

// --- the window ---------------------------------------------------------------------------------------

TEST_F(EditDialogTest, ItIsMadeOnceAndThenBroughtToTheTop) {
    EXPECT_TRUE(HeadlessEditDialog.open);
    OpenEditDialog();
    EXPECT_EQ(HeadlessEditDialog.shown, 2);
    select(MakePattern("A", ITEMS), 5, 5);
    ASSERT_FALSE(HeadlessEditDialog.states.empty());
    HeadlessCloseEditDialog();
    EditDialog.ActiveField = EDIT_SCALE;
    EditDialog.FieldDirty = true;
    OpenEditDialog();
    EXPECT_EQ(EditDialog.ListedStates, NO_STATES);
    EXPECT_EQ(HeadlessEditDialog.states, Texts{});
    EXPECT_EQ(EditDialog.ActiveField, 0);
    EXPECT_FALSE(EditDialog.FieldDirty);
    InitEditDialog();
    EXPECT_EQ(EditDialog.ListedStates, NO_STATES) << "from the start";
}

TEST_F(EditDialogTest, ClosedItShowsNothingAndEditsGoOn) {
    HeadlessCloseEditDialog();
    uint16_t a = MakePattern("A", ITEMS);
    EditDialog.KeepFocus = EDIT_DURATION;
    select(a, 5, 5);
    EXPECT_EQ(HeadlessEditDialog.title, "");
    EXPECT_EQ(focus(), 0);
    EXPECT_EQ(EditDialog.KeepFocus, 0);
    EXPECT_FALSE(HeadlessType(EDIT_DURATION, "3"));
    OpenEditDialog();
    ShowSelection();
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(10));
}

} // namespace
