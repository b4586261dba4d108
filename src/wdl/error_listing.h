// Where the syntax errors of a load go: the listing file of the editor, or the caller of the command-line
// tool.
#pragma once

#include "platform/text_file.h"
#include <cstdint>
#include <memory>
#include <string_view>

// With this on (the start value) CompileWdl writes the ".err" file in the current directory and opens it in
// the editor when it holds something. Written by the command-line tool.
extern bool WriteErrorListing;
// Told each syntax error, with the column counted from 1; null for none.
extern void (*SyntaxErrorHook)(int line, int column, const char *message);

// Told what the reader passes over in silence, with its place counted from 1; null for none. Installed by the
// command that looks for it.
extern void (*WarningHook)(int line, int column, const char *message);

// Errors so far in this file, and whether the listing holds any. Written here.
extern int32_t WdlErrorCount;
extern int32_t WdlHadErrors;
// The listing while it is open; null without one.
extern std::unique_ptr<TextWriter> WdlErrFile;

// Reports an error at the last character read, and counts it.
void WdlSyntaxError(const char *message);

// Tells WarningHook `what` of `word`, which stands at `offset` of the current token's text; without a word
// `what` is all. A long word is cut.
void WdlWarning(uint32_t offset, const char *what, std::string_view word);

// Forgets the errors of the last file and creates the listing for the document at `path`, unless one is open
// or none is wanted. A listing that cannot be created is done without.
void OpenErrorListing(const char *path);
// Closes the listing. With errors in it, it is shown in the editor, else removed.
void CloseErrorListing();
