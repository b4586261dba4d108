#include "display/zoom.h"

#include "shell/commands.h"
#include "shell/reporting.h"
#include "unit/display/display_fixture.h"

namespace {

const std::vector<std::string> MAXIMUM = {"Already at maximum scale"};
const std::vector<std::string> MINIMUM = {"Already at minimum scale"};

constexpr TimeVal CORNERS[] = {0,          1,          2,          3,          999,        1000,
                               0x0FFFFFFF, 0x10000000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, TIME_FOREVER};

// The view commands, told a place as a time. The wave pane is 1000 pixels wide.
class Zoom : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        InitCommands();
        WaveView.SpanEnd = 100000;
    }
    static void Event(int (*command)(), uint16_t phase, TimeVal time) {
        CommandState.CommandPhase = phase;
        CommandState.CursorMode = CURSOR_ZOOM;
        WaveView.ZoomCentre = time;
        EXPECT_EQ(command(), 0);
    }
    static void Drag(int (*command)(), TimeVal from, TimeVal to) {
        Event(command, PHASE_PRESSED, from);
        Event(command, PHASE_RELEASED, to);
    }
    static void Click(int (*command)(), TimeVal time) { Drag(command, time, time); }
    static void Show(int32_t scale, TimeVal left) {
        WaveView.Scale = scale;
        WaveView.ViewLeft = left;
    }
    // What is wrong with the view as a command has left it.
    static std::string FaultOfView() {
        if (WaveView.Scale < std::min(MinScale(), 0)) return "the scale is too small";
        if (WaveView.Scale > MaxScale()) return "the scale is too large";
        uint64_t shown = 2ull * PixelsToTime(WaveView.WavePaneWidth / 2);
        bool passes = WaveView.SpanEnd > shown && WaveView.ViewLeft + shown > WaveView.SpanEnd;
        return passes ? "the view passes the end" : "";
    }
    // Drags with every command, after one another, and zooms by steps.
    static std::string FaultOfZooming(TimeVal from, TimeVal to) {
        ZoomFit();
        for (auto command : {ZoomIn, FullZoom, ZoomOut, PanView, FullFit}) {
            Drag(command, from, to);
            if (!FaultOfView().empty()) return FaultOfView();
        }
        for (bool in : {true, true, false}) ZoomAbout(WaveView.WavePaneWidth, in);
        ZoomInStep();
        if (!FaultOfView().empty()) return FaultOfView();
        ZoomOutStep();
        return WaveView.Scale > MaxScale() ? "the step out has enlarged" : "";
    }
    static std::string Prompt(int (*command)()) {
        Event(command, PHASE_STARTING, 0);
        return PromptText;
    }
};

} // namespace

// --- zoom in --------------------------------------------------------------------------------------

TEST_F(Zoom, InByAClickDoublesTheScaleAboutThePlace) {
    Show(-3, 0);
    Click(ZoomIn, 50000);
    EXPECT_EQ(WaveView.Scale, -2);
    EXPECT_EQ(WaveView.ViewLeft, 50000u - 2000);
}

TEST_F(Zoom, TheTimeBarFollowsTheView) {
    const auto &timeBar = Headless.bars[3][0];
    Show(-3, 0);
    Click(ZoomIn, 50000);
    int32_t before = timeBar.position;
    EXPECT_GT(before, 0);
    Show(-3, 0);
    Click(ZoomIn, 60000);
    EXPECT_GT(timeBar.position, before);
}

TEST_F(Zoom, InByADragShowsTheRange) {
    Drag(ZoomIn, 52000, 50000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 50000u);
    EXPECT_EQ(WaveView.ZoomPhase, 0);
}

TEST_F(Zoom, InAtTheMaximumTellsSoAndKeepsTheView) {
    for (TimeVal to : {50000, 60000}) {
        Show(4, 700);
        Headless.userErrors.clear();
        Drag(ZoomIn, 50000, to);
        EXPECT_EQ(Headless.userErrors, MAXIMUM);
        EXPECT_EQ(WaveView.Scale, 4);
        EXPECT_EQ(WaveView.ViewLeft, 700u);
        EXPECT_EQ(WaveView.ZoomPhase, 0);
    }
}

