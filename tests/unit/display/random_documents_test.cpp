// Whatever the store holds and wherever the view stands, a row is drawn without harm.
#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/renderer.h"
#include "store/state_table.h"
#include <random>

namespace {

class RandomDocuments : public Display {
protected:
    uint32_t below(uint32_t n) { return std::uniform_int_distribution<uint32_t>(0, n - 1)(random); }
    uint32_t length() { return below(4) ? below(300) : below(2) ? random() & 0x7FFFFFFF : 0; }

    void setAnyFields(Pattern *pattern) {
        pattern->flags = random() & 0x7FFFF & ~3u;
        pattern->period = static_cast<int32_t>(below(3) ? 1 + below(20) : random());
        pattern->duty = static_cast<uint16_t>(below(120));
        pattern->delay = length();
        pattern->width = static_cast<uint16_t>(below(5) ? below(40) : random());
    }

    // A pattern that refers to patterns with lower ids only.
    void makeAnyPattern() {
        uint16_t id =
            MakePattern(below(3) ? ("P" + std::to_string(HighestPatternId)).c_str() : "", {}, 1 + below(32));
        bool composite = id > 2 && below(4) == 0;
        uint32_t items = below(7);
        for (uint32_t i = 0; i < items; i++) {
            if (!composite && (id == 1 || below(3))) {
                AddTransition(id, below(2) ? below(6) : random(), length());
                continue;
            }
            auto repeat = static_cast<uint16_t>(below(6) ? 1 + below(50) : REPEAT_FOREVER);
            uint32_t target = 1 + below(id - 1u);
            AddReference(id,
                         {static_cast<uint16_t>(target), below(8) ? 1 + below(4) : below(65536), repeat,
                          below(32), below(32), below(8)},
                         composite ? PatternKind::Composite : PatternKind::Plain);
        }
        setAnyFields(PatternFromId(id));
        PatternFromId(id)->setKind(composite ? PatternKind::Composite : PatternKind::Plain);
        AppendRowOf(id);
    }

    void setAnyView() {
        Settings.BusRadix = std::array{2u, 8u, 10u, 16u}[below(4)];
        Settings.ShowPatternNames = below(2);
        Settings.ShowPatternWaveforms = below(2);
        Settings.ShowSyncActivity = below(2);
        Settings.ShowGuidelines = below(2);
        WaveView.SpanEnd = below(2) ? TIME_FOREVER : 1 + length();
        SetPaneSizes(100, static_cast<int32_t>(below(1200)), static_cast<int32_t>(below(700)));
        WaveView.Scale = static_cast<int32_t>(below(31)) - 26;
        WaveView.ViewLeft = below(3) ? std::min(length(), WaveView.SpanEnd) : WaveView.SpanEnd;
    }

    std::mt19937 random{20};
};

} // namespace

TEST_F(RandomDocuments, AreDrawnWithinReachOfThePane) {
    StateTable *table = AllocStateTable(3);
    table->rowCount = 3;
    for (int i = 0; i < 3; i++)
        table->rows()[i] = {static_cast<int8_t>(i + 1), static_cast<uint8_t>(99 * i), 'x', "Name", "N"};
    size_t calls = 0;
    for (int round = 0; round < 150; round++) {
        PatternStoreFree();
        ASSERT_EQ(PatternStoreInit(), 1);
        LoadStateTables();
        WaveView.RowCount = 0;
        for (int i = 0; i < 6; i++) makeAnyPattern();
        for (int view = 0; view < 4; view++) {
            setAnyView();
            ForgetCalls();
            RepaintAll();
            calls += HeadlessSurface.calls.size();
            for (const SurfaceCall &call : HeadlessSurface.calls) {
                for (PixelPoint p : call.points) ASSERT_LE(std::abs(p.x), 4096) << round;
                ASSERT_LE(std::abs(call.rect.left), 4096) << round;
                ASSERT_LE(std::abs(call.rect.right), 4096) << round;
            }
        }
    }
    EXPECT_GT(calls, 100'000u); // there was something to draw
}
