// Fitting, centring and scrolling at the corners of the 32-bit axis, compared with the same arithmetic in
// numbers wide enough never to overflow.

#include "unit/display/display_fixture.h"

namespace {

constexpr TimeVal CORNERS[] = {0,          1,          2,           399,        1000,
                               65536,      0x0FFFFFFF, 0x10000000,  0x7FFFFFFE, 0x7FFFFFFF,
                               0x80000000, 0xFFFFFFFE, TIME_FOREVER};
constexpr int32_t WIDTHS[] = {0, 1, 2, 31, 799, 800, 3840};
constexpr int32_t SCREENS[] = {1, 31, 32, 640, 1024, 3840};
constexpr TimeVal TICKS[] = {0, 1, 10, 50000000, TIME_FOREVER};

uint64_t WideTime(int32_t scale, int32_t pixels) {
    uint64_t count = static_cast<uint64_t>(std::max(pixels, 0));
    if (scale >= 0) return count >> scale;
    return std::min<uint64_t>(count << -scale, TIME_FOREVER);
}

uint64_t PaneTime() {
    return WideTime(WaveView.Scale, WaveView.WavePaneWidth);
}

class AxisCorners : public Display {
protected:
    // Every length of the axis in every width of the pane, at every scale that the screen allows.
    template <typename Check>
    static void ForEachView(Check check) {
        for (TimeVal end : CORNERS)
            for (int32_t width : WIDTHS)
                for (int32_t scale = -26; scale <= 4; scale++) {
                    SetPaneSizes(100, width, 600);
                    WaveView.SpanEnd = end;
                    WaveView.Scale = scale;
                    check();
                    if (testing::Test::HasFailure()) {
                        ADD_FAILURE() << "end " << end << " width " << width << " scale " << scale;
                        return;
                    }
                }
    }
    static uint64_t LeftFor(TimeVal centre) {
        uint64_t half = WideTime(WaveView.Scale, WaveView.WavePaneWidth / 2);
        uint64_t left = half >= 0x7FFFFFFF || centre <= half ? 0 : centre - half;
        return WaveView.SpanEnd > 2 * half ? std::min<uint64_t>(left, WaveView.SpanEnd - 2 * half) : left;
    }
    static uint64_t Excess() { return WaveView.SpanEnd > PaneTime() ? WaveView.SpanEnd - PaneTime() : 0; }
    static TimeVal Scrolled(TimeVal from, ScrollCode code, int32_t thumb = 0) {
        WaveView.ViewLeft = from;
        ScrollMessage(Pane::Wave, ScrollBar::Horizontal, code, thumb);
        return WaveView.ViewLeft;
    }
    // A place on the axis that a step in either direction was added to.
    static uint64_t OnAxis(int64_t place) {
        return static_cast<uint64_t>(std::clamp<int64_t>(place, 0, WaveView.SpanEnd));
    }
};

} // namespace

TEST_F(AxisCorners, EveryLengthGetsTheLargestScaleThatShowsIt) {
    for (int32_t screen : SCREENS)
        for (int32_t width : WIDTHS)
            for (TimeVal end : CORNERS)
                for (TimeVal length : CORNERS) {
                    Headless.screenWidth = screen;
                    SetPaneSizes(100, width, 600);
                    WaveView.SpanEnd = end;
                    FitScale(length);
                    int32_t scale = WaveView.Scale;
                    SCOPED_TRACE(testing::Message() << screen << " " << width << " " << end << " " << length);
                    if (length <= static_cast<TimeVal>(width)) {
                        ASSERT_GE(scale, 0);
                        ASSERT_LE(scale, MaxScale());
                        ASSERT_TRUE(scale == MaxScale() || length >= WideTime(scale, width) / 2);
                        ASSERT_TRUE(scale == 0 || length < WideTime(scale - 1, width) / 2);
                    } else {
                        ASSERT_LE(scale, -1);
                        ASSERT_GE(scale, MinScale());
                        ASSERT_TRUE(scale == MinScale() || length <= WideTime(scale, width));
                        ASSERT_TRUE(scale == -1 || length > WideTime(scale + 1, width));
                    }
                }
}

