#include "platform/files.h"
#include "platform/files_native.h"
#include "unit/support/fresh_store.h"
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;

namespace {

std::string Full(const std::string &path) {
    char full[MAX_PATH_SIZE] = "old";
    FullPath(path.c_str(), full);
    return full;
}

void SetPermissions(const std::string &path, unsigned bits) {
    fs::permissions(path, static_cast<fs::perms>(bits));
}

// The process's directory and environment as they were, whatever a test does with them.
class Surroundings : public testing::Test {
protected:
    ~Surroundings() override {
        fs::current_path(directory);
        restore("HOME", home);
        restore("XDG_CONFIG_HOME", config);
    }
    static std::string get(const char *name) { return getenv(name) ? getenv(name) : ""; }
    static void restore(const char *name, const std::string &value) {
        if (value.empty())
            unsetenv(name);
        else
            setenv(name, value.c_str(), 1);
    }
    ScratchDirectory scratch;
    fs::path directory = fs::current_path();
    std::string home = get("HOME"), config = get("XDG_CONFIG_HOME");
};

} // namespace

TEST(Files, AFileThatIsThereCanBeUsedInEveryWay) {
    ScratchDirectory scratch;
    std::string path = scratch.write("a", "x");
    for (FileAccess access : {FileAccess::Exists, FileAccess::Read, FileAccess::Write})
        EXPECT_TRUE(CanAccessFile(path.c_str(), access));
}

TEST(Files, AMissingFileCannotBeUsed) {
    ScratchDirectory scratch;
    for (FileAccess access : {FileAccess::Exists, FileAccess::Read, FileAccess::Write})
        EXPECT_FALSE(CanAccessFile(scratch.file("none").c_str(), access));
}

TEST(Files, AReadOnlyFileIsNotWritableAndStaysAsItIs) {
    ScratchDirectory scratch;
    std::string path = scratch.write("a", "kept");
    SetPermissions(path, 0444);
    EXPECT_TRUE(CanAccessFile(path.c_str(), FileAccess::Read));
    EXPECT_FALSE(CanAccessFile(path.c_str(), FileAccess::Write));
    EXPECT_EQ(OpenForWriting(path.c_str()), NO_FILE);
    EXPECT_EQ(ReadWholeFile(path), "kept");
}

TEST(Files, AnUnreadableFileDoesNotOpen) {
    ScratchDirectory scratch;
    std::string path = scratch.write("a", "x");
    SetPermissions(path, 0222);
    EXPECT_FALSE(CanAccessFile(path.c_str(), FileAccess::Read));
    EXPECT_EQ(OpenForReading(path.c_str()), NO_FILE);
}

TEST(Files, ADirectoryDoesNotOpen) {
    ScratchDirectory scratch;
    EXPECT_EQ(OpenForReading(scratch.path.c_str()), NO_FILE);
    EXPECT_EQ(OpenForWriting(scratch.path.c_str()), NO_FILE);
    EXPECT_TRUE(CanAccessFile(scratch.path.c_str(), FileAccess::Exists));
}

TEST(Files, WhatIsWrittenReadsBack) {
    ScratchDirectory scratch;
    FileHandle file = OpenForWriting(scratch.file("a").c_str());
    ASSERT_NE(file, NO_FILE);
    EXPECT_EQ(WriteBytes(file, "abc", 3), 3);
    CloseFile(file);
    file = OpenForReading(scratch.file("a").c_str());
    char buffer[10];
    EXPECT_EQ(ReadBytes(file, buffer, sizeof buffer), 3);
    EXPECT_EQ(std::string(buffer, 3), "abc");
    EXPECT_EQ(ReadBytes(file, buffer, sizeof buffer), 0);
    CloseFile(file);
}

TEST(Files, RemovesAFileOnce) {
    ScratchDirectory scratch;
    std::string path = scratch.write("a", "x");
    EXPECT_TRUE(RemoveFile(path.c_str()));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(RemoveFile(path.c_str()));
}

TEST(Files, ReplacesAFileByAnother) {
    ScratchDirectory scratch;
    std::string from = scratch.write("from", "new"), to = scratch.write("to", "old");
    EXPECT_TRUE(ReplaceFileWith(from.c_str(), to.c_str()));
    EXPECT_EQ(ReadWholeFile(to), "new");
    EXPECT_FALSE(fs::exists(from));
    EXPECT_FALSE(ReplaceFileWith(from.c_str(), to.c_str()));
    EXPECT_EQ(ReadWholeFile(to), "new");
}

TEST_F(Surroundings, AFullPathBeginsAtTheRoot) {
    fs::current_path(scratch.path);
    std::string here = fs::current_path();
    EXPECT_EQ(Full("a.wdl"), here + "/a.wdl");
    EXPECT_EQ(Full("./b//c/../a.wdl"), here + "/b/a.wdl");
    EXPECT_EQ(Full("/../x"), "/x");
    EXPECT_EQ(Full("/"), "/");
}

