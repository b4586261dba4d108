#include "shell/alert_layout.h"
#include <algorithm>

namespace {

constexpr int CONTROLS = 3; // lines, and buttons

int CountThere(const bool (&there)[CONTROLS]) {
    return static_cast<int>(std::count(there, there + CONTROLS, true));
}

int Widest(const int (&widths)[CONTROLS], const bool (&there)[CONTROLS]) {
    int widest = 0;
    for (int i = 0; i < CONTROLS; ++i)
        if (there[i]) widest = std::max(widest, widths[i]);
    return widest;
}

} // namespace

// Horizontal sizes count in quarters, vertical ones in eighths of the base units, as in a dialog template.
AlertLayout LayOutAlert(const AlertMeasures &m) {
    AlertLayout layout = {};
    const int lineCount = CountThere(m.lineThere);
    const int buttonCount = CountThere(m.buttonThere);
    const int marginX = 6 * m.baseX / 4, marginY = 6 * m.baseY / 8;
    const int iconGap = 8 * m.baseX / 4, lineGap = 2 * m.baseY / 8;

    // The lower one of text and icon is centred against the other.
    int textHeight = lineCount ? m.lineHeight * lineCount + (lineCount - 1) * 2 * m.baseY / 8 : 0;
    int iconPad = 0, textPad = 0;
    if (m.iconThere && textHeight >= m.iconHeight)
        iconPad = textHeight - m.iconHeight;
    else if (m.iconThere)
        textPad = m.iconHeight - textHeight;
    textHeight += textPad;
    layout.height = textHeight + 18 * m.baseY / 8 + m.buttonHeight;

    // The same for the text block and the row of buttons.
    int width = Widest(m.lineWidths, m.lineThere);
    if (m.iconThere) width += iconGap + m.iconWidth;
    const int buttonWidth = Widest(m.buttonWidths, m.buttonThere) + 12 * m.baseX / 4;
    const int rowWidth = buttonCount ? buttonCount * buttonWidth + (buttonCount - 1) * m.baseX : 0;
    const int spare = std::max(width - rowWidth, 0);
    const int leftPad = std::max(rowWidth - width, 0);
    width += leftPad;
    layout.width = width + 12 * m.baseX / 4;

    int x = marginX + leftPad / 2;
    if (m.iconThere) {
        layout.icon = {x, marginY + iconPad / 2, m.iconWidth, m.iconHeight};
        x += m.iconWidth + iconGap;
    }
    int y = marginY + textPad / 2;
    for (int i = 0; i < CONTROLS; ++i) {
        if (!m.lineThere[i]) continue;
        layout.lines[i] = {x, y, m.lineWidths[i], m.lineHeight};
        y += m.lineHeight + lineGap;
    }
    // `y` stands a line gap below the text, which is part of the space above the buttons.
    y += 4 * m.baseY / 8 + (textPad + 1) / 2;
    const int gap = spare / (buttonCount + 1);
    x = marginX + gap;
    for (int i = 0; i < CONTROLS; ++i) {
        if (!m.buttonThere[i]) continue;
        layout.buttons[i] = {x, y, buttonWidth, m.buttonHeight};
        x += m.baseX + gap + buttonWidth;
    }
    return layout;
}
