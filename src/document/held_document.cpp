#include "document/held_document.h"

#include "platform/files.h"
#include "shell/document_hold.h"
#include "shell/file_names.h"
#include "shell/reporting.h"
#include <cstdio>

namespace {

// The file that stands for all of a document's.
struct DocumentFile {
    explicit DocumentFile(const char *of) {
        snprintf(path, sizeof path, "%s", of);
        SetExtension(path, ".wdl");
    }
    char path[MAX_PATH_SIZE];
};

} // namespace

bool TakeDocument(const char *path) {
    DocumentFile file(path);
    if (HoldFile(file.path)) return true;
    UserErrorFormat("%s is already open in another window", FileNamePart(file.path));
    ShowHolderOf(file.path);
    return false;
}

void RetakeDocument(const char *path) {
    HoldFile(DocumentFile(path).path);
}
