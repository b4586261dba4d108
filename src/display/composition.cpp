#include "display/composition.h"
#include "config/settings.h"
#include "display/overlay.h"
#include "display/primitives.h"
#include "display/renderer.h"
#include "display/row_table.h"
#include "display/ruler.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "store/pattern_store.h"
#include <algorithm>
#include <array>
#include <span>
#include <vector>

PaintRangeRecord PaintRange;

namespace {

// Anchors of texts: the point lies under the text's middle, or at its right end.
constexpr int ABOVE = 2;
constexpr int RIGHT_END = 6;

// From the name panel's client width to where the wave pane begins, in the ruler's pixels: the frames of the
// panels and the grip between them.
constexpr int32_t BETWEEN_NAMES_AND_WAVES = 5;
constexpr int32_t RULER_REST = 2;

// Where the wave pane begins, in the ruler's pixels.
struct RulerPlace {
    int32_t origin;
};

void DrawRulerTick(const RulerTick &tick, void *place) {
    int32_t x = tick.x + static_cast<RulerPlace *>(place)->origin;
    int32_t bottom = WaveView.RulerHeight;
    int32_t top = bottom - WaveView.FontHeight / 2;
    if (tick.major) {
        // A label stands directly above a tick, so only one without a label gets the last two pixels.
        top = bottom - WaveView.FontHeight + 2;
        DrawPolyline(std::array<PixelPoint, 2>{{{x, bottom}, {x, top}}});
        top -= 2;
    }
    if (tick.label) {
        DrawAnchoredText(x, top, ABOVE, tick.label);
    } else {
        DrawPolyline(std::array<PixelPoint, 2>{{{x, bottom}, {x, top}}});
    }
}

int32_t RowTop(uint32_t row) {
    return static_cast<int32_t>(row) * WaveView.RowHeight;
}

void PaintRows(Pane pane, void (*drawRow)(uint32_t)) {
    SelectPicture(pane);
    PixelRect clip = PaneClipBox(pane);
    if (clip.left >= clip.right || clip.top >= clip.bottom || WaveView.RowHeight <= 0) return;
    uint32_t rowHeight = static_cast<uint32_t>(WaveView.RowHeight);
    uint32_t top = WaveView.TopPixel + static_cast<uint32_t>(std::max(clip.top, 0));
    uint32_t bottom = WaveView.TopPixel + static_cast<uint32_t>(std::max(clip.bottom, 0));
    PaintRange.paintFirstRow = top / rowHeight;
    PaintRange.paintLastRow = std::min(bottom / rowHeight + 1, WaveView.RowCount);
    for (uint32_t row = PaintRange.paintFirstRow; row < PaintRange.paintLastRow; row++) drawRow(row);
}

// Clears the panel from row `first` down, and draws the rows up to `last`.
void RepaintRows(Pane pane, int32_t left, int32_t right, uint32_t first, uint32_t last,
                 void (*drawRow)(uint32_t)) {
    SelectPicture(pane);
    int32_t bottom = static_cast<int32_t>(WaveView.TopPixel) + WaveView.WavePaneHeight;
    EraseBlock({left, RowTop(first), right, bottom});
    for (uint32_t row = first; row < last; row++) drawRow(row);
}

bool RefersToChanged(const Pattern *pattern) {
    for (const PatternItem &item : std::span(pattern->items(), pattern->itemCount)) {
        if (item.isReference() && PatternInUse(item.patternId()) &&
            PatternFromId(item.patternId())->changed()) {
            return true;
        }
    }
    return false;
}

bool AnyPatternChanged() {
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (PatternInUse(id) && PatternFromId(id)->changed()) return true;
    }
    return false;
}

// Whoever uses a changed pattern, however deep inside, takes the flag over.
void SpreadChanged() {
    std::vector<Pattern *> users;
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        Pattern *pattern = PatternFromId(id);
        if (!pattern->changed() && ReferenceItems[pattern->id] > 0) users.push_back(pattern);
    }
    size_t left;
    do {
        left = users.size();
        std::erase_if(users, [](Pattern *user) {
            bool spread = RefersToChanged(user);
            if (spread) user->setChanged(true);
            return spread;
        });
    } while (users.size() != left);
}

// Draws the row and those behind it that show the same pattern.
void DrawRowsOf(uint16_t id, uint32_t first) {
    for (uint32_t row = first; row < WaveView.RowCount; row++) {
        if (WaveRows[row].PatternId == id) DrawRowWaves(row);
    }
}

void ClearAllChanged() {
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (PatternInUse(id)) PatternFromId(id)->setChanged(false);
    }
}

} // namespace

void InitComposition() {
    PaintRange = {};
}

