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
    PaneDrawing drawing;
    if (!drawing.context) return;
    SetSourceColour(drawing.context, HeadlessSurface.textColour);
    cairo_translate(drawing.context, left, top);
    HeadlessFontDraw(drawing.context, text, HeadlessSurface.target.crisp);
}

PixelSize SurfaceTextSize(const char *text) {
    return {HeadlessFontWidth(text), HeadlessFontMetrics().height};
}
