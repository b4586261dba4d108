#include "config/settings.h"
#include "platform/profile.h"
#include <cstdio>

const std::array<uint32_t, 16> ColorTable = {
    0xFFFFFF, // white
    0x00FFFF, // cyan
    0xFF00FF, // magenta
    0x0000FF, // blue
    0xFFFF00, // yellow
    0x00FF00, // lime
    0xFF0000, // red
    0x808080, // gray
    0xC0C0C0, // silver
    0x008080, // teal
    0x800080, // purple
    0x000080, // navy
    0x808000, // olive
    0x008000, // green
    0x800000, // maroon
    0x000000, // black
};

std::array<uint16_t, COLOR_SETTINGS> ColorSettings;

namespace {

// Entries 1 to 17 are the program's own; two of them (19 and 22) lie outside ColorTable and are not drawn
// with.
constexpr std::array<uint16_t, COLOR_SETTINGS> DEFAULT_COLORS = {
    0, 6, 4, 11, 15, 8, 5, 11, 3, 6, 19, 22, 6, 15, 1, 4, 6, 8, 15, 3, 8, 3, 6, 7, 14, 13,
};

constexpr const char *SECTION = "Colors";

struct ColorKey {
    ColorEntry entry;
    const char *name;
};

constexpr std::array<ColorKey, 9> COLOR_KEYS = {{
    {Background, "Background"},
    {WaveName, "WaveName"},
    {HighlightWave, "HighlightWave"},
    {BusWaveform, "BusWaveform"},
    {SignalWave, "SignalWave"},
    {UnknownWave, "UnknownWave"},
    {HighZWave, "HighZWave"},
    {ResistiveWave, "ResistiveWave"},
    {SupplyWave, "SupplyWave"},
}};

} // namespace

void InitColors() {
    ColorSettings = DEFAULT_COLORS;
}

void LoadColors(const char *path) {
    if (!CheckSettingsFile(path)) return;
    for (const ColorKey &key : COLOR_KEYS) {
        int index = ProfileInteger(SECTION, key.name, ColorSettings[key.entry], path);
        if (index >= 0 && index < static_cast<int>(ColorTable.size()))
            ColorSettings[key.entry] = static_cast<uint16_t>(index);
    }
}

void SaveColors(const char *path) {
    for (const ColorKey &key : COLOR_KEYS) {
        char text[12];
        snprintf(text, sizeof text, "%u", static_cast<unsigned>(ColorSettings[key.entry]));
        SetProfileString(SECTION, key.name, text, path);
    }
}
