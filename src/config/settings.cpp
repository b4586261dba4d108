#include "config/settings.h"
#include "config/paths.h"
#include "platform/profile.h"
#include "platform/text_file.h"
#include "shell/reporting.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

SettingsRecord Settings;

namespace {

constexpr const char *SECTION = "Preferences";
constexpr double POINTS_PER_INCH = 72.0;
// The longest time axis that a new document begins with, in counts.
constexpr int32_t LARGEST_END_TIME = 100000;

// The preferences are there but could not be read: what is in force are not the user's, and must not replace
// them.
bool preferencesUnread;

int32_t ReadInteger(const char *key, int32_t fallback) {
    return ProfileInteger(SECTION, key, fallback, SettingsIniPath);
}

void ReadBoolean(const char *key, bool &value) {
    value = ReadInteger(key, value) != 0;
}

// A text in inches, 0 to `limit`, taken as 1/72 inch.
void ReadInches(const char *key, double limit, int32_t &value) {
    char text[20];
    if (ProfileString(SECTION, key, "", text, sizeof text, SettingsIniPath) == 0) return;
    double inches = strtod(text, nullptr);
    if (inches >= 0 && inches <= limit)
        value = static_cast<int32_t>(std::floor(inches * POINTS_PER_INCH + 0.5));
}

void ReadBelow(const char *key, int32_t limit, int32_t &value) {
    int32_t read = ReadInteger(key, value);
    if (read < limit) value = read;
}

void WriteText(const char *key, const char *value) {
    SetProfileString(SECTION, key, value, SettingsIniPath);
}

void WriteInteger(const char *key, int64_t value) {
    char text[24];
    snprintf(text, sizeof text, "%lld", static_cast<long long>(value));
    WriteText(key, text);
}

void WriteInches(const char *key, int32_t value) {
    char text[24];
    snprintf(text, sizeof text, "%.2f", value / POINTS_PER_INCH);
    WriteText(key, text);
}

} // namespace

void InitSettings() {
    Settings = SettingsRecord{
        .WaveTextPadding = 2,
        .WaveGap = 4,
        .BusRadix = 16,
        .PrintSideMargin = 20,
        .PrintVertMargin = 20,
        .PrintLandscape = true,
        .PrintNamesAlways = true,
        .PrintNameWidth = 108,
        .DefAutoClockAssign = true,
        .DefEndTime = 100000,
        .DefClockMultiplier = 1,
        .DefBasicUnit = 12,
        .DefDecimals = 0,
        .KeysToWaves = false,
        .AutoClockAssign = true,
        .EndTime = 100000,
        .ClockMultiplier = 1,
        .BasicUnit = 12,
        .Decimals = 0,
        .ShowPatternNames = true,
        .ShowPatternWaveforms = true,
        .ShowSyncActivity = false,
        .ShowGuidelines = false,
        .SyncMode = false,
        .HierLinkMode = false,
        .HierChar = '.',
        .StartupCommand = 220,
    };
    InitColors();
    preferencesUnread = false;
}

bool CheckSettingsFile(const char *path) {
    std::string why;
    if (ReadsToItsEnd(path, why)) return true;
    UserErrorFormat("Unable to read file %s: %s", path, why.c_str());
    return false;
}

void ResetDocumentSettings() {
    Settings.AutoClockAssign = Settings.DefAutoClockAssign;
    Settings.EndTime = Settings.DefEndTime;
    Settings.ClockMultiplier = Settings.DefClockMultiplier;
    Settings.BasicUnit = Settings.DefBasicUnit;
    Settings.Decimals = Settings.DefDecimals;
}

// A radix of 2 and a unit of 15 (fs) can be saved and are refused here, so that the next start has 16 and 12;
// radix 1, with which bus values have no text, is taken. All three are meant.
void LoadPreferences() {
    preferencesUnread = !CheckSettingsFile(SettingsIniPath);
    if (preferencesUnread) return;
    ReadBelow("Waveform Text Padding", 16, Settings.WaveTextPadding);
    ReadBelow("Waveform Gap", 32, Settings.WaveGap);
    int32_t radix = ReadInteger("Bus Radix", static_cast<int32_t>(Settings.BusRadix));
    if (radix == 1 || radix == 8 || radix == 10 || radix == 16)
        Settings.BusRadix = static_cast<uint32_t>(radix);
    ReadInches("Print Side Margins", 4, Settings.PrintSideMargin);
    ReadInches("Print Vertical Margins", 4, Settings.PrintVertMargin);
    ReadBoolean("Print Landscape", Settings.PrintLandscape);
    ReadBoolean("Print Names Always", Settings.PrintNamesAlways);
    ReadInches("Print Name Width", 10, Settings.PrintNameWidth);
    ReadBoolean("Auto Clock Assign", Settings.DefAutoClockAssign);
    int32_t endTime = std::min(ReadInteger("KEL End Time", 0), LARGEST_END_TIME);
    if (endTime > 0) Settings.DefEndTime = static_cast<TimeVal>(endTime);
    int32_t multiplier = ReadInteger("Clock Multiplier", static_cast<int32_t>(Settings.DefClockMultiplier));
    Settings.DefClockMultiplier = static_cast<uint32_t>(std::clamp(multiplier, 1, 1000));
    int32_t unit = ReadInteger("Basic Unit", Settings.DefBasicUnit);
    if (unit >= 1 && unit < 15 && unit % 3 == 0) Settings.DefBasicUnit = unit;
    int32_t decimals = ReadInteger("Decimals", Settings.DefDecimals);
    if (decimals >= 0 && decimals <= 3) Settings.DefDecimals = decimals;
    ReadBoolean("Keys To Waves", Settings.KeysToWaves);
}

void SavePreferences() {
    if (preferencesUnread) return;
    WriteInches("Print Side Margins", Settings.PrintSideMargin);
    WriteInches("Print Vertical Margins", Settings.PrintVertMargin);
    WriteInteger("Print Landscape", Settings.PrintLandscape);
    WriteInteger("Print Names Always", Settings.PrintNamesAlways);
    WriteInches("Print Name Width", Settings.PrintNameWidth);
    WriteInteger("Waveform Text Padding", Settings.WaveTextPadding);
    WriteInteger("Waveform Gap", Settings.WaveGap);
    WriteInteger("Bus Radix", static_cast<int32_t>(Settings.BusRadix));
    WriteInteger("Auto Clock Assign", Settings.DefAutoClockAssign);
    WriteInteger("Clock Multiplier", static_cast<int32_t>(Settings.DefClockMultiplier));
    WriteInteger("Basic Unit", Settings.DefBasicUnit);
    WriteInteger("Decimals", Settings.DefDecimals);
    WriteInteger("KEL End Time", static_cast<int32_t>(Settings.DefEndTime));
    WriteInteger("Keys To Waves", Settings.KeysToWaves);
}
