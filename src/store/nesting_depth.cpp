#include "store/nesting_depth.h"

#include "store/pattern_store.h"
#include <algorithm>
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

} // namespace

bool WouldNestTooDeep(uint16_t pattern, uint16_t target) {
    // A chain needs as many patterns.
    if (HighestPatternId <= MAX_NESTING) return false;
    int32_t below = Depths(0).of(target);
    return DepthAbove(pattern) + 1 + below > static_cast<int32_t>(MAX_NESTING);
}
