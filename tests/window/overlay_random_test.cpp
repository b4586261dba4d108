// Hundreds of random changes of the view, each compared with a fresh painting of what it left: no repaint of
// a part, no scroll and no cover leaves a pixel that the whole would not have.

#include "display/wave_view.h"
#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr uint32_t SEED = 20;
constexpr int CHANGES = 300;
constexpr uint32_t MOST_ROWS = 24;
constexpr int32_t GREATEST_SCALE = 4;

constexpr int zooms[] = {COMMAND_ZOOM_FIT, COMMAND_ZOOM_IN_STEP, COMMAND_ZOOM_IN_STEP, COMMAND_ZOOM_OUT_STEP};

constexpr const char *DOCUMENT =
    "%MASTERCLOCKMULT = 1;\n"
    "%SMALLESTUNIT = 12;\n"
    "%DECIMALS = 0;\n"
    "%ENDTIME = 3000;\n"
    "$P = 0 40 1 60;\n"
    "$Q = $P#3 2 50;\n"
    "CLK { In Default None 0 1 50 } = (0 50 1 50)#30;\n"
    "FINE { Out Default None 0 1 50 } = (0 1 1 1)#900 (0 30 1 70)#12;\n"
    "D[7:0] { Bid Default None 0 1 50 } = a5 300 5a 7 ff 400 1 12 2 900 3 1000;\n"
    "B[1:0] { Bid Default None 0 1 50 } = (0 30 1 3 2 200 3 40)#10;\n"
    "NAMED { In Default None 0 1 50 } = $P 1 100 $Q#4 0 700 $P;\n"
    "UNKNOWN { In Default None 0 1 50 } = 2 500 3 500 0 300 2 90 1 900;\n"
    "A_NAME_THAT_IS_LONGER_THAN_THE_COLUMN { In Default None 0 1 50 } = 0 900 1 9;\n"
    "'LOW_ACTIVE { In Default None 0 1 50 } = 1 200 0 9 1 1000 0 1 1 900;\n";
constexpr const char *WAVE_LIST = "Wave CLK\nWave FINE\nWave D[7:0]\nWave B[1:0]\nWave NAMED\nWave UNKNOWN\n"
                                  "Wave A_NAME_THAT_IS_LONGER_THAN_THE_COLUMN\nWave 'LOW_ACTIVE\nWave $Q\n";

// The names and the waves as they stand on the screen; the ruler follows the mouse.
struct Panels {
    Picture names, waves;
    bool operator==(const Panels &) const = default;
};

class RandomChanges : public testing::Test {
protected:
    void SetUp() override {
        directory.write("waves.wdl", DOCUMENT);
        directory.write("waves.kel", WAVE_LIST);
        directory.write("config\\Kelvane.ini", "[windows]\r\nMain-Pos=40,40,440,300\r\n");
        editor = std::make_unique<Editor>(directory, "waves.wdl");
        ASSERT_TRUE(editor->open());
        frame = editor->frame();
        for (int number : {1, 2, 3}) panes[number] = editor->pane(number);
        // Away from the panels, where it stays.
        MoveMouse(GetSystemMetrics(SM_CXSCREEN) - 2, GetSystemMetrics(SM_CYSCREEN) - 2);
        ASSERT_TRUE(editor->painted());
        shown = settled();
    }
    uint32_t below(uint32_t limit) { return random() % limit; }

