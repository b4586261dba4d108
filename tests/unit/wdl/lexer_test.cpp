#include "wdl/lexer.h"

#include "store/signal_name.h"
#include "unit/wdl/wdl_test.h"
#include "wdl/error_listing.h"
#include <cstring>

namespace {

class Lexer : public WdlTest {
protected:
    // The tokens of `text` on one side of the "=", each as "NUMBER:TEXT", separated by bars.
    std::string Tokens(std::string_view text, bool rightSide) {
        TextReader reader(text);
        OpenErrorListing("document.wdl");
        errors.clear();
        InitWdlLexer(&reader);
        WdlRightSide = rightSide;
        std::string tokens;
        while (WdlNextToken() != TOKEN_END) {
            if (!tokens.empty()) tokens += "|";
            tokens += std::to_string(WdlToken) + ":" + WdlText;
        }
        return tokens;
    }
    std::string Left(std::string_view text) { return Tokens(text, false); }
    std::string Right(std::string_view text) { return Tokens(text, true); }
    std::string FirstMessage() { return errors.empty() ? "" : errors[0].message; }
};

} // namespace

TEST_F(Lexer, EmptyFileHasNoTokensAndNoErrors) {
    EXPECT_EQ(Left(""), "");
    EXPECT_TRUE(errors.empty());
}

TEST_F(Lexer, NamesOnTheLeftRunToABlankOrSemicolon) {
    EXPECT_EQ(Left("clk data;\n"), "11:clk|11:data|1:;");
    EXPECT_EQ(Left("a={x\n"), "11:a=[]");
    EXPECT_EQ(Left("$p = q\n"), "11:$p|2:=|11:q");
}

TEST_F(Lexer, AnyOtherCharacterBeginsANameOnTheLeft) {
    EXPECT_EQ(Left("12 #5 +x *3 @NRZ <b\n"), "11:12|11:#5|11:+x|11:*3|11:@NRZ|11:[]");
    EXPECT_EQ(Left("; = {x} %VERSION=1;\n"), "1:;|2:=|19:{x}|24:%VERSION=1|1:;");
}

TEST_F(Lexer, NamesAreNormalised) {
    EXPECT_EQ(Left("A.B<3-0>\n"), "11:A.B[3:0]");
    EXPECT_EQ(Right("$Q(7,0;\n"), "13:$Q[7:0]|1:;");
}

TEST_F(Lexer, TokensOfTheRightSide) {
    EXPECT_EQ(Right("= 1 ff ( ) + ;\n"), "2:=|8:1|8:ff|6:(|7:)|10:+|1:;");
    EXPECT_EQ(Right("*12 #34 ##\n"), "3:*12|4:#34|5:##");
    EXPECT_EQ(Right("$p $q) $r; $s\n"), "13:$p|13:$q|7:)|13:$r|1:;|13:$s");
    EXPECT_EQ(Right("@NRZ @RZ @R1 @RC \n"), "20:@NRZ|21:@RZ|22:@R1|23:@RC");
    EXPECT_EQ(Right("{ a b }{}\n"), "19:{ a b }|19:{}");
}

TEST_F(Lexer, NumbersEndWhereTheyCannotGoOn) {
    EXPECT_EQ(Right("1(2)3#4*5$p\n"), "8:1|6:(|8:2|7:)|8:3|4:#4|3:*5|13:$p");
    EXPECT_EQ(Right("-5 x7 .\n"), "8:-5|8:x7|8:.");
    EXPECT_EQ(Right("1;2=3+4\n"), "8:1|1:;|8:2|2:=|8:3|10:+|8:4");
}

TEST_F(Lexer, ScaleAndRepeatMayLackTheirDigits) {
    EXPECT_EQ(Right("# * #x\n"), "4:#|3:*|4:#|8:x");
}

TEST_F(Lexer, AngleTextLeavesItsClosingMarkBehind) {
    EXPECT_EQ(Right("< b > 1\n"), "18:< b |8:>|8:1");
    EXPECT_EQ(Right("< b\n"), "18:< b");
}

TEST_F(Lexer, ACommaIsABlank) {
    EXPECT_EQ(Right(",1,,5, 0,5\n"), "8:1|8:5|8:0|8:5");
    EXPECT_EQ(Left(", a {b,c}\n"), "11:a|19:{b,c}");
}

TEST_F(Lexer, ALineEndSplitsATokenAndCountsAsABlank) {
    EXPECT_EQ(Left("ab\ncd\n"), "11:ab|11:cd");
    EXPECT_EQ(Right("12\n34\n"), "8:12|8:34");
    EXPECT_EQ(Left("{ a\n\nb }\n"), "19:{ a  b }");
    EXPECT_EQ(Left("%ENDTIME\n=5;\n"), "27:%ENDTIME =5|1:;");
}

