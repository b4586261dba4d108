// Reads the numbers of a stimulus file, 32 bits wide on every platform. Blanks and a sign may stand in front;
// a negative number wraps; one beyond 32 bits reads as 4294967295.
#pragma once

#include <cstdint>

// Both read as far as the digits go, and store nothing if there are none; then they return false.
bool ReadDecimal(const char *text, uint32_t &number);
bool ReadHexadecimal(const char *text, uint32_t &number);
