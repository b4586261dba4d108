#include "wdl/lexer.h"

#include "store/signal_name.h"
#include "wdl/error_listing.h"
#include <algorithm>
#include <array>
#include <cstring>

TextReader *WdlFile = nullptr;
char WdlLine[WDL_LINE_SIZE] = "";
const char *WdlReadPos = WdlLine;
int32_t WdlLineNumber = 0;
char WdlPushback = 0;
char WdlText[WDL_TEXT_SIZE] = "";
int32_t WdlToken = TOKEN_END;
int32_t WdlPendingToken = 0;
int32_t WdlRightSide = 0;

namespace {

// What a scan answers when it found no token but an error: the next one is taken.
constexpr int32_t NO_TOKEN = -1;

// Characters in WdlText.
uint32_t textLength = 0;
// Where the token begins, and where in its text a new line does.
WdlPlace tokenPlace = {1, 1};
std::array<uint16_t, WDL_TEXT_SIZE> lineBreaks;
uint32_t lineBreakCount = 0;

enum CharacterClass : uint8_t { BLANK = 1, DIGIT = 2, HEX_DIGIT = 4, LETTER_OR_DIGIT = 8 };

constexpr uint8_t ClassOf(int c) {
    bool digit = c >= '0' && c <= '9';
    bool hexLetter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    // As signed bytes those from 128 up are blanks, and so is the NUL of the file's end.
    return static_cast<uint8_t>((c <= ' ' || c >= 128 ? BLANK : 0) | (digit ? DIGIT : 0) |
                                (digit || hexLetter ? HEX_DIGIT : 0) |
                                (digit || letter ? LETTER_OR_DIGIT : 0));
}

constexpr std::array<uint8_t, 256> CLASSES = [] {
    std::array<uint8_t, 256> classes{};
    for (int c = 0; c < 256; ++c) classes[static_cast<size_t>(c)] = ClassOf(c);
    return classes;
}();

bool Is(char c, CharacterClass wanted) {
    return (CLASSES[static_cast<uint8_t>(c)] & wanted) != 0;
}

// WdlGetChar for the common case, a character within the line.
inline char NextChar() {
    char c = *WdlReadPos;
    if (WdlPushback != 0 || c == '\0' || c == '\n') return WdlGetChar();
    ++WdlReadPos;
    return c;
}

int32_t TokenTooLong() {
    WdlSyntaxError("Token is too long");
    return TOKEN_END;
}

// Adds the characters through the first one that ends the token: `end1`, `end2`, the end of the file, or,
// with `atBlank`, a blank. That one is in the text and is returned in `last`. False if the text has no room.
// Behind a token's first character nothing is pushed back.
bool ReadThrough(char end1, char end2, bool atBlank, char &last) {
    uint32_t length = textLength;
    char c;
    do {
        // Most of a token needs no look at what ends it.
        const char *pos = WdlReadPos;
        while (Is(*pos, LETTER_OR_DIGIT)) ++pos;
        auto run = static_cast<uint32_t>(pos - WdlReadPos);
        if (length + run >= WDL_TEXT_SIZE) return false;
        memcpy(WdlText + length, WdlReadPos, run);
        length += run;
        WdlReadPos = pos;
        c = NextChar();
        if (length == WDL_TEXT_SIZE - 1) return false;
        WdlText[length++] = c;
        if (WdlReadPos == WdlLine) lineBreaks[lineBreakCount++] = static_cast<uint16_t>(length);
    } while (c != end1 && c != end2 && (!Is(c, BLANK) || (!atBlank && c != '\0')));
    last = c;
    WdlText[length] = '\0';
    textLength = length;
    return true;
}

void CutLastCharacter() {
    WdlText[--textLength] = '\0';
}

int32_t ScanName(int32_t token) {
    char last;
    char end = token == TOKEN_USE ? ')' : ';';
    if (!ReadThrough(';', end, true, last)) return TokenTooLong(); // never: it ends with its line
    WdlPushback = last;
    CutLastCharacter();
    CanonicalizeName(WdlText);
    // A closing bracket that was left out may have been added; such a name would fit in no line.
    bool tooLong = textLength >= WDL_LINE_LIMIT && strlen(WdlText) + NeedsBracket(WdlText) > WDL_LINE_LIMIT;
    return tooLong ? TokenTooLong() : token;
}

// Adds the digits that follow. They end within the line, as its end reads as a blank.
void ReadDigits() {
    while (Is(*WdlReadPos, DIGIT)) WdlText[textLength++] = *WdlReadPos++;
    WdlText[textLength] = '\0';
    WdlPushback = WdlGetChar();
}

int32_t ScanRepeat() {
    char c = WdlGetChar();
    if (c == '#') {
        WdlText[textLength++] = c;
        WdlText[textLength] = '\0';
        return TOKEN_FOREVER;
    }
    if (Is(c, DIGIT)) {
        WdlText[textLength++] = c;
        ReadDigits();
    } else {
        WdlPushback = c;
    }
    return TOKEN_REPEAT;
}

int32_t ScanScale() {
    ReadDigits();
    return TOKEN_SCALE;
}

struct Keyword {
    const char *text;
    int32_t token;
};

// In the order of the search: the first one found anywhere in the directive counts.
constexpr Keyword DIRECTIVES[] = {
    {"VERSION", TOKEN_VERSION},
    {"ENDTIME", TOKEN_END_TIME},
    {"MASTERCLOCKMULT", TOKEN_MASTER_CLOCK_MULT},
    {"SMALLESTUNIT", TOKEN_SMALLEST_UNIT},
    {"AUTOASSIGN", TOKEN_AUTO_ASSIGN},
    {"AUTOEXPORT", TOKEN_AUTO_EXPORT},
    {"DECIMALS", TOKEN_DECIMALS},
    {"BUSREVERSE", TOKEN_BUS_REVERSE},
};

constexpr Keyword FORMATS[] = {
    {"@NRZ", TOKEN_NRZ},
    {"@RC", TOKEN_RC},
    {"@R1", TOKEN_R1},
    {"@RZ", TOKEN_RZ},
};

int32_t ScanDirective() {
    char last;
    if (!ReadThrough(';', ';', false, last)) return TokenTooLong();
    WdlPushback = last;
    CutLastCharacter();
    for (const Keyword &keyword : DIRECTIVES) {
        if (strstr(WdlText, keyword.text)) return keyword.token;
    }
    WdlSyntaxError("Invalid '%' keyword");
    return NO_TOKEN;
}

int32_t ScanAngle() {
    char last;
    if (!ReadThrough('>', '>', false, last)) return TokenTooLong();
    WdlPushback = last;
    CutLastCharacter();
    return TOKEN_ANGLE;
}

int32_t ScanFormat() {
    char last;
    if (!ReadThrough('\0', '\0', true, last)) return TokenTooLong(); // never: it ends with its line
    CutLastCharacter();
    for (const Keyword &keyword : FORMATS) {
        if (strcmp(WdlText, keyword.text) == 0) return keyword.token;
    }
    WdlSyntaxError("Invalid pin type");
    return NO_TOKEN;
}

int32_t ScanBlock() {
    char last;
    if (!ReadThrough('}', '}', false, last)) return TokenTooLong();
    if (last == '}') return TOKEN_BLOCK;
    WdlSyntaxError("Missing '}'");
    return NO_TOKEN;
}

// The token's first character stands for itself, whatever it is.
int32_t ScanNumber() {
    const char *pos = WdlReadPos;
    char *text = WdlText + 1;
    while (Is(*pos, HEX_DIGIT)) *text++ = *pos++;
    *text = '\0';
    WdlReadPos = pos;
    char c = NextChar();
    if (!Is(c, LETTER_OR_DIGIT)) {
        WdlPushback = c;
        return TOKEN_NUMBER;
    }
    while (!Is(c, BLANK)) c = NextChar();
    WdlSyntaxError("Illegal use of name");
    return NO_TOKEN;
}

// Both read as many digits as surely fit in 32 bits, and return the place behind them; null without a digit.
const char *ReadShortDecimal(const char *pos, uint32_t &number) {
    const char *start = pos;
    uint32_t n = 0;
    for (; Is(*pos, DIGIT) && pos - start < 9; ++pos) n = n * 10 + static_cast<uint32_t>(*pos - '0');
    number = n;
    return pos == start ? nullptr : pos;
}

const char *ReadShortHexadecimal(const char *pos, uint32_t &number) {
    const char *start = pos;
    uint32_t n = 0;
    for (; Is(*pos, HEX_DIGIT) && pos - start < 8; ++pos) {
        n = n << 4 | static_cast<uint32_t>(Is(*pos, DIGIT) ? *pos - '0' : (*pos | 32) - 'a' + 10);
    }
    number = n;
    return pos == start ? nullptr : pos;
}

bool BeginsName(char c) {
    return WdlRightSide == 0 && c != '{' && c != '=' && c != '%' && c != ';';
}

// The token that begins with `c`.
int32_t ScanToken(char c) {
    WdlText[0] = c;
    WdlText[1] = '\0';
    textLength = 1;
    tokenPlace = {WdlLineNumber, static_cast<int>(WdlReadPos - WdlLine)};
    lineBreakCount = 0;
    if (BeginsName(c)) return ScanName(TOKEN_NAME);
    switch (c) {
    case '#':
        return ScanRepeat();
    case '$':
        return ScanName(TOKEN_USE);
    case '%':
        return ScanDirective();
    case '(':
        return TOKEN_OPEN;
    case ')':
        return TOKEN_CLOSE;
    case '*':
        return ScanScale();
    case '+':
        return TOKEN_PLUS;
    case ';':
        return TOKEN_SEMICOLON;
    case '<':
        return ScanAngle();
    case '=':
        return TOKEN_EQUALS;
    case '@':
        return ScanFormat();
    case '{':
        return ScanBlock();
    default:
        return ScanNumber();
    }
}

// What no editor writes in a text. The mark that ends a file of old is none of these.
bool IsNoCharacter(char c) {
    constexpr char endOfFile = '\x1A';
    return (static_cast<uint8_t>(c) < ' ' && (c < '\t' || c > '\r') && c != endOfFile) || c == '\x7F';
}

const char *FaultOfLine(int length) {
    bool isText = std::none_of(WdlLine, WdlLine + length, IsNoCharacter);
    return isText ? "Line is too long - Max is 1024 characters" : NOT_A_TEXT;
}

} // namespace

