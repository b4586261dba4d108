// Selecting and dragging with the real mouse in Edit mode, seen in what is saved.

#include "editlog/edit_log.h"
#include "shell/command_ids.h"
#include "window/view_driver.h"
#include <cstddef>

namespace {

// The rows of the document.
constexpr int LEVELS = 0;
constexpr int NESTED = 1;
constexpr int BUS = 2;

// One pixel is one time unit.
class EditGestures : public ViewDriver {
protected:
    void SetUp() override {
        directory.write("edit.wdl", "%ENDTIME = 500;\n"
                                    "$P = 0 20 1 60;\n"
                                    "A { Z In Default None 0 1 50 } = 0 100 1 100 0 100;\n"
                                    "B { Z In Default None 0 1 50 } = 0 100 $P #3 1 100;\n"
                                    "D[7:0] { Z In Default None 0 1 50 } = a5 100 3c 100 ff 100;\n");
        directory.write("edit.kel", "Wave A\nWave B\nWave D[7:0]\n");
        open("edit", true);
        // Out of the mouse's way.
        SetWindowPos(editor->editDialog().window, nullptr, GetSystemMetrics(SM_CXSCREEN) - 4,
                     GetSystemMetrics(SM_CYSCREEN) - 4, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
        ASSERT_EQ(view().Scale, 0);
        ASSERT_EQ(view().ViewLeft, 0u);
    }
    void clickAt(int time, int row, bool shift = false) const { dragTo(time, time, row, shift); }
    void dragTo(int from, int to, int row, bool shift = false) const {
        moveTo(3, from, rowMiddle(row));
        // A moved pointer may let go of keys that no hand holds.
        if (shift) SendKey(VK_SHIFT, 0);
        press();
        if (shift) SendKey(VK_SHIFT, KEYEVENTF_KEYUP);
        if (from != to) {
            moveTo(3, (from + to) / 2, rowMiddle(row));
            moveTo(3, to, rowMiddle(row));
        }
        release();
    }
    // What stands behind the equals sign of the statement of `name`, once the document is saved.
    std::string saved(const std::string &name) const {
        directory.write("edit.wdl", "");
        editor->command(COMMAND_SAVE);
        std::string text;
        WaitFor([&] {
            text = directory.read("edit.wdl");
            return text.find("D[7:0]") != std::string::npos && text.ends_with(";\r\n") && isDone();
        });
        size_t start = text.find("\n" + name + " {");
        if (start == std::string::npos) start = text.find("\n" + name + " =");
        if (start == std::string::npos) return "no " + name + " in " + text;
        start = text.find("= ", start) + 2;
        return text.substr(start, text.find(';', start) - start);
    }
    testing::AssertionResult selectionBecomes(TimeVal start, TimeVal end) const {
        return becomes([=](const WaveViewRecord &now) {
            return now.SelectActive && now.SelectStart == start && now.SelectEnd == end;
        });
    }
    // There is something in the log to be undone, or nothing.
    bool logBecomes(bool some) const {
        return WaitFor([&] {
            int32_t position = 0;
            editor->readMemory(editor->address("EditLog") + offsetof(EditLogRecord, rPtr), &position,
                               sizeof position);
            return (position != 0) == some && isDone();
        });
    }
    testing::AssertionResult titleBecomes(const std::string &title) const {
        if (WaitFor([&] { return TextOf(editor->editDialog().window) == title; }, 10))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "it is " << TextOf(editor->editDialog().window);
    }
};

} // namespace

TEST_F(EditGestures, AClickSelectsALevelOrAnEdge) {
    clickAt(150, LEVELS);
    EXPECT_TRUE(selectionBecomes(100, 200));
    EXPECT_TRUE(titleBecomes("Selected Bit Pulse = High"));
    editor->shoot("selected-pulse");
    editor->command(COMMAND_EDIT_MODE);
    clickAt(201, LEVELS);
    EXPECT_TRUE(selectionBecomes(200, 200));
    EXPECT_TRUE(titleBecomes("Selected Edge in Pattern A"));
    clickAt(50, BUS);
    EXPECT_TRUE(titleBecomes("Selected Bus Pulse = A5"));
}

TEST_F(EditGestures, ADragInsideALevelMakesAPulse) {
    moveTo(3, 130, rowMiddle(LEVELS));
    press();
    EXPECT_TRUE(promptIs("empty line"));
    moveTo(3, 170, rowMiddle(LEVELS));
    EXPECT_TRUE(promptIs("Select from 130 to 170 ps"));
    release();
    EXPECT_TRUE(selectionBecomes(130, 170));
    EXPECT_EQ(saved("A"), "0 100 1 30 0 40 1 30 0 100");
}

TEST_F(EditGestures, ADragOverLevelsSelectsThemAndChangesNothing) {
    dragTo(50, 150, LEVELS);
    EXPECT_TRUE(selectionBecomes(50, 150));
    EXPECT_TRUE(titleBecomes("Selected Interval in Pattern A"));
    EXPECT_EQ(saved("A"), "0 100 1 100 0 100");
}

TEST_F(EditGestures, AnEdgeIsDraggedBothWays) {
    clickAt(150, LEVELS);
    EXPECT_TRUE(selectionBecomes(100, 200));
    dragTo(190, 230, LEVELS);
    EXPECT_TRUE(selectionBecomes(100, 240));
    dragTo(230, 170, LEVELS);
    EXPECT_TRUE(selectionBecomes(100, 180));
    dragTo(110, 60, LEVELS);
    EXPECT_TRUE(selectionBecomes(50, 180));
    EXPECT_EQ(saved("A"), "0 50 1 130 0 120");
}

TEST_F(EditGestures, WithShiftAnEdgeTakesTheRestAlong) {
    clickAt(150, LEVELS);
    EXPECT_TRUE(selectionBecomes(100, 200));
    dragTo(190, 230, LEVELS, true);
    EXPECT_TRUE(selectionBecomes(100, 240));
    dragTo(230, 180, LEVELS, true);
    EXPECT_TRUE(selectionBecomes(100, 190));
    EXPECT_EQ(saved("A"), "0 100 1 90 0 100");
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return !now.SelectActive; }))
        << "a save takes the selection away";
}

