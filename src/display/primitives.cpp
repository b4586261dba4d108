#include "display/primitives.h"
#include "config/settings.h"
#include "display/viewport.h"
#include "store/signal_name.h"
#include <algorithm>
#include <array>
#include <cstdio>

bool DrawToMemory;

namespace {

constexpr int COLOUR_MASK = 15;
constexpr int WHITE = 0;
constexpr int BLACK = 15;

// From list coordinates to the pixels of the current panel.
PixelPoint Shifted(PixelPoint point) {
    if (DrawToMemory) return point;
    Pane pane = SurfacePane();
    if (pane == Pane::Name) point.x -= NameShift();
    if (pane == Pane::Name || pane == Pane::Wave) point.y -= static_cast<int32_t>(WaveView.TopPixel);
    return point;
}

int BackgroundColour() {
    return ColorSettings[Background] & COLOUR_MASK;
}

} // namespace

int ForegroundColour() {
    return BackgroundColour() == BLACK ? WHITE : BLACK;
}

void SelectPicture(Pane pane) {
    SurfaceSelect(pane);
}

void SetDrawToMemory(bool on) {
    DrawToMemory = on;
    SurfaceDrawToMemory(on);
}

void SetDrawColour(int index) {
    int colour = index & COLOUR_MASK;
    bool dotted = (index & DOTTED) != 0;
    SurfaceSetPen(colour, dotted);
    SurfaceSetTextColour(colour, BackgroundColour());
    SurfaceSetBrush(colour, !dotted && colour != 0 && colour != BackgroundColour());
}

void DrawPolyline(std::span<const PixelPoint> points) {
    if (SurfacePane() == Pane::None) return;
    std::array<PixelPoint, MAX_POLYLINE> shifted;
    size_t count = std::min(points.size(), MAX_POLYLINE);
    std::transform(points.begin(), points.begin() + count, shifted.begin(), Shifted);
    SurfacePolyline(std::span(shifted.data(), count));
}

void DrawOutline(const Block &block) {
    DrawPolyline(std::array<PixelPoint, 5>{{{block.left, block.top},
                                            {block.left, block.bottom},
                                            {block.right, block.bottom},
                                            {block.right, block.top},
                                            {block.left, block.top}}});
}

void FillBlock(const Block &block) {
    if (SurfacePane() == Pane::None || block.right < block.left || block.bottom < block.top) return;
    PixelPoint from = Shifted({block.left, block.top});
    PixelPoint to = Shifted({block.right, block.bottom});
    SurfaceFill({from.x, from.y, to.x + 1, to.y + 1});
}

void EraseBlock(const Block &block) {
    SetDrawColour(BackgroundColour());
    FillBlock(block);
}

void DrawAnchoredText(int32_t x, int32_t y, int anchor, const char *text) {
    if (SurfacePane() == Pane::None) return;
    char source[NAME_SIZE];
    char shown[NAME_SIZE];
    bool inverted = false;
    snprintf(source, sizeof source, "%s", text);
    StripInversionMarks(source, shown, inverted);
    PixelSize size = SurfaceTextSize(shown);
    int key = std::clamp(anchor & COLOUR_MASK, 1, 9);
    PixelPoint point = Shifted({x, y});
    int32_t left = point.x - size.width * ((key - 1) % 3) / 2;
    int32_t top = point.y - size.height * ((9 - key) / 3) / 2;
    SurfaceText(left, top, shown);
    if (inverted) SurfacePolyline(std::array<PixelPoint, 2>{{{left, top - 1}, {left + size.width, top - 1}}});
}

int32_t TextWidth(const char *text) {
    return SurfaceTextSize(text).width;
}
