// The order of a document's statements where the ids alone would make another document of it.
#include "wdl/statement_order.h"

#include "store/mutators.h"
#include "store/pattern_store.h"
#include "unit/support/saved_document.h"
#include "unit/wdl/wdl_test.h"
#include <map>

namespace {

class StatementOrderTest : public WdlTest {
protected:
    // A composite of two members.
    static uint16_t composite(const char *name) {
        uint16_t id = MakePattern(name, {}, 2);
        makeComposite(id, MakePattern("$p[1:0]", {{0, 5}}, 2));
        return id;
    }
    static void makeComposite(uint16_t id, uint16_t member) {
        AddReference(id, {member}, PatternKind::Composite);
        AddReference(id, {member}, PatternKind::Composite);
    }
    // A pattern that looks at one bit of another.
    static uint16_t lookAt(const char *name, uint32_t width, uint16_t target, uint32_t bit) {
        uint16_t id = MakePattern(name, {}, width);
        AddReference(id, {target, 1, 1, 1, bit}, PatternKind::Reference);
        return id;
    }
    void expectBack() {
        SavedDocument saved = WhatIsSaved();
        EXPECT_EQ(saved.leftOut, 0u);
        EXPECT_TRUE(saved.comesBack);
        std::string text = WrittenText();
        ASSERT_TRUE(CompileAfresh(text)) << text;
        EXPECT_EQ(DifferenceFrom(saved), "") << text;
    }
};

} // namespace

TEST_F(StatementOrderTest, WhatLooksAtAWholeCompositeOf32BitsComesBeforeIt) {
    ASSERT_TRUE(CompileAfresh("C[31:0];\nC[31:16],C[15:0];\nC[31:0] = $D[31:0] + $D[31:0];\n"));
    EXPECT_EQ(ItemsOf("C[31:16],C[15:0]"), "C[31:0][0/0]");
    EXPECT_TRUE(WrittenStatements().starts_with("C[31:0] = ;\nC[31:16],C[15:0];\nC[31:0] {"));
    expectBack();
}

// Of the slices of a bus the log has the first one alone, and so has a document that was recovered.
TEST_F(StatementOrderTest, ABusWithFewerSlicesThanMembersIsJudgedByThoseThatItHas) {
    uint16_t gone = MakePattern("gone");
    uint16_t c = composite("$C[1:0]");
    lookAt("$C[1]", 1, c, 1);
    lookAt("$C[1],x", 2, c, 1);
    // One without a name has no statement.
    lookAt("", 1, c, 0);
    DeletePattern(PatternFromId(gone));
    EXPECT_EQ(WrittenStatements(), "$C[1:0] = ;\n"
                                   "$C[1];\n"
                                   "$C[1],x;\n"
                                   "$C[1:0] =  $p[1:0] +$p[1:0] ;\n"
                                   "$p[1:0] = 0 5;\n");
}

TEST_F(StatementOrderTest, ACompositeThatHasBeenUsedNeedsNoEmptyStatementForWhatLooksAtIt) {
    ASSERT_TRUE(CompileAfresh("n[1:0] = $C[1:0];\n$C[0];\n$C[1:0] = $p[1:0] + $p[1:0];\n"));
    EXPECT_EQ(WrittenStatements(), "n[1:0] { A Test Default None 0 1 50 } =  $C[1:0] ;\n"
                                   "$C[0];\n"
                                   "$C[1:0] =  $p[1:0] +$p[1:0] ;\n"
                                   "$p[1:0] = ;\n");
    expectBack();
}

// Ids are taken anew, so that a composite may be younger than what uses it and its bits.
TEST_F(StatementOrderTest, ABitOfItsOwnComesBehindTheCompositeThatIsInUseAlready) {
    uint16_t user = MakePattern("$n[1:0]", {}, 2);
    uint16_t usesBit = MakePattern("$m");
    AddReference(user, {composite("$C[1:0]")});
    AddReference(usesBit, {MakePattern("$C[1]", {{1, 5}})});
    EXPECT_EQ(WrittenStatements(), "$n[1:0] =  $C[1:0] ;\n"
                                   "$m =  $C[1] ;\n"
                                   "$C[1:0] =  $p[1:0] +$p[1:0] ;\n"
                                   "$p[1:0] = 0 5;\n"
                                   "$C[1] = 1 5;\n");
    expectBack();
}

// A name that is wider than a bus can be is a pattern of its own only where it is used.
TEST_F(StatementOrderTest, ABusComesBeforeTheUseOfAWiderOneThatHasItsBits) {
    ASSERT_TRUE(CompileAfresh("n;\nm = $E;\n$D[1:0] = 2 5;\nn = $D[40:0];\n$D[1];\nk = $D[1] #3;\n"));
    EXPECT_TRUE(WrittenStatements().starts_with("$D[1:0] = 2 5;\nn {")) << WrittenStatements();
    expectBack();
}

TEST_F(StatementOrderTest, ACompositeWithoutMembersIsReadAsAPlainBus) {
    uint16_t c = composite("$C[1:0]");
    lookAt("$C[0]", 1, c, 0);
    for (uint16_t left = 2; left > 0; --left) DeleteItem(PatternFromId(c), left - 1u);
    ASSERT_EQ(PatternFromId(c)->kind(), PatternKind::Composite);
    EXPECT_EQ(WrittenStatements(), "$C[1:0] = ;\n$p[1:0] = 0 5;\n$C[0];\n");
}

