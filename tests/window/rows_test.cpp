// The commands on rows, chosen with keys and menus.

#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

class Rows : public testing::Test {
protected:
    void SetUp() override {
        directory.write("rows.wdl", "%ENDTIME = 40;\n"
                                    "A { In Default None 0 1 50 } = 1 20;\n"
                                    "B { In Default None 0 1 50 } = 0 20;\n"
                                    "D[1:0] { Out Default None 0 1 50 } = 2 20;\n");
        directory.write("rows.kel", "Wave A\nWave B\nWave D[1:0]\n");
        editor = std::make_unique<Editor>(directory, "rows.wdl");
        ASSERT_TRUE(editor->open());
    }
    // The rows that a save would write.
    std::string rowsAfterSave() const {
        editor->command(COMMAND_SAVE);
        EXPECT_TRUE(editor->hasStrip("File successfully saved"));
        return directory.read("rows.kel");
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Expected sizes = ExpectedSizes();
};

} // namespace

TEST_F(Rows, F5HidesTheSelectedRow) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    PressKey(VK_F5);
    // The low line of B comes to the top.
    ASSERT_TRUE(
        WaitFor([&] { return PictureOfClient(editor->pane(3)).at(4, sizes.low(0)) == colour::blue; }));
    ASSERT_TRUE(editor->painted());
    EXPECT_NE(PictureOfClient(editor->pane(3)).at(4, sizes.high(0)), colour::blue);
    EXPECT_EQ(rowsAfterSave(), "Wave B\r\nWave D[1:0]\r\n");
}

TEST_F(Rows, DuplicateAppendsTheSelectedRow) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    PressKey('W', {VK_MENU});
    PressKey('D');
    ASSERT_TRUE(
        WaitFor([&] { return PictureOfClient(editor->pane(3)).at(4, sizes.high(3)) == colour::blue; }));
    EXPECT_EQ(rowsAfterSave(), "Wave A\r\nWave B\r\nWave D[1:0]\r\nWave A\r\n");
}

TEST_F(Rows, ExpandBusShowsTheBits) {
    ASSERT_TRUE(editor->plantSelectedRow(2));
    PressKey('W', {VK_MENU});
    PressKey('E');
    ASSERT_TRUE(WaitFor([&] {
        Picture names = PictureOfClient(editor->pane(2));
        return names.count(colour::black, 0, 4 * sizes.rowHeight, names.width, 5 * sizes.rowHeight) > 0;
    }));
    editor->shoot("bus-expanded");
    EXPECT_EQ(rowsAfterSave(), "Wave A\r\nWave B\r\nWave D[1:0]\r\nWave D[1]\r\nWave D[0]\r\n");
}

TEST_F(Rows, ExpandBusIsGrayOnABit) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    PressKey('W', {VK_MENU});
    PressKey('E');
    PressKey(VK_ESCAPE);
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(rowsAfterSave(), "Wave A\r\nWave B\r\nWave D[1:0]\r\n");
}
