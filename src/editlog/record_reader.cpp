#include "editlog/record_reader.h"

#include "editlog/edit_log.h"
#include "editlog/record_layout.h"
#include <algorithm>

namespace {

// Reads fields by their offset, and remembers if one of them lay beyond the payload.
struct FieldReader {
    std::span<const uint8_t> payload;
    bool good = true;

    // Where the next bytes lie; null, once for all, beyond the payload.
    const uint8_t *take(size_t offset, size_t size) {
        good = good && offset + size <= payload.size();
        return good ? payload.data() + offset : nullptr;
    }
    uint8_t byte(size_t offset) {
        const uint8_t *at = take(offset, 1);
        return at ? at[0] : uint8_t{0};
    }
    uint16_t half(size_t offset) {
        const uint8_t *at = take(offset, 2);
        return at ? static_cast<uint16_t>(at[0] | at[1] << 8) : uint16_t{0};
    }
    uint32_t word(size_t offset) {
        const uint8_t *at = take(offset, 4);
        return at ? LogWordAt(at) : 0;
    }
    // Moves `offset` behind the text's NUL.
    std::string text(size_t &offset) {
        auto begin = payload.begin() + static_cast<std::ptrdiff_t>(std::min(offset, payload.size()));
        auto end = std::find(begin, payload.end(), 0);
        if (end == payload.end()) {
            good = false;
            return "";
        }
        offset = static_cast<size_t>(end - payload.begin()) + 1;
        return {begin, end};
    }
};

void ReadParams(FieldReader &fields, LogRecord &record) {
    record.oldParams = {fields.word(4),  fields.half(12), fields.byte(16),
                        fields.byte(18), fields.byte(20), fields.byte(22)};
    record.newParams = {fields.word(8),  fields.half(14), fields.byte(17),
                        fields.byte(19), fields.byte(21), fields.byte(23)};
}

void ReadTiming(FieldReader &fields, LogRecord &record) {
    record.oldMultiplier = fields.word(4);
    record.newMultiplier = fields.word(8);
    record.oldEnd = fields.word(12);
    record.newEnd = fields.word(16);
    record.newUnit = fields.half(20);
}

void ReadReference(FieldReader &fields, LogRecord &record) {
    record.patternId = fields.half(4);
    record.scale = fields.half(6);
    record.repeat = fields.half(8);
    record.item = fields.half(10);
    record.sliceWidth = fields.byte(12);
    record.sliceOffset = fields.byte(13);
    record.forcedFormat = fields.byte(14);
    record.ownerKind = fields.byte(15);
}

bool ReadFields(FieldReader &fields, LogRecord &record) {
    size_t behind = 4;
    switch (record.kind) {
    case RecDelay:
    case RecItemValue:
    case RecItemDuration:
        record.oldValue = fields.word(4);
        record.newValue = fields.word(8);
        if (record.kind != RecDelay) record.item = fields.half(12);
        return true;
    case RecItemRepeat:
    case RecItemScale:
        record.oldValue = fields.half(4);
        record.newValue = fields.half(6);
        record.item = fields.half(8);
        return true;
    case RecItemFormat:
        record.oldValue = fields.byte(4);
        record.newValue = fields.byte(5);
        record.item = fields.half(6);
        return true;
    case RecPatternParams:
        ReadParams(fields, record);
        return true;
    case RecRename:
        record.oldName = fields.text(behind);
        record.newName = fields.text(behind);
        return true;
    case RecTiming:
        ReadTiming(fields, record);
        return true;
    case RecDeleteTransition:
    case RecInsertTransition:
        record.value = fields.word(4);
        record.duration = fields.word(8);
        record.item = fields.half(12);
        return true;
    case RecDeleteReference:
    case RecInsertReference:
        ReadReference(fields, record);
        return true;
    case RecDeletePattern:
    case RecCreatePattern:
        record.width = fields.half(4);
        behind = 6;
        record.name = fields.text(behind);
        return true;
    case RecRemoveRow:
    case RecInsertRow:
        record.item = fields.half(4);
        return true;
    default:
        return false;
    }
}

} // namespace

bool ReadRecord(std::span<const uint8_t> payload, LogRecord &record) {
    FieldReader fields = {payload};
    record.kind = fields.half(RECORD_KIND);
    record.pattern = fields.half(RECORD_PATTERN);
    return ReadFields(fields, record) && fields.good;
}
