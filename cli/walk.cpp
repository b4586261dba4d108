// segments, value and listing: what one pattern is made of.
#include "commands.h"
#include "config/settings.h"
#include "display/data_listing.h"
#include "display/wave_view.h"
#include "edit/walker.h"
#include "load.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

struct PatternOptions : CommonOptions {
    std::string name;
};

struct SegmentsOptions : PatternOptions {
    TimeVal from = 0, to = 0, minDetail = 0;
    bool toGiven = false;
    bool names = false, waves = false, sync = false;
};

struct ValueOptions : PatternOptions {
    TimeVal time = 0;
    bool sync = false;
};

CLI::App *AddPatternCommand(CLI::App &program, PatternOptions &options, const std::string &name,
                            const std::string &description) {
    CLI::App *command = AddCommand(program, options, name, description);
    command->add_option("NAME", options.name, "name of a pattern, as it is written")->required();
    return command;
}

// Loads the file and finds the pattern; null with the exit status in `status`.
Pattern *LoadPattern(const PatternOptions &options, int &status) {
    status = LoadDocumentFile(options);
    if (status != EXIT_DONE) return nullptr;
    Pattern *pattern = FindNamedPattern(options, options.name);
    if (!pattern) status = EXIT_BAD_DOCUMENT;
    return pattern;
}

int PrintSegment(const WalkSegment *s) {
    printf("%u %u %u %u %u", s->start, s->end, s->length, s->value, s->segFlags);
    if (s->segFlags & SegBlock) printf(" %s", s->pattern->name());
    printf("\n");
    return 1;
}

// The end of what ends: of a span without end a walk over an endless wave would never come back.
TimeVal EndOfWhatEnds() {
    TimeVal longest = Settings.EndTime == TIME_FOREVER ? 0 : Settings.EndTime;
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        TimeVal length = PatternInUse(id) ? PatternDuration(PatternFromId(id)) : TIME_FOREVER;
        if (length != TIME_FOREVER) longest = std::max(longest, length);
    }
    return TimeAdd(longest, longest / 4);
}

int Segments(const SegmentsOptions &options) {
    int status;
    Pattern *pattern = LoadPattern(options, status);
    if (!pattern) return status;
    uint32_t flags = 0;
    if (options.names) flags |= WalkNames;
    if (options.waves) flags |= WalkWaves;
    if (options.sync) flags |= WalkSync;
    TimeVal to = options.to;
    if (!options.toGiven) to = WaveView.SpanEnd == TIME_FOREVER ? EndOfWhatEnds() : WaveView.SpanEnd;
    // A window that ends before it begins holds nothing.
    if (options.from <= to) WalkPattern(PrintSegment, pattern, options.from, to, flags, options.minDetail);
    return EXIT_DONE;
}

int Value(const ValueOptions &options) {
    int status;
    Pattern *pattern = LoadPattern(options, status);
    if (pattern) printf("%u\n", PatternValueAt(pattern, options.time, options.sync));
    return status;
}

bool PrintLine(const char *line, void *) {
    printf("%s\n", line);
    return true;
}

int Listing(const PatternOptions &options) {
    int status;
    Pattern *pattern = LoadPattern(options, status);
    if (pattern) ListPatternData(pattern, PrintLine, nullptr);
    return status;
}

} // namespace

void AddSegments(CLI::App &program, int &status) {
    auto options = std::make_shared<SegmentsOptions>();
    CLI::App *command =
        AddPatternCommand(program, *options, "segments", "Print a pattern's waveform as segments");
    AddTime(command, "--from", options->from, "start of the window; 0 if left out");
    CLI::Option *to = AddTime(
        command, "--to", options->to,
        "end of the window; if left out the end of the span, or of what ends in a document without end");
    AddTime(command, "--min-detail", options->minDetail, "shorter items are not told apart; 0 if left out");
    command->add_flag("--names", options->names, "tell the uses of named patterns");
    command->add_flag("--waves", options->waves, "show the inside of named patterns as well");
    command->add_flag("--sync", options->sync, "expand clocked formats");
    command->callback([options, to, &status] {
        options->toGiven = to->count() != 0;
        status = Segments(*options);
    });
}

void AddValue(CLI::App &program, int &status) {
    auto options = std::make_shared<ValueOptions>();
    CLI::App *command = AddPatternCommand(program, *options, "value", "Print a pattern's value at a time");
    AddTime(command, "TIME", options->time, "the time")->required();
    command->add_flag("--sync", options->sync, "the value that a clocked format gives");
    command->callback([options, &status] { status = Value(*options); });
}

void AddListing(CLI::App &program, int &status) {
    auto options = std::make_shared<PatternOptions>();
    CLI::App *command = AddPatternCommand(program, *options, "listing", "Print a pattern's structure");
    command->callback([options, &status] { status = Listing(*options); });
}
