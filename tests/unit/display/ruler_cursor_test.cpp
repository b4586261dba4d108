// The mouse's marker in the ruler.
#include "display/ruler_cursor.h"
#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/mouse_place.h"
#include "shell/commands.h"

namespace {

using Texts = std::vector<std::string>;

std::vector<std::pair<TimeVal, uint32_t>> Tracked;

void Track(TimeVal time, uint32_t row) {
    Tracked.emplace_back(time, row);
}

class RulerMarker : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        InitCommands();
        Tracked.clear();
        Mouse = {200, 3, Pane::Wave};
    }
    void TearDown() override {
        InitCommands();
        InitRulerCursor();
        Display::TearDown();
    }
    static const SurfaceCall *find(SurfaceCall::Kind kind) {
        for (const SurfaceCall &call : HeadlessSurface.calls) {
            if (call.kind == kind) return &call;
        }
        return nullptr;
    }
    // Corner points of the triangle drawn last.
    static std::vector<std::pair<int32_t, int32_t>> triangle() {
        std::vector<std::pair<int32_t, int32_t>> corners;
        const SurfaceCall *call = find(SurfaceCall::Kind::XorPolygon);
        if (!call) return corners;
        for (PixelPoint p : call->points) corners.emplace_back(p.x, p.y);
        return corners;
    }
    static int32_t labelRight() { return 100 - WaveView.FontCharWidth * (100 / WaveView.FontCharWidth / 4); }
};

} // namespace

TEST_F(RulerMarker, IsATriangleThatPointsAtTheMouseTime) {
    DrawRulerCursor(true);
    EXPECT_EQ(SelectedPanes(), std::vector{Pane::Ruler});
    int32_t x = 100 + 200 + 3, y = WaveView.RulerHeight - WaveView.FontHeight / 2;
    EXPECT_EQ(triangle(),
              (std::vector<std::pair<int32_t, int32_t>>{{x, y}, {x - 4, y - 8}, {x + 4, y - 8}, {x, y}}));
}

TEST_F(RulerMarker, GrowsWithTheScreensResolution) {
    Headless.screenMagnification = 1.5;
    DrawRulerCursor(true);
    int32_t x = 100 + 200 + 3, y = WaveView.RulerHeight - WaveView.FontHeight / 2;
    EXPECT_EQ(triangle(),
              (std::vector<std::pair<int32_t, int32_t>>{{x, y}, {x - 6, y - 12}, {x + 6, y - 12}, {x, y}}));
    DrawRulerCursor(false);
    ForgetCalls();
    Headless.screenMagnification = 2.0;
    CommandState.CursorMode = CURSOR_ZOOM | CURSOR_RANGE;
    DrawRulerCursor(true);
    const SurfaceCall *band = find(SurfaceCall::Kind::Invert);
    ASSERT_NE(band, nullptr);
    EXPECT_EQ(band->rect.top, WaveView.RulerHeight - 20);
}

TEST_F(RulerMarker, ShowsTheTimeRightAlignedInTheNameColumn) {
    DrawRulerCursor(true);
    PixelSize size = SurfaceTextSize("200 ps");
    EXPECT_EQ(Drawn(), Texts{TextAt(15, "200 ps", labelRight() - size.width,
                                    WaveView.RulerHeight / 2 - size.height / 2)});
}

TEST_F(RulerMarker, TheTimeStandsOneToSixCharactersFromTheColumnsEdge) {
    for (auto [column, characters] :
         {std::pair(WaveView.FontCharWidth, 1), std::pair(WaveView.FontCharWidth * 100, 6)}) {
        WaveView.NameColumnWidth = column;
        InitRulerCursor();
        DrawRulerCursor(true);
        ForgetCalls();
        DrawRulerCursor(false);
        EXPECT_EQ(Drawn(), Texts{Fill(0, 0, 0, column - characters * WaveView.FontCharWidth,
                                      WaveView.RulerHeight - 3)});
    }
}

TEST_F(RulerMarker, OnABlackBackgroundTheTimeIsWhite) {
    ColorSettings[Background] = 15;
    DrawRulerCursor(true);
    ASSERT_EQ(Drawn().size(), 1u);
    EXPECT_TRUE(Drawn()[0].starts_with("0 text"));
}

TEST_F(RulerMarker, TakingItOffErasesTheTimeAndInvertsTheSameTriangle) {
    DrawRulerCursor(true);
    auto drawn = triangle();
    ForgetCalls();
    Mouse.time = 500;
    WaveView.ViewLeft = 77;
    DrawRulerCursor(false);
    EXPECT_EQ(Drawn(), Texts{Fill(0, 0, 0, labelRight(), WaveView.RulerHeight - 3)});
    EXPECT_EQ(triangle(), drawn);
}

