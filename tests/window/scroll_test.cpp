// The scroll bars, moved with the mouse and by their messages.

#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

class Scrolling : public testing::Test {
protected:
    void SetUp() override {
        std::string text = "%ENDTIME = 400000;\n", list;
        for (int i = 0; i < 40; ++i) {
            std::string name = "NODE" + std::to_string(100 + i);
            text += name + " { In Default None 0 1 50 } = 0 " + std::to_string(8000 * (i + 1)) +
                    " 1 8000 0 50000;\n";
            list += "Wave " + name + "\n";
        }
        text += "A_NODE_OF_A_VERY_LONG_NAME_INDEED { In Default None 0 1 50 } = 1 400000;\n";
        directory.write("many.wdl", text);
        directory.write("many.kel", list + "Wave A_NODE_OF_A_VERY_LONG_NAME_INDEED\n");
        directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=0,0,800,480\r\n");
        editor = std::make_unique<Editor>(directory, "many.wdl");
        ASSERT_TRUE(editor->open());
    }
    // Sends a scroll message as a bar does.
    void scroll(int pane, UINT message, WORD code, WORD position = 0) const {
        SendMessageA(editor->pane(pane), message, MAKEWPARAM(code, position), 0);
        ASSERT_TRUE(editor->painted());
    }
    Picture row(const Picture &pane, int number) const {
        return pane.part(0, number * sizes.rowHeight + 1, pane.width, (number + 1) * sizes.rowHeight - 1);
    }
    Picture waves() const { return PictureOfClient(editor->pane(3)); }
    Picture names() const { return PictureOfClient(editor->pane(2)); }
    // A click on the arrow at one end of a panel's bar.
    void clickArrow(int pane, bool vertical, bool farEnd) const {
        RECT window = PlaceOf(editor->pane(pane)), client = {};
        GetClientRect(editor->pane(pane), &client);
        MapWindowPoints(editor->pane(pane), nullptr, reinterpret_cast<POINT *>(&client), 2);
        int arrow = GetSystemMetrics(vertical ? SM_CYVSCROLL : SM_CXHSCROLL) / 2;
        int along = vertical ? (farEnd ? client.bottom - arrow : client.top + arrow)
                             : (farEnd ? client.right - arrow : client.left + arrow);
        int across = vertical ? (client.right + window.right) / 2 : (client.bottom + window.bottom) / 2;
        ClickAt(vertical ? across : along, vertical ? along : across);
        ASSERT_TRUE(editor->painted());
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Expected sizes = ExpectedSizes();
};

} // namespace

TEST_F(Scrolling, TheDownArrowBringsTheNextRowToTheTop) {
    Picture wavesBefore = waves(), namesBefore = names();
    clickArrow(3, true, true);
    EXPECT_TRUE(row(waves(), 0) == row(wavesBefore, 1));
    EXPECT_TRUE(row(names(), 0) == row(namesBefore, 1));
    editor->shoot("scrolled-one-row");
    clickArrow(3, true, false);
    EXPECT_TRUE(waves() == wavesBefore);
    EXPECT_TRUE(names() == namesBefore);
}

TEST_F(Scrolling, ByPagesToTheLastRowAndBack) {
    Picture before = waves();
    int visible = before.height / sizes.rowHeight;
    scroll(3, WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_FALSE(row(waves(), 0) == row(before, 0));
    scroll(3, WM_VSCROLL, SB_BOTTOM);
    Picture atEnd = names();
    // The last row is the one with the long name: it reaches the left edge.
    EXPECT_GT(row(atEnd, visible - 1).count(colour::black, 0, 0, 30, sizes.rowHeight), 0);
    scroll(3, WM_VSCROLL, SB_LINEDOWN);
    EXPECT_TRUE(names() == atEnd);
    scroll(3, WM_VSCROLL, SB_TOP);
    EXPECT_TRUE(waves() == before);
}

TEST_F(Scrolling, TheTimeMovesByTicksPagesAndToItsEnds) {
    Picture before = waves(), ruler = PictureOfClient(editor->pane(1));
    clickArrow(3, false, true);
    EXPECT_FALSE(waves() == before);
    EXPECT_FALSE(PictureOfClient(editor->pane(1)) == ruler);
    clickArrow(3, false, false);
    EXPECT_TRUE(waves() == before);
    scroll(3, WM_HSCROLL, SB_PAGEDOWN);
    EXPECT_FALSE(waves() == before);
    scroll(3, WM_HSCROLL, SB_TOP);
    EXPECT_TRUE(waves() == before);
    EXPECT_TRUE(PictureOfClient(editor->pane(1)) == ruler);
}

TEST_F(Scrolling, DraggingTheThumbShowsNothingBeforeItIsLetGo) {
    Picture before = waves();
    scroll(3, WM_HSCROLL, SB_THUMBTRACK, 500);
    EXPECT_TRUE(waves() == before);
}

TEST_F(Scrolling, LongNamesScrollFromTheirRightEnds) {
    scroll(3, WM_VSCROLL, SB_BOTTOM);
    Picture right = names();
    scroll(2, WM_HSCROLL, SB_TOP);
    Picture left = names();
    EXPECT_FALSE(left == right);
    scroll(2, WM_HSCROLL, SB_BOTTOM);
    EXPECT_TRUE(names() == right);
    scroll(2, WM_HSCROLL, SB_THUMBPOSITION, 0);
    EXPECT_TRUE(names() == left);
    scroll(2, WM_HSCROLL, SB_THUMBPOSITION, 7);
    EXPECT_FALSE(names() == left);
    EXPECT_FALSE(names() == right);
    scroll(2, WM_HSCROLL, SB_BOTTOM);
    clickArrow(2, false, false);
    EXPECT_FALSE(names() == right);
}
