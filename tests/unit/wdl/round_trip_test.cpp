// What is written reads back to an equal document.
#include "config/settings.h"
#include "edit/buses.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include "store/state_table.h"
#include "unit/support/random_document.h"
#include "unit/support/saved_document.h"
#include "unit/wdl/wdl_test.h"
#include <algorithm>

namespace {

class RoundTrip : public WdlTest {
protected:
    void emptyStore() {
        PatternStoreFree();
        InitSettings();
        ASSERT_EQ(PatternStoreInit(), 1);
        LoadStateTables();
        AddRandomStateTables();
    }
    // Reads `text` into an empty store; "" or the first error.
    std::string readBack(const std::string &text) {
        emptyStore();
        if (Compile(text)) return "";
        return std::to_string(errors[0].line) + ": " + errors[0].message;
    }
    // What a document of this text is written as once it has been read.
    std::string rewritten(const std::string &text) {
        EXPECT_EQ(readBack(text), "") << text;
        return WrittenStatements();
    }
};

size_t LongestLine(const std::string &text) {
    size_t longest = 0;
    for (size_t start = 0; start < text.size();) {
        size_t end = text.find('\n', start);
        longest = std::max(longest, end - start);
        start = end + 1;
    }
    return longest;
}

} // namespace

TEST_F(RoundTrip, RandomDocumentsComeBackEqual) {
    for (uint32_t seed = 1; seed <= 5000; ++seed) {
        emptyStore();
        BuildRandomDocument(seed);
        SavedDocument saved = WhatIsSaved();
        ASSERT_EQ(saved.leftOut, 0u);
        std::string text = WrittenText();
        ASSERT_LE(LongestLine(text), 1021u) << "seed " << seed;
        ASSERT_EQ(readBack(text), "") << "seed " << seed << "\n" << text;
        ASSERT_EQ(DifferenceFrom(saved), "") << "seed " << seed << "\n" << text;
        ASSERT_EQ(HeapFault(), "") << "seed " << seed;
    }
}

TEST_F(RoundTrip, TangledDocumentsComeBackEqual) {
    uint32_t whole = 0, straight = 0, composites = 0, references = 0;
    constexpr uint32_t documents = 10000;
    for (uint32_t seed = 1; seed <= documents; ++seed) {
        emptyStore();
        BuildTangledDocument(seed);
        std::string before = StoreText();
        SavedDocument saved = WhatIsSaved();
        std::string text = WrittenText();
        ASSERT_EQ(readBack(text), "") << "seed " << seed << "\n" << before << "\n" << text;
        ASSERT_TRUE(WhatIsSaved().comesBack) << "seed " << seed << "\n" << text;
        if (saved.leftOut > 0) continue;
        ASSERT_EQ(DifferenceFrom(saved), "") << "seed " << seed << "\n" << before << "\n" << text;
        ++whole;
        if (!saved.astray.empty()) continue;
        ASSERT_TRUE(saved.comesBack) << "seed " << seed << "\n" << before << "\n" << text;
        ++straight;
        composites += before.find("kind 1") != before.npos;
        references += before.find("kind 2") != before.npos;
    }
    // There is something to see.
    EXPECT_GT(whole, documents / 2);
    EXPECT_GT(straight, documents / 2);
    EXPECT_GT(composites, documents / 50);
    EXPECT_GT(references, documents / 5);
}

TEST_F(RoundTrip, TheOrderOfStatementsSettles) {
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        emptyStore();
        BuildRandomDocument(seed);
        std::string text = WrittenText();
        std::string before;
        for (int round = 0; round < 20 && text != before; ++round) {
            before = text;
            ASSERT_EQ(readBack(text), "");
            text = WrittenText();
        }
        ASSERT_EQ(text, before) << "seed " << seed;
    }
}

TEST_F(RoundTrip, TabsInsteadOfBlanksMakeNoDifference) {
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        emptyStore();
        BuildRandomDocument(seed);
        SavedDocument saved = WhatIsSaved();
        std::string document = DocumentText();
        std::string text = WrittenText();
        std::replace(text.begin(), text.end(), ' ', '\t');
        ASSERT_EQ(readBack(text), "") << "seed " << seed;
        ASSERT_EQ(DifferenceFrom(saved), "") << "seed " << seed;
        if (saved.astray.empty()) {
            ASSERT_EQ(DocumentText(), document) << "seed " << seed;
        }
    }
}

