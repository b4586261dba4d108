// The settings: the half that lives in the preferences file and sets the defaults of each new document, the
// half that the open document uses, what the program itself holds, and the colours.
#pragma once

#include "store/time_value.h"
#include <array>
#include <cstdint>

struct SettingsRecord {
    // Preferences.
    int32_t WaveTextPadding; // pixels above and below the text in a wave
    int32_t WaveGap;         // pixels above and below each wave
    uint32_t BusRadix;       // 2, 8, 10 or 16
    int32_t PrintSideMargin; // 1/72 inch, as the next and PrintNameWidth
    int32_t PrintVertMargin;
    bool PrintLandscape;
    bool PrintNamesAlways;
    int32_t PrintNameWidth;
    bool DefAutoClockAssign;
    TimeVal DefEndTime;
    uint32_t DefClockMultiplier;
    int32_t DefBasicUnit;
    int32_t DefDecimals;
    bool KeysToWaves; // a selection leaves the keyboard to the waves

    // The open document's.
    bool AutoClockAssign;     // new nodes get the clock A
    TimeVal EndTime;          // length of the document's time axis
    uint32_t ClockMultiplier; // the master clock's period in counts
    int32_t BasicUnit;        // power of ten below a second: 3 ms, 6 us, 9 ns, 12 ps, 15 fs
    int32_t Decimals;         // digits behind the point, 0 to 3

    // The program's.
    bool ShowPatternNames;
    bool ShowPatternWaveforms;
    bool ShowSyncActivity;
    bool ShowGuidelines;
    bool SyncMode;
    bool HierLinkMode;
    char HierChar; // separates the levels of a name
    uint32_t StartupCommand;
};
// Written by the preferences file, the directives of a document, the command line and the option dialogs.
extern SettingsRecord Settings;

// Puts the start values of the settings and the colours in place.
void InitSettings();
// The document half from the preferences half.
void ResetDocumentSettings();
// Reads and writes the section "Preferences" of SettingsIniPath. A value out of range leaves the setting as
// it is, and nothing is reported. A file that the disk does not give back is told, and not written to again.
void LoadPreferences();
void SavePreferences();

// True if there is no such file, or it can be read to its end; false after a message.
bool CheckSettingsFile(const char *path);

// The 16 fixed colours, as 0xRRGGBB.
extern const std::array<uint32_t, 16> ColorTable;

// Indices into ColorSettings of the colours that the display uses.
enum ColorEntry : uint32_t {
    Background = 0,
    WaveName = 18,
    BusWaveform = 19,
    HighlightWave = 20,
    SignalWave = 21,
    UnknownWave = 22,
    HighZWave = 23,
    ResistiveWave = 24,
    SupplyWave = 25,
};
constexpr int COLOR_SETTINGS = 26;
// Each an index into ColorTable. Written by LoadColors and the colour dialog.
extern std::array<uint16_t, COLOR_SETTINGS> ColorSettings;

// Puts the start values of ColorSettings in place, as InitSettings does it too.
void InitColors();
// The nine colours that the user sets, in the section "Colors" of `path`. An index that is not below 16
// leaves the entry as it is.
void LoadColors(const char *path);
void SaveColors(const char *path);
