#include "wdl/statement_order.h"

#include "edit/buses.h"
#include "store/name_index.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <algorithm>
#include <bitset>
#include <cstring>
#include <string_view>

namespace {

using IdSet = std::bitset<MAX_PATTERNS>;

// How many patterns may each be pulled forward by the next. References alone make no longer chain.
constexpr uint32_t MAX_PULLED = MAX_NESTING + 1;

bool IsReference(const Pattern *pattern) {
    return pattern->kind() == PatternKind::Reference;
}

// A walk over the patterns that share a member with one of them.
struct Sharing {
    bool (*visit)(const Pattern *other, const char *member, void *context);
    void *context;
    const char *member;
};

int VisitHolders(const char *member, void *context) {
    auto *sharing = static_cast<Sharing *>(context);
    sharing->member = member;
    return NameIndexVisitMember(
        member,
        [](Pattern *other, uint32_t, void *inner) {
            auto *at = static_cast<Sharing *>(inner);
            return at->visit(other, at->member, at->context);
        },
        sharing);
}

// Calls `visit` for each of them, `pattern` itself among them, until it answers true; returns whether it did.
// What is no bus is looked for by its whole name, as the reader does: "A[3:3]" is not "A[3]".
bool VisitSharing(const Pattern *pattern, Sharing sharing) {
    if (pattern->width > MAX_BUS_WIDTH) return false;
    if (!pattern->isBus()) return VisitHolders(pattern->name(), &sharing) != 0;
    return ForEachBusMember(pattern->name(), VisitHolders, &sharing) != 0;
}

// A walk over the members of a reference pattern, beside the bits that it looks at.
struct Looking {
    const Pattern *looker;
    uint16_t target;
    uint32_t item = 0;
    uint32_t bit = 0; // of the item's slice, from the left
};

// 1 if the reader must look for this member among the bits of the target: nothing else leads there.
int NeedsTarget(const char *member, void *context) {
    auto *at = static_cast<Looking *>(context);
    if (at->item == at->looker->itemCount) return 0;
    const PatternItem &item = at->looker->item(at->item);
    uint32_t width = item.sliceWidth() ? item.sliceWidth() : MAX_BUS_WIDTH;
    uint32_t offset = item.sliceOffset() + width - 1 - at->bit;
    if (++at->bit == width) {
        at->bit = 0;
        ++at->item;
    }
    if (item.patternId() != at->target) return 0;
    bool isBorne = at->looker->isBus() && FindBit(member) == Holder{at->target, offset};
    return isBorne ? 0 : 1;
}

bool LooksAt(const Pattern *pattern, uint16_t target) {
    auto leadsThere = [target](const PatternItem &item) { return item.patternId() == target; };
    if (!IsReference(pattern) || pattern->nameLength == 0) return false;
    if (std::none_of(pattern->items(), pattern->items() + pattern->itemCount, leadsThere)) return false;
    Looking at = {pattern, target};
    return ForEachBusMember(pattern->name(), NeedsTarget, &at) != 0;
}

class Ordering {
public:
    explicit Ordering(StatementOrder &result) : order(result) {}

    void run() {
        findUsed();
        forEachNamed(false);
        placeWaiting();
        forEachNamed(true);
    }

private:
    void findUsed() {
        for (uint32_t id = 1; id <= HighestPatternId; ++id) {
            if (!PatternInUse(id)) continue;
            const Pattern *pattern = PatternFromId(id);
            nodesMayShare = nodesMayShare || MayShareWithNodes(pattern);
            if (ReferenceItems[id] == 0) continue;
            IdSet &set = IsReference(pattern) ? sliced : used;
            for (uint32_t i = 0; i < pattern->itemCount; ++i) {
                const PatternItem &item = pattern->item(i);
                if (item.isReference()) set.set(item.patternId());
            }
        }
    }

    // A node that is made where another one has its bits looks at these. What was there beside a composite,
    // or is a list with a sub-pattern in it, may have bits of nodes all the same.
    static bool MayShareWithNodes(const Pattern *pattern) {
        bool isList = *pattern->name() == '$' && strchr(pattern->name(), ',');
        return isList || (pattern->kind() == PatternKind::Composite && pattern->isBus());
    }

