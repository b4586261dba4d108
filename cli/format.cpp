// format: writes the document as the editor would save it.
#include "commands.h"
#include "load.h"
#include "output.h"
#include <memory>

namespace {

struct FormatOptions : CommonOptions {
    std::string out;
};

int Format(const FormatOptions &options) {
    if (int status = LoadDocumentFile(options)) return status;
    return WriteDocumentText(options.out);
}

} // namespace

void AddFormat(CLI::App &program, int &status) {
    auto options = std::make_shared<FormatOptions>();
    CLI::App *command =
        AddCommand(program, *options, "format", "Write the document as the editor would save it");
    AddOutput(command, options->out, "file to write instead of standard output; may be FILE itself");
    command->callback([options, &status] { status = Format(*options); });
}
