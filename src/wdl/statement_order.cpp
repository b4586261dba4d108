#include "wdl/statement_order.h"

#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

namespace {

// How many statements a search may try. Few tangles take more than twice their number of patterns.
constexpr size_t MAX_TRIALS = 200'000;

bool IsReference(uint16_t id) {
    return PatternFromId(id)->kind() == PatternKind::Reference;
}

// --- which patterns hang on each other ---

// For each pattern those whose place among the statements tells what it becomes, and the other way round.
class Tangles {
public:
    explicit Tangles(const ReaderView &reader)
        : partners(HighestPatternId + 1u), rivals(HighestPatternId + 1u) {
        for (uint16_t id = 1; id <= HighestPatternId; ++id) {
            for (uint16_t rival : reader.rivalsOf(id)) joinRivals(id, rival);
            for (const MemberFinds &member : reader.membersOf(id)) {
                joinFinds(id, member.asItStands);
                joinFinds(id, member.byItself);
            }
        }
        std::vector<bool> hang(partners.size());
        for (uint16_t id = 1; id <= HighestPatternId; ++id) {
            if (!PatternInUse(id)) continue;
            hang[id] = !partners[id].empty() || IsReference(id) || PatternFromId(id)->width > MAX_BUS_WIDTH;
        }
        for (uint16_t id = 1; id <= HighestPatternId; ++id) {
            for (uint16_t target : reader.usesOf(id)) {
                if (hang[target]) join(id, target);
            }
        }
    }

    // All that hang on `id` directly and through others, itself among them, in the order of their ids.
    std::vector<uint16_t> tangleOf(uint16_t id) const {
        std::vector<uint16_t> tangle = {id};
        std::vector<bool> seen(partners.size());
        seen[id] = true;
        for (size_t i = 0; i < tangle.size(); ++i) {
            for (uint16_t partner : partners[tangle[i]]) {
                if (!seen[partner]) tangle.push_back(partner);
                seen[partner] = true;
            }
        }
        std::sort(tangle.begin(), tangle.end());
        return tangle;
    }

    const std::vector<uint16_t> &partnersOf(uint16_t id) const { return partners[id]; }
    // True if another pattern that a statement may make shares a bit with it.
    bool hasRival(uint16_t id) const { return rivals[id]; }

private:
    void join(uint16_t a, uint16_t b) {
        partners[a].push_back(b);
        partners[b].push_back(a);
    }

    void joinRivals(uint16_t id, uint16_t rival) {
        join(id, rival);
        if (PatternFromId(rival)->width <= MAX_BUS_WIDTH) rivals[id] = rivals[rival] = true;
    }

    void joinFinds(uint16_t reference, const Finds &finds) {
        for (Holder holder : finds.holders) join(reference, holder.id);
        if (finds.bearer != 0) join(reference, finds.bearer);
    }

    std::vector<std::vector<uint16_t>> partners;
    std::vector<bool> rivals;
};

// --- the search for an order ---

// Looks for an order of the statements of patterns that hang on each other in which each one comes back, by
// trial: depth first, and back as soon as a pattern has no way left to become what it is. At first it looks
// for one with few empty statements; then for one in which the patterns come to be known in the order of
// their ids, as in a file that was read, which soon ends.
class Search {
public:
    Search(std::vector<uint16_t> tangle, const Tangles &tangles, ReaderView &reader)
        : ids(std::move(tangle)), tangles(tangles), reader(reader) {}

