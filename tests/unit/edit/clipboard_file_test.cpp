// The file that a cut makes, and how others get it.
#include "headless/headless.h"
#include "platform/files_native.h"
#include "unit/edit/clipboard_fixture.h"
#include <fcntl.h>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

class ClipboardFile : public ClipboardFixture {};

TEST_F(ClipboardFile, AnEmptyCutLeavesTheClipboardAlone) {
    HeadlessClipboard.owned = false;
    CutToClipFile(EditLog.rPtr);
    EXPECT_EQ(HeadlessClipboard.emptied, 0);
    EXPECT_EQ(ClipName[0], '\0');
}

TEST_F(ClipboardFile, ACutThatWroteNoRecordLeavesTheClipboardAloneBehindAnUndo) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = clipFile();
    // Behind the position lies what can be redone.
    SetItemValue(PatternFromId(a), 0, 5);
    LogEndAction();
    LogUndo();
    uint16_t empty = MakePattern("EMPTY");
    for (int i = 0; i < 2; i++) {
        SelectRange(PatternFromId(empty), 0, 0, 0, 0);
        EditSelection.SelKind = SEL_WHOLE;
        i == 0 ? cut() : copy();
        EXPECT_EQ(clipFile(), file);
        EXPECT_EQ(HeadlessClipboard.offered.size(), 1U);
    }
    EXPECT_EQ(LogRedo(), 1);
    EXPECT_EQ(PatternFromId(a)->item(0).value(), 5U);
}

// --- the file -------------------------------------------------------------------------------------

TEST_F(ClipboardFile, TheFileHoldsTheRecordsOfTheCutAndNoMark) {
    uint16_t a = MakePattern("A", ITEMS);
    SetItemValue(PatternFromId(a), 0, 5);
    LogEndAction();
    auto start = static_cast<size_t>(EditLog.rPtr);
    select(a, 15, 35);
    ASSERT_EQ(EditSelection.SelKind, SEL_SPAN);
    copy();
    std::string copied = clipFile();
    cut();
    std::string log = ReadWholeFile(EditLog.LogFileName);
    std::string file = clipFile();
    EXPECT_EQ(file, log.substr(start, file.size()));
    EXPECT_EQ(file.size(), copied.size());
    // An insertion and a duration for each of the two splits, and two deletions: 24 bytes each.
    EXPECT_EQ(file.size(), 6 * 24U);
    EXPECT_EQ(HeadlessClipboard.offered, std::vector<uint32_t>{ClipFormat});
    EXPECT_FALSE(HeadlessClipboard.open);
    EXPECT_EQ(ClipHandle, NO_FILE);
    EXPECT_NE(std::string(ClipName).find("/cli"), std::string::npos);
    EXPECT_EQ(fs::status(ClipName).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(ClipboardFile, AFileThatDoesNotGiveItsBytesBackIsTold) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    ClipFormat = 77;
    std::string before = StoreText();
    // The handle only writes.
    ClipHandle = open(ClipName, O_WRONLY);
    RenderClipFormat(77);
    EXPECT_EQ(Headless.userErrors, Texts{std::string("Failed to read clipboard file ") + ClipName});
    EXPECT_TRUE(HeadlessClipboard.given.empty());
    EXPECT_EQ(ClipHandle, NO_FILE);
    ClipHandle = open(ClipName, O_WRONLY);
    click(a, 10);
    paste();
    EXPECT_EQ(Headless.userErrors.back(), std::string("Failed to read auxiliary log file ") + ClipName);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(ClipboardFile, AProgramBeginsWithoutOne) {
    installClip("x");
    ClipHandle = OpenForUpdate(ClipName);
    ClipFormat = 5;
    InitClipboard();
    EXPECT_EQ(ClipName[0], '\0');
    EXPECT_EQ(ClipHandle, NO_FILE);
    EXPECT_EQ(ClipWidth, 0);
    EXPECT_EQ(ClipFormat, 0U);
}

TEST_F(ClipboardFile, NoHandleIsLeftOpen) {
    auto handles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    ClipFormat = 77;
    uint16_t a = MakePattern("A", ITEMS);
    auto before = handles();
    for (int i = 0; i < 3; i++) {
        select(a, 15, 15);
        copy();
        RenderClipFormat(77);
        EXPECT_EQ(ClipHandle, NO_FILE);
        click(a, 10);
        paste();
        EXPECT_EQ(ClipHandle, NO_FILE);
    }
    ClipHandle = OpenForUpdate(ClipName);
    DropClipFile();
    LogCloseFile();
    EXPECT_EQ(handles(), before);
}

TEST_F(ClipboardFile, AFileOfAClipboardThatWasLostUntoldGoesWithTheNextCut) {
    uint16_t a = MakePattern("A", ITEMS);
    installClip("x");
    std::string file = ClipName;
    HeadlessClipboard.owned = false;
    select(a, 15, 15);
    copy();
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(HeadlessClipboard.owned);
    EXPECT_EQ(HeadlessClipboard.emptied, 1);
}

TEST_F(ClipboardFile, ASecondCutDropsTheFirstFile) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string first = ClipName;
    copy();
    EXPECT_FALSE(fs::exists(first));
    EXPECT_TRUE(fs::exists(ClipName));
}

TEST_F(ClipboardFile, AClipboardThatCannotBeOpenedIsToldAndTheCutGoesOn) {
    HeadlessClipboard.works = false;
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    cut();
    EXPECT_EQ(Headless.programErrors, Texts{"CutToClipFile Failed to OpenClipboard"});
    EXPECT_EQ(items(a), "1:40");
    EXPECT_EQ(ClipName[0], '\0');
}

TEST_F(ClipboardFile, AFileThatCannotBeMadeIsTold) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    const char *before = getenv("TMPDIR");
    std::string kept = before ? before : "";
    setenv("TMPDIR", scratch.file("missing").c_str(), 1);
    copy();
    if (before)
        setenv("TMPDIR", kept.c_str(), 1);
    else
        unsetenv("TMPDIR");
    EXPECT_EQ(Headless.userErrors, Texts{"Failed to create clipboard file "});
    EXPECT_FALSE(HeadlessClipboard.open);
    EXPECT_TRUE(HeadlessClipboard.offered.empty());
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
}