WdlPlace WdlPlaceInToken(uint32_t offset) {
    WdlPlace place = {tokenPlace.line, tokenPlace.column + static_cast<int>(offset)};
    for (uint32_t i = 0; i < lineBreakCount && lineBreaks[i] <= offset; ++i) {
        ++place.line;
        place.column = static_cast<int>(offset - lineBreaks[i]) + 1;
    }
    return place;
}

bool NeedsBracket(const char *name) {
    return strchr("{=%;,", *name) != nullptr;
}

void InitWdlLexer(TextReader *file) {
    WdlFile = file;
    WdlLine[0] = '\0';
    WdlReadPos = WdlLine;
    WdlLineNumber = 0;
    WdlPushback = 0;
    WdlText[0] = '\0';
    WdlToken = TOKEN_END;
    WdlPendingToken = 0;
    WdlRightSide = 0;
}

char WdlReadLine() {
    WdlReadPos = WdlLine;
    int length = WdlFile->readLine(WdlLine, WDL_LINE_LIMIT + 2);
    if (length < 0) {
        WdlLine[0] = '\0';
        return 0;
    }
    if (WdlLine[length - 1] != '\n' || memchr(WdlLine, '\0', static_cast<size_t>(length))) {
        WdlSyntaxError(FaultOfLine(length));
        return WdlLine[0];
    }
    ++WdlLineNumber;
    return WdlLine[0];
}

