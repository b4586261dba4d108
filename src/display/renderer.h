// Draws one row of the wave pane: turns the walker's segments into lines, blocks, hexagons, labels and bands.
#pragma once

#include "edit/walker.h"
#include <array>

struct StateTable;

// Colour indices by the `colorIndex` of a state; built once at start-up.
constexpr size_t LEVEL_COLOURS = 6;
extern std::array<uint8_t, LEVEL_COLOURS> LevelColour;
void BuildLevelColour();

// The drawing state of the row in progress. The y values are list coordinates in pixels.
struct RowDrawRecord {
    const Pattern *pattern;
    const StateTable *stateTable;
    int32_t yBottom, yMiddle, yTop; // low level, middle and high level
    int32_t halfHeight;
    TimeVal clipStart, clipEnd; // limits of what is drawn
    TimeVal lastDrawn;          // how far the row is drawn so far
    int32_t lastLevel;          // `level` of the previous scalar segment
    bool firstSegment;          // until the first scalar segment has been seen
};
// Written by PrepareRowDraw and DrawSegment.
extern RowDrawRecord RowDraw;

// Counts the rows drawn on the pane: who draws over them sees by it that they were drawn again. Written by
// DrawRowWaves.
extern uint32_t RowsDrawn;

// The whole row; nothing for a row that is not in the pane.
void DrawRowWaves(uint32_t row);
// Fills the drawing state of the row and erases it.
void PrepareRowDraw(const Pattern *pattern, uint32_t row);
// The walker's callback; always answers 1. PrepareRowDraw has run before.
int DrawSegment(const WalkSegment *segment);
// The walk's options by the settings.
uint32_t DisplayWalkFlags();
