#include "edit/selection.h"

#include "display/viewport.h"
#include "edit/range_edits.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>

EditSelectionRecord EditSelection;

namespace {

// What a mouse hits beside an edge.
constexpr int32_t SLACK_PIXELS = 3;

// The search in progress: a running time, and the range asked for.
struct SearchRecord {
    TimeVal run;
    TimeVal t1, t2;
    TimeVal slack;
    TimeVal end; // of the row's pattern
    bool drill;
};
SearchRecord Search;

// The pattern that a reference names, null if that is not in use.
const Pattern *TargetOf(const PatternItem &item) {
    return item.isReference() && PatternInUse(item.patternId()) ? PatternFromId(item.patternId()) : nullptr;
}

// The times that a reference takes where a unit of its pattern takes `unit`.
struct ReferenceTimes {
    TimeVal one; // of one repetition
    TimeVal all;
};
ReferenceTimes TimesOf(const PatternItem &item, TimeVal unit) {
    const Pattern *target = TargetOf(item);
    if (!target) return {0, 0};
    TimeVal one = TimeMul(target->duration, TimeMul(item.scale(), unit));
    if (one == 0) return {0, 0};
    return {one, item.repeat() == REPEAT_FOREVER ? TIME_FOREVER : TimeMul(one, item.repeat())};
}

TimeVal TimeOfItem(const PatternItem &item, TimeVal unit) {
    return item.isReference() ? TimesOf(item, unit).all : TimeMul(item.duration(), unit);
}

Pattern *PatternOf(const SelFrame &frame) {
    return PatternInUse(frame.patternId) ? PatternFromId(frame.patternId) : nullptr;
}

// The item that a frame names, null if it is not there.
const PatternItem *ItemOf(const SelFrame &frame) {
    const Pattern *pattern = PatternOf(frame);
    return pattern && frame.item < pattern->itemCount ? &pattern->item(frame.item) : nullptr;
}

SelFrame &PushFrame(const Pattern *pattern) {
    SelFrame &frame = EditSelection.SelFrames[EditSelection.SelDepth++];
    frame = {};
    frame.patternId = pattern->id;
    return frame;
}

void SelectPulse(SelFrame &frame, const PatternItem &item, TimeVal start, TimeVal end) {
    frame.start = start;
    frame.end = end;
    EditSelection.SelValue = item.value();
    EditSelection.SelKind = SEL_PULSE;
}

// --- a span of time -------------------------------------------------------------------------------

void SelectSpan(const Pattern *pattern);

// The range lies in one reference, from `Search.run` on, whose frame is the deepest one.
void SelectInReference(const Pattern *pattern, const PatternItem &item, const ReferenceTimes &times) {
    uint16_t depth = EditSelection.SelDepth;
    SelFrame &frame = DeepestFrame();
    const Pattern *target = TargetOf(item);
    frame.start = Search.run;
    frame.end = TimeAdd(Search.run, times.all);
    frame.repeatIndex = TimeDiv(Search.t1 - frame.start, times.one);
    EditSelection.SelKind = SEL_PATTERN;
    if (target->kind() != PatternKind::Plain || pattern->kind() != PatternKind::Plain) {
        EditSelection.SelKind = SEL_COMPOSITE;
        return;
    }
    if (*target->name() != '\0' && !Search.drill) return;
    if (Search.t2 - Search.t1 >= times.one || depth == MAX_FRAMES) return;

    TimeVal outerUnit = EditSelection.SelScale;
    EditSelection.SelKind = SEL_NONE;
    EditSelection.SelScale = TimeMul(outerUnit, item.scale());
    Search.run = TimeAdd(frame.start, TimeMul(frame.repeatIndex, times.one));
    if (item.scale() > 1) {
        Search.t1 -= TimeMod(Search.t1 - frame.start, EditSelection.SelScale);
        Search.t2 -= TimeMod(Search.t2 - frame.start, EditSelection.SelScale);
    }
    SelectSpan(target);
    const SelFrame &found = DeepestFrame();
    if (TimeSub(found.end, found.start) != times.one) return;
    // All of one repetition is the reference itself.
    EditSelection.SelDepth = depth;
    EditSelection.SelScale = outerUnit;
    EditSelection.SelKind = SEL_PATTERN;
}

// The span ends in the reference at `index`, and snaps to its start or its end. `firstStart` is where the
// span's first item begins.
void EndSpanAtReference(const Pattern *pattern, uint16_t index, TimeVal firstStart,
                        const ReferenceTimes &times) {
    SelFrame &frame = DeepestFrame();
    bool before = Search.t2 - Search.run < times.one / 2;
    Search.t2 = before ? Search.run : TimeAdd(Search.run, times.all);
    EditSelection.SelItems = static_cast<uint16_t>(index - frame.item + (before ? 0 : 1));
    frame.start = Search.t1;
    frame.end = Search.t2;
    if (EditSelection.SelItems > 1) {
        EditSelection.SelKind = SEL_SPAN;
    } else {
        const PatternItem &item = pattern->item(frame.item);
        EditSelection.SelKind = SEL_PATTERN;
        if (!item.isReference()) SelectPulse(frame, item, firstStart, Search.t2);
    }
}

// Selects what the range covers in the pattern, which begins at `Search.run`. A range that goes on behind the
// last item selects nothing.
void SelectSpan(const Pattern *pattern) {
    SelFrame &frame = PushFrame(pattern);
    TimeVal firstStart = Search.run;
    for (uint16_t index = 0; index < pattern->itemCount; index++) {
        const PatternItem &item = pattern->item(index);
        bool first = frame.item == index;
        ReferenceTimes times = TimesOf(item, EditSelection.SelScale);
        TimeVal start = Search.run;
        TimeVal end = TimeAdd(start, TimeOfItem(item, EditSelection.SelScale));
        if (first) firstStart = start;
        if (first && Search.t1 >= end) {
            frame.item++;
        } else if (item.isReference()) {
            if (first && Search.t2 <= end) return SelectInReference(pattern, item, times);
            if (!first && Search.t2 <= end) return EndSpanAtReference(pattern, index, firstStart, times);
            if (first) {
                // The span starts in the reference, and snaps to its start or its end.
                bool behind = end - Search.t1 < times.one / 2;
                Search.t1 = behind ? end : start;
                if (behind) frame.item++;
            }
        } else {
            if (first) {
                EditSelection.SelOffset = Search.t1 - start;
                if (Search.t1 == Search.t2) Search.t1 = start;
                frame.start = Search.t1;
            }
            if (Search.t2 <= end) {
                if (!first) {
                    EditSelection.SelItems = static_cast<uint16_t>(index - frame.item + 1);
                    frame.start = Search.t1;
                    frame.end = Search.t2;
                    EditSelection.SelKind = SEL_SPAN;
                } else if (Search.t1 == start || Search.t2 == end) {
                    SelectPulse(frame, item, start, end);
                } else {
                    frame.end = Search.t2;
                    EditSelection.SelKind = SEL_STRETCH;
                }
                return;
            }
        }
        Search.run = end;
    }
}

// --- an edge --------------------------------------------------------------------------------------

void SelectEdge(const Pattern *pattern, uint16_t item, TimeVal time) {
    SelFrame &frame = EditSelection.SelFrames[0];
    frame.patternId = pattern->id;
    frame.item = item;
    frame.start = time;
    frame.end = time;
    EditSelection.SelKind = SEL_EDGE;
    EditSelection.SelDepth = 1;
}

// Looks for an item's start at `Search.t1`, from `Search.run` on, also inside of references. What is found
// stands in the first frame, wherever it lies.
bool PickEdge(const Pattern *pattern) {
    TimeVal reach = TimeAdd(Search.t1, Search.slack);
    for (uint16_t index = 0; index < pattern->itemCount; index++) {
        const PatternItem &item = pattern->item(index);
        if (Search.t1 <= TimeAdd(Search.run, Search.slack)) {
            SelectEdge(pattern, index, Search.run);
            return true;
        }
        TimeVal end = TimeAdd(Search.run, TimeOfItem(item, EditSelection.SelScale));
        if (reach < end) {
            const Pattern *target = TargetOf(item);
            if (!target || !Search.drill || target->kind() != PatternKind::Plain) return false;
            TimeVal one = TimesOf(item, EditSelection.SelScale).one;
            uint32_t repeatIndex = TimeDiv(Search.t1 - Search.run, one);
            EditSelection.SelFrames[0].repeatIndex = repeatIndex;
            Search.run = TimeAdd(Search.run, TimeMul(repeatIndex, one));
            EditSelection.SelScale = TimeMul(EditSelection.SelScale, item.scale());
            return PickEdge(target);
        }
        Search.run = end;
    }
    return false;
}

// --- a row's pattern ------------------------------------------------------------------------------

// Back to the start of the row's pattern.
void StartOver(const Pattern *root) {
    Search.run = root->delay;
    EditSelection.SelScale = EditSelection.SelRootUnit;
    EditSelection.SelDepth = 0;
    EditSelection.SelFrames[0] = {};
    EditSelection.SelFrames[0].patternId = root->id;
}

void SpanWithin(const Pattern *root) {
    Search.t1 = std::max(Search.t1, root->delay);
    Search.t2 = std::min(Search.t2, Search.end);
    SelectSpan(root);
}

void SelectWhole(const Pattern *root) {
    StartOver(root);
    EditSelection.SelFrames[0].start = root->delay;
    EditSelection.SelFrames[0].end = Search.end;
    EditSelection.SelDepth = 1;
    EditSelection.SelKind = SEL_WHOLE;
}

// A pattern that is one reference is that reference, unless the reference takes no time.
void SelectWholeOrReference(const Pattern *root) {
    if (root->itemCount == 1 && root->item(0).isReference()) {
        SpanWithin(root);
        if (EditSelection.SelKind != SEL_NONE) return;
    }
    SelectWhole(root);
}

// A stretch was dragged inside a level: there it becomes a pulse.
void MakePulse() {
    SelFrame &frame = DeepestFrame();
    Pattern *pattern = PatternOf(frame);
    TimeVal unit = EditSelection.SelScale;
    uint16_t count = pattern->itemCount;
    TimeVal offset = TimeDiv(EditSelection.SelOffset, unit);
    TimeVal length = TimeDiv(frame.end - frame.start, unit);
    uint16_t id = pattern->id;
    // Between two units of time there is nothing to split.
    if (offset > 0 && length > 0) {
        SplitItem(pattern, frame.item, offset, length, 0);
        ValidateDurations();
    }
    RebuildFrames(PatternFromId(id)->itemCount == count ? 0 : 1);
}

// The range lies behind the end: the pattern grows to meet it.
void GrowToMeet(Pattern *root) {
    uint16_t id = root->id;
    TimeVal unit = EditSelection.SelRootUnit;
    Search.t1 = Search.end;
    Search.t2 = TimeRoundTo(Search.t2, unit);
    TimeVal units = std::min(TimeDiv(TimeSub(Search.t2, Search.end), unit), MAX_ITEM_DURATION);
    ExtendPattern(root, Search.end, units);
    ValidateDurations();
    root = PatternFromId(id);
    Search.end = PatternDuration(root);
    SpanWithin(root);
}

bool IsNearTheEnd() {
    TimeVal distance = std::max(Search.t1, Search.end) - std::min(Search.t1, Search.end);
    return distance <= Search.slack;
}

// Where the repetition begins that a frame on a reference goes into; `unit` is the time of one unit of the
// frame's pattern.
TimeVal RepetitionStart(const SelFrame &frame, TimeVal unit) {
    const PatternItem *item = ItemOf(frame);
    if (!item || !item->isReference()) return frame.start;
    return TimeAdd(frame.start, TimeMul(frame.repeatIndex, TimesOf(*item, unit).one));
}

TimeVal LengthsBefore(const Pattern *pattern, uint16_t index, TimeVal unit) {
    TimeVal sum = 0;
    for (uint16_t i = 0; i < index; i++) sum = TimeAdd(sum, TimeOfItem(pattern->item(i), unit));
    return sum;
}

// Puts the frame's times right; the pattern begins at `Search.run`, which moves to where the repetition in
// question begins.
void RebuildFrame(SelFrame &frame, const Pattern *pattern) {
    frame.item = std::min(frame.item, static_cast<uint16_t>(pattern->itemCount - 1));
    TimeVal unit = EditSelection.SelScale;
    const PatternItem &item = pattern->item(frame.item);
    frame.start = TimeAdd(Search.run, LengthsBefore(pattern, frame.item, unit));
    if (!item.isReference()) {
        SelectPulse(frame, item, frame.start, TimeAdd(frame.start, TimeMul(item.duration(), unit)));
        return;
    }
    frame.end = TimeAdd(frame.start, TimesOf(item, unit).all);
    Search.run = RepetitionStart(frame, unit);
    EditSelection.SelScale = TimeMul(unit, item.scale());
    EditSelection.SelKind = SEL_PATTERN;
}

} // namespace

