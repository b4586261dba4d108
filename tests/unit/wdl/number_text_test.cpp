#include "wdl/number_text.h"

#include <gtest/gtest.h>

namespace {

uint32_t Decimal(const char *text) {
    uint32_t number = 4711;
    ReadDecimal(text, number);
    return number;
}

uint32_t Hexadecimal(const char *text) {
    uint32_t number = 4711;
    ReadHexadecimal(text, number);
    return number;
}

} // namespace

TEST(NumberText, ReadsAsFarAsTheDigitsGo) {
    EXPECT_EQ(Decimal("123abc"), 123u);
    EXPECT_EQ(Decimal("12 3"), 12u);
    EXPECT_EQ(Hexadecimal("1aFg"), 0x1afu);
}

TEST(NumberText, BlanksAndASignMayStandInFront) {
    EXPECT_EQ(Decimal(" \t+7"), 7u);
    EXPECT_EQ(Decimal("-7"), 4294967289u);
    EXPECT_EQ(Hexadecimal("-1"), 4294967295u);
    EXPECT_EQ(Decimal("-4294967295"), 1u);
}

TEST(NumberText, Beyond32BitsIsTheLargest) {
    EXPECT_EQ(Decimal("4294967295"), 4294967295u);
    EXPECT_EQ(Decimal("4294967296"), 4294967295u);
    EXPECT_EQ(Decimal("99999999999999999999999999"), 4294967295u);
    EXPECT_EQ(Decimal("-99999999999999999999999999"), 4294967295u);
    EXPECT_EQ(Hexadecimal("ffffffff"), 4294967295u);
    EXPECT_EQ(Hexadecimal("100000000"), 4294967295u);
    EXPECT_EQ(Hexadecimal("10000000000000000000000"), 4294967295u);
}

TEST(NumberText, WithoutADigitNothingIsStored) {
    for (const char *text : {"", "x", "-", "+", "- 1", "--1", "a"}) EXPECT_EQ(Decimal(text), 4711u) << text;
    EXPECT_EQ(Hexadecimal("g"), 4711u);
}
