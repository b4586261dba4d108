// What is typed into the fields of the floating dialog.
#pragma once

#include "config/settings.h"
#include "edit/edit_dialog.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"

class FieldFixture : public EditingFixture {
protected:
    static bool enter(uint16_t id, const std::string &text) { return HeadlessTypeField(id, text, true); }
    static bool leave(uint16_t id, const std::string &text) { return HeadlessTypeField(id, text, false); }
    static std::string text(uint16_t id) { return HeadlessEditDialog.texts[id]; }
    // "A" with a reference to an unnamed pattern in its middle, which is scaled by 2 and repeated 3 times:
    // 0 to 10, 10 to 52 (one repetition takes 14), 52 to 60.
    void nested() {
        inner = MakePattern("", {{1, 3}, {0, 4}});
        a = MakePattern("A", {{1, 10}});
        AddReference(a, {.id = inner, .scale = 2, .repeat = 3});
        AddTransition(a, 1, 8);
        before = StoreText();
    }
    void bit() {
        a = MakePattern("A", {{1, 10}, {0, 20}, {1, 30}});
        before = StoreText();
    }
    void bus() {
        a = MakePattern("A[7:0]", {{1, 10}, {2, 20}, {3, 30}});
        before = StoreText();
    }
    uint16_t a = 0, inner = 0;
    std::string before;
};
