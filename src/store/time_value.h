// Moments and durations: unsigned 32-bit counts of the document's smallest time unit, their saturating
// arithmetic, and the one way between a count and its text.
#pragma once

#include <cstdint>

using TimeVal = uint32_t;

// A duration without end.
constexpr TimeVal TIME_FOREVER = 4294967295u;

// The labels behind a number, index 0 to 5 for the exponents 0, 3, ... 15, and a closing null.
extern const char *const TimeUnitLabels[7];

constexpr TimeVal TimeFromInt(uint32_t n) {
    return n;
}
// The sum, or TIME_FOREVER where it exceeds 32 bits.
constexpr TimeVal TimeAdd(TimeVal a, TimeVal b) {
    return ~a >= b ? a + b : TIME_FOREVER;
}
// The difference, at least 0. TIME_FOREVER is an ordinary number here.
constexpr TimeVal TimeSub(TimeVal a, TimeVal b) {
    return a >= b ? a - b : 0;
}
// The product, or TIME_FOREVER where it exceeds 32 bits.
constexpr TimeVal TimeMul(TimeVal a, TimeVal b) {
    if (a == 0) return 0;
    uint64_t product = static_cast<uint64_t>(a) * b;
    return product > TIME_FOREVER ? TIME_FOREVER : static_cast<TimeVal>(product);
}
// The quotient; 0 for a divisor of 0.
constexpr TimeVal TimeDiv(TimeVal a, TimeVal b) {
    return b == 0 ? 0 : a / b;
}
// The remainder. The caller keeps `b` above 0.
constexpr TimeVal TimeMod(TimeVal a, TimeVal b) {
    return a % b;
}
// -1, 0 or 1.
constexpr int TimeCompare(TimeVal a, TimeVal b) {
    return a < b ? -1 : a > b ? 1 : 0;
}
// The floor of the mean.
constexpr TimeVal TimeMidpoint(TimeVal a, TimeVal b) {
    return (a >> 1) + (b >> 1) + (((a & 1) + (b & 1)) >> 1);
}
constexpr TimeVal TimeMin(TimeVal a, TimeVal b) {
    return TimeCompare(a, b) < 1 ? a : b;
}
constexpr bool TimeIsZero(TimeVal a) {
    return a == 0;
}
// The nearest multiple of `step`, halves upward; 0 for a step of 0.
constexpr TimeVal TimeRoundTo(TimeVal a, TimeVal step) {
    return TimeMul(TimeDiv(TimeAdd(a, step >> 1), step), step);
}
// Rounded to the nearest count, within 0 and TIME_FOREVER.
TimeVal TimeFromDouble(double x);
constexpr double TimeToDouble(TimeVal a) {
    return a;
}

// The time with thousands separators, decimals and unit, by `BasicUnit` and `Decimals` of the settings. The
// text is good up to the next call of this routine.
const char *TimeFormat(TimeVal t);

// Size of the buffers of TimeFormat and TimePlainText.
constexpr int TIME_TEXT_SIZE = 32;

// The plain decimal count, in `buffer` (TIME_TEXT_SIZE bytes) if one is given, else in a text of its own that
// is good up to the next call.
const char *TimePlainText(TimeVal t, char *buffer = nullptr);

// Reads a time with an optional unit. Never fails: text that holds no number gives 0.
TimeVal TimeParse(const char *text);

// The text of a bus value in the radix of the settings; with a radix that it does not know the buffer stays
// as it is. `width` in bits; `size` is the size of `buffer`, at least 1. Returns `buffer`.
char *FormatBusValue(uint32_t value, uint16_t width, char *buffer, int size);
// A size for FormatBusValue that holds every width up to 32 bits, and cuts wider values in binary.
constexpr int BUS_TEXT_SIZE = 80;
