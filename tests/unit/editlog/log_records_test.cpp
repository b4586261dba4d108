#include "editlog/log_records.h"
#include "editlog/record_reader.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "unit/editlog/log_fixture.h"
#include <cstring>

namespace {

std::string Half(uint32_t value) {
    return {static_cast<char>(value), static_cast<char>(value >> 8)};
}

std::string Byte(uint32_t value) {
    return std::string(1, static_cast<char>(value));
}

class LogRecordsTest : public LogFixture {
protected:
    // The payload's bytes as far as fields go, and the entry's length.
    void expectRecord(size_t size, const std::string &fields) {
        auto length = static_cast<int32_t>((size + 11) & ~size_t{3});
        EXPECT_EQ(EditLog.rPtr, length);
        std::string bytes(EditLog.Buffer + 4, EditLog.Buffer + 4 + fields.size());
        EXPECT_EQ(bytes, fields);
        EXPECT_EQ(LogWordAt(EditLog.Buffer), static_cast<uint32_t>(length));
        EXPECT_EQ(LogWordAt(EditLog.Buffer + length - 4), static_cast<uint32_t>(length));
    }
    // What the reader makes of the only record.
    LogRecord read(size_t size) {
        LogRecord record;
        EXPECT_TRUE(ReadRecord({EditLog.Buffer + 4, size}, record));
        return record;
    }
};

TEST_F(LogRecordsTest, Delay) {
    LogDelay(0x1234, 0x01020304, 0xFFFFFFFE);
    expectRecord(16, Half(1) + Half(0x1234) + Word(0x01020304) + Word(0xFFFFFFFE));
    LogRecord record = read(12);
    EXPECT_EQ(record.kind, RecDelay);
    EXPECT_EQ(record.pattern, 0x1234);
    EXPECT_EQ(record.oldValue, 0x01020304U);
    EXPECT_EQ(record.newValue, 0xFFFFFFFEU);
}

TEST_F(LogRecordsTest, ItemValueAndDuration) {
    LogItemValue(7, 0x0302, 5, 6);
    expectRecord(16, Half(2) + Half(7) + Word(5) + Word(6) + Half(0x0302));
    EXPECT_EQ(read(14).item, 0x0302);
    InitEditLog();
    LogItemDuration(7, 9, 0x7FFFFFFF, 6);
    expectRecord(16, Half(3) + Half(7) + Word(0x7FFFFFFF) + Word(6) + Half(9));
    EXPECT_EQ(read(14).oldValue, 0x7FFFFFFFU);
}

TEST_F(LogRecordsTest, ItemRepeatScaleAndFormat) {
    LogItemRepeat(7, 3, 1, 65535);
    expectRecord(10, Half(4) + Half(7) + Half(1) + Half(65535) + Half(3));
    EXPECT_EQ(read(10).newValue, 65535U);
    InitEditLog();
    LogItemScale(7, 3, 2, 9);
    expectRecord(10, Half(5) + Half(7) + Half(2) + Half(9) + Half(3));
    EXPECT_EQ(read(10).item, 3);
    InitEditLog();
    LogItemFormat(7, 3, 2, 4);
    expectRecord(8, Half(6) + Half(7) + Byte(2) + Byte(4) + Half(3));
    EXPECT_EQ(read(8).oldValue, 2U);
    EXPECT_EQ(read(8).newValue, 4U);
    EXPECT_EQ(read(8).item, 3);
}

TEST_F(LogRecordsTest, PatternParams) {
    LogPatternParams(7, {10, 50, 1, 2, 3, 4}, {20, 60, 5, 6, 7, 8});
    expectRecord(24, Half(7) + Half(7) + Word(10) + Word(20) + Half(50) + Half(60) + "\1\5\2\6\3\7\4\10");
    LogRecord record = read(24);
    EXPECT_EQ(record.oldParams.period, 10U);
    EXPECT_EQ(record.newParams.duty, 60);
    EXPECT_EQ(record.oldParams.stateTable, 1);
    EXPECT_EQ(record.newParams.clock, 6);
    EXPECT_EQ(record.oldParams.format, 3);
    EXPECT_EQ(record.newParams.pinType, 8);
}

TEST_F(LogRecordsTest, Rename) {
    LogRename(7, "old", "newer");
    expectRecord(14, Half(8) + Half(7) + std::string("old\0newer\0", 10));
    EXPECT_EQ(read(14).oldName, "old");
    EXPECT_EQ(read(14).newName, "newer");
}

TEST_F(LogRecordsTest, NamesAreTakenUpToTheirNul) {
    LogRename(7, std::string_view("a\0x", 3), std::string_view("b\0yz", 4));
    expectRecord(8, Half(8) + Half(7) + std::string("a\0b\0", 4));
}

TEST_F(LogRecordsTest, BytesThatNoFieldTakesStayAsTheyAre) {
    memset(EditLog.Buffer, 0xEE, sizeof EditLog.Buffer);
    LogDelay(7, 1, 2);
    expectRecord(16, Half(1) + Half(7) + Word(1) + Word(2) + std::string(4, '\xEE'));
}

TEST_F(LogRecordsTest, TimingIsReadInFullWords) {
    std::string fields =
        Half(9) + Half(6) + Word(0x10001) + Word(0x20002) + Word(0x30003) + Word(0x40004) + Half(9);
    LogRecord record;
    ASSERT_TRUE(ReadRecord({reinterpret_cast<const uint8_t *>(fields.data()), fields.size()}, record));
    EXPECT_EQ(record.oldMultiplier, 0x10001U);
    EXPECT_EQ(record.newMultiplier, 0x20002U);
    EXPECT_EQ(record.oldEnd, 0x30003U);
    EXPECT_EQ(record.newEnd, 0x40004U);
}

TEST_F(LogRecordsTest, RenameOfAnUnnamedPattern) {
    LogRename(7, "", "n");
    expectRecord(7, Half(8) + Half(7) + std::string("\0n\0", 3));
}

TEST_F(LogRecordsTest, TimingKeepsLowHalvesOnly) {
    LogTiming(6, 9, 1, 2, static_cast<uint16_t>(100000), 3);
    expectRecord(24, Half(9) + Half(6) + Word(1) + Word(2) + Word(34464) + Word(3) + Half(9));
    LogRecord record = read(22);
    EXPECT_EQ(record.pattern, 6);
    EXPECT_EQ(record.newUnit, 9);
    EXPECT_EQ(record.oldMultiplier, 1U);
    EXPECT_EQ(record.oldEnd, 34464U);
    EXPECT_EQ(record.newEnd, 3U);
}

TEST_F(LogRecordsTest, Transitions) {
    LogTransition(0, 7, 2, 0x80000001, 30);
    expectRecord(16, Half(10) + Half(7) + Word(0x80000001) + Word(30) + Half(2));
    InitEditLog();
    LogTransition(1, 7, 2, 5, 30);
    expectRecord(16, Half(11) + Half(7) + Word(5) + Word(30) + Half(2));
    EXPECT_EQ(read(14).duration, 30U);
    EXPECT_EQ(read(14).value, 5U);
}

TEST_F(LogRecordsTest, References) {
    LogReference(0, 7, 2, 4, 9, 10, 65535, 31, 30, 5);
    expectRecord(16, Half(14) + Half(7) + Half(9) + Half(10) + Half(65535) + Half(4) + "\37\36\5\2");
    InitEditLog();
    LogReference(1, 7, 1, 4, 9, 10, 11, 1, 2, 3);
    expectRecord(16, Half(15) + Half(7) + Half(9) + Half(10) + Half(11) + Half(4) + "\1\2\3\1");
    LogRecord record = read(16);
    EXPECT_EQ(record.patternId, 9);
    EXPECT_EQ(record.scale, 10);
    EXPECT_EQ(record.repeat, 11);
    EXPECT_EQ(record.item, 4);
    EXPECT_EQ(record.sliceWidth, 1);
    EXPECT_EQ(record.sliceOffset, 2);
    EXPECT_EQ(record.forcedFormat, 3);
    EXPECT_EQ(record.ownerKind, 1);
}

TEST_F(LogRecordsTest, Patterns) {
    LogPattern(0, 7, 16, "abc");
    expectRecord(11, Half(16) + Half(7) + Half(16) + std::string("abc\0", 4));
    InitEditLog();
    LogPattern(1, 7, 16, "");
    expectRecord(8, Half(17) + Half(7) + Half(16) + std::string("\0", 1));
    EXPECT_EQ(read(7).width, 16);
    EXPECT_EQ(read(7).name, "");
    InitEditLog();
    LogPattern(1, 7, 16, "a");
    expectRecord(9, Half(17) + Half(7) + Half(16) + std::string("a\0", 2));
}

TEST_F(LogRecordsTest, Rows) {
    LogRow(0, 7, 255);
    expectRecord(6, Half(18) + Half(7) + Half(255));
    InitEditLog();
    LogRow(1, 7, 3);
    expectRecord(6, Half(19) + Half(7) + Half(3));
    EXPECT_EQ(read(6).item, 3);
}

TEST_F(LogRecordsTest, NothingIsBuiltWhileNothingIsRecorded) {
    EditLog.Recording = 0;
    LogDelay(1, 2, 3);
    LogItemValue(1, 2, 3, 4);
    LogItemRepeat(1, 2, 3, 4);
    LogItemFormat(1, 2, 3, 4);
    LogPatternParams(1, {}, {});
    LogRename(1, "a", "b");
    LogTiming(1, 2, 3, 4, 5, 6);
    LogTransition(1, 2, 3, 4, 5);
    LogReference(1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
    LogPattern(1, 2, 3, "x");
    LogRow(1, 2, 3);
    EXPECT_EQ(EditLog.rPtr, 0);
}

// The lengths at which each kind has all its fields; one byte less is not enough.
TEST_F(LogRecordsTest, TheReaderRefusesWhatIsTooShortOrUnknown) {
    const std::pair<uint16_t, size_t> kinds[] = {{1, 12}, {2, 14}, {3, 14},  {4, 10},  {5, 10},  {6, 8},
                                                 {7, 24}, {9, 22}, {10, 14}, {11, 14}, {14, 16}, {15, 16},
                                                 {18, 6}, {19, 6}, {8, 6},   {16, 7},  {17, 7}};
    std::vector<uint8_t> bytes(64);
    LogRecord record;
    for (auto [kind, size] : kinds) {
        bytes[0] = static_cast<uint8_t>(kind);
        EXPECT_TRUE(ReadRecord({bytes.data(), size}, record)) << kind;
        EXPECT_FALSE(ReadRecord({bytes.data(), size - 1}, record)) << kind;
        EXPECT_FALSE(ReadRecord({bytes.data(), 0}, record)) << kind;
    }
    for (uint16_t kind : {0, 12, 13, 20, 21, 255}) {
        bytes[0] = static_cast<uint8_t>(kind);
        EXPECT_FALSE(ReadRecord(bytes, record)) << kind;
    }
}

TEST_F(LogRecordsTest, ANameWithoutItsNulIsRefused) {
    LogRecord record;
    std::string bytes = Half(17) + Half(7) + Half(1) + "abc";
    auto *data = reinterpret_cast<const uint8_t *>(bytes.data());
    EXPECT_FALSE(ReadRecord({data, bytes.size()}, record));
    EXPECT_TRUE(ReadRecord({data, bytes.size() + 1}, record));
    std::string rename = Half(8) + Half(7) + std::string("a\0b", 3);
    data = reinterpret_cast<const uint8_t *>(rename.data());
    EXPECT_FALSE(ReadRecord({data, rename.size()}, record));
    EXPECT_TRUE(ReadRecord({data, rename.size() + 1}, record));
}

// --- through the mutators ---------------------------------------------------------------------------

TEST_F(LogRecordsTest, AChangeToTheSameLogsNothing) {
    uint16_t id = MakePattern("a", {{1, 10}, {0, 20}});
    InitEditLog();
    Pattern *pattern = PatternFromId(id);
    SetItemValue(pattern, 0, 1);
    SetItemDuration(pattern, 1, 20);
    SetPatternDelay(pattern, 0);
    EXPECT_EQ(EditLog.rPtr, 0);
}

TEST_F(LogRecordsTest, ARenameToLessRoomReadsOnIntoTheItemsAndEndsWithThem) {
    uint16_t id = MakePattern("longer", {{0x41414141, 0x20A0A0A0}, {0x43434343, 0x21A1A1A1}});
    InitEditLog();
    RenamePattern(PatternFromId(id), "b");
    // The name had 8 bytes and has 4 now; the items begin 4 bytes earlier.
    EXPECT_EQ(read(static_cast<size_t>(EditLog.rPtr) - 8).oldName, "long@AAAAAAABCCCCCCCCCCC");
}

} // namespace
