#include "shell/view_gestures.h"

#include "display/mouse_place.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/commands.h"
#include "shell/mode_gestures.h"
#include "unit/support/fresh_store.h"
#include <algorithm>

namespace {

constexpr int32_t ROW = 20;

// A wave pane of 1000 by 600 pixels on a span of 100000, from 0 on, with rows of 20 pixels.
class MouseGestures : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitCommands();
        InitMouseGesture();
        InitModeGestures();
        Headless.panesExist = true;
        DisplayOpen = 1;
        WaveView.WavePaneWidth = 1000;
        WaveView.WavePaneHeight = 600;
        WaveView.RowHeight = ROW;
        WaveView.NameColumnWidth = 100;
        WaveView.SpanEnd = 100000;
        WaveView.TickMinor = 10;
        DispatchCommand(COMMAND_QUERY_MODE);
    }
    static void ShowRows(int count) {
        for (int i = 0; i < count; i++) {
            std::string name = "N" + std::to_string(i);
            MakePattern(name.c_str(), {{0, 10}, {1, 10}});
            ShowWaveByName(name.c_str());
        }
        ScrollRowsTo(0, false);
        DispatchCommand(COMMAND_QUERY_MODE);
    }
    static void Press(int32_t x, int32_t y = 0, Pane pane = Pane::Wave, MouseKeys keys = {}) {
        LeftPressed(pane, x, y, keys);
    }
    static void Release(int32_t x, int32_t y = 0, Pane pane = Pane::Wave) { LeftReleased(pane, x, y); }
    static void Click(int32_t x, int32_t y = 0, Pane pane = Pane::Wave, MouseKeys keys = {}) {
        Press(x, y, pane, keys);
        Release(x, y, pane);
    }
    static void ClickName(uint32_t row, MouseKeys keys = {}) {
        Click(5, static_cast<int32_t>(row) * ROW + 3, Pane::Name, keys);
    }
    static void RightClick() {
        OtherPressed();
        OtherReleased(Pane::Wave, 5, 5);
    }
    static std::vector<uint32_t> Highlighted() {
        std::vector<uint32_t> rows;
        for (uint32_t row = 0; row < WaveView.RowCount; row++)
            if (WaveRows[row].highlighted()) rows.push_back(row);
        return rows;
    }
    using Rows = std::vector<uint32_t>;
};

constexpr MouseKeys SHIFT = {true, false};
constexpr MouseKeys CONTROL = {false, true};

} // namespace

// --- places ---------------------------------------------------------------------------------------

TEST_F(MouseGestures, AReleaseNineteenPixelsFromThePressIsAClick) {
    DispatchCommand(COMMAND_ZOOM_IN);
    for (int32_t way : {19, -19}) {
        WaveView.Scale = 0;
        Press(500);
        Release(500 + way);
        EXPECT_EQ(WaveView.Scale, 1) << way;
    }
}

TEST_F(MouseGestures, AReleaseTwentyPixelsFromThePressIsADrag) {
    DispatchCommand(COMMAND_ZOOM_IN);
    for (int32_t way : {20, -20}) {
        WaveView.Scale = 0;
        WaveView.ViewLeft = 0;
        Press(500);
        Release(500 + way);
        EXPECT_EQ(WaveView.Scale, 4) << way;
        EXPECT_EQ(WaveView.ZoomCentre, way > 0 ? 510u : 490u);
    }
}

TEST_F(MouseGestures, APlaceThatWasLeftOnceIsForgottenForItsAxis) {
    ShowRows(5);
    Press(500, 50);
    MouseMoved(Pane::Wave, 519, 50);
    EXPECT_EQ(Mouse.time, 500u);
    MouseMoved(Pane::Wave, 520, 69);
    EXPECT_EQ(Mouse.time, 520u);
    EXPECT_EQ(Mouse.row, 2u);
    EXPECT_EQ(MouseGesture.stickX, NO_PIXEL);
    EXPECT_EQ(MouseGesture.stickY, 50);
    MouseMoved(Pane::Wave, 501, 70);
    EXPECT_EQ(Mouse.time, 501u);
    EXPECT_EQ(Mouse.row, 3u);
    Release(501, 50);
    EXPECT_EQ(Mouse.row, 2u);
}

