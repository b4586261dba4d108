#include "unit/edit/selection_fixture.h"

#include "store/pattern_store.h"
#include "store/queries.h"

std::string Selection::select(uint16_t id, TimeVal t1, TimeVal t2, int drill, int pick) {
    ValidateDurations();
    SelectRange(PatternFromId(id), t1, t2, drill, pick);
    return selected();
}

std::string Selection::click(uint16_t id, TimeVal t, int drill) {
    return select(id, t, t, drill, CLICK);
}

std::string Selection::selected() {
    std::string text = std::to_string(EditSelection.SelKind);
    if (EditSelection.SelKind == SEL_NONE) return text;
    for (uint32_t i = 0; i < EditSelection.SelDepth; i++) {
        const SelFrame &frame = EditSelection.SelFrames[i];
        std::string name = PatternFromId(frame.patternId)->name();
        text += " " + std::to_string(frame.start) + "-" +
                (frame.end == TIME_FOREVER ? "ever" : std::to_string(frame.end)) + "@" +
                (name.empty() ? "-" : name) + ":" + std::to_string(frame.item);
        if (frame.repeatIndex) text += "#" + std::to_string(frame.repeatIndex);
    }
    return text;
}

std::string Selection::items(uint16_t id) {
    const Pattern *pattern = PatternFromId(id);
    std::string text;
    for (uint32_t i = 0; i < pattern->itemCount; i++) {
        const PatternItem &item = pattern->item(i);
        text += i ? " " : "";
        text +=
            item.isReference() ? "ref" : std::to_string(item.value()) + ":" + std::to_string(item.duration());
    }
    return text;
}

uint16_t Selection::threeLevels() {
    return MakePattern("A", {{0, 100}, {1, 100}, {0, 100}});
}

uint16_t Selection::part(const char *name) {
    return MakePattern(name, {{0, 10}, {1, 30}});
}

uint16_t Selection::around(const Use &use) {
    uint16_t id = MakePattern("A", {{0, 100}});
    AddReference(id, use);
    AddTransition(id, 1, 100);
    return id;
}
