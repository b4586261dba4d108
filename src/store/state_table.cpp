#include "store/state_table.h"

#include "config/paths.h"
#include "platform/text_file.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

uint8_t *StateBlock = nullptr;
int32_t StateBlockSize = 0;
uint32_t StateBlockUsed = 0;

namespace {

constexpr uint32_t TABLE_HEAD = sizeof(StateTable);
constexpr uint32_t ROW_SIZE = sizeof(StateRow);
// Added to a block that has to grow, so that the next tables fit.
constexpr uint32_t BLOCK_RESERVE = 2400;
constexpr int TABLE_NAME_LENGTH = 7;
constexpr uint32_t MAX_ROWS_IN_TABLE = 256;
// A slot of the block's head holds 16 bits.
constexpr uint32_t MAX_TABLE_OFFSET = 65535;
constexpr int LINE_SIZE = 255;
constexpr int MAX_FIELDS = 7;
constexpr int MIN_FIELDS = 6;

const StateRow builtInRows[4] = {
    {0, 4, '0', "Low", "0"},
    {1, 4, '1', "High", "1"},
    {2, 1, 'X', "Unknown", "X"},
    {1, 2, 'Z', "High-Z", "Z"},
};
const StateRow undefinedRow = {2, 1, '?', "??", "??"};

// What stands for "Default" when a file has taken every table away.
struct BuiltInTable {
    StateTable head = {"Default", 4};
    uint8_t rows[sizeof builtInRows];
} builtInTable;

// The table that is being read, before its number of rows is known.
struct ScratchTable {
    char name[TABLE_NAME_LENGTH + 1] = "";
    bool named = false;
    uint32_t rowCount = 0;
    StateRow rows[MAX_ROWS_IN_TABLE];
};

uint16_t *Slots() {
    return reinterpret_cast<uint16_t *>(StateBlock);
}

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}
bool SeparatesFields(char c) {
    return IsBlank(c) || c == ',' || c == '\'' || c == '=';
}

// The decimal number that `text` begins with, held within 32 bits; 0 for none.
int32_t ReadNumber(const char *text) {
    while (*text != '\0' && IsBlank(*text)) ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    int64_t number = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        number = number * 10 + (*text - '0');
        if (number > INT32_MAX) number = INT32_MAX;
    }
    return static_cast<int32_t>(negative ? -number : number);
}

// Cuts `line` into fields in place; a quoted field loses its quotes. Returns their number.
int CutFields(char *line, char *fields[MAX_FIELDS]) {
    int count = 0;
    while (count < MAX_FIELDS) {
        while (*line != '\0' && SeparatesFields(*line)) ++line;
        if (*line == '\0') break;
        if (*line == '"') {
            fields[count++] = ++line;
            while (*line != '\0' && *line != '"') ++line;
        } else {
            fields[count++] = line;
            while (*line != '\0' && !SeparatesFields(*line)) ++line;
        }
        if (*line == '\0') break;
        *line++ = '\0';
    }
    return count;
}

void FlushScratch(ScratchTable &scratch) {
    if (scratch.rowCount == 0) return;
    if (StateTable *table = AllocStateTable(scratch.rowCount)) {
        memcpy(table->tableName, scratch.name, sizeof table->tableName);
        table->rowCount = static_cast<uint16_t>(scratch.rowCount);
        memcpy(table->rows(), scratch.rows, scratch.rowCount * ROW_SIZE);
    }
    scratch.rowCount = 0;
}

// A line that begins with a letter names a new table, which replaces one of the same name.
void BeginTable(ScratchTable &scratch, const char *line) {
    FlushScratch(scratch);
    size_t length = 0;
    while (length < TABLE_NAME_LENGTH && line[length] != '\0' && !IsBlank(line[length])) ++length;
    memset(scratch.name, 0, sizeof scratch.name);
    memcpy(scratch.name, line, length);
    scratch.named = true;
    int existing = FindStateTable(scratch.name);
    if (existing >= 0) DeleteStateTable(static_cast<uint32_t>(existing));
    for (StateRow &row : scratch.rows) row = undefinedRow;
}

void ReadRow(ScratchTable &scratch, char *line) {
    char *fields[MAX_FIELDS];
    if (!scratch.named || CutFields(line, fields) < MIN_FIELDS) return;
    int32_t state = ReadNumber(fields[0]);
    if (static_cast<uint32_t>(state) >= MAX_ROWS_IN_TABLE) return;
    StateRow &row = scratch.rows[state];
    row = {};
    // The remainder keeps the number's sign.
    row.level = static_cast<int8_t>(ReadNumber(fields[1]) % 4);
    row.colorIndex = static_cast<uint8_t>(ReadNumber(fields[2]));
    row.stateChar = fields[3][0];
    snprintf(row.stateName, sizeof row.stateName, "%s", fields[4]);
    snprintf(row.stateAbbrev, sizeof row.stateAbbrev, "%s", fields[5]);
    if (scratch.rowCount <= static_cast<uint32_t>(state)) scratch.rowCount = static_cast<uint32_t>(state) + 1;
}

