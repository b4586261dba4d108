// The running editor with many rows, its view read from its memory, and the mouse over its panels.
#pragma once

#include "display/wave_view.h"
#include "shell/command_state.h"
#include "window/editor.h"
#include "window/expected.h"
#include <gtest/gtest.h>
#include <memory>

class ViewDriver : public testing::Test {
protected:
    // Opens NAME.wdl of the directory in a main window of 900 by 480.
    void open(const std::string &name, bool keepEditDialog = false);
    // A document of 40 rows and 400,000 time units.
    void openManyRows();

    // What the program knows of its view and its command now.
    WaveViewRecord view() const;
    CommandStateRecord command() const;
    std::string prompt() const;

    // Wait until it has come true and the program is done with what it is at, so that what is read next
    // belongs to it; the failure tells what the view is instead.
    testing::AssertionResult becomes(const std::function<bool(const WaveViewRecord &)> &wanted) const;
    testing::AssertionResult scaleBecomes(int32_t scale) const;
    testing::AssertionResult leftBecomes(TimeVal time) const;
    testing::AssertionResult cursorBecomes(TimeVal time) const;
    testing::AssertionResult topBecomes(uint32_t row) const;
    testing::AssertionResult commandBecomes(int id) const;
    bool promptIs(const std::string &text) const;
    // The program has answered a message, so that it is not in the middle of another one.
    bool isDone() const;
    // A message box with this line comes, and goes when it is answered.
    void expectError(const std::string &line) const;

    // Places are client pixels of a panel: 1 is the ruler, 2 the names, 3 the waves.
    POINT at(int pane, int x, int y) const;
    void moveTo(int pane, int x, int y) const;
    void press(int pane = 3) const;
    void release(int pane = 3) const;
    void click(int x, int y, int pane = 3) const;
    // In the waves, from left to right or back.
    void drag(int fromX, int toX) const;
    int rowMiddle(int row) const { return row * sizes.rowHeight + sizes.rowHeight / 2; }

    TestDirectory directory;
    std::unique_ptr<Editor> editor;
    Expected sizes = ExpectedSizes();
};

void SendMouse(DWORD flags, int data = 0);
void SendKey(WORD key, DWORD flags);
// A click of the right or the middle button where the mouse is, by the flags of its two events.
void ClickOther(DWORD down, DWORD up);
// Turns the wheel, away from the user above 0, with a key held.
void TurnWheel(int turn, WORD key = 0);