TEST_F(Zoom, InTellsWhatToDoNext) {
    EXPECT_EQ(Prompt(ZoomIn), "Zoom In - Pick Center Point or Corner of Zoom Window");
    Event(ZoomIn, PHASE_SHIFT_PRESSED, 50);
    EXPECT_STREQ(PromptText, "Zoom In - Drag to Other Corner for Zoom Window");
    EXPECT_EQ(CommandState.CursorMode, 18);
    Event(ZoomIn, PHASE_RELEASED, 50);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_ZOOM);
    Show(4, 0);
    EXPECT_EQ(Prompt(ZoomIn), "Zoom In - At Maximum Scale");
}

// --- full scale -----------------------------------------------------------------------------------

TEST_F(Zoom, FullScaleByAClickMakesAClockPeriodAPixel) {
    for (auto [clock, scale] :
         std::vector<std::pair<uint32_t, int32_t>>{{1, 0}, {2, -1}, {10, -3}, {16, -4}}) {
        Settings.ClockMultiplier = clock;
        Show(-7, 0);
        CommandState.CurrentCommand = COMMAND_FULL_SCALE;
        Click(FullZoom, 50000);
        EXPECT_EQ(WaveView.Scale, scale) << clock;
        EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
        EXPECT_STREQ(PromptText, "Zoom In - Pick Center Point");
    }
}

TEST_F(Zoom, FullScaleByADragShowsTheRange) {
    Show(-7, 0);
    CommandState.CurrentCommand = COMMAND_FULL_SCALE;
    Event(FullZoom, PHASE_PRESSED, 50000);
    EXPECT_EQ(CommandState.CursorMode, 18);
    EXPECT_STREQ(PromptText, "Full Zoom In - Pick Center Point");
    Event(FullZoom, PHASE_RELEASED, 52000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 50000u);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
}

TEST_F(Zoom, FullScaleWhereAClockPeriodIsAPixelAlreadyTellsSo) {
    Settings.ClockMultiplier = 10;
    Show(-3, 700);
    CommandState.CurrentCommand = COMMAND_FULL_SCALE;
    Click(FullZoom, 50000);
    EXPECT_EQ(Headless.userErrors, MAXIMUM);
    EXPECT_EQ(WaveView.Scale, -3);
    EXPECT_EQ(WaveView.ViewLeft, 700u);
    EXPECT_EQ(CommandState.CurrentCommand, COMMAND_ZOOM_IN);
}

TEST_F(Zoom, FullScaleAtTheMaximumSaysSoInThePrompt) {
    WaveView.SpanEnd = TIME_FOREVER; // the maximum is 0
    Settings.ClockMultiplier = 1;
    Show(-7, 0);
    CommandState.CurrentCommand = COMMAND_FULL_SCALE;
    Click(FullZoom, 50000);
    EXPECT_EQ(WaveView.Scale, 0);
    EXPECT_STREQ(PromptText, "Zoom In - At Maximum Scale");
}

TEST_F(Zoom, FullScaleWithoutAClockEndsAtTheMaximum) {
    Settings.ClockMultiplier = 0;
    Show(-7, 0);
    Click(FullZoom, 50000);
    EXPECT_EQ(WaveView.Scale, 4);
}

// --- zoom out -------------------------------------------------------------------------------------

TEST_F(Zoom, OutHalvesTheScaleAboutThePlace) {
    Show(0, 0);
    Click(ZoomOut, 50000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 49000u);
    Show(3, 0);
    Click(ZoomOut, 50000);
    EXPECT_EQ(WaveView.Scale, 2);
}

TEST_F(Zoom, OutTakesNoRange) {
    Show(0, 0);
    Drag(ZoomOut, 10000, 50000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 49000u);
}

