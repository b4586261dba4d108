#include "unit/editing/random_script.h"

#include "display/rows.h"
#include "display/wave_view.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <cstdio>
#include <iterator>

namespace {

using Lines = std::vector<std::string>;

std::string Number(uint32_t number) {
    return std::to_string(number);
}

// --- what there is --------------------------------------------------------------------------------

// One word, as a line has them.
bool CanBeNamed(const Pattern *pattern) {
    return pattern->nameLength != 0 && std::string(pattern->name()).find_first_of(" \t") == std::string::npos;
}

// A name as a hand may write it: names are found in any case.
std::string Written(Random &random, std::string name) {
    if (!random.once(4)) return name;
    for (char &c : name) {
        bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (letter && random.once(2)) c = static_cast<char>(c ^ 0x20);
    }
    return name;
}

std::string AnyName(Random &random) {
    if (random.once(50)) return "nothing";
    for (int tries = 0; tries < 20; tries++) {
        uint32_t id = 1 + random.below(HighestPatternId);
        if (PatternInUse(id) && CanBeNamed(PatternFromId(id)))
            return Written(random, PatternFromId(id)->name());
    }
    return "nobody";
}

const Pattern *AnyRow(Random &random) {
    if (WaveView.RowCount == 0) return nullptr;
    const Pattern *pattern = RowPattern(random.below(WaveView.RowCount));
    return pattern && CanBeNamed(pattern) ? pattern : nullptr;
}

// The row that is worked in, or another one.
const Pattern *RowToEdit(Random &random) {
    const Pattern *selected =
        WaveView.SelectRow < WaveView.RowCount ? RowPattern(WaveView.SelectRow) : nullptr;
    return selected && CanBeNamed(selected) && !random.once(6) ? selected : AnyRow(random);
}

// The time of an edge of the pattern, as deep as it comes, where the pattern starts at `start` and a unit
// takes `unit`.
TimeVal EdgeWithin(Random &random, const Pattern *pattern, TimeVal start, TimeVal unit, int depth) {
    uint32_t index = random.below(pattern->itemCount + 1u);
    for (uint32_t i = 0; i < index && i < pattern->itemCount; i++) {
        const PatternItem &item = pattern->item(i);
        TimeVal length = item.duration();
        if (item.isReference()) {
            length = TimeMul(TimeMul(PatternFromId(item.patternId())->duration, item.scale()), item.repeat());
        }
        start = TimeAdd(start, TimeMul(length, unit));
    }
    if (index >= pattern->itemCount || depth == 0 || random.once(3)) return start;
    const PatternItem &item = pattern->item(index);
    if (!item.isReference()) return start;
    const Pattern *target = PatternFromId(item.patternId());
    TimeVal inner = TimeMul(unit, item.scale());
    if (item.repeat() != REPEAT_FOREVER) {
        start = TimeAdd(start, TimeMul(TimeMul(target->duration, inner), random.below(item.repeat())));
    }
    return EdgeWithin(random, target, start, inner, depth - 1);
}

TimeVal AnyTime(Random &random, const Pattern *pattern) {
    TimeVal total = PatternDuration(PatternFromId(pattern->id));
    TimeVal time = 0;
    switch (random.below(8)) {
    case 0:
        return random.word();
    case 1:
        return TimeAdd(total, random.below(200));
    case 2:
        time = random.below(total);
        break;
    default:
        time = EdgeWithin(random, pattern, pattern->delay, PatternUnit(pattern), 3);
        break;
    }
    uint32_t jitter = random.once(2) ? 0 : random.once(2) ? random.below(4) : random.below(300);
    return random.once(2) ? TimeAdd(time, jitter) : TimeSub(time, jitter);
}

// Within the selection, to take hold of it.
TimeVal TimeAtSelection(Random &random) {
    const SelFrame &frame = DeepestFrame();
    switch (random.below(4)) {
    case 0:
        return frame.start;
    case 1:
        return frame.end;
    default:
        return TimeAdd(frame.start, random.below(TimeSub(frame.end, frame.start)));
    }
}

// --- gestures -------------------------------------------------------------------------------------

Lines Select(Random &random) {
    const Pattern *pattern = RowToEdit(random);
    if (!pattern) return {};
    TimeVal t1 = AnyTime(random, pattern);
    TimeVal t2 = random.once(3) ? t1 : AnyTime(random, pattern);
    return {"select " + Written(random, pattern->name()) + " " + Number(t1) + " " + Number(t2)};
}

Lines Drag(Random &random) {
    const Pattern *pattern = RowToEdit(random);
    if (!pattern) return {};
    bool again = EditSelection.SelKind != SEL_NONE && pattern == SelectionRoot() && !random.once(4);
    TimeVal t1 = again ? TimeAtSelection(random) : AnyTime(random, pattern);
    Lines lines = {(random.once(3) ? "press! " : "press ") + Written(random, pattern->name()) + " " +
                   Number(t1)};
    for (uint32_t moves = random.below(4); moves > 0; moves--) {
        lines.push_back("move " + Number(AnyTime(random, pattern)));
    }
    TimeVal t2 = random.once(3)   ? t1
                 : random.once(2) ? AnyTime(random, pattern)
                                  : TimeAdd(t1, random.below(50));
    lines.push_back("release " + Number(t2));
    return lines;
}

// --- the dialog -----------------------------------------------------------------------------------

std::string Enter(Random &random) {
    return random.once(2) ? "! " : " ";
}

std::string Count(Random &random) {
    constexpr const char *odd[] = {"",      "0",           "-1", "x", "65535", "65534",
                                   "65536", "99999999999", "##", "#", "  2 "};
    if (random.once(5)) return odd[random.below(std::size(odd))];
    // Without end, in the midst of a wave, too.
    if (random.once(10)) return "65535";
    return Number(random.once(3) ? 1 : 1 + random.below(6));
}

Lines Duration(Random &random) {
    constexpr const char *odd[] = {"",           "0",           "-5",  "1e9",  "x",
                                   "4294967295", "99999999999", "0.4", "2 ns", "1,000"};
    if (random.once(6)) return {"duration" + Enter(random) + odd[random.below(std::size(odd))]};
    return {"duration" + Enter(random) + Number(random.once(8) ? random.word() : random.below(400))};
}

Lines Value(Random &random) {
    constexpr const char *odd[] = {"", "x", "0x1f", "-1", "fffffffff", "zz", "  a"};
    if (random.once(6)) return {"value" + Enter(random) + odd[random.below(std::size(odd))]};
    char text[16];
    snprintf(text, sizeof text, "%X", random.once(4) ? random.word() : random.below(3));
    return {"value" + Enter(random) + text};
}

// A line for a field that the selection has, or for any.
Lines Field(Random &random) {
    bool any = random.once(10);
    switch (random.below(7)) {
    case 0:
        if (any || SelectionHasDuration()) return Duration(random);
        [[fallthrough]];
    case 1:
    case 2:
        if (any || SelectionHasValue()) return Value(random);
        [[fallthrough]];
    case 3:
        if (any || SelectionHasStates())
            return {(random.once(2) ? "state! " : "state ") + Number(random.below(3))};
        [[fallthrough]];
    case 4:
        if (any || SelectionHasScale()) return {"scaleby" + Enter(random) + Count(random)};
        [[fallthrough]];
    case 5:
        if (any || SelectionHasRepeat()) return {"repeat" + Enter(random) + Count(random)};
        [[fallthrough]];
    default:
        return {random.once(3) ? "forever off" : "forever on"};
    }
}

// --- commands -------------------------------------------------------------------------------------

Lines Clipboard(Random &random) {
    constexpr const char *commands[] = {"cut", "copy", "copy", "paste", "paste", "paste", "delete"};
    return {commands[random.below(std::size(commands))]};
}

Lines Undo(Random &random) {
    Lines lines;
    for (uint32_t undos = random.below(6); undos > 0; undos--) lines.push_back("undo");
    for (uint32_t redos = random.below(6); redos > 0; redos--) lines.push_back("redo");
    return lines;
}

// No name that holds the bits of another one.
std::string FreshName(Random &random) {
    uint32_t number = random.below(40);
    std::string name = "fresh" + Number(number);
    if (random.once(2)) name = "$" + name;
    if (number % 3 == 0) name += "[" + Number(1 + number % 8) + ":0]";
    return name;
}

// A wave with or without its kind, or the kind of one that is there.
Lines New(Random &random) {
    constexpr const char *kinds[] = {"test", "in", "out", "bid", "global"};
    std::string name = FreshName(random);
    if (const Pattern *row = random.once(4) ? AnyRow(random) : nullptr) name = Written(random, row->name());
    if (name.starts_with('$') || random.once(3)) return {"new " + name};
    return {"new " + name + " " + kinds[random.below(std::size(kinds))]};
}

Lines Patterns(Random &random) {
    switch (random.below(10)) {
    case 0:
        return New(random);
    case 1:
        return {"remove " + AnyName(random)};
    case 2:
        return {"show " + AnyName(random)};
    case 3:
        return {"hide " + AnyName(random)};
    default:
        return {"insert " + AnyName(random)};
    }
}

Lines View(Random &random) {
    switch (random.below(5)) {
    case 0:
        return {"scale " + std::to_string(static_cast<int>(random.below(31)) - 26)};
    case 1:
        return {"left " + Number(random.once(2) ? random.word() : random.below(2000))};
    case 2:
        return {"query", "edit"};
    default:
        const Pattern *pattern = AnyRow(random);
        return {"goto " + Number(pattern ? AnyTime(random, pattern) : random.word())};
    }
}

} // namespace

std::vector<std::string> RandomAction(Random &random) {
    uint32_t choice = random.below(100);
    if (choice < 24) return Select(random);
    if (choice < 38) return Drag(random);
    if (choice < 68) return Field(random);
    if (choice < 82) return Clipboard(random);
    if (choice < 90) return Patterns(random);
    if (choice < 95) return View(random);
    return Undo(random);
}
