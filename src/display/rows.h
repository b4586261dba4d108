// The display list: which patterns are shown as rows, in which order, and which rows are highlighted.
#pragma once

#include "display/row_metrics.h"
#include "display/row_table.h"
#include <string>

// Inserts a row for the pattern before `position`; used when a logged removal is undone.
void AddWaveRow(uint16_t patternId, uint32_t position);
// Appends a row for the pattern of this name unless it has one, and selects it. Null if there is none.
Pattern *ShowWaveByName(const char *name);
// Appends a row for the pattern while a document is being read, where there is room for one more.
void ShowNewRow(uint16_t patternId);
// Appends copies of the highlighted rows, which take the highlight over.
void DuplicateHighlightedRows();
void HideRow(uint32_t row);
void HideHighlightedRows();
// Recomputes NameTextWidth, in pixels, and returns it; does nothing but that while a document is being read.
int32_t MeasureNameWidths();
// Asks the hierarchy link for the handles of all rows, behind those that they have.
void RebindNetHandles();
// Reads the wave list beside the document; `path` (MAX_PATH_SIZE) ends in ".kel" afterwards. Empty, or why
// the disk did not give all of it.
std::string ReadWaveList(char *path);

// Makes `row` the selected row and highlights it; with `clearOthers` the others lose their highlight.
void SelectRowOnly(uint32_t row, bool clearOthers);
// Highlights `row`. With `exclusive` the others lose their highlight and `row` becomes the selected row; a
// `row` at or beyond `RowCount` then leaves none.
void SelectRowHighlight(uint32_t row, bool exclusive);

// Called after each change of the selected rows; null while nobody follows it. Installed by who does.
extern void (*RowSelectionHook)();
// Calls it, for a change that is made elsewhere.
void RowSelectionChanged();

// The hierarchy link's display of one net, installed by it; null while there is no link.
extern uint32_t (*HierDisplayNetHook)(const char *name);
