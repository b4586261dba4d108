#include "wdl/writer.h"

#include "config/settings.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/statement_order.h"

namespace {

using Writer = WdlTest;

constexpr const char *PLAIN = " { Z Test Default None 0 1 50 } = ";

} // namespace

TEST_F(Writer, AnEmptyDocumentIsFiveLinesOfSettings) {
    Settings.ClockMultiplier = 3;
    Settings.BasicUnit = 9;
    Settings.AutoClockAssign = true;
    Settings.Decimals = 2;
    Settings.EndTime = 4294967295u;
    EXPECT_EQ(WrittenText(), "%MASTERCLOCKMULT = 3;\n"
                             "%SMALLESTUNIT    = 9;\n"
                             "%AUTOASSIGN      = 1;\n"
                             "%DECIMALS        = 2;\n"
                             "%ENDTIME         = 4294967295;\n");
}

TEST_F(Writer, TheExampleStatementsComeOutAsTheyStand) {
    Settings.AutoClockAssign = false;
    const char *text = "A { Z Test Default None 0 1 50 } = 1 10(0 5)#2 ;\n$p = 0 5 1 5;\n";
    ASSERT_EQ(Compile(text), 1);
    EXPECT_EQ(WrittenStatements(), text);
}

TEST_F(Writer, ANodeWithoutItemsHasAnEmptyList) {
    Settings.AutoClockAssign = false;
    MakePattern("a");
    EXPECT_EQ(WrittenStatements(), "a" + std::string(PLAIN) + ";\n");
}

TEST_F(Writer, PropertiesAreWrittenByName) {
    MakePattern("a");
    struct {
        uint32_t pinType, format, clock;
        const char *text;
    } cases[] = {
        {0, 0, 0, "Z Test Default None"}, {1, 1, 1, "A In Default NRZ"},    {2, 2, 2, "B Out Default RZ"},
        {3, 3, 7, "G Bid Default R1"},    {4, 4, 8, "I Global Default RC"},
    };
    for (const auto &c : cases) {
        SetPatternParams(PatternFromId(1), 0, c.pinType, c.format, -7, 65535, c.clock);
        SetPatternDelay(PatternFromId(1), 4294967294u);
        EXPECT_EQ(WrittenStatements(), "a { " + std::string(c.text) + " -2 -7 65535 } = ;\n");
    }
}

TEST_F(Writer, ParametersBeyondTheNamesAreWrittenAsTheFirst) {
    MakePattern("a");
    SetPatternParams(PatternFromId(1), 15, 7, 7, 1, 50, 15);
    EXPECT_EQ(WrittenStatements(), "a" + std::string(PLAIN) + ";\n");
}

TEST_F(Writer, ValuesAreDecimalInABitAndLowerCaseHexadecimalInABus) {
    MakePattern("$a", {{10, 5}, {4294967295u, 2147483647}});
    MakePattern("$b[7:0]", {{10, 5}, {4294967295u, 2147483647}, {0, 0}});
    EXPECT_EQ(WrittenStatements(), "$a = 10 5 -1 2147483647;\n$b[7:0] = a 5 ffffffff 2147483647 0 0;\n");
}

TEST_F(Writer, ScaleRepeatAndFormatFollowTheirItem) {
    Settings.AutoClockAssign = false;
    uint16_t p = MakePattern("$p", {{1, 5}});
    uint16_t q = MakePattern("", {{1, 5}});
    uint16_t a = MakePattern("a");
    AddReference(a, {.id = p, .scale = 2, .repeat = 3, .format = 1});
    AddReference(a, {.id = q, .scale = 65535, .repeat = 65534, .format = 4});
    AddReference(a, {.id = p, .repeat = REPEAT_FOREVER});
    EXPECT_EQ(WrittenStatements(),
              "$p = 1 5;\na" + std::string(PLAIN) + " $p *2 #3 @NRZ (1 5)*65535 #65534 @RC \n   $p ## ;\n");
}

