#include "display/viewport.h"
#include "store/queries.h"
#include <algorithm>
#include <bit>
#include <cmath>

namespace {

// Neither zooming may go further, whatever the screen and the axis.
constexpr int32_t LOWEST_SCALE = -26;
constexpr int32_t HIGHEST_SCALE = 4;

constexpr TimeVal ROUNDINGS_PER_TICK = 10;

constexpr int32_t DEFAULT_NAME_COLUMN = 100; // pixels of an ordinary screen

// How often `n` can be doubled before its top bit is set, at most `limit` times.
int32_t Doublings(uint32_t n, int32_t limit) {
    return std::min(std::countl_zero(n), limit);
}

// `value` << `bits`, at most `limit`.
uint32_t ShiftUp(uint32_t value, uint32_t bits, uint32_t limit) {
    if (value == 0) return 0;
    if (bits >= 32) return limit;
    return static_cast<uint32_t>(std::min<uint64_t>(static_cast<uint64_t>(value) << bits, limit));
}

uint32_t ShiftDown(uint32_t value, uint32_t bits) {
    return bits >= 32 ? 0 : value >> bits;
}

// The size of a scale as a number of bits; `Scale` may hold anything.
uint32_t Bits(int32_t scale) {
    return scale < 0 ? 0u - static_cast<uint32_t>(scale) : scale;
}

} // namespace

int32_t TimeToPixels(TimeVal delta) {
    uint32_t limit = static_cast<uint32_t>(std::max(ScreenWidth(), 0));
    uint32_t pixels = WaveView.Scale > 0 ? ShiftUp(delta, Bits(WaveView.Scale), limit)
                                         : ShiftDown(delta, Bits(WaveView.Scale));
    return static_cast<int32_t>(std::min(pixels, limit));
}

TimeVal PixelsToTime(int32_t pixels) {
    uint32_t count = static_cast<uint32_t>(std::max(pixels, 0));
    if (WaveView.Scale < 0) return ShiftUp(count, Bits(WaveView.Scale), TIME_FOREVER);
    return ShiftDown(count, Bits(WaveView.Scale));
}

int32_t PixelOf(TimeVal t) {
    if (t > WaveView.ViewLeft) return TimeToPixels(t - WaveView.ViewLeft);
    return -TimeToPixels(WaveView.ViewLeft - t);
}

int32_t MinScale() {
    return -Doublings(static_cast<uint32_t>(std::max(ScreenWidth(), 0)), -LOWEST_SCALE);
}

int32_t MaxScale() {
    return Doublings(WaveView.SpanEnd - WaveView.SpanStart, HIGHEST_SCALE);
}

void ApplyView() {
    constexpr TimeVal HALF_AXIS = 0x7FFFFFFF;
    TimeVal halfTime = PixelsToTime(WaveView.WavePaneWidth / 2);
    TimeVal left = halfTime >= HALF_AXIS ? 0 : TimeSub(WaveView.ZoomCentre, halfTime);
    TimeVal shown = TimeMul(2, halfTime);
    if (WaveView.SpanEnd > shown) left = TimeMin(left, WaveView.SpanEnd - shown);
    if (WaveView.ScaleBeforeApply == WaveView.Scale && left == WaveView.ViewLeft) return;
    WaveView.ViewLeft = left;
    UpdateTimeScrollBar();
    InvalidatePane(Pane::Wave);
    InvalidatePane(Pane::Ruler);
}

void FitScale(TimeVal length) {
    if (length <= static_cast<TimeVal>(std::max(WaveView.WavePaneWidth, 0))) {
        WaveView.Scale = 0;
        int32_t maximum = MaxScale();
        while (WaveView.Scale < maximum && length < PixelsToTime(WaveView.WavePaneWidth) / 2)
            WaveView.Scale++;
        return;
    }
    WaveView.Scale = -1;
    int32_t minimum = MinScale();
    while (WaveView.Scale > minimum && length > PixelsToTime(WaveView.WavePaneWidth)) WaveView.Scale--;
}

void ZoomToRange(TimeVal a, TimeVal b) {
    constexpr int32_t NO_SCALE = -99; // differs from every scale, so that the panels repaint
    WaveView.ScaleBeforeApply = NO_SCALE;
    FitScale(a > b ? a - b : b - a);
    WaveView.ZoomCentre = a / 2 + b / 2;
    ApplyView();
}

void CentreOn(TimeVal t, bool force) {
    constexpr int32_t NO_SCALE = 99;
    WaveView.ScaleBeforeApply = force ? NO_SCALE : WaveView.Scale;
    WaveView.ZoomCentre = t;
    ApplyView();
}

void ExtendSpan(TimeVal endTime) {
    // The end of the data shall not stick to the edge of the window.
    TimeVal want = TimeAdd(endTime, endTime / 4);
    TimeVal before = WaveView.SpanEnd;
    if (before >= want) return;
    WaveView.SpanEnd = want;
    FullSpanEnd = want;
    if (!DisplayOpen) return;
    UpdateTimeScrollBar();
    InvalidatePane(Pane::Ruler);
    // Rows without end reach to the end of the axis.
    if (before < TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth))) InvalidatePane(Pane::Wave);
}

void InitViewport() {
    ExtendSpanHook = ExtendSpan;
}

int32_t OnThisScreen(int32_t pixels) {
    return static_cast<int32_t>(std::lround(pixels * ScreenMagnification()));
}

int32_t NameFieldWidth() {
    return std::max(WaveView.NameTextWidth + WaveView.FontCharWidth, WaveView.NameColumnWidth);
}

int32_t NameShift() {
    return NameFieldWidth() - WaveView.NameColumnWidth - WaveView.NameScroll;
}

AxisPlace MouseToTimeRow(Pane pane, int32_t x, int32_t y) {
    bool onRuler = pane == Pane::Ruler;
    if (onRuler) x = x < WaveView.NameColumnWidth ? 0 : x - WaveView.NameColumnWidth;
    if (pane == Pane::Name) x = 0;
    TimeVal time = TimeAdd(WaveView.ViewLeft, PixelsToTime(std::max(x, 0)));
    TimeVal step = WaveView.TickMinor / ROUNDINGS_PER_TICK;
    if (WaveView.Scale < 0 && step != 0) time = TimeRoundTo(time, step);
    if (onRuler || WaveView.RowHeight <= 0) return {time, 0};
    return {time, WaveView.TopRow + static_cast<uint32_t>(std::max(y, 0) / WaveView.RowHeight)};
}

uint32_t VisibleRows() {
    if (WaveView.RowHeight <= 0 || WaveView.WavePaneHeight <= 0) return 0;
    return static_cast<uint32_t>(WaveView.WavePaneHeight / WaveView.RowHeight);
}

void PaneResized(Pane pane) {
    if (pane == Pane::Wave) {
        PaneClientSize(Pane::Wave, WaveView.WavePaneWidth, WaveView.WavePaneHeight);
        UpdateTimeScrollBar();
        UpdateRowScrollBar();
    } else if (pane == Pane::Name) {
        UpdateNameScrollBar();
    }
}

int32_t InitialNameColumnWidth(bool saved, int32_t savedWidth) {
    int32_t ordinary = OnThisScreen(DEFAULT_NAME_COLUMN);
    int32_t width = std::max(saved ? savedWidth : ordinary, ScrollBarWidth());
    return std::min(width, FullScreenWidth() - 2 * ScrollBarWidth());
}
