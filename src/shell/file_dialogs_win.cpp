#include "shell/file_dialogs.h"

#include "platform/files.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"
#include <commdlg.h>
#include <cstdio>
#include <cstring>

namespace {

constexpr const char *ANY_EXTENSION = ".*";

// One pair: what the dialog shows for the filter, and the filter itself; an empty string ends the list.
struct FilterText {
    char text[2 * MAX_PATH_SIZE];
};

FilterText MakeFilter(const char *label, const char *ext) {
    FilterText filter = {};
    char lower[MAX_PATH_SIZE];
    snprintf(lower, sizeof lower, "%s", ext);
    LowerCase(lower);
    size_t limit = sizeof filter.text - 2;
    snprintf(filter.text, limit, "%.200s(*%.100s)", label, lower);
    size_t second = strlen(filter.text) + 1;
    snprintf(filter.text + second, limit - second, "*%.100s", ext);
    return filter;
}

OPENFILENAMEA MakeRequest(const char *title, const FilterText &filter, const char *initialDir, char *path,
                          int pathSize, const char *ext) {
    OPENFILENAMEA request = {};
    request.lStructSize = sizeof request;
    request.hwndOwner = FrameWindow;
    request.hInstance = Instance;
    request.lpstrFilter = filter.text;
    request.lpstrFile = path;
    request.nMaxFile = static_cast<DWORD>(pathSize);
    request.lpstrInitialDir = initialDir;
    request.lpstrTitle = title;
    if (strcmp(ext, ANY_EXTENSION) != 0) request.lpstrDefExt = ext + 1;
    return request;
}

bool Report(BOOL answered, const char *failure) {
    // A plain Cancel has no error.
    if (!answered && CommDlgExtendedError() != 0) UserError(failure);
    return answered != FALSE;
}

} // namespace

bool OpenFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext, bool keepDir) {
    FilterText filter = MakeFilter(label, ext);
    OPENFILENAMEA request = MakeRequest(title, filter, initialDir, path, pathSize, ext);
    request.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    if (!keepDir) request.Flags |= OFN_NOCHANGEDIR;
    return Report(GetOpenFileNameA(&request), "Common open dialog failed");
}

bool SaveFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext) {
    FilterText filter = MakeFilter(label, ext);
    OPENFILENAMEA request = MakeRequest(title, filter, initialDir, path, pathSize, ext);
    request.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    return Report(GetSaveFileNameA(&request), "Common save dialog failed");
}
