// Loads a stimulus file as the editor does, but for what a command must not do: it asks nothing, writes no
// listing of errors, and takes a file that it could not write.
#pragma once

#include "options.h"
#include "store/pattern.h"

// Whether it is told what the reader passes over in silence.
enum class Warnings { None, Printed };

// Makes the document of `options.file` the open one. The exit status; what went wrong has been told.
int LoadDocumentFile(const CommonOptions &options, Warnings warnings = Warnings::None);

// The pattern of this name, or null after a message.
Pattern *FindNamedPattern(const CommonOptions &options, const std::string &name);
