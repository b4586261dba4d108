#include "window/editor.h"

#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/edit_dialog.h"
#include "editlog/edit_log.h"
#include "window/map_file.h"
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <psapi.h>
#include <sstream>

namespace fs = std::filesystem;

std::string ProgramPath;

namespace {

constexpr DWORD POLL_MILLISECONDS = 20;
constexpr int FRAME_TEXT_SIZE = 1024;

BOOL CALLBACK CollectWindow(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND> *>(list)->push_back(window);
    return TRUE;
}

std::vector<HWND> ChildrenOf(HWND window) {
    std::vector<HWND> children;
    EnumChildWindows(window, CollectWindow, reinterpret_cast<LPARAM>(&children));
    return children;
}

bool IsPainted(HWND window) {
    return !GetUpdateRect(window, nullptr, FALSE);
}

// A message that is answered only after all that came before it.
bool Answers(HWND window) {
    DWORD_PTR result;
    return SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, 20000, &result) != 0;
}

bool HasInk(const Picture &picture) {
    for (uint32_t pixel : picture.pixels)
        if (pixel != picture.pixels[0]) return true;
    return false;
}

// Only the floating dialog has these two together.
bool IsEditDialog(HWND window) {
    return GetDlgItem(window, EDIT_STATES) && GetDlgItem(window, EDIT_DURATION + EDIT_LABEL);
}

// Ends with the job every process in it, also those that the program started.
HANDLE MakeJob() {
    HANDLE job = CreateJobObjectA(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

} // namespace

bool WaitFor(const std::function<bool()> &condition, double seconds) {
    ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(seconds * 1000);
    while (!condition()) {
        if (GetTickCount64() > end) return false;
        Sleep(POLL_MILLISECONDS);
    }
    return true;
}

// --- files ----------------------------------------------------------------------------------------

TestDirectory::TestDirectory() {
    char base[MAX_PATH];
    GetTempPathA(sizeof base, base);
    for (int n = 0;; ++n) {
        path =
            std::string(base) + "kelvane-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(n);
        if (CreateDirectoryA(path.c_str(), nullptr)) break;
        if (n > 10000) abort();
    }
    CreateDirectoryA(file("config").c_str(), nullptr);
}

TestDirectory::~TestDirectory() {
    for (const auto &entry : fs::recursive_directory_iterator(path))
        SetFileAttributesA(entry.path().string().c_str(), FILE_ATTRIBUTE_NORMAL);
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

std::string TestDirectory::write(const std::string &name, const std::string &text) const {
    std::ofstream(file(name), std::ios::binary) << text;
    return file(name);
}

std::string TestDirectory::read(const std::string &name) const {
    std::ostringstream text;
    text << std::ifstream(file(name), std::ios::binary).rdbuf();
    return text.str();
}

bool TestDirectory::has(const std::string &name) const {
    return fs::exists(file(name));
}

// --- windows --------------------------------------------------------------------------------------

std::string ClassOf(HWND window) {
    char text[256] = "";
    GetClassNameA(window, text, sizeof text);
    return text;
}

std::wstring Wide(const std::string &utf8) {
    std::wstring wide(utf8.size(), L'\0');
    int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                                     static_cast<int>(wide.size()));
    wide.resize(static_cast<size_t>(length));
    return wide;
}

std::string TextOf(HWND window) {
    char text[FRAME_TEXT_SIZE] = "";
    DWORD_PTR length = 0;
    SendMessageTimeoutA(window, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, 20000,
                        &length);
    return text;
}

RECT PlaceOf(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    return rect;
}

RECT PlaceIn(HWND parent, HWND window) {
    RECT rect = PlaceOf(window);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT *>(&rect), 2);
    return rect;
}

std::string Dialog::title() const {
    return TextOf(window);
}

std::string Dialog::text(int id) const {
    HWND control = GetDlgItem(window, id);
    return control ? TextOf(control) : "";
}

