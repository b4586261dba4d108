#include "store/name_index.h"

#include "store/pattern_store.h"
#include "store/signal_name.h"
#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
// Ids by text, in rising order.
using IdsByText = std::unordered_map<std::string, std::vector<uint16_t>, TextHash, std::equal_to<>>;

// The whole names in lower case, and the stems of the elements of all names. An entry is a hint: every find
// looks at the record itself, as records may go without their entries when a load fails.
IdsByText idsByName;
IdsByText idsByStem;

std::string LowerText(std::string_view text) {
    std::string lower(text);
    for (char &c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    }
    return lower;
}

void AddId(IdsByText &ids, std::string_view text, uint16_t id) {
    auto found = ids.find(text);
    if (found == ids.end()) found = ids.emplace(std::string(text), std::vector<uint16_t>()).first;
    std::vector<uint16_t> &list = found->second;
    auto place = std::lower_bound(list.begin(), list.end(), id);
    if (place == list.end() || *place != id) list.insert(place, id);
}

void RemoveId(IdsByText &ids, std::string_view text, uint16_t id) {
    auto found = ids.find(text);
    if (found == ids.end()) return;
    std::erase(found->second, id);
    if (found->second.empty()) ids.erase(found);
}

} // namespace

void NameIndexClear() {
    idsByName.clear();
    idsByStem.clear();
}

void NameIndexAdd(const Pattern *record) {
    if (*record->name() == '\0') return;
    AddId(idsByName, LowerText(record->name()), record->id);
    uint16_t id = record->id;
    ForEachNameStem(
        record->name(),
        [](std::string_view stem, void *context) {
            AddId(idsByStem, stem, *static_cast<uint16_t *>(context));
        },
        &id);
}

void NameIndexRemove(const Pattern *record) {
    if (*record->name() == '\0') return;
    RemoveId(idsByName, LowerText(record->name()), record->id);
    uint16_t id = record->id;
    ForEachNameStem(
        record->name(),
        [](std::string_view stem, void *context) {
            RemoveId(idsByStem, stem, *static_cast<uint16_t *>(context));
        },
        &id);
}

uint16_t NameIndexFind(std::string_view name) {
    auto found = idsByName.find(LowerText(name));
    if (name.empty() || found == idsByName.end()) return 0;
    const std::vector<uint16_t> &list = found->second;
    for (auto id = list.rbegin(); id != list.rend(); ++id) {
        if (PatternInUse(*id) && EqualIgnoringCase(PatternFromId(*id)->name(), name)) return *id;
    }
    return 0;
}

bool NameIndexVisitMember(const char *member, MemberVisit visit, void *context) {
    auto found = idsByStem.find(MemberStem(member));
    if (found == idsByStem.end()) return false;
    const std::vector<uint16_t> &list = found->second;
    for (auto id = list.rbegin(); id != list.rend(); ++id) {
        if (!PatternInUse(*id)) continue;
        Pattern *pattern = PatternFromId(*id);
        uint32_t position = BusMemberPosition(pattern->name(), member);
        if (position != 0 && visit(pattern, position, context)) return true;
    }
    return false;
}
