// The viewport record: which stretch of time and which rows the panes show.
#pragma once

#include "store/time_value.h"
#include <cstdint>

constexpr uint32_t NO_ROW = 0xFFFFFFFFu;

struct WaveViewRecord {
    uint32_t TopPixel;     // TopRow * RowHeight
    int32_t WavePaneWidth; // client size of the wave pane, in pixels
    int32_t WavePaneHeight;
    int32_t NameColumnWidth; // pixels
    int32_t RulerHeight;     // pixels
    TimeVal SpanStart;       // first and last time of the axis
    TimeVal SpanEnd;
    TimeVal ViewLeft;      // time at the left edge of the wave pane
    TimeVal TickMinor;     // step of the ruler's minor ticks, set by each ruler paint
    int32_t Scale;         // pixels per time unit as a power of two
    uint32_t RowCount;     // rows in use
    uint32_t TopRow;       // first visible row
    int32_t NameScroll;    // pixels; 0 shows the right ends of the names
    int32_t NameTextWidth; // widest name, in pixels
    int32_t FontHeight;    // of the main window's font, made even
    int32_t FontCharWidth;
    int32_t WaveHeight; // pixels of a wave
    int32_t RowHeight;  // pixels of a row
    TimeVal SelectStart, SelectEnd;
    TimeVal CursorTime, MarkTime;
    bool SelectActive, MarkActive;
    uint32_t SelectRow, SelectRowLast;
    TimeVal ZoomCentre, ZoomAnchor;
    uint16_t ZoomPhase;
    int32_t ScaleBeforeApply, ScaleBeforeFit;
};
// Written by the viewport, the row list, the ruler's paint and the commands.
extern WaveViewRecord WaveView;

// 0 while a document is being read, 1 once it is loaded and the windows are valid. Written by the document.
extern int32_t DisplayOpen;
// The end of the span that the view could show when the document was opened. Written by ExtendSpan and a
// load.
extern TimeVal FullSpanEnd;
// Always 0: where the cursor starts. Written by a load.
extern TimeVal DocumentStart;

// Puts the start values in place.
void InitWaveView();
