// Edits of a selection in a document with a log of its own, and the floating dialog open beside it.
#pragma once

#include "edit/selection.h"
#include "headless/edit_dialog.h"
#include "unit/support/fresh_store.h"

class EditingFixture : public FreshStore {
protected:
    void SetUp() override;
    void TearDown() override;

    // The pattern's items: a data item as VALUE:DURATION, a reference as [ID *SCALE #REPEAT].
    static std::string items(uint16_t id);
    // Selects what lies between two times of a row's pattern, and shows it; returns the kind.
    static uint16_t select(uint16_t root, TimeVal t1, TimeVal t2);
    // The same for a click, which may hit an edge.
    static uint16_t click(uint16_t root, TimeVal time);
    // The deepest frame as "ID/ITEM START-END".
    static std::string frame();
    // The number of marks in the log.
    static int actions();
    // Undoes the last action, and tells if the store is as it was at `before`.
    static bool undoGives(const std::string &before);

    ScratchDirectory scratch;
};
