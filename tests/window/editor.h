// The running editor as a test sees it: it is started, its windows are found, it is driven with real input,
// and it is ended whatever happens.
#pragma once

#include "window/picture.h"
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Asks again and again until the answer is true; false when the patience (seconds) has run out.
bool WaitFor(const std::function<bool()> &condition, double seconds = 30);

// A directory of its own for a test, removed with all that is in it.
class TestDirectory {
public:
    TestDirectory();
    ~TestDirectory();
    TestDirectory(const TestDirectory &) = delete;
    TestDirectory &operator=(const TestDirectory &) = delete;
    std::string file(const std::string &name) const { return path + "\\" + name; }
    std::string write(const std::string &name, const std::string &text) const;
    std::string read(const std::string &name) const;
    bool has(const std::string &name) const;
    std::string path;
};

// A dialog or message box that the editor shows.
struct Dialog {
    HWND window = nullptr;
    std::string title() const;
    // The text of a control; empty if there is none.
    std::string text(int id) const;
    bool has(int id) const { return GetDlgItem(window, id) != nullptr; }
    // Clicks a button with the mouse.
    void click(int id) const;
    // The texts of all its labels and buttons, in their order.
    std::vector<std::string> labels() const;
    // In a dialog that asks for a file: gives the name, in UTF-8, and clicks Open or Save.
    void giveFile(const std::string &name) const;
};

class Editor {
public:
    // Starts the program in `directory`, with the configuration in its folder "config". The arguments are
    // UTF-8.
    Editor(const TestDirectory &directory, const std::string &arguments);
    ~Editor();
    Editor(const Editor &) = delete;
    Editor &operator=(const Editor &) = delete;

    // Waits until the main window and the panels stand, the first command has run, and all is painted; false
    // if they do not come. The floating dialog, which would lie over the panels, is closed, unless it is
    // wanted.
    bool open(bool keepEditDialog = false);
    // Waits for the floating dialog of Edit mode; its window is null if it does not come. No other call that
    // speaks of dialogs means this one.
    Dialog editDialog() const;
    bool editDialogGone() const;
    // Closes it, if it is there; false if it stays.
    bool closeEditDialog() const;
    // Waits for a dialog other than `before`; its window is null if none comes.
    Dialog dialog(HWND before = nullptr) const;
    // Those that are there now, the topmost first.
    std::vector<Dialog> dialogs() const;
    // Waits until no dialog is there.
    bool dialogGone() const;
    // Waits until the program has ended by itself, and gives its exit code.
    std::optional<DWORD> ended();
    bool running() const;

    HWND frame() const;
    std::string title() const;
    // Number 1 is the ruler, 2 the names, 3 the waves.
    HWND pane(int number) const;
    HWND prompt() const;
    // The error strip, null without one.
    HWND strip() const;
    bool hasStrip(const std::string &text) const;

    // Sends a command as its menu entry does.
    void command(int id) const;
    // Closes the main window as its close button does.
    void close() const;
    // The window of the program that has the keyboard.
    HWND focus() const;
    // Waits until everything that was scheduled is painted and the picture stands still.
    bool painted() const;
    Picture picture() const;
    // Saves the picture of the main window, or of a dialog, as NAME.png under build/shots.
    void shoot(const std::string &name, HWND window = nullptr) const;
    void toFront() const;

    // Where a global of the program lies in its memory, by the linker's map; null if it is not found.
    uint8_t *address(const std::string &symbol) const;
    bool readMemory(const void *from, void *bytes, size_t size) const;
    bool writeMemory(void *to, const void *bytes, size_t size) const;
    // Puts bytes into memory of the program; null if it cannot be had.
    void *plantBytes(const std::string &bytes) const;
    void *plantCode(const std::string &bytes) const;
    // Lets a call of Windows that the program imports go to `code`; gives where it went before, null if the
    // program does not import it.
    void *exchangeCall(const std::string &name, void *code) const;
    // Makes the document count as modified.
    bool plantChange() const;
    // Selects a row, as a click on it will do.
    bool plantSelectedRow(uint32_t row) const;
    // The program's top-level window of a class, null if there is none.
    HWND window(const std::string &className) const;

private:
    std::vector<HWND> windows() const;
    HWND shownDialog() const;
    HWND shownEditDialog() const;
    void *plant(const std::string &bytes, DWORD protection) const;
    HANDLE job = nullptr;
    HANDLE process = nullptr;
    DWORD processId = 0;
};

// As long as it lives, a call of Windows fails in the program: it does nothing and answers 0.
class FailingCall {
public:
    FailingCall(const Editor &editor, const std::string &name);
    ~FailingCall();
    FailingCall(const FailingCall &) = delete;
    FailingCall &operator=(const FailingCall &) = delete;

private:
    const Editor &editor;
    std::string name;
    void *before;
};

// Real input. Places are screen pixels.
void PressKey(WORD key, const std::vector<WORD> &with = {});
void MoveMouse(int x, int y);
void PressButton(bool down);
void ClickAt(int x, int y);
// Waits until the window has the mouse to itself, or has let go of it.
bool HasCapture(HWND window, bool captured);

// Where kelvane.exe and its map are: beside this program, unless an argument said otherwise.
extern std::string ProgramPath;
std::string ClassOf(HWND window);
std::wstring Wide(const std::string &utf8);
std::string TextOf(HWND window);
RECT PlaceOf(HWND window);
// The place within the client area of `parent`.
RECT PlaceIn(HWND parent, HWND window);
