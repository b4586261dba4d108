#include "shell/mouse_gesture.h"

MouseGestureRecord MouseGesture;

namespace {

void StickAxis(int32_t &at, int32_t &remembered) {
    if (remembered == NO_PIXEL) return;
    int64_t distance = static_cast<int64_t>(at) - remembered;
    if (distance > -STICKY_PIXELS && distance < STICKY_PIXELS) {
        at = remembered;
    } else {
        remembered = NO_PIXEL;
    }
}

} // namespace

void InitMouseGesture() {
    InitMouse();
    MouseGesture = {};
    ForgetPixel();
}

void RememberPixel(int32_t x, int32_t y) {
    MouseGesture.stickX = x;
    MouseGesture.stickY = y;
}

void ForgetPixel() {
    RememberPixel(NO_PIXEL, NO_PIXEL);
}

void StickToPixel(int32_t &x, int32_t &y) {
    StickAxis(x, MouseGesture.stickX);
    StickAxis(y, MouseGesture.stickY);
}
