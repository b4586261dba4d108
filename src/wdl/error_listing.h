// Where the syntax errors of a load go: the listing file of the editor, or the caller of the command-line
// tool.
#pragma once

// With this on (the start value) CompileWdl writes the ".err" file in the current directory and opens it in
// the editor when it holds something. Written by the command-line tool.
extern bool WriteErrorListing;
// Told each syntax error, with the column counted from 1; null for none.
extern void (*SyntaxErrorHook)(int line, int column, const char *message);
