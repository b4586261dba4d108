#include "store/time_value.h"

#include "config/settings.h"
#include <cinttypes>
#include <cstdio>
#include <cstring>

const char *const TimeUnitLabels[7] = {"", " ms", " us", " ns", " ps", " fs", nullptr};

namespace {

constexpr int UNIT_LABELS = 6;
// Reading stops before a digit that could overflow 32 bits: 4294967295 / 10.
constexpr uint32_t DIGIT_LIMIT = 429496729;

char formatText[TIME_TEXT_SIZE];
char plainText[TIME_TEXT_SIZE];

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int DecimalsInForce() {
    int decimals = Settings.Decimals;
    return decimals < 0 ? 0 : decimals > 3 ? 3 : decimals;
}

// A unit beyond those with a name has no label.
const char *UnitLabel() {
    int64_t index = (static_cast<int64_t>(Settings.BasicUnit) + 2) / 3;
    return index >= 0 && index < UNIT_LABELS ? TimeUnitLabels[index] : "";
}

// Zeros that show a count of an unnamed unit in the next larger named one.
int UnitPadding(TimeVal t, int decimals) {
    int surplus = Settings.BasicUnit % 3;
    if (decimals != 0 || t == 0 || surplus == 0) return 0;
    return surplus > 0 ? 3 - surplus : -surplus;
}

// The exponent of the unit that `text` begins with, or that of the settings.
int64_t UnitExponent(const char *text) {
    while (*text == ' ') ++text;
    for (int index = 1; *text != '\0' && index < UNIT_LABELS; ++index) {
        const char *label = TimeUnitLabels[index] + 1;
        if (strncmp(text, label, strlen(label)) == 0) return 3 * index;
    }
    return Settings.BasicUnit;
}

// Appends the digits of [`from`, `to`) to `v` up to the limit, commas left out. Returns where the run of
// digits ends; `count` tells how many were taken.
const char *ReadDigits(const char *from, const char *to, uint32_t &v, int64_t &count) {
    for (; from < to && *from != '.'; ++from) {
        if (*from == ',' || v >= DIGIT_LIMIT) continue;
        v = v * 10 + static_cast<uint32_t>(*from - '0');
        ++count;
    }
    return from;
}

uint32_t Rescale(uint32_t v, int64_t from, int64_t to) {
    for (; from > to && v != 0; --from) v = (v + 5) / 10;
    for (; from < to && v != 0 && v < DIGIT_LIMIT; ++from) v *= 10;
    return v;
}

} // namespace

TimeVal TimeFromDouble(double x) {
    if (x >= 4294967295.0) return TIME_FOREVER;
    if (!(x > 0)) return 0;
    return static_cast<TimeVal>(x + 0.5);
}

const char *TimeFormat(TimeVal t) {
    int decimals = DecimalsInForce();
    char digits[TIME_TEXT_SIZE];
    int length = snprintf(digits, sizeof digits, "%0*" PRIu32, decimals ? decimals : 1, t);
    for (int pad = UnitPadding(t, decimals); pad > 0; --pad) digits[length++] = '0';

    char *out = formatText;
    int whole = length - decimals;
    for (int i = 0; i < whole; ++i) {
        if (i > 0 && (whole - i) % 3 == 0) *out++ = ',';
        *out++ = digits[i];
    }
    if (decimals > 0) {
        *out++ = '.';
        memcpy(out, digits + whole, static_cast<size_t>(decimals));
        out += decimals;
    }
    snprintf(out, sizeof formatText - static_cast<size_t>(out - formatText), "%s", UnitLabel());
    return formatText;
}

const char *TimePlainText(TimeVal t, char *buffer) {
    char *out = buffer ? buffer : plainText;
    snprintf(out, TIME_TEXT_SIZE, "%" PRIu32, t);
    return out;
}

TimeVal TimeParse(const char *text) {
    while (*text != '\0' && !IsDigit(*text) && *text != '.') ++text;
    const char *end = text;
    while (IsDigit(*end) || *end == '.' || *end == ',') ++end;

    int64_t exponent = UnitExponent(end);
    uint32_t v = 0;
    int64_t wholeDigits = 0;
    int64_t fractionDigits = 0;
    const char *point = ReadDigits(text, end, v, wholeDigits);
    if (point < end) ReadDigits(point + 1, end, v, fractionDigits);
    return Rescale(v, exponent + fractionDigits,
                   static_cast<int64_t>(Settings.BasicUnit) + DecimalsInForce());
}

char *FormatBusValue(uint32_t value, uint16_t width, char *buffer, int size) {
    auto room = static_cast<size_t>(size);
    switch (Settings.BusRadix) {
    case 2: {
        int digits = width < size - 1 ? width : size - 1;
        for (int i = 0; i < digits; ++i) {
            buffer[i] = (value >> ((width - 1 - i) & 31)) & 1 ? '1' : '0';
        }
        buffer[digits] = '\0';
        break;
    }
    case 8:
        snprintf(buffer, room, "%0*" PRIo32, (width + 2) / 3, value);
        break;
    case 10:
        // Signed, so that a full 32-bit value prints negative; this is meant.
        snprintf(buffer, room, "%" PRId32, static_cast<int32_t>(value));
        break;
    case 16:
        snprintf(buffer, room, "%0*" PRIX32, (width + 3) / 4, value);
        break;
    default:
        break;
    }
    return buffer;
}
