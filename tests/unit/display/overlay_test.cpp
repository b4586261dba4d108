// The cursor, the mark and the selection frame over the waves.
#include "display/overlay.h"
#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/primitives.h"
#include "edit/expand_bus.h"
#include "unit/support/random_document.h"
#include <algorithm>
#include <functional>

namespace {

using Texts = std::vector<std::string>;

std::string Rectangle(const PixelRect &rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + "-" + std::to_string(rect.right) +
           "," + std::to_string(rect.bottom);
}

// What was saved and put back, with the places, in order.
Texts SavesAndRestores() {
    constexpr const char *slots[] = {"mark", "top", "bottom", "cursor"};
    Texts texts;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        bool save = call.kind == SurfaceCall::Kind::SaveUnder;
        if (!save && call.kind != SurfaceCall::Kind::RestoreUnder) continue;
        texts.push_back(std::string(save ? "save " : "restore ") + slots[static_cast<size_t>(call.slot)] +
                        " " + Rectangle(call.rect));
    }
    return texts;
}

// The calls that changed the picture, saved pixels or took them back.
size_t OverlayCalls() {
    return Drawn().size() + SavesAndRestores().size();
}

class OverWaves : public Display {
protected:
    void SetUp() override {
        Display::SetUp();
        rowHeight = WaveView.RowHeight;
    }
    static void select(TimeVal from, TimeVal to, uint32_t row) {
        WaveView.SelectActive = true;
        WaveView.SelectStart = from;
        WaveView.SelectEnd = to;
        WaveView.SelectRow = row;
        WaveView.SelectRowLast = row;
    }
    static void mark(TimeVal time) {
        WaveView.MarkActive = true;
        WaveView.MarkTime = time;
    }
    static void scrollRows(uint32_t row) {
        WaveView.TopRow = row;
        WaveView.TopPixel = row * static_cast<uint32_t>(WaveView.RowHeight);
    }
    // The frame's edges in a row of an unscrolled pane.
    int32_t frameBottom(uint32_t row) const {
        return static_cast<int32_t>(row + 1) * rowHeight - Settings.WaveGap + 2;
    }
    int32_t frameTop(uint32_t row) const { return frameBottom(row) - WaveView.WaveHeight - 7; }
    int32_t rowHeight = 0;
};

} // namespace

// --- cursor and mark ---

TEST_F(OverWaves, TheCursorIsALineOverTheWholePane) {
    WaveView.CursorTime = 40;
    DrawOverlay(true);
    EXPECT_EQ(SelectedPanes(), std::vector{Pane::Wave});
    EXPECT_EQ(SavesAndRestores(), Texts{"save cursor 40,0-41,600"});
    EXPECT_EQ(Drawn(), Texts{Line(15, {{40, 0}, {40, 600}})});
    EXPECT_EQ(Overlay.cursorX, 40);
}

