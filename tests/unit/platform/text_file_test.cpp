#include "platform/text_file.h"
#include "unit/support/fresh_store.h"
#include <random>

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(TextReader &reader, int size) {
    Lines lines;
    std::vector<char> buffer(static_cast<size_t>(size));
    for (int count; (count = reader.readLine(buffer.data(), size)) != -1;) {
        EXPECT_EQ(buffer[static_cast<size_t>(count)], '\0');
        lines.emplace_back(buffer.data(), static_cast<size_t>(count));
    }
    return lines;
}

Lines LinesOf(std::string_view text, int size = 100) {
    TextReader reader(text);
    return LinesOf(reader, size);
}

// The same by the rule alone: drop each carriage return before a line feed, then cut.
Lines ExpectedLines(const std::string &text, int size) {
    Lines lines;
    std::string line;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        line += text[i];
        if (text[i] != '\n' && line.size() + 1 < static_cast<size_t>(size)) continue;
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty()) lines.push_back(line);
    return lines;
}

} // namespace

TEST(TextReader, EndsALineAtItsLineFeed) {
    EXPECT_EQ(LinesOf("a\nbc\n\n"), Lines({"a\n", "bc\n", "\n"}));
}

TEST(TextReader, DropsACarriageReturnBeforeALineFeedOnly) {
    EXPECT_EQ(LinesOf("a\r\nb\rc\r\r\nd\r"), Lines({"a\n", "b\rc\r\n", "d\r"}));
}

TEST(TextReader, GivesALastLineWithoutLineFeed) {
    EXPECT_EQ(LinesOf("a\nb"), Lines({"a\n", "b"}));
}

TEST(TextReader, FindsNothingInAnEmptyText) {
    EXPECT_EQ(LinesOf(""), Lines());
}

TEST(TextReader, CutsALineThatIsLongerThanTheBuffer) {
    EXPECT_EQ(LinesOf("abcdef\n", 4), Lines({"abc", "def", "\n"}));
}

TEST(TextReader, FillsTheBufferWithALineThatJustFits) {
    EXPECT_EQ(LinesOf("abc\r\nd\n", 5), Lines({"abc\n", "d\n"}));
    EXPECT_EQ(LinesOf("abc\r\nd\n", 4), Lines({"abc", "\n", "d\n"}));
    EXPECT_EQ(LinesOf("abc\rd\n", 5), Lines({"abc\r", "d\n"}));
}

TEST(TextReader, CountsNulsAndBytesAbove127AsCharacters) {
    using namespace std::string_literals;
    EXPECT_EQ(LinesOf("a\0b\x1a\xff\n"s), Lines({"a\0b\x1a\xff\n"s}));
}

TEST(TextReader, GivesNothingWithoutRoomForACharacter) {
    TextReader reader(std::string_view("abc"));
    char buffer[1];
    EXPECT_EQ(reader.readLine(buffer, 1), -1);
}

TEST(TextReader, DoesNotOpenWhatIsMissingOrADirectory) {
    ScratchDirectory scratch;
    EXPECT_FALSE(TextReader(scratch.file("none").c_str()).isOpen());
    EXPECT_FALSE(TextReader(scratch.path.c_str()).isOpen());
    TextReader reader(scratch.file("none").c_str());
    EXPECT_EQ(LinesOf(reader, 10), Lines());
}

TEST(TextReader, ReadsAFileAsItReadsATextAcrossAllBlocks) {
    ScratchDirectory scratch;
    std::mt19937 random(1);
    for (int round = 0; round < 40; ++round) {
        std::string text;
        size_t length = 60000 + random() % 80000;
        // Long lines and short ones, with line ends of both kinds in all places.
        unsigned rarity = round % 2 ? 4 : 3000;
        while (text.size() < length) text += random() % rarity ? 'x' : "\r\n\r"[random() % 3];
        int size = round % 3 ? 2 + static_cast<int>(random() % 200) : 70000;
        Lines expected = ExpectedLines(text, size);
        TextReader reader(scratch.write("text", text).c_str());
        ASSERT_TRUE(reader.isOpen());
        ASSERT_EQ(LinesOf(reader, size), expected) << "round " << round;
        ASSERT_EQ(LinesOf(text, size), expected) << "round " << round;
    }
}

TEST(TextReader, TakesACarriageReturnAndLineFeedOnTwoBlocksAsOneLineEnd) {
    ScratchDirectory scratch;
    std::string text = std::string(65535, 'x') + "\r\ny";
    TextReader reader(scratch.write("text", text).c_str());
    EXPECT_EQ(LinesOf(reader, 70000), Lines({std::string(65535, 'x') + "\n", "y"}));
    TextReader full(scratch.file("text").c_str());
    EXPECT_EQ(LinesOf(full, 65537), Lines({std::string(65535, 'x') + "\n", "y"}));
}

TEST(TextWriter, WritesLinesWithThePlatformsLineEnd) {
    ScratchDirectory scratch;
    TextWriter writer(scratch.file("text").c_str());
    writer.write("a\n");
    writer.write("b");
    EXPECT_TRUE(writer.close());
    EXPECT_EQ(ReadWholeFile(scratch.file("text")), "a" + std::string(TextLineEnd) + "b");
}

TEST(TextWriter, WritesMoreThanItsBlockInOnePiece) {
    ScratchDirectory scratch;
    std::string text(200001, 'x');
    TextWriter writer(scratch.file("text").c_str());
    writer.write("first");
    writer.write(text);
    EXPECT_TRUE(writer.close());
    EXPECT_EQ(ReadWholeFile(scratch.file("text")), "first" + text);
}

TEST(TextWriter, WritesWhatIsBufferedWhenItGoes) {
    ScratchDirectory scratch;
    TextWriter(scratch.file("text").c_str()).write("kept");
    EXPECT_EQ(ReadWholeFile(scratch.file("text")), "kept");
}

TEST(TextWriter, EmptiesTheFileThatWasThere) {
    ScratchDirectory scratch;
    EXPECT_TRUE(TextWriter(scratch.write("text", "old").c_str()).close());
    EXPECT_EQ(ReadWholeFile(scratch.file("text")), "");
}

TEST(TextWriter, TellsWhenTheDiskIsFull) {
    TextWriter writer("/dev/full");
    ASSERT_TRUE(writer.isOpen());
    writer.write("text");
    EXPECT_FALSE(writer.close());
}

TEST(TextWriter, DoesNothingWithoutAFile) {
    ScratchDirectory scratch;
    TextWriter writer(scratch.path.c_str());
    EXPECT_FALSE(writer.isOpen());
    writer.write("text");
    EXPECT_FALSE(writer.close());
}
