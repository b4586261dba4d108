#include "random_waves.h"

#include "config/settings.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"

namespace {

struct Maker {
    std::mt19937 &random;
    // What may be used inside others, for bits and for buses of 4.
    std::vector<uint16_t> parts[2] = {};
    // Without composites in them, so that they can be members of one.
    std::vector<uint16_t> members = {};
    RandomWaves waves = {};
    uint32_t count = 0;

    uint32_t upTo(uint32_t n) { return random() % (n + 1); }
    bool chance(uint32_t percent) { return upTo(99) < percent; }
    uint16_t pick(const std::vector<uint16_t> &ids) {
        return ids[upTo(static_cast<uint32_t>(ids.size()) - 1)];
    }

    std::string name(const char *prefix, bool bus) {
        return prefix + std::to_string(count++) + (bus ? "[3:0]" : "");
    }

    // An endless repetition of nothing would be a pattern without end that shows nothing.
    uint32_t repeatsOf(uint16_t id) {
        if (chance(3) && PatternDuration(PatternFromId(id)) != 0) return REPEAT_FOREVER;
        return chance(10) ? 50 + upTo(300) : 1 + upTo(4);
    }

    void fill(uint16_t id, bool bus, const std::vector<uint16_t> &usable, bool mayForce) {
        uint32_t items = 1 + upTo(5);
        for (uint32_t i = 0; i < items; ++i) {
            if (usable.empty() || chance(55)) {
                AddTransition(id, upTo(bus ? 15 : 3), upTo(7));
            } else {
                uint32_t format = mayForce && chance(20) ? 1 + upTo(3) : 0;
                uint16_t part = pick(usable);
                AddReference(id,
                             {.id = part, .scale = 1 + upTo(2), .repeat = repeatsOf(part), .format = format});
            }
        }
    }

    void addMember() {
        uint16_t id = MakePattern(chance(50) ? name("$m", false).c_str() : "");
        fill(id, false, members, false);
        members.push_back(id);
        parts[0].push_back(id);
    }

    void addComposite() {
        uint16_t id = MakePattern(chance(50) ? name("$c", true).c_str() : "", {}, 4);
        for (uint32_t bits = 0; bits < 4;) {
            uint32_t repeats = 1 + upTo(3 - bits);
            AddReference(id, {.id = pick(members), .scale = 1 + upTo(2), .repeat = repeats},
                         PatternKind::Composite);
            bits += repeats;
        }
        parts[1].push_back(id);
        waves.composites.push_back(id);
    }

    void addPart() {
        bool bus = chance(50);
        uint16_t id = MakePattern(chance(50) ? name("$p", bus).c_str() : "", {}, bus ? 4 : 1);
        fill(id, bus, parts[bus], true);
        parts[bus].push_back(id);
        waves.plain.push_back(id);
    }

    // A node whose items, times its period, are whole periods.
    uint16_t makeNode(bool bus, const std::vector<uint16_t> &usable) {
        uint16_t id = MakePattern(name("n", bus).c_str());
        fill(id, bus, usable, true);
        uint32_t format = upTo(4);
        auto period = static_cast<int32_t>(format ? 1 + upTo(9) : 1);
        uint32_t clock = format ? upTo(1) : 0;
        SetPatternParams(PatternFromId(id), 0, 0, format, period, upTo(120), clock);
        if (chance(30)) SetPatternDelay(PatternFromId(id), upTo(40));
        waves.plain.push_back(id);
        return id;
    }

    void addSlice(uint16_t bus, uint16_t bit) {
        uint16_t id = MakePattern(name("r", false).c_str());
        if (chance(70)) {
            uint32_t offset = upTo(3);
            AddReference(id, {.id = bus, .sliceWidth = 1 + upTo(3 - offset), .sliceOffset = offset},
                         PatternKind::Reference);
        }
        AddReference(id, {.id = bit, .sliceWidth = 1}, PatternKind::Reference);
        waves.composites.push_back(id);
    }
};

} // namespace

RandomWaves MakeRandomWaves(std::mt19937 &random) {
    Maker maker{random};
    Settings.ClockMultiplier = 1 + maker.upTo(3);
    for (int i = 0; i < 4; ++i) maker.addMember();
    for (int i = 0; i < 2; ++i) maker.addComposite();
    for (int i = 0; i < 6; ++i) maker.addPart();
    for (int i = 0; i < 3; ++i) maker.makeNode(maker.chance(50), maker.parts[maker.chance(50)]);
    // What is sliced holds no composite.
    std::vector<uint16_t> nothing;
    for (int i = 0; i < 3; ++i) {
        uint16_t bus = maker.makeNode(true, nothing);
        uint16_t bit = maker.makeNode(false, maker.members);
        maker.addSlice(bus, bit);
    }
    ValidateDurations();
    return maker.waves;
}
