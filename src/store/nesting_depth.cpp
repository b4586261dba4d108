#include "store/nesting_depth.h"

#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <array>
#include <bitset>
#include <vector>

namespace {

// The longest chain of references from each pattern down, and from each one down to one pattern; -1 where it
// is not known yet.
class Depths {
public:
    // Chains that end in `end`, or anywhere for 0.
    explicit Depths(uint16_t end) : goal(end), lengths(MAX_PATTERNS, UNKNOWN) {}

    // NO_CHAIN if none leads to the goal.
    int32_t of(uint16_t id) {
        if (!PatternInUse(id)) return goal == 0 ? 0 : NO_CHAIN;
        int32_t &length = lengths[id];
        if (length != UNKNOWN) return length;
        length = goal == 0 || id == goal ? 0 : NO_CHAIN;
        if (ReferenceItems[id] == 0) return length;
        const Pattern *pattern = PatternFromId(id);
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            if (!pattern->item(i).isReference()) continue;
            int32_t below = of(pattern->item(i).patternId());
            if (below != NO_CHAIN) length = std::max(length, below + 1);
        }
        return length;
    }

    static constexpr int32_t NO_CHAIN = -1;

private:
    static constexpr int32_t UNKNOWN = -2;
    uint16_t goal;
    std::vector<int32_t> lengths;
};

int32_t DepthAbove(uint16_t pattern) {
    Depths depths(pattern);
    int32_t longest = 0;
    for (uint16_t id = 1; id <= HighestPatternId; id++) {
        if (PatternInUse(id)) longest = std::max(longest, depths.of(id));
    }
    return longest;
}

// --- levels ---------------------------------------------------------------------------------------

// A level for each pattern, above those of all patterns that refer to it: at least the longest chain of
// references that leads to it. Where a reference goes from a lower level to a higher one, which is looked up
// at once, it can close no circle. Levels rise only until they are counted anew.
std::array<uint16_t, MAX_PATTERNS> levels;
// False where references have come that the levels know nothing of.
bool levelsHold;

template <class Visit>
void VisitReferences(uint16_t id, Visit visit) {
    if (!PatternInUse(id) || ReferenceItems[id] == 0) return;
    const Pattern *pattern = PatternFromId(id);
    for (uint32_t i = 0; i < pattern->itemCount; i++) {
        const PatternItem &item = pattern->item(i);
        if (item.isReference() && item.patternId() < MAX_PATTERNS) visit(item.patternId());
    }
}

// Puts what a pattern refers to in front of it.
void PutInOrder(uint16_t id, std::vector<uint16_t> &order, std::bitset<MAX_PATTERNS> &done) {
    if (done.test(id)) return;
    done.set(id);
    VisitReferences(id, [&](uint16_t target) { PutInOrder(target, order, done); });
    order.push_back(id);
}

void CountLevels() {
    std::vector<uint16_t> order;
    std::bitset<MAX_PATTERNS> done;
    for (uint16_t id = 1; id <= HighestPatternId; id++) PutInOrder(id, order, done);
    levels.fill(0);
    for (auto id = order.rbegin(); id != order.rend(); ++id) {
        auto below = static_cast<uint16_t>(levels[*id] + 1);
        VisitReferences(*id, [below](uint16_t target) { levels[target] = std::max(levels[target], below); });
    }
    levelsHold = true;
}

// Raises a pattern to `level`, and those below it as far as they have to. False where that comes back to
// `origin` or goes beyond MAX_NESTING, some being raised already.
bool Raise(uint16_t id, uint32_t level, uint16_t origin) {
    if (id == origin || level > MAX_NESTING) return false;
    if (levels[id] >= level) return true;
    levels[id] = static_cast<uint16_t>(level);
    bool good = true;
    VisitReferences(id, [&](uint16_t target) { good = good && Raise(target, level + 1, origin); });
    return good;
}

} // namespace

bool WouldNestTooDeep(uint16_t pattern, uint16_t target) {
    // A chain needs as many patterns.
    if (HighestPatternId <= MAX_NESTING) return false;
    int32_t below = Depths(0).of(target);
    return DepthAbove(pattern) + 1 + below > static_cast<int32_t>(MAX_NESTING);
}

bool NestsTooDeep(uint16_t pattern) {
    return HighestPatternId > MAX_NESTING &&
           DepthAbove(pattern) + Depths(0).of(pattern) > static_cast<int32_t>(MAX_NESTING);
}

bool MayRefer(uint16_t pattern, uint16_t target) {
    if (!levelsHold) CountLevels();
    if (Raise(target, levels[pattern] + 1u, pattern)) return true;
    // The levels of what has been deleted since they were counted may have been too high.
    levelsHold = false;
    return !WouldCloseCircle(pattern, target) && !WouldNestTooDeep(pattern, target);
}

void ReferenceMade(uint16_t pattern, uint16_t target) {
    if (target < MAX_PATTERNS && levels[target] <= levels[pattern]) levelsHold = false;
}

void ForgetNesting() {
    levelsHold = false;
}
