// What a full paint costs by where the window stands, and, counted, by how much there is in it.
#include "bench/rows_bench.h"
#include "display/composition.h"
#include "display/renderer.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "headless/surface_cairo.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <benchmark/benchmark.h>
#include <string>

namespace {

constexpr uint32_t ROWS = 40;
constexpr int32_t WIDTH = 1000;
// Items of the flat rows, below what a record holds.
constexpr uint32_t ITEMS_OF_ROW = 8000;
constexpr uint32_t ITEMS_OF_NEST = 1000;

uint16_t AddPattern(const std::string &name, uint32_t items) {
    uint16_t id = CreatePattern(0, name.c_str(), 0)->id;
    for (uint32_t i = 0; i < items; i++) {
        InsertTransition(PatternFromId(id), static_cast<uint16_t>(i), i & 1, 10 + i % 3);
    }
    return id;
}

void AddUse(const std::string &name, uint16_t target, uint32_t repeat) {
    InsertReference(CreatePattern(0, name.c_str(), 0), PatternKind::Plain, 0, target, 1, repeat, 0, 0, 0);
    ShowWaveByName(name.c_str());
}

// Shows all rows, in a pane as high as they need.
void ShowAll() {
    WaveView.WavePaneWidth = WIDTH;
    WaveView.WavePaneHeight = static_cast<int32_t>(WaveView.RowCount) * WaveView.RowHeight;
    DisplayOpen = 1;
    ZoomToRange(0, WaveView.SpanEnd);
}

// A narrow window of rows that repeat without an end, through three levels of nesting.
void PaintEndless(benchmark::State &state, TimeVal left) {
    OpenBenchStore();
    uint16_t inner = AddPattern("$inner", 6);
    AddUse("$middle", inner, 5);
    uint16_t middle = FindPattern("$middle")->id;
    WaveView.RowCount = 0;
    for (uint32_t row = 0; row < ROWS; row++) AddUse("N" + std::to_string(row), middle, REPEAT_FOREVER);
    UpdateFullDuration();
    WaveView.SpanEnd = TIME_FOREVER;
    ShowAll();
    WaveView.Scale = -1;
    WaveView.ViewLeft = left;
    for (auto _ : state) RepaintAll();
    CloseBenchStore();
}

void PaintStart(benchmark::State &state) {
    PaintEndless(state, 0);
}
void PaintLate(benchmark::State &state) {
    PaintEndless(state, 4000000000u);
}

uint64_t segmentsSeen;

int CountSegment(const WalkSegment *) {
    segmentsSeen++;
    return 1;
}

void CountPaint(benchmark::State &state) {
    UpdateFullDuration();
    ShowAll();
    segmentsSeen = 0;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        WalkPattern(CountSegment, RowPattern(row), 0, WaveView.SpanEnd, DisplayWalkFlags(), PixelsToTime(2));
    }
    HeadlessSurface.recording = true;
    HeadlessSurface.calls.clear();
    for (auto _ : state) RepaintAllRows();
    state.counters["callbacks"] = static_cast<double>(segmentsSeen);
    state.counters["calls"] = static_cast<double>(HeadlessSurface.calls.size());
    HeadlessSurface.calls.clear();
    HeadlessSurface.recording = false;
    CloseBenchStore();
}

// As many segments as the argument says, as data items of rows one below the other.
void CountFlat(benchmark::State &state) {
    OpenBenchStore();
    auto left = static_cast<uint32_t>(state.range(0));
    for (uint32_t row = 0; left > 0; row++) {
        uint32_t items = std::min(left, ITEMS_OF_ROW);
        std::string name = "N" + std::to_string(row);
        AddPattern(name, items);
        ShowWaveByName(name.c_str());
        left -= items;
    }
    CountPaint(state);
}

// The same in one row, as repetitions of a nested pattern.
void CountNested(benchmark::State &state) {
    OpenBenchStore();
    uint16_t nest = AddPattern("$nest", ITEMS_OF_NEST);
    AddUse("N", nest, static_cast<uint32_t>(state.range(0)) / ITEMS_OF_NEST);
    CountPaint(state);
}

BENCHMARK(PaintStart)->Name("paint/start")->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintLate)->Name("paint/late")->Unit(benchmark::kMicrosecond);
BENCHMARK(CountFlat)->Name("count/flat")->RangeMultiplier(10)->Range(1000, 1000000)->Iterations(1);
BENCHMARK(CountNested)->Name("count/nested")->RangeMultiplier(10)->Range(1000, 1000000)->Iterations(1);

} // namespace
