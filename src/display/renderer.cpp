#include "display/renderer.h"
#include "config/settings.h"
#include "display/bus_hexagon.h"
#include "display/primitives.h"
#include "display/row_table.h"
#include "display/viewport.h"
#include "store/state_table.h"
#include <algorithm>
#include <cstdio>

std::array<uint8_t, LEVEL_COLOURS> LevelColour;
RowDrawRecord RowDraw;
uint32_t RowsDrawn;

namespace {

constexpr int WHITE = 0;
constexpr int BLACK = 15;
constexpr int CENTRED = 5;
// A run shorter than this many pixels is drawn as a dense band.
constexpr int32_t RESOLUTION = 2;
// How far a named block reaches above and below the wave.
constexpr int32_t BLOCK_OVERHANG = 2;

// How a state is drawn.
enum Level : int32_t { LowLine = 0, HighLine = 1, Hatched = 2, Boxed = 3 };

bool IsLine(int32_t level) {
    return level == LowLine || level == HighLine;
}

// The horizontal extent of a segment, in pixels.
struct Extent {
    int32_t x0, x1;
};

void DrawDenseBand(TimeVal to) {
    SetDrawColour(ColorSettings[WaveName]);
    FillBlock({PixelOf(RowDraw.lastDrawn), RowDraw.yTop, PixelOf(to), RowDraw.yBottom});
}

// Draws the text in the middle of the extent if it fits between the block's sides.
void DrawBlockText(Extent extent, const char *text) {
    if (TextWidth(text) >= extent.x1 - extent.x0 - 1) return;
    DrawAnchoredText((extent.x0 + extent.x1) / 2, RowDraw.yMiddle, CENTRED, text);
}

void DrawVertical(int32_t x, int32_t top, int32_t bottom) {
    DrawPolyline(std::array<PixelPoint, 2>{{{x, top}, {x, bottom}}});
}

void DrawNamedBlock(Extent extent, const Pattern *pattern) {
    int32_t top = RowDraw.yTop - BLOCK_OVERHANG;
    int32_t bottom = RowDraw.yBottom + BLOCK_OVERHANG;
    SetDrawColour(ColorSettings[WaveName]);
    if (extent.x0 < extent.x1) {
        DrawOutline({extent.x0, top, extent.x1, bottom});
    } else {
        DrawVertical(extent.x0, top, bottom);
    }
    DrawBlockText(extent, pattern->name());
}

void DrawLevelLine(Extent extent, int32_t level) {
    int32_t y = level == LowLine ? RowDraw.yBottom : RowDraw.yTop;
    int32_t other = level == LowLine ? RowDraw.yTop : RowDraw.yBottom;
    bool edge = IsLine(RowDraw.lastLevel) && RowDraw.lastLevel != level;
    std::array<PixelPoint, 3> points = {{{extent.x1, y}, {extent.x0, y}, {extent.x0, other}}};
    DrawPolyline(std::span(points.data(), edge ? 3 : 2));
}

void DrawLevelBlock(Extent extent, const StateRow &state) {
    Block block = {extent.x0, RowDraw.yTop, extent.x1, RowDraw.yBottom};
    if (extent.x0 >= extent.x1) {
        DrawVertical(extent.x0, RowDraw.yTop, RowDraw.yBottom);
    } else if (state.level == Hatched) {
        FillBlock(block);
    } else {
        DrawOutline(block);
    }
    if (state.level != Boxed) return;
    char name[sizeof state.stateName + 1];
    snprintf(name, sizeof name, "%.*s", static_cast<int>(sizeof state.stateName), state.stateName);
    DrawBlockText(extent, name);
}

// A level that is none of the four draws nothing.
void DrawScalar(Extent extent, uint32_t value) {
    const StateRow &state = StateRowOf(RowDraw.stateTable, value);
    SetDrawColour(LevelColour[std::min<size_t>(state.colorIndex, LEVEL_COLOURS - 1)]);
    if (RowDraw.firstSegment) {
        RowDraw.lastLevel = state.level;
        RowDraw.firstSegment = false;
    }
    if (IsLine(state.level)) {
        DrawLevelLine(extent, state.level);
    } else if (state.level == Hatched || state.level == Boxed) {
        DrawLevelBlock(extent, state);
    }
    RowDraw.lastLevel = state.level;
}

void DrawBusValue(Extent extent, uint32_t value) {
    SetDrawColour(ColorSettings[BusWaveform]);
    HexagonShape shape =
        ShapeHexagon(extent.x0, extent.x1, RowDraw.yMiddle, RowDraw.halfHeight, WaveView.WavePaneWidth);
    DrawPolyline(std::span(shape.points.data(), shape.count));
    if (shape.room <= 0) return;
    char text[BUS_TEXT_SIZE] = "";
    FormatBusValue(value, RowDraw.pattern->width, text, sizeof text);
    if (TextWidth(text) > shape.room) return;
    DrawAnchoredText((shape.x0 + shape.x1) / 2, RowDraw.yMiddle, CENTRED, text);
}

void SetClip() {
    // So that a hexagon whose point lies left of the pane keeps its true start.
    TimeVal margin = RowDraw.pattern->isBus() ? PixelsToTime(RowDraw.halfHeight) : 0;
    TimeVal paneEnd = TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth));
    RowDraw.clipStart = TimeSub(WaveView.ViewLeft, margin);
    RowDraw.clipEnd = paneEnd < ~margin ? margin + paneEnd + 1 : TIME_FOREVER;
    RowDraw.lastDrawn = RowDraw.clipStart;
}

