#include "display/zoom.h"

#include "config/settings.h"
#include "display/viewport.h"
#include "shell/command_ids.h"
#include "shell/command_state.h"
#include "shell/reporting.h"
#include <algorithm>

namespace {

constexpr const char *AT_MAXIMUM = "Already at maximum scale";
constexpr const char *AT_MINIMUM = "Already at minimum scale";

enum FullFitPhase : uint16_t { TO_WHOLE_SPAN = 0, BACK_TO_SCALE = 1 };

TimeVal SpanLength() {
    return WaveView.SpanEnd - WaveView.SpanStart;
}
TimeVal PaneTime() {
    return PixelsToTime(WaveView.WavePaneWidth);
}

// Press and release at one place.
bool IsClick() {
    return WaveView.ZoomCentre == WaveView.ZoomAnchor;
}
void ZoomToDragged() {
    ZoomToRange(WaveView.ZoomCentre, WaveView.ZoomAnchor);
}

void ShowRangeBand() {
    CommandState.CursorMode = CURSOR_ZOOM | CURSOR_RANGE;
}

// The scale of FullZoom lies below this one.
bool ClockIsBelowAPixel() {
    return TimeToPixels(Settings.ClockMultiplier) < 1;
}

void ScaleToClock() {
    WaveView.Scale = MinScale();
    while (WaveView.Scale < MaxScale() && ClockIsBelowAPixel()) WaveView.Scale++;
}

// At a scale above 0, whether the axis is longer than the pane shows.
bool SpanExceedsMagnifiedPane() {
    return SpanLength() > static_cast<TimeVal>(std::max(WaveView.WavePaneWidth, 0)) >> WaveView.Scale;
}
// The same at a scale of 0 or below.
bool CanReduce() {
    return WaveView.Scale > MinScale() && SpanLength() > PaneTime();
}
bool CanZoomOut() {
    return WaveView.Scale > 0 ? SpanExceedsMagnifiedPane() : CanReduce();
}

void ReleaseZoomIn() {
    WaveView.ScaleBeforeApply = WaveView.Scale;
    if (WaveView.Scale >= MaxScale()) {
        UserError(AT_MAXIMUM);
    } else if (IsClick()) {
        WaveView.Scale++;
        ApplyView();
    } else {
        ZoomToDragged();
    }
    WaveView.ZoomPhase = 0;
}

void ReleaseFullZoom() {
    WaveView.ScaleBeforeApply = WaveView.Scale;
    if (!ClockIsBelowAPixel()) {
        UserError(AT_MAXIMUM);
    } else if (IsClick()) {
        ScaleToClock();
        ApplyView();
    } else {
        ZoomToDragged();
    }
    CommandState.CurrentCommand = COMMAND_ZOOM_IN;
}

void ReleaseZoomOut() {
    WaveView.ScaleBeforeApply = WaveView.Scale;
    if (!CanZoomOut()) {
        UserError(AT_MINIMUM);
        return;
    }
    WaveView.Scale--;
    ApplyView();
}

void ReleaseFullFit() {
    if (WaveView.ZoomPhase == TO_WHOLE_SPAN) {
        WaveView.ScaleBeforeFit = WaveView.Scale;
        ZoomToRange(WaveView.SpanStart, WaveView.SpanEnd);
        WaveView.ZoomPhase = BACK_TO_SCALE;
        return;
    }
    WaveView.ZoomPhase = TO_WHOLE_SPAN;
    if (!IsClick()) {
        ZoomToDragged();
        return;
    }
    WaveView.ScaleBeforeApply = WaveView.Scale;
    // The axis may have grown since.
    WaveView.Scale = std::min(WaveView.ScaleBeforeFit, MaxScale());
    ApplyView();
}

void CentreAtMiddle() {
    WaveView.ScaleBeforeApply = WaveView.Scale;
    WaveView.ZoomCentre = TimeAdd(WaveView.ViewLeft, PaneTime() / 2);
}

} // namespace

int ZoomIn() {
    if (IsPress()) {
        WaveView.ZoomAnchor = WaveView.ZoomCentre;
        WaveView.ZoomPhase = 1;
    }
    if (IsRelease()) ReleaseZoomIn();
    if (WaveView.ZoomPhase != 0) {
        ShowRangeBand();
        SetPrompt("Zoom In - Drag to Other Corner for Zoom Window");
    } else if (WaveView.Scale < MaxScale()) {
        SetPrompt("Zoom In - Pick Center Point or Corner of Zoom Window");
    } else {
        SetPrompt("Zoom In - At Maximum Scale");
    }
    return 0;
}

int FullZoom() {
    if (IsPress()) {
        WaveView.ZoomAnchor = WaveView.ZoomCentre;
        ShowRangeBand();
    }
    if (IsRelease()) ReleaseFullZoom();
    if (CommandState.CurrentCommand == COMMAND_FULL_SCALE) {
        SetPrompt("Full Zoom In - Pick Center Point");
    } else {
        SetPrompt(WaveView.Scale < MaxScale() ? "Zoom In - Pick Center Point" : "Zoom In - At Maximum Scale");
    }
    return 0;
}

int ZoomOut() {
    if (IsRelease()) ReleaseZoomOut();
    // At a positive scale the prompt has always said minimum, though a further click zooms out.
    bool further = WaveView.Scale <= 0 && CanReduce();
    SetPrompt(further ? "Zoom Out - Pick Center Point" : "Zoom Out - At Minimum Scale");
    return 0;
}

int PanView() {
    if (IsRelease()) {
        WaveView.ScaleBeforeApply = WaveView.Scale;
        ApplyView();
    }
    SetPrompt("Pan - Pick Center Point");
    return 0;
}

int FullFit() {
    if (IsPress()) {
        WaveView.ZoomAnchor = WaveView.ZoomCentre;
        if (WaveView.ZoomPhase == BACK_TO_SCALE) ShowRangeBand();
    }
    if (IsRelease()) ReleaseFullFit();
    SetPrompt(WaveView.ZoomPhase == BACK_TO_SCALE ? "Full Fit - Select New Center"
                                                  : "Full Fit - Click for Full Zoom");
    return 0;
}

void ZoomInStep() {
    CentreAtMiddle();
    if (WaveView.Scale >= MaxScale()) {
        UserError(AT_MAXIMUM);
        return;
    }
    WaveView.Scale++;
    ApplyView();
}

void ZoomOutStep() {
    CentreAtMiddle();
    // Meant as they stand: above 0 the next paint shows the new scale, and at 0 or below the step only
    // centres.
    if (WaveView.Scale > 0) {
        if (SpanExceedsMagnifiedPane()) WaveView.Scale--;
    } else if (CanReduce()) {
        ApplyView();
    }
}

void ZoomFit() {
    ZoomToRange(WaveView.SpanStart, WaveView.SpanEnd);
}

void ZoomAbout(int32_t x, bool in) {
    if (in ? WaveView.Scale >= MaxScale() : !CanZoomOut()) return;
    TimeVal fixed = TimeAdd(WaveView.ViewLeft, PixelsToTime(x));
    WaveView.ScaleBeforeApply = WaveView.Scale;
    WaveView.Scale += in ? 1 : -1;
    TimeVal left = TimeSub(fixed, PixelsToTime(x));
    WaveView.ZoomCentre = TimeAdd(left, PixelsToTime(WaveView.WavePaneWidth / 2));
    ApplyView();
}
