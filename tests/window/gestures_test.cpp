// Every view command with its press, drag and release; how one interrupts what runs and gives it back; the
// screen commands, the menus, both tables of keys, and the scroll bars under the mouse.

#include "shell/command_ids.h"
#include "window/view_driver.h"
#include <algorithm>

namespace {

class Gestures : public ViewDriver {
protected:
    void SetUp() override { openManyRows(); }
    // The time under a column of the wave panel.
    TimeVal timeAt(int x) const {
        WaveViewRecord now = view();
        return now.ViewLeft + (now.Scale < 0 ? static_cast<TimeVal>(x) << -now.Scale : x >> now.Scale);
    }
    // Zooms by the wheel about the left edge.
    void zoomBy(int steps) const {
        int32_t scale = view().Scale + steps;
        moveTo(3, 0, 50);
        TurnWheel(120 * steps, VK_CONTROL);
        ASSERT_TRUE(scaleBecomes(scale));
        ASSERT_TRUE(editor->painted());
    }
    // A command has centred the time, as far as the span lets it, within the rounding of the mouse's place:
    // half a tenth of a tick of the view before.
    void expectCentre(TimeVal time, TimeVal tick) const {
        WaveViewRecord now = view();
        TimeVal half = timeAt(now.WavePaneWidth / 2) - now.ViewLeft;
        TimeVal centre = std::min(time, now.SpanEnd - half);
        EXPECT_NEAR(timeAt(now.WavePaneWidth / 2), centre, tick / 20.0 + 1);
    }
    static void RightClick() { ClickOther(MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP); }
    static void MiddleClick() { ClickOther(MOUSEEVENTF_MIDDLEDOWN, MOUSEEVENTF_MIDDLEUP); }
    void choose(WORD menu, WORD entry) const {
        PressKey(menu, {VK_MENU});
        PressKey(entry);
    }
};

} // namespace

// --- press, drag and release ----------------------------------------------------------------------

TEST_F(Gestures, APressNearTheReleaseIsAClickAndTwentyPixelsAreADrag) {
    int32_t scale = view().Scale;
    TimeVal place = timeAt(250), tick = view().TickMinor;
    PressKey('I', {VK_CONTROL});
    moveTo(3, 250, 50);
    press();
    moveTo(3, 269, 50);
    release();
    ASSERT_TRUE(scaleBecomes(scale + 1));
    expectCentre(place, tick);
    ASSERT_TRUE(editor->painted());
    moveTo(3, 400, 50);
    press();
    moveTo(3, 420, 50);
    release();
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.Scale > scale + 3; }));
}

TEST_F(Gestures, AHeldZoomAsksForTheOtherCornerAndShowsTheRange) {
    PressKey('I', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    EXPECT_EQ(command().CursorMode, CURSOR_ZOOM);
    moveTo(3, 200, 50);
    TimeVal from = timeAt(200);
    press();
    EXPECT_TRUE(promptIs("Zoom In - Drag to Other Corner for Zoom Window"));
    EXPECT_EQ(command().CursorMode, 18);
    EXPECT_EQ(view().ZoomPhase, 1);
    moveTo(3, 400, 50);
    ASSERT_TRUE(editor->painted());
    // The range is inverted at the foot of the ruler.
    Picture ruler = PictureOfClient(editor->pane(1));
    int left = sizes.nameColumnWidth;
    EXPECT_GT(ruler.count(colour::black, left + 210, ruler.height - 8, left + 390, ruler.height), 500);
    editor->shoot("zoom-range");
    release();
    EXPECT_TRUE(promptIs("Zoom In - Pick Center Point or Corner of Zoom Window"));
    EXPECT_EQ(command().CursorMode, CURSOR_ZOOM);
    EXPECT_EQ(view().ZoomPhase, 0);
    EXPECT_NEAR(view().ZoomAnchor, from, view().TickMinor * 10);
}

TEST_F(Gestures, AClickOnTheRulerZoomsAboutItsTime) {
    int32_t scale = view().Scale;
    TimeVal place = timeAt(250), tick = view().TickMinor;
    PressKey('I', {VK_CONTROL});
    click(view().NameColumnWidth + 250, 5, 1);
    ASSERT_TRUE(scaleBecomes(scale + 1));
    expectCentre(place, tick);
}

TEST_F(Gestures, AtTheMaximumZoomInTellsSoAndKeepsTheView) {
    zoomBy(4 - view().Scale);
    WaveViewRecord before = view();
    PressKey('I', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Zoom In - At Maximum Scale"));
    moveTo(3, 400, 50);
    PressButton(true);
    PressButton(false);
    expectError("Already at maximum scale");
    EXPECT_EQ(view().Scale, 4);
    EXPECT_EQ(view().ViewLeft, before.ViewLeft);
    EXPECT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
}

TEST_F(Gestures, ZoomOutTakesThePlaceOfTheRelease) {
    zoomBy(4);
    int32_t scale = view().Scale;
    PressKey('W', {VK_CONTROL});
    click(view().WavePaneWidth - 1, 50);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.ViewLeft > 0; }));
    ASSERT_TRUE(editor->painted());
    TimeVal place = timeAt(600), tick = view().TickMinor;
    PressKey('O', {VK_CONTROL});
    drag(100, 600);
    ASSERT_TRUE(scaleBecomes(scale - 1));
    expectCentre(place, tick);
}

