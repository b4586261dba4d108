#include "shell/undo.h"

#include "display/composition.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "shell/command_state.h"
#include "store/queries.h"

void (*AfterUndoHook)();

namespace {

// The result of `step` is not looked at: whatever the replay reached is what is shown.
void Replay(int (*step)()) {
    // What waits to be merged may just be undone; a merge would end what can be redone.
    PendingMerge = 0;
    step();
    FinishReplay();
    ValidateDurations();
    if (AfterUndoHook) AfterUndoHook();
    RepaintChanged(false);
    // As at the start of a command: the end of this one takes the selection away.
    CommandState.CommandPhase = PHASE_STARTING;
}

} // namespace

void UndoAction() {
    Replay(LogUndo);
}

void RedoAction() {
    Replay(LogRedo);
}
