#include "edit/clipboard.h"

#include "display/wave_view.h"
#include "edit/show_selection.h"
#include "edit/wrappers.h"
#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "editlog/record_reader.h"
#include "editlog/replay.h"
#include "headless/clipboard.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

class Clipboard : public EditingFixture {
protected:
    static void cut() { CutCopyDelete(COMMAND_CUT); }
    static void copy() { CutCopyDelete(COMMAND_COPY); }
    static void remove() { CutCopyDelete(COMMAND_DELETE); }
    static int paste() {
        int answer = PasteAtSelection(0);
        LogEndAction();
        return answer;
    }
    static std::string clipFile() { return ReadWholeFile(ClipName); }
    // Makes these bytes the clipboard's file.
    void installClip(const std::string &bytes) const {
        DropClipFile();
        snprintf(ClipName, sizeof ClipName, "%s", scratch.write("clip", bytes).c_str());
        ClipWidth = 1;
    }
    // The records that `record` builds, as the file that would hold them.
    template <typename Builder>
    static std::string recorded(Builder record) {
        EditLogRecord before = EditLog;
        InitEditLog();
        record();
        std::string bytes(EditLog.Buffer, EditLog.Buffer + EditLog.rPtr);
        EditLog = before;
        return bytes;
    }
};

const Transitions ITEMS = {{1, 10}, {0, 20}, {1, 30}};

// --- what is cut ----------------------------------------------------------------------------------

TEST_F(Clipboard, CutTakesAPulseOut) {
    uint16_t a = MakePattern("A", ITEMS);
    std::string before = StoreText();
    ASSERT_EQ(select(a, 15, 15), SEL_PULSE);
    cut();
    // What is left joins.
    EXPECT_EQ(items(a), "1:40");
    EXPECT_EQ(WaveView.CursorTime, 10U);
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
    EXPECT_EQ(PatternFromId(a)->duration, 40U) << "durations are valid again";
    LogEndAction();
    EXPECT_TRUE(undoGives(before));
}

TEST_F(Clipboard, CutTakesASpanOutAndSplitsItsEnds) {
    uint16_t a = MakePattern("A", ITEMS);
    ASSERT_EQ(select(a, 5, 45), SEL_SPAN);
    cut();
    EXPECT_EQ(items(a), "1:20") << "both halves have the same level";
    EXPECT_EQ(WaveView.CursorTime, 5U);
    uint16_t b = MakePattern("B", {{0, 100}});
    ASSERT_EQ(click(b, 0), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(b), "1:5 0:20 1:15 0:100") << "exactly the cut stretch, in its old order";
}

