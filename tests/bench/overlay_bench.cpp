// Moving the cursor over full rows and over none, and repainting what one edit changed.
#include "config/settings.h"
#include "display/composition.h"
#include "display/overlay.h"
#include "display/renderer.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "edit/range_edits.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include <benchmark/benchmark.h>
#include <string>

namespace {

constexpr uint32_t ROWS = 40;
constexpr uint32_t TRANSITIONS = 8000;
constexpr int32_t WIDTH = 1000;
constexpr uint32_t ITEM_LENGTH = 10;

// A pane for 40 rows and an axis for 8,000 transitions, with the first `rows` rows filled.
void OpenPane(uint32_t rows) {
    InitHeadless();
    InitHeadlessSurface();
    InitSettings();
    InitWaveView();
    InitViewport();
    InitOverlay();
    InitComposition();
    BuildLevelColour();
    if (!AllocWaveRows() || !PatternStoreInit()) abort();
    LoadStateTables();
    InitWaveMetrics();
    for (uint32_t row = 0; row < rows; row++) {
        std::string name = "N" + std::to_string(row);
        uint16_t id = CreatePattern(0, name.c_str(), 0)->id;
        for (uint32_t i = 0; i < TRANSITIONS; i++) {
            InsertTransition(PatternFromId(id), static_cast<uint16_t>(i), (i + row) & 1, ITEM_LENGTH + i % 3);
        }
        ShowWaveByName(name.c_str());
        PatternFromId(id)->setChanged(false);
    }
    UpdateFullDuration();
    ExtendSpan(TRANSITIONS * (ITEM_LENGTH + 1));
    Headless.panesExist = true;
    WaveView.WavePaneWidth = WIDTH;
    WaveView.WavePaneHeight = static_cast<int32_t>(ROWS) * WaveView.RowHeight;
    Headless.clip[3] = {0, 0, WIDTH, WaveView.WavePaneHeight};
    DisplayOpen = 1;
    ZoomToRange(0, WaveView.SpanEnd);
}

void ClosePane() {
    PatternStoreFree();
    FreeWaveRows();
    InitHeadlessSurface();
}

// The cursor goes to and fro over the pane, a pixel at a time, in a picture.
void MoveCursor(benchmark::State &state, uint32_t rows) {
    OpenPane(rows);
    cairo_surface_t *image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, WIDTH, WaveView.WavePaneHeight);
    HeadlessSurface.target.context = cairo_create(image);
    HeadlessSurface.target.size[3] = {WIDTH, WaveView.WavePaneHeight};
    PaintPane(Pane::Wave);
    DrawOverlay(true);
    int32_t x = 0;
    for (auto _ : state) {
        x = (x + 1) % WIDTH;
        DrawOverlay(false);
        WaveView.CursorTime = PixelsToTime(x);
        DrawOverlay(true);
    }
    cairo_destroy(HeadlessSurface.target.context);
    cairo_surface_destroy(image);
    ClosePane();
}

void MoveOverDenseRows(benchmark::State &state) {
    MoveCursor(state, ROWS);
}

void MoveOverNothing(benchmark::State &state) {
    MoveCursor(state, 0);
}

void RepaintOneChanged(benchmark::State &state) {
    OpenPane(ROWS);
    DrawOverlay(true);
    for (auto _ : state) {
        RowPattern(ROWS / 2)->setChanged(true);
        RepaintChanged(false);
    }
    ClosePane();
}

void PaintOneRow(benchmark::State &state) {
    OpenPane(ROWS);
    for (auto _ : state) DrawRowWaves(ROWS / 2);
    ClosePane();
}

// An edge in the middle of one row goes a unit to and fro, as the release of a drag leaves it behind.
void MoveAnEdge(benchmark::State &state) {
    OpenPane(ROWS);
    DrawOverlay(true);
    uint16_t id = WaveRows[ROWS / 2].PatternId;
    TimeVal edge = 0;
    for (uint32_t i = 0; i <= TRANSITIONS / 2; i++) edge += PatternFromId(id)->item(i).duration();
    int32_t step = 1;
    for (auto _ : state) {
        TimeVal to = edge + static_cast<TimeVal>(step);
        MoveEdge(PatternFromId(id), PatternFromId(id), TRANSITIONS / 2, 1, edge, to, 1, 0);
        LogEndAction();
        ValidateDurations();
        RepaintChanged(false);
        edge = to;
        step = -step;
    }
    ClosePane();
}

BENCHMARK(MoveAnEdge)->Name("edit/one")->Unit(benchmark::kMicrosecond);
BENCHMARK(MoveOverDenseRows)->Name("cursor/dense")->Unit(benchmark::kMicrosecond);
BENCHMARK(MoveOverNothing)->Name("cursor/empty")->Unit(benchmark::kMicrosecond);
BENCHMARK(RepaintOneChanged)->Name("repaint/one")->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintOneRow)->Name("repaint/row")->Unit(benchmark::kMicrosecond);

} // namespace
