#include "headless/svg_drawing.h"
#include "config/settings.h"
#include "headless/headless_font.h"
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

template <typename... Values>
void Print(std::string &out, const char *format, Values... values) {
    std::array<char, 256> buffer;
    int length = snprintf(buffer.data(), buffer.size(), format, values...);
    out.append(buffer.data(), std::min(static_cast<size_t>(length), buffer.size() - 1));
}

// As short as CSS writes it.
void PrintColour(std::string &out, int colour) {
    uint32_t rgb = ColorTable[static_cast<size_t>(colour)] & 0xFFFFFF;
    uint32_t low = rgb & 0x0F0F0F;
    if ((rgb >> 4 & 0x0F0F0F) == low) {
        Print(out, "#%x%x%x", low >> 16, low >> 8 & 15, low & 15);
    } else {
        Print(out, "#%06x", rgb);
    }
}

// Two numbers behind a letter; a sign parts them as well as a blank.
void PrintStep(std::string &out, char letter, int32_t dx, int32_t dy) {
    Print(out, dy < 0 ? "%c%d%d" : "%c%d %d", letter, static_cast<int>(dx), static_cast<int>(dy));
}

bool operator==(PixelPoint a, PixelPoint b) {
    return a.x == b.x && a.y == b.y;
}

// From one pixel to the next on the way from `from` to `to`; nothing on a slope.
PixelPoint StepTowards(PixelPoint from, PixelPoint to) {
    if (from.x != to.x && from.y != to.y) return {0, 0};
    return {(to.x > from.x) - (to.x < from.x), (to.y > from.y) - (to.y < from.y)};
}

// The path's first point is the middle of its pixel, and all others are counted from there, so that they are
// whole numbers.
void MovePath(SvgDrawing &drawing, PixelPoint to) {
    if (drawing.path.empty()) {
        Print(drawing.path, "M%d.5 %d.5", static_cast<int>(to.x), static_cast<int>(to.y));
    } else {
        PrintStep(drawing.path, 'm', to.x - drawing.pathEnd.x, to.y - drawing.pathEnd.y);
    }
    drawing.pathEnd = to;
}

void ExtendPath(SvgDrawing &drawing, PixelPoint to) {
    int32_t dx = to.x - drawing.pathEnd.x, dy = to.y - drawing.pathEnd.y;
    if (dy == 0) {
        Print(drawing.path, "h%d", static_cast<int>(dx));
    } else if (dx == 0) {
        Print(drawing.path, "v%d", static_cast<int>(dy));
    } else {
        PrintStep(drawing.path, 'l', dx, dy);
    }
    drawing.pathEnd = to;
}

// Puts the open line into the path.
void CloseLine(SvgDrawing &drawing) {
    if (drawing.line.empty()) return;
    MovePath(drawing, drawing.line[0]);
    // A path of one point alone would draw nothing.
    if (drawing.line.size() == 1) ExtendPath(drawing, drawing.line[0]);
    for (size_t i = 1; i < drawing.line.size(); i++) ExtendPath(drawing, drawing.line[i]);
    drawing.line.clear();
}

void ClosePath(SvgDrawing &drawing) {
    CloseLine(drawing);
    if (drawing.path.empty()) return;
    drawing.text += "<path stroke=\"";
    PrintColour(drawing.text, drawing.pathColour);
    drawing.text += "\" d=\"";
    drawing.text += drawing.path;
    drawing.text += "\"/>\n";
    drawing.path.clear();
}

// The corners of a line whose last pixel is drawn, too: square caps then cover just its pixels. Empty if
// nothing is drawn.
std::vector<PixelPoint> CoveredCorners(std::span<const PixelPoint> points) {
    std::vector<PixelPoint> corners;
    for (PixelPoint point : points) {
        if (corners.empty() || !(corners.back() == point)) corners.push_back(point);
    }
    if (corners.size() < 2) return {};
    PixelPoint step = StepTowards(corners.back(), corners[corners.size() - 2]);
    corners.back().x += step.x;
    corners.back().y += step.y;
    return corners;
}

// Whether a line to the second pixel covers nothing but the two.
bool IsNextTo(PixelPoint a, PixelPoint b) {
    return std::abs(a.x - b.x) + std::abs(a.y - b.y) <= 1;
}

// Whether the step from `middle` to `to` only goes on as the one before went, along the pixels.
bool GoesStraightOn(PixelPoint from, PixelPoint middle, PixelPoint to) {
    PixelPoint step = StepTowards(from, middle);
    bool along = step.x != 0 || step.y != 0;
    return along && step == StepTowards(middle, to);
}

void AddCorner(SvgDrawing &drawing, PixelPoint corner) {
    std::vector<PixelPoint> &line = drawing.line;
    if (!line.empty() && line.back() == corner) return;
    if (line.size() > 1 && GoesStraightOn(line[line.size() - 2], line.back(), corner)) line.pop_back();
    line.push_back(corner);
}

bool Touches(PixelPoint end, std::span<const PixelPoint> corners) {
    return IsNextTo(end, corners.front()) || IsNextTo(end, corners.back());
}

// Waves are drawn from left to right, each step of them from right to left: so it is often the first end of
// the first step that is touched. A longer line has been turned already.
constexpr size_t LONGEST_TURNED = 4;

// Goes on with the open line if the new one touches it, with either of its ends.
void AddLine(SvgDrawing &drawing, std::vector<PixelPoint> corners) {
    std::vector<PixelPoint> &line = drawing.line;
    bool turns = line.size() <= LONGEST_TURNED && !line.empty() && !Touches(line.back(), corners) &&
                 Touches(line.front(), corners);
    if (turns) std::reverse(line.begin(), line.end());
    if (!line.empty() && !Touches(line.back(), corners)) CloseLine(drawing);
    if (!line.empty() && !IsNextTo(line.back(), corners.front()))
        std::reverse(corners.begin(), corners.end());
    for (PixelPoint corner : corners) AddCorner(drawing, corner);
}

