#include "wdl/nesting.h"

#include "store/pattern_store.h"
#include "store/queries.h"
#include <array>

namespace {

// The longest chain of references that leads to each pattern. It only rises, and at most MAX_NESTING times
// for a pattern, which bounds the work for a whole document.
std::array<uint16_t, MAX_PATTERNS> levels;

// A pattern is `level` references deep; so those that it refers to are deeper. All references but the new one
// rise in level, so that a circle through it is followed all around until `statement` comes back.
NestingFault Deepen(uint16_t id, uint32_t level, uint16_t statement) {
    if (id == statement) return NestingFault::Circle;
    if (level <= levels[id]) return NestingFault::None;
    if (level > MAX_NESTING) return NestingFault::TooDeep;
    levels[id] = static_cast<uint16_t>(level);
    const Pattern *pattern = PatternFromId(id);
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference()) continue;
        NestingFault fault = Deepen(item.patternId(), level + 1, statement);
        if (fault != NestingFault::None) return fault;
    }
    return NestingFault::None;
}

} // namespace

void NestingReset() {
    levels.fill(0);
}

NestingFault NoteReference(uint16_t pattern, uint16_t target, uint16_t statement) {
    NestingFault fault = Deepen(target, levels[pattern] + 1u, statement);
    // A long circle runs out of levels before it comes back.
    if (fault == NestingFault::TooDeep && WouldCloseCircle(statement, target)) return NestingFault::Circle;
    return fault;
}
