// The surface without windows: it draws the panels into a picture of Cairo's or into SVG text, records what
// it is asked, or does neither and only measures.
#pragma once

#include "headless/svg_drawing.h"
#include <array>
#include <cairo.h>
#include <string>
#include <vector>

struct SurfaceCall {
    enum class Kind {
        Select,
        Pen,
        Brush,
        TextColour,
        Polyline,
        Fill,
        Text,
        SaveUnder,
        RestoreUnder,
        DropSaved,
        ClipToPane,
        XorPolygon,
        Invert,
        KeepBitmap,
        CopyToBitmap,
        CopyFromBitmap,
        DrawToMemory,
    };
    Kind kind;
    Pane pane;                      // current at the call
    int colour = 0;                 // of a pen, a brush or a text
    bool patterned = false;         // a dotted pen, a hatched brush
    std::vector<PixelPoint> points; // of a polyline or polygon; the upper left corner of a text
    PixelRect rect = {};            // of a fill, an inversion, or pixels that are saved, put back or copied
    SaveSlot slot = {};             // of such pixels
    KeptBitmap bitmap = {};         // that is made or copied; a copy's target is in `points`
    bool on = false;                // of a clip, and of drawing to memory
    std::string text;
};

// Where the panels lie in a picture. With neither a context nor an SVG drawing nothing is drawn.
struct PictureTarget {
    cairo_t *context = nullptr;
    SvgDrawing *svg = nullptr; // takes the lines, fills and texts in place of the context
    PixelPoint origin[4] = {}; // of each panel's client area, by Pane
    PixelSize size[4] = {};
    bool crisp = true; // drawn pixel by pixel; otherwise slopes and hatches are lines, for magnified and
                       // vector pictures
};

// Pixels set aside. `pixels` stays empty where none can be read: without a picture, or in one that is not an
// image drawn pixel by pixel.
struct SavedPixels {
    bool held = false;
    PixelRect place = {};
    std::vector<uint32_t> pixels;
};

// A bitmap beside the panels.
struct KeptPixels {
    PixelSize size = {};
    std::vector<uint32_t> pixels;
};

struct HeadlessSurfaceState {
    bool recording = false;
    std::vector<SurfaceCall> calls;
    PictureTarget target;
    Pane pane = Pane::None;
    int penColour = 15;
    bool penDotted = false;
    int brushColour = 0;
    bool brushHatched = false;
    int textColour = 15;
    std::array<SavedPixels, SAVE_SLOTS> saved;
    std::array<KeptPixels, KEPT_BITMAPS> kept;
    bool inMemory = false;
    PictureTarget aside; // the target while everything is drawn to memory
};
// Written by the surface; tests and pictures set `recording`, `calls` and `target`.
extern HeadlessSurfaceState HeadlessSurface;
// Puts the start values in place.
void InitHeadlessSurface();
