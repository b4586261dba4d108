#include "edit/edit_dialog.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/cursor_readout.h"
#include "display/viewport.h"
#include "edit/range_edits.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "edit/wrappers.h"
#include "editlog/edit_log.h"
#include "shell/edit_dialog_view.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "wdl/number_text.h"
#include <algorithm>
#include <string_view>

namespace {

constexpr uint32_t MAX_SCALE = 65535;
constexpr uint32_t MAX_COUNT = REPEAT_FOREVER - 1;

// What is edited, as it was before. Records move, so that patterns go by their ids.
struct Edited {
    uint16_t id, root, item;
    TimeVal start, end; // of the deepest frame
    TimeVal from, to;   // the same in the pattern's own time
    TimeVal duration;   // of all its items

    Pattern *pattern() const { return PatternFromId(id); }
    bool hasNext() const { return item + 1 < pattern()->itemCount; }
    bool isStretch() const { return from < to; }
    // Channels lie side by side. They cannot be replaced or wrapped as if they came one after the other.
    bool isPlain() const { return pattern()->kind() == PatternKind::Plain; }
    bool isSequence() const { return isPlain() && duration > 0; }
    // It may take no time.
    bool isOneReference() const {
        return isPlain() && pattern()->itemCount == 1 && pattern()->item(0).isReference();
    }
    bool hasData() const { return item < pattern()->itemCount && !pattern()->item(item).isReference(); }
    bool hasReference() const { return item < pattern()->itemCount && pattern()->item(item).isReference(); }
};

Edited WhatIsEdited() {
    const SelFrame &frame = DeepestFrame();
    return {frame.patternId,
            EditSelection.SelFrames[0].patternId,
            frame.item,
            frame.start,
            frame.end,
            LocalTime(frame.start),
            LocalTime(frame.end),
            SelectedPattern()->duration};
}

void Reselect(const Edited &edited, TimeVal t1, TimeVal t2) {
    if (PatternInUse(edited.root))
        SelectRange(PatternFromId(edited.root), t1, t2, Settings.ShowPatternWaveforms, 0);
}

void ReselectAt(const Edited &edited, TimeVal time) {
    Reselect(edited, time, time);
}

// From the start of the row's pattern.
void ReselectAll(const Edited &edited, TimeVal end) {
    Reselect(edited, PatternFromId(edited.root)->delay, end);
}

uint32_t MaskToWidth(const Pattern *pattern, uint32_t value) {
    if (!pattern->isBus() || pattern->width >= 32) return value;
    return value & ((1u << pattern->width) - 1);
}

// --- duration -------------------------------------------------------------------------------------

void ScrollToFrame() {
    const SelFrame &frame = DeepestFrame();
    TimeVal middle = TimeMidpoint(frame.start, frame.end);
    TimeVal right = TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth));
    if (EditSelection.SelKind == SEL_NONE || middle <= right) return;
    ScrollTimeTo(middle, false);
}

void CommitDuration(const Edited &edited, const char *text, int enter) {
    if (!edited.hasData()) return;
    TimeVal unit = EditSelection.SelScale;
    TimeVal units = TimeDiv(TimeAdd(TimeParse(text), unit / 2), unit);
    units = std::clamp<TimeVal>(units, 1, MAX_ITEM_DURATION);
    if (SetItemDuration(edited.pattern(), edited.item, units)) ValidateDurations();
    TimeVal end = TimeAdd(edited.start, TimeMul(units, unit));
    ReselectAt(edited, enter && edited.hasNext() ? TimeAdd(end, 1) : TimeSub(end, 1));
    ScrollToFrame();
    if (EditSelection.SelKind == SEL_PULSE) EditDialog.KeepFocus = EDIT_DURATION;
}

// --- value ----------------------------------------------------------------------------------------

// The neighbours are not joined at once, or the item would vanish under the cursor of who types along a wave.
// What is typed so in a row, with nothing else in between, is one undo step.
void SetPulseValue(const Edited &edited, uint32_t value, int walkOn) {
    if (!edited.hasData()) return;
    if (PendingMerge != 0 && EditDialog.ValueTyped) LogJoinAction();
    SetItemValue(edited.pattern(), edited.item, value);
    PendingMerge = edited.id;
    ReselectAt(edited, walkOn && edited.hasNext() ? TimeAdd(edited.end, 1) : TimeSub(edited.end, 1));
}

