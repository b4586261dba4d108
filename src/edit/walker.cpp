#include "edit/walk_state.h"

#include "config/settings.h"
#include "store/queries.h"
#include "store/state_table.h"

WalkStateRecord WalkState;

namespace {

// A parent goes on with its next item behind the window's end. That is a few segments in any one pattern,
// which holds far fewer items than this, but a nest of patterns could go on for ages.
constexpr uint32_t MAX_BEHIND = 65536;

// What the walk of PatternValueAt has found.
uint32_t valueFound;

bool WalkSimple(const Pattern *pattern, TimeVal unit);

bool WalkInside(const Pattern *pattern, TimeVal unit) {
    return pattern->kind() == PatternKind::Plain ? WalkSimple(pattern, unit) : WalkComposite(pattern, unit);
}

// The clock of a node; the forced formats of a node without one go by it, too.
uint32_t ClockPeriod(const Pattern *node) {
    auto period = static_cast<uint32_t>(node->period);
    return node->clock() ? period * Settings.ClockMultiplier : period;
}

// What the second part of a clock period shows. `value` itself where the format has no such part.
uint32_t AlternateValue(uint32_t value) {
    const Pattern *root = WalkState.Root;
    uint32_t mask = root->width >= 32 ? 0xFFFFFFFFu : BitMask(root->width);
    switch (static_cast<SignalFormat>(WalkState.Format)) {
    case SignalFormat::RZ:
        return 0;
    case SignalFormat::R1:
        return root->isBus() ? mask : 1;
    case SignalFormat::RC:
        if (root->isBus()) return ~value & mask;
        return StateLevel(root->stateTable(), value) == 0 ? 1 : 0;
    default:
        return value;
    }
}

// Delivers the two parts of each period of the item from the window on. What lies behind the last whole
// period is left out, and the time goes on from there.
bool WalkPhases(const ClockPhases &phases, uint32_t alternate, TimeVal length, TimeVal end) {
    uint32_t value = WalkState.segment.value;
    TimeVal start = WalkState.Cursor;
    TimeVal count = length / phases.period;
    TimeVal skipped = start < WalkState.From ? (WalkState.From - start) / phases.period : 0;
    if (skipped >= count) {
        WalkState.Cursor = end;
        return true;
    }
    start = TimeAdd(start, TimeMul(skipped, phases.period));
    bool goOn = true;
    bool last = false;
    for (uint32_t i = 2 * skipped; i < 2 * count && goOn && !last; ++i) {
        bool second = i & 1;
        WalkState.segment.value = second ? alternate : value;
        TimeVal part = second ? phases.period - phases.high : phases.high;
        TimeVal partEnd = TimeAdd(start, part);
        goOn = DeliverSegment(SegLevel, start, partEnd, part);
        last = partEnd >= WalkState.To;
        start = partEnd;
    }
    WalkState.Cursor = start;
    return goOn;
}

// A data item of a clocked format, under WalkSync. False in `handled` if it shows nothing but its value.
bool WalkClocked(const PatternItem &item, TimeVal length, TimeVal end, bool &handled) {
    ClockPhases phases = PhasesOf(WalkState.Root, ClockPeriod(WalkState.Root));
    uint32_t alternate = phases.divided() ? AlternateValue(item.value()) : item.value();
    handled = alternate != item.value();
    if (!handled) return true;
    if (phases.period / 2 >= WalkState.MinDetail) return WalkPhases(phases, alternate, length, end);
    TimeVal start = WalkState.Cursor;
    WalkState.Cursor = end;
    return DeliverSegment(SegCoarse, start, end, length);
}

bool WalkData(const PatternItem &item, TimeVal length, TimeVal end) {
    WalkState.segment.value = item.value();
    TimeVal start = WalkState.Cursor;
    if (length < WalkState.MinDetail) {
        WalkState.Cursor = end;
        // Twice, as callbacks expect it of an item that is too fine.
        return DeliverSegment(SegCoarse, start, end, length) && DeliverSegment(SegCoarse, start, end, length);
    }
    if ((WalkState.WalkFlags & WalkSync) && WalkState.Format > static_cast<uint32_t>(SignalFormat::NRZ)) {
        bool handled;
        bool goOn = WalkClocked(item, length, end, handled);
        if (handled) return goOn;
    }
    WalkState.Cursor = end;
    return DeliverSegment(SegLevel, start, end, length);
}

bool WalkRepetition(const Pattern *target, TimeVal unit, TimeVal one) {
    if (!(WalkState.WalkFlags & WalkNames) || target->nameLength == 0) return WalkInside(target, unit);
    TimeVal start = WalkState.Cursor;
    if (WalkState.WalkFlags & WalkWaves) {
        WalkState.WalkFlags &= ~WalkNames;
        bool goOn = WalkInside(target, unit);
        WalkState.WalkFlags |= WalkNames;
        if (!goOn) return false;
    } else {
        WalkState.Cursor = TimeAdd(start, one);
    }
    WalkState.segment.pattern = target;
    return DeliverSegment(SegBlock, start, WalkState.Cursor, WalkState.Cursor - start);
}

bool WalkRepetitions(const PatternItem &item, const Pattern *target, TimeVal unit) {
    Repetitions left = RepetitionsOf(item, target, unit);
    if (left.one == 0) return true;
    TimeVal behind = TimeAdd(WalkState.Cursor, left.all);
    if (behind < WalkState.From) {
        WalkState.Cursor = behind;
        return true;
    }
    WalkState.Cursor = SkipRepetitions(left, WalkState.Cursor);
    if (left.one < WalkState.MinDetail) {
        TimeVal start = WalkState.Cursor;
        WalkState.Cursor = TimeAdd(start, left.all);
        return DeliverSegment(SegCoarse, start, WalkState.Cursor, left.all);
    }
    while (left.count > 0) {
        if (left.count != REPEAT_FOREVER) --left.count;
        TimeVal start = WalkState.Cursor;
        if (!WalkRepetition(target, unit, left.one)) return false;
        // A repetition that takes no time, as its cached length is out of date, would go round for nothing.
        if ((WalkState.segment.segFlags & SegLast) || WalkState.Cursor == start) break;
    }
    return true;
}

bool TooFarBehind() {
    if (WalkState.Cursor < WalkState.To) return false;
    return ++WalkState.Behind > MAX_BEHIND;
}

bool WalkReference(const PatternItem &item, TimeVal unit) {
    if (TooFarBehind()) return false;
    const Pattern *target = ReferredPattern(item);
    if (!target) return true;
    uint32_t formatAround = WalkState.Format;
    if (item.forcedFormat()) WalkState.Format = item.forcedFormat();
    bool goOn = WalkRepetitions(item, target, TimeMul(item.scale(), unit));
    WalkState.Format = formatAround;
    return goOn;
}

// Items one after the other. Only a data item that reaches the window's end stops the rest: behind a
// reference that does, the next item gets its turn, and it is for the callback to end the walk.
bool WalkSimple(const Pattern *pattern, TimeVal unit) {
    const PatternItem *item = pattern->items();
    for (const PatternItem *end = item + pattern->itemCount; item != end; ++item) {
        if (item->isReference()) {
            if (!WalkReference(*item, unit)) return false;
            continue;
        }
        TimeVal length = TimeMul(item->duration(), unit);
        TimeVal itemEnd = TimeAdd(WalkState.Cursor, length);
        if (itemEnd <= WalkState.From) {
            WalkState.Cursor = itemEnd;
            continue;
        }
        if (!WalkData(*item, length, itemEnd)) return false;
        if (WalkState.Cursor >= WalkState.To) return true;
    }
    return true;
}

// The level of value 0 in front of a node with a delay. True if the walk goes on.
bool WalkDelay(TimeVal delay) {
    WalkState.Cursor = delay;
    if (delay > WalkState.From && !DeliverSegment(SegLevel, WalkState.From, delay, delay)) return false;
    return delay < WalkState.To;
}

int KeepValue(const WalkSegment *segment) {
    valueFound = segment->value;
    return segment->end < WalkState.To;
}

} // namespace