TEST_F(MouseGestures, AReleaseForgetsThePlace) {
    Click(500);
    MouseMoved(Pane::Wave, 510, 0);
    EXPECT_EQ(Mouse.time, 510u);
}

TEST_F(MouseGestures, ThePanelOfThePressGetsWhatFollows) {
    Press(150, 3, Pane::Ruler);
    MouseMoved(Pane::Wave, 300, 3);
    EXPECT_EQ(Mouse.time, 200u);
    Release(300, 3, Pane::Wave);
    MouseMoved(Pane::Wave, 300, 3);
    EXPECT_EQ(Mouse.time, 300u);
}

// --- view commands --------------------------------------------------------------------------------

TEST_F(MouseGestures, AClickZoomsInAboutItsPlaceAndTheCommandStaysInForce) {
    DispatchCommand(COMMAND_ZOOM_IN);
    Press(700);
    EXPECT_STREQ(PromptText, "Zoom In - Drag to Other Corner for Zoom Window");
    EXPECT_EQ(CommandState.CursorMode, 18);
    EXPECT_EQ(WaveView.ZoomAnchor, 700u);
    Release(700);
    EXPECT_EQ(WaveView.Scale, 1);
    EXPECT_EQ(WaveView.ViewLeft, 450u);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_ZOOM);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
    Click(500);
    EXPECT_EQ(WaveView.Scale, 2);
}

TEST_F(MouseGestures, ADragZoomsToItsRangeInEitherDirection) {
    DispatchCommand(COMMAND_ZOOM_IN);
    for (bool back : {false, true}) {
        WaveView.Scale = -4;
        WaveView.ViewLeft = 0;
        Press(back ? 300 : 200);
        Release(back ? 200 : 300);
        EXPECT_EQ(WaveView.Scale, -1);
        EXPECT_EQ(WaveView.ViewLeft, 4000u - 1000);
    }
}

TEST_F(MouseGestures, TheRulerTakesAZoomToo) {
    DispatchCommand(COMMAND_ZOOM_IN);
    Click(800, 3, Pane::Ruler);
    EXPECT_EQ(WaveView.ViewLeft, 450u);
}

TEST_F(MouseGestures, ARightOrMiddleButtonGivesTheInterruptedCommandBack) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ZOOM_IN);
    Click(500);
    DispatchCommand(COMMAND_PAN);
    RightClick();
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_SELECT);
    EXPECT_FALSE(CommandState.ViewCommandSaved);
    EXPECT_EQ(CommandState.CommandPhase, PHASE_IDLE);
}

TEST_F(MouseGestures, ARightClickThatEndsAZoomKeepsTheSelection) {
    ShowRows(2);
    ClickName(1);
    DispatchCommand(COMMAND_ZOOM_IN);
    RightClick();
    EXPECT_EQ(Highlighted(), Rows{1});
    RightClick();
    EXPECT_EQ(Highlighted(), Rows{});
    EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
}

TEST_F(MouseGestures, ARightButtonWhileTheLeftIsHeldDoesNothing) {
    DispatchCommand(COMMAND_ZOOM_IN);
    Press(500);
    RightClick();
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
    Release(500);
    EXPECT_EQ(WaveView.Scale, 1);
}

TEST_F(MouseGestures, AReleaseWithoutAPressDoesNothing) {
    DispatchCommand(COMMAND_ZOOM_IN);
    Release(500);
    EXPECT_EQ(WaveView.Scale, 0);
}

TEST_F(MouseGestures, AMouseThatIsTakenAwayEndsTheGestureWithoutAZoom) {
    DispatchCommand(COMMAND_ZOOM_IN);
    Press(500);
    MouseCaptureLost();
    Release(700);
    EXPECT_EQ(WaveView.Scale, 0);
    EXPECT_EQ(WaveView.ZoomPhase, 0);
    EXPECT_STREQ(PromptText, "Zoom In - Pick Center Point or Corner of Zoom Window");
    Click(500);
    EXPECT_EQ(WaveView.Scale, 1);
}

