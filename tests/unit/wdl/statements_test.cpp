#include "config/settings.h"
#include "headless/headless.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/compiler.h"
#include <cstdlib>
#include <utility>

namespace {

class Statements : public WdlTest {};

} // namespace

// --- whole statements ---

TEST_F(Statements, EmptyTextAndBlankLinesGiveAnEmptyDocument) {
    EXPECT_EQ(FirstError(""), "");
    EXPECT_EQ(FirstError("\n   \n\n"), "");
    EXPECT_EQ(HighestPatternId, 0);
}

TEST_F(Statements, ANodeGetsItsPropertiesAndItems) {
    EXPECT_EQ(FirstError("CLK { A In Default NRZ 0 1 50 } = 1 10 0 10;\n"), "");
    const Pattern &clk = Named("CLK");
    EXPECT_TRUE(clk.hasProperties());
    EXPECT_EQ(clk.clock(), 1u);
    EXPECT_EQ(clk.pinType(), static_cast<uint32_t>(PinType::In));
    EXPECT_EQ(clk.stateTable(), 0u);
    EXPECT_EQ(clk.format(), SignalFormat::NRZ);
    EXPECT_EQ(clk.delay, 0u);
    EXPECT_EQ(clk.period, 1);
    EXPECT_EQ(clk.duty, 50);
    EXPECT_EQ(ItemsOf("CLK"), "1:10 0:10");
}

TEST_F(Statements, TheRestOfALineBehindAStatementIsDropped) {
    EXPECT_EQ(FirstError("a = 1 5; b = 0 5;\nc = 0 7;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:5");
    EXPECT_EQ(FindPattern("b"), nullptr);
    EXPECT_EQ(ItemsOf("c"), "0:7");
}

TEST_F(Statements, AStatementMayRunOverLines) {
    EXPECT_EQ(FirstError("a\n=\n1\n5\n\n0 5\n;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:5 0:5");
}

TEST_F(Statements, AnUnfinishedStatementAtTheEndIsAccepted) {
    EXPECT_EQ(FirstError("a = 1 5 0 5\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:5 0:5");
    EXPECT_EQ(FirstError("a = 1 5 (0 5\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:5 (0:5)");
    EXPECT_EQ(FirstError("a\n"), "");
    EXPECT_EQ(Named("a").itemCount, 0);
}

TEST_F(Statements, AnUnfinishedLastLineNeedsItsLineFeed) {
    EXPECT_EQ(MessageOf("a = 1 5"), "Line is too long - Max is 1024 characters");
}

TEST_F(Statements, ANodeMayHaveNoItems) {
    EXPECT_EQ(FirstError("a = ;\nb;\n"), "");
    EXPECT_EQ(Named("a").itemCount, 0);
    EXPECT_EQ(Named("b").itemCount, 0);
}

TEST_F(Statements, OnlyTheFirstErrorAndTheTokenInHandAreTold) {
    EXPECT_EQ(CompileAfresh("a = 1 5\n = ;\n = ;\n"), 0);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].line, 2);
    // The scanner goes on to the next token behind its own error.
    EXPECT_EQ(CompileAfresh("a = @nrz = 1 5;\n"), 0);
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].message, "Invalid pin type");
    EXPECT_EQ(errors[1].message, "Invalid operation on right of '='");
}

TEST_F(Statements, ACharacterLeftBehindByAnErrorDoesNotReachTheNextFile) {
    EXPECT_EQ(CompileAfresh("a = 5(\n = ;\n"), 0);
    EXPECT_EQ(FirstError("b = 1 5;\n"), "");
    EXPECT_EQ(FindPattern("(b"), nullptr);
    EXPECT_EQ(ItemsOf("b"), "1:5");
}

TEST_F(Statements, NothingIsReadBehindALineThatIsTooLong) {
    std::string items;
    for (int i = 0; i < 1000; ++i) items += " 1 5";
    EXPECT_EQ(CompileAfresh("a = 1 5\n" + items + ";\n"), 0);
    EXPECT_EQ(errors.size(), 1u);
    EXPECT_EQ(ItemsOf("a"), "1:5");
}

// --- left of the "=" ---

