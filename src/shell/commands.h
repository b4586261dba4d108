// The commands: one entry for every menu choice, key and posted command, what may be chosen at present, and
// which mode follows a command.
#pragma once

#include "shell/command_ids.h"
#include "shell/reporting.h"
#include "store/time_value.h"
#include <cstdint>

// What a command that is running has got; set aside while a view command interrupts it.
struct RunningCommand {
    uint16_t CurrentCommand; // 0 none, 214 Query mode, 220 Edit mode, else a command on its way
    char substitute[PROMPT_SIZE];
};

// How far a command has come.
enum CommandPhaseValue : uint16_t {
    PHASE_IDLE = 0,
    PHASE_STARTING = 1,
    PHASE_PASTING = 2,
    PHASE_ENDING = 3,
};

// Kinds of the mouse cursor; a sum of these, but for the hourglass.
enum CursorModeValue : int16_t {
    CURSOR_QUERY = 1,
    CURSOR_ZOOM = 2,
    CURSOR_RANGE = 16,    // a range is dragged, and shown in the ruler
    CURSOR_TRACK = 0x200, // a gesture follows the mouse
    CURSOR_SELECT = 0x400,
    CURSOR_WAIT = 0x2000,
};

struct CommandStateRecord {
    uint16_t CurrentCommand;
    uint16_t CommandPhase;
    int16_t CursorMode;
    bool ViewCommandSaved;
    struct {
        TimeVal ZoomCentre, ZoomAnchor;
        uint16_t ZoomPhase;
        RunningCommand running;
    } SavedViewState;
};
// Written by the routines below, and by the gestures.
extern CommandStateRecord CommandState;
void InitCommands();

// The one entry for commands. An id below 0 only removes the error strip.
void DispatchCommand(int32_t id);
// Runs a command of the range 50 to 148.
void ExecuteCommand(uint32_t id);
// Returns to the mode that follows a command: Edit mode holds on, everything else becomes Query mode.
void FinishCommand();
// Starts, ends or goes on with a view command, by CommandPhase.
void ViewCommand(uint32_t id);
// Edit mode or Query mode takes effect.
void SetEditMode(bool edit);

// False for a command that does nothing yet; its menu entry stays gray.
bool CommandIsBuilt(uint32_t id);
// True if the command may be chosen in the present state.
bool CommandIsAllowed(uint32_t id);
// Enables each menu entry, or grays it, by the present state.
void UpdateCommands();
