// Turns the pattern store back into the text of a stimulus file, and the row list into the wave list.
#pragma once

// Writes `path` (MAX_PATH_SIZE), tells the sibling tools, and writes the wave list beside it. `path` ends in
// ".kel" afterwards, or stays as it is if it cannot be opened. Nothing is reported.
void WriteWdlFile(char *path);
// The document's text alone, piece by piece.
using TextSink = void (*)(const char *text, int length, void *context);
void WriteWdlText(TextSink sink, void *context);