TEST_F(OverWaves, PuttingItOnTwiceDrawsOnce) {
    DrawOverlay(true);
    ForgetCalls();
    DrawOverlay(true);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(OverWaves, TakingItOffTwiceRestoresOnce) {
    DrawOverlay(true);
    DrawOverlay(false);
    ForgetCalls();
    DrawOverlay(false);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(OverWaves, WhileADocumentIsReadNothingIsDrawn) {
    DisplayOpen = 0;
    DrawOverlay(true);
    EXPECT_FALSE(Overlay.overlayOn);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(OverWaves, ACursorLeftOfThePaneSavesNothingAndRestoresNothing) {
    WaveView.ViewLeft = 100;
    WaveView.CursorTime = 99;
    DrawOverlay(true);
    EXPECT_EQ(Overlay.cursorX, -1);
    DrawOverlay(false);
    EXPECT_EQ(OverlayCalls(), 0u);
}

TEST_F(OverWaves, ACursorBehindTheLastColumnIsNotDrawn) {
    WaveView.CursorTime = 1000;
    DrawOverlay(true);
    DrawOverlay(false);
    EXPECT_EQ(OverlayCalls(), 0u);
    WaveView.CursorTime = 999;
    DrawOverlay(true);
    EXPECT_EQ(OverlayCalls(), 2u);
}

TEST_F(OverWaves, TheMarkLiesUnderTheCursor) {
    WaveView.CursorTime = 40;
    mark(70);
    DrawOverlay(true);
    EXPECT_EQ(SavesAndRestores(), (Texts{"save mark 70,0-71,600", "save cursor 40,0-41,600"}));
    EXPECT_EQ(Drawn(), (Texts{Line(15, {{70, 0}, {70, 600}}), Line(15, {{40, 0}, {40, 600}})}));
    EXPECT_EQ(Overlay.markX, 70);
}

TEST_F(OverWaves, AMarkThatIsNotActiveIsNotDrawn) {
    WaveView.MarkTime = 70;
    DrawOverlay(true);
    EXPECT_EQ(SavesAndRestores().size(), 1u);
}

TEST_F(OverWaves, AMarkBesideThePaneIsNotDrawn) {
    WaveView.ViewLeft = 100;
    WaveView.CursorTime = 150;
    for (TimeVal time : {99u, 1100u}) {
        mark(time);
        DrawOverlay(true);
        EXPECT_EQ(SavesAndRestores(), Texts{"save cursor 50,0-51,600"}) << time;
        DrawOverlay(false);
        ForgetCalls();
    }
}

TEST_F(OverWaves, OnABlackBackgroundTheLinesAreWhite) {
    ColorSettings[Background] = 15;
    DrawOverlay(true);
    EXPECT_EQ(Drawn(), Texts{Line(0, {{0, 0}, {0, 600}})});
}

TEST_F(OverWaves, DrawingIsClippedToThePane) {
    DrawOverlay(true);
    std::vector<bool> clips;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        if (call.kind == SurfaceCall::Kind::ClipToPane) clips.push_back(call.on);
    }
    EXPECT_EQ(clips, (std::vector{true, false}));
    EXPECT_EQ(HeadlessSurface.calls.back().kind, SurfaceCall::Kind::ClipToPane);
}

TEST_F(OverWaves, TakingItOffPutsTheLayersBackInTheOppositeOrderWhereTheyWere) {
    mark(70);
    select(100, 200, 1);
    WaveView.CursorTime = 150;
    DrawOverlay(true);
    ForgetCalls();
    // The view has moved since.
    WaveView.ViewLeft = 50;
    WaveView.CursorTime = 60;
    WaveView.SelectActive = false;
    DrawOverlay(false);
    std::string top = std::to_string(frameTop(1)), bottom = std::to_string(frameBottom(1));
    EXPECT_EQ(SavesAndRestores(),
              (Texts{"restore cursor 150,0-151,600",
                     "restore top 99," + top + "-202," + std::to_string(frameTop(1) + 2),
                     "restore bottom 99," + bottom + "-202," + std::to_string(frameBottom(1) + 2),
                     "restore mark 70,0-71,600"}));
    EXPECT_EQ(HeadlessSurface.calls.back().kind, SurfaceCall::Kind::DropSaved);
    for (const SavedPixels &saved : HeadlessSurface.saved) EXPECT_FALSE(saved.held);
}

// --- the selection frame ---

TEST_F(OverWaves, TheFrameHasTwoThickEdgesWithClippedCornersAndNoSides) {
    select(200, 100, 2); // the order of the times does not matter
    WaveView.CursorTime = 5000;
    DrawOverlay(true);
    int32_t top = frameTop(2), bottom = frameBottom(2);
    EXPECT_EQ(Drawn(), (Texts{
                           Line(15, {{100, top + 1}, {101, top}}),
                           Line(15, {{100, bottom}, {101, bottom + 1}}),
                           Line(15, {{200, top + 1}, {199, top}}),
                           Line(15, {{200, bottom}, {199, bottom + 1}}),
                           Line(15, {{101, top}, {199, top}}),
                           Line(15, {{101, top + 1}, {199, top + 1}}),
                           Line(15, {{101, bottom}, {199, bottom}}),
                           Line(15, {{101, bottom + 1}, {199, bottom + 1}}),
                       }));
    EXPECT_EQ(Overlay.frameX0, 100);
    EXPECT_EQ(Overlay.frameX1, 200);
}

TEST_F(OverWaves, TheCursorLeavesTheInsideOfTheFrameFree) {
    select(100, 200, 2);
    WaveView.CursorTime = 150;
    DrawOverlay(true);
    Texts drawn = Drawn();
    ASSERT_EQ(drawn.size(), 10u);
    EXPECT_EQ(drawn[8], Line(15, {{150, 0}, {150, frameTop(2)}}));
    EXPECT_EQ(drawn[9], Line(15, {{150, frameBottom(2)}, {150, 600}}));
}

TEST_F(OverWaves, AnEmptyRangeHasCornersOnly) {
    select(100, 100, 0);
    WaveView.CursorTime = 5000;
    DrawOverlay(true);
    EXPECT_EQ(Drawn().size(), 4u);
}

TEST_F(OverWaves, AFrameThatBeginsLeftOfThePaneIsCutThere) {
    WaveView.ViewLeft = 150;
    select(100, 200, 0);
    DrawOverlay(true);
    EXPECT_EQ(Overlay.frameX0, 0);
    EXPECT_EQ(Overlay.frameX1, 50);
    std::string top = std::to_string(frameTop(0)), below = std::to_string(frameTop(0) + 2);
    EXPECT_EQ(SavesAndRestores()[0], "save top 0," + top + "-53," + below);
}

TEST_F(OverWaves, AFrameThatEndsAtTheLeftEdgeHasNoRightCorners) {
    WaveView.ViewLeft = 200;
    WaveView.CursorTime = 100;
    select(100, 200, 0);
    DrawOverlay(true);
    EXPECT_EQ(Drawn().size(), 2u);
}

TEST_F(OverWaves, AFrameThatEndsRightOfThePaneIsCutThere) {
    select(900, 1100, 0);
    DrawOverlay(true);
    EXPECT_EQ(Overlay.frameX0, 900);
    EXPECT_EQ(Overlay.frameX1, 1000);
}

TEST_F(OverWaves, AFrameBesideThePaneIsNeitherSavedNorDrawn) {
    WaveView.ViewLeft = 500;
    WaveView.CursorTime = 0;
    select(100, 200, 0);
    DrawOverlay(true);
    DrawOverlay(false);
    select(1600, 1700, 0);
    DrawOverlay(true);
    DrawOverlay(false);
    EXPECT_EQ(OverlayCalls(), 0u);
}

TEST_F(OverWaves, ASelectionScrolledOffAboveHasNoFrameAndDoesNotCutTheCursor) {
    select(100, 200, 2);
    DrawOverlay(true);
    DrawOverlay(false);
    scrollRows(3);
    ForgetCalls();
    WaveView.CursorTime = 150;
    PaneImage picture(Pane::Wave);
    DrawOverlay(true);
    EXPECT_EQ(SavesAndRestores(), Texts{"save cursor 150,0-151,600"});
    EXPECT_EQ(picture.count(0, {0, 0, 1000, 600}), 600);
    EXPECT_EQ(picture.count(0, {150, 0, 151, 600}), 600);
    DrawOverlay(false);
    EXPECT_EQ(SavesAndRestores().back(), "restore cursor 150,0-151,600");
    EXPECT_EQ(picture.count(0, {0, 0, 1000, 600}), 0);
}

TEST_F(OverWaves, ASelectionBelowThePaneIsClipped) {
    WaveView.CursorTime = 150;
    for (uint32_t row : {23u, 24u, 1000u, NO_ROW}) {
        select(100, 200, row);
        PaneImage picture(Pane::Wave);
        DrawOverlay(true);
        if (row >= 24) {
            EXPECT_EQ(picture.count(0, {0, 0, 1000, 600}), 600) << row;
        }
        DrawOverlay(false);
        EXPECT_EQ(picture.count(0, {0, 0, 1000, 600}), 0) << row;
    }
}

TEST_F(OverWaves, TheFrameFollowsTheScrolledRows) {
    scrollRows(5);
    select(100, 200, 7);
    DrawOverlay(true);
    EXPECT_EQ(Overlay.frameBottom, frameBottom(2));
    EXPECT_EQ(Overlay.frameTop, frameTop(2));
}

// --- what goes on around it ---

TEST_F(OverWaves, APaintOfTheWavesTakesItOffAndPutsItOn) {
    DrawOverlay(true);
    PaintBegins(Pane::Wave);
    EXPECT_FALSE(Overlay.overlayOn);
    PaintEnds(Pane::Wave);
    EXPECT_TRUE(Overlay.overlayOn);
    for (Pane pane : {Pane::Ruler, Pane::Name}) {
        PaintBegins(pane);
        EXPECT_TRUE(Overlay.overlayOn);
        PaintEnds(pane);
    }
}

TEST_F(OverWaves, ErasingTheWavesTakesItOff) {
    DrawOverlay(true);
    EraseBegins(Pane::Ruler);
    EraseBegins(Pane::Name);
    EXPECT_TRUE(Overlay.overlayOn);
    EraseBegins(Pane::Wave);
    EXPECT_FALSE(Overlay.overlayOn);
}

TEST_F(OverWaves, ScrollingTakesItOffBeforeTheViewMoves) {
    for (uint32_t i = 0; i < 40; i++) MakeRow(("N" + std::to_string(i)).c_str());
    DrawOverlay(true);
    ForgetCalls();
    ScrollPane(Pane::Wave, ScrollBar::Horizontal, ScrollCode::LineDown, 0);
    EXPECT_EQ(WaveView.ViewLeft, WaveView.TickMinor);
    EXPECT_EQ(SavesAndRestores(), Texts{"restore cursor 0,0-1,600"});
    EXPECT_TRUE(Overlay.overlayOn);
    ScrollPane(Pane::Wave, ScrollBar::Vertical, ScrollCode::LineDown, 0);
    EXPECT_EQ(WaveView.TopRow, 1u);
    EXPECT_TRUE(Overlay.overlayOn);
}

TEST_F(OverWaves, AScrollThatMovesNothingLeavesItOn) {
    DrawOverlay(true);
    ScrollPane(Pane::Wave, ScrollBar::Vertical, ScrollCode::LineUp, 0);
    EXPECT_TRUE(Overlay.overlayOn);
}

TEST_F(OverWaves, HidingRowsTakesTheFrameAwayAndKeepsTheCursor) {
    for (const char *name : {"A", "B", "C"}) MakeRow(name);
    select(100, 200, 1);
    WaveRows[1].setHighlighted(true);
    PaneImage picture(Pane::Wave);
    DrawOverlay(true);
    HideHighlightedRows();
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(picture.count(0, {0, 0, 1000, 600}), 600); // the cursor alone
    DrawOverlay(false);
    EXPECT_EQ(picture.count(0, {0, 0, 1000, 600}), 0);
}

TEST_F(OverWaves, HidingOneRowTakesItOffFirst) {
    MakeRow("A");
    DrawOverlay(true);
    ForgetCalls();
    HideRow(0);
    EXPECT_EQ(SavesAndRestores(), (Texts{"restore cursor 0,0-1,600", "save cursor 0,0-1,600"}));
}

TEST_F(OverWaves, ExpandingABusTakesTheFrameAway) {
    MakeRow("D[1:0]", {{1, 1000}}, 2);
    PatternFromId(WaveRows[0].PatternId)->setBus(true);
    select(100, 200, 0);
    DrawOverlay(true);
    ForgetCalls();
    ExpandSelectedBus();
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_TRUE(Overlay.overlayOn);
    Texts calls = SavesAndRestores();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front(), "restore cursor 0,0-1,600");
    EXPECT_EQ(calls.back(), "save cursor 0,0-1,600");
}

// --- repaints ---

TEST_F(OverWaves, RepaintsTakeItOffAndPutItOn) {
    MakeRow("A");
    for (auto repaint : {+[] { RepaintRowsFrom(0); }, RepaintAllRows, RepaintAll}) {
        InitOverlay();
        DrawOverlay(true);
        ForgetCalls();
        repaint();
        EXPECT_EQ(SavesAndRestores(), (Texts{"restore cursor 0,0-1,600", "save cursor 0,0-1,600"}));
        EXPECT_EQ(Drawn().back(), Line(15, {{0, 0}, {0, 600}}));
    }
}

TEST_F(OverWaves, ItIsLeftAloneWhenNothingHasChanged) {
    uint16_t hidden = MakePattern("HIDDEN");
    DrawOverlay(true);
    ForgetCalls();
    PatternFromId(hidden)->setChanged(true); // no row shows it
    RepaintChanged(false);
    EXPECT_TRUE(HeadlessSurface.calls.empty());
}

TEST_F(OverWaves, ItCanBeForcedWithNothingChanged) {
    DrawOverlay(true);
    ForgetCalls();
    WaveView.CursorTime = 30;
    RepaintChanged(true);
    EXPECT_EQ(SavesAndRestores(), (Texts{"restore cursor 0,0-1,600", "save cursor 30,0-31,600"}));
}

TEST_F(OverWaves, AChangeTakesItOffOnceForAllRows) {
    for (const char *name : {"A", "B", "C"}) MakeRow(name);
    AppendRowOf(WaveRows[0].PatternId);
    DrawOverlay(true);
    for (bool force : {false, true}) {
        for (uint32_t row : {0u, 2u}) RowPattern(row)->setChanged(true);
        ForgetCalls();
        RepaintChanged(force);
        EXPECT_EQ(SavesAndRestores().size(), 2u);
        EXPECT_TRUE(Overlay.overlayOn);
    }
}

TEST_F(OverWaves, TheRowsOfOnePatternAreRepaintedTogetherAndOnce) {
    for (const char *name : {"A", "B", "C"}) MakeRow(name);
    AppendRowOf(WaveRows[0].PatternId);
    for (uint32_t row = 0; row < 4; row++) RowPattern(row)->setChanged(row != 2);
    ForgetCalls();
    RepaintChanged(false);
    std::vector<int32_t> rows;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        if (call.kind == SurfaceCall::Kind::Fill) rows.push_back(call.rect.top / rowHeight);
    }
    EXPECT_EQ(rows, (std::vector{0, 3, 1}));
}

