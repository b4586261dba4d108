// kelvane-cli: the editor's engine without its windows, for scripts and pipelines.
#include "commands.h"
#include <cstdio>
#include <exception>

namespace {

int Parse(CLI::App &program, int argc, char **argv, int &status) {
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        // A question about the program itself was answered, unless this is wrong usage.
        if (error.get_exit_code() == 0) return program.exit(error);
        const char *word = argc > 1 ? argv[1] : "-";
        if (program.get_subcommands().empty() && word[0] != '-') {
            PrintError("kelvane-cli", std::string("unknown command \"") + word + "\"");
        } else {
            PrintError("kelvane-cli", error.what());
        }
        return EXIT_BAD_USAGE;
    }
    return status;
}

int Run(int argc, char **argv) {
    int status = EXIT_DONE;
    CLI::App program("Checks, formats, queries and draws stimulus files.", "kelvane-cli");
    program.set_version_flag("--version", "kelvane-cli " KELVANE_VERSION);
    program.require_subcommand(1);
    AddCheck(program, status);
    AddFormat(program, status);
    AddDump(program, status);
    AddSegments(program, status);
    AddValue(program, status);
    AddListing(program, status);
    AddRender(program, status);
    AddLog(program, status);
    AddRecover(program, status);
    AddEdit(program, status);
    status = Parse(program, argc, argv, status);
    if (fflush(stdout) == 0 && !ferror(stdout)) return status;
    PrintError("kelvane-cli", "standard output cannot be written");
    return EXIT_BAD_USAGE;
}

} // namespace

int main(int argc, char **argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception &error) {
        fprintf(stderr, "kelvane-cli: %s\n", error.what());
    } catch (...) {
        fprintf(stderr, "kelvane-cli: failed\n");
    }
    return EXIT_BAD_USAGE;
}