void InitSelection() {
    EditSelection = {};
    Search = {};
}

SelFrame &DeepestFrame() {
    return EditSelection.SelFrames[std::max<uint16_t>(EditSelection.SelDepth, 1) - 1u];
}

Pattern *SelectedPattern() {
    if (EditSelection.SelKind == SEL_NONE) return nullptr;
    return PatternOf(DeepestFrame());
}

Pattern *SelectionRoot() {
    if (EditSelection.SelKind == SEL_NONE) return nullptr;
    return PatternOf(EditSelection.SelFrames[0]);
}

TimeVal SelBase() {
    if (EditSelection.SelDepth < 2) {
        const Pattern *root = PatternOf(EditSelection.SelFrames[0]);
        return root ? root->delay : 0;
    }
    TimeVal unit = EditSelection.SelRootUnit;
    TimeVal base = 0;
    for (uint16_t i = 0; i + 1 < EditSelection.SelDepth; i++) {
        const SelFrame &frame = EditSelection.SelFrames[i];
        base = RepetitionStart(frame, unit);
        if (const PatternItem *item = ItemOf(frame)) unit = TimeMul(unit, item->scale());
    }
    return base;
}

TimeVal LocalTime(TimeVal time) {
    return TimeDiv(TimeSub(time, SelBase()), EditSelection.SelScale);
}