void EraseRow(uint32_t row) {
    int32_t top = static_cast<int32_t>(row) * WaveView.RowHeight;
    int32_t bottom = top + WaveView.RowHeight - 1;
    EraseBlock({0, top, WaveView.WavePaneWidth - 1, bottom});
    if (!Settings.ShowGuidelines) return;
    SetDrawColour(DOTTED + (ColorSettings[Background] == BLACK ? WHITE : BLACK));
    DrawPolyline(std::array<PixelPoint, 2>{{{0, bottom}, {ScreenWidth() - 1, bottom}}});
}

} // namespace

void BuildLevelColour() {
    LevelColour[0] = 0;
    constexpr std::array<ColorEntry, LEVEL_COLOURS - 1> entries = {UnknownWave, HighZWave, ResistiveWave,
                                                                   SignalWave, SupplyWave};
    for (size_t i = 0; i < entries.size(); i++) {
        LevelColour[i + 1] = static_cast<uint8_t>(ColorSettings[entries[i]]);
    }
}

uint32_t DisplayWalkFlags() {
    uint32_t flags = 0;
    if (Settings.ShowPatternNames) flags |= WalkNames;
    if (Settings.ShowPatternWaveforms) flags |= WalkWaves;
    if (Settings.ShowSyncActivity) flags |= WalkSync;
    return flags;
}

void PrepareRowDraw(const Pattern *pattern, uint32_t row) {
    RowDraw.pattern = pattern;
    RowDraw.stateTable = StateTableOrDefault(pattern->stateTable());
    RowDraw.yBottom = static_cast<int32_t>(row + 1) * WaveView.RowHeight - Settings.WaveGap - 1;
    RowDraw.halfHeight = WaveView.WaveHeight / 2;
    RowDraw.yMiddle = RowDraw.yBottom - RowDraw.halfHeight;
    RowDraw.yTop = RowDraw.yBottom - 2 * RowDraw.halfHeight;
    RowDraw.firstSegment = true;
    SetClip();
    EraseRow(row);
}

void DrawRowWaves(uint32_t row) {
    if (row < WaveView.TopRow || row >= WaveView.TopRow + VisibleRows() + 1 || row >= WaveView.RowCount)
        return;
    Pattern *pattern = RowPattern(row);
    if (!pattern) return;
    RowsDrawn++;
    SelectPicture(Pane::Wave);
    TimeVal end = TimeMin(TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth)), WaveView.SpanEnd);
    PrepareRowDraw(pattern, row);
    WalkPattern(DrawSegment, pattern, WaveView.ViewLeft, end, DisplayWalkFlags(), PixelsToTime(RESOLUTION));
}

int DrawSegment(const WalkSegment *segment) {
    TimeVal start = std::max(segment->start, RowDraw.clipStart);
    // What goes on forever ends with the axis.
    TimeVal limit = std::min(RowDraw.clipEnd, WaveView.SpanEnd);
    TimeVal end = std::max(std::min(segment->end, limit), start);
    if (segment->segFlags & SegCoarse) {
        // Too fine to show: a band follows with the next segment that is not, or at the end.
        if ((segment->segFlags & SegLast) && RowDraw.lastDrawn < end) DrawDenseBand(end);
        return 1;
    }
    if (RowDraw.lastDrawn < start) DrawDenseBand(start);
    RowDraw.lastDrawn = end;
    Extent extent = {PixelOf(start), PixelOf(end)};
    if (segment->segFlags & SegBlock) {
        DrawNamedBlock(extent, segment->pattern);
    } else if (RowDraw.pattern->isBus()) {
        DrawBusValue(extent, segment->value);
    } else {
        DrawScalar(extent, segment->value);
    }
    return 1;
}
