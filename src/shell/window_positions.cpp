#include "shell/window_positions.h"

#include "config/paths.h"
#include "platform/profile.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char *SECTION = "windows";
// A screen coordinate has 16 bits.
constexpr long FARTHEST = 32767;
// How far a window that was pulled onto the screen stays off its edge, and the Text window at first.
constexpr int32_t EDGE = 5;
constexpr int32_t TEXT_WINDOW_EDGE = 20;

int32_t HorizontalShift(const WindowPlace &place, const ScreenMeasures &screen) {
    int32_t button = screen.buttonWidth;
    if (place.left + button >= screen.width) return screen.width - button - place.left - EDGE;
    return place.right - 2 * button < 1 ? 2 * button - place.right + EDGE : 0;
}

int32_t VerticalShift(const WindowPlace &place, const ScreenMeasures &screen) {
    int32_t caption = screen.captionHeight;
    if (place.top + caption >= screen.height) return screen.height - caption - place.top - EDGE;
    return place.top < 1 ? -place.top : 0;
}

} // namespace

bool ParseWindowPlace(const char *text, WindowPlace &place) {
    int32_t numbers[4];
    for (int i = 0; i < 4; ++i) {
        char *end;
        long number = strtol(text, &end, 10);
        if (end == text || (i < 3 && *end != ',')) return false;
        numbers[i] = static_cast<int32_t>(std::clamp(number, -FARTHEST, FARTHEST));
        text = end + 1;
    }
    place = {numbers[0], numbers[1], numbers[2], numbers[3]};
    return true;
}

bool ReadWindowPlace(const char *key, WindowPlace &place) {
    char text[64];
    if (SettingsIniPath[0] == '\0') return false;
    ProfileString(SECTION, key, "", text, sizeof text, SettingsIniPath);
    return ParseWindowPlace(text, place);
}

void StoreWindowPlace(const char *key, const WindowPlace &place) {
    char text[64];
    if (SettingsIniPath[0] == '\0') return;
    snprintf(text, sizeof text, "%d,%d,%d,%d", place.left, place.top, place.right, place.bottom);
    SetProfileString(SECTION, key, text, SettingsIniPath);
}

WindowPlace FitToScreen(WindowPlace place, const ScreenMeasures &screen) {
    int32_t right = HorizontalShift(place, screen);
    int32_t down = VerticalShift(place, screen);
    return {place.left + right, place.top + down, place.right + right, place.bottom + down};
}

WindowPlace DefaultTextPlace(int32_t screenWidth, int32_t screenHeight) {
    int32_t right = screenWidth - TEXT_WINDOW_EDGE;
    int32_t bottom = screenHeight - TEXT_WINDOW_EDGE;
    return {right - screenWidth / 3, bottom - screenHeight / 2, right, bottom};
}
