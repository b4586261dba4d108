// Resolves the name of a node to a pattern, so that each signal bit is stored once.
#pragma once

#include "store/pattern.h"

// Values are words of 32 bits, and no bus is wider.
constexpr uint32_t MAX_BUS_WIDTH = 32;

// The pattern of this name, made if necessary: a bit of a bus that exists, or a bus of bits that exist,
// becomes a reference pattern. `name` is rewritten to its canonical form and has a byte of room behind it. A
// `pinType` that is not 0 replaces that of an existing pattern. Moves records. Null when the width exceeds 32
// bits or the store is full, which has then been shown; nothing is made then.
Pattern *FindOrCreateNode(char *name, uint32_t pinType);
