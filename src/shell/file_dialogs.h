// The common file dialogs.
#pragma once

// Ask for a file name; false on Cancel. `label` names the filter, `ext` has its dot; `path` holds the start
// value and takes the answer. With `keepDir` the open dialog may change the current directory. A dialog that
// fails is reported.
bool OpenFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext, bool keepDir);
bool SaveFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext);
