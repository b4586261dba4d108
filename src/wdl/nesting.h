// Keeps the references of a document within bounds while it is read: none leads back to where it comes from,
// and no more than MAX_NESTING follow one another.
#pragma once

#include <cstdint>

enum class NestingFault { None, Circle, TooDeep };

// Forgets everything.
void NestingReset();
// Notes that `pattern` will refer to `target`. `statement` is the pattern whose statement is being read, in
// which `pattern` is the pattern itself or one nested in it.
NestingFault NoteReference(uint16_t pattern, uint16_t target, uint16_t statement);
