// Long random sessions on random documents: after every action the document is sound, undoing all of them
// gives back what there was, redoing them what there came to be, and a file holds it.
//
// KELVANE_EDIT_SEEDS=FIRST:COUNT plays other sessions than the usual ones.
#include "config/settings.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "headless/edit_script.h"
#include "headless/headless.h"
#include "headless/surface_cairo.h"
#include "shell/mouse_gesture.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/editing/random_script.h"
#include "unit/support/fresh_store.h"
#include "unit/support/random_document.h"
#include "unit/support/saved_document.h"
#include "unit/support/sound_store.h"
#include "wdl/compiler.h"
#include "wdl/error_listing.h"
#include "wdl/writer.h"
#include <cstdio>
#include <cstdlib>

namespace {

constexpr uint32_t ACTIONS_PER_SESSION = 250;

std::string RowText() {
    std::string text;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        text += std::to_string(WaveRows[row].PatternId) + " ";
    }
    return text;
}

// All that undo and redo bring back.
std::string State() {
    return StoreText() + RowText();
}

// The items of a statement: the pattern's own and those of unnamed patterns below.
void ForgetForcedFormats(uint16_t id) {
    Pattern *pattern = PatternFromId(id);
    for (uint32_t i = 0; i < pattern->itemCount; i++) {
        if (!pattern->item(i).isReference()) continue;
        pattern->item(i).word0 &= ~(7u << 1);
        uint16_t target = pattern->item(i).patternId();
        if (PatternFromId(target)->nameLength == 0) ForgetForcedFormats(target);
    }
}

// In a node with a format none may be forced.
void ForgetWhatNoFileTells() {
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        if (PatternFromId(id)->format() != SignalFormat::None) ForgetForcedFormats(static_cast<uint16_t>(id));
    }
}

class RandomEditing : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        InitHeadlessSurface();
        AddRandomStateTables();
        WriteErrorListing = false;
    }
    void TearDown() override {
        LogDeleteFile();
        WriteErrorListing = true;
        SyntaxErrorHook = nullptr;
        FreshStore::TearDown();
    }

    // A document with some of its patterns in rows, ready for the first action.
    void open(uint32_t seed) {
        EditLog.Recording = 0;
        BuildRandomDocument(seed);
        Random choice(seed);
        for (uint32_t id = 1; id <= HighestPatternId; id++) {
            if (WaveView.RowCount < 12 && PatternInUse(id) && !choice.once(3)) {
                ShowWaveByName(PatternFromId(id)->name());
            }
        }
        ValidateDurations();
        ExtendSpan(Settings.EndTime);
        LogInit(LOG_SUFFIX);
        BeginEditScript();
        begun = State();
        history.clear();
    }

    // Plays one line; false if something is wrong then.
    bool play(const std::string &line) {
        history.push_back(line);
        before = State();
        selected = SelectionText();
        ScriptOutcome outcome = PlayScriptLine(line, {[](const std::string &) {}, [] {}});
        EXPECT_NE(outcome, ScriptOutcome::NotUnderstood) << line;
        // In the midst of a gesture and of a question nothing need hold.
        if (MouseGesture.captured) return !HasFailure();
        std::string fault = DocumentFault();
        EXPECT_EQ(fault, "") << told() << "with " << selected << " in\n" << before << "to\n" << State();
        return !HasFailure();
    }

    bool session(uint32_t seed, uint32_t actions) {
        Random random(seed ^ 0x5EED);
        for (uint32_t i = 0; i < actions; i++) {
            for (const std::string &line : RandomAction(random)) {
                if (!play(line)) return false;
            }
        }
        return play("query") && play("edit");
    }

    // All the way back and forth again.
    void undoAndRedo() {
        std::string last = State();
        // What an undo at the end has left to be redone lies behind it.
        int32_t end = EditLog.rPtr;
        while (EditLog.rPtr > 0) {
            int32_t position = EditLog.rPtr;
            ASSERT_TRUE(play("undo"));
            ASSERT_LT(EditLog.rPtr, position) << "undo stands still" << told();
        }
        ASSERT_EQ(State(), begun) << told();
        while (EditLog.rPtr < end) {
            int32_t position = EditLog.rPtr;
            ASSERT_TRUE(play("redo"));
            ASSERT_GT(EditLog.rPtr, position) << "redo stands still" << told();
        }
        ASSERT_EQ(State(), last) << told();
    }

    // Saves the document and loads it.
    void saveAndLoad() {
        ForgetWhatNoFileTells();
        SavedDocument saved = WhatIsSaved();
        std::string text;
        WriteWdlText(
            [](const char *piece, int length, void *context) {
                static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
            },
            &text);
        TearDown();
        SetUp();
        EditLog.Recording = 0;
        TextReader reader(text);
        SyntaxErrorHook = [](int line, int column, const char *message) {
            ADD_FAILURE() << line << ":" << column << ": " << message;
        };
        ASSERT_EQ(CompileWdl(&reader, "document.wdl"), 1) << text << told();
        if (saved.leftOut == 0) {
            ASSERT_EQ(DifferenceFrom(saved), "") << text << told();
        }
    }

    // The script up to now, to play it again.
    std::string told() const {
        std::string text = "\nseed " + std::to_string(seed) + "\n";
        for (const std::string &line : history) text += line + "\n";
        return text;
    }

    void run(uint32_t first, uint32_t count) {
        for (seed = first; seed < first + count && !HasFailure(); seed++) {
            open(seed);
            if (!session(seed, ACTIONS_PER_SESSION)) return;
            undoAndRedo();
            if (HasFailure()) return;
            saveAndLoad();
            TearDown();
            SetUp();
        }
    }

    uint32_t seed = 0;
    std::string begun, before, selected;
    std::vector<std::string> history;
};

// Several tests of a few documents each, so that a failure names its own.
class RandomSessions : public RandomEditing, public testing::WithParamInterface<uint32_t> {};

constexpr uint32_t SESSIONS = 40;
TEST_P(RandomSessions, LeaveASoundDocumentThatUndoesRedoesAndSaves) {
    run(GetParam() * SESSIONS, SESSIONS);
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomSessions, testing::Range(1u, 11u));

TEST_F(RandomEditing, PlaysTheSessionsThatAreAskedFor) {
    const char *asked = getenv("KELVANE_EDIT_SEEDS");
    unsigned first = 0, count = 0;
    if (!asked || sscanf(asked, "%u:%u", &first, &count) != 2) GTEST_SKIP();
    run(first, count);
}

} // namespace