// --- pixels ---

namespace {

// A pane that a test treats as Windows would: it paints what has been scheduled, and can compare what stands
// there with a fresh painting of the same view.
class LivePane : public OverWaves {
protected:
    static constexpr int32_t WIDTH = 300, HEIGHT = 130;
    void SetUp() override {
        OverWaves::SetUp();
        HeadlessSurface.recording = false;
        SetPaneSizes(100, WIDTH, HEIGHT);
        pane = std::make_unique<PaneImage>(Pane::Wave, WIDTH, HEIGHT);
        for (uint32_t i = 0; i < 9; i++) {
            Transitions items;
            for (uint32_t k = 0; k < 120; k++) items.push_back({(k + i) % 4, 1 + (k * 7 + i * 3) % 19});
            MakeRow(("N" + std::to_string(i)).c_str(), items);
        }
        WaveView.SpanEnd = 1500;
        for (uint32_t row = 0; row < WaveView.RowCount; row++) RowPattern(row)->setChanged(false);
        paint();
    }
    void TearDown() override {
        pane.reset();
        OverWaves::TearDown();
    }
    // A paint message for the whole pane, erased first.
    void paint() {
        PaintBegins(Pane::Wave);
        erase();
        PaintPane(Pane::Wave);
        PaintEnds(Pane::Wave);
    }
    void erase() {
        SelectPicture(Pane::Wave);
        EraseBlock({0, static_cast<int32_t>(WaveView.TopPixel), WIDTH,
                    static_cast<int32_t>(WaveView.TopPixel) + HEIGHT});
    }
    std::vector<uint32_t> pixels() const {
        std::vector<uint32_t> all;
        for (int32_t y = 0; y < HEIGHT; y++) {
            for (int32_t x = 0; x < WIDTH; x++) all.push_back(pane->at(x, y));
        }
        return all;
    }
    // Compares the pane with a fresh painting of its view, with and without what lies over it.
    void expectFresh(const std::string &after) {
        std::vector<uint32_t> withOverlay = pixels();
        bool on = Overlay.overlayOn;
        EXPECT_TRUE(on) << after;
        DrawOverlay(false);
        std::vector<uint32_t> without = pixels();
        erase();
        PaintPane(Pane::Wave);
        EXPECT_TRUE(pixels() == without) << "without overlay, after " << after;
        DrawOverlay(true);
        EXPECT_TRUE(pixels() == withOverlay) << "with overlay, after " << after;
    }
    // What Windows would do about the panels scheduled for painting.
    void paintScheduled() {
        bool waves = std::find(Headless.invalidated.begin(), Headless.invalidated.end(), Pane::Wave) !=
                     Headless.invalidated.end();
        Headless.invalidated.clear();
        if (waves) paint();
    }
    static void underOverlay(const std::function<void()> &change) {
        DrawOverlay(false);
        change();
        DrawOverlay(true);
    }
    std::string change(Random &random);
    std::unique_ptr<PaneImage> pane;
};

// One random change of what the pane shows; says which.
std::string LivePane::change(Random &random) {
    TimeVal a = random.below(1400), b = random.below(1400);
    uint32_t row = random.below(12);
    constexpr ScrollCode codes[] = {ScrollCode::LineUp, ScrollCode::LineDown, ScrollCode::PageUp,
                                    ScrollCode::PageDown};
    ScrollCode code = codes[random.below(4)];
    switch (random.below(12)) {
    case 0:
    case 1:
        underOverlay([&] { WaveView.CursorTime = a; });
        return "moving the cursor";
    case 2:
        underOverlay([&] { mark(a); });
        return "marking";
    case 3:
        underOverlay([&] { WaveView.MarkActive = false; });
        return "hiding the mark";
    case 4:
    case 5:
        underOverlay([&] { select(a, b, row); });
        return "selecting";
    case 6:
        underOverlay([&] { WaveView.SelectActive = false; });
        return "deselecting";
    case 7:
        ScrollPane(Pane::Wave, ScrollBar::Horizontal, code, 0);
        return "scrolling in time";
    case 8:
        ScrollPane(Pane::Wave, ScrollBar::Vertical, code, 0);
        return "scrolling rows";
    case 9:
        ZoomToRange(a, b);
        return "zooming";
    case 10:
        RowPattern(row % WaveView.RowCount)->item(0).word1 ^= 1;
        RowPattern(row % WaveView.RowCount)->setChanged(true);
        RepaintChanged(random.once(2));
        return "an edit";
    default:
        // The pane may cut what it shows anywhere.
        WaveView.WavePaneWidth = 200 + static_cast<int32_t>(random.below(WIDTH - 199));
        WaveView.WavePaneHeight = 60 + static_cast<int32_t>(random.below(HEIGHT - 59));
        Headless.paneWidth[3] = WaveView.WavePaneWidth;
        Headless.paneHeight[3] = WaveView.WavePaneHeight;
        HeadlessSurface.target.size[3] = {WaveView.WavePaneWidth, WaveView.WavePaneHeight};
        Headless.clip[3] = {0, 0, WaveView.WavePaneWidth, WaveView.WavePaneHeight};
        PaneResized(Pane::Wave);
        InvalidatePane(Pane::Wave);
        return "a resize";
    }
}

} // namespace