// A dotted line begins with a dot at its first pixel, whatever it touches.
void DrawDotted(SvgDrawing &drawing, int colour, PixelPoint from, PixelPoint to) {
    PixelPoint step = StepTowards(from, to);
    drawing.text += "<path stroke=\"";
    PrintColour(drawing.text, colour);
    // The edge of the first pixel and of the last.
    Print(drawing.text, "\" stroke-dasharray=\"3\" stroke-linecap=\"butt\" d=\"M%.6g %.6gL%.6g %.6g\"/>\n",
          from.x + 0.5 - step.x / 2.0, from.y + 0.5 - step.y / 2.0, to.x + 0.5 - step.x / 2.0,
          to.y + 0.5 - step.y / 2.0);
}

// Lines rising to the right, one pixel in eight, the gaps transparent; the ends in the tile's other corners
// make them meet from tile to tile.
void DefineHatch(SvgDrawing &drawing, int colour) {
    bool &defined = drawing.hatched[static_cast<size_t>(colour)];
    if (defined) return;
    defined = true;
    Print(drawing.text,
          "<pattern id=\"h%d\" width=\"8\" height=\"8\" patternUnits=\"userSpaceOnUse\"><path stroke=\"",
          colour);
    PrintColour(drawing.text, colour);
    drawing.text += "\" d=\"M-1 1L1-1M0 8L8 0M7 9L9 7\"/></pattern>\n";
}

void PrintEscaped(std::string &out, std::string_view text) {
    for (char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        default:
            out += c;
        }
    }
}

bool HasBlanksToKeep(std::string_view text) {
    return text.starts_with(' ') || text.ends_with(' ') || text.find("  ") != std::string_view::npos;
}

void ClosePanel(SvgDrawing &drawing) {
    ClosePath(drawing);
    if (drawing.inPanel) drawing.text += "</g>\n";
    drawing.inPanel = false;
}

} // namespace

void SvgBegin(SvgDrawing &drawing, PixelSize size) {
    drawing = {};
    Print(drawing.text,
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\" ",
          static_cast<int>(size.width), static_cast<int>(size.height), static_cast<int>(size.width),
          static_cast<int>(size.height));
    Print(drawing.text, "font-family=\"%s, sans-serif\" font-size=\"%d\">\n", HEADLESS_FONT_FAMILY,
          HEADLESS_FONT_SIZE);
}

void SvgSelectPanel(SvgDrawing &drawing, PixelPoint origin, PixelSize size) {
    if (drawing.inPanel && drawing.origin == origin) return;
    ClosePanel(drawing);
    int id = drawing.panels++;
    Print(drawing.text, "<clipPath id=\"p%d\"><path d=\"M0 0h%dv%dh%dz\"/></clipPath>\n", id,
          static_cast<int>(size.width), static_cast<int>(size.height), -static_cast<int>(size.width));
    Print(drawing.text,
          "<g transform=\"translate(%d %d)\" clip-path=\"url(#p%d)\" fill=\"none\" "
          "stroke-linecap=\"square\">\n",
          static_cast<int>(origin.x), static_cast<int>(origin.y), id);
    drawing.inPanel = true;
    drawing.origin = origin;
}

void SvgPolyline(SvgDrawing &drawing, int colour, bool dotted, std::span<const PixelPoint> points) {
    if (dotted) {
        ClosePath(drawing);
        for (size_t i = 0; i + 1 < points.size(); i++) DrawDotted(drawing, colour, points[i], points[i + 1]);
        return;
    }
    std::vector<PixelPoint> corners = CoveredCorners(points);
    if (corners.empty()) return;
    if (drawing.pathColour != colour) ClosePath(drawing);
    drawing.pathColour = colour;
    AddLine(drawing, std::move(corners));
}

void SvgRectangle(SvgDrawing &drawing, int colour, bool hatched, const PixelRect &rect) {
    if (rect.right <= rect.left || rect.bottom <= rect.top) return;
    ClosePath(drawing);
    if (hatched) DefineHatch(drawing, colour);
    drawing.text += "<path fill=\"";
    if (hatched) {
        Print(drawing.text, "url(#h%d)", colour);
    } else {
        PrintColour(drawing.text, colour);
    }
    Print(drawing.text, "\" d=\"M%d %dh%dv%dh%dz\"/>\n", static_cast<int>(rect.left),
          static_cast<int>(rect.top), static_cast<int>(rect.right - rect.left),
          static_cast<int>(rect.bottom - rect.top), static_cast<int>(rect.left - rect.right));
}

void SvgText(SvgDrawing &drawing, int colour, PixelPoint baseline, int32_t width, std::string_view utf8) {
    if (utf8.empty()) return;
    ClosePath(drawing);
    Print(drawing.text, "<text x=\"%d\" y=\"%d\" textLength=\"%d\" fill=\"", static_cast<int>(baseline.x),
          static_cast<int>(baseline.y), static_cast<int>(width));
    PrintColour(drawing.text, colour);
    drawing.text += HasBlanksToKeep(utf8) ? "\" xml:space=\"preserve\">" : "\">";
    PrintEscaped(drawing.text, utf8);
    drawing.text += "</text>\n";
}

void SvgEnd(SvgDrawing &drawing) {
    ClosePanel(drawing);
    drawing.text += "</svg>\n";
}
