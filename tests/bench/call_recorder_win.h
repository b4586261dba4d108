// Records the drawing calls of a paint message and replays them, nothing else: what a paint costs at least.
#pragma once

#include <cstddef>
#include <windows.h>

// Redirects this program's drawing calls to the recorder and back, by its table of imports. In between only
// what is called between BeginPaint and EndPaint counts, and a change of pen, brush, font or colour that
// changes nothing is left out.
void StartRecording();
void StopRecording();

// Forgets all calls.
void ClearRecorded();
size_t RecordedCalls();
// Calls again what was recorded for a window: on `memory` what went to memory, and on `context` what went
// from there to the window.
void ReplayRecorded(HWND window, HDC context, HDC memory);