TEST_F(Surroundings, AFullPathKeepsTheWayOutOfALinkedDirectory) {
    fs::create_directories(scratch.path + "/far/inside");
    fs::create_directory_symlink(scratch.path + "/far/inside", scratch.path + "/link");
    scratch.write("far/a", "right");
    scratch.write("a", "wrong");
    EXPECT_EQ(ReadWholeFile(Full(scratch.path + "/link/../a")), "right");
}

TEST(Files, AnEmptyOrOverlongPathHasNoFullPath) {
    EXPECT_EQ(Full(""), "");
    EXPECT_EQ(Full("/" + std::string(MAX_PATH_SIZE - 2, 'x')).size(), MAX_PATH_SIZE - 1u);
    EXPECT_EQ(Full("/" + std::string(MAX_PATH_SIZE - 1, 'x')), "");
}

TEST_F(Surroundings, ChangesTheCurrentDirectory) {
    EXPECT_TRUE(SetCurrentPath(scratch.path.c_str()));
    EXPECT_TRUE(fs::equivalent(fs::current_path(), scratch.path));
    EXPECT_FALSE(SetCurrentPath(scratch.file("none").c_str()));
    EXPECT_TRUE(fs::equivalent(fs::current_path(), scratch.path));
}

TEST(Files, MakesADirectoryWithItsParents) {
    ScratchDirectory scratch;
    std::string path = scratch.file("a/b/c");
    EXPECT_TRUE(MakeDirectory(path.c_str()));
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_TRUE(MakeDirectory(path.c_str()));
    std::string file = scratch.write("file", "");
    EXPECT_FALSE(MakeDirectory(file.c_str()));
    EXPECT_FALSE(MakeDirectory((file + "/below").c_str()));
    EXPECT_FALSE(MakeDirectory(""));
}

TEST_F(Surroundings, ReadsAnEnvironmentVariableThatFits) {
    char value[6];
    setenv("XDG_CONFIG_HOME", "12345", 1);
    ReadEnvironment("XDG_CONFIG_HOME", value, sizeof value);
    EXPECT_STREQ(value, "12345");
    setenv("XDG_CONFIG_HOME", "123456", 1);
    ReadEnvironment("XDG_CONFIG_HOME", value, sizeof value);
    EXPECT_STREQ(value, "");
    unsetenv("XDG_CONFIG_HOME");
    ReadEnvironment("XDG_CONFIG_HOME", value, sizeof value);
    EXPECT_STREQ(value, "");
}

TEST_F(Surroundings, TheUsersConfigurationLiesInTheHomeDirectory) {
    char path[MAX_PATH_SIZE];
    setenv("HOME", "/home/designer", 1);
    unsetenv("XDG_CONFIG_HOME");
    UserConfigDirectory(path, sizeof path);
    EXPECT_STREQ(path, "/home/designer/.config");
    setenv("XDG_CONFIG_HOME", "/elsewhere", 1);
    UserConfigDirectory(path, sizeof path);
    EXPECT_STREQ(path, "/elsewhere");
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("HOME");
    UserConfigDirectory(path, sizeof path);
    EXPECT_STREQ(path, "");
}

TEST(Files, TheProgramsDirectoryHoldsTheProgram) {
    char path[MAX_PATH_SIZE];
    ProgramDirectory(path, sizeof path);
    EXPECT_TRUE(fs::exists(std::string(path) + "/unit_platform"));
    char tooShort[2];
    ProgramDirectory(tooShort, sizeof tooShort);
    EXPECT_STREQ(tooShort, "");
}

TEST(Files, MapsTheCaseOfLettersAndLeavesOtherBytesAlone) {
    char text[] = "Abc-XYZ_9\xc3\xa9\xc3\x89@[`{";
    LowerCase(text);
    EXPECT_STREQ(text, "abc-xyz_9\xc3\xa9\xc3\x89@[`{");
    UpperCase(text);
    EXPECT_STREQ(text, "ABC-XYZ_9\xc3\xa9\xc3\x89@[`{");
}

TEST(StartProcess, RunsAProgramWithQuotedArguments) {
    StartProcessHook = nullptr;
    ScratchDirectory scratch;
    std::string made = scratch.file("a b");
    EXPECT_TRUE(StartProcess(("touch \"" + made + "\"").c_str()));
    for (int i = 0; i < 1000 && !fs::exists(made); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(fs::exists(made));
}

TEST(StartProcess, FailsWithoutAProgram) {
    StartProcessHook = nullptr;
    EXPECT_FALSE(StartProcess(""));
    EXPECT_FALSE(StartProcess("kelvane-no-such-program x"));
}
