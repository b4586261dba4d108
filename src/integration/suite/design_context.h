// NTOGXED, the suite's closed library of the design context, as far as this program uses it. What stands
// behind these calls is our own stand-in until the suite's library is at hand.
#pragma once

using DesignContext = int;

// The current design context, or 0 if there is none.
DesignContext OGXEDAOpenCurrentContext();
// The directory named by `key` ("config" or "bin"), to `buffer` of 260 bytes; empty if there is none.
void OGXEDACopyContextPath(DesignContext context, const char *key, char *buffer);
// A symbol's value, to `buffer` of 260 bytes; empty if there is none.
void OGXEDACopyContextSymbol(DesignContext context, const char *key, char *buffer);
void OGXEDACloseContext(DesignContext context);
