#include "shell/splitter_win.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "display/surface_win.h"
#include "display/wave_view.h"
#include "shell/frame_layout.h"
#include "shell/frame_win.h"
#include "shell/prompt_win.h"
#include "shell/reporting.h"

namespace {

constexpr const char *RELEASE_FAILURE = "ReleaseDC Failure in DrawVerticalBar()";

// Where the bar is shown while the border is dragged.
bool dragging = false;
int barX = 0;

// Inverts a line across the panels, so that a second call takes it away. It is drawn on the screen, as the
// panels would clip it.
void DrawVerticalBar(int x) {
    ReleasePicture(RELEASE_FAILURE);
    RECT client;
    GetClientRect(FrameWindow, &client);
    POINT ends[] = {{x, WaveView.RulerHeight}, {x, client.bottom - PromptHeight()}};
    MapWindowPoints(FrameWindow, nullptr, ends, 2);
    HDC screen = GetDC(nullptr);
    HPEN pen = CreatePen(PS_SOLID, 0, RGB(255, 255, 255));
    HGDIOBJ before = SelectObject(screen, pen);
    SetROP2(screen, R2_XORPEN);
    Polyline(screen, ends, 2);
    SelectObject(screen, before);
    DeleteObject(pen);
    if (!ReleaseDC(nullptr, screen)) ProgramError(RELEASE_FAILURE);
}

} // namespace

void SplitterPress(HWND frame, int x) {
    if (dragging || !PanesExist() || !OnSplitter(x, WaveView.NameColumnWidth)) return;
    DrawOverlay(false);
    SetCapture(frame);
    dragging = true;
    barX = x;
    DrawVerticalBar(barX);
}

void SplitterMove(HWND frame, int x) {
    if (!dragging) return;
    RECT client;
    GetClientRect(frame, &client);
    int moved = SplitterAt(x, barX, client.right, GetSystemMetrics(SM_CXHSCROLL));
    if (moved == barX) return;
    DrawVerticalBar(barX);
    barX = moved;
    DrawVerticalBar(barX);
}

void SplitterRelease(HWND) {
    if (!dragging) return;
    int x = barX;
    SplitterCancel();
    ReleaseCapture();
    if (x == WaveView.NameColumnWidth) return;
    WaveView.NameColumnWidth = x;
    LayOutFrameWindow();
    InvalidateAllPanes();
}

void SplitterCancel() {
    if (!dragging) return;
    DrawVerticalBar(barX);
    dragging = false;
    DrawOverlay(true);
}
