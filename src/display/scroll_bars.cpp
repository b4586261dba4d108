#include "display/viewport.h"
#include <algorithm>
#include <optional>

namespace {

// A platform's bar counts in a small range, the axis in 2^32 units.
constexpr int32_t LONGEST_TIME_BAR = 10000;

TimeVal PaneTime() {
    return PixelsToTime(WaveView.WavePaneWidth);
}
TimeVal SpanLength() {
    return WaveView.SpanEnd - WaveView.SpanStart;
}
// The time at the left edge, counted from the start of the axis.
TimeVal TimePosition() {
    return WaveView.ViewLeft - WaveView.SpanStart;
}

// The sum of a time and a step in either direction, kept on the axis.
TimeVal Moved(TimeVal t, int64_t step) {
    return static_cast<TimeVal>(std::clamp<int64_t>(t + step, 0, TIME_FOREVER));
}

TimeVal TimeOfThumb(int32_t thumb) {
    TimeVal paneTime = PaneTime();
    if (SpanLength() <= paneTime) return thumb == 0 ? 0 : TimePosition();
    double maximum = PaneScrollMaximum(Pane::Wave, ScrollBar::Horizontal);
    if (maximum <= 0) return 0;
    double t = static_cast<double>(SpanLength() - paneTime) * thumb / maximum;
    return static_cast<TimeVal>(std::clamp(t, 0.0, static_cast<double>(TIME_FOREVER)));
}

std::optional<TimeVal> ScrolledTime(ScrollCode code, int32_t thumb) {
    TimeVal position = TimePosition();
    int64_t line = WaveView.TickMinor;
    int64_t page = std::max<int64_t>(PaneTime() - line, 0);
    switch (code) {
    case ScrollCode::LineUp:
        return Moved(position, -line);
    case ScrollCode::LineDown:
        return Moved(position, line);
    case ScrollCode::PageUp:
        return Moved(position, -page);
    case ScrollCode::PageDown:
        return Moved(position, page);
    case ScrollCode::ThumbPosition:
        return TimeOfThumb(thumb);
    case ScrollCode::Top:
        return 0;
    case ScrollCode::Bottom:
        return WaveView.SpanEnd;
    default:
        return std::nullopt; // nothing moves while the thumb is dragged
    }
}

uint32_t RowOfThumb(int32_t thumb) {
    // A count of rows against a height in pixels: this is how the bar has always behaved.
    bool fewRows = WaveView.RowHeight > 0 && VisibleRows() > WaveView.RowCount / WaveView.RowHeight;
    if (fewRows) return static_cast<uint32_t>(std::max(thumb, 0));
    return thumb == 0 ? 0 : WaveView.TopRow;
}

std::optional<uint32_t> ScrolledRow(ScrollCode code, int32_t thumb) {
    uint32_t top = WaveView.TopRow;
    uint32_t visible = VisibleRows();
    switch (code) {
    case ScrollCode::LineUp:
        return top == 0 ? 0 : top - 1;
    case ScrollCode::LineDown:
        return top + 1;
    case ScrollCode::PageUp:
        return top > visible ? top - visible : 0;
    case ScrollCode::PageDown:
        return top + visible;
    case ScrollCode::ThumbPosition:
        return RowOfThumb(thumb);
    case ScrollCode::Top:
        return 0;
    case ScrollCode::Bottom:
        return WaveView.RowCount;
    default:
        return std::nullopt;
    }
}

int32_t NameTextField() {
    return WaveView.NameTextWidth + WaveView.FontCharWidth;
}

int32_t ScrolledNames(ScrollCode code, int32_t thumb) {
    int32_t limit = NameTextField() - WaveView.NameColumnWidth;
    int32_t page = std::max(WaveView.NameColumnWidth - WaveView.FontCharWidth, 0);
    int32_t scroll = WaveView.NameScroll;
    switch (code) {
    case ScrollCode::LineUp:
        return scroll < limit ? std::min(scroll + WaveView.FontCharWidth, limit) : scroll;
    case ScrollCode::LineDown:
        return std::max(scroll - WaveView.FontCharWidth, 0);
    case ScrollCode::PageUp:
        return scroll < limit ? std::min(scroll + page, limit) : scroll;
    case ScrollCode::PageDown:
        return std::max(scroll - page, 0);
    case ScrollCode::ThumbPosition:
        return limit > 0 ? std::clamp(limit - std::max(thumb, 0), 0, limit) : 0;
    case ScrollCode::Top:
        return std::max(limit, 0);
    case ScrollCode::Bottom:
        return 0;
    default:
        return scroll;
    }
}

void ScrollNamesTo(int32_t scroll) {
    if (scroll == WaveView.NameScroll) return;
    WaveView.NameScroll = scroll;
    UpdateNameScrollBar();
    InvalidatePane(Pane::Name);
}

void SetTopRow(uint32_t row) {
    WaveView.TopRow = row;
    WaveView.TopPixel = row * static_cast<uint32_t>(WaveView.RowHeight);
}

void SetRowBar(uint32_t maximum, uint32_t position) {
    SetPaneScrollBar(Pane::Wave, ScrollBar::Vertical, static_cast<int32_t>(maximum),
                     static_cast<int32_t>(position));
}

} // namespace

