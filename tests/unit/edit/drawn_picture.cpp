#include "unit/edit/drawn_picture.h"

#include "config/settings.h"
#include "display/viewport.h"
#include "headless/surface_cairo.h"

namespace {

// The letter of a row's name or wave, which begins by erasing its place; empty for any other fill.
std::string RowPart(const SurfaceCall &call) {
    int32_t height = call.rect.bottom - call.rect.top;
    if (call.patterned || call.colour != ColorSettings[Background]) return "";
    if (call.pane == Pane::Name && height == WaveView.RowHeight - 1) return "n";
    return call.pane == Pane::Wave && height == WaveView.RowHeight ? "w" : "";
}

std::string Describe(const SurfaceCall &call) {
    if (call.kind == SurfaceCall::Kind::DropSaved) return "-";
    if (call.kind == SurfaceCall::Kind::ClipToPane) return call.on ? "+" : "";
    std::string part = call.kind == SurfaceCall::Kind::Fill ? RowPart(call) : "";
    int32_t row = (call.rect.top + static_cast<int32_t>(WaveView.TopPixel)) / WaveView.RowHeight;
    return part.empty() ? "" : part + std::to_string(row);
}

} // namespace

void WatchDrawing() {
    HeadlessSurface.calls.clear();
    HeadlessSurface.recording = true;
}

std::string WhatWasDrawn() {
    std::string text;
    for (const SurfaceCall &call : HeadlessSurface.calls) {
        std::string part = Describe(call);
        if (!part.empty()) text += (text.empty() ? "" : " ") + part;
    }
    return text;
}
