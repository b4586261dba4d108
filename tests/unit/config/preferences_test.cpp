#include "config/paths.h"
#include "config/settings.h"
#include "headless/headless.h"
#include "unit/support/fresh_store.h"
#include <cstdio>
#include <filesystem>

namespace {

class Preferences : public testing::Test {
protected:
    Preferences() {
        InitHeadless();
        InitSettings();
        InitPaths();
        snprintf(SettingsIniPath, sizeof SettingsIniPath, "%s", scratch.file("Kelvane.ini").c_str());
    }
    ~Preferences() override { InitPaths(); }
    // Reads a file with these lines in the section, from the start values.
    void load(const std::string &lines) {
        InitSettings();
        scratch.write("Kelvane.ini", "[Preferences]\n" + lines + "\n");
        LoadPreferences();
    }
    std::string saved() {
        SavePreferences();
        return ReadWholeFile(scratch.file("Kelvane.ini"));
    }
    ScratchDirectory scratch;
};

} // namespace

TEST_F(Preferences, HaveTheirDefaultsWithoutAFile) {
    LoadPreferences();
    EXPECT_EQ(Settings.WaveTextPadding, 2);
    EXPECT_EQ(Settings.WaveGap, 4);
    EXPECT_EQ(Settings.BusRadix, 16u);
    EXPECT_EQ(Settings.PrintSideMargin, 20);
    EXPECT_EQ(Settings.PrintVertMargin, 20);
    EXPECT_TRUE(Settings.PrintLandscape);
    EXPECT_TRUE(Settings.PrintNamesAlways);
    EXPECT_EQ(Settings.PrintNameWidth, 108);
    EXPECT_TRUE(Settings.DefAutoClockAssign);
    EXPECT_EQ(Settings.DefEndTime, 100000u);
    EXPECT_EQ(Settings.DefClockMultiplier, 1u);
    EXPECT_EQ(Settings.DefBasicUnit, 12);
    EXPECT_EQ(Settings.DefDecimals, 0);
}

TEST_F(Preferences, TheProgramsOwnSettingsHaveTheirStartValues) {
    EXPECT_TRUE(Settings.AutoClockAssign);
    EXPECT_EQ(Settings.EndTime, 100000u);
    EXPECT_EQ(Settings.ClockMultiplier, 1u);
    EXPECT_EQ(Settings.BasicUnit, 12);
    EXPECT_EQ(Settings.Decimals, 0);
    EXPECT_TRUE(Settings.ShowPatternNames);
    EXPECT_TRUE(Settings.ShowPatternWaveforms);
    EXPECT_FALSE(Settings.ShowSyncActivity);
    EXPECT_FALSE(Settings.ShowGuidelines);
    EXPECT_FALSE(Settings.SyncMode);
    EXPECT_FALSE(Settings.HierLinkMode);
    EXPECT_EQ(Settings.HierChar, '.');
    EXPECT_EQ(Settings.StartupCommand, 220u);
}

TEST_F(Preferences, ReadEveryKey) {
    load("Waveform Text Padding=7\nWaveform Gap=9\nBus Radix=8\nPrint Side Margins=1\n"
         "Print Vertical Margins=2\nPrint Landscape=0\nPrint Names Always=0\nPrint Name Width=3\n"
         "Auto Clock Assign=0\nKEL End Time=500\nClock Multiplier=10\nBasic Unit=9\nDecimals=3");
    EXPECT_EQ(Settings.WaveTextPadding, 7);
    EXPECT_EQ(Settings.WaveGap, 9);
    EXPECT_EQ(Settings.BusRadix, 8u);
    EXPECT_EQ(Settings.PrintSideMargin, 72);
    EXPECT_EQ(Settings.PrintVertMargin, 144);
    EXPECT_FALSE(Settings.PrintLandscape);
    EXPECT_FALSE(Settings.PrintNamesAlways);
    EXPECT_EQ(Settings.PrintNameWidth, 216);
    EXPECT_FALSE(Settings.DefAutoClockAssign);
    EXPECT_EQ(Settings.DefEndTime, 500u);
    EXPECT_EQ(Settings.DefClockMultiplier, 10u);
    EXPECT_EQ(Settings.DefBasicUnit, 9);
    EXPECT_EQ(Settings.DefDecimals, 3);
}

TEST_F(Preferences, ReadingLeavesTheDocumentsSettingsAlone) {
    load("KEL End Time=500\nClock Multiplier=10\nBasic Unit=9\nDecimals=3\nAuto Clock Assign=0");
    EXPECT_EQ(Settings.EndTime, 100000u);
    EXPECT_EQ(Settings.BasicUnit, 12);
    ResetDocumentSettings();
    EXPECT_EQ(Settings.EndTime, 500u);
    EXPECT_EQ(Settings.ClockMultiplier, 10u);
    EXPECT_EQ(Settings.BasicUnit, 9);
    EXPECT_EQ(Settings.Decimals, 3);
    EXPECT_FALSE(Settings.AutoClockAssign);
}

