// Turns the text of a stimulus file straight into pattern records. Reading stops at the first error.
#pragma once

#include "platform/text_file.h"
#include "store/pattern.h"

// What a "%VERSION" directive says. Nothing reads it. Written by the compiler, and by the start of a load.
extern int32_t WdlVersion;
// 1 while a statement defines a pattern that has a format. Written by the compiler.
extern int32_t NodeHasFormat;

// Reads the whole document. `path` names it for the error listing. Returns 1 if there were no errors, and
// the file could be read to its end.
int CompileWdl(TextReader *file, const char *path);

// Reads one statement, or, for a `pattern`, its items up to the closing parenthesis. Moves records. Returns
// the number of errors so far.
int CompileStatement(Pattern *pattern);

// Reads a property block into the record, where `text` is the block without its "{" and is cut into fields.
// Returns 0, and changes nothing, if it has none.
int ReadProperties(Pattern *pattern, char *text);
