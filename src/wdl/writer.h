// Turns the pattern store back into the text of a stimulus file.
#pragma once

// Why a document has no text that could be read: a damaged log may use a nested pattern in so many places
// that the reader, for whom each one is a pattern, has no room for them.
constexpr const char *TOO_MANY_NESTS = "its nested patterns are used in too many places";

// Gives the document's text to `sink`, piece by piece, with "\n" as line end. A pattern that could not be
// read again is left out, which the error strip tells. False if there are TOO_MANY_NESTS; nothing is given
// then.
using TextSink = void (*)(const char *text, int length, void *context);
bool WriteWdlText(TextSink sink, void *context);