void Dialog::click(int id) const {
    RECT rect = PlaceOf(GetDlgItem(window, id));
    ClickAt((rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2);
}

std::vector<std::string> Dialog::labels() const {
    std::vector<std::string> texts;
    for (HWND child : ChildrenOf(window)) {
        std::string text = TextOf(child);
        if (!text.empty()) texts.push_back(text);
    }
    return texts;
}

void Dialog::giveFile(const std::string &name) const {
    for (HWND child : ChildrenOf(window)) {
        if (ClassOf(child) != "Edit" || !IsWindowVisible(child)) continue;
        SendMessageW(child, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(Wide(name).c_str()));
        break;
    }
    click(IDOK);
}

// --- the program ----------------------------------------------------------------------------------

Editor::Editor(const TestDirectory &directory, const std::string &arguments) {
    SetEnvironmentVariableA("KELVANE_CONFIG", directory.file("config").c_str());
    std::wstring line = Wide("\"" + ProgramPath + "\"" + (arguments.empty() ? "" : " " + arguments));
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION started = {};
    job = MakeJob();
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr,
                        Wide(directory.path).c_str(), &start, &started)) {
        fprintf(stderr, "the program cannot be started: error %lu\n", GetLastError());
        return;
    }
    process = started.hProcess;
    processId = started.dwProcessId;
    AssignProcessToJobObject(job, process);
    ResumeThread(started.hThread);
    CloseHandle(started.hThread);
}

Editor::~Editor() {
    if (process && running()) TerminateProcess(process, 99);
    CloseHandle(job);
    if (!process) return;
    WaitForSingleObject(process, 20000);
    CloseHandle(process);
}

std::vector<HWND> Editor::windows() const {
    std::vector<HWND> all, own;
    EnumWindows(CollectWindow, reinterpret_cast<LPARAM>(&all));
    for (HWND window : all) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == processId) own.push_back(window);
    }
    return own;
}

bool Editor::running() const {
    return process && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
}

std::optional<DWORD> Editor::ended() {
    DWORD code = 0;
    if (!process || WaitForSingleObject(process, 60000) != WAIT_OBJECT_0) return std::nullopt;
    GetExitCodeProcess(process, &code);
    return code;
}

HWND Editor::frame() const {
    for (HWND window : windows())
        if (ClassOf(window) == "Kelvane") return window;
    return nullptr;
}

std::string Editor::title() const {
    return TextOf(frame());
}

HWND Editor::pane(int number) const {
    HWND main = frame();
    if (!main) return nullptr;
    for (HWND child : ChildrenOf(main))
        if (ClassOf(child) == "SubKelvane" && GetWindowWord(child, 0) == number) return child;
    return nullptr;
}

HWND Editor::prompt() const {
    return frame() ? FindWindowExA(frame(), nullptr, "VRDPROMPT", nullptr) : nullptr;
}

HWND Editor::strip() const {
    for (HWND window : windows())
        if (ClassOf(window) == "Static" && IsWindowVisible(window)) return window;
    return nullptr;
}

bool Editor::hasStrip(const std::string &text) const {
    return WaitFor([&] { return strip() && TextOf(strip()) == text; });
}

bool Editor::open(bool keepEditDialog) {
    WaitFor([&] { return !running() || shownDialog() || (pane(3) && IsWindowVisible(pane(3))); });
    if (!running() || shownDialog() || !pane(3)) {
        std::string text = shownDialog() ? TextOf(shownDialog()) : "";
        fprintf(stderr, "the program is not open: running %d, dialog \"%s\"\n", running(), text.c_str());
        return false;
    }
    const uint8_t *state = address("CommandState");
    uint16_t inForce = 0;
    WaitFor([&] { return readMemory(state, &inForce, sizeof inForce) && inForce != 0 && Answers(frame()); });
    if (!keepEditDialog && !closeEditDialog()) return false;
    toFront();
    return painted();
}

