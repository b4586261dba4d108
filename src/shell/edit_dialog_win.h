// The keys of the waves while the floating dialog has the keyboard.
#pragma once

#include <windows.h>

// With Keys To Waves the keys of the table `keys` act on the waves from within the dialog, too, which gives
// the keyboard back to them. True if the message was such a key.
bool TakenByWaves(HACCEL keys, MSG *message);
