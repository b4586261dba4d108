// Where the log's file lies, and how it comes and goes.
#include "unit/editlog/log_fixture.h"

#include "headless/headless.h"
#include <fcntl.h>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

const std::string MARK = Word(0xFFFFFFFF);

class LogFileTest : public LogFixture {};

TEST_F(LogFileTest, TheProgramBeginsWithATemporaryLog) {
    LogInit("._KLxyz");
    EXPECT_STREQ(EditLog.LogSuffix, "._KL");
    fs::path name = EditLog.LogFileName;
    EXPECT_TRUE(name.filename().string().starts_with("_KL"));
    EXPECT_EQ(fs::file_size(name), 0U);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(EditLog.Recording, 1);
    LogDeleteFile();
    EXPECT_FALSE(fs::exists(name));
    EXPECT_STREQ(EditLog.LogFileName, "");
    LogInit("abc");
    EXPECT_TRUE(fs::path(EditLog.LogFileName).filename().string().starts_with("abc"));
}

TEST_F(LogFileTest, WithoutATemporaryDirectoryItGoesOnWithoutAFile) {
    std::string before = getenv("TMPDIR") ? getenv("TMPDIR") : "";
    setenv("TMPDIR", "/nowhere/at/all", 1);
    LogInit(LOG_SUFFIX);
    if (before.empty())
        unsetenv("TMPDIR");
    else
        setenv("TMPDIR", before.c_str(), 1);
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to create log file "}));
    EXPECT_STREQ(EditLog.LogFileName, "");
    action("one");
    EXPECT_EQ(LogUndo(), 1);
}

TEST_F(LogFileTest, AnUntitledDocumentGoesOnWithoutAFileToo) {
    std::string before = getenv("TMPDIR") ? getenv("TMPDIR") : "";
    setenv("TMPDIR", "/nowhere/at/all", 1);
    LogBindToDocument("");
    if (before.empty())
        unsetenv("TMPDIR");
    else
        setenv("TMPDIR", before.c_str(), 1);
    EXPECT_STREQ(EditLog.LogFileName, "");
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(LogFileTest, ADocumentsLogLiesBesideIt) {
    LogBindToDocument(scratch.file("counter.wdl").c_str());
    EXPECT_EQ(EditLog.LogFileName, scratch.file("counter._KL"));
    EXPECT_TRUE(fs::exists(scratch.file("counter._KL")));
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(fs::status(EditLog.LogFileName).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(LogFileTest, ALogThatIsThereStaysOpen) {
    scratch.write("counter._KL", "old");
    LogBindToDocument(scratch.file("counter.wdl").c_str());
    EXPECT_NE(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(ReadWholeFile(scratch.file("counter._KL")), "old");
}

TEST_F(LogFileTest, WithoutADocumentTheLogIsATemporaryFile) {
    ASSERT_TRUE(LogOpenFile());
    FileHandle before = EditLog.LogHandle;
    LogBindToDocument("");
    CloseFile(before);
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_TRUE(fs::path(EditLog.LogFileName).filename().string().starts_with("_KL"));
}

TEST_F(LogFileTest, ALogThatCannotBeMadeIsToldAndDoneWithout) {
    std::string log = scratch.file("nowhere/counter._KL");
    LogBindToDocument(scratch.file("nowhere/counter.wdl").c_str());
    EXPECT_EQ(Headless.userErrors, (Texts{"Failed to create log file " + log}));
    EXPECT_STREQ(EditLog.LogFileName, "");
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    // Nor can one whose path is too long.
    Headless.userErrors.clear();
    LogBindToDocument(std::string(MAX_PATH_SIZE, 'n').c_str());
    EXPECT_EQ(Headless.userErrors, Texts{"Failed to create log file "});
    EXPECT_STREQ(EditLog.LogFileName, "");
}

TEST_F(LogFileTest, AFileBeyondEveryPositionIsTakenAsFarAsPositionsReach) {
    fs::resize_file(path, 5000000000);
    ASSERT_TRUE(LogOpenFile());
    EXPECT_EQ(LogFileLength(), INT32_MAX - 2 * ENTRY_ROOM);
    fs::resize_file(path, 5000);
    EXPECT_EQ(LogFileLength(), 5000);
    LogDeleteFile();
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_FALSE(fs::exists(path));
}

// A log with records must not lie beside a document that has them already.
TEST_F(LogFileTest, ALogThatCannotBeDeletedIsEmptied) {
    action("one");
    LogFlush();
    LogCloseFile();
    ASSERT_NE(file(), "");
    // No file goes from this directory.
    int open = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "/proc/self/fd/%d", open);
    LogDeleteFile();
    EXPECT_EQ(file(), "");
    EXPECT_STREQ(EditLog.LogFileName, "");
    EXPECT_TRUE(Headless.userErrors.empty());
    close(open);
}

TEST_F(LogFileTest, ClosingDoesNotFlush) {
    action("one");
    LogFlush();
    action("two");
    LogCloseFile();
    EXPECT_EQ(EditLog.LogHandle, NO_FILE);
    EXPECT_EQ(EditLog.Dirty, 1);
    EXPECT_EQ(file(), Entry("one") + MARK);
}

} // namespace
