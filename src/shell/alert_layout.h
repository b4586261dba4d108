// Where everything in an alert box stands, worked out from the sizes of its texts. All measures are pixels.
#pragma once

struct AlertMeasures {
    int baseX, baseY;  // the dialog base units
    int lineWidths[3]; // measured text widths; only those of lines that are there count
    int lineHeight;    // height of the text control
    bool lineThere[3];
    int buttonWidths[3]; // measured label widths, before the room around them is added
    int buttonHeight;
    bool buttonThere[3];
    bool iconThere;
    int iconWidth, iconHeight;
};

struct AlertPlace {
    int x, y, width, height;
};

struct AlertLayout {
    int width, height; // of the dialog's client area
    AlertPlace lines[3];
    AlertPlace buttons[3];
    AlertPlace icon;
};

AlertLayout LayOutAlert(const AlertMeasures &measures);
