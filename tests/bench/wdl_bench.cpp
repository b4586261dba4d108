// Loading and saving stimulus files, each beside the least that any program would have to do with the same
// bytes.
#include "config/settings.h"
#include "document/document_files.h"
#include "headless/headless.h"
#include "platform/text_file.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr uint32_t NODES = 1000;
constexpr uint32_t ITEMS_PER_NODE = 1000;

// Files in a directory of this process, removed at its end.
class Files {
public:
    Files()
        : directory(std::filesystem::temp_directory_path() / ("kelvane-bench-" + std::to_string(getpid()))) {
        std::filesystem::create_directories(directory);
    }
    ~Files() {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
    std::string path(const char *name) const { return (directory / name).string(); }
    std::string write(const char *name, const std::string &text) const {
        FILE *file = fopen(path(name).c_str(), "wb");
        fwrite(text.data(), 1, text.size(), file);
        fclose(file);
        return path(name);
    }

private:
    std::filesystem::path directory;
};

const Files &TheFiles() {
    static const Files files;
    return files;
}

void Check(bool holds, const char *what) {
    if (holds) return;
    fprintf(stderr, "benchmark: %s\n", what);
    abort();
}

void EmptyStore() {
    PatternStoreFree();
    InitSettings();
    WriteErrorListing = false;
    Check(PatternStoreInit() == 1, "no store");
    LoadStateTables();
}

void LoadFile(const std::string &path) {
    EmptyStore();
    TextReader file(path.c_str());
    Check(CompileWdl(&file, path.c_str()) == 1, "the document does not load");
    UpdateFullDuration();
}

uint32_t ValueOf(uint32_t node, uint32_t item) {
    return (node + item) % 4;
}

uint32_t DurationOf(uint32_t node, uint32_t item) {
    return 1 + (node * 7919 + item * 104729) % 20000;
}

// The document of 1,000,000 data items, as the writer writes it.
const std::string &ItemsPath() {
    static std::string path;
    if (!path.empty()) return path;
    EmptyStore();
    for (uint32_t node = 0; node < NODES; ++node) {
        Pattern *pattern = CreatePattern(0, ("node" + std::to_string(node)).c_str(), 1);
        for (uint32_t i = 0; i < ITEMS_PER_NODE; ++i) {
            pattern =
                InsertTransition(pattern, static_cast<uint16_t>(i), ValueOf(node, i), DurationOf(node, i));
        }
    }
    path = TheFiles().path("items.wdl");
    char buffer[MAX_PATH_SIZE];
    snprintf(buffer, sizeof buffer, "%s", path.c_str());
    WriteWdlFile(buffer);
    return path;
}

void LoadItems(benchmark::State &state) {
    const std::string &path = ItemsPath();
    while (state.KeepRunning()) LoadFile(path);
    Check(HighestPatternId == NODES && PatternFromId(1)->itemCount == ITEMS_PER_NODE, "items are missing");
}

// Every number of every line.
void LoadItemsYardstick(benchmark::State &state) {
    const std::string &path = ItemsPath();
    while (state.KeepRunning()) {
        FILE *file = fopen(path.c_str(), "r");
        char line[1024];
        unsigned long sum = 0;
        while (fgets(line, sizeof line, file)) {
            for (char *p = line; *p != '\0';) {
                char *end;
                sum += strtoul(p, &end, 10);
                p = end == p ? p + 1 : end;
            }
        }
        fclose(file);
        benchmark::DoNotOptimize(sum);
    }
}

void SaveItems(benchmark::State &state) {
    LoadFile(ItemsPath());
    std::string path = TheFiles().path("saved.wdl");
    while (state.KeepRunning()) {
        char buffer[MAX_PATH_SIZE];
        snprintf(buffer, sizeof buffer, "%s", path.c_str());
        WriteWdlFile(buffer);
        EndSave(buffer);
    }
    Check(std::filesystem::file_size(path) == std::filesystem::file_size(ItemsPath()), "the file differs");
}

void SaveItemsYardstick(benchmark::State &state) {
    std::string path = TheFiles().path("numbers.txt");
    std::vector<std::pair<uint32_t, uint32_t>> numbers;
    for (uint32_t node = 0; node < NODES; ++node) {
        for (uint32_t i = 0; i < ITEMS_PER_NODE; ++i)
            numbers.push_back({ValueOf(node, i), DurationOf(node, i)});
    }
    constexpr size_t bufferSize = 65536;
    auto buffer = std::make_unique<char[]>(bufferSize);
    while (state.KeepRunning()) {
        FILE *file = fopen(path.c_str(), "wb");
        setvbuf(file, nullptr, _IONBF, 0);
        char *out = buffer.get();
        char *end = out + bufferSize;
        for (auto [value, duration] : numbers) {
            if (end - out < 32) {
                fwrite(buffer.get(), 1, static_cast<size_t>(out - buffer.get()), file);
                out = buffer.get();
            }
            out = std::to_chars(out, end, value).ptr;
            *out++ = ' ';
            out = std::to_chars(out, end, duration).ptr;
            *out++ = ' ';
        }
        fwrite(buffer.get(), 1, static_cast<size_t>(out - buffer.get()), file);
        // A save brings its bytes to the disk, too.
        fsync(fileno(file));
        fclose(file);
    }
}

// Sub-patterns, and nodes that use them, in the order in which the editor makes and saves them.
// What the store takes for the items: heap, table and state block, in bytes.
void MemoryOfItems(benchmark::State &state) {
    while (state.KeepRunning()) LoadFile(ItemsPath());
    state.counters["bytes"] =
        static_cast<double>(HeapSize) + sizeof(uint32_t) * MAX_PATTERNS + StateBlockSize;
}

// The items by themselves.
void MemoryOfItemsYardstick(benchmark::State &state) {
    while (state.KeepRunning()) benchmark::DoNotOptimize(state.iterations());
    state.counters["bytes"] = static_cast<double>(sizeof(PatternItem)) * NODES * ITEMS_PER_NODE;
}

void LoadReferences(benchmark::State &state) {
    constexpr uint32_t patterns = 3900, references = 100000, nodes = 50;
    std::string text;
    for (uint32_t i = 0; i < patterns; ++i) text += "$pattern" + std::to_string(i) + " = 0 5 1 5;\n";
    for (uint32_t node = 0; node < nodes; ++node) {
        text += "node" + std::to_string(node) + " =";
        for (uint32_t i = 0; i < references / nodes; ++i) {
            text += i % 8 == 7 ? "\n  " : " ";
            text += "$pattern" + std::to_string((node * references / nodes + i) * 7919 % patterns) + " ";
        }
        text += ";\n";
    }
    std::string path = TheFiles().write("references.wdl", text);
    while (state.KeepRunning()) LoadFile(path);
    Check(HighestPatternId == nodes + patterns, "patterns are missing");
}

void LoadBuses(benchmark::State &state) {
    constexpr uint32_t buses = 1900;
    std::string text;
    for (uint32_t i = 0; i < buses; ++i) text += "bus" + std::to_string(i) + "[31:0] = 0 5 ff 5;\n";
    for (uint32_t i = 0; i < buses; ++i) text += "bit" + std::to_string(i) + " = 0 5 1 5;\n";
    std::string path = TheFiles().write("buses.wdl", text);
    while (state.KeepRunning()) LoadFile(path);
    Check(HighestPatternId == 2 * buses, "patterns are missing");
}

BENCHMARK(LoadItems)->Name("load/items")->Unit(benchmark::kMillisecond);
BENCHMARK(LoadItemsYardstick)->Name("load/items/yardstick")->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryOfItems)->Name("memory/items")->Iterations(1);
BENCHMARK(MemoryOfItemsYardstick)->Name("memory/items/yardstick")->Iterations(1);
BENCHMARK(SaveItems)->Name("save/items")->Unit(benchmark::kMillisecond);
BENCHMARK(SaveItemsYardstick)->Name("save/items/yardstick")->Unit(benchmark::kMillisecond);
BENCHMARK(LoadReferences)->Name("load/references")->Unit(benchmark::kMillisecond);
BENCHMARK(LoadBuses)->Name("load/buses")->Unit(benchmark::kMillisecond);

} // namespace
