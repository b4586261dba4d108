#include "wdl/writer.h"

#include "config/settings.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/signal_name.h"
#include "store/state_table.h"
#include "wdl/lexer.h"
#include "wdl/statement_order.h"
#include <algorithm>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <vector>

namespace {

constexpr int WDL_OUT_LINE_SIZE = 2052;
// A line ends behind the item that passes this column.
constexpr int WRAP_COLUMN = 60;
// Room for a data item: two blanks and two numbers.
constexpr int DATA_ITEM_SIZE = 32;

// The output line being built, and the next free place in it. A line is never longer than one that can be
// read back, so that there is always room.
char WdlOutLine[WDL_OUT_LINE_SIZE];
char *WdlOutPos = WdlOutLine;

// Where the text goes. Set by WriteWdlText.
TextSink outSink = nullptr;
void *outContext = nullptr;

void EndLine() {
    *WdlOutPos++ = '\n';
    outSink(WdlOutLine, static_cast<int>(WdlOutPos - WdlOutLine), outContext);
    WdlOutPos = WdlOutLine;
}

// Goes on in a new line if `length` more characters would make one that cannot be read back.
void MakeRoom(size_t length) {
    auto used = static_cast<size_t>(WdlOutPos - WdlOutLine);
    if (used > 0 && used + length > WDL_LINE_LIMIT) EndLine();
}

void Append(const char *text) {
    size_t length = strlen(text);
    MakeRoom(length);
    if (length > WDL_LINE_LIMIT) {
        // No name that was read is as long as this; but none is cut.
        outSink(text, static_cast<int>(length), outContext);
        return;
    }
    memcpy(WdlOutPos, text, length);
    WdlOutPos += length;
}

void AppendUnsigned(uint32_t number, int base = 10) {
    WdlOutPos = std::to_chars(WdlOutPos, WdlOutPos + DATA_ITEM_SIZE / 2, number, base).ptr;
}

void AppendSigned(int32_t number) {
    WdlOutPos = std::to_chars(WdlOutPos, WdlOutPos + DATA_ITEM_SIZE / 2, number).ptr;
}

void AppendMarked(char mark, uint32_t number) {
    MakeRoom(DATA_ITEM_SIZE);
    *WdlOutPos++ = mark;
    AppendUnsigned(number);
    *WdlOutPos++ = ' ';
}

// A closing bracket that closes nothing hides what a name begins with, and is no part of the name.
void AppendStatementName(const Pattern *pattern) {
    if (NeedsBracket(pattern->name())) Append("]");
    Append(pattern->name());
}

const char *FormatName(uint32_t format) {
    constexpr const char *names[] = {"None", "NRZ", "RZ", "R1", "RC"};
    return format < std::size(names) ? names[format] : names[0];
}

const char *PinTypeName(uint32_t pinType) {
    constexpr const char *names[] = {"Test", "In", "Out", "Bid", "Global"};
    return pinType < std::size(names) ? names[pinType] : names[0];
}

char ClockLetter(uint32_t clock) {
    // There is no "H", though the reader knows it.
    constexpr char letters[] = "ZABCDEFGI";
    return clock < std::size(letters) - 1 ? letters[clock] : letters[0];
}

// The name of the state table, or, for one with a character that ends a word of the block, one that means the
// first table.
const char *TableName(uint32_t stateTable) {
    const char *name = StateTableOrDefault(stateTable)->tableName;
    return strpbrk(name, BLOCK_SEPARATORS) ? "Default" : name;
}

void AppendProperties(const Pattern *pattern) {
    char block[128];
    snprintf(block, sizeof block, "{ %c %s %.7s %s %" PRId32 " %" PRId32 " %u } ",
             ClockLetter(pattern->clock()), PinTypeName(pattern->pinType()), TableName(pattern->stateTable()),
             FormatName(static_cast<uint32_t>(pattern->format())), static_cast<int32_t>(pattern->delay),
             pattern->period, pattern->duty);
    Append(block);
}

void BuildItems(const Pattern *pattern, bool isBus);

// A composite reads as one from its first "+" on, which has to stand behind the first member. Members without
// names have no "+" but there.
bool NeedsPlus(const Pattern *pattern, uint32_t index, bool isNamed) {
    return (isNamed ? index != 0 : index == 1) && ReadsAsComposite(pattern);
}

// The reader takes "##" at the end of a node alone; elsewhere the number says the same.
bool ReadsForever(const Pattern *pattern, uint32_t index) {
    return pattern->hasProperties() && index + 1 == pattern->itemCount &&
           pattern->item(index).forcedFormat() == 0;
}

void AppendReference(const Pattern *pattern, uint32_t index, bool isBus) {
    const PatternItem &item = pattern->item(index);
    const Pattern *target = PatternFromId(item.patternId());
    if (target->nameLength != 0) {
        Append(NeedsPlus(pattern, index, true) ? "+" : " ");
        Append(target->name());
        Append(" ");
    } else {
        Append(NeedsPlus(pattern, index, false) ? "+(" : "(");
        BuildItems(target, isBus);
        Append(")");
    }
    if (item.scale() != 1) AppendMarked('*', item.scale());
    if (item.repeat() == REPEAT_FOREVER && ReadsForever(pattern, index)) {
        Append("## ");
    } else if (item.repeat() != 1) {
        AppendMarked('#', item.repeat());
    }
    if (item.forcedFormat() != 0 && item.forcedFormat() <= static_cast<uint32_t>(SignalFormat::RC)) {
        char format[8];
        snprintf(format, sizeof format, "@%s ", FormatName(item.forcedFormat()));
        Append(format);
    }
}

void AppendTransition(const Pattern *pattern, uint32_t index, bool isBus) {
    const PatternItem &item = pattern->item(index);
    MakeRoom(DATA_ITEM_SIZE);
    if (index != 0) *WdlOutPos++ = NeedsPlus(pattern, index, false) ? '+' : ' ';
    if (isBus) {
        AppendUnsigned(item.value(), 16);
    } else {
        AppendSigned(static_cast<int32_t>(item.value()));
    }
    *WdlOutPos++ = ' ';
    AppendUnsigned(item.duration());
}

// `isBus` is that of the statement's pattern, which the reader gives to all that is nested in it.
void BuildItems(const Pattern *pattern, bool isBus) {
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        if (pattern->item(i).isReference()) {
            AppendReference(pattern, i, isBus);
        } else {
            AppendTransition(pattern, i, isBus);
        }
        if (WdlOutPos - WdlOutLine > WRAP_COLUMN) {
            EndLine();
            Append("  ");
        }
    }
}