TEST_F(RoundTrip, RandomDocumentsHaveEverythingInThem) {
    uint32_t composites = 0, slices = 0, wholeSlices = 0, nests = 0, forevers = 0, formats = 0, clocks = 0,
             tables = 0, delays = 0, forced = 0, longNames = 0, dataMembers = 0, otherCase = 0;
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        emptyStore();
        BuildRandomDocument(seed);
        for (uint32_t id = 1; id <= HighestPatternId; ++id) {
            const Pattern *p = PatternFromId(id);
            composites += p->kind() == PatternKind::Composite;
            nests += p->nameLength == 0;
            formats += p->format() != SignalFormat::None;
            clocks += p->clock() != 0;
            tables += p->stateTable() != 0;
            delays += p->delay != 0;
            longNames += p->nameLength > 900;
            for (uint32_t i = 0; i < p->itemCount; ++i) {
                const PatternItem &item = p->item(i);
                dataMembers += p->kind() == PatternKind::Composite && !item.isReference();
                if (!item.isReference()) continue;
                std::string target = PatternFromId(item.patternId())->name();
                otherCase += p->kind() == PatternKind::Reference && !p->isBus() && target != p->name() &&
                             EqualIgnoringCase(target, p->name());
                otherCase += p->kind() == PatternKind::Reference && p->itemCount > 1 &&
                             std::string_view(p->name()).find(target) == std::string_view::npos &&
                             !PatternFromId(item.patternId())->isBus();
                forevers += item.repeat() == REPEAT_FOREVER;
                forced += item.forcedFormat() != 0;
                slices += p->kind() == PatternKind::Reference;
                wholeSlices += p->kind() == PatternKind::Reference && item.sliceWidth() == 0;
            }
        }
    }
    for (uint32_t count : {composites, slices, wholeSlices, nests, forevers, formats, clocks, tables, delays,
                           forced, longNames, dataMembers, otherCase}) {
        EXPECT_GT(count, 5u);
    }
}

// --- what does not come back ---

TEST_F(RoundTrip, TheEighthClockComesBackAsNone) {
    ASSERT_EQ(readBack("a { H Test Default None 0 1 50 } = ;\n"), "");
    EXPECT_EQ(Named("a").clock(), 8u);
    EXPECT_EQ(WrittenStatements(), "a { I Test Default None 0 1 50 } = ;\n");
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(Named("a").clock(), 0u);
}

// A plus counts with the reference behind it alone.
TEST_F(RoundTrip, ACompositeWithoutASecondReferenceComesBackPlain) {
    uint16_t p = MakePattern("$p");
    uint16_t q = MakePattern("$q");
    uint16_t a = MakePattern("$a");
    AddReference(a, {p});
    AddReference(a, {q}, PatternKind::Composite);
    DeleteItem(PatternFromId(a), 1);
    AddTransition(a, 1, 5);
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(Named("$a").kind(), PatternKind::Plain);
    EXPECT_EQ(ItemsOf("$a"), "$p 1:5");
}

// What is found in another case is found so as long as nothing has the very name.
TEST_F(RoundTrip, ABusWhoseBitWasFoundInAnotherCaseComesBeforeANewerOneOfItsName) {
    MakePattern("A[2]", {{1, 5}});
    char name[] = "a[2],A[2]\0\0";
    ASSERT_EQ(FindOrCreateNode(name, 0)->kind(), PatternKind::Reference);
    EXPECT_EQ(ItemsOf("a[2],A[2]"), "A[2][0/1] A[2][0/1]");
    char later[] = "b[2],a[2]\0\0";
    uint16_t id = FindOrCreateNode(later, 0)->id;
    AddTransition(id, 2, 5);
    std::string document = DocumentText();
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(DocumentText(), document);
}

