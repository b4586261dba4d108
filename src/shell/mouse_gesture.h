// What is held down of the mouse, and the pixel of a press that the pointer sticks to.
#pragma once

#include "display/mouse_place.h"

// A coordinate less than this many pixels from the press counts as the press, so that a sloppy click is still
// a click.
constexpr int32_t STICKY_PIXELS = 20;
// In place of a coordinate to stick to.
constexpr int32_t NO_PIXEL = -9999;

struct MouseKeys {
    bool shift, control;
};

struct MouseGestureRecord {
    bool captured;  // the left button went down in a panel and is not up yet
    int32_t stickX; // the pixel of the press, each axis until the mouse leaves it
    int32_t stickY;
    MouseKeys keys;       // at the press
    int32_t wheelRest[3]; // turns of the wheel that have not made a step yet, by WheelUse
};
// Written by the routines below and by the mouse's messages.
extern MouseGestureRecord MouseGesture;
void InitMouseGesture();

// Where a press was, from now on; or nowhere.
void RememberPixel(int32_t x, int32_t y);
void ForgetPixel();
// Replaces each coordinate that is near to the remembered one by it, and forgets the one that is not.
void StickToPixel(int32_t &x, int32_t &y);
