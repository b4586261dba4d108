// The pattern heap: one growable, compacting block that holds all records of the document, reached through a
// table of offsets indexed by the pattern id. Ids are stable, addresses are not: a pointer into the heap is
// good only up to the next call that can allocate.
#pragma once

#include "store/pattern.h"
#include <array>
#include <vector>

// Entries of the table; ids run from 1 to MAX_PATTERNS - 1.
constexpr uint32_t MAX_PATTERNS = 4000;
// The heap's first size and its step of growth; records keep off the multiples of this.
constexpr uint32_t HEAP_BLOCK = 65536;
// Offset of the first record, so that offset 0 can mean "no record".
constexpr int32_t HEAP_START = 4;

// Heap offset of the record of each id, 0 for an id that is not in use; null without a store. Written by the
// store, and by a failed load.
extern uint32_t *PatternTable;
// The heap block; null without a store. Written by the store alone, as are the following.
extern uint8_t *PatternHeap;
extern int32_t HeapSize;  // bytes of the block
extern int32_t HeapTop;   // offset behind the last closed record
extern int32_t HoleBytes; // bytes in free records and fillers
extern uint16_t HighestPatternId;
extern uint16_t TopPatternId; // the open top record, 0 if there is none

// How many items of each pattern, by id, are references: who looks for references need not look through a
// long pattern that holds data alone. Written by the mutators.
extern std::array<uint16_t, MAX_PATTERNS> ReferenceItems;

// Makes the table, the heap and the state block. Returns 1, or 0 after a message.
int PatternStoreInit();
// Ends a log hold and frees all three.
void PatternStoreFree();

// For `id` 0: a new record under the lowest free id. For an id with an empty table entry: a new record under
// this id. For an id in use: makes room for one more item. `room` asks for more room than that: in a new
// record the bytes of its name, in an existing one the bytes by which it will grow. Returns the record, which
// may have moved, as may all others.
//
// With the table full it reports "Exceeding maximum number of patterns", sets `TopPatternId` to 0 and returns
// whatever record it last looked at; the caller knows the failure by `TopPatternId`. Where there is no
// memory, or the record would exceed MAX_RECORD_SIZE, it reports that and returns null, and the store is as
// it was.
Pattern *PatternAlloc(uint32_t id, uint32_t room = 0);

// Gives the record's space back and empties its table entry; returns the id.
uint16_t PatternRelease(Pattern *record);

// All patterns at one moment, to go back to where a change must leave no trace. Named patterns may have been
// made since, but none renamed or deleted.
struct StoreCopy {
    std::vector<uint8_t> heap; // up to the end of the last record
    std::vector<uint32_t> table;
    int32_t HeapTop, HoleBytes;
    uint16_t HighestPatternId, TopPatternId;
    uint32_t freeIdFrom;
    std::vector<uint16_t> ReferenceItems;
};
StoreCopy CopyStore();
// Records move.
void RestoreStore(const StoreCopy &copy);

// Sets the flag that keeps the log file open and returns its previous value. When the flag goes from nonzero
// to 0 the log file is closed. It does not stop logging.
int LogHoldOpen(int hold);

// The record of an id in use; there is no test.
inline Pattern *PatternFromId(uint32_t id) {
    return reinterpret_cast<Pattern *>(PatternHeap + PatternTable[id]);
}
// True for an id that a record bears.
inline bool PatternInUse(uint32_t id) {
    return id < MAX_PATTERNS && PatternTable[id] != 0;
}

// The allocator of the store's blocks: resizes `block` (null for a new one) to `size` bytes with its contents
// kept, or returns null and leaves the block alone. Tests replace it to see the store without memory.
extern void *(*ResizeBlock)(void *block, size_t size);
