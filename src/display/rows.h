// The display list: which patterns are shown as rows, in which order, and which rows are highlighted.
#pragma once

#include "store/pattern.h"
#include <array>

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

// Inserts a row for the pattern before `position`; used when a logged removal is undone.
void AddWaveRow(uint16_t patternId, uint32_t position);
// Appends a row for the pattern of this name unless it has one, and selects it. Null if there is none.
Pattern *ShowWaveByName(const char *name);
void DuplicateHighlightedRows();
void HideRow(uint32_t row);
void HideHighlightedRows();
// Recomputes NameTextWidth, in pixels, and returns it; does nothing but that while a document is being read.
int32_t MeasureNameWidths();
// Asks the hierarchy link for the handles of all rows.
void RebindNetHandles();
// Reads the wave list beside the document; `path` (MAX_PATH_SIZE) ends in ".kel" afterwards.
void ReadWaveList(char *path);

// The pixel sizes that follow from the font and the settings; they stay while the program runs.
void InitWaveMetrics();

// The name column's text of a row, and its size.
constexpr int ROW_TEXT_SIZE = 256;
void RowNameText(uint32_t row, char *buffer);

// The selection of rows, as the row list needs it: the one row, and whether the others lose theirs.
void SelectRowOnly(uint32_t row, bool clearOthers);
void SelectRowHighlight(uint32_t row, bool on);

// The hierarchy link's display of one net, installed by it; null while there is no link.
extern uint32_t (*HierDisplayNetHook)(const char *name);
