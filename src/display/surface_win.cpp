#include "display/surface_win.h"
#include "config/settings.h"
#include "display/panes_win.h"
#include "display/surface.h"
#include "shell/reporting.h"
#include <algorithm>
#include <array>
#include <cstring>

HWND PictureWindow;
HDC PictureDC;

namespace {

constexpr const char *FONT_FACE = "Tahoma";
constexpr int FONT_POINTS = 8;
constexpr int POINTS_PER_INCH = 72;
constexpr int ORDINARY_RESOLUTION = 96;
constexpr size_t COLOURS = 16;

// What is held for the current picture beside its window and context.
struct PictureRecord {
    Pane pane = Pane::None;
    bool fromPaint = false; // the context is a paint message's, which gives it back itself
};
PictureRecord Picture;

// Each null until its first use.
struct GraphicObjects {
    HFONT font = nullptr;
    std::array<HPEN, COLOURS * 2> pens = {}; // the dotted ones behind the solid ones
    std::array<HBRUSH, COLOURS> solidBrushes = {};
    std::array<HBRUSH, COLOURS> hatchBrushes = {};
};
GraphicObjects Objects;

// The pixels set aside: a memory context and a bitmap for each slot in use; null without any.
struct SavedRecord {
    HDC context = nullptr;
    std::array<HBITMAP, SAVE_SLOTS> bitmaps = {};
    std::array<PixelRect, SAVE_SLOTS> places = {};
};
SavedRecord Saved;

// What SurfaceClipToPane has to undo.
struct ClipRecord {
    int state = 0; // of the context, 0 while it is not clipped
    HRGN region = nullptr;
};
ClipRecord Clip;

COLORREF ColourRef(int colour) {
    uint32_t rgb = ColorTable[static_cast<size_t>(colour)];
    return RGB(rgb >> 16 & 255, rgb >> 8 & 255, rgb & 255);
}

HPEN PenOf(int colour, bool dotted) {
    HPEN &pen = Objects.pens[static_cast<size_t>(colour) + (dotted ? COLOURS : 0)];
    if (!pen) pen = CreatePen(dotted ? PS_DOT : PS_SOLID, 0, ColourRef(colour));
    return pen;
}

HBRUSH HatchBrush(int colour) {
    HBRUSH &brush = Objects.hatchBrushes[static_cast<size_t>(colour)];
    if (!brush) brush = CreateHatchBrush(HS_BDIAGONAL, ColourRef(colour));
    return brush;
}

int ScreenResolution() {
    HDC screen = GetDC(nullptr);
    if (!screen) return ORDINARY_RESOLUTION;
    int resolution = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return resolution;
}

void SelectIfThere(HDC context, HGDIOBJ object) {
    if (context && object) SelectObject(context, object);
}

// A fresh context starts with the system's font and opaque text.
void PrepareContext() {
    if (!PictureDC) return;
    SetBkMode(PictureDC, TRANSPARENT);
    SelectIfThere(PictureDC, MainFont());
}

void ForgetPicture() {
    PictureWindow = nullptr;
    PictureDC = nullptr;
    Picture = {};
}

template <size_t N, class Handle>
void DeleteAll(std::array<Handle, N> &objects) {
    for (Handle &object : objects) {
        if (object) DeleteObject(object);
        object = nullptr;
    }
}

// Copies between the picture and a slot's bitmap; without one of them it does nothing.
void CopySaved(size_t slot, bool back) {
    HBITMAP bitmap = Saved.bitmaps[slot];
    if (!PictureDC || !Saved.context || !bitmap) return;
    const PixelRect &place = Saved.places[slot];
    int width = place.right - place.left, height = place.bottom - place.top;
    HGDIOBJ before = SelectObject(Saved.context, bitmap);
    if (back) {
        BitBlt(PictureDC, place.left, place.top, width, height, Saved.context, 0, 0, SRCCOPY);
    } else {
        BitBlt(Saved.context, 0, 0, width, height, PictureDC, place.left, place.top, SRCCOPY);
    }
    SelectObject(Saved.context, before);
}

} // namespace

void BeginPicture(Pane pane, HDC context) {
    PictureWindow = PaneWindow(pane);
    PictureDC = context;
    Picture = {pane, true};
    PrepareContext();
}

void EndPicture() {
    ForgetPicture();
}

void ReleasePicture(const char *failure) {
    bool released = !PictureDC || Picture.fromPaint || ReleaseDC(PictureWindow, PictureDC);
    ForgetPicture();
    if (!released) ProgramError(failure);
}

HFONT MainFont() {
    if (Objects.font) return Objects.font;
    LOGFONTA description = {};
    description.lfHeight = -MulDiv(FONT_POINTS, ScreenResolution(), POINTS_PER_INCH);
    description.lfWeight = FW_NORMAL;
    description.lfCharSet = DEFAULT_CHARSET;
    description.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    strncpy(description.lfFaceName, FONT_FACE, sizeof description.lfFaceName - 1);
    Objects.font = CreateFontIndirectA(&description);
    return Objects.font;
}

HBRUSH SolidBrush(int colour) {
    HBRUSH &brush = Objects.solidBrushes[static_cast<size_t>(colour)];
    if (!brush) brush = CreateSolidBrush(ColourRef(colour));
    return brush;
}

