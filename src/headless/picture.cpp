#include "headless/picture.h"
#include "config/settings.h"
#include "display/composition.h"
#include "display/primitives.h"
#include "display/renderer.h"
#include "display/row_metrics.h"
#include "display/row_table.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <algorithm>
#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <memory>
#include <string_view>

namespace {

constexpr int32_t GRIP = 3;  // pixels between name column and wave pane
constexpr int32_t FRAME = 1; // pixels of a panel's frame
constexpr int32_t BLACK = 15, WHITE = 0;
constexpr int32_t LONGEST_SIDE = 32767;      // Cairo's images end there
constexpr int64_t MOST_PIXELS = 256'000'000; // a gigabyte

enum class Format { Png, Svg, Pdf, Unknown };

Format FormatOf(const char *path) {
    std::string_view name(path);
    size_t dot = name.find_last_of("./\\");
    std::string_view extension = dot == std::string_view::npos ? "" : name.substr(dot);
    if (EqualIgnoringCase(extension, ".png")) return Format::Png;
    if (EqualIgnoringCase(extension, ".svg")) return Format::Svg;
    if (EqualIgnoringCase(extension, ".pdf")) return Format::Pdf;
    return Format::Unknown;
}

// Puts the document's rows and view, and the headless window, back when the picture is done.
class KeptState {
public:
    KeptState()
        : view(WaveView), rows(WaveRows), open(DisplayOpen), padding(Settings.WaveTextPadding),
          gap(Settings.WaveGap), colours(LevelColour), headless(Headless), surface(HeadlessSurface) {
        WaveRows = nullptr;
    }
    ~KeptState() {
        FreeWaveRows();
        WaveView = view;
        WaveRows = rows;
        DisplayOpen = open;
        Settings.WaveTextPadding = padding;
        Settings.WaveGap = gap;
        LevelColour = colours;
        Headless = headless;
        HeadlessSurface = surface;
    }
    KeptState(const KeptState &) = delete;
    KeptState &operator=(const KeptState &) = delete;

private:
    WaveViewRecord view;
    WaveRow *rows;
    int32_t open, padding, gap;
    std::array<uint8_t, LEVEL_COLOURS> colours;
    HeadlessState headless;
    HeadlessSurfaceState surface;
};

// The outer rectangle of a panel, its frame included.
struct PanePlace {
    int32_t x, y, width, height;
};

struct Layout {
    PanePlace ruler, names, waves;
    int32_t width, height;
};

bool FillTable(const uint16_t *ids, uint32_t count) {
    for (uint32_t i = 0; i < count; i++) {
        if (!PatternInUse(ids[i])) return false;
        WaveRows[i] = {};
        WaveRows[i].PatternId = ids[i];
        WaveRows[i].setIsWave(PatternFromId(ids[i])->kind() == PatternKind::Plain);
    }
    WaveView.RowCount = count;
    return true;
}

int32_t WidestName(const std::vector<uint16_t> &ids) {
    int32_t widest = 0;
    for (uint16_t id : ids) {
        char text[ROW_TEXT_SIZE];
        MeasuredNameText(PatternFromId(id), text);
        widest = std::max(widest, TextWidth(text));
    }
    return widest;
}

// Sizes the window to the rows, and shows the range in it.
Layout LayOut(const PictureRequest &request) {
    InitWaveMetrics();
    BuildLevelColour();
    WaveView.NameTextWidth = WidestName(request.rows);
    WaveView.NameColumnWidth = WaveView.NameTextWidth + WaveView.FontCharWidth;
    WaveView.NameScroll = 0;
    WaveView.TopRow = 0;
    WaveView.TopPixel = 0;
    WaveView.WavePaneWidth = request.width;
    int32_t rows = static_cast<int32_t>(std::max<size_t>(request.rows.size(), 1));
    int32_t height = rows * WaveView.RowHeight;
    WaveView.WavePaneHeight = height;
    Headless.screenWidth = std::max(Headless.screenWidth, request.width);
    ZoomToRange(request.fitRange ? request.from : 0, request.fitRange ? request.to : WaveView.SpanEnd);

    Layout layout;
    int32_t top = WaveView.RulerHeight;
    int32_t left = WaveView.NameColumnWidth + GRIP;
    layout.width = left + request.width + 2 * FRAME;
    layout.height = top + height + 2 * FRAME;
    layout.ruler = {0, 0, layout.width, top};
    layout.names = {0, top, WaveView.NameColumnWidth, height + 2 * FRAME};
    layout.waves = {left, top, request.width + 2 * FRAME, height + 2 * FRAME};
    return layout;
}

void SetRectangle(cairo_t *context, int colour, const PanePlace &place) {
    uint32_t rgb = ColorTable[static_cast<size_t>(colour)];
    cairo_set_source_rgb(context, (rgb >> 16) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0);
    cairo_rectangle(context, place.x, place.y, place.width, place.height);
    cairo_fill(context);
}

void PlacePane(Pane pane, const PanePlace &place) {
    auto index = static_cast<size_t>(pane);
    HeadlessSurface.target.origin[index] = {place.x + FRAME, place.y + FRAME};
    HeadlessSurface.target.size[index] = {place.width - 2 * FRAME, place.height - 2 * FRAME};
    Headless.paneWidth[index] = place.width - 2 * FRAME;
    Headless.paneHeight[index] = place.height - 2 * FRAME;
    Headless.clip[index] = {0, 0, place.width - 2 * FRAME, place.height - 2 * FRAME};
}

void DrawFrame(cairo_t *context, int background, const PanePlace &place) {
    SetRectangle(context, background == BLACK ? WHITE : BLACK, place);
    SetRectangle(context, background,
                 {place.x + FRAME, place.y + FRAME, place.width - 2 * FRAME, place.height - 2 * FRAME});
}

// Draws the rows, a table full at a time.
void DrawRows(const std::vector<uint16_t> &ids) {
    PictureTarget &target = HeadlessSurface.target;
    for (size_t first = 0; first < ids.size(); first += MAX_ROWS) {
        FillTable(ids.data() + first, static_cast<uint32_t>(std::min<size_t>(ids.size() - first, MAX_ROWS)));
        PaintPane(Pane::Name);
        PaintPane(Pane::Wave);
        int32_t height = static_cast<int32_t>(MAX_ROWS) * WaveView.RowHeight;
        target.origin[static_cast<size_t>(Pane::Name)].y += height;
        target.origin[static_cast<size_t>(Pane::Wave)].y += height;
    }
}

void DrawPicture(cairo_t *context, const Layout &layout, const std::vector<uint16_t> &ids) {
    int background = ColorSettings[Background];
    SetRectangle(context, background, {0, 0, layout.width, layout.height});
    HeadlessSurface.target.context = context;
    for (auto [pane, place] : {std::pair(Pane::Ruler, layout.ruler), std::pair(Pane::Name, layout.names),
                               std::pair(Pane::Wave, layout.waves)}) {
        DrawFrame(context, background, place);
        PlacePane(pane, place);
    }
    Headless.panesExist = true;
    DisplayOpen = 1;
    PaintPane(Pane::Ruler);
    DrawRows(ids);
}

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

Surface MakeSurface(Format format, const PictureRequest &request, const Layout &layout) {
    cairo_surface_t *surface;
    if (format == Format::Png) {
        surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, layout.width * request.scale,
                                             layout.height * request.scale);
    } else if (format == Format::Svg) {
        surface = cairo_svg_surface_create(request.path, layout.width, layout.height);
        cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
    } else {
        surface = cairo_pdf_surface_create(request.path, layout.width, layout.height);
    }
    return Surface(surface, cairo_surface_destroy);
}

