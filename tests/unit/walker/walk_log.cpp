#include "walk_log.h"

#include "store/pattern_store.h"
#include "store/queries.h"

namespace {

std::vector<WalkSegment> kept;
size_t keptLimit;

int Keep(const WalkSegment *segment) {
    kept.push_back(*segment);
    return kept.size() < keptLimit ? 1 : 0;
}

} // namespace

WalkResult Walk(uint16_t id, const WalkWindow &window, size_t limit) {
    kept.clear();
    keptLimit = limit;
    int answer = WalkPattern(Keep, PatternFromId(id), window.from, window.to, window.flags, window.minDetail);
    return {answer, kept};
}

std::string TextOf(const std::vector<WalkSegment> &segments) {
    std::string text;
    for (const WalkSegment &s : segments) {
        if (!text.empty()) text += " ";
        text += std::to_string(s.start) + "-" + std::to_string(s.end);
        if (s.segFlags & SegBlock) {
            text += std::string("[") + s.pattern->name() + "]";
        } else {
            text += "=" + std::to_string(s.value);
        }
        if (s.segFlags & SegCoarse) text += "~";
        if (s.segFlags & SegLast) text += "L";
    }
    return text;
}

std::string WalkText(uint16_t id, const WalkWindow &window) {
    return TextOf(Walk(id, window).segments);
}

std::vector<PlainLevel> LevelsOf(const std::vector<WalkSegment> &segments) {
    std::vector<PlainLevel> levels;
    for (const WalkSegment &s : segments) levels.push_back({s.start, s.end, s.value});
    return levels;
}

uint16_t IdOf(const char *name) {
    Pattern *pattern = FindPattern(name);
    return pattern ? pattern->id : 0;
}
