#include "edit/clipboard.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "display/wave_view.h"
#include "edit/buses.h"
#include "edit/range_edits.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "edit/wrappers.h"
#include "editlog/edit_log.h"
#include "editlog/record_reader.h"
#include "editlog/replay.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <algorithm>
#include <array>

namespace {

// --- the paste map --------------------------------------------------------------------------------

enum class PasteFault { None, NoRoom, TooDeep };

// The patterns that the replay is in the middle of, each nested in the one before it; the first is the one
// that is pasted into. 1 is the first index that counts.
struct PasteMapRecord {
    PasteFault fault; // why nothing of the paste may stay
    uint16_t PasteDepth;
    std::array<uint16_t, MAX_FRAMES + 1> PasteNew; // ids here
    std::array<uint16_t, MAX_FRAMES + 1> PasteOld; // ids in the records; the first has none
    uint16_t PasteIndex;                           // where the next item at the top goes
};
PasteMapRecord PasteMap;

Pattern *Target() {
    uint16_t id = PasteMap.PasteNew[PasteMap.PasteDepth];
    return PatternInUse(id) ? PatternFromId(id) : nullptr;
}

uint16_t PlaceInTarget(const Pattern *target, const LogRecord &record) {
    uint16_t index = PasteMap.PasteDepth < 2 ? PasteMap.PasteIndex : record.item;
    return std::min(index, target->itemCount);
}

// The kind of a pattern that gets a reference which comes from one of kind `kind`. What holds items stays
// what it is: an undo could not tell what it was.
PatternKind KindWithReference(const Pattern *pattern, PatternKind kind) {
    return pattern->itemCount > 0 ? pattern->kind() : kind;
}

int Fail(PasteFault fault) {
    PasteMap.fault = fault;
    return 0;
}

int Misfit() {
    ProgramError("ApplicationExecuteLog - Invalid Command");
    return 0;
}

// An insertion was made, or had no room, which has been told.
int Inserted(const Pattern *pattern) {
    if (!pattern) return Fail(PasteFault::NoRoom);
    if (PasteMap.PasteDepth < 2) PasteMap.PasteIndex++;
    return 1;
}

// --- records --------------------------------------------------------------------------------------

bool NameFits(const std::string &name) {
    return name.size() < NAME_SIZE && !FindPattern(name.c_str());
}

int PastePattern(const LogRecord &record) {
    const Pattern *target = Target();
    bool widthFits = record.width >= 1 && record.width <= MAX_BUS_WIDTH;
    if (!target || !widthFits || !NameFits(record.name)) return Misfit();
    if (PasteMap.PasteDepth >= MAX_FRAMES) return Fail(PasteFault::TooDeep);
    // An unnamed pattern is as wide as what it is nested in: a file does not tell its width, and writes its
    // values by it. The clipboard may stem from a wave of another width, where a plain delete came after the
    // cut.
    const Pattern *pattern = CreatePattern(0, record.name.c_str(), target->width);
    if (!pattern) return Fail(PasteFault::NoRoom);
    PasteMap.PasteDepth++;
    PasteMap.PasteOld[PasteMap.PasteDepth] = record.pattern;
    PasteMap.PasteNew[PasteMap.PasteDepth] = pattern->id;
    if (PatternListHook && !record.name.empty()) PatternListHook(record.name.c_str());
    return 1;
}

int PasteTransition(const LogRecord &record) {
    Pattern *target = Target();
    if (!target) return Misfit();
    return Inserted(InsertTransition(target, PlaceInTarget(target, record), record.value, record.duration));
}

// A reference to a pattern that the file did not make just before. Only named ones are used in several
// places, and none in itself.
bool MayBeShared(uint16_t id) {
    const uint16_t *first = PasteMap.PasteNew.data() + 2;
    const uint16_t *last = PasteMap.PasteNew.data() + PasteMap.PasteDepth + 1;
    bool inProgress = first < last && std::find(first, last, id) != last;
    return PatternInUse(id) && PatternFromId(id)->nameLength != 0 && !inProgress;
}

int PasteReference(const LogRecord &record) {
    uint16_t depth = PasteMap.PasteDepth;
    uint16_t id = record.patternId;
    bool finished = depth > 1 && id == PasteMap.PasteOld[depth];
    if (finished) {
        // That pattern is complete, and this is the reference to it.
        id = PasteMap.PasteNew[depth];
        PasteMap.PasteDepth--;
    }
    auto kind = static_cast<PatternKind>(record.ownerKind);
    Pattern *target = Target();
    bool fits = target && kind <= PatternKind::Reference && (finished || MayBeShared(id));
    if (fits) {
        kind = KindWithReference(target, kind);
        target = InsertReference(target, kind, PlaceInTarget(target, record), id, record.scale, record.repeat,
                                 record.sliceWidth, record.sliceOffset, record.forcedFormat);
        if (Inserted(target)) return 1;
    }
    // Nothing refers to it: PasteEnd takes it away.
    PasteMap.PasteDepth = depth;
    return fits ? 0 : Misfit();
}

void RemoveWithItems(uint16_t id) {
    for (uint16_t count = PatternFromId(id)->itemCount; count > 0; count--) {
        Pattern *pattern = PatternFromId(id);
        auto last = static_cast<uint16_t>(count - 1);
        if (pattern->item(last).isReference())
            DeleteReference(pattern, last);
        else
            DeleteItem(pattern, last);
    }
    DeletePattern(PatternFromId(id));
}

// --- nesting --------------------------------------------------------------------------------------

// How deep the check below stands.
uint32_t ClipRecursion;
// The greatest depth at which a pattern was found good: there is no need to look at it again above that.
using GoodDepths = std::array<uint8_t, MAX_PATTERNS>;

int CheckDepth(uint16_t id, GoodDepths &good) {
    if (!PatternInUse(id) || (good[id] != 0 && ClipRecursion + 1 <= good[id])) return 0;
    if (++ClipRecursion >= MAX_FRAMES) {
        ClipRecursion--;
        return 1;
    }
    int answer = 0;
    const Pattern *pattern = PatternFromId(id);
    for (uint32_t i = 0; i < pattern->itemCount && !answer; i++) {
        if (pattern->item(i).isReference()) answer = CheckDepth(pattern->item(i).patternId(), good);
    }
    if (!answer) good[id] = static_cast<uint8_t>(ClipRecursion);
    ClipRecursion--;
    return answer;
}

// 1 if references follow one another too far: around in a circle, or through 20 patterns.
int CheckNesting(uint16_t id) {
    GoodDepths good = {};
    return CheckDepth(id, good);
}

// --- the paste ------------------------------------------------------------------------------------

// Takes what is selected away, and sets `index` to where the new items go. False without room.
bool RemoveOverwritten(Pattern *pattern, uint16_t &index) {
    const SelFrame &frame = DeepestFrame();
    TimeVal from = LocalTime(frame.start);
    TimeVal to = LocalTime(frame.end);
    index = frame.item;
    switch (EditSelection.SelKind) {
    case SEL_SPAN:
        if (EditSelection.SelOffset != 0) index++;
        return from >= to || DeleteRange(pattern, from, to);
    case SEL_PULSE:
    case SEL_PATTERN:
        // Of a reference, too: what it alone owned stays for the undo, with nothing that refers to it.
        if (frame.item < pattern->itemCount) DeleteItem(pattern, frame.item);
        return true;
    case SEL_WHOLE:
        return DeleteRange(pattern, 0, pattern->duration);
    default:
        return true;
    }
}

void PasteClipboard(uint16_t id, uint16_t index) {
    uint16_t count = PatternFromId(id)->itemCount;
    PasteBegin(id, index);
    ReplayClipFile();
    uint16_t end = PasteEnd();
    Pattern *pattern = PatternFromId(id);
    if (pattern->itemCount <= count) return;
    MergeItems(pattern, static_cast<uint16_t>(end - 1));
    if (index != 0) MergeItems(pattern, static_cast<uint16_t>(index - 1));
}

void PlaceReference(uint16_t id, uint16_t index, uint16_t patternId) {
    Pattern *pattern = PatternFromId(id);
    PatternKind kind = KindWithReference(pattern, PatternKind::Plain);
    if (!InsertReference(pattern, kind, index, patternId, 1, 1, 0, 0, 0)) Fail(PasteFault::NoRoom);
}

// The clipboard, or with `patternId` a reference to that pattern, in the place of the selection.
PasteFault Paste(uint16_t id, uint16_t patternId) {
    PasteMap.fault = PasteFault::None;
    uint16_t index;
    if (!RemoveOverwritten(PatternFromId(id), index)) return PasteFault::NoRoom;
    index = std::min(index, PatternFromId(id)->itemCount);
    if (patternId != 0)
        PlaceReference(id, index, patternId);
    else
        PasteClipboard(id, index);
    bool tooDeep = PasteMap.fault == PasteFault::None && (CheckNesting(id) || NestsTooDeep(id));
    return tooDeep ? PasteFault::TooDeep : PasteMap.fault;
}

int Refuse(const char *text) {
    ShowErrorStrip(text);
    DrawOverlay(true);
    return 0;
}

} // namespace

