// What a cut, a copy and a deletion take out, and what they leave.
#include "display/overlay.h"
#include "display/wave_view.h"
#include "edit/show_selection.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "unit/edit/clipboard_fixture.h"
#include <filesystem>

namespace fs = std::filesystem;

namespace {

class CutCopy : public ClipboardFixture {};

// --- what is cut ----------------------------------------------------------------------------------

TEST_F(CutCopy, CutTakesAPulseOut) {
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

TEST_F(CutCopy, CutTakesASpanOutAndSplitsItsEnds) {
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

TEST_F(CutCopy, CutTakesAWholePatternOut) {
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

TEST_F(CutCopy, CutTakesAReferenceOutWithWhatItAloneOwned) {
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

TEST_F(CutCopy, AReferenceToANamedPatternComesBackAsOne) {
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

TEST_F(CutCopy, CutTakesAChannelOfACompositeOut) {
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

TEST_F(CutCopy, ACutInsideANestedPatternIsSeenInAllItsUses) {
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

TEST_F(CutCopy, ASpanUpToTheEndOfAnEndlessPatternTakesTheTail) {
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

TEST_F(CutCopy, ASpanInsideANestedScaledPatternOfADelayedWave) {
    uint16_t inner = MakePattern("", {{1, 3}, {0, 4}, {1, 5}, {0, 6}});
    uint16_t a = MakePattern("A", {{0, 10}});
    PatternFromId(a)->delay = 7;
    AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
    AddTransition(a, 0, 10);
    std::string before = StoreText();
    // The second repetition begins at 53. The span is its units 1 to 9.
    ASSERT_EQ(select(a, 55, 71), SEL_SPAN) << frame();
    ASSERT_EQ(DeepestFrame().patternId, inner);
    cut();
    EXPECT_EQ(items(inner), "1:4 0:6");
    EXPECT_EQ(WaveView.CursorTime, 55U);
    LogEndAction();
    EXPECT_TRUE(undoGives(before));
}

TEST_F(CutCopy, AWaveThatTakesNoTimeIsTakenOutItemByItem) {
    uint16_t empty = MakePattern("$empty");
    uint16_t a = MakePattern("A");
    for (int i = 0; i < 2; i++) AddReference(a, {.id = empty});
    ASSERT_EQ(select(a, 0, 10), SEL_WHOLE);
    remove();
    EXPECT_EQ(PatternFromId(a)->itemCount, 1);
}

TEST_F(CutCopy, TheRowsPatternStaysWhenItIsEmptyEvenWithoutAName) {
    uint16_t a = MakePattern("", ITEMS);
    ASSERT_EQ(select(a, 0, 60), SEL_WHOLE);
    cut();
    EXPECT_TRUE(PatternInUse(a));
    EXPECT_EQ(items(a), "");
}

TEST_F(CutCopy, ASelectionThatDoesNotFitItsPatternAnyMoreTakesNothing) {
    uint16_t sub = MakePattern("$s", {{1, 3}});
    uint16_t a = MakePattern("A", ITEMS);
    AddReference(a, {.id = sub});
    std::string was = items(a);
    const std::pair<uint16_t, uint16_t> misfits[] = {{SEL_PULSE, 4},   {SEL_PULSE, 3},     {SEL_PATTERN, 4},
                                                     {SEL_PATTERN, 0}, {SEL_COMPOSITE, 0}, {SEL_SPAN, 0}};
    for (auto [kind, item] : misfits) {
        select(a, 5, 5);
        EditSelection.SelKind = kind;
        EditSelection.SelFrames[0].item = item;
        if (kind == SEL_SPAN) EditSelection.SelFrames[0].end = EditSelection.SelFrames[0].start;
        cut();
        EXPECT_EQ(items(a), was) << kind << " " << item;
        EXPECT_EQ(EditLog.rPtr, 0);
    }
}

TEST_F(CutCopy, WhereTheRowIsGoneTheSelectionIsCutAllTheSame) {
    uint16_t inner = MakePattern("$inner", {{1, 3}, {0, 4}, {1, 5}});
    uint16_t a = MakePattern("A");
    AddReference(a, {.id = inner});
    AddTransition(a, 0, 10);
    ValidateDurations();
    SelectRange(PatternFromId(a), 5, 5, 1, 0);
    ASSERT_EQ(DeepestFrame().patternId, inner);
    PatternRelease(PatternFromId(a));
    cut();
    EXPECT_EQ(items(inner), "1:3 1:5");
    EXPECT_EQ(EditSelection.SelKind, SEL_NONE);
}

TEST_F(CutCopy, ThePictureAndWhatLiesOverItFollow) {
    uint16_t a = MakePattern("A", ITEMS);
    WaveView.CursorTime = 50;
    DrawOverlay(true);
    ASSERT_EQ(Overlay.cursorX, 50);
    select(a, 15, 15);
    static bool wasOn;
    wasOn = true;
    ExtendSpanHook = [](TimeVal) { wasOn = Overlay.overlayOn; };
    cut();
    ExtendSpanHook = nullptr;
    EXPECT_FALSE(wasOn) << "when the axis may become longer";
    EXPECT_TRUE(Overlay.overlayOn);
    EXPECT_EQ(Overlay.cursorX, 10);
    EXPECT_FALSE(PatternFromId(a)->changed()) << "drawn";
    // A copy leaves both alone.
    select(a, 0, 40);
    DrawOverlay(false);
    copy();
    EXPECT_FALSE(Overlay.overlayOn);
}

TEST_F(CutCopy, NothingIsDoneWithoutASelectionThatCanBeCut) {
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

TEST_F(CutCopy, CopyLeavesPatternAndLogAsTheyWere) {
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

TEST_F(CutCopy, ACopyThatFillsManyBlocksOfTheLogComesBackWhole) {
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

TEST_F(CutCopy, ACopyNeedsNoLogFile) {
    uint16_t a = MakePattern("A", ITEMS);
    select(a, 15, 15);
    std::string before = StoreText();
    for (bool named : {false, true}) {
        // None at all, and one that cannot be opened any more.
        EditLog.LogFileName[0] = '\0';
        if (named)
            snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", scratch.file("gone/log").c_str());
        DropClipFile();
        copy();
        EXPECT_EQ(StoreText(), before);
        EXPECT_EQ(EditLog.rPtr, 0);
        EXPECT_EQ(clipFile().size(), 24U);
    }
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(CutCopy, ACopyLeavesWhatCanBeRedone) {
    uint16_t a = MakePattern("A", ITEMS);
    for (uint32_t value : {5u, 6u, 7u}) {
        SetItemValue(PatternFromId(a), 0, value);
        LogEndAction();
    }
    LogUndo();
    LogUndo();
    FinishReplay();
    std::string before = StoreText();
    int32_t position = EditLog.rPtr, end = EditLog.rEofPtr;
    select(a, 15, 15);
    copy();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, position);
    EXPECT_EQ(EditLog.rEofPtr, end);
    // The log has been brought to its file as it stands, and nothing of the copy.
    EXPECT_EQ(EditLog.Dirty, 0);
    EXPECT_EQ(ReadWholeFile(EditLog.LogFileName).size(), static_cast<size_t>(end));
    EXPECT_EQ(clipFile().size(), 24U);
    EXPECT_TRUE(LogRedo() && LogRedo());
    EXPECT_EQ(PatternFromId(a)->item(0).value(), 7U);
    EXPECT_TRUE(LogUndo() && LogUndo() && LogUndo());
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
}

TEST_F(CutCopy, WithoutALogFileACopyKeepsWhatIsBehindItUsable) {
    uint16_t a = MakePattern("A", ITEMS);
    EditLog.LogFileName[0] = '\0';
    select(a, 15, 15);
    copy();
    std::string before = StoreText();
    SetItemValue(PatternFromId(a), 0, 0);
    LogEndAction();
    EXPECT_TRUE(undoGives(before));
}

TEST_F(CutCopy, ACopySeesThroughAFileThatGivesBackOtherBytes) {
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

TEST_F(CutCopy, DeleteLeavesTheClipboardButChangesItsWidth) {
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

TEST_F(CutCopy, ANestedPatternIsAsWideAsWhatItIsPastedInto) {
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

TEST_F(CutCopy, CopySetsTheWidthToo) {
    uint16_t wide = MakePattern("W[7:0]", {{1, 10}, {2, 10}});
    select(wide, 15, 15);
    copy();
    EXPECT_EQ(ClipWidth, 8);
}

// --- commands ---------------------------------------------------------------------------------------

class ClipboardCommands : public ClipboardFixture {};

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
