// The mouse's messages in the panels, turned into events of the command in force.
#pragma once

#include "display/surface.h"
#include "display/viewport.h"
#include "shell/mouse_gesture.h"

// Places are client pixels of the panel. While the left button is held the panel of the press gets all.
void MouseMoved(Pane pane, int32_t x, int32_t y);
void LeftPressed(Pane pane, int32_t x, int32_t y, MouseKeys keys);
void LeftReleased(Pane pane, int32_t x, int32_t y);
// The same in the panel of the press, or for a press in `pane`, at a time and a row as they stand: neither
// rounded, nor held at the place of a press that is near.
void MouseMovedTo(AxisPlace place);
void LeftPressedAt(Pane pane, AxisPlace place, MouseKeys keys);
void LeftReleasedAt(AxisPlace place);
// The right or the middle button, which ends a view command and takes the selection away.
void OtherPressed();
void OtherReleased(Pane pane, int32_t x, int32_t y);
// Another window has taken the mouse while the left button was held.
void MouseCaptureLost();

// The unit of a wheel's turn that makes one step.
constexpr int32_t WHEEL_STEP = 120;
// The wheel was turned by `turn` of these units, away from the user above 0: it scrolls the rows, with Shift
// the time, and with Ctrl it zooms about the pointer. `rows` is how many rows one step is. The pointer is at
// a pixel of a panel, Pane::None beside them all.
void WheelTurned(Pane pane, PixelPoint at, int32_t turn, MouseKeys keys, int32_t rows);
// A wheel that tips to the sides, to the right above 0: it scrolls the time.
void WheelTipped(Pane pane, PixelPoint at, int32_t turn);
