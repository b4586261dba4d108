// Damaged wave lists: whatever stands in the file, each row shows a pattern of the document, no pattern has
// two rows, and what the rows say reads back to the same rows.
#include "config/settings.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "platform/files.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

// One file for all runs of this process.
const std::string Path =
    std::filesystem::temp_directory_path() / ("kelvane-wave-list-fuzz-" + std::to_string(getpid()) + ".kel");

void RemoveIt() {
    RemoveFile(Path.c_str());
}

void Require(bool holds, const char *what) {
    if (holds) return;
    fprintf(stderr, "does not hold: %s\n", what);
    abort();
}

void Write(const void *data, size_t size) {
    FileHandle file = OpenForWriting(Path.c_str());
    Require(file != NO_FILE && WriteBytes(file, data, size) == static_cast<int64_t>(size), "temporary file");
    CloseFile(file);
}

std::vector<uint16_t> Read() {
    char path[MAX_PATH_SIZE];
    snprintf(path, sizeof path, "%s", Path.c_str());
    Headless.userErrors.clear();
    WaveView.RowCount = 0;
    ReadWaveList(path);
    std::vector<uint16_t> ids;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) ids.push_back(WaveRows[row].PatternId);
    return ids;
}

std::string TextOf(const std::vector<uint16_t> &ids) {
    std::string text;
    for (uint16_t id : ids) text += std::string("Wave ") + PatternFromId(id)->name() + "\n";
    return text;
}

// A few patterns with names of all kinds, and more than the rows have room for.
void MakePatterns() {
    for (const char *name : {"CLK", "'RESET", "D[7:0]", "A[31:0],B", "$SUB", "clk", "TOP.CPU.WR", "\xC4"}) {
        CreatePattern(0, name, 0);
    }
    for (int i = 0; i < 260; i++) CreatePattern(0, ("N" + std::to_string(i)).c_str(), 0);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    InitHeadless();
    InitSettings();
    InitWaveView();
    InitViewport();
    Require(AllocWaveRows() && PatternStoreInit(), "memory");
    MakePatterns();
    atexit(RemoveIt);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Write(data, size);
    std::vector<uint16_t> ids = Read();
    Require(ids.size() <= MAX_ROWS, "the rows fit the table");
    for (uint16_t id : ids) Require(PatternInUse(id), "a row shows a pattern");
    Require(std::set<uint16_t>(ids.begin(), ids.end()).size() == ids.size(), "no pattern has two rows");
    std::string text = TextOf(ids);
    Write(text.data(), text.size());
    Require(Read() == ids, "the rows read back");
    return 0;
}
