#include "edit/expand_bus.h"

#include "display/composition.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/buses.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <cstdio>
#include <string>

namespace {

// Answers nonzero to end the walk.
int ShowMember(const char *member, void *) {
    char name[NAME_SIZE];
    snprintf(name, sizeof name - 1, "%s", member);
    if (!FindOrCreateNode(name, 0)) return 1;
    // With the list full the first refusal is said, and it is the last one.
    bool full = WaveView.RowCount >= MAX_ROWS;
    ShowWaveByName(member);
    return full;
}

} // namespace

void ExpandSelectedBus() {
    if (WaveView.SelectRow >= WaveView.RowCount) return;
    WaveView.SelectActive = false;
    // A copy, as the records move while the members are made.
    std::string name = PatternFromId(WaveRows[WaveView.SelectRow].PatternId)->name();
    ForEachBusMember(name.c_str(), ShowMember, nullptr);
    // The new rows have been named, but not drawn.
    RepaintChanged(true);
}
