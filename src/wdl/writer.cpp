#include "wdl/writer.h"

#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "integration/suite/message_service.h"
#include "platform/text_file.h"
#include "shell/file_names.h"
#include "store/pattern_store.h"
#include "store/state_table.h"
#include "wdl/lexer.h"
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <iterator>

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

// The reader takes these at the start of a statement for something else than a name. A closing bracket that
// closes nothing hides them, and is no part of the name.
void AppendStatementName(const Pattern *pattern) {
    if (strchr("{=%;,", *pattern->name())) Append("]");
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

void AppendProperties(const Pattern *pattern) {
    char block[128];
    snprintf(block, sizeof block, "{ %c %s %.7s %s %" PRId32 " %" PRId32 " %u } ",
             ClockLetter(pattern->clock()), PinTypeName(pattern->pinType()),
             StateTableOrDefault(pattern->stateTable())->tableName,
             FormatName(static_cast<uint32_t>(pattern->format())), static_cast<int32_t>(pattern->delay),
             pattern->period, pattern->duty);
    Append(block);
}

void BuildItems(const Pattern *pattern);

// A composite reads as one from its first "+" on, which has to stand behind the first member. Members without
// names have no "+"; but where a named one comes later, its own would be too late.
bool NeedsPlus(const Pattern *pattern, uint32_t index) {
    if (pattern->kind() == PatternKind::Plain || index != 1) return false;
    for (uint32_t i = 2; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (item.isReference() && PatternFromId(item.patternId())->nameLength != 0) return true;
    }
    return false;
}

// The reader takes "##" at the end of a node alone; elsewhere the number says the same.
bool ReadsForever(const Pattern *pattern, uint32_t index) {
    return pattern->hasProperties() && index + 1 == pattern->itemCount &&
           pattern->item(index).forcedFormat() == 0;
}

void AppendReference(const Pattern *pattern, uint32_t index) {
    const PatternItem &item = pattern->item(index);
    const Pattern *target = PatternFromId(item.patternId());
    if (target->nameLength != 0) {
        Append(index != 0 && pattern->kind() != PatternKind::Plain ? "+" : " ");
        Append(target->name());
        Append(" ");
    } else {
        Append(NeedsPlus(pattern, index) ? "+(" : "(");
        BuildItems(target);
        Append(")");
    }
    if (item.scale() != 1) AppendMarked('*', item.scale());
    if (item.repeat() == REPEAT_FOREVER && ReadsForever(pattern, index)) {
        Append("## ");
    } else if (item.repeat() != 1) {
        AppendMarked('#', item.repeat());
    }
    if (item.forcedFormat() != 0) {
        char format[8];
        snprintf(format, sizeof format, "@%s ", FormatName(item.forcedFormat()));
        Append(format);
    }
}

void AppendTransition(const PatternItem &item, bool isBus, bool isFirst) {
    MakeRoom(DATA_ITEM_SIZE);
    if (!isFirst) *WdlOutPos++ = ' ';
    if (isBus) {
        AppendUnsigned(item.value(), 16);
    } else {
        AppendSigned(static_cast<int32_t>(item.value()));
    }
    *WdlOutPos++ = ' ';
    AppendUnsigned(item.duration());
}

void BuildItems(const Pattern *pattern) {
    bool isBus = pattern->isBus();
    for (uint32_t i = 0; i < pattern->itemCount; ++i) {
        const PatternItem &item = pattern->item(i);
        if (item.isReference()) {
            AppendReference(pattern, i);
        } else {
            AppendTransition(item, isBus, i == 0);
        }
        if (WdlOutPos - WdlOutLine > WRAP_COLUMN) {
            EndLine();
            Append("  ");
        }
    }
}

void BuildStatement(const Pattern *pattern) {
    WdlOutPos = WdlOutLine;
    if (pattern->nameLength != 0) {
        AppendStatementName(pattern);
        Append(" ");
        if (pattern->hasProperties()) AppendProperties(pattern);
        Append("= ");
    }
    BuildItems(pattern);
    Append(";");
    EndLine();
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

void WriteWaveList(const char *path) {
    TextWriter file(path);
    if (!file.isOpen()) return;
    for (uint32_t row = 0; row < WaveView.RowCount; ++row) {
        file.write("Wave ");
        file.write(PatternFromId(WaveRows[row].PatternId)->name());
        file.write("\n");
    }
    file.close();
}

void BroadcastFileSaved(const char *path) {
    constexpr uint32_t stimulusFiles = 7; // the class of the message, and its detail
    constexpr uint32_t fileWritten = 2;
    ServiceString string = MRStrCreate(path);
    if (string == 0) return;
    MRBroadcastMsg(stimulusFiles, fileWritten, string);
    MRStrDestroy(string);
}

} // namespace

void WriteWdlText(TextSink sink, void *context) {
    outSink = sink;
    outContext = context;
    WriteHeader();
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        if (pattern->nameLength != 0 && pattern->kind() != PatternKind::Reference) BuildStatement(pattern);
    }
    // These last: they are rebuilt from their names, when what they look at is there.
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        if (pattern->nameLength == 0 || pattern->kind() != PatternKind::Reference) continue;
        WdlOutPos = WdlOutLine;
        AppendStatementName(pattern);
        Append(";");
        EndLine();
    }
}

void WriteWdlFile(char *path) {
    int held = LogHoldOpen(1);
    TextWriter WdlOutFile(path);
    if (WdlOutFile.isOpen()) {
        WriteWdlText(
            [](const char *text, int length, void *context) {
                static_cast<TextWriter *>(context)->write({text, static_cast<size_t>(length)});
            },
            &WdlOutFile);
        WdlOutFile.close();
        BroadcastFileSaved(path);
        if (SetExtension(path, ".kel")) WriteWaveList(path);
    }
    LogHoldOpen(held);
}
