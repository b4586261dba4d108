#include "platform/profile.h"
#include <algorithm>
#include <cstdint>

namespace {

// Blanks, a sign, and digits up to the first other character.
int ClampedInteger(const char *text) {
    while (*text == ' ' || *text == '\t') ++text;
    bool negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    int64_t limit = negative ? -static_cast<int64_t>(INT32_MIN) : INT32_MAX;
    int64_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) value = std::min(value * 10 + (*text - '0'), limit);
    return static_cast<int>(negative ? -value : value);
}

} // namespace

int ProfileInteger(const char *section, const char *key, int fallback, const char *path) {
    char text[64];
    return ProfileString(section, key, "", text, sizeof text, path) > 0 ? ClampedInteger(text) : fallback;
}
