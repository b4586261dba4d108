// The window "Hierarchy".

#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

constexpr int LIST = 101;

class ListingWindow : public testing::Test {
protected:
    void SetUp() override {
        directory.write("rows.wdl", "%ENDTIME = 40;\n"
                                    "$bit = 1 5 0 5;\n"
                                    "A { In Default None 0 1 50 } = $bit #2 1 20;\n"
                                    "D[1:0] { Out Default None 0 1 50 } = 2 20;\n");
        directory.write("rows.kel", "Wave A\nWave D[1:0]\n");
        editor = std::make_unique<Editor>(directory, "rows.wdl");
        ASSERT_TRUE(editor->open());
    }
    // Chooses the command in the menu, and gives the window.
    Dialog open() const {
        editor->toFront();
        PressKey('T', {VK_MENU});
        PressKey('S');
        Dialog dialog = editor->dialog();
        EXPECT_NE(dialog.window, nullptr);
        EXPECT_EQ(dialog.title(), "Hierarchy");
        return dialog;
    }
    static std::vector<std::string> Lines(const Dialog &dialog) {
        HWND list = GetDlgItem(dialog.window, LIST);
        std::vector<std::string> lines;
        LRESULT count = SendMessageA(list, LB_GETCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i) {
            // Between processes the text of a list comes as wide characters.
            wchar_t text[256] = L"";
            SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
            lines.emplace_back(text, text + wcslen(text));
        }
        return lines;
    }
    static void ExpectLines(const Dialog &dialog, const std::vector<std::string> &lines) {
        WaitFor([&] { return Lines(dialog) == lines; }, 10);
        EXPECT_EQ(Lines(dialog), lines);
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
};

const std::vector<std::string> LINES_OF_A = {"A - Bit", "  $bit Repeat 2", "    Data - 1 - 5",
                                             "    Data - 0 - 5", "  Data - 1 - 20"};

} // namespace

TEST_F(ListingWindow, ListsTheSelectedRowAndFillsItsWindow) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    Dialog listing = open();
    ExpectLines(listing, LINES_OF_A);
    editor->shoot("hierarchy", listing.window);
    RECT client = {};
    GetClientRect(listing.window, &client);
    RECT list = PlaceIn(listing.window, GetDlgItem(listing.window, LIST));
    EXPECT_EQ(list.right - list.left, client.right);
    EXPECT_EQ(list.bottom - list.top, client.bottom);
}

TEST_F(ListingWindow, FollowsTheRows) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    Dialog listing = open();
    ExpectLines(listing, LINES_OF_A);
    // The keys of the main window work from inside the dialog, too.
    PressKey(VK_F5);
    ExpectLines(listing, {});
    ASSERT_TRUE(editor->plantSelectedRow(0));
    editor->command(COMMAND_SHOW_WAVEFORM_DATA);
    ExpectLines(listing, {"D[1:0] - Bus [2]", "  Data - 2 - 20"});
}

TEST_F(ListingWindow, FollowsTheMouseOverTheNames) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    Dialog listing = open();
    SetWindowPos(listing.window, nullptr, 500, 400, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    RECT names = PlaceOf(editor->pane(2));
    int height = ExpectedSizes().rowHeight;
    int x = names.left + 20, y = names.top + height / 2;
    ClickAt(x, y + height);
    ExpectLines(listing, {"D[1:0] - Bus [2]", "  Data - 2 - 20"});
    MoveMouse(x, y);
    PressButton(true);
    ExpectLines(listing, LINES_OF_A);
    // Dragged over both rows the mouse selects both.
    MoveMouse(x, y + height);
    ExpectLines(listing, {});
    PressButton(false);
}

TEST_F(ListingWindow, ComesToTheTopWhenItIsOpenedAgain) {
    Dialog listing = open();
    editor->toFront();
    ASSERT_TRUE(WaitFor([&] { return GetForegroundWindow() == editor->frame(); }));
    editor->command(COMMAND_SHOW_WAVEFORM_DATA);
    EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == listing.window; }));
    EXPECT_EQ(editor->dialog().window, listing.window) << "there is only one";
}

