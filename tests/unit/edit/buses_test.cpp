#include "edit/buses.h"

#include "config/settings.h"
#include "editlog/edit_log.h"
#include "editlog/record_reader.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include "unit/support/fresh_store.h"
#include "unit/support/random_document.h"
#include <cstring>

namespace {

class Buses : public FreshStore {
protected:
    // The pattern that `name` resolves to; the name's text is forgotten.
    static Pattern *Node(const std::string &name, uint32_t pinType = 0) {
        std::string text = name;
        text.reserve(name.size() + 2);
        return FindOrCreateNode(text.data(), pinType);
    }
    // Its slices, each as "NAME OFFSET/WIDTH".
    static std::string Slices(const std::string &name) {
        const Pattern *node = Node(name);
        std::string text;
        for (uint32_t i = 0; i < node->itemCount; ++i) {
            const PatternItem &item = node->item(i);
            if (i > 0) text += ", ";
            text += std::string(PatternFromId(item.patternId())->name()) + " " +
                    std::to_string(item.sliceOffset()) + "/" + std::to_string(item.sliceWidth());
        }
        return text;
    }
};

constexpr uint32_t IN = static_cast<uint32_t>(PinType::In);
constexpr uint32_t OUT = static_cast<uint32_t>(PinType::Out);

} // namespace

TEST_F(Buses, ANewNameBecomesAPlainPatternOfItsWidth) {
    const Pattern *bit = Node("clk", IN);
    EXPECT_EQ(bit->kind(), PatternKind::Plain);
    EXPECT_EQ(bit->width, 1);
    EXPECT_FALSE(bit->isBus());
    EXPECT_EQ(bit->pinType(), IN);
    const Pattern *bus = Node("D[7:0]", OUT);
    EXPECT_EQ(bus->kind(), PatternKind::Plain);
    EXPECT_EQ(bus->width, 8);
    EXPECT_TRUE(bus->isBus());
    EXPECT_EQ(bus->pinType(), OUT);
    EXPECT_EQ(bus->itemCount, 0);
}

TEST_F(Buses, TheNameIsMadeCanonicalInPlace) {
    char name[16] = "A.B<3-0";
    const Pattern *bus = FindOrCreateNode(name, 0);
    EXPECT_STREQ(name, "A.B[3:0]");
    EXPECT_STREQ(bus->name(), "A.B[3:0]");
}

TEST_F(Buses, ANameThatExistsComesBackWithOnlyItsPinTypeTakenOver) {
    Pattern *bus = Node("D[7:0]", OUT);
    uint16_t id = bus->id;
    bus->delay = 5;
    EXPECT_EQ(Node("d(7,0)"), bus);
    EXPECT_EQ(bus->pinType(), OUT);
    EXPECT_EQ(Node("D[7:0]", IN)->id, id);
    EXPECT_EQ(bus->pinType(), IN);
    EXPECT_EQ(bus->delay, 5u);
    EXPECT_EQ(HighestPatternId, 1);
}

TEST_F(Buses, ABitOfABusIsAReferenceToItAndTheFirstMemberIsTheHighestBit) {
    Node("D[7:0]");
    const Pattern *bit = Node("D[5]", IN);
    EXPECT_EQ(bit->kind(), PatternKind::Reference);
    EXPECT_EQ(bit->width, 1);
    EXPECT_EQ(bit->clock(), 0u);
    EXPECT_EQ(bit->pinType(), IN);
    EXPECT_EQ(Slices("D[5]"), "D[7:0] 5/1");
    EXPECT_EQ(Slices("D[7]"), "D[7:0] 7/1");
    EXPECT_EQ(Slices("D[0]"), "D[7:0] 0/1");
    Node("E[0:7]");
    EXPECT_EQ(Slices("E[0]"), "E[0:7] 7/1");
    EXPECT_EQ(Slices("E[7]"), "E[0:7] 0/1");
    Node("x,y,z");
    EXPECT_EQ(Slices("x"), "x,y,z 2/1");
}

TEST_F(Buses, AReferenceItemHasScaleAndRepeatOne) {
    Node("D[7:0]");
    const PatternItem item = Node("D[5]")->item(0);
    EXPECT_EQ(item.scale(), 1u);
    EXPECT_EQ(item.repeat(), 1);
    EXPECT_EQ(item.forcedFormat(), 0u);
}

TEST_F(Buses, MembersCompareWithCase) {
    Node("D[7:0]");
    EXPECT_EQ(Node("d[5]")->kind(), PatternKind::Plain);
    EXPECT_EQ(Node("d[3:2]")->kind(), PatternKind::Plain);
}