TEST_F(Preferences, PaddingAndGapStayBelowTheirLimits) {
    load("Waveform Text Padding=15\nWaveform Gap=31");
    EXPECT_EQ(Settings.WaveTextPadding, 15);
    EXPECT_EQ(Settings.WaveGap, 31);
    load("Waveform Text Padding=16\nWaveform Gap=32");
    EXPECT_EQ(Settings.WaveTextPadding, 2);
    EXPECT_EQ(Settings.WaveGap, 4);
}

TEST_F(Preferences, ABinaryRadixComesBackAs16AndARadixOf1IsTaken) {
    auto radix = [this](const char *value) {
        load(std::string("Bus Radix=") + value);
        return Settings.BusRadix;
    };
    EXPECT_EQ(radix("2"), 16u);
    EXPECT_EQ(radix("1"), 1u);
    EXPECT_EQ(radix("8"), 8u);
    EXPECT_EQ(radix("10"), 10u);
    EXPECT_EQ(radix("16"), 16u);
    EXPECT_EQ(radix("0"), 16u);
    EXPECT_EQ(radix("-8"), 16u);
}

TEST_F(Preferences, MarginsAreInchesUpToFour) {
    auto margin = [this](const std::string &value) {
        load("Print Side Margins=" + value);
        return Settings.PrintSideMargin;
    };
    EXPECT_EQ(margin("0.28"), 20);
    EXPECT_EQ(margin("5.5"), 20);
    EXPECT_EQ(margin("0"), 0);
    EXPECT_EQ(margin("4"), 288);
    EXPECT_EQ(margin("4.01"), 20);
    EXPECT_EQ(margin("-1"), 20);
    EXPECT_EQ(margin(""), 20);
    EXPECT_EQ(margin("0.5"), 36);
    EXPECT_EQ(margin("0.507"), 37) << "rounded";
    EXPECT_EQ(margin("nan"), 20);
    EXPECT_EQ(margin("inf"), 20);
    EXPECT_EQ(margin("1.0000000000000000000009"), 72) << "longer than the buffer";
    EXPECT_EQ(margin("000000000000000000001"), 0) << "the one lies behind the 19th character";
}

TEST_F(Preferences, TheNameWidthGoesUpToTenInches) {
    load("Print Name Width=10");
    EXPECT_EQ(Settings.PrintNameWidth, 720);
    load("Print Name Width=10.1");
    EXPECT_EQ(Settings.PrintNameWidth, 108);
}

TEST_F(Preferences, AnyNumberButZeroIsTrue) {
    load("Print Landscape=-5\nPrint Names Always=no");
    EXPECT_TRUE(Settings.PrintLandscape);
    EXPECT_FALSE(Settings.PrintNamesAlways);
}

TEST_F(Preferences, TheEndTimeIsCutTo100000AndStaysAboveZero) {
    auto endTime = [this](const char *value) {
        load(std::string("KEL End Time=") + value);
        return Settings.DefEndTime;
    };
    EXPECT_EQ(endTime("200000"), 100000u);
    EXPECT_EQ(endTime("99999"), 99999u);
    EXPECT_EQ(endTime("1"), 1u);
    InitSettings();
    Settings.DefEndTime = 77;
    scratch.write("Kelvane.ini", "[Preferences]\nKEL End Time=0\n");
    LoadPreferences();
    EXPECT_EQ(Settings.DefEndTime, 77u);
    scratch.write("Kelvane.ini", "[Preferences]\nKEL End Time=-5\n");
    LoadPreferences();
    EXPECT_EQ(Settings.DefEndTime, 77u);
}

TEST_F(Preferences, TheClockMultiplierIsClamped) {
    auto multiplier = [this](const char *value) {
        load(std::string("Clock Multiplier=") + value);
        return Settings.DefClockMultiplier;
    };
    EXPECT_EQ(multiplier("0"), 1u);
    EXPECT_EQ(multiplier("-3"), 1u);
    EXPECT_EQ(multiplier("5000"), 1000u);
    EXPECT_EQ(multiplier("1000"), 1000u);
}

