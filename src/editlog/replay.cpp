#include "editlog/replay.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/panes.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "editlog/edit_log.h"
#include "editlog/record_reader.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/nesting_depth.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>

void (*PatternListHook)(const char *name);
void (*TimingHook)();
int (*PasteRecordHook)(const LogRecord &record);

namespace {

constexpr int MODE_REPLAY = 0;
constexpr int MODE_PASTE = 5;

// Kinds from here on come in pairs, of which each undoes the other.
constexpr uint16_t FIRST_PAIR = 10;

// The unit code of a timing record is the basic unit times 4 plus the decimals.
constexpr int UNIT_SHIFT = 2;
constexpr uint16_t DECIMALS_MASK = 3;

enum class Outcome {
    Done,
    Misfit,  // the record does not fit the document
    Reported // there was no room for it, which has been told
};

// What FinishReplay has to do.
struct {
    bool references; // a reference may name a pattern that is not in use
    bool names;      // the name column may show what is out of date
} leftToDo;

struct Replay {
    const LogRecord &record;
    bool backward;

    uint32_t value() const { return backward ? record.oldValue : record.newValue; }
    // The record's pattern; it is in use.
    Pattern *pattern() const { return PatternFromId(record.pattern); }
    bool hasItem(bool reference) const {
        return record.item < pattern()->itemCount && pattern()->item(record.item).isReference() == reference;
    }
};

// --- old and new value ------------------------------------------------------------------------------

Outcome ReplayData(const Replay &replay, int (*set)(Pattern *, uint16_t, uint32_t)) {
    if (!replay.hasItem(false)) return Outcome::Misfit;
    set(replay.pattern(), replay.record.item, replay.value());
    return Outcome::Done;
}

Outcome ReplayUse(const Replay &replay, int (*set)(Pattern *, uint16_t, uint32_t)) {
    if (!replay.hasItem(true)) return Outcome::Misfit;
    set(replay.pattern(), replay.record.item, replay.value());
    return Outcome::Done;
}

Outcome ReplayParams(const Replay &replay) {
    const LoggedParams &params = replay.backward ? replay.record.oldParams : replay.record.newParams;
    SetPatternParams(replay.pattern(), params.stateTable, params.pinType, params.format,
                     static_cast<int32_t>(params.period), params.duty, params.clock);
    leftToDo.names = true;
    return Outcome::Done;
}

Outcome ReplayRename(const Replay &replay) {
    const std::string &name = replay.backward ? replay.record.oldName : replay.record.newName;
    RenamePattern(replay.pattern(), name.c_str());
    if (name != PatternFromId(replay.record.pattern)->name()) return Outcome::Reported;
    leftToDo.names = true;
    return Outcome::Done;
}

// Composites keep their members' full lengths, into which the clock goes. A multiplier of which the record's
// 16 bits have left nothing counts as 1, as everywhere.
void SetClockMultiplier(uint32_t multiplier) {
    multiplier = std::max(multiplier, 1u);
    if (Settings.ClockMultiplier == multiplier) return;
    Settings.ClockMultiplier = multiplier;
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        Pattern *pattern = PatternFromId(id);
        if (pattern->hasProperties() && pattern->clock() != 0) ForgetDuration(pattern);
    }
}

Outcome ReplayTiming(const Replay &replay) {
    const LogRecord &record = replay.record;
    uint16_t unit = replay.backward ? record.pattern : record.newUnit;
    // Units that the program does not know are stored as well: a file may name them, and all that follows in
    // the log fits all the same.
    Settings.BasicUnit = unit >> UNIT_SHIFT;
    Settings.Decimals = unit & DECIMALS_MASK;
    SetClockMultiplier(replay.backward ? record.oldMultiplier : record.newMultiplier);
    Settings.EndTime = replay.backward ? record.oldEnd : record.newEnd;
    if (TimingHook) TimingHook();
    if (DisplayOpen) InvalidateAllPanes();
    return Outcome::Done;
}

// --- items ------------------------------------------------------------------------------------------

Outcome DeleteRecordsItem(const Replay &replay) {
    Pattern *pattern = replay.pattern();
    if (pattern->itemCount == 0) return Outcome::Done;
    DeleteItem(pattern, std::min(replay.record.item, static_cast<uint16_t>(pattern->itemCount - 1)));
    return Outcome::Done;
}

uint16_t PlaceToInsert(const Replay &replay) {
    return std::min(replay.record.item, replay.pattern()->itemCount);
}

Outcome InsertData(const Replay &replay) {
    const LogRecord &record = replay.record;
    bool done = InsertTransition(replay.pattern(), PlaceToInsert(replay), record.value, record.duration);
    return done ? Outcome::Done : Outcome::Reported;
}

Outcome InsertUse(const Replay &replay) {
    const LogRecord &record = replay.record;
    bool isId = record.patternId != 0 && record.patternId < MAX_PATTERNS;
    if (!isId || !MayRefer(record.pattern, record.patternId)) return Outcome::Misfit;
    if (!PatternInUse(record.patternId)) leftToDo.references = true;
    bool done = InsertReference(replay.pattern(), static_cast<PatternKind>(record.ownerKind & 3),
                                PlaceToInsert(replay), record.patternId, record.scale, record.repeat,
                                record.sliceWidth, record.sliceOffset, record.forcedFormat);
    return done ? Outcome::Done : Outcome::Reported;
}

// --- patterns and rows ------------------------------------------------------------------------------