void ReleaseGraphicObjects() {
    if (Objects.font) DeleteObject(Objects.font);
    Objects.font = nullptr;
    DeleteAll(Objects.pens);
    DeleteAll(Objects.solidBrushes);
    DeleteAll(Objects.hatchBrushes);
    SurfaceDropSaved();
}

void SurfaceSelect(Pane pane) {
    HWND window = PaneWindow(pane);
    if (PictureWindow != window) ReleasePicture("ReleaseDC Failure in SelectPicture");
    if (!window || PictureDC) return;
    PictureDC = GetDC(window);
    if (!PictureDC) return;
    PictureWindow = window;
    Picture = {pane, false};
    PrepareContext();
}

Pane SurfacePane() {
    return Picture.pane;
}

void SurfaceSetPen(int colour, bool dotted) {
    SelectIfThere(PictureDC, PenOf(colour, dotted));
}

void SurfaceSetBrush(int colour, bool hatched) {
    SelectIfThere(PictureDC, hatched ? HatchBrush(colour) : SolidBrush(colour));
}

void SurfaceSetTextColour(int colour, int background) {
    if (!PictureDC) return;
    SetTextColor(PictureDC, ColourRef(colour));
    SetBkColor(PictureDC, ColourRef(background));
}

void SurfacePolyline(std::span<const PixelPoint> points) {
    constexpr size_t MOST_POINTS = 10;
    if (!PictureDC) return;
    std::array<POINT, MOST_POINTS> converted;
    size_t count = std::min(points.size(), MOST_POINTS);
    for (size_t i = 0; i < count; i++) converted[i] = {points[i].x, points[i].y};
    Polyline(PictureDC, converted.data(), static_cast<int>(count));
}

void SurfaceFill(const PixelRect &rect) {
    if (!PictureDC) return;
    PatBlt(PictureDC, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, PATCOPY);
}

void SurfaceText(int32_t left, int32_t top, const char *text) {
    if (PictureDC) TextOutA(PictureDC, left, top, text, static_cast<int>(strlen(text)));
}

void SurfaceSaveUnder(SaveSlot slot, const PixelRect &rect) {
    auto index = static_cast<size_t>(slot);
    if (!PictureDC || rect.right <= rect.left || rect.bottom <= rect.top) return;
    if (!Saved.context) Saved.context = CreateCompatibleDC(PictureDC);
    if (Saved.bitmaps[index]) DeleteObject(Saved.bitmaps[index]);
    Saved.bitmaps[index] = CreateCompatibleBitmap(PictureDC, rect.right - rect.left, rect.bottom - rect.top);
    Saved.places[index] = rect;
    CopySaved(index, false);
}

void SurfaceRestoreUnder(SaveSlot slot) {
    CopySaved(static_cast<size_t>(slot), true);
}

void SurfaceDropSaved() {
    DeleteAll(Saved.bitmaps);
    if (Saved.context) DeleteDC(Saved.context);
    Saved.context = nullptr;
}

void SurfaceClipToPane(bool on) {
    if (!PictureDC) return;
    if (!on) {
        if (Clip.state) RestoreDC(PictureDC, Clip.state);
        if (Clip.region) DeleteObject(Clip.region);
        Clip = {};
        return;
    }
    RECT client = {};
    GetClientRect(PictureWindow, &client);
    Clip.state = SaveDC(PictureDC);
    Clip.region = CreateRectRgnIndirect(&client);
    if (Clip.region) SelectClipRgn(PictureDC, Clip.region);
}

void SurfaceXorPolygon(std::span<const PixelPoint> points) {
    constexpr size_t MOST_POINTS = 10;
    if (!PictureDC) return;
    std::array<POINT, MOST_POINTS> converted;
    size_t count = std::min(points.size(), MOST_POINTS);
    for (size_t i = 0; i < count; i++) converted[i] = {points[i].x, points[i].y};
    // Black changes nothing, white inverts: the outline stays as it is.
    HGDIOBJ pen = SelectObject(PictureDC, GetStockObject(BLACK_PEN));
    HGDIOBJ brush = SelectObject(PictureDC, GetStockObject(WHITE_BRUSH));
    SetROP2(PictureDC, R2_XORPEN);
    Polygon(PictureDC, converted.data(), static_cast<int>(count));
    SetROP2(PictureDC, R2_COPYPEN);
    SelectObject(PictureDC, pen);
    SelectObject(PictureDC, brush);
}

void SurfaceInvert(const PixelRect &rect) {
    if (!PictureDC) return;
    HGDIOBJ brush = SelectObject(PictureDC, GetStockObject(WHITE_BRUSH));
    PatBlt(PictureDC, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, PATINVERT);
    SelectObject(PictureDC, brush);
}

PixelSize SurfaceTextSize(const char *text) {
    HDC screen = PictureDC ? nullptr : GetDC(nullptr);
    HDC context = screen ? screen : PictureDC;
    SIZE size = {0, 0};
    if (context) {
        HGDIOBJ before = SelectObject(context, MainFont());
        GetTextExtentPoint32A(context, text, static_cast<int>(strlen(text)), &size);
        SelectObject(context, before);
    }
    if (screen) ReleaseDC(nullptr, screen);
    return {size.cx, size.cy};
}
