#include "display/panes.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "headless/headless_font.h"

namespace {

// Of an ordinary screen.
constexpr int32_t SCROLL_BAR_WIDTH = 16;

size_t Index(Pane pane) {
    return static_cast<size_t>(pane);
}
size_t Index(ScrollBar bar) {
    return static_cast<size_t>(bar);
}

} // namespace

bool PanesExist() {
    return Headless.panesExist;
}

void InvalidatePane(Pane pane) {
    if (Headless.panesExist) Headless.invalidated.push_back(pane);
}

void UpdatePane(Pane pane) {
    if (Headless.panesExist) Headless.updated.push_back(pane);
}

void SetPaneScrollBar(Pane pane, ScrollBar bar, int32_t maximum, int32_t position) {
    Headless.bars[Index(pane)][Index(bar)] = {maximum, position};
}

int32_t PaneScrollMaximum(Pane pane, ScrollBar bar) {
    return Headless.bars[Index(pane)][Index(bar)].maximum;
}

void PaneClientSize(Pane pane, int32_t &width, int32_t &height) {
    width = Headless.paneWidth[Index(pane)];
    height = Headless.paneHeight[Index(pane)];
}

PixelRect PaneClipBox(Pane pane) {
    return Headless.clip[Index(pane)];
}

FontMetrics MainFontMetrics() {
    FontMetrics metrics = HeadlessFontMetrics();
    if (Headless.fontHeight > 0) metrics.height = Headless.fontHeight;
    return metrics;
}
int32_t ScreenWidth() {
    return Headless.screenWidth;
}
int32_t ScreenHeight() {
    return Headless.screenHeight;
}
int32_t ScrollBarWidth() {
    return SCROLL_BAR_WIDTH;
}
int32_t FullScreenWidth() {
    return Headless.screenWidth;
}
double ScreenMagnification() {
    return Headless.screenMagnification;
}

bool OpenWindow() {
    WaveView.NameColumnWidth = InitialNameColumnWidth(false, 0);
    Headless.panesExist = true;
    PaneResized(Pane::Name);
    PaneResized(Pane::Wave);
    return true;
}
