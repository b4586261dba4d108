// State tables: what each state number of a one-bit pattern means, how it is drawn and how it is named.
#pragma once

#include <cstdint>

constexpr uint32_t MAX_STATE_TABLES = 20;
constexpr uint32_t STATE_BLOCK_FIRST_SIZE = 2912;
constexpr uint32_t STATE_BLOCK_HEAD = 512;

struct StateRow {
    int8_t level;        // 0 low line, 1 high line, 2 hatched box, 3 box with the name in it
    uint8_t colorIndex;  // index into LevelColour
    char stateChar;      // shown in the data listing
    char stateName[17];  // shown to the user
    char stateAbbrev[4]; // kept, not shown
};
static_assert(sizeof(StateRow) == 24);

struct StateTable {
    char tableName[8];
    uint16_t rowCount;
    // `rowCount` rows follow.
    StateRow *rows() { return reinterpret_cast<StateRow *>(reinterpret_cast<char *>(this) + 10); }
    const StateRow *rows() const {
        return reinterpret_cast<const StateRow *>(reinterpret_cast<const char *>(this) + 10);
    }
};
static_assert(sizeof(StateTable) == 10);

// The block of all tables: a head of 16-bit offsets, then the tables. Written by this file alone.
extern uint8_t *StateBlock;
extern int32_t StateBlockSize;  // bytes allocated
extern uint32_t StateBlockUsed; // bytes in use

// Makes an empty block. Returns 1, or 0 without memory.
int StateBlockInit();
void StateBlockFree();

// Rebuilds the block: the built-in table "Default", then those of the simulator's file. Always returns 1.
int LoadStateTables();
// Takes the next free slot and space for `rowCount` rows; the contents are the caller's to fill. Returns null
// when all slots are taken, when the offset would not fit the slot's 16 bits, or without memory.
StateTable *AllocStateTable(uint32_t rowCount);
// Closes up the slot list over the table of this index.
void DeleteStateTable(uint32_t index);
void ResetStateTables();
// The index of the table of that name, ignoring case, or -1. Cuts `name` itself to 7 characters.
int FindStateTable(char *name);
// The `level` of a state; beyond the table's end that of the last row. 0 for a table that does not exist.
int StateLevel(uint32_t tableIndex, uint32_t state);

// The table in a slot, or null.
StateTable *StateTableAt(uint32_t index);
// The table of a pattern's `stateTable` index; "Default" if there is no such table.
StateTable *StateTableOrDefault(uint32_t index);
// The row of a state, the last one for a state beyond the table.
const StateRow &StateRowOf(const StateTable *table, uint32_t state);