    void forEachNamed(bool unusedReferences) {
        for (uint16_t id = 1; id <= HighestPatternId; ++id) {
            if (!PatternInUse(id)) continue;
            const Pattern *pattern = PatternFromId(id);
            if (pattern->nameLength == 0) continue;
            if ((IsReference(pattern) && !used.test(id)) == unusedReferences) place(id);
        }
    }

    void place(uint16_t id) {
        if (visited.test(id) || depth == MAX_PULLED) return;
        visited.set(id);
        ++depth;
        const Pattern *pattern = PatternFromId(id);
        if (IsReference(pattern)) {
            placeBearers(pattern);
        } else if (!known.test(id)) {
            placeComposites(pattern);
        }
        if (sliced.test(id) && pattern->isBus() && ReadsAsComposite(pattern)) placeLookers(pattern);
        placeNeeded(pattern);
        --depth;
        if (IsReference(pattern) || known.test(id) || readsAsItIs(pattern)) {
            emit(pattern);
        } else {
            waiting.set(id);
        }
    }

    // The composites whose names would turn the bit into a reference.
    void placeComposites(const Pattern *bit) {
        if (bit->isBus()) return;
        newest = MAX_PATTERNS;
        placeAll(bit, [](const Pattern *other, const char *, void *context) {
            auto *self = static_cast<Ordering *>(context);
            if (!ReadsAsComposite(other) || IsReference(other) || !other->isBus()) return false;
            if (self->visited.test(other->id)) return false;
            self->chosen = other->id;
            return true;
        });
    }

    // The bits that bear a member's name in another case, and look at others themselves.
    void placeBearers(const Pattern *bus) {
        if (!bus->isBus()) return;
        auto findBearer = [](const char *member, void *context) {
            auto isPlain = [](Pattern *holder, uint32_t, void *) {
                return holder->kind() == PatternKind::Plain;
            };
            if (NameIndexVisitMember(member, isPlain, nullptr)) return 0; // it is not looked for by its name
            const Pattern *bearer = FindPattern(member);
            return static_cast<int>(bearer && IsReference(bearer) &&
                                    static_cast<Ordering *>(context)->choose(bearer));
        };
        while (ForEachBusMember(bus->name(), findBearer, this) != 0) {
            place(chosen);
            if (!visited.test(chosen)) return; // too deep
        }
    }

    // The reference patterns that look at bits of the composite.
    void placeLookers(const Pattern *composite) {
        if (!known.test(composite->id) && readsAsItIs(composite)) addStatement(composite, true);
        for (uint16_t id = 1; id <= HighestPatternId; ++id) {
            if (PatternInUse(id) && LooksAt(PatternFromId(id), composite->id)) place(id);
        }
    }

    // What has to be known when the items are read, and the bits that a reference pattern looks at.
    void placeNeeded(const Pattern *pattern) {
        if (ReferenceItems[pattern->id] == 0) return;
        for (uint32_t i = 0; i < pattern->itemCount; ++i) {
            const PatternItem &item = pattern->item(i);
            if (!item.isReference()) continue;
            const Pattern *target = PatternFromId(item.patternId());
            if (target->nameLength == 0) {
                placeNeeded(target);
            } else if (IsReference(pattern) || IsReference(target)) {
                place(target->id);
            } else if (!known.test(target->id) && !visited.test(target->id)) {
                placeComposites(target);
                placeOlder(target);
            }
        }
    }

    // The older patterns that the use of this one would turn into references.
    void placeOlder(const Pattern *later) {
        if (later->width > MAX_BUS_WIDTH) return placeOlderThanWide(later);
        newest = later->id;
        placeAll(later, [](const Pattern *other, const char *, void *context) {
            auto *self = static_cast<Ordering *>(context);
            return !IsReference(other) && other->id < self->newest && self->choose(other);
        });
    }

