// Clipboard files whose records do not fit.
#include "editlog/log_records.h"
#include "editlog/record_reader.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "store/signal_name.h"
#include "unit/edit/clipboard_fixture.h"

namespace {

class DamagedClip : public PasteFixture {
protected:
    // Pastes the records at the edge at 10.
    template <typename Builder>
    void pasteRecords(Builder record) {
        installClip(recorded(record));
        before = StoreText();
        ASSERT_EQ(click(a, 10), SEL_EDGE);
        paste();
    }
    void expectInvalid() const {
        EXPECT_EQ(Headless.programErrors, Texts{"ApplicationExecuteLog - Invalid Command"});
        EXPECT_EQ(HeapFault(), "");
    }
};

TEST_F(DamagedClip, OnlyDeletionsCount) {
    pasteRecords([this] {
        LogDelay(a, 1, 2);
        LogItemValue(a, 0, 1, 2);
        LogItemDuration(a, 0, 1, 2);
        LogItemRepeat(a, 0, 1, 2);
        LogItemScale(a, 0, 1, 2);
        LogItemFormat(a, 0, 1, 2);
        LogPatternParams(a, {}, {});
        LogRename(a, "A", "B");
        LogTiming(0, 1, 2, 3, 4, 5);
        LogTransition(1, a, 0, 9, 9);
        LogReference(1, a, 0, 0, a, 1, 1, 0, 0, 0);
        LogPattern(1, 99, 1, "");
        LogRow(0, a, 0);
        LogRow(1, a, 0);
    });
    EXPECT_EQ(StoreText(), before);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(DamagedClip, AReferenceToAnUnknownPatternStopsThePaste) {
    pasteRecords([this] {
        LogTransition(0, a, 0, 9, 9);
        LogReference(0, a, 0, 0, 777, 1, 1, 0, 0, 0);
        LogTransition(0, a, 0, 8, 8);
    });
    EXPECT_EQ(items(a), "1:10 8:8 0:20 1:30") << "what came before it stays";
    expectInvalid();
    EXPECT_EQ(actions(), 1);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(DamagedClip, AReferenceToAnUnnamedPatternOfTheDocumentStopsThePaste) {
    uint16_t inner = MakePattern("", {{1, 3}});
    uint16_t b = MakePattern("B");
    AddReference(b, {.id = inner});
    pasteRecords([&] { LogReference(0, a, 0, 0, inner, 1, 1, 0, 0, 0); });
    EXPECT_EQ(StoreText(), before) << "its one owner is another pattern";
    expectInvalid();
}

TEST_F(DamagedClip, AReferenceToAPatternThatIsNotFinishedStopsThePaste) {
    // The lowest free ids are given to what the file makes.
    auto made = static_cast<uint16_t>(HighestPatternId + 1);
    for (const char *name : {"", "$made"}) {
        Headless.programErrors.clear();
        pasteRecords([made, name] {
            LogReference(0, 101, 0, 0, made, 1, 1, 0, 0, 0);
            LogPattern(0, 101, 1, "");
            LogPattern(0, 100, 1, name);
        });
        EXPECT_EQ(Headless.programErrors, Texts{"ApplicationExecuteLog - Invalid Command"});
        EXPECT_EQ(FindReferenceCircle(), 0);
        if (*name == 0) {
            EXPECT_EQ(StoreText(), before);
        }
    }
}

TEST_F(DamagedClip, AReferenceOfAPatternToItselfStopsThePaste) {
    auto made = static_cast<uint16_t>(HighestPatternId + 1);
    pasteRecords([made] {
        LogReference(0, 100, 0, 0, made, 1, 1, 0, 0, 0);
        LogPattern(0, 100, 1, "$made");
    });
    expectInvalid();
}

TEST_F(DamagedClip, APatternThatTheStoreHasNoPlaceForStopsThePaste) {
    while (CreatePattern(0, "", 1)) {}
    Headless.programErrors.clear();
    pasteRecords([] {
        LogTransition(0, 100, 0, 1, 5);
        LogPattern(0, 100, 1, "");
    });
    EXPECT_EQ(items(a), "1:10 0:20 1:30");
    EXPECT_EQ(Headless.programErrors, Texts{}) << "the record is not to blame";
}

TEST_F(DamagedClip, AReferenceThatThePatternHasNoRoomForStopsThePaste) {
    uint16_t full = MakePattern("FULL");
    uint32_t room = (MAX_RECORD_SIZE - PatternFromId(full)->used()) / sizeof(PatternItem);
    for (uint32_t i = 0; i < room; i++) AddTransition(full, i & 1, 10);
    uint16_t sub = MakePattern("$sub", {{1, 3}});
    installClip(recorded([=] { LogReference(0, full, 0, 0, sub, 1, 1, 0, 0, 0); }));
    before = StoreText();
    ASSERT_EQ(click(full, 10), SEL_EDGE);
    paste();
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(Headless.programErrors, Texts{}) << "the record is not to blame";
}

TEST_F(DamagedClip, ANamedPatternThatNothingRefersToStays) {
    pasteRecords([] { LogPattern(0, 100, 1, "$made"); });
    EXPECT_NE(FindPattern("$made"), nullptr);
    EXPECT_TRUE(undoGives(before));
}

TEST_F(DamagedClip, AFinishedPatternWhoseReferenceDoesNotFitIsTakenAway) {
    pasteRecords([this] {
        LogReference(0, a, 9, 0, 100, 1, 1, 0, 0, 0);
        LogTransition(0, 100, 0, 1, 1);
        LogPattern(0, 100, 1, "");
    });
    EXPECT_EQ(StoreText(), before);
    expectInvalid();
}

TEST_F(DamagedClip, ReferencesToNoPatternAtAll) {
    for (uint16_t id : {0, 4000, 65535}) {
        Headless.programErrors.clear();
        pasteRecords([this, id] { LogReference(0, a, 0, 0, id, 1, 1, 0, 0, 0); });
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, AKindOfPatternThatDoesNotExist) {
    pasteRecords([this] { LogReference(0, a, 3, 0, 1, 1, 1, 0, 0, 0); });
    EXPECT_EQ(StoreText(), before);
    expectInvalid();
}

TEST_F(DamagedClip, ARecordKindThatDoesNotExist) {
    std::string bytes = recorded([this] { LogTransition(0, a, 0, 9, 9); });
    for (int kind : {0, 12, 13, 20, 255}) {
        Headless.programErrors.clear();
        bytes[4] = static_cast<char>(kind);
        installClip(bytes);
        click(a, 10);
        paste();
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, TwentyDepthsAreTheLimit) {
    pasteRecords([] {
        for (uint16_t id = 100; id < 120; id++) LogPattern(0, id, 1, "");
    });
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(EditLog.rPtr, 0);
    pasteRecords([] {
        for (uint16_t id = 100; id < 119; id++) LogPattern(0, id, 1, "");
    });
    EXPECT_TRUE(Headless.programErrors.empty());
    EXPECT_EQ(Headless.strips.size(), 1U);
    EXPECT_EQ(StoreText(), before) << "patterns that nothing refers to are taken away";
}

TEST_F(DamagedClip, PatternsThatWereNotFinishedAreTakenAwayWithTheirItems) {
    pasteRecords([] {
        // Backward: a pattern with an item, nested in it one that is finished, and no reference to the first.
        LogReference(0, 100, 0, 1, 101, 1, 1, 0, 0, 0);
        LogTransition(0, 101, 0, 1, 1);
        LogPattern(0, 101, 1, "");
        LogTransition(0, 100, 0, 9, 9);
        LogPattern(0, 100, 1, "");
    });
    EXPECT_EQ(StoreText(), before);
    EXPECT_TRUE(Headless.programErrors.empty());
}

TEST_F(DamagedClip, WidthsThatNoPatternHas) {
    for (uint16_t width : {0, 33, 65535}) {
        Headless.programErrors.clear();
        pasteRecords([width] { LogPattern(0, 100, width, ""); });
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, ANameThatIsTakenOrTooLong) {
    for (const std::string &name : {std::string("a"), std::string(NAME_SIZE, 'n'), std::string(5000, 'n')}) {
        Headless.programErrors.clear();
        // The log's window is not made for such a record; it goes through a buffer of its own.
        pasteRecords([&] { LogPattern(0, 100, 1, name.c_str()); });
        EXPECT_EQ(StoreText(), before);
        expectInvalid();
    }
}

TEST_F(DamagedClip, ANamedPatternIsMadeAndTold) {
    static std::string told;
    PatternListHook = [](const char *name) { told = name; };
    pasteRecords([this] {
        LogReference(0, a, 0, 1, 100, 2, 3, 4, 5, 1);
        LogTransition(0, 100, 0, 1, 5);
        LogPattern(0, 100, 6, "$made[5:0]");
    });
    PatternListHook = nullptr;
    EXPECT_EQ(told, "$made[5:0]");
    const Pattern *made = FindPattern("$made[5:0]");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(items(made->id), "1:5");
    EXPECT_EQ(made->width, 6) << "by its name, unlike an unnamed one";
    EXPECT_EQ(items(a), "1:10 [" + std::to_string(made->id) + " *2 #3] 0:20 1:30");
    EXPECT_EQ(PatternFromId(a)->item(1).sliceWidth(), 4U);
    EXPECT_EQ(PatternFromId(a)->item(1).sliceOffset(), 5U);
    EXPECT_EQ(PatternFromId(a)->item(1).forcedFormat(), 1U);
    EXPECT_TRUE(undoGives(before));
    EXPECT_EQ(FindPattern("$made[5:0]"), nullptr);
}

TEST_F(DamagedClip, AnUnnamedPatternIsNotTold) {
    static int told;
    told = 0;
    PatternListHook = [](const char *) { told++; };
    pasteRecords([this] {
        LogReference(0, a, 0, 1, 100, 1, 1, 0, 0, 0);
        LogTransition(0, 100, 0, 1, 5);
        LogPattern(0, 100, 1, "");
    });
    PatternListHook = nullptr;
    EXPECT_EQ(told, 0);
}

TEST_F(DamagedClip, ANamedPatternOfARefusedPasteIsForgotten) {
    uint16_t user = MakePattern("$user");
    AddReference(user, {.id = a});
    pasteRecords([this, user] {
        LogReference(0, a, 0, 1, user, 1, 1, 0, 0, 0);
        LogReference(0, a, 0, 1, 100, 2, 3, 0, 0, 1);
        LogPattern(0, 100, 1, "$made");
    });
    EXPECT_EQ(Headless.strips.back(), "ERROR: Recursion violation in paste");
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(FindPattern("$made"), nullptr);
    EXPECT_NE(CreatePattern(0, "$made", 1), nullptr);
}

TEST_F(DamagedClip, AnIndexBeyondTheEndIsTheEnd) {
    pasteRecords([this] {
        LogReference(0, a, 0, 1, 100, 1, 1, 0, 0, 0);
        LogTransition(0, 100, 60000, 0, 6);
        LogTransition(0, 100, 3, 1, 5);
        LogPattern(0, 100, 1, "");
    });
    uint16_t made = PatternFromId(a)->item(1).patternId();
    EXPECT_EQ(items(made), "1:5 0:6");
}

TEST_F(DamagedClip, FramesThatAreNoRecordsAreToldAsUnreadable) {
    std::string whole = recorded([this] { LogTransition(0, a, 0, 9, 9); });
    for (size_t length = 1; length < whole.size(); length++) {
        Headless.userErrors.clear();
        installClip(whole.substr(0, length));
        click(a, 10);
        paste();
        EXPECT_EQ(StoreText(), before) << length;
        if (length < 20) continue; // a shorter one may end in a zero that is no length
        EXPECT_EQ(Headless.userErrors, Texts{std::string("Failed to read auxiliary log file ") + ClipName});
    }
}

TEST_F(DamagedClip, APayloadTooShortForItsKind) {
    std::string bytes = recorded([] {
        uint8_t *payload = LogAppend(4);
        payload[0] = RecDeleteTransition;
        payload[1] = payload[2] = payload[3] = 0;
    });
    installClip(bytes);
    click(a, 10);
    paste();
    EXPECT_EQ(StoreText(), before);
    expectInvalid();
}

TEST_F(DamagedClip, AMarkEndsIt) {
    std::string first = recorded([this] { LogTransition(0, a, 0, 9, 9); });
    std::string second = recorded([this] { LogTransition(0, a, 0, 8, 8); });
    installClip(first + "\xFF\xFF\xFF\xFF" + second);
    click(a, 10);
    paste();
    EXPECT_EQ(items(a), "1:10 8:8 0:20 1:30");
}

TEST_F(DamagedClip, RecordsWithoutAPasteDoNotFit) {
    PasteBegin(0, 0);
    LogRecord record = {};
    record.kind = RecDeleteTransition;
    EXPECT_EQ(PasteRecord(record), 0);
    PasteEnd();
    EXPECT_EQ(PasteRecord(record), 0);
    PasteBegin(a, 0);
    PasteEnd();
    record.width = 1;
    for (uint8_t kind : {RecDeletePattern, RecDeleteTransition, RecDeleteReference}) {
        record.kind = kind;
        EXPECT_EQ(PasteRecord(record), 0);
    }
    EXPECT_EQ(StoreText(), before);
}

} // namespace
