#include "display/mouse_place.h"

MouseRecord Mouse;

void InitMouse() {
    Mouse = {0, 0, Pane::None};
}