TEST_F(Clipboard, CutTakesAWholePatternOut) {
    uint16_t a = MakePattern("A", ITEMS);
    PatternFromId(a)->delay = 7;
    ASSERT_EQ(select(a, 0, 1000), SEL_WHOLE);
    cut();
    EXPECT_EQ(items(a), "");
    EXPECT_EQ(WaveView.CursorTime, 7U);
    ASSERT_EQ(click(a, 7), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
}

TEST_F(Clipboard, CutTakesAReferenceOutWithWhatItAloneOwned) {
    uint16_t inner = MakePattern("", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("", {{1, 5}});
    AddReference(outer, {.id = inner, .scale = 2, .repeat = 3});
    uint16_t a = MakePattern("A", {{0, 10}});
    AddReference(a, {.id = outer, .repeat = 2});
    AddTransition(a, 1, 10);
    std::string before = StoreText();
    select(a, 10, 104);
    ASSERT_EQ(EditSelection.SelKind, SEL_PATTERN) << frame();
    cut();
    EXPECT_EQ(items(a), "0:10 1:10");
    EXPECT_FALSE(PatternInUse(outer));
    EXPECT_FALSE(PatternInUse(inner));
    LogEndAction();
    // Pasted twice, each time as fresh copies.
    for (int i = 0; i < 2; i++) {
        click(a, 10);
        ASSERT_EQ(EditSelection.SelKind, SEL_EDGE);
        EXPECT_EQ(paste(), 1);
    }
    const Pattern *pattern = PatternFromId(a);
    ASSERT_EQ(pattern->itemCount, 4);
    std::vector<uint16_t> copies = {pattern->item(1).patternId(), pattern->item(2).patternId()};
    EXPECT_NE(copies[0], copies[1]);
    for (uint16_t id : copies) {
        uint16_t nested = PatternFromId(id)->item(1).patternId();
        EXPECT_EQ(items(id), "1:5 [" + std::to_string(nested) + " *2 #3]");
        EXPECT_EQ(items(nested), "1:3 0:4");
    }
    EXPECT_EQ(pattern->item(1).repeat(), 2);
    EXPECT_TRUE(LogUndo() && LogUndo() && undoGives(before)) << "each paste is one step, and so is the cut";
}

TEST_F(Clipboard, AReferenceToANamedPatternComesBackAsOne) {
    uint16_t sub = MakePattern("$sub", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", {{0, 10}});
    AddReference(a, {.id = sub, .scale = 3, .repeat = 2, .format = 2});
    ASSERT_EQ(select(a, 10, 52), SEL_PATTERN);
    cut();
    EXPECT_TRUE(PatternInUse(sub));
    EXPECT_EQ(items(a), "0:10");
    uint16_t b = MakePattern("B", {{1, 10}});
    click(b, 10);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(b), "1:10 [" + std::to_string(sub) + " *3 #2]");
    EXPECT_EQ(PatternFromId(b)->item(1).forcedFormat(), 2U);
}

TEST_F(Clipboard, CutTakesAChannelOfACompositeOut) {
    uint16_t x = MakePattern("X[1:0]", {{2, 50}});
    uint16_t y = MakePattern("Y[1:0]", {{1, 50}});
    uint16_t c = MakePattern("C[3:0]");
    for (uint16_t id : {x, y}) AddReference(c, {.id = id}, PatternKind::Composite);
    ValidateDurations();
    std::string before = StoreText();
    SelectRange(PatternFromId(c), 10, 20, 1, 0);
    ShowSelection();
    ASSERT_EQ(EditSelection.SelKind, SEL_COMPOSITE);
    ASSERT_TRUE(CommandIsAllowed(COMMAND_CUT));
    cut();
    EXPECT_EQ(PatternFromId(c)->itemCount, 1);
    EXPECT_TRUE(PatternInUse(x) && PatternInUse(y));
    LogEndAction();
    EXPECT_TRUE(undoGives(before));
}

TEST_F(Clipboard, ACutInsideANestedPatternIsSeenInAllItsUses) {
    uint16_t inner = MakePattern("", {{1, 3}, {0, 4}, {1, 5}});
    uint16_t a = MakePattern("A");
    AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
    AddTransition(a, 0, 10);
    // The second repetition begins at 24; its item of value 0 at 30.
    ASSERT_EQ(select(a, 31, 31), SEL_PULSE);
    ASSERT_EQ(DeepestFrame().patternId, inner);
    cut();
    EXPECT_EQ(items(inner), "1:8");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 58U);
    EXPECT_EQ(WaveView.CursorTime, 30U);
}

TEST_F(Clipboard, ASpanUpToTheEndOfAnEndlessPatternTakesTheTail) {
    uint16_t sub = MakePattern("$s", {{1, 5}, {0, 5}});
    uint16_t a = MakePattern("A", {{0, 10}, {1, 10}});
    AddReference(a, {.id = sub, .repeat = REPEAT_FOREVER});
    std::string before = StoreText();
    ASSERT_EQ(select(a, 12, TIME_FOREVER), SEL_SPAN) << frame();
    cut();
    EXPECT_EQ(items(a), "0:10 1:2");
    LogEndAction();
    click(a, 12);
    ASSERT_EQ(EditSelection.SelKind, SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "0:10 1:10 [" + std::to_string(sub) + " *1 #65535]");
    EXPECT_TRUE(LogUndo() && undoGives(before));
}

TEST_F(Clipboard, NothingIsDoneWithoutASelectionThatCanBeCut) {
    uint16_t a = MakePattern("A", ITEMS);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    ClipWidth = 9;
    for (int command : {COMMAND_CUT, COMMAND_COPY, COMMAND_DELETE}) {
        CutCopyDelete(static_cast<uint32_t>(command));
        EXPECT_EQ(items(a), "1:10 0:20 1:30");
        EXPECT_EQ(EditSelection.SelKind, SEL_EDGE);
        EXPECT_EQ(ClipWidth, 9);
    }
    ClearSelection();
    cut();
    EXPECT_EQ(EditLog.rPtr, 0);
}

// --- copy -----------------------------------------------------------------------------------------

TEST_F(Clipboard, CopyLeavesPatternAndLogAsTheyWere) {
    uint16_t inner = MakePattern("", {{1, 3}, {0, 4}});
    uint16_t a = MakePattern("A", ITEMS);
    AddReference(a, {.id = inner, .repeat = 2});
    AddTransition(a, 0, 5);
    SetItemValue(PatternFromId(a), 1, 5);
    LogEndAction();
    std::string before = StoreText();
    int32_t end = EditLog.rPtr;
    select(a, 5, 74);
    ASSERT_EQ(EditSelection.SelKind, SEL_SPAN);
    std::string selected = frame();
    copy();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, end);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(frame(), selected) << "the selection stands";
    EXPECT_EQ(HeapFault(), "");
    uint16_t b = MakePattern("B", {{1, 1}});
    click(b, 1);
    EXPECT_EQ(paste(), 1);
    uint16_t copied = PatternFromId(b)->item(3).patternId();
    EXPECT_NE(copied, inner);
    EXPECT_EQ(items(b), "1:6 5:20 1:30 [" + std::to_string(copied) + " *1 #2]");
    EXPECT_EQ(items(copied), "1:3 0:4");
}

TEST_F(Clipboard, ACopyThatFillsManyBlocksOfTheLogComesBackWhole) {
    Transitions many;
    for (uint32_t i = 0; i < 1000; i++) many.push_back({i & 1, i + 1});
    uint16_t a = MakePattern("A", many);
    std::string before = StoreText();
    ASSERT_EQ(select(a, 0, TIME_FOREVER), SEL_WHOLE);
    copy();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    uint16_t b = MakePattern("B");
    click(b, 0);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(b), items(a));
}