bool BeginsTableSection(const char *line) {
    constexpr std::string_view section = "[StateTable";
    return strlen(line) >= section.size() && EqualIgnoringCase({line, section.size()}, section);
}

void ReadStateTableFile(TextReader &file) {
    auto scratch = std::make_unique<ScratchTable>();
    bool inSection = false;
    char buffer[LINE_SIZE];
    while (file.readLine(buffer, sizeof buffer) >= 0) {
        char *line = buffer;
        if (*line == '[') {
            inSection = BeginsTableSection(line);
            continue;
        }
        if (*line == ';' || !inSection) continue;
        while (*line != '\0' && IsBlank(*line)) ++line;
        if (IsLetter(*line)) {
            BeginTable(*scratch, line);
        } else {
            ReadRow(*scratch, line);
        }
    }
    FlushScratch(*scratch);
}

} // namespace

int StateBlockInit() {
    memcpy(builtInTable.rows, builtInRows, sizeof builtInRows);
    StateBlockSize = STATE_BLOCK_FIRST_SIZE;
    StateBlockUsed = STATE_BLOCK_HEAD;
    StateBlock = static_cast<uint8_t *>(ResizeBlock(nullptr, STATE_BLOCK_FIRST_SIZE));
    if (!StateBlock) return 0;
    ResetStateTables();
    return 1;
}

void StateBlockFree() {
    free(StateBlock);
    StateBlock = nullptr;
    StateBlockSize = 0;
    StateBlockUsed = 0;
}

void ResetStateTables() {
    memset(StateBlock, 0, STATE_BLOCK_HEAD);
    StateBlockUsed = STATE_BLOCK_HEAD;
}

int LoadStateTables() {
    ResetStateTables();
    if (StateTable *table = AllocStateTable(4)) { // never: an empty block has room for it
        memcpy(table->tableName, builtInTable.head.tableName, sizeof table->tableName);
        table->rowCount = 4;
        memcpy(table->rows(), builtInRows, sizeof builtInRows);
    }
    if (SimulatorIniPath[0] == '\0') return 1;
    TextReader file(SimulatorIniPath);
    if (file.isOpen()) ReadStateTableFile(file);
    return 1;
}

StateTable *AllocStateTable(uint32_t rowCount) {
    uint32_t slot = 0;
    while (slot < MAX_STATE_TABLES && Slots()[slot] != 0) ++slot;
    // A table replaced leaves its space behind, so that the offsets can run out before the slots do.
    if (slot == MAX_STATE_TABLES || StateBlockUsed > MAX_TABLE_OFFSET) {
        UserError("Maximum number of state tables exceeded");
        return nullptr;
    }
    uint32_t need = rowCount * ROW_SIZE + TABLE_HEAD;
    if (static_cast<uint32_t>(StateBlockSize) < StateBlockUsed + need) {
        uint32_t size = StateBlockUsed + need + BLOCK_RESERVE;
        void *block = ResizeBlock(StateBlock, size);
        if (!block) {
            ProgramError("Unable to reallocate state table memory");
            return nullptr;
        }
        StateBlock = static_cast<uint8_t *>(block);
        StateBlockSize = static_cast<int32_t>(size);
    }
    Slots()[slot] = static_cast<uint16_t>(StateBlockUsed);
    auto *table = reinterpret_cast<StateTable *>(StateBlock + StateBlockUsed);
    memset(table, 0, need);
    StateBlockUsed += need;
    return table;
}

void DeleteStateTable(uint32_t index) {
    if (index >= MAX_STATE_TABLES) return;
    uint16_t *slots = Slots();
    for (uint32_t i = index; i + 1 < MAX_STATE_TABLES; ++i) slots[i] = slots[i + 1];
    // The entry behind the last slot is cleared and the last slot keeps its value; this is meant. With fewer
    // than 20 tables the last slot is 0 anyway.
    slots[MAX_STATE_TABLES] = 0;
}

int FindStateTable(char *name) {
    if (strlen(name) > TABLE_NAME_LENGTH) name[TABLE_NAME_LENGTH] = '\0';
    for (uint32_t index = 0; StateTable *table = StateTableAt(index); ++index) {
        if (EqualIgnoringCase(table->tableName, name)) return static_cast<int>(index);
    }
    return -1;
}

StateTable *StateTableAt(uint32_t index) {
    if (!StateBlock || index >= MAX_STATE_TABLES || Slots()[index] == 0) return nullptr;
    return reinterpret_cast<StateTable *>(StateBlock + Slots()[index]);
}

StateTable *StateTableOrDefault(uint32_t index) {
    if (StateTable *table = StateTableAt(index)) return table;
    if (StateTable *table = StateTableAt(0)) return table;
    return &builtInTable.head;
}

const StateRow &StateRowOf(const StateTable *table, uint32_t state) {
    if (table->rowCount == 0) return undefinedRow;
    uint32_t last = table->rowCount - 1u;
    return table->rows()[state < last ? state : last];
}

int StateLevel(uint32_t tableIndex, uint32_t state) {
    StateTable *table = StateTableAt(tableIndex);
    return table ? StateRowOf(table, state).level : 0;
}
