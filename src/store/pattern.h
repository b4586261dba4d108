// The record of a pattern in the pattern heap, laid out by hand, and its items.
#pragma once

#include "store/time_value.h"
#include <cstddef>
#include <cstdint>
#include <span>

enum class PatternKind : uint32_t {
    Plain = 0,     // data items and references, one after the other
    Composite = 1, // references side by side, written with plus signs
    Reference = 2, // slices of other patterns; no data of its own
};

enum class SignalFormat : uint32_t { None = 0, NRZ = 1, RZ = 2, R1 = 3, RC = 4 };

enum class PinType : uint32_t { Test = 0, In = 1, Out = 2, Bid = 3, Global = 4 };

// A repeat count without end.
constexpr uint16_t REPEAT_FOREVER = 65535;

// How many references may follow one another from a pattern down to the deepest one that it uses. Whatever
// descends into patterns recurses this deep at most.
constexpr uint32_t MAX_NESTING = 256;

// A level or bus value held for a time, or a use of another pattern: bit 0 of the first word tells which.
struct PatternItem {
    uint32_t word0;
    uint32_t word1;

    bool isReference() const { return (word0 & 1) != 0; }

    // A data item's.
    TimeVal duration() const { return word0 >> 1; }
    uint32_t value() const { return word1; }

    // A reference item's.
    uint32_t forcedFormat() const { return (word0 >> 1) & 7; }
    uint32_t sliceOffset() const { return (word0 >> 4) & 31; }
    uint32_t sliceWidth() const { return (word0 >> 9) & 31; }
    uint32_t scale() const { return (word0 >> 14) & 0xFFFF; }
    uint16_t patternId() const { return static_cast<uint16_t>(word1); }
    uint16_t repeat() const { return static_cast<uint16_t>(word1 >> 16); }
    void setSliceWidth(uint32_t width) { word0 = (word0 & ~(31u << 9)) | (width & 31) << 9; }
};
static_assert(sizeof(PatternItem) == 8);

struct Pattern {
    uint16_t size; // bytes of the record, slack included; stale while the record is the open top record
    uint16_t free; // 1 for a released record or a filler
    uint32_t flags;
    int32_t period;      // clock period in time units, or in master clock periods if `clock` is set
    uint32_t delay;      // time units in front of the pattern
    uint32_t duration;   // cached length of the items
    uint32_t MatchMask;  // work word of the consistency check
    uint16_t id;         // the record's own id
    uint16_t duty;       // percent
    uint16_t width;      // bits
    uint16_t itemCount;  // number of items
    uint16_t nameLength; // bytes set aside for the name, a multiple of 4; 0 without a name
    uint16_t reserved;

    PatternKind kind() const { return static_cast<PatternKind>(flags & 3); }
    bool isBus() const { return (flags & (1u << 3)) != 0; }
    bool hasProperties() const { return (flags & (1u << 4)) != 0; }
    uint32_t clock() const { return (flags >> 5) & 15; }
    uint32_t stateTable() const { return (flags >> 9) & 15; }
    SignalFormat format() const { return static_cast<SignalFormat>((flags >> 13) & 7); }
    uint32_t pinType() const { return (flags >> 16) & 7; }
    bool durationValid() const { return (flags & (1u << 19)) != 0; }
    bool changed() const { return (flags & (1u << 20)) != 0; }
    bool moved() const { return (flags & (1u << 21)) != 0; }

    void setKind(PatternKind kind) { setField(0, 2, static_cast<uint32_t>(kind)); }
    void setBus(bool on) { setField(3, 1, on); }
    void setHasProperties(bool on) { setField(4, 1, on); }
    void setClock(uint32_t clock) { setField(5, 4, clock); }
    void setStateTable(uint32_t index) { setField(9, 4, index); }
    void setFormat(uint32_t format) { setField(13, 3, format); }
    void setPinType(uint32_t pinType) { setField(16, 3, pinType); }
    void setDurationValid(bool on) { setField(19, 1, on); }
    void setChanged(bool on) { setField(20, 1, on); }
    void setMoved(bool on) { setField(21, 1, on); }

    // Bytes in use: the head, the name and the items.
    uint32_t used() const { return 36u + nameLength + 8u * itemCount; }

    // The name, or the empty text.
    const char *name() const { return nameLength ? nameBytes() : ""; }
    char *nameBytes() { return reinterpret_cast<char *>(this) + 36; }
    const char *nameBytes() const { return reinterpret_cast<const char *>(this) + 36; }

    PatternItem *items() { return reinterpret_cast<PatternItem *>(nameBytes() + nameLength); }
    const PatternItem *items() const {
        return reinterpret_cast<const PatternItem *>(nameBytes() + nameLength);
    }
    // Below `itemCount`, which the tests' build looks after.
    PatternItem &item(uint32_t index) { return std::span(items(), itemCount)[index]; }
    const PatternItem &item(uint32_t index) const { return std::span(items(), itemCount)[index]; }

private:
    void setField(int shift, int bits, uint32_t value) {
        uint32_t mask = ((1u << bits) - 1) << shift;
        flags = (flags & ~mask) | ((value << shift) & mask);
    }
};
static_assert(offsetof(Pattern, size) == 0);
static_assert(offsetof(Pattern, free) == 2);
static_assert(offsetof(Pattern, flags) == 4);
static_assert(offsetof(Pattern, period) == 8);
static_assert(offsetof(Pattern, delay) == 12);
static_assert(offsetof(Pattern, duration) == 16);
static_assert(offsetof(Pattern, MatchMask) == 20);
static_assert(offsetof(Pattern, id) == 24);
static_assert(offsetof(Pattern, duty) == 26);
static_assert(offsetof(Pattern, width) == 28);
static_assert(offsetof(Pattern, itemCount) == 30);
static_assert(offsetof(Pattern, nameLength) == 32);
static_assert(offsetof(Pattern, reserved) == 34);
static_assert(sizeof(Pattern) == 36);

// The length of a record's `size` field bounds a record: the last item must end within this many bytes.
constexpr uint32_t MAX_RECORD_SIZE = 65535;
