// Gestures of Edit mode in the panes: rows of 20 pixels, with a pixel to the time unit.
#pragma once

#include "shell/mode_gestures.h"
#include "shell/view_gestures.h"
#include "unit/edit/editing_fixture.h"

class EditGestures : public EditingFixture {
protected:
    using State = GestureStateValue;
    static constexpr MouseKeys SHIFT = {true, false};
    static constexpr MouseKeys CONTROL = {false, true};

    void SetUp() override;

    // Starts a mode.
    static void mode(int command);
    // Actions in the log since the last row was shown.
    static int edits();

    // Shows a pattern as the last row; returns its id.
    static uint16_t show(uint16_t id);
    // A row of three levels of 100: low, high, low.
    static uint16_t threeLevels(const char *name = "A");
    // A pattern of 10 low and 30 high.
    static uint16_t part();
    // A row: 100 low, the part by `use`, 100 high.
    static uint16_t around(const Use &use);
    // The rows A to E.
    static void fiveRows();

    // The mouse in the waves, and in the name column.
    static void press(int32_t x, uint32_t row = 0, MouseKeys keys = {});
    static void move(int32_t x, uint32_t row = 0);
    static void release(int32_t x, uint32_t row = 0);
    static void clickAt(int32_t x, uint32_t row = 0, MouseKeys keys = {});
    static void drag(int32_t from, int32_t to, MouseKeys keys = {}, uint32_t row = 0);
    static void pressName(uint32_t row, MouseKeys keys = {});
    static void moveName(uint32_t row);
    static void releaseName(uint32_t row);

    // The rows' names, those that are highlighted with a star.
    static std::string rows();
    // The state, the kind, and the frame over the waves with the cursor.
    static std::string state();
};