void SelectRange(Pattern *root, TimeVal t1, TimeVal t2, int drill, int pick) {
    EditSelection.SelKind = SEL_NONE;
    EditSelection.SelDepth = 0;
    if (!root) return;
    Search.t1 = std::min(t1, t2);
    Search.t2 = std::max(t1, t2);
    Search.end = PatternDuration(root);
    Search.slack = PixelsToTime(SLACK_PIXELS);
    Search.drill = drill != 0;
    EditSelection.SelOffset = 0;
    EditSelection.SelRootUnit = PatternUnit(root);
    EditSelection.SelStateTable = static_cast<uint16_t>(root->stateTable());
    EditSelection.SelItems = 1;
    StartOver(root);
    if (Search.t2 < root->delay) Search.t1 = Search.t2 = root->delay;
    bool click = pick && Search.t1 == Search.t2;

    if (click && IsNearTheEnd()) return SelectEdge(root, root->itemCount, Search.end);
    if (Search.t1 > Search.end) return GrowToMeet(root);
    if (Search.t1 <= root->delay && Search.t2 >= Search.end) return SelectWholeOrReference(root);
    if (click && PickEdge(root)) return;
    StartOver(root);
    SpanWithin(root);
    if (EditSelection.SelKind == SEL_STRETCH) MakePulse();
}

