#include "headless/headless_font.h"
#include <array>
#include <memory>

namespace {

using FontOptions = std::unique_ptr<cairo_font_options_t, decltype(&cairo_font_options_destroy)>;

FontOptions MakeOptions(bool crisp) {
    FontOptions options(cairo_font_options_create(), cairo_font_options_destroy);
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), crisp ? CAIRO_HINT_STYLE_SLIGHT : CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(),
                                        crisp ? CAIRO_HINT_METRICS_ON : CAIRO_HINT_METRICS_OFF);
    return options;
}

void AppendUtf8(std::string &out, unsigned char c) {
    if (c < 0x20 || (c >= 0x7F && c < 0xA0)) c = ' ';
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else {
        out += static_cast<char>(0xC0 | c >> 6);
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

// Pixels from each Latin-1 character to the next one, as the font gives them with slight hinting.
// clang-format off
constexpr std::array<uint8_t, 256> ADVANCES = {
    4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4,
    4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4,
    4, 4, 5, 9, 7, 10, 9, 3, 4, 4, 6, 9, 4, 4, 4, 4,
    7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 4, 4, 9, 9, 9, 6,
    11, 8, 8, 8, 8, 7, 6, 9, 8, 3, 3, 7, 6, 9, 8, 9,
    7, 9, 8, 7, 7, 8, 8, 11, 8, 7, 8, 4, 4, 4, 9, 6,
    6, 7, 7, 6, 7, 7, 4, 7, 7, 3, 3, 6, 3, 11, 7, 7,
    7, 7, 5, 6, 4, 7, 7, 9, 7, 7, 6, 7, 4, 7, 9, 4,
    4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4,
    4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4,
    4, 4, 7, 7, 7, 7, 4, 6, 6, 11, 5, 7, 9, 4, 11, 6,
    6, 9, 4, 4, 6, 7, 7, 4, 6, 4, 5, 7, 11, 11, 11, 6,
    8, 8, 8, 8, 8, 8, 11, 8, 7, 7, 7, 7, 3, 3, 3, 3,
    9, 8, 9, 9, 9, 9, 9, 9, 9, 8, 8, 8, 8, 7, 7, 7,
    7, 7, 7, 7, 7, 7, 11, 6, 7, 7, 7, 7, 3, 3, 3, 3,
    7, 7, 7, 7, 7, 7, 7, 9, 7, 7, 7, 7, 7, 7, 7, 7,
};
// clang-format on
constexpr int32_t DESCENT = 3; // pixels from the baseline to a line's bottom

constexpr int32_t MeanLetterWidth() {
    int32_t sum = 0;
    for (size_t c = 'a'; c <= 'z'; c++) sum += ADVANCES[c] + ADVANCES[c - 'a' + 'A'];
    return (sum + 26) / 52;
}

} // namespace

FontMetrics HeadlessFontMetrics() {
    FontMetrics metrics;
    metrics.height = HEADLESS_FONT_ASCENT + DESCENT;
    metrics.averageWidth = MeanLetterWidth();
    return metrics;
}

int32_t HeadlessFontWidth(const char *text) {
    int32_t width = 0;
    for (; *text; text++) width += ADVANCES[static_cast<unsigned char>(*text)];
    return width;
}

std::string HeadlessFontText(const char *text) {
    std::string utf8;
    for (; *text; text++) AppendUtf8(utf8, static_cast<unsigned char>(*text));
    return utf8;
}

void HeadlessFontDraw(cairo_t *context, const char *text, bool crisp) {
    std::string utf8 = HeadlessFontText(text);
    cairo_select_font_face(context, HEADLESS_FONT_FAMILY, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, HEADLESS_FONT_SIZE);
    cairo_set_font_options(context, MakeOptions(crisp).get());
    cairo_text_extents_t extents;
    cairo_text_extents(context, utf8.c_str(), &extents);
    // Letters that need not fit the pixels are a little narrower or wider than the widths that are known.
    if (!crisp && extents.x_advance > 0) {
        cairo_scale(context, HeadlessFontWidth(text) / extents.x_advance, 1);
    }
    cairo_move_to(context, 0, HEADLESS_FONT_ASCENT);
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
