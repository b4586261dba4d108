#include "unit/support/random_document.h"

#include "config/settings.h"
#include "edit/buses.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include "store/state_table.h"
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <set>
#include <vector>

namespace {

constexpr const char *TABLE_NAMES[] = {"Tri", "Analog", "S1"};

class Builder {
public:
    explicit Builder(uint32_t seed) : random(seed) {}

    void build() {
        setSettings();
        makeNames();
        for (uint16_t id : definitionOrder()) define(id);
        makeReferencePatterns();
    }

private:
    void setSettings() {
        Settings.ClockMultiplier = random.once(4) ? random.word() | 1 : 1 + random.below(1000);
        Settings.BasicUnit = static_cast<int32_t>(random.below(18)) - 1;
        Settings.Decimals = static_cast<int32_t>(random.below(4));
        Settings.AutoClockAssign = random.once(2);
        Settings.EndTime = random.once(4) ? random.word() : random.below(100000);
    }

    // --- names ---

    std::string word() {
        constexpr const char *heads[] = {"clk", "Data", "a", "RESET", "x_", "top.u1.q",
                                         "a'b", "n+1",  "y", "3",     "%z", "=w"};
        std::string name = heads[random.below(std::size(heads))];
        name += std::to_string(serial++);
        if (random.once(60)) name += std::string(900 + random.below(110), 'L');
        return name;
    }

    // Of two bits and more: "A[3:3]" would hold the bit "A[3]", but not be found as its name, so that the bit
    // would be made a second time, and the newer of the two counts.
    std::string range() {
        uint32_t width = random.once(6) ? 32 : 2 + random.below(20);
        uint32_t low = random.below(40);
        std::string high = std::to_string(low + width - 1);
        std::string text =
            random.once(2) ? high + ":" + std::to_string(low) : std::to_string(low) + ":" + high;
        return "[" + text + "]";
    }

    std::string nodeName() {
        std::string name = word();
        if (random.once(3)) return name + range();
        if (random.once(8)) return name + "," + word();
        return name;
    }

    void makeNames() {
        uint32_t count = 2 + random.below(24);
        for (uint32_t i = 0; i < count; ++i) {
            bool isNode = random.once(2);
            std::string name = isNode ? nodeName() : "$" + nodeName();
            if (name.size() > 1000) name.resize(1000);
            name.reserve(name.size() + 2);
            Pattern *pattern = FindOrCreateNode(name.data(), 0);
            if (!pattern) continue;
            if (isNode) {
                nodes.push_back(pattern->id);
                setParameters(pattern);
            } else {
                subPatterns.push_back(pattern->id);
            }
        }
        std::shuffle(subPatterns.begin(), subPatterns.end(), std::mt19937(random.word()));
    }

    void setParameters(Pattern *node) {
        uint32_t table = random.below(static_cast<uint32_t>(std::size(TABLE_NAMES)) + 1);
        SetPatternParams(node, table, random.below(5), random.once(2) ? 0 : random.below(5),
                         static_cast<int32_t>(random.once(3) ? random.word() : random.below(100)),
                         random.once(5) ? random.word() & 0xFFFF : random.below(101), random.below(8));
        if (random.once(3)) SetPatternDelay(node, random.once(3) ? random.word() : random.below(1000));
    }

    // --- items ---

    // Whoever comes later may refer to the sub-patterns that came earlier.
    std::vector<uint16_t> definitionOrder() {
        std::vector<uint16_t> order = subPatterns;
        order.insert(order.end(), nodes.begin(), nodes.end());
        return order;
    }

    void define(uint16_t id) {
        Pattern *pattern = PatternFromId(id);
        bool isNode = pattern->hasProperties();
        mayForceFormats = pattern->format() == SignalFormat::None;
        if (random.once(5)) {
            addMembers(id, 2);
        } else {
            addItems(id, random.once(10) ? 60 : random.below(8), 2);
            if (isNode && random.once(4)) addForever(id);
        }
        if (!isNode) defined.push_back(id);
    }

    void addItems(uint16_t id, uint32_t count, uint32_t depth) {
        for (uint32_t i = 0; i < count; ++i) {
            Pattern *pattern = PatternFromId(id);
            if (random.once(3)) {
                addUse(id, depth, PatternKind::Plain);
            } else {
                uint32_t value = random.once(3) ? random.word() : random.below(4);
                uint32_t duration = random.once(8) ? random.word() >> 1 : random.below(500);
                InsertTransition(pattern, pattern->itemCount, value, duration);
            }
        }
    }

    // A composite: names, nests and data, each behind each other, but for data in front, which only an edit
    // can put there. Without another reference than the first one it reads as a plain pattern.
    void addMembers(uint16_t id, uint32_t depth) {
        if (defined.empty()) return;
        uint32_t count = 2 + random.below(4);
        uint32_t reference = 1 + random.below(count - 1);
        for (uint32_t i = 0; i < count; ++i) {
            PatternKind kind = i == 0 ? PatternKind::Plain : PatternKind::Composite;
            if (i != 0 && i != reference && random.once(3)) {
                Pattern *pattern = PatternFromId(id);
                InsertTransition(pattern, pattern->itemCount, random.below(4), random.below(500));
            } else {
                addUse(id, depth, kind);
            }
        }
    }

