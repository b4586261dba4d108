// The edit selection: a path from a row's pattern down the nest of references to one item, a span of items,
// an edge or a whole pattern. All edits start from it.
#pragma once

#include "store/pattern.h"
#include <array>

enum SelKindValue : uint16_t {
    SEL_NONE = 0,
    SEL_EDGE = 1,      // an edge between items, or the end of the pattern
    SEL_WHOLE = 2,     // the entire pattern
    SEL_PULSE = 3,     // one data item
    SEL_PATTERN = 4,   // one reference
    SEL_STRETCH = 5,   // strictly inside one data item, a pulse to come
    SEL_SPAN = 6,      // several items
    SEL_COMPOSITE = 7, // one reference of a composite pattern
};

// As deep as a selection goes; the limit of nesting in a paste is the same.
constexpr uint32_t MAX_FRAMES = 20;

struct SelFrame {
    TimeVal start, end;   // the selected time at this level, on the row's axis
    uint32_t repeatIndex; // which repetition of the reference the selection lies in
    uint16_t patternId;
    uint16_t item; // index of the item
};

struct EditSelectionRecord {
    TimeVal SelOffset;   // from the item's start to the selection's, when that begins inside a data item
    uint32_t SelValue;   // of the selected pulse
    TimeVal SelScale;    // time of one unit at the deepest level
    TimeVal SelRootUnit; // time of one unit of the row's pattern
    uint16_t SelStateTable;
    uint16_t SelDepth; // frames in use
    uint16_t SelItems; // items in a span
    uint16_t SelKind;
    std::array<SelFrame, MAX_FRAMES> SelFrames; // the first one on the row's pattern
};
// Written by the routines below.
extern EditSelectionRecord EditSelection;
// Puts the start values in place: nothing selected.
void InitSelection();

// The deepest frame in use; the first one where there is none.
SelFrame &DeepestFrame();
// Its pattern, and the row's; null if the id is not in use (any more), or nothing is selected.
Pattern *SelectedPattern();
Pattern *SelectionRoot();
// The time that is 0 in the deepest frame's pattern, on the row's axis; and a time of that axis in the
// pattern's own units.
TimeVal SelBase();
TimeVal LocalTime(TimeVal time);

// Selects what lies between two times of a row's pattern, in any order. `drill` goes into named patterns,
// too. `pick` is 1 for a plain click, which may hit an edge. May edit: a stretch inside a level becomes a
// pulse, and a range behind the end makes the pattern longer.
void SelectRange(Pattern *root, TimeVal t1, TimeVal t2, int drill, int pick);
// Goes one level up, to the reference that holds the selection; at the top to the whole pattern. The new
// kind.
uint16_t SelectParent();
// Recomputes the frames' times after an edit, with `delta` added to the deepest frame's item.
void RebuildFrames(int delta);
// Nothing is selected any more.
void ClearSelection();
