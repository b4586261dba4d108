#include "shell/frame_layout.h"

#include <algorithm>

FrameLayout LayOutFrame(const FrameMeasures &m) {
    int32_t bottom = std::max(m.clientHeight - m.promptHeight, 0);
    int32_t top = std::min(m.rulerHeight, bottom);
    int32_t waves = m.nameColumnWidth + SPLITTER_WIDTH;
    return {
        {0, 0, m.clientWidth, m.rulerHeight},
        {0, m.rulerHeight, m.nameColumnWidth, m.rulerHeight + bottom - top},
        {waves, m.rulerHeight, std::max(m.clientWidth, waves), m.rulerHeight + bottom - top},
        {0, m.clientHeight - m.promptHeight, m.clientWidth, m.clientHeight},
    };
}

bool OnSplitter(int32_t x, int32_t nameColumnWidth) {
    return x >= nameColumnWidth && x <= nameColumnWidth + SPLITTER_WIDTH;
}

int32_t SplitterAt(int32_t x, int32_t before, int32_t clientWidth, int32_t scrollArrowWidth) {
    if (clientWidth < 3 * scrollArrowWidth) return before;
    return std::clamp(x, scrollArrowWidth, clientWidth - 2 * scrollArrowWidth);
}
