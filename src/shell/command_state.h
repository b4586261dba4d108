// The command in force, how far it has come, and the mouse cursor that goes with it.
#pragma once

#include "shell/reporting.h"
#include "store/time_value.h"

// What a command that is running has got; set aside while a view command interrupts it.
struct RunningCommand {
    uint16_t CurrentCommand; // 0 none, 214 Query mode, 220 Edit mode, else a command on its way
    char substitute[PROMPT_SIZE];
};

// How far a command has come, or what the mouse has just done.
enum CommandPhaseValue : uint16_t {
    PHASE_IDLE = 0,
    PHASE_STARTING = 1,
    PHASE_PASTING = 2, // a right or middle button has this number, too
    PHASE_ENDING = 3,
    PHASE_PRESSED = 4, // the left button
    PHASE_SHIFT_PRESSED = 5,
    PHASE_RELEASED = 6,
};

// Kinds of the mouse cursor, and what goes on under it; a sum of these, but for the hourglass.
enum CursorModeValue : int16_t {
    CURSOR_QUERY = 1,
    CURSOR_ZOOM = 2,
    CURSOR_RANGE = 0x10,  // the ruler shows a band from the place of the press
    CURSOR_TRACK = 0x200, // a tracking routine follows the mouse
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
// Written by the commands and the gestures.
extern CommandStateRecord CommandState;
void InitCommands();

// True while the left button goes down.
inline bool IsPress() {
    return CommandState.CommandPhase == PHASE_PRESSED || CommandState.CommandPhase == PHASE_SHIFT_PRESSED;
}
inline bool IsRelease() {
    return CommandState.CommandPhase == PHASE_RELEASED;
}