TEST_F(Gestures, ZoomOutAboveZeroSaysMinimumAndGoesOn) {
    zoomBy(2 - view().Scale);
    PressKey('O', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Zoom Out - At Minimum Scale"));
    click(400, 50);
    EXPECT_TRUE(scaleBecomes(1));
    click(400, 50);
    EXPECT_TRUE(scaleBecomes(0));
    EXPECT_TRUE(promptIs("Zoom Out - Pick Center Point"));
}

TEST_F(Gestures, PanTakesThePlaceOfTheRelease) {
    zoomBy(3);
    PressKey('W', {VK_CONTROL});
    ASSERT_TRUE(promptIs("Pan - Pick Center Point"));
    int width = view().WavePaneWidth;
    TimeVal place = timeAt(width - 10), tick = view().TickMinor;
    drag(50, width - 10);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.ViewLeft > 0; }));
    expectCentre(place, tick);
}

TEST_F(Gestures, FullFitTakesARangeAtItsSecondStep) {
    int32_t all = view().Scale;
    zoomBy(3);
    PressKey('F', {VK_CONTROL});
    click(100, 50);
    ASSERT_TRUE(scaleBecomes(all));
    EXPECT_EQ(view().ViewLeft, 0u);
    ASSERT_TRUE(promptIs("Full Fit - Select New Center"));
    ASSERT_TRUE(editor->painted());
    TimeVal middle = timeAt(250), tick = view().TickMinor;
    moveTo(3, 200, 50);
    press();
    EXPECT_TRUE(becomes([&](const WaveViewRecord &) { return command().CursorMode == 18; }));
    moveTo(3, 300, 50);
    release();
    EXPECT_TRUE(promptIs("Full Fit - Click for Full Zoom"));
    EXPECT_GT(view().Scale, all + 1);
    expectCentre(middle, tick);
}

TEST_F(Gestures, FullScaleTakesARangeToo) {
    PressKey('S', {VK_CONTROL});
    ASSERT_TRUE(promptIs("Full Zoom In - Pick Center Point"));
    int32_t scale = view().Scale;
    TimeVal middle = timeAt(250), tick = view().TickMinor;
    drag(200, 300);
    EXPECT_TRUE(becomes([&](const WaveViewRecord &now) { return now.Scale > scale + 1; }));
    expectCentre(middle, tick);
    EXPECT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    EXPECT_TRUE(promptIs("Zoom In - Pick Center Point"));
}

TEST_F(Gestures, FullScaleTellsThatAClockPeriodIsAPixelAlready) {
    PressKey('S', {VK_CONTROL});
    click(300, 50);
    ASSERT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    WaveViewRecord before = view();
    PressKey('S', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_FULL_SCALE));
    moveTo(3, 100, 50);
    PressButton(true);
    PressButton(false);
    expectError("Already at maximum scale");
    EXPECT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    EXPECT_EQ(view().Scale, before.Scale);
    EXPECT_EQ(view().ViewLeft, before.ViewLeft);
}

// --- interrupting and resuming --------------------------------------------------------------------

