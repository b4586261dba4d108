// format: writes the document as the editor would save it.
#include "commands.h"
#include "load.h"
#include "platform/text_file.h"
#include "wdl/writer.h"
#include <cstdio>
#include <filesystem>
#include <memory>

namespace {

namespace fs = std::filesystem;

struct FormatOptions : CommonOptions {
    std::string out;
};

std::string DocumentText() {
    std::string text;
    WriteWdlText(
        [](const char *piece, int length, void *context) {
            static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
        },
        &text);
    return text;
}

bool WriteWhole(const std::string &path, const std::string &text) {
    TextWriter file(path.c_str());
    if (!file.isOpen()) return false;
    file.write(text);
    return file.close();
}

// A name beside `path` that no file bears.
std::string NameBeside(const std::string &path) {
    std::string name;
    for (int n = 1; name.empty() || CanAccessFile(name.c_str(), FileAccess::Exists); ++n) {
        name = path + "." + std::to_string(n) + ".tmp";
    }
    return name;
}

// Puts `text` in the place of the file at `path`, which stays as it is when that does not work. A link keeps
// leading to the file, and the file keeps its permissions. What is no plain file, like a pipe, is written to.
bool ReplaceFile(const std::string &path, const std::string &text) {
    std::error_code error;
    fs::path target = path;
    fs::file_status status = fs::status(target, error);
    bool exists = fs::exists(status);
    if (exists && !fs::is_regular_file(status)) return WriteWhole(path, text);
    if (exists) {
        if (!CanAccessFile(path.c_str(), FileAccess::Write)) return false;
        target = fs::canonical(target, error);
        if (error) return false;
    }
    std::string temporary = NameBeside(target.string());
    bool good = WriteWhole(temporary, text);
    if (good && exists) {
        fs::permissions(temporary, status.permissions(), error);
        good = !error;
    }
    good = good && ReplaceFileWith(temporary.c_str(), target.string().c_str());
    if (!good) RemoveFile(temporary.c_str());
    return good;
}

int Format(const FormatOptions &options) {
    if (int status = LoadDocumentFile(options)) return status;
    std::string text = DocumentText();
    if (options.out.empty()) {
        fwrite(text.data(), 1, text.size(), stdout);
    } else if (!ReplaceFile(options.out, text)) {
        PrintError(options.out, "cannot be written");
        return EXIT_BAD_USAGE;
    }
    return EXIT_DONE;
}

} // namespace

void AddFormat(CLI::App &program, int &status) {
    auto options = std::make_shared<FormatOptions>();
    CLI::App *command =
        AddCommand(program, *options, "format", "Write the document as the editor would save it");
    command->add_option("-o", options->out, "file to write instead of standard output; may be FILE itself")
        ->type_name("OUT")
        ->check([](const std::string &out) { return std::string(out.empty() ? "the name is empty" : ""); },
                "");
    command->callback([options, &status] { status = Format(*options); });
}
