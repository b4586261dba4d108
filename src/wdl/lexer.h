// The scanner of the stimulus language: lines, characters and tokens. What a token is depends on the side of
// the "=" that it stands on.
#pragma once

#include "platform/text_file.h"
#include <cstdint>

// Room for a line: 1021 characters, its line feed, and its NUL, with a byte to spare.
constexpr int WDL_LINE_SIZE = 1024;
// Characters of a line, its line feed not counted. A longer one cannot be read.
constexpr int WDL_LINE_LIMIT = 1021;
// Room for the text of a token, its NUL included.
constexpr int WDL_TEXT_SIZE = 1024;

// What ends a word of a property block.
constexpr const char *BLOCK_SEPARATORS = " ,\t}";

enum WdlTokenNumber : int32_t {
    TOKEN_END = 0, // the end of the file
    TOKEN_SEMICOLON = 1,
    TOKEN_EQUALS = 2,
    TOKEN_SCALE = 3,   // "*" and digits
    TOKEN_REPEAT = 4,  // "#" and digits
    TOKEN_FOREVER = 5, // "##"
    TOKEN_OPEN = 6,
    TOKEN_CLOSE = 7,
    TOKEN_NUMBER = 8,
    TOKEN_PLUS = 10,
    TOKEN_NAME = 11, // on the left side only; normalised
    TOKEN_USE = 13,  // a name that begins with "$"; normalised
    TOKEN_ANGLE = 18,
    TOKEN_BLOCK = 19, // a property block, with both braces
    TOKEN_NRZ = 20,
    TOKEN_RZ = 21,
    TOKEN_R1 = 22,
    TOKEN_RC = 23,
    // Directives: the text up to the ";".
    TOKEN_VERSION = 24,
    TOKEN_MASTER_CLOCK_MULT = 25,
    TOKEN_SMALLEST_UNIT = 26,
    TOKEN_END_TIME = 27,
    TOKEN_AUTO_ASSIGN = 28,
    TOKEN_AUTO_EXPORT = 29,
    TOKEN_DECIMALS = 30,
    TOKEN_BUS_REVERSE = 31,
};

// The scanner's state. Written by the scanner; the compiler writes WdlPendingToken and WdlRightSide.
extern TextReader *WdlFile;
extern char WdlLine[WDL_LINE_SIZE]; // the current line, with its line feed
extern const char *WdlReadPos;      // the next character in it
extern int32_t WdlLineNumber;       // lines read so far
extern char WdlPushback;            // a character to read once more, 0 for none
extern char WdlText[WDL_TEXT_SIZE]; // the text of the current token
extern int32_t WdlToken;            // its number
extern int32_t WdlPendingToken;     // a token to give back, 0 for none
extern int32_t WdlRightSide;        // 1 right of the "=", 0 left of it

// True for a name that the scanner would take for something else at the start of a statement, if nothing
// stood in front of it.
bool NeedsBracket(const char *name);

// A character of the file; both numbers count from 1.
struct WdlPlace {
    int line;
    int column;
};
// Where the character at `offset` of WdlText was read.
WdlPlace WdlPlaceInToken(uint32_t offset);

// Puts the state in place for the start of `file`.
void InitWdlLexer(TextReader *file);

// The error of a file that is no text.
constexpr const char *NOT_A_TEXT = "Not a text file";

// Reads the next line and answers its first character, 0 at the end of the file. A line that is too long, has
// no line feed or holds a NUL is a syntax error; if its characters are none of a text, this is said.
char WdlReadLine();
// The next character; a line end counts as one blank; 0 at the end of the file.
char WdlGetChar();
// Two numbers of at most 32 bits, where they stand in the line with a blank between them and the first one is
// the next token; the same as two calls of WdlNextToken, for the many data items of a document. False, with
// nothing read, for all else.
bool WdlReadPair(bool hexadecimal, uint32_t &value, uint32_t &duration);
// The next token, to WdlToken and WdlText; TOKEN_END also behind a token that is too long, which is a syntax
// error.
int32_t WdlNextToken();
