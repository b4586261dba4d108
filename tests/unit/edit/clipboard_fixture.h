// Cuts, copies and pastes in a document with a log of its own.
#pragma once

#include "edit/clipboard.h"
#include "editlog/edit_log.h"
#include "headless/clipboard.h"
#include "shell/commands.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/edit/editing_fixture.h"

class ClipboardFixture : public EditingFixture {
protected:
    using Texts = std::vector<std::string>;
    inline static const Transitions ITEMS = {{1, 10}, {0, 20}, {1, 30}};

    static void cut() { CutCopyDelete(COMMAND_CUT); }
    static void copy() { CutCopyDelete(COMMAND_COPY); }
    static void remove() { CutCopyDelete(COMMAND_DELETE); }
    static int paste() {
        int answer = PasteAtSelection(0);
        LogEndAction();
        return answer;
    }
    static std::string clipFile() { return ReadWholeFile(ClipName); }
    // Makes these bytes the clipboard's file.
    void installClip(const std::string &bytes) const {
        DropClipFile();
        snprintf(ClipName, sizeof ClipName, "%s", scratch.write("clip", bytes).c_str());
        ClipWidth = 1;
    }
    // The records that `record` builds, as the file that would hold them.
    template <typename Builder>
    static std::string recorded(Builder record) {
        EditLogRecord before = EditLog;
        InitEditLog();
        record();
        std::string bytes(EditLog.Buffer, EditLog.Buffer + EditLog.rPtr);
        EditLog = before;
        return bytes;
    }
};

// A level of value 5 and duration 6 in the clipboard, and "A" to paste it into.
class PasteFixture : public ClipboardFixture {
protected:
    void SetUp() override {
        ClipboardFixture::SetUp();
        uint16_t source = MakePattern("SOURCE", {{7, 1}, {5, 6}, {7, 1}});
        select(source, 3, 3);
        copy();
        a = MakePattern("A", ITEMS);
        before = StoreText();
    }
    uint16_t a;
    std::string before;
};
