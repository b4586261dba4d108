// The walker against a plain expansion of the same random documents.
#include "random_waves.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "walk_log.h"

namespace {

constexpr uint64_t HORIZON = 4000;

class RandomDocuments : public testing::WithParamInterface<uint32_t>, public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        random.seed(GetParam());
        waves = MakeRandomWaves(random);
        all = waves.plain;
        all.insert(all.end(), waves.composites.begin(), waves.composites.end());
    }
    WalkWindow someWindow() {
        TimeVal from = random() % 3000;
        TimeVal length = 1 + random() % (random() % 2 ? 5 : 900);
        return {.from = from, .to = from + length};
    }
    std::mt19937 random;
    RandomWaves waves;
    std::vector<uint16_t> all;
};

std::string TextOf(const std::vector<PlainLevel> &levels) {
    std::string text;
    for (const PlainLevel &level : levels) {
        text += std::to_string(level.start) + "-" + std::to_string(level.end) + "=" +
                std::to_string(level.value) + " ";
    }
    return text;
}

// What the walk takes for its window: it begins before the pattern's end and ends there at the latest.
WalkWindow Clamped(uint16_t id, const WalkWindow &window) {
    TimeVal total = PatternDuration(PatternFromId(id));
    return {.from = window.from < total ? window.from : total - 1, .to = TimeMin(window.to, total)};
}

TEST_P(RandomDocuments, WalkTheLevelsOfThePlainExpansionInEveryWindow) {
    for (uint16_t id : all) {
        if (PatternDuration(PatternFromId(id)) == 0) continue;
        for (bool sync : {false, true}) {
            std::vector<PlainLevel> plain = ExpandPlainly(PatternFromId(id), sync, HORIZON);
            for (int i = 0; i < 20; ++i) {
                WalkWindow window = someWindow();
                window.flags = sync ? WalkSync : 0u;
                WalkWindow clamped = Clamped(id, window);
                std::vector<PlainLevel> walked = LevelsOf(Walk(id, window).segments);
                EXPECT_EQ(TextOf(WithinWindow(walked, clamped.from, clamped.to)),
                          TextOf(WithinWindow(plain, clamped.from, clamped.to)))
                    << "pattern " << id << " from " << window.from << " to " << window.to << "\n"
                    << StoreText();
                if (HasFailure()) return;
            }
        }
    }
}

TEST_P(RandomDocuments, AnswerTheValueOfThePlainExpansionAtEveryTime) {
    for (uint16_t id : all) {
        Pattern *pattern = PatternFromId(id);
        TimeVal total = PatternDuration(pattern);
        if (total == 0) continue;
        for (bool sync : {false, true}) {
            std::vector<PlainLevel> plain = ExpandPlainly(pattern, sync, HORIZON);
            for (int i = 0; i < 20; ++i) {
                TimeVal t = random() % 3000;
                TimeVal at = t < total ? t : total - 1;
                std::vector<PlainLevel> there = WithinWindow(plain, at, at + uint64_t{1});
                ASSERT_EQ(there.size(), 1u);
                EXPECT_EQ(PatternValueAt(pattern, t, sync), there[0].value)
                    << "pattern " << id << " at " << t;
            }
        }
    }
}

// Segments without the second call for a fine item.
std::vector<WalkSegment> WithoutDoubles(const std::vector<WalkSegment> &segments) {
    std::vector<WalkSegment> result;
    for (const WalkSegment &s : segments) {
        if (!result.empty() && (s.segFlags & SegCoarse) && s.start == result.back().start &&
            s.end == result.back().end && (result.back().segFlags & SegCoarse)) {
            continue;
        }
        result.push_back(s);
    }
    return result;
}

TEST_P(RandomDocuments, LeaveNoGapAndMarkTheWindowsEnd) {
    for (uint16_t id : all) {
        for (int i = 0; i < 20; ++i) {
            WalkWindow window = someWindow();
            window.minDetail = random() % 12;
            window.flags = random() % 2 ? WalkSync : 0u;
            std::vector<WalkSegment> segments = WithoutDoubles(Walk(id, window).segments);
            if (segments.empty()) continue;
            WalkWindow clamped = Clamped(id, window);
            EXPECT_LE(segments.front().start, clamped.from);
            EXPECT_GE(segments.back().end, clamped.to);
            for (size_t s = 0; s < segments.size(); ++s) {
                if (s > 0) {
                    EXPECT_EQ(segments[s].start, segments[s - 1].end);
                }
                EXPECT_EQ((segments[s].segFlags & SegLast) != 0, segments[s].end >= clamped.to);
            }
        }
    }
}

TEST_P(RandomDocuments, TellEveryLevelAboveTheDetailLimitAsItIs) {
    for (uint16_t id : all) {
        for (bool sync : {false, true}) {
            std::vector<PlainLevel> plain = ExpandPlainly(PatternFromId(id), sync, HORIZON);
            for (int i = 0; i < 10; ++i) {
                WalkWindow window = someWindow();
                window.minDetail = 1 + random() % 12;
                window.flags = sync ? WalkSync : 0u;
                for (const WalkSegment &s : Walk(id, window).segments) {
                    if (s.start >= window.to || s.end <= window.from || (s.segFlags & SegCoarse)) continue;
                    uint64_t from = s.start < window.from ? window.from : s.start;
                    uint64_t to = s.end < window.to ? s.end : window.to;
                    EXPECT_EQ(TextOf(WithinWindow(plain, from, to)),
                              TextOf(WithinWindow({{from, to, s.value}}, from, to)));
                }
            }
        }
    }
}

TEST_P(RandomDocuments, CallOnlyWhatIsFinerThanTheLimitActivity) {
    for (uint16_t id : waves.plain) {
        std::vector<PlainLevel> plain = ExpandPlainly(PatternFromId(id), false, HORIZON);
        for (int i = 0; i < 10; ++i) {
            WalkWindow window = someWindow();
            window.minDetail = 1 + random() % 12;
            TimeVal from = Clamped(id, window).from;
            for (const WalkSegment &s : Walk(id, window).segments) {
                if (!(s.segFlags & SegCoarse) || s.start >= window.to) continue;
                for (const PlainLevel &level : plain) {
                    bool inside = level.start >= s.start && level.start >= from && level.end <= s.end;
                    EXPECT_FALSE(inside && level.end - level.start >= window.minDetail)
                        << "pattern " << id << ", activity from " << s.start << " to " << s.end;
                }
            }
        }
    }
}

TEST_P(RandomDocuments, BlocksCoverTheUsesOfNamedPatterns) {
    for (uint16_t id : waves.plain) {
        for (int i = 0; i < 10; ++i) {
            WalkWindow window = someWindow();
            window.flags = WalkNames;
            std::vector<WalkSegment> namesOnly = Walk(id, window).segments;
            for (size_t s = 1; s < namesOnly.size(); ++s) EXPECT_EQ(namesOnly[s].start, namesOnly[s - 1].end);
            window.flags = WalkNames | WalkWaves;
            std::vector<WalkSegment> levels;
            for (const WalkSegment &s : Walk(id, window).segments) {
                if (!(s.segFlags & SegBlock)) {
                    levels.push_back(s);
                    continue;
                }
                ASSERT_FALSE(levels.empty());
                EXPECT_EQ(levels.back().end, s.end);
                EXPECT_NE(s.pattern->nameLength, 0);
            }
            window.flags = WalkWaves;
            EXPECT_EQ(::TextOf(levels), WalkText(id, window));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomDocuments, testing::Range(0u, 150u));

} // namespace