TEST_F(Writer, CompositeMembersAreJoinedByPlusWithoutABlankBehindIt) {
    ASSERT_EQ(Compile("$a = $p + $q + $r;\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p +$q +$r ;\n$p = ;\n$q = ;\n$r = ;\n");
    ASSERT_EQ(CompileAfresh("$a = (1 5) + $q + (0 5);\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a = (1 5)+$q (0 5);\n$q = ;\n");
}

TEST_F(Writer, ASecondMemberWithoutANameGetsItsPlus) {
    ASSERT_EQ(Compile("$a = $p + (1 5) + (0 5) + $q;\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p +(1 5)(0 5)+$q ;\n$p = ;\n$q = ;\n");
    ASSERT_EQ(CompileAfresh("$a = $p + (1 5);\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p +(1 5);\n$p = ;\n");
    ASSERT_EQ(CompileAfresh("$a = $p + 1 5 0 5 + $q;\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$a =  $p +1 5 0 5+$q ;\n$p = ;\n$q = ;\n");
}

// The reader would refuse the plus behind it, and the file would never open again.
TEST_F(Writer, ACompositeThatBeginsWithDataHasNoPlus) {
    uint16_t p = MakePattern("$p");
    uint16_t a = MakePattern("$a");
    AddTransition(a, 1, 5);
    AddReference(a, {p}, PatternKind::Composite);
    AddReference(a, {p}, PatternKind::Composite);
    EXPECT_EQ(WrittenStatements(), "$p = ;\n$a = 1 5 $p  $p ;\n");
}

// It cannot be read back, but nothing of it is lost.
TEST_F(Writer, ANameLongerThanALineIsWrittenWhole) {
    for (size_t length : {1021u, 1022u, 5000u}) {
        std::string name = "$" + std::string(length - 1, 'n');
        MakePattern(name.c_str());
        std::string text = WrittenStatements();
        EXPECT_NE(text.find(name), text.npos) << length;
        EXPECT_EQ(CompileAfresh(text), length == 1021 ? 1 : 0);
        CompileAfresh("");
    }
}

TEST_F(Writer, AForcedFormatThatDoesNotExistIsLeftOut) {
    uint16_t p = MakePattern("$p");
    AddReference(MakePattern("$a"), {.id = p, .format = 5});
    EXPECT_EQ(WrittenStatements(), "$p = ;\n$a =  $p ;\n");
}

// The values of what is nested read in the radix of the pattern around it.
TEST_F(Writer, NestedValuesAreInTheRadixOfTheStatement) {
    uint16_t nested = MakePattern("", {{10, 5}}, 1);
    AddReference(MakePattern("$D[3:0]"), {nested});
    EXPECT_EQ(WrittenStatements(), "$D[3:0] = (a 5);\n");
}

// In a block such a name would be two words, or end it.
TEST_F(Writer, AStateTableWithASeparatorInItsNameIsWrittenAsTheFirst) {
    for (const char *name : {"A,B", "x}", "a\tb"}) {
        StateTable *table = AllocStateTable(1);
        snprintf(table->tableName, sizeof table->tableName, "%s", name);
        table->rowCount = 1;
    }
    for (uint32_t index = 1; index <= 3; ++index) {
        uint16_t id = MakePattern(("n" + std::to_string(index)).c_str());
        PatternFromId(id)->setStateTable(index);
        PatternFromId(id)->period = 7;
    }
    std::string text = WrittenText();
    ASSERT_EQ(CompileAfresh(text), 1) << text;
    for (const char *name : {"n1", "n2", "n3"}) {
        EXPECT_EQ(Named(name).stateTable(), 0u);
        EXPECT_EQ(Named(name).period, 7);
    }
}

// --- the order of statements ---

TEST_F(Writer, AReferencePatternComesBeforeItsUse) {
    const char *text = "%AUTOASSIGN = 0;\n$D[1:0];\n$D[0];\na = $D[0] #3;\n";
    ASSERT_EQ(Compile(text), 1);
    EXPECT_EQ(WrittenStatements(), "$D[1:0] = ;\n$D[0];\na" + std::string(PLAIN) + " $D[0] #3 ;\n");
    // Of an older pattern, too, and in parentheses.
    ASSERT_EQ(CompileAfresh("%AUTOASSIGN = 0;\na;\n$D[1:0];\n$D[0];\na = ($D[0]);\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$D[1:0] = ;\n$D[0];\na" + std::string(PLAIN) + "( $D[0] );\n");
}

TEST_F(Writer, AnOlderPatternComesBeforeTheUseOfOneOfItsBits) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\na;\n$D[1:0] = 2 5;\na = $D[0];\n"), 1);
    EXPECT_EQ(WrittenStatements(), "$D[1:0] = 2 5;\na" + std::string(PLAIN) + " $D[0] ;\n$D[0] = ;\n");
}

TEST_F(Writer, ACompositeComesBeforeABitThatBearsTheNameOfAMember) {
    uint16_t bit = MakePattern("D[0]", {{1, 5}});
    uint16_t part = MakePattern("$p");
    uint16_t bus = MakePattern("D[1:0]");
    for (int i = 0; i < 2; ++i)
        AddReference(bus, {part}, i == 0 ? PatternKind::Plain : PatternKind::Composite);
    SetPatternParams(PatternFromId(bit), 0, 0, 0, 1, 50, 0);
    SetPatternParams(PatternFromId(bus), 0, 0, 0, 1, 50, 0);
    std::string text = WrittenText();
    EXPECT_EQ(WrittenStatements(),
              "D[1:0]" + std::string(PLAIN) + " $p +$p ;\nD[0]" + PLAIN + "1 5;\n$p = ;\n");
    ASSERT_EQ(CompileAfresh(text), 1);
    EXPECT_EQ(Named("D[0]").kind(), PatternKind::Plain);
}

TEST_F(Writer, ABitOfACompositeThatWasLookedAtBeforeIsFoundAgain) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\nD[1:0];\nD[0];\nD[1:0] = $p + $q;\n"), 1);
    std::string text = WrittenText();
    EXPECT_EQ(WrittenStatements(),
              "D[1:0] = ;\nD[0];\nD[1:0]" + std::string(PLAIN) + " $p +$q ;\n$p = ;\n$q = ;\n");
    ASSERT_EQ(CompileAfresh(text), 1);
    EXPECT_EQ(ItemsOf("D[0]"), "D[1:0][0/1]");
    EXPECT_EQ(Named("D[1:0]").kind(), PatternKind::Composite);
}

TEST_F(Writer, AFoundBitComesBeforeTheBusThatFindsItInAnotherCase) {
    uint16_t bus = MakePattern("B[1:0]", {{2, 5}});
    uint16_t other = MakePattern("y");
    uint16_t reference = MakePattern("b[1],y");
    uint16_t bit = MakePattern("B[1]");
    AddReference(bit, {.id = bus, .sliceWidth = 1, .sliceOffset = 1}, PatternKind::Reference);
    AddReference(reference, {.id = bus, .sliceWidth = 1, .sliceOffset = 1}, PatternKind::Reference);
    AddReference(reference, {.id = other, .sliceWidth = 1}, PatternKind::Reference);
    std::string text = WrittenText();
    ASSERT_EQ(CompileAfresh(text), 1);
    EXPECT_EQ(ItemsOf("b[1],y"), "B[1:0][1/1] y[0/1]");
    EXPECT_EQ(ItemsOf("B[1]"), "B[1:0][1/1]");
}

// "A[3:3]" holds the bit "A[3]", but is not found as it.
TEST_F(Writer, ARangeOfOneBitStandsInNobodysWay) {
    const char *text = "%AUTOASSIGN = 0;\nA[3:3] = 1 5;\nA[3:2] = 2 5;\nB[3:2] = 2 5;\nB[3:3] = 1 5;\n";
    ASSERT_EQ(Compile(text), 1);
    EXPECT_EQ(WrittenStatements(), "A[3:3]" + std::string(PLAIN) + "1 5;\nA[3:2]" + PLAIN + "2 5;\nB[3:2]" +
                                       PLAIN + "2 5;\nB[3:3]" + PLAIN + "1 5;\n");
}

TEST_F(Writer, ABusOfBitsThatAreHeldByTheirOwnNameComesInItsTurn) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\nD[3:0];\nD[1:0];\nD[1];\nx;\nD[1],x;\nD[0];\n"), 1);
    EXPECT_EQ(WrittenStatements(),
              "D[3:0]" + std::string(PLAIN) + ";\nx" + PLAIN + ";\nD[1:0];\nD[1];\nD[1],x;\nD[0];\n");
}

// No bus is as wide, but a pattern may be that was used before it was defined.
TEST_F(Writer, AWidePatternComesBehindItsUseAndWithoutOneNotAtAll) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\n$z = 1 5;\na = $D[40:0] $z;\n$D[40:0] = 1 5;\n"), 1);
    EXPECT_EQ(WrittenStatements(),
              "$z = 1 5;\na" + std::string(PLAIN) + " $D[40:0]  $z ;\n$D[40:0] = 1 5;\n");
    // Of a later one, if the first is gone.
    ASSERT_EQ(CompileAfresh("%AUTOASSIGN = 0;\na = $D[40:0];\nb = $D[40:0];\n$D[40:0] = 1 5;\n"), 1);
    DeleteItem(PatternFromId(Named("a").id), 0);
    EXPECT_EQ(WrittenStatements(),
              "a" + std::string(PLAIN) + ";\nb" + PLAIN + " $D[40:0] ;\n$D[40:0] = 1 5;\n");
    ASSERT_EQ(CompileAfresh("%AUTOASSIGN = 0;\na;\nb = $D[40:0];\n$D[40:0] = 1 5;\n"), 1);
    DeleteItem(PatternFromId(Named("b").id), 0);
    EXPECT_TRUE(Headless.strips.empty());
    EXPECT_EQ(WrittenStatements(), "a" + std::string(PLAIN) + ";\nb" + PLAIN + ";\n");
    EXPECT_EQ(Headless.strips, std::vector<std::string>{"ERROR: Pattern $D[40:0] cannot be saved in a file"});
}

TEST_F(Writer, OfALongNameThatCannotBeSavedTheBeginningIsTold) {
    MakePattern(("$" + std::string(1013, 'L') + "[40:0]").c_str());
    EXPECT_EQ(WrittenStatements(), "");
    EXPECT_EQ(Headless.strips, std::vector<std::string>{"ERROR: Pattern $" + std::string(179, 'L') +
                                                        " cannot be saved in a file"});
}

// A bus holds its bits, and a composite does not; as the one or the other it was there before the bit.
TEST_F(Writer, ACompositeThatIsNoneAnyMoreKeepsABitOfItsNameOutOfTheFile) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\nD[1:0] = $p + $q;\nD[0] = 1 5;\n"), 1);
    EXPECT_EQ(Named("D[0]").kind(), PatternKind::Plain);
    DeleteItem(PatternFromId(Named("D[1:0]").id), 1);
    std::string text = WrittenText();
    EXPECT_EQ(Headless.strips, std::vector<std::string>{"ERROR: Pattern D[0] cannot be saved in a file"});
    EXPECT_EQ(CompileAfresh(text), 1);
}

TEST_F(Writer, ReferencePatternsComeLastAsBareNames) {
    ASSERT_EQ(Compile("%AUTOASSIGN = 0;\nD[1:0];\nD[0];\nx;\nx,D[1];\n"), 1);
    EXPECT_EQ(WrittenStatements(), "D[1:0]" + std::string(PLAIN) + ";\nx" + PLAIN + ";\nD[0];\nx,D[1];\n");
}

TEST_F(Writer, LinesWrapBehindTheItemThatPassesColumn60) {
    Transitions items;
    for (uint32_t i = 0; i < 30; ++i) items.push_back({i % 2, 100 + i});
    MakePattern("$a", items);
    EXPECT_EQ(WrittenStatements(), "$a = 0 100 1 101 0 102 1 103 0 104 1 105 0 106 1 107 0 108 1 109\n"
                                   "   0 110 1 111 0 112 1 113 0 114 1 115 0 116 1 117 0 118 1 119\n"
                                   "   0 120 1 121 0 122 1 123 0 124 1 125 0 126 1 127 0 128 1 129\n"
                                   "  ;\n");
}

TEST_F(Writer, AnItemOfExactly60CharactersDoesNotWrap) {
    MakePattern(("$" + std::string(51, 'a')).c_str(), {{1, 5}, {0, 5}, {1, 5}});
    // The name, blank, "= " and "1 5" make 58 characters, and each further item 4.
    EXPECT_EQ(WrittenStatements(), "$" + std::string(51, 'a') + " = 1 5 0 5\n   1 5;\n");
    PatternStoreFree();
    PatternStoreInit();
    MakePattern(("$" + std::string(49, 'a')).c_str(), {{1, 5}, {0, 5}, {1, 5}});
    EXPECT_EQ(WrittenStatements(), "$" + std::string(49, 'a') + " = 1 5 0 5 1 5\n  ;\n");
    PatternStoreFree();
    PatternStoreInit();
    MakePattern(("$" + std::string(50, 'a')).c_str(), {{1, 5}, {0, 5}, {1, 5}});
    EXPECT_EQ(WrittenStatements(), "$" + std::string(50, 'a') + " = 1 5 0 5\n   1 5;\n")
        << "61 characters do";
}

TEST_F(Writer, NestedItemsWrapToo) {
    uint16_t nested = MakePattern(
        "", {{1, 1000000000}, {0, 1000000000}, {1, 1000000000}, {0, 1000000000}, {1, 1000000000}});
    uint16_t a = MakePattern("$a", {{1, 5}});
    AddReference(a, {.id = nested, .repeat = 7});
    AddTransition(a, 0, 5);
    EXPECT_EQ(WrittenStatements(),
              "$a = 1 5(1 1000000000 0 1000000000 1 1000000000 0 1000000000 1 1000000000\n"
              "  )#7  0 5;\n");
}

TEST_F(Writer, UnnamedPatternsHaveNoStatementOfTheirOwn) {
    MakePattern("", {{1, 5}});
    EXPECT_EQ(WrittenStatements(), "");
}

TEST_F(Writer, FreeIdsArePassedOver) {
    MakePattern("$a");
    MakePattern("$b");
    MakePattern("$c");
    DeletePattern(PatternFromId(2));
    EXPECT_EQ(WrittenStatements(), "$a = ;\n$c = ;\n");
}

// A nested pattern is a pattern of its own for the reader wherever it stands, and there are 3999 at most.
TEST_F(Writer, NestedPatternsInMorePlacesThanAFileCanHaveAreNotWritten) {
    uint16_t nested = MakePattern("", {{1, 5}});
    uint16_t node = MakePattern("a");
    for (int i = 0; i < 3998; ++i) AddReference(node, {nested});
    EXPECT_TRUE(CompileAfresh(WrittenText()));
    EXPECT_EQ(HighestPatternId, 3999);
    PatternStoreFree();
    ASSERT_EQ(PatternStoreInit(), 1);
    nested = MakePattern("", {{1, 5}});
    node = MakePattern("a");
    for (int i = 0; i < 3999; ++i) AddReference(node, {nested});
    auto fail = [](const char *, int, void *) { FAIL() << "something is written"; };
    EXPECT_FALSE(WriteWdlText(fail, nullptr));
}

// Each level has the next one twice: written out they would fill every disk.
TEST_F(Writer, NestedPatternsThatDoubleOnEachLevelAreNotWritten) {
    uint16_t nested = MakePattern("", {{1, 5}});
    for (int level = 0; level < 200; ++level) {
        uint16_t outer = MakePattern("");
        AddReference(outer, {nested});
        AddReference(outer, {nested});
        nested = outer;
    }
    AddReference(MakePattern("a"), {nested});
    auto fail = [](const char *, int, void *) { FAIL() << "something is written"; };
    EXPECT_FALSE(WriteWdlText(fail, nullptr));
    EXPECT_EQ(OrderStatements().statements.size(), 1u);
}
