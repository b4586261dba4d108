// Documents at the edges of what there can be, on whatever screen there is. `test` runs these on a screen of
// 640 by 480 and on one of 3840 by 2160, too.

#include "display/wave_view.h"
#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>

namespace {

constexpr uint32_t FOREVER = 4294967295u;
constexpr uint32_t MOST_ROWS = 256;
constexpr int LONGEST_NAME = 252;
constexpr int GRIP = 3;
constexpr const char *PARAMETERS = " { In Default None 0 1 50 } = ";

struct Document {
    const char *label;
    std::string text, list;
    uint32_t rows;
};

Document LengthOne() {
    return {"LengthOne", "%ENDTIME = 1;\nA" + std::string(PARAMETERS) + "1 1;\n", "Wave A\n", 1};
}

Document Endless() {
    std::string text = "%ENDTIME = 4294967295;\n";
    text += std::string("CLK") + PARAMETERS + "(0 500000000 1 500000000)##;\n";
    text += std::string("FINE") + PARAMETERS + "(0 1 1 1)##;\n";
    // An item lasts for 2147483647 counts at most.
    text += std::string("LATE") + PARAMETERS + "0 2147483645 0 2147483645 1 5;\n";
    text += std::string("D[7:0]") + PARAMETERS + "a5 2147483600 c3 2147483400 5a 295;\n";
    return {"Endless", text, "Wave CLK\nWave FINE\nWave LATE\nWave D[7:0]\n", 4};
}

Document NoRows() {
    return {"NoRows", "%ENDTIME = 800;\nA" + std::string(PARAMETERS) + "0 400 1 400;\n", "", 0};
}

Document AllRows() {
    std::string text = "%ENDTIME = 800;\n", list;
    for (uint32_t i = 0; i < MOST_ROWS; i++) {
        std::string name = "NODE" + std::to_string(i);
        text += name + PARAMETERS + "0 " + std::to_string(i + 1) + " 1 40 0 100;\n";
        list += "Wave " + name + "\n";
    }
    return {"AllRows", text, list, MOST_ROWS};
}

// Names as long as a row shows them, which differ in their last character only.
Document LongNames() {
    Document document = {"LongNames", "%ENDTIME = 800;\n", "", 3};
    for (char last : {'A', 'B', 'C'}) {
        std::string name = "M" + std::string(LONGEST_NAME - 2, 'W') + last;
        document.text += name + PARAMETERS + "0 400 1 400;\n";
        // A line of the list has 256 characters.
        document.list += "Wav " + name + "\n";
    }
    return document;
}

class Extremes : public testing::Test {
protected:
    void open(const Document &document, const std::string &settings = "") {
        directory.write("extreme.wdl", document.text);
        directory.write("extreme.kel", document.list);
        directory.write("config\\Kelvane.ini", "[windows]\r\n" + settings);
        editor = std::make_unique<Editor>(directory, "extreme.wdl");
        ASSERT_TRUE(editor->open());
        ASSERT_EQ(view().RowCount, document.rows);
    }
    // As large as the screen.
    void openLarge(const Document &document) {
        open(document);
        SendMessageA(editor->frame(), WM_SYSCOMMAND, SC_MAXIMIZE, 0);
        ASSERT_TRUE(editor->painted());
        std::string size = std::to_string(GetSystemMetrics(SM_CXSCREEN)) + "x" +
                           std::to_string(GetSystemMetrics(SM_CYSCREEN));
        editor->shoot(std::string("extreme-") + document.label + "-" + size);
    }
    WaveViewRecord view() const {
        WaveViewRecord record = {};
        editor->readMemory(editor->address("WaveView"), &record, sizeof record);
        return record;
    }
    // The time that the wave panel is wide.
    uint64_t paneTime() const {
        WaveViewRecord now = view();
        auto width = static_cast<uint64_t>(now.WavePaneWidth);
        return now.Scale < 0 ? width << -now.Scale : width >> now.Scale;
    }
    void scroll(int pane, UINT message, WORD code, WORD position = 0) const {
        SendMessageA(editor->pane(pane), message, MAKEWPARAM(code, position), 0);
    }
    // The end of the time bar's range. Another process cannot ask for it.
    WORD timeBarEnd() const {
        uint64_t span = view().SpanEnd, pane = paneTime();
        return static_cast<WORD>(span > pane ? std::min<uint64_t>(span - pane, 10000) : 1);
    }
    // Drags the thumb of a bar from the bar's start to its end with the mouse.
    void dragThumb(int pane, bool vertical) const {
        RECT window = PlaceOf(editor->pane(pane)), client = {};
        GetClientRect(editor->pane(pane), &client);
        MapWindowPoints(editor->pane(pane), nullptr, reinterpret_cast<POINT *>(&client), 2);
        int arrow = GetSystemMetrics(vertical ? SM_CYVSCROLL : SM_CXHSCROLL);
        int from = (vertical ? client.top : client.left) + arrow + arrow / 2;
        int to = (vertical ? client.bottom : client.right) - 2;
        int across = vertical ? (client.right + window.right) / 2 : (client.bottom + window.bottom) / 2;
        for (int along : {from, (from + to) / 2, to}) {
            MoveMouse(vertical ? across : along, vertical ? along : across);
            if (along == from) PressButton(true);
        }
        PressButton(false);
        ASSERT_TRUE(editor->painted());
    }
    // Sends a command and waits until it is done; none of these asks or tells anything.
    void command(int id) const {
        DWORD_PTR result = 0;
        EXPECT_TRUE(SendMessageTimeoutA(editor->frame(), WM_COMMAND, static_cast<WPARAM>(id), 0, SMTO_NORMAL,
                                        20000, &result))
            << "command " << id;
    }
    Picture paneOf(int number) const { return PictureOfClient(editor->pane(number)); }

