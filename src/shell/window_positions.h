// The places of the windows between runs, in the section "windows" of the preferences file.
#pragma once

#include <cstdint>

// Screen pixels; right and bottom lie outside.
struct WindowPlace {
    int32_t left, top, right, bottom;
};

// The keys of the windows whose places are kept.
constexpr const char *FRAME_PLACE_KEY = "Main-Pos";
constexpr const char *TEXT_PLACE_KEY = "Text-Pos";
constexpr const char *NAME_PLACE_KEY = "Name-Pos";

// Reads "left,top,right,bottom"; false if the text does not hold four numbers. Numbers beyond what a screen
// can have are cut.
bool ParseWindowPlace(const char *text, WindowPlace &place);

// The place stored under `key`; false if there is none.
bool ReadWindowPlace(const char *key, WindowPlace &place);
void StoreWindowPlace(const char *key, const WindowPlace &place);

// All in pixels: the screen, and the size of a caption's button and of the caption.
struct ScreenMeasures {
    int32_t width, height;
    int32_t buttonWidth, captionHeight;
};
// Pulls a place so far onto the screen that the window's caption can be reached; its size stays.
WindowPlace FitToScreen(WindowPlace place, const ScreenMeasures &screen);

// Where the Text window stands as long as no place is stored.
WindowPlace DefaultTextPlace(int32_t screenWidth, int32_t screenHeight);
