// Arbitrary text as the simulator's configuration file: whatever it says, the tables are sound and every
// state has a row.
#include "config/paths.h"
#include "config/settings.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

// One file for all runs of this process.
const std::string path = std::filesystem::temp_directory_path() /
                         ("kelvane-state-table-fuzz-" + std::to_string(getpid()) + ".ini");

void RemoveIt() {
    unlink(path.c_str());
}

void Require(bool holds, const char *what) {
    if (holds) return;
    fprintf(stderr, "does not hold: %s\n", what);
    abort();
}

void WriteFile(const uint8_t *data, size_t size) {
    FILE *file = fopen(path.c_str(), "wb");
    Require(file && fwrite(data, 1, size, file) == size && fclose(file) == 0, "the file is written");
}

void CheckRow(const StateRow &row) {
    Require(row.level > -4 && row.level < 4, "a level is a remainder by 4");
    Require(memchr(row.stateName, '\0', sizeof row.stateName) != nullptr, "a state name ends");
    Require(memchr(row.stateAbbrev, '\0', sizeof row.stateAbbrev) != nullptr, "a short name ends");
}

void CheckTables() {
    Require(StateBlockUsed <= static_cast<uint32_t>(StateBlockSize), "the tables lie in the block");
    uint32_t count = 0;
    for (; const StateTable *table = StateTableAt(count); ++count) {
        const auto *end = reinterpret_cast<const uint8_t *>(table->rows() + table->rowCount);
        Require(end <= StateBlock + StateBlockUsed, "a table lies in the block");
        Require(table->rowCount >= 1 && table->rowCount <= 256, "a table has 1 to 256 rows");
        Require(memchr(table->tableName, '\0', sizeof table->tableName) != nullptr, "a name ends");
        for (uint32_t state = 0; state <= 256; ++state) CheckRow(StateRowOf(table, state));
    }
    Require(count <= MAX_STATE_TABLES, "no more tables than slots");
    for (uint32_t index = 0; index < 16; ++index) CheckRow(StateRowOf(StateTableOrDefault(index), index));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    atexit(RemoveIt);
    InitHeadless();
    InitSettings();
    InitPaths();
    InitReporting();
    Require(PatternStoreInit() == 1, "the store is made");
    snprintf(SimulatorIniPath, sizeof SimulatorIniPath, "%s", path.c_str());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    WriteFile(data, size);
    InitHeadless();
    LoadStateTables();
    CheckTables();
    return 0;
}
