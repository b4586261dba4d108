#include "headless/surface_cairo.h"
#include "config/settings.h"
#include "headless/headless_font.h"
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

HeadlessSurfaceState HeadlessSurface;

namespace {

constexpr int HATCH_SIZE = 8; // pixels from one line of a hatch to the next
constexpr int DOT_LENGTH = 3; // pixels of a dotted pen's dots, and between them

void SetSourceColour(cairo_t *context, int colour) {
    uint32_t rgb = ColorTable[static_cast<size_t>(colour)];
    cairo_set_source_rgb(context, (rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0);
}

// Drawing on the current panel: its client area clips, and its upper left corner is the origin.
class PaneDrawing {
public:
    PaneDrawing() : context(HeadlessSurface.pane == Pane::None ? nullptr : HeadlessSurface.target.context) {
        if (!context) return;
        auto pane = static_cast<size_t>(HeadlessSurface.pane);
        PixelSize size = HeadlessSurface.target.size[pane];
        cairo_save(context);
        cairo_translate(context, HeadlessSurface.target.origin[pane].x,
                        HeadlessSurface.target.origin[pane].y);
        cairo_rectangle(context, 0, 0, size.width, size.height);
        cairo_clip(context);
        cairo_set_antialias(context,
                            HeadlessSurface.target.crisp ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
    }
    ~PaneDrawing() {
        if (context) cairo_restore(context);
    }
    PaneDrawing(const PaneDrawing &) = delete;
    PaneDrawing &operator=(const PaneDrawing &) = delete;

    cairo_t *const context; // null if nothing is to be drawn
};

// The SVG drawing, with the current panel selected; null if nothing is drawn there.
SvgDrawing *PanelSvg() {
    const PictureTarget &target = HeadlessSurface.target;
    if (!target.svg) return nullptr;
    auto pane = static_cast<size_t>(HeadlessSurface.pane);
    SvgSelectPanel(*target.svg, target.origin[pane], target.size[pane]);
    return target.svg;
}

// Gathers the pixels of a line into as few rectangles as possible.
class PixelRun {
public:
    explicit PixelRun(cairo_t *context) : context(context) {}
    ~PixelRun() { flush(); }
    PixelRun(const PixelRun &) = delete;
    PixelRun &operator=(const PixelRun &) = delete;

    void add(PixelPoint p) {
        bool sameRow = count > 0 && from.y == to.y && p.y == to.y && std::abs(p.x - to.x) == 1;
        bool sameColumn = count > 0 && from.x == to.x && p.x == to.x && std::abs(p.y - to.y) == 1;
        if (!sameRow && !sameColumn) {
            flush();
            from = p;
        }
        to = p;
        count++;
    }

private:
    void flush() {
        if (count == 0) return;
        cairo_rectangle(context, std::min(from.x, to.x), std::min(from.y, to.y), std::abs(to.x - from.x) + 1,
                        std::abs(to.y - from.y) + 1);
        count = 0;
    }
    cairo_t *context;
    PixelPoint from = {}, to = {};
    int count = 0;
};

// Adds the pixels of the line to the path, all but the last one.
void AddLinePixels(cairo_t *context, PixelPoint from, PixelPoint to, bool dotted) {
    PixelRun run(context);
    int32_t dx = std::abs(to.x - from.x), dy = std::abs(to.y - from.y);
    int32_t stepX = from.x < to.x ? 1 : -1, stepY = from.y < to.y ? 1 : -1;
    int32_t steps = std::max(dx, dy);
    int32_t error = steps / 2;
    PixelPoint p = from;
    for (int32_t i = 0; i < steps; i++) {
        if (!dotted || i / DOT_LENGTH % 2 == 0) run.add(p);
        error -= std::min(dx, dy);
        bool aside = error < 0;
        if (aside) error += steps;
        if (dx >= dy || aside) p.x += stepX;
        if (dy > dx || aside) p.y += stepY;
    }
}

bool IsSlope(PixelPoint from, PixelPoint to) {
    return from.x != to.x && from.y != to.y;
}

// A slope as a line through the middles of its pixels.
void StrokeSlope(cairo_t *context, PixelPoint from, PixelPoint to) {
    cairo_move_to(context, from.x + 0.5, from.y + 0.5);
    cairo_line_to(context, to.x + 0.5, to.y + 0.5);
    cairo_set_line_width(context, 1);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_SQUARE);
    cairo_stroke(context);
}

using PatternHandle = std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)>;

// Lines rising to the right, one pixel in eight; the gaps are transparent.
PatternHandle MakeHatch(int colour) {
    cairo_surface_t *tile = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, HATCH_SIZE, HATCH_SIZE);
    cairo_surface_flush(tile);
    for (int y = 0; y < HATCH_SIZE; y++) {
        unsigned char *pixel = cairo_image_surface_get_data(tile) + y * cairo_image_surface_get_stride(tile) +
                               4 * (HATCH_SIZE - 1 - y);
        uint32_t opaque = 0xFF000000u | ColorTable[static_cast<size_t>(colour)];
        memcpy(pixel, &opaque, sizeof opaque);
    }
    cairo_surface_mark_dirty(tile);
    PatternHandle hatch(cairo_pattern_create_for_surface(tile), cairo_pattern_destroy);
    cairo_surface_destroy(tile);
    cairo_pattern_set_extend(hatch.get(), CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(hatch.get(), CAIRO_FILTER_NEAREST);
    return hatch;
}

void FillHatchPixels(cairo_t *context, const PixelRect &rect) {
    PatternHandle hatch = MakeHatch(HeadlessSurface.brushColour);
    cairo_set_source(context, hatch.get());
    cairo_rectangle(context, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    cairo_fill(context);
}

// The same lines as FillHatchPixels, without the steps.
void FillHatchLines(cairo_t *context, const PixelRect &rect) {
    cairo_rectangle(context, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    cairo_clip(context);
    SetSourceColour(context, HeadlessSurface.brushColour);
    // A line holds the pixels whose x and y add up to `sum`.
    int32_t first =
        rect.left + rect.top - ((rect.left + rect.top) % HATCH_SIZE + HATCH_SIZE) % HATCH_SIZE - 1;
    for (int32_t sum = first; sum <= rect.right + rect.bottom + HATCH_SIZE; sum += HATCH_SIZE) {
        cairo_move_to(context, sum + 1 - rect.top, rect.top);
        cairo_line_to(context, sum + 1 - rect.bottom, rect.bottom);
    }
    cairo_set_line_width(context, 1);
    cairo_stroke(context);
}

SurfaceCall MakeCall(SurfaceCall::Kind kind) {
    SurfaceCall call;
    call.kind = kind;
    call.pane = HeadlessSurface.pane;
    return call;
}

void RecordColour(SurfaceCall::Kind kind, int colour, bool patterned) {
    if (!HeadlessSurface.recording) return;
    SurfaceCall call = MakeCall(kind);
    call.colour = colour;
    call.patterned = patterned;
    HeadlessSurface.calls.push_back(call);
}

void RecordSaved(SurfaceCall::Kind kind, SaveSlot slot, const PixelRect &rect) {
    if (!HeadlessSurface.recording) return;
    SurfaceCall call = MakeCall(kind);
    call.slot = slot;
    call.rect = rect;
    HeadlessSurface.calls.push_back(call);
}

// The difference from white is the inverse, and its inverse the pixel itself.
void InvertPath(cairo_t *context) {
    cairo_set_operator(context, CAIRO_OPERATOR_DIFFERENCE);
    cairo_set_source_rgb(context, 1, 1, 1);
    cairo_fill(context);
}

// The pixels of the current panel, as far as they lie in an image that is drawn pixel by pixel.
struct ImageWindow {
    ImageWindow();
    uint32_t *at(int32_t x, int32_t y) const {
        return reinterpret_cast<uint32_t *>(data + (y + origin.y) * stride) + x + origin.x;
    }

    cairo_surface_t *surface = nullptr;
    unsigned char *data = nullptr; // null if there are none
    int stride = 0;
    PixelPoint origin = {};
    PixelRect bounds = {}; // in the panel's pixels
};

ImageWindow::ImageWindow() {
    const PictureTarget &target = HeadlessSurface.target;
    if (!target.context || !target.crisp) return;
    surface = cairo_get_target(target.context);
    if (cairo_surface_get_type(surface) != CAIRO_SURFACE_TYPE_IMAGE) return;
    auto pane = static_cast<size_t>(HeadlessSurface.pane);
    origin = target.origin[pane];
    bounds.left = std::max(0, -origin.x);
    bounds.top = std::max(0, -origin.y);
    bounds.right = std::min(target.size[pane].width, cairo_image_surface_get_width(surface) - origin.x);
    bounds.bottom = std::min(target.size[pane].height, cairo_image_surface_get_height(surface) - origin.y);
    cairo_surface_flush(surface);
    stride = cairo_image_surface_get_stride(surface);
    data = cairo_image_surface_get_data(surface);
}

// Pixels in memory, `size.width` to a line.
struct PixelBlock {
    uint32_t *pixels;
    PixelSize size;
};

// Copies between a rectangle of the panel and a block, from the point `at` in it on, as far as both reach.
void CopyPixels(const ImageWindow &image, const PixelRect &place, const PixelBlock &block, PixelPoint at,
                bool back) {
    int32_t left = std::max({place.left, image.bounds.left, place.left - at.x});
    int32_t top = std::max({place.top, image.bounds.top, place.top - at.y});
    int32_t right = std::min({place.right, image.bounds.right, place.left - at.x + block.size.width});
    int32_t bottom = std::min({place.bottom, image.bounds.bottom, place.top - at.y + block.size.height});
    if (left >= right || top >= bottom) return;
    size_t bytes = static_cast<size_t>(right - left) * sizeof(uint32_t);
    for (int32_t y = top; y < bottom; y++) {
        uint32_t *kept = block.pixels + static_cast<size_t>(y - place.top + at.y) * block.size.width +
                         (left - place.left + at.x);
        if (back) {
            memcpy(image.at(left, y), kept, bytes);
        } else {
            memcpy(kept, image.at(left, y), bytes);
        }
    }
    if (back)
        cairo_surface_mark_dirty_rectangle(image.surface, left + image.origin.x, top + image.origin.y,
                                           right - left, bottom - top);
}

void CopySaved(const ImageWindow &image, SavedPixels &saved, bool back) {
    const PixelRect &place = saved.place;
    PixelBlock block = {saved.pixels.data(), {place.right - place.left, place.bottom - place.top}};
    CopyPixels(image, place, block, {0, 0}, back);
}

void CopyKept(KeptBitmap bitmap, const PixelRect &onPanel, PixelPoint inBitmap, bool back) {
    KeptPixels &kept = HeadlessSurface.kept[static_cast<size_t>(bitmap)];
    ImageWindow image;
    if (image.data && !kept.pixels.empty())
        CopyPixels(image, onPanel, {kept.pixels.data(), kept.size}, inBitmap, back);
}

void RecordKept(SurfaceCall::Kind kind, KeptBitmap bitmap, const PixelRect &rect, PixelPoint to) {
    if (!HeadlessSurface.recording) return;
    SurfaceCall call = MakeCall(kind);
    call.bitmap = bitmap;
    call.rect = rect;
    call.points = {to};
    HeadlessSurface.calls.push_back(call);
}

// A context that draws on the tail's pixels; null if there are none, or no picture that they could be copied
// to.
cairo_t *OpenTail(const KeptPixels &tail) {
    ImageWindow image;
    if (!image.data || tail.pixels.empty()) return nullptr;
    auto *bytes = reinterpret_cast<unsigned char *>(const_cast<uint32_t *>(tail.pixels.data()));
    cairo_surface_t *surface =
        cairo_image_surface_create_for_data(bytes, CAIRO_FORMAT_RGB24, tail.size.width, tail.size.height,
                                            tail.size.width * static_cast<int>(sizeof(uint32_t)));
    cairo_t *context = cairo_create(surface);
    cairo_surface_destroy(surface);
    return context;
}

} // namespace

void InitHeadlessSurface() {
    HeadlessSurface = {};
}

void SurfaceSelect(Pane pane) {
    HeadlessSurface.pane = PanesExist() ? pane : Pane::None;
    if (HeadlessSurface.recording) HeadlessSurface.calls.push_back(MakeCall(SurfaceCall::Kind::Select));
}

Pane SurfacePane() {
    return HeadlessSurface.pane;
}

void SurfaceSetPen(int colour, bool dotted) {
    HeadlessSurface.penColour = colour;
    HeadlessSurface.penDotted = dotted;
    RecordColour(SurfaceCall::Kind::Pen, colour, dotted);
}

void SurfaceSetBrush(int colour, bool hatched) {
    HeadlessSurface.brushColour = colour;
    HeadlessSurface.brushHatched = hatched;
    RecordColour(SurfaceCall::Kind::Brush, colour, hatched);
}

void SurfaceSetTextColour(int colour, int) {
    HeadlessSurface.textColour = colour;
    RecordColour(SurfaceCall::Kind::TextColour, colour, false);
}

void SurfacePolyline(std::span<const PixelPoint> points) {
    if (HeadlessSurface.pane == Pane::None) return;
    if (HeadlessSurface.recording) {
        SurfaceCall call = MakeCall(SurfaceCall::Kind::Polyline);
        call.points.assign(points.begin(), points.end());
        call.colour = HeadlessSurface.penColour;
        call.patterned = HeadlessSurface.penDotted;
        HeadlessSurface.calls.push_back(call);
    }
    if (SvgDrawing *svg = PanelSvg()) {
        SvgPolyline(*svg, HeadlessSurface.penColour, HeadlessSurface.penDotted, points);
        return;
    }
    PaneDrawing drawing;
    if (!drawing.context) return;
    SetSourceColour(drawing.context, HeadlessSurface.penColour);
    for (size_t i = 0; i + 1 < points.size(); i++) {
        if (!HeadlessSurface.target.crisp && IsSlope(points[i], points[i + 1])) {
            StrokeSlope(drawing.context, points[i], points[i + 1]);
        } else {
            AddLinePixels(drawing.context, points[i], points[i + 1], HeadlessSurface.penDotted);
            cairo_fill(drawing.context);
        }
    }
}

void SurfaceFill(const PixelRect &rect) {
    if (HeadlessSurface.pane == Pane::None) return;
    if (HeadlessSurface.recording) {
        SurfaceCall call = MakeCall(SurfaceCall::Kind::Fill);
        call.rect = rect;
        call.colour = HeadlessSurface.brushColour;
        call.patterned = HeadlessSurface.brushHatched;
        HeadlessSurface.calls.push_back(call);
    }
    if (SvgDrawing *svg = PanelSvg()) {
        SvgRectangle(*svg, HeadlessSurface.brushColour, HeadlessSurface.brushHatched, rect);
        return;
    }
    PaneDrawing drawing;
    if (!drawing.context) return;
    if (HeadlessSurface.brushHatched) {
        (HeadlessSurface.target.crisp ? FillHatchPixels : FillHatchLines)(drawing.context, rect);
        return;
    }
    SetSourceColour(drawing.context, HeadlessSurface.brushColour);
    cairo_rectangle(drawing.context, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    cairo_fill(drawing.context);
}

void SurfaceText(int32_t left, int32_t top, const char *text) {
    if (HeadlessSurface.pane == Pane::None) return;
    if (HeadlessSurface.recording) {
        SurfaceCall call = MakeCall(SurfaceCall::Kind::Text);
        call.points = {{left, top}};
        call.colour = HeadlessSurface.textColour;
        call.text = text;
        HeadlessSurface.calls.push_back(call);
    }
    if (SvgDrawing *svg = PanelSvg()) {
        SvgText(*svg, HeadlessSurface.textColour, {left, top + HEADLESS_FONT_ASCENT}, HeadlessFontWidth(text),
                HeadlessFontText(text));
        return;
    }
    PaneDrawing drawing;
    if (!drawing.context) return;
    SetSourceColour(drawing.context, HeadlessSurface.textColour);
    cairo_translate(drawing.context, left, top);
    HeadlessFontDraw(drawing.context, text, HeadlessSurface.target.crisp);
}

void SurfaceSaveUnder(SaveSlot slot, const PixelRect &rect) {
    bool empty = rect.right <= rect.left || rect.bottom <= rect.top;
    if (HeadlessSurface.pane == Pane::None || empty) return;
    RecordSaved(SurfaceCall::Kind::SaveUnder, slot, rect);
    SavedPixels &saved = HeadlessSurface.saved[static_cast<size_t>(slot)];
    saved = {true, rect, {}};
    ImageWindow image;
    if (!image.data) return;
    saved.pixels.resize(static_cast<size_t>(rect.right - rect.left) * (rect.bottom - rect.top));
    CopySaved(image, saved, false);
}

void SurfaceRestoreUnder(SaveSlot slot) {
    SavedPixels &saved = HeadlessSurface.saved[static_cast<size_t>(slot)];
    if (HeadlessSurface.pane == Pane::None || !saved.held) return;
    RecordSaved(SurfaceCall::Kind::RestoreUnder, slot, saved.place);
    ImageWindow image;
    if (image.data && !saved.pixels.empty()) CopySaved(image, saved, true);
}

void SurfaceDropSaved() {
    HeadlessSurface.saved = {};
    if (HeadlessSurface.recording) HeadlessSurface.calls.push_back(MakeCall(SurfaceCall::Kind::DropSaved));
}

// Drawing here never leaves the panel, so there is nothing to clip.
void SurfaceClipToPane(bool on) {
    if (HeadlessSurface.pane == Pane::None || !HeadlessSurface.recording) return;
    SurfaceCall call = MakeCall(SurfaceCall::Kind::ClipToPane);
    call.on = on;
    HeadlessSurface.calls.push_back(call);
}

void SurfaceXorPolygon(std::span<const PixelPoint> points) {
    if (HeadlessSurface.pane == Pane::None) return;
    if (HeadlessSurface.recording) {
        SurfaceCall call = MakeCall(SurfaceCall::Kind::XorPolygon);
        call.points.assign(points.begin(), points.end());
        HeadlessSurface.calls.push_back(call);
    }
    PaneDrawing drawing;
    if (!drawing.context) return;
    for (PixelPoint point : points) cairo_line_to(drawing.context, point.x, point.y);
    InvertPath(drawing.context);
}

void SurfaceInvert(const PixelRect &rect) {
    if (HeadlessSurface.pane == Pane::None) return;
    if (HeadlessSurface.recording) {
        SurfaceCall call = MakeCall(SurfaceCall::Kind::Invert);
        call.rect = rect;
        HeadlessSurface.calls.push_back(call);
    }
    PaneDrawing drawing;
    if (!drawing.context) return;
    cairo_rectangle(drawing.context, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
    InvertPath(drawing.context);
}

bool SurfaceKeepBitmap(KeptBitmap bitmap, PixelSize size) {
    KeptPixels &kept = HeadlessSurface.kept[static_cast<size_t>(bitmap)];
    if (HeadlessSurface.pane == Pane::None || size.width <= 0 || size.height <= 0) return false;
    if (kept.size.width >= size.width && kept.size.height >= size.height) return false;
    RecordKept(SurfaceCall::Kind::KeepBitmap, bitmap, {0, 0, size.width, size.height}, {});
    kept.size = {std::max(kept.size.width, size.width), std::max(kept.size.height, size.height)};
    kept.pixels.assign(static_cast<size_t>(kept.size.width) * static_cast<size_t>(kept.size.height), 0);
    return true;
}

void SurfaceCopyToBitmap(const PixelRect &from, KeptBitmap bitmap, PixelPoint to) {
    if (HeadlessSurface.pane == Pane::None) return;
    RecordKept(SurfaceCall::Kind::CopyToBitmap, bitmap, from, to);
    CopyKept(bitmap, from, to, false);
}

void SurfaceCopyFromBitmap(KeptBitmap bitmap, const PixelRect &from, PixelPoint to) {
    if (HeadlessSurface.pane == Pane::None) return;
    RecordKept(SurfaceCall::Kind::CopyFromBitmap, bitmap, from, to);
    PixelRect onPanel = {to.x, to.y, to.x + from.right - from.left, to.y + from.bottom - from.top};
    CopyKept(bitmap, onPanel, {from.left, from.top}, true);
}

// The bitmap takes the place of the current panel in the picture.
void SurfaceDrawToMemory(bool on) {
    if (HeadlessSurface.recording) {
        SurfaceCall call = MakeCall(SurfaceCall::Kind::DrawToMemory);
        call.on = on;
        HeadlessSurface.calls.push_back(call);
    }
    if (on == HeadlessSurface.inMemory) return;
    HeadlessSurface.inMemory = on;
    if (!on) {
        if (HeadlessSurface.target.context) cairo_destroy(HeadlessSurface.target.context);
        HeadlessSurface.target = HeadlessSurface.aside;
        HeadlessSurface.aside = {};
        return;
    }
    const KeptPixels &tail = HeadlessSurface.kept[static_cast<size_t>(KeptBitmap::Tail)];
    cairo_t *context = OpenTail(tail);
    HeadlessSurface.aside = HeadlessSurface.target;
    HeadlessSurface.target = {};
    HeadlessSurface.target.context = context;
    HeadlessSurface.target.size[static_cast<size_t>(HeadlessSurface.pane)] = tail.size;
}

PixelSize SurfaceTextSize(const char *text) {
    return {HeadlessFontWidth(text), HeadlessFontMetrics().height};
}