TEST_F(Clipboard, ACopyRemovesNothingWhateverTheDiskDoes) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    std::string before = StoreText();
    // No log file at all: what a flush drops is gone.
    EditLog.LogFileName[0] = '\0';
    copy();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(LogAtMark(), 1);
    EXPECT_EQ(ClipName[0], '\0');
    // One that cannot be opened any more.
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", scratch.file("gone/log").c_str());
    copy();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
    EXPECT_FALSE(Headless.userErrors.empty());
}

TEST_F(Clipboard, WithoutALogFileACopyKeepsWhatIsBehindItUsable) {
    uint16_t a = MakePattern("A", ITEMS);
    EditLog.LogFileName[0] = '\0';
    select(a, 15, 15);
    copy();
    std::string before = StoreText();
    SetItemValue(PatternFromId(a), 0, 0);
    LogEndAction();
    EXPECT_TRUE(undoGives(before));
}

TEST_F(Clipboard, ACopySeesThroughAFileThatGivesBackOtherBytes) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 0, 30);
    std::string before = StoreText();
    // A device that takes all and gives back zeros.
    fs::create_symlink("/dev/zero", scratch.file("zeros"));
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", scratch.file("zeros").c_str());
    copy();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    EXPECT_EQ(EditLog.rEofPtr, 0);
}

// --- delete, and the clipboard's width --------------------------------------------------------------

TEST_F(Clipboard, DeleteLeavesTheClipboardButChangesItsWidth) {
    uint16_t wide = MakePattern("W[7:0]", {{1, 10}, {2, 10}});
    uint16_t narrow = MakePattern("N[3:0]", {{1, 10}, {2, 10}});
    select(wide, 15, 15);
    cut();
    EXPECT_EQ(ClipWidth, 8);
    std::string file = clipFile();
    select(narrow, 15, 15);
    remove();
    EXPECT_EQ(ClipWidth, 4);
    EXPECT_EQ(clipFile(), file);
    EXPECT_EQ(items(narrow), "1:10");
    // The file stems from the older cut, and would fit.
    click(wide, 10);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Clipboard bit count not consistant");
    EXPECT_EQ(items(wide), "1:10");
}

TEST_F(Clipboard, ANestedPatternIsAsWideAsWhatItIsPastedInto) {
    // The clipboard stems from a bus, and the width from the delete of a bit.
    uint16_t bus = MakePattern("B[7:0]", ITEMS);
    AddReference(bus, {MakePattern("", {{200, 4}, {3, 6}}, 8)});
    uint16_t bit = MakePattern("b", ITEMS);
    ASSERT_EQ(select(bus, 60, 70), SEL_PATTERN);
    copy();
    ASSERT_EQ(select(bit, 15, 15), SEL_PULSE);
    remove();
    ASSERT_EQ(click(bit, 0), SEL_EDGE);
    ASSERT_EQ(paste(), 1);
    uint16_t nested = PatternFromId(bit)->item(0).patternId();
    EXPECT_EQ(items(nested), "200:4 3:6");
    EXPECT_EQ(PatternFromId(nested)->width, 1);
    EXPECT_FALSE(PatternFromId(nested)->isBus());
}

TEST_F(Clipboard, CopySetsTheWidthToo) {
    uint16_t wide = MakePattern("W[7:0]", {{1, 10}, {2, 10}});
    select(wide, 15, 15);
    copy();
    EXPECT_EQ(ClipWidth, 8);
}

TEST_F(Clipboard, AnEmptyCutLeavesTheClipboardAlone) {
    HeadlessClipboard.owned = false;
    CutToClipFile(EditLog.rPtr);
    EXPECT_EQ(HeadlessClipboard.emptied, 0);
    EXPECT_EQ(ClipName[0], '\0');
}

// --- the file -------------------------------------------------------------------------------------

TEST_F(Clipboard, TheFileHoldsTheRecordsOfTheCutAndNoMark) {
    uint16_t a = MakePattern("A", ITEMS);
    SetItemValue(PatternFromId(a), 0, 5);
    LogEndAction();
    auto start = static_cast<size_t>(EditLog.rPtr);
    select(a, 15, 35);
    ASSERT_EQ(EditSelection.SelKind, SEL_SPAN);
    copy();
    std::string log = ReadWholeFile(EditLog.LogFileName);
    std::string file = clipFile();
    EXPECT_EQ(file, log.substr(start, file.size()));
    // An insertion and a duration for each of the two splits, and two deletions: 24 bytes each.
    EXPECT_EQ(file.size(), 6 * 24U);
    EXPECT_EQ(HeadlessClipboard.offered, std::vector<uint32_t>{ClipFormat});
    EXPECT_FALSE(HeadlessClipboard.open);
    EXPECT_EQ(ClipHandle, NO_FILE);
    EXPECT_NE(std::string(ClipName).find("/cli"), std::string::npos);
    EXPECT_EQ(fs::status(ClipName).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Clipboard, ASecondCutDropsTheFirstFile) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string first = ClipName;
    copy();
    EXPECT_FALSE(fs::exists(first));
    EXPECT_TRUE(fs::exists(ClipName));
}

