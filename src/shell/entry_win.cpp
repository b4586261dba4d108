// Where the program begins, and its one message loop.

#include "shell/entry_win.h"
#include "config/paths.h"
#include "document/document.h"
#include "document/startup.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog.h"
#include "editlog/edit_log.h"
#include "shell/commands.h"
#include "shell/edit_dialog_win.h"
#include "shell/frame.h"
#include "shell/frame_win.h"
#include "shell/mode_gestures.h"
#include "shell/mouse_gesture.h"
#include "shell/reporting.h"
#include "shell/wide_names_win.h"
#include <commctrl.h>
#include <cstdlib>

HINSTANCE Instance = nullptr;

namespace {

// The keys that work everywhere, and those that a dialog with the focus keeps for itself.
HACCEL mainKeys = nullptr;
HACCEL specialKeys = nullptr;

void LoadKeys() {
    mainKeys = LoadAcceleratorsA(Instance, "Main");
    if (!mainKeys) ProgramError("LoadAccelerators Failed in InitWavesInst");
    specialKeys = LoadAcceleratorsA(Instance, "Special");
    if (!specialKeys) ProgramError("LoadAccelerators Special Failed in InitWavesInst");
}

bool TranslateKeys(HACCEL keys, MSG *message) {
    return FrameWindow && TranslateAcceleratorA(FrameWindow, keys, message);
}

// A floating dialog that is active gets its keyboard, but for Alt with a letter, which none of them has a use
// for: it is for the menu.
bool TakenByDialog(MSG *message) {
    HWND active = GetActiveWindow();
    if (!active || active == PromptWindow || active == TextWindow || active == FrameWindow) return false;
    if (message->message == WM_SYSCHAR && message->wParam > ' ')
        return OpenMenuByKey(SC_KEYMENU, static_cast<LPARAM>(message->wParam));
    return IsDialogMessageA(active, message);
}

int RunMessages() {
    MSG message = {};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        // In this order: the keys of the waves, Del and the arrows among them, are the dialog's own while one
        // has the keyboard, unless the user gives them to the waves.
        if (TranslateKeys(mainKeys, &message) || TakenByWaves(specialKeys, &message) ||
            TakenByDialog(&message) || TranslateKeys(specialKeys, &message)) {
            continue;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}

} // namespace

bool StartApplication(HINSTANCE instance, HINSTANCE previous, const char *commandLine, int show) {
    Instance = instance;
    InitCommands();
    InitClipboard();
    InitEditDialog();
    InitMouseGesture();
    InitModeGestures();
    PrepareApplication(commandLine);
    atexit(LogDeleteFile);
    LoadKeys();
    if (!InitWavesInst(previous, show)) return false;
    ReadHelpDirectory();
    return RunAfterCreate() == 0;
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR, int show) {
    InitCommonControls();
    // What Windows makes of the command line for the code page may name another file.
    std::string commandLine = CommandLineArguments();
    if (StartApplication(instance, previous, commandLine.c_str(), show)) return RunMessages();
    ReleaseDocument();
    ReleaseWindows();
    return 0;
}
