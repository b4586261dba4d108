#include "window/expected.h"

namespace {

constexpr int FONT_POINTS = 8;
constexpr int POINTS_PER_INCH = 72;
constexpr int ORDINARY_DPI = 96;
constexpr int WAVE_GAP = 4;
constexpr int TEXT_PADDING = 2;
constexpr int NAME_COLUMN = 100;

// The font of the panels, on a context of the screen.
class PanelFont {
public:
    PanelFont() : screen(GetDC(nullptr)) {
        int dpi = GetDeviceCaps(screen, LOGPIXELSY);
        font = CreateFontA(-MulDiv(FONT_POINTS, dpi, POINTS_PER_INCH), 0, 0, 0, FW_NORMAL, 0, 0, 0,
                           DEFAULT_CHARSET, 0, 0, 0, VARIABLE_PITCH | FF_SWISS, "Tahoma");
        before = SelectObject(screen, font);
    }
    ~PanelFont() {
        SelectObject(screen, before);
        DeleteObject(font);
        ReleaseDC(nullptr, screen);
    }
    PanelFont(const PanelFont &) = delete;
    PanelFont &operator=(const PanelFont &) = delete;
    HDC screen;

private:
    HFONT font;
    HGDIOBJ before;
};

} // namespace

Expected ExpectedSizes() {
    PanelFont font;
    TEXTMETRICA metrics = {};
    GetTextMetricsA(font.screen, &metrics);
    Expected sizes = {};
    sizes.fontHeight = metrics.tmHeight + metrics.tmHeight % 2;
    sizes.charWidth = metrics.tmAveCharWidth;
    sizes.waveGap = WAVE_GAP;
    sizes.waveHeight = sizes.fontHeight + 2 * TEXT_PADDING;
    sizes.rowHeight = sizes.waveHeight + 2 * WAVE_GAP;
    sizes.rulerHeight = 2 * sizes.fontHeight + 2;
    sizes.promptHeight = GetSystemMetrics(SM_CYMENU);
    sizes.nameColumnWidth = MulDiv(NAME_COLUMN, GetDeviceCaps(font.screen, LOGPIXELSY), ORDINARY_DPI);
    return sizes;
}

int TextWidthOf(const std::string &text) {
    PanelFont font;
    SIZE size = {};
    GetTextExtentPoint32A(font.screen, text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

int ExpectedScale(uint32_t length, int paneWidth) {
    auto width = static_cast<uint32_t>(paneWidth);
    if (length <= width) {
        int scale = 0;
        while (scale < 4 && length < (width >> scale) / 2) ++scale;
        return scale;
    }
    int scale = -1;
    while (scale > -20 && length > width << -scale) --scale;
    return scale;
}
