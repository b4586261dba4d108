// What the tests of the display begin from: three panels of known sizes, rows of known patterns, a surface
// that records its calls, and pictures whose pixels can be read.
#pragma once

#include "config/settings.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "store/pattern_store.h"
#include "unit/support/fresh_store.h"
#include <cairo.h>
#include <memory>
#include <string>
#include <vector>

// An open document with a span of 0 to 1000, shown at one pixel a time unit in a wave pane of 1000 by 600.
class Display : public FreshStore {
protected:
    void SetUp() override;
    void TearDown() override;
};

// Gives the panels their sizes, in the headless window and in the view.
void SetPaneSizes(int32_t nameWidth, int32_t waveWidth, int32_t height);
// Makes a node with the letter "T" and a row for it at the end; returns the pattern's id.
uint16_t MakeRow(const char *name, const Transitions &items = {{0, 1000}}, uint32_t width = 1);
void AppendRowOf(uint16_t id);
// A row's name in each row of the table.
std::vector<std::string> RowNames();
// The rows that are highlighted.
std::vector<uint32_t> HighlightedRows();

// Lines of a row at its levels, in list coordinates.
int32_t RowLow(uint32_t row);
int32_t RowMiddle(uint32_t row);
int32_t RowHigh(uint32_t row);

// --- recorded calls ---
// What is drawn with a colour, as short texts: "line 5,8 1,8", "dots ...", "fill 0,0-9,9", "hatch ...",
// "text 'A' 3,4"; the colour's index goes in front, as in "3 line ...".
std::vector<std::string> Drawn();
// The same without the erasing fills, that is the solid fills of colour 0.
std::vector<std::string> DrawnOnTop();
// The texts drawn.
std::vector<std::string> DrawnTexts();
// The panels that were selected.
std::vector<Pane> SelectedPanes();
void ForgetCalls();

std::string Line(int colour, std::initializer_list<PixelPoint> points);
std::string Dots(int colour, std::initializer_list<PixelPoint> points);
std::string Fill(int colour, int32_t left, int32_t top, int32_t right, int32_t bottom);
std::string Hatch(int colour, int32_t left, int32_t top, int32_t right, int32_t bottom);
std::string TextAt(int colour, const std::string &text, int32_t left, int32_t top);
// A text whose middle lies at the point.
std::string TextAround(int colour, const std::string &text, int32_t x, int32_t y);

// --- pixels
// A picture that one panel is drawn into while the object lives.
class PaneImage {
public:
    explicit PaneImage(Pane pane, int32_t width = 1000, int32_t height = 600);
    ~PaneImage();
    PaneImage(const PaneImage &) = delete;
    PaneImage &operator=(const PaneImage &) = delete;
    // The colour of a pixel, 0xRRGGBB.
    uint32_t at(int32_t x, int32_t y) const;
    // The number of pixels of a colour in a rectangle, right and bottom outside.
    int count(uint32_t colour, const PixelRect &rect) const;
    void clear(uint32_t colour);

private:
    cairo_surface_t *image;
    cairo_t *context;
};
