// The builders of log records: one for each kind of change, called by the mutators before they change
// anything. They do nothing until the log file joins.
#pragma once

#include <cstdint>

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
void LogRename(uint16_t id, const char *oldName, const char *newName);
// `insert` 1 for an insertion, 0 for a deletion.
void LogTransition(int insert, uint16_t id, uint16_t item, uint32_t value, uint32_t duration);
void LogReference(int insert, uint16_t id, uint32_t kind, uint16_t item, uint16_t patternId, uint16_t scale,
                  uint16_t repeat, uint8_t sliceWidth, uint8_t sliceOffset, uint8_t forcedFormat);
void LogPattern(int create, uint16_t id, uint16_t width, const char *name);
void LogRow(int insert, uint16_t id, uint16_t row);
