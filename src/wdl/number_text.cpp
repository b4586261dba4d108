#include "wdl/number_text.h"

namespace {

uint32_t DecimalDigit(char c) {
    return static_cast<uint32_t>(c - '0');
}

// Any value from 16 up is no digit.
uint32_t HexadecimalDigit(char c) {
    uint32_t digit = DecimalDigit(c);
    if (digit < 10) return digit;
    auto letter = static_cast<uint32_t>((c | 32) - 'a');
    return letter < 6 ? letter + 10 : 16;
}

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Skips what may stand in front of a number; true for a minus sign.
bool SkipSign(const char *&text) {
    while (IsSpace(*text)) ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    return negative;
}

uint32_t Result(uint64_t number, bool negative) {
    if (number > UINT32_MAX) return UINT32_MAX;
    auto low = static_cast<uint32_t>(number);
    return negative ? 0u - low : low;
}

// Once above 32 bits, a number stays there and never wraps.
constexpr uint64_t BEYOND = uint64_t{1} << 32;

} // namespace

bool ReadDecimal(const char *text, uint32_t &number) {
    bool negative = SkipSign(text);
    uint32_t digit = DecimalDigit(*text);
    if (digit > 9) return false;
    uint64_t n = 0;
    for (; digit <= 9; digit = DecimalDigit(*++text)) n = n >= BEYOND ? n : n * 10 + digit;
    number = Result(n, negative);
    return true;
}

bool ReadHexadecimal(const char *text, uint32_t &number) {
    bool negative = SkipSign(text);
    uint32_t digit = HexadecimalDigit(*text);
    if (digit > 15) return false;
    uint64_t n = 0;
    for (; digit <= 15; digit = HexadecimalDigit(*++text)) n = n >= BEYOND ? n : n * 16 + digit;
    number = Result(n, negative);
    return true;
}
