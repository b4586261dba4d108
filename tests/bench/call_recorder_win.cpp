#include "bench/call_recorder_win.h"
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int MOST_POINTS = 10;

enum class Kind { Select, TextColour, BackColour, BackMode, Lines, Pattern, Text, Fill, Origin, Hatch, Show };

struct Call {
    HWND window;
    Kind kind;
    HGDIOBJ object = nullptr;
    COLORREF colour = 0;
    int x = 0, y = 0, width = 0, height = 0, fromX = 0, fromY = 0;
    DWORD operation = 0;
    int count = 0;
    std::array<POINT, MOST_POINTS> points = {};
    RECT rect = {};
    std::string text = {};
};
std::vector<Call> calls;

// The paint message in progress.
struct PaintRecord {
    HWND window = nullptr; // null outside of one
    HDC context = nullptr;
    HGDIOBJ pen = nullptr, brush = nullptr, font = nullptr;
    COLORREF text = CLR_INVALID, back = CLR_INVALID;
};
PaintRecord Paint;

bool InMemory(HDC context) {
    return Paint.window && context != Paint.context;
}

Call &Add(Kind kind) {
    return calls.emplace_back(Call{Paint.window, kind});
}

// Whatever is no pen, brush or font, such as the bitmap of a memory context, belongs to no slot.
HGDIOBJ *SlotOf(HGDIOBJ object) {
    switch (GetObjectType(object)) {
    case OBJ_PEN:
        return &Paint.pen;
    case OBJ_BRUSH:
        return &Paint.brush;
    case OBJ_FONT:
        return &Paint.font;
    default:
        return nullptr;
    }
}

bool Changes(COLORREF &current, COLORREF colour) {
    bool changes = current != colour;
    current = colour;
    return changes;
}

// The calls themselves: by their libraries' exports, as the names stand for the table's entries.
template <class Routine>
Routine *Exported(const char *library, const char *name) {
    FARPROC address = GetProcAddress(GetModuleHandleA(library), name);
    return reinterpret_cast<Routine *>(reinterpret_cast<void *>(address));
}
struct RealCalls {
    decltype(&BeginPaint) beginPaint = Exported<decltype(BeginPaint)>("user32", "BeginPaint");
    decltype(&EndPaint) endPaint = Exported<decltype(EndPaint)>("user32", "EndPaint");
    decltype(&SelectObject) selectObject = Exported<decltype(SelectObject)>("gdi32", "SelectObject");
    decltype(&SetTextColor) setTextColor = Exported<decltype(SetTextColor)>("gdi32", "SetTextColor");
    decltype(&SetBkColor) setBkColor = Exported<decltype(SetBkColor)>("gdi32", "SetBkColor");
    decltype(&SetBkMode) setBkMode = Exported<decltype(SetBkMode)>("gdi32", "SetBkMode");
    decltype(&Polyline) polyline = Exported<decltype(Polyline)>("gdi32", "Polyline");
    decltype(&PatBlt) patBlt = Exported<decltype(PatBlt)>("gdi32", "PatBlt");
    decltype(&TextOutA) textOut = Exported<decltype(TextOutA)>("gdi32", "TextOutA");
    decltype(&FillRect) fillRect = Exported<decltype(FillRect)>("user32", "FillRect");
    decltype(&SetViewportOrgEx) setViewportOrg =
        Exported<decltype(SetViewportOrgEx)>("gdi32", "SetViewportOrgEx");
    decltype(&SetBrushOrgEx) setBrushOrg = Exported<decltype(SetBrushOrgEx)>("gdi32", "SetBrushOrgEx");
    decltype(&BitBlt) bitBlt = Exported<decltype(BitBlt)>("gdi32", "BitBlt");
};
const RealCalls Real;

// --- what stands in for the calls ------------------------------------------------------------------

HDC WINAPI RecordBeginPaint(HWND window, PAINTSTRUCT *paint) {
    HDC context = Real.beginPaint(window, paint);
    Paint = {};
    Paint.window = window;
    Paint.context = context;
    return context;
}

