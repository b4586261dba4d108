// Selections in a store of its own. One pixel is one time unit, so that an edge is hit from 3 units away.
#pragma once

#include "edit/selection.h"
#include "unit/support/fresh_store.h"

class Selection : public FreshStore {
protected:
    static constexpr int CLICK = 1;
    static constexpr int DRAG = 0;
    static constexpr int DRILL = 1;
    static constexpr int SHALLOW = 0;

    // Selects, and tells what is selected as `selected` does.
    static std::string select(uint16_t id, TimeVal t1, TimeVal t2, int drill = DRILL, int pick = DRAG);
    static std::string click(uint16_t id, TimeVal t, int drill = DRILL);
    // The kind, and for each frame where it lies, in which pattern (by its name, "-" without one) and item,
    // and in which repetition if that is not the first.
    static std::string selected();
    // The pattern's items: a data item as VALUE:DURATION, a reference as "ref".
    static std::string items(uint16_t id);

    // A node of three levels of 100: 0 to 100 low, to 200 high, to 300 low.
    static uint16_t threeLevels();
    // A pattern of 10 low and 30 high.
    static uint16_t part(const char *name = "$P");
    // A node: 100 low, the part by `use`, 100 high.
    static uint16_t around(const Use &use);
};
