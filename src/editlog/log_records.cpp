#include "editlog/log_records.h"

#include "editlog/edit_log.h"
#include "editlog/record_layout.h"
#include <algorithm>
#include <cstring>

namespace {

void Put8(uint8_t *payload, size_t offset, uint8_t value) {
    payload[offset] = value;
}

void Put16(uint8_t *payload, size_t offset, uint16_t value) {
    Put8(payload, offset, static_cast<uint8_t>(value));
    Put8(payload, offset + 1, static_cast<uint8_t>(value >> 8));
}

void Put32(uint8_t *payload, size_t offset, uint32_t value) {
    Put16(payload, offset, static_cast<uint16_t>(value));
    Put16(payload, offset + 2, static_cast<uint16_t>(value >> 16));
}

// The text up to its first NUL, with a NUL behind it; returns what follows it.
size_t PutText(uint8_t *payload, size_t offset, std::string_view text) {
    std::copy(text.begin(), text.end(), payload + offset);
    Put8(payload, offset + text.size(), 0);
    return offset + text.size() + 1;
}

std::string_view UpToNul(std::string_view text) {
    return text.substr(0, std::min(text.find('\0'), text.size()));
}

// A record's room with its two first fields filled in; null when nothing is recorded.
uint8_t *Begin(RecordKind kind, uint16_t id, size_t size) {
    uint8_t *payload = LogAppend(static_cast<uint32_t>(size));
    if (!payload) return nullptr;
    Put16(payload, RECORD_KIND, kind);
    Put16(payload, RECORD_PATTERN, id);
    return payload;
}

void LogOldNew32(RecordKind kind, uint16_t id, uint32_t oldValue, uint32_t newValue, uint16_t item) {
    uint8_t *payload = Begin(kind, id, RECORD_SIZE_LONG);
    if (!payload) return;
    Put32(payload, 4, oldValue);
    Put32(payload, 8, newValue);
    if (kind != RecDelay) Put16(payload, 12, item);
}

void LogOldNew16(RecordKind kind, uint16_t id, uint16_t item, uint16_t oldValue, uint16_t newValue) {
    uint8_t *payload = Begin(kind, id, RECORD_SIZE_SHORT);
    if (!payload) return;
    Put16(payload, 4, oldValue);
    Put16(payload, 6, newValue);
    Put16(payload, 8, item);
}

} // namespace

void LogDelay(uint16_t id, uint32_t oldDelay, uint32_t newDelay) {
    LogOldNew32(RecDelay, id, oldDelay, newDelay, 0);
}

void LogItemValue(uint16_t id, uint16_t item, uint32_t oldValue, uint32_t newValue) {
    LogOldNew32(RecItemValue, id, oldValue, newValue, item);
}

void LogItemDuration(uint16_t id, uint16_t item, uint32_t oldDuration, uint32_t newDuration) {
    LogOldNew32(RecItemDuration, id, oldDuration, newDuration, item);
}

void LogItemRepeat(uint16_t id, uint16_t item, uint16_t oldRepeat, uint16_t newRepeat) {
    LogOldNew16(RecItemRepeat, id, item, oldRepeat, newRepeat);
}

void LogItemScale(uint16_t id, uint16_t item, uint16_t oldScale, uint16_t newScale) {
    LogOldNew16(RecItemScale, id, item, oldScale, newScale);
}

void LogItemFormat(uint16_t id, uint16_t item, uint8_t oldFormat, uint8_t newFormat) {
    uint8_t *payload = Begin(RecItemFormat, id, RECORD_SIZE_FORMAT);
    if (!payload) return;
    Put8(payload, 4, oldFormat);
    Put8(payload, 5, newFormat);
    Put16(payload, 6, item);
}

void LogPatternParams(uint16_t id, const LoggedParams &oldParams, const LoggedParams &newParams) {
    uint8_t *payload = Begin(RecPatternParams, id, RECORD_SIZE_PARAMS);
    if (!payload) return;
    Put32(payload, 4, oldParams.period);
    Put32(payload, 8, newParams.period);
    Put16(payload, 12, oldParams.duty);
    Put16(payload, 14, newParams.duty);
    const uint8_t bytes[] = {oldParams.stateTable, newParams.stateTable, oldParams.clock,
                             newParams.clock,      oldParams.format,     newParams.format,
                             oldParams.pinType,    newParams.pinType};
    memcpy(payload + 16, bytes, sizeof bytes);
}

void LogRename(uint16_t id, std::string_view oldName, std::string_view newName) {
    oldName = UpToNul(oldName);
    newName = UpToNul(newName);
    uint8_t *payload = Begin(RecRename, id, oldName.size() + newName.size() + RECORD_SIZE_RENAME);
    if (payload) PutText(payload, PutText(payload, 4, oldName), newName);
}

void LogTiming(uint16_t oldUnit, uint16_t newUnit, uint16_t oldMultiplier, uint16_t newMultiplier,
               uint16_t oldEnd, uint16_t newEnd) {
    uint8_t *payload = Begin(RecTiming, oldUnit, RECORD_SIZE_TIMING);
    if (!payload) return;
    Put32(payload, 4, oldMultiplier);
    Put32(payload, 8, newMultiplier);
    Put32(payload, 12, oldEnd);
    Put32(payload, 16, newEnd);
    Put16(payload, 20, newUnit);
}

void LogTransition(int insert, uint16_t id, uint16_t item, uint32_t value, uint32_t duration) {
    uint8_t *payload = Begin(insert ? RecInsertTransition : RecDeleteTransition, id, RECORD_SIZE_LONG);
    if (!payload) return;
    Put32(payload, 4, value);
    Put32(payload, 8, duration);
    Put16(payload, 12, item);
}

void LogReference(int insert, uint16_t id, uint32_t kind, uint16_t item, uint16_t patternId, uint16_t scale,
                  uint16_t repeat, uint8_t sliceWidth, uint8_t sliceOffset, uint8_t forcedFormat) {
    uint8_t *payload = Begin(insert ? RecInsertReference : RecDeleteReference, id, RECORD_SIZE_LONG);
    if (!payload) return;
    Put16(payload, 4, patternId);
    Put16(payload, 6, scale);
    Put16(payload, 8, repeat);
    Put16(payload, 10, item);
    Put8(payload, 12, sliceWidth);
    Put8(payload, 13, sliceOffset);
    Put8(payload, 14, forcedFormat);
    Put8(payload, 15, static_cast<uint8_t>(kind));
}

void LogPattern(int create, uint16_t id, uint16_t width, const char *name) {
    size_t length = strlen(name);
    uint8_t *payload = Begin(create ? RecCreatePattern : RecDeletePattern, id, length + RECORD_SIZE_PATTERN);
    if (!payload) return;
    Put16(payload, 4, width);
    PutText(payload, 6, {name, length});
}

void LogRow(int insert, uint16_t id, uint16_t row) {
    uint8_t *payload = Begin(insert ? RecInsertRow : RecRemoveRow, id, RECORD_SIZE_ROW);
    if (payload) Put16(payload, 4, row);
}