void SetSpanValue(const Edited &edited, uint32_t value) {
    if (!edited.isStretch()) return;
    auto index = static_cast<uint16_t>(edited.item + (EditSelection.SelOffset != 0 ? 1 : 0));
    ReplaceRange(edited.pattern(), edited.from, edited.to, index, value);
    ValidateDurations();
    ReselectAt(edited, edited.start);
}

void SetWholeValue(const Edited &edited, uint32_t value) {
    if (!edited.isSequence()) return;
    DeleteRange(edited.pattern(), 0, edited.duration);
    InsertTransition(edited.pattern(), 0, value, std::min(edited.duration, MAX_ITEM_DURATION));
    ValidateDurations();
    ReselectAt(edited, PatternFromId(edited.root)->delay);
}

void CommitValue(const Edited &edited, uint32_t value, int walkOn, uint16_t focus) {
    value = MaskToWidth(edited.pattern(), value);
    switch (EditSelection.SelKind) {
    case SEL_WHOLE:
        SetWholeValue(edited, value);
        break;
    case SEL_SPAN:
        SetSpanValue(edited, value);
        break;
    default: // SEL_PULSE
        SetPulseValue(edited, value, walkOn);
        EditDialog.KeepFocus = focus;
        break;
    }
}

uint32_t ScannedValue(const char *text) {
    uint32_t value = 0;
    const char *digits = text;
    while (*digits == ' ' || *digits == '\t') digits++;
    if (digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) digits += 2;
    ReadHexadecimal(digits, value);
    return value;
}

// --- scale and repeat -----------------------------------------------------------------------------

// A count of 16 bits, 1 without a number. Where that is below 1 the field says 1.
uint32_t ScannedCount(uint16_t field, const char *text) {
    uint32_t number = 1;
    ReadDecimal(text, number);
    number &= 0xFFFF;
    if (number >= 1) return number;
    SetEditText(field, "1");
    return 1;
}

// A wrapper that is scaled and repeated once does nothing.
void FinishReference(const Edited &edited, uint32_t count) {
    if (count == 1) FlattenPattern(edited.pattern());
    ValidateDurations();
    RebuildFrames(0);
}

void CommitScale(const Edited &edited, uint32_t scale) {
    uint16_t kind = EditSelection.SelKind;
    if (kind == SEL_PATTERN) {
        if (edited.hasReference() && SetItemScale(edited.pattern(), edited.item, scale))
            FinishReference(edited, scale);
        return;
    }
    if (scale <= 1) return;
    if (kind == SEL_SPAN && edited.isStretch()) {
        WrapRange(edited.pattern(), edited.from, edited.to, scale, 1);
        ValidateDurations();
        // The old end, without the scale.
        Reselect(edited, edited.start, edited.end);
    } else if (kind == SEL_WHOLE && (edited.isOneReference() || edited.isSequence())) {
        if (edited.isOneReference()) {
            uint32_t product = std::min(edited.pattern()->item(0).scale() * scale, MAX_SCALE);
            SetItemScale(edited.pattern(), 0, product);
        } else {
            WrapRange(edited.pattern(), 0, edited.duration, scale, 1);
        }
        ValidateDurations();
        // The items' length in their own units, without delay and clock; that is meant.
        ReselectAll(edited, PatternFromId(edited.root)->duration);
    }
}

uint32_t RepeatTimes(uint32_t repeat, uint32_t times) {
    if (repeat == REPEAT_FOREVER || times == REPEAT_FOREVER) return REPEAT_FOREVER;
    return std::min(repeat * times, MAX_COUNT);
}

// Where a stretch of that length ends when it is repeated.
TimeVal RepeatedEnd(const Edited &edited, uint32_t repeat) {
    return TimeAdd(edited.start, TimeMul(edited.end - edited.start, repeat));
}