TEST_F(Buses, ABitBeyondTheBusIsPlain) {
    Node("D[7:0]");
    EXPECT_EQ(Node("D[8]")->kind(), PatternKind::Plain);
    EXPECT_EQ(Node("D")->kind(), PatternKind::Plain);
}

TEST_F(Buses, TheNewestBusThatHoldsTheBitCounts) {
    MakePattern("D[7:0]");
    MakePattern("D[3:0]");
    EXPECT_EQ(Slices("D[2]"), "D[3:0] 2/1");
    EXPECT_EQ(Slices("D[6]"), "D[7:0] 6/1");
}

TEST_F(Buses, ACompositeHoldsNoBits) {
    uint16_t bus = MakePattern("D[1:0]");
    uint16_t part = MakePattern("$p", {{1, 5}});
    AddReference(bus, {part}, PatternKind::Composite);
    AddReference(bus, {part}, PatternKind::Composite);
    EXPECT_EQ(Node("D[0]")->kind(), PatternKind::Plain);
}

TEST_F(Buses, ANodeOfAnExistingBusHasNoClockOfItsOwn) {
    Settings.AutoClockAssign = true;
    EXPECT_EQ(Node("D[7:0]")->clock(), 1u);
    EXPECT_EQ(Node("D[1]")->clock(), 0u);
    EXPECT_EQ(Node("D[2:1]")->clock(), 0u);
}

TEST_F(Buses, ABusOfWhichNoMemberExistsIsPlain) {
    Node("D[7:0]");
    const Pattern *bus = Node("E[7:0]");
    EXPECT_EQ(bus->kind(), PatternKind::Plain);
    EXPECT_EQ(bus->itemCount, 0);
    EXPECT_EQ(HighestPatternId, 2);
}

TEST_F(Buses, AdjacentBitsOfABusAreOneSlice) {
    Node("D[7:0]");
    const Pattern *bus = Node("D[5:2]");
    EXPECT_EQ(bus->kind(), PatternKind::Reference);
    EXPECT_EQ(bus->width, 4);
    EXPECT_EQ(Slices("D[5:2]"), "D[7:0] 2/4");
    EXPECT_EQ(Slices("D[2:3]"), "D[7:0] 2/1, D[7:0] 3/1");
    EXPECT_EQ(Slices("D[7:5],D[2:0]"), "D[7:0] 5/3, D[7:0] 0/3");
    EXPECT_EQ(Slices("D[1],D[0],D[1]"), "D[7:0] 0/2, D[7:0] 1/1");
}

TEST_F(Buses, AllBitsOfA32BitBusAreOneSliceOfWidthZero) {
    Node("D[31:0]");
    EXPECT_EQ(Slices("D[31:0:1]"), "D[31:0] 0/0");
    EXPECT_EQ(Node("D[31:0:1]")->width, 32);
    Node("E[31:0]");
    EXPECT_EQ(Slices("E[30:0]"), "E[31:0] 0/31");
}

TEST_F(Buses, ABusOfBitsHoldsEachOfThem) {
    Node("a");
    Node("b");
    EXPECT_EQ(Slices("a,b"), "a 0/1, b 0/1");
    EXPECT_EQ(Node("a,b")->pinType(), 0u);
}

TEST_F(Buses, AMissingMemberIsMadeAsABitOfThePinType) {
    Node("a", OUT);
    const Pattern *bus = Node("a,b,c", IN);
    EXPECT_EQ(bus->kind(), PatternKind::Reference);
    EXPECT_EQ(Slices("a,b,c"), "a 0/1, b 0/1, c 0/1");
    EXPECT_EQ(Node("a")->pinType(), OUT);
    EXPECT_EQ(Node("b")->pinType(), IN);
    EXPECT_EQ(Node("c")->kind(), PatternKind::Plain);
    EXPECT_EQ(Node("c")->width, 1);
}

TEST_F(Buses, AMemberOfACompositeIsMadeAnew) {
    uint16_t bus = MakePattern("D[1:0]");
    uint16_t part = MakePattern("$p", {{1, 5}});
    AddReference(bus, {part}, PatternKind::Composite);
    AddReference(bus, {part}, PatternKind::Composite);
    EXPECT_EQ(Slices("D[1],x"), "D[1] 0/1, x 0/1");
    EXPECT_EQ(Node("D[1]")->kind(), PatternKind::Plain);
}

