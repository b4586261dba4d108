// Any text through the compiler, the durations, the writer and the compiler again: whatever comes in, reading
// ends; what was accepted can be measured and written, and no reference leads back to its own pattern; what
// was written is accepted, and is the same document, but for what a file cannot say.
#include "config/settings.h"
#include "headless/headless.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/support/random_document.h"
#include "unit/support/saved_document.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/writer.h"
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string firstError;

void KeepError(int line, int, const char *message) {
    if (firstError.empty()) firstError = std::to_string(line) + ": " + message;
}

// Reads `text` into a new store; true if it was accepted.
bool Load(std::string_view text) {
    PatternStoreFree();
    InitHeadless();
    InitSettings();
    if (!PatternStoreInit()) abort();
    LoadStateTables();
    AddRandomStateTables();
    firstError.clear();
    TextReader reader(text);
    return CompileWdl(&reader, "document.wdl") != 0;
}

std::string Written() {
    std::string text;
    WriteWdlText(
        [](const char *piece, int length, void *context) {
            static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
        },
        &text);
    return text;
}

void Require(bool holds, const std::string &what, const std::string &text) {
    if (holds) return;
    fprintf(stderr, "%s\n%s\n", what.c_str(), text.c_str());
    abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    WriteErrorListing = false;
    SyntaxErrorHook = KeepError;
    std::string text(reinterpret_cast<const char *>(data), size);
    bool accepted = Load(text);
    for (int round = 0; round < 2 && accepted; ++round) {
        Require(FindReferenceCircle() == 0, "a circle of references", text);
        ValidateDurations();
        SavedDocument saved = WhatIsSaved();
        Require(saved.leftOut == 0, "a pattern that was read is not written", text);
        Require(saved.comesBack, "no order of statements was found", text);
        text = Written();
        Require(Load(text), "what was written is refused: " + firstError, text);
        std::string difference = DifferenceFrom(saved);
        Require(difference.empty(), "what was written reads as another document: " + difference, text);
    }
    PatternStoreFree();
    return 0;
}
