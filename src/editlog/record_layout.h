// How a record's payload is laid out: two 16-bit fields, then those of its kind. Sizes in bytes.
#pragma once

#include <cstddef>

constexpr size_t RECORD_KIND = 0;
constexpr size_t RECORD_PATTERN = 2; // the old unit code in a record of timing

constexpr size_t RECORD_SIZE_LONG = 16;   // two words of 32 bits and the item, or a reference
constexpr size_t RECORD_SIZE_SHORT = 10;  // two words of 16 bits and the item
constexpr size_t RECORD_SIZE_FORMAT = 8;  // two bytes and the item
constexpr size_t RECORD_SIZE_PARAMS = 24; // the node's parameters, each old and new
constexpr size_t RECORD_SIZE_RENAME = 6;  // with the lengths of both names added
constexpr size_t RECORD_SIZE_TIMING = 24;
constexpr size_t RECORD_SIZE_PATTERN = 8; // with the length of the name added; one byte more than it fills
constexpr size_t RECORD_SIZE_ROW = 6;