// Each bit needs the composite that has its name among the members, and that one a bus that looks at the next
// bit. However long the chain is, each statement comes once.
TEST_F(StatementOrderTest, PatternsThatPullEachOtherForwardHaveAnEnd) {
    constexpr int LEVELS = 120;
    auto bitName = [](int level) { return "$A" + std::to_string(level) + "[0]"; };
    MakePattern(bitName(0).c_str());
    for (int level = 0; level < LEVELS; ++level) {
        std::string number = std::to_string(level);
        uint16_t next = MakePattern(bitName(level + 1).c_str());
        uint16_t other = MakePattern(("Z" + number).c_str());
        uint16_t bus = lookAt((bitName(level + 1) + ",Z" + number).c_str(), 2, next, 0);
        AddReference(bus, {other, 1, 1, 1, 0}, PatternKind::Reference);
        makeComposite(MakePattern(("$A" + number + "[1:0]").c_str(), {}, 2), bus);
    }
    StatementOrder order = OrderStatements();
    EXPECT_EQ(order.leftOut, 0);
    std::map<uint16_t, int> statements;
    for (Statement statement : order.statements) statements[statement.id] += 1;
    EXPECT_EQ(statements.size(), 1u + 4 * LEVELS);
    for (auto [id, count] : statements) EXPECT_EQ(count, 1) << PatternFromId(id)->name();
}

// "E[0]" leads to the first bus that has it, and in the last bus to the newer node that has it as "E[0:0]".
// The bus comes before that node, though an item of the node's is what makes another one known.
TEST_F(StatementOrderTest, ABusComesBeforeANewerNodeOfItsBit) {
    ASSERT_TRUE(CompileAfresh("n;\n$D[1:0] = 2 5;\nn = $D[0] 1 5;\nE[1:0];\nE[0];\n"
                              "E[0:0] = $D[1:0] 1 4;\n$E[1],E[11:0];\n$E[1],E[1];\n"));
    EXPECT_TRUE(ItemsOf("$E[1],E[11:0]").ends_with(" E[1:0][1/1] E[0:0][0/1]")) << ItemsOf("$E[1],E[11:0]");
    expectBack();
    EXPECT_TRUE(ItemsOf("$E[1],E[11:0]").ends_with(" E[1:0][1/1] E[0:0][0/1]"));
}

// "E[]" holds the bit "E[0]", too, and as the newer one is what the bus "E[0:7]" looks at.
TEST_F(StatementOrderTest, ANodeThatHoldsABitUnderAnotherNameComesBehindTheOlderBus) {
    ASSERT_TRUE(CompileAfresh("n;\n$D[1:0] = ;\nn = $D[0];\n$D[1];\nm = $D[1];\nE[1:0];\nE[];\nE[0:7];\n"
                              "F = $D[1:0] + $D[1:01],E[1];\n"));
    EXPECT_TRUE(ItemsOf("E[0:7]").starts_with("E[][0/1] E[1:0][1/1] E[2][0/1]")) << ItemsOf("E[0:7]");
    expectBack();
    EXPECT_TRUE(ItemsOf("E[0:7]").starts_with("E[][0/1] E[1:0][1/1] E[2][0/1]")) << ItemsOf("E[0:7]");
}

// Thirty bits that nobody hinders are no thirty choices.
TEST_F(StatementOrderTest, BitsThatNobodyHindersAreReadWithoutASearch) {
    ASSERT_TRUE(CompileAfresh("n;\n$D[2:0] = 2 5;\nn = $D[0] 1 5 $W[40:0];\n$D[32:01];\nE[0];\nE[1:0];\n"
                              "c = $D[1:8888888888] + $D[2:0];\n"));
    EXPECT_EQ(Named("$D[32:01]").kind(), PatternKind::Reference);
    expectBack();
}

// A bar is part of the bit's own name, and a mark in front of the member.
TEST_F(StatementOrderTest, AMemberWithAMarkIsLookedForByItsOwnNameToo) {
    ASSERT_TRUE(CompileAfresh("n;\n$D[1:0] = ;\nn = $D[0];\n$D[1];\nm = $D[1];\n'E[1:0];\n'E[];\nx,'E[0:9];\n"
                              "F = $D[1:0] + $D[1:01],_E[1];\n"));
    std::string bits = "x[0/1] _E[][0/1] _E[1:0][1/1] _E[2][0/1]";
    EXPECT_TRUE(ItemsOf("x,'E[0:9]").starts_with(bits)) << ItemsOf("x,'E[0:9]");
    expectBack();
    EXPECT_TRUE(ItemsOf("x,'E[0:9]").starts_with(bits)) << ItemsOf("x,'E[0:9]");
}

// After a recovery a pattern that looks at others may have lost its slices.
TEST_F(StatementOrderTest, AMemberThatIsBorneByAPatternWithoutSlicesIsThatPattern) {
    uint16_t borne = MakePattern("$b");
    const_cast<Pattern &>(Named("$b")).setKind(PatternKind::Reference);
    lookAt("$B,$x", 1, borne, 0);
    EXPECT_EQ(WrittenStatements(), "$b;\n$B,$x;\n");
}