TEST_F(EditGestures, AShiftDragInsideALevelInsertsAPulse) {
    dragTo(130, 170, LEVELS, true);
    EXPECT_TRUE(selectionBecomes(130, 170));
    PressKey(VK_F9);
    EXPECT_TRUE(logBecomes(false));
    EXPECT_FALSE(view().SelectActive);
    PressKey(VK_F9, {VK_SHIFT});
    EXPECT_TRUE(logBecomes(true));
    EXPECT_EQ(saved("A"), "0 100 1 30 0 40 1 70 0 100");
}

TEST_F(EditGestures, ADragBehindTheEndMakesTheWaveLonger) {
    clickAt(400, LEVELS);
    EXPECT_TRUE(selectionBecomes(300, 300));
    EXPECT_TRUE(titleBecomes("Selected Edge in Pattern A"));
    dragTo(360, 420, LEVELS);
    EXPECT_TRUE(selectionBecomes(300, 420));
    EXPECT_EQ(saved("A"), "0 100 1 100 0 100 1 120");
}

TEST_F(EditGestures, ClicksWalkOutOfAReference) {
    clickAt(230, NESTED);
    EXPECT_TRUE(selectionBecomes(200, 260));
    clickAt(230, NESTED);
    EXPECT_TRUE(selectionBecomes(100, 340));
    EXPECT_TRUE(titleBecomes("Selected Pattern $P"));
    EXPECT_TRUE(cursorBecomes(340));
    clickAt(230, NESTED);
    EXPECT_TRUE(selectionBecomes(0, 440));
    EXPECT_TRUE(titleBecomes("Selected Entire Pattern B"));
}

TEST_F(EditGestures, APulseInALaterRepetitionIsEditedInAll) {
    clickAt(230, NESTED);
    EXPECT_TRUE(selectionBecomes(200, 260));
    dragTo(210, 230, NESTED);
    EXPECT_TRUE(selectionBecomes(220, 260));
    EXPECT_EQ(saved("$P"), "0 40 1 40");
}

TEST_F(EditGestures, AShiftDragMovesTheWholeWave) {
    clickAt(50, LEVELS);
    EXPECT_TRUE(selectionBecomes(0, 100));
    clickAt(50, LEVELS);
    EXPECT_TRUE(selectionBecomes(0, 300));
    dragTo(50, 110, LEVELS, true);
    EXPECT_TRUE(selectionBecomes(60, 360));
    EXPECT_EQ(saved("A"), "0 100 1 100 0 100");
    EXPECT_NE(directory.read("edit.wdl").find("A { Z In Default None 60 1 50 }"), std::string::npos);
}

TEST_F(EditGestures, QueryModeEditsNothing) {
    PressKey(VK_F2);
    ASSERT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    dragTo(130, 170, LEVELS);
    EXPECT_TRUE(cursorBecomes(170));
    dragTo(130, 180, LEVELS, true);
    EXPECT_TRUE(cursorBecomes(180));
    dragTo(400, 450, LEVELS);
    EXPECT_TRUE(cursorBecomes(450));
    EXPECT_FALSE(view().SelectActive);
    EXPECT_EQ(saved("A"), "0 100 1 100 0 100");
}

TEST_F(EditGestures, DeleteTakesTheSelectionOut) {
    clickAt(150, BUS);
    EXPECT_TRUE(selectionBecomes(100, 200));
    // The dialog would take the key for its field.
    ASSERT_TRUE(editor->closeEditDialog());
    editor->toFront();
    PressKey(VK_DELETE);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return !now.SelectActive; }));
    EXPECT_EQ(saved("D[7:0]"), "a5 100 ff 100");
}

TEST_F(EditGestures, SelectedRowsMoveWithTheMouse) {
    moveTo(2, 5, rowMiddle(0));
    press(2);
    release(2);
    moveTo(2, 5, rowMiddle(0));
    press(2);
    moveTo(2, 5, rowMiddle(2));
    release(2);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 2; }));
    EXPECT_TRUE(editor->painted());
    editor->shoot("moved-row");
    saved("A");
    EXPECT_EQ(directory.read("edit.kel"), "Wave B\r\nWave D[7:0]\r\nWave A\r\n");
}
