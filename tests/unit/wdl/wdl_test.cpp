#include "unit/wdl/wdl_test.h"

#include "config/settings.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/writer.h"

namespace {

std::vector<SyntaxErrorSeen> errorsSeen;

void KeepError(int line, int column, const char *message) {
    errorsSeen.push_back({line, column, message});
}

} // namespace

void WdlTest::SetUp() {
    FreshStore::SetUp();
    errorsSeen.clear();
    WriteErrorListing = false;
    SyntaxErrorHook = KeepError;
}

void WdlTest::TearDown() {
    WriteErrorListing = true;
    SyntaxErrorHook = nullptr;
    FreshStore::TearDown();
}

WdlTest::WdlTest() : errors(errorsSeen) {}

int WdlTest::Compile(std::string_view text) {
    errorsSeen.clear();
    TextReader reader(text);
    return CompileWdl(&reader, "document.wdl");
}

int WdlTest::CompileAfresh(std::string_view text) {
    PatternStoreFree();
    InitSettings();
    EXPECT_EQ(PatternStoreInit(), 1);
    LoadStateTables();
    return Compile(text);
}

std::string WdlTest::FirstError(std::string_view text) {
    int result = CompileAfresh(text);
    EXPECT_EQ(result == 1, errorsSeen.empty());
    if (errorsSeen.empty()) return "";
    return std::to_string(errorsSeen[0].line) + ": " + errorsSeen[0].message;
}

std::string WdlTest::MessageOf(std::string_view text) {
    FirstError(text);
    return errorsSeen.empty() ? "" : errorsSeen[0].message;
}

const Pattern &Named(const char *name) {
    static const Pattern none = {};
    const Pattern *pattern = FindPattern(name);
    EXPECT_NE(pattern, nullptr) << "no pattern " << name;
    return pattern ? *pattern : none;
}

std::string ItemsOf(const Pattern &pattern) {
    std::string text;
    for (uint32_t i = 0; i < pattern.itemCount; ++i) {
        if (i > 0) text += " ";
        const PatternItem &item = pattern.item(i);
        if (!item.isReference()) {
            text += std::to_string(item.value()) + ":" + std::to_string(item.duration());
            continue;
        }
        const Pattern *target = PatternFromId(item.patternId());
        text += target->nameLength ? target->name() : "(" + ItemsOf(*target) + ")";
        if (item.scale() != 1) text += "*" + std::to_string(item.scale());
        if (item.repeat() != 1) text += "#" + std::to_string(item.repeat());
        if (item.forcedFormat() != 0) text += "@" + std::to_string(item.forcedFormat());
        if (pattern.kind() == PatternKind::Reference) {
            text += "[" + std::to_string(item.sliceOffset()) + "/" + std::to_string(item.sliceWidth()) + "]";
        }
    }
    return text;
}

std::string ItemsOf(const char *name) {
    return ItemsOf(Named(name));
}

std::string WrittenText() {
    std::string text;
    WriteWdlText(
        [](const char *piece, int length, void *context) {
            static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
        },
        &text);
    return text;
}

std::string WrittenStatements() {
    std::string text = WrittenText();
    size_t start = 0;
    for (int line = 0; line < 5; ++line) start = text.find('\n', start) + 1;
    return text.substr(start);
}
