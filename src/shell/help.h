// Help on a command and the help menu: the help file where there is one, else the manual that lies beside the
// program.
#pragma once

#include "platform/files.h"
#include <cstdint>
#include <string>

// What help is asked for.
enum class HelpTopic { Context, Contents, Search, UsingHelp };

// The help file, "kel.hlp", alone or in HelpDirectory, to `path`; empty if that does not fit.
void FormHelpFilePath(char (&path)[MAX_PATH_SIZE]);
// The help context of a command: its id, for a program of the user's own the one that ToolHelpIdHook tells,
// in 16 bits.
uint16_t HelpContextOf(uint32_t id);
// The help context of a program of the user's own. Installed by the menu of these programs; while it is null
// they share what the manual says about them.
extern uint32_t (*ToolHelpIdHook)(uint32_t id);

// A page of the manual, and the anchor on it, empty for the page's top.
struct ManualPlace {
    std::string page, anchor;
};
ManualPlace PlaceInManual(HelpTopic topic, uint16_t context);
// The URL of a file. `path` is a full path in UTF-8.
std::string FileUrl(const std::string &path, const std::string &anchor);
// A page that leads on to the URL at once.
std::string RedirectPage(const std::string &url);

// Opens help on the topic. `context` counts for HelpTopic::Context only. Reports a manual that is not there.
void ShowHelp(HelpTopic topic, uint16_t context);
// The entries of the help menu and its key: help on the command in force, and the three others.
void HelpOnCurrentCommand();
void HelpContents();
void HelpSearch();
void HelpOnHelp();
// Closes what the help file opened.
void QuitHelp();

// The menu entry that is highlighted, and its MF_ flags. Written by the main window.
extern uint16_t MenuSelectItem;
extern uint16_t MenuSelectFlags;
// Help on the highlighted menu entry; nothing for a submenu or an entry of the system menu.
void HelpOnMenuItem();

// --- what the platform does -------------------------------------------------------------------------
// Shows the help file; false if that fails.
bool ShowHelpFile(const char *file, HelpTopic topic, uint16_t context);
void CloseHelpFile(const char *file);
// Shows a page of the manual, by its full path, in the user's browser. Reports a failure.
void OpenManualPage(const char *path, const std::string &anchor);