TEST_F(Lexer, TheBytesAroundTheEdgesOfTheBlanks) {
    for (int c = 1; c < 256; ++c) {
        if (c == '\n' || c == '\r' || c == '|') continue;
        std::string mark(1, static_cast<char>(c));
        bool blank = c <= ' ' || c >= 128;
        bool ends = blank || c == ';';
        std::string left = Left("$x" + mark + "yz\n");
        EXPECT_EQ(left.starts_with("11:$x|") || left == "11:$x", ends) << c;
        EXPECT_EQ(Right("1" + mark + "5\n") == "8:1|8:5", blank || c == ',') << c;
        bool letter = (c >= 'g' && c <= 'z') || (c >= 'G' && c <= 'Z');
        EXPECT_EQ(FirstMessage() == "Illegal use of name", letter) << c;
    }
}

TEST_F(Lexer, TellsWhereInTheFileACharacterOfATokenStands) {
    TextReader reader(std::string_view("\n  a { b\r\n  cd\n\n ef }\n"));
    OpenErrorListing("document.wdl");
    InitWdlLexer(&reader);
    WdlNextToken();
    ASSERT_EQ(WdlNextToken(), TOKEN_BLOCK);
    auto placeOf = [](const char *word) {
        WdlPlace place = WdlPlaceInToken(static_cast<uint32_t>(strstr(WdlText, word) - WdlText));
        return std::to_string(place.line) + ":" + std::to_string(place.column);
    };
    EXPECT_EQ(placeOf("{"), "2:5");
    EXPECT_EQ(placeOf("b"), "2:7");
    EXPECT_EQ(placeOf("cd"), "3:3");
    EXPECT_EQ(placeOf("ef"), "5:2");
    EXPECT_EQ(placeOf("}"), "5:5");
}

TEST_F(Lexer, AFileThatIsNoTextIsToldAsSuch) {
    using namespace std::string_view_literals;
    Left("\x7f"
         "ELF\2\1\1\0\0\0\n"sv);
    EXPECT_EQ(FirstMessage(), NOT_A_TEXT);
    Left("a = 1 5;\nb\0\n"sv);
    EXPECT_EQ(FirstMessage(), NOT_A_TEXT);
    Left("\0\n"sv);
    EXPECT_EQ(FirstMessage(), NOT_A_TEXT);
    Left(std::string(2000, '\x01'));
    EXPECT_EQ(FirstMessage(), NOT_A_TEXT);
    for (const char *character : {"\x1a", "\t", "\xff", "~", "\v", "\f"}) {
        Left(std::string(2000, *character));
        EXPECT_EQ(FirstMessage(), "Line is too long - Max is 1024 characters");
    }
    Left("no line feed");
    EXPECT_EQ(FirstMessage(), "Line is too long - Max is 1024 characters");
}

TEST_F(Lexer, ANameThatNeedsABracketMustLeaveRoomForIt) {
    std::string longest = "]%" + std::string(1018, 'n');
    EXPECT_EQ(Left(longest + "\n"), "11:%" + std::string(1018, 'n'));
    EXPECT_EQ(Left("]%" + std::string(1016, 'n') + "[1\n"), "11:%" + std::string(1016, 'n') + "[1]");
    EXPECT_EQ(Left("]%" + std::string(1017, 'n') + "[1\n"), "");
    EXPECT_EQ(FirstMessage(), "Token is too long");
    EXPECT_EQ(Left(std::string(1018, 'n') + "[1\n"), "11:" + std::string(1018, 'n') + "[1]");
}

TEST_F(Lexer, BytesFrom128UpAreBlanks) {
    EXPECT_EQ(Left("\xe4\xff name\n"), "11:name");
    EXPECT_EQ(Left("na\xe4me\n"), "11:na|11:me");
    EXPECT_EQ(Right("1\xe4"
                    "5\n"),
              "8:1|8:5");
    EXPECT_EQ(Left("{ \xe4 }\n"), "19:{ \xe4 }");
}

TEST_F(Lexer, ControlCharactersAreBlanks) {
    EXPECT_EQ(Right("1\t5\r0\x01"
                    "5\n"),
              "8:1|8:5|8:0|8:5");
}

TEST_F(Lexer, WindowsLineEndsReadLikeUnixOnes) {
    EXPECT_EQ(Right("1 5\r\n0 5\r\n"), "8:1|8:5|8:0|8:5");
    EXPECT_EQ(WdlLineNumber, 2);
}

