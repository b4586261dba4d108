#include "display/ruler.h"
#include "display/viewport.h"
#include <cstdio>
#include <cstring>

namespace {

// Pixels of an ordinary screen.
constexpr int32_t LEAST_TICK_DISTANCE = 8;
constexpr int32_t LEAST_LABEL_DISTANCE = 100;
constexpr TimeVal MINOR_PER_MAJOR = 10;

TimeVal ChooseMinorStep() {
    TimeVal step = 1;
    int32_t least = OnThisScreen(LEAST_TICK_DISTANCE);
    for (int i = 0; TimeToPixels(step) < least && step < TIME_FOREVER; i++) {
        step = i % 3 == 1 ? TimeMul(TimeDiv(step, 2), 5) : TimeMul(step, 2);
    }
    return step;
}

// The first multiple of `step` that is not before `t`; false if there is none.
bool FirstTick(TimeVal t, TimeVal step, TimeVal &first) {
    first = t - TimeMod(t, step);
    if (first == t) return true;
    if (first > TIME_FOREVER - step) return false;
    first += step;
    return true;
}

} // namespace

RulerSteps ChooseRulerSteps() {
    RulerSteps steps;
    steps.minor = ChooseMinorStep();
    steps.major = TimeMul(steps.minor, MINOR_PER_MAJOR);
    bool crowded = TimeToPixels(steps.major) < OnThisScreen(LEAST_LABEL_DISTANCE);
    steps.label = crowded ? TimeMul(steps.major, 2) : steps.major;
    return steps;
}

void FormatRulerLabel(TimeVal t, char *label) {
    snprintf(label, TIME_TEXT_SIZE, "%s", TimeFormat(t));
    label[strcspn(label, " ")] = 0;
    if (!strchr(label, '.')) return;
    size_t length = strlen(label);
    while (label[length - 1] == '0') length--;
    if (label[length - 1] == '.') length--;
    label[length] = 0;
}

void ForEachRulerTick(const RulerSteps &steps, RulerTickVisit visit, void *context) {
    TimeVal last =
        TimeMin(TimeAdd(WaveView.ViewLeft, PixelsToTime(WaveView.WavePaneWidth)), WaveView.SpanEnd);
    TimeVal t;
    if (!FirstTick(WaveView.ViewLeft, steps.minor, t)) return;
    char label[TIME_TEXT_SIZE];
    while (t <= last) {
        bool labelled = TimeMod(t, steps.label) == 0;
        if (labelled) FormatRulerLabel(t, label);
        visit({PixelOf(t), TimeMod(t, steps.major) == 0, labelled ? label : nullptr}, context);
        if (t > TIME_FOREVER - steps.minor) break;
        t += steps.minor;
    }
}
