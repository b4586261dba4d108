#include "unit/edit/gesture_fixture.h"

#include "display/rows.h"
#include "display/viewport.h"
#include "shell/commands.h"
#include "store/pattern_store.h"
#include "store/queries.h"

namespace {

int ActionsBefore;

// The pixel line in the middle of a row.
int32_t Middle(uint32_t row) {
    return static_cast<int32_t>(row) * WaveView.RowHeight + WaveView.RowHeight / 2;
}

} // namespace

void EditGestures::SetUp() {
    EditingFixture::SetUp();
    WaveView.WavePaneWidth = 1000;
    WaveView.WavePaneHeight = 600;
    WaveView.RowHeight = 20;
    WaveView.WaveHeight = 12;
    WaveView.NameColumnWidth = 100;
    WaveView.SpanEnd = 100000;
    WaveView.TickMinor = 10;
    ActionsBefore = 0;
    mode(COMMAND_EDIT_MODE);
}

void EditGestures::mode(int command) {
    DispatchCommand(command);
}

int EditGestures::edits() {
    return actions() - ActionsBefore;
}

uint16_t EditGestures::show(uint16_t id) {
    PatternFromId(id)->setHasProperties(true);
    ValidateDurations();
    ShowWaveByName(PatternFromId(id)->name());
    ScrollRowsTo(0, false);
    mode(CommandState.CurrentCommand);
    ActionsBefore = actions();
    return id;
}

uint16_t EditGestures::threeLevels(const char *name) {
    return show(MakePattern(name, {{0, 100}, {1, 100}, {0, 100}}));
}

uint16_t EditGestures::part() {
    return MakePattern("$P", {{0, 10}, {1, 30}});
}

uint16_t EditGestures::around(const Use &use) {
    uint16_t id = MakePattern("A", {{0, 100}});
    AddReference(id, use);
    AddTransition(id, 1, 100);
    return show(id);
}

void EditGestures::fiveRows() {
    for (const char *name : {"A", "B", "C", "D", "E"}) show(MakePattern(name, {{0, 100}, {1, 100}}));
}

void EditGestures::press(int32_t x, uint32_t row, MouseKeys keys) {
    LeftPressed(Pane::Wave, x, Middle(row), keys);
}

void EditGestures::move(int32_t x, uint32_t row) {
    MouseMoved(Pane::Wave, x, Middle(row));
}

void EditGestures::release(int32_t x, uint32_t row) {
    LeftReleased(Pane::Wave, x, Middle(row));
}

void EditGestures::clickAt(int32_t x, uint32_t row, MouseKeys keys) {
    press(x, row, keys);
    release(x, row);
}

void EditGestures::drag(int32_t from, int32_t to, MouseKeys keys, uint32_t row) {
    press(from, row, keys);
    move((from + to) / 2, row);
    move(to, row);
    release(to, row);
}

void EditGestures::pressName(uint32_t row, MouseKeys keys) {
    LeftPressed(Pane::Name, 5, Middle(row), keys);
}

void EditGestures::moveName(uint32_t row) {
    MouseMoved(Pane::Name, 5, Middle(row));
}

void EditGestures::releaseName(uint32_t row) {
    LeftReleased(Pane::Name, 5, Middle(row));
}

std::string EditGestures::rows() {
    std::string names;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        names += RowPattern(row)->name();
        if (WaveRows[row].highlighted()) names += "*";
    }
    return names;
}

std::string EditGestures::state() {
    std::string text =
        std::to_string(static_cast<int>(GestureState)) + " kind " + std::to_string(EditSelection.SelKind);
    if (WaveView.SelectActive)
        text += " " + std::to_string(WaveView.SelectStart) + "-" + std::to_string(WaveView.SelectEnd);
    return text + " cursor " + std::to_string(WaveView.CursorTime);
}
