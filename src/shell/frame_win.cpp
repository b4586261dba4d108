#include "shell/frame_win.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/overlay.h"
#include "display/panes_win.h"
#include "display/surface_win.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "edit/clipboard.h"
#include "shell/clipboard_win.h"
#include "shell/commands.h"
#include "shell/frame.h"
#include "shell/frame_layout.h"
#include "shell/help.h"
#include "shell/help_win.h"
#include "shell/message_window_win.h"
#include "shell/prompt_win.h"
#include "shell/reporting.h"
#include "shell/splitter_win.h"
#include "shell/text_window_win.h"
#include "shell/window_positions.h"
#include <shellapi.h>
#include <windowsx.h>

HWND FrameWindow = nullptr;
HWND PromptWindow = nullptr;
HWND TextWindow = nullptr;

namespace {

HICON frameIcon = nullptr;
HCURSOR zoomCursor = nullptr;
HCURSOR selectCursor = nullptr;
HCURSOR queryCursor = nullptr;
HCURSOR resizeCursor = nullptr;

// --- places ---------------------------------------------------------------------------------------

void ReadScreenSize() {
    // What counts if there is no context to ask.
    SetScreenSize(GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
    HDC context = GetDC(nullptr);
    if (!context) {
        ProgramError("GetDC Failure in CREATE");
        return;
    }
    SetScreenSize(GetDeviceCaps(context, HORZRES), GetDeviceCaps(context, VERTRES));
    if (!ReleaseDC(nullptr, context)) ProgramError("ReleaseDC Failure in CREATE");
}

void StorePlace(HWND window, const char *key) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    if (!window || !GetWindowPlacement(window, &placement)) return;
    const RECT &place = placement.rcNormalPosition;
    StoreWindowPlace(key, {place.left, place.top, place.right, place.bottom});
}

void StorePlaces() {
    StorePlace(FrameWindow, FRAME_PLACE_KEY);
    StorePlace(TextWindow, TEXT_PLACE_KEY);
    StorePlace(PaneWindow(Pane::Name), NAME_PLACE_KEY);
}

// --- the window procedure -------------------------------------------------------------------------

void RemoveErrorStrip() {
    ShowErrorStrip(nullptr);
}

// True for a change of place that leaves everything as it is.
bool NothingMoved(const WINDOWPOS &change) {
    constexpr UINT all = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
    return (change.flags & all) == all && !(change.flags & SWP_HIDEWINDOW);
}

void CloseFrame() {
    DispatchCommand(0);
    DrawOverlay(false);
    if (!QuerySaveChanges(true)) {
        DrawOverlay(true);
        return;
    }
    StorePlaces();
    QuitHelp();
    ReleaseDocument();
    ReleaseWindows();
}

void EndSession() {
    StorePlaces();
    ReleaseDocument();
    DropClipFile();
}

// Opens the first of the files.
void OpenDropped(HDROP files) {
    char path[MAX_PATH_SIZE];
    UINT length = DragQueryFileA(files, 0, nullptr, 0);
    bool fits = length > 0 && length < sizeof path && DragQueryFileA(files, 0, path, sizeof path) > 0;
    DragFinish(files);
    // Not while a question is open.
    if (!DisplayOpen || !IsWindowEnabled(FrameWindow)) return;
    SetForegroundWindow(FrameWindow);
    if (fits) {
        OpenFile(path);
    } else if (length > 0) {
        UserError("File name is too long");
    }
}

LRESULT HandleFrameMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        FrameWindow = window;
        ReadScreenSize();
        InstallHelpHook();
        RegisterClipboard(window);
        return 0;
    case WM_DESTROY:
        RemoveHelpHook();
        FrameWindow = nullptr;
        PostQuitMessage(0);
        return 0;
    case WM_COMMAND:
        DispatchCommand(CommandOf(wParam));
        return 0;
    case WM_INITMENU:
        UpdateCommands();
        UpdateClipboardEntry(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_MENUSELECT:
        MenuSelectItem = LOWORD(wParam);
        MenuSelectFlags = HIWORD(wParam);
        break;
    case WM_CLOSE:
        CloseFrame();
        return 0;
    case WM_QUERYENDSESSION:
        DispatchCommand(0);
        return QuerySaveChanges(true);
    case WM_ENDSESSION:
        if (wParam) EndSession();
        return 0;
    case WM_LBUTTONDOWN:
        SplitterPress(window, GET_X_LPARAM(lParam));
        return 0;
    case WM_MOUSEMOVE:
        SplitterMove(window, GET_X_LPARAM(lParam));
        return 0;
    case WM_LBUTTONUP:
        SplitterRelease(window);
        return 0;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
        WheelOverPanes(message, wParam, lParam);
        return 0;
    case WM_DROPFILES:
        OpenDropped(reinterpret_cast<HDROP>(wParam));
        return 0;
    case WM_CAPTURECHANGED:
        SplitterCancel();
        return 0;
    case WM_MOVE:
    case WM_MOUSEACTIVATE:
        RemoveErrorStrip();
        break;
    case WM_SIZE:
        RemoveErrorStrip();
        if (wParam != SIZE_RESTORED && wParam != SIZE_MAXIMIZED) break;
        LayOutFrameWindow();
        InvalidateRect(window, nullptr, TRUE);
        break;
    case WM_WINDOWPOSCHANGED:
        if (!NothingMoved(*reinterpret_cast<const WINDOWPOS *>(lParam))) RemoveErrorStrip();
        break;
    default:
        if (message == HelpHookMessage && wParam == HELP_IN_MENU) HelpOnMenuItem();
        if (HandleClipboardMessage(message, wParam)) return 0;
        break;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK BackWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = HandleFrameMessage(window, message, wParam, lParam);
    ReleasePicture("ReleaseDC Failure in BackWndProc");
    return result;
}

// --- making the windows ---------------------------------------------------------------------------

HCURSOR LoadOwnCursor(const char *name) {
    return static_cast<HCURSOR>(LoadImageA(Instance, name, IMAGE_CURSOR, 0, 0, LR_DEFAULTSIZE));
}

void LoadCursors() {
    zoomCursor = LoadOwnCursor("zoom");
    selectCursor = LoadOwnCursor("select");
    queryCursor = LoadOwnCursor("query");
    resizeCursor = LoadOwnCursor("resize");
}

bool RegisterFrameClass(HBRUSH background) {
    frameIcon = LoadIconA(Instance, "icon");
    WNDCLASSEXA description = {};
    description.cbSize = sizeof description;
    description.style = CS_BYTEALIGNWINDOW;
    description.lpfnWndProc = BackWndProc;
    description.hInstance = Instance;
    description.hIcon = frameIcon;
    description.hIconSm =
        static_cast<HICON>(LoadImageA(Instance, "icon", IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                      GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    description.hCursor = resizeCursor;
    description.hbrBackground = background;
    description.lpszMenuName = "Main";
    description.lpszClassName = APPLICATION_TITLE;
    return RegisterClassExA(&description) != 0;
}

bool RegisterClasses() {
    HBRUSH background = SolidBrush(ColorSettings[Background]);
    return RegisterFrameClass(background) && RegisterPromptClass() && RegisterPaneClass(background);
}

void CreateFrameWindow() {
    constexpr DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    WindowPlace place = {};
    if (!ReadWindowPlace(FRAME_PLACE_KEY, place)) {
        CreateWindowA(APPLICATION_TITLE, APPLICATION_TITLE, style, CW_USEDEFAULT, 0, CW_USEDEFAULT, 0,
                      nullptr, nullptr, Instance, nullptr);
        return;
    }
    place = FitToScreen(place, {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                                GetSystemMetrics(SM_CXSIZE), GetSystemMetrics(SM_CYCAPTION)});
    CreateWindowA(APPLICATION_TITLE, APPLICATION_TITLE, style, place.left, place.top,
                  place.right - place.left, place.bottom - place.top, nullptr, nullptr, Instance, nullptr);
}

HMENU FrameMenu() {
    return FrameWindow ? GetMenu(FrameWindow) : nullptr;
}

} // namespace

bool InitWavesInst(HINSTANCE previous, int show) {
    LoadCursors();
    if (!previous && !RegisterClasses()) return false;
    CreateFrameWindow();
    if (!FrameWindow) return false;
    PromptWindow = CreatePromptWindow(FrameWindow);
    TextWindow = CreateTextWindow(FrameWindow);
    CreateMessageWindow(FrameWindow);
    UpdateCommands();
    DragAcceptFiles(FrameWindow, TRUE);
    ShowWindow(FrameWindow, show);
    UpdateWindow(FrameWindow);
    return true;
}

FrameMeasures MeasureFrame() {
    RECT client = {};
    if (FrameWindow) GetClientRect(FrameWindow, &client);
    return {client.right, client.bottom, PromptHeight(), WaveView.RulerHeight, WaveView.NameColumnWidth};
}

void LayOutFrameWindow() {
    FrameLayout layout = LayOutFrame(MeasureFrame());
    PlacePanes(layout);
    if (!PromptWindow) return;
    const PixelRect &prompt = layout.prompt;
    MoveWindow(PromptWindow, prompt.left, prompt.top, prompt.right - prompt.left, prompt.bottom - prompt.top,
               TRUE);
    InvalidateRect(PromptWindow, nullptr, TRUE);
    UpdateWindow(PromptWindow);
}

HCURSOR CursorFor(int mode) {
    if (mode == CURSOR_WAIT) return LoadCursorA(nullptr, IDC_WAIT);
    if (mode & CURSOR_ZOOM) return zoomCursor;
    if (mode & CURSOR_SELECT) return selectCursor;
    if (mode & CURSOR_QUERY) return queryCursor;
    return LoadCursorA(nullptr, IDC_ARROW);
}

// --- what the engine asks of the main window ------------------------------------------------------

void FrameSetTitle(const char *title) {
    if (FrameWindow) SetWindowTextA(FrameWindow, title);
}

void FrameInvalidate() {
    if (FrameWindow)
        RedrawWindow(FrameWindow, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void EnableCommand(uint32_t id, bool on) {
    HMENU menu = FrameMenu();
    if (!menu) return;
    // An entry whose command does nothing yet stays gray, whoever asks.
    bool enabled = on && CommandIsBuilt(id);
    EnableMenuItem(menu, id, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
}

void RedrawMenuBar() {
    if (FrameWindow) DrawMenuBar(FrameWindow);
}

void PostCommand(uint32_t id) {
    if (FrameWindow) PostMessageA(FrameWindow, WM_COMMAND, id, 0);
}

void ShowWaitCursor() {
    SetCursor(LoadCursorA(nullptr, IDC_WAIT));
}

void FrameClose() {
    if (FrameWindow) PostMessageA(FrameWindow, WM_CLOSE, 0, 0);
}

void FrameToFront() {
    if (!FrameWindow) return;
    if (IsIconic(FrameWindow)) {
        SendMessageA(FrameWindow, WM_SYSCOMMAND, SC_RESTORE, 0);
        return;
    }
    HWND popup = GetLastActivePopup(FrameWindow);
    SetForegroundWindow(FrameWindow);
    if (popup != FrameWindow) SetForegroundWindow(popup);
}

void ReleaseWindows() {
    DestroyTextWindow();
    TextWindow = nullptr;
    // What others may still want of the clipboard is handed over while the window goes.
    if (FrameWindow) DestroyWindow(FrameWindow);
    DropClipFile();
    PromptWindow = nullptr;
    ReleaseGraphicObjects();
    SetCursor(LoadCursorA(nullptr, IDC_WAIT));
    for (HCURSOR *cursor : {&zoomCursor, &selectCursor, &queryCursor, &resizeCursor}) {
        if (*cursor) DestroyCursor(*cursor);
        *cursor = nullptr;
    }
}
