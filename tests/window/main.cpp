// Runs the window tests, or, asked for a picture, shows one file in the editor:
//
//   window_tests [--program=KELVANE.EXE] [GoogleTest's options]
//   window_tests [--program=KELVANE.EXE] [--config=DIRECTORY] [--scene=SCENE] --picture=OUT.png FILE
//
// The picture shows the program with its start settings, or with a copy of those in DIRECTORY. A SCENE is
// "readout", the main window with the cursor on a bus and the mark before it, "hierarchy", the window that
// lists what a wave is made of, "selected", the main window with a bus value selected, or "dialog",
// the floating dialog beside that.

#include "shell/command_ids.h"
#include "window/editor.h"
#include "window/expected.h"
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

constexpr const char *PROGRAM_OPTION = "--program=";
constexpr const char *PICTURE_OPTION = "--picture=";
constexpr const char *CONFIG_OPTION = "--config=";
constexpr const char *SCENE_OPTION = "--scene=";

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

// Clicks in a row of a panel, `part` (0 to 1) of its width from its left.
void ClickRow(const Editor &editor, int pane, int row, double part) {
    RECT place = PlaceOf(editor.pane(pane));
    int height = ExpectedSizes().rowHeight;
    ClickAt(place.left + static_cast<int>((place.right - place.left) * part),
            place.top + row * height + height / 2);
    editor.painted();
}

// Brings the scene about, and gives the window to be shown; null if that fails.
HWND Arrange(const Editor &editor, const std::string &scene) {
    constexpr int WAVES = 3, NAMES = 2;
    if (scene == "readout") {
        constexpr int BUS = 7; // of examples/formats.wdl
        editor.command(COMMAND_QUERY_MODE);
        ClickRow(editor, WAVES, BUS, 0.12);
        editor.command(COMMAND_PLACE_MARK);
        ClickRow(editor, WAVES, BUS, 0.3);
    } else if (scene == "hierarchy") {
        constexpr int MOSI = 2; // of examples/spi.wdl
        ClickRow(editor, NAMES, MOSI, 0.5);
        editor.command(COMMAND_SHOW_WAVEFORM_DATA);
        return editor.dialog().window;
    } else if (scene == "selected") {
        constexpr int COUNT = 7; // of examples/clock.wdl
        ClickRow(editor, WAVES, COUNT, 0.2);
    } else if (scene == "dialog") {
        constexpr int COUNT = 7; // of examples/clock.wdl
        ClickRow(editor, WAVES, COUNT, 0.2);
        return editor.editDialog().window;
    } else if (!scene.empty()) {
        return nullptr;
    }
    return editor.painted() ? editor.frame() : nullptr;
}

// Opens the file, saves the picture of the scene, and closes the program as a user does. The exit status.
int TakePicture(const std::string &file, const std::string &config, const std::string &scene,
                const std::string &out) {
    TestDirectory directory;
    std::error_code failure;
    if (!config.empty()) std::filesystem::copy(config, directory.file("config"), failure);
    if (failure) {
        fprintf(stderr, "The settings cannot be copied: %s\n", config.c_str());
        return 1;
    }
    Editor editor(directory, "\"" + file + "\"");
    if (!editor.open(scene == "dialog")) {
        fprintf(stderr, "The editor did not open %s\n", file.c_str());
        TellDialog(editor);
        return 1;
    }
    HWND shown = Arrange(editor, scene);
    if (!shown) {
        fprintf(stderr, "The scene cannot be shown: %s\n", scene.c_str());
        return 1;
    }
    if (!WritePng(PictureOfWindow(shown), out)) {
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
    std::string picture, config, scene;
    int i = 1;
    for (; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument.starts_with(PROGRAM_OPTION))
            ProgramPath = argument.substr(strlen(PROGRAM_OPTION));
        else if (argument.starts_with(PICTURE_OPTION))
            picture = argument.substr(strlen(PICTURE_OPTION));
        else if (argument.starts_with(CONFIG_OPTION))
            config = argument.substr(strlen(CONFIG_OPTION));
        else if (argument.starts_with(SCENE_OPTION))
            scene = argument.substr(strlen(SCENE_OPTION));
        else
            break;
    }
    if (picture.empty()) return RUN_ALL_TESTS();
    if (i >= argc) {
        fprintf(stderr, "A picture needs a FILE\n");
        return 2;
    }
    return TakePicture(argv[i], config, scene, picture);
}