void UpdateTimeScrollBar() {
    TimeVal paneTime = PaneTime();
    TimeVal length = SpanLength();
    if (length <= paneTime) {
        SetPaneScrollBar(Pane::Wave, ScrollBar::Horizontal, 1, WaveView.ViewLeft != 0 ? 1 : 0);
        return;
    }
    TimeVal excess = length - paneTime;
    TimeVal position = TimePosition();
    int32_t maximum = static_cast<int32_t>(std::min<TimeVal>(excess, LONGEST_TIME_BAR));
    int32_t barPosition = maximum;
    if (position < excess) {
        barPosition = excess > LONGEST_TIME_BAR
                          ? static_cast<int32_t>(position * static_cast<double>(LONGEST_TIME_BAR) / excess)
                          : static_cast<int32_t>(position);
    }
    SetPaneScrollBar(Pane::Wave, ScrollBar::Horizontal, maximum, barPosition);
}

void UpdateRowScrollBar() {
    if (!DisplayOpen) return;
    uint32_t visible = VisibleRows();
    uint32_t count = WaveView.RowCount;
    if (count == 0) {
        SetTopRow(0);
        SetRowBar(1, 0);
    } else if (WaveView.TopRow != 0 && WaveView.TopRow + visible > count) {
        // The list shrank under the view.
        SetTopRow(visible < count ? count - visible : 0);
        SetRowBar(visible < count ? WaveView.TopRow : 1, WaveView.TopRow);
        InvalidatePane(Pane::Wave);
        InvalidatePane(Pane::Name);
    } else if (visible >= count) {
        SetRowBar(1, 0);
    } else {
        SetRowBar(count - visible, WaveView.TopRow);
    }
}

void UpdateNameScrollBar() {
    if (WaveView.RowCount == 0) WaveView.NameScroll = 0;
    if (!DisplayOpen) return;
    int32_t excess = NameTextField() - WaveView.NameColumnWidth;
    if (WaveView.RowCount != 0 && excess > 0) {
        SetPaneScrollBar(Pane::Name, ScrollBar::Horizontal, excess,
                         std::max(excess - WaveView.NameScroll, 0));
    } else {
        SetPaneScrollBar(Pane::Name, ScrollBar::Horizontal, 1, WaveView.NameScroll == 0 ? 1 : 0);
    }
}

void ScrollMessage(Pane pane, ScrollBar bar, ScrollCode code, int32_t thumb) {
    if (pane == Pane::Name && bar == ScrollBar::Horizontal) {
        ScrollNamesTo(ScrolledNames(code, thumb));
    } else if (pane == Pane::Wave && bar == ScrollBar::Horizontal) {
        if (std::optional<TimeVal> t = ScrolledTime(code, thumb)) ScrollTimeTo(*t, true);
    } else if (pane == Pane::Wave) {
        if (std::optional<uint32_t> row = ScrolledRow(code, thumb)) ScrollRowsTo(*row, true);
    }
}

void ScrollTimeTo(TimeVal t, bool now) {
    TimeVal left = TimeMin(t, WaveView.SpanEnd);
    if (left == WaveView.ViewLeft) return;
    InvalidatePane(Pane::Ruler);
    InvalidatePane(Pane::Wave);
    WaveView.ViewLeft = left;
    UpdateTimeScrollBar();
    if (!now) return;
    UpdatePane(Pane::Ruler);
    UpdatePane(Pane::Wave);
}

void ScrollRowsTo(uint32_t row, bool now) {
    uint32_t visible = VisibleRows();
    uint32_t top = WaveView.RowCount >= visible ? std::min(row, WaveView.RowCount - visible) : 0;
    if (top == WaveView.TopRow) return;
    InvalidatePane(Pane::Name);
    InvalidatePane(Pane::Wave);
    SetTopRow(top);
    UpdateRowScrollBar();
    if (!now) return;
    UpdatePane(Pane::Name);
    UpdatePane(Pane::Wave);
}

void EnsureRowVisible(uint32_t row) {
    if (row >= WaveView.TopRow && row <= WaveView.TopRow + VisibleRows()) return;
    ScrollRowsTo(row, false);
}
