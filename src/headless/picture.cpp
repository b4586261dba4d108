#include "headless/picture.h"
#include "config/settings.h"
#include "display/composition.h"
#include "display/primitives.h"
#include "display/renderer.h"
#include "display/row_metrics.h"
#include "display/row_table.h"
#include "display/ruler.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "platform/file_replacement.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <algorithm>
#include <cairo-pdf.h>
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

// The pixels that the ruler's labels take to the right of the wave pane's left edge.
int32_t LabelsReach() {
    int32_t reach = 0;
    ForEachRulerTick(
        ChooseRulerSteps(),
        [](const RulerTick &tick, void *context) {
            if (!tick.label) return;
            int32_t width = TextWidth(tick.label);
            auto &furthest = *static_cast<int32_t *>(context);
            furthest = std::max(furthest, tick.x - width / 2 + width);
        },
        &reach);
    return reach;
}

// Sizes the window to the rows, and shows the range in it. The ruler goes on beyond the wave pane where its
// last label would be cut.
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
    layout.width = left + std::max(request.width, LabelsReach()) + 2 * FRAME;
    layout.height = top + height + 2 * FRAME;
    layout.ruler = {0, 0, layout.width, top};
    layout.names = {0, top, WaveView.NameColumnWidth, height + 2 * FRAME};
    layout.waves = {left, top, request.width + 2 * FRAME, height + 2 * FRAME};
    return layout;
}

void SetRectangle(int colour, const PanePlace &place) {
    const PictureTarget &target = HeadlessSurface.target;
    if (target.svg) {
        SvgRectangle(*target.svg, colour, false,
                     {place.x, place.y, place.x + place.width, place.y + place.height});
        return;
    }
    cairo_t *context = target.context;
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

void DrawFrame(int background, const PanePlace &place) {
    SetRectangle(background == BLACK ? WHITE : BLACK, place);
    SetRectangle(background,
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

// Draws on the surface's target.
void DrawPicture(const Layout &layout, const std::vector<uint16_t> &ids) {
    int background = ColorSettings[Background];
    SetRectangle(background, {0, 0, layout.width, layout.height});
    for (auto [pane, place] : {std::pair(Pane::Ruler, layout.ruler), std::pair(Pane::Name, layout.names),
                               std::pair(Pane::Wave, layout.waves)}) {
        DrawFrame(background, place);
        PlacePane(pane, place);
    }
    Headless.panesExist = true;
    DisplayOpen = 1;
    PaintPane(Pane::Ruler);
    DrawRows(ids);
}

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

std::string TellOf(cairo_status_t status) {
    return std::string("cannot be drawn: ") + cairo_status_to_string(status);
}

std::string TellUnwritten(const FileReplacement &file) {
    return "cannot be written: " + file.failure();
}

cairo_status_t WriteBytes(void *file, const unsigned char *bytes, unsigned length) {
    std::string_view text(reinterpret_cast<const char *>(bytes), length);
    return static_cast<FileReplacement *>(file)->write(text) ? CAIRO_STATUS_SUCCESS
                                                             : CAIRO_STATUS_WRITE_ERROR;
}

Surface MakeSurface(Format format, const PictureRequest &request, const Layout &layout,
                    FileReplacement &file) {
    cairo_surface_t *surface;
    if (format == Format::Png) {
        surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, layout.width * request.scale,
                                             layout.height * request.scale);
    } else {
        surface = cairo_pdf_surface_create_for_stream(WriteBytes, &file, layout.width, layout.height);
    }
    return Surface(surface, cairo_surface_destroy);
}

void WriteSvg(const PictureRequest &request, const Layout &layout, FileReplacement &file) {
    SvgDrawing svg;
    SvgBegin(svg, {layout.width, layout.height});
    HeadlessSurface.target.svg = &svg;
    DrawPicture(layout, request.rows);
    SvgEnd(svg);
    file.write(svg.text);
}

// What Cairo says of a picture drawn and written through it.
cairo_status_t WriteByCairo(Format format, const PictureRequest &request, const Layout &layout,
                            FileReplacement &file) {
    Surface surface = MakeSurface(format, request, layout, file);
    if (cairo_status_t status = cairo_surface_status(surface.get())) return status;
    Context context(cairo_create(surface.get()), cairo_destroy);
    if (format == Format::Png) cairo_scale(context.get(), request.scale, request.scale);
    HeadlessSurface.target.crisp = format == Format::Png && request.scale == 1;
    HeadlessSurface.target.context = context.get();
    DrawPicture(layout, request.rows);
    // Of the fonts, too.
    if (cairo_status_t status = cairo_status(context.get())) return status;
    if (format == Format::Png) return cairo_surface_write_to_png_stream(surface.get(), WriteBytes, &file);
    cairo_surface_finish(surface.get());
    return cairo_surface_status(surface.get());
}

// Draws the picture into a file that takes the old one's place when it is whole. Empty, or a message.
std::string Write(Format format, const PictureRequest &request, const Layout &layout) {
    FileReplacement file(request.path);
    if (!file.isOpen()) return TellUnwritten(file);
    cairo_status_t status = CAIRO_STATUS_SUCCESS;
    if (format == Format::Svg) {
        WriteSvg(request, layout, file);
    } else {
        status = WriteByCairo(format, request, layout, file);
    }
    if (!file.failure().empty()) return TellUnwritten(file);
    if (status != CAIRO_STATUS_SUCCESS) return TellOf(status);
    return file.finish() && file.commit() ? "" : TellUnwritten(file);
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
    error = Write(format, request, layout);
    return error.empty();
}