TEST_F(Buses, AReferencePatternHoldsNoBits) {
    Node("D[7:0]");
    Node("D[3:2]");
    EXPECT_EQ(Slices("D[2]"), "D[7:0] 2/1");
    EXPECT_EQ(Slices("D[2],D[1]"), "D[7:0] 1/2");
}

TEST_F(Buses, OneBitRangesAreFoundAsMembersButNotByName) {
    Node("A[3:3]");
    EXPECT_EQ(Node("A[3]")->kind(), PatternKind::Plain);
    Node("B[3:3]");
    EXPECT_EQ(Node("B[3],B[2]")->kind(), PatternKind::Plain);
    Node("C[3:3]");
    Node("c2");
    EXPECT_EQ(Slices("c2,C[3]"), "c2 0/1, C[3:3] 0/1");
}

TEST_F(Buses, ANodeThatDiffersInCaseIsTheBitRatherThanASecondPatternOfItsName) {
    Node("CLK");
    Node("b");
    EXPECT_EQ(Slices("clk,b"), "CLK 0/1, b 0/1");
    EXPECT_EQ(HighestPatternId, 3);
}

TEST_F(Buses, ABusOfMoreThan32MembersIsRefused) {
    EXPECT_EQ(Node("D[32:0]"), nullptr);
    ASSERT_EQ(Headless.strips.size(), 1u);
    EXPECT_EQ(Headless.strips[0], "ERROR: Bus width exceeds 32 bits");
    EXPECT_EQ(Node("D[2000000000:0],E[2000000000:0],F[2000000000:0]"), nullptr);
    EXPECT_EQ(HighestPatternId, 0);
    EXPECT_NE(Node("D[31:0]"), nullptr);
}

TEST_F(Buses, RecordingStaysAsItWas) {
    for (int32_t recording : {0, 1}) {
        EditLog.Recording = recording;
        std::string name = "a" + std::to_string(recording);
        Node(name);
        Node(name + ",b");
        EXPECT_EQ(EditLog.Recording, recording);
    }
    EditLog.Recording = 1;
}

TEST_F(Buses, ABitFoundByItsNameIsFollowedToWhatItLooksAt) {
    Node("B[1:0]");
    Node("y");
    Node("B[1]");
    EXPECT_EQ(Slices("b[1],y"), "B[1:0] 1/1, y 0/1");
    // And joins its neighbour there.
    EXPECT_EQ(Slices("b[1],B[0]"), "B[1:0] 0/2");
    // Should it look at nothing any more, it is the bit itself.
    Pattern *bit = Node("B[1]");
    DropItem(bit, 0);
    EXPECT_EQ(Slices("b[1],y,y"), "B[1] 0/1, y 0/1, y 0/1");
}

TEST_F(Buses, FollowMembersTurnsANewBusIntoAReferenceWhereABitExists) {
    Node("CLK");
    Pattern *bus = Node("clk,q");
    EXPECT_EQ(bus->kind(), PatternKind::Plain);
    EXPECT_TRUE(FollowMembers(bus));
    EXPECT_EQ(Node("clk,q")->kind(), PatternKind::Reference);
    EXPECT_EQ(Slices("clk,q"), "CLK 0/1, q 0/1");
    bus = Node("x,z");
    EXPECT_TRUE(FollowMembers(bus));
    EXPECT_EQ(Node("x,z")->kind(), PatternKind::Plain);
    EXPECT_EQ(Node("x,z")->itemCount, 0);
}

// --- the log ---

namespace {

std::vector<LogRecord> notedRecords;

int NoteRecord(std::span<const uint8_t> payload, int, int32_t, int32_t, int) {
    LogRecord record;
    EXPECT_TRUE(ReadRecord(payload, record));
    notedRecords.insert(notedRecords.begin(), record);
    return 1;
}

// What has been recorded since the log was made, first to last.
std::string Records() {
    auto *hook = ExecuteLogHook;
    ExecuteLogHook = NoteRecord;
    notedRecords.clear();
    LogEndAction();
    LogUndo();
    ExecuteLogHook = hook;
    std::string text;
    for (const LogRecord &record : notedRecords) {
        switch (record.kind) {
        case RecCreatePattern:
            text += "create " + record.name;
            break;
        case RecDeletePattern:
            text += "delete " + record.name;
            break;
        case RecPatternParams:
            text += "clock " + std::to_string(record.newParams.clock) + " pin " +
                    std::to_string(record.newParams.pinType);
            break;
        case RecInsertReference:
            text += "refer " + std::to_string(record.patternId) + " at " + std::to_string(record.item) +
                    " kind " + std::to_string(record.ownerKind);
            break;
        default:
            text += "kind " + std::to_string(record.kind);
        }
        text += "; ";
    }
    return text;
}

class BusRecords : public Buses {
protected:
    void SetUp() override {
        Buses::SetUp();
        InitEditLog();
        Settings.AutoClockAssign = true;
    }
    void TearDown() override {
        InitEditLog();
        Buses::TearDown();
    }
};

} // namespace