void PasteBegin(uint16_t patternId, uint16_t index) {
    PasteMap = {};
    PasteMap.PasteDepth = 1;
    PasteMap.PasteNew[1] = patternId;
    PasteMap.PasteIndex = index;
}

uint16_t PasteEnd() {
    for (; PasteMap.PasteDepth > 1; PasteMap.PasteDepth--) {
        uint16_t id = PasteMap.PasteNew[PasteMap.PasteDepth];
        if (PatternFromId(id)->nameLength == 0) RemoveWithItems(id);
    }
    PasteMap.PasteDepth = 0;
    return PasteMap.PasteIndex;
}

int PasteRecord(const LogRecord &record) {
    // Backward a deletion is an insertion. All else was written for a split or a resize, and does not count.
    switch (record.kind) {
    case RecDeletePattern:
        return PastePattern(record);
    case RecDeleteTransition:
        return PasteTransition(record);
    case RecDeleteReference:
        return PasteReference(record);
    default:
        return 1;
    }
}

int PasteAtSelection(uint16_t patternId) {
    Pattern *pattern = SelectedPattern();
    if (!pattern) return 0;
    DrawOverlay(false);
    uint16_t id = pattern->id;
    if (patternId != 0 && (!PatternInUse(patternId) || PatternFromId(patternId)->width != pattern->width))
        return Refuse("Pattern bit count not consistant");
    if (patternId == 0 && pattern->width != ClipWidth) return Refuse("Clipboard bit count not consistant");

    StoreCopy before = CopyStore();
    int32_t start = EditLog.rPtr;
    PasteFault fault = Paste(id, patternId);
    if (fault != PasteFault::None) {
        LogForget(start);
        RestoreStore(before);
    }
    if (fault == PasteFault::TooDeep) ShowErrorStrip("Recursion violation in paste");
    WaveView.SelectActive = false;
    EditSelection.SelKind = SEL_NONE;
    ValidateDurations();
    ShowSelection();
    RepaintChanged(true);
    return fault == PasteFault::None;
}
