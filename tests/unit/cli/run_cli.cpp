#include "run_cli.h"

#include "unit/support/fresh_store.h"
#include <cstdlib>
#include <sys/wait.h>

namespace {

std::string Quoted(const std::string &word) {
    std::string text = "'";
    for (char c : word) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

} // namespace

CliRun RunCli(const std::vector<std::string> &arguments, const std::string &directory,
              const std::string &input, const std::string &variable) {
    ScratchDirectory scratch;
    std::string command =
        "cd " + Quoted(directory) + " && env " + Quoted(variable) + " " + Quoted(KELVANE_CLI);
    for (const std::string &argument : arguments) command += " " + Quoted(argument);
    command +=
        " <" + Quoted(input) + " >" + Quoted(scratch.file("out")) + " 2>" + Quoted(scratch.file("err"));
    int status = system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadWholeFile(scratch.file("out")),
            ReadWholeFile(scratch.file("err"))};
}

std::string Example(const std::string &name) {
    return std::string(KELVANE_SOURCE_DIR "/examples/") + name;
}