TEST_F(ClipboardFile, ALogThatCannotBeReadIsToldAndGivesNoFile) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    remove();
    EditLog.rEofPtr += 400;
    CutToClipFile(0);
    EditLog.rEofPtr -= 400;
    EXPECT_EQ(Headless.userErrors, Texts{std::string("Failed to read log file ") + EditLog.LogFileName});
    EXPECT_TRUE(HeadlessClipboard.offered.empty());
    EXPECT_EQ(ClipName[0], '\0');
}

TEST_F(ClipboardFile, AFullDiskIsToldAndGivesNoFile) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    remove();
    LogFlush();
    WriteLimitHook = [](size_t size) { return size - 1; };
    CutToClipFile(0);
    WriteLimitHook = nullptr;
    ASSERT_EQ(Headless.userErrors.size(), 1U);
    EXPECT_EQ(Headless.userErrors[0].substr(0, 31), "Failed to write clipboard file ");
    EXPECT_TRUE(HeadlessClipboard.offered.empty());
    EXPECT_EQ(ClipName[0], '\0');
}

TEST_F(ClipboardFile, ALogThatCannotBeOpenedIsTold) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    remove();
    LogCloseFile();
    std::string missing = scratch.file("gone/log");
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", missing.c_str());
    CutToClipFile(0);
    EXPECT_EQ(Headless.userErrors, Texts{"Failed to open log file " + missing});
    EXPECT_EQ(ClipName[0], '\0');
}

// --- the platform's clipboard -----------------------------------------------------------------------

