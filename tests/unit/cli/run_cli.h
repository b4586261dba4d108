// Runs the built kelvane-cli as a process.
#pragma once

#include <string>
#include <vector>

struct CliRun {
    int status;      // exit status, or -1 if it did not end by itself
    std::string out; // what stood on standard output
    std::string err;
};

// `directory` is the process's current one, `input` the file on its standard input, and `variable` what its
// environment has besides, as NAME=VALUE.
CliRun RunCli(const std::vector<std::string> &arguments, const std::string &directory = ".",
              const std::string &input = "/dev/null", const std::string &variable = "_=");

// The path of a file in examples/.
std::string Example(const std::string &name);
