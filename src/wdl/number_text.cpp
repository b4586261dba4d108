#include "wdl/number_text.h"

namespace {

constexpr uint32_t NO_DIGIT = 16;

uint32_t DigitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<uint32_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<uint32_t>(c - 'A' + 10);
    return NO_DIGIT;
}

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

inline bool ReadNumber(const char *text, uint32_t base, uint32_t &number) {
    while (IsSpace(*text)) ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    uint32_t digit = DigitValue(*text);
    if (digit >= base) return false;
    uint64_t n = 0;
    bool overflow = false;
    for (; digit < base; digit = DigitValue(*++text)) {
        n = n * base + digit;
        if (n > UINT32_MAX) {
            overflow = true;
            n = UINT32_MAX;
        }
    }
    number = static_cast<uint32_t>(n);
    if (negative && !overflow) number = 0u - number;
    return true;
}

} // namespace

bool ReadDecimal(const char *text, uint32_t &number) {
    return ReadNumber(text, 10, number);
}

bool ReadHexadecimal(const char *text, uint32_t &number) {
    return ReadNumber(text, 16, number);
}
