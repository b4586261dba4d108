// The table of rows: which pattern each row shows, and its small display state.
#pragma once

#include "store/pattern.h"

constexpr uint32_t MAX_ROWS = 256;
constexpr uint32_t MAX_NETS = 32;

struct WaveRow {
    uint32_t NetHandles[MAX_NETS]; // of the hierarchy tool, one for each single name; 0 for none
    uint32_t Flags;
    uint16_t PatternId;

    bool isWave() const { return (Flags & 1) != 0; }
    bool highlighted() const { return (Flags & 2) != 0; }
    uint32_t netCount() const { return (Flags >> 2) & 63; }
    void setIsWave(bool on) { Flags = (Flags & ~1u) | (on ? 1u : 0u); }
    void setHighlighted(bool on) { Flags = (Flags & ~2u) | (on ? 2u : 0u); }
    void setNetCount(uint32_t count) { Flags = (Flags & ~(63u << 2)) | ((count & 63) << 2); }
};

// The table; `WaveView.RowCount` rows are in use. Null until it is allocated at start-up. Written here and by
// the commands on rows.
extern WaveRow *WaveRows;

// Allocate the table, zeroed, and free it. 0 without memory.
int AllocWaveRows();
void FreeWaveRows();

// The pattern that a row below `RowCount` shows; null if its id is not in use.
Pattern *RowPattern(uint32_t row);

// The name column's text of a row, to `buffer` of ROW_TEXT_SIZE bytes: the name, two blanks and the letter of
// the pin type, or a "P" for a pattern without one.
constexpr int ROW_TEXT_SIZE = 256;
void RowNameText(uint32_t row, char *buffer);
// The text by which a pattern's name is measured, to `buffer` of ROW_TEXT_SIZE bytes. It does not depend on
// the letter.
void MeasuredNameText(const Pattern *pattern, char *buffer);
