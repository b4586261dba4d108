// What holds in the store after every edit, whatever it was.
#pragma once

#include <string>

// The first thing that is wrong with the document, or nothing: the heap's records, references to what is not
// in use, circles, depths, cached lengths that differ from a recount, rows, the selection's path, and an
// action that is still open.
std::string DocumentFault();
