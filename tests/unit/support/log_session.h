// A small document and random actions on it, by the routines that edits go through, for tests of the log.
#pragma once

#include "unit/support/random_document.h"
#include <string>

// Fills the empty store with nodes, parts and a bus, and shows some of them as rows. Nothing is recorded.
void BuildSessionDocument();
// One action of a few records, and its mark. All kinds of records occur. Names keep their length, so that an
// undo is exact.
void SessionAction(Random &random);
// The store, the rows and the document's times as text.
std::string SessionText();
