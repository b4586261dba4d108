// The rules of signal names: the canonical form, the members of a bus range, trimming and inversion marks.
#pragma once

#include <cstdint>
#include <string_view>

// The characters of a name, as the suite's settings may change them.
struct NameCharacters {
    char BusOpenChar;
    char BusCloseChar;
    char NameBarChar;
    char HierarchyChar;
};
// Written by the project settings; its start values are "[", "]", "_" and ".".
extern NameCharacters NameChars;

// Room for one name, its NUL included; names come from lines of at most 1021 characters, and a closing
// bracket may be added.
constexpr int NAME_SIZE = 1032;

// Rewrites `name` in place. The result is never longer than the input but for a closing bracket, for which
// the caller leaves one byte of room.
void CanonicalizeName(char *name);

// Calls `callback` for each single name of the canonical `text`, until it answers nonzero, and answers that
// value, or 0. `context` is handed through.
using MemberCallback = int (*)(const char *member, void *context);
int ForEachBusMember(const char *text, MemberCallback callback, void *context);

// The number of single names in `text`, without visiting them; at most 4294967295.
uint32_t CountBusMembers(const char *text);

// The position of `member` among the single names of `text`, counted from 1, or 0 if it is none of them.
// Compares with case. It answers what a walk with ForEachBusMember would, without the walk.
uint32_t BusMemberPosition(const char *text, std::string_view member);

// What the single names of one list element have in common: all up to and with the opening bracket, and the
// bounds of the numbers behind it; or a plain name, with bounds of 0.
struct NameStem {
    std::string_view text;
    int64_t low;
    int64_t high;
};
// Calls `callback` with the stem of each list element of `text`. For every member there is one with the text
// of its own stem, and bounds around its own.
void ForEachNameStem(const char *text, void (*callback)(const NameStem &stem, void *context), void *context);
// The stem of a single name.
NameStem MemberStem(std::string_view member);

// Takes trailing characters at or below blank off `text`, the first character excepted, and leading blanks.
void TrimName(char *text);

// Copies `name` to `out` (at least as large) without its inversion marks; `inverted` tells if there were any.
void StripInversionMarks(const char *name, char *out, bool &inverted);

// True if both texts are equal but for the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
