// Resolves the name of a node to a pattern, so that each signal bit is stored once.
#pragma once

#include "store/pattern.h"
#include <string>

// Values are words of 32 bits, and no bus is wider.
constexpr uint32_t MAX_BUS_WIDTH = 32;

// The pattern that holds a single signal, and the bit of it, counted from the end of its name.
struct Holder {
    uint16_t id = 0; // 0 for none
    uint32_t sliceOffset = 0;
    bool operator==(const Holder &) const = default;
};

// The name under which a member stands by itself. A mark of inversion behind a comma is kept as it was typed;
// at the start of a name it is read as the bar's character.
std::string OwnName(const char *member);

// The bit that a bus of bits shows for this member of its name. Members compare with case and patterns
// without: a second pattern of the name could never be saved and read again, so the one that bears it is the
// bit. If that one only looks at a bit itself, it is this bit.
Holder FindBit(const char *member);

// The pattern of this name, made if necessary: a bit of a bus that exists, or a bus of bits that exist,
// becomes a reference pattern. Its members are searched for with case. `name` is rewritten to its canonical
// form and has a byte of room behind it. A `pinType` that is not 0 replaces that of an existing pattern; a
// bus of bits that exist has none of its own, only the bits that are made for it. Moves records. Null when
// the width exceeds 32 bits or the store is full, which has then been shown; nothing is made then.
Pattern *FindOrCreateNode(char *name, uint32_t pinType);

// Makes the plain bus, which is new and without items, a reference pattern if any of its members exists as
// its slices would take it, in another case of letters, too. A file says so by the name alone. For a load,
// as there is no record of the change. Moves records. False without room, which has then been shown.
bool FollowMembers(Pattern *bus);
