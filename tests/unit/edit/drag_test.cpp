#include "edit/drag.h"

#include "config/settings.h"
#include "display/drag_preview.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "editlog/edit_log.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"

namespace {

class Drag : public EditingFixture {
protected:
    void SetUp() override {
        EditingFixture::SetUp();
        WaveView.WavePaneWidth = 1000;
        WaveView.WavePaneHeight = 600;
        WaveView.RowHeight = 20;
        WaveView.WaveHeight = 12;
        WaveView.SpanEnd = 100000;
        Settings.WaveGap = 3;
    }
    static uint16_t show(uint16_t id) {
        PatternFromId(id)->setHasProperties(true);
        ValidateDurations();
        ShowWaveByName(PatternFromId(id)->name());
        return id;
    }
    static uint16_t threeLevels(uint32_t middle = 1) {
        return show(MakePattern("A", {{0, 100}, {middle, 100}, {0, 100}}));
    }
    // Selects, begins a drag in row 0, and tells the limits as LOW..EDGE..HIGH, the modes on both sides, and
    // the side; "none" if no drag begins.
    static std::string begin(uint16_t id, TimeVal selected, TimeVal at, bool insert = false) {
        SelectRange(PatternFromId(id), selected, selected, 1, 0);
        return beginHere(at, insert);
    }
    static std::string beginHere(TimeVal at, bool insert = false) {
        InitDragPreview();
        TrackRoutine = nullptr;
        if (!BeginDrag(0, at, insert)) return TrackRoutine ? "tracked" : "none";
        EXPECT_EQ(TrackRoutine, DrawDragPreview);
        EXPECT_EQ(DragPreview.grabOffset, DragPreview.edgeTime - at);
        EXPECT_EQ(DragPreview.dragTime, DragPreview.edgeTime);
        return time(DragPreview.lowLimit) + ".." + time(DragPreview.edgeTime) + ".." +
               time(DragPreview.highLimit) + " " + std::to_string(DragPreview.leftMode) + "|" +
               std::to_string(DragPreview.rightMode) + (DragPreview.dragRight ? " right" : " left");
    }
    static std::string time(TimeVal t) { return t == TIME_FOREVER ? "ever" : std::to_string(t); }
    static void apply(TimeVal to) {
        DragPreview.dragTime = to;
        ApplyDrag();
    }
};

} // namespace

// --- where the preview is drawn -------------------------------------------------------------------

TEST_F(Drag, ThePreviewStandsOnTheRow) {
    uint16_t a = threeLevels();
    for (const char *name : {"B", "C", "D"}) show(MakePattern(name, {{0, 100}}));
    SelectRange(PatternFromId(a), 150, 150, 1, 0);
    WaveView.TopRow = 1;
    DragPreview.firstCall = false;
    EXPECT_EQ(BeginDrag(3, 160, false), 1);
    EXPECT_STREQ(PatternFromId(DragPreview.pattern)->name(), "D");
    EXPECT_EQ(DragPreview.yBottom, 3 * 20 - 3 - 1);
    EXPECT_EQ(DragPreview.yTop, 56 - 12);
    EXPECT_EQ(DragPreview.height, 17);
    EXPECT_TRUE(DragPreview.firstCall);
}

// --- the edges of a pulse -------------------------------------------------------------------------

TEST_F(Drag, TheNearerEdgeIsTaken) {
    uint16_t a = threeLevels();
    EXPECT_EQ(begin(a, 150, 100), "1..100..199 1|2 left");
    EXPECT_EQ(begin(a, 150, 150), "1..100..199 1|2 left");
    EXPECT_EQ(begin(a, 150, 151), "101..200..299 2|1 right");
    EXPECT_EQ(begin(a, 150, 200), "101..200..299 2|1 right");
    EXPECT_EQ(DragPreview.snapStep, 1u);
    EXPECT_EQ(DragPreview.snapOrigin, 0u);
}

TEST_F(Drag, TheLinesAreThoseOfThePulseAndItsOpposite) {
    uint16_t a = threeLevels();
    EXPECT_EQ(begin(a, 50, 10), "0..0..99 2|1 left");
    EXPECT_EQ(begin(a, 50, 90), "1..100..199 1|2 right");
    SetItemValue(PatternFromId(a), 0, 5);
    EXPECT_EQ(begin(a, 50, 90), "1..100..199 2|1 right");
}

