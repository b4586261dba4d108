#include "edit/show_selection.h"

#include "display/overlay.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "edit/clipboard.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"

namespace {

class ShownSelection : public EditingFixture {
protected:
    void SetUp() override {
        EditingFixture::SetUp();
        WaveView.WavePaneWidth = 1000;
        WaveView.SpanEnd = 100000;
    }
    // What ShowSelection has told the menu last.
    static bool enabled(uint32_t id) {
        bool on = false;
        for (auto [command, state] : Headless.enabledCommands)
            if (command == id) on = state;
        return on;
    }
    static void showKind(uint16_t kind) {
        EditSelection.SelKind = kind;
        Headless.enabledCommands.clear();
        ShowSelection();
    }
};

} // namespace

// --- the menu -------------------------------------------------------------------------------------

TEST_F(ShownSelection, WhatCanBeCutIsEnabledByItsKind) {
    select(MakePattern("A", {{0, 100}, {1, 100}}), 50, 50);
    const bool cut[] = {false, false, true, true, true, false, true, true};
    for (uint16_t kind = SEL_NONE; kind <= SEL_COMPOSITE; kind++) {
        showKind(kind);
        for (uint32_t id : {COMMAND_CUT, COMMAND_COPY, COMMAND_DELETE})
            EXPECT_EQ(enabled(id), cut[kind]) << kind;
    }
}

TEST_F(ShownSelection, APasteNeedsAPlaceOfItsWidth) {
    select(MakePattern("D[3:0]", {{0, 100}, {1, 100}}), 50, 50);
    const bool paste[] = {false, true, true, true, true, false, true, false};
    for (uint16_t kind = SEL_NONE; kind <= SEL_COMPOSITE; kind++) {
        ClipWidth = 4;
        showKind(kind);
        EXPECT_EQ(enabled(COMMAND_PASTE), paste[kind]) << kind;
        ClipWidth = 3;
        showKind(kind);
        EXPECT_FALSE(enabled(COMMAND_PASTE)) << kind;
    }
}

TEST_F(ShownSelection, APasteIsEnabledAtOnceAfterTheFirstCopy) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}});
    select(a, 50, 50);
    EXPECT_FALSE(enabled(COMMAND_PASTE));
    CutCopyDelete(COMMAND_COPY);
    EXPECT_TRUE(enabled(COMMAND_PASTE));
}

TEST_F(ShownSelection, RowsAndBusesAreEnabledByTheSelectedRow) {
    uint16_t bus = MakePattern("D[3:0]", {{0, 100}, {1, 100}});
    ShowSelection();
    for (uint32_t id : {COMMAND_DUPLICATE, COMMAND_HIDE, COMMAND_EXPAND_BUS}) EXPECT_FALSE(enabled(id));
    ShowWaveByName("D[3:0]");
    ShowSelection();
    for (uint32_t id : {COMMAND_DUPLICATE, COMMAND_HIDE, COMMAND_EXPAND_BUS}) EXPECT_TRUE(enabled(id));
    PatternFromId(bus)->setKind(PatternKind::Composite);
    ShowSelection();
    EXPECT_FALSE(enabled(COMMAND_EXPAND_BUS));
    WaveView.SelectRow = WaveView.RowCount;
    ShowSelection();
    for (uint32_t id : {COMMAND_DUPLICATE, COMMAND_HIDE}) EXPECT_FALSE(enabled(id));
}

TEST_F(ShownSelection, APatternThatIsGoneAllowsNothing) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}});
    select(a, 50, 50);
    ClipWidth = 1;
    PatternRelease(PatternFromId(a));
    for (uint16_t kind : {SEL_PULSE, SEL_PATTERN, SEL_COMPOSITE}) {
        showKind(kind);
        for (uint32_t id : {COMMAND_CUT, COMMAND_PASTE}) EXPECT_FALSE(enabled(id));
        EXPECT_EQ(HeadlessEditDialog.title, "Nothing Selected");
        EXPECT_FALSE(HeadlessEditDialog.foreverChecked);
    }
}

TEST_F(ShownSelection, TheTitleTellsTheSelection) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}});
    select(a, 50, 150);
    EXPECT_EQ(HeadlessEditDialog.title, "Selected Interval in Pattern A");
}

// --- the view -------------------------------------------------------------------------------------

TEST_F(ShownSelection, AnEdgeOutOfViewIsScrolledTo) {
    uint16_t a = MakePattern("A", {{0, 3000}, {1, 3000}});
    click(a, 3000);
    EXPECT_EQ(WaveView.ViewLeft, 3000u);
    WaveView.ViewLeft = 5000;
    ShowSelection();
    EXPECT_EQ(WaveView.ViewLeft, 3000u);
    for (TimeVal left : {2000u, 2500u, 3000u}) {
        WaveView.ViewLeft = left;
        ShowSelection();
        EXPECT_EQ(WaveView.ViewLeft, left);
    }
    WaveView.ViewLeft = 1999;
    ShowSelection();
    EXPECT_EQ(WaveView.ViewLeft, 3000u);
    WaveView.ViewLeft = 0;
    select(a, 4000, 4000);
    EXPECT_EQ(WaveView.ViewLeft, 0u) << "only for an edge";
}

