// Turns the text of a stimulus file straight into pattern records.
#pragma once

#include "platform/text_file.h"
#include "store/pattern.h"

// Reads the whole document. `path` names it for the error listing. Returns 1 if there were no errors.
int CompileWdl(TextReader *file, const char *path);