TEST_F(Lexer, PinTypesAreExact) {
    EXPECT_EQ(Right("@nrz 1\n"), "8:1");
    EXPECT_EQ(FirstMessage(), "Invalid pin type");
    EXPECT_EQ(Right("@NRZ;\n"), "");
    EXPECT_EQ(FirstMessage(), "Invalid pin type");
    EXPECT_EQ(Right("@\n"), "");
    EXPECT_EQ(FirstMessage(), "Invalid pin type");
}

TEST_F(Lexer, BareWordsAreNumbersOrIllegalNames) {
    EXPECT_EQ(Right("abc 1\n"), "8:abc|8:1");
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(Right("xyz 1\n"), "8:1");
    EXPECT_EQ(FirstMessage(), "Illegal use of name");
    EXPECT_EQ(Right("0x5;7 1\n"), "8:1");
    EXPECT_EQ(FirstMessage(), "Illegal use of name");
}

TEST_F(Lexer, ABlockNeedsItsClosingBrace) {
    EXPECT_EQ(Left("{ a b\n"), "");
    EXPECT_EQ(FirstMessage(), "Missing '}'");
}

TEST_F(Lexer, DirectivesAreFoundByTheirKeyword) {
    EXPECT_EQ(Left("%VERSION=1;%ENDTIME=1;%MASTERCLOCKMULT=1;\n"),
              "24:%VERSION=1|1:;|27:%ENDTIME=1|1:;|25:%MASTERCLOCKMULT=1|1:;");
    EXPECT_EQ(Left("%SMALLESTUNIT=1;%AUTOASSIGN=1;%AUTOEXPORT=1;\n"),
              "26:%SMALLESTUNIT=1|1:;|28:%AUTOASSIGN=1|1:;|29:%AUTOEXPORT=1|1:;");
    EXPECT_EQ(Left("%DECIMALS=1;%BUSREVERSE=1;\n"), "30:%DECIMALS=1|1:;|31:%BUSREVERSE=1|1:;");
}

TEST_F(Lexer, TheFirstKeywordOfTheSearchOrderCountsWhereverItStands) {
    EXPECT_EQ(Left("% my ENDTIME is = VERSION;\n"), "24:% my ENDTIME is = VERSION|1:;");
    constexpr const char *order[] = {"VERSION",    "ENDTIME",    "MASTERCLOCKMULT", "SMALLESTUNIT",
                                     "AUTOASSIGN", "AUTOEXPORT", "DECIMALS",        "BUSREVERSE"};
    constexpr int tokens[] = {24, 27, 25, 26, 28, 29, 30, 31};
    for (size_t i = 0; i + 1 < std::size(order); ++i) {
        std::string text = std::string("%") + order[i + 1] + "=" + order[i];
        EXPECT_EQ(Left(text + ";\n"), std::to_string(tokens[i]) + ":" + text + "|1:;");
    }
}

TEST_F(Lexer, UnknownDirectivesAreErrors) {
    EXPECT_EQ(Left("%Foo=1;\n"), "1:;");
    EXPECT_EQ(FirstMessage(), "Invalid '%' keyword");
    EXPECT_EQ(Left("%endtime=1;\n"), "1:;");
    EXPECT_EQ(FirstMessage(), "Invalid '%' keyword");
}

TEST_F(Lexer, APendingTokenIsGivenBackOnce) {
    TextReader reader(std::string_view("1\n"));
    InitWdlLexer(&reader);
    WdlPendingToken = TOKEN_PLUS;
    EXPECT_EQ(WdlNextToken(), TOKEN_PLUS);
    EXPECT_EQ(WdlToken, TOKEN_PLUS);
    EXPECT_EQ(WdlNextToken(), TOKEN_NAME);
}

TEST_F(Lexer, BehindAPendingTokenNoPairIsRead) {
    TextReader reader(std::string_view("1 5 0 7\n"));
    InitWdlLexer(&reader);
    WdlReadLine();
    uint32_t value = 9, duration = 9;
    WdlPendingToken = TOKEN_PLUS;
    EXPECT_FALSE(WdlReadPair(false, value, duration));
    WdlNextToken();
    EXPECT_TRUE(WdlReadPair(false, value, duration));
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(duration, 5u);
}

