#include "display/row_metrics.h"
#include "config/settings.h"
#include "display/panes.h"
#include "display/wave_view.h"
#include <algorithm>

namespace {

constexpr int32_t LEAST_TEXT_PADDING = 2;
constexpr int32_t LEAST_GAP = 4;

} // namespace

void InitWaveMetrics() {
    FontMetrics font = MainFontMetrics();
    Settings.WaveTextPadding = std::max(Settings.WaveTextPadding, LEAST_TEXT_PADDING);
    Settings.WaveGap = std::max(Settings.WaveGap, LEAST_GAP);
    WaveView.FontHeight = font.height + font.height % 2;
    WaveView.FontCharWidth = font.averageWidth;
    WaveView.WaveHeight = WaveView.FontHeight + 2 * Settings.WaveTextPadding;
    WaveView.RowHeight = WaveView.WaveHeight + 2 * Settings.WaveGap;
    WaveView.RulerHeight = 2 * WaveView.FontHeight + 2;
}