    // --- what is on the screen ---
    Panels pictures() const { return {PictureOfClient(panes[2]), PictureOfClient(panes[3])}; }
    bool nothingScheduled() const {
        for (int number : {1, 2, 3}) {
            DWORD_PTR result;
            if (!SendMessageTimeoutA(panes[number], WM_NULL, 0, 0, SMTO_NORMAL, 20000, &result)) return false;
            if (GetUpdateRect(panes[number], nullptr, FALSE)) return false;
        }
        return true;
    }
    // The panels once they stand still. The screen may lag behind the program, so where nothing has changed
    // since `before` it is looked at longer.
    Panels settled(const Panels *before = nullptr) const {
        constexpr int LONGER = 2;
        Panels last;
        int still = 0;
        EXPECT_TRUE(WaitFor([&] {
            if (!nothingScheduled()) return false;
            Panels now = pictures();
            still = now == last ? still + 1 : 0;
            last = now;
            return still >= (before && now == *before ? LONGER : 1);
        }));
        return last;
    }
    Panels paintedAfresh() const {
        for (int number : {1, 2, 3}) InvalidateRect(panes[number], nullptr, TRUE);
        for (int number : {1, 2, 3}) UpdateWindow(panes[number]);
        return settled();
    }

    // --- what is done ---
    // Sends a message, and ends the test if a box that asks something keeps it from being answered.
    void send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
        DWORD_PTR result;
        ASSERT_TRUE(SendMessageTimeoutA(window, message, wParam, lParam, SMTO_NORMAL, 20000, &result));
    }
    void command(int id) const { send(frame, WM_COMMAND, static_cast<WPARAM>(id), 0); }
    void scroll(int pane, UINT message) {
        constexpr WORD codes[] = {SB_LINEUP, SB_LINEDOWN, SB_PAGEUP,        SB_PAGEDOWN,     SB_TOP,
                                  SB_BOTTOM, SB_LINEDOWN, SB_THUMBPOSITION, SB_THUMBPOSITION};
        send(panes[pane], message, MAKEWPARAM(codes[below(std::size(codes))], below(40)), 0);
    }
    void mouse(int pane, UINT message, WPARAM keys, POINT place) const {
        send(panes[pane], message, keys, MAKELPARAM(place.x, place.y));
    }
    POINT placeIn(int pane) {
        RECT client = {};
        GetClientRect(panes[pane], &client);
        return {static_cast<LONG>(below(std::max<uint32_t>(client.right, 1))),
                static_cast<LONG>(below(std::max<uint32_t>(client.bottom, 1)))};
    }
    void drag(int pane, WPARAM keys, POINT from, POINT to) const {
        mouse(pane, WM_LBUTTONDOWN, keys | MK_LBUTTON, from);
        mouse(pane, WM_MOUSEMOVE, keys | MK_LBUTTON, {(from.x + to.x) / 2, to.y});
        mouse(pane, WM_MOUSEMOVE, keys | MK_LBUTTON, to);
        mouse(pane, WM_LBUTTONUP, keys, to);
    }
    void click(int pane, WPARAM keys = 0) {
        POINT place = placeIn(pane);
        drag(pane, keys, place, place);
    }
    void resize() {
        SetWindowPos(frame, nullptr, 0, 0, static_cast<int>(280 + below(360)),
                     static_cast<int>(160 + below(240)), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    void cover() {
        RECT place = PlaceOf(panes[3]);
        int left = static_cast<int>(place.left) - 60 + static_cast<int>(below(200));
        int top = static_cast<int>(place.top) - 20 + static_cast<int>(below(100));
        HWND window = CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, "Static", "",
                                      WS_POPUP | WS_VISIBLE, left, top, static_cast<int>(20 + below(150)),
                                      static_cast<int>(10 + below(80)), nullptr, nullptr, nullptr, nullptr);
        UpdateWindow(window);
        DestroyWindow(window);
    }
    void dragBorder() {
        int width = view().NameColumnWidth;
        auto x = static_cast<LONG>(20 + below(160));
        send(frame, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(width, 100));
        send(frame, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM((width + x) / 2, 100));
        send(frame, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x, 100));
        send(frame, WM_LBUTTONUP, 0, MAKELPARAM(x, 100));
    }
    WaveViewRecord view() const {
        WaveViewRecord record = {};
        EXPECT_TRUE(editor->readMemory(editor->address("WaveView"), &record, sizeof record));
        return record;
    }
    // Selects a range in the program's memory, or no range, and redraws.
    void select() {
        WaveViewRecord now = view();
        now.SelectActive = below(3) != 0;
        now.SelectRow = now.SelectRowLast = below(now.RowCount + 2);
        now.SelectStart = below(3800);
        now.SelectEnd = below(2) ? below(3800) : now.SelectStart + below(50);
        EXPECT_TRUE(editor->writeMemory(editor->address("WaveView"), &now, sizeof now));
        command(COMMAND_REDRAW);
    }
    // A further step in brings up a box at the greatest scale; a step out shows with the next paint.
    void zoomBySteps() {
        int id = zooms[below(std::size(zooms))];
        if (id == COMMAND_ZOOM_IN_STEP && view().Scale >= GREATEST_SCALE) id = COMMAND_ZOOM_OUT_STEP;
        command(id);
        if (id == COMMAND_ZOOM_OUT_STEP) command(COMMAND_REDRAW);
    }
    void zoomWithMouse() {
        bool in = below(4) != 0 && view().Scale < GREATEST_SCALE;
        command(in ? COMMAND_ZOOM_IN : COMMAND_PAN);
        POINT from = placeIn(3);
        drag(3, 0, from, placeIn(3));
        command(COMMAND_CANCEL);
    }
    std::string change();

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    HWND frame = nullptr;
    HWND panes[4] = {};
    Panels shown;
    std::mt19937 random{SEED};
};