int WalkPattern(WalkCallback callback, Pattern *pattern, TimeVal from, TimeVal to, uint32_t flags,
                TimeVal minDetail) {
    TimeVal total = PatternDuration(pattern);
    if (total == 0) return 0;
    WalkState = {};
    WalkState.Callback = callback;
    WalkState.Root = pattern;
    WalkState.segment.pattern = pattern;
    WalkState.WalkFlags = flags;
    WalkState.MinDetail = minDetail;
    WalkState.Total = total;
    WalkState.From = from < total ? from : total - 1;
    WalkState.To = TimeMin(to, total);
    WalkState.Format = static_cast<uint32_t>(pattern->format());
    WalkState.Answer = 1;

    TimeVal unit = PatternUnit(pattern);
    if ((flags & WalkWaves) && total < minDetail) {
        WalkState.segment = {WalkState.From, TimeAdd(WalkState.From, total), total, 0, SegLast | SegCoarse,
                             pattern};
        WalkState.Answer = callback(&WalkState.segment);
    } else if (pattern->kind() != PatternKind::Plain) {
        WalkComposite(pattern, unit);
    } else if (pattern->delay == 0 || WalkDelay(pattern->delay)) {
        WalkSimple(pattern, unit);
    }
    return WalkState.Answer;
}

uint32_t PatternValueAt(Pattern *pattern, TimeVal time, bool sync) {
    valueFound = 0;
    TimeVal total = PatternDuration(pattern);
    if (total == 0) return 0;
    TimeVal t = time < total ? time : total - 1;
    WalkPattern(KeepValue, pattern, t, t + 1, sync ? WalkWaves | WalkSync : WalkWaves, 0);
    return valueFound;
}

const Pattern *WalkRoot() {
    return WalkState.Root;
}
