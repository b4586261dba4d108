// The running editor in Edit mode, with the floating dialog beside the waves.
#pragma once

#include "edit/edit_dialog.h"
#include "edit/selection.h"
#include "window/view_driver.h"

class EditDriver : public ViewDriver {
protected:
    // Opens a document of these statements, a row for each name, without delays, 4 time units to the pixel or
    // less. The dialog is moved below the rows.
    void openRows(const std::string &statements, const std::vector<std::string> &names);

    EditSelectionRecord selection() const;
    EditDialogRecord dialogState() const;
    // Waits until the selection is of this kind and the program is done; tells what it is instead.
    testing::AssertionResult kindBecomes(uint16_t kind) const;
    testing::AssertionResult fieldBecomes(int id, const std::string &text) const;
    testing::AssertionResult titleBecomes(const std::string &text) const;

    // Places of the waves by time.
    int xOf(TimeVal time) const;
    void clickAt(int row, TimeVal time) const;
    void dragOver(int row, TimeVal from, TimeVal to) const;

    // Types as a user does: puts the mouse into the field, replaces its text.
    void typeInto(int id, const std::string &text) const;
    void typeText(const std::string &text) const;
    std::vector<std::string> states() const;
    bool isEnabled(int id) const;
    // Saves by the command, and gives the statement of a node as the file has it, without blanks.
    std::string saved(const std::string &node) const;

    Dialog edit;
};
