#include "store/name_index.h"

#include "config/settings.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

// Ids by a hash of 32 bits. An entry is a hint: every find looks at the record itself, as two texts may have
// one hash, and as records may go without their entries when a load fails.
class HintTable {
public:
    struct Entry {
        uint32_t hash;
        uint32_t next; // in the chain, counted from 1; 0 at its end
        uint16_t id;
    };

    void clear() {
        heads.fill(0);
        entries.clear();
        freeEntries.clear();
    }

    // Chains go from the highest id down.
    void add(uint32_t hash, uint16_t id) {
        uint32_t *link = &heads[hash % heads.size()];
        while (*link != 0 && at(*link).id > id) link = &at(*link).next;
        Entry entry = {hash, *link, id};
        if (freeEntries.empty()) {
            // First the link, which may itself lie in the entries.
            *link = static_cast<uint32_t>(entries.size() + 1);
            entries.push_back(entry);
        } else {
            *link = freeEntries.back();
            freeEntries.pop_back();
            at(*link) = entry;
        }
    }

    // Takes an entry of the id out of the hash's chain; it is all one which, as all of an id's go together.
    void remove(uint32_t hash, uint16_t id) {
        uint32_t *link = &heads[hash % heads.size()];
        while (*link != 0 && at(*link).id != id) link = &at(*link).next; // never: it has been added
        if (*link == 0) return;                                          // never: it has been added
        freeEntries.push_back(*link);
        *link = at(*link).next;
    }

    // The next entry of the hash, from the highest id down; null behind the last.
    const Entry *first(uint32_t hash) const { return withHash(heads[hash % heads.size()], hash); }
    const Entry *next(const Entry *entry) const { return withHash(entry->next, entry->hash); }

private:
    Entry &at(uint32_t link) { return entries[link - 1]; }
    const Entry *withHash(uint32_t link, uint32_t hash) const {
        while (link != 0) {
            const Entry &entry = entries[link - 1];
            if (entry.hash == hash) return &entry;
            link = entry.next;
        }
        return nullptr;
    }

    std::array<uint32_t, 8192> heads = {};
    std::vector<Entry> entries;
    std::vector<uint32_t> freeEntries;
};

// The whole names in lower case, and the stems of the elements of all names with a group of their numbers.
HintTable idsByName;
HintTable idsByStem;
// The separator of levels that the stems were cut with.
char stemHierChar = 0;

// Numbers of a range are in groups of 32, so that a bus is in a few groups and a group has a few buses. Very
// wide ranges, which no node has, are in a group of their own.
constexpr int GROUP_SHIFT = 5;
constexpr int64_t MAX_GROUPS = 40;
constexpr int64_t WIDE_GROUP = INT64_MIN;

uint64_t EightCharacters(const char *text) {
    uint64_t piece;
    memcpy(&piece, text, sizeof piece);
    return piece;
}

uint64_t FewCharacters(std::string_view text) {
    uint64_t piece = 0;
    for (char c : text) piece = piece << 8 | static_cast<uint8_t>(c);
    return piece;
}

// Mixes eight characters at a time. With `caseBits` set in each of them, letters of both cases are one.
uint32_t HashText(std::string_view text, uint64_t caseBits, uint64_t start) {
    constexpr uint64_t factor = 0x9E3779B97F4A7C15u;
    constexpr size_t step = sizeof(uint64_t);
    uint64_t hash = start ^ text.size();
    for (size_t i = 0; i + step <= text.size(); i += step) {
        hash = (hash ^ (EightCharacters(&text[i]) | caseBits)) * factor;
        hash ^= hash >> 32;
    }
    // The last few, with some of those before them where there are enough.
    uint64_t rest = text.size() < step ? FewCharacters(text) : EightCharacters(text.end() - step);
    hash = (hash ^ (rest | caseBits)) * factor;
    hash ^= hash >> 32;
    return static_cast<uint32_t>(hash * factor >> 32); // the upper half hangs on all characters
}