void BuildStatement(Statement statement) {
    const Pattern *pattern = PatternFromId(statement.id);
    WdlOutPos = WdlOutLine;
    AppendStatementName(pattern);
    // What a reference pattern looks at is found by its name.
    if (pattern->kind() != PatternKind::Reference) {
        Append(" ");
        if (pattern->hasProperties() && !statement.isEmpty) AppendProperties(pattern);
        Append("= ");
        if (!statement.isEmpty) BuildItems(pattern, pattern->isBus());
    }
    Append(";");
    EndLine();
}

// The nested patterns that are written with a pattern, at most MAX_PATTERNS. `counts` has those of the nested
// ones that have been counted, and 1 more.
uint32_t CountNests(const Pattern *pattern, std::vector<uint32_t> &counts) {
    if (counts[pattern->id] != 0) return counts[pattern->id] - 1;
    uint32_t count = 0;
    for (uint32_t i = 0; i < pattern->itemCount && ReferenceItems[pattern->id] != 0; ++i) {
        const PatternItem &item = pattern->item(i);
        if (!item.isReference() || PatternFromId(item.patternId())->nameLength != 0) continue;
        count = std::min(MAX_PATTERNS, count + 1 + CountNests(PatternFromId(item.patternId()), counts));
    }
    counts[pattern->id] = count + 1;
    return count;
}

bool HasRoomForNests() {
    std::vector<uint32_t> counts(HighestPatternId + 1u);
    uint32_t patterns = 0;
    for (uint16_t id = 1; id <= HighestPatternId && patterns < MAX_PATTERNS; ++id) {
        if (!PatternInUse(id) || PatternFromId(id)->nameLength == 0) continue;
        patterns += 1 + CountNests(PatternFromId(id), counts);
    }
    return patterns < MAX_PATTERNS;
}

// The strip cuts what is longer than it can show; a long name leaves room for what is said about it.
void TellLeftOut(uint16_t id) {
    char text[256];
    snprintf(text, sizeof text, "Pattern %.180s cannot be saved in a file", PatternFromId(id)->name());
    ShowErrorStrip(text);
}

void WriteHeader() {
    char text[256];
    int length = snprintf(text, sizeof text,
                          "%%MASTERCLOCKMULT = %" PRId32 ";\n"
                          "%%SMALLESTUNIT    = %" PRId32 ";\n"
                          "%%AUTOASSIGN      = %d;\n"
                          "%%DECIMALS        = %" PRId32 ";\n"
                          "%%ENDTIME         = %" PRIu32 ";\n",
                          static_cast<int32_t>(Settings.ClockMultiplier), Settings.BasicUnit,
                          Settings.AutoClockAssign ? 1 : 0, Settings.Decimals, Settings.EndTime);
    outSink(text, length, outContext);
}

} // namespace

bool WriteWdlText(TextSink sink, void *context) {
    if (!HasRoomForNests()) return false;
    outSink = sink;
    outContext = context;
    WriteHeader();
    StatementOrder order = OrderStatements();
    for (Statement statement : order.statements) BuildStatement(statement);
    if (order.leftOut != 0) TellLeftOut(order.leftOut);
    return true;
}