bool Editor::painted() const {
    Picture last;
    return WaitFor([&] {
        for (HWND window : {pane(1), pane(2), pane(3), prompt()})
            if (!window || !Answers(window) || !IsPainted(window)) return false;
        if (!HasInk(PictureOfClient(pane(1))) || !HasInk(PictureOfClient(prompt()))) return false;
        Picture now = picture();
        bool still = now == last;
        last = now;
        return still;
    });
}

std::vector<Dialog> Editor::dialogs() const {
    std::vector<Dialog> found;
    for (HWND window : windows())
        // In this order: one that is going is hidden before it loses its controls, and one that comes is
        // shown when it has them.
        if (ClassOf(window) == "#32770" && !IsEditDialog(window) && IsWindowVisible(window) &&
            !IsEditDialog(window) && IsWindowEnabled(window))
            found.push_back({window});
    return found;
}

HWND Editor::shownEditDialog() const {
    for (HWND window : windows())
        if (ClassOf(window) == "#32770" && IsWindowVisible(window) && IsEditDialog(window)) return window;
    return nullptr;
}

Dialog Editor::editDialog() const {
    Dialog found;
    WaitFor([&] {
        found.window = shownEditDialog();
        return found.window != nullptr || !running();
    });
    return found;
}

bool Editor::editDialogGone() const {
    return WaitFor([&] { return shownEditDialog() == nullptr; });
}

bool Editor::closeEditDialog() const {
    HWND window = shownEditDialog();
    if (!window) return true;
    PostMessageA(window, WM_CLOSE, 0, 0);
    return editDialogGone();
}

HWND Editor::shownDialog() const {
    std::vector<Dialog> all = dialogs();
    return all.empty() ? nullptr : all.front().window;
}

Dialog Editor::dialog(HWND before) const {
    Dialog found;
    WaitFor([&] {
        found.window = shownDialog();
        if (found.window == before) found.window = nullptr;
        return found.window != nullptr || !running();
    });
    if (found.window) {
        WaitFor([&] { return Answers(found.window) && IsPainted(found.window); }, 5);
        SetForegroundWindow(found.window);
    }
    return found;
}

bool Editor::dialogGone() const {
    return WaitFor([&] { return shownDialog() == nullptr; });
}

void Editor::command(int id) const {
    PostMessageA(frame(), WM_COMMAND, static_cast<WPARAM>(id), 0);
}

void Editor::close() const {
    PostMessageA(frame(), WM_CLOSE, 0, 0);
}

HWND Editor::focus() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetWindowThreadProcessId(frame(), nullptr), &info) ? info.hwndFocus : nullptr;
}

Picture Editor::picture() const {
    return PictureOfWindow(frame());
}

void Editor::shoot(const std::string &name, HWND window) const {
    fs::path shots = fs::path(ProgramPath).parent_path().parent_path() / "shots";
    std::error_code ignored;
    fs::create_directories(shots, ignored);
    WritePng(PictureOfWindow(window ? window : frame()), (shots / (name + ".png")).string());
}

void Editor::toFront() const {
    SetForegroundWindow(frame());
    WaitFor([&] { return GetForegroundWindow() == frame(); }, 5);
}

uint8_t *Editor::address(const std::string &symbol) const {
    std::string map = fs::path(ProgramPath).replace_extension(".map").string();
    std::optional<uint64_t> offset = OffsetInImage(map, symbol);
    HMODULE module = nullptr;
    DWORD needed = 0;
    if (!offset || !EnumProcessModules(process, &module, sizeof module, &needed)) return nullptr;
    return reinterpret_cast<uint8_t *>(module) + *offset;
}

bool Editor::readMemory(const void *from, void *bytes, size_t size) const {
    return from && ReadProcessMemory(process, from, bytes, size, nullptr);
}

bool Editor::writeMemory(void *to, const void *bytes, size_t size) const {
    return to && WriteProcessMemory(process, to, bytes, size, nullptr);
}

void *Editor::plantBytes(const std::string &bytes) const {
    return plant(bytes, PAGE_READWRITE);
}

void *Editor::plantCode(const std::string &bytes) const {
    return plant(bytes, PAGE_EXECUTE_READWRITE);
}