TEST_F(Drag, ABusHasBothLines) {
    uint16_t bus = show(MakePattern("D[7:0]", {{0, 100}, {1, 100}, {0, 100}}));
    EXPECT_EQ(begin(bus, 150, 110), "1..100..199 4|4 left");
    EXPECT_EQ(begin(bus, 150, 190), "101..200..299 4|4 right");
    EXPECT_EQ(begin(bus, 150, 190, true), "101..200..ever 4|5 right");
    EXPECT_EQ(begin(bus, 50, 40), "0..0..99 4|4 left");
    EditSelection.SelKind = SEL_STRETCH;
    EXPECT_EQ(beginHere(40), "40..40..ever 4|5 right");
}

TEST_F(Drag, WithInsertTheTailFollows) {
    uint16_t a = threeLevels();
    EXPECT_EQ(begin(a, 150, 110, true), "1..100..ever 1|5 left");
    EXPECT_EQ(begin(a, 150, 190, true), "101..200..ever 2|5 right");
    EXPECT_EQ(begin(a, 250, 290, true), "201..300..ever 1|5 right");
}

TEST_F(Drag, TheEndOfTheWaveHasNoLimitAndNothingBehindIt) {
    uint16_t a = threeLevels();
    EXPECT_EQ(begin(a, 250, 290), "201..300..ever 1|0 right");
    PatternFromId(a)->delay = 40;
    EXPECT_EQ(begin(a, 290, 330), "241..340..ever 1|0 right");
    EXPECT_EQ(begin(a, 190, 180), "41..140..239 1|2 left");
    EXPECT_EQ(DragPreview.snapOrigin, 40u);
}

TEST_F(Drag, AReferenceBesideThePulseGivesNothing) {
    uint16_t p = MakePattern("$P", {{0, 10}, {1, 30}});
    uint16_t a = MakePattern("A");
    AddReference(a, {p});
    AddTransition(a, 1, 100);
    AddReference(a, {p});
    show(a);
    EXPECT_EQ(begin(a, 90, 50), "40..40..139 1|2 left");
    EXPECT_EQ(begin(a, 90, 130), "41..140..140 2|1 right");
}

TEST_F(Drag, ANeighbourOfNoLengthGivesNothing) {
    uint16_t a = show(MakePattern("A", {{0, 0}, {1, 100}, {0, 0}}));
    EXPECT_EQ(begin(a, 50, 10), "0..0..99 1|2 left");
    EXPECT_EQ(begin(a, 50, 90), "1..100..100 2|1 right") << "the item behind must not go below nothing";
}

TEST_F(Drag, ScalesAndClocksCount) {
    uint16_t p = MakePattern("$P", {{0, 10}, {1, 30}, {0, 10}});
    uint16_t a = MakePattern("A", {{0, 10}});
    AddReference(a, {p, 2, 3});
    Pattern *pattern = PatternFromId(a);
    pattern->setFormat(1);
    pattern->period = 10;
    pattern->delay = 7;
    show(a);
    // A unit of the part takes 20; its repetitions begin at 107, 1107 and 2107.
    EXPECT_EQ(begin(a, 1400, 1310), "1127..1307..1887 1|2 left");
    EXPECT_EQ(DragPreview.snapStep, 20u);
    EXPECT_EQ(DragPreview.snapOrigin, 107u);
    EXPECT_EQ(begin(a, 1400, 1890), "1327..1907..2087 2|1 right");
    EXPECT_EQ(begin(a, 50, 90), "17..107..107 1|2 right");
    EXPECT_EQ(DragPreview.snapStep, 10u);
    EXPECT_EQ(DragPreview.snapOrigin, 7u);
}

// --- the preview's time ---------------------------------------------------------------------------

TEST_F(Drag, TheEdgeFollowsTheMouseBySnapAndLimits) {
    uint16_t a = show(MakePattern("A", {{0, 10}, {1, 10}, {0, 10}}));
    PatternFromId(a)->setFormat(1);
    PatternFromId(a)->period = 10;
    PatternFromId(a)->delay = 7;
    EXPECT_EQ(begin(a, 150, 195), "117..207..297 2|1 right");
    for (auto [mouse, edge] : {std::pair{195u, 207u}, {199u, 207u}, {200u, 217u}, {0u, 117u}, {900u, 297u}}) {
        DrawDragPreview(mouse, 0);
        EXPECT_EQ(DragPreview.dragTime, edge) << mouse;
    }
    EXPECT_FALSE(DragPreview.firstCall);
}

TEST_F(Drag, TheEdgeNeverGoesBelowTheStartOfTime) {
    uint16_t a = show(MakePattern("A", {{0, 100}, {1, 100}}));
    EXPECT_EQ(begin(a, 50, 30), "0..0..99 2|1 left");
    DrawDragPreview(10, 0);
    EXPECT_EQ(DragPreview.dragTime, 0u);
    DrawDragPreview(50, 0);
    EXPECT_EQ(DragPreview.dragTime, 20u);
}