TEST_F(AxisCorners, EveryPlaceIsCentredAsFarAsTheSpanLetsIt) {
    ForEachView([] {
        for (TimeVal centre : CORNERS) {
            Headless.invalidated.clear();
            TimeVal before = WaveView.ViewLeft;
            CentreOn(centre, false);
            ASSERT_EQ(WaveView.ViewLeft, LeftFor(centre)) << centre;
            ASSERT_EQ(Headless.invalidated.empty(), before == WaveView.ViewLeft) << centre;
        }
    });
}

TEST_F(AxisCorners, EveryRangeIsShownFromEndToEnd) {
    for (TimeVal end : CORNERS)
        for (TimeVal a : CORNERS)
            for (TimeVal b : CORNERS) {
                if (a > end || b > end) continue;
                SetPaneSizes(100, 800, 600);
                WaveView.SpanEnd = end;
                ZoomToRange(a, b);
                ASSERT_EQ(WaveView.ZoomCentre, a / 2 + b / 2);
                ASSERT_EQ(WaveView.ViewLeft, LeftFor(WaveView.ZoomCentre));
                if ((a > b ? a - b : b - a) > PaneTime()) continue; // at the least scale
                ASSERT_LE(WaveView.ViewLeft, std::min(a, b));
                // The halves of the ends are truncated.
                ASSERT_GE(WaveView.ViewLeft + PaneTime() + 1, std::max(a, b)) << a << " " << b;
            }
}

TEST_F(AxisCorners, TheTimeBarShowsEveryPlace) {
    ForEachView([] {
        for (TimeVal left : CORNERS) {
            WaveView.ViewLeft = left;
            UpdateTimeScrollBar();
            uint64_t excess = Excess();
            uint64_t maximum = excess == 0 ? 1 : std::min<uint64_t>(excess, 10000);
            uint64_t position = excess == 0       ? left != 0
                                : left >= excess  ? maximum
                                : excess <= 10000 ? left
                                                  : left * 10000ull / excess;
            ASSERT_EQ(Headless.bars[3][0].maximum, static_cast<int32_t>(maximum)) << left;
            ASSERT_EQ(Headless.bars[3][0].position, static_cast<int32_t>(position)) << left;
        }
    });
}

TEST_F(AxisCorners, EveryCodeOfTheTimeBarStaysOnTheAxis) {
    ForEachView([] {
        for (TimeVal tick : TICKS)
            for (TimeVal from : CORNERS) {
                if (from > WaveView.SpanEnd) continue;
                WaveView.TickMinor = tick;
                int64_t left = from, page = std::max<int64_t>(static_cast<int64_t>(PaneTime()) - tick, 0);
                ASSERT_EQ(Scrolled(from, ScrollCode::LineUp), OnAxis(left - tick));
                ASSERT_EQ(Scrolled(from, ScrollCode::LineDown), OnAxis(left + tick));
                ASSERT_EQ(Scrolled(from, ScrollCode::PageUp), OnAxis(left - page));
                ASSERT_EQ(Scrolled(from, ScrollCode::PageDown), OnAxis(left + page));
                ASSERT_EQ(Scrolled(from, ScrollCode::Top), 0u);
                ASSERT_EQ(Scrolled(from, ScrollCode::Bottom), WaveView.SpanEnd);
            }
    });
}

