#include "store/pattern_store.h"

#include "editlog/edit_log.h"
#include "shell/reporting.h"
#include "store/name_index.h"
#include "store/nesting_depth.h"
#include "store/state_table.h"
#include <algorithm>
#include <cstdlib>
#include <cstring>

uint32_t *PatternTable = nullptr;
uint8_t *PatternHeap = nullptr;
int32_t HeapSize = 0;
int32_t HeapTop = 0;
int32_t HoleBytes = 0;
uint16_t HighestPatternId = 0;
uint16_t TopPatternId = 0;
std::array<uint16_t, MAX_PATTERNS> ReferenceItems;
void *(*ResizeBlock)(void *block, size_t size) = realloc;

namespace {

// Room asked for a new record without a name.
constexpr uint32_t NEW_RECORD_ROOM = 80;
constexpr uint32_t RECORD_HEAD = 36;
constexpr uint32_t ITEM_SIZE = sizeof(PatternItem);

int logHeld = 0;
// No id below this one is free.
uint32_t freeIdFrom = 1;

Pattern *RecordAt(int32_t offset) {
    return reinterpret_cast<Pattern *>(PatternHeap + offset);
}

int32_t OffsetOf(const Pattern *record) {
    return static_cast<int32_t>(reinterpret_cast<const uint8_t *>(record) - PatternHeap);
}

uint32_t Smaller(uint32_t a, uint32_t b) {
    return a < b ? a : b;
}

uint32_t Larger(uint32_t a, uint32_t b) {
    return a > b ? a : b;
}

int32_t NextBoundary(int32_t offset) {
    return static_cast<int32_t>((static_cast<uint32_t>(offset) / HEAP_BLOCK + 1) * HEAP_BLOCK);
}

bool CrossesBoundary(int32_t offset, uint32_t bytes) {
    auto start = static_cast<uint32_t>(offset);
    return (start ^ (start + bytes)) >= HEAP_BLOCK;
}

bool HasRoom(uint32_t bytes) {
    return static_cast<uint32_t>(HeapSize - HeapTop) > bytes;
}

// Writes a filler from `offset` up to the next boundary, which it returns.
int32_t FillToBoundary(int32_t offset) {
    int32_t boundary = NextBoundary(offset);
    Pattern *filler = RecordAt(offset);
    filler->size = static_cast<uint16_t>(boundary - offset);
    filler->free = 1;
    HoleBytes += boundary - offset;
    return boundary;
}

// Moves all live records down over the holes, in their order. No record may be open.
void CompactHeap() {
    HoleBytes = 0;
    int32_t dst = HEAP_START;
    for (int32_t src = HEAP_START; src < HeapTop;) {
        Pattern *record = RecordAt(src);
        int32_t size = record->size;
        if (!record->free) {
            if (dst != src) {
                // A record that straddled the boundary before does so again: it cannot move up.
                bool crosses = CrossesBoundary(dst, static_cast<uint32_t>(size));
                if (crosses && NextBoundary(dst) <= src) dst = FillToBoundary(dst);
                PatternTable[record->id] = static_cast<uint32_t>(dst);
                memmove(PatternHeap + dst, PatternHeap + src, static_cast<size_t>(size));
            }
            dst += size;
        }
        src += size;
    }
    HeapTop = dst;
}

// Adds a block to the heap, behind a filler up to the boundary. False after a message.
bool GrowHeap() {
    void *block = ResizeBlock(PatternHeap, static_cast<size_t>(HeapSize) + HEAP_BLOCK);
    if (!block) {
        ProgramError("Unable to reallocate pattern memory");
        return false;
    }
    PatternHeap = static_cast<uint8_t *>(block);
    memset(PatternHeap + HeapSize, 0, HEAP_BLOCK);
    HeapSize += static_cast<int32_t>(HEAP_BLOCK);
    if (static_cast<uint32_t>(HeapTop) % HEAP_BLOCK != 0) HeapTop = FillToBoundary(HeapTop);
    return true;
}

// Makes room for `need` bytes at the heap's top, where nothing is open. `bytes` is what will be copied or
// written there, which may exceed the `need` by which the way is chosen. False after a message.
bool MakeRoom(uint32_t need, uint32_t bytes) {
    uint32_t room = Larger(need, bytes);
    if (HasRoom(room)) return true;
    if (static_cast<uint32_t>(HoleBytes) > need && HoleBytes > HeapSize / 3) {
        CompactHeap();
        // Fillers may have eaten up what the holes gave, so that the room has to be looked at again.
        if (HasRoom(room)) return true;
    }
    return GrowHeap();
}

uint32_t LowestFreeId() {
    while (freeIdFrom < MAX_PATTERNS && PatternTable[freeIdFrom] != 0) ++freeIdFrom;
    return freeIdFrom;
}

// Closes the open top record. True if `id` is that record and can grow by `growth` bytes where it stands; it
// is then still open.
bool CloseTopRecord(uint32_t id, uint32_t growth) {
    Pattern *top = PatternFromId(TopPatternId);
    top->size = static_cast<uint16_t>(top->used());
    HeapTop = OffsetOf(top) + top->size;
    bool atBoundary = static_cast<uint32_t>(HeapTop) % HEAP_BLOCK == 0;
    if (TopPatternId == id && !atBoundary && static_cast<uint32_t>(HeapSize - HeapTop) >= growth) return true;
    TopPatternId = 0;
    return false;
}

// Opens the place at the heap's top for the record: copies what it has been, or takes the id.
Pattern *PlaceRecord(uint32_t id) {
    if (PatternTable[id] != 0) {
        Pattern *old = PatternFromId(id);
        memcpy(PatternHeap + HeapTop, old, old->size);
        old->free = 1;
        HoleBytes += old->size;
    } else if (HighestPatternId < id) {
        HighestPatternId = static_cast<uint16_t>(id);
    }
    PatternTable[id] = static_cast<uint32_t>(HeapTop);
    Pattern *record = RecordAt(HeapTop);
    record->id = static_cast<uint16_t>(id);
    TopPatternId = static_cast<uint16_t>(id);
    return record;
}

} // namespace