void TellLists(const std::string &name) {
    if (PatternListHook && !name.empty()) PatternListHook(name.c_str());
}

bool IsShown(uint16_t id) {
    return std::any_of(WaveRows, WaveRows + WaveView.RowCount,
                       [id](const WaveRow &row) { return row.PatternId == id; });
}

Outcome DeleteRecordsPattern(const Replay &replay) {
    if (IsShown(replay.record.pattern)) return Outcome::Misfit;
    leftToDo.references = true;
    DeletePattern(replay.pattern());
    TellLists(replay.record.name);
    return Outcome::Done;
}

// What a deletion leaves of a pattern's parameters before it removes the record. Where they were so already
// there is no record of them, and a new pattern has others.
void ResetParams(Pattern *pattern) {
    SetPatternParams(pattern, 0, 0, 0, 1, 100, 0);
}

Outcome CreateRecordsPattern(const Replay &replay) {
    const LogRecord &record = replay.record;
    if (record.pattern == 0 || record.pattern >= MAX_PATTERNS || PatternInUse(record.pattern)) {
        return Outcome::Misfit;
    }
    Pattern *pattern = CreatePattern(record.pattern, record.name.c_str(), record.width);
    if (!pattern) return Outcome::Reported;
    if (replay.backward) ResetParams(pattern);
    TellLists(record.name);
    return Outcome::Done;
}

Outcome RemoveRecordsRow(const Replay &replay) {
    uint16_t row = replay.record.item;
    if (row >= WaveView.RowCount) return Outcome::Misfit;
    HideRow(row);
    return Outcome::Done;
}

Outcome InsertRecordsRow(const Replay &replay) {
    uint16_t row = replay.record.item;
    if (!WaveRows || row > WaveView.RowCount || WaveView.RowCount >= MAX_ROWS) return Outcome::Misfit;
    AddWaveRow(replay.record.pattern, row);
    return Outcome::Done;
}

// --- by kind ----------------------------------------------------------------------------------------

Outcome ReplayOnPattern(const Replay &replay, uint16_t effectiveKind) {
    switch (effectiveKind) {
    case RecDelay:
        SetPatternDelay(replay.pattern(), replay.value());
        return Outcome::Done;
    case RecItemValue:
        return ReplayData(replay, SetItemValue);
    case RecItemDuration:
        return ReplayData(replay, SetItemDuration);
    case RecItemRepeat:
        return ReplayUse(replay, SetItemRepeat);
    case RecItemScale:
        return ReplayUse(replay, SetItemScale);
    case RecItemFormat:
        return ReplayUse(replay, SetItemFormat);
    case RecPatternParams:
        return ReplayParams(replay);
    case RecRename:
        return ReplayRename(replay);
    case RecDeleteTransition:
    case RecDeleteReference:
        return DeleteRecordsItem(replay);
    case RecInsertTransition:
        return InsertData(replay);
    case RecInsertReference:
        return InsertUse(replay);
    case RecDeletePattern:
        return DeleteRecordsPattern(replay);
    case RecRemoveRow:
        return RemoveRecordsRow(replay);
    case RecInsertRow:
        return InsertRecordsRow(replay);
    default: // never: the reader refuses all other kinds
        return Outcome::Misfit;
    }
}

Outcome ReplayRecord(const LogRecord &record, bool backward) {
    uint16_t effectiveKind = record.kind;
    if (record.kind >= FIRST_PAIR && backward) effectiveKind ^= 1;
    Replay replay = {record, backward};
    if (effectiveKind == RecTiming) return ReplayTiming(replay);
    if (effectiveKind == RecCreatePattern) return CreateRecordsPattern(replay);
    if (!PatternInUse(record.pattern)) return Outcome::Misfit;
    return ReplayOnPattern(replay, effectiveKind);
}

int RefuseRecord() {
    ProgramError("ApplicationExecuteLog - Invalid Command");
    return 0;
}

bool NamesNothing(const PatternItem &item) {
    return item.isReference() && !PatternInUse(item.patternId());
}

void DeleteDanglingReferences() {
    int32_t recording = EditLog.Recording;
    EditLog.Recording = 0;
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id) || ReferenceItems[id] == 0) continue;
        Pattern *pattern = PatternFromId(id);
        for (uint32_t i = pattern->itemCount; i-- > 0;) {
            if (NamesNothing(pattern->item(i))) DeleteItem(pattern, static_cast<uint16_t>(i));
        }
    }
    EditLog.Recording = recording;
}

} // namespace

int ApplicationExecuteLog(std::span<const uint8_t> payload, int direction, int32_t, int32_t, int mode) {
    if (mode != MODE_REPLAY && mode != MODE_PASTE) return 1;
    LogRecord record;
    if (!ReadRecord(payload, record)) return RefuseRecord();
    if (mode == MODE_PASTE) return PasteRecordHook ? PasteRecordHook(record) : 0;
    int held = LogHoldOpen(1);
    Outcome outcome = ReplayRecord(record, direction == 1);
    LogHoldOpen(held);
    if (outcome == Outcome::Misfit) return RefuseRecord();
    return outcome == Outcome::Done;
}

void FinishReplay() {
    if (leftToDo.references) DeleteDanglingReferences();
    if (leftToDo.names && DisplayOpen) {
        MeasureNameWidths();
        UpdateNameScrollBar();
        InvalidatePane(Pane::Name);
    }
    leftToDo = {};
}

void InitReplay() {
    leftToDo = {};
    ExecuteLogHook = ApplicationExecuteLog;
}
