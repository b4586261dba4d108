#include "unit/support/fresh_store.h"

#include "config/paths.h"
#include "config/settings.h"
#include "display/composition.h"
#include "display/drag_preview.h"
#include "display/mouse_place.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "document/document.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "headless/clipboard.h"
#include "headless/edit_dialog.h"
#include "headless/headless.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include "store/state_table.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

void FreshStore::SetUp() {
    InitHeadless();
    InitSettings();
    InitPaths();
    InitReporting();
    InitWaveView();
    InitMouse();
    InitOverlay();
    InitDragPreview();
    InitComposition();
    InitRulerCursor();
    InitDocument();
    InitHeadlessClipboard();
    InitHeadlessEditDialog();
    InitClipboard();
    InitEditDialog();
    PendingMerge = 0;
    NameChars = {'[', ']', '_', '.'};
    ResizeBlock = realloc;
    ASSERT_EQ(AllocWaveRows(), 1);
    ASSERT_EQ(PatternStoreInit(), 1);
    LoadStateTables();
}

void FreshStore::TearDown() {
    ResizeBlock = realloc;
    DropClipFile();
    PatternStoreFree();
    FreeWaveRows();
}

namespace {

// What a test begins with is no edit.
class Unrecorded {
public:
    Unrecorded() { EditLog.Recording = 0; }
    ~Unrecorded() { EditLog.Recording = before; }
    Unrecorded(const Unrecorded &) = delete;
    Unrecorded &operator=(const Unrecorded &) = delete;

private:
    int32_t before = EditLog.Recording;
};

} // namespace

uint16_t MakePattern(const char *name, const Transitions &items, uint32_t width) {
    Unrecorded unrecorded;
    Pattern *pattern = CreatePattern(0, name, width);
    if (!pattern) return 0;
    uint16_t id = pattern->id;
    for (auto [value, duration] : items) AddTransition(id, value, duration);
    return id;
}

void AddReference(uint16_t id, const Use &use, PatternKind kind) {
    Unrecorded unrecorded;
    Pattern *pattern = PatternFromId(id);
    InsertReference(pattern, kind, pattern->itemCount, use.id, use.scale, use.repeat, use.sliceWidth,
                    use.sliceOffset, use.format);
}

void AddTransition(uint16_t id, uint32_t value, uint32_t duration) {
    Unrecorded unrecorded;
    Pattern *pattern = PatternFromId(id);
    InsertTransition(pattern, pattern->itemCount, value, duration);
}

namespace {

std::string Fault(int32_t offset, const std::string &what) {
    return "at offset " + std::to_string(offset) + ": " + what;
}

} // namespace

std::string HeapFault() {
    int32_t offset = HEAP_START;
    int32_t holes = 0;
    std::set<uint16_t> seen;
    auto topOffset = TopPatternId ? static_cast<int32_t>(PatternTable[TopPatternId]) : HeapTop;
    while (offset < topOffset) {
        auto *record = reinterpret_cast<Pattern *>(PatternHeap + offset);
        if (record->size == 0) return Fault(offset, "a record of size 0");
        if (record->free) {
            holes += record->size;
        } else {
            if (record->used() > record->size) return Fault(offset, "more bytes in use than the size");
            if (PatternTable[record->id] != static_cast<uint32_t>(offset)) {
                return Fault(offset, "the table does not lead to the record");
            }
            if (!seen.insert(record->id).second) return Fault(offset, "a second record of the id");
        }
        offset += record->size;
    }
    if (offset != topOffset) return Fault(offset, "the walk does not end at the top");
    if (holes != HoleBytes)
        return "holes of " + std::to_string(holes) + " bytes, counted as " + std::to_string(HoleBytes);
    if (TopPatternId) {
        const Pattern *top = PatternFromId(TopPatternId);
        if (top->free || top->id != TopPatternId) return "the open top record is not itself";
        if (topOffset + static_cast<int32_t>(top->used()) > HeapSize) return "the top record leaves the heap";
        seen.insert(TopPatternId);
    } else if (HeapTop > HeapSize) {
        return "the top lies beyond the heap";
    }
    for (uint32_t id = 1; id < MAX_PATTERNS; ++id) {
        if (PatternTable[id] == 0) continue;
        if (!seen.contains(static_cast<uint16_t>(id))) return "no record for id " + std::to_string(id);
        if (id > HighestPatternId) return "an id above the highest: " + std::to_string(id);
        const Pattern *pattern = PatternFromId(id);
        auto references = std::count_if(pattern->items(), pattern->items() + pattern->itemCount,
                                        [](const PatternItem &item) { return item.isReference(); });
        if (references != ReferenceItems[pattern->id])
            return "references of " + std::to_string(id) + " miscounted";
    }
    return "";
}

std::string StoreText() {
    std::ostringstream out;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *p = PatternFromId(id);
        out << id << " '" << p->name() << "' kind " << (p->flags & 3) << " width " << p->width << " bus "
            << p->isBus() << " node " << p->hasProperties() << " clock " << p->clock() << " table "
            << p->stateTable() << " format " << static_cast<uint32_t>(p->format()) << " pin " << p->pinType()
            << " period " << p->period << " delay " << p->delay << " duty " << p->duty << ":";
        for (uint32_t i = 0; i < p->itemCount; ++i) {
            const PatternItem &item = p->item(i);
            if (item.isReference()) {
                out << " [" << item.patternId() << " *" << item.scale() << " #" << item.repeat() << " @"
                    << item.forcedFormat() << " " << item.sliceOffset() << "/" << item.sliceWidth() << "]";
            } else {
                out << " " << item.value() << ":" << item.duration();
            }
        }
        out << "\n";
    }
    return out.str();
}

ScratchDirectory::ScratchDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kelvane-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) abort();
    path = pattern;
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string ScratchDirectory::write(const std::string &name, const std::string &text) const {
    std::ofstream(file(name), std::ios::binary) << text;
    return file(name);
}

std::string ReadWholeFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}