TEST_F(AxisCorners, TheThumbOfTheTimeBarReachesEveryPartOfTheAxis) {
    ForEachView([] {
        if (Excess() == 0) return;
        UpdateTimeScrollBar();
        int32_t maximum = Headless.bars[3][0].maximum;
        for (int32_t thumb : {0, 1, maximum / 2, maximum - 1, maximum}) {
            uint64_t expected = Excess() * static_cast<uint64_t>(thumb) / static_cast<uint64_t>(maximum);
            ASSERT_EQ(Scrolled(1, ScrollCode::ThumbPosition, thumb), expected) << thumb;
            // What the bar shows then is where the thumb was let go, or the step before it.
            ASSERT_LE(Headless.bars[3][0].position, thumb);
            ASSERT_GE(Headless.bars[3][0].position, thumb - 1);
        }
    });
}

TEST_F(AxisCorners, EveryPlaceOfTheMouseIsATimeOnTheAxis) {
    ForEachView([] {
        for (TimeVal left : CORNERS)
            for (TimeVal tick : TICKS)
                for (int32_t x : {INT32_MIN, -1, 0, 1, 799, 3840, INT32_MAX}) {
                    WaveView.ViewLeft = left;
                    WaveView.TickMinor = tick;
                    uint64_t time = std::min<uint64_t>(left + WideTime(WaveView.Scale, x), TIME_FOREVER);
                    uint64_t step = WaveView.Scale < 0 ? tick / 10 : 0;
                    if (step) time = std::min<uint64_t>(time + step / 2, TIME_FOREVER) / step * step;
                    ASSERT_EQ(MouseToTimeRow(Pane::Wave, x, 0).time, time) << left << " " << tick << " " << x;
                }
    });
}

TEST_F(AxisCorners, EveryCodeOfTheRowBarStaysInTheList) {
    WaveView.RowHeight = 20;
    for (uint32_t count = 0; count <= 256; count += count < 40 ? 1 : 27)
        for (int32_t height : {0, 19, 20, 21, 600, 5119, 5120, 5140})
            for (uint32_t from : {0u, 1u, 7u, 30u, 255u}) {
                SetPaneSizes(100, 800, height);
                uint32_t visible = static_cast<uint32_t>(height) / 20;
                uint32_t last = count > visible ? count - visible : 0;
                for (uint32_t code = 0; code <= 9; code++)
                    for (int32_t thumb : {-1, 0, 1, 255, INT32_MAX}) {
                        WaveView.RowCount = count;
                        WaveView.TopRow = std::min(from, last);
                        ScrollMessage(Pane::Wave, ScrollBar::Vertical, static_cast<ScrollCode>(code), thumb);
                        ASSERT_LE(WaveView.TopRow, last) << count << " " << height << " " << code;
                        UpdateRowScrollBar();
                        ASSERT_LE(WaveView.TopRow, last);
                        ASSERT_EQ(Headless.bars[3][1].maximum, static_cast<int32_t>(std::max(last, 1u)));
                        ASSERT_EQ(Headless.bars[3][1].position, static_cast<int32_t>(WaveView.TopRow));
                    }
            }
}

TEST_F(AxisCorners, EveryCodeOfTheNameBarStaysInTheNames) {
    WaveView.RowCount = 3;
    for (int32_t column : {1, 6, 17, 100, 1000})
        for (int32_t text : {0, 5, 99, 100, 101, 1764})
            for (int32_t character : {0, 1, 7, 21}) {
                WaveView.NameColumnWidth = column;
                WaveView.NameTextWidth = text;
                WaveView.FontCharWidth = character;
                int32_t limit = std::max(text + character - column, 0);
                for (int32_t from : {0, limit / 2, limit})
                    for (uint32_t code = 0; code <= 9; code++)
                        for (int32_t thumb : {INT32_MIN, -1, 0, 1, limit, 65535, INT32_MAX}) {
                            WaveView.NameScroll = from;
                            ScrollMessage(Pane::Name, ScrollBar::Horizontal, static_cast<ScrollCode>(code),
                                          thumb);
                            ASSERT_GE(WaveView.NameScroll, 0);
                            ASSERT_LE(WaveView.NameScroll, limit) << column << " " << text << " " << code;
                        }
            }
}
