#include "output.h"

#include "platform/file_replacement.h"
#include "shell/file_names.h"
#include "wdl/writer.h"
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

bool GetDocumentText(std::string &text) {
    return WriteWdlText(
        [](const char *piece, int length, void *context) {
            static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
        },
        &text);
}

// Where a name leads to that nothing bears yet.
fs::path Place(const fs::path &name) {
    std::error_code ignored;
    fs::path parent = name.has_parent_path() ? name.parent_path() : fs::path(".");
    return fs::weakly_canonical(parent, ignored) / name.filename();
}

bool IsSameFile(const std::string &a, const std::string &b) {
    if (a.empty() || b.empty() || IsDevice(a.c_str())) return false;
    std::string first = FollowLinks(a.c_str()), second = FollowLinks(b.c_str());
    std::error_code ignored;
    return fs::equivalent(first, second, ignored) || Place(first) == Place(second);
}

} // namespace

bool AreDifferentFiles(const std::vector<UsedFile> &files) {
    for (const UsedFile &file : files) {
        if (!file.written) continue;
        for (const UsedFile &other : files) {
            if (&other == &file || !IsSameFile(file.path, other.path)) continue;
            PrintError(file.path, "cannot be " + file.role + " as well as " + other.role);
            return false;
        }
    }
    return true;
}

std::string FileBeside(const std::string &document, const char *extension) {
    char path[MAX_PATH_SIZE] = "";
    if (document.size() < MAX_PATH_SIZE) memcpy(path, document.c_str(), document.size() + 1);
    return SetExtension(path, extension) ? path : "";
}

std::string CheckFileName(const std::string &name) {
    return name.empty() ? "the name is empty" : "";
}

CLI::Option *AddOutput(CLI::App *command, std::string &out, const std::string &description) {
    return command->add_option("-o", out, description)->type_name("OUT")->check(CheckFileName, "");
}

int WriteDocumentText(const std::string &out) {
    std::string text;
    if (!GetDocumentText(text)) {
        PrintError(out.empty() ? "the document" : out, std::string("cannot be written: ") + TOO_MANY_NESTS);
        return EXIT_BAD_USAGE;
    }
    if (out.empty()) {
        fwrite(text.data(), 1, text.size(), stdout);
        return EXIT_DONE;
    }
    FileReplacement file(out.c_str());
    if (file.isOpen() && file.write(text) && file.finish() && file.commit()) return EXIT_DONE;
    PrintError(out, "cannot be written: " + file.failure());
    return EXIT_BAD_USAGE;
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
