#include "output.h"

#include "platform/files.h"
#include "platform/text_file.h"
#include "wdl/writer.h"
#include <cstdio>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

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

} // namespace

std::string CheckFileName(const std::string &name) {
    return name.empty() ? "the name is empty" : "";
}

CLI::Option *AddOutput(CLI::App *command, std::string &out, const std::string &description) {
    return command->add_option("-o", out, description)->type_name("OUT")->check(CheckFileName, "");
}

int WriteDocumentText(const std::string &out) {
    std::string text = DocumentText();
    if (out.empty()) {
        fwrite(text.data(), 1, text.size(), stdout);
    } else if (!ReplaceFile(out, text)) {
        PrintError(out, "cannot be written");
        return EXIT_BAD_USAGE;
    }
    return EXIT_DONE;
}

std::string FromLatin1(std::string_view text) {
    std::string utf8;
    for (char c : text) {
        auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}
