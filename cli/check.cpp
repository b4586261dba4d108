// check: loads files and tells what is in them, and what the reader passes over.
#include "commands.h"
#include "config/settings.h"
#include "load.h"
#include "store/pattern_store.h"
#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

struct CheckOptions : CommonOptions {
    std::vector<std::string> files;
};

void PrintSummary(const std::string &file) {
    unsigned nodes = 0, patterns = 0, references = 0;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        bool isReference = pattern->kind() == PatternKind::Reference;
        if (pattern->hasProperties() && !isReference) ++nodes;
        if (pattern->nameLength != 0 && !pattern->hasProperties()) ++patterns;
        if (isReference) ++references;
    }
    printf("%s: %u nodes, %u patterns, %u references, ends at %u\n", file.c_str(), nodes, patterns,
           references, Settings.EndTime);
}

int Check(CheckOptions &options) {
    int worst = EXIT_DONE;
    for (const std::string &file : options.files) {
        options.file = file;
        int status = LoadDocumentFile(options, Warnings::Printed);
        if (status == EXIT_DONE) PrintSummary(file);
        worst = std::max(worst, status);
    }
    return worst;
}

} // namespace

void AddCheck(CLI::App &program, int &status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App *command = AddCommand(program, *options, "check", "Load files and tell what is in them", false);
    command->add_option("FILE", options->files, "stimulus files")->required();
    command->callback([options, &status] { status = Check(*options); });
}
