// Loads a stimulus file as the editor does, but for what a command must not do: it asks nothing, writes no
// listing of errors, and takes a file that it could not write.
#pragma once

#include "options.h"
#include "store/pattern.h"

// Makes the document of `options.file` the open one. The exit status; what went wrong has been told.
int LoadDocumentFile(const CommonOptions &options);

// The pattern of this name, or null after a message.
Pattern *FindNamedPattern(const CommonOptions &options, const std::string &name);
