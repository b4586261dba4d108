#include "unit/support/plain_expansion.h"

#include "config/settings.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include <algorithm>

namespace {

struct Expansion {
    const Pattern *root; // decides the clock and the state table
    bool sync;
    uint64_t limit;
    std::vector<PlainLevel> levels = {};
    std::vector<uint32_t> formats = {}; // in force for each level
    uint64_t time = 0;

    bool full() const { return time >= limit; }
    void add(uint32_t value, uint64_t length, uint32_t format = 0) {
        levels.push_back({time, time + length, value});
        formats.push_back(format);
        time += length;
    }
};

uint32_t Mask(uint32_t width) {
    return width >= 32 ? 0xFFFFFFFFu : (1u << width) - 1;
}

uint64_t PeriodOf(const Pattern *node) {
    uint64_t clock = node->clock() ? Settings.ClockMultiplier : 1;
    return clock * static_cast<uint64_t>(node->period);
}

uint64_t UnitOf(const Pattern *pattern) {
    return pattern->format() == SignalFormat::None ? 1 : PeriodOf(pattern);
}

// What a format shows behind the high part of a period of a node.
uint32_t ShownInRest(const Pattern *node, uint32_t format, uint32_t value) {
    switch (format) {
    case 2:
        return 0;
    case 3:
        return Mask(node->width);
    case 4:
        if (node->isBus()) return ~value & Mask(node->width);
        return StateLevel(node->stateTable(), value) == 0;
    default:
        return value;
    }
}

void ExpandData(Expansion &out, uint32_t value, uint64_t length, uint32_t format) {
    uint64_t period = PeriodOf(out.root);
    uint64_t high = period * out.root->duty / 100;
    uint32_t rest = out.sync ? ShownInRest(out.root, format, value) : value;
    if (rest == value || high == 0 || high >= period) {
        out.add(value, length, format);
        return;
    }
    for (uint64_t passed = 0; passed + period <= length && !out.full(); passed += period) {
        out.add(value, high);
        out.add(rest, period - high);
    }
}

void ExpandComposite(Expansion &out, const Pattern *pattern, uint64_t unit);

void ExpandItems(Expansion &out, const Pattern *pattern, uint64_t unit, uint32_t format) {
    for (uint32_t i = 0; i < pattern->itemCount && !out.full(); ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference()) {
            ExpandData(out, item.value(), item.duration() * unit, format);
            continue;
        }
        const Pattern *target = PatternFromId(item.patternId());
        uint32_t formatInside = item.forcedFormat() ? item.forcedFormat() : format;
        for (uint32_t pass = 0; pass < item.repeat() && !out.full(); ++pass) {
            uint64_t before = out.time;
            if (target->kind() == PatternKind::Plain) {
                ExpandItems(out, target, unit * item.scale(), formatInside);
            } else {
                ExpandComposite(out, target, unit * item.scale());
            }
            if (out.time == before) break;
        }
    }
}

// The members of a composite, each expanded for itself; a slice is cut out of the values afterwards.
struct Member {
    std::vector<PlainLevel> levels;
    uint32_t bits;
    uint32_t shift;
};

// The phases of a level of a member. They are those of its slice, and the complement is always one of bits.
void AddPhases(std::vector<PlainLevel> &levels, const PlainLevel &level, uint32_t rest, uint64_t period,
               uint64_t high) {
    for (uint64_t start = level.start; start + period <= level.end; start += period) {
        levels.push_back({start, start + high, level.value});
        levels.push_back({start + high, start + period, rest});
    }
}

Member ExpandMember(const Expansion &out, const PatternItem &item, uint64_t unit, uint64_t length) {
    const Pattern *target = PatternFromId(item.patternId());
    uint32_t ownFormat = static_cast<uint32_t>(target->format());
    bool clocked = target->hasProperties() && ownFormat != 0;
    Expansion plain = {target, false, length};
    if (target->delay) plain.add(0, target->delay);
    ExpandItems(plain, target, clocked ? PeriodOf(target) : unit * item.scale(),
                item.forcedFormat() ? item.forcedFormat() : ownFormat);

    Member member;
    bool slice = item.sliceWidth() && item.sliceWidth() < target->width;
    member.bits = slice ? item.sliceWidth() : target->width;
    member.shift = item.sliceOffset();
    uint32_t mask = Mask(member.bits);
    uint64_t period = PeriodOf(target);
    uint64_t high = period * target->duty / 100;
    bool phases = clocked && out.sync && high != 0 && high < period;
    for (size_t i = 0; i < plain.levels.size(); ++i) {
        PlainLevel level = plain.levels[i];
        level.value = level.value >> member.shift & mask;
        if (phases && plain.formats[i] >= 2) {
            uint32_t rests[] = {0, mask, level.value ^ mask};
            AddPhases(member.levels, level, rests[plain.formats[i] - 2], period, high);
        } else {
            member.levels.push_back(level);
        }
    }
    return member;
}

uint64_t LengthOfItems(const Pattern *pattern) {
    return pattern->duration == TIME_FOREVER ? UINT64_MAX : pattern->duration;
}

void ExpandComposite(Expansion &out, const Pattern *pattern, uint64_t unit) {
    uint64_t length = LengthOfItems(pattern);
    uint64_t room = out.limit - std::min(out.limit, out.time);
    length = length > room / unit ? room : length * unit;
    std::vector<Member> members;
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        for (uint32_t r = 0; r < item.repeat() && members.size() < 32; ++r) {
            members.push_back(ExpandMember(out, item, unit, length));
        }
    }
    std::vector<size_t> places(members.size());
    for (uint64_t time = 0; time < length;) {
        uint64_t next = UINT64_MAX;
        uint32_t value = 0;
        for (size_t m = 0; m < members.size(); ++m) {
            const std::vector<PlainLevel> &levels = members[m].levels;
            size_t &place = places[m];
            while (place + 1 < levels.size() && levels[place].end <= time) ++place;
            value = members[m].bits >= 32 ? 0 : value << members[m].bits;
            if (levels.empty()) continue;
            value |= levels[place].value;
            if (levels[place].end > time) next = std::min(next, levels[place].end);
        }
        next = std::min(next, length);
        out.add(value, next - time);
        time = next;
    }
}

} // namespace

std::vector<PlainLevel> ExpandPlainly(const Pattern *pattern, bool sync, uint64_t limit) {
    Expansion out = {pattern, sync, limit};
    if (pattern->kind() != PatternKind::Plain) {
        ExpandComposite(out, pattern, UnitOf(pattern));
    } else {
        if (pattern->delay) out.add(0, pattern->delay);
        ExpandItems(out, pattern, UnitOf(pattern), static_cast<uint32_t>(pattern->format()));
    }
    return out.levels;
}

std::vector<PlainLevel> WithinWindow(const std::vector<PlainLevel> &levels, uint64_t from, uint64_t to) {
    std::vector<PlainLevel> result;
    for (PlainLevel level : levels) {
        level.start = std::max(level.start, from);
        level.end = std::min(level.end, to);
        if (level.start >= level.end) continue;
        if (!result.empty() && result.back().value == level.value && result.back().end == level.start) {
            result.back().end = level.end;
        } else {
            result.push_back(level);
        }
    }
    return result;
}
