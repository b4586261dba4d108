// Painting the real window: the program itself runs in this process, on a document of 40 rows, and is
// measured from within its own message loop. Prints the figures as the other benchmarks do.
//
//   paint_bench [--quick]
#include "bench/call_recorder_win.h"
#include "bench/drag_bench_win.h"
#include "display/composition.h"
#include "display/panes_win.h"
#include "display/viewport.h"
#include "shell/entry_win.h"
#include "shell/frame_win.h"
#include <algorithm>
#include <array>
#include <commctrl.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr uint32_t ROWS = 40;
constexpr uint32_t END_TIME = 2000; // reaches beyond the panel at a count for each pixel
constexpr UINT PATIENCE_MILLISECONDS = 500;
constexpr std::array<Pane, 3> PANES = {Pane::Ruler, Pane::Name, Pane::Wave};

int rounds = 1000;
int status = 1;

// --- the document ----------------------------------------------------------------------------------

// A stimulus as full as it can still be read: clocks with an edge every 6 to 14 pixels, nodes with one every
// 10 to 30, and buses whose values have just enough room, by turns.
std::string RowText(uint32_t row) {
    constexpr const char *parameters = " { In Default None 0 1 50 } =";
    std::string number = std::to_string(row);
    uint32_t variant = row % 5;
    if (row % 4 == 0) {
        std::string half = std::to_string(6 + 2 * variant);
        return "CLK" + number + parameters + " (0 " + half + " 1 " + half + ")##;\n";
    }
    bool bus = row % 4 == 3;
    uint32_t length = bus ? 40 + 5 * variant : 10 + 5 * variant;
    std::string text = (bus ? "BUS" + number + "[7:0]" : "NODE" + number) + parameters;
    for (uint32_t t = 0, i = 0; t < END_TIME; t += length, i++) {
        char item[32];
        snprintf(item, sizeof item, " %X %u\n", bus ? (i * 37 + row) & 255 : i & 1, length);
        text += item;
    }
    return text + " ;\n";
}

void WriteDocument(const fs::path &directory) {
    std::ofstream document(directory / "rows.wdl");
    std::ofstream list(directory / "rows.kel");
    document << "%ENDTIME = " << END_TIME << ";\n";
    for (uint32_t row = 0; row < ROWS; row++) {
        std::string text = RowText(row);
        document << text;
        list << "Wave " << text.substr(0, text.find(' ')) << "\n";
    }
    fs::create_directories(directory / "config");
    std::ofstream(directory / "config" / "Kelvane.ini") << "[windows]\nMain-Pos=0,0,1900,1160\n";
}

// --- measuring -------------------------------------------------------------------------------------

// Memory of a panel's size, as a paint message makes it.
struct PaneMemory {
    HDC context;
    HBITMAP bitmap;
    HGDIOBJ before;
};

PaneMemory OpenMemory(HDC own, Pane pane) {
    int32_t width = 0, height = 0;
    PaneClientSize(pane, width, height);
    PaneMemory memory = {};
    memory.context = CreateCompatibleDC(own);
    memory.bitmap = CreateCompatibleBitmap(own, width, height);
    memory.before = SelectObject(memory.context, memory.bitmap);
    return memory;
}

void CloseMemory(const PaneMemory &memory) {
    SelectObject(memory.context, memory.before);
    DeleteObject(memory.bitmap);
    DeleteDC(memory.context);
}

// The message that a panel has to answer when it has been scheduled for a paint, with the erase message
// before it.
void PaintScheduled(Pane pane) {
    UpdatePane(pane);
    GdiFlush();
}

// A paint message that is answered with what was recorded, in memory like the program's, and nothing else.
void ReplayPaint(HWND window) {
    PAINTSTRUCT paint;
    HDC context = BeginPaint(window, &paint);
    PaneMemory memory = OpenMemory(context, static_cast<Pane>(GetWindowWord(window, 0)));
    ReplayRecorded(window, context, memory.context);
    CloseMemory(memory);
    EndPaint(window, &paint);
}

LRESULT CALLBACK ReplayProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcA(window, message, wParam, lParam);
    ReplayPaint(window);
    return 0;
}

// Lets a panel answer with what was recorded for as long as this lives.
class Replaying {
public:
    explicit Replaying(Pane pane)
        : window(PaneWindow(pane)),
          before(SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ReplayProc))) {}
    ~Replaying() { SetWindowLongPtrA(window, GWLP_WNDPROC, before); }
    Replaying(const Replaying &) = delete;
    Replaying &operator=(const Replaying &) = delete;

private:
    HWND window;
    LONG_PTR before;
};

