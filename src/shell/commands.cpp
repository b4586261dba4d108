#include "shell/commands.h"

#include "config/settings.h"
#include "display/composition.h"
#include "display/cursor_readout.h"
#include "display/overlay.h"
#include "display/panes.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "display/zoom.h"
#include "document/document.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog.h"
#include "edit/expand_bus.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "shell/about_box.h"
#include "shell/data_listing_window.h"
#include "shell/frame.h"
#include "shell/help.h"
#include "shell/jump_commands.h"
#include "shell/mode_gestures.h"
#include "shell/undo.h"
#include "store/pattern_store.h"
#include <cstdio>

namespace {

// --- the table ------------------------------------------------------------------------------------

bool Always() {
    return true;
}

bool RowIsSelected() {
    return WaveView.RowCount > 0 && WaveView.SelectRow < WaveView.RowCount;
}

bool MarkIsPlaced() {
    return WaveView.MarkActive;
}

// For a command that is not built: its menu entry stays gray.
bool Never() {
    return false;
}

void Cut() {
    CutCopyDelete(COMMAND_CUT);
}

void Copy() {
    CutCopyDelete(COMMAND_COPY);
}

void Delete() {
    CutCopyDelete(COMMAND_DELETE);
}

void ToggleKeysToWaves() {
    Settings.KeysToWaves = !Settings.KeysToWaves;
}

// The end of the command takes the selection away.
void Paste() {
    CommandState.CommandPhase = PHASE_PASTING;
    PasteAtSelection(0);
}

struct Command {
    uint32_t id;
    // What it runs; null for a command of one of the ranges below, and for one that DispatchCommand handles.
    void (*run)();
    bool (*allowed)();
};

// Every menu entry, and the commands that only a key or a message runs.
constexpr Command commandTable[] = {
    {COMMAND_REDRAW, RepaintAll, Always},
    {COMMAND_ZOOM_FIT, ZoomFit, Always},
    {COMMAND_ZOOM_IN_STEP, ZoomInStep, Always},
    {COMMAND_ZOOM_OUT_STEP, ZoomOutStep, Always},
    {COMMAND_ZOOM_IN, nullptr, Always},
    {COMMAND_ZOOM_OUT, nullptr, Always},
    {COMMAND_PAN, nullptr, Always},
    {COMMAND_FULL_FIT, nullptr, Always},
    {COMMAND_FULL_SCALE, nullptr, Always},
    {COMMAND_UNDO, UndoAction, Always},
    {COMMAND_REDO, RedoAction, Always},
    {COMMAND_PAGE_SETUP, nullptr, Never},
    {COMMAND_PRINT, nullptr, Never},
    {COMMAND_CUSTOMIZE, nullptr, Never},
    {COMMAND_COPY_EXTERNALS, nullptr, Never},
    {COMMAND_CONSISTENCY_CHECK, nullptr, Never},
    {COMMAND_CUT, Cut, SelectionCanBeCut},
    {COMMAND_COPY, Copy, SelectionCanBeCut},
    {COMMAND_PASTE, Paste, SelectionTakesPaste},
    {COMMAND_SHOW, nullptr, Never},
    {COMMAND_DELETE, Delete, SelectionCanBeCut},
    {COMMAND_NEW_WAVE, nullptr, Never},
    {COMMAND_DUPLICATE, DuplicateHighlightedRows, RowIsSelected},
    {COMMAND_HIDE, HideHighlightedRows, RowIsSelected},
    {COMMAND_EXPAND_BUS, ExpandSelectedBus, BusIsSelected},
    {COMMAND_NODE_PARAMETERS, nullptr, Never},
    {COMMAND_SHOW_WAVEFORM_DATA, OpenDataListing, Always},
    {COMMAND_PLACE_MARK, PlaceMark, Always},
    {COMMAND_HIDE_MARK, HideMark, MarkIsPlaced},
    {COMMAND_TIMING_OPTIONS, nullptr, Never},
    {COMMAND_DISPLAY_OPTIONS, nullptr, Never},
    {COMMAND_NEXT_CHANGE, nullptr, RowIsSelected},
    {COMMAND_TO_MARKER, nullptr, MarkIsPlaced},
    {COMMAND_TO_TIME, nullptr, Always},
    {COMMAND_TO_START, nullptr, Always},
    {COMMAND_TO_END, nullptr, Always},
    {COMMAND_TICK_LEFT, nullptr, Always},
    {COMMAND_TICK_RIGHT, nullptr, Always},
    {COMMAND_TEN_LEFT, nullptr, Always},
    {COMMAND_TEN_RIGHT, nullptr, Always},
    {COMMAND_ROW_UP, nullptr, Always},
    {COMMAND_ROW_DOWN, nullptr, Always},
    {COMMAND_INSERT_PATTERN, nullptr, Never},
    {COMMAND_REMOVE, nullptr, Never},
    {COMMAND_COLORS, nullptr, Never},
    {COMMAND_KEYS_TO_WAVES, ToggleKeysToWaves, Always},
    {COMMAND_NEW, nullptr, Always},
    {COMMAND_OPEN, nullptr, Always},
    {COMMAND_SAVE, nullptr, Always},
    {COMMAND_SAVE_AS, nullptr, Always},
    {COMMAND_EXIT, FrameClose, Always},
    {COMMAND_HELP, HelpOnCurrentCommand, Always},
    {COMMAND_HELP_CONTENTS, HelpContents, Always},
    {COMMAND_HELP_SEARCH, HelpSearch, Always},
    {COMMAND_HELP_ON_HELP, HelpOnHelp, Always},
    {COMMAND_ABOUT, ShowAboutBox, Always},
    {COMMAND_QUERY_MODE, nullptr, Always},
    {COMMAND_EDIT_MODE, nullptr, Always},
};

const Command *FindCommand(uint32_t id) {
    for (const Command &command : commandTable) {
        if (command.id == id) return &command;
    }
    return nullptr;
}

// The selection stood in a row that is no longer the selected one.
void LeaveSelection() {
    DrawOverlay(false);
    ClearSelection();
    AdoptSelection();
    ShowSelection();
    DrawOverlay(true);
}

// --- the ranges of ids ----------------------------------------------------------------------------

constexpr uint32_t LAST_SCREEN_COMMAND = 19;
constexpr uint32_t LAST_VIEW_COMMAND = 49;
constexpr uint32_t LAST_EXECUTED_COMMAND = 148;

bool IsJumpCommand(uint32_t id) {
    return id >= COMMAND_NEXT_CHANGE && id <= COMMAND_ROW_DOWN;
}

void RunCommand(uint32_t id) {
    const Command *command = FindCommand(id);
    if (IsJumpCommand(id)) {
        JumpCommand(id);
    } else if (command && command->run) {
        command->run();
    }
}

bool IsViewCommand(uint32_t id) {
    return id > LAST_SCREEN_COMMAND && id <= LAST_VIEW_COMMAND;
}

void EndSavedViewCommand() {
    if (!CommandState.ViewCommandSaved) return;
    CommandState.CommandPhase = PHASE_ENDING;
    ViewCommand(CommandState.CurrentCommand);
}

void RunScreenCommand(uint32_t id) {
    EndSavedViewCommand();
    CommandState.CursorMode = CURSOR_QUERY;
    if (PanesExist()) RunCommand(id);
    CommandState.CommandPhase = PHASE_IDLE;
    FinishCommand();
}

// Ends the command in force. One of the document's that is at its question goes on by itself.
void EndCommand() {
    if (CommandState.CurrentCommand != 0) CommandState.CursorMode = CURSOR_QUERY;
    if (IsViewCommand(CommandState.CurrentCommand)) {
        ViewCommand(CommandState.CurrentCommand);
        CommandState.CursorMode = CURSOR_QUERY;
    }
    FinishCommand();
}

// What a view command interrupts is still the mode.
uint16_t ModeInForce() {
    const auto &saved = CommandState.SavedViewState;
    return CommandState.ViewCommandSaved ? saved.running.CurrentCommand : CommandState.CurrentCommand;
}

// Starts the command in force. `before` is the one before it, `path` the file for Open, empty to ask for one.
void StartCommand(uint16_t before, const char *path) {
    if (CommandState.CurrentCommand != 0) CommandState.CursorMode = CURSOR_QUERY;
    switch (CommandState.CurrentCommand) {
    case COMMAND_NEW:
    case COMMAND_OPEN:
        OpenDocument(path, CommandState.CurrentCommand == COMMAND_NEW);
        break;
    case COMMAND_SAVE:
    case COMMAND_SAVE_AS:
        SaveDocument(CommandState.CurrentCommand == COMMAND_SAVE_AS);
        break;
    case COMMAND_EDIT_MODE:
        // Only here: no other command opens the dialog again that the user has closed.
        OpenEditDialog();
        FinishCommand();
        return;
    default:
        FinishCommand();
        return;
    }
    CommandState.CurrentCommand = before;
    FinishCommand();
}

void ChangeCommand(uint32_t id, const char *path = "") {
    CommandState.CommandPhase = PHASE_ENDING;
    EndCommand();
    uint16_t before = CommandState.CurrentCommand;
    CommandState.CurrentCommand = static_cast<uint16_t>(id);
    PromptSubstitute[0] = '\0';
    CommandState.CommandPhase = PHASE_STARTING;
    StartCommand(before, path);
}

// --- view commands ----------------------------------------------------------------------------------

void SaveRunningCommand() {
    auto &saved = CommandState.SavedViewState;
    saved.ZoomCentre = WaveView.ZoomCentre;
    saved.ZoomAnchor = WaveView.ZoomAnchor;
    saved.ZoomPhase = WaveView.ZoomPhase;
    saved.running.CurrentCommand = CommandState.CurrentCommand;
    snprintf(saved.running.substitute, PROMPT_SIZE, "%s", PromptSubstitute);
    CommandState.ViewCommandSaved = true;
}

// Takes up again what a view command has interrupted.
void RestoreRunningCommand() {
    if (!CommandState.ViewCommandSaved) return;
    const auto &saved = CommandState.SavedViewState;
    uint16_t phase = CommandState.CommandPhase;
    WaveView.ZoomCentre = saved.ZoomCentre;
    WaveView.ZoomAnchor = saved.ZoomAnchor;
    WaveView.ZoomPhase = saved.ZoomPhase;
    CommandState.CurrentCommand = saved.running.CurrentCommand;
    snprintf(PromptSubstitute, PROMPT_SIZE, "%s", saved.running.substitute);
    CommandState.ViewCommandSaved = false;
    SetPrompt("");
    CommandState.CommandPhase = PHASE_IDLE;
    FinishCommand();
    CommandState.CommandPhase = phase;
}

// The event of a view command in CommandPhase; a start shows the command's prompt. Nonzero when the command
// is finished.
int RunViewGesture(uint32_t id) {
    CommandState.CursorMode = CURSOR_ZOOM;
    switch (id) {
    case COMMAND_ZOOM_IN:
        return ZoomIn();
    case COMMAND_ZOOM_OUT:
        return ZoomOut();
    case COMMAND_PAN:
        return PanView();
    case COMMAND_FULL_FIT:
        return FullFit();
    case COMMAND_FULL_SCALE:
        return FullZoom();
    default:
        return 0;
    }
}

void DispatchById(uint32_t id) {
    if (id >= 1 && id <= LAST_SCREEN_COMMAND) {
        RunScreenCommand(id);
    } else if (IsViewCommand(id)) {
        CommandState.CommandPhase = PHASE_STARTING;
        ViewCommand(id);
    } else if (id > LAST_VIEW_COMMAND && id <= LAST_EXECUTED_COMMAND) {
        EndSavedViewCommand();
        CommandState.CursorMode = CURSOR_QUERY;
        ExecuteCommand(id);
    } else if (id >= COMMAND_EXIT && id <= COMMAND_ABOUT && id != COMMAND_CANCEL) {
        RunCommand(id);
    } else {
        ChangeCommand(id);
    }
}

} // namespace

