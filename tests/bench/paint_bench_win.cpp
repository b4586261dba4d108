// Painting the real window: the program itself runs in this process, on a document of 40 rows, and is
// measured from within its own message loop. Prints the figures as the other benchmarks do.
//
//   paint_bench [--quick]
#include "bench/call_recorder_win.h"
#include "display/composition.h"
#include "display/panes_win.h"
#include "display/viewport.h"
#include "shell/frame_win.h"
#include <algorithm>
#include <array>
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

// The paint messages of the three panels, with the erase messages before them and the marks that lie over the
// picture. They have been scheduled.
void PaintScheduled() {
    for (Pane pane : PANES) UpdatePane(pane);
    GdiFlush();
}

// The panels' own contexts, held all the time.
std::array<HDC, PANES.size()> OwnContexts;

void ReplayAll() {
    for (size_t i = 0; i < PANES.size(); i++) {
        PaneMemory memory = OpenMemory(OwnContexts[i], PANES[i]);
        ReplayRecorded(PaneWindow(PANES[i]), OwnContexts[i], memory.context);
        CloseMemory(memory);
    }
    GdiFlush();
}

std::vector<uint32_t> PixelsOf(HDC own, Pane pane) {
    int32_t width = 0, height = 0;
    PaneClientSize(pane, width, height);
    PaneMemory memory = OpenMemory(own, pane);
    BitBlt(memory.context, 0, 0, width, height, own, 0, 0, SRCCOPY);
    SelectObject(memory.context, memory.before);
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    BITMAPINFO form = {};
    form.bmiHeader = {sizeof form.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    GetDIBits(own, memory.bitmap, 0, static_cast<UINT>(height), pixels.data(), &form, DIB_RGB_COLORS);
    CloseMemory(memory);
    return pixels;
}

// What the panels show beneath the marks.
std::vector<uint32_t> Shown() {
    std::vector<uint32_t> all;
    for (size_t i = 0; i < PANES.size(); i++) {
        std::vector<uint32_t> pixels = PixelsOf(OwnContexts[i], PANES[i]);
        all.insert(all.end(), pixels.begin(), pixels.end());
    }
    return all;
}

// A replay that shows something else than the paint would be no yardstick.
bool ReplayShowsTheSame() {
    EraseBegins(Pane::Wave);
    std::vector<uint32_t> painted = Shown();
    for (size_t i = 0; i < PANES.size(); i++) {
        int32_t width = 0, height = 0;
        PaneClientSize(PANES[i], width, height);
        PatBlt(OwnContexts[i], 0, 0, width, height, BLACKNESS);
    }
    ReplayAll();
    bool same = Shown() == painted;
    if (!same) fprintf(stderr, "paint_bench: the replay shows something else than the paint\n");
    return same;
}

template <class Work>
double MicrosecondsOf(Work work) {
    LARGE_INTEGER frequency, from, to;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&from);
    work();
    QueryPerformanceCounter(&to);
    return 1e6 * static_cast<double>(to.QuadPart - from.QuadPart) / static_cast<double>(frequency.QuadPart);
}

void PrintFigures(double paint, double replay) {
    printf("{\"benchmarks\": [\n"
           "  {\"name\": \"window/paint\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/replay\", \"cpu_time\": %.1f, \"replayed\": %zu}\n"
           "]}\n",
           paint, replay, RecordedCalls());
}

// The least of many rounds, in which the two take turns: what else runs on the machine only adds.
bool Measure() {
    for (size_t i = 0; i < PANES.size(); i++) OwnContexts[i] = GetDC(PaneWindow(PANES[i]));
    InvalidateAllPanes();
    StartRecording();
    PaintScheduled();
    StopRecording();
    bool same = ReplayShowsTheSame();
    double paint = std::numeric_limits<double>::max(), replay = paint;
    for (int i = 0; i < rounds; i++) {
        InvalidateAllPanes();
        paint = std::min(paint, MicrosecondsOf(PaintScheduled));
        replay = std::min(replay, MicrosecondsOf(ReplayAll));
    }
    for (size_t i = 0; i < PANES.size(); i++) ReleaseDC(PaneWindow(PANES[i]), OwnContexts[i]);
    if (same) PrintFigures(paint, replay);
    return same;
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
    std::string arguments = "rows.wdl";
    WinMain(GetModuleHandleA(nullptr), nullptr, arguments.data(), SW_SHOW);
    fs::current_path(directory.parent_path());
    std::error_code ignored;
    fs::remove_all(directory, ignored);
    return status;
}