TEST_F(LivePane, IsToThePixelWhatAFreshPaintingGivesWhateverChanges) {
    Random random(11);
    for (int i = 0; i < 600 && !HasFailure(); i++) {
        std::string what = change(random);
        paintScheduled();
        expectFresh(what + ", change " + std::to_string(i));
    }
}

TEST_F(LivePane, MarkCursorAndFrameOnOneColumnComeOffTogether) {
    std::vector<uint32_t> on, off;
    DrawOverlay(false);
    std::vector<uint32_t> before = pixels();
    mark(40);
    WaveView.CursorTime = 40;
    select(40, 41, 0);
    DrawOverlay(true);
    EXPECT_FALSE(pixels() == before);
    DrawOverlay(false);
    EXPECT_TRUE(pixels() == before);
}

TEST_F(LivePane, AResizeThatGrowsThePanePutsNoForeignPixelsBack) {
    underOverlay([] { WaveView.CursorTime = 280; });
    WaveView.WavePaneWidth = 250;
    HeadlessSurface.target.size[3] = {250, HEIGHT};
    InvalidatePane(Pane::Wave);
    paintScheduled();
    WaveView.WavePaneWidth = WIDTH;
    HeadlessSurface.target.size[3] = {WIDTH, HEIGHT};
    InvalidatePane(Pane::Wave);
    paintScheduled();
    expectFresh("growing");
}