TEST_F(RoundTrip, CompositesOfAllKindsOfMembersComeBack) {
    for (const char *text : {"$a = $p + (1 5) + (0 5) + $q;\n", "$a = $p + (0 3 1 4);\n",
                             "a = $p + 1 5 + $q;\n", "d[1:0] = $p + (0 3 1 4);\n",
                             "d[1:0] = $p + 1 5 2 7 (3 4) 1 2 + $q 3 4;\n", "a = (1 5) + 1 5 + (0 5);\n"}) {
        ASSERT_EQ(readBack(text), "") << text;
        std::string document = DocumentText();
        ASSERT_EQ(readBack(WrittenText()), "") << text;
        EXPECT_EQ(DocumentText(), document) << text;
    }
}

// Bit 0 leads to the bus by its own name, so that the list need not come before the composite, which bit 1
// needs to be a node.
TEST_F(RoundTrip, ABusOfBitsThatAreBorneByOthersMayComeBehindTheirComposite) {
    ASSERT_EQ(readBack("E[1:0];\nE[0];\nE[1:0] = $D[1:0] + $D[1:0];\n$E[1],E[1:0];\n"), "");
    SavedDocument saved = WhatIsSaved();
    EXPECT_EQ(saved.leftOut, 0u);
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(DifferenceFrom(saved), "");
    EXPECT_EQ(ItemsOf("$E[1],E[1:0]"), "$E[1][0/1] E[1][0/1] E[1:0][0/1]");
}

// "##" is read at the end of a node alone.
TEST_F(RoundTrip, AForeverElsewhereComesBackAsANumber) {
    for (const char *text : {"$x = $p #65535;\n", "a { Default } = ($p #65535) ;\n",
                             "a { Default } = $p #65535 1 5;\n", "a { Default } = $p #65535 @RZ ;\n",
                             "a { Default } = $p #65535 + $q;\n", "a { Default } = $p #65535;\n"}) {
        ASSERT_EQ(readBack(text), "") << text;
        std::string document = DocumentText();
        ASSERT_EQ(readBack(WrittenText()), "") << text;
        EXPECT_EQ(DocumentText(), document) << text;
    }
    EXPECT_EQ(WrittenStatements(), "a { Z Test Default None 0 1 50 } =  $p ## ;\n$p = ;\n");
}

TEST_F(RoundTrip, ABlockOnAReferencePatternIsLost) {
    ASSERT_EQ(readBack("D[1:0] = ;\nD[0] { O Default NRZ 3 4 60 };\n"), "");
    EXPECT_EQ(Named("D[0]").delay, 3u);
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(Named("D[0]").delay, 0u);
    EXPECT_EQ(Named("D[0]").pinType(), 0u);
}

TEST_F(RoundTrip, AReferenceToANodeCannotBeRead) {
    uint16_t node = MakePattern("node", {{1, 5}});
    AddReference(MakePattern("a"), {node});
    EXPECT_EQ(readBack(WrittenText()), "7: Illegal use of name");
    emptyStore();
    uint16_t word = MakePattern("abc", {{1, 5}});
    AddReference(MakePattern("b"), {word});
    EXPECT_EQ(readBack(WrittenText()), "7: Missing duration");
}

TEST_F(RoundTrip, AForcedFormatInANodeWithAFormatIsRefused) {
    uint16_t sub = MakePattern("$p", {{1, 5}});
    uint16_t node = MakePattern("a");
    SetPatternParams(PatternFromId(node), 0, 0, 1, 1, 50, 0);
    AddReference(node, {.id = sub, .format = 2});
    EXPECT_EQ(readBack(WrittenText()), "7: May only force pin types in nodes with types");
}

TEST_F(RoundTrip, AnUnnamedPatternThatNobodyRefersToIsLost) {
    MakePattern("", {{1, 5}});
    MakePattern("a", {{0, 7}});
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(HighestPatternId, 1);
    EXPECT_EQ(ItemsOf("a"), "0:7");
}

