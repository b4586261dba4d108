#include "store/name_index.h"

#include "config/settings.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include "unit/support/fresh_store.h"
#include <random>

namespace {

class NameIndex : public FreshStore {};

// What a walk over all records gives, newest id first.
uint16_t LinearFind(const std::string &name) {
    for (uint32_t id = HighestPatternId; id >= 1; --id) {
        if (!PatternInUse(id)) continue;
        const char *candidate = PatternFromId(id)->name();
        if (*candidate && EqualIgnoringCase(candidate, name)) return static_cast<uint16_t>(id);
    }
    return 0;
}

struct Hit {
    uint16_t id;
    uint32_t position;
    bool operator==(const Hit &) const = default;
};

struct Search {
    std::string member;
    uint32_t position = 0;
};

std::vector<Hit> LinearVisit(const std::string &member) {
    std::vector<Hit> hits;
    for (uint32_t id = HighestPatternId; id >= 1; --id) {
        if (!PatternInUse(id)) continue;
        Search search = {member};
        int found = ForEachBusMember(
            PatternFromId(id)->name(),
            [](const char *name, void *context) {
                auto *s = static_cast<Search *>(context);
                ++s->position;
                return s->member == name ? 1 : 0;
            },
            &search);
        if (found) hits.push_back({static_cast<uint16_t>(id), search.position});
    }
    return hits;
}

// The same by the positions, for names of too many members to visit.
std::vector<Hit> VisitByPosition(const std::string &member) {
    std::vector<Hit> hits;
    for (uint32_t id = HighestPatternId; id >= 1; --id) {
        if (!PatternInUse(id)) continue;
        uint32_t position = BusMemberPosition(PatternFromId(id)->name(), member);
        if (position != 0) hits.push_back({static_cast<uint16_t>(id), position});
    }
    return hits;
}

std::vector<Hit> IndexVisit(const std::string &member) {
    std::vector<Hit> hits;
    NameIndexVisitMember(
        member.c_str(),
        [](Pattern *pattern, uint32_t position, void *context) {
            static_cast<std::vector<Hit> *>(context)->push_back({pattern->id, position});
            return false;
        },
        &hits);
    return hits;
}

TEST_F(NameIndex, FindsWithoutCaseAndTheHighestIdFirst) {
    uint16_t first = MakePattern("Clk");
    uint16_t second = MakePattern("CLK");
    EXPECT_EQ(NameIndexFind("clk"), second);
    PatternRelease(PatternFromId(second));
    EXPECT_EQ(NameIndexFind("clk"), first);
    EXPECT_EQ(NameIndexFind(""), 0);
    EXPECT_EQ(FindPattern("missing"), nullptr);
}

TEST_F(NameIndex, TheVisitorCanStopTheVisit) {
    MakePattern("A[3:0]");
    uint16_t newest = MakePattern("A[1:0]");
    uint16_t seen = 0;
    EXPECT_TRUE(NameIndexVisitMember(
        "A[1]",
        [](Pattern *pattern, uint32_t, void *context) {
            *static_cast<uint16_t *>(context) = pattern->id;
            return true;
        },
        &seen));
    EXPECT_EQ(seen, newest);
}

// "[" and "{" are one to the hash, as a letter is in both cases; the others have been looked for.
TEST_F(NameIndex, NamesOfOneHashAreToldApart) {
    const char *const names[][2] = {{"$a[", "$a{"}, {" a", "b"}, {"b", "   g"}};
    for (const auto &pair : names) {
        uint16_t id = MakePattern(pair[0]);
        EXPECT_EQ(NameIndexFind(pair[1]), 0) << pair[1];
        uint16_t second = MakePattern(pair[1]);
        EXPECT_EQ(NameIndexFind(pair[0]), id) << pair[0];
        EXPECT_EQ(NameIndexFind(pair[1]), second) << pair[1];
        DeletePattern(PatternFromId(second));
        EXPECT_EQ(NameIndexFind(pair[0]), id) << pair[0];
        DeletePattern(PatternFromId(id));
    }
}

// So many stems that some of them share a chain.
TEST_F(NameIndex, ANameOfManyElementsGoesAndComesWhole) {
    std::string first, second;
    for (int i = 0; i < 200; ++i) {
        first += "A" + std::to_string(i) + ",";
        second += "B" + std::to_string(i) + ",";
    }
    uint16_t other = MakePattern(first.c_str());
    uint16_t id = MakePattern(first.c_str());
    for (const std::string &name : {second, first, second}) {
        RenamePattern(PatternFromId(id), name.c_str());
        for (const char *letter : {"A", "B"}) {
            for (int i = 0; i < 200; ++i) {
                std::string member = letter + std::to_string(i);
                ASSERT_EQ(IndexVisit(member), VisitByPosition(member)) << member;
            }
        }
    }
    EXPECT_EQ(IndexVisit("A7"), (std::vector<Hit>{{other, 8}}));
    EXPECT_TRUE(IndexVisit("").empty());
}

TEST_F(NameIndex, EntriesWithoutARecordAreNotFound) {
    uint16_t id = MakePattern("A");
    PatternTable[id] = 0; // as a failed load leaves it
    EXPECT_EQ(NameIndexFind("A"), 0);
    EXPECT_TRUE(IndexVisit("A").empty());
}

TEST_F(NameIndex, GivesWhatTheLinearSearchGives) {
    std::mt19937 random(2);
    auto name = [&] {
        std::string base =
            std::string(random() % 5 == 0 ? "$" : "") + static_cast<char>("AaBbC"[random() % 5]);
        auto number = [&] { return std::to_string(random() % 5); };
        std::string result = base;
        uint32_t form = random() % 4;
        if (form == 1) result += "[" + number() + "]";
        if (form >= 2) result += "[" + number() + ":" + number() + "]";
        if (random() % 5 == 0) result += ",D";
        return result;
    };
    std::vector<uint16_t> ids;
    for (int round = 0; round < 4000; ++round) {
        uint32_t action = random() % 10;
        if (action < 5 || ids.empty()) {
            ids.push_back(MakePattern(random() % 8 ? name().c_str() : ""));
        } else if (action < 8) {
            RenamePattern(PatternFromId(ids[random() % ids.size()]), name().c_str());
        } else {
            size_t which = random() % ids.size();
            DeletePattern(PatternFromId(ids[which]));
            ids.erase(ids.begin() + static_cast<ptrdiff_t>(which));
        }
        std::string wanted = name();
        ASSERT_EQ(NameIndexFind(wanted), LinearFind(wanted)) << wanted;
        ASSERT_EQ(IndexVisit(wanted), LinearVisit(wanted)) << wanted;
    }
}

TEST_F(NameIndex, FollowsTheSeparatorOfLevelsWhichSaysWhatARangeIs) {
    Settings.HierChar = '.';
    MakePattern("A<3:0>");
    EXPECT_EQ(IndexVisit("A<1>").size(), 1u);
    Settings.HierChar = '(';
    EXPECT_EQ(IndexVisit("A<1>"), LinearVisit("A<1>"));
    EXPECT_TRUE(IndexVisit("A<1>").empty());
    EXPECT_EQ(IndexVisit("A<3:0>").size(), 1u);
    uint16_t second = MakePattern("B<3:0>");
    Settings.HierChar = '.';
    EXPECT_EQ(IndexVisit("B<1>").size(), 1u);
    DeletePattern(PatternFromId(second));
    EXPECT_TRUE(IndexVisit("B<1>").empty());
    MakePattern("C<3:0>");
    DeletePattern(PatternFromId(1));
    Settings.HierChar = '(';
    EXPECT_EQ(IndexVisit("C<3:0>").size(), 1u);
    EXPECT_TRUE(IndexVisit("A<3:0>").empty()) << "its id is free";
}

TEST_F(NameIndex, FindsMembersOfRangesOfEveryWidth) {
    MakePattern("$A[0:2000000000]");
    MakePattern("$A[31:32]");
    MakePattern("$A[0:100000:1000]");
    MakePattern("$A[64:0],$A[5]");
    MakePattern("$A");
    for (const char *member : {"$A[0]", "$A[5]", "$A[31]", "$A[32]", "$A[33]", "$A[64]", "$A[3000]",
                               "$A[3001]", "$A[2000000000]", "$A[2000000001]", "$A[-1]", "$A", "$A["}) {
        EXPECT_EQ(IndexVisit(member), VisitByPosition(member)) << member;
    }
}

} // namespace
