// NTMURRL, the suite's closed message service, as far as this program uses it. What stands behind these calls
// is our own stand-in, in which nobody else listens.
#pragma once

#include <cstdint>

// A string held by the service; 0 on failure.
using ServiceString = uint32_t;
ServiceString MRStrCreate(const char *text);
void MRStrDestroy(ServiceString string);
// Copies the text out, cut to `size` - 1 characters; nonzero on success.
int MRStrGetCopy(ServiceString string, char *buffer, int size);
// Sends to all applications.
void MRBroadcastMsg(uint32_t messageClass, uint32_t detail, uint32_t data);

// The stand-in's own: told each broadcast; null for none.
extern void (*BroadcastListener)(uint32_t messageClass, uint32_t detail, uint32_t data);
