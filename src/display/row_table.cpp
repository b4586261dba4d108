#include "display/row_table.h"
#include "display/wave_view.h"
#include "store/pattern_store.h"
#include <cstdio>
#include <cstdlib>
#include <string_view>

WaveRow *WaveRows;

namespace {

// The insertion of a row moves the others down before it looks at the limit, so a full table moves its last
// row into this one.
constexpr uint32_t SPARE_ROWS = 1;

constexpr std::string_view PIN_TYPE_LETTERS = "TIOBG";

char RowLetter(const WaveRow &row, const Pattern *pattern) {
    if (!row.isWave()) return ' ';
    if (!pattern->hasProperties()) return 'P';
    uint32_t pinType = pattern->pinType();
    return pinType < PIN_TYPE_LETTERS.size() ? PIN_TYPE_LETTERS[pinType] : ' ';
}

void PutNameText(char *buffer, const char *name, char letter) {
    snprintf(buffer, ROW_TEXT_SIZE, "%.252s  %c", name, letter);
}

} // namespace

int AllocWaveRows() {
    FreeWaveRows();
    WaveRows = static_cast<WaveRow *>(calloc(MAX_ROWS + SPARE_ROWS, sizeof(WaveRow)));
    return WaveRows != nullptr;
}

void FreeWaveRows() {
    free(WaveRows);
    WaveRows = nullptr;
    WaveView.RowCount = 0;
}

Pattern *RowPattern(uint32_t row) {
    uint16_t id = WaveRows[row].PatternId;
    return PatternTable && PatternInUse(id) ? PatternFromId(id) : nullptr;
}

void RowNameText(uint32_t row, char *buffer) {
    const Pattern *pattern = RowPattern(row);
    buffer[0] = 0;
    if (pattern) PutNameText(buffer, pattern->name(), RowLetter(WaveRows[row], pattern));
}

void MeasuredNameText(const Pattern *pattern, char *buffer) {
    PutNameText(buffer, pattern ? pattern->name() : "", 'P');
}
