// Runs the window tests, or, asked for a picture, shows one file in the editor:
//
//   window_tests [--program=KELVANE.EXE] [GoogleTest's options]
//   window_tests [--program=KELVANE.EXE] [--config=DIRECTORY] --picture=OUT.png FILE
//
// The picture shows the program with its start settings, or with a copy of those in DIRECTORY.

#include "window/editor.h"
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

constexpr const char *PROGRAM_OPTION = "--program=";
constexpr const char *PICTURE_OPTION = "--picture=";
constexpr const char *CONFIG_OPTION = "--config=";

std::string BesideThisProgram(const char *name) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    return (std::filesystem::path(path).parent_path() / name).string();
}

// Tells what a dialog says that stands where the panels should.
void TellDialog(const Editor &editor) {
    Dialog dialog = editor.dialog();
    if (!dialog.window) return;
    fprintf(stderr, "The editor says (%s):\n", dialog.title().c_str());
    for (const std::string &text : dialog.labels()) fprintf(stderr, "    %s\n", text.c_str());
}

// Opens the file, saves the picture of the main window once it is painted, and closes the program as a user
// does. The exit status.
int TakePicture(const std::string &file, const std::string &config, const std::string &out) {
    TestDirectory directory;
    std::error_code failure;
    if (!config.empty()) std::filesystem::copy(config, directory.file("config"), failure);
    if (failure) {
        fprintf(stderr, "The settings cannot be copied: %s\n", config.c_str());
        return 1;
    }
    Editor editor(directory, "\"" + file + "\"");
    if (!editor.open()) {
        fprintf(stderr, "The editor did not open %s\n", file.c_str());
        TellDialog(editor);
        return 1;
    }
    if (!WritePng(editor.picture(), out)) {
        fprintf(stderr, "The picture cannot be written: %s\n", out.c_str());
        return 1;
    }
    editor.close();
    std::optional<DWORD> code = editor.ended();
    if (code && *code == 0) return 0;
    fprintf(stderr, "The editor did not end as it should\n");
    return 1;
}

} // namespace

int main(int argc, char **argv) {
    SetProcessDPIAware();
    // Wine's desktop belongs to the first process that asks for it, and must outlive the editors.
    GetDesktopWindow();
    testing::InitGoogleTest(&argc, argv);
    ProgramPath = BesideThisProgram("kelvane.exe");
    std::string picture, config;
    int i = 1;
    for (; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument.starts_with(PROGRAM_OPTION))
            ProgramPath = argument.substr(strlen(PROGRAM_OPTION));
        else if (argument.starts_with(PICTURE_OPTION))
            picture = argument.substr(strlen(PICTURE_OPTION));
        else if (argument.starts_with(CONFIG_OPTION))
            config = argument.substr(strlen(CONFIG_OPTION));
        else
            break;
    }
    if (picture.empty()) return RUN_ALL_TESTS();
    if (i >= argc) {
        fprintf(stderr, "A picture needs a FILE\n");
        return 2;
    }
    return TakePicture(argv[i], config, picture);
}
