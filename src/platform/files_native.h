// What the native implementation offers beyond files.h.
#pragma once

#include <cstddef>

// Asked by StartProcess instead of starting the program; null, the start value, starts it. Written by
// InitHeadless, so that no test opens an editor.
extern bool (*StartProcessHook)(const char *commandLine);

// Asked before each WriteBytes how many of its `size` bytes are written; null, the start value, writes all.
// For tests of what a crash or a full disk leaves. Written by whoever installs one.
extern size_t (*WriteLimitHook)(size_t size);
