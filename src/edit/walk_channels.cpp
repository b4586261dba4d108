// The walk of a composite: each member is a channel with a place of its own in its pattern, and a segment
// lasts until the first channel changes.
#include "edit/walk_state.h"

#include "store/queries.h"

namespace {

// The bits are joined in one word of 32.
constexpr uint32_t MAX_CHANNELS = 32;
// Deeper nesting than this many frames shows as activity.
constexpr uint32_t MAX_DEPTH = 10;

struct WalkFrame {
    const Pattern *pattern;
    const PatternItem *Item;
    TimeVal Scale;
    uint16_t Index;
    uint16_t RepeatsLeft; // passes, the present one included; REPEAT_FOREVER stays
    uint32_t Format;
    TimeVal PassStart;
};

struct WalkChannel {
    uint32_t Depth; // index of the top frame
    uint32_t value; // the present bits, masked
    TimeVal Next;   // time of the next change
    // ChanFlags
    uint32_t ChanCoarse : 1;
    uint32_t Bits : 6;  // the channel's width
    uint32_t Shift : 5; // the slice's low bit
    uint32_t ChanExpand : 1;
    uint32_t Phase; // half-periods left in the present item while a format is expanded
    TimeVal Period;
    TimeVal HighTime; // the part of a period that shows the value
    WalkFrame frames[MAX_DEPTH + 1];

