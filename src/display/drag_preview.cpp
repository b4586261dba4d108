#include "display/drag_preview.h"

#include <algorithm>
#include <cstdint>

DragPreviewRecord DragPreview;

void InitDragPreview() {
    DragPreview = {};
}

void DrawDragPreview(TimeVal time, uint32_t /*row*/) {
    int64_t edge = std::max<int64_t>(int64_t{time} + static_cast<int32_t>(DragPreview.grabOffset), 0);
    auto at = static_cast<TimeVal>(std::min<int64_t>(edge, TIME_FOREVER));
    if (at > DragPreview.snapOrigin)
        at = TimeAdd(DragPreview.snapOrigin, TimeRoundTo(at - DragPreview.snapOrigin, DragPreview.snapStep));
    DragPreview.dragTime = std::min(std::max(at, DragPreview.lowLimit), DragPreview.highLimit);
    DragPreview.firstCall = false;
}