// One change; says which.
std::string RandomChanges::change() {
    constexpr int jumps[] = {COMMAND_NEXT_CHANGE, COMMAND_TO_MARKER,  COMMAND_TO_START, COMMAND_TO_END,
                             COMMAND_TICK_LEFT,   COMMAND_TICK_RIGHT, COMMAND_TEN_LEFT, COMMAND_TEN_RIGHT,
                             COMMAND_ROW_UP,      COMMAND_ROW_DOWN};
    switch (below(16)) {
    case 0:
    case 1:
        click(3);
        return "a click in the waves";
    case 2: {
        POINT from = placeIn(3);
        drag(3, 0, from, placeIn(3));
        return "dragging the cursor";
    }
    case 3:
        click(2, below(2) ? 0 : MK_CONTROL);
        return "a click on a name";
    case 4:
        command(COMMAND_PLACE_MARK);
        return "placing the mark";
    case 5:
        if (below(2)) {
            command(COMMAND_HIDE_MARK);
            return "hiding the mark";
        }
        scroll(2, WM_HSCROLL);
        return "scrolling the names";
    case 6:
        scroll(3, WM_HSCROLL);
        return "scrolling the time";
    case 7:
        scroll(3, WM_VSCROLL);
        return "scrolling the rows";
    case 8:
        zoomBySteps();
        return "a step of zoom";
    case 9:
        zoomWithMouse();
        return "zooming or panning with the mouse";
    case 10:
        resize();
        return "a resize";
    case 11:
        cover();
        return "a cover";
    case 12:
        dragBorder();
        return "dragging the border";
    case 13:
        select();
        return "selecting a range";
    case 14:
        if (view().RowCount < MOST_ROWS) {
            command(below(3) ? COMMAND_DUPLICATE : COMMAND_EXPAND_BUS);
            return "more rows";
        }
        command(COMMAND_HIDE);
        return "fewer rows";
    default: {
        int jump = jumps[below(std::size(jumps))];
        command(jump);
        return "jump " + std::to_string(jump);
    }
    }
}

} // namespace

TEST_F(RandomChanges, LeaveWhatAFreshPaintingShows) {
    int seen = 0;
    for (int i = 0; i < CHANGES; i++) {
        std::string what = change();
        ASSERT_FALSE(HasFailure() || !editor->running()) << "change " << i << ", " << what;
        Panels left = settled(&shown);
        seen += !(left == shown);
        shown = paintedAfresh();
        if (left == shown) continue;
        editor->shoot("fresh-painting");
        FAIL() << "change " << i << ", " << what << ": the "
               << (left.names == shown.names ? "waves" : "names") << " differ";
    }
    // The panels were not just looked at.
    EXPECT_GT(seen, CHANGES / 3);
}