    // The statements. `comesBack` becomes false if there is no such order, or none was found in time.
    std::vector<Statement> run(bool &comesBack) {
        auto isHopeless = [this](uint16_t id) { return !reader.mayComeBack(id); };
        auto rest = std::stable_partition(ids.begin(), ids.end(), std::not_fn(isHopeless));
        std::vector<uint16_t> hopeless(rest, ids.end());
        ids.erase(rest, ids.end());
        bool found = descend(SHORT, 500 + 20 * ids.size()) || descend(BY_ID, MAX_TRIALS);
        if (!found) takeUp(best);
        ids.insert(ids.end(), hopeless.begin(), hopeless.end());
        if (!found || !hopeless.empty()) {
            comesBack = false;
            addRest();
        }
        std::vector<Statement> statements = reader.statementsRead();
        takeUp({});
        return statements;
    }

private:
    // A state between two statements, and which ones have been tried from there.
    struct Level {
        size_t countBefore = 0; // of the statements before the one that led here
        size_t count = 0;       // of the statements
        size_t known = 0;       // of the patterns
        uint64_t print = 0;
        uint16_t firstUnknown = 0;
        size_t nextTrial = 0;
    };

    // The statements that may come next, in the order in which they are tried.
    enum Pass { MAKE_FIRST, MAKE_FIRST_EMPTY, USE_FIRST, DEFINE_KNOWN, MAKE_OTHER, MAKE_OTHER_EMPTY, PASSES };
    using Passes = std::array<Pass, PASSES>;
    static constexpr Passes SHORT = {MAKE_FIRST, USE_FIRST,        DEFINE_KNOWN,
                                     MAKE_OTHER, MAKE_FIRST_EMPTY, MAKE_OTHER_EMPTY};
    static constexpr Passes BY_ID = {MAKE_FIRST,   MAKE_FIRST_EMPTY, USE_FIRST,
                                     DEFINE_KNOWN, MAKE_OTHER,       MAKE_OTHER_EMPTY};

    bool descend(const Passes &passes, size_t maxTrials) {
        unreadTo(0);
        levels.clear();
        seen.clear();
        enter(passes, 0);
        for (size_t trials = 0; trials < maxTrials && !levels.empty(); ++trials) {
            if (reader.definitions() == ids.size()) return true;
            Statement statement = nextTrial(passes, levels.back());
            if (statement.id == 0) {
                unreadTo(levels.back().countBefore);
                levels.pop_back();
            } else if (reader.comesBack(statement)) {
                size_t before = reader.statementsRead().size();
                reader.read(statement);
                if (spoils(statement) || !enter(passes, before)) unreadTo(before);
            }
        }
        return false;
    }

    // Goes on from where the reader is. False if that has been done already.
    bool enter(const Passes &passes, size_t countBefore) {
        settle(passes);
        uint64_t print = fingerprint();
        if (!seen.insert(print).second) return false;
        auto isUnknown = [this](uint16_t id) { return !reader.knows(id); };
        auto first = std::find_if(ids.begin(), ids.end(), isUnknown);
        levels.push_back({countBefore, reader.statementsRead().size(), reader.known().size(), print,
                          first == ids.end() ? uint16_t{0} : *first});
        if (reader.definitions() > bestDefinitions) {
            bestDefinitions = reader.definitions();
            best = reader.statementsRead();
        }
        return true;
    }

    // A number for the state. What lies ahead of two with the same one is the same: they have the same
    // patterns known and defined, and those that share names came to be known in the same order.
    uint64_t fingerprint() const {
        const std::vector<Statement> &statements = reader.statementsRead();
        const std::vector<uint16_t> &known = reader.known();
        Level before = levels.empty() ? Level{} : levels.back();
        uint64_t print = before.print;
        auto add = [&print](uint64_t number) {
            constexpr uint64_t factor = 0x9E3779B97F4A7C15u; // the golden ratio, whose bits are well mixed
            number = (number + 1) * factor;
            print += (number ^ number >> 29) * factor;
        };
        for (size_t i = before.count; i < statements.size(); ++i) {
            if (!statements[i].isEmpty) add(statements[i].id);
        }
        for (size_t i = before.known; i < known.size(); ++i) {
            uint64_t place = uint64_t{known[i]} << 32;
            add(place);
            for (uint16_t partner : tangles.partnersOf(known[i])) {
                bool isOlder = reader.knows(partner) && reader.rank(partner) < reader.rank(known[i]);
                if (isOlder) add(place | uint64_t{partner} << 16);
            }
        }
        return print;
    }

