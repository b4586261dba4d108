// Damaged preferences and colour files: whatever stands in them, every setting lies in its accepted range,
// and what is saved into such a file comes back.
#include "config/paths.h"
#include "config/settings.h"
#include "platform/files.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

// One file for all runs of this process.
const std::string Path =
    std::filesystem::temp_directory_path() / ("kelvane-profile-fuzz-" + std::to_string(getpid()) + ".ini");

void RemoveIt() {
    RemoveFile(Path.c_str());
}

void Require(bool holds, const char *what) {
    if (holds) return;
    fprintf(stderr, "does not hold: %s\n", what);
    abort();
}

void RequireRanges() {
    const SettingsRecord &s = Settings;
    uint32_t radix = s.BusRadix;
    Require(s.WaveTextPadding < 16 && s.WaveGap < 32, "padding and gap");
    Require(radix == 1 || radix == 8 || radix == 10 || radix == 16, "radix");
    Require(s.PrintSideMargin >= 0 && s.PrintSideMargin <= 4 * 72, "side margin");
    Require(s.PrintVertMargin >= 0 && s.PrintVertMargin <= 4 * 72, "vertical margin");
    Require(s.PrintNameWidth >= 0 && s.PrintNameWidth <= 10 * 72, "name width");
    Require(s.DefEndTime >= 1 && s.DefEndTime <= 100000, "end time");
    Require(s.DefClockMultiplier >= 1 && s.DefClockMultiplier <= 1000, "clock multiplier");
    Require(s.DefBasicUnit >= 3 && s.DefBasicUnit <= 12 && s.DefBasicUnit % 3 == 0, "unit");
    Require(s.DefDecimals >= 0 && s.DefDecimals <= 3, "decimals");
    for (ColorEntry entry : {Background, WaveName, BusWaveform, HighlightWave, SignalWave, UnknownWave,
                             HighZWave, ResistiveWave, SupplyWave})
        Require(ColorSettings[entry] < ColorTable.size(), "colour");
}

void Load() {
    InitSettings();
    LoadPreferences();
    LoadColors(Path.c_str());
    RequireRanges();
}

bool Same(const SettingsRecord &a, const SettingsRecord &b) {
    return a.WaveTextPadding == b.WaveTextPadding && a.WaveGap == b.WaveGap && a.BusRadix == b.BusRadix &&
           a.PrintSideMargin == b.PrintSideMargin && a.PrintVertMargin == b.PrintVertMargin &&
           a.PrintLandscape == b.PrintLandscape && a.PrintNamesAlways == b.PrintNamesAlways &&
           a.PrintNameWidth == b.PrintNameWidth && a.DefAutoClockAssign == b.DefAutoClockAssign &&
           a.DefEndTime == b.DefEndTime && a.DefClockMultiplier == b.DefClockMultiplier &&
           a.DefBasicUnit == b.DefBasicUnit && a.DefDecimals == b.DefDecimals;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    InitPaths();
    snprintf(SettingsIniPath, sizeof SettingsIniPath, "%s", Path.c_str());
    atexit(RemoveIt);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FileHandle file = OpenForWriting(Path.c_str());
    Require(file != NO_FILE && WriteBytes(file, data, size) == static_cast<int64_t>(size), "temporary file");
    CloseFile(file);

    Load();
    const SettingsRecord loaded = Settings;
    const auto colors = ColorSettings;
    SavePreferences();
    SaveColors(Path.c_str());
    Load();
    Require(Same(Settings, loaded) && ColorSettings == colors, "what is saved comes back");
    return 0;
}