    // Of a name that is too wide the members are not walked: those of the others lead to it.
    void placeOlderThanWide(const Pattern *wide) {
        auto isWide = [](const Pattern *other, const char *, void *context) {
            return other->id == *static_cast<const uint16_t *>(context);
        };
        for (uint16_t id = 1; id < wide->id; ++id) {
            if (!PatternInUse(id) || IsReference(PatternFromId(id)) || known.test(id)) continue;
            uint16_t wanted = wide->id;
            if (VisitSharing(PatternFromId(id), {isWide, &wanted, nullptr})) place(id);
        }
    }

    // Places one after the other what `visit` chooses, outside of the walk over the names.
    void placeAll(const Pattern *pattern, bool (*visit)(const Pattern *, const char *, void *)) {
        uint16_t limit = newest;
        while (VisitSharing(pattern, {visit, this, nullptr})) {
            place(chosen);
            newest = limit;
            if (!visited.test(chosen)) return; // too deep
        }
    }

    bool choose(const Pattern *other) {
        if (visited.test(other->id) || known.test(other->id)) return false;
        chosen = other->id;
        return true;
    }

    // True if the name alone makes a pattern of its own, with what is known by now.
    bool readsAsItIs(const Pattern *pattern) {
        if (pattern->width > MAX_BUS_WIDTH) return false;
        if (pattern->hasProperties() && !nodesMayShare) return true;
        bool isBus = pattern->isBus();
        return !VisitSharing(pattern, {isBus ? MakesBusAReference : MakesBitAReference, this, nullptr});
    }

    static bool MakesBusAReference(const Pattern *other, const char *member, void *context) {
        if (IsReference(other) || !static_cast<Ordering *>(context)->known.test(other->id)) return false;
        return other->isBus() || std::string_view(other->name()) == member;
    }

    static bool MakesBitAReference(const Pattern *other, const char *, void *context) {
        const auto *self = static_cast<Ordering *>(context);
        if (!other->isBus() || IsReference(other) || !self->known.test(other->id)) return false;
        // A composite is one for the reader when it has been defined.
        return !ReadsAsComposite(other) || !self->emitted.test(other->id);
    }

    void addStatement(const Pattern *pattern, bool isEmpty) {
        order.statements[order.count++] = {pattern->id, isEmpty};
        known.set(pattern->id);
    }

    void emit(const Pattern *pattern) {
        addStatement(pattern, false);
        emitted.set(pattern->id);
        if (!IsReference(pattern)) noteUses(pattern);
    }

    void noteUses(const Pattern *pattern) {
        if (ReferenceItems[pattern->id] == 0) return;
        for (uint32_t i = 0; i < pattern->itemCount; ++i) {
            const PatternItem &item = pattern->item(i);
            if (!item.isReference()) continue;
            const Pattern *target = PatternFromId(item.patternId());
            if (target->nameLength == 0) {
                noteUses(target);
            } else {
                known.set(target->id);
            }
        }
    }

    // Each that is written may make others known.
    void placeWaiting() {
        for (bool again = waiting.any(); again;) {
            again = false;
            for (uint16_t id = 1; id <= HighestPatternId; ++id) {
                if (!waiting.test(id) || !known.test(id)) continue;
                waiting.reset(id);
                emit(PatternFromId(id));
                again = true;
            }
        }
        for (uint16_t id = HighestPatternId; id >= 1; --id) {
            if (waiting.test(id)) order.leftOut = id;
        }
    }

    StatementOrder &order;
    IdSet used;   // by the item of a pattern that is no reference itself
    IdSet sliced; // by a reference pattern
    bool nodesMayShare = false;
    IdSet visited; // has its place, or is being given one
    IdSet known;   // has been named by what is written so far
    IdSet emitted;
    IdSet waiting;
    uint32_t depth = 0;
    uint16_t newest = 0; // older ones than this may be chosen
    uint16_t chosen = 0;
};

} // namespace

bool ReadsAsComposite(const Pattern *pattern) {
    if (pattern->kind() == PatternKind::Plain || pattern->itemCount == 0) return false;
    return pattern->item(0).isReference() &&
           std::any_of(pattern->items() + 1, pattern->items() + pattern->itemCount,
                       [](const PatternItem &item) { return item.isReference(); });
}

void OrderStatements(StatementOrder &order) {
    order.count = 0;
    order.leftOut = 0;
    Ordering(order).run();
}