TEST_F(Gestures, ViewCommandsInterruptEditModeAndGiveItBack) {
    ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    EXPECT_EQ(command().CursorMode, CURSOR_SELECT);
    click(20, rowMiddle(2), 2);
    moveTo(3, 300, 50);
    for (auto end : {RightClick, MiddleClick}) {
        PressKey('I', {VK_CONTROL});
        ASSERT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
        PressKey('W', {VK_CONTROL});
        ASSERT_TRUE(commandBecomes(COMMAND_PAN));
        EXPECT_TRUE(command().ViewCommandSaved);
        end();
        ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
        EXPECT_EQ(command().CursorMode, CURSOR_SELECT);
        EXPECT_FALSE(command().ViewCommandSaved);
        EXPECT_EQ(view().SelectRow, 2u);
    }
}

TEST_F(Gestures, TheEndOfFullFitForgetsItsStep) {
    PressKey(VK_F2);
    ASSERT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    PressKey('F', {VK_CONTROL});
    click(300, 50);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.ZoomPhase == 1; }));
    RightClick();
    ASSERT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.ZoomPhase == 0; }));
    PressKey('F', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Full Fit - Click for Full Zoom"));
}

TEST_F(Gestures, OtherCommandsEndAZoomFirst) {
    PressKey('I', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    PressKey(VK_END);
    EXPECT_TRUE(cursorBecomes(400000));
    EXPECT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    PressKey('O', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_ZOOM_OUT));
    PressKey('D', {VK_CONTROL});
    EXPECT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    EXPECT_TRUE(WaitFor([&] { return !command().ViewCommandSaved; }, 10));
    PressKey('F', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_FULL_FIT));
    editor->command(COMMAND_DELETE);
    EXPECT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    PressKey('S', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_FULL_SCALE));
    editor->command(COMMAND_EDIT_MODE);
    EXPECT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
}

TEST_F(Gestures, ACommandThatComesWhileTheMouseIsHeldEndsTheGesture) {
    int32_t scale = view().Scale;
    PressKey('I', {VK_CONTROL});
    moveTo(3, 200, 50);
    press();
    // The keys rest while the mouse is held; a posted command does not.
    PressKey('O', {VK_CONTROL});
    editor->command(COMMAND_REDRAW);
    ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    moveTo(3, 400, 50);
    release();
    EXPECT_EQ(command().CursorMode, CURSOR_SELECT);
    EXPECT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    EXPECT_EQ(view().Scale, scale);
    ASSERT_TRUE(editor->painted());
}

// --- the screen commands --------------------------------------------------------------------------

TEST_F(Gestures, TheScreenCommandsZoomWithoutTheMouse) {
    int32_t all = view().Scale;
    int width = view().WavePaneWidth;
    TimeVal middle = timeAt(width / 2);
    editor->command(COMMAND_ZOOM_IN_STEP);
    ASSERT_TRUE(scaleBecomes(all + 1));
    expectCentre(middle, 0);
    middle = timeAt(width / 2);
    // At 0 or below the step out only centres.
    editor->command(COMMAND_ZOOM_OUT_STEP);
    editor->command(COMMAND_ZOOM_IN_STEP);
    ASSERT_TRUE(scaleBecomes(all + 2));
    expectCentre(middle, 0);
    editor->command(COMMAND_ZOOM_FIT);
    ASSERT_TRUE(scaleBecomes(all));
    EXPECT_TRUE(leftBecomes(0));
    EXPECT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
}

TEST_F(Gestures, AStepOutAboveZeroShowsWithTheNextRedraw) {
    zoomBy(3 - view().Scale);
    Picture before = PictureOfClient(editor->pane(3));
    editor->command(COMMAND_ZOOM_OUT_STEP);
    ASSERT_TRUE(scaleBecomes(2));
    ASSERT_TRUE(editor->painted());
    EXPECT_TRUE(PictureOfClient(editor->pane(3)) == before);
    EXPECT_EQ(view().ViewLeft, 0u);
    Picture ruler = PictureOfClient(editor->pane(1));
    editor->command(COMMAND_REDRAW + 1);
    ASSERT_TRUE(WaitFor([&] { return !(PictureOfClient(editor->pane(1)) == ruler); }, 10));
}