TEST_F(ListingWindow, StandsWhereItWasClosed) {
    Dialog listing = open();
    SetWindowPos(listing.window, nullptr, 310, 205, 260, 300, SWP_NOZORDER);
    PostMessageA(listing.window, WM_CLOSE, 0, 0);
    ASSERT_TRUE(editor->dialogGone());
    RECT place = PlaceOf(open().window);
    EXPECT_EQ(place.left, 310);
    EXPECT_EQ(place.top, 205);
    EXPECT_EQ(place.right, 570);
    EXPECT_EQ(place.bottom, 505);
}

TEST_F(ListingWindow, AChosenLineChangesNothing) {
    ASSERT_TRUE(editor->plantSelectedRow(0));
    Dialog listing = open();
    ExpectLines(listing, LINES_OF_A);
    RECT place = PlaceOf(GetDlgItem(listing.window, LIST));
    for (int click = 0; click < 2; ++click) ClickAt(place.left + 20, place.top + 20);
    ExpectLines(listing, LINES_OF_A);
    EXPECT_EQ(editor->dialog().window, listing.window);
    EXPECT_EQ(editor->title(), "Kelvane - rows");
}

TEST_F(ListingWindow, EscapeClosesIt) {
    open();
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(editor->dialogGone());
    EXPECT_TRUE(editor->running());
}

TEST_F(ListingWindow, LeavesWithTheProgram) {
    open();
    editor->close();
    EXPECT_EQ(editor->ended(), 0u);
}

TEST(LongListing, ScrollsSidewaysAsFarAsItsWidestLine) {
    TestDirectory directory;
    directory.write("long.wdl",
                    "%ENDTIME = 40;\n" + std::string(200, 'W') +
                        " { In Default None 0 1 50 } = 0 10;\nA { In Default None 0 1 50 } = 1 5;\n");
    directory.write("long.kel", "Wave " + std::string(200, 'W') + "\nWave A\n");
    Editor editor(directory, "long.wdl");
    ASSERT_TRUE(editor.open());
    PressKey(VK_UP);
    editor.command(COMMAND_SHOW_WAVEFORM_DATA);
    HWND list = GetDlgItem(editor.dialog().window, LIST);
    auto extent = [&] { return SendMessageA(list, LB_GETHORIZONTALEXTENT, 0, 0); };
    RECT client = {};
    GetClientRect(list, &client);
    EXPECT_TRUE(WaitFor([&] { return extent() > 2 * client.right; })) << extent();
    editor.toFront();
    PressKey(VK_DOWN);
    EXPECT_TRUE(WaitFor([&] { return extent() < client.right; })) << extent();
}

TEST(LongListing, IsCutWhereNobodyReadsOn) {
    // Each pattern uses the one before twice.
    TestDirectory directory;
    std::string text = "%ENDTIME = 40;\n$p0 = 1 1;\n";
    for (int i = 1; i < 30; ++i) {
        std::string before = " $p" + std::to_string(i - 1);
        text += "$p" + std::to_string(i) + " =" + before + before + " ;\n";
    }
    directory.write("deep.wdl", text + "A { In Default None 0 1 50 } = $p29 ;\n");
    directory.write("deep.kel", "Wave A\n");
    Editor editor(directory, "deep.wdl");
    ASSERT_TRUE(editor.open());
    PressKey(VK_UP);
    editor.command(COMMAND_SHOW_WAVEFORM_DATA);
    HWND list = GetDlgItem(editor.dialog().window, LIST);
    EXPECT_TRUE(WaitFor([&] { return SendMessageA(list, LB_GETCOUNT, 0, 0) == 20000; }))
        << SendMessageA(list, LB_GETCOUNT, 0, 0);
    editor.close();
    EXPECT_EQ(editor.ended(), 0u);
}
