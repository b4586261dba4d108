// Shows each bit of a bus as a row of its own.
#pragma once

// Appends a row for each member of the selected row's bus; members without a pattern become reference
// patterns.
void ExpandSelectedBus();