TEST_F(Clipboard, AClipboardThatCannotBeOpenedIsToldAndTheCutGoesOn) {
    HeadlessClipboard.works = false;
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    cut();
    EXPECT_EQ(Headless.programErrors, Texts{"CutToClipFile Failed to OpenClipboard"});
    EXPECT_EQ(items(a), "1:40");
    EXPECT_EQ(ClipName[0], '\0');
}

TEST_F(Clipboard, AFileThatCannotBeMadeIsTold) {
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

TEST_F(Clipboard, ALogThatCannotBeReadIsToldAndGivesNoFile) {
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

TEST_F(Clipboard, ALogThatCannotBeOpenedIsTold) {
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

TEST_F(Clipboard, TheFileOutlivesAPasteWhileTheClipboardIsOurs) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    copy();
    std::string file = ClipName;
    click(a, 60);
    paste();
    EXPECT_EQ(std::string(ClipName), file);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(Clipboard, AfterAPasteTheFileGoesIfTheClipboardIsNotOurs) {
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

TEST_F(Clipboard, AnotherProgramTakesTheFileAwayAndAPasteAddsNothing) {
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
}

TEST_F(Clipboard, AMissingFileIsTold) {
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

TEST_F(Clipboard, RenderingGivesTheLengthAndTheFile) {
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

TEST_F(Clipboard, RenderingReadsLargeFiles) {
    ClipFormat = 77;
    std::string bytes(40000, 'x');
    bytes.back() = 'y';
    installClip(bytes);
    RenderClipFormat(77);
    ASSERT_EQ(HeadlessClipboard.given.size(), 40004U);
    EXPECT_EQ(HeadlessClipboard.given[0] | HeadlessClipboard.given[1] << 8, 40000);
    EXPECT_EQ(HeadlessClipboard.given.back(), 'y');
}

TEST_F(Clipboard, RenderingWithoutAFileOrOfAnEmptyOneGivesNothing) {
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

TEST_F(Clipboard, AllFormatsAreRenderedBetweenOpeningAndClosing) {
    ClipFormat = 77;
    installClip("x");
    RenderAllClipFormats();
    EXPECT_EQ(HeadlessClipboard.givenFormat, 77U);
    EXPECT_FALSE(HeadlessClipboard.open);
    HeadlessClipboard.works = false;
    HeadlessClipboard.givenFormat = 0;
    RenderAllClipFormats();
    EXPECT_EQ(HeadlessClipboard.givenFormat, 0U);
    EXPECT_EQ(Headless.programErrors, Texts{"RENDERALLFORMATS Failed to OpenClipboard"});
}

TEST_F(Clipboard, DroppingTwiceIsHarmless) {
    installClip("x");
    std::string file = ClipName;
    DropClipFile();
    EXPECT_FALSE(fs::exists(file));
    DropClipFile();
    EXPECT_EQ(ClipHandle, NO_FILE);
}

// --- where it goes --------------------------------------------------------------------------------

class PasteInto : public Clipboard {
protected:
    void SetUp() override {
        Clipboard::SetUp();
        uint16_t source = MakePattern("SOURCE", {{7, 1}, {5, 6}, {7, 1}});
        select(source, 3, 3);
        copy();
        a = MakePattern("A", ITEMS);
        before = StoreText();
    }
    uint16_t a;
    std::string before;
};

TEST_F(PasteInto, AnEdgeInserts) {
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(items(a), "1:10 5:6 0:20 1:30");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_EQ(PatternFromId(a)->duration, 66U);
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, TheEndEdgeAppends) {
    ASSERT_EQ(click(a, 60), SEL_EDGE);
    paste();
    EXPECT_EQ(items(a), "1:10 0:20 1:30 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, APulseIsReplaced) {
    ASSERT_EQ(select(a, 15, 15), SEL_PULSE);
    paste();
    EXPECT_EQ(items(a), "1:10 5:6 1:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ASpanIsReplacedBehindItsCutFirstItem) {
    ASSERT_EQ(select(a, 4, 20), SEL_SPAN);
    ASSERT_NE(EditSelection.SelOffset, 0U);
    paste();
    EXPECT_EQ(items(a), "1:4 5:6 0:10 1:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ASpanOfWholeItemsIsReplaced) {
    ASSERT_EQ(select(a, 10, 60), SEL_SPAN);
    ASSERT_EQ(EditSelection.SelOffset, 0U);
    paste();
    EXPECT_EQ(items(a), "1:10 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AWholePatternIsReplaced) {
    ASSERT_EQ(select(a, 0, 60), SEL_WHOLE);
    paste();
    EXPECT_EQ(items(a), "5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AReferenceIsReplaced) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    uint16_t b = MakePattern("B", {{1, 10}});
    AddReference(b, {.id = sub, .repeat = 2});
    before = StoreText();
    ASSERT_EQ(select(b, 10, 24), SEL_PATTERN);
    paste();
    EXPECT_EQ(items(b), "1:10 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, ANestedPatternIsEditedInPlace) {
    uint16_t inner = MakePattern("", {{1, 4}, {0, 4}});
    uint16_t b = MakePattern("B", {{0, 10}});
    AddReference(b, {.id = inner, .scale = 2, .repeat = 2});
    AddTransition(b, 1, 1);
    before = StoreText();
    // The second half of the second repetition.
    ASSERT_EQ(select(b, 36, 36), SEL_PULSE);
    ASSERT_EQ(DeepestFrame().patternId, inner);
    ASSERT_EQ(DeepestFrame().item, 1);
    paste();
    EXPECT_EQ(items(inner), "1:4 5:6");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, EqualLevelsJoinAtBothSeams) {
    uint16_t source = MakePattern("S2", {{0, 1}, {1, 5}, {0, 6}, {1, 7}, {0, 1}});
    select(source, 1, 19);
    ASSERT_EQ(EditSelection.SelKind, SEL_SPAN);
    copy();
    uint16_t b = MakePattern("B", {{1, 10}, {1, 20}});
    ASSERT_EQ(click(b, 10), SEL_EDGE);
    before = StoreText();
    paste();
    EXPECT_EQ(items(b), "1:15 0:6 1:27");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AtTheStartOnlyTheLastSeamJoins) {
    uint16_t b = MakePattern("B", {{5, 10}, {5, 20}});
    ASSERT_EQ(click(b, 0), SEL_EDGE);
    paste();
    EXPECT_EQ(items(b), "5:16 5:20");
}

TEST_F(PasteInto, AnotherWidthIsRefusedAndNothingChanges) {
    uint16_t bus = MakePattern("BUS[7:0]", {{1, 10}, {2, 10}});
    before = StoreText();
    ASSERT_EQ(select(bus, 15, 15), SEL_PULSE);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Clipboard bit count not consistant");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE) << "the selection stands";
    EXPECT_EQ(actions(), 0);
}

TEST_F(PasteInto, NothingSelectedGetsNothing) {
    ClearSelection();
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(PasteInto, OnlyItsOwnKindChangesAnEmptyPattern) {
    // A channel of a composite that is pasted among levels stays one item of a sequence.
    uint16_t x = MakePattern("X", {{2, 50}});
    uint16_t c = MakePattern("C[1:0]");
    for (int i = 0; i < 2; i++) AddReference(c, {.id = x}, PatternKind::Composite);
    ValidateDurations();
    SelectRange(PatternFromId(c), 10, 20, 1, 0);
    ASSERT_EQ(EditSelection.SelKind, SEL_COMPOSITE);
    ShowSelection();
    copy();
    ClipWidth = 1;
    before = StoreText();
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(paste(), 1);
    EXPECT_EQ(PatternFromId(a)->kind(), PatternKind::Plain);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AnUndoneAndRedonePasteIsTheSame) {
    click(a, 10);
    paste();
    std::string after = StoreText();
    EXPECT_TRUE(undoGives(before));
    EXPECT_EQ(LogRedo(), 1);
    FinishReplay();
    EXPECT_EQ(StoreText(), after);
}

// --- a reference to a pattern ---------------------------------------------------------------------

TEST_F(PasteInto, AReferenceToAPatternGoesToTheSelection) {
    uint16_t sub = MakePattern("$s", {{1, 3}, {0, 4}});
    before = StoreText();
    ASSERT_EQ(select(a, 15, 15), SEL_PULSE);
    EXPECT_EQ(PasteAtSelection(sub), 1);
    LogEndAction();
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(sub) + " *1 #1] 1:30");
    EXPECT_TRUE(undoGives(before));
}

TEST_F(PasteInto, AReferenceOfAnotherWidthIsRefused) {
    uint16_t sub = MakePattern("$s", {{1, 3}}, 4);
    PatternFromId(sub)->width = 4;
    before = StoreText();
    select(a, 15, 15);
    EXPECT_EQ(PasteAtSelection(sub), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Pattern bit count not consistant");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(PasteAtSelection(3999), 0) << "a pattern that is not there";
}

TEST_F(PasteInto, ACircleOfReferencesIsRefusedAndThePatternStandsAsBefore) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("$outer");
    AddReference(outer, {.id = inner});
    AddTransition(outer, 0, 3);
    before = StoreText();
    int32_t end = EditLog.rPtr;
    ASSERT_EQ(select(inner, 1, 1), SEL_PULSE);
    EXPECT_EQ(PasteAtSelection(outer), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, end);
    EXPECT_EQ(EditLog.rEofPtr, end);
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
}

TEST_F(PasteInto, APieceThatRefersToItsTargetIsRefused) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("OUTER", {{1, 5}});
    AddReference(outer, {.id = inner, .repeat = 2});
    ASSERT_EQ(select(outer, 5, 19), SEL_PATTERN);
    copy();
    before = StoreText();
    ASSERT_EQ(click(inner, 3), SEL_EDGE);
    EXPECT_EQ(paste(), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(actions(), 0);
}

TEST_F(PasteInto, ACircleIsTakenBackWithoutALogFileToo) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}});
    uint16_t outer = MakePattern("$outer");
    AddReference(outer, {.id = inner});
    ASSERT_EQ(select(inner, 1, 1), SEL_PULSE);
    EditLog.LogFileName[0] = '\0';
    before = StoreText();
    EXPECT_EQ(PasteAtSelection(outer), 0);
    EXPECT_EQ(StoreText(), before);
}

// A chain of patterns, each of which refers to the one before; the last one's id.
uint16_t Chain(int patterns) {
    uint16_t id = 0;
    for (int i = 0; i < patterns; i++) {
        uint16_t next = MakePattern(("$c" + std::to_string(i)).c_str(), {{1, 1}});
        for (int times = 0; id && times < 5; times++) AddReference(next, {.id = id});
        id = next;
    }
    return id;
}

TEST_F(PasteInto, ANestOf20LevelsIsRefused) {
    uint16_t deep = Chain(19);
    before = StoreText();
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(deep), 0);
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
}

TEST_F(PasteInto, ANestOf19LevelsIsTakenAndQuicklyFoundGood) {
    uint16_t deep = Chain(18);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(deep), 1) << "though there are 5 to the 17th ways down";
}

TEST_F(PasteInto, DeepNestsAboveThePatternCountToo) {
    // Patterns that nest as deep as they may, with the target in the middle.
    uint16_t id = a;
    for (int i = 0; i < 250; i++) {
        uint16_t next = MakePattern(("$u" + std::to_string(i)).c_str());
        AddReference(next, {.id = id});
        id = next;
    }
    uint16_t fits = Chain(6);
    ASSERT_EQ(click(a, 10), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(fits), 1);
    uint16_t deeper = MakePattern("$deeper");
    AddReference(deeper, {.id = fits});
    before = StoreText();
    ASSERT_EQ(click(a, 0), SEL_EDGE);
    EXPECT_EQ(PasteAtSelection(deeper), 0);
    EXPECT_EQ(StoreText(), before);
}

// --- clipboard files that do not fit ----------------------------------------------------------------

class DamagedClip : public PasteInto {
protected:
    // Pastes the records at the edge at 10.
    template <typename Builder>
    void pasteRecords(Builder record) {
        installClip(recorded(record));
        before = StoreText();
        ASSERT_EQ(click(a, 10), SEL_EDGE);
        paste();
    }
    void expectInvalid() const {
        EXPECT_EQ(Headless.programErrors, Texts{"ApplicationExecuteLog - Invalid Command"});
        EXPECT_EQ(HeapFault(), "");
    }
};

TEST_F(DamagedClip, OnlyDeletionsCount) {
    pasteRecords([this] {
        LogDelay(a, 1, 2);
        LogItemValue(a, 0, 1, 2);
        LogItemDuration(a, 0, 1, 2);
        LogItemRepeat(a, 0, 1, 2);
        LogItemScale(a, 0, 1, 2);
        LogItemFormat(a, 0, 1, 2);
        LogPatternParams(a, {}, {});
        LogRename(a, "A", "B");
        LogTiming(0, 1, 2, 3, 4, 5);
        LogTransition(1, a, 0, 9, 9);
        LogReference(1, a, 0, 0, a, 1, 1, 0, 0, 0);
        LogPattern(1, 99, 1, "");
        LogRow(0, a, 0);
        LogRow(1, a, 0);
    });
    EXPECT_EQ(StoreText(), before);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(DamagedClip, AReferenceToAnUnknownPatternStopsThePaste) {
    pasteRecords([this] {
        LogTransition(0, a, 0, 9, 9);
        LogReference(0, a, 0, 0, 777, 1, 1, 0, 0, 0);
        LogTransition(0, a, 0, 8, 8);
    });
    EXPECT_EQ(items(a), "1:10 8:8 0:20 1:30") << "what came before it stays";
    expectInvalid();
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(DamagedClip, AReferenceToAnUnnamedPatternOfTheDocumentStopsThePaste) {
    uint16_t inner = MakePattern("", {{1, 3}});
    uint16_t b = MakePattern("B");
    AddReference(b, {.id = inner});
    pasteRecords([&] { LogReference(0, a, 0, 0, inner, 1, 1, 0, 0, 0); });
    EXPECT_EQ(StoreText(), before) << "its one owner is another pattern";
    expectInvalid();
}

TEST_F(DamagedClip, AReferenceToAPatternThatIsNotFinishedStopsThePaste) {
    // The lowest free ids are given to what the file makes.
    auto made = static_cast<uint16_t>(HighestPatternId + 1);
    for (const char *name : {"", "$made"}) {
        Headless.programErrors.clear();
        pasteRecords([made, name] {
            LogReference(0, 101, 0, 0, made, 1, 1, 0, 0, 0);
            LogPattern(0, 101, 1, "");
            LogPattern(0, 100, 1, name);
        });
        EXPECT_EQ(Headless.programErrors, Texts{"ApplicationExecuteLog - Invalid Command"});
        EXPECT_EQ(FindReferenceCircle(), 0);
        if (*name == 0) {
            EXPECT_EQ(StoreText(), before);
        }
    }
}

TEST_F(DamagedClip, AFinishedPatternWhoseReferenceDoesNotFitIsTakenAway) {
    pasteRecords([this] {
        LogReference(0, a, 9, 0, 100, 1, 1, 0, 0, 0);
        LogTransition(0, 100, 0, 1, 1);
        LogPattern(0, 100, 1, "");
    });
    EXPECT_EQ(StoreText(), before);
    expectInvalid();
}

TEST_F(DamagedClip, ReferencesToNoPatternAtAll) {
    for (uint16_t id : {0, 4000, 65535}) {
        Headless.programErrors.clear();
        pasteRecords([this, id] { LogReference(0, a, 0, 0, id, 1, 1, 0, 0, 0); });
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, AKindOfPatternThatDoesNotExist) {
    pasteRecords([this] { LogReference(0, a, 3, 0, 1, 1, 1, 0, 0, 0); });
    EXPECT_EQ(StoreText(), before);
    expectInvalid();
}

TEST_F(DamagedClip, ARecordKindThatDoesNotExist) {
    std::string bytes = recorded([this] { LogTransition(0, a, 0, 9, 9); });
    for (int kind : {0, 12, 13, 20, 255}) {
        Headless.programErrors.clear();
        bytes[4] = static_cast<char>(kind);
        installClip(bytes);
        click(a, 10);
        paste();
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, TwentyDepthsAreTheLimit) {
    pasteRecords([] {
        for (uint16_t id = 100; id < 120; id++) LogPattern(0, id, 1, "");
    });
    expectInvalid();
    EXPECT_EQ(StoreText(), before) << "patterns that nothing refers to are taken away";
    Headless.programErrors.clear();
    pasteRecords([] {
        for (uint16_t id = 100; id < 119; id++) LogPattern(0, id, 1, "");
    });
    EXPECT_TRUE(Headless.programErrors.empty());
    EXPECT_EQ(StoreText(), before);
}

TEST_F(DamagedClip, PatternsThatWereNotFinishedAreTakenAwayWithTheirItems) {
    pasteRecords([] {
        // Backward: a pattern with an item, nested in it one that is finished, and no reference to the first.
        LogReference(0, 100, 0, 1, 101, 1, 1, 0, 0, 0);
        LogTransition(0, 101, 0, 1, 1);
        LogPattern(0, 101, 1, "");
        LogTransition(0, 100, 0, 9, 9);
        LogPattern(0, 100, 1, "");
    });
    EXPECT_EQ(StoreText(), before);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(DamagedClip, WidthsThatNoPatternHas) {
    for (uint16_t width : {0, 33, 65535}) {
        Headless.programErrors.clear();
        pasteRecords([width] { LogPattern(0, 100, width, ""); });
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, ANameThatIsTakenOrTooLong) {
    for (const std::string &name : {std::string("a"), std::string(5000, 'n')}) {
        Headless.programErrors.clear();
        // The log's window is not made for such a record; it goes through a buffer of its own.
        pasteRecords([&] { LogPattern(0, 100, 1, name.c_str()); });
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, ANamedPatternIsMadeAndTold) {
    static std::string told;
    PatternListHook = [](const char *name) { told = name; };
    pasteRecords([this] {
        LogReference(0, a, 0, 1, 100, 2, 3, 0, 0, 1);
        LogTransition(0, 100, 0, 1, 5);
        LogPattern(0, 100, 1, "$made");
    });
    PatternListHook = nullptr;
    EXPECT_EQ(told, "$made");
    const Pattern *made = FindPattern("$made");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(items(made->id), "1:5");
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(made->id) + " *2 #3] 0:20 1:30");
    EXPECT_TRUE(undoGives(before));
    EXPECT_EQ(FindPattern("$made"), nullptr);
}

TEST_F(DamagedClip, ANamedPatternOfARefusedPasteIsForgotten) {
    uint16_t user = MakePattern("$user");
    AddReference(user, {.id = a});
    pasteRecords([this, user] {
        LogReference(0, a, 0, 1, user, 1, 1, 0, 0, 0);
        LogReference(0, a, 0, 1, 100, 2, 3, 0, 0, 1);
        LogPattern(0, 100, 1, "$made");
    });
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(FindPattern("$made"), nullptr);
    EXPECT_NE(CreatePattern(0, "$made", 1), nullptr);
}

TEST_F(DamagedClip, AnIndexBeyondTheEndIsTheEnd) {
    pasteRecords([this] {
        LogReference(0, a, 0, 1, 100, 1, 1, 0, 0, 0);
        LogTransition(0, 100, 60000, 0, 6);
        LogTransition(0, 100, 3, 1, 5);
        LogPattern(0, 100, 1, "");
    });
    uint16_t made = PatternFromId(a)->item(1).patternId();
    EXPECT_EQ(items(made), "1:5 0:6");
}

TEST_F(DamagedClip, FramesThatAreNoRecordsAreToldAsUnreadable) {
    std::string whole = recorded([this] { LogTransition(0, a, 0, 9, 9); });
    for (size_t length = 1; length < whole.size(); length++) {
        Headless.userErrors.clear();
        installClip(whole.substr(0, length));
        click(a, 10);
        paste();
        EXPECT_EQ(StoreText(), before) << length;
        if (length < 20) continue; // a shorter one may end in a zero that is no length
        EXPECT_EQ(Headless.userErrors, Texts{std::string("Failed to read auxiliary log file ") + ClipName});
    }
}

TEST_F(DamagedClip, APayloadTooShortForItsKind) {
    std::string bytes = recorded([] {
        uint8_t *payload = LogAppend(4);
        payload[0] = RecDeleteTransition;
        payload[1] = payload[2] = payload[3] = 0;
    });
    installClip(bytes);
    click(a, 10);
    paste();
    EXPECT_EQ(StoreText(), before);
    expectInvalid();
}

TEST_F(DamagedClip, AMarkEndsIt) {
    std::string first = recorded([this] { LogTransition(0, a, 0, 9, 9); });
    std::string second = recorded([this] { LogTransition(0, a, 0, 8, 8); });
    installClip(first + "\xFF\xFF\xFF\xFF" + second);
    click(a, 10);
    paste();
    EXPECT_EQ(items(a), "1:10 8:8 0:20 1:30");
}

TEST_F(DamagedClip, RecordsWithoutAPasteDoNotFit) {
    PasteBegin(0, 0);
    LogRecord record = {};
    record.kind = RecDeleteTransition;
    EXPECT_EQ(PasteRecord(record), 0);
    PasteEnd();
    EXPECT_EQ(PasteRecord(record), 0);
}

// --- commands ---------------------------------------------------------------------------------------

class ClipboardCommands : public Clipboard {};

TEST_F(ClipboardCommands, CutCopyAndDeleteNeedSomethingSelected) {
    const std::pair<uint16_t, bool> kinds[] = {{SEL_NONE, false}, {SEL_EDGE, false},    {SEL_WHOLE, true},
                                               {SEL_PULSE, true}, {SEL_PATTERN, true},  {SEL_STRETCH, false},
                                               {SEL_SPAN, true},  {SEL_COMPOSITE, true}};
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    for (auto [kind, allowed] : kinds) {
        EditSelection.SelKind = kind;
        for (int command : {COMMAND_CUT, COMMAND_COPY, COMMAND_DELETE})
            EXPECT_EQ(CommandIsAllowed(static_cast<uint32_t>(command)), allowed) << kind;
    }
}

TEST_F(ClipboardCommands, PasteNeedsAPlaceOfTheClipboardsWidth) {
    const std::pair<uint16_t, bool> kinds[] = {{SEL_NONE, false}, {SEL_EDGE, true},      {SEL_WHOLE, true},
                                               {SEL_PULSE, true}, {SEL_PATTERN, true},   {SEL_STRETCH, false},
                                               {SEL_SPAN, true},  {SEL_COMPOSITE, false}};
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    for (uint16_t width : {0, 1, 2}) {
        ClipWidth = width;
        for (auto [kind, allowed] : kinds) {
            EditSelection.SelKind = kind;
            EXPECT_EQ(CommandIsAllowed(COMMAND_PASTE), allowed && width == 1) << kind << " " << width;
        }
    }
}

TEST_F(ClipboardCommands, PasteIsEnabledAtOnceAfterTheFirstCopy) {
    uint16_t a = MakePattern("A", ITEMS);
    DispatchCommand(COMMAND_EDIT_MODE);
    select(a, 15, 15);
    EXPECT_FALSE(CommandIsAllowed(COMMAND_PASTE));
    Headless.enabledCommands.clear();
    DispatchCommand(COMMAND_COPY);
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE) << "a copy leaves the selection";
    bool enabled = false;
    for (auto [id, on] : Headless.enabledCommands)
        if (id == COMMAND_PASTE) enabled = on;
    EXPECT_TRUE(enabled);
}

TEST_F(ClipboardCommands, EachIsOneStepOfUndo) {
    uint16_t a = MakePattern("A", ITEMS);
    std::string before = StoreText();
    DispatchCommand(COMMAND_EDIT_MODE);
    select(a, 15, 15);
    DispatchCommand(COMMAND_CUT);
    EXPECT_EQ(items(a), "1:40");
    EXPECT_EQ(actions(), 1);
    click(a, 0);
    DispatchCommand(COMMAND_PASTE);
    EXPECT_EQ(items(a), "0:20 1:40");
    EXPECT_EQ(actions(), 2);
    select(a, 5, 5);
    DispatchCommand(COMMAND_DELETE);
    EXPECT_EQ(items(a), "1:40");
    EXPECT_EQ(actions(), 3);
    for (int i = 0; i < 3; i++) DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(ClipboardCommands, APasteEndsTheSelectionOfTheRowToo) {
    uint16_t a = MakePattern("A", ITEMS);
    DispatchCommand(COMMAND_EDIT_MODE);
    select(a, 15, 15);
    DispatchCommand(COMMAND_COPY);
    EXPECT_EQ(CommandState.CommandPhase, PHASE_IDLE);
    WaveView.SelectActive = true;
    DispatchCommand(COMMAND_PASTE);
    EXPECT_EQ(CommandState.CommandPhase, PHASE_PASTING);
    EXPECT_EQ(WaveView.SelectRow, WaveView.RowCount);
    EXPECT_FALSE(WaveView.SelectActive);
}

} // namespace
