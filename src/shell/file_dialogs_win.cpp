#include "shell/file_dialogs.h"

#include "platform/files.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"
#include "shell/wide_names_win.h"
#include <commdlg.h>
#include <cstdio>
#include <cstring>

namespace {

constexpr const char *ANY_EXTENSION = ".*";

// What a dialog is asked with, and the name that it starts with and answers.
struct FileRequest {
    FileRequest(const char *title, const char *label, const char *initialDir, const char *path,
                const char *ext);
    FileRequest(const FileRequest &) = delete;
    FileRequest &operator=(const FileRequest &) = delete;

    std::wstring title, filter, directory, defaultExtension;
    wchar_t name[MAX_PATH_SIZE] = L"";
    OPENFILENAMEW request = {};
};

// One pair: what the dialog shows for the filter, and the filter itself; an empty string ends the list.
std::wstring MakeFilter(const char *label, const char *ext) {
    char lower[MAX_PATH_SIZE];
    snprintf(lower, sizeof lower, "%s", ext);
    LowerCase(lower);
    std::wstring shown = Widen((std::string(label) + "(*" + lower + ")").c_str());
    return shown + L'\0' + L"*" + Widen(ext) + L'\0';
}

FileRequest::FileRequest(const char *titleText, const char *label, const char *initialDir, const char *path,
                         const char *ext)
    : title(Widen(titleText ? titleText : "")), filter(MakeFilter(label, ext)),
      directory(Widen(initialDir ? initialDir : "")), defaultExtension(Widen(ext + 1)) {
    Widen(path).copy(name, MAX_PATH_SIZE - 1);
    request.lStructSize = sizeof request;
    request.hwndOwner = FrameWindow;
    request.hInstance = Instance;
    request.lpstrFilter = filter.c_str();
    request.lpstrFile = name;
    request.nMaxFile = MAX_PATH_SIZE;
    request.lpstrInitialDir = initialDir ? directory.c_str() : nullptr;
    request.lpstrTitle = titleText ? title.c_str() : nullptr;
    if (strcmp(ext, ANY_EXTENSION) != 0) request.lpstrDefExt = defaultExtension.c_str();
}

// The answer to `path`. A plain Cancel has no error.
bool TakeAnswer(BOOL answered, const FileRequest &asked, char *path, int pathSize, const char *failure) {
    if (answered) return TakeFileName(asked.name, path, static_cast<size_t>(pathSize));
    if (CommDlgExtendedError() != 0) UserError(failure);
    return false;
}

} // namespace

bool OpenFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext, bool keepDir) {
    FileRequest asked(title, label, initialDir, path, ext);
    asked.request.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    if (!keepDir) asked.request.Flags |= OFN_NOCHANGEDIR;
    BOOL answered = GetOpenFileNameW(&asked.request);
    return TakeAnswer(answered, asked, path, pathSize, "Common open dialog failed");
}

bool SaveFileDialog(const char *title, const char *label, const char *initialDir, char *path, int pathSize,
                    const char *ext) {
    FileRequest asked(title, label, initialDir, path, ext);
    asked.request.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    BOOL answered = GetSaveFileNameW(&asked.request);
    return TakeAnswer(answered, asked, path, pathSize, "Common save dialog failed");
}