TEST_F(Zoom, OutStopsWhenTheSpanIsInThePane) {
    WaveView.SpanEnd = 1000;
    Show(0, 0);
    Click(ZoomOut, 500);
    EXPECT_EQ(Headless.userErrors, MINIMUM);
    EXPECT_EQ(WaveView.Scale, 0);
    WaveView.SpanEnd = 1001;
    Click(ZoomOut, 500);
    EXPECT_EQ(WaveView.Scale, -1);
    WaveView.SpanEnd = 500;
    Show(1, 0);
    Click(ZoomOut, 500);
    EXPECT_EQ(Headless.userErrors.size(), 2u);
    EXPECT_EQ(WaveView.Scale, 1);
    WaveView.SpanEnd = 501;
    Click(ZoomOut, 500);
    EXPECT_EQ(WaveView.Scale, 0);
}

TEST_F(Zoom, OutStopsAtTheMinimum) {
    WaveView.SpanEnd = TIME_FOREVER;
    SetPaneSizes(100, 10, 600); // so narrow that the span does not fit at any scale
    Show(MinScale(), 0);
    Click(ZoomOut, 50000);
    EXPECT_EQ(Headless.userErrors, MINIMUM);
    EXPECT_EQ(WaveView.Scale, MinScale());
}

TEST_F(Zoom, OutTellsWhetherItGoesFurther) {
    Show(0, 0);
    EXPECT_EQ(Prompt(ZoomOut), "Zoom Out - Pick Center Point");
    Show(-7, 0);
    EXPECT_EQ(Prompt(ZoomOut), "Zoom Out - At Minimum Scale");
    WaveView.SpanEnd = TIME_FOREVER;
    SetPaneSizes(100, 10, 600);
    Show(MinScale(), 0);
    EXPECT_EQ(Prompt(ZoomOut), "Zoom Out - At Minimum Scale");
}

TEST_F(Zoom, OutAtAPositiveScaleSaysMinimumThoughItGoesFurther) {
    Show(3, 0);
    EXPECT_EQ(Prompt(ZoomOut), "Zoom Out - At Minimum Scale");
    Click(ZoomOut, 500);
    EXPECT_EQ(WaveView.Scale, 2);
    EXPECT_TRUE(Headless.userErrors.empty());
}

// --- pan ------------------------------------------------------------------------------------------

TEST_F(Zoom, PanCentresThePlaceOfTheRelease) {
    Show(-2, 0);
    EXPECT_EQ(Prompt(PanView), "Pan - Pick Center Point");
    Drag(PanView, 9000, 50000);
    EXPECT_EQ(WaveView.Scale, -2);
    EXPECT_EQ(WaveView.ViewLeft, 48000u);
    Event(PanView, PHASE_PRESSED, 9000);
    EXPECT_EQ(WaveView.ViewLeft, 48000u);
    Click(PanView, 99999);
    EXPECT_EQ(WaveView.ViewLeft, 96000u);
}

// --- full fit -------------------------------------------------------------------------------------

TEST_F(Zoom, FullFitShowsTheSpanAndComesBackAboutTheNextClick) {
    Show(-2, 7000);
    EXPECT_EQ(Prompt(FullFit), "Full Fit - Click for Full Zoom");
    Event(FullFit, PHASE_PRESSED, 9000);
    EXPECT_EQ(CommandState.CursorMode, CURSOR_ZOOM);
    Event(FullFit, PHASE_RELEASED, 9000);
    EXPECT_EQ(WaveView.Scale, -7);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
    EXPECT_STREQ(PromptText, "Full Fit - Select New Center");
    Event(FullFit, PHASE_PRESSED, 50000);
    EXPECT_EQ(CommandState.CursorMode, 18);
    Event(FullFit, PHASE_RELEASED, 50000);
    EXPECT_EQ(WaveView.Scale, -2);
    EXPECT_EQ(WaveView.ViewLeft, 48000u);
    EXPECT_STREQ(PromptText, "Full Fit - Click for Full Zoom");
}

TEST_F(Zoom, FullFitShowsADraggedRangeInstead) {
    Show(-2, 7000);
    Click(FullFit, 9000);
    Drag(FullFit, 50000, 52000);
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 50000u);
    EXPECT_EQ(WaveView.ZoomPhase, 0);
}

