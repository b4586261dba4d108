#include "document/all_nodes.h"

#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "platform/files.h"
#include "shell/file_names.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include <cstdio>

namespace {

bool HasWaveList() {
    char path[MAX_PATH_SIZE];
    snprintf(path, sizeof path, "%s", DocumentPath);
    return SetExtension(path, ".kel") && CanAccessFile(path, FileAccess::Exists);
}

bool IsNode(const Pattern *pattern) {
    return pattern->hasProperties() && pattern->kind() != PatternKind::Reference;
}

} // namespace

void ShowNodesWithoutWaveList() {
    // A log of this document counts on rows that it had from the start, so that they come before a recovery.
    if (HasWaveList()) return;
    uint32_t nodes = 0;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id) || !IsNode(PatternFromId(id))) continue;
        if (nodes++ < MAX_ROWS) ShowNewRow(static_cast<uint16_t>(id));
    }
    if (nodes == 0) return;
    AddNotice(nodes > MAX_ROWS ? "No wave list: the first 256 nodes are shown"
                               : "No wave list: all nodes are shown");
}
