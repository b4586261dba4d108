// Reads a record's payload back into its fields, for the replay and for whoever lists a log.
#pragma once

#include "editlog/log_records.h"
#include <span>
#include <string>

// A record's fields; those that its kind does not have are 0 or empty.
struct LogRecord {
    uint16_t kind = 0;
    uint16_t pattern = 0; // of RecTiming the old unit code
    uint16_t item = 0;    // item index, and of the rows' records the row
    // The old and the new value of kinds 1 to 6.
    uint32_t oldValue = 0, newValue = 0;
    LoggedParams oldParams = {}, newParams = {};
    std::string oldName, newName;
    uint16_t newUnit = 0;
    uint32_t oldMultiplier = 0, newMultiplier = 0, oldEnd = 0, newEnd = 0;
    // A data item.
    uint32_t value = 0, duration = 0;
    // A reference item.
    uint16_t patternId = 0, scale = 0, repeat = 0;
    uint8_t sliceWidth = 0, sliceOffset = 0, forcedFormat = 0, ownerKind = 0;
    // A pattern made or deleted.
    uint16_t width = 0;
    std::string name;
};

// Fills the kind's fields of a new record in, and leaves the others alone. False if the kind does not exist,
// if the payload is shorter than the kind's fields, or if a name has no NUL within it. Bytes behind the last
// field are not looked at.
bool ReadRecord(std::span<const uint8_t> payload, LogRecord &record);