TEST_F(Preferences, TheUnitIsAMultipleOfThreeBelow15) {
    auto unit = [this](const char *value) {
        load(std::string("Basic Unit=") + value);
        return Settings.DefBasicUnit;
    };
    EXPECT_EQ(unit("3"), 3);
    EXPECT_EQ(unit("6"), 6);
    EXPECT_EQ(unit("15"), 12) << "a saved fs comes back as ps";
    EXPECT_EQ(unit("0"), 12);
    EXPECT_EQ(unit("-3"), 12);
    EXPECT_EQ(unit("10"), 12);
}

TEST_F(Preferences, DecimalsAreNoneToThree) {
    load("Decimals=3");
    EXPECT_EQ(Settings.DefDecimals, 3);
    load("Decimals=4");
    EXPECT_EQ(Settings.DefDecimals, 0);
    load("Decimals=-1");
    EXPECT_EQ(Settings.DefDecimals, 0);
}

TEST_F(Preferences, KeysToWavesIsKept) {
    EXPECT_FALSE(Settings.KeysToWaves);
    load("Keys To Waves=1");
    EXPECT_TRUE(Settings.KeysToWaves);
    EXPECT_NE(saved().find("Keys To Waves=1\n"), std::string::npos);
    load("Keys To Waves=0");
    EXPECT_FALSE(Settings.KeysToWaves);
}

TEST_F(Preferences, AreSavedInTheirOrder) {
    EXPECT_EQ(saved(), "[Preferences]\n"
                       "Print Side Margins=0.28\n"
                       "Print Vertical Margins=0.28\n"
                       "Print Landscape=1\n"
                       "Print Names Always=1\n"
                       "Print Name Width=1.50\n"
                       "Waveform Text Padding=2\n"
                       "Waveform Gap=4\n"
                       "Bus Radix=16\n"
                       "Auto Clock Assign=1\n"
                       "Clock Multiplier=1\n"
                       "Basic Unit=12\n"
                       "Decimals=0\n"
                       "KEL End Time=100000\n"
                       "Keys To Waves=0\n");
}

TEST_F(Preferences, AreSavedFromThePreferencesHalf) {
    Settings.EndTime = 5;
    Settings.BasicUnit = 3;
    Settings.DefEndTime = 200000;
    Settings.DefAutoClockAssign = false;
    Settings.PrintLandscape = false;
    std::string text = saved();
    EXPECT_NE(text.find("KEL End Time=200000\n"), text.npos);
    EXPECT_NE(text.find("Basic Unit=12\n"), text.npos);
    EXPECT_NE(text.find("Auto Clock Assign=0\n"), text.npos);
    EXPECT_NE(text.find("Print Landscape=0\n"), text.npos);
}

TEST_F(Preferences, SavingKeepsTheOtherSections) {
    scratch.write("Kelvane.ini", "[windows]\nMain-Pos=1 2 3 4\n[Preferences]\nmine=1\n");
    std::string text = saved();
    EXPECT_TRUE(text.starts_with("[windows]\nMain-Pos=1 2 3 4\n[Preferences]\nmine=1\n")) << text;
}

TEST_F(Preferences, ComeBackAsTheyWereSaved) {
    for (int points = 0; points <= 288; points += 9) {
        InitSettings();
        Settings.PrintSideMargin = points;
        Settings.WaveGap = points % 32;
        SavePreferences();
        InitSettings();
        LoadPreferences();
        ASSERT_EQ(Settings.PrintSideMargin, points);
        ASSERT_EQ(Settings.WaveGap, points % 32);
    }
}

TEST_F(Preferences, WithoutAConfigurationDirectoryNothingIsReadOrWritten) {
    SettingsIniPath[0] = '\0';
    LoadPreferences();
    SavePreferences();
    EXPECT_EQ(Settings.DefEndTime, 100000u);
    EXPECT_FALSE(std::filesystem::exists(scratch.file("Kelvane.ini")));
}

// What is in force then is not the user's, and must not replace what is.
TEST_F(Preferences, ThatCouldNotBeReadAreToldAndNotWrittenOver) {
    std::string path = scratch.file("Kelvane.ini");
    std::filesystem::create_symlink("/proc/self/mem", path); // of which the first page cannot be read
    LoadPreferences();
    EXPECT_EQ(Headless.userErrors,
              std::vector<std::string>{"Unable to read file " + path + ": Input/output error"});
    EXPECT_EQ(Settings.DefEndTime, 100000u);
    std::filesystem::remove(path);
    scratch.write("Kelvane.ini", "[Preferences]\nKEL End Time=5000\n");
    SavePreferences();
    EXPECT_EQ(ReadWholeFile(path), "[Preferences]\nKEL End Time=5000\n");
    LoadPreferences();
    SavePreferences();
    EXPECT_NE(ReadWholeFile(path), "[Preferences]\nKEL End Time=5000\n");
}