// --- a pulse to come ------------------------------------------------------------------------------

TEST_F(Drag, ANewPulseOpensAtTheMouse) {
    uint16_t a = threeLevels();
    SelectRange(PatternFromId(a), 130, 130, 1, 0);
    EditSelection.SelKind = SEL_STRETCH;
    EXPECT_EQ(beginHere(130), "130..130..ever 1|5 right");
    EXPECT_EQ(DragPreview.snapOrigin, 100u);
    EXPECT_EQ(beginHere(100), "101..101..ever 1|5 right") << "one unit stays in front";
    EXPECT_EQ(beginHere(200), "199..199..ever 1|5 right") << "and one behind";
    EXPECT_EQ(begin(a, 50, 20), "0..0..99 2|1 left");
    EditSelection.SelKind = SEL_STRETCH;
    EXPECT_EQ(beginHere(20), "20..20..ever 2|5 right") << "a high pulse comes into a low level";
}

TEST_F(Drag, ANewPulseKeepsToTheUnit) {
    uint16_t a = show(MakePattern("A", {{0, 10}, {1, 10}, {0, 10}}));
    PatternFromId(a)->setFormat(1);
    PatternFromId(a)->period = 10;
    SelectRange(PatternFromId(a), 134, 134, 1, 0);
    EditSelection.SelKind = SEL_STRETCH;
    EXPECT_EQ(beginHere(134), "130..130..ever 1|5 right");
    EXPECT_EQ(DragPreview.snapStep, 10u);
    EXPECT_EQ(beginHere(135), "140..140..ever 1|5 right");
    EXPECT_EQ(beginHere(199), "190..190..ever 1|5 right");
    EXPECT_EQ(beginHere(101), "110..110..ever 1|5 right");
    EXPECT_EQ(beginHere(134), "130..130..ever 1|5 right");
    apply(150);
    EXPECT_EQ(items(a), "0:10 1:3 0:2 1:7 0:10");
}

// --- the whole wave -------------------------------------------------------------------------------

TEST_F(Drag, TheWholeWaveIsDraggedWithInsertAlone) {
    uint16_t a = threeLevels();
    PatternFromId(a)->delay = 40;
    SelectRange(PatternFromId(a), 0, TIME_FOREVER, 1, 0);
    EXPECT_EQ(beginHere(60, true), "0..40..ever 1|5 left");
    EXPECT_EQ(DragPreview.snapStep, 1u);
    EXPECT_EQ(DragPreview.snapOrigin, 0u);
    EXPECT_EQ(beginHere(60, false), "none");
    WaveView.ViewLeft = 40;
    EXPECT_EQ(beginHere(60, true), "0..40..ever 1|5 left");
    WaveView.ViewLeft = 41;
    EXPECT_EQ(beginHere(60, true), "none");
    WaveView.ViewLeft = 0;
    PatternFromId(a)->setHasProperties(false);
    EXPECT_EQ(beginHere(60, true), "none");
}

TEST_F(Drag, OnlyALoneReferenceAtTheTopIsTheWholeWave) {
    uint16_t inner = MakePattern("$I", {{0, 10}, {1, 30}});
    uint16_t p = MakePattern("$P");
    AddReference(p, {inner, 1, 4});
    uint16_t a = MakePattern("A");
    AddReference(a, {p, 1, 2});
    show(a);
    SelectRange(PatternFromId(a), 0, TIME_FOREVER, 1, 0);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(beginHere(60, true), "0..0..ever 1|5 left");
    EXPECT_EQ(beginHere(60, false), "none");
    SelectRange(PatternFromId(a), 20, 20, 1, 0);
    SelectParent();
    EXPECT_EQ(EditSelection.SelDepth, 2);
    EXPECT_EQ(beginHere(20, true), "none");
    AddTransition(a, 0, 10);
    ValidateDurations();
    SelectRange(PatternFromId(a), 0, 320, 1, 0);
    EXPECT_EQ(EditSelection.SelKind, SEL_PATTERN);
    EXPECT_EQ(beginHere(20, true), "none");
}

