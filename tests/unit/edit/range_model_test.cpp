// Range edits beside a plain model: the values of a pattern, unit by unit.
#include "edit/range_edits.h"
#include "edit/wrappers.h"
#include "editlog/edit_log.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"
#include "unit/support/plain_expansion.h"
#include "unit/support/random_document.h"
#include <algorithm>

namespace {

// How much of an endless pattern is looked at, in units.
constexpr uint32_t HORIZON = 500;
constexpr uint32_t NEW_VALUE = 9;

using Values = std::vector<uint32_t>;

Values ValuesOf(uint16_t id) {
    Values values;
    for (const PlainLevel &level : ExpandPlainly(PatternFromId(id), false, HORIZON)) {
        values.insert(values.end(), std::min<uint64_t>(level.end, HORIZON) - values.size(), level.value);
    }
    return values;
}

Values Piece(const Values &values, uint32_t from, uint32_t to) {
    auto end = std::min<size_t>(to, values.size());
    return from >= end ? Values() : Values(values.begin() + from, values.begin() + static_cast<long>(end));
}

Values operator+(Values a, const Values &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A pattern, and the times at which a range in it may begin and end: any within a level, and the ends of
// references.
struct Subject {
    uint16_t id = 0;
    uint32_t tail = UINT32_MAX; // where the endless item begins
    uint32_t end = 0;           // of the other items
    std::vector<uint32_t> times;
    std::vector<uint32_t> itemOf; // the data item in which each of them lies, or the item that begins there
    std::vector<bool> inside;
};

class RangeModel : public EditingFixture, public testing::WithParamInterface<unsigned> {
protected:
    Subject makeSubject(Random &random) {
        uint16_t part = MakePattern("$part", {{4, 2}, {5, 3}});
        Subject subject;
        subject.id = MakePattern("A[3:0]");
        auto place = [&subject](uint32_t item, bool inside) {
            subject.times.push_back(subject.end);
            subject.itemOf.push_back(item);
            subject.inside.push_back(inside);
        };
        uint32_t count = 1 + random.below(7);
        for (uint32_t i = 0; i < count; i++) {
            place(i, false);
            if (random.once(3)) {
                uint16_t target = random.once(2) ? part : MakePattern("", {{6, 1}, {7, 4}}, 4);
                Use use = {.id = target, .scale = 1 + random.below(2), .repeat = 1 + random.below(3)};
                AddReference(subject.id, use);
                subject.end += 5 * use.scale * use.repeat;
                continue;
            }
            uint32_t length = 1 + random.below(6);
            AddTransition(subject.id, random.below(3), length);
            for (uint32_t unit = 1; unit < length; unit++) {
                subject.end++;
                place(i, true);
            }
            subject.end++;
        }
        place(count, false);
        if (random.once(2)) {
            subject.tail = subject.end;
            AddReference(subject.id, {.id = part, .repeat = REPEAT_FOREVER});
        }
        ValidateDurations();
        return subject;
    }

    // Two of the times, in order; the later one may lie in the tail.
    struct Range {
        size_t first;
        uint32_t from, to;
    };
    static Range makeRange(Random &random, const Subject &subject) {
        size_t a = random.below(static_cast<uint32_t>(subject.times.size()));
        size_t b = random.below(static_cast<uint32_t>(subject.times.size()));
        if (a > b) std::swap(a, b);
        uint32_t to = subject.times[b];
        if (subject.tail != UINT32_MAX && random.once(4)) to = subject.tail + 1 + random.below(20);
        if (random.once(8)) to = TIME_FOREVER;
        return {a, subject.times[a], to};
    }

    // Plays `edit` on random patterns, and compares them with what `model` makes of their values.
    template <class Edit, class Model>
    void compare(Edit edit, Model model) {
        Random random(GetParam());
        for (int i = 0; i < 40; i++) {
            Subject subject = makeSubject(random);
            Range range = makeRange(random, subject);
            if (range.from >= range.to) continue;
            Values expected = model(subject, ValuesOf(subject.id), range);
            std::string before = StoreText();
            std::string told =
                items(subject.id) + ", " + std::to_string(range.from) + " to " + std::to_string(range.to);
            if (!edit(subject, range)) continue;
            ValidateDurations();
            Values found = ValuesOf(subject.id);
            // What an endless pattern has moved in from behind is beyond the model.
            bool endless = PatternFromId(subject.id)->duration == TIME_FOREVER;
            if (endless) found.resize(std::min(found.size(), expected.size()));
            expected.resize(std::min<size_t>(expected.size(), HORIZON));
            ASSERT_EQ(found, expected) << told << " gives " << items(subject.id);
            ASSERT_EQ(HeapFault(), "");
            LogEndAction();
            if (StoreText() == before) continue;
            ASSERT_TRUE(undoGives(before)) << told;
        }
    }
    static bool reachesTail(const Subject &subject, const Range &range) { return range.to > subject.tail; }
};

TEST_P(RangeModel, ARangeIsTakenOut) {
    compare(
        [](const Subject &subject, const Range &range) {
            return DeleteRange(PatternFromId(subject.id), range.from, range.to) != nullptr;
        },
        [](const Subject &subject, const Values &values, const Range &range) {
            Values front = Piece(values, 0, range.from);
            return reachesTail(subject, range) ? front : front + Piece(values, range.to, UINT32_MAX);
        });
}

TEST_P(RangeModel, ALevelTakesARangesPlace) {
    compare(
        [](const Subject &subject, const Range &range) {
            auto index =
                static_cast<uint16_t>(subject.itemOf[range.first] + (subject.inside[range.first] ? 1 : 0));
            ReplaceRange(PatternFromId(subject.id), range.from, range.to, index, NEW_VALUE);
            return true;
        },
        [](const Subject &subject, const Values &values, const Range &range) {
            Values made =
                Piece(values, 0, range.from) + Values(std::min(range.to - range.from, HORIZON), NEW_VALUE);
            return reachesTail(subject, range) ? made : made + Piece(values, range.to, UINT32_MAX);
        });
}

TEST_P(RangeModel, ARangeIsWrapped) {
    constexpr uint32_t SCALE = 3, REPEAT = 2;
    compare(
        [](const Subject &subject, const Range &range) {
            // A selection that begins and ends within one level is a pulse, and no range.
            auto last = std::find(subject.times.begin(), subject.times.end(), range.to);
            bool oneItem = last != subject.times.end() &&
                           subject.inside[static_cast<size_t>(last - subject.times.begin())] &&
                           subject.itemOf[static_cast<size_t>(last - subject.times.begin())] ==
                               subject.itemOf[range.first];
            if (oneItem) return false;
            WrapRange(PatternFromId(subject.id), range.from, range.to, SCALE, REPEAT);
            return true;
        },
        [](const Subject &subject, const Values &values, const Range &range) {
            Values scaled;
            for (uint32_t value : Piece(values, range.from, range.to))
                scaled.insert(scaled.end(), SCALE, value);
            Values made = Piece(values, 0, range.from);
            if (reachesTail(subject, range)) {
                // All of the tail goes along.
                for (uint32_t value : Piece(values, range.to, UINT32_MAX))
                    scaled.insert(scaled.end(), SCALE, value);
                return made + scaled;
            }
            for (uint32_t i = 0; i < REPEAT; i++) made = made + scaled;
            return made + Piece(values, range.to, UINT32_MAX);
        });
}

INSTANTIATE_TEST_SUITE_P(Seeds, RangeModel, testing::Range(1u, 9u));

} // namespace