void DispatchCommand(int32_t id) {
    ShowErrorStrip(nullptr);
    EndTyping();
    if (id >= 0) {
        EndModeGesture();
        DispatchById(static_cast<uint32_t>(id));
    }
    UpdateCommands();
    if (CommandState.CurrentCommand == 0) SetPrompt("Select A Command.  F1 for Help");
    ShowNotices();
}

bool MayClose() {
    uint16_t mode = ModeInForce();
    DispatchCommand(0);
    DrawOverlay(false);
    bool may = QuerySaveChanges(true);
    CommandState.CurrentCommand = mode;
    CommandState.CommandPhase = PHASE_IDLE;
    FinishCommand();
    UpdateCommands();
    return may;
}

void OpenFile(const char *path) {
    ShowErrorStrip(nullptr);
    ChangeCommand(COMMAND_OPEN, path);
    UpdateCommands();
    ShowNotices();
}

void ViewCommand(uint32_t id) {
    switch (CommandState.CommandPhase) {
    case PHASE_STARTING:
        if (!CommandState.ViewCommandSaved) SaveRunningCommand();
        CommandState.CurrentCommand = static_cast<uint16_t>(id);
        WaveView.ZoomPhase = 0;
        RunViewGesture(id);
        break;
    case PHASE_PASTING:
    case PHASE_ENDING:
        RestoreRunningCommand();
        break;
    case PHASE_PRESSED:
    case PHASE_SHIFT_PRESSED:
    case PHASE_RELEASED:
        if (RunViewGesture(id)) RestoreRunningCommand();
        break;
    default:
        CommandState.CursorMode = CURSOR_ZOOM;
        break;
    }
}