TEST_F(Statements, APatternMayBeReferredToBeforeItIsDefined) {
    EXPECT_EQ(FirstError("a = $p;\n$p = 1 5;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p");
    EXPECT_EQ(ItemsOf("$p"), "1:5");
    EXPECT_EQ(Named("a").id, 1);
    EXPECT_EQ(Named("$p").id, 2);
}

TEST_F(Statements, ASecondDefinitionWithItemsIsAnError) {
    EXPECT_EQ(FirstError("$p = 0 5;\n$p = 1 5;\n"), "2: Multiple definition of pattern");
    EXPECT_EQ(FirstError("$p = ;\n$P = 1 5;\n"), "");
    EXPECT_EQ(ItemsOf("$p"), "1:5");
}

TEST_F(Statements, ErrorsOfTheLeftSide) {
    EXPECT_EQ(MessageOf("a b = 1 5;\n"), "Defining second name for pattern");
    EXPECT_EQ(MessageOf("= 1 5;\n"), "Missing pattern name");
    EXPECT_EQ(MessageOf("{ A }\n"), "Missing pattern name");
    EXPECT_EQ(MessageOf("a { , } = 1 5;\n"), "Missing pattern name");
    EXPECT_EQ(MessageOf("a {} = 1 5;\n"), "Missing pattern name");
    EXPECT_EQ(MessageOf("] = 1 5;\n"), "Missing pattern name");
    EXPECT_EQ(MessageOf("$p { Default } = 1 5;\n"), "Properties not allowed on a sub pattern");
    EXPECT_EQ(MessageOf("$p {} = 1 5;\n"), "Properties not allowed on a sub pattern");
    EXPECT_EQ(MessageOf("D[1:0] = ;\nD[0] = 1 5;\n"), "Defining data for reference pattern");
    EXPECT_EQ(MessageOf("$D[1:0] = ;\n$D[0] { Default };\n"), "Properties not allowed on reference pattern");
}

TEST_F(Statements, ABlockIsReadIntoANodeThatRefersToABus) {
    EXPECT_EQ(FirstError("D[1:0] = ;\nD[0] { O Default NRZ 3 4 60 };\n"), "");
    EXPECT_EQ(Named("D[0]").kind(), PatternKind::Reference);
    EXPECT_EQ(Named("D[0]").delay, 3u);
    EXPECT_EQ(Named("D[0]").pinType(), static_cast<uint32_t>(PinType::Out));
}

TEST_F(Statements, AReferencePatternMayBeNamedAgain) {
    EXPECT_EQ(FirstError("D[1:0] = ;\nD[0];\nD[0];\n"), "");
    EXPECT_EQ(Named("D[0]").itemCount, 1);
}

TEST_F(Statements, ABusOf33MembersGivesNoRecordAndNoErrorByItself) {
    EXPECT_EQ(FirstError("D[32:0];\n"), "");
    EXPECT_EQ(HighestPatternId, 0);
    ASSERT_FALSE(Headless.strips.empty());
    EXPECT_EQ(Headless.strips.back(), "ERROR: Bus width exceeds 32 bits");
    EXPECT_EQ(FirstError("\nD[32:0] = 1 5;\n"), "2: Missing pattern name");
    EXPECT_EQ(FirstError("D[31:0] = 1 5;\n"), "");
    EXPECT_EQ(Named("D[31:0]").width, 32);
}

TEST_F(Statements, NewNodesFollowAutoAssign) {
    EXPECT_EQ(FirstError("%AUTOASSIGN = 0;\na = ;\n%AUTOASSIGN = 1;\nb = ;\n$p = ;\nc { Default } = ;\n"),
              "");
    EXPECT_EQ(Named("a").clock(), 0u);
    EXPECT_EQ(Named("b").clock(), 1u);
    EXPECT_EQ(Named("$p").clock(), 0u);
    EXPECT_EQ(Named("c").clock(), 0u);
}

// --- right of the "=" ---

TEST_F(Statements, ValuesAreDecimalInABitAndHexadecimalInABus) {
    EXPECT_EQ(FirstError("a = 10 10;\nD[7:0] = 10 10 fF 10;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "10:10");
    EXPECT_EQ(ItemsOf("D[7:0]"), "16:10 255:10");
}

TEST_F(Statements, ValuesAreNotTestedAgainstTheWidth) {
    EXPECT_EQ(FirstError("D[1:0] = ffffffff 1;\n"), "");
    EXPECT_EQ(ItemsOf("D[1:0]"), "4294967295:1");
}

TEST_F(Statements, NumbersBeyond32BitsReadAsTheLargest) {
    EXPECT_EQ(FirstError("a = 4294967296 5 -1 99999999999999999999;\nD[1:0] = 100000000 1;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "4294967295:5 4294967295:2147483647");
    EXPECT_EQ(ItemsOf("D[1:0]"), "4294967295:1");
}

TEST_F(Statements, ADurationKeeps31Bits) {
    EXPECT_EQ(FirstError("a = 1 2147483647 0 2147483648 1 2147483649;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:2147483647 0:0 1:1");
}

TEST_F(Statements, TextWithoutANumberReadsAsZero) {
    EXPECT_EQ(FirstError("a = abc def - .;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "0:0 0:0");
}

TEST_F(Statements, ABareWordIsANumberWithoutADurationOrAnIllegalName) {
    EXPECT_EQ(MessageOf("a = abc;\n"), "Missing duration");
    EXPECT_EQ(MessageOf("a = xyz;\n"), "Illegal use of name");
    EXPECT_EQ(MessageOf("a = 1;\n"), "Missing duration");
    EXPECT_EQ(MessageOf("a = 1 $p;\n"), "Missing duration");
}

TEST_F(Statements, NestedItemsBecomeAnUnnamedPatternOfTheSameWidth) {
    EXPECT_EQ(FirstError("D[3:0] = 1 5 (a 5 (b 5)) 2 5;\n"), "");
    EXPECT_EQ(ItemsOf("D[3:0]"), "1:5 (10:5 (11:5)) 2:5");
    for (uint32_t id = 2; id <= 3; ++id) {
        EXPECT_EQ(PatternFromId(id)->nameLength, 0);
        EXPECT_EQ(PatternFromId(id)->width, 4);
        EXPECT_TRUE(PatternFromId(id)->isBus());
        EXPECT_FALSE(PatternFromId(id)->hasProperties());
    }
}

TEST_F(Statements, ASemicolonInParenthesesEndsOnlyThem) {
    EXPECT_EQ(FirstError("a = (1 5; 0 5;\nb = 1 7;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "(1:5) 0:5");
    EXPECT_EQ(ItemsOf("b"), "1:7");
}

TEST_F(Statements, AClosingParenthesisAtTheTopEndsTheStatement) {
    EXPECT_EQ(FirstError("a = 1 5) 0 5;\nb = 1 7;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:5");
    EXPECT_EQ(ItemsOf("b"), "1:7");
}

TEST_F(Statements, EmptyParenthesesAreAnEmptyPattern) {
    EXPECT_EQ(FirstError("a = ()#3 ;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "()#3");
}

TEST_F(Statements, NamesJoinedByPlusAreAComposite) {
    EXPECT_EQ(FirstError("a = $p $q;\nb = $p + $q;\nc = $p+ 1 5;\nd = $p +$q+$r $s;\n"), "");
    EXPECT_EQ(Named("a").kind(), PatternKind::Plain);
    EXPECT_EQ(ItemsOf("a"), "$p $q");
    EXPECT_EQ(Named("b").kind(), PatternKind::Composite);
    EXPECT_EQ(ItemsOf("b"), "$p $q");
    EXPECT_EQ(FindPattern("$p+"), &Named("$p+")); // the plus belongs to the name in front of it
    EXPECT_EQ(Named("d").kind(), PatternKind::Composite);
    EXPECT_EQ(ItemsOf("d"), "$p $q+$r $s");
}

TEST_F(Statements, APlusNeedsOneReferenceInFrontOfIt) {
    EXPECT_EQ(MessageOf("a = 1 5 + 0 5;\n"), "Invalid composite bus formation");
    EXPECT_EQ(MessageOf("a = + $p;\n"), "Invalid composite bus formation");
    EXPECT_EQ(MessageOf("a = $p $q + $r;\n"), "Invalid composite bus formation");
    EXPECT_EQ(FirstError("a = $p + 1 5;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p 1:5");
    EXPECT_EQ(Named("a").kind(), PatternKind::Plain);
    EXPECT_EQ(FirstError("a = $p + + $q + $r;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p $q $r");
}

TEST_F(Statements, ThePlusOfAnOuterPatternDoesNotReachIntoParentheses) {
    EXPECT_EQ(FirstError("a = $p + ($q $r) + (1 5);\n"), "");
    EXPECT_EQ(Named("a").kind(), PatternKind::Composite);
    EXPECT_EQ(ItemsOf("a"), "$p ($q $r) (1:5)");
    EXPECT_EQ(PatternFromId(Named("a").item(1).patternId())->kind(), PatternKind::Plain);
}

TEST_F(Statements, ScaleAndRepeatGoToTheLastItem) {
    EXPECT_EQ(FirstError("a = $p*3 $q *2 #4 (1 5)#65535 *65535;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p*3 $q*2#4 (1:5)*65535#65535");
    EXPECT_EQ(FirstError("a = $p *3 *1 #7 #8;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p#8");
}

TEST_F(Statements, ANameTakesInAScaleWithoutABlank) {
    EXPECT_EQ(FirstError("a = $p*3#2;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p*3#2");
    EXPECT_NE(FindPattern("$p*3#2"), nullptr);
}

TEST_F(Statements, CountsAreCutTo16Bits) {
    EXPECT_EQ(MessageOf("a = $p *65536;\n"), "Invalid scale factor");
    EXPECT_EQ(MessageOf("a = $p #65536;\n"), "Invalid repeat count");
    EXPECT_EQ(FirstError("a = $p *65537 #65538;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p#2");
    EXPECT_EQ(FirstError("a = $p *99999999999;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p*65535");
}

TEST_F(Statements, ErrorsOfScaleAndRepeat) {
    EXPECT_EQ(MessageOf("a = *2;\n"), "Nothing to scale");
    EXPECT_EQ(MessageOf("a = 1 5 *2;\n"), "May not scale a transition");
    EXPECT_EQ(MessageOf("a = $p *0;\n"), "Invalid scale factor");
    EXPECT_EQ(MessageOf("a = $p * 2;\n"), "Invalid scale factor");
    EXPECT_EQ(MessageOf("a = #2;\n"), "Nothing to repeat");
    EXPECT_EQ(MessageOf("a = 1 5 #2;\n"), "May not repeat a transition");
    EXPECT_EQ(MessageOf("a = $p #0;\n"), "Invalid repeat count");
    EXPECT_EQ(MessageOf("a = $p #;\n"), "Invalid repeat count");
}

TEST_F(Statements, ForeverEndsANode) {
    EXPECT_EQ(FirstError("a = 1 5 $p ## ;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "1:5 $p#65535");
    EXPECT_EQ(FirstError("a = (1 5 0 5)##;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "(1:5 0:5)#65535");
}

TEST_F(Statements, ErrorsOfForever) {
    EXPECT_EQ(MessageOf("a = ($p ##);\n"), "Nested patterns may not repeat forever");
    EXPECT_EQ(MessageOf("a = (##);\n"), "Nested patterns may not repeat forever");
    EXPECT_EQ(MessageOf("$x = $p ##;\n"), "Patterns may not repeat forever");
    EXPECT_EQ(MessageOf("$x = ##;\n"), "Patterns may not repeat forever");
    EXPECT_EQ(MessageOf("a = ##;\n"), "Nothing to repeat forever");
    EXPECT_EQ(MessageOf("a = 1 5 ##;\n"), "May not repeat a transition");
    EXPECT_EQ(MessageOf("a = $p ## 1 5;\n"), "Repeat forever must be at end of line");
    EXPECT_EQ(MessageOf("a = $p ## )\n"), "Repeat forever must be at end of line");
}

TEST_F(Statements, ARepeatOf65535IsForeverWithoutItsTests) {
    EXPECT_EQ(FirstError("$x = $p #65535;\n"), "");
    EXPECT_EQ(ItemsOf("$x"), "$p#65535");
}

TEST_F(Statements, FormatsAreForcedOnTheLastItem) {
    EXPECT_EQ(FirstError("a = $p @NRZ $q @RZ $r @R1 $s @RC ;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$p@1 $q@2 $r@3 $s@4");
}

TEST_F(Statements, ErrorsOfForcedFormats) {
    EXPECT_EQ(MessageOf("a = @RZ ;\n"), "No pattern to force pin type");
    EXPECT_EQ(MessageOf("a = 1 5 @RZ ;\n"), "May not set pin type on a transition");
    EXPECT_EQ(MessageOf("a = $p @nrz ;\n"), "Invalid pin type");
    EXPECT_EQ(MessageOf("a { Default NRZ 0 1 50 } = $p @RZ ;\n"),
              "May only force pin types in nodes with types");
    EXPECT_EQ(MessageOf("a { Default NRZ 0 1 50 } = ($p @RZ ) ;\n"),
              "May only force pin types in nodes with types");
    EXPECT_EQ(FirstError("a { Default NRZ 0 1 50 } = $p ;\nb = $p @RZ ;\n"), "");
}

TEST_F(Statements, OtherTokensDoNotBelongOnTheirSide) {
    EXPECT_EQ(MessageOf("a = < b >;\n"), "Invalid operation on right of '='");
    EXPECT_EQ(MessageOf("a = =;\n"), "Invalid operation on right of '='");
    EXPECT_EQ(MessageOf("a = { A };\n"), "Invalid operation on right of '='");
    EXPECT_EQ(MessageOf("a = %ENDTIME=5;\n"), "Invalid operation on right of '='");
}

// --- what a reference may lead to ---

TEST_F(Statements, AReferenceFillsTheNewestPatternOfThatNameWhateverItsCase) {
    EXPECT_EQ(FirstError("$Pat = 1 5;\na = $pAT;\n"), "");
    EXPECT_EQ(ItemsOf("a"), "$Pat");
}

TEST_F(Statements, AReferencedBusIsHexadecimalWhenDefined) {
    EXPECT_EQ(FirstError("D[3:0] = $p[3:0];\n$p[3:0] = f 5;\n"), "");
    EXPECT_EQ(ItemsOf("$p[3:0]"), "15:5");
}

// --- limits ---

namespace {

std::string ManyNodes(int count) {
    std::string text;
    for (int i = 1; i <= count; ++i) text += "n" + std::to_string(i) + " = 1 5;\n";
    return text;
}

} // namespace

TEST_F(Statements, TheTableHolds3999Patterns) {
    EXPECT_EQ(FirstError(ManyNodes(3999)), "");
    EXPECT_EQ(ItemsOf("n3999"), "1:5");
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(Statements, The4000thPatternIsAnErrorAtItsLine) {
    EXPECT_EQ(FirstError(ManyNodes(4000)), "4000: Exceeding maximum number of patterns");
    ASSERT_EQ(Headless.userErrors.size(), 1u);
    EXPECT_EQ(Headless.userErrors[0], "Exceeding maximum number of patterns");
    EXPECT_EQ(FirstError(ManyNodes(3999) + "x;\n"), "4000: Exceeding maximum number of patterns");
    EXPECT_EQ(FirstError(ManyNodes(3998) + "x =\n$p $q;\n"), "4000: Exceeding maximum number of patterns");
    EXPECT_EQ(FirstError(ManyNodes(3998) + "x =\n(1 5);\n"), "4000: Exceeding maximum number of patterns");
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(Statements, ARecordOfMoreThan65535BytesIsAnErrorAtItsLine) {
    // 36 bytes of head, 4 of name, and 8 for each item.
    std::string items;
    for (int i = 0; i < 8186; ++i) items += "1 5\n";
    EXPECT_EQ(FirstError("a =\n" + items + ";\n"), "");
    EXPECT_EQ(Named("a").itemCount, 8186);
    EXPECT_EQ(FirstError("a =\n" + items + "0 5;\n"), "8188: Pattern has too many items");
    // A number with a tab behind it takes the long way.
    EXPECT_EQ(FirstError("a =\n" + items + "0\t5;\n"), "8188: Pattern has too many items");
    EXPECT_EQ(FirstError("a =\n" + items + "$p;\n"), "8188: Pattern has too many items");
    EXPECT_EQ(FirstError("a =\n" + items + "(1 5);\n"), "8188: Pattern has too many items");
    EXPECT_EQ(HeapFault(), "");
}

TEST_F(Statements, MemoryThatRunsOutIsAnErrorAtItsLine) {
    std::string text;
    for (int node = 0; node < 20; ++node) {
        text += "n" + std::to_string(node) + " =\n";
        for (int i = 0; i < 1000; ++i) text += "1 5\n";
        text += ";\n";
    }
    CompileAfresh("");
    ResizeBlock = [](void *, size_t) -> void * { return nullptr; };
    EXPECT_EQ(Compile(text), 0);
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors[0].message, "Unable to reallocate pattern memory");
    EXPECT_EQ(HeapFault(), "");
    // The same for a pattern.
    auto *refuse = std::exchange(ResizeBlock, realloc);
    CompileAfresh("");
    ResizeBlock = refuse;
    EXPECT_EQ(Compile(ManyNodes(2000)), 0);
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors[0].message, "Unable to reallocate pattern memory");
    EXPECT_EQ(errors[0].line, HighestPatternId + 1);
    EXPECT_EQ(HeapFault(), "");
}

// --- a list of names alone ---

TEST_F(Statements, ABareBusFindsItsMembersInAnotherCase) {
    EXPECT_EQ(FirstError("CLK = 1 5;\nclk,q;\n"), "");
    EXPECT_EQ(Named("clk,q").kind(), PatternKind::Reference);
    EXPECT_EQ(Named("clk,q").clock(), 0u);
    EXPECT_EQ(ItemsOf("clk,q"), "CLK[0/1] q[0/1]");
    EXPECT_EQ(Named("q").kind(), PatternKind::Plain);
    // Where one is not as wide as a bus, too, and at the end of the file.
    EXPECT_EQ(FirstError("B[3:3] = 1 5;\nB[3],B[2]\n"), "");
    EXPECT_EQ(ItemsOf("B[3],B[2]"), "B[3:3][0/1] B[2][0/1]");
}

TEST_F(Statements, ABareBusOfWhichNoMemberExistsIsPlain) {
    EXPECT_EQ(FirstError("D[1:0] = 1 5;\nd[3:2];\n"), "");
    EXPECT_EQ(Named("d[3:2]").kind(), PatternKind::Plain);
    EXPECT_EQ(Named("d[3:2]").clock(), 1u);
    EXPECT_EQ(HighestPatternId, 2);
}

TEST_F(Statements, WithItemsToComeMembersAreSearchedForExactly) {
    EXPECT_EQ(FirstError("CLK = 1 5;\nclk,q = 2 5;\n"), "");
    EXPECT_EQ(Named("clk,q").kind(), PatternKind::Plain);
    EXPECT_EQ(ItemsOf("clk,q"), "2:5");
    EXPECT_EQ(FindPattern("q"), nullptr);
    EXPECT_EQ(FirstError("CLK = 1 5;\nclk,q = ;\nclk,q;\n"), "");
    EXPECT_EQ(Named("clk,q").kind(), PatternKind::Plain);
    EXPECT_EQ(MessageOf("CLK = 1 5;\nCLK,q = 2 5;\n"), "Defining data for reference pattern");
}

TEST_F(Statements, ABlockWithoutItemsIsABareStatement) {
    EXPECT_EQ(FirstError("CLK = 1 5;\nclk,q { C In Default None 0 1 50 };\n"), "");
    EXPECT_EQ(Named("clk,q").kind(), PatternKind::Reference);
    EXPECT_EQ(Named("clk,q").clock(), 3u);
    EXPECT_EQ(Named("clk,q").pinType(), 1u);
    EXPECT_EQ(Named("q").pinType(), 0u);
    EXPECT_EQ(FirstError("CLK = 1 5;\nclk,q { C In Default None 0 1 50 } = 1 5;\n"), "");
    EXPECT_EQ(Named("clk,q").kind(), PatternKind::Plain);
}

TEST_F(Statements, ABitFoundByItsNameIsTheOneThatThatOneLooksAt) {
    EXPECT_EQ(FirstError("B[1:0] = 2 5 1 5;\ny = 1 10;\nB[1];\nb[1],y;\n"), "");
    EXPECT_EQ(ItemsOf("b[1],y"), "B[1:0][1/1] y[0/1]");
}

TEST_F(Statements, ABareBusWithoutRoomForItsBitsIsAnErrorAtItsLine) {
    std::string text = "CLK = 1 5;\n";
    for (uint32_t i = 2; i < MAX_PATTERNS - 1; ++i) text += "n" + std::to_string(i) + ";\n";
    EXPECT_EQ(FirstError(text + "clk,q;\n"),
              std::to_string(MAX_PATTERNS - 1) + ": Exceeding maximum number of patterns");
}

// What it looks at is a reference deeper for it.
TEST_F(Statements, ABareBusMustNotNestTooDeep) {
    std::string text = "$P0 = 1 5;\n";
    for (uint32_t i = 1; i < MAX_NESTING; ++i) {
        text += "$P" + std::to_string(i) + " = $P" + std::to_string(i - 1) + ";\n";
    }
    std::string top = std::to_string(MAX_NESTING - 1);
    EXPECT_EQ(FirstError(text + "$p" + top + ",q;\n"), "");
    EXPECT_EQ(Named(("$p" + top + ",q").c_str()).kind(), PatternKind::Reference);
    text += "$Q = $P" + top + ";\n";
    EXPECT_EQ(FirstError(text + "$q,q;\n"),
              std::to_string(MAX_NESTING + 2) + ": Patterns are nested too deeply");
}
