#include "display/wave_view.h"

WaveViewRecord WaveView;
int32_t DisplayOpen;
TimeVal FullSpanEnd;
TimeVal DocumentStart;

void InitWaveView() {
    WaveView = {};
    WaveView.WavePaneWidth = 1;
    WaveView.WavePaneHeight = 1;
    WaveView.NameColumnWidth = 100;
    WaveView.TickMinor = 10;
    WaveView.SelectRow = NO_ROW;
    WaveView.SelectRowLast = NO_ROW;
    DisplayOpen = 0;
    FullSpanEnd = 0;
    DocumentStart = 0;
}