TEST_F(BusRecords, ANodeIsMadeAndThenGetsItsPinType) {
    Node("a", IN);
    EXPECT_EQ(Records(), "create a; clock 1 pin 1; ");
    InitEditLog();
    Node("D[3:0]", OUT);
    EXPECT_EQ(Records(), "create D[3:0]; clock 1 pin 2; ");
    InitEditLog();
    Node("b");
    EXPECT_EQ(Records(), "create b; ");
}

TEST_F(BusRecords, ABitLosesItsClockThenLooksAtItsBusThenGetsItsPinType) {
    uint16_t bus = Node("D[3:0]")->id;
    InitEditLog();
    Node("D[2]", OUT);
    EXPECT_EQ(Records(),
              "create D[2]; clock 0 pin 0; refer " + std::to_string(bus) + " at 0 kind 2; clock 0 pin 2; ");
    Settings.AutoClockAssign = false;
    InitEditLog();
    Node("D[1]");
    EXPECT_EQ(Records(), "create D[1]; refer " + std::to_string(bus) + " at 0 kind 2; ");
}

TEST_F(BusRecords, ABusOfBitsHasNoPinTypeOfItsOwnAndOneRecordOfItsSlices) {
    uint16_t a = Node("a")->id;
    InitEditLog();
    EXPECT_EQ(Node("a,b", IN)->pinType(), 0u);
    EXPECT_EQ(Node("b")->pinType(), IN);
    EXPECT_EQ(Records(), "create a,b; clock 0 pin 0; refer " + std::to_string(a) + " at 2 kind 2; ");
}

TEST_F(BusRecords, ThePinTypeOfANodeThatIsThereIsRecorded) {
    Node("a");
    InitEditLog();
    EXPECT_EQ(Node("A", OUT)->pinType(), OUT);
    EXPECT_EQ(Records(), "clock 1 pin 2; ");
    InitEditLog();
    Node("a", OUT);
    Node("a", 0);
    EXPECT_EQ(Records(), "");
}

// --- no room ---

namespace {

// Memory runs out when the heap is to grow.
void *NoMemory(void *, size_t) {
    return nullptr;
}

} // namespace

TEST_F(BusRecords, WithoutRoomNothingIsMadeHoweverFarItHasCome) {
    uint32_t made = 0, refused = 0;
    // With a long name a record begins without room for an item.
    const std::string longBus(60, 'q');
    for (const std::string &name : {std::string("a,b,c"), std::string("D[1]"), std::string("e"),
                                    std::string("f[3:0]"), std::string("a,D[1]"), longBus + "[1]"}) {
        // So much is left in the heap.
        for (uint32_t left = 0; left < 700; left += 4) {
            PatternStoreFree();
            ASSERT_EQ(PatternStoreInit(), 1);
            Settings.AutoClockAssign = true;
            EditLog.Recording = 0;
            Node("a");
            Node(longBus + "[1:0]");
            Node("D[1:0]");
            // A record as long as its name makes it, up to the place.
            uint32_t top = static_cast<uint32_t>(HeapTop) + FindPattern("D[1:0]")->used();
            uint32_t rest = static_cast<uint32_t>(HeapSize) - left - top - 36;
            ASSERT_NE(CreatePattern(0, ("$" + std::string(rest - 2, 'x')).c_str(), 0), nullptr);
            EditLog.Recording = 1;
            InitEditLog();
            std::string before = StoreText();
            ResizeBlock = NoMemory;
            const Pattern *node = Node(name, IN);
            ResizeBlock = realloc;
            ASSERT_EQ(HeapFault(), "") << name << " " << left;
            ASSERT_EQ(EditLog.Recording, 1);
            node ? ++made : ++refused;
            if (node) continue;
            ASSERT_EQ(StoreText(), before) << name << " " << left;
            // And the log agrees.
            LogEndAction();
            LogUndo();
            ASSERT_EQ(StoreText(), before) << name << " " << left;
            LogRedo();
            ASSERT_EQ(StoreText(), before) << name << " " << left;
        }
    }
    EXPECT_GT(made, 100u);
    EXPECT_GT(refused, 100u);
}

