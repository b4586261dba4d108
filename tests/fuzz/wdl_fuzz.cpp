// Any text through the compiler, the durations, the writer and the compiler again: whatever comes in, reading
// ends, what was accepted can be measured and written, and no reference leads back to its own pattern.
#include "config/settings.h"
#include "headless/headless.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/writer.h"
#include <cstdlib>
#include <string>

namespace {

// Reads `text` into a new store; true if it was accepted.
bool Load(std::string_view text) {
    PatternStoreFree();
    InitHeadless();
    InitSettings();
    if (!PatternStoreInit()) abort();
    LoadStateTables();
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    WriteErrorListing = false;
    std::string text(reinterpret_cast<const char *>(data), size);
    // What is written need not be readable, but after a few rounds it either settles or is refused.
    for (int round = 0; round < 3 && Load(text); ++round) {
        if (FindReferenceCircle() != 0) abort();
        ValidateDurations();
        text = Written();
    }
    PatternStoreFree();
    return 0;
}