void *Editor::plant(const std::string &bytes, DWORD protection) const {
    void *place = VirtualAllocEx(process, nullptr, bytes.size(), MEM_COMMIT | MEM_RESERVE, protection);
    return writeMemory(place, bytes.data(), bytes.size()) ? place : nullptr;
}

void *Editor::exchangeCall(const std::string &name, void *code) const {
    uint8_t *slot = address("__imp_" + name);
    void *before = nullptr;
    DWORD protection = 0;
    if (!code || !readMemory(slot, &before, sizeof before)) return nullptr;
    VirtualProtectEx(process, slot, sizeof code, PAGE_READWRITE, &protection);
    return writeMemory(slot, &code, sizeof code) ? before : nullptr;
}

bool Editor::plantChange() const {
    int32_t position = 4;
    uint8_t *log = address("EditLog");
    return log && writeMemory(log + offsetof(EditLogRecord, rPtr), &position, sizeof position);
}

bool Editor::plantSelectedRow(uint32_t row) const {
    uint8_t *view = address("WaveView"), *rows = nullptr;
    WaveRow record;
    if (!view || !readMemory(address("WaveRows"), &rows, sizeof rows)) return false;
    rows += row * sizeof record;
    if (!readMemory(rows, &record, sizeof record)) return false;
    record.setHighlighted(true);
    return writeMemory(rows, &record, sizeof record) &&
           writeMemory(view + offsetof(WaveViewRecord, SelectRow), &row, sizeof row) &&
           writeMemory(view + offsetof(WaveViewRecord, SelectRowLast), &row, sizeof row);
}

HWND Editor::window(const std::string &className) const {
    for (HWND window : windows())
        if (_stricmp(ClassOf(window).c_str(), className.c_str()) == 0) return window;
    return nullptr;
}

// "xor eax, eax" and "ret".
FailingCall::FailingCall(const Editor &editor, const std::string &name)
    : editor(editor), name(name), before(editor.exchangeCall(name, editor.plantCode("\x31\xC0\xC3"))) {}

FailingCall::~FailingCall() {
    if (before) editor.exchangeCall(name, before);
}

// --- input ----------------------------------------------------------------------------------------

void PressKey(WORD key, const std::vector<WORD> &with) {
    std::vector<INPUT> inputs;
    auto add = [&](WORD code, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = code;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyA(code, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    for (WORD modifier : with) add(modifier, 0);
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    for (WORD modifier : with) add(modifier, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

namespace {

// Where the mouse was put last.
POINT mousePlace = {};

// The mouse at this place of the screen, with these buttons.
INPUT MouseInput(POINT place, DWORD buttons) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = (place.x * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
    input.mi.dy = (place.y * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | buttons;
    return input;
}

} // namespace

void MoveMouse(int x, int y) {
    mousePlace = {x, y};
    INPUT input = MouseInput(mousePlace, 0);
    // A virtual display tells of a move only when it is asked for something, and may then take the pointer
    // back to where it was before.
    constexpr int STEADY = 4;
    int steady = 0;
    WaitFor([&] {
        POINT now = {};
        GetCursorPos(&now);
        bool there = now.x == x && now.y == y;
        steady = there ? steady + 1 : 0;
        if (!there) SendInput(1, &input, sizeof input);
        PictureOfScreen({x, y, x + 1, y + 1});
        return steady >= STEADY;
    });
}

void PressButton(bool down) {
    // With the place, as the display may still take the pointer back to where it was before.
    INPUT input = MouseInput(mousePlace, down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP);
    SendInput(1, &input, sizeof input);
}

bool HasCapture(HWND window, bool captured) {
    DWORD thread = GetWindowThreadProcessId(window, nullptr);
    return WaitFor(
        [&] {
            GUITHREADINFO info = {};
            info.cbSize = sizeof info;
            return GetGUIThreadInfo(thread, &info) && (info.hwndCapture == window) == captured;
        },
        10);
}

void ClickAt(int x, int y) {
    MoveMouse(x, y);
    PressButton(true);
    PressButton(false);
}