    void addForever(uint16_t id) {
        addUse(id, 1, PatternKind::Plain);
        Pattern *pattern = PatternFromId(id);
        if (pattern->itemCount == 0) return;
        auto last = static_cast<uint16_t>(pattern->itemCount - 1);
        if (!pattern->item(last).isReference()) return;
        SetItemRepeat(pattern, last, REPEAT_FOREVER);
        SetItemFormat(pattern, last, 0);
    }

    // A reference to a named pattern, or, where `depth` allows it, to a new unnamed one.
    void addUse(uint16_t id, uint32_t depth, PatternKind kind) {
        uint16_t target = 0;
        if (depth > 0 && random.once(2)) {
            target = makeNested(PatternFromId(id)->width, depth - 1);
        } else if (!defined.empty()) {
            target = defined[random.below(static_cast<uint32_t>(defined.size()))];
        } else {
            return;
        }
        Pattern *pattern = PatternFromId(id);
        uint32_t scale = random.once(3) ? 1 + random.below(random.once(4) ? 65535 : 20) : 1;
        uint32_t repeat = random.once(3) ? 1 + random.below(random.once(4) ? 65534 : 20) : 1;
        uint32_t format = mayForceFormats && random.once(4) ? random.below(5) : 0;
        InsertReference(pattern, kind, pattern->itemCount, target, scale, repeat, 0, 0, format);
    }

    uint16_t makeNested(uint32_t width, uint32_t depth) {
        uint16_t id = CreatePattern(0, "", width)->id;
        if (random.once(5)) {
            addMembers(id, depth);
        } else {
            addItems(id, random.below(5), depth);
        }
        return id;
    }

    // --- bits and buses of bits ---

    // Now and then in another case of letters.
    std::string memberOf(uint16_t id) {
        std::string member = exactMemberOf(id);
        if (!random.once(4)) return member;
        for (char &c : member) c = static_cast<char>(random.once(2) ? toupper(c) : tolower(c));
        return member;
    }

    std::string exactMemberOf(uint16_t id) {
        std::vector<std::string> members;
        ForEachBusMember(
            PatternFromId(id)->name(),
            [](const char *member, void *context) {
                static_cast<std::vector<std::string> *>(context)->push_back(member);
                return 0;
            },
            &members);
        return members[random.below(static_cast<uint32_t>(members.size()))];
    }

    void makeReferencePatterns() {
        uint32_t count = nodes.empty() ? 0 : random.below(6);
        for (uint32_t i = 0; i < count; ++i) {
            std::string name = memberOf(nodes[random.below(static_cast<uint32_t>(nodes.size()))]);
            uint32_t more = random.below(5);
            for (uint32_t k = 0; k < more; ++k) {
                if (random.once(6)) {
                    name += "," + word();
                } else {
                    name += "," + memberOf(nodes[random.below(static_cast<uint32_t>(nodes.size()))]);
                }
            }
            makeNode(name);
        }
        // All of a bus of 32 bits under another text of its name, in one slice.
        for (uint16_t id : nodes) {
            const Pattern *bus = PatternFromId(id);
            if (bus->width != 32 || bus->kind() != PatternKind::Plain || !random.once(2)) continue;
            std::string name = bus->name();
            if (name.find(',') != std::string::npos) continue;
            makeNode(name.insert(name.size() - 1, ":1"));
        }
    }

    void makeNode(std::string name) {
        // A line of the file holds no more.
        if (name.size() > 1000) return;
        name.reserve(name.size() + 2);
        FindOrCreateNode(name.data(), 0);
    }

    Random random;
    uint32_t serial = 0;
    bool mayForceFormats = true;
    std::vector<uint16_t> nodes, subPatterns;
    std::vector<uint16_t> defined; // the sub-patterns that may be referred to
};

// Names from a few letters, so that patterns hold each other's bits in all ways that there are.
class Tangle {
public:
    explicit Tangle(uint32_t seed) : random(seed) {}

    void build() {
        uint32_t steps = 2 + random.below(14);
        for (uint32_t i = 0; i < steps; ++i) {
            if (random.once(6)) {
                remove(1 + random.below(HighestPatternId));
            } else if (random.once(3)) {
                // As if it were used before it is defined.
                std::string text = "$" + name();
                text.reserve(text.size() + 2);
                CanonicalizeName(text.data());
                if (!FindPattern(text.c_str())) use(CreatePattern(0, text.c_str(), 0)->id);
            } else {
                std::string text = (random.once(3) ? "$" : "") + name();
                text.reserve(text.size() + 2);
                Pattern *pattern = FindOrCreateNode(text.data(), 0);
                if (pattern && pattern->kind() != PatternKind::Reference) fill(pattern->id);
            }
        }
    }

private:
    std::string name() {
        constexpr const char *stems[] = {"A",    "a",      "B",      "A[1]",      "a[1]",
                                         "A[0]", "A[1:0]", "a[1:0]", "A[2:1]",    "A[1:1]",
                                         "B,A",  "a,B",    "B,a[1]", "A[0],a[0]", "W[40:0]"};
        std::string text = stems[random.below(std::size(stems))];
        if (random.once(6)) text += std::string(",") + stems[random.below(std::size(stems))];
        return text;
    }

