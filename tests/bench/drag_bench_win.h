// Dragging an edge in the real window.
#pragma once

// Microseconds: to paint a row, and to drag an edge in it by a pixel, between its neighbours and with the
// wave's tail behind it.
struct DragFigures {
    double row, drag, tail;
};
// The least of so many rounds. The window shows the benchmark's document at a count for each pixel. False
// with a message if the edge does not follow the mouse.
bool MeasureDrags(int rounds, DragFigures &least);
