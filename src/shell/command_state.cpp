#include "shell/command_state.h"

CommandStateRecord CommandState;

void InitCommands() {
    CommandState = {};
    CommandState.CursorMode = CURSOR_QUERY;
}
