// Turns the pattern store back into the text of a stimulus file.
#pragma once

// Gives the document's text to `sink`, piece by piece, with "\n" as line end. A pattern that could not be
// read again is left out, which the error strip tells.
using TextSink = void (*)(const char *text, int length, void *context);
void WriteWdlText(TextSink sink, void *context);
