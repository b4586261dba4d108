#include "edit/show_selection.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog.h"
#include "edit/selection.h"
#include "editlog/edit_log.h"
#include "shell/commands.h"
#include "shell/frame.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include <initializer_list>

uint16_t PendingMerge;

namespace {

constexpr const char *NOTHING_SELECTED = "Nothing Selected";
constexpr const char *UNNAMED = "(...)";

// What ShowSelection enables, by the rules of the menu.
constexpr uint32_t selectionCommands[] = {COMMAND_CUT,        COMMAND_COPY,  COMMAND_DELETE,
                                          COMMAND_EXPAND_BUS, COMMAND_PASTE, COMMAND_DUPLICATE,
                                          COMMAND_HIDE};

bool KindIsOneOf(std::initializer_list<uint16_t> kinds) {
    for (uint16_t kind : kinds)
        if (EditSelection.SelKind == kind) return SelectedPattern() != nullptr;
    return false;
}

bool IsBus() {
    return SelectedPattern()->isBus();
}

// --- the text -------------------------------------------------------------------------------------

std::string NameOf(const Pattern *pattern) {
    return *pattern->name() != '\0' ? pattern->name() : UNNAMED;
}

std::string TargetName(const Pattern *pattern) {
    uint16_t item = DeepestFrame().item;
    if (item >= pattern->itemCount || !PatternInUse(pattern->item(item).patternId())) return UNNAMED;
    return NameOf(PatternFromId(pattern->item(item).patternId()));
}

std::string PulseText(const Pattern *pattern) {
    uint32_t value = EditSelection.SelValue;
    if (!pattern->isBus()) {
        const StateTable *table = StateTableOrDefault(EditSelection.SelStateTable);
        return std::string("Selected Bit Pulse = ") + StateRowOf(table, value).stateName;
    }
    char text[BUS_TEXT_SIZE] = "";
    return std::string("Selected Bus Pulse = ") + FormatBusValue(value, pattern->width, text, sizeof text);
}

// --- the merge that waits -------------------------------------------------------------------------

bool CanMergeAny(const Pattern *pattern) {
    for (uint16_t index = 0; index < pattern->itemCount; index++)
        if (CanMergeItems(pattern, index)) return true;
    return false;
}

// The frame by which the selection goes through the pattern on its way down; null if it does not.
SelFrame *PathThrough(uint16_t id) {
    for (uint16_t i = 0; i < EditSelection.SelDepth; i++)
        if (EditSelection.SelFrames[i].patternId == id) return &EditSelection.SelFrames[i];
    return nullptr;
}

// A merge keeps the references, one behind the other, but they move.
uint16_t ReferencesBefore(const Pattern *pattern, uint16_t end) {
    uint16_t count = 0;
    for (uint16_t index = 0; index < end && index < pattern->itemCount; index++)
        count += pattern->item(index).isReference();
    return count;
}

uint16_t PlaceOfReference(const Pattern *pattern, uint16_t number) {
    uint16_t index = 0;
    for (; index < pattern->itemCount; index++)
        if (pattern->item(index).isReference() && number-- == 0) break;
    return index;
}

void MergeAllAround(Pattern *pattern) {
    SelFrame *path = PathThrough(pattern->id);
    uint16_t number = path ? ReferencesBefore(pattern, path->item) : 0;
    MergeAllItems(pattern);
    if (path) path->item = PlaceOfReference(pattern, number);
}

void DoPendingMerge() {
    if (PendingMerge == 0) return;
    bool stays = EditSelection.SelKind != SEL_NONE && DeepestFrame().patternId == PendingMerge;
    if (stays) return;
    uint16_t id = PendingMerge;
    PendingMerge = 0;
    // Where nothing is to be joined the log stays as it is, with what can be redone.
    if (!PatternInUse(id) || !CanMergeAny(PatternFromId(id))) return;
    LogJoinAction();
    MergeAllAround(PatternFromId(id));
    LogEndAction();
    ValidateDurations();
    RepaintChanged(false);
}

// --- the view -------------------------------------------------------------------------------------

void MoveCursor(TimeVal time) {
    if (time == WaveView.CursorTime) return;
    bool wasOn = Overlay.overlayOn;
    DrawOverlay(false);
    WaveView.CursorTime = time;
    if (wasOn) DrawOverlay(true);
}

void MoveToSelection() {
    const SelFrame &frame = DeepestFrame();
    if (EditSelection.SelKind == SEL_EDGE) {
        TimeVal right = TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth));
        if (frame.start < WaveView.ViewLeft || frame.start > right) ScrollTimeTo(frame.start, false);
    } else if (EditSelection.SelKind == SEL_PATTERN) {
        TimeVal cursor = WaveView.CursorTime;
        TimeVal toStart = cursor > frame.start ? cursor - frame.start : frame.start - cursor;
        TimeVal toEnd = cursor > frame.end ? cursor - frame.end : frame.end - cursor;
        MoveCursor(toStart <= toEnd ? frame.start : frame.end);
    }
}

} // namespace

void InitShowSelection() {
    InitSelection();
    PendingMerge = 0;
}

std::string SelectionText() {
    const Pattern *pattern = SelectedPattern();
    if (!pattern) return NOTHING_SELECTED;
    switch (EditSelection.SelKind) {
    case SEL_EDGE:
        return "Selected Edge in Pattern " + NameOf(pattern);
    case SEL_WHOLE:
        return "Selected Entire Pattern " + NameOf(pattern);
    case SEL_PULSE:
        return PulseText(pattern);
    case SEL_PATTERN:
        return "Selected Pattern " + TargetName(pattern);
    case SEL_SPAN:
        return "Selected Interval in Pattern " + NameOf(pattern);
    case SEL_COMPOSITE:
        return "Selected Composite Bus";
    default:
        return NOTHING_SELECTED;
    }
}

void ShowSelection() {
    // Of a value the dialog says afterwards that it was one.
    EndTyping();
    DoPendingMerge();
    MoveToSelection();
    FillEditDialog(SelectionText().c_str());
    for (uint32_t command : selectionCommands) EnableCommand(command, CommandIsAllowed(command));
}

bool SelectionHasDuration() {
    return KindIsOneOf({SEL_PULSE});
}

bool SelectionHasValue() {
    return KindIsOneOf({SEL_WHOLE, SEL_PULSE, SEL_SPAN}) && IsBus();
}

bool SelectionHasScale() {
    return KindIsOneOf({SEL_WHOLE, SEL_PATTERN, SEL_SPAN, SEL_COMPOSITE});
}

bool SelectionHasRepeat() {
    return SelectionHasScale();
}

bool SelectionHasStates() {
    return KindIsOneOf({SEL_WHOLE, SEL_PULSE, SEL_SPAN}) && !IsBus();
}

bool SelectionCanBeCut() {
    return KindIsOneOf({SEL_WHOLE, SEL_PULSE, SEL_PATTERN, SEL_SPAN, SEL_COMPOSITE});
}

bool SelectionTakesPaste() {
    return KindIsOneOf({SEL_EDGE, SEL_WHOLE, SEL_PULSE, SEL_PATTERN, SEL_SPAN}) &&
           SelectedPattern()->width == ClipWidth;
}
