#include "display/data_listing.h"

#include "store/pattern_store.h"
#include "store/state_table.h"
#include "store/time_value.h"
#include <cstdio>
#include <string>

namespace {

struct Listing {
    ListingSink addLine;
    void *context;
    uint32_t ListingIndent = 0; // blanks in front of a line
    uint32_t ListingLines = 0;  // lines that were taken
    uint32_t ListingStateTable = 0;
    bool full = false; // a line was not taken

    void add(const std::string &line) {
        if (full) return;
        full = !addLine(line.c_str(), context);
        if (!full) ++ListingLines;
    }
    std::string indent() const { return std::string(ListingIndent, ' '); }
};

const Pattern *ReferredPattern(const PatternItem &item) {
    return item.isReference() && PatternInUse(item.patternId()) ? PatternFromId(item.patternId()) : nullptr;
}

std::string Ordinal(int n) {
    return std::to_string(n) + (n == 1 ? "st" : n == 2 ? "nd" : "th");
}

// Which bits of the bus a reference shows, counted from the highest one.
std::string BitsText(const PatternItem &item, int width) {
    int last = width - static_cast<int>(item.sliceOffset());
    int first = item.sliceWidth() ? last - static_cast<int>(item.sliceWidth()) + 1 : last;
    if (first == last) return Ordinal(first) + " bit";
    // A last bit below the third reads as the first one does; this is meant.
    return Ordinal(first) + " thru " + Ordinal(last >= 3 ? last : first) + " bits";
}

// The name, right-aligned in a column of 10.
std::string NameColumn(const char *name) {
    std::string text = name;
    if (text.size() < 10) text.insert(0, 10 - text.size(), ' ');
    return "  " + text;
}

void ListReference(Listing &listing, const Pattern *pattern) {
    listing.add(std::string(pattern->name()) + " - Reference");
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        const Pattern *target = ReferredPattern(item);
        if (!target) continue;
        std::string line = NameColumn(target->name());
        if (target->width != 1) line += " - " + BitsText(item, target->width);
        listing.add(line);
    }
}

// Lower-case digits for the whole width, whatever the radix of the display.
std::string BusText(uint32_t value, uint32_t width) {
    if (width < 32) value &= (1u << width) - 1;
    char digits[16];
    int count = snprintf(digits, sizeof digits, "%x", value);
    size_t wanted = (width + 3) / 4;
    std::string text(digits, static_cast<size_t>(count));
    if (text.size() < wanted) text.insert(0, wanted - text.size(), '0');
    return text;
}

void ListData(Listing &listing, const Pattern *pattern, const PatternItem &item) {
    std::string value;
    if (pattern->isBus()) {
        value = BusText(item.value(), pattern->width);
    } else {
        value = StateRowOf(StateTableOrDefault(listing.ListingStateTable), item.value()).stateChar;
    }
    char duration[TIME_TEXT_SIZE];
    listing.add(listing.indent() + "Data - " + value + " - " + TimePlainText(item.duration(), duration));
}

std::string TopLine(Listing &listing, const Pattern *pattern, const char *name) {
    std::string line = name;
    if (pattern->isBus()) {
        line += " - Bus [" + std::to_string(pattern->width) + "]";
    } else {
        line += " - Bit";
    }
    if (pattern->delay == 0) return line;
    listing.add(line);
    return std::string("  Offset ") + TimeFormat(pattern->delay);
}

std::string UseLine(const Listing &listing, const PatternItem &use, const char *name) {
    std::string line = listing.indent() + name;
    if (use.scale() > 1) line += " Scale " + std::to_string(use.scale());
    if (use.repeat() == REPEAT_FOREVER) {
        line += " Repeat Forever";
    } else if (use.repeat() >= 2) {
        line += " Repeat " + std::to_string(use.repeat());
    }
    return line;
}

// `use` is the item that refers to the pattern, null at the top.
void ListPattern(Listing &listing, const Pattern *pattern, const PatternItem *use) {
    const char *name = pattern->nameLength ? pattern->name() : "(...)";
    listing.add(use ? UseLine(listing, *use, name) : TopLine(listing, pattern, name));
    listing.ListingIndent += 2;
    for (uint32_t i = 0; i < pattern->itemCount && !listing.full; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference()) {
            ListData(listing, pattern, item);
        } else if (const Pattern *target = ReferredPattern(item)) {
            ListPattern(listing, target, &item);
        }
    }
    listing.ListingIndent -= 2;
}

} // namespace

uint32_t ListPatternData(const Pattern *pattern, ListingSink addLine, void *context) {
    Listing listing = {addLine, context};
    if (pattern->kind() == PatternKind::Reference) {
        ListReference(listing, pattern);
    } else {
        // The scalars inside a bus show their states by the first table.
        if (!pattern->isBus()) listing.ListingStateTable = pattern->stateTable();
        ListPattern(listing, pattern, nullptr);
    }
    return listing.ListingLines;
}
