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
HDC MemoryDC;

namespace {

constexpr const char *FONT_FACE = "Tahoma";
constexpr int FONT_POINTS = 8;
constexpr int POINTS_PER_INCH = 72;
constexpr int ORDINARY_RESOLUTION = 96;
constexpr size_t COLOURS = 16;

// What the drawing calls have set in the current context; null and no colour as long as they have not.
struct SetRecord {
    HPEN pen = nullptr;
    HBRUSH brush = nullptr;
    int textColour = -1, background = -1;
};

// What is held for the current picture beside its window and context.
struct PictureRecord {
    Pane pane = Pane::None;
    bool fromPaint = false; // the context is a paint message's, which gives it back itself
    SetRecord set;
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

// The text that was measured last: most texts are measured to see whether they fit, and again to be placed.
struct MeasuredRecord {
    std::array<char, 256> text = {}; // empty if it was too long for this
    PixelSize size = {};
};
MeasuredRecord Measured;

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
    SetRecord set; // as it was then
    HRGN region = nullptr;
};
ClipRecord Clip;

// The bitmaps that are kept, each selected into a context of its own; null until its first use. To select a
// bitmap takes longer than all else that a drag does at a movement of the mouse.
struct KeptRecord {
    HDC context = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ before = nullptr;
    PixelSize size = {};
};
std::array<KeptRecord, KEPT_BITMAPS> Kept;

// What the memory context has taken the place of.
struct MemoryRecord {
    bool on = false;
    HDC picture = nullptr;
    SetRecord set;
};
MemoryRecord Memory;

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

void DropKept(KeptRecord &kept) {
    if (kept.bitmap) SelectObject(kept.context, kept.before);
    if (kept.bitmap) DeleteObject(kept.bitmap);
    if (kept.context) DeleteDC(kept.context);
    kept = {};
}

// Copies a rectangle of a bitmap to a point of the picture, or back.
void CopyKept(const KeptRecord &kept, const PixelRect &inBitmap, PixelPoint onPanel, bool back) {
    int left = std::max(inBitmap.left, 0), right = std::min(inBitmap.right, kept.size.width);
    int top = std::max(inBitmap.top, 0), bottom = std::min(inBitmap.bottom, kept.size.height);
    if (!PictureDC || !kept.bitmap || left >= right || top >= bottom) return;
    int x = onPanel.x + left - inBitmap.left, y = onPanel.y + top - inBitmap.top;
    if (back) {
        BitBlt(PictureDC, x, y, right - left, bottom - top, kept.context, left, top, SRCCOPY);
    } else {
        BitBlt(kept.context, left, top, right - left, bottom - top, PictureDC, x, y, SRCCOPY);
    }
}

KeptRecord &KeptOf(KeptBitmap bitmap) {
    return Kept[static_cast<size_t>(bitmap)];
}

} // namespace

void BeginPicture(Pane pane, HDC context) {
    PictureWindow = PaneWindow(pane);
    PictureDC = context;
    Picture = {pane, true, {}};
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
    // They go first: what is selected cannot be deleted.
    for (KeptRecord &kept : Kept) DropKept(kept);
    if (Objects.font) DeleteObject(Objects.font);
    Objects.font = nullptr;
    Measured = {};
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
    Picture = {pane, false, {}};
    PrepareContext();
}

Pane SurfacePane() {
    return Picture.pane;
}

// Most segments have the colour of the one before, so what is set already is not set again.
void SurfaceSetPen(int colour, bool dotted) {
    HPEN pen = PenOf(colour, dotted);
    if (!PictureDC || !pen || pen == Picture.set.pen) return;
    Picture.set.pen = pen;
    SelectObject(PictureDC, pen);
}

void SurfaceSetBrush(int colour, bool hatched) {
    HBRUSH brush = hatched ? HatchBrush(colour) : SolidBrush(colour);
    if (!PictureDC || !brush || brush == Picture.set.brush) return;
    Picture.set.brush = brush;
    SelectObject(PictureDC, brush);
}

void SurfaceSetTextColour(int colour, int background) {
    if (!PictureDC || (colour == Picture.set.textColour && background == Picture.set.background)) return;
    Picture.set.textColour = colour;
    Picture.set.background = background;
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
        if (Clip.state) {
            RestoreDC(PictureDC, Clip.state);
            Picture.set = Clip.set;
        }
        if (Clip.region) DeleteObject(Clip.region);
        Clip = {};
        return;
    }
    RECT client = {};
    GetClientRect(PictureWindow, &client);
    Clip.set = Picture.set;
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

bool SurfaceKeepBitmap(KeptBitmap bitmap, PixelSize size) {
    KeptRecord &kept = KeptOf(bitmap);
    if (!PictureDC || size.width <= 0 || size.height <= 0) return false;
    if (kept.size.width >= size.width && kept.size.height >= size.height) return false;
    PixelSize grown = {std::max(kept.size.width, size.width), std::max(kept.size.height, size.height)};
    DropKept(kept);
    kept.context = CreateCompatibleDC(PictureDC);
    if (kept.context) kept.bitmap = CreateCompatibleBitmap(PictureDC, grown.width, grown.height);
    if (!kept.bitmap) {
        DropKept(kept);
        return false;
    }
    kept.before = SelectObject(kept.context, kept.bitmap);
    kept.size = grown;
    return true;
}

void SurfaceCopyToBitmap(const PixelRect &from, KeptBitmap bitmap, PixelPoint to) {
    PixelRect inBitmap = {to.x, to.y, to.x + from.right - from.left, to.y + from.bottom - from.top};
    CopyKept(KeptOf(bitmap), inBitmap, {from.left, from.top}, false);
}

void SurfaceCopyFromBitmap(KeptBitmap bitmap, const PixelRect &from, PixelPoint to) {
    CopyKept(KeptOf(bitmap), from, to, true);
}

// The memory context takes the picture's place, so that every drawing call finds it there. Null, it lets them
// do nothing.
void SurfaceDrawToMemory(bool on) {
    if (on == Memory.on) return;
    if (on) {
        Memory = {true, PictureDC, Picture.set};
        PictureDC = MemoryDC = KeptOf(KeptBitmap::Tail).context;
        Picture.set = {};
        PrepareContext();
    } else {
        MemoryDC = nullptr;
        PictureDC = Memory.picture;
        Picture.set = Memory.set;
        Memory = {};
    }
}

PixelSize SurfaceTextSize(const char *text) {
    if (*text && strcmp(text, Measured.text.data()) == 0) return Measured.size;
    size_t length = strlen(text);
    SIZE size = {0, 0};
    // A picture has the font already, and to select it anew takes longer than to measure.
    if (PictureDC) {
        GetTextExtentPoint32A(PictureDC, text, static_cast<int>(length), &size);
    } else if (HDC screen = GetDC(nullptr)) {
        HGDIOBJ before = SelectObject(screen, MainFont());
        GetTextExtentPoint32A(screen, text, static_cast<int>(length), &size);
        SelectObject(screen, before);
        ReleaseDC(nullptr, screen);
    }
    bool fits = length < Measured.text.size();
    memcpy(Measured.text.data(), text, fits ? length : 0);
    Measured.text[fits ? length : 0] = 0;
    Measured.size = {size.cx, size.cy};
    return Measured.size;
}
