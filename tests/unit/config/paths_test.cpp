#include "config/paths.h"
#include "config/settings.h"
#include "unit/support/fresh_store.h"
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

class Paths : public testing::Test {
protected:
    Paths() {
        InitSettings();
        InitPaths();
        unsetenv("KELVANE_CONFIG");
        setenv("XDG_CONFIG_HOME", scratch.path.c_str(), 1);
    }
    ~Paths() override {
        InitPaths();
        unsetenv("KELVANE_CONFIG");
        unsetenv("XDG_CONFIG_HOME");
    }
    void simulator(const std::string &name, const std::string &text) {
        snprintf(SimulatorIniPath, sizeof SimulatorIniPath, "%s", scratch.write(name, text).c_str());
        ReadSimulatorSettings();
    }
    ScratchDirectory scratch;
};

} // namespace

TEST_F(Paths, AreEmptyAtFirstButForTheEditor) {
    snprintf(ConfigDirectory, sizeof ConfigDirectory, "x");
    InitPaths();
    for (const char *path :
         {ConfigDirectory, SettingsIniPath, ColorsIniPath, HelpDirectory, SimulatorIniPath, SimulatorName})
        EXPECT_STREQ(path, "");
    EXPECT_STREQ(EditorCommand, "notepad.exe");
}

TEST_F(Paths, TheConfigurationLiesWhereTheEnvironmentSaysAndIsMade) {
    std::string directory = scratch.file("a/b");
    setenv("KELVANE_CONFIG", directory.c_str(), 1);
    ReadDesignContext();
    EXPECT_EQ(ConfigDirectory, directory);
    EXPECT_TRUE(fs::is_directory(directory));
    EXPECT_EQ(SettingsIniPath, directory + "/Kelvane.ini");
    EXPECT_EQ(ColorsIniPath, directory + "/WavColor.ini");
    EXPECT_STREQ(SimulatorIniPath, "");
}

TEST_F(Paths, ARelativeConfigurationStaysInItsPlaceWhenTheCurrentDirectoryChanges) {
    fs::path before = fs::current_path();
    fs::current_path(scratch.path);
    std::string expected = fs::current_path().string() + "/settings";
    setenv("KELVANE_CONFIG", "settings", 1);
    ReadDesignContext();
    fs::current_path(before);
    EXPECT_EQ(ConfigDirectory, expected);
}

TEST_F(Paths, OtherwiseItLiesWithTheUsersConfiguration) {
    ReadDesignContext();
    EXPECT_EQ(ConfigDirectory, scratch.path + "/Kelvane");
    EXPECT_TRUE(fs::is_directory(ConfigDirectory));
}

TEST_F(Paths, ADirectoryThatCannotBeMadeIsNone) {
    std::string file = scratch.write("file", "");
    setenv("KELVANE_CONFIG", (file + "/below").c_str(), 1);
    ReadDesignContext();
    EXPECT_STREQ(ConfigDirectory, "");
    EXPECT_STREQ(SettingsIniPath, "");
    EXPECT_STREQ(ColorsIniPath, "");
}

TEST_F(Paths, AFileNameThatDoesNotFitIsNone) {
    std::string directory = scratch.path + "/" + std::string(MAX_PATH_SIZE - 5 - scratch.path.size(), 'x');
    setenv("KELVANE_CONFIG", directory.c_str(), 1);
    ReadDesignContext();
    EXPECT_EQ(ConfigDirectory, directory);
    EXPECT_STREQ(SettingsIniPath, "");
}

TEST_F(Paths, HelpLiesBesideTheProgram) {
    ReadHelpDirectory();
    EXPECT_TRUE(fs::exists(std::string(HelpDirectory) + "/unit_config"));
}

TEST_F(Paths, TheSimulatorsFileGivesItsNameAndTheSeparator) {
    simulator("Simcore.ini", "[SimControls]\nHierChar=/x\n");
    EXPECT_STREQ(SimulatorName, "Simcore");
    EXPECT_EQ(Settings.HierChar, '/');
}

TEST_F(Paths, TheSeparatorIsAPointWhereTheFileNamesNone) {
    Settings.HierChar = '!';
    simulator("sim.ini", "[Other]\nHierChar=/\n");
    EXPECT_EQ(Settings.HierChar, '.');
    simulator("sim.ini", "[SimControls]\nHierChar=\n");
    EXPECT_EQ(Settings.HierChar, '.');
    simulator("sim.ini", "[SimControls]\nHierChar=\"|\"\n");
    EXPECT_EQ(Settings.HierChar, '|');
}

TEST_F(Paths, TheSimulatorsNameIsCut) {
    simulator(std::string(40, 'n') + ".ini", "");
    EXPECT_EQ(SimulatorName, std::string(31, 'n'));
}

TEST_F(Paths, WithoutASimulatorNothingChanges) {
    Settings.HierChar = '!';
    ReadSimulatorSettings();
    EXPECT_STREQ(SimulatorName, "");
    EXPECT_EQ(Settings.HierChar, '!');
}
