#include "shell/file_names.h"
#include "unit/support/fresh_store.h"
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

std::string WithExtension(const std::string &path, const char *ext) {
    char buffer[MAX_PATH_SIZE];
    strcpy(buffer, path.c_str());
    SetExtension(buffer, ext);
    return buffer;
}

std::string Base(const char *path) {
    char buffer[MAX_PATH_SIZE];
    BaseName(path, buffer);
    return buffer;
}

std::string Directory(const char *path) {
    char buffer[MAX_PATH_SIZE];
    return DirectoryOf(path, buffer) ? buffer : "none";
}

} // namespace

TEST(SetExtension, ReplacesTheLastExtensionOnly) {
    EXPECT_EQ(WithExtension("a.b.c", ".wdl"), "a.b.wdl");
    EXPECT_EQ(WithExtension("a.", ".wdl"), "a.wdl");
}

TEST(SetExtension, AddsToANameWithoutOne) {
    EXPECT_EQ(WithExtension("name", ".wdl"), "name.wdl");
}

TEST(SetExtension, LeavesTheDotOfADirectoryAlone) {
    EXPECT_EQ(WithExtension("dir.x\\name", ".wdl"), "dir.x\\name.wdl");
    EXPECT_EQ(WithExtension("dir.x/name", ".wdl"), "dir.x/name.wdl");
    EXPECT_EQ(WithExtension("d.x:name", ".wdl"), "d.x:name.wdl");
}

TEST(SetExtension, LeavesAnEmptyPathEmpty) {
    EXPECT_EQ(WithExtension("", ".wdl"), "");
}

TEST(SetExtension, RefusesAResultThatDoesNotFit) {
    std::string fits(MAX_PATH_SIZE - 5, 'x'), longer(MAX_PATH_SIZE - 4, 'x');
    EXPECT_EQ(WithExtension(fits, ".wdl"), fits + ".wdl");
    EXPECT_EQ(WithExtension(longer, ".wdl"), longer);
    char path[MAX_PATH_SIZE];
    strcpy(path, longer.c_str());
    EXPECT_FALSE(SetExtension(path, ".wdl"));
    EXPECT_TRUE(SetExtension(path, ".kd"));
}

TEST(FileNamePart, StandsBehindTheLastSeparator) {
    EXPECT_STREQ(FileNamePart("c:\\dir\\name.wdl"), "name.wdl");
    EXPECT_STREQ(FileNamePart("/dir/name"), "name");
    EXPECT_STREQ(FileNamePart("c:name"), "name");
    EXPECT_STREQ(FileNamePart("name"), "name");
    EXPECT_STREQ(FileNamePart("dir/"), "");
    EXPECT_STREQ(FileNamePart(""), "");
}

TEST(BaseName, IsTheNameWithoutItsExtension) {
    EXPECT_EQ(Base("c:\\dir.x\\name.a.wdl"), "name.a");
    EXPECT_EQ(Base("dir.x/name"), "name");
    EXPECT_EQ(Base(""), "");
    EXPECT_EQ(Base((std::string(300, 'x') + ".wdl").c_str()), std::string(MAX_PATH_SIZE - 1, 'x'));
}

TEST(DirectoryOf, IsTheFullPathWithoutTheName) {
    EXPECT_EQ(Directory("/dir/sub/name.wdl"), "/dir/sub");
    EXPECT_EQ(Directory("/dir/sub/"), "/dir/sub");
    EXPECT_EQ(Directory("name"), fs::current_path().string());
}

TEST(DirectoryOf, KeepsTheSeparatorOfARoot) {
    EXPECT_EQ(Directory("/name"), "/");
    EXPECT_EQ(Directory("/"), "/");
}

TEST(DirectoryOf, IsNoneForAnEmptyOrOverlongPath) {
    EXPECT_EQ(Directory(""), "none");
    EXPECT_EQ(Directory(std::string(300, 'x').c_str()), "none");
}

TEST(ChangeToDirectoryOf, MakesTheFilesDirectoryTheCurrentOne) {
    fs::path before = fs::current_path();
    ScratchDirectory scratch;
    EXPECT_TRUE(ChangeToDirectoryOf(scratch.file("name.wdl").c_str()));
    EXPECT_TRUE(fs::equivalent(fs::current_path(), scratch.path));
    EXPECT_TRUE(ChangeToDirectoryOf(""));
    EXPECT_TRUE(ChangeToDirectoryOf("name.wdl"));
    EXPECT_FALSE(ChangeToDirectoryOf(scratch.file("none/name.wdl").c_str()));
    EXPECT_TRUE(fs::equivalent(fs::current_path(), scratch.path));
    fs::current_path(before);
}
