#include "edit/drag.h"

#include "config/settings.h"
#include "display/drag_preview.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/wave_view.h"
#include "edit/range_edits.h"
#include "edit/selection.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>

namespace {

// The preview reaches this far beyond the wave, in pixels.
constexpr int32_t PREVIEW_MARGIN = 5;

void PlacePreview(uint32_t row) {
    auto below = static_cast<int32_t>(row - WaveView.TopRow);
    DragPreview.pattern = WaveRows[row].PatternId;
    DragPreview.yBottom = (below + 1) * WaveView.RowHeight - Settings.WaveGap - 1;
    DragPreview.yTop = DragPreview.yBottom - WaveView.WaveHeight;
    DragPreview.height = WaveView.WaveHeight + PREVIEW_MARGIN;
    DragPreview.firstCall = true;
    DragPreview.highLimit = TIME_FOREVER;
}

uint16_t LevelLines(const Pattern *pattern, bool high) {
    if (pattern->isBus()) return DRAG_BUS;
    return high ? DRAG_HIGH : DRAG_LOW;
}

// The level that the selected pulse differs from, as what is beside it, or comes into it.
uint16_t OppositeLines(const Pattern *pattern) {
    return LevelLines(pattern, EditSelection.SelValue == 0);
}
uint16_t PulseLines(const Pattern *pattern) {
    return LevelLines(pattern, EditSelection.SelValue != 0);
}

bool IsData(const Pattern *pattern, int index) {
    return index >= 0 && index < pattern->itemCount &&
           !pattern->item(static_cast<uint32_t>(index)).isReference();
}

// The time that an item can give away: it keeps one unit.
TimeVal RoomIn(const Pattern *pattern, int index) {
    if (!IsData(pattern, index)) return 0;
    TimeVal duration = pattern->item(static_cast<uint32_t>(index)).duration();
    return TimeMul(TimeSub(duration, 1), EditSelection.SelScale);
}

TimeVal SnapOrigin(const Pattern *root) {
    if (EditSelection.SelDepth < 2) return root->delay;
    return EditSelection.SelFrames[EditSelection.SelDepth - 2u].start;
}

void TakeLeftEdge(const Pattern *pattern, bool insert) {
    const SelFrame &frame = DeepestFrame();
    DragPreview.lowLimit = TimeSub(frame.start, RoomIn(pattern, frame.item - 1));
    DragPreview.edgeTime = frame.start;
    DragPreview.leftMode = OppositeLines(pattern);
    DragPreview.rightMode = PulseLines(pattern);
    DragPreview.dragRight = 0;
    if (insert) {
        DragPreview.rightMode = DRAG_TAIL;
    } else {
        DragPreview.highLimit = TimeSub(frame.end, EditSelection.SelScale);
    }
}

void TakeRightEdge(Pattern *root, const Pattern *pattern, bool insert) {
    const SelFrame &frame = DeepestFrame();
    DragPreview.lowLimit = TimeAdd(frame.start, EditSelection.SelScale);
    DragPreview.edgeTime = frame.end;
    DragPreview.leftMode = PulseLines(pattern);
    DragPreview.rightMode = OppositeLines(pattern);
    DragPreview.dragRight = 1;
    if (insert) {
        DragPreview.rightMode = DRAG_TAIL;
        return;
    }
    DragPreview.highLimit = TimeAdd(frame.end, RoomIn(pattern, frame.item + 1));
    // The end of the wave is free, unless an item of no length stands there, which has nothing to give.
    if (DragPreview.highLimit >= PatternDuration(root) && !IsData(pattern, frame.item + 1)) {
        DragPreview.rightMode = DRAG_NOTHING;
        DragPreview.highLimit = TIME_FOREVER;
    }
}

bool BeginEdgeDrag(Pattern *root, const Pattern *pattern, TimeVal time, bool insert) {
    const SelFrame &frame = DeepestFrame();
    DragPreview.snapStep = EditSelection.SelScale;
    DragPreview.snapOrigin = SnapOrigin(root);
    if (time <= TimeMidpoint(frame.start, frame.end)) {
        TakeLeftEdge(pattern, insert);
    } else {
        TakeRightEdge(root, pattern, insert);
    }
    return true;
}

// A new pulse opens at the time, and what is behind it moves on.
bool BeginPulseDrag(const Pattern *pattern, TimeVal time) {
    const SelFrame &frame = DeepestFrame();
    TimeVal unit = EditSelection.SelScale;
    TimeVal place = TimeAdd(frame.start, TimeRoundTo(TimeSub(time, frame.start), unit));
    place = std::max(std::min(place, TimeSub(frame.end, unit)), TimeAdd(frame.start, unit));
    DragPreview.snapStep = unit;
    DragPreview.snapOrigin = frame.start;
    DragPreview.lowLimit = place;
    DragPreview.edgeTime = place;
    DragPreview.leftMode = OppositeLines(pattern);
    DragPreview.rightMode = DRAG_TAIL;
    DragPreview.dragRight = 1;
    return true;
}

bool IsWholeWave(const Pattern *pattern) {
    if (EditSelection.SelKind == SEL_WHOLE) return true;
    return EditSelection.SelKind == SEL_PATTERN && EditSelection.SelDepth == 1 && pattern->itemCount == 1;
}

bool BeginWaveDrag(const Pattern *pattern, bool insert) {
    const SelFrame &frame = DeepestFrame();
    if (!insert || !IsWholeWave(pattern) || !pattern->hasProperties()) return false;
    if (frame.start < WaveView.ViewLeft) return false;
    DragPreview.snapStep = 1;
    DragPreview.snapOrigin = 0;
    DragPreview.lowLimit = 0;
    DragPreview.edgeTime = frame.start;
    DragPreview.leftMode = DRAG_LOW;
    DragPreview.rightMode = DRAG_TAIL;
    DragPreview.dragRight = 0;
    return true;
}

bool Prepare(Pattern *root, const Pattern *pattern, TimeVal time, bool insert) {
    switch (EditSelection.SelKind) {
    case SEL_PULSE:
        return BeginEdgeDrag(root, pattern, time, insert);
    case SEL_STRETCH:
        return BeginPulseDrag(pattern, time);
    default:
        return BeginWaveDrag(pattern, insert);
    }
}

// --- the end of a drag ----------------------------------------------------------------------------

// The edge as far as it may move later: what grows must not become longer than an item can be.
TimeVal LatestEdge(const Pattern *pattern) {
    int index = DeepestFrame().item;
    if (!DragPreview.dragRight) index--;
    TimeVal length = IsData(pattern, index) ? pattern->item(static_cast<uint32_t>(index)).duration() : 0;
    return TimeAdd(DragPreview.edgeTime, TimeMul(MAX_ITEM_DURATION - length, EditSelection.SelScale));
}

void MoveWave(Pattern *pattern) {
    uint16_t id = pattern->id;
    SetPatternDelay(pattern, DragPreview.dragTime);
    ValidateDurations();
    pattern = PatternFromId(id);
    SelectRange(pattern, pattern->delay, PatternDuration(pattern), Settings.ShowPatternWaveforms, 0);
}

void MoveSelectedEdge(Pattern *root, Pattern *pattern) {
    TimeVal to = std::min(DragPreview.dragTime, LatestEdge(pattern));
    MoveEdge(root, pattern, DeepestFrame().item, DragPreview.dragRight, DragPreview.edgeTime, to,
             EditSelection.SelScale, DragPreview.rightMode == DRAG_TAIL);
    ValidateDurations();
    RebuildFrames(0);
}

void PullOutPulse(Pattern *pattern) {
    TimeVal unit = EditSelection.SelScale;
    uint16_t count = pattern->itemCount, id = pattern->id;
    TimeVal length = TimeDiv(TimeSub(DragPreview.dragTime, DragPreview.edgeTime), unit);
    SplitItem(pattern, DeepestFrame().item, TimeDiv(EditSelection.SelOffset, unit),
              std::min(length, MAX_ITEM_DURATION), 1);
    ValidateDurations();
    RebuildFrames(PatternFromId(id)->itemCount == count ? 0 : 1);
}

} // namespace

int BeginDrag(uint32_t row, TimeVal time, bool insert) {
    Pattern *root = SelectionRoot();
    const Pattern *pattern = SelectedPattern();
    if (!root || !pattern || row >= WaveView.RowCount) return 0;
    PlacePreview(row);
    if (!Prepare(root, pattern, time, insert)) return 0;
    DragPreview.grabOffset = DragPreview.edgeTime - time;
    DragPreview.dragTime = DragPreview.edgeTime;
    TrackRoutine = DrawDragPreview;
    return 1;
}

void ApplyDrag() {
    Pattern *root = SelectionRoot();
    Pattern *pattern = SelectedPattern();
    if (!root || !pattern) return;
    switch (EditSelection.SelKind) {
    case SEL_WHOLE:
    case SEL_PATTERN:
        MoveWave(pattern);
        break;
    case SEL_PULSE:
        MoveSelectedEdge(root, pattern);
        break;
    case SEL_STRETCH:
        PullOutPulse(pattern);
        break;
    default:
        break;
    }
}