    // Reads at once the statements that can harm no other, whenever they come.
    void settle(const Passes &passes) {
        for (bool again = true; again;) {
            again = false;
            for (uint16_t id : ids) {
                if (reader.hasRead(id)) continue;
                bool isHarmless = reader.knows(id) ? addsNothing(id) : passes == BY_ID && harmsNone(id);
                if (!isHarmless) continue;
                reader.read({id, false});
                again = true;
            }
        }
    }

    bool addsNothing(uint16_t id) const {
        const std::vector<uint16_t> &uses = reader.usesOf(id);
        return !reader.isComposite(id) &&
               std::all_of(uses.begin(), uses.end(), [this](uint16_t use) { return reader.knows(use); });
    }

    // A bus that looks at others holds nothing, and nobody looks for its name. A pattern without a rival,
    // which is the one that holds or bears the names that it is looked at by, may come at any time.
    bool harmsNone(uint16_t id) const {
        if (IsReference(id)) return PatternFromId(id)->isBus() && reader.comesBack({id, false});
        if (tangles.hasRival(id) || !addsNothing(id) || !reader.comesBack({id, false})) return false;
        const std::vector<uint16_t> &partners = tangles.partnersOf(id);
        return std::all_of(partners.begin(), partners.end(), [this, id](uint16_t partner) {
            const std::vector<MemberFinds> &members = reader.membersOf(partner);
            return std::all_of(members.begin(), members.end(), [id](const MemberFinds &member) {
                return isAtEase(member.asItStands, member.bit, id) &&
                       isAtEase(member.byItself, member.bit, id);
            });
        });
    }

    // What is too wide for a statement comes with a use, behind all that look for its bits in others.
    static bool isAtEase(const Finds &finds, Holder bit, uint16_t id) {
        const std::vector<Holder> &holders = finds.holders;
        auto isIt = [id](Holder holder) { return holder.id == id; };
        if (finds.bearer != id && std::none_of(holders.begin(), holders.end(), isIt)) return true;
        return bit.id == id && std::all_of(holders.begin(), holders.end(), [id](Holder holder) {
                   return holder.id == id || PatternFromId(holder.id)->width > MAX_BUS_WIDTH;
               });
    }

    // The next statement to be tried; one without an id behind the last of them.
    Statement nextTrial(const Passes &passes, Level &level) const {
        for (; level.nextTrial < PASSES * ids.size(); ++level.nextTrial) {
            Pass pass = passes[level.nextTrial / ids.size()];
            uint16_t id = ids[level.nextTrial % ids.size()];
            if (reader.hasRead(id) || !belongsTo(pass, id, level.firstUnknown)) continue;
            ++level.nextTrial;
            return {id, pass == MAKE_FIRST_EMPTY || pass == MAKE_OTHER_EMPTY};
        }
        return {};
    }

    bool belongsTo(Pass pass, uint16_t id, uint16_t firstUnknown) const {
        bool mayBeEmpty = !IsReference(id) && ReferenceItems[id] != 0;
        bool isOther = id != firstUnknown && !reader.knows(id);
        switch (pass) {
        case MAKE_FIRST:
            return id == firstUnknown;
        case MAKE_FIRST_EMPTY:
            return id == firstUnknown && mayBeEmpty;
        case USE_FIRST:
            return uses(id, firstUnknown);
        case DEFINE_KNOWN:
            return reader.knows(id);
        case MAKE_OTHER:
            return isOther;
        default:
            return isOther && mayBeEmpty;
        }
    }

    bool uses(uint16_t id, uint16_t target) const {
        const std::vector<uint16_t> &uses = reader.usesOf(id);
        return std::find(uses.begin(), uses.end(), target) != uses.end();
    }