void PaintPane(Pane pane) {
    int held = LogHoldOpen(1);
    if (pane == Pane::Ruler) DrawRuler();
    if (pane == Pane::Name) PaintRows(Pane::Name, DrawRowName);
    if (pane == Pane::Wave) PaintRows(Pane::Wave, DrawRowWaves);
    LogHoldOpen(held);
}

void PaintBegins(Pane pane) {
    if (pane == Pane::Wave) DrawOverlay(false);
    if (pane == Pane::Ruler) DrawRulerCursor(false);
}

void PaintEnds(Pane pane) {
    if (pane == Pane::Ruler) DrawRulerCursor(true);
    if (pane == Pane::Wave) DrawOverlay(true);
}

void EraseBegins(Pane pane) {
    if (pane == Pane::Wave) DrawOverlay(false);
    DrawRulerCursor(false);
}

void ScrollPane(Pane pane, ScrollBar bar, ScrollCode code, int32_t thumb) {
    DrawRulerCursor(false);
    DrawOverlay(false);
    ScrollMessage(pane, bar, code, thumb);
    // A scroll that moved something has painted by now; one that did not leaves the overlay to be put on
    // here.
    DrawOverlay(true);
    DrawRulerCursor(true);
}

void DrawRuler() {
    DrawRulerCursor(false);
    SelectPicture(Pane::Ruler);
    EraseBlock(
        {0, 0, WaveView.NameColumnWidth + WaveView.WavePaneWidth + RULER_REST, WaveView.RulerHeight - 1});
    SetDrawColour(ColorSettings[WaveName]);
    int32_t nameWidth, nameHeight;
    PaneClientSize(Pane::Name, nameWidth, nameHeight);
    RulerPlace place = {nameWidth + BETWEEN_NAMES_AND_WAVES};
    RulerSteps steps = ChooseRulerSteps();
    WaveView.TickMinor = steps.minor;
    ForEachRulerTick(steps, DrawRulerTick, &place);
}

void DrawRowName(uint32_t row) {
    SelectPicture(Pane::Name);
    if (row < WaveView.TopRow || row > WaveView.TopRow + VisibleRows()) return;
    int32_t left = NameShift();
    Block field = {left, RowTop(row) + 2, left + WaveView.NameColumnWidth, RowTop(row + 1)};
    EraseBlock(field);
    if (row >= WaveView.RowCount) return;
    if (WaveRows[row].highlighted()) {
        SetDrawColour(ColorSettings[HighlightWave]);
        FillBlock(field);
    }
    SetDrawColour(ColorSettings[WaveName]);
    char text[ROW_TEXT_SIZE];
    RowNameText(row, text);
    DrawAnchoredText(NameFieldWidth() - WaveView.FontCharWidth / 2,
                     static_cast<int32_t>(2 * row + 1) * WaveView.RowHeight / 2, RIGHT_END, text);
}

void RepaintRowsFrom(uint32_t row) {
    if (!PanesExist() || WaveView.RowHeight <= 0) return;
    uint32_t first = std::max(std::min(row, WaveView.RowCount), WaveView.TopRow);
    int32_t bottom = static_cast<int32_t>(WaveView.TopPixel) + WaveView.WavePaneHeight;
    uint32_t last = std::min(static_cast<uint32_t>((bottom - 1) / WaveView.RowHeight + 1), WaveView.RowCount);
    int32_t left = NameShift();
    DrawOverlay(false);
    RepaintRows(Pane::Name, left, left + WaveView.NameColumnWidth, first, last, DrawRowName);
    RepaintRows(Pane::Wave, 0, WaveView.WavePaneWidth, first, last, DrawRowWaves);
    DrawOverlay(true);
}

void RepaintChanged(bool forceOverlay) {
    if (!DisplayOpen || !PatternTable) return;
    bool repainted = forceOverlay;
    if (forceOverlay) DrawOverlay(false);
    if (AnyPatternChanged()) SpreadChanged();
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        Pattern *pattern = RowPattern(row);
        if (!pattern || !pattern->changed()) continue;
        if (!repainted) DrawOverlay(false);
        repainted = true;
        DrawRowsOf(pattern->id, row);
        pattern->setChanged(false);
    }
    ClearAllChanged();
    if (repainted) DrawOverlay(true);
}

void RepaintAllRows() {
    DrawOverlay(false);
    for (uint32_t row = 0; row < WaveView.RowCount; row++) DrawRowWaves(row);
    DrawOverlay(true);
}

void RepaintAll() {
    int held = LogHoldOpen(1);
    bool marked = RulerCursor.on;
    DrawRuler();
    DrawRulerCursor(marked);
    RepaintRowsFrom(0);
    LogHoldOpen(held);
}

void InvalidateAllPanes() {
    InvalidatePane(Pane::Ruler);
    InvalidatePane(Pane::Name);
    InvalidatePane(Pane::Wave);
}
