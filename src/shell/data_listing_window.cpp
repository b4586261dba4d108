#include "shell/data_listing_window.h"

#include "display/data_listing.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "store/pattern_store.h"

namespace {

// The pattern of the selected row; null unless exactly one row is selected.
const Pattern *ListedPattern() {
    uint32_t row = WaveView.SelectRow;
    if (!WaveRows || row >= WaveView.RowCount || row != WaveView.SelectRowLast) return nullptr;
    return RowPattern(row);
}

bool TakeLine(const char *line, void *) {
    return AddDataListingLine(line);
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
    RowSelectionHook = nullptr;
    DestroyDataListing();
}

void FillDataListing() {
    if (!DataListingIsOpen()) return;
    ClearDataListing();
    if (const Pattern *pattern = ListedPattern()) ListPatternData(pattern, TakeLine, nullptr);
    RedrawDataListing();
}

void ChooseDataListingLine() {
    int held = LogHoldOpen(1);
    LogHoldOpen(held);
}
