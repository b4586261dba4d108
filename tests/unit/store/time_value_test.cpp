#include "store/time_value.h"

#include "config/settings.h"
#include <gtest/gtest.h>

namespace {

class TimeText : public testing::Test {
protected:
    void SetUp() override { InitSettings(); }

    void setUnit(int basicUnit, int decimals) {
        Settings.BasicUnit = basicUnit;
        Settings.Decimals = decimals;
    }
};

std::string BusText(uint32_t value, uint16_t width, uint32_t radix) {
    Settings.BusRadix = radix;
    char buffer[BUS_TEXT_SIZE] = "unset";
    return FormatBusValue(value, width, buffer, sizeof buffer);
}

TEST(TimeArithmetic, AdditionSaturatesAtForever) {
    EXPECT_EQ(TimeAdd(4294967295u, 0), 4294967295u);
    EXPECT_EQ(TimeAdd(4294967295u, 1), TIME_FOREVER);
    EXPECT_EQ(TimeAdd(4294967294u, 1), 4294967295u);
    EXPECT_EQ(TimeAdd(2147483648u, 2147483648u), TIME_FOREVER);
    EXPECT_EQ(TimeAdd(3, 4), 7u);
}

TEST(TimeArithmetic, SubtractionStopsAtZeroAndForeverIsAnOrdinaryNumber) {
    EXPECT_EQ(TimeSub(7, 4), 3u);
    EXPECT_EQ(TimeSub(4, 7), 0u);
    EXPECT_EQ(TimeSub(TIME_FOREVER, 1), 4294967294u);
}

TEST(TimeArithmetic, MultiplicationSaturatesAtForever) {
    EXPECT_EQ(TimeMul(0, TIME_FOREVER), 0u);
    EXPECT_EQ(TimeMul(TIME_FOREVER, 0), 0u);
    EXPECT_EQ(TimeMul(65536, 65536), TIME_FOREVER);
    EXPECT_EQ(TimeMul(65535, 65537), 4294967295u);
    EXPECT_EQ(TimeMul(6, 7), 42u);
}

TEST(TimeArithmetic, DivisionByZeroGivesZero) {
    EXPECT_EQ(TimeDiv(9, 0), 0u);
    EXPECT_EQ(TimeDiv(9, 2), 4u);
    EXPECT_EQ(TimeDiv(TIME_FOREVER, 2), 2147483647u);
    EXPECT_EQ(TimeMod(9, 4), 1u);
}

TEST(TimeArithmetic, ComparesAsUnsignedNumbers) {
    EXPECT_EQ(TimeCompare(1, 2), -1);
    EXPECT_EQ(TimeCompare(2, 2), 0);
    EXPECT_EQ(TimeCompare(TIME_FOREVER, 1), 1);
    EXPECT_EQ(TimeMin(3, TIME_FOREVER), 3u);
    EXPECT_EQ(TimeMin(5, 4), 4u);
    EXPECT_TRUE(TimeIsZero(0));
    EXPECT_FALSE(TimeIsZero(1));
    EXPECT_EQ(TimeFromInt(12), 12u);
}

TEST(TimeArithmetic, MidpointIsTheFloorOfTheMeanWithoutOverflow) {
    EXPECT_EQ(TimeMidpoint(TIME_FOREVER, TIME_FOREVER), TIME_FOREVER);
    EXPECT_EQ(TimeMidpoint(TIME_FOREVER, TIME_FOREVER - 1), TIME_FOREVER - 1);
    EXPECT_EQ(TimeMidpoint(3, 5), 4u);
    EXPECT_EQ(TimeMidpoint(3, 4), 3u);
}

TEST(TimeArithmetic, RoundsToTheNearestMultipleHalvesUpward) {
    EXPECT_EQ(TimeRoundTo(7, 4), 8u);
    EXPECT_EQ(TimeRoundTo(5, 4), 4u);
    EXPECT_EQ(TimeRoundTo(6, 4), 8u);
    EXPECT_EQ(TimeRoundTo(TIME_FOREVER, 4), 4294967292u);
    EXPECT_EQ(TimeRoundTo(7, 0), 0u);
}

TEST(TimeArithmetic, ComesFromADoubleWithinTheRange) {
    EXPECT_EQ(TimeFromDouble(4294967295.0), TIME_FOREVER);
    EXPECT_EQ(TimeFromDouble(1e30), TIME_FOREVER);
    EXPECT_EQ(TimeFromDouble(-3), 0u);
    EXPECT_EQ(TimeFromDouble(0), 0u);
    EXPECT_EQ(TimeFromDouble(2.5), 3u);
    EXPECT_EQ(TimeFromDouble(2.4), 2u);
    EXPECT_EQ(TimeToDouble(TIME_FOREVER), 4294967295.0);
}

TEST_F(TimeText, PrintsThousandsAndUnit) {
    EXPECT_STREQ(TimeFormat(0), "0 ps");
    EXPECT_STREQ(TimeFormat(100000), "100,000 ps");
    EXPECT_STREQ(TimeFormat(999), "999 ps");
    EXPECT_STREQ(TimeFormat(1234567), "1,234,567 ps");
    EXPECT_STREQ(TimeFormat(TIME_FOREVER), "4,294,967,295 ps");
}

TEST_F(TimeText, PrintsDecimalsWithoutALeadingZero) {
    setUnit(12, 3);
    EXPECT_STREQ(TimeFormat(5), ".005 ps");
    EXPECT_STREQ(TimeFormat(1234), "1.234 ps");
    EXPECT_STREQ(TimeFormat(1234567), "1,234.567 ps");
    setUnit(12, 2);
    EXPECT_STREQ(TimeFormat(0), ".00 ps");
    setUnit(12, 1);
    EXPECT_STREQ(TimeFormat(5), ".5 ps");
    EXPECT_STREQ(TimeFormat(15), "1.5 ps");
}

TEST_F(TimeText, PadsAnUnnamedUnitToTheNextLargerOne) {
    setUnit(10, 0);
    EXPECT_STREQ(TimeFormat(5), "500 ps");
    EXPECT_STREQ(TimeFormat(0), "0 ps");
    setUnit(11, 0);
    EXPECT_STREQ(TimeFormat(5), "50 ps");
    setUnit(10, 1);
    EXPECT_STREQ(TimeFormat(5), ".5 ps");
}

TEST_F(TimeText, EveryUnitHasItsLabel) {
    const char *expected[] = {"7", "7 ms", "7 us", "7 ns", "7 ps", "7 fs"};
    for (int i = 0; i < 6; ++i) {
        setUnit(3 * i, 0);
        EXPECT_STREQ(TimeFormat(7), expected[i]);
    }
}

TEST_F(TimeText, AUnitFromADamagedFileStillPrints) {
    for (int unit : {INT32_MIN, -5, -1, 16, 17, 100, INT32_MAX}) {
        setUnit(unit, 0);
        EXPECT_LT(strlen(TimeFormat(TIME_FOREVER)), size_t{TIME_TEXT_SIZE});
        TimeParse("12.5");
        TimeParse("12.5 ns");
    }
}

TEST_F(TimeText, DecimalsStayWithinTheirRange) {
    setUnit(12, -1);
    EXPECT_STREQ(TimeFormat(1234), "1,234 ps");
    EXPECT_EQ(TimeParse("12.5"), 13u);
    setUnit(12, 9);
    EXPECT_STREQ(TimeFormat(1234), "1.234 ps");
    EXPECT_EQ(TimeParse("12.5"), 12500u);
}

TEST_F(TimeText, PlainTextHasNoSeparators) {
    char buffer[TIME_TEXT_SIZE];
    EXPECT_STREQ(TimePlainText(1234567), "1234567");
    EXPECT_EQ(TimePlainText(TIME_FOREVER, buffer), buffer);
    EXPECT_STREQ(buffer, "4294967295");
}

TEST_F(TimeText, ReadsUnits) {
    EXPECT_EQ(TimeParse("5"), 5u);
    EXPECT_EQ(TimeParse("5 ns"), 5000u);
    EXPECT_EQ(TimeParse("1.5ns"), 1500u);
    EXPECT_EQ(TimeParse(".5"), 1u);
    EXPECT_EQ(TimeParse(".4"), 0u);
    EXPECT_EQ(TimeParse("2 nsec"), 2000u);
    EXPECT_EQ(TimeParse("2 NS"), 2u);
    EXPECT_EQ(TimeParse("1 us"), 1000000u);
    EXPECT_EQ(TimeParse("1 ms"), 1000000000u);
    EXPECT_EQ(TimeParse("1500 fs"), 2u);
}

TEST_F(TimeText, ANumberWithoutAUnitIsInTheBasicUnit) {
    setUnit(12, 2);
    EXPECT_EQ(TimeParse("3"), 300u);
    EXPECT_EQ(TimeParse("3.456"), 346u);
    EXPECT_EQ(TimeParse("2 ns"), 200000u);
}

TEST_F(TimeText, RoundsOnceForEachSurplusDigit) {
    EXPECT_EQ(TimeParse("14.49"), 15u); // 1449, 145, 15
}

TEST_F(TimeText, ReadsThroughCommasAndSkipsWhatStandsInFront) {
    EXPECT_EQ(TimeParse("1,000 ps"), 1000u);
    EXPECT_EQ(TimeParse("1, 000"), 1u);
    EXPECT_EQ(TimeParse("abc"), 0u);
    EXPECT_EQ(TimeParse(""), 0u);
    EXPECT_EQ(TimeParse("-12"), 12u);
    EXPECT_EQ(TimeParse("at 12 ns"), 12000u);
    EXPECT_EQ(TimeParse("1.2.9"), 1u);
}

TEST_F(TimeText, DropsDigitsBeyondTheLimitWithoutScaling) {
    EXPECT_EQ(TimeParse("5000000000"), 500000000u);
    EXPECT_EQ(TimeParse("9999999999"), 999999999u);
    EXPECT_EQ(TimeParse("4294967289"), 4294967289u);
    EXPECT_EQ(TimeParse("4294967295"), 429496729u);
    EXPECT_EQ(TimeParse("999999999 ns"), 999999999u);
}

TEST_F(TimeText, PrintsBusValuesInEveryRadix) {
    EXPECT_EQ(BusText(0xA5, 8, 2), "10100101");
    EXPECT_EQ(BusText(5, 0, 2), "");
    EXPECT_EQ(BusText(8, 7, 8), "010");
    EXPECT_EQ(BusText(0xFFFFFFFF, 32, 10), "-1");
    EXPECT_EQ(BusText(12, 8, 10), "12");
    EXPECT_EQ(BusText(0xAB, 9, 16), "0AB");
    EXPECT_EQ(BusText(0xAB, 8, 1), "unset");
}

TEST_F(TimeText, ABinaryValueWiderThan32BitsRepeatsItsBits) {
    EXPECT_EQ(BusText(1, 33, 2), "1" + std::string(31, '0') + "1");
}

TEST_F(TimeText, ABusTextNeverLeavesItsBuffer) {
    Settings.BusRadix = 2;
    char buffer[8];
    EXPECT_STREQ(FormatBusValue(0, 1000, buffer, sizeof buffer), "0000000");
}

} // namespace