TEST_F(Gestures, AnOddCommandIsTheEvenOneBelowIt) {
    editor->command(COMMAND_ZOOM_IN + 1);
    EXPECT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    PostMessageA(editor->pane(3), WM_COMMAND, COMMAND_PAN + 1, 0);
    EXPECT_TRUE(commandBecomes(COMMAND_PAN));
}

// --- menus and keys -------------------------------------------------------------------------------

TEST_F(Gestures, TheViewMenuStartsEachViewCommand) {
    const std::pair<char, int> entries[] = {{'I', COMMAND_ZOOM_IN},    {'O', COMMAND_ZOOM_OUT},
                                            {'P', COMMAND_PAN},        {'F', COMMAND_FULL_FIT},
                                            {'S', COMMAND_FULL_SCALE}, {'R', COMMAND_EDIT_MODE}};
    for (auto [letter, id] : entries) {
        choose('V', static_cast<WORD>(letter));
        EXPECT_TRUE(commandBecomes(id)) << letter;
    }
}

TEST_F(Gestures, TheJumpMenuMovesTheCursorAndTheMark) {
    click(20, rowMiddle(1), 2);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 1; }));
    choose('J', 'E');
    ASSERT_TRUE(cursorBecomes(74000)); // the row's own end
    choose('J', 'P');
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.MarkActive && now.MarkTime == 74000; }));
    choose('J', '0');
    ASSERT_TRUE(cursorBecomes(0));
    choose('J', 'C');
    ASSERT_TRUE(cursorBecomes(16000));
    TimeVal tick = view().TickMinor;
    choose('J', 'R');
    ASSERT_TRUE(cursorBecomes(16000 + tick));
    choose('J', 'L');
    ASSERT_TRUE(cursorBecomes(16000));
    choose('J', 'M');
    ASSERT_TRUE(cursorBecomes(74000));
    choose('J', 'T');
    ASSERT_NE(editor->dialog().window, nullptr);
    PressKey('5');
    PressKey(VK_RETURN);
    ASSERT_TRUE(editor->dialogGone());
    ASSERT_TRUE(cursorBecomes(5));
    choose('J', 'H');
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return !now.MarkActive && now.MarkTime == 5; }));
}

TEST_F(Gestures, EachKeyOfAViewCommandOrModeStartsIt) {
    const std::pair<char, int> keys[] = {{'I', COMMAND_ZOOM_IN},    {'O', COMMAND_ZOOM_OUT},
                                         {'W', COMMAND_PAN},        {'F', COMMAND_FULL_FIT},
                                         {'S', COMMAND_FULL_SCALE}, {'Q', COMMAND_QUERY_MODE}};
    for (auto [key, id] : keys) {
        PressKey(static_cast<WORD>(key), {VK_CONTROL});
        EXPECT_TRUE(commandBecomes(id)) << key;
    }
    editor->command(COMMAND_EDIT_MODE);
    ASSERT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    PressKey(VK_F2);
    EXPECT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
}

TEST_F(Gestures, TheKeysOfCommandsThatDoNotApplyChangeNothing) {
    zoomBy(3);
    PressKey('W', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_PAN));
    for (WORD key : {VK_F4, VK_DELETE}) PressKey(key);
    for (WORD key : {VK_DELETE, VK_INSERT}) PressKey(key, {VK_SHIFT});
    for (WORD key : {'X', 'C', 'V'}) PressKey(key, {VK_CONTROL});
    PressKey(VK_INSERT, {VK_CONTROL});
    PressKey(VK_HOME, {VK_CONTROL}); // no key of either table
    // The command in force still takes the mouse.
    click(view().WavePaneWidth - 1, 50);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.ViewLeft > 0; }));
    EXPECT_EQ(command().CurrentCommand, COMMAND_PAN);
    EXPECT_EQ(view().RowCount, 40u);
    EXPECT_EQ(editor->strip(), nullptr);
}

