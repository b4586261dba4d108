// An edge dragged with the mouse: what the waves show on the way, and when it is let go.

#include "display/drag_preview.h"
#include "shell/command_ids.h"
#include "window/view_driver.h"

namespace {

constexpr const char *DOCUMENT = "%ENDTIME = 500;\n"
                                 "A { In Default None 0 1 50 } = 0 100 1 100 0 100 1 100 0 100;\n"
                                 "B { In Default None 0 1 50 } = 0 100 1 100 0 100 1 40 0 60 1 100;\n"
                                 "D[7:0] { Bid Default None 0 1 50 } = a5 100 5a 100 ff 100 0 200;\n";
constexpr const char *WAVE_LIST = "Wave A\nWave B\nWave D[7:0]\n";

class DraggingInTheWindow : public ViewDriver {
protected:
    void SetUp() override {
        directory.write("edges.wdl", DOCUMENT);
        directory.write("edges.kel", WAVE_LIST);
        open("edges");
        editor->command(COMMAND_EDIT_MODE);
        ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
        // A dialog that comes with the mode goes beside the waves.
        if (HWND dialog = editor->window("#32770"))
            SetWindowPos(dialog, nullptr, 920, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        ASSERT_TRUE(editor->painted());
        ASSERT_EQ(view().Scale, 0);
        ASSERT_EQ(view().ViewLeft, 0u);
        before = waves();
    }
    Picture waves() const { return PictureOfClient(editor->pane(3)); }
    DragPreviewRecord dragged() const {
        DragPreviewRecord record = {};
        editor->readMemory(editor->address("DragPreview"), &record, sizeof record);
        return record;
    }
    // Selects the pulse at `x` and takes it there again, with Shift held.
    void take(int x, int row, bool shift = false) const {
        click(x, rowMiddle(row));
        ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectActive; }));
        moveTo(3, x + 1, rowMiddle(row));
        if (shift) SendKey(VK_SHIFT, 0);
        press();
    }
    // The edge is there, and the waves stand still.
    testing::AssertionResult edgeComesTo(int x, int row, TimeVal edge) const {
        moveTo(3, x, rowMiddle(row));
        if (WaitFor([&] { return dragged().dragTime == edge && isDone() && editor->painted(); }, 10))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "the edge is at " << dragged().dragTime;
    }
    // The first pixel that is not as it was at the beginning, outside of columns `from` to `to` in a row's
    // strip. The cursor stood in the first column.
    std::string changedOutside(const Picture &now, int row, int from, int to) const {
        int top = sizes.low(row) - sizes.waveHeight - 2, bottom = top + sizes.waveHeight + 5;
        for (int y = 0; y < now.height; y++) {
            for (int x = 1; x < now.width; x++) {
                bool within = x >= from && x <= to && y >= top && y < bottom;
                if (!within && now.at(x, y) != before.at(x, y))
                    return std::to_string(x) + "," + std::to_string(y);
            }
        }
        return "";
    }
    // A row between the lines of a selection's frame, right of the first column.
    Picture strip(const Picture &picture, int row) const {
        return picture.part(1, top(row) - 2, picture.width, sizes.low(row) + 3);
    }
    int top(int row) const { return sizes.low(row) - sizes.waveHeight; }
    Picture before;
};

} // namespace

TEST_F(DraggingInTheWindow, AnEdgeBetweenItsNeighbours) {
    take(189, 0);
    ASSERT_TRUE(edgeComesTo(230, 0, 240));
    Picture now = waves();
    editor->shoot("drag-edge");
    // High up to the edge and low behind it, in dots, with the edge in one piece.
    EXPECT_EQ(now.count(colour::black, 240, top(0), 241, sizes.low(0)), sizes.waveHeight);
    EXPECT_GT(now.count(colour::black, 101, top(0), 240, top(0) + 1), 30);
    EXPECT_GT(now.count(colour::white, 102, top(0), 240, top(0) + 1), 30);
    EXPECT_GT(now.count(colour::black, 241, sizes.low(0), 299, sizes.low(0) + 1), 10);
    EXPECT_EQ(now.count(colour::blue, 102, 0, 299, sizes.rowHeight), 0);
    EXPECT_EQ(changedOutside(now, 0, 101, 299), "");
    // It stops in front of the end of its neighbour.
    ASSERT_TRUE(edgeComesTo(600, 0, 299));
    ASSERT_TRUE(edgeComesTo(20, 0, 101));
    ASSERT_TRUE(edgeComesTo(230, 0, 240));
    EXPECT_EQ(waves(), now);
    release();
    ASSERT_TRUE(becomes([](const WaveViewRecord &view) { return view.SelectEnd == 240; }));
    ASSERT_TRUE(editor->painted());
    Picture released = waves();
    EXPECT_GE(released.count(colour::blue, 240, sizes.high(0), 241, sizes.low(0) + 1), sizes.waveHeight - 2);
    EXPECT_EQ(released.count(colour::blue, 200, sizes.middle(0), 201, sizes.middle(0) + 1), 0);
}

TEST_F(DraggingInTheWindow, WithShiftTheTailMovesWithTheEdge) {
    take(189, 1, true);
    bool moved = edgeComesTo(230, 1, 240);
    Picture now = waves();
    editor->shoot("drag-tail");
    release();
    SendKey(VK_SHIFT, KEYEVENTF_KEYUP);
    ASSERT_TRUE(moved);
    int from = top(1) - 2, to = from + sizes.waveHeight + 5;
    for (int y = from; y < to; y++) {
        for (int x = 241; x < now.width; x++) ASSERT_EQ(now.at(x, y), before.at(x - 40, y)) << x << "," << y;
    }
    EXPECT_EQ(changedOutside(now, 1, 101, now.width), "");
    ASSERT_TRUE(becomes([](const WaveViewRecord &view) { return view.SelectEnd == 240; }));
    ASSERT_TRUE(editor->painted());
    Picture released = waves();
    for (int x = 250; x < now.width; x++)
        ASSERT_EQ(released.at(x, sizes.low(1)), before.at(x - 40, sizes.low(1))) << x;
}

TEST_F(DraggingInTheWindow, AnEdgeOfABus) {
    take(189, 2);
    ASSERT_TRUE(edgeComesTo(230, 2, 240));
    Picture now = waves();
    editor->shoot("drag-bus");
    for (int y : {top(2), sizes.low(2)}) {
        EXPECT_GT(now.count(colour::black, 101, y, 240, y + 1), 30);
        EXPECT_GT(now.count(colour::black, 241, y, 299, y + 1), 10);
    }
    EXPECT_GT(now.count(colour::black, 240, top(2), 241, sizes.low(2)), sizes.waveHeight / 3);
    EXPECT_EQ(changedOutside(now, 2, 101, 299), "");
    // Back where it was, and let go: nothing has changed.
    ASSERT_TRUE(edgeComesTo(190, 2, 200));
    release();
    EXPECT_TRUE(HasCapture(editor->pane(3), false));
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(strip(waves(), 2), strip(before, 2));
}

TEST_F(DraggingInTheWindow, TheWindowComesToTheFrontInTheMiddleOfADrag) {
    take(189, 0);
    ASSERT_TRUE(edgeComesTo(230, 0, 240));
    Picture now = waves();
    InvalidateRect(editor->pane(3), nullptr, TRUE);
    ASSERT_TRUE(editor->painted());
    ASSERT_TRUE(edgeComesTo(231, 0, 241));
    ASSERT_TRUE(edgeComesTo(230, 0, 240));
    Picture again = waves();
    EXPECT_EQ(strip(again, 0), strip(now, 0));
    release();
}
