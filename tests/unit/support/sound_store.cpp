#include "unit/support/sound_store.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/selection.h"
#include "editlog/edit_log.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <array>
#include <vector>

namespace {

std::string Of(uint32_t id, const std::string &what) {
    return "pattern " + std::to_string(id) + " '" + PatternFromId(id)->name() + "': " + what;
}

std::string ReferenceFault() {
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        if (pattern->moved()) return Of(id, "the mark of a move was left");
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            const PatternItem &item = pattern->item(i);
            if (!item.isReference()) continue;
            if (!PatternInUse(item.patternId())) return Of(id, "refers to nothing at " + std::to_string(i));
            if (item.scale() == 0 || item.repeat() == 0) return Of(id, "a count of 0");
        }
    }
    if (uint16_t id = FindReferenceCircle()) return Of(id, "refers to itself");
    return "";
}

// An independent count, in numbers that cannot overflow unseen. A length is at most TIME_FOREVER.
class Recount {
public:
    uint64_t items(uint32_t id) {
        if (known[id]) return lengths[id];
        const Pattern *pattern = PatternFromId(id);
        uint64_t length = pattern->kind() == PatternKind::Plain ? sum(pattern) : shortest(pattern);
        known[id] = true;
        return lengths[id] = length;
    }

private:
    static uint64_t held(uint64_t length) { return length < TIME_FOREVER ? length : TIME_FOREVER; }

    uint64_t sum(const Pattern *pattern) {
        uint64_t total = 0;
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            const PatternItem &item = pattern->item(i);
            if (!item.isReference()) {
                total = held(total + item.duration());
                continue;
            }
            uint64_t one = items(item.patternId());
            if (one == TIME_FOREVER || item.repeat() == REPEAT_FOREVER) {
                total = TIME_FOREVER;
            } else {
                total = held(total + held(held(one * item.scale()) * item.repeat()));
            }
        }
        return total;
    }

    uint64_t full(uint32_t id) {
        const Pattern *pattern = PatternFromId(id);
        // Clock times period, in 32 bits.
        uint32_t unit = 1;
        if (pattern->format() != SignalFormat::None) {
            if (pattern->clock() != 0) unit = Settings.ClockMultiplier;
            unit *= static_cast<uint32_t>(pattern->period);
        }
        return held(held(items(id) * unit) + pattern->delay);
    }

    uint64_t shortest(const Pattern *pattern) {
        uint64_t least = pattern->itemCount ? TIME_FOREVER : 0;
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            const PatternItem &item = pattern->item(i);
            uint64_t length = item.duration();
            if (item.isReference()) {
                uint16_t target = item.patternId();
                bool node = PatternFromId(target)->hasProperties();
                length = held((node ? full(target) : items(target)) * item.scale());
            }
            if (length < least) least = length;
        }
        return least;
    }

    std::array<bool, MAX_PATTERNS> known = {};
    std::array<uint64_t, MAX_PATTERNS> lengths = {};
};

std::string LengthFault() {
    Recount recount;
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        if (!pattern->durationValid()) return Of(id, "its length is not known");
        uint64_t length = recount.items(id);
        if (length != pattern->duration) {
            return Of(id, "a length of " + std::to_string(pattern->duration) + " instead of " +
                              std::to_string(length));
        }
    }
    return "";
}

std::string RowFault() {
    if (WaveView.RowCount > MAX_ROWS) return "too many rows";
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        if (!PatternInUse(WaveRows[row].PatternId)) {
            return "row " + std::to_string(row) + " shows no pattern";
        }
    }
    return "";
}

std::string SelectionFault() {
    if (EditSelection.SelKind == SEL_NONE) return "";
    if (EditSelection.SelKind > SEL_COMPOSITE)
        return "a selection of kind " + std::to_string(EditSelection.SelKind);
    if (EditSelection.SelDepth == 0 || EditSelection.SelDepth > MAX_FRAMES) {
        return "a selection of depth " + std::to_string(EditSelection.SelDepth);
    }
    for (uint32_t i = 0; i < EditSelection.SelDepth; i++) {
        const SelFrame &frame = EditSelection.SelFrames[i];
        std::string at = "frame " + std::to_string(i);
        if (!PatternInUse(frame.patternId)) return at + " is on no pattern";
        if (frame.item > PatternFromId(frame.patternId)->itemCount) return at + " is behind the last item";
        if (frame.start > frame.end) return at + " ends before it starts";
        if (i == 0) continue;
        const SelFrame &above = EditSelection.SelFrames[i - 1];
        const Pattern *parent = PatternFromId(above.patternId);
        bool leads = above.item < parent->itemCount && parent->item(above.item).isReference() &&
                     parent->item(above.item).patternId() == frame.patternId;
        if (!leads) return at + " is not what the frame above refers to";
    }
    return "";
}

} // namespace

std::string DocumentFault() {
    for (std::string (*look)() : {HeapFault, ReferenceFault, RowFault, SelectionFault}) {
        std::string fault = look();
        if (!fault.empty()) return fault;
    }
    std::string fault = LengthFault();
    if (!fault.empty()) return fault;
    return LogAtMark() || EditLog.Recording == 0 ? "" : "an action is still open";
}