void ExecuteCommand(uint32_t id) {
    CommandState.CommandPhase = PHASE_IDLE;
    int held = LogHoldOpen(1);
    uint32_t row = WaveView.SelectRow, rows = WaveView.RowCount;
    RunCommand(id);
    if (row != WaveView.SelectRow || rows != WaveView.RowCount) LeaveSelection();
    FinishCommand();
    LogHoldOpen(held);
}

void FinishCommand() {
    EndTyping();
    int held = LogHoldOpen(1);
    bool edit = CommandState.CurrentCommand == COMMAND_EDIT_MODE;
    if (!edit) CommandState.CurrentCommand = COMMAND_QUERY_MODE;
    SetEditMode(edit);
    RepaintChanged(false);
    LogEndAction();
    LogHoldOpen(held);
}

bool CommandIsBuilt(uint32_t id) {
    const Command *command = FindCommand(id);
    return command && command->allowed != Never;
}

bool CommandIsAllowed(uint32_t id) {
    const Command *command = FindCommand(id);
    return command && command->allowed();
}

void UpdateCommands() {
    for (const Command &command : commandTable) EnableCommand(command.id, command.allowed());
    for (uint16_t mode : {COMMAND_QUERY_MODE, COMMAND_EDIT_MODE}) CheckCommand(mode, ModeInForce() == mode);
    CheckCommand(COMMAND_KEYS_TO_WAVES, Settings.KeysToWaves);
}
