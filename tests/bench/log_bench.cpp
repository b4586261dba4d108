// The edit log: appending to it beside a bare copy of the same bytes, undo and redo beside the edits
// themselves, and what memory a long session takes.
#include "bench/rows_bench.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/range_edits.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "editlog/replay.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <string>
#include <vector>

namespace {

constexpr uint32_t RECORDS = 1000000;
constexpr uint32_t ACTIONS = 100000;
constexpr uint32_t NODES = 8;
constexpr uint32_t ITEMS = 100;

// --- appending --------------------------------------------------------------------------------------

// One record of each kind in turn.
void BuildRecord(uint32_t n) {
    auto id = static_cast<uint16_t>(n % 4000);
    auto item = static_cast<uint16_t>(n);
    switch (n % 13) {
    case 0:
        return LogDelay(id, n, n + 1);
    case 1:
        return LogItemValue(id, item, n, n + 1);
    case 2:
        return LogItemDuration(id, item, n, n + 1);
    case 3:
        return LogItemRepeat(id, item, item, 7);
    case 4:
        return LogItemScale(id, item, item, 7);
    case 5:
        return LogItemFormat(id, item, 1, 2);
    case 6:
        return LogPatternParams(id, {n, 50, 1, 2, 3, 4}, {n + 1, 60, 2, 3, 4, 1});
    case 7:
        return LogRename(id, "CLOCK", "RESET[7:0]");
    case 8:
        return LogTiming(48, 49, 1, 2, item, 5);
    case 9:
        return LogTransition(1, id, item, n, n);
    case 10:
        return LogReference(0, id, 0, item, id, 1, item, 3, 4, 5);
    case 11:
        return LogPattern(1, id, 8, "DATA[7:0]");
    default:
        return LogRow(1, id, item);
    }
}

// An empty log in a file of its own, which stays open.
class BenchLog {
public:
    BenchLog() {
        LogInit(LOG_SUFFIX);
        held = LogHoldOpen(1);
    }
    ~BenchLog() {
        LogHoldOpen(held);
        LogDeleteFile();
        InitEditLog();
    }
    BenchLog(const BenchLog &) = delete;
    BenchLog &operator=(const BenchLog &) = delete;

private:
    int held;
};

void Append(benchmark::State &state) {
    for (auto _ : state) {
        BenchLog log;
        for (uint32_t n = 0; n < RECORDS; n++) BuildRecord(n);
        LogFlush();
    }
}

// The bytes of the same records, and where each of them ends.
struct RecordedBytes {
    std::vector<uint8_t> bytes;
    std::vector<uint32_t> ends;
};

RecordedBytes BytesOfRecords() {
    RecordedBytes recorded;
    for (uint32_t n = 0; n < RECORDS; n++) {
        InitEditLog();
        BuildRecord(n);
        recorded.bytes.insert(recorded.bytes.end(), EditLog.Buffer, EditLog.Buffer + EditLog.rPtr);
        recorded.ends.push_back(static_cast<uint32_t>(recorded.bytes.size()));
    }
    InitEditLog();
    return recorded;
}

void CopyAndWrite(benchmark::State &state) {
    static const RecordedBytes recorded = BytesOfRecords();
    for (auto _ : state) {
        BenchLog log;
        LogOpenFile();
        uint8_t buffer[BufLen];
        size_t used = 0;
        uint32_t from = 0;
        for (uint32_t end : recorded.ends) {
            if (used + (end - from) >= sizeof buffer) {
                WriteBytes(EditLog.LogHandle, buffer, used);
                used = 0;
            }
            memcpy(buffer + used, recorded.bytes.data() + from, end - from);
            used += end - from;
            from = end;
        }
        WriteBytes(EditLog.LogHandle, buffer, used);
    }
}

// --- undo and redo ------------------------------------------------------------------------------------

void FillStore() {
    OpenBenchStore();
    InitEditLog();
    InitReplay();
    EditLog.Recording = 0;
    for (uint32_t node = 0; node < NODES; node++) {
        uint16_t id = CreatePattern(0, ("N" + std::to_string(node)).c_str(), 0)->id;
        for (uint32_t i = 0; i < ITEMS; i++) {
            InsertTransition(PatternFromId(id), static_cast<uint16_t>(i), i & 1, 10);
        }
    }
    EditLog.Recording = 1;
    ValidateDurations();
}

// Changes, inserts or deletes an item. The number of items stays within bounds.
void Edit(uint32_t n) {
    Pattern *pattern = PatternFromId(1 + n % NODES);
    auto index = static_cast<uint16_t>(n % ITEMS);
    switch (n / NODES % 4) {
    case 0:
        SetItemValue(pattern, index, n);
        break;
    case 1:
        SetItemDuration(pattern, index, 1 + n % 1000);
        break;
    case 2:
        InsertTransition(pattern, index, n, 5);
        break;
    default:
        DeleteItem(pattern, index);
        break;
    }
    LogEndAction();
    ValidateDurations();
}

void Step(int (*step)()) {
    if (!step()) abort();
    FinishReplay();
    ValidateDurations();
}

template <class First, class Measured>
void MeasureActions(benchmark::State &state, void (*fill)(), First first, Measured measured) {
    for (auto _ : state) {
        state.PauseTiming();
        fill();
        {
            BenchLog log;
            first();
            state.ResumeTiming();
            measured();
            state.PauseTiming();
        }
        CloseBenchStore();
        state.ResumeTiming();
    }
}

void EditAll() {
    for (uint32_t n = 0; n < ACTIONS; n++) Edit(n);
}
void UndoAll() {
    for (uint32_t n = 0; n < ACTIONS; n++) Step(LogUndo);
    if (EditLog.rPtr != 0) abort();
}
void RedoAll() {
    for (uint32_t n = 0; n < ACTIONS; n++) Step(LogRedo);
    if (EditLog.rPtr != EditLog.rEofPtr) abort();
}

void Do(benchmark::State &state) {
    MeasureActions(
        state, FillStore, [] {}, EditAll);
}
void Undo(benchmark::State &state) {
    MeasureActions(state, FillStore, EditAll, UndoAll);
}
void Redo(benchmark::State &state) {
    MeasureActions(
        state, FillStore,
        [] {
            EditAll();
            UndoAll();
        },
        RedoAll);
}

// --- undo and redo of many references -----------------------------------------------------------------

constexpr uint32_t PARTS = 3900;
constexpr uint32_t USERS = 13;
constexpr uint32_t USES = 7700;

// Parts, and nodes that use them 100,100 times in all.
void FillStoreWithReferences() {
    OpenBenchStore();
    InitEditLog();
    InitReplay();
    EditLog.Recording = 0;
    std::vector<uint16_t> parts;
    for (uint32_t n = 0; n < PARTS; n++) {
        parts.push_back(CreatePattern(0, ("$p" + std::to_string(n)).c_str(), 0)->id);
        InsertTransition(PatternFromId(parts.back()), 0, 1, 5);
    }
    for (uint32_t n = 0; n < USERS; n++) {
        uint16_t id = CreatePattern(0, ("N" + std::to_string(n)).c_str(), 0)->id;
        for (uint32_t i = 0; i < USES; i++) {
            InsertReference(PatternFromId(id), PatternKind::Plain, static_cast<uint16_t>(i),
                            parts[(n * USES + i) * 7919 % PARTS], 1, 1, 0, 0, 0);
        }
    }
    EditLog.Recording = 1;
    ValidateDurations();
}

// Takes the references of each node out, an action for each.
void DeleteUses() {
    for (uint32_t n = 0; n < USERS; n++) {
        Pattern *user = PatternFromId(PARTS + 1 + n);
        DeleteRange(user, 0, user->duration);
        LogEndAction();
        ValidateDurations();
    }
}
void UndoDeletions() {
    for (uint32_t n = 0; n < USERS; n++) Step(LogUndo);
    if (EditLog.rPtr != 0 || PatternFromId(PARTS + USERS)->itemCount != USES) abort();
}
void RedoDeletions() {
    for (uint32_t n = 0; n < USERS; n++) Step(LogRedo);
    if (EditLog.rPtr != EditLog.rEofPtr || PatternFromId(PARTS + USERS)->itemCount != 0) abort();
}

void DoReferences(benchmark::State &state) {
    MeasureActions(
        state, FillStoreWithReferences, [] {}, DeleteUses);
}
void UndoReferences(benchmark::State &state) {
    MeasureActions(state, FillStoreWithReferences, DeleteUses, UndoDeletions);
}
void RedoReferences(benchmark::State &state) {
    MeasureActions(
        state, FillStoreWithReferences,
        [] {
            DeleteUses();
            UndoDeletions();
        },
        RedoDeletions);
}

// --- memory -------------------------------------------------------------------------------------------

double AllocatedBytes() {
    struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// What the program takes behind so many actions, the store's heap apart, in bytes.
void MemoryAfter(benchmark::State &state, uint32_t actions) {
    for (auto _ : state) {
        // What is made once and kept must not count for whichever comes first.
        FillStore();
        { BenchLog log; }
        CloseBenchStore();
        double before = AllocatedBytes();
        FillStore();
        {
            BenchLog log;
            for (uint32_t n = 0; n < actions; n++) Edit(n);
            state.counters["bytes"] =
                AllocatedBytes() - before - HeapSize + static_cast<double>(sizeof EditLog);
        }
        CloseBenchStore();
    }
}

void MemoryAfterMany(benchmark::State &state) {
    MemoryAfter(state, 1000000);
}
void MemoryAfterFew(benchmark::State &state) {
    MemoryAfter(state, 1000);
}

BENCHMARK(Append)->Name("log/append")->Unit(benchmark::kMillisecond);
BENCHMARK(CopyAndWrite)->Name("log/append/yardstick")->Unit(benchmark::kMillisecond);
BENCHMARK(Do)->Name("log/do")->Unit(benchmark::kMillisecond);
BENCHMARK(Undo)->Name("log/undo")->Unit(benchmark::kMillisecond);
BENCHMARK(Redo)->Name("log/redo")->Unit(benchmark::kMillisecond);
BENCHMARK(DoReferences)->Name("log/references/do")->Unit(benchmark::kMillisecond);
BENCHMARK(UndoReferences)->Name("log/references/undo")->Unit(benchmark::kMillisecond);
BENCHMARK(RedoReferences)->Name("log/references/redo")->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryAfterMany)->Name("log/memory/many")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryAfterFew)->Name("log/memory/few")->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
