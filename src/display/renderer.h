// Draws one row of the wave pane: turns the walker's segments into lines, blocks, hexagons, labels and bands.
#pragma once

#include "edit/walker.h"
#include <array>

// Colour indices by the `colorIndex` of a state; built once at start-up.
extern std::array<uint8_t, 6> LevelColour;
void BuildLevelColour();

// The whole row; nothing for a row that is not in the pane.
void DrawRowWaves(uint32_t row);
// Fills the drawing state of the row and erases it.
void PrepareRowDraw(const Pattern *pattern, uint32_t row);
// The walker's callback; always answers 1.
int DrawSegment(const WalkSegment *segment);
// The walk's options by the settings.
uint32_t DisplayWalkFlags();