    // A node, older or newer, begins to use the pattern.
    void use(uint16_t target) {
        char text[16];
        snprintf(text, sizeof text, "n%u", random.below(4));
        Pattern *user = FindOrCreateNode(text, 0);
        refer(user->id, target, PatternKind::Plain);
    }

    void refer(uint16_t id, uint16_t target, PatternKind kind) {
        if (WouldCloseCircle(id, target)) return;
        Pattern *pattern = PatternFromId(id);
        if (pattern->itemCount == 0) kind = PatternKind::Plain;
        if (pattern->itemCount == 1 && !pattern->item(0).isReference()) kind = PatternKind::Plain;
        InsertReference(pattern, kind, pattern->itemCount, target, 1, 1, 0, 0, 0);
    }

    void fill(uint16_t id) {
        PatternKind kind = random.once(2) ? PatternKind::Composite : PatternKind::Plain;
        if (PatternFromId(id)->itemCount > 1) kind = PatternFromId(id)->kind();
        for (uint32_t i = random.below(3); i > 0; --i) {
            auto target = static_cast<uint16_t>(1 + random.below(HighestPatternId));
            if (mayUse(PatternFromId(id), target)) refer(id, target, kind);
            Pattern *pattern = PatternFromId(id);
            if (random.once(2))
                InsertTransition(pattern, pattern->itemCount, random.below(2), random.below(9));
        }
    }

    // A sub-pattern; one that only looks at others in a later node alone, as its name may lead astray, and
    // then even to a pattern that uses it.
    static bool mayUse(const Pattern *user, uint16_t target) {
        if (!PatternInUse(target) || PatternFromId(target)->name()[0] != '$') return false;
        if (PatternFromId(target)->kind() != PatternKind::Reference) return true;
        return user->hasProperties() && user->id > target;
    }

    void remove(uint32_t id) {
        if (!PatternInUse(id) || IsPatternReferenced(static_cast<uint16_t>(id))) return;
        Pattern *pattern = PatternFromId(id);
        while (pattern->itemCount > 0) DeleteItem(pattern, static_cast<uint16_t>(pattern->itemCount - 1));
        DeletePattern(pattern);
    }

    Random random;
};

std::string TextOfItems(const Pattern *pattern) {
    std::string text;
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference()) {
            text += " " + std::to_string(item.value()) + ":" + std::to_string(item.duration());
            continue;
        }
        const Pattern *target = PatternFromId(item.patternId());
        if (target->nameLength) {
            text += std::string(" <") + target->name() + ">";
        } else {
            text += " (kind " + std::to_string(static_cast<uint32_t>(target->kind())) + " width " +
                    std::to_string(target->width) + TextOfItems(target) + ")";
        }
        text += "*" + std::to_string(item.scale()) + "#" + std::to_string(item.repeat()) + "@" +
                std::to_string(item.forcedFormat()) + "/" + std::to_string(item.sliceOffset()) + "/" +
                std::to_string(item.sliceWidth());
    }
    return text;
}

std::string TextOf(const Pattern *p) {
    std::string text = std::string(p->name()) + ": kind";
    for (uint32_t number : {static_cast<uint32_t>(p->kind()), static_cast<uint32_t>(p->width),
                            static_cast<uint32_t>(p->isBus()), static_cast<uint32_t>(p->hasProperties()),
                            p->clock(), p->stateTable(), static_cast<uint32_t>(p->format()), p->pinType(),
                            static_cast<uint32_t>(p->period), p->delay, static_cast<uint32_t>(p->duty)}) {
        text += " " + std::to_string(number);
    }
    return text + TextOfItems(p) + "\n";
}

} // namespace

void AddRandomStateTables() {
    for (const char *name : TABLE_NAMES) {
        StateTable *table = AllocStateTable(1);
        memset(static_cast<void *>(table), 0, sizeof *table + sizeof(StateRow));
        snprintf(table->tableName, sizeof table->tableName, "%s", name);
        table->rowCount = 1;
    }
}

void BuildRandomDocument(uint32_t seed) {
    Builder(seed).build();
}

void BuildTangledDocument(uint32_t seed) {
    Tangle(seed).build();
}

std::string DocumentText() {
    std::set<std::string> patterns;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (PatternInUse(id) && PatternFromId(id)->nameLength) patterns.insert(TextOf(PatternFromId(id)));
    }
    std::string text = std::to_string(Settings.ClockMultiplier) + " " + std::to_string(Settings.BasicUnit) +
                       " " + std::to_string(Settings.Decimals) + " " +
                       std::to_string(Settings.AutoClockAssign) + " " + std::to_string(Settings.EndTime) +
                       "\n";
    for (const std::string &pattern : patterns) text += pattern;
    return text;
}
