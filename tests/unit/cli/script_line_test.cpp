// Which lines of a script are understood, whether or not they are enabled.
#include "display/wave_view.h"
#include "headless/edit_script.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"

namespace {

class ScriptLineTest : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        MakePattern("w", {{1, 10}});
        ValidateDurations();
        BeginEditScript();
    }
    void TearDown() override {
        EndEditScript();
        FreshStore::TearDown();
    }
    static ScriptOutcome play(const std::string &line) {
        return PlayScriptLine(line, {[](const std::string &) {}, [] {}});
    }
};

TEST_F(ScriptLineTest, AnUnknownWordOrAWrongArgumentIsNotUnderstood) {
    std::string before = StoreText();
    const std::string lines[] = {"bogus",
                                 "Status",
                                 "status 1",
                                 "show",
                                 "show $p w",
                                 "hide",
                                 "press w",
                                 "press w 1 2",
                                 "press w x",
                                 "press w -1",
                                 "press w 4294967296",
                                 "press w 1.5",
                                 "press w +1",
                                 "press w 0x1",
                                 "select w 1",
                                 "select w 1 2 3",
                                 "move",
                                 "release",
                                 "move a",
                                 "goto",
                                 "goto 1 2",
                                 "scale",
                                 "scale 5",
                                 "scale -27",
                                 "scale --1",
                                 "scale +1",
                                 "scale -",
                                 "scale 1x",
                                 "scale 1 2",
                                 "left",
                                 "left -1",
                                 "state",
                                 "state x",
                                 "state 1 2",
                                 "left 1 2",
                                 "hide w v",
                                 "remove w v",
                                 "insert w v",
                                 "state -1",
                                 "forever",
                                 "forever ON",
                                 "forever on off",
                                 "new",
                                 "new a inout",
                                 "new a In",
                                 "new a in out",
                                 "new $q in",
                                 "insert",
                                 "remove",
                                 "undo 2",
                                 "cut w",
                                 "press!",
                                 "state! ",
                                 "duration? 5",
                                 "prompt #",
                                 "dump x",
                                 "query # comment",
                                 "status\r x",
                                 std::string("show a\0b", 8)};
    for (const std::string &line : lines) EXPECT_EQ(play(line), ScriptOutcome::NotUnderstood) << line;
    EXPECT_EQ(StoreText(), before);
}

TEST_F(ScriptLineTest, NumbersAreTakenUpToTheirLimits) {
    for (const char *line :
         {"goto 4294967295", "goto 0", "goto 007", "left 4294967295", "scale -26", "scale 4", "scale -0",
          "scale 00", "scale -026", "new a in", "new $a", "forever off"}) {
        EXPECT_NE(play(line), ScriptOutcome::NotUnderstood) << line;
    }
}

TEST_F(ScriptLineTest, TheViewBeginsInsideTheSpan) {
    EXPECT_EQ(play("left 3"), ScriptOutcome::Done);
    EXPECT_EQ(WaveView.ViewLeft, 3U);
    EXPECT_EQ(play("left 4294967295"), ScriptOutcome::Done);
    EXPECT_EQ(WaveView.ViewLeft, WaveView.SpanEnd);
    EXPECT_NE(WaveView.SpanEnd, TIME_FOREVER);
    EXPECT_EQ(play("scale -26"), ScriptOutcome::Done);
    EXPECT_EQ(WaveView.Scale, -26);
}

} // namespace
