// Walking many items, against the bare calls; and the value far out in an endless repetition, against the
// value at its beginning.
#include "config/settings.h"
#include "edit/walker.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr uint32_t NODES = 1000;
constexpr uint32_t ITEMS = 1000;

uint64_t sum;

int AddUp(const WalkSegment *segment) {
    sum += segment->value + segment->end;
    return 1;
}

void OpenStore() {
    InitSettings();
    if (!PatternStoreInit()) abort();
    LoadStateTables();
}

uint16_t MakeNode(const std::string &name, uint32_t items, uint32_t shift) {
    uint16_t id = CreatePattern(0, name.c_str(), 0)->id;
    for (uint32_t i = 0; i < items; ++i) {
        InsertTransition(PatternFromId(id), static_cast<uint16_t>(i), (i + shift) & 1, 10 + i % 3);
    }
    return id;
}

// --- all segments ---

std::vector<uint16_t> MakeNodes() {
    std::vector<uint16_t> ids;
    for (uint32_t n = 0; n < NODES; ++n) ids.push_back(MakeNode("N" + std::to_string(n), ITEMS, n));
    UpdateFullDuration();
    return ids;
}

void WalkItems(benchmark::State &state) {
    OpenStore();
    std::vector<uint16_t> ids = MakeNodes();
    for (auto _ : state) {
        for (uint16_t id : ids) WalkPattern(AddUp, PatternFromId(id), 0, TIME_FOREVER, 0, 0);
        benchmark::DoNotOptimize(sum);
    }
    PatternStoreFree();
}
BENCHMARK(WalkItems)->Name("walk/items")->Unit(benchmark::kMillisecond);

std::vector<WalkSegment> ready;

void CallForReadySegments(benchmark::State &state) {
    OpenStore();
    ready.clear();
    for (uint16_t id : MakeNodes()) {
        auto keep = [](const WalkSegment *segment) {
            ready.push_back(*segment);
            return 1;
        };
        WalkPattern(keep, PatternFromId(id), 0, TIME_FOREVER, 0, 0);
    }
    PatternStoreFree();
    if (ready.size() != NODES * ITEMS) state.SkipWithError("not all segments were walked");
    WalkCallback callback = AddUp;
    benchmark::DoNotOptimize(callback);
    for (auto _ : state) {
        for (const WalkSegment &segment : ready) {
            if (!callback(&segment)) break;
        }
        benchmark::DoNotOptimize(sum);
    }
    ready = {};
}
BENCHMARK(CallForReadySegments)->Name("walk/items/yardstick")->Unit(benchmark::kMillisecond);

// --- values of an endless repetition ---

void AddEndlessUse(uint16_t id, uint16_t part, PatternKind kind, uint32_t repeat) {
    Pattern *pattern = PatternFromId(id);
    InsertReference(pattern, kind, pattern->itemCount, part, 1, repeat, 0, 0, 0);
}

// A node, a nest two levels deep, and a composite, each without end.
std::vector<uint16_t> MakeEndless() {
    uint16_t part = MakeNode("$part", 8, 0);
    uint16_t nest = CreatePattern(0, "$nest", 0)->id;
    AddEndlessUse(nest, part, PatternKind::Plain, 7);
    uint16_t endless = CreatePattern(0, "$endless", 0)->id;
    AddEndlessUse(endless, part, PatternKind::Plain, REPEAT_FOREVER);

    std::vector<uint16_t> ids;
    for (uint16_t inner : {part, nest}) {
        ids.push_back(CreatePattern(0, ("E" + std::to_string(inner)).c_str(), 0)->id);
        AddEndlessUse(ids.back(), inner, PatternKind::Plain, REPEAT_FOREVER);
    }
    ids.push_back(CreatePattern(0, "C[7:0]", 0)->id);
    for (int bit = 0; bit < 8; ++bit) AddEndlessUse(ids.back(), endless, PatternKind::Composite, 1);
    ValidateDurations();
    return ids;
}

void ValuesFrom(benchmark::State &state, TimeVal start) {
    OpenStore();
    std::vector<uint16_t> ids = MakeEndless();
    for (auto _ : state) {
        for (uint16_t id : ids) {
            for (TimeVal t = 0; t < 80; ++t) sum += PatternValueAt(PatternFromId(id), start + t, false);
        }
        benchmark::DoNotOptimize(sum);
    }
    PatternStoreFree();
}

void ValuesAtStart(benchmark::State &state) {
    ValuesFrom(state, 0);
}
BENCHMARK(ValuesAtStart)->Name("value/start");

void ValuesAtEnd(benchmark::State &state) {
    ValuesFrom(state, TIME_FOREVER - 100);
}
BENCHMARK(ValuesAtEnd)->Name("value/end");

} // namespace