TEST_F(ClipboardFile, TheFileOutlivesAPasteWhileTheClipboardIsOurs) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = ClipName;
    click(a, 60);
    paste();
    EXPECT_EQ(std::string(ClipName), file);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(ClipboardFile, AfterAPasteTheFileGoesIfTheClipboardIsNotOurs) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = ClipName;
    HeadlessClipboard.owned = false;
    click(a, 60);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "1:10 0:20 1:30 0:20");
    EXPECT_EQ(ClipName[0], '\0');
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(ClipboardFile, AnotherProgramTakesTheFileAwayAndAPasteAddsNothing) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = ClipName;
    HeadlessLoseClipboard();
    EXPECT_FALSE(fs::exists(file));
    click(a, 60);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
    EXPECT_TRUE(Headless.userErrors.empty());
    select(a, 15, 15);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "1:10 1:30") << "there is no seam where nothing was pasted";
}

TEST_F(ClipboardFile, AMissingFileIsTold) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = ClipName;
    fs::remove(file);
    click(a, 60);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(Headless.userErrors, Texts{"Failed to open clipboard file " + file});
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
}

TEST_F(ClipboardFile, RenderingGivesTheLengthAndTheFile) {
    ClipFormat = 77;
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = clipFile();
    RenderClipFormat(78);
    EXPECT_EQ(HeadlessClipboard.givenFormat, 0U) << "not our format";
    RenderClipFormat(77);
    EXPECT_EQ(HeadlessClipboard.givenFormat, 77U);
    std::string length = {static_cast<char>(file.size()), 0, 0, 0};
    EXPECT_EQ(std::string(HeadlessClipboard.given.begin(), HeadlessClipboard.given.end()), length + file);
    EXPECT_EQ(std::string(ClipName).empty(), false) << "it stays";
}

TEST_F(ClipboardFile, RenderingReadsLargeFiles) {
    ClipFormat = 77;
    std::string bytes(40000, 'x');
    bytes.back() = 'y';
    installClip(bytes);
    RenderClipFormat(77);
    ASSERT_EQ(HeadlessClipboard.given.size(), 40004U);
    EXPECT_EQ(HeadlessClipboard.given[0] | HeadlessClipboard.given[1] << 8, 40000);
    EXPECT_EQ(HeadlessClipboard.given.back(), 'y');
}

TEST_F(ClipboardFile, RenderingWithoutAFileOrOfAnEmptyOneGivesNothing) {
    ClipFormat = 77;
    RenderClipFormat(77);
    installClip("");
    RenderClipFormat(77);
    EXPECT_EQ(HeadlessClipboard.givenFormat, 0U);
    EXPECT_TRUE(Headless.userErrors.empty());
    installClip("x");
    std::string file = ClipName;
    fs::remove(file);
    RenderClipFormat(77);
    EXPECT_EQ(Headless.userErrors, Texts{"Failed to open clipboard file " + file});
}

TEST_F(ClipboardFile, AllFormatsAreRenderedBetweenOpeningAndClosing) {
    ClipFormat = 77;
    installClip("x");
    RenderAllClipFormats();
    EXPECT_EQ(HeadlessClipboard.givenFormat, 77U);
    EXPECT_FALSE(HeadlessClipboard.open);
    HeadlessClipboard.givenFormat = 0;
    HeadlessClipboard.owned = false;
    RenderAllClipFormats();
    EXPECT_EQ(HeadlessClipboard.givenFormat, 0U) << "another program has put something there meanwhile";
    EXPECT_FALSE(HeadlessClipboard.open);
    HeadlessClipboard.works = false;
    RenderAllClipFormats();
    EXPECT_EQ(HeadlessClipboard.givenFormat, 0U);
    EXPECT_EQ(Headless.programErrors, Texts{"RENDERALLFORMATS Failed to OpenClipboard"});
}

TEST_F(ClipboardFile, DroppingTwiceIsHarmless) {
    installClip("x");
    std::string file = ClipName;
    DropClipFile();
    EXPECT_FALSE(fs::exists(file));
    DropClipFile();
    EXPECT_EQ(ClipHandle, NO_FILE);
}

} // namespace