cairo_status_t Write(Format format, const PictureRequest &request, const Layout &layout) {
    Surface surface = MakeSurface(format, request, layout);
    if (cairo_status_t status = cairo_surface_status(surface.get())) return status;
    Context context(cairo_create(surface.get()), cairo_destroy);
    if (format == Format::Png) cairo_scale(context.get(), request.scale, request.scale);
    HeadlessSurface.target.crisp = format == Format::Png && request.scale == 1;
    DrawPicture(context.get(), layout, request.rows);
    if (cairo_status_t status = cairo_status(context.get())) return status;
    if (format == Format::Png) return cairo_surface_write_to_png(surface.get(), request.path);
    cairo_surface_finish(surface.get());
    return cairo_surface_status(surface.get());
}

// A message for what cannot be drawn, or null.
const char *WhatIsWrong(const PictureRequest &request) {
    if (FormatOf(request.path) == Format::Unknown) return "the picture's name must end in .png, .svg or .pdf";
    if (request.width < 1 || request.width > LONGEST_SIDE) return "the width must be 1 to 32767 pixels";
    if (request.scale < 1 || request.scale > LONGEST_SIDE) return "the scale must be 1 to 32767";
    for (uint16_t id : request.rows) {
        if (!PatternTable || !PatternInUse(id)) return "a row shows no pattern";
    }
    return nullptr;
}

bool IsTooLarge(const Layout &layout, int scale) {
    int64_t width = static_cast<int64_t>(layout.width) * scale;
    int64_t height = static_cast<int64_t>(layout.height) * scale;
    return width > LONGEST_SIDE || height > LONGEST_SIDE || width * height > MOST_PIXELS;
}

} // namespace

bool RenderPicture(const PictureRequest &request, std::string &error) {
    if (const char *message = WhatIsWrong(request)) {
        error = message;
        return false;
    }
    KeptState kept;
    if (!AllocWaveRows()) {
        error = "out of memory";
        return false;
    }
    Layout layout = LayOut(request);
    Format format = FormatOf(request.path);
    if (IsTooLarge(layout, format == Format::Png ? request.scale : 1)) {
        error = "the picture would be too large";
        return false;
    }
    cairo_status_t status = Write(format, request, layout);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = std::string("cannot write ") + request.path + ": " + cairo_status_to_string(status);
    }
    return status == CAIRO_STATUS_SUCCESS;
}
