// What the browsers of patterns do with the names that the user has picked or typed: show patterns as rows,
// remove them, put one at the selection, and add a new wave. Each is one undo step.
#pragma once

#include <span>
#include <string>
#include <string_view>

// A row for each name, in this order; a pattern that has one keeps it. The last one is selected.
void ShowPatterns(std::span<const std::string> names);

// True if Remove may be chosen for these names: there is one, and none of their patterns is in use by another
// one. The first is looked at only if it is a plain pattern, the further ones whatever they are; that is
// meant.
bool MayRemovePatterns(std::span<const std::string> names);
// Deletes the patterns with their rows and items. One that is in use stays, which the error strip tells.
void RemovePatterns(std::span<const std::string> names);

// True if the pattern of this name may be put at the selection: a named pattern that is no node, as wide as
// the selected one, where the kind of the selection takes one, in Edit mode.
bool MayInsertPattern(const char *name);
// Puts a reference to the pattern at the selection, which MayInsertPattern allows, and goes on behind it with
// the cursor, ready for the next one.
void InsertPattern(const char *name);

// Instead of a pin type: a pattern that is no node.
constexpr int NEW_WAVE_PATTERN = -1;
// Characters of the name's field.
constexpr size_t NEW_WAVE_NAME_LIMIT = 80;

// The name that Add makes of the field's text: of a node in its canonical form, of a pattern with one "$" in
// front. It is empty where nothing is left of the text but that. `kind` is a pin type or NEW_WAVE_PATTERN.
std::string NewWaveName(std::string_view text, int kind);
// Makes the wave of this name and kind, or finds it, and shows it as a row. False without a name, for one
// that could not be saved, and where there can be no such wave, which the error strip tells.
bool AddNewWave(std::string_view text, int kind);