int PatternStoreInit() {
    TopPatternId = 0;
    HighestPatternId = 0;
    freeIdFrom = 1;
    NameIndexClear();
    ForgetNesting();
    PatternTable = static_cast<uint32_t *>(ResizeBlock(nullptr, MAX_PATTERNS * sizeof(uint32_t)));
    HeapSize = static_cast<int32_t>(HEAP_BLOCK);
    HeapTop = HEAP_START;
    HoleBytes = 0;
    PatternHeap = static_cast<uint8_t *>(ResizeBlock(nullptr, HEAP_BLOCK));
    int stateBlock = StateBlockInit();
    if (PatternTable) memset(PatternTable, 0, MAX_PATTERNS * sizeof(uint32_t));
    if (PatternHeap) memset(PatternHeap, 0, HEAP_BLOCK);
    if (!PatternHeap || !PatternTable) ProgramError("Unable to Allocate Pattern Memory for WDL");
    if (!stateBlock) ProgramError("Unable to Allocate State Table Memory for WDL");
    return PatternHeap && PatternTable && stateBlock;
}

void PatternStoreFree() {
    LogHoldOpen(0);
    free(PatternHeap);
    PatternHeap = nullptr;
    StateBlockFree();
    free(PatternTable);
    PatternTable = nullptr;
    HighestPatternId = 0;
    TopPatternId = 0;
    HeapSize = 0;
    HeapTop = 0;
    HoleBytes = 0;
    NameIndexClear();
}

Pattern *PatternAlloc(uint32_t id, uint32_t room) {
    uint32_t need = Larger(NEW_RECORD_ROOM, RECORD_HEAD + room);
    uint32_t bytes = need; // what will stand at the new place
    uint32_t growth = Larger(room, ITEM_SIZE);
    Pattern *looked = nullptr;
    bool exists = id != 0 && PatternInUse(id);
    if (!exists && need > MAX_RECORD_SIZE) {
        UserError("Pattern name is too long");
        return nullptr;
    }
    if (exists) {
        looked = PatternFromId(id);
        uint32_t used = looked->used();
        if (used + growth > MAX_RECORD_SIZE) {
            UserError("Pattern has too many items");
            return nullptr;
        }
        // The open top record's size is stale, and so may be less than what it holds.
        if (looked->size >= used + growth) return looked;
        need = Smaller(looked->size + growth, MAX_RECORD_SIZE);
        bytes = Larger(looked->size, used + growth);
    }
    if (TopPatternId != 0) {
        looked = PatternFromId(TopPatternId);
        if (CloseTopRecord(id, growth)) return looked;
    }
    if (!exists) {
        if (id == 0) id = LowestFreeId();
        if (id >= MAX_PATTERNS) {
            UserError("Exceeding maximum number of patterns");
            TopPatternId = 0;
            return looked;
        }
    }
    if (HasRoom(need) && CrossesBoundary(HeapTop, need)) HeapTop = FillToBoundary(HeapTop);
    if (!MakeRoom(need, bytes)) return nullptr;
    return PlaceRecord(id);
}

uint16_t PatternRelease(Pattern *record) {
    uint16_t id = record->id;
    NameIndexRemove(record);
    if (id == TopPatternId) {
        TopPatternId = 0;
        HeapTop = OffsetOf(record);
    } else {
        record->free = 1;
        HoleBytes += record->size;
    }
    PatternTable[id] = 0;
    freeIdFrom = Smaller(freeIdFrom, id);
    return id;
}

StoreCopy CopyStore() {
    int32_t end = HeapTop;
    if (TopPatternId != 0) {
        const Pattern *top = PatternFromId(TopPatternId);
        end = OffsetOf(top) + static_cast<int32_t>(top->used());
    }
    return {std::vector<uint8_t>(PatternHeap, PatternHeap + end),
            std::vector<uint32_t>(PatternTable, PatternTable + MAX_PATTERNS),
            HeapTop,
            HoleBytes,
            HighestPatternId,
            TopPatternId,
            freeIdFrom,
            std::vector<uint16_t>(ReferenceItems.begin(), ReferenceItems.end())};
}

void RestoreStore(const StoreCopy &copy) {
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id) || PatternFromId(id)->nameLength == 0) continue;
        const auto *before = reinterpret_cast<const Pattern *>(copy.heap.data() + copy.table[id]);
        if (copy.table[id] == 0 || before->nameLength == 0) NameIndexRemove(PatternFromId(id));
    }
    std::copy(copy.heap.begin(), copy.heap.end(), PatternHeap);
    std::copy(copy.table.begin(), copy.table.end(), PatternTable);
    HeapTop = copy.HeapTop;
    HoleBytes = copy.HoleBytes;
    HighestPatternId = copy.HighestPatternId;
    TopPatternId = copy.TopPatternId;
    freeIdFrom = copy.freeIdFrom;
    std::copy(copy.ReferenceItems.begin(), copy.ReferenceItems.end(), ReferenceItems.begin());
    ForgetNesting();
}

int LogHoldOpen(int hold) {
    int previous = logHeld;
    logHeld = hold;
    if (previous != 0 && hold == 0) LogCloseFile();
    return previous;
}
