// The pixel sizes that follow from the font and the settings.
#pragma once

// Computes them once at start-up; they stay while the program runs. Raises the settings `WaveTextPadding` and
// `WaveGap` to the least that a wave needs.
void InitWaveMetrics();
