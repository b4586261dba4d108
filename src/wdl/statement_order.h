// The order of a document's statements. The reader makes a pattern of a name by what it knows by then, so
// that a few patterns have to come before others.
#pragma once

#include "store/pattern_store.h"

// True if the items of the pattern, written with plus signs, read as a composite: it is none for the reader
// if it does not begin with a reference or has no other one.
bool ReadsAsComposite(const Pattern *pattern);

// A statement for a pattern. An empty one defines it without items; another one follows later.
struct Statement {
    uint16_t id;
    bool isEmpty;
};

// The statements of all named patterns, in the order in which they are written.
struct StatementOrder {
    std::array<Statement, size_t{2} * MAX_PATTERNS> statements;
    uint32_t count = 0;
    uint16_t leftOut = 0; // a pattern that has none, as it could not be read; 0 if there is none
};

// Patterns of their own come in the order of their ids, then those that only look at others. Out of turn
// come:
//  - a reference pattern that an item uses: among the first by its id and before the use, as the reader would
//    take a name that it does not know for a pattern of its own;
//  - a bit that looks at another pattern: before the bus that finds it by its name in another case;
//  - a composite: before a bit with the name of one of its members, which would make the bit a reference;
//  - the name of a composite bus whose bits a reference pattern looks at, and that pattern: before the
//    composite, as the reader finds bits in what is no composite yet;
//  - a pattern: before the use of a later one that shares a member with it, for the same reason.
// A pattern that could only be read behind a use of it (wider than a bus can be, or sharing a member with one
// that is known) waits for that use. Without one it cannot be read at all, and is left out, so that the file
// can be.
void OrderStatements(StatementOrder &order);