    // The panels fill the window, do not overlap, and nothing but the background is between them.
    void expectPanelsTile() const {
        RECT client = {};
        GetClientRect(editor->frame(), &client);
        RECT ruler = PlaceIn(editor->frame(), editor->pane(1));
        RECT names = PlaceIn(editor->frame(), editor->pane(2));
        RECT waves = PlaceIn(editor->frame(), editor->pane(3));
        RECT prompt = PlaceIn(editor->frame(), editor->prompt());
        EXPECT_EQ(ruler.top, 0);
        EXPECT_EQ(ruler.right, client.right);
        EXPECT_EQ(names.top, ruler.bottom);
        EXPECT_EQ(waves.top, ruler.bottom);
        EXPECT_EQ(waves.left, names.right + GRIP);
        EXPECT_EQ(waves.right, client.right);
        EXPECT_EQ(prompt.top, waves.bottom);
        EXPECT_EQ(prompt.bottom, client.bottom);
        if (waves.bottom <= waves.top) return;
        POINT corner = {names.right, waves.top};
        ClientToScreen(editor->frame(), &corner);
        Picture grip =
            PictureOfScreen({corner.x, corner.y, corner.x + GRIP, corner.y + waves.bottom - waves.top});
        EXPECT_EQ(grip.count(colour::white, 0, 0, GRIP, grip.height), GRIP * grip.height);
    }
    // Of the ruler only what is over the waves: the mouse's time takes along what lies under it when it goes
    // off, and a redraw does not clear what is over the bar at the right.
    std::vector<Picture> panels() const {
        WaveViewRecord now = view();
        int end = now.NameColumnWidth + now.WavePaneWidth;
        return {paneOf(1).part(now.NameColumnWidth, 0, end, now.RulerHeight), paneOf(2), paneOf(3)};
    }
    // What stands on the panels is what a fresh paint of the same view gives.
    void expectFreshPaint() const {
        ASSERT_TRUE(editor->painted());
        std::vector<Picture> before = panels();
        command(COMMAND_REDRAW);
        ASSERT_TRUE(editor->painted());
        std::vector<Picture> after = panels();
        for (size_t i = 0; i < after.size(); i++)
            EXPECT_TRUE(after[i] == before[i])
                << "panel " << i + 1 << " scale " << view().Scale << " left " << view().ViewLeft;
    }
    void expectWell() const {
        ASSERT_TRUE(editor->running());
        WaveViewRecord now = view();
        EXPECT_LE(now.ViewLeft, now.SpanEnd);
        EXPECT_LE(now.CursorTime, now.SpanEnd);
        EXPECT_LE(now.TopRow, now.RowCount);
    }
    void scrollEverything() const {
        for (WORD code : {SB_BOTTOM, SB_LINEDOWN, SB_PAGEDOWN, SB_LINEUP, SB_PAGEUP, SB_THUMBTRACK, SB_TOP,
                          SB_LINEUP, SB_PAGEUP, SB_PAGEDOWN, SB_LINEDOWN}) {
            scroll(3, WM_HSCROLL, code);
            scroll(3, WM_VSCROLL, code);
            scroll(2, WM_HSCROLL, code);
            expectWell();
        }
        for (WORD position : {WORD{0}, WORD{1}, WORD{5000}, WORD{10000}, WORD{65535}}) {
            scroll(3, WM_HSCROLL, SB_THUMBPOSITION, position);
            scroll(3, WM_VSCROLL, SB_THUMBPOSITION, position);
            scroll(2, WM_HSCROLL, SB_THUMBPOSITION, position);
        }
        ASSERT_TRUE(editor->running());
        for (int pane : {2, 3}) scroll(pane, WM_HSCROLL, SB_TOP);
        scroll(3, WM_VSCROLL, SB_TOP);
        expectFreshPaint();
    }
    void jumpEverywhere() const {
        for (int id : {COMMAND_TO_END, COMMAND_TICK_RIGHT, COMMAND_TEN_RIGHT, COMMAND_ROW_DOWN,
                       COMMAND_PLACE_MARK, COMMAND_TICK_LEFT, COMMAND_TEN_LEFT, COMMAND_TO_START,
                       COMMAND_TICK_LEFT, COMMAND_ROW_UP, COMMAND_NEXT_CHANGE, COMMAND_TO_MARKER}) {
            command(id);
            expectWell();
        }
        command(COMMAND_TO_START);
        EXPECT_EQ(view().CursorTime, 0u);
        expectFreshPaint();
    }
    // To the finest scale there is and back to the whole span, at both ends of it.
    void zoomEverywhere() const {
        TimeVal span = view().SpanEnd;
        for (TimeVal cursor : {TimeVal{0}, span}) {
            command(cursor ? COMMAND_TO_END : COMMAND_TO_START);
            int32_t finest = finestScale(span);
            for (int32_t scale = view().Scale; scale < finest; scale++) command(COMMAND_ZOOM_IN_STEP);
            EXPECT_EQ(view().Scale, finest);
            expectWell();
            expectFreshPaint();
            command(COMMAND_ZOOM_FIT);
            EXPECT_TRUE(paneTime() >= span || view().Scale == coarsestScale());
        }
    }
    static int32_t finestScale(TimeVal span) {
        int32_t scale = 0;
        for (TimeVal length = span; scale < 4 && !(length >> 31); length <<= 1) scale++;
        return scale;
    }
    static int32_t coarsestScale() {
        int32_t scale = 0;
        for (auto width = static_cast<uint32_t>(GetSystemMetrics(SM_CXSCREEN)); !(width >> 31); width <<= 1)
            scale--;
        return scale;
    }
    void resizeEverywhere() const {
        int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
        SendMessageA(editor->frame(), WM_SYSCOMMAND, SC_RESTORE, 0);
        for (SIZE size : {SIZE{width / 2, height / 2}, SIZE{120, 60}, SIZE{width, 90}, SIZE{160, height},
                          SIZE{width, height}}) {
            SetWindowPos(editor->frame(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
            expectWell();
        }
        expectPanelsTile();
        expectFreshPaint();
    }
    void doEverything() const {
        expectPanelsTile();
        expectFreshPaint();
        scrollEverything();
        jumpEverywhere();
        zoomEverywhere();
        resizeEverywhere();
        EXPECT_FALSE(editor->strip()) << TextOf(editor->strip());
        editor->close();
        EXPECT_EQ(editor->ended(), std::optional<DWORD>(0));
    }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Expected sizes = ExpectedSizes();
};

} // namespace

// --- documents ------------------------------------------------------------------------------------

TEST_F(Extremes, ADocumentOfLengthOne) {
    openLarge(LengthOne());
    EXPECT_EQ(view().SpanEnd, 1u);
    EXPECT_EQ(view().Scale, 4);
    command(COMMAND_TO_END);
    EXPECT_EQ(view().CursorTime, 1u);
    doEverything();
}

TEST_F(Extremes, ADocumentOfAllTheTimeThereIs) {
    openLarge(Endless());
    EXPECT_EQ(view().SpanEnd, FOREVER);
    command(COMMAND_TO_END);
    EXPECT_EQ(view().CursorTime, FOREVER);
    // The bar's end shows the end of time, at each scale.
    for (int32_t scale = view().Scale; scale < 0; scale++) {
        command(COMMAND_ZOOM_IN_STEP);
        scroll(3, WM_HSCROLL, SB_THUMBPOSITION, timeBarEnd());
        EXPECT_EQ(view().ViewLeft, FOREVER - static_cast<TimeVal>(paneTime())) << "scale " << view().Scale;
    }
    // As the bar does it when it is dragged there.
    scroll(3, WM_HSCROLL, SB_TOP);
    EXPECT_EQ(view().ViewLeft, 0u);
    dragThumb(3, false);
    EXPECT_EQ(view().ViewLeft, FOREVER - static_cast<TimeVal>(paneTime()));
    // The wave that is high for the last five counts only.
    ASSERT_TRUE(editor->painted());
    Picture waves = paneOf(3);
    EXPECT_GT(waves.count(colour::blue, waves.width - 8, sizes.high(2), waves.width, sizes.high(2) + 1), 0);
    EXPECT_EQ(waves.count(colour::blue, 0, sizes.high(2), waves.width - 8, sizes.high(2) + 1), 0);
    editor->shoot("extreme-end-of-time");
    command(COMMAND_ZOOM_FIT);
    doEverything();
}

TEST_F(Extremes, ADocumentWithoutRows) {
    openLarge(NoRows());
    Picture waves = paneOf(3), names = paneOf(2);
    EXPECT_EQ(names.count(colour::white, 0, 0, names.width, names.height), names.width * names.height);
    EXPECT_EQ(waves.count(colour::white, 1, 0, waves.width, waves.height), (waves.width - 1) * waves.height);
    doEverything();
}

TEST_F(Extremes, ADocumentOfAllTheRowsThereCanBe) {
    openLarge(AllRows());
    auto visible = static_cast<uint32_t>(view().WavePaneHeight / view().RowHeight);
    ASSERT_LT(visible, MOST_ROWS);
    for (uint32_t page = 0; page * visible < MOST_ROWS; page++) scroll(3, WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(view().TopRow, MOST_ROWS - visible);
    // The last row stands at the bottom, with nothing below it.
    ASSERT_TRUE(editor->painted());
    Picture names = paneOf(2);
    int bottom = static_cast<int>(visible) * sizes.rowHeight;
    EXPECT_GT(names.count(colour::black, 0, bottom - sizes.rowHeight, names.width, bottom), 0);
    EXPECT_EQ(names.count(colour::white, 0, bottom, names.width, names.height),
              names.width * (names.height - bottom));
    scroll(3, WM_VSCROLL, SB_TOP);
    EXPECT_EQ(view().TopRow, 0u);
    dragThumb(3, true);
    EXPECT_EQ(view().TopRow, MOST_ROWS - visible);
    doEverything();
}

TEST_F(Extremes, NamesAsLongAsARowShowsThem) {
    openLarge(LongNames());
    int full = view().NameTextWidth + view().FontCharWidth;
    Picture right = paneOf(2);
    // The right ends differ, the left ends do not.
    auto row = [&](const Picture &names, int number) {
        return names.part(0, number * sizes.rowHeight, names.width, (number + 1) * sizes.rowHeight);
    };
    EXPECT_FALSE(row(right, 0) == row(right, 1));
    scroll(2, WM_HSCROLL, SB_TOP);
    ASSERT_TRUE(editor->painted());
    Picture left = paneOf(2);
    EXPECT_TRUE(row(left, 0).count(colour::black, 0, 0, left.width, sizes.rowHeight) > 0);
    EXPECT_FALSE(left == right);
    EXPECT_EQ(view().NameScroll, full - view().NameColumnWidth);
    dragThumb(2, false);
    EXPECT_EQ(view().NameScroll, 0);
    EXPECT_TRUE(paneOf(2) == right);
    doEverything();
}

// --- places ---------------------------------------------------------------------------------------

TEST_F(Extremes, AWindowFromALargerScreenComesBackToThisOne) {
    directory.write("config\\Kelvane.ini",
                    "[windows]\r\nMain-Pos=30000,20000,31000,21000\r\nName-Pos=0,0,30000,100\r\n");
    editor = std::make_unique<Editor>(directory, "");
    ASSERT_TRUE(WaitFor([&] { return editor->pane(3) && IsWindowVisible(editor->pane(3)); }));
    RECT frame = PlaceOf(editor->frame()), names = PlaceIn(editor->frame(), editor->pane(2));
    EXPECT_LT(frame.left, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_LT(frame.top, GetSystemMetrics(SM_CYSCREEN));
    EXPECT_LE(names.right, GetSystemMetrics(SM_CXFULLSCREEN) - 2 * GetSystemMetrics(SM_CXVSCROLL));
}

TEST_F(Extremes, WithoutAStoredPlaceTheWindowIsOnTheScreen) {
    open(LengthOne());
    RECT frame = PlaceOf(editor->frame());
    EXPECT_GE(frame.left, 0);
    EXPECT_GE(frame.top, 0);
    EXPECT_LT(frame.left, GetSystemMetrics(SM_CXSCREEN) / 2);
    EXPECT_LT(frame.top, GetSystemMetrics(SM_CYSCREEN) / 2);
    expectPanelsTile();
}
