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
#include <cstring>
#include <string>

namespace {

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
        [](Pattern *pattern, uint32_t MemberPosition, void *context) {
            auto *found = static_cast<Search *>(context);
            if (!found->rule(pattern)) return false;
            found->holder = {pattern->id, (pattern->width - MemberPosition) & 31};
            return true;
        },
        &search);
    return search.holder;
}

Holder FindBitNamed(const char *name) {
    Holder holder = FindHolder(name, IsPlain);
    if (holder.id != 0) return holder;
    const Pattern *bearer = FindPattern(name);
    if (!bearer) return {};
    if (bearer->kind() != PatternKind::Reference || bearer->itemCount == 0) return {bearer->id, 0};
    const PatternItem &item = bearer->item(0);
    return {item.patternId(), item.sliceOffset()};
}

// Appends one bit of the holder to a reference pattern. Null without room, which has then been shown.
Pattern *AppendBit(Pattern *node, Holder holder) {
    return InsertReference(node, PatternKind::Reference, node->itemCount, holder.id, 1, 1, 1,
                           holder.sliceOffset, 0);
}

void SetPinType(Pattern *node, uint32_t pinType) {
    SetPatternParams(node, node->stateTable(), pinType, static_cast<uint32_t>(node->format()), node->period,
                     node->duty, node->clock());
}

// What looks at other patterns has no clock of its own.
void ClearClock(Pattern *node) {
    SetPatternParams(node, node->stateTable(), node->pinType(), static_cast<uint32_t>(node->format()),
                     node->period, node->duty, 0);
}

Pattern *CreatePlainNode(const char *name, uint32_t pinType) {
    Pattern *node = CreatePattern(0, name, 0);
    if (node) SetPinType(node, pinType);
    return node;
}

Pattern *CreateBitOfBus(const char *name, Holder bus, uint32_t pinType) {
    Pattern *node = CreatePattern(0, name, 0);
    if (!node) return nullptr;
    ClearClock(node);
    uint16_t id = node->id;
    node = AppendBit(node, bus);
    if (node) {
        SetPinType(node, pinType);
    } else {
        DeletePattern(PatternFromId(id));
    }
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

int BitExists(const char *member, void *) {
    return FindBit(member).id != 0;
}

// Nonzero if there is no room, which has then been shown.
int AddMemberSlice(const char *member, void *context) {
    auto *bus = static_cast<BusOfBits *>(context);
    Holder holder = FindBit(member);
    if (holder.id == 0) {
        const Pattern *bit = CreatePlainNode(OwnName(member).c_str(), bus->NodePinType);
        if (!bit) return 1;
        holder = {bit->id, 0};
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

// Gives the reference pattern its slices, and makes the bits that are missing, all without a record. False
// without room, which has then been shown; the bits that were made are gone then.
bool FillBusOfBits(uint16_t NewNode, const char *name, uint32_t pinType) {
    BusOfBits bus = {NewNode, pinType, 0, {}};
    int32_t recording = EditLog.Recording;
    EditLog.Recording = 0;
    bool failed = ForEachBusMember(name, AddMemberSlice, &bus) != 0;
    if (failed) {
        while (bus.created > 0) DeletePattern(PatternFromId(bus.newBits[--bus.created]));
    } else {
        JoinSlices(PatternFromId(NewNode));
    }
    EditLog.Recording = recording;
    return !failed;
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
    ClearClock(node);
    uint16_t id = node->id;
    if (!FillBusOfBits(id, name, pinType)) {
        DeletePattern(PatternFromId(id));
        return nullptr;
    }
    node = PatternFromId(id);
    // Of the slices the log has the first one alone; that is meant. It tells the kind, too.
    LogFirstSlice(node);
    return node;
}

} // namespace

std::string OwnName(const char *member) {
    std::string name(strlen(member) + 2, '\0');
    memcpy(name.data(), member, strlen(member));
    CanonicalizeName(name.data());
    return name.c_str();
}

Holder FindBit(const char *member) {
    Holder holder = FindBitNamed(member);
    return holder.id != 0 ? holder : FindBitNamed(OwnName(member).c_str());
}

Pattern *FindOrCreateNode(char *name, uint32_t pinType) {
    CanonicalizeName(name);
    if (Pattern *found = FindPattern(name)) {
        if (pinType != 0) SetPinType(found, pinType);
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

bool FollowMembers(Pattern *bus) {
    uint16_t id = bus->id;
    std::string name = bus->name();
    // From here on the bus holds no bits itself.
    bus->setKind(PatternKind::Reference);
    if (ForEachBusMember(name.c_str(), BitExists, nullptr) != 0) return FillBusOfBits(id, name.c_str(), 0);
    bus->setKind(PatternKind::Plain);
    return true;
}
