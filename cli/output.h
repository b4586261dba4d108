// What a command writes: the document's text, and texts of the document in JSON.
#pragma once

#include "options.h"
#include <string>
#include <string_view>
#include <vector>

// Tells what is wrong with the name of a file; a name must not be empty.
std::string CheckFileName(const std::string &name);
// The option -o.
CLI::Option *AddOutput(CLI::App *command, std::string &out, const std::string &description);

// A file that a command reads or writes, and what it is to it, as in "the log".
struct UsedFile {
    std::string role, path;
    bool written; // or read for what it does, like a script: no other may be it
};
// True if no file is used twice, by whatever name, also one that is not there yet. A path may be empty. False
// after a message.
bool AreDifferentFiles(const std::vector<UsedFile> &files);
// The path of a file that lies beside the document, by its extension.
std::string FileBeside(const std::string &document, const char *extension);

// Writes the document as the editor would save it to the file `out`, to standard output if that is empty. A
// file is replaced only when the whole text has been written. The exit status; what went wrong has been told.
int WriteDocumentText(const std::string &out);

// A text of the document, whose characters are single bytes, as UTF-8.
std::string FromLatin1(std::string_view text);