TEST_F(Buses, ABitMadeForABusBearsTheNameThatAFileGivesIt) {
    MakePattern("x");
    ASSERT_NE(Node("x,'D"), nullptr);
    EXPECT_EQ(FindPattern("'D"), nullptr);
    ASSERT_NE(FindPattern("_D"), nullptr);
    // The next bus of the same members finds it.
    uint16_t highest = HighestPatternId;
    const Pattern *second = Node("'D,x,'D");
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(HighestPatternId, highest + 1);
    EXPECT_EQ(second->item(0).patternId(), FindPattern("_D")->id);
}

// No second bit of that name is made beside it, which a file could not tell from the first.
TEST_F(Buses, AMemberBehindAMarkIsTheBitThatABusHasUnderItsOwnName) {
    MakePattern("x");
    MakePattern("_c,d", {}, 2);
    EXPECT_EQ(Slices("x,'c"), "x 0/1, _c,d 1/1");
    EXPECT_EQ(FindPattern("_c"), nullptr);
}

TEST_F(Buses, AFullTableLeavesNothingBehind) {
    Node("a");
    Node("D[1:0]");
    while (HighestPatternId < MAX_PATTERNS - 3) MakePattern("$p");
    std::string before = StoreText();
    EXPECT_EQ(Node("a,b,c"), nullptr); // there is room for the bus and one of its bits
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(Headless.userErrors.size(), 1u);
    EXPECT_NE(Node("D[1]"), nullptr);
    EXPECT_NE(Node("e"), nullptr);
    before = StoreText();
    for (const char *name : {"D[0]", "f", "f[3:0]", "a,D[1]"}) EXPECT_EQ(Node(name), nullptr) << name;
    EXPECT_EQ(StoreText(), before);
    EXPECT_EQ(HeapFault(), "");
}

// --- against a plain search ---

namespace {

struct Held {
    uint16_t id = 0;
    uint32_t position = 0;
};

// The newest pattern that has the member, by looking through all of them.
Held SearchLinearly(const std::string &member, bool busesOnly) {
    struct Walk {
        const std::string &member;
        uint32_t position;
    };
    for (uint32_t id = HighestPatternId; id >= 1; --id) {
        if (!PatternInUse(id)) continue;
        const Pattern *p = PatternFromId(id);
        if (p->nameLength == 0 || p->kind() != PatternKind::Plain || (busesOnly && !p->isBus())) continue;
        Walk walk = {member, 0};
        int hit = ForEachBusMember(
            p->name(),
            [](const char *name, void *context) {
                auto *at = static_cast<Walk *>(context);
                ++at->position;
                return static_cast<int>(at->member == name);
            },
            &walk);
        if (hit) return {static_cast<uint16_t>(id), walk.position};
    }
    return {};
}

} // namespace

TEST_F(Buses, ResolvesNamesAsASearchOfAllPatternsWould) {
    for (uint32_t seed = 1; seed <= 200; ++seed) {
        PatternStoreFree();
        ASSERT_EQ(PatternStoreInit(), 1);
        Random random(seed);
        for (int step = 0; step < 40; ++step) {
            // Buses that overlap, in two cases of letters, some of them deleted again.
            std::string stem = random.once(2) ? "A[" : "a[";
            uint32_t from = random.below(6);
            uint32_t to = random.below(6);
            if (random.once(2)) {
                MakePattern((stem + std::to_string(from) + ":" + std::to_string(to) + "]").c_str());
            } else if (random.once(5) && HighestPatternId > 0) {
                uint32_t id = 1 + random.below(HighestPatternId);
                if (PatternInUse(id) && !IsPatternReferenced(static_cast<uint16_t>(id))) {
                    DeletePattern(PatternFromId(id));
                }
            } else {
                std::string name = stem + std::to_string(from) + "]";
                bool isNew = !FindPattern(name.c_str());
                Held held = SearchLinearly(name, true);
                const Pattern *node = Node(name);
                if (!isNew) continue;
                ASSERT_EQ(node->kind() == PatternKind::Reference, held.id != 0);
                if (held.id == 0) continue;
                ASSERT_EQ(node->item(0).patternId(), held.id);
                ASSERT_EQ(node->item(0).sliceOffset(), PatternFromId(held.id)->width - held.position);
            }
        }
    }
}