// What a panel shows.
std::vector<uint32_t> PixelsOf(Pane pane) {
    int32_t width = 0, height = 0;
    PaneClientSize(pane, width, height);
    HDC own = GetDC(PaneWindow(pane));
    PaneMemory memory = OpenMemory(own, pane);
    BitBlt(memory.context, 0, 0, width, height, own, 0, 0, SRCCOPY);
    SelectObject(memory.context, memory.before);
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    BITMAPINFO form = {};
    form.bmiHeader = {sizeof form.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    GetDIBits(own, memory.bitmap, 0, static_cast<UINT>(height), pixels.data(), &form, DIB_RGB_COLORS);
    CloseMemory(memory);
    ReleaseDC(PaneWindow(pane), own);
    return pixels;
}

void Blacken(Pane pane) {
    int32_t width = 0, height = 0;
    PaneClientSize(pane, width, height);
    HDC own = GetDC(PaneWindow(pane));
    PatBlt(own, 0, 0, width, height, BLACKNESS);
    ReleaseDC(PaneWindow(pane), own);
}

// A replay that shows something else than the paint would be no yardstick.
bool ReplayShowsTheSame() {
    // What lies over the picture is not part of it.
    EraseBegins(Pane::Wave);
    for (Pane pane : PANES) {
        std::vector<uint32_t> painted = PixelsOf(pane);
        Blacken(pane);
        Replaying replaying(pane);
        InvalidatePane(pane);
        PaintScheduled(pane);
        if (PixelsOf(pane) == painted) continue;
        fprintf(stderr, "paint_bench: the replay shows something else than the paint\n");
        return false;
    }
    return true;
}

double MicrosecondsOfPaint(Pane pane) {
    LARGE_INTEGER frequency, from, to;
    InvalidatePane(pane);
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&from);
    PaintScheduled(pane);
    QueryPerformanceCounter(&to);
    return 1e6 * static_cast<double>(to.QuadPart - from.QuadPart) / static_cast<double>(frequency.QuadPart);
}

void PrintFigures(double paint, double replay, const DragFigures &drags) {
    printf("{\"benchmarks\": [\n"
           "  {\"name\": \"window/paint\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/replay\", \"cpu_time\": %.1f, \"replayed\": %zu},\n"
           "  {\"name\": \"window/row\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/drag\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/drag_tail\", \"cpu_time\": %.1f}\n"
           "]}\n",
           paint, replay, RecordedCalls(), drags.row, drags.drag, drags.tail);
}

void RecordPaint() {
    InvalidateAllPanes();
    StartRecording();
    for (Pane pane : PANES) PaintScheduled(pane);
    StopRecording();
}

// The least of many rounds, in which the two take turns, for each panel by itself: what else runs on the
// machine only adds.
bool Measure() {
    RecordPaint();
    if (!ReplayShowsTheSame()) return false;
    double paint = 0, replay = 0;
    for (Pane pane : PANES) {
        double leastPaint = std::numeric_limits<double>::max(), leastReplay = leastPaint;
        for (int round = 0; round < rounds; round++) {
            leastPaint = std::min(leastPaint, MicrosecondsOfPaint(pane));
            Replaying replaying(pane);
            leastReplay = std::min(leastReplay, MicrosecondsOfPaint(pane));
        }
        paint += leastPaint;
        replay += leastReplay;
    }
    DragFigures drags;
    if (!MeasureDrags(rounds, drags)) return false;
    PrintFigures(paint, replay, drags);
    return true;
}

// A window that shows less than all rows would be another measurement.
bool ShowsAllRows() {
    bool rows = DisplayOpen && WaveView.Scale == 0 && WaveView.ViewLeft == 0 && WaveView.RowCount == ROWS &&
                VisibleRows() >= ROWS;
    if (!rows) {
        fprintf(stderr, "paint_bench: the window shows %u of %u rows, or not at their scale\n",
                std::min(VisibleRows(), WaveView.RowCount), ROWS);
    }
    return rows;
}

void CALLBACK MeasureAndEnd(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    ZoomToRange(0, static_cast<TimeVal>(WaveView.WavePaneWidth));
    if (ShowsAllRows() && Measure()) status = 0;
    PostMessageA(FrameWindow, WM_CLOSE, 0, 0);
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && strcmp(argv[1], "--quick") == 0) rounds = 1;
    fs::path directory =
        fs::temp_directory_path() / ("kelvane-paint-" + std::to_string(GetCurrentProcessId()));
    fs::create_directories(directory);
    WriteDocument(directory);
    SetEnvironmentVariableA("KELVANE_CONFIG", (directory / "config").string().c_str());
    fs::current_path(directory);
    SetProcessDPIAware();
    SetTimer(nullptr, 0, PATIENCE_MILLISECONDS, MeasureAndEnd);
    // As the program's own start does it, which would take this process's arguments.
    InitCommonControls();
    if (StartApplication(GetModuleHandleA(nullptr), nullptr, "rows.wdl", SW_SHOW)) {
        MSG message;
        while (GetMessageA(&message, nullptr, 0, 0) > 0) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
    fs::current_path(directory.parent_path());
    std::error_code ignored;
    fs::remove_all(directory, ignored);
    return status;
}
