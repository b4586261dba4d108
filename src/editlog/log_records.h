// The builders of log records: one for each kind of change, called by the mutators before they change
// anything. They do nothing while nothing is recorded.
#pragma once

#include <cstdint>
#include <string_view>

// What a record tells. Those below 10 hold an old and a new value; from 10 on an even kind and the odd one
// behind it undo each other.
enum RecordKind : uint16_t {
    RecDelay = 1,
    RecItemValue = 2,
    RecItemDuration = 3,
    RecItemRepeat = 4,
    RecItemScale = 5,
    RecItemFormat = 6,
    RecPatternParams = 7,
    RecRename = 8,
    RecTiming = 9,
    RecDeleteTransition = 10,
    RecInsertTransition = 11,
    RecDeleteReference = 14,
    RecInsertReference = 15,
    RecDeletePattern = 16,
    RecCreatePattern = 17,
    RecRemoveRow = 18,
    RecInsertRow = 19,
};

void LogDelay(uint16_t id, uint32_t oldDelay, uint32_t newDelay);
void LogItemValue(uint16_t id, uint16_t item, uint32_t oldValue, uint32_t newValue);
void LogItemDuration(uint16_t id, uint16_t item, uint32_t oldDuration, uint32_t newDuration);
void LogItemRepeat(uint16_t id, uint16_t item, uint16_t oldRepeat, uint16_t newRepeat);
void LogItemScale(uint16_t id, uint16_t item, uint16_t oldScale, uint16_t newScale);
void LogItemFormat(uint16_t id, uint16_t item, uint8_t oldFormat, uint8_t newFormat);

struct LoggedParams {
    uint32_t period;
    uint16_t duty;
    uint8_t stateTable;
    uint8_t clock;
    uint8_t format;
    uint8_t pinType;
};
void LogPatternParams(uint16_t id, const LoggedParams &oldParams, const LoggedParams &newParams);
// The names end where their text does, or at their first NUL.
void LogRename(uint16_t id, std::string_view oldName, std::string_view newName);
// A unit code is the basic unit times 4 plus the decimals. Of the four times only the low 16 bits are kept;
// that is meant.
void LogTiming(uint16_t oldUnit, uint16_t newUnit, uint16_t oldMultiplier, uint16_t newMultiplier,
               uint16_t oldEnd, uint16_t newEnd);
// `insert` 1 for an insertion, 0 for a deletion.
void LogTransition(int insert, uint16_t id, uint16_t item, uint32_t value, uint32_t duration);
void LogReference(int insert, uint16_t id, uint32_t kind, uint16_t item, uint16_t patternId, uint16_t scale,
                  uint16_t repeat, uint8_t sliceWidth, uint8_t sliceOffset, uint8_t forcedFormat);
void LogPattern(int create, uint16_t id, uint16_t width, const char *name);
void LogRow(int insert, uint16_t id, uint16_t row);
