// What the native implementation offers beyond files.h.
#pragma once

// Asked by StartProcess instead of starting the program; null, the start value, starts it. Written by
// InitHeadless, so that no test opens an editor.
extern bool (*StartProcessHook)(const char *commandLine);
