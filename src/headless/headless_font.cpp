#include "headless/headless_font.h"
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

namespace {

constexpr const char *FONT_FAMILY = "DejaVu Sans";
constexpr double FONT_SIZE = 11; // pixels

using FontOptions = std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)>;
using ScaledFont = std::unique_ptr<cairo_scaled_font_t, decltype(&cairo_scaled_font_destroy)>;

FontOptions MakeOptions(bool crisp) {
    FontOptions options(cairo_font_options_create(), cairo_font_options_destroy);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), crisp ? CAIRO_HINT_STYLE_SLIGHT : CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(),
                                        crisp ? CAIRO_HINT_METRICS_ON : CAIRO_HINT_METRICS_OFF);
    return options;
}

ScaledFont MakeFont(bool crisp) {
    cairo_font_face_t *face =
        cairo_toy_font_face_create(FONT_FAMILY, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_matrix_t size, device;
    cairo_matrix_init_scale(&size, FONT_SIZE, FONT_SIZE);
    cairo_matrix_init_identity(&device);
    ScaledFont font(cairo_scaled_font_create(face, &size, &device, MakeOptions(crisp).get()),
                    cairo_scaled_font_destroy);
    cairo_font_face_destroy(face);
    return font;
}

// Latin-1 as UTF-8. Control characters have no shape and become blanks.
void AppendUtf8(std::string &out, unsigned char c) {
    if (c < 0x20 || (c >= 0x7F && c < 0xA0)) c = ' ';
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Everything that is measured, once.
struct MeasuredFont {
    std::array<int32_t, 256> advances; // of each character
    FontMetrics metrics;
    double ascent;
};

int32_t MeanLetterWidth(const std::array<int32_t, 256> &advances) {
    int32_t sum = 0;
    for (int c = 'a'; c <= 'z'; c++) sum += advances[c] + advances[c - 'a' + 'A'];
    return (sum + 26) / 52;
}

MeasuredFont Measure() {
    ScaledFont font = MakeFont(true);
    MeasuredFont measured;
    for (int c = 0; c < 256; c++) {
        std::string text;
        AppendUtf8(text, static_cast<unsigned char>(c));
        cairo_text_extents_t extents;
        cairo_scaled_font_text_extents(font.get(), text.c_str(), &extents);
        measured.advances[c] = static_cast<int32_t>(std::lround(extents.x_advance));
    }
    cairo_font_extents_t extents;
    cairo_scaled_font_extents(font.get(), &extents);
    measured.ascent = std::ceil(extents.ascent);
    measured.metrics.height = static_cast<int32_t>(measured.ascent + std::ceil(extents.descent));
    measured.metrics.averageWidth = MeanLetterWidth(measured.advances);
    return measured;
}

// Measured at the first use, as many uses of the tool draw nothing.
std::optional<MeasuredFont> measuredFont;

const MeasuredFont &Font() {
    if (!measuredFont) measuredFont = Measure();
    return *measuredFont;
}

} // namespace

FontMetrics HeadlessFontMetrics() {
    return Font().metrics;
}

int32_t HeadlessFontWidth(const char *text) {
    int32_t width = 0;
    for (; *text; text++) width += Font().advances[static_cast<unsigned char>(*text)];
    return width;
}

void HeadlessFontDraw(cairo_t *context, const char *text, bool crisp) {
    std::string utf8;
    for (const char *c = text; *c; c++) AppendUtf8(utf8, static_cast<unsigned char>(*c));
    cairo_select_font_face(context, FONT_FAMILY, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, FONT_SIZE);
    cairo_set_font_options(context, MakeOptions(crisp).get());
    cairo_text_extents_t extents;
    cairo_text_extents(context, utf8.c_str(), &extents);
    // Letters that need not fit the pixels are a little narrower or wider than those that were measured.
    if (!crisp && extents.x_advance > 0) {
        cairo_scale(context, HeadlessFontWidth(text) / extents.x_advance, 1);
    }
    cairo_move_to(context, 0, Font().ascent);
    cairo_show_text(context, utf8.c_str());
    cairo_new_path(context);
}

// Read by the leak checker, where there is one: the font library keeps what it has found until the end.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_options();
const char *__lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
const char *__lsan_default_options() {
    return "print_suppressions=0";
}