uint32_t HashIgnoringCase(std::string_view text) {
    return HashText(text, 0x2020202020202020u, 0);
}

uint32_t HashOfGroup(std::string_view stem, int64_t group) {
    return HashText(stem, 0, static_cast<uint64_t>(group) * 0x9E3779B97F4A7C15u);
}

bool BearsName(const Pattern *pattern, std::string_view name) {
    const char *own = pattern->name();
    if (pattern->nameLength <= name.size() || own[name.size()] != '\0') return false;
    return memcmp(own, name.data(), name.size()) == 0 || EqualIgnoringCase({own, name.size()}, name);
}

template <class Action>
void ForEachGroup(const NameStem &stem, Action action) {
    int64_t low = stem.low >> GROUP_SHIFT;
    int64_t high = stem.high >> GROUP_SHIFT;
    if (high - low >= MAX_GROUPS) low = high = WIDE_GROUP;
    for (int64_t group = low; group <= high; ++group) action(HashOfGroup(stem.text, group));
}

void AddStems(const Pattern *record) {
    uint16_t id = record->id;
    ForEachNameStem(
        record->name(),
        [](const NameStem &stem, void *context) {
            uint16_t patternId = *static_cast<uint16_t *>(context);
            ForEachGroup(stem, [patternId](uint32_t hash) { idsByStem.add(hash, patternId); });
        },
        &id);
}

void RemoveStems(const Pattern *record) {
    uint16_t id = record->id;
    ForEachNameStem(
        record->name(),
        [](const NameStem &stem, void *context) {
            uint16_t patternId = *static_cast<uint16_t *>(context);
            ForEachGroup(stem, [patternId](uint32_t hash) { idsByStem.remove(hash, patternId); });
        },
        &id);
}

// Which brackets make a range hangs on the separator of levels, which may come after the names.
void FollowHierChar() {
    if (stemHierChar == Settings.HierChar) return;
    stemHierChar = Settings.HierChar;
    idsByStem.clear();
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (PatternInUse(id)) AddStems(PatternFromId(id));
    }
}

} // namespace

void NameIndexClear() {
    idsByName.clear();
    idsByStem.clear();
    stemHierChar = Settings.HierChar;
}

void NameIndexAdd(const Pattern *record) {
    if (*record->name() == '\0') return;
    FollowHierChar();
    idsByName.add(HashIgnoringCase(record->name()), record->id);
    AddStems(record);
}

void NameIndexRemove(const Pattern *record) {
    if (*record->name() == '\0') return;
    FollowHierChar();
    idsByName.remove(HashIgnoringCase(record->name()), record->id);
    RemoveStems(record);
}

uint16_t NameIndexFind(std::string_view name) {
    if (name.empty()) return 0;
    const HintTable::Entry *entry = idsByName.first(HashIgnoringCase(name));
    for (; entry; entry = idsByName.next(entry)) {
        if (PatternInUse(entry->id) && BearsName(PatternFromId(entry->id), name)) return entry->id;
    }
    return 0;
}

bool NameIndexVisitMember(const char *member, MemberVisit visit, void *context) {
    FollowHierChar();
    NameStem stem = MemberStem(member);
    const HintTable::Entry *near = idsByStem.first(HashOfGroup(stem.text, stem.low >> GROUP_SHIFT));
    const HintTable::Entry *wide = idsByStem.first(HashOfGroup(stem.text, WIDE_GROUP));
    uint16_t last = 0;
    while (near || wide) {
        const HintTable::Entry *&newest = !wide || (near && near->id > wide->id) ? near : wide;
        uint16_t id = newest->id;
        newest = idsByStem.next(newest);
        // A name may have a stem twice.
        if (id == last || !PatternInUse(id)) continue;
        last = id;
        Pattern *pattern = PatternFromId(id);
        uint32_t position = BusMemberPosition(pattern->name(), member);
        if (position != 0 && visit(pattern, position, context)) return true;
    }
    return false;
}
