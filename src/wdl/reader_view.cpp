#include "wdl/reader_view.h"

#include "store/name_index.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

using Ids = std::vector<uint16_t>;
using IdSet = std::bitset<MAX_PATTERNS>;

bool IsReference(const Pattern *pattern) {
    return pattern->kind() == PatternKind::Reference;
}

// A node that is made where another one has its bits looks at these. What was there beside a composite, or is
// a list with a sub-pattern in it, may have bits of nodes all the same.
bool MayShareWithNodes(const Pattern *pattern) {
    bool isList = *pattern->name() == '$' && strchr(pattern->name(), ',');
    return isList || (pattern->kind() == PatternKind::Composite && pattern->isBus());
}

// `seen` has the nested patterns that have been walked: a log may have one in several places.
void CollectUses(const Pattern *pattern, IdSet &seen, Ids &uses) {
    if (ReferenceItems[pattern->id] == 0) return;
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference() || seen.test(item.patternId())) continue;
        seen.set(item.patternId());
        const Pattern *target = PatternFromId(item.patternId());
        if (target->nameLength == 0) {
            CollectUses(target, seen, uses);
        } else {
            uses.push_back(target->id);
        }
    }
}

// The walk over the members of a pattern's name, and what it fills.
struct NameWalk {
    const Pattern *pattern;
    const char *member;
    Ids *rivals;
    std::vector<MemberFinds> *members;
    Finds *finds;
    uint32_t item = 0;
    uint32_t bit = 0; // of the item's slice, from the left
};

// A bit of a bus looks at the bus. A bus whose members are there, in buses or by themselves, looks at these.
int AddRivals(const char *member, void *context) {
    auto *walk = static_cast<NameWalk *>(context);
    walk->member = member;
    NameIndexVisitMember(
        member,
        [](Pattern *other, uint32_t, void *inner) {
            auto *at = static_cast<NameWalk *>(inner);
            // The text of a bit's name counts as it stands, so that "A[3:3]" is not "A[3]" here.
            bool counts =
                other->isBus() || (at->pattern->isBus() && std::string_view(other->name()) == at->member);
            if (other != at->pattern && !IsReference(other) && counts) at->rivals->push_back(other->id);
            return false;
        },
        walk);
    return 0;
}

Ids RivalsOf(const Pattern *pattern) {
    Ids rivals;
    NameWalk walk = {pattern, nullptr, &rivals, nullptr, nullptr};
    if (pattern->isBus()) {
        ForEachBusMember(pattern->name(), AddRivals, &walk);
    } else {
        AddRivals(pattern->name(), &walk);
    }
    std::sort(rivals.begin(), rivals.end());
    rivals.erase(std::unique(rivals.begin(), rivals.end()), rivals.end());
    return rivals;
}

Finds WhatIsFound(const char *name, NameWalk &walk) {
    Finds finds;
    walk.finds = &finds;
    NameIndexVisitMember(
        name,
        [](Pattern *other, uint32_t position, void *context) {
            auto *at = static_cast<NameWalk *>(context);
            if (IsReference(other) || (!at->pattern->isBus() && !other->isBus())) return false;
            at->finds->holders.push_back({other->id, (other->width - position) & 31});
            return false;
        },
        &walk);
    const Pattern *bearer = walk.pattern->isBus() ? FindPattern(name) : nullptr;
    if (!bearer) return finds;
    finds.bearer = bearer->id;
    finds.borne = {bearer->id, 0};
    if (IsReference(bearer) && bearer->itemCount != 0) {
        finds.borne = {bearer->item(0).patternId(), bearer->item(0).sliceOffset()};
    }
    return finds;
}

// After a recovery a bus may have fewer slices than members; the reader finds whatever it finds for the
// others.
int AddMember(const char *member, void *context) {
    auto *walk = static_cast<NameWalk *>(context);
    if (walk->item == walk->pattern->itemCount) return 1;
    const PatternItem &item = walk->pattern->item(walk->item);
    uint32_t width = item.sliceWidth() ? item.sliceWidth() : MAX_BUS_WIDTH;
    MemberFinds finds;
    finds.bit = {item.patternId(), item.sliceOffset() + width - 1 - walk->bit};
    if (++walk->bit == width) {
        walk->bit = 0;
        ++walk->item;
    }
    finds.asItStands = WhatIsFound(member, *walk);
    std::string name = OwnName(member);
    if (name != member) finds.byItself = WhatIsFound(name.c_str(), *walk);
    walk->members->push_back(std::move(finds));
    return 0;
}

} // namespace

bool ReadsAsComposite(const Pattern *pattern) {
    if (pattern->kind() == PatternKind::Plain || pattern->itemCount == 0) return false;
    return pattern->item(0).isReference() &&
           std::any_of(pattern->items() + 1, pattern->items() + pattern->itemCount,
                       [](const PatternItem &item) { return item.isReference(); });
}

bool LooksAt(const Pattern *reference, uint16_t target) {
    return std::any_of(reference->items(), reference->items() + reference->itemCount,
                       [target](const PatternItem &item) { return item.patternId() == target; });
}

