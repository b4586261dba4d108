// The commands: one entry for every menu choice, key and posted command, what may be chosen at present, and
// which mode follows a command.
#pragma once

#include "shell/command_ids.h"
#include "shell/command_state.h"
#include <cstdint>

// The one entry for commands. An id below 0 only removes the error strip.
void DispatchCommand(int32_t id);
// Opens a file as the command Open does, without the question which.
void OpenFile(const char *path);
// Runs a command of the range 50 to 148.
void ExecuteCommand(uint32_t id);
// Ends what is in force, and asks whether to save. True if the program may close; the mode that was in force
// is so again for as long as it does not.
bool MayClose();
// Returns to the mode that follows a command: Edit mode holds on, everything else becomes Query mode.
void FinishCommand();
// Starts, ends or goes on with a view command, by CommandPhase.
void ViewCommand(uint32_t id);

// False for a command that does nothing yet; its menu entry stays gray.
bool CommandIsBuilt(uint32_t id);
// True if the command may be chosen in the present state.
bool CommandIsAllowed(uint32_t id);
// Enables each menu entry, or grays it, and marks it, by the present state.
void UpdateCommands();
