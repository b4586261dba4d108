#include "unit/display/display_fixture.h"

#include "display/primitives.h"
#include "display/renderer.h"
#include "store/mutators.h"

void Display::SetUp() {
    FreshStore::SetUp();
    InitHeadlessSurface();
    InitWaveMetrics();
    BuildLevelColour();
    Headless.panesExist = true;
    DisplayOpen = 1;
    WaveView.SpanEnd = 1000;
    SetPaneSizes(100, 1000, 600);
    HeadlessSurface.recording = true;
}

void Display::TearDown() {
    InitHeadlessSurface();
    FreshStore::TearDown();
}

void SetPaneSizes(int32_t nameWidth, int32_t waveWidth, int32_t height) {
    WaveView.NameColumnWidth = nameWidth;
    WaveView.WavePaneWidth = waveWidth;
    WaveView.WavePaneHeight = height;
    int32_t widths[] = {0, nameWidth + waveWidth + 5, nameWidth - 2, waveWidth};
    int32_t heights[] = {0, WaveView.RulerHeight - 2, height, height};
    for (int pane = 1; pane <= 3; pane++) {
        Headless.paneWidth[pane] = widths[pane];
        Headless.paneHeight[pane] = heights[pane];
        Headless.clip[pane] = {0, 0, widths[pane], heights[pane]};
    }
}

void AppendRowOf(uint16_t id) {
    WaveRow &row = WaveRows[WaveView.RowCount++];
    row = {};
    row.PatternId = id;
    row.setIsWave(PatternFromId(id)->kind() == PatternKind::Plain);
}

uint16_t MakeRow(const char *name, const Transitions &items, uint32_t width) {
    uint16_t id = MakePattern(name, items, width);
    PatternFromId(id)->setHasProperties(true);
    AppendRowOf(id);
    return id;
}

std::vector<std::string> RowNames() {
    std::vector<std::string> names;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) names.emplace_back(RowPattern(row)->name());
    return names;
}

std::vector<uint32_t> HighlightedRows() {
    std::vector<uint32_t> rows;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        if (WaveRows[row].highlighted()) rows.push_back(row);
    }
    return rows;
}

int32_t RowLow(uint32_t row) {
    return static_cast<int32_t>(row + 1) * WaveView.RowHeight - Settings.WaveGap - 1;
}
int32_t RowMiddle(uint32_t row) {
    return RowLow(row) - WaveView.WaveHeight / 2;
}
int32_t RowHigh(uint32_t row) {
    return RowLow(row) - WaveView.WaveHeight / 2 * 2;
}

namespace {

std::string Points(std::span<const PixelPoint> points) {
    std::string text;
    for (PixelPoint p : points) text += " " + std::to_string(p.x) + "," + std::to_string(p.y);
    return text;
}

std::string Rectangle(int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return std::to_string(left) + "," + std::to_string(top) + "-" + std::to_string(right) + "," +
           std::to_string(bottom);
}

std::string Describe(const SurfaceCall &call) {
    std::string colour = std::to_string(call.colour);
    switch (call.kind) {
    case SurfaceCall::Kind::Polyline:
        return colour + (call.patterned ? " dots" : " line") + Points(call.points);
    case SurfaceCall::Kind::Fill:
        return colour + (call.patterned ? " hatch " : " fill ") +
               Rectangle(call.rect.left, call.rect.top, call.rect.right - 1, call.rect.bottom - 1);
    case SurfaceCall::Kind::Text:
        return colour + " text '" + call.text + "'" + Points(call.points);
    default:
        return "";
    }
}

} // namespace

std::vector<std::string> Drawn() {
    std::vector<std::string> drawn;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        std::string text = Describe(call);
        if (!text.empty()) drawn.push_back(text);
    }
    return drawn;
}

std::vector<std::string> DrawnOnTop() {
    std::vector<std::string> drawn = Drawn();
    std::erase_if(drawn, [](const std::string &text) { return text.starts_with("0 fill"); });
    return drawn;
}

std::vector<std::string> DrawnTexts() {
    std::vector<std::string> texts;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        if (call.kind == SurfaceCall::Kind::Text) texts.push_back(call.text);
    }
    return texts;
}

std::vector<Pane> SelectedPanes() {
    std::vector<Pane> panes;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        if (call.kind == SurfaceCall::Kind::Select) panes.push_back(call.pane);
    }
    return panes;
}

void ForgetCalls() {
    HeadlessSurface.calls.clear();
}

std::string Line(int colour, std::initializer_list<PixelPoint> points) {
    return std::to_string(colour) + " line" + Points(std::span(points.begin(), points.size()));
}
std::string Dots(int colour, std::initializer_list<PixelPoint> points) {
    return std::to_string(colour) + " dots" + Points(std::span(points.begin(), points.size()));
}
std::string Fill(int colour, int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return std::to_string(colour) + " fill " + Rectangle(left, top, right, bottom);
}
std::string Hatch(int colour, int32_t left, int32_t top, int32_t right, int32_t bottom) {
    return std::to_string(colour) + " hatch " + Rectangle(left, top, right, bottom);
}
std::string TextAt(int colour, const std::string &text, int32_t left, int32_t top) {
    return std::to_string(colour) + " text '" + text + "' " + std::to_string(left) + "," +
           std::to_string(top);
}
std::string TextAround(int colour, const std::string &text, int32_t x, int32_t y) {
    PixelSize size = SurfaceTextSize(text.c_str());
    return TextAt(colour, text, x - size.width / 2, y - size.height / 2);
}

PaneImage::PaneImage(Pane pane, int32_t width, int32_t height)
    : image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)), context(cairo_create(image)) {
    clear(0xFFFFFF);
    HeadlessSurface.target = {};
    HeadlessSurface.target.context = context;
    HeadlessSurface.target.size[static_cast<size_t>(pane)] = {width, height};
}

PaneImage::~PaneImage() {
    HeadlessSurface.target = {};
    cairo_destroy(context);
    cairo_surface_destroy(image);
}

uint32_t PaneImage::at(int32_t x, int32_t y) const {
    cairo_surface_flush(image);
    const unsigned char *line =
        cairo_image_surface_get_data(image) + y * cairo_image_surface_get_stride(image);
    return reinterpret_cast<const uint32_t *>(line)[x] & 0xFFFFFF;
}

int PaneImage::count(uint32_t colour, const PixelRect &rect) const {
    int found = 0;
    for (int32_t y = rect.top; y < rect.bottom; y++) {
        for (int32_t x = rect.left; x < rect.right; x++) found += at(x, y) == colour;
    }
    return found;
}

void PaneImage::clear(uint32_t colour) {
    cairo_set_source_rgb(context, (colour >> 16) / 255.0, (colour >> 8 & 255) / 255.0,
                         (colour & 255) / 255.0);
    cairo_paint(context);
}
