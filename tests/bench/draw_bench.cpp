// Drawing a full window of dense rows, against the walk that it rests on.
#include "bench/rows_bench.h"
#include "display/composition.h"
#include "display/renderer.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <benchmark/benchmark.h>
#include <string>

namespace {

constexpr uint32_t ROWS = 40;
constexpr uint32_t TRANSITIONS = 8000;
constexpr int32_t WIDTH = 1000;
constexpr uint32_t ITEM_LENGTH = 10;

// Rows of one-bit nodes of 8,000 transitions each, all of them in a pane of 1,000 pixels.
void OpenRows() {
    OpenBenchStore();
    for (uint32_t row = 0; row < ROWS; row++) {
        std::string name = "N" + std::to_string(row);
        uint16_t id = CreatePattern(0, name.c_str(), 0)->id;
        for (uint32_t i = 0; i < TRANSITIONS; i++) {
            InsertTransition(PatternFromId(id), static_cast<uint16_t>(i), (i + row) & 1, ITEM_LENGTH + i % 3);
        }
        ShowWaveByName(name.c_str());
    }
    UpdateFullDuration();
    WaveView.WavePaneWidth = WIDTH;
    WaveView.WavePaneHeight = static_cast<int32_t>(ROWS) * WaveView.RowHeight;
    DisplayOpen = 1;
    ZoomToRange(0, WaveView.SpanEnd);
}

void DrawRows(benchmark::State &state) {
    OpenRows();
    for (auto _ : state) RepaintAllRows();
    CloseBenchStore();
}

int CountSegment(const WalkSegment *segment) {
    benchmark::DoNotOptimize(segment);
    return 1;
}

// The same walks, with a callback that does nothing.
void WalkRows(benchmark::State &state) {
    OpenRows();
    TimeVal end = TimeMin(PixelsToTime(WIDTH), WaveView.SpanEnd);
    for (auto _ : state) {
        for (uint32_t row = 0; row < WaveView.RowCount; row++) {
            WalkPattern(CountSegment, RowPattern(row), 0, end, DisplayWalkFlags(), PixelsToTime(2));
        }
    }
    CloseBenchStore();
}

BENCHMARK(DrawRows)->Name("draw/rows")->Unit(benchmark::kMicrosecond);
BENCHMARK(WalkRows)->Name("draw/rows/yardstick")->Unit(benchmark::kMicrosecond);

} // namespace
