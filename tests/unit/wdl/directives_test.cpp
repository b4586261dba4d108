#include "config/settings.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/compiler.h"

namespace {

class Directives : public WdlTest {};

} // namespace

TEST_F(Directives, SetTheDocumentsTiming) {
    EXPECT_EQ(FirstError("%MASTERCLOCKMULT = 20;\n%SMALLESTUNIT    = 9;\n%AUTOASSIGN      = 1;\n"
                         "%DECIMALS        = 2;\n%ENDTIME         = 100000;\n%VERSION=7;\n"),
              "");
    EXPECT_EQ(Settings.ClockMultiplier, 20u);
    EXPECT_EQ(Settings.BasicUnit, 9);
    EXPECT_TRUE(Settings.AutoClockAssign);
    EXPECT_EQ(Settings.Decimals, 2);
    EXPECT_EQ(Settings.EndTime, 100000u);
    EXPECT_EQ(WdlVersion, 7);
}

TEST_F(Directives, AutoAssignIsOnForAnyValueButZero) {
    FirstError("%AUTOASSIGN = 5;\n");
    EXPECT_TRUE(Settings.AutoClockAssign);
    FirstError("%AUTOASSIGN = 1;\n%AUTOASSIGN = 0;\n");
    EXPECT_FALSE(Settings.AutoClockAssign);
}

TEST_F(Directives, DecimalsStayWithinTheirRange) {
    FirstError("%DECIMALS = 9;\n");
    EXPECT_EQ(Settings.Decimals, 3);
    FirstError("%DECIMALS = 3;\n");
    EXPECT_EQ(Settings.Decimals, 3);
    FirstError("%DECIMALS = 2;\n%DECIMALS = -1;\n");
    EXPECT_EQ(Settings.Decimals, 0);
    FirstError("%DECIMALS = 2147483647;\n");
    EXPECT_EQ(Settings.Decimals, 3);
}

TEST_F(Directives, TheMasterClockIsNeverZero) {
    EXPECT_EQ(FirstError("%MASTERCLOCKMULT = 0;\na { A In Default NRZ 0 1 50 } = 1 5;\n"), "");
    EXPECT_EQ(Settings.ClockMultiplier, 1u);
    EXPECT_EQ(UpdateFullDuration(), 5u);
    FirstError("%MASTERCLOCKMULT = none;\n");
    EXPECT_EQ(Settings.ClockMultiplier, 1u);
}

TEST_F(Directives, AnySmallestUnitIsStored) {
    FirstError("%SMALLESTUNIT = 10;\n");
    EXPECT_EQ(Settings.BasicUnit, 10);
    FirstError("%SMALLESTUNIT = -3;\n");
    EXPECT_EQ(Settings.BasicUnit, -3);
}

TEST_F(Directives, LargeNumbersReadAsTheLargest) {
    FirstError("%ENDTIME = 4294967296;\n");
    EXPECT_EQ(Settings.EndTime, 4294967295u);
    FirstError("%ENDTIME = -1;\n");
    EXPECT_EQ(Settings.EndTime, 4294967295u);
}

TEST_F(Directives, AValueWithoutANumberIsZeroAndNoValueIsIgnored) {
    EXPECT_EQ(FirstError("%ENDTIME = 7;\n%ENDTIME=;\n"), "");
    EXPECT_EQ(Settings.EndTime, 7u);
    EXPECT_EQ(FirstError("%ENDTIME = 7;\n%ENDTIME= never;\n"), "");
    EXPECT_EQ(Settings.EndTime, 0u);
}

TEST_F(Directives, WithoutAnEqualsSignTheKeywordIsInvalid) {
    EXPECT_EQ(MessageOf("%ENDTIME 5;\n"), "Invalid '%' keyword");
    EXPECT_EQ(MessageOf("%FOO = 1;\n"), "Invalid '%' keyword");
}

TEST_F(Directives, OldDirectivesChangeNothing) {
    SettingsRecord before = Settings;
    EXPECT_EQ(FirstError("%AUTOEXPORT = 1;\n%BUSREVERSE = 1;\n"), "");
    EXPECT_EQ(Settings.AutoClockAssign, before.AutoClockAssign);
    EXPECT_EQ(Settings.EndTime, before.EndTime);
    EXPECT_EQ(Settings.Decimals, before.Decimals);
    EXPECT_EQ(Settings.BasicUnit, before.BasicUnit);
    EXPECT_EQ(Settings.ClockMultiplier, before.ClockMultiplier);
    EXPECT_EQ(HighestPatternId, 0);
}
