#include "store/signal_name.h"

#include "config/settings.h"
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

class SignalName : public testing::Test {
protected:
    void SetUp() override {
        InitSettings();
        NameChars = {'[', ']', '_', '.'};
    }
    void TearDown() override { NameChars = {'[', ']', '_', '.'}; }
};

std::string Canonical(const std::string &name) {
    char buffer[NAME_SIZE];
    snprintf(buffer, sizeof buffer, "%s", name.c_str());
    CanonicalizeName(buffer);
    return buffer;
}

std::vector<std::string> Members(const char *text) {
    std::vector<std::string> members;
    ForEachBusMember(
        text,
        [](const char *member, void *context) {
            static_cast<std::vector<std::string> *>(context)->emplace_back(member);
            return 0;
        },
        &members);
    return members;
}

std::string Trimmed(const char *text) {
    char buffer[80];
    snprintf(buffer, sizeof buffer, "%s", text);
    TrimName(buffer);
    return buffer;
}

std::string Stripped(const char *name, bool expectInverted) {
    char buffer[80];
    bool inverted = !expectInverted;
    StripInversionMarks(name, buffer, inverted);
    EXPECT_EQ(inverted, expectInverted) << name;
    return buffer;
}

using Texts = std::vector<std::string>;

TEST_F(SignalName, TheCanonicalFormHasSquareBracketsAndColons) {
    EXPECT_EQ(Canonical("A.B<3-0>"), "A.B[3:0]");
    EXPECT_EQ(Canonical("Q(7,0,2"), "Q[7:0:2]");
    EXPECT_EQ(Canonical("D{1;2}"), "D[1:2]");
    EXPECT_EQ(Canonical(""), "");
    NameChars.HierarchyChar = 'x'; // letters may separate levels, too
    EXPECT_EQ(Canonical("AxBx_C"), "A.B._C");
}

TEST_F(SignalName, BlanksControlsAndHighBytesDisappear) {
    EXPECT_EQ(Canonical(" A\t B\x80\xFF"
                        "C "),
              "ABC");
}

TEST_F(SignalName, TheHierarchyCharacterIsThatOfTheSettings) {
    Settings.HierChar = '/';
    EXPECT_EQ(Canonical("A.B-C"), "A/B/C");
    EXPECT_EQ(Canonical("A._B"), "A/_B");
}

TEST_F(SignalName, ABarAtTheStartOfALevelBecomesTheBarCharacter) {
    NameChars.NameBarChar = '~';
    EXPECT_EQ(Canonical("'RESET"), "~RESET");
    EXPECT_EQ(Canonical("_RESET"), "~RESET");
    EXPECT_EQ(Canonical("A.'B"), "A.~B");
    EXPECT_EQ(Canonical("A_B'C"), "A_B'C");
}

TEST_F(SignalName, ClosingBracketsOutsideARangeAreDropped) {
    EXPECT_EQ(Canonical("A]B)"), "AB");
}

TEST_F(SignalName, ABackslashSeparatesAList) {
    EXPECT_EQ(Canonical("A\\B,C"), "A,B,C");
}

TEST_F(SignalName, ARangeKeepsThreeNumbersAndDropsTheRest) {
    EXPECT_EQ(Canonical("A[7:0:2:9]"), "A[7:0:2]");
    EXPECT_EQ(Canonical("A[x7y:z0]"), "A[7:0]");
}

TEST_F(SignalName, AnOpenRangeIsClosed) {
    EXPECT_EQ(Canonical("A[7:0"), "A[7:0]");
}

TEST_F(SignalName, WithRoundHierarchyOnlySquareBracketsMakeARange) {
    Settings.HierChar = '(';
    EXPECT_EQ(Canonical("A<1>[3:0]"), "A<1>[3:0]");
    EXPECT_EQ(Members("A<3:0>"), Texts{"A<3:0>"});
    EXPECT_EQ(Members("A[1:0]"), (Texts{"A[1]", "A[0]"}));
}

