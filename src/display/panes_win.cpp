#include "display/panes_win.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/rows.h"
#include "display/surface_win.h"
#include "display/viewport.h"
#include "shell/commands.h"
#include "shell/frame_win.h"
#include "shell/reporting.h"
#include "shell/view_gestures.h"
#include "shell/window_positions.h"
#include <windowsx.h>

namespace {

constexpr const char *CLASS_NAME = "SubKelvane";
constexpr double ORDINARY_DPI = 96.0;

HWND RulerWindow = nullptr;
HWND NameWindow = nullptr;
HWND WaveWindow = nullptr;
bool releasingMouse = false; // of our own accord
int32_t screenWidth = 0;
int32_t screenHeight = 0;
double screenMagnification = 0; // until it is asked for

HWND &WindowSlot(Pane pane) {
    return pane == Pane::Ruler ? RulerWindow : pane == Pane::Name ? NameWindow : WaveWindow;
}

int BarOf(ScrollBar bar) {
    return bar == ScrollBar::Horizontal ? SB_HORZ : SB_VERT;
}

// --- the window procedure -------------------------------------------------------------------------

// A panel takes the first free number as it is made.
void NumberPane(HWND window) {
    for (Pane pane : {Pane::Ruler, Pane::Name, Pane::Wave}) {
        if (WindowSlot(pane)) continue;
        WindowSlot(pane) = window;
        SetWindowWord(window, 0, static_cast<WORD>(pane));
        return;
    }
}

Pane PaneOf(HWND window) {
    return static_cast<Pane>(GetWindowWord(window, 0));
}

// Erases and draws what lies in the box on a context of the panel.
void PaintOn(HDC context, Pane pane, const RECT &box) {
    FillRect(context, &box, SolidBrush(ColorSettings[Background]));
    // A message box over a load that failed lets paints in when there is nothing left to show.
    if (!WaveRows) return;
    BeginPicture(pane, context);
    PaintPane(pane);
    EndPicture();
}

// Paints in memory and shows the result in one go, so that neither the erasing nor the drawing row by row is
// seen. Without the memory it paints on the panel itself.
void PaintUnseen(HDC context, Pane pane, const RECT &box) {
    int width = box.right - box.left, height = box.bottom - box.top;
    HDC memory = CreateCompatibleDC(context);
    HBITMAP bitmap = memory ? CreateCompatibleBitmap(context, width, height) : nullptr;
    if (!bitmap) {
        if (memory) DeleteDC(memory);
        PaintOn(context, pane, box);
        return;
    }
    HGDIOBJ before = SelectObject(memory, bitmap);
    SetViewportOrgEx(memory, -box.left, -box.top, nullptr);
    // Hatches begin where they would on the panel.
    SetBrushOrgEx(memory, -box.left, -box.top, nullptr);
    PaintOn(memory, pane, box);
    BitBlt(context, box.left, box.top, width, height, memory, box.left, box.top, SRCCOPY);
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
}

void PaintWindow(HWND window) {
    constexpr const char *failure = "ReleaseDC Failure in WM_PAINT";
    bool hasRows = WaveRows != nullptr;
    PaintBegins(PaneOf(window));
    ReleasePicture(failure);
    PAINTSTRUCT paint;
    HDC context = BeginPaint(window, &paint);
    if (context && !IsRectEmpty(&paint.rcPaint)) PaintUnseen(context, PaneOf(window), paint.rcPaint);
    EndPaint(window, &paint);
    if (hasRows) PaintEnds(PaneOf(window));
    ReleasePicture(failure);
}

bool ShowCursorOver(HWND window, LPARAM lParam) {
    UINT place = LOWORD(lParam);
    bool waiting = CommandState.CursorMode == CURSOR_WAIT;
    if (!waiting && place != HTCLIENT && place != 0) return false;
    bool byMode = waiting || PaneOf(window) != Pane::Name;
    SetCursor(CursorFor(byMode ? CommandState.CursorMode : 0));
    return true;
}

// --- the mouse --------------------------------------------------------------------------------------

MouseKeys KeysOf(WPARAM wParam) {
    return {(wParam & MK_SHIFT) != 0, (wParam & MK_CONTROL) != 0};
}

// How many rows one step of the wheel is, as the user has set it.
int32_t WheelRows() {
    UINT lines = 0;
    if (!SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0)) return 1;
    return lines == WHEEL_PAGESCROLL ? static_cast<int32_t>(VisibleRows()) : static_cast<int32_t>(lines);
}

