// What the commands have in common: their options, the exit status, and how numbers are given.
#pragma once

#include "store/time_value.h"
#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>

enum ExitStatus {
    EXIT_DONE = 0,
    EXIT_BAD_DOCUMENT = 1, // the stimulus file has errors, or a name is not in it
    EXIT_BAD_USAGE = 2,    // wrong usage, or a file that cannot be read or written
};

struct CommonOptions {
    std::string file;
    std::string simulator; // the simulator's configuration file, empty for none
    uint32_t radix = 16;
};

// A command without options.
CLI::App *AddPlainCommand(CLI::App &program, const std::string &name, const std::string &description);
// A command with the options that all take which load a document; with `takesFile` the file comes first.
CLI::App *AddCommand(CLI::App &program, CommonOptions &options, const std::string &name,
                     const std::string &description, bool takesFile = true);

// An option (or argument) for a time: a plain decimal count.
CLI::Option *AddTime(CLI::App *command, const std::string &name, TimeVal &time,
                     const std::string &description);

// Prints "WHAT: MESSAGE" as one line on standard error.
void PrintError(const std::string &what, const std::string &message);
