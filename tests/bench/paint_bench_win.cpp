// Painting the real window: the program itself runs in this process, on a document of 40 rows, and is
// measured from within its own message loop. Prints the figures as the other benchmarks do.
//
//   paint_bench [--quick]
#include "bench/call_recorder_win.h"
#include "config/settings.h"
#include "display/composition.h"
#include "display/drag_preview.h"
#include "display/mouse_place.h"
#include "display/panes_win.h"
#include "display/renderer.h"
#include "display/row_table.h"
#include "display/ruler_cursor.h"
#include "display/surface_win.h"
#include "display/viewport.h"
#include "shell/commands.h"
#include "shell/frame_win.h"
#include "shell/view_gestures.h"
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

struct Figures {
    double paint, replay, row, drag, tail;
};

void PrintFigures(const Figures &least) {
    printf("{\"benchmarks\": [\n"
           "  {\"name\": \"window/paint\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/replay\", \"cpu_time\": %.1f, \"replayed\": %zu},\n"
           "  {\"name\": \"window/row\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/drag\", \"cpu_time\": %.1f},\n"
           "  {\"name\": \"window/drag_tail\", \"cpu_time\": %.1f}\n"
           "]}\n",
           least.paint, least.replay, RecordedCalls(), least.row, least.drag, least.tail);
}

// --- dragging an edge --------------------------------------------------------------------------------

constexpr uint32_t DRAGGED_ROW = 22; // in the middle of the window, one of the nodes with many edges
constexpr TimeVal DRAGGED_EDGE = 900;
constexpr TimeVal DRAG_ROOM = 40;

// As a press on the edge leaves it behind: between its neighbours, or with the tail behind it.
void TakeEdge(uint16_t rightMode) {
    DragPreview = {};
    DragPreview.pattern = WaveRows[DRAGGED_ROW].PatternId;
    DragPreview.edgeTime = DRAGGED_EDGE;
    DragPreview.lowLimit = DRAGGED_EDGE - DRAG_ROOM;
    DragPreview.highLimit = rightMode == DRAG_TAIL ? TIME_FOREVER : DRAGGED_EDGE + DRAG_ROOM;
    DragPreview.snapStep = 1;
    DragPreview.leftMode = DRAG_LOW;
    DragPreview.rightMode = rightMode;
    DragPreview.yBottom = static_cast<int32_t>(DRAGGED_ROW + 1) * WaveView.RowHeight - Settings.WaveGap - 1;
    DragPreview.yTop = DragPreview.yBottom - WaveView.WaveHeight;
    DragPreview.height = WaveView.WaveHeight + 5;
    DragPreview.firstCall = true;
    TrackRoutine = DrawDragPreview;
    CommandState.CursorMode |= CURSOR_TRACK;
}

// What a movement of the mouse by a pixel takes, all that it does included: the marker in the ruler and the
// edge that follows it.
double MicrosecondsOfDrag(int32_t x) {
    int32_t y = static_cast<int32_t>(DRAGGED_ROW) * WaveView.RowHeight + WaveView.RowHeight / 2;
    return MicrosecondsOf([&] {
        MouseMoved(Pane::Wave, x, y);
        ReleasePicture("paint_bench");
        GdiFlush();
    });
}

double MicrosecondsOfRow() {
    return MicrosecondsOf([] {
        DrawRowWaves(DRAGGED_ROW);
        ReleasePicture("paint_bench");
        GdiFlush();
    });
}

// A drag to and fro and a painting of the row by turns. A mouse that no edge follows would be another
// measurement.
bool MeasureDrag(uint16_t rightMode, double &row, double &drag) {
    EraseBegins(Pane::Wave);
    DrawRulerCursor(true);
    TakeEdge(rightMode);
    MicrosecondsOfDrag(DRAGGED_EDGE); // the first one makes the bitmaps
    for (int i = 1; i <= rounds; i++) {
        int32_t aside = i % static_cast<int32_t>(DRAG_ROOM);
        drag = std::min(drag, MicrosecondsOfDrag(static_cast<int32_t>(DRAGGED_EDGE) + aside));
        row = std::min(row, MicrosecondsOfRow());
    }
    bool followed = DragPreview.dragTime == Mouse.time && !DragPreview.firstCall;
    if (!followed) fprintf(stderr, "paint_bench: the edge does not follow the mouse\n");
    TrackRoutine = nullptr;
    CommandState.CursorMode &= ~CURSOR_TRACK;
    return followed;
}

// The least of many rounds, in which what is compared takes turns: what else runs on the machine only adds.
bool Measure() {
    for (size_t i = 0; i < PANES.size(); i++) OwnContexts[i] = GetDC(PaneWindow(PANES[i]));
    InvalidateAllPanes();
    StartRecording();
    PaintScheduled();
    StopRecording();
    bool same = ReplayShowsTheSame();
    constexpr double never = std::numeric_limits<double>::max();
    Figures least = {never, never, never, never, never};
    for (int i = 0; i < rounds; i++) {
        InvalidateAllPanes();
        least.paint = std::min(least.paint, MicrosecondsOf(PaintScheduled));
        least.replay = std::min(least.replay, MicrosecondsOf(ReplayAll));
    }
    for (size_t i = 0; i < PANES.size(); i++) ReleaseDC(PaneWindow(PANES[i]), OwnContexts[i]);
    bool dragged = MeasureDrag(DRAG_HIGH, least.row, least.drag);
    dragged = MeasureDrag(DRAG_TAIL, least.row, least.tail) && dragged;
    if (same && dragged) PrintFigures(least);
    return same && dragged;
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