TEST_F(MouseGestures, AMouseThatIsTakenAwayLeavesFullFitAtItsStep) {
    DispatchCommand(COMMAND_FULL_FIT);
    Click(500);
    Press(500);
    MouseCaptureLost();
    EXPECT_EQ(WaveView.ZoomPhase, 1);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_ZOOM);
}

TEST_F(MouseGestures, AViewCommandThatStartsUnderTheHeldMouseWaitsForTheNextPress) {
    ShowRows(2);
    Press(100, 5);
    DispatchCommand(COMMAND_ZOOM_IN);
    Release(500, 5);
    EXPECT_EQ(WaveView.Scale, 0);
    EXPECT_EQ(GestureState, GestureStateValue::Idle);
    // A press alone does not move it.
    EXPECT_EQ(WaveView.CursorTime, 0u);
    Click(500);
    EXPECT_EQ(WaveView.Scale, 1);
}

TEST_F(MouseGestures, ADeleteDuringAZoomGivesTheCommandBackFirst) {
    DispatchCommand(COMMAND_EDIT_MODE);
    DispatchCommand(COMMAND_ZOOM_IN);
    Click(500);
    DispatchCommand(COMMAND_DELETE);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_EDIT_MODE);
    EXPECT_EQ(WaveView.Scale, 1);
}

TEST_F(MouseGestures, AnotherViewCommandBeginsItsGestureAnew) {
    DispatchCommand(COMMAND_FULL_FIT);
    Click(500);
    EXPECT_EQ(WaveView.ZoomPhase, 1);
    DispatchCommand(COMMAND_ZOOM_IN);
    EXPECT_EQ(WaveView.ZoomPhase, 0);
    EXPECT_STREQ(PromptText, "Zoom In - Pick Center Point or Corner of Zoom Window");
}

TEST_F(MouseGestures, EveryButtonButALeftReleaseRemovesTheErrorStrip) {
    Headless.strips.clear();
    Press(5);
    EXPECT_EQ(Headless.strips, std::vector<std::string>{""});
    Release(5);
    EXPECT_EQ(Headless.strips.size(), 1u);
    OtherPressed();
    EXPECT_EQ(Headless.strips.size(), 2u);
    OtherReleased(Pane::Wave, 5, 5);
    EXPECT_EQ(Headless.strips.size(), 3u);
}

// --- picking --------------------------------------------------------------------------------------

TEST_F(MouseGestures, AClickMovesTheCursorAndSelectsTheRow) {
    ShowRows(5);
    for (int mode : {COMMAND_QUERY_MODE, COMMAND_EDIT_MODE}) {
        DispatchCommand(mode);
        Click(300, 2 * ROW + 5);
        // To be edited a wave is taken at its end at the latest.
        bool query = mode == COMMAND_QUERY_MODE;
        EXPECT_EQ(WaveView.CursorTime, query ? 300u : 20u);
        EXPECT_EQ(WaveView.SelectRow, 2u);
        EXPECT_EQ(WaveView.SelectRowLast, 2u);
        EXPECT_EQ(Highlighted(), Rows{2});
        EXPECT_STREQ(PromptText, query ? "Time = 300 ps - Level = High" : "Time = 20 ps - Level = High");
        EXPECT_EQ(CommandState.CurrentCommand, mode);
    }
}

TEST_F(MouseGestures, TheCursorFollowsTheHeldMouse) {
    ShowRows(5);
    Press(300, 2 * ROW + 5);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY | CURSOR_TRACK);
    MouseMoved(Pane::Wave, 340, 4 * ROW + 15);
    EXPECT_EQ(WaveView.CursorTime, 340u);
    EXPECT_EQ(Highlighted(), Rows{4});
    EXPECT_STREQ(PromptText, "Time = 340 ps");
    Release(340, 4 * ROW + 15);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY);
    EXPECT_STREQ(PromptText, "Time = 340 ps - Level = High");
    MouseMoved(Pane::Wave, 500, 5);
    EXPECT_EQ(WaveView.CursorTime, 340u);
}