BOOL WINAPI RecordEndPaint(HWND window, const PAINTSTRUCT *paint) {
    Paint = {};
    return Real.endPaint(window, paint);
}

HGDIOBJ WINAPI RecordSelectObject(HDC context, HGDIOBJ object) {
    HGDIOBJ *slot = InMemory(context) ? SlotOf(object) : nullptr;
    if (slot && *slot != object) {
        *slot = object;
        Add(Kind::Select).object = object;
    }
    return Real.selectObject(context, object);
}

COLORREF WINAPI RecordSetTextColor(HDC context, COLORREF colour) {
    if (InMemory(context) && Changes(Paint.text, colour)) Add(Kind::TextColour).colour = colour;
    return Real.setTextColor(context, colour);
}

COLORREF WINAPI RecordSetBkColor(HDC context, COLORREF colour) {
    if (InMemory(context) && Changes(Paint.back, colour)) Add(Kind::BackColour).colour = colour;
    return Real.setBkColor(context, colour);
}

int WINAPI RecordSetBkMode(HDC context, int mode) {
    if (InMemory(context)) Add(Kind::BackMode).x = mode;
    return Real.setBkMode(context, mode);
}

BOOL WINAPI RecordPolyline(HDC context, const POINT *points, int count) {
    if (InMemory(context)) {
        if (count > MOST_POINTS) abort();
        Call &call = Add(Kind::Lines);
        call.count = count;
        std::copy(points, points + count, call.points.begin());
    }
    return Real.polyline(context, points, count);
}

BOOL WINAPI RecordPatBlt(HDC context, int x, int y, int width, int height, DWORD operation) {
    if (InMemory(context)) {
        Call &call = Add(Kind::Pattern);
        call.x = x, call.y = y, call.width = width, call.height = height, call.operation = operation;
    }
    return Real.patBlt(context, x, y, width, height, operation);
}

BOOL WINAPI RecordTextOutA(HDC context, int x, int y, const char *text, int length) {
    if (InMemory(context)) {
        Call &call = Add(Kind::Text);
        call.x = x, call.y = y;
        call.text.assign(text, static_cast<size_t>(length));
    }
    return Real.textOut(context, x, y, text, length);
}

int WINAPI RecordFillRect(HDC context, const RECT *rect, HBRUSH brush) {
    if (InMemory(context)) {
        Call &call = Add(Kind::Fill);
        call.rect = *rect;
        call.object = brush;
    }
    return Real.fillRect(context, rect, brush);
}

BOOL WINAPI RecordSetViewportOrgEx(HDC context, int x, int y, POINT *before) {
    if (InMemory(context)) {
        Call &call = Add(Kind::Origin);
        call.x = x, call.y = y;
    }
    return Real.setViewportOrg(context, x, y, before);
}

BOOL WINAPI RecordSetBrushOrgEx(HDC context, int x, int y, POINT *before) {
    if (InMemory(context)) {
        Call &call = Add(Kind::Hatch);
        call.x = x, call.y = y;
    }
    return Real.setBrushOrg(context, x, y, before);
}

BOOL WINAPI RecordBitBlt(HDC context, int x, int y, int width, int height, HDC source, int fromX, int fromY,
                         DWORD operation) {
    if (Paint.window && context == Paint.context) {
        Call &call = Add(Kind::Show);
        call.x = x, call.y = y, call.width = width, call.height = height;
        call.fromX = fromX, call.fromY = fromY, call.operation = operation;
    }
    return Real.bitBlt(context, x, y, width, height, source, fromX, fromY, operation);
}

// --- the table of imports --------------------------------------------------------------------------

template <class Routine>
ULONGLONG AddressOf(Routine *routine) {
    return reinterpret_cast<ULONGLONG>(routine);
}