    WalkFrame &top() { return frames[Depth]; }
    uint32_t bitsOf(const PatternItem &item) const { return (item.value() >> Shift) & BitMask(Bits); }
};

void StartFrame(WalkFrame &frame, const Pattern *pattern, TimeVal scale, uint32_t format, TimeVal time) {
    frame.pattern = pattern;
    frame.Item = pattern->items();
    frame.Scale = scale;
    frame.Index = 0;
    frame.RepeatsLeft = 1;
    frame.Format = format;
    frame.PassStart = time;
}

void NextItem(WalkFrame &frame) {
    ++frame.Item;
    ++frame.Index;
}

void SetUpChannel(WalkChannel &channel, const PatternItem &item, const Pattern *target, TimeVal unit) {
    channel = {};
    TimeVal scale = TimeMul(item.scale(), unit);
    uint32_t format = item.forcedFormat() ? item.forcedFormat() : static_cast<uint32_t>(target->format());
    if (target->hasProperties() && target->format() != SignalFormat::None) {
        // A node keeps its own clock, whatever uses it.
        scale = PatternUnit(target);
        if (WalkState.WalkFlags & WalkSync) {
            ClockPhases phases = PhasesOf(target, scale);
            channel.Period = phases.period;
            channel.HighTime = phases.high;
            channel.ChanExpand = phases.divided();
        }
    }
    channel.Next = TimeAdd(WalkState.Cursor, target->delay);
    uint32_t bits = target->width;
    if (item.sliceWidth() != 0 && item.sliceWidth() < bits) bits = item.sliceWidth();
    channel.Bits = bits & 63;
    channel.Shift = item.sliceOffset();
    StartFrame(channel.frames[0], target, scale, format, channel.Next);
}

// The number of channels that the composite needs.
uint32_t CountChannels(const Pattern *pattern) {
    uint32_t count = 0;
    for (uint32_t i = 0; i < pattern->itemCount && count < MAX_CHANNELS; ++i) {
        const PatternItem &item = pattern->item(i);
        if (item.isReference() && ReferredPattern(item)) count += item.repeat();
    }
    return count < MAX_CHANNELS ? count : MAX_CHANNELS;
}

void SetUpChannels(WalkChannel *channels, uint32_t count, const Pattern *pattern, TimeVal unit) {
    uint32_t n = 0;
    for (uint32_t i = 0; i < pattern->itemCount && n < count; ++i) {
        const PatternItem &item = pattern->item(i);
        const Pattern *target = item.isReference() ? ReferredPattern(item) : nullptr;
        if (!target) continue;
        for (uint32_t r = 0; r < item.repeat() && n < count; ++r) {
            SetUpChannel(channels[n++], item, target, unit);
        }
    }
}

// Each of the steps below brings a channel on by one item, frame or phase, and answers whether that was a
// change to show.

bool EndFrame(WalkChannel &channel) {
    WalkFrame &frame = channel.top();
    if (channel.Depth == 0) {
        channel.Next = TIME_FOREVER;
        return true;
    }
    // A pass that takes no time, as its cached length is out of date, would go round for nothing.
    if (frame.RepeatsLeft <= 1 || channel.Next == frame.PassStart) {
        --channel.Depth;
        return false;
    }
    if (frame.RepeatsLeft != REPEAT_FOREVER) --frame.RepeatsLeft;
    frame.Item = frame.pattern->items();
    frame.Index = 0;
    frame.PassStart = channel.Next;
    return false;
}

bool EnterReference(WalkChannel &channel) {
    WalkFrame &frame = channel.top();
    const PatternItem &item = *frame.Item;
    NextItem(frame);
    const Pattern *target = ReferredPattern(item);
    if (!target) return false;
    TimeVal scale = TimeMul(item.scale(), frame.Scale);
    Repetitions left = RepetitionsOf(item, target, scale);
    if (left.one == 0) return false;
    TimeVal behind = TimeAdd(channel.Next, left.all);
    if (behind < WalkState.From) {
        channel.Next = behind;
        return false;
    }
    if (left.one < WalkState.MinDetail || channel.Depth == MAX_DEPTH) {
        channel.Next = behind;
        channel.ChanCoarse = 1;
        return true;
    }
    channel.Next = SkipRepetitions(left, channel.Next);
    if (left.count == 0) return false;
    uint32_t format = item.forcedFormat() ? item.forcedFormat() : frame.Format;
    StartFrame(channel.frames[++channel.Depth], target, scale, format, channel.Next);
    channel.top().RepeatsLeft = left.count;
    return false;
}

bool ShowPhase(WalkChannel &channel) {
    WalkFrame &frame = channel.top();
    uint32_t mask = BitMask(channel.Bits);
    channel.value = channel.bitsOf(*frame.Item);
    if (channel.Phase & 1) {
        channel.Next = TimeAdd(channel.Next, channel.Period - channel.HighTime);
        switch (static_cast<SignalFormat>(frame.Format)) {
        case SignalFormat::RZ:
            channel.value = 0;
            break;
        case SignalFormat::R1:
            channel.value = mask;
            break;
        case SignalFormat::RC:
            channel.value ^= mask;
            break;
        default:
            break;
        }
    } else {
        channel.Next = TimeAdd(channel.Next, channel.HighTime);
    }
    if (--channel.Phase == 0) NextItem(frame);
    return true;
}

// Sets up the phases of a data item, or passes over the whole of it.
bool StartPhases(WalkChannel &channel) {
    WalkFrame &frame = channel.top();
    TimeVal length = TimeMul(frame.Item->duration(), frame.Scale);
    TimeVal behind = TimeAdd(channel.Next, length);
    uint32_t periods = length / channel.Period;
    bool visible = periods != 0 && length / (2 * periods) > TimeMul(2, WalkState.MinDetail);
    if (!visible) {
        channel.ChanCoarse = 1;
    } else {
        uint32_t skipped =
            channel.Next < WalkState.From ? (WalkState.From - channel.Next) / channel.Period : 0;
        if (behind >= WalkState.From && skipped < periods) {
            channel.Phase = 2 * (periods - skipped);
            channel.Next += skipped * channel.Period;
            return false;
        }
    }
    channel.Next = behind;
    NextItem(frame);
    return !visible;
}

bool ShowData(WalkChannel &channel) {
    WalkFrame &frame = channel.top();
    TimeVal length = TimeMul(frame.Item->duration(), frame.Scale);
    channel.Next = TimeAdd(channel.Next, length);
    if (length < WalkState.MinDetail) {
        channel.ChanCoarse = 1;
    } else {
        channel.value = channel.bitsOf(*frame.Item);
    }
    NextItem(frame);
    return true;
}

void AdvanceChannel(WalkChannel &channel) {
    channel.ChanCoarse = 0;
    bool changed = false;
    while (!changed) {
        const WalkFrame &frame = channel.top();
        if (frame.Index >= frame.pattern->itemCount) {
            changed = EndFrame(channel);
        } else if (frame.Item->isReference()) {
            changed = EnterReference(channel);
        } else if (channel.Phase != 0) {
            changed = ShowPhase(channel);
        } else if (channel.ChanExpand && frame.Format != static_cast<uint32_t>(SignalFormat::NRZ)) {
            changed = StartPhases(channel);
        } else {
            changed = ShowData(channel);
        }
    }
}

// Joins the channels' bits, the first channel highest, up to the first change.
bool EmitComposite(const WalkChannel *channels, uint32_t count) {
    TimeVal end = TIME_FOREVER;
    uint32_t value = 0;
    uint32_t kind = SegLevel;
    for (uint32_t i = 0; i < count; ++i) {
        const WalkChannel &channel = channels[i];
        value = (channel.Bits >= 32 ? 0 : value << channel.Bits) | channel.value;
        end = TimeMin(end, channel.Next);
        if (channel.ChanCoarse) kind = SegCoarse;
    }
    TimeVal start = WalkState.Cursor;
    WalkState.Cursor = end;
    WalkState.segment.value = value;
    return DeliverSegment(kind, start, end, end - start);
}

} // namespace

bool WalkComposite(const Pattern *pattern, TimeVal unit) {
    if (WalkState.Cursor >= WalkState.To) return true;
    uint32_t count = CountChannels(pattern);
    WalkChannel channels[MAX_CHANNELS];
    SetUpChannels(channels, count, pattern, unit);
    TimeVal stop = TimeAdd(WalkState.Cursor, TimeMul(pattern->duration, unit));
    bool last = false;
    while (!last) {
        for (uint32_t i = 0; i < count; ++i) {
            if (channels[i].Next <= WalkState.Cursor) AdvanceChannel(channels[i]);
        }
        // With all channels over this reaches to the end of time, and so is the last one.
        if (!EmitComposite(channels, count)) return false;
        last = (WalkState.segment.segFlags & SegLast) || WalkState.Cursor >= stop;
    }
    return true;
}
