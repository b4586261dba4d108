// Finds patterns by name without walking the store. It gives what a walk from the highest id down would give.
#pragma once

#include "store/pattern.h"
#include <string_view>

// Forgets all names. Called when the store is made.
void NameIndexClear();
// To be called when a record got the name that it bears, and before it loses it.
void NameIndexAdd(const Pattern *record);
void NameIndexRemove(const Pattern *record);

// The highest id whose pattern bears `name`, ignoring case; 0 if there is none.
uint16_t NameIndexFind(std::string_view name);

// Calls `visit` for the patterns, from the highest id down, that have `member` among the single names of
// their name, with the position counted from 1, until it answers true. Returns whether it did.
using MemberVisit = bool (*)(Pattern *pattern, uint32_t position, void *context);
bool NameIndexVisitMember(const char *member, MemberVisit visit, void *context);