void PressLeft(HWND window, WPARAM wParam, int x, int y) {
    SetCapture(window);
    LeftPressed(PaneOf(window), x, y, KeysOf(wParam));
}

// The mouse is let go of first, as the release may bring up a message box.
void ReleaseLeft(HWND window, int x, int y) {
    releasingMouse = true;
    if (GetCapture() == window) ReleaseCapture();
    releasingMouse = false;
    LeftReleased(PaneOf(window), x, y);
}

// False if the message is not one of the mouse's.
bool HandleMouse(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    int x = GET_X_LPARAM(lParam), y = GET_Y_LPARAM(lParam);
    switch (message) {
    case WM_MOUSEMOVE:
        MouseMoved(PaneOf(window), x, y);
        return true;
    case WM_LBUTTONDOWN:
        PressLeft(window, wParam, x, y);
        return true;
    case WM_LBUTTONUP:
        ReleaseLeft(window, x, y);
        return true;
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_NCLBUTTONUP:
        OtherPressed();
        return message != WM_NCLBUTTONUP;
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        OtherReleased(PaneOf(window), x, y);
        return true;
    case WM_CAPTURECHANGED:
        if (!releasingMouse) MouseCaptureLost();
        return true;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
        WheelOverPanes(message, wParam, lParam);
        return true;
    default:
        return false;
    }
}

LRESULT HandlePaneMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        NumberPane(window);
        return 0;
    case WM_COMMAND:
        DispatchCommand(CommandOf(wParam));
        return 0;
    case WM_PAINT:
        PaintWindow(window);
        return 0;
    case WM_ERASEBKGND:
        // The paint erases, unseen.
        EraseBegins(PaneOf(window));
        return 1;
    case WM_HSCROLL:
    case WM_VSCROLL:
        ScrollPane(PaneOf(window), message == WM_HSCROLL ? ScrollBar::Horizontal : ScrollBar::Vertical,
                   static_cast<ScrollCode>(LOWORD(wParam)), HIWORD(wParam));
        return 0;
    case WM_SIZE: {
        LRESULT result = DefWindowProcA(window, message, wParam, lParam);
        PaneResized(PaneOf(window));
        return result;
    }
    case WM_SETCURSOR:
        if (ShowCursorOver(window, lParam)) return TRUE;
        break;
    case WM_DESTROY:
        EraseBegins(PaneOf(window));
        ReleasePicture("ReleaseDC Failure in WM_DESTROY");
        WindowSlot(PaneOf(window)) = nullptr;
        return 0;
    default:
        break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    bool mouse = HandleMouse(window, message, wParam, lParam);
    LRESULT result = mouse ? 0 : HandlePaneMessage(window, message, wParam, lParam);
    ReleasePicture("ReleaseDC Failure in MainWndProc");
    return result;
}

bool CreatePane(DWORD bars, const PixelRect &place) {
    HWND window = CreateWindowA(CLASS_NAME, "", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_BORDER | bars,
                                place.left, place.top, place.right - place.left, place.bottom - place.top,
                                FrameWindow, nullptr, Instance, nullptr);
    return window != nullptr;
}

void Move(HWND window, const PixelRect &place) {
    MoveWindow(window, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
}

} // namespace

HWND PaneWindow(Pane pane) {
    return pane == Pane::None ? nullptr : WindowSlot(pane);
}

bool RegisterPaneClass(HBRUSH background) {
    WNDCLASSA description = {};
    // What is drawn depends on the panel's size: a bus value stands in the middle of what can be seen of it.
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = MainWndProc;
    description.cbWndExtra = sizeof(WORD);
    description.hInstance = Instance;
    description.hbrBackground = background;
    description.lpszClassName = CLASS_NAME;
    return RegisterClassA(&description) != 0;
}

void PlacePanes(const FrameLayout &layout) {
    if (!PanesExist()) return;
    Move(RulerWindow, layout.ruler);
    Move(NameWindow, layout.names);
    Move(WaveWindow, layout.waves);
}