void CommitRepeat(const Edited &edited, uint32_t repeat) {
    uint16_t kind = EditSelection.SelKind;
    if (kind == SEL_PATTERN) {
        if (edited.hasReference() && SetItemRepeat(edited.pattern(), edited.item, repeat))
            FinishReference(edited, repeat);
        return;
    }
    if (repeat <= 1) return;
    if (kind == SEL_SPAN && edited.isStretch()) {
        WrapRange(edited.pattern(), edited.from, edited.to, 1, repeat);
        ValidateDurations();
        Reselect(edited, edited.start, RepeatedEnd(edited, repeat));
    } else if (kind == SEL_WHOLE && (edited.isOneReference() || edited.isSequence())) {
        if (edited.isOneReference())
            SetItemRepeat(edited.pattern(), 0, RepeatTimes(edited.pattern()->item(0).repeat(), repeat));
        else
            WrapRange(edited.pattern(), 0, edited.duration, 1, repeat);
        ValidateDurations();
        ReselectAll(edited, PatternDuration(PatternFromId(edited.root)));
    }
}

uint32_t ScannedRepeat(const char *text) {
    bool forever = EditDialog.ForeverAllowed && text[0] == '#';
    uint32_t repeat = forever ? REPEAT_FOREVER : ScannedCount(EDIT_REPEAT, text);
    CheckForever(repeat == REPEAT_FOREVER);
    return repeat;
}

// --- the end of each write ------------------------------------------------------------------------

void ShowEdited() {
    if (EditSelection.SelKind != SEL_NONE) {
        const SelFrame &frame = DeepestFrame();
        WaveView.SelectStart = frame.start;
        WaveView.SelectEnd = frame.end;
        WaveView.CursorTime = std::clamp(WaveView.CursorTime, frame.start, std::max(frame.start, frame.end));
    }
    LogEndAction();
    RepaintChanged(true);
    ShowSelection();
    ShowCursorReadout();
}

// A text of blanks is what an emptied field holds, and a duration without a digit is none.
bool IsEntry(uint16_t id, std::string_view text) {
    if (id == EDIT_DURATION) return text.find_first_of("0123456789") != std::string_view::npos;
    return text.find_first_not_of(" \t") != std::string_view::npos;
}

void CommitText(uint16_t id, const Edited &edited, const char *text, int enter) {
    switch (id) {
    case EDIT_DURATION:
        CommitDuration(edited, text, enter);
        break;
    case EDIT_VALUE:
        CommitValue(edited, ScannedValue(text), enter, EDIT_VALUE);
        break;
    case EDIT_SCALE:
        CommitScale(edited, ScannedCount(EDIT_SCALE, text));
        break;
    default:
        CommitRepeat(edited, ScannedRepeat(text));
        break;
    }
}

// Whether the kind of the selection has the field.
bool SelectionHas(uint16_t id) {
    switch (id) {
    case EDIT_DURATION:
        return SelectionHasDuration();
    case EDIT_VALUE:
        return SelectionHasValue();
    case EDIT_SCALE:
        return SelectionHasScale();
    case EDIT_REPEAT:
        return SelectionHasRepeat();
    default:
        return false;
    }
}

} // namespace

void FieldCommit(uint16_t id, int enter) {
    if (!SelectionHas(id)) return;
    char text[EDIT_TEXT_LENGTH + 1] = "";
    GetEditText(id, text, sizeof text);
    if (!IsEntry(id, text)) {
        ShowFieldAgain(id);
        if (enter) FocusEditField(id);
        return;
    }
    int held = LogHoldOpen(1);
    CommitText(id, WhatIsEdited(), text, enter);
    ShowEdited();
    EditDialog.ValueTyped = enter && id == EDIT_VALUE;
    LogHoldOpen(held);
}

void PickState(int dblClick) {
    int32_t row = SelectedState();
    if (row < 0 || !SelectionHasStates()) return;
    int held = LogHoldOpen(1);
    CommitValue(WhatIsEdited(), static_cast<uint32_t>(row), dblClick, EDIT_STATES);
    ShowEdited();
    EditDialog.ValueTyped = dblClick != 0;
    LogHoldOpen(held);
}

void ForeverClicked(int checked) {
    SetEditText(EDIT_REPEAT, checked ? "##" : "1");
    FieldCommit(EDIT_REPEAT, 1);
}