    // True if a pattern has lost its last way to become what it is by what has been read last.
    bool spoils(Statement statement) const {
        if (IsReference(statement.id)) return false;
        if (spoilsPartnersOf(statement.id)) return true;
        if (statement.isEmpty) return false;
        const std::vector<uint16_t> &uses = reader.usesOf(statement.id);
        return std::any_of(uses.begin(), uses.end(), [this](uint16_t use) { return spoilsPartnersOf(use); });
    }

    bool spoilsPartnersOf(uint16_t id) const {
        const std::vector<uint16_t> &partners = tangles.partnersOf(id);
        return std::any_of(partners.begin(), partners.end(), [this](uint16_t partner) {
            return !reader.knows(partner) && std::binary_search(ids.begin(), ids.end(), partner) &&
                   !reader.mayComeBack(partner);
        });
    }

    // What does not come back, so that the file can be read at least: patterns of their own that can be read
    // as such, then those that look at others.
    void addRest() {
        for (bool again = true; again;) {
            again = false;
            for (uint16_t id : ids) {
                if (reader.hasRead(id) || IsReference(id)) continue;
                if (!reader.knows(id) && !reader.comesBack({id, true})) continue;
                reader.read({id, false});
                again = true;
            }
        }
        for (uint16_t id : ids) {
            if (IsReference(id) && !reader.hasRead(id)) reader.read({id, false});
        }
    }

    void takeUp(const std::vector<Statement> &statements) {
        unreadTo(0);
        for (Statement statement : statements) reader.read(statement);
    }

    void unreadTo(size_t count) {
        while (reader.statementsRead().size() > count) reader.unreadLast();
    }

    std::vector<uint16_t> ids;
    const Tangles &tangles;
    ReaderView &reader; // which has read nothing before and behind
    std::vector<Level> levels;
    std::unordered_set<uint64_t> seen;
    std::vector<Statement> best; // of the lists that were tried the one with the most definitions
    size_t bestDefinitions = 0;
};

// --- the whole document ---

std::vector<uint16_t> NaturalOrder() {
    std::vector<uint16_t> order;
    for (bool references : {false, true}) {
        for (uint16_t id = 1; id <= HighestPatternId; ++id) {
            if (!PatternInUse(id) || PatternFromId(id)->nameLength == 0) continue;
            if (IsReference(id) == references) order.push_back(id);
        }
    }
    return order;
}

// Those that do not come back if all are read in their natural order.
std::vector<uint16_t> LostInOrder(const std::vector<uint16_t> &order, ReaderView &reader) {
    std::vector<uint16_t> lost;
    for (uint16_t id : order) {
        if (!reader.comesBack({id, false})) lost.push_back(id);
        reader.read({id, false});
    }
    while (!reader.statementsRead().empty()) reader.unreadLast();
    return lost;
}

} // namespace

StatementOrder OrderStatements() {
    StatementOrder result;
    ReaderView reader;
    std::vector<uint16_t> natural = NaturalOrder();
    std::vector<uint16_t> lost = LostInOrder(natural, reader);
    // Each tangle with a lost pattern in it comes where the first of its patterns would.
    std::vector<size_t> tangleOf(HighestPatternId + 1u);
    std::vector<std::vector<Statement>> searched = {{}};
    if (!lost.empty()) {
        Tangles tangles(reader);
        for (uint16_t id : lost) {
            if (tangleOf[id] != 0) continue;
            std::vector<uint16_t> tangle = tangles.tangleOf(id);
            for (uint16_t member : tangle) tangleOf[member] = searched.size();
            searched.push_back(Search(tangle, tangles, reader).run(result.comesBack));
        }
    }
    std::bitset<MAX_PATTERNS> written;
    auto add = [&](Statement statement) {
        result.statements.push_back(statement);
        written.set(statement.id);
    };
    for (uint16_t id : natural) {
        if (tangleOf[id] == 0) {
            add({id, false});
        } else {
            for (Statement statement : searched[tangleOf[id]]) add(statement);
            searched[tangleOf[id]].clear();
        }
    }
    for (uint16_t id : natural) {
        if (result.leftOut == 0 && !written.test(id)) result.leftOut = id;
    }
    return result;
}