ReaderView::ReaderView()
    : uses(HighestPatternId + 1u), rivals(HighestPatternId + 1u), members(HighestPatternId + 1u) {
    std::vector<const Pattern *> named;
    bool nodesMayShare = false;
    for (uint16_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id) || PatternFromId(id)->nameLength == 0) continue;
        named.push_back(PatternFromId(id));
        nodesMayShare = nodesMayShare || MayShareWithNodes(named.back());
    }
    for (const Pattern *pattern : named) {
        uint16_t id = pattern->id;
        if (IsReference(pattern)) {
            NameWalk walk = {pattern, nullptr, nullptr, &members[id], nullptr};
            ForEachBusMember(pattern->name(), AddMember, &walk);
            continue;
        }
        IdSet seen;
        CollectUses(pattern, seen, uses[id]);
        for (uint16_t target : uses[id]) used.set(target);
        composites.set(id, ReadsAsComposite(pattern));
        // What is wider than a bus can be is not made by a statement.
        bool mayHaveRivals = pattern->width <= MAX_BUS_WIDTH && (nodesMayShare || !pattern->hasProperties());
        if (mayHaveRivals) rivals[id] = RivalsOf(pattern);
    }
}

bool ReaderView::isPlain(uint16_t id) const {
    return !(hasRead(id) && isComposite(id));
}

bool ReaderView::comesBack(Statement statement) const {
    uint16_t id = statement.id;
    if (IsReference(PatternFromId(id))) {
        return !knows(id) &&
               std::all_of(members[id].begin(), members[id].end(),
                           [this](const MemberFinds &member) { return found(member) == member.bit; });
    }
    if (!knows(id) && !wouldBePlain(id)) return false;
    // A name that is not known is taken for a pattern of its own.
    return statement.isEmpty || std::all_of(uses[id].begin(), uses[id].end(), [this](uint16_t target) {
               return knows(target) || !IsReference(PatternFromId(target));
           });
}

bool ReaderView::wouldBePlain(uint16_t id) const {
    const Pattern *pattern = PatternFromId(id);
    return pattern->width <= MAX_BUS_WIDTH &&
           std::none_of(rivals[id].begin(), rivals[id].end(), [this, pattern](uint16_t rival) {
               return knows(rival) && (pattern->isBus() || isPlain(rival));
           });
}

// The bit of the newest of those that hold it; else the one that bears the name.
Holder ReaderView::found(const MemberFinds &member) const {
    for (const Finds *finds : {&member.asItStands, &member.byItself}) {
        Holder newest;
        for (const Holder &holder : finds->holders) {
            if (knows(holder.id) && isPlain(holder.id) && rank(holder.id) > rank(newest.id)) newest = holder;
        }
        if (newest.id != 0) return newest;
        if (knows(finds->bearer)) return finds->borne;
    }
    return {};
}

bool ReaderView::mayComeBack(uint16_t id) const {
    if (!IsReference(PatternFromId(id))) return mayBePlain(id);
    return std::all_of(members[id].begin(), members[id].end(),
                       [this, id](const MemberFinds &member) { return mayBeFound(id, member); });
}

// Whatever else is known, the use of a name makes a pattern of its own.
bool ReaderView::mayBePlain(uint16_t id) const {
    if (used.test(id)) return true;
    const Pattern *pattern = PatternFromId(id);
    return pattern->width <= MAX_BUS_WIDTH &&
           std::none_of(rivals[id].begin(), rivals[id].end(), [this, pattern](uint16_t rival) {
               // A composite gives the names of its bits free when it is defined.
               return knows(rival) && (pattern->isBus() || !isComposite(rival));
           });
}

bool ReaderView::mayBeFound(uint16_t reference, const MemberFinds &member) const {
    for (const Finds *finds : {&member.asItStands, &member.byItself}) {
        if (mayBeHeld(reference, *finds, member.bit)) return true;
        if (isHeldForGood(*finds)) return false;
        if (finds->bearer != 0 && finds->borne == member.bit) return true;
    }
    return false;
}

bool ReaderView::isHeldForGood(const Finds &finds) const {
    return std::any_of(finds.holders.begin(), finds.holders.end(),
                       [this](Holder holder) { return knows(holder.id) && !isComposite(holder.id); });
}

// True if the bit's pattern holds it, and nothing newer does so for good, or will before the reference
// pattern can be made.
bool ReaderView::mayBeHeld(uint16_t reference, const Finds &finds, Holder bit) const {
    const std::vector<Holder> &holders = finds.holders;
    if (std::find(holders.begin(), holders.end(), bit) == holders.end() || !isPlain(bit.id)) return false;
    if (!knows(bit.id)) return true;
    return std::none_of(holders.begin(), holders.end(), [this, reference, bit](Holder other) {
        if (!knows(other.id)) return LooksAt(PatternFromId(reference), other.id);
        return !isComposite(other.id) && rank(other.id) > rank(bit.id);
    });
}

void ReaderView::make(uint16_t id) {
    if (knows(id)) return;
    makings.push_back(id);
    made[id] = static_cast<uint16_t>(makings.size());
}

void ReaderView::read(Statement statement) {
    statements.push_back(statement);
    madeBefore.push_back(makings.size());
    make(statement.id);
    if (statement.isEmpty) return;
    defined.set(statement.id);
    for (uint16_t target : uses[statement.id]) make(target);
}

void ReaderView::unreadLast() {
    for (; makings.size() > madeBefore.back(); makings.pop_back()) made[makings.back()] = 0;
    if (!statements.back().isEmpty) defined.reset(statements.back().id);
    statements.pop_back();
    madeBefore.pop_back();
}
