#include "unit/display/display_fixture.h"

#include "display/composition.h"
#include "display/primitives.h"
#include "store/mutators.h"

using RowNamesTest = Display;

namespace {

std::string NameText(uint32_t row) {
    char text[ROW_TEXT_SIZE];
    RowNameText(row, text);
    return text;
}

void SetPinType(uint16_t id, uint32_t pinType) {
    PatternFromId(id)->setPinType(pinType);
}

int32_t FieldEnd() {
    return NameFieldWidth() - WaveView.FontCharWidth / 2;
}

} // namespace

TEST_F(RowNamesTest, ALetterTellsThePinType) {
    uint16_t id = MakeRow("CLK");
    const char *texts[] = {"CLK  T", "CLK  I", "CLK  O", "CLK  B", "CLK  G"};
    for (uint32_t pinType = 0; pinType < 5; pinType++) {
        SetPinType(id, pinType);
        EXPECT_EQ(NameText(0), texts[pinType]);
    }
}

TEST_F(RowNamesTest, APinTypeThatDoesNotExistHasNoLetter) {
    SetPinType(MakeRow("CLK"), 7);
    EXPECT_EQ(NameText(0), "CLK   ");
}

TEST_F(RowNamesTest, ASubPatternHasTheLetterP) {
    AppendRowOf(MakePattern("$SUB", {{0, 5}}));
    EXPECT_EQ(NameText(0), "$SUB  P");
}

TEST_F(RowNamesTest, ACompositeHasNoLetter) {
    uint16_t id = MakeRow("BUS");
    PatternFromId(id)->setKind(PatternKind::Composite);
    WaveRows[0].setIsWave(false);
    EXPECT_EQ(NameText(0), "BUS   ");
}

TEST_F(RowNamesTest, LongNamesAreCutAt252Characters) {
    MakeRow(std::string(300, 'N').c_str());
    EXPECT_EQ(NameText(0), std::string(252, 'N') + "  T");
}

TEST_F(RowNamesTest, ARowOfAFreeIdIsEmpty) {
    AppendRowOf(MakePattern("GONE"));
    DeletePattern(RowPattern(0));
    EXPECT_EQ(RowPattern(0), nullptr);
    EXPECT_EQ(NameText(0), "");
}

TEST_F(RowNamesTest, TheMeasuredTextDoesNotDependOnTheLetter) {
    uint16_t id = MakeRow("CLK");
    char text[ROW_TEXT_SIZE];
    for (uint32_t pinType = 0; pinType < 5; pinType++) {
        SetPinType(id, pinType);
        MeasuredNameText(PatternFromId(id), text);
        EXPECT_STREQ(text, "CLK  P");
    }
}

TEST_F(RowNamesTest, ANameStandsAtTheRightEndOfItsRow) {
    MakeRow("FIRST");
    MakeRow("SECOND");
    MeasureNameWidths();
    ForgetCalls();
    DrawRowName(1);
    int32_t row = WaveView.RowHeight;
    PixelSize size = SurfaceTextSize("SECOND  T");
    EXPECT_EQ(Drawn(),
              (std::vector{Fill(0, 0, row + 2, 100, 2 * row),
                           TextAt(15, "SECOND  T", FieldEnd() - size.width, 3 * row / 2 - size.height / 2)}));
}

TEST_F(RowNamesTest, AHighlightedRowIsHatchedUnderItsText) {
    MakeRow("A");
    WaveRows[0].setHighlighted(true);
    ForgetCalls();
    DrawRowName(0);
    std::vector<std::string> drawn = Drawn();
    ASSERT_EQ(drawn.size(), 3u);
    EXPECT_EQ(drawn[1], Hatch(8, 0, 2, 100, WaveView.RowHeight));
}

TEST_F(RowNamesTest, ColoursFollowTheSettings) {
    MakeRow("A");
    WaveRows[0].setHighlighted(true);
    ColorSettings[HighlightWave] = 4;
    ColorSettings[WaveName] = 9;
    ForgetCalls();
    DrawRowName(0);
    EXPECT_EQ(Drawn()[1], Hatch(4, 0, 2, 100, WaveView.RowHeight));
    EXPECT_EQ(HeadlessSurface.calls.back().colour, 9);
    ColorSettings[HighlightWave] = 8;
    ColorSettings[WaveName] = 15;
}

TEST_F(RowNamesTest, ARowBelowTheListIsOnlyCleared) {
    MakeRow("A");
    DrawRowName(1);
    EXPECT_EQ(Drawn(), (std::vector{Fill(0, 0, WaveView.RowHeight + 2, 100, 2 * WaveView.RowHeight)}));
}

TEST_F(RowNamesTest, RowsOutsideTheWindowAreNotDrawn) {
    for (int i = 0; i < 40; i++) MakeRow(("N" + std::to_string(i)).c_str());
    WaveView.TopRow = 2;
    uint32_t visible = VisibleRows();
    for (auto [row, drawn] : {std::pair(1u, false), {2u, true}, {2 + visible, true}, {3 + visible, false}}) {
        ForgetCalls();
        DrawRowName(row);
        EXPECT_EQ(!Drawn().empty(), drawn) << row;
    }
}

TEST_F(RowNamesTest, LongNamesShowTheirEndsUntilTheyAreScrolled) {
    MakeRow("A_NAME_MUCH_LONGER_THAN_THE_COLUMN");
    MeasureNameWidths();
    ForgetCalls();
    DrawRowName(0);
    int32_t end = 100 - WaveView.FontCharWidth / 2;
    int32_t width = SurfaceTextSize("A_NAME_MUCH_LONGER_THAN_THE_COLUMN  T").width;
    EXPECT_EQ(HeadlessSurface.calls.back().points[0].x, end - width);
    WaveView.NameScroll = 30;
    DrawRowName(0);
    EXPECT_EQ(HeadlessSurface.calls.back().points[0].x, end - width + 30);
}

TEST_F(RowNamesTest, TheClearedFieldStaysAtItsPlaceHoweverNamesAreScrolled) {
    MakeRow("A_NAME_MUCH_LONGER_THAN_THE_COLUMN");
    MeasureNameWidths();
    WaveView.NameScroll = 30;
    ForgetCalls();
    DrawRowName(0);
    EXPECT_EQ(Drawn()[0], Fill(0, 0, 2, 100, WaveView.RowHeight));
}