void WheelOverPanes(UINT message, WPARAM wParam, LPARAM lParam) {
    int turn = GET_WHEEL_DELTA_WPARAM(wParam);
    POINT place = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    // While a button is held the panel of the press gets all.
    HWND captured = GetCapture(), under = captured ? captured : WindowFromPoint(place);
    Pane pane = Pane::None;
    for (Pane other : {Pane::Ruler, Pane::Name, Pane::Wave}) {
        if (under && under == PaneWindow(other)) pane = other;
    }
    if (under) ScreenToClient(under, &place);
    PixelPoint at = {place.x, place.y};
    if (message == WM_MOUSEHWHEEL) {
        WheelTipped(pane, at, turn);
    } else {
        WheelTurned(pane, at, turn, KeysOf(GET_KEYSTATE_WPARAM(wParam)), WheelRows());
    }
}

bool OpenWindow() {
    WindowPlace saved = {};
    bool isSaved = ReadWindowPlace(NAME_PLACE_KEY, saved);
    WaveView.NameColumnWidth = InitialNameColumnWidth(isSaved, saved.right - saved.left);
    FrameLayout layout = LayOutFrame(MeasureFrame());
    if (CreatePane(0, layout.ruler) && CreatePane(WS_HSCROLL, layout.names) &&
        CreatePane(WS_HSCROLL | WS_VSCROLL, layout.waves)) {
        return true;
    }
    ProgramError("CreateWindow Failure in OpenWindow");
    return false;
}

// --- what the engine asks of the panels -----------------------------------------------------------

bool PanesExist() {
    return RulerWindow && NameWindow && WaveWindow;
}

void InvalidatePane(Pane pane) {
    // Without a window Windows would repaint all there are.
    if (HWND window = PaneWindow(pane)) InvalidateRect(window, nullptr, TRUE);
}

void UpdatePane(Pane pane) {
    if (HWND window = PaneWindow(pane)) UpdateWindow(window);
}

void SetPaneScrollBar(Pane pane, ScrollBar bar, int32_t maximum, int32_t position) {
    HWND window = PaneWindow(pane);
    if (!window) return;
    SetScrollRange(window, BarOf(bar), 0, maximum, FALSE);
    SetScrollPos(window, BarOf(bar), position, TRUE);
}

int32_t PaneScrollMaximum(Pane pane, ScrollBar bar) {
    int minimum = 0, maximum = 0;
    HWND window = PaneWindow(pane);
    if (window) GetScrollRange(window, BarOf(bar), &minimum, &maximum);
    return maximum;
}

void PaneClientSize(Pane pane, int32_t &width, int32_t &height) {
    RECT client = {};
    HWND window = PaneWindow(pane);
    if (window) GetClientRect(window, &client);
    width = client.right;
    height = client.bottom;
}

PixelRect PaneClipBox(Pane) {
    RECT box = {};
    if (!PictureDC || GetClipBox(PictureDC, &box) == ERROR) return {0, 0, 0, 0};
    return {box.left, box.top, box.right, box.bottom};
}

FontMetrics MainFontMetrics() {
    HDC context = GetDC(nullptr);
    HGDIOBJ before = SelectObject(context, MainFont());
    TEXTMETRICA metrics = {};
    GetTextMetricsA(context, &metrics);
    SelectObject(context, before);
    ReleaseDC(nullptr, context);
    return {metrics.tmHeight, metrics.tmAveCharWidth};
}

void SetScreenSize(int32_t width, int32_t height) {
    screenWidth = width;
    screenHeight = height;
}

int32_t ScreenWidth() {
    return screenWidth;
}

int32_t ScreenHeight() {
    return screenHeight;
}

int32_t ScrollBarWidth() {
    return GetSystemMetrics(SM_CXVSCROLL);
}

int32_t FullScreenWidth() {
    return GetSystemMetrics(SM_CXFULLSCREEN);
}

// Each paint of the ruler asks, and Windows keeps the resolution that a program started with.
double ScreenMagnification() {
    if (screenMagnification > 0) return screenMagnification;
    HDC context = GetDC(nullptr);
    screenMagnification = GetDeviceCaps(context, LOGPIXELSY) / ORDINARY_DPI;
    ReleaseDC(nullptr, context);
    return screenMagnification;
}