uint16_t SelectParent() {
    if (EditSelection.SelDepth > 1) {
        EditSelection.SelDepth--;
        const PatternItem *item = ItemOf(DeepestFrame());
        EditSelection.SelScale = item ? TimeDiv(EditSelection.SelScale, item->scale()) : 0;
        EditSelection.SelKind = item ? SEL_PATTERN : SEL_NONE;
        return EditSelection.SelKind;
    }
    Pattern *root = SelectionRoot();
    if (!root || (root->itemCount == 1 && root->item(0).isReference())) {
        EditSelection.SelKind = SEL_NONE;
    } else {
        SelectRange(root, 0, TIME_FOREVER, 0, 0);
    }
    return EditSelection.SelKind;
}

void RebuildFrames(int delta) {
    const Pattern *root = PatternOf(EditSelection.SelFrames[0]);
    if (!root) {
        EditSelection.SelKind = SEL_NONE;
        return;
    }
    SelFrame &deepest = DeepestFrame();
    deepest.item = static_cast<uint16_t>(std::max(deepest.item + delta, 0));
    Search.run = root->delay;
    EditSelection.SelScale = EditSelection.SelRootUnit;
    EditSelection.SelKind = SEL_NONE;
    for (uint16_t i = 0; i < EditSelection.SelDepth; i++) {
        SelFrame &frame = EditSelection.SelFrames[i];
        const Pattern *pattern = PatternOf(frame);
        // What the frame was on may be gone.
        if (!pattern || pattern->itemCount == 0) {
            EditSelection.SelKind = SEL_NONE;
            return;
        }
        RebuildFrame(frame, pattern);
        const PatternItem *item = ItemOf(frame);
        bool leadsOn = item->isReference() && i + 1 < EditSelection.SelDepth &&
                       item->patternId() == EditSelection.SelFrames[i + 1u].patternId;
        if (!leadsOn) EditSelection.SelDepth = static_cast<uint16_t>(i + 1);
    }
}

void ClearSelection() {
    EditSelection.SelKind = SEL_NONE;
    WaveView.SelectActive = false;
}