TEST_F(Gestures, AFloatingWindowKeepsTheArrowsAndLeavesTheOtherKeys) {
    click(20, rowMiddle(1), 2);
    ASSERT_TRUE(becomes([](const WaveViewRecord &now) { return now.SelectRow == 1; }));
    editor->command(COMMAND_SHOW_WAVEFORM_DATA);
    Dialog listing = editor->dialog();
    ASSERT_NE(listing.window, nullptr);
    ASSERT_TRUE(WaitFor([&] { return editor->focus() != nullptr && editor->focus() != editor->frame(); }));
    for (WORD key : {VK_RIGHT, VK_DOWN, VK_DOWN, VK_UP}) PressKey(key);
    // What comes behind them is done when it is seen.
    PressKey('I', {VK_CONTROL});
    ASSERT_TRUE(commandBecomes(COMMAND_ZOOM_IN));
    EXPECT_EQ(view().SelectRow, 1u);
    EXPECT_EQ(view().CursorTime, 0u);
    PressKey(VK_END);
    EXPECT_TRUE(cursorBecomes(74000));
    PressKey(VK_F2);
    EXPECT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
}

TEST_F(Gestures, TheMouseHasTheCursorOfItsCommandInRulerAndWaves) {
    auto shape = [&](int pane) {
        moveTo(pane, pane == 2 ? 50 : 200, pane == 1 ? 5 : 50);
        EXPECT_TRUE(editor->painted());
        CURSORINFO info = {};
        info.cbSize = sizeof info;
        return GetCursorInfo(&info) ? info.hCursor : nullptr;
    };
    std::vector<HCURSOR> shapes;
    HCURSOR arrow = nullptr;
    for (int id : {COMMAND_EDIT_MODE, COMMAND_QUERY_MODE, COMMAND_ZOOM_IN}) {
        editor->command(id);
        ASSERT_TRUE(commandBecomes(id));
        shapes.push_back(shape(3));
        EXPECT_EQ(shape(1), shapes.back()) << id;
        HCURSOR names = shape(2);
        EXPECT_NE(names, shapes.back()) << id;
        if (!arrow) arrow = names;
        EXPECT_EQ(names, arrow) << id;
    }
    EXPECT_NE(shapes[0], shapes[1]);
    EXPECT_NE(shapes[1], shapes[2]);
    EXPECT_NE(shapes[0], shapes[2]);
}

// --- the scroll bars ------------------------------------------------------------------------------

namespace {

class ScrollBars : public Gestures {
protected:
    // A place on a bar of the waves in screen pixels: so far from its near arrow.
    POINT onBar(bool vertical, int along) const {
        RECT window = PlaceOf(editor->pane(3)), client = {};
        GetClientRect(editor->pane(3), &client);
        MapWindowPoints(editor->pane(3), nullptr, reinterpret_cast<POINT *>(&client), 2);
        if (vertical)
            return {(client.right + window.right) / 2, client.top + GetSystemMetrics(SM_CYVSCROLL) + along};
        return {client.left + GetSystemMetrics(SM_CXHSCROLL) + along, (client.bottom + window.bottom) / 2};
    }
    // Takes the thumb where it stands at the bar's start.
    void takeThumb(bool vertical) const {
        POINT thumb = onBar(vertical, 5);
        MoveMouse(thumb.x, thumb.y);
        PressButton(true);
    }
    void moveThumb(bool vertical, int along) const {
        POINT place = onBar(vertical, along);
        MoveMouse(place.x, place.y);
    }
    void clickShaft(bool vertical, int along) const {
        POINT place = onBar(vertical, along);
        ClickAt(place.x, place.y);
    }
    void send(UINT message, WORD code, WORD position = 0, int pane = 3) const {
        SendMessageA(editor->pane(pane), message, MAKEWPARAM(code, position), 0);
    }
    TimeVal paneTime() const { return timeAt(view().WavePaneWidth) - view().ViewLeft; }
};

} // namespace

TEST_F(ScrollBars, DraggingTheThumbOfTheTimeMovesWhenItIsLetGo) {
    zoomBy(3);
    takeThumb(false);
    moveThumb(false, 200);
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(view().ViewLeft, 0u);
    PressButton(false);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.ViewLeft > 0; }));
    EXPECT_LT(view().ViewLeft, view().SpanEnd - paneTime());
}

TEST_F(ScrollBars, DraggingTheThumbOfTheRowsMovesWhenItIsLetGo) {
    takeThumb(true);
    moveThumb(true, 100);
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(view().TopRow, 0u);
    PressButton(false);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.TopRow > 0; }));
}