TEST_F(Zoom, FullFitFitsOnADragToo) {
    Show(-2, 7000);
    Drag(FullFit, 8000, 9000);
    EXPECT_EQ(WaveView.Scale, -7);
    EXPECT_EQ(WaveView.ZoomPhase, 1);
}

TEST_F(Zoom, FullFitComesBackToNoScaleAboveTheMaximum) {
    Show(4, 0);
    Click(FullFit, 9000);
    WaveView.SpanEnd = 0x80000000; // the maximum is 0 now
    Click(FullFit, 9000);
    EXPECT_EQ(WaveView.Scale, 0);
}

// --- the steps ------------------------------------------------------------------------------------

TEST_F(Zoom, StepInKeepsTheMiddleOfThePane) {
    Show(0, 2000);
    ZoomInStep();
    EXPECT_EQ(WaveView.Scale, 1);
    EXPECT_EQ(WaveView.ViewLeft, 2250u);
    Show(4, 2000);
    ZoomInStep();
    EXPECT_EQ(Headless.userErrors, MAXIMUM);
    EXPECT_EQ(WaveView.ViewLeft, 2000u);
}

TEST_F(Zoom, StepOutAboveZeroWaitsForTheNextPaint) {
    Show(2, 2000);
    Headless.invalidated.clear();
    ZoomOutStep();
    EXPECT_EQ(WaveView.Scale, 1);
    EXPECT_EQ(WaveView.ViewLeft, 2000u);
    EXPECT_TRUE(Headless.invalidated.empty());
    WaveView.SpanEnd = 500;
    ZoomOutStep();
    EXPECT_EQ(WaveView.Scale, 1);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(Zoom, StepOutAtZeroOrBelowOnlyCentres) {
    Show(-1, 2000);
    ZoomOutStep();
    EXPECT_EQ(WaveView.Scale, -1);
    EXPECT_EQ(WaveView.ViewLeft, 2000u);
    Show(-1, 99500); // scrolled past the end
    ZoomOutStep();
    EXPECT_EQ(WaveView.ViewLeft, 98000u);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(Zoom, StepOutAtTheLeastScaleDoesNotCentreEither) {
    Show(MinScale(), 99500);
    ZoomOutStep();
    EXPECT_EQ(WaveView.Scale, MinScale());
    EXPECT_EQ(WaveView.ViewLeft, 99500u);
}

TEST_F(Zoom, FitShowsTheWholeSpan) {
    Show(4, 2000);
    ZoomFit();
    EXPECT_EQ(WaveView.Scale, -7);
    EXPECT_EQ(WaveView.ViewLeft, 0u);
}

// --- about a place --------------------------------------------------------------------------------

TEST_F(Zoom, AboutAPlaceKeepsItsTimeThere) {
    for (int32_t x : {0, 100, 500, 999}) {
        Show(-2, 40000);
        TimeVal time = MouseToTimeRow(Pane::Wave, x, 0).time;
        ZoomAbout(x, true);
        EXPECT_EQ(WaveView.Scale, -1);
        EXPECT_EQ(PixelOf(time), x);
        ZoomAbout(x, false);
        EXPECT_EQ(WaveView.Scale, -2);
        EXPECT_EQ(PixelOf(time), x);
    }
}

// --- the corners of the axis ----------------------------------------------------------------------

// At the corners of the axis the scale stays within its limits, and the view of a span that is longer than
// the pane does not pass the end.
TEST_F(Zoom, StaysWithinTheLimitsAtTheCornersOfTheAxis) {
    for (TimeVal end : CORNERS)
        for (int32_t width : {0, 1, 2, 801, 1000, 3840})
            for (TimeVal from : CORNERS)
                for (TimeVal to : {TimeVal(0), from, TIME_FOREVER}) {
                    SetPaneSizes(100, width, 600);
                    WaveView.SpanEnd = end;
                    std::string fault = FaultOfZooming(from, to);
                    ASSERT_EQ(fault, "") << end << " " << width << " " << from << " " << to;
                }
}

TEST_F(Zoom, TheShortestDocumentCanBeZoomed) {
    SetPaneSizes(100, 800, 600);
    WaveView.SpanEnd = 1;
    ZoomFit();
    EXPECT_EQ(WaveView.Scale, 4);
    Click(ZoomIn, 0);
    EXPECT_EQ(Headless.userErrors, MAXIMUM);
    Headless.userErrors.clear();
    Click(ZoomOut, 0);
    EXPECT_EQ(Headless.userErrors, MINIMUM);
    EXPECT_EQ(WaveView.Scale, 4);
}

TEST_F(Zoom, TheLongestDocumentCanBeZoomedFromEndToEnd) {
    WaveView.SpanEnd = TIME_FOREVER;
    ZoomFit();
    EXPECT_EQ(WaveView.Scale, MinScale());
    while (WaveView.Scale < MaxScale()) Click(ZoomIn, TIME_FOREVER);
    EXPECT_EQ(WaveView.Scale, 0);
    EXPECT_EQ(WaveView.ViewLeft, TIME_FOREVER - 1000);
    int32_t clicks = 0;
    while (Headless.userErrors.empty() && clicks++ < 40) Click(ZoomOut, TIME_FOREVER);
    EXPECT_EQ(WaveView.Scale, MinScale());
}

// --- the mouse's place ----------------------------------------------------------------------------

TEST_F(Zoom, ThePlaceOfTheMouseIsATimeAndARow) {
    WaveView.ViewLeft = 700;
    WaveView.TopRow = 5;
    AxisPlace place = MouseToTimeRow(Pane::Wave, 33, 2 * WaveView.RowHeight);
    EXPECT_EQ(place.time, 733u);
    EXPECT_EQ(place.row, 7u);
    place = MouseToTimeRow(Pane::Wave, -33, -2);
    EXPECT_EQ(place.time, 700u);
    EXPECT_EQ(place.row, 5u);
    place = MouseToTimeRow(Pane::Name, 33, WaveView.RowHeight - 1);
    EXPECT_EQ(place.time, 700u);
    EXPECT_EQ(place.row, 5u);
}

TEST_F(Zoom, ThePlaceOnTheRulerBeginsBehindTheNames) {
    WaveView.ViewLeft = 700;
    WaveView.TopRow = 5;
    EXPECT_EQ(MouseToTimeRow(Pane::Ruler, 133, 10).time, 733u);
    EXPECT_EQ(MouseToTimeRow(Pane::Ruler, 99, 10).time, 700u);
    EXPECT_EQ(MouseToTimeRow(Pane::Ruler, INT32_MIN, 10).time, 700u);
    EXPECT_EQ(MouseToTimeRow(Pane::Ruler, 133, 500).row, 0u);
}

TEST_F(Zoom, ThePlaceIsRoundedToATenthOfATickWherePixelsAreCoarse) {
    WaveView.Scale = -2;
    WaveView.ViewLeft = 3;
    WaveView.TickMinor = 100;
    EXPECT_EQ(MouseToTimeRow(Pane::Wave, 2, 0).time, 10u); // 11
    EXPECT_EQ(MouseToTimeRow(Pane::Wave, 3, 0).time, 20u); // 15
    WaveView.TickMinor = 9;
    EXPECT_EQ(MouseToTimeRow(Pane::Wave, 2, 0).time, 11u);
    WaveView.TickMinor = 100;
    WaveView.Scale = 0;
    EXPECT_EQ(MouseToTimeRow(Pane::Wave, 8, 0).time, 11u);
}

TEST_F(Zoom, ThePlaceStaysOnTheAxis) {
    WaveView.Scale = -26;
    WaveView.ViewLeft = TIME_FOREVER;
    WaveView.TickMinor = TIME_FOREVER;
    for (int32_t x : {INT32_MIN, 0, INT32_MAX})
        EXPECT_GE(MouseToTimeRow(Pane::Wave, x, INT32_MAX).time, TIME_FOREVER / 10 * 10);
    WaveView.RowHeight = 0;
    EXPECT_EQ(MouseToTimeRow(Pane::Wave, 0, 50).row, 0u);
}