struct StandIn {
    ULONGLONG real, recorder;
};
const std::array<StandIn, 13> standIns = {{
    {AddressOf(Real.beginPaint), AddressOf(RecordBeginPaint)},
    {AddressOf(Real.endPaint), AddressOf(RecordEndPaint)},
    {AddressOf(Real.selectObject), AddressOf(RecordSelectObject)},
    {AddressOf(Real.setTextColor), AddressOf(RecordSetTextColor)},
    {AddressOf(Real.setBkColor), AddressOf(RecordSetBkColor)},
    {AddressOf(Real.setBkMode), AddressOf(RecordSetBkMode)},
    {AddressOf(Real.polyline), AddressOf(RecordPolyline)},
    {AddressOf(Real.patBlt), AddressOf(RecordPatBlt)},
    {AddressOf(Real.textOut), AddressOf(RecordTextOutA)},
    {AddressOf(Real.fillRect), AddressOf(RecordFillRect)},
    {AddressOf(Real.setViewportOrg), AddressOf(RecordSetViewportOrgEx)},
    {AddressOf(Real.setBrushOrg), AddressOf(RecordSetBrushOrgEx)},
    {AddressOf(Real.bitBlt), AddressOf(RecordBitBlt)},
}};

template <class Record>
Record *InImage(ULONGLONG offset) {
    return reinterpret_cast<Record *>(reinterpret_cast<uint8_t *>(GetModuleHandleA(nullptr)) + offset);
}

// Puts the address into the entry of the table, which is read-only otherwise.
void SetEntry(ULONGLONG &entry, ULONGLONG address) {
    DWORD protection = 0;
    if (!VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &protection)) abort();
    entry = address;
    VirtualProtect(&entry, sizeof entry, protection, &protection);
}

void Redirect(bool toRecorder) {
    auto *headers =
        InImage<IMAGE_NT_HEADERS64>(static_cast<ULONGLONG>(InImage<IMAGE_DOS_HEADER>(0)->e_lfanew));
    ULONGLONG table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    size_t found = 0;
    for (auto *module = InImage<IMAGE_IMPORT_DESCRIPTOR>(table); module->Name; module++) {
        auto *entry = InImage<IMAGE_THUNK_DATA64>(module->FirstThunk);
        for (; entry->u1.Function; entry++) {
            for (const StandIn &standIn : standIns) {
                if (entry->u1.Function != (toRecorder ? standIn.real : standIn.recorder)) continue;
                SetEntry(entry->u1.Function, toRecorder ? standIn.recorder : standIn.real);
                found++;
            }
        }
    }
    // A call that is missed would make the replay cheaper than the paint.
    if (found != standIns.size()) abort();
}

// --- replaying -------------------------------------------------------------------------------------

void Replay(const Call &call, HDC context, HDC memory) {
    switch (call.kind) {
    case Kind::Select:
        SelectObject(memory, call.object);
        break;
    case Kind::TextColour:
        SetTextColor(memory, call.colour);
        break;
    case Kind::BackColour:
        SetBkColor(memory, call.colour);
        break;
    case Kind::BackMode:
        SetBkMode(memory, call.x);
        break;
    case Kind::Lines:
        Polyline(memory, call.points.data(), call.count);
        break;
    case Kind::Pattern:
        PatBlt(memory, call.x, call.y, call.width, call.height, call.operation);
        break;
    case Kind::Text:
        TextOutA(memory, call.x, call.y, call.text.data(), static_cast<int>(call.text.size()));
        break;
    case Kind::Fill:
        FillRect(memory, &call.rect, static_cast<HBRUSH>(call.object));
        break;
    case Kind::Origin:
        SetViewportOrgEx(memory, call.x, call.y, nullptr);
        break;
    case Kind::Hatch:
        SetBrushOrgEx(memory, call.x, call.y, nullptr);
        break;
    case Kind::Show:
        BitBlt(context, call.x, call.y, call.width, call.height, memory, call.fromX, call.fromY,
               call.operation);
        break;
    }
}

} // namespace

void StartRecording() {
    Redirect(true);
}

void StopRecording() {
    Redirect(false);
}

void ClearRecorded() {
    calls.clear();
}

size_t RecordedCalls() {
    return calls.size();
}

void ReplayRecorded(HWND window, HDC context, HDC memory) {
    for (const Call &call : calls) {
        if (call.window == window) Replay(call, context, memory);
    }
}