TEST_F(SignalName, VisitsTheMembersOfAList) {
    EXPECT_EQ(Members("A[3:0],B"), (Texts{"A[3]", "A[2]", "A[1]", "A[0]", "B"}));
    EXPECT_EQ(Members("D[0:6:2]"), (Texts{"D[0]", "D[2]", "D[4]", "D[6]"}));
    EXPECT_EQ(Members("E[5]"), Texts{"E[5]"});
    EXPECT_EQ(Members("A\\B"), (Texts{"A", "B"}));
    EXPECT_EQ(Members(""), Texts{});
}

TEST_F(SignalName, APlainNameIsOneMember) {
    EXPECT_EQ(Members("CLK"), Texts{"CLK"});
    EXPECT_EQ(Members("[3:0]"), Texts{"[3:0]"});
    EXPECT_EQ(Members("A3]"), Texts{"A3]"});
}

TEST_F(SignalName, ARangeWithoutANumberIsBitZero) {
    EXPECT_EQ(Members("A[]"), Texts{"A[0]"});
}

TEST_F(SignalName, NumbersOfARangeMayHaveBlanksAndASignInFront) {
    EXPECT_EQ(Members("A[ \t\r+1:\v 0]"), (Texts{"A[1]", "A[0]"}));
    EXPECT_EQ(Members("A[1- 0]"), (Texts{"A[1]", "A[0]"}));
    EXPECT_EQ(Members("A[1:-1]"), (Texts{"A[1]", "A[0]", "A[-1]"}));
    for (const char *name : {"A[\b1]", "A[\x0E 1]", "A[x1]"}) EXPECT_EQ(Members(name), Texts{"A[0]"}) << name;
}

TEST_F(SignalName, AStepOfZeroIsOneAndAContradictingOneVisitsNothing) {
    EXPECT_EQ(Members("A[1:0:0]"), (Texts{"A[1]", "A[0]"}));
    EXPECT_EQ(Members("A[0:7:-1]"), Texts{});
    EXPECT_EQ(Members("A[7:0:-1]"), Texts{});
}

TEST_F(SignalName, TheClosingBracketFoundIsTheOneWritten) {
    EXPECT_EQ(Members("A(1:0>"), (Texts{"A(1>", "A(0>"}));
}

TEST_F(SignalName, TheFirstNonzeroAnswerEndsTheWalk) {
    int calls = 0;
    int result = ForEachBusMember(
        "A[7:0]",
        [](const char *member, void *context) {
            ++*static_cast<int *>(context);
            return std::string(member) == "A[5]" ? 42 : 0;
        },
        &calls);
    EXPECT_EQ(result, 42);
    EXPECT_EQ(calls, 3);
}

TEST_F(SignalName, CountsMembersWithoutVisitingThem) {
    for (const char *name : {"A[3:0],B", "D[0:6:2]", "E[5]", "A[]", "", "A,,B", "A[0:7:-1]", "[3:0]"}) {
        EXPECT_EQ(CountBusMembers(name), Members(name).size()) << name;
    }
    EXPECT_EQ(CountBusMembers("A[0:2147483647]"), 2147483648u);
    EXPECT_EQ(CountBusMembers("A[0:99999999999]"), 2147483648u);
    EXPECT_EQ(CountBusMembers("A[0:2147483647],B[0:2147483647],C"), 4294967295u);
}

// The closed form against the walk, on random lists and members.
TEST_F(SignalName, ThePositionOfAMemberIsThatOfTheWalk) {
    std::mt19937 random(1);
    auto number = [&] { return std::to_string(static_cast<int>(random() % 12) - 2); };
    auto element = [&]() -> std::string {
        std::string base(1, static_cast<char>('A' + random() % 2));
        switch (random() % 5) {
        case 0:
            return base;
        case 1:
            return base + "[" + number() + "]";
        case 2:
            return base + "[" + number() + ":" + number() + "]";
        case 3:
            return base + "<" + number() + ":" + number() + ":" + number() + ">";
        default:
            return base + "[]";
        }
    };
    for (int round = 0; round < 20000; ++round) {
        std::string text = element();
        for (uint32_t more = random() % 3; more > 0; --more) text += "," + element();
        std::string member = random() % 2 ? element() : "A[" + number() + "]";
        Texts members = Members(text.c_str());
        auto found = std::find(members.begin(), members.end(), member);
        uint32_t expected = found == members.end() ? 0 : static_cast<uint32_t>(found - members.begin()) + 1;
        ASSERT_EQ(BusMemberPosition(text.c_str(), member), expected) << text << " " << member;
        if (expected == 0) continue;
        bool stemFound = false;
        struct Wanted {
            NameStem stem;
            bool *found;
        } wanted = {MemberStem(member), &stemFound};
        ForEachNameStem(
            text.c_str(),
            [](const NameStem &stem, void *context) {
                auto *w = static_cast<Wanted *>(context);
                bool within = stem.low <= w->stem.low && w->stem.high <= stem.high;
                if (stem.text == w->stem.text && within) *w->found = true;
            },
            &wanted);
        ASSERT_TRUE(stemFound) << text << " " << member;
    }
}

