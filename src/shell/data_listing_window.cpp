#include "shell/data_listing_window.h"

#include "display/data_listing.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "store/pattern_store.h"

namespace {

// A longer listing is cut: nobody reads it, and filling the list would keep the user waiting.
constexpr uint32_t MOST_LINES = 20000;

// The pattern of the selected row; null unless exactly one row is selected.
const Pattern *ListedPattern() {
    uint32_t row = WaveView.SelectRow;
    if (!WaveRows || row >= WaveView.RowCount || row != WaveView.SelectRowLast) return nullptr;
    return RowPattern(row);
}

bool TakeLine(const char *line, void *taken) {
    auto &lines = *static_cast<uint32_t *>(taken);
    return lines++ < MOST_LINES && AddDataListingLine(line);
}

} // namespace

void OpenDataListing() {
    ShowDataListing();
    RowSelectionHook = FillDataListing;
    int held = LogHoldOpen(1);
    FillDataListing();
    LogHoldOpen(held);
}

void CloseDataListing() {
    DestroyDataListing();
}

void FillDataListing() {
    if (!DataListingIsOpen()) return;
    ClearDataListing();
    uint32_t lines = 0;
    if (const Pattern *pattern = ListedPattern()) ListPatternData(pattern, TakeLine, &lines);
    RedrawDataListing();
}

void ChooseDataListingLine() {
    int held = LogHoldOpen(1);
    LogHoldOpen(held);
}