TEST_F(ScrollBars, AClickBesideTheThumbMovesByAPage) {
    zoomBy(3);
    TimeVal page = paneTime() - view().TickMinor;
    clickShaft(false, 300);
    EXPECT_TRUE(leftBecomes(page));
    clickShaft(false, 5);
    EXPECT_TRUE(leftBecomes(0));
    uint32_t visible = static_cast<uint32_t>(view().WavePaneHeight / view().RowHeight);
    clickShaft(true, 150);
    EXPECT_TRUE(topBecomes(visible));
    clickShaft(true, 5);
    EXPECT_TRUE(topBecomes(0));
}

TEST_F(ScrollBars, EachCodeOfTheTimeBar) {
    zoomBy(3);
    TimeVal tick = view().TickMinor, page = paneTime() - tick;
    send(WM_HSCROLL, SB_LINEDOWN);
    EXPECT_EQ(view().ViewLeft, tick);
    send(WM_HSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(view().ViewLeft, tick + page);
    send(WM_HSCROLL, SB_THUMBTRACK, 7);
    send(WM_HSCROLL, SB_ENDSCROLL);
    EXPECT_EQ(view().ViewLeft, tick + page);
    send(WM_HSCROLL, SB_LINEUP);
    EXPECT_EQ(view().ViewLeft, page);
    send(WM_HSCROLL, SB_PAGEUP);
    EXPECT_EQ(view().ViewLeft, 0u);
    send(WM_HSCROLL, SB_LINEUP);
    EXPECT_EQ(view().ViewLeft, 0u);
    TimeVal excess = view().SpanEnd - paneTime();
    send(WM_HSCROLL, SB_THUMBPOSITION, 2500);
    EXPECT_EQ(view().ViewLeft, excess / 4);
    send(WM_HSCROLL, SB_BOTTOM);
    EXPECT_EQ(view().ViewLeft, 500000u);
    send(WM_HSCROLL, SB_TOP);
    EXPECT_EQ(view().ViewLeft, 0u);
}

TEST_F(ScrollBars, EachCodeOfTheRowBar) {
    uint32_t visible = static_cast<uint32_t>(view().WavePaneHeight / view().RowHeight);
    send(WM_VSCROLL, SB_LINEDOWN);
    EXPECT_EQ(view().TopRow, 1u);
    send(WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(view().TopRow, 1 + visible);
    send(WM_VSCROLL, SB_THUMBTRACK, 3);
    send(WM_VSCROLL, SB_ENDSCROLL);
    EXPECT_EQ(view().TopRow, 1 + visible);
    send(WM_VSCROLL, SB_LINEUP);
    EXPECT_EQ(view().TopRow, visible);
    send(WM_VSCROLL, SB_PAGEUP);
    EXPECT_EQ(view().TopRow, 0u);
    send(WM_VSCROLL, SB_THUMBPOSITION, 5);
    EXPECT_EQ(view().TopRow, 5u);
    send(WM_VSCROLL, SB_BOTTOM);
    EXPECT_EQ(view().TopRow, 40 - visible);
    send(WM_VSCROLL, SB_TOP);
    EXPECT_EQ(view().TopRow, 0u);
}

TEST_F(ScrollBars, TheWheelThatTipsScrollsTheTime) {
    zoomBy(3);
    TimeVal step = 10 * view().TickMinor;
    moveTo(2, 20, 50);
    SendMouse(MOUSEEVENTF_HWHEEL, 120);
    EXPECT_TRUE(leftBecomes(step));
    SendMouse(MOUSEEVENTF_HWHEEL, -120);
    EXPECT_TRUE(leftBecomes(0));
}

TEST_F(ScrollBars, TheWheelZoomsAboutThePointerOverTheRulerToo) {
    zoomBy(2);
    TimeVal place = timeAt(250);
    int32_t scale = view().Scale;
    moveTo(1, view().NameColumnWidth + 250, 5);
    TurnWheel(360, VK_CONTROL);
    ASSERT_TRUE(scaleBecomes(scale + 3));
    EXPECT_EQ(timeAt(250), place);
    TurnWheel(-360, VK_CONTROL);
    EXPECT_TRUE(scaleBecomes(scale));
    EXPECT_TRUE(leftBecomes(0));
}

// --- the whole 32-bit axis ------------------------------------------------------------------------

namespace {

class EndlessAxis : public ScrollBars {
protected:
    void SetUp() override {
        directory.write("endless.wdl", "%ENDTIME = 4294967295;\n"
                                       "A { In Default None 0 1 50 } = 0 2000000000 1 2000000000;\n");
        directory.write("endless.kel", "Wave A\n");
        open("endless");
    }
};

} // namespace

TEST_F(EndlessAxis, KeysReachItsEnds) {
    EXPECT_EQ(view().SpanEnd, TIME_FOREVER);
    PressKey(VK_END);
    EXPECT_TRUE(cursorBecomes(TIME_FOREVER));
    PressKey(VK_RIGHT);
    PressKey(VK_RIGHT, {VK_SHIFT});
    TimeVal tick = view().TickMinor;
    PressKey(VK_LEFT, {VK_SHIFT});
    EXPECT_TRUE(cursorBecomes(TIME_FOREVER - 10 * tick));
    PressKey(VK_HOME);
    EXPECT_TRUE(cursorBecomes(0));
}

TEST_F(EndlessAxis, TheTimeBarReachesAllOfIt) {
    zoomBy(8);
    WaveViewRecord before = view();
    send(WM_HSCROLL, SB_THUMBPOSITION, 10000);
    EXPECT_EQ(view().ViewLeft, TIME_FOREVER - paneTime());
    send(WM_HSCROLL, SB_BOTTOM);
    EXPECT_EQ(view().ViewLeft, TIME_FOREVER);
    send(WM_HSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(view().ViewLeft, TIME_FOREVER);
    ASSERT_TRUE(editor->painted());
    send(WM_HSCROLL, SB_TOP);
    EXPECT_EQ(view().ViewLeft, 0u);
    ASSERT_TRUE(editor->painted());
    EXPECT_EQ(view().TickMinor, before.TickMinor);
    takeThumb(false);
    moveThumb(false, 200);
    PressButton(false);
    EXPECT_TRUE(becomes([](const WaveViewRecord &now) { return now.ViewLeft > 0x10000000; }));
}

TEST_F(EndlessAxis, ItZoomsToItsMaximumAndBack) {
    // As far as the least scale goes: its middle.
    TimeVal left = view().ViewLeft;
    int32_t all = view().Scale;
    zoomBy(-all);
    EXPECT_EQ(view().Scale, 0);
    PressKey('I', {VK_CONTROL});
    EXPECT_TRUE(promptIs("Zoom In - At Maximum Scale"));
    PressKey('F', {VK_CONTROL});
    click(300, 50);
    EXPECT_TRUE(scaleBecomes(all));
    EXPECT_TRUE(leftBecomes(left));
}

// --- while a question is open ---------------------------------------------------------------------

TEST_F(Gestures, ACommandThatComesToAnOpenQuestionAsksItNoSecondTime) {
    editor->command(COMMAND_OPEN);
    Dialog first = editor->dialog();
    ASSERT_NE(first.window, nullptr);
    editor->command(COMMAND_QUERY_MODE);
    SendMessageA(editor->frame(), WM_QUERYENDSESSION, 0, 0);
    EXPECT_TRUE(commandBecomes(COMMAND_QUERY_MODE));
    EXPECT_EQ(editor->dialog().window, first.window);
    PressKey(VK_ESCAPE);
    EXPECT_TRUE(editor->dialogGone());
    EXPECT_TRUE(commandBecomes(COMMAND_EDIT_MODE));
    EXPECT_EQ(editor->title(), "Kelvane - many");
}

TEST_F(Gestures, TheProgramMayBeClosedWhileAQuestionIsOpen) {
    for (int id : {COMMAND_OPEN, COMMAND_SAVE_AS, COMMAND_ABOUT, COMMAND_TO_TIME}) {
        SCOPED_TRACE(id);
        editor->command(id);
        ASSERT_NE(editor->dialog().window, nullptr);
        editor->close();
        EXPECT_EQ(editor->ended(), 0u);
        open("many");
    }
}