TEST_F(MouseGestures, AClickBelowTheLastRowSelectsThatOne) {
    ShowRows(2);
    Click(300, 500);
    EXPECT_EQ(WaveView.SelectRow, 1u);
    Click(5, 500, Pane::Name);
    EXPECT_EQ(WaveView.SelectRow, 1u);
}

TEST_F(MouseGestures, AClickInAnEmptyDocumentSelectsNothing) {
    Click(300, 50);
    Click(5, 50, Pane::Name);
    EXPECT_EQ(WaveView.SelectRow, 0u);
    EXPECT_FALSE(CommandIsAllowed(COMMAND_HIDE));
}

TEST_F(MouseGestures, AClickOnTheRulerMovesTheCursorAlone) {
    ShowRows(3);
    ClickName(1);
    Click(350, 3, Pane::Ruler);
    EXPECT_EQ(WaveView.CursorTime, 250u);
    EXPECT_EQ(Highlighted(), Rows{1});
}

TEST_F(MouseGestures, AClickOnANameSelectsItsRowAlone) {
    ShowRows(5);
    WaveView.CursorTime = 77;
    ClickName(3);
    ClickName(1);
    EXPECT_EQ(Highlighted(), Rows{1});
    EXPECT_EQ(WaveView.SelectRow, 1u);
    EXPECT_EQ(WaveView.CursorTime, 77u);
    EXPECT_TRUE(CommandIsAllowed(COMMAND_HIDE));
}

TEST_F(MouseGestures, RowsScrolledDownAreSelectedByTheirPlaceInTheList) {
    ShowRows(60);
    ScrollRowsTo(20, false);
    ClickName(3);
    EXPECT_EQ(Highlighted(), Rows{23});
}

TEST_F(MouseGestures, ControlAddsARowAndTakesItOut) {
    ShowRows(6);
    ClickName(2);
    ClickName(5, CONTROL);
    EXPECT_EQ(Highlighted(), (Rows{2, 5}));
    EXPECT_EQ(WaveView.SelectRow, 5u);
    ClickName(5, CONTROL);
    EXPECT_EQ(Highlighted(), Rows{2});
    EXPECT_EQ(WaveView.SelectRow, 2u);
    ClickName(2, CONTROL);
    EXPECT_EQ(Highlighted(), Rows{});
    EXPECT_FALSE(CommandIsAllowed(COMMAND_HIDE));
}

TEST_F(MouseGestures, ADragOverTheNamesSelectsARange) {
    ShowRows(6);
    Press(5, 2 * ROW + 5, Pane::Name);
    MouseMoved(Pane::Name, 5, 4 * ROW + 15);
    EXPECT_EQ(Highlighted(), (Rows{2, 3, 4}));
    MouseMoved(Pane::Name, 5, 500);
    EXPECT_EQ(Highlighted(), (Rows{2, 3, 4, 5}));
    MouseMoved(Pane::Name, 5, -30);
    EXPECT_EQ(Highlighted(), (Rows{0, 1, 2}));
    Release(5, -30, Pane::Name);
    EXPECT_EQ(Highlighted(), (Rows{0, 1, 2}));
}

TEST_F(MouseGestures, AClickOnOneOfSeveralRowsLeavesItAloneSelected) {
    ShowRows(6);
    ClickName(1);
    ClickName(3, CONTROL);
    Click(300, 3 * ROW + 5);
    EXPECT_EQ(Highlighted(), Rows{3});
}

TEST_F(MouseGestures, APressTakesTheTimeSelectionAway) {
    ShowRows(2);
    for (Pane pane : {Pane::Wave, Pane::Name}) {
        WaveView.SelectActive = true;
        Press(5, 5, pane);
        EXPECT_FALSE(WaveView.SelectActive);
        Release(5, 5, pane);
    }
}