TEST_F(Lexer, APushedBackCharacterIsReadFirst) {
    TextReader reader(std::string_view("bc\n"));
    InitWdlLexer(&reader);
    WdlPushback = 'a';
    EXPECT_EQ(WdlGetChar(), 'a');
    EXPECT_EQ(WdlGetChar(), ' ');
    EXPECT_EQ(WdlGetChar(), 'b');
    EXPECT_EQ(WdlGetChar(), 'c');
    EXPECT_EQ(WdlGetChar(), '\0');
    EXPECT_EQ(WdlGetChar(), '\0');
}

TEST_F(Lexer, BlankLinesAreLines) {
    TextReader reader(std::string_view("\n\nx\n"));
    InitWdlLexer(&reader);
    EXPECT_EQ(WdlReadLine(), '\n');
    EXPECT_EQ(WdlReadLine(), '\n');
    EXPECT_EQ(WdlReadLine(), 'x');
    EXPECT_EQ(WdlLineNumber, 3);
    EXPECT_EQ(WdlReadLine(), '\0');
    EXPECT_EQ(WdlReadLine(), '\0');
    EXPECT_EQ(WdlLineNumber, 3);
}

// --- limits ---

TEST_F(Lexer, ALineOf1021CharactersPassesAndOneOf1022Fails) {
    EXPECT_EQ(Left(std::string(1021, 'x') + "\n"), "11:" + std::string(1021, 'x'));
    EXPECT_TRUE(errors.empty());
    Left(std::string(1022, 'x') + "\n");
    EXPECT_EQ(FirstMessage(), "Line is too long - Max is 1024 characters");
    EXPECT_EQ(errors[0].line, 0);
}

TEST_F(Lexer, ALineOf1021CharactersPassesWithAWindowsLineEnd) {
    EXPECT_EQ(Left(std::string(1021, 'x') + "\r\n"), "11:" + std::string(1021, 'x'));
    EXPECT_TRUE(errors.empty());
}

TEST_F(Lexer, ALastLineWithoutLineFeedIsTooLong) {
    EXPECT_EQ(Left("a b\nc"), "11:a|11:b|11:c");
    EXPECT_EQ(FirstMessage(), "Line is too long - Max is 1024 characters");
    EXPECT_EQ(errors[0].line, 1);
}

TEST_F(Lexer, ABlockThatFillsTheTextPassesAndALongerOneFails) {
    std::string lines = std::string(500, 'a') + "\n" + std::string(500, 'b') + "\n";
    std::string block = "{" + lines + std::string(1023 - 2 - lines.size(), 'c') + "}";
    std::string asRead = block;
    for (char &c : asRead) c = c == '\n' ? ' ' : c;
    EXPECT_EQ(Left(block + "\n"), "19:" + asRead);
    EXPECT_TRUE(errors.empty());
    block.insert(block.size() - 1, "c");
    EXPECT_EQ(Left(block + "\n"), "");
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(FirstMessage(), "Token is too long");
    EXPECT_EQ(errors[0].line, 3);
}

TEST_F(Lexer, ADirectiveAndAnAngleTextAreBoundedToo) {
    std::string line = std::string(900, 'a') + "\n";
    EXPECT_EQ(Left("%ENDTIME" + line + line + ";\n"), "");
    EXPECT_EQ(FirstMessage(), "Token is too long");
    EXPECT_EQ(Right("<" + line + line + ">\n"), "");
    EXPECT_EQ(FirstMessage(), "Token is too long");
}

TEST_F(Lexer, ANameThatItsClosingBracketMakesTooLongForALineFails) {
    EXPECT_EQ(Left(std::string(1020, 'x') + "[\n"), "");
    EXPECT_EQ(FirstMessage(), "Token is too long");
    EXPECT_EQ(Left(std::string(1019, 'x') + "[\n"), "11:" + std::string(1019, 'x') + "[]");
}

TEST_F(Lexer, AllDigitsOfALongNumberAreRead) {
    std::string digits(1000, '7');
    EXPECT_EQ(Right(digits + "\n"), "8:" + digits);
    EXPECT_EQ(Right("#" + digits + "\n"), "4:#" + digits);
}

// --- where an error stands ---

TEST_F(Lexer, AnErrorsColumnIsThatOfTheLastCharacterRead) {
    Right("  xyz 1\n");
    EXPECT_EQ(errors[0].line, 1);
    EXPECT_EQ(errors[0].column, 6);
    Left("\n%FOO=1;\n");
    EXPECT_EQ(errors[0].line, 2);
    EXPECT_EQ(errors[0].column, 7);
}

TEST_F(Lexer, AnErrorAtALineEndStandsAtTheStartOfTheNextLine) {
    Right("xyz\n1\n");
    EXPECT_EQ(errors[0].line, 2);
    EXPECT_EQ(errors[0].column, 1);
}
