#include "bench/rows_bench.h"

#include "config/settings.h"
#include "display/renderer.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include <cstdlib>

void OpenBenchStore() {
    InitHeadless();
    InitHeadlessSurface();
    InitSettings();
    InitWaveView();
    InitViewport();
    BuildLevelColour();
    if (!AllocWaveRows() || !PatternStoreInit()) abort();
    LoadStateTables();
    InitWaveMetrics();
    Headless.panesExist = true;
}

void CloseBenchStore() {
    PatternStoreFree();
    FreeWaveRows();
}
