#include "config/settings.h"
#include "headless/headless.h"
#include "unit/support/fresh_store.h"
#include <filesystem>

namespace {

class Colors : public testing::Test {
protected:
    Colors() { InitColors(); }
    void load(const std::string &lines) {
        LoadColors(scratch.write("WavColor.ini", "[Colors]\n" + lines + "\n").c_str());
    }
    ScratchDirectory scratch;
    const std::array<uint16_t, COLOR_SETTINGS> defaults = {0,  6, 4, 11, 15, 8,  5, 11, 3, 6, 19, 22, 6,
                                                           15, 1, 4, 6,  8,  15, 3, 8,  3, 6, 7,  14, 13};
};

} // namespace

TEST_F(Colors, AreSixteenInTheirOrder) {
    const std::array<uint32_t, 16> expected = {0xFFFFFF, 0x00FFFF, 0xFF00FF, 0x0000FF, 0xFFFF00, 0x00FF00,
                                               0xFF0000, 0x808080, 0xC0C0C0, 0x008080, 0x800080, 0x000080,
                                               0x808000, 0x008000, 0x800000, 0x000000};
    EXPECT_EQ(ColorTable, expected);
}

TEST_F(Colors, HaveTheirDefaultsWithoutAFile) {
    LoadColors(scratch.file("none").c_str());
    EXPECT_EQ(ColorSettings, defaults);
}

TEST_F(Colors, ReadEachOfTheNineIntoItsEntry) {
    load("Background=1\nWaveName=2\nHighlightWave=3\nBusWaveform=4\nSignalWave=5\nUnknownWave=6\n"
         "HighZWave=7\nResistiveWave=8\nSupplyWave=9");
    auto expected = defaults;
    expected[0] = 1;
    expected[18] = 2;
    expected[20] = 3;
    expected[19] = 4;
    expected[21] = 5;
    expected[22] = 6;
    expected[23] = 7;
    expected[24] = 8;
    expected[25] = 9;
    EXPECT_EQ(ColorSettings, expected);
}

TEST_F(Colors, AnIndexIsBelow16) {
    load("Background=15\nWaveName=16\nSignalWave=-1\nBusWaveform=4294967296");
    EXPECT_EQ(ColorSettings[Background], 15);
    EXPECT_EQ(ColorSettings[WaveName], 15);
    EXPECT_EQ(ColorSettings[SignalWave], 3);
    EXPECT_EQ(ColorSettings[BusWaveform], 3);
}

TEST_F(Colors, AMissingKeyLeavesThePresentValue) {
    ColorSettings[WaveName] = 4;
    load("Background=2");
    EXPECT_EQ(ColorSettings[WaveName], 4);
}

TEST_F(Colors, ThatCannotBeReadAreToldAndStay) {
    std::string path = scratch.file("WavColor.ini");
    std::filesystem::create_symlink("/proc/self/mem", path); // of which the first page cannot be read
    InitHeadless();
    LoadColors(path.c_str());
    EXPECT_EQ(Headless.userErrors,
              std::vector<std::string>{"Unable to read file " + path + ": Input/output error"});
    EXPECT_EQ(ColorSettings, defaults);
}

TEST_F(Colors, AreSavedAsNumbersAndComeBack) {
    ColorSettings[HighZWave] = 9;
    ColorSettings[Background] = 8;
    std::string path = scratch.file("WavColor.ini");
    SaveColors(path.c_str());
    EXPECT_EQ(ReadWholeFile(path),
              "[Colors]\nBackground=8\nWaveName=15\nHighlightWave=8\nBusWaveform=3\n"
              "SignalWave=3\nUnknownWave=6\nHighZWave=9\nResistiveWave=14\nSupplyWave=13\n");
    InitColors();
    LoadColors(path.c_str());
    EXPECT_EQ(ColorSettings[HighZWave], 9);
    EXPECT_EQ(ColorSettings[Background], 8);
}

TEST_F(Colors, ReturnToTheirDefaultsWithTheSettings) {
    ColorSettings.fill(1);
    InitSettings();
    EXPECT_EQ(ColorSettings, defaults);
}
