// The choice of the ruler's ticks and their labels.
#pragma once

#include "store/time_value.h"

// The steps between ticks, in time units.
struct RulerSteps {
    TimeVal minor;
    TimeVal major; // of the longer ticks
    TimeVal label; // of those with a label
};

// The smallest steps of 1, 2, 5, 10, 20, ... whose ticks stand apart at the present scale.
RulerSteps ChooseRulerSteps();

struct RulerTick {
    int32_t x; // pixels from the left edge of the wave pane
    bool major;
    const char *label; // good during the visit only; null for a tick without one
};

// Calls `visit` for each tick of the present view, from left to right; `context` is handed through.
using RulerTickVisit = void (*)(const RulerTick &tick, void *context);
void ForEachRulerTick(const RulerSteps &steps, RulerTickVisit visit, void *context);

// The label of a tick: the time without its unit, and without zeros at the end of its decimals. `label` has
// TIME_TEXT_SIZE bytes.
void FormatRulerLabel(TimeVal t, char *label);