TEST_F(ShownSelection, TheCursorGoesToTheNearerEndOfAReference) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {MakePattern("$P", {{0, 50}, {1, 50}})});
    for (auto [from, to] :
         {std::pair{20u, 100u}, {100u, 100u}, {149u, 100u}, {150u, 100u}, {151u, 200u}, {900u, 200u}}) {
        WaveView.CursorTime = from;
        DrawOverlay(true);
        select(a, 150, 160);
        EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
        EXPECT_EQ(WaveView.CursorTime, to) << from;
        EXPECT_TRUE(Overlay.overlayOn);
        EXPECT_EQ(Overlay.cursorX, static_cast<int32_t>(to));
    }
}

TEST_F(ShownSelection, AnOverlayThatIsOffStaysOff) {
    uint16_t a = MakePattern("A", {{0, 100}});
    AddReference(a, {MakePattern("$P", {{0, 50}, {1, 50}})});
    DrawOverlay(false);
    select(a, 150, 160);
    EXPECT_FALSE(Overlay.overlayOn);
}

// --- the merge that waits -------------------------------------------------------------------------

TEST_F(ShownSelection, EqualLevelsAreJoinedOnceTheSelectionHasLeft) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}, {0, 100}});
    uint16_t b = MakePattern("B", {{0, 100}, {1, 100}});
    std::string before = StoreText();
    select(a, 150, 150);
    SetItemValue(PatternFromId(a), 1, 0);
    PendingMerge = a;
    LogEndAction();
    ShowSelection();
    EXPECT_EQ(items(a), "0:100 0:100 0:100") << "the selection is still there";
    select(a, 250, 250);
    EXPECT_EQ(items(a), "0:100 0:100 0:100") << "in another item, but in the pattern";
    select(b, 50, 50);
    EXPECT_EQ(items(a), "0:300");
    EXPECT_EQ(PendingMerge, 0);
    EXPECT_FALSE(PatternFromId(a)->changed()) << "its row is painted";
    EXPECT_EQ(actions(), 1) << "the join belongs to the typing";
    EXPECT_TRUE(undoGives(before));
}

TEST_F(ShownSelection, EqualLevelsAreJoinedWhenNothingIsSelected) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}});
    select(a, 150, 150);
    SetItemValue(PatternFromId(a), 1, 0);
    PendingMerge = a;
    LogEndAction();
    EditSelection.SelKind = SEL_NONE;
    ShowSelection();
    EXPECT_EQ(items(a), "0:200");
    EXPECT_EQ(PatternFromId(a)->durationValid(), true);
}

TEST_F(ShownSelection, AMergeWithNothingToJoinLeavesTheLogAlone) {
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}});
    SetPatternDelay(PatternFromId(a), 7);
    LogEndAction();
    SetItemValue(PatternFromId(a), 1, 0);
    LogEndAction();
    LogUndo();
    PendingMerge = a;
    ShowSelection();
    EXPECT_EQ(PendingMerge, 0);
    LogRedo();
    EXPECT_EQ(items(a), "0:100 0:100") << "what was undone can still be redone";
}

TEST_F(ShownSelection, APatternThatIsGoneIsNotMerged) {
    uint16_t a = MakePattern("A", {{0, 100}, {0, 100}});
    PendingMerge = a;
    PatternRelease(PatternFromId(a));
    ShowSelection();
    EXPECT_EQ(PendingMerge, 0);
    EXPECT_EQ(actions(), 0);
}

TEST_F(ShownSelection, ThePathThroughAMergedPatternStaysRight) {
    uint16_t p = MakePattern("", {{0, 10}, {1, 10}, {0, 10}});
    uint16_t a = MakePattern("A", {{0, 100}, {1, 100}, {1, 100}, {1, 100}});
    AddReference(a, {p});
    AddReference(a, {p});
    AddTransition(a, 0, 50);
    ValidateDurations();
    PendingMerge = a;
    select(a, 445, 445);
    EXPECT_EQ(items(a).substr(0, 12), "0:100 1:300 ");
    EXPECT_EQ(EditSelection.SelFrames[0].item, 3) << "equal references are not joined";
    RebuildFrames(0);
    EXPECT_EQ(EditSelection.SelDepth, 2);
    EXPECT_EQ(DeepestFrame().start, 440u);
}

TEST_F(ShownSelection, APathBehindTheEndOfAMergedPatternEndsThere) {
    uint16_t p = MakePattern("", {{0, 10}, {1, 10}, {0, 10}});
    uint16_t a = MakePattern("A", {{1, 100}, {1, 100}});
    AddReference(a, {p});
    AddTransition(a, 0, 50);
    select(a, 215, 215);
    ASSERT_EQ(DeepestFrame().patternId, p);
    EditSelection.SelFrames[0].item = 9;
    PendingMerge = a;
    ShowSelection();
    EXPECT_EQ(PatternFromId(a)->itemCount, 3);
    EXPECT_EQ(EditSelection.SelFrames[0].item, 3);
}

TEST_F(ShownSelection, AnUndoDropsWhatWaits) {
    uint16_t a = MakePattern("A", {{0, 100}, {0, 100}, {1, 100}});
    std::string before = StoreText();
    DispatchCommand(COMMAND_EDIT_MODE);
    select(a, 250, 250);
    SetItemValue(PatternFromId(a), 2, 0);
    PendingMerge = a;
    LogEndAction();
    DispatchCommand(COMMAND_UNDO);
    EXPECT_EQ(StoreText(), before);
    DispatchCommand(COMMAND_REDO);
    EXPECT_EQ(items(a), "0:100 0:100 0:100");
}
