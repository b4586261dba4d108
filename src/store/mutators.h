// The only way to change a pattern: each routine compares, writes a record of the edit log, changes the
// field, and keeps `durationValid` and `changed` in order. When nothing changes, nothing is logged.
//
// Item indices must be below `itemCount`, and on an item of the routine's form. Durations and delays are in
// the units of the pattern's items.
#pragma once

#include "store/pattern.h"

// The duration field of an item has 31 bits.
constexpr TimeVal MAX_ITEM_DURATION = 0x7FFFFFFF;

// Set when a pattern's length was forgotten, and cleared when those that refer to it have been told.
extern bool DurationForgotten;
// The pattern's length is to be counted anew.
void ForgetDuration(Pattern *pattern);

// Return 1 if the field changed, 0 if not. None of these moves records.
int SetPatternDelay(Pattern *pattern, uint32_t delay);
int SetPatternParams(Pattern *pattern, uint32_t stateTable, uint32_t pinType, uint32_t format, int32_t period,
                     uint32_t duty, uint32_t clock);
int SetItemValue(Pattern *pattern, uint16_t index, uint32_t value);
int SetItemDuration(Pattern *pattern, uint16_t index, uint32_t duration);
int AddItemDuration(Pattern *pattern, uint16_t index, uint32_t delta);
int SetItemRepeat(Pattern *pattern, uint16_t index, uint32_t repeat);
int SetItemScale(Pattern *pattern, uint16_t index, uint32_t scale);
int SetItemFormat(Pattern *pattern, uint16_t index, uint32_t format);

// New items at `index`. They may move records and return the pattern's new address; null if there was no room
// for the item, which has then been reported, and the pattern is as it was.
Pattern *InsertTransition(Pattern *pattern, uint16_t index, uint32_t value, uint32_t duration);
Pattern *InsertReference(Pattern *pattern, PatternKind kind, uint16_t index, uint16_t patternId,
                         uint32_t scale, uint32_t repeat, uint32_t sliceWidth, uint32_t sliceOffset,
                         uint32_t forcedFormat);

void DeleteItem(Pattern *pattern, uint16_t index);
// The same without a record, for a pattern in the making.
void DropItem(Pattern *pattern, uint16_t index);
// True if data items `index` and `index` + 1 have the same value, and are no longer together than one item
// can be.
bool CanMergeItems(const Pattern *pattern, uint16_t index);
// Joins such items; returns whether it did.
int MergeItems(Pattern *pattern, uint16_t index);
void MergeAllItems(Pattern *pattern);

// A new record under a new id (0) or a given free one. `width` counts for an unnamed pattern only. Moves
// records. Null when there is no id or no room, which has then been reported.
Pattern *CreatePattern(uint32_t id, const char *name, uint32_t width);
// Removes the record; its items are not logged. Returns the id.
uint16_t DeletePattern(Pattern *pattern);
// Gives the pattern another name; `width`, `bus` and `hasProperties` stay. May move records. Without room
// nothing changes, and that has been reported.
void RenamePattern(Pattern *pattern, const char *newName);