TEST_F(SignalName, LongElementsStayWithinTheirBuffers) {
    std::string longName(5000, 'N');
    EXPECT_EQ(Members(longName.c_str()).size(), 1u);
    EXPECT_EQ(Members((longName + "[3:0]").c_str()).size(), 4u);
}

TEST_F(SignalName, TrimsBlanksAtBothEnds) {
    EXPECT_EQ(Trimmed("  A B \t\n"), "A B");
    EXPECT_EQ(Trimmed("\tA"), "\tA");
    EXPECT_EQ(Trimmed("   "), "");
    EXPECT_EQ(Trimmed(""), "");
    EXPECT_EQ(Trimmed("\t"), "\t");
}

TEST_F(SignalName, InversionMarksStandInFrontOfWords) {
    EXPECT_EQ(Stripped("'RESET", true), "RESET");
    EXPECT_EQ(Stripped("_RESET", true), "RESET");
    EXPECT_EQ(Stripped("RE_SET'", false), "RE_SET'");
    EXPECT_EQ(Stripped("A,'B", true), "A,B");
    EXPECT_EQ(Stripped("A.'B-_C\\'D", true), "A.B-C\\D");
    EXPECT_EQ(Stripped("A B", false), "A B");
    EXPECT_EQ(Stripped("''A", true), "'A");
}

TEST_F(SignalName, BracketsAreCopiedWhole) {
    EXPECT_EQ(Stripped("A[3,'0]", false), "A[3,'0]");
    EXPECT_EQ(Stripped("A<.'0>.'B", true), "A<.'0>.B");
    EXPECT_EQ(Stripped("A[.'0}.'B", true), "A[.'0}.B");
}

TEST_F(SignalName, ComparesWithoutCase) {
    EXPECT_TRUE(EqualIgnoringCase("Default", "DEFAULT"));
    EXPECT_FALSE(EqualIgnoringCase("Default", "Defaults"));
    EXPECT_FALSE(EqualIgnoringCase("[", "{"));
}

TEST_F(SignalName, MembersBeyond32BitsAreNone) {
    EXPECT_EQ(BusMemberPosition("A[0:2147483647]", "A[2147483647]"), 2147483648u);
    EXPECT_EQ(BusMemberPosition("A[0:2147483647]", "A[2147483648]"), 0u);
    // A range that goes further is held within 32 bits.
    EXPECT_EQ(BusMemberPosition("A[0:9999999999]", "A[2147483647]"), 2147483648u);
    EXPECT_EQ(BusMemberPosition("A[0:9999999999]", "A[9999999999]"), 0u);
    EXPECT_EQ(BusMemberPosition("A[0:9999999999]", "A[99999999999999999999]"), 0u);
    EXPECT_EQ(BusMemberPosition("A[-1:-9999999999]", "A[-2147483647]"), 2147483647u);
    EXPECT_EQ(BusMemberPosition("A[-1:-9999999999]", "A[-2147483649]"), 0u);
}

TEST_F(SignalName, AMemberHasTheBracketsOfItsRange) {
    EXPECT_EQ(BusMemberPosition("A[3:0]", "A[1]"), 3u);
    for (const char *member : {"A[1>", "A[1", "A<1]", "A[", ""}) {
        EXPECT_EQ(BusMemberPosition("A[3:0]", member), 0u) << member;
    }
    EXPECT_EQ(MemberStem("").text, "");
}

} // namespace
