// What a command writes: the document's text, and texts of the document in JSON.
#pragma once

#include "options.h"
#include <string>
#include <string_view>

// Tells what is wrong with the name of a file; a name must not be empty.
std::string CheckFileName(const std::string &name);
// The option -o.
CLI::Option *AddOutput(CLI::App *command, std::string &out, const std::string &description);

// Writes the document as the editor would save it to the file `out`, to standard output if that is empty. A
// file is replaced only when the whole text has been written. The exit status; what went wrong has been told.
int WriteDocumentText(const std::string &out);

// A text of the document, whose characters are single bytes, as UTF-8.
std::string FromLatin1(std::string_view text);
