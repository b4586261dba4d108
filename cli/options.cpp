#include "options.h"

#include <charconv>
#include <cstdio>

namespace {

bool ReadDecimal(const std::string &text, uint32_t &number) {
    const char *end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

std::string CheckTime(const std::string &text) {
    uint32_t ignored;
    return ReadDecimal(text, ignored) ? "" : "\"" + text + "\" is not a time from 0 to 4294967295";
}

} // namespace

CLI::App *AddPlainCommand(CLI::App &program, const std::string &name, const std::string &description) {
    CLI::App *command = program.add_subcommand(name, description);
    command->set_version_flag("--version", "kelvane-cli " KELVANE_VERSION);
    return command;
}

CLI::App *AddCommand(CLI::App &program, CommonOptions &options, const std::string &name,
                     const std::string &description, bool takesFile) {
    CLI::App *command = AddPlainCommand(program, name, description);
    if (takesFile) command->add_option("FILE", options.file, "stimulus file")->required();
    command->add_option("--simulator", options.simulator, "the simulator's configuration file")
        ->type_name("INI");
    command->add_option("--radix", options.radix, "radix of bus values: 2, 8, 10 or 16")
        ->type_name("RADIX")
        ->check(CLI::IsMember({"2", "8", "10", "16"}).description(""));
    return command;
}

CLI::Option *AddTime(CLI::App *command, const std::string &name, TimeVal &time,
                     const std::string &description) {
    return command
        ->add_option_function<std::string>(
            name, [&time](const std::string &text) { ReadDecimal(text, time); },
            description + " (in counts of the document's smallest unit)")
        ->type_name("TIME")
        ->check(CheckTime, "");
}

void PrintError(const std::string &what, const std::string &message) {
    fprintf(stderr, "%s: %s\n", what.c_str(), message.c_str());
}
