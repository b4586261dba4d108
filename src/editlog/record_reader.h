// Reads a record's payload back into its fields, for the replay and for whoever lists a log.
#pragma once

#include "editlog/log_records.h"
#include <span>
#include <string>

// A record's fields; those that its kind does not have are 0 or empty.
struct LogRecord {
    uint16_t kind;
    uint16_t pattern; // of RecTiming the old unit code
    uint16_t item;    // item index, and of the rows' records the row
    // The old and the new value of kinds 1 to 6.
    uint32_t oldValue, newValue;
    LoggedParams oldParams, newParams;
    std::string oldName, newName;
    uint16_t newUnit;
    uint32_t oldMultiplier, newMultiplier, oldEnd, newEnd;
    // A data item.
    uint32_t value, duration;
    // A reference item.
    uint16_t patternId, scale, repeat;
    uint8_t sliceWidth, sliceOffset, forcedFormat, ownerKind;
    // A pattern made or deleted.
    uint16_t width;
    std::string name;
};

// False if the kind does not exist, if the payload is shorter than the kind's fields, or if a name has no NUL
// within it. Bytes behind the last field are not looked at.
bool ReadRecord(std::span<const uint8_t> payload, LogRecord &record);
