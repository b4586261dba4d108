// The commands that change what stretch of time is shown: five that are told a place with the mouse, and
// three that act at once.
#pragma once

#include "store/time_value.h"

// Each is called for a start, a press and a release of the left button, as CommandState.CommandPhase tells,
// with the time under the mouse in ZoomCentre, and sets the prompt. A refusal is told in a message box and
// leaves the view as it is. They return 0: the command stays in force.
int ZoomIn();
// To where one period of the master clock is a pixel; Zoom In goes on from there.
int FullZoom();
int ZoomOut();
int PanView();
// Shows the whole axis, and with the next click the former scale.
int FullFit();

void ZoomInStep();
void ZoomOutStep();
// Shows the whole axis.
void ZoomFit();

// Zooms by one step in, or out, so that the time at pixel `x` of the wave pane stays where it is, as far as
// the axis lets it. Does nothing at the limits of the scale.
void ZoomAbout(int32_t x, bool in);