TEST_F(MouseGestures, PickingShowsInTheNamesAndTheMenuAndIsToldOf) {
    static int told;
    told = 0;
    ShowRows(6);
    RowSelectionHook = [] { told++; };
    Press(5, 2 * ROW + 5, Pane::Name);
    HeadlessSurface.calls.clear();
    HeadlessSurface.recording = true;
    Headless.enabledCommands.clear();
    int before = told;
    MouseMoved(Pane::Name, 5, 3 * ROW + 15);
    HeadlessSurface.recording = false;
    auto isName = [](const SurfaceCall &call) {
        return call.kind == SurfaceCall::Kind::Fill && call.pane == Pane::Name &&
               call.rect.top == 3 * ROW + 2;
    };
    EXPECT_TRUE(std::ranges::any_of(HeadlessSurface.calls, isName));
    EXPECT_GT(told, before);
    Release(5, 3 * ROW + 15, Pane::Name);
    auto isHide = [](auto &entry) { return entry == std::pair<uint32_t, bool>(COMMAND_HIDE, true); };
    EXPECT_TRUE(std::ranges::any_of(Headless.enabledCommands, isHide));
    RowSelectionHook = nullptr;
    HeadlessSurface.calls.clear();
}

TEST_F(MouseGestures, AClickWithNoCommandInForceBeginsTheQueryMode) {
    CommandState.CurrentCommand = 0;
    Click(300, 5);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_QUERY_MODE);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_QUERY);
}

TEST_F(MouseGestures, HidingActsOnAllRowsThatWerePicked) {
    ShowRows(6);
    ClickName(2);
    ClickName(5, CONTROL);
    DispatchCommand(COMMAND_HIDE);
    EXPECT_EQ(WaveView.RowCount, 4u);
}

TEST_F(MouseGestures, NothingIsPickedWhileADocumentIsRead) {
    ShowRows(2);
    DisplayOpen = 0;
    Click(300, 5);
    RightClick();
    EXPECT_EQ(WaveView.CursorTime, 0u);
    EXPECT_FALSE(MouseGesture.captured);
}

// --- the wheel ------------------------------------------------------------------------------------

TEST_F(MouseGestures, TheWheelScrollsTheRows) {
    ShowRows(60);
    WheelTurned(Pane::Wave, {0, 0}, -120, {}, 3);
    EXPECT_EQ(WaveView.TopRow, 3u);
    WheelTurned(Pane::Name, {0, 0}, -240, {}, 3);
    EXPECT_EQ(WaveView.TopRow, 9u);
    WheelTurned(Pane::Wave, {0, 0}, 120, {}, 3);
    EXPECT_EQ(WaveView.TopRow, 6u);
    WheelTurned(Pane::Wave, {0, 0}, 12000, {}, 3);
    EXPECT_EQ(WaveView.TopRow, 0u);
    WheelTurned(Pane::Wave, {0, 0}, -12000, {}, 3);
    EXPECT_EQ(WaveView.TopRow, 30u);
}

TEST_F(MouseGestures, SmallTurnsOfTheWheelAddUp) {
    ShowRows(60);
    for (int i = 0; i < 3; i++) WheelTurned(Pane::Wave, {0, 0}, -30, {}, 1);
    EXPECT_EQ(WaveView.TopRow, 0u);
    WheelTurned(Pane::Wave, {0, 0}, -30, {}, 1);
    EXPECT_EQ(WaveView.TopRow, 1u);
    WheelTurned(Pane::Wave, {0, 0}, -90, {}, 1);
    WheelTurned(Pane::Wave, {0, 0}, 30, {}, 1);
    WheelTurned(Pane::Wave, {0, 0}, -30, {}, 1);
    EXPECT_EQ(WaveView.TopRow, 1u);
    // What one direction has left over is no debt for the other.
    WheelTurned(Pane::Wave, {0, 0}, 119, {}, 1);
    WheelTurned(Pane::Wave, {0, 0}, -30, {}, 1);
    WheelTurned(Pane::Wave, {0, 0}, -90, {}, 1);
    EXPECT_EQ(WaveView.TopRow, 2u);
}