char WdlGetChar() {
    if (WdlPushback != 0) {
        char c = WdlPushback;
        WdlPushback = 0;
        return c;
    }
    char c = *WdlReadPos++;
    if (c != '\0' && c != '\n') return c;
    return WdlReadLine() != 0 ? ' ' : '\0';
}

bool WdlReadPair(bool hexadecimal, uint32_t &value, uint32_t &duration) {
    if (WdlPendingToken != 0 || (WdlPushback != 0 && !Is(WdlPushback, BLANK))) return false;
    const char *pos = WdlReadPos;
    while (*pos == ' ') ++pos;
    pos = hexadecimal ? ReadShortHexadecimal(pos, value) : ReadShortDecimal(pos, value);
    if (!pos || *pos != ' ') return false;
    while (*pos == ' ') ++pos;
    pos = ReadShortDecimal(pos, duration);
    if (!pos || Is(*pos, LETTER_OR_DIGIT)) return false;
    WdlReadPos = pos;
    WdlPushback = 0;
    WdlPushback = WdlGetChar();
    return true;
}

int32_t WdlNextToken() {
    if (WdlPendingToken != 0) {
        WdlToken = WdlPendingToken;
        WdlPendingToken = 0;
        return WdlToken;
    }
    do {
        char c = NextChar();
        while (c != '\0' && (Is(c, BLANK) || c == ',')) c = NextChar();
        WdlText[0] = '\0';
        WdlToken = c == '\0' ? TOKEN_END : ScanToken(c);
    } while (WdlToken == NO_TOKEN);
    return WdlToken;
}
