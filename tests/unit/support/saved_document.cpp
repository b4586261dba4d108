#include "unit/support/saved_document.h"

#include "config/settings.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/signal_name.h"
#include "wdl/statement_order.h"
#include <algorithm>
#include <utility>
#include <vector>

namespace {

uint32_t KindAsRead(const Pattern *p) {
    if (p->kind() == PatternKind::Plain) return 0;
    if (p->kind() == PatternKind::Reference && p->nameLength != 0) return 2;
    if (p->itemCount < 2 || !p->item(0).isReference()) return 0;
    return std::any_of(p->items() + 1, p->items() + p->itemCount,
                       [](const PatternItem &item) { return item.isReference(); });
}

std::string TextOfItems(const Pattern *p) {
    std::string text = " kind " + std::to_string(KindAsRead(p)) + " width " + std::to_string(p->width);
    for (uint32_t i = 0; i < p->itemCount; ++i) {
        const PatternItem &item = p->item(i);
        if (!item.isReference()) {
            text += " " + std::to_string(item.value()) + ":" + std::to_string(item.duration());
            continue;
        }
        const Pattern *target = PatternFromId(item.patternId());
        text +=
            target->nameLength ? std::string(" <") + target->name() + ">" : " (" + TextOfItems(target) + ")";
        text += "*" + std::to_string(item.scale()) + "#" + std::to_string(item.repeat()) + "@" +
                std::to_string(item.forcedFormat()) + "/" + std::to_string(item.sliceOffset()) + "/" +
                std::to_string(item.sliceWidth());
    }
    return text;
}

std::string TextOf(const Pattern *p) {
    if (p->kind() == PatternKind::Reference) return TextOfItems(p);
    uint32_t clock = p->clock() == 8 ? 0 : p->clock();
    std::string text;
    for (uint32_t number : {static_cast<uint32_t>(p->isBus()), static_cast<uint32_t>(p->hasProperties()),
                            clock, p->stateTable(), static_cast<uint32_t>(p->format()), p->pinType(),
                            static_cast<uint32_t>(p->period), p->delay, static_cast<uint32_t>(p->duty)}) {
        text += " " + std::to_string(number);
    }
    return text + TextOfItems(p);
}

std::string SettingsText() {
    return std::to_string(Settings.ClockMultiplier) + " " + std::to_string(Settings.BasicUnit) + " " +
           std::to_string(Settings.Decimals) + " " + std::to_string(Settings.AutoClockAssign) + " " +
           std::to_string(Settings.EndTime);
}

// A bit of a pattern, counted from the end of its name.
using Bit = std::pair<uint32_t, uint32_t>;

std::vector<Bit> BitsOf(const Pattern *p) {
    std::vector<Bit> bits;
    for (uint32_t i = 0; i < p->itemCount; ++i) {
        const PatternItem &item = p->item(i);
        uint32_t width = item.sliceWidth() == 0 ? 32 : item.sliceWidth();
        while (width-- > 0) bits.emplace_back(item.patternId(), item.sliceOffset() + width);
    }
    return bits;
}

std::vector<std::string> MembersOf(const Pattern *p) {
    std::vector<std::string> members;
    ForEachBusMember(
        p->name(),
        [](const char *member, void *context) {
            static_cast<std::vector<std::string> *>(context)->emplace_back(member);
            return 0;
        },
        &members);
    return members;
}

// Where the name of one bit leads to: to the patterns that hold it, else to the one that bears the name in
// another case. Nothing, more than one, or the bit. A composite holds a bit for those that have looked at it
// before it was one, as `own` tells.
std::vector<Bit> BitsNamed(const std::string &member, bool inBuses, const Bit &own) {
    std::vector<Bit> found;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *p = PatternFromId(id);
        if (p->nameLength == 0 || p->kind() != PatternKind::Plain || (inBuses && !p->isBus())) continue;
        uint32_t position = BusMemberPosition(p->name(), member);
        if (position != 0) found.emplace_back(id, (p->width - position) & 31);
    }
    const Pattern *target = PatternFromId(own.first);
    if (found.empty() && target->isBus() && target->kind() == PatternKind::Composite &&
        target->width - BusMemberPosition(target->name(), member) == own.second) {
        return {own};
    }
    if (inBuses || !found.empty()) return found;
    const Pattern *bearer = FindPattern(member.c_str());
    if (!bearer) return {};
    if (bearer->kind() != PatternKind::Reference) return {{bearer->id, 0}};
    std::vector<Bit> looksAt = BitsOf(bearer);
    found = BitsNamed(bearer->name(), true, looksAt[0]);
    return found == looksAt ? found : std::vector<Bit>();
}

bool IsAstray(const Pattern *reference) {
    std::vector<Bit> bits = BitsOf(reference);
    if (!reference->isBus()) return BitsNamed(reference->name(), true, bits[0]) != bits;
    std::vector<std::string> members = MembersOf(reference);
    for (size_t i = 0; i < bits.size(); ++i) {
        if (BitsNamed(members[i], false, bits[i]) != std::vector<Bit>{bits[i]}) return true;
    }
    return false;
}

} // namespace

SavedDocument WhatIsSaved() {
    StatementOrder order = OrderStatements();
    SavedDocument saved = {SettingsText(), {}, {}, order.comesBack, 0};
    for (Statement statement : order.statements) {
        const Pattern *p = PatternFromId(statement.id);
        saved.patterns[p->name()] = TextOf(p);
    }
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        saved.leftOut += PatternInUse(id) && !saved.patterns.contains(PatternFromId(id)->name()) &&
                         PatternFromId(id)->nameLength != 0;
    }
    auto isLeftOut = [&saved](const Bit &bit) {
        return !saved.patterns.contains(PatternFromId(bit.first)->name());
    };
    for (const auto &[name, text] : saved.patterns) {
        const Pattern *p = FindPattern(name.c_str());
        if (p->kind() != PatternKind::Reference) continue;
        std::vector<Bit> bits = BitsOf(p);
        bool gone = std::any_of(bits.begin(), bits.end(), isLeftOut);
        if (gone || IsAstray(p)) saved.astray.insert(name);
    }
    return saved;
}

std::string DifferenceFrom(const SavedDocument &saved) {
    if (SettingsText() != saved.settings) return "settings " + SettingsText() + ", not " + saved.settings;
    size_t found = 0;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *p = PatternFromId(id);
        if (p->nameLength == 0) continue;
        auto expected = saved.patterns.find(p->name());
        if (expected == saved.patterns.end()) {
            if (saved.comesBack || saved.astray.empty()) return std::string("a new ") + p->name();
            continue;
        }
        ++found;
        if (!saved.comesBack && saved.astray.contains(p->name())) continue;
        std::string text = TextOf(p);
        if (text != expected->second) return std::string(p->name()) + text + "\n, not" + expected->second;
    }
    return found == saved.patterns.size() ? "" : "a pattern is lost";
}