TEST_F(RulerMarker, DoesNothingIfItIsSoAlready) {
    DrawRulerCursor(false);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
    DrawRulerCursor(true);
    ForgetCalls();
    DrawRulerCursor(true);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(RulerMarker, WithoutPanelsItStaysOff) {
    Headless.panesExist = false;
    DrawRulerCursor(true);
    EXPECT_FALSE(RulerCursor.on);
}

TEST_F(RulerMarker, WhileARangeIsDraggedABandShowsIt) {
    CommandState.CursorMode = CURSOR_ZOOM | CURSOR_RANGE;
    WaveView.ZoomAnchor = 450;
    DrawRulerCursor(true);
    EXPECT_TRUE(triangle().empty());
    EXPECT_TRUE(Drawn().empty());
    const SurfaceCall *band = find(SurfaceCall::Kind::Invert);
    ASSERT_NE(band, nullptr);
    EXPECT_EQ(band->rect.left, 303);
    EXPECT_EQ(band->rect.right, 553);
    EXPECT_EQ(band->rect.top, WaveView.RulerHeight - 10);
    EXPECT_EQ(band->rect.bottom, WaveView.RulerHeight);
}

TEST_F(RulerMarker, WhatWasPutOnIsTakenOffThoughTheModeHasChanged) {
    CommandState.CursorMode = CURSOR_ZOOM | CURSOR_RANGE;
    WaveView.ZoomAnchor = 100;
    DrawRulerCursor(true);
    CommandState.CursorMode = CURSOR_QUERY;
    Mouse.time = 900;
    ForgetCalls();
    DrawRulerCursor(false);
    const SurfaceCall *band = find(SurfaceCall::Kind::Invert);
    ASSERT_NE(band, nullptr);
    EXPECT_EQ(band->rect.left, 203);
    EXPECT_EQ(band->rect.right, 303);
}

TEST_F(RulerMarker, TheTrackingRoutineFollowsWhileAGestureRuns) {
    TrackRoutine = Track;
    DrawRulerCursor(true);
    DrawRulerCursor(false);
    EXPECT_TRUE(Tracked.empty());
    CommandState.CursorMode = CURSOR_SELECT | CURSOR_TRACK;
    DrawRulerCursor(true);
    Mouse = {250, 4, Pane::Wave};
    DrawRulerCursor(false);
    EXPECT_EQ(Tracked, (std::vector<std::pair<TimeVal, uint32_t>>{{200, 3}, {250, 4}}));
}

TEST_F(RulerMarker, WithoutARoutineNothingFollows) {
    CommandState.CursorMode = CURSOR_TRACK;
    DrawRulerCursor(true);
    EXPECT_TRUE(RulerCursor.on);
}

TEST_F(RulerMarker, ComesAndGoesToThePixel) {
    PaneImage ruler(Pane::Ruler, 1105, WaveView.RulerHeight);
    PaintPane(Pane::Ruler);
    auto pixels = [&] {
        std::vector<uint32_t> all;
        for (int32_t y = 0; y < WaveView.RulerHeight - 2; y++) {
            for (int32_t x = 0; x < 1105; x++) all.push_back(ruler.at(x, y));
        }
        return all;
    };
    std::vector<uint32_t> before = pixels();
    for (bool band : {false, true}) {
        CommandState.CursorMode = band ? CURSOR_RANGE : CURSOR_QUERY;
        WaveView.ZoomAnchor = 777;
        for (Mouse.time = 0; Mouse.time < 1000; Mouse.time += 97) {
            DrawRulerCursor(true);
            EXPECT_FALSE(pixels() == before);
            DrawRulerCursor(false);
            EXPECT_TRUE(pixels() == before) << Mouse.time;
        }
    }
}

// --- what goes on around it ---

TEST_F(RulerMarker, APaintOfTheRulerTakesItOffAndPutsItOn) {
    DrawRulerCursor(true);
    PaintBegins(Pane::Wave);
    PaintBegins(Pane::Name);
    EXPECT_TRUE(RulerCursor.on);
    PaintBegins(Pane::Ruler);
    EXPECT_FALSE(RulerCursor.on);
    PaintEnds(Pane::Name);
    PaintEnds(Pane::Wave);
    EXPECT_FALSE(RulerCursor.on);
    PaintEnds(Pane::Ruler);
    EXPECT_TRUE(RulerCursor.on);
}

TEST_F(RulerMarker, ErasingAnyPanelTakesItOff) {
    for (Pane pane : {Pane::Ruler, Pane::Name, Pane::Wave}) {
        DrawRulerCursor(true);
        EraseBegins(pane);
        EXPECT_FALSE(RulerCursor.on);
    }
}

TEST_F(RulerMarker, ScrollingPutsItAtTheMouseAgain) {
    DrawRulerCursor(true);
    ScrollPane(Pane::Wave, ScrollBar::Horizontal, ScrollCode::LineDown, 0);
    EXPECT_TRUE(RulerCursor.on);
    EXPECT_EQ(RulerCursor.triangle[0].x, 100 + 200 - static_cast<int32_t>(WaveView.ViewLeft) + 3);
}

TEST_F(RulerMarker, DrawingTheRulerTakesItOffAndARedrawKeepsIt) {
    DrawRulerCursor(true);
    DrawRuler();
    EXPECT_FALSE(RulerCursor.on);
    RepaintAll();
    EXPECT_FALSE(RulerCursor.on);
    DrawRulerCursor(true);
    RepaintAll();
    EXPECT_TRUE(RulerCursor.on);
}
