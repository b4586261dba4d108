#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/wdl/wdl_test.h"

namespace {

class Nesting : public WdlTest {
protected:
    // $p0 = $p1; $p1 = $p2; ... so that `count` references follow one another, in rising or falling order.
    static std::string Chain(uint32_t count, bool rising) {
        std::string text;
        for (uint32_t i = 0; i < count; ++i) {
            uint32_t k = rising ? i : count - 1 - i;
            text += "$p" + std::to_string(k) + " = $p" + std::to_string(k + 1) + ";\n";
        }
        return text;
    }
    static std::string Parentheses(uint32_t depth) {
        return "a = " + std::string(depth / 2, '(') + "\n" + std::string(depth - depth / 2, '(') + "1 5\n" +
               std::string(depth / 2, ')') + "\n" + std::string(depth - depth / 2, ')') + ";\n";
    }
};

constexpr const char *CIRCLE = "Pattern refers to itself";
constexpr const char *TOO_DEEP = "Patterns are nested too deeply";

} // namespace

TEST_F(Nesting, APatternMayNotReferToItself) {
    EXPECT_EQ(FirstError("\n$a = $a;\n"), std::string("2: ") + CIRCLE);
    EXPECT_EQ(MessageOf("$a = 1 5 $A #3;\n"), CIRCLE);
}

TEST_F(Nesting, APatternMayNotReferToItselfInParentheses) {
    EXPECT_EQ(FirstError("$a =\n(1 5 ($a) );\n"), std::string("2: ") + CIRCLE);
}

TEST_F(Nesting, PatternsMayNotReferToEachOther) {
    EXPECT_EQ(FirstError("$a = $b;\n$b =\n1 5 $a;\n"), std::string("3: ") + CIRCLE);
    EXPECT_EQ(FirstError("$a = $b;\n$b = (1 5 $c);\n$c = $d;\n$d = 1 5 $a;\n"), std::string("4: ") + CIRCLE);
}

TEST_F(Nesting, ACircleThroughABitOfABusIsFound) {
    EXPECT_EQ(FirstError("$b[1:0] = $y;\n$b[1];\n$y = $b[1];\n"), std::string("3: ") + CIRCLE);
    EXPECT_EQ(FirstError("$b[1:0];\n$b[1];\n$y = $b[1];\n$b[1:0] = $y;\n"), std::string("4: ") + CIRCLE);
}

TEST_F(Nesting, ALongCircleIsACircle) {
    EXPECT_EQ(MessageOf(Chain(200, true) + "$p200 = $p0;\n"), CIRCLE);
    EXPECT_EQ(MessageOf(Chain(200, false) + "$p200 = $p0;\n"), CIRCLE);
    EXPECT_EQ(MessageOf(Chain(MAX_NESTING, true) + "$p256 = $p250;\n"), CIRCLE);
    EXPECT_EQ(MessageOf(Chain(MAX_NESTING, true) + "$p256 = $p0;\n"), CIRCLE);
}

TEST_F(Nesting, SharedPatternsAreNoCircle) {
    EXPECT_EQ(FirstError("$a = $b $c;\n$b = $d;\n$c = $d $d;\n$d = 1 5;\nn = $a $b $c $d;\n"), "");
}

TEST_F(Nesting, ChainsOfReferencesHaveALimit) {
    EXPECT_EQ(FirstError(Chain(MAX_NESTING, true)), "");
    EXPECT_EQ(FirstError(Chain(MAX_NESTING, false)), "");
    EXPECT_EQ(FirstError(Chain(MAX_NESTING + 1, true)), "257: " + std::string(TOO_DEEP));
    EXPECT_EQ(FirstError(Chain(MAX_NESTING + 1, false)), "257: " + std::string(TOO_DEEP));
    EXPECT_EQ(MessageOf(Chain(3900, true)), TOO_DEEP);
    EXPECT_EQ(MessageOf(Chain(3900, false)), TOO_DEEP);
}

TEST_F(Nesting, TwoChainsJoinedInTheMiddleCountTogether) {
    std::string upper = Chain(128, true);
    std::string lower;
    for (int i = 0; i < 128; ++i) lower += "$q" + std::to_string(i) + " = $q" + std::to_string(i + 1) + ";\n";
    EXPECT_EQ(FirstError(lower + upper + "$q128 = $p1;\n"), "");
    EXPECT_EQ(MessageOf(lower + upper + "$q128 = $p0;\n"), TOO_DEEP);
    EXPECT_EQ(FirstError(upper + lower + "$q128 = $p1;\n"), "");
    EXPECT_EQ(MessageOf(upper + lower + "$q128 = $p0;\n"), TOO_DEEP);
}

TEST_F(Nesting, ParenthesesHaveTheSameLimit) {
    EXPECT_EQ(FirstError(Parentheses(MAX_NESTING)), "");
    EXPECT_EQ(UpdateFullDuration(), 5u);
    EXPECT_EQ(MessageOf(Parentheses(MAX_NESTING + 1)), TOO_DEEP);
}

TEST_F(Nesting, TensOfThousandsOfParenthesesDoNoHarm) {
    std::string text = "a = ";
    for (int line = 0; line < 100; ++line) text += std::string(1000, '(') + "\n";
    EXPECT_EQ(FirstError(text), "1: " + std::string(TOO_DEEP));
}

TEST_F(Nesting, ParenthesesAndNamesCountTogether) {
    std::string text = "$p256 = 1 5;\na = " + std::string(56, '(') + "$p56" + std::string(56, ')') + ";\n";
    EXPECT_EQ(MessageOf(Chain(MAX_NESTING, true) + text), TOO_DEEP);
    text = "$p256 = 1 5;\na = " + std::string(55, '(') + "$p56" + std::string(55, ')') + ";\n";
    EXPECT_EQ(FirstError(Chain(MAX_NESTING, true) + text), "");
}

TEST_F(Nesting, TheBitsOfABusAreOneStepDown) {
    std::string text = Chain(MAX_NESTING - 1, true);
    EXPECT_EQ(FirstError(text + "$b[1:0] = $p0;\n"), "");
    EXPECT_EQ(MessageOf(text + "$b[1:0] = $p0;\n$b[0];\n"), TOO_DEEP);
}

TEST_F(Nesting, ManyReferencesToManyPatternsAreCheckedQuickly) {
    // Each pattern is deepened as often as it can be: the work stays bounded.
    std::string text;
    for (int i = 0; i < 250; ++i) {
        text += "$p" + std::to_string(i) + " =\n";
        for (int k = i + 1; k <= 250; ++k) text += "$p" + std::to_string(k) + " \n";
        text += ";\n";
    }
    EXPECT_EQ(FirstError(text), "");
}