TEST_F(RoundTrip, AnUnknownStateTableComesBackAsTheFirst) {
    emptyStore();
    MakePattern("a", {{0, 7}});
    const_cast<Pattern &>(Named("a")).setStateTable(2);
    std::string text = WrittenText();
    ASSERT_EQ(readBack(text), "");
    EXPECT_EQ(Named("a").stateTable(), 2u);
    EXPECT_EQ(CompileAfresh(text), 1);
    EXPECT_EQ(Named("a").stateTable(), 0u);
}

// --- what needs care to come back ---

TEST_F(RoundTrip, NamesThatLookLikeSomethingElseComeBack) {
    for (const char *name : {"%ENDTIME=5", "=x", ",y", "%"}) {
        emptyStore();
        MakePattern(name, {{1, 5}});
        std::string document = DocumentText();
        ASSERT_EQ(readBack(WrittenText()), "") << name;
        EXPECT_EQ(DocumentText(), document);
    }
}

// Its bits are those of the patterns that were there before it, whatever has come since.
TEST_F(RoundTrip, AReferencePatternThatIsUsedComesBackInItsTurn) {
    ASSERT_EQ(readBack("n = $A[40:0];\n$A[1:0];\nm = $A[1];\n$A[1] = $A[1:0];\n"), "");
    std::string document = DocumentText();
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(DocumentText(), document);
    EXPECT_EQ(ItemsOf("$A[1:0]"), "$A[40:0][0/2]");
}

TEST_F(RoundTrip, ANameThatFillsALineComesBack) {
    std::string name(1021, 'n');
    uint16_t sub = MakePattern(("$" + name.substr(1)).c_str(), {{1, 5}});
    AddReference(MakePattern(name.c_str(), {{1, 5}}), {.id = sub, .scale = 3});
    AddReference(MakePattern("a", {{1, 5}}), {.id = sub, .repeat = 3, .format = 1});
    std::string document = DocumentText();
    EXPECT_EQ(LongestLine(WrittenText()), 1021u);
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(DocumentText(), document);
}

TEST_F(RoundTrip, LongNamesNeverMakeALineThatCannotBeRead) {
    for (size_t length = 900; length <= 1021; ++length) {
        emptyStore();
        uint16_t sub = MakePattern(("$" + std::string(length - 1, 's')).c_str(), {{1, 5}});
        uint16_t nested = MakePattern("", {{1, 5}});
        uint16_t node = MakePattern(std::string(length, 'n').c_str());
        AddReference(node, {.id = sub, .scale = 12, .repeat = 34, .format = 4});
        AddReference(node, {.id = nested, .repeat = 3});
        AddReference(node, {.id = sub, .repeat = REPEAT_FOREVER});
        std::string document = DocumentText();
        ASSERT_LE(LongestLine(WrittenText()), 1021u);
        ASSERT_EQ(readBack(WrittenText()), "") << length;
        ASSERT_EQ(DocumentText(), document) << length;
    }
}

TEST_F(RoundTrip, TheDeepestNestingComesBack) {
    std::string text = "a { Default } = ";
    for (uint32_t i = 0; i < MAX_NESTING; ++i) text += "(";
    text += "1 5";
    for (uint32_t i = 0; i < MAX_NESTING; ++i) text += ")";
    ASSERT_EQ(readBack(text + ";\n"), "");
    std::string document = DocumentText();
    ASSERT_EQ(readBack(WrittenText()), "");
    EXPECT_EQ(DocumentText(), document);
}

TEST_F(RoundTrip, NumbersAtTheirLimitsComeBack) {
    const char *text = "D[31:0] { A In Default RC 4294967295 2147483648 65535 } = ffffffff 2147483647 0 0;\n"
                       "a { Default } = 4294967295 1 2147483648 2 $p *65535 #65534 ;\n";
    ASSERT_EQ(readBack(text), "");
    std::string document = DocumentText();
    std::string again = rewritten(WrittenText());
    EXPECT_EQ(again, "D[31:0] { A In Default RC -1 -2147483648 65535 } = ffffffff 2147483647\n"
                     "   0 0;\n"
                     "a { Z Test Default None 0 1 50 } = -1 1 -2147483648 2 $p *65535 #65534 \n"
                     "  ;\n"
                     "$p = ;\n");
    EXPECT_EQ(DocumentText(), document);
}
