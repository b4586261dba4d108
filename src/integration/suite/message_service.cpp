#include "integration/suite/message_service.h"
#include <array>
#include <cstdio>
#include <optional>
#include <string>

void (*BroadcastListener)(uint32_t messageClass, uint32_t detail, uint32_t data);

namespace {

// A handle is the index of its string, plus 1.
std::array<std::optional<std::string>, 64> Strings;

std::optional<std::string> *StringOf(ServiceString string) {
    return string >= 1 && string <= Strings.size() ? &Strings[string - 1] : nullptr;
}

} // namespace

ServiceString MRStrCreate(const char *text) {
    if (!text) return 0;
    for (size_t i = 0; i < Strings.size(); ++i) {
        if (Strings[i]) continue;
        Strings[i] = text;
        return static_cast<ServiceString>(i + 1);
    }
    return 0;
}

void MRStrDestroy(ServiceString string) {
    if (auto *held = StringOf(string)) held->reset();
}

int MRStrGetCopy(ServiceString string, char *buffer, int size) {
    const auto *held = StringOf(string);
    if (!held || !*held || size < 1) return 0;
    snprintf(buffer, static_cast<size_t>(size), "%s", (*held)->c_str());
    return 1;
}

void MRBroadcastMsg(uint32_t messageClass, uint32_t detail, uint32_t data) {
    if (BroadcastListener) BroadcastListener(messageClass, detail, data);
}