TEST_F(Drag, OtherKindsAreNotDragged) {
    uint16_t a = threeLevels();
    SelectRange(PatternFromId(a), 150, 150, 1, 0);
    for (uint16_t kind : {SEL_NONE, SEL_EDGE, SEL_SPAN, SEL_COMPOSITE}) {
        EditSelection.SelKind = kind;
        EXPECT_EQ(beginHere(150, true), "none") << kind;
        EXPECT_EQ(beginHere(150, false), "none") << kind;
    }
    EditSelection.SelKind = SEL_PULSE;
    EXPECT_EQ(BeginDrag(1, 150, false), 0) << "there is no such row";
}

// --- the end of a drag ----------------------------------------------------------------------------

TEST_F(Drag, APulseChangesByTheDraggedEdge) {
    uint16_t a = threeLevels();
    begin(a, 150, 190);
    apply(250);
    EXPECT_EQ(items(a), "0:100 1:150 0:50");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 100-250");
    begin(a, 150, 110, true);
    apply(60);
    EXPECT_EQ(items(a), "0:60 1:150 0:50");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 60-210");
}

TEST_F(Drag, TheFirstEdgeOfAWaveMakesRoomInFront) {
    uint16_t a = show(MakePattern("A", {{1, 100}, {0, 100}}));
    begin(a, 50, 10);
    apply(30);
    EXPECT_EQ(items(a), "0:30 1:70 0:100");
    EXPECT_EQ(frame(), std::to_string(a) + "/0 0-30") << "the item that is there now";
}

TEST_F(Drag, ANewPulseComesWithTheDrag) {
    uint16_t a = threeLevels();
    SelectRange(PatternFromId(a), 130, 130, 1, 0);
    EditSelection.SelKind = SEL_STRETCH;
    beginHere(130);
    apply(150);
    EXPECT_EQ(items(a), "0:100 1:30 0:20 1:70 0:100");
    EXPECT_EQ(frame(), std::to_string(a) + "/2 130-150");
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
}

TEST_F(Drag, ANewPulseOfNoLengthLeavesTheLevelSelected) {
    uint16_t a = threeLevels();
    SelectRange(PatternFromId(a), 130, 130, 1, 0);
    EditSelection.SelKind = SEL_STRETCH;
    beginHere(130);
    apply(130);
    EXPECT_EQ(items(a), "0:100 1:100 0:100");
    EXPECT_EQ(frame(), std::to_string(a) + "/1 100-200");
    EXPECT_EQ(EditSelection.SelKind, SEL_PULSE);
}

TEST_F(Drag, ADraggedWaveIsSelectedAnew) {
    uint16_t a = threeLevels();
    SelectRange(PatternFromId(a), 0, TIME_FOREVER, 1, 0);
    beginHere(10, true);
    apply(70);
    EXPECT_EQ(PatternFromId(a)->delay, 70u);
    EXPECT_EQ(EditSelection.SelKind, SEL_WHOLE);
    EXPECT_EQ(frame(), std::to_string(a) + "/0 70-370");
    EXPECT_EQ(PatternDuration(PatternFromId(a)), 370u);
}

TEST_F(Drag, AnItemNeverGrowsBeyondItsField) {
    for (bool insert : {false, true}) {
        uint16_t a = show(MakePattern(insert ? "B" : "A", {{1, 100}}));
        begin(a, 50, 90, insert);
        apply(4000000000);
        EXPECT_EQ(PatternFromId(a)->item(0).duration(), 0x7FFFFFFFu);
    }
    uint16_t c = show(MakePattern("C", {{0, 100}, {1, 100}}));
    begin(c, 150, 110, true);
    apply(4000000000);
    EXPECT_EQ(PatternFromId(c)->item(0).duration(), 0x7FFFFFFFu);
    EXPECT_EQ(PatternFromId(c)->item(1).duration(), 100u);
}

TEST_F(Drag, WhereThePatternIsGoneNothingIsDragged) {
    uint16_t inner = MakePattern("$I", {{0, 10}, {1, 30}});
    uint16_t a = MakePattern("A");
    AddReference(a, {inner});
    AddTransition(a, 1, 10);
    show(a);
    begin(a, 25, 30);
    ASSERT_EQ(DeepestFrame().patternId, inner);
    PatternRelease(PatternFromId(inner));
    std::string before = StoreText();
    EXPECT_EQ(beginHere(30), "none");
    apply(35);
    EXPECT_EQ(StoreText(), before);
}

TEST_F(Drag, NothingHappensWithoutASelection) {
    uint16_t a = threeLevels();
    std::string before = StoreText();
    begin(a, 150, 190);
    for (uint16_t kind : {SEL_NONE, SEL_EDGE, SEL_SPAN, SEL_COMPOSITE}) {
        EditSelection.SelKind = kind;
        apply(250);
    }
    EXPECT_EQ(StoreText(), before);
}
