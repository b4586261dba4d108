// The vocabulary of edits in a pattern's item list: take a stretch of time out, make a pulse, move an edge,
// lengthen, set one level. Each works on one record, wherever it was reached from, and is built wholly from
// the mutators, so that undo needs nothing of its own.
//
// Times count in the pattern's own units from its first item: no delay, no clock, no scale of a level above.
// Those that insert may move records; a pattern's address is good only as returned. Callers run
// ValidateDurations behind an edit.
#pragma once

#include "store/pattern.h"

// An item's length in its pattern's units: of a reference the target's cached length times scale times
// repeat, modulo 32 bits; "forever" counts as its number.
TimeVal ItemLength(const PatternItem &item);
// Places of items are counted in 64 bits from the pattern's start, as items may reach beyond the axis; a
// stretch up to TIME_FOREVER holds these, too.
constexpr uint64_t PlaceOfEnd(TimeVal to) {
    return to == TIME_FOREVER ? UINT64_MAX : to;
}
// A value that differs from `value`: the next one of a bus, the other level of a bit.
uint32_t NextValue(const Pattern *pattern, uint32_t value);

// Takes the stretch from `from` up to `to` out; what is behind it moves earlier. `from` is below `to`, and
// neither lies inside a reference. Of an endless tail that the stretch reaches into nothing remains. Behind
// it there is room for an item in the stretch's place. Null without room for what its ends are cut into,
// which has been reported, and the pattern is as it was.
Pattern *DeleteRange(Pattern *pattern, TimeVal from, TimeVal to);
// Makes a pulse of `length` units of the next value at `offset` in the data item at `index`. With `insert`
// all behind the item moves later, otherwise the total stays. Nothing for a length of 0.
void SplitItem(Pattern *pattern, uint16_t index, TimeVal offset, TimeVal length, int insert);
// Moves an edge of the data item at `index` from time `from` to `to`, both on the axis of `root`, the row's
// pattern; `unit` is the time of one unit here. `right` takes the right edge. With `insert` all behind moves,
// otherwise the edge moves between two neighbours.
void MoveEdge(Pattern *root, Pattern *pattern, uint16_t index, int right, TimeVal from, TimeVal to,
              TimeVal unit, int insert);
// Appends `units` units of another value than the one at `time` (on the pattern's axis).
Pattern *ExtendPattern(Pattern *pattern, TimeVal time, TimeVal units);
// One value from `from` up to `to`; `index` is where the new item stands once the stretch is gone. Without
// room nothing changes.
void ReplaceRange(Pattern *pattern, TimeVal from, TimeVal to, uint16_t index, uint32_t value);
