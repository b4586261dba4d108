// Fixture for the stimulus language: compiles texts, keeps the syntax errors, and shows what came of it.
#pragma once

#include "store/pattern.h"
#include "unit/support/fresh_store.h"
#include <string>
#include <string_view>
#include <vector>

struct SyntaxErrorSeen {
    int line;
    int column;
    std::string message;
};

class WdlTest : public FreshStore {
public:
    WdlTest();

protected:
    void SetUp() override;
    void TearDown() override;

    // Compiles `text` as it stands, without a listing file; the result of CompileWdl.
    int Compile(std::string_view text);
    // The same, in an empty store with start settings.
    int CompileAfresh(std::string_view text);
    // "" without errors, else the first one as "LINE: MESSAGE".
    std::string FirstError(std::string_view text);
    // Only its words.
    std::string MessageOf(std::string_view text);

    std::vector<SyntaxErrorSeen> &errors;
};

// The named pattern; the running test fails if there is none.
const Pattern &Named(const char *name);
// The items of a pattern, each "VALUE:DURATION" or the name of what it refers to ("(...)" with the items of
// an unnamed one), with "*SCALE", "#REPEAT", "@FORMAT" and "[OFFSET/WIDTH]" where they are not as inserted.
std::string ItemsOf(const Pattern &pattern);
std::string ItemsOf(const char *name);

// The text that the writer makes of the store.
std::string WrittenText();
// The written text without its five lines of settings.
std::string WrittenStatements();
