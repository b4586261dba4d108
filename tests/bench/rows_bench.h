// The ground that the benchmarks of the display stand on.
#pragma once

// An empty store and row list, and panels that are only measured, all at their start values.
void OpenBenchStore();
void CloseBenchStore();