TEST_F(MouseGestures, TheWheelWithShiftScrollsTheTime) {
    WheelTurned(Pane::Wave, {0, 0}, -120, SHIFT, 3);
    EXPECT_EQ(WaveView.ViewLeft, 100u);
    WheelTurned(Pane::Wave, {0, 0}, 240, SHIFT, 3);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
    WheelTipped(Pane::Wave, {0, 0}, 120);
    EXPECT_EQ(WaveView.ViewLeft, 100u);
    WaveView.TickMinor = TIME_FOREVER;
    WheelTurned(Pane::Wave, {0, 0}, -12000, SHIFT, 3);
    EXPECT_EQ(WaveView.ViewLeft, WaveView.SpanEnd);
    WheelTipped(Pane::Wave, {0, 0}, -12000);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
}

TEST_F(MouseGestures, TheMousesTimeAndRowFollowTheWheel) {
    ShowRows(60);
    MouseMoved(Pane::Wave, 333, 50);
    EXPECT_EQ(Mouse.time, 333u);
    WheelTurned(Pane::Wave, {333, 50}, -240, SHIFT, 3);
    EXPECT_EQ(Mouse.time, 533u);
    WheelTipped(Pane::Wave, {333, 50}, -120);
    EXPECT_EQ(Mouse.time, 433u);
    EXPECT_EQ(Mouse.row, 2u);
    WheelTurned(Pane::Wave, {333, 50}, -120, {}, 3);
    EXPECT_EQ(Mouse.row, 5u);
    WheelTurned(Pane::Ruler, {433, 5}, -120, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(Mouse.time, MouseToTimeRow(Pane::Ruler, 433, 5).time);
    // Beside the panels there is no place to note.
    TimeVal before = Mouse.time;
    WheelTurned(Pane::None, {0, 0}, -120, SHIFT, 3);
    EXPECT_EQ(Mouse.time, before);
}

TEST_F(MouseGestures, AWheelThatTurnsDuringADragTakesItAlong) {
    ShowRows(60);
    Press(300, 10);
    ASSERT_EQ(GestureState, GestureStateValue::QueryTracking);
    MouseMoved(Pane::Wave, 333, 10);
    WheelTurned(Pane::Wave, {333, 10}, -120, SHIFT, 3);
    EXPECT_EQ(WaveView.CursorTime, 433u);
    Release(333, 10);
    EXPECT_EQ(WaveView.CursorTime, 433u);
}

TEST_F(MouseGestures, TheWheelWithControlZoomsAboutThePointer) {
    WaveView.ViewLeft = 5000;
    WheelTurned(Pane::Wave, {800, 0}, 120, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, 1);
    EXPECT_EQ(WaveView.ViewLeft, 5400u);
    WheelTurned(Pane::Wave, {800, 0}, -120, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, 0);
    EXPECT_EQ(WaveView.ViewLeft, 5000u);
    WheelTurned(Pane::Ruler, {900, 0}, 240, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, 2);
    EXPECT_EQ(WaveView.ViewLeft, 5600u);
    // Over the names it is the left edge.
    WheelTurned(Pane::Name, {50, 0}, 120, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, 3);
    EXPECT_EQ(WaveView.ViewLeft, 5600u);
}

TEST_F(MouseGestures, TheWheelStopsAtTheLimitsOfTheScaleWithoutAMessage) {
    WheelTurned(Pane::Wave, {500, 0}, 12000, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, MaxScale());
    WheelTurned(Pane::Wave, {500, 0}, -12000, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, -7);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(MouseGestures, TheWheelLeavesTheCommandInForce) {
    DispatchCommand(COMMAND_ZOOM_IN);
    WheelTurned(Pane::Wave, {500, 0}, 120, CONTROL, 3);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
    DisplayOpen = 0;
    WheelTurned(Pane::Wave, {500, 0}, 120, CONTROL, 3);
    EXPECT_EQ(WaveView.Scale, 1);
}
