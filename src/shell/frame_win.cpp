#include "shell/frame_win.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/overlay.h"
#include "display/panes_win.h"
#include "display/surface_win.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog_focus.h"
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
#include "shell/wide_names_win.h"
#include "shell/window_positions.h"
#include <shellapi.h>
#include <vector>
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

// Windows keeps the windows that the main window owns above it. Not every system that takes its place does so
// when the main window becomes active, and there the order is not settled before the messages of that are
// over.
constexpr UINT_PTR RAISE_TIMER = 1;
constexpr UINT RAISE_DELAY = 200; // milliseconds

BOOL CALLBACK CollectOwned(HWND window, LPARAM list) {
    if (GetWindow(window, GW_OWNER) == FrameWindow && IsWindowVisible(window))
        reinterpret_cast<std::vector<HWND> *>(list)->push_back(window);
    return TRUE;
}

bool IsBelowFrame(HWND window) {
    HWND above = FrameWindow;
    while (above && above != window) above = GetWindow(above, GW_HWNDNEXT);
    return above != nullptr;
}

// Those that lie below the main window come to lie directly above it, in the order that they have.
void RaiseOwnedWindows() {
    std::vector<HWND> owned; // the topmost first
    EnumThreadWindows(GetCurrentThreadId(), CollectOwned, reinterpret_cast<LPARAM>(&owned));
    for (HWND window : owned) {
        if (!IsBelowFrame(window)) continue;
        HWND before = GetWindow(FrameWindow, GW_HWNDPREV);
        SetWindowPos(window, before ? before : HWND_TOP, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

void CloseFrame() {
    if (!MayClose()) return;
    DrawOverlay(false);
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
    std::wstring name(DragQueryFileW(files, 0, nullptr, 0) + 1, L'\0');
    UINT length = DragQueryFileW(files, 0, name.data(), static_cast<UINT>(name.size()));
    DragFinish(files);
    // Not while a question is open.
    if (!DisplayOpen || !IsWindowEnabled(FrameWindow)) return;
    SetForegroundWindow(FrameWindow);
    char path[MAX_PATH_SIZE];
    if (length > 0 && TakeFileName(name.c_str(), path, sizeof path)) OpenFile(path);
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
    case WM_CHAR:
        if (wParam <= 0x7F && TypedInWaves(static_cast<char>(wParam))) return 0;
        break;
    case WM_KEYDOWN:
        if (wParam == VK_TAB && EnterEditDialog()) return 0;
        break;
    case WM_MENUSELECT:
        MenuSelectItem = LOWORD(wParam);
        MenuSelectFlags = HIWORD(wParam);
        break;
    case WM_CLOSE:
        CloseFrame();
        return 0;
    case WM_QUERYENDSESSION:
        return MayClose();
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
    case WM_ACTIVATE:
        if (LOWORD(wParam) != WA_INACTIVE) SetTimer(window, RAISE_TIMER, RAISE_DELAY, nullptr);
        break;
    case WM_TIMER:
        if (wParam != RAISE_TIMER) break;
        KillTimer(window, RAISE_TIMER);
        RaiseOwnedWindows();
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

// The resource script has no word for it.
void MarkModesWithDots() {
    MENUITEMINFOA entry = {};
    entry.cbSize = sizeof entry;
    entry.fMask = MIIM_FTYPE;
    entry.fType = MFT_STRING | MFT_RADIOCHECK;
    for (UINT mode : {COMMAND_QUERY_MODE, COMMAND_EDIT_MODE})
        SetMenuItemInfoA(FrameMenu(), mode, FALSE, &entry);
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
    MarkModesWithDots();
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

bool OpenMenuByKey(WPARAM wParam, LPARAM lParam) {
    constexpr WPARAM SYSTEM_BITS = 0xF; // of the command, which are Windows' own
    if ((wParam & ~SYSTEM_BITS) != SC_KEYMENU || lParam == ' ' || !FrameWindow) return false;
    SetFocus(FrameWindow);
    SendMessageA(FrameWindow, WM_SYSCOMMAND, SC_KEYMENU, lParam);
    return true;
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

void CheckCommand(uint32_t id, bool on) {
    if (HMENU menu = FrameMenu()) CheckMenuItem(menu, id, MF_BYCOMMAND | (on ? MF_CHECKED : MF_UNCHECKED));
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
