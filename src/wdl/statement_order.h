// The order of a document's statements. The reader makes a pattern of a name by what it knows by then, so
// that a few patterns have to come before others.
#pragma once

#include "wdl/reader_view.h"

// The statements of all named patterns, in the order in which they are written.
struct StatementOrder {
    std::vector<Statement> statements;
    bool comesBack = true; // each pattern is read back as it is, as far as its names tell
    uint16_t leftOut = 0;  // a pattern that has none, as it could not be read; 0 if there is none
};

// Patterns of their own come in the order of their ids, then those that only look at others. The patterns
// that share names, and with them those that use them, are read back in this order, or another one is
// searched for: by use, by an empty statement, or before and behind others each may come to be what it is.
// Where none is found, those that cannot be read are left out, so that the file can be.
StatementOrder OrderStatements();
