#include "config/settings.h"
#include "edit/edit_dialog_focus.h"
#include "edit/show_selection.h"
#include "headless/edit_dialog.h"
#include "unit/edit/gesture_fixture.h"

namespace {

// Edit mode with a bus of three values and a bit of three levels.
class KeysToWaves : public EditGestures {
protected:
    void SetUp() override {
        EditGestures::SetUp();
        bus = show(MakePattern("B[7:0]", {{0x11, 100}, {0x22, 100}, {0x33, 100}}, 8));
        bit = threeLevels("A");
        Settings.KeysToWaves = true;
    }
    static uint16_t focus() { return HeadlessEditDialog.focus; }
    static std::string text(uint16_t id) { return HeadlessEditDialog.texts[id]; }
    static constexpr uint32_t BUS = 0, BIT = 1;
    uint16_t bus, bit;
};

TEST_F(KeysToWaves, ASelectionLeavesTheKeyboardWhereItIs) {
    clickAt(50, BUS);
    ASSERT_EQ(EditSelection.SelKind, SEL_PULSE);
    EXPECT_EQ(focus(), 0);
    Settings.KeysToWaves = false;
    clickAt(150, BUS);
    EXPECT_EQ(focus(), EDIT_VALUE) << "without it the dialog takes the keyboard";
}

TEST_F(KeysToWaves, ADigitALetterOrANumberSignBeginsTheTextOfTheFirstField) {
    for (char c : {'0', '9', 'a', 'F', 'z', '#'}) {
        OtherReleased(Pane::Wave, 5, 5); // a second click would select more
        clickAt(50, BUS);
        EXPECT_TRUE(TypedInWaves(c)) << c;
        EXPECT_EQ(focus(), EDIT_VALUE);
        EXPECT_EQ(text(EDIT_VALUE), std::string(1, c));
        EXPECT_TRUE(EditDialog.FieldDirty);
        EditFieldCancelled();
        EXPECT_EQ(focus(), 0) << "the keyboard was only lent";
        EXPECT_EQ(text(EDIT_VALUE), "11");
    }
    clickAt(150, BIT);
    EXPECT_TRUE(TypedInWaves('7'));
    EXPECT_EQ(focus(), EDIT_DURATION);
    EditFieldCancelled();
    EXPECT_EQ(items(bit), "0:100 1:100 0:100");
}

TEST_F(KeysToWaves, OtherCharactersAreNotTyped) {
    clickAt(50, BUS);
    for (char c : {' ', '+', '-', '\b', '\r', '\x1B', '\t', '/', ':', '@', '[', '`', '{', '\x7F'}) {
        EXPECT_FALSE(TypedInWaves(c)) << static_cast<int>(c);
        EXPECT_EQ(focus(), 0);
    }
}

TEST_F(KeysToWaves, NothingIsTypedWithoutTheMarkWithoutAFieldOrWithoutTheDialog) {
    EXPECT_FALSE(TypedInWaves('1')) << "nothing is selected";
    clickAt(50, BUS);
    Settings.KeysToWaves = false;
    HeadlessFocus(0);
    EXPECT_FALSE(TypedInWaves('1'));
    Settings.KeysToWaves = true;
    HeadlessCloseEditDialog();
    EXPECT_FALSE(TypedInWaves('1'));
    EXPECT_EQ(focus(), 0);
}

TEST_F(KeysToWaves, TypingOnStaysInTheFieldThatWalksAlong) {
    clickAt(50, BUS);
    TypedInWaves('A');
    EditFieldEntered();
    EXPECT_EQ(focus(), EDIT_VALUE);
    EXPECT_EQ(text(EDIT_VALUE), "22");
    EXPECT_EQ(items(bus), "10:100 34:100 51:100");
}

TEST_F(KeysToWaves, AFieldThatIsDisabledGivesTheKeyboardToTheWaves) {
    clickAt(50, BUS);
    HeadlessFocus(EDIT_VALUE);
    select(bit, 150, 150);
    EXPECT_EQ(focus(), 0);
}

TEST_F(KeysToWaves, TheListOfStatesAndTheBoxKeepTheKeyboard) {
    clickAt(150, BIT);
    ASSERT_TRUE(HeadlessPickState(2, false));
    EXPECT_EQ(focus(), EDIT_STATES);
    drag(20, 250, {}, BIT);
    ASSERT_EQ(EditSelection.SelKind, SEL_SPAN);
    EXPECT_EQ(focus(), EDIT_STATES);
    clickAt(50, BUS);
    EXPECT_EQ(focus(), 0) << "a bus has no states";
    ASSERT_EQ(select(bus, 50, 300), SEL_SPAN);
    HeadlessFocus(EDIT_FOREVER);
    ShowSelection();
    EXPECT_EQ(focus(), EDIT_FOREVER);
    clickAt(50, BUS);
    EXPECT_EQ(focus(), 0) << "a pulse is not repeated";
}

TEST_F(KeysToWaves, TabGoesToTheFirstFieldInBothCases) {
    for (bool keys : {false, true}) {
        Settings.KeysToWaves = keys;
        clickAt(50, BUS);
        HeadlessFocus(0);
        EXPECT_TRUE(EnterEditDialog());
        EXPECT_EQ(focus(), EDIT_VALUE);
        HeadlessFocus(0);
    }
    OtherReleased(Pane::Wave, 5, 5);
    EXPECT_FALSE(EnterEditDialog()) << "nothing is selected";
    clickAt(50, BUS);
    HeadlessCloseEditDialog();
    EXPECT_FALSE(EnterEditDialog());
}

TEST_F(KeysToWaves, WithoutTheMarkEscapeTakesBackAndThenGivesTheKeyboardToTheWaves) {
    Settings.KeysToWaves = false;
    clickAt(50, BUS);
    ASSERT_TRUE(HeadlessType(EDIT_DURATION, "7"));
    EditFieldCancelled();
    EXPECT_EQ(focus(), EDIT_DURATION);
    EXPECT_EQ(text(EDIT_DURATION), TimeFormat(100));
    EditFieldCancelled();
    EXPECT_EQ(focus(), 0);
    EXPECT_EQ(items(bus), "17:100 34:100 51:100");
}

} // namespace
