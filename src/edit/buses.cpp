#include "edit/buses.h"

#include "editlog/edit_log.h"
#include "editlog/log_records.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/name_index.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include <array>

namespace {

// The pattern that holds a single signal, and where: counted from 1 along its name.
struct Holder {
    uint16_t id = 0;
    uint32_t MemberPosition = 0;
};

using HolderRule = bool (*)(const Pattern *pattern);

bool IsPlain(const Pattern *pattern) {
    return pattern->kind() == PatternKind::Plain;
}

bool IsPlainBus(const Pattern *pattern) {
    return pattern->isBus() && IsPlain(pattern);
}

// The newest pattern of the rule that has `SearchName` among the single names of its own.
Holder FindHolder(const char *SearchName, HolderRule rule) {
    struct Search {
        HolderRule rule;
        Holder holder;
    } search = {rule, {}};
    NameIndexVisitMember(
        SearchName,
        [](Pattern *pattern, uint32_t position, void *context) {
            auto *found = static_cast<Search *>(context);
            if (!found->rule(pattern)) return false;
            found->holder = {pattern->id, position};
            return true;
        },
        &search);
    return search.holder;
}

// Appends one bit of the holder to a reference pattern. Null without room, which has then been shown.
Pattern *AppendBit(Pattern *node, Holder holder) {
    uint32_t offset = PatternFromId(holder.id)->width - holder.MemberPosition;
    return InsertReference(node, PatternKind::Reference, node->itemCount, holder.id, 1, 1, 1, offset & 31, 0);
}

Pattern *CreatePlainNode(const char *name, uint32_t pinType) {
    Pattern *node = CreatePattern(0, name, 0);
    if (node) node->setPinType(pinType);
    return node;
}

Pattern *CreateBitOfBus(const char *name, Holder bus, uint32_t pinType) {
    Pattern *node = CreatePlainNode(name, pinType);
    if (!node) return nullptr;
    node->setClock(0);
    uint16_t id = node->id;
    node = AppendBit(node, bus);
    if (!node) DeletePattern(PatternFromId(id));
    return node;
}

// A bus of bits that exist, while it is being made.
struct BusOfBits {
    uint16_t NewNode;
    uint32_t NodePinType;
    uint32_t created; // entries of `newBits`
    std::array<uint16_t, MAX_BUS_WIDTH> newBits;
};

// 1 if a pattern that holds data of its own has this name or this member.
int MemberExists(const char *member, void *) {
    struct Search {
        const char *SearchName;
    } search = {member};
    return NameIndexVisitMember(
        member,
        [](Pattern *pattern, uint32_t, void *context) {
            if (pattern->kind() == PatternKind::Reference) return false;
            // The text of a bit's name counts as it stands, so that "A[3:3]" is not "A[3]" here.
            std::string_view SearchName = static_cast<const Search *>(context)->SearchName;
            return pattern->isBus() || pattern->name() == SearchName;
        },
        &search);
}

// Nonzero if there is no room, which has then been shown.
int AddMemberSlice(const char *member, void *context) {
    auto *bus = static_cast<BusOfBits *>(context);
    Holder holder = FindHolder(member, IsPlain);
    if (holder.id == 0) {
        // Members compare with case and patterns without: a second pattern of the name could never be saved
        // and read again, so the one that bears it is the bit.
        const Pattern *bearer = FindPattern(member);
        if (bearer) holder = {bearer->id, 1};
    }
    if (holder.id == 0) {
        const Pattern *bit = CreatePlainNode(member, bus->NodePinType);
        if (!bit) return 1;
        holder = {bit->id, 1};
        bus->newBits[bus->created++] = bit->id;
    }
    return AppendBit(PatternFromId(bus->NewNode), holder) ? 0 : 1;
}

// Makes one item of neighbours whose slices touch. 32 joined bits are a width of 0, which means all.
void JoinSlices(Pattern *pattern) {
    for (uint32_t i = pattern->itemCount - 1u; i >= 1; --i) {
        PatternItem &item = pattern->item(i);
        PatternItem &before = pattern->item(i - 1);
        if (item.patternId() != before.patternId()) continue;
        if (before.sliceOffset() != item.sliceWidth() + item.sliceOffset()) continue;
        item.setSliceWidth(item.sliceWidth() + 1);
        before = item;
        DropItem(pattern, static_cast<uint16_t>(i));
    }
}

void LogFirstSlice(const Pattern *node) {
    const PatternItem &item = node->item(0);
    LogReference(1, node->id, static_cast<uint32_t>(PatternKind::Reference), node->itemCount,
                 item.patternId(), static_cast<uint16_t>(item.scale()), item.repeat(),
                 static_cast<uint8_t>(item.sliceWidth()), static_cast<uint8_t>(item.sliceOffset()),
                 static_cast<uint8_t>(item.forcedFormat()));
}

Pattern *CreateBusOfBits(const char *name, uint32_t pinType) {
    Pattern *node = CreatePattern(0, name, 0);
    if (!node) return nullptr;
    node->setKind(PatternKind::Reference);
    node->setClock(0);
    BusOfBits bus = {node->id, pinType, 0, {}};
    // The slices are not in the log; of the first one alone there is a record.
    int32_t recording = EditLog.Recording;
    EditLog.Recording = 0;
    bool failed = ForEachBusMember(name, AddMemberSlice, &bus) != 0;
    if (failed) {
        while (bus.created > 0) DeletePattern(PatternFromId(bus.newBits[--bus.created]));
    } else {
        JoinSlices(PatternFromId(bus.NewNode));
    }
    EditLog.Recording = recording;
    node = PatternFromId(bus.NewNode);
    if (failed) {
        DeletePattern(node);
        return nullptr;
    }
    if (recording) LogFirstSlice(node);
    return node;
}

} // namespace

Pattern *FindOrCreateNode(char *name, uint32_t pinType) {
    CanonicalizeName(name);
    if (Pattern *found = FindPattern(name)) {
        if (pinType != 0) found->setPinType(pinType);
        return found;
    }
    uint32_t width = CountBusMembers(name);
    if (width > MAX_BUS_WIDTH) {
        ShowErrorStrip("Bus width exceeds 32 bits");
        return nullptr;
    }
    if (width <= 1) {
        Holder bus = FindHolder(name, IsPlainBus);
        return bus.id ? CreateBitOfBus(name, bus, pinType) : CreatePlainNode(name, pinType);
    }
    bool anyMember = ForEachBusMember(name, MemberExists, nullptr) != 0;
    return anyMember ? CreateBusOfBits(name, pinType) : CreatePlainNode(name, pinType);
}
