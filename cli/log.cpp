// log: the entries of an edit log, as they stand in the file.
#include "commands.h"
#include "editlog/edit_log.h"
#include "editlog/record_reader.h"
#include "output.h"
#include <algorithm>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

namespace {

constexpr size_t WORD = 4;

// --- the fields -----------------------------------------------------------------------------------

void PrintField(const char *name, int64_t value) {
    printf(" %s=%lld", name, static_cast<long long>(value));
}

// As `dump` prints names.
void PrintName(const char *field, const std::string &name) {
    printf(" %s=%s", field, nlohmann::json(FromLatin1(name)).dump().c_str());
}

void PrintParams(const LogRecord &record) {
    const LoggedParams &before = record.oldParams, &behind = record.newParams;
    PrintField("oldPeriod", static_cast<int32_t>(before.period));
    PrintField("newPeriod", static_cast<int32_t>(behind.period));
    PrintField("oldDuty", before.duty);
    PrintField("newDuty", behind.duty);
    PrintField("oldStateTable", before.stateTable);
    PrintField("newStateTable", behind.stateTable);
    PrintField("oldClock", before.clock);
    PrintField("newClock", behind.clock);
    PrintField("oldFormat", before.format);
    PrintField("newFormat", behind.format);
    PrintField("oldPinType", before.pinType);
    PrintField("newPinType", behind.pinType);
}

void PrintTiming(const LogRecord &record) {
    PrintField("oldUnit", record.pattern);
    PrintField("oldClockMultiplier", record.oldMultiplier);
    PrintField("newClockMultiplier", record.newMultiplier);
    PrintField("oldEndTime", record.oldEnd);
    PrintField("newEndTime", record.newEnd);
    PrintField("newUnit", record.newUnit);
}

void PrintReference(const LogRecord &record) {
    PrintField("patternId", record.patternId);
    PrintField("scale", record.scale);
    PrintField("repeat", record.repeat);
    PrintField("item", record.item);
    PrintField("sliceWidth", record.sliceWidth);
    PrintField("sliceOffset", record.sliceOffset);
    PrintField("forcedFormat", record.forcedFormat);
    PrintField("kind", record.ownerKind);
}

void PrintTransition(const LogRecord &record) {
    PrintField("value", record.value);
    PrintField("duration", record.duration);
    PrintField("item", record.item);
}

void PrintOldAndNew(const LogRecord &record) {
    PrintField("old", record.oldValue);
    PrintField("new", record.newValue);
    if (record.kind != RecDelay) PrintField("item", record.item);
}

void PrintNames(const LogRecord &record) {
    PrintName("old", record.oldName);
    PrintName("new", record.newName);
}

void PrintPattern(const LogRecord &record) {
    PrintField("width", record.width);
    PrintName("name", record.name);
}

void PrintRow(const LogRecord &record) {
    PrintField("row", record.item);
}

struct RecordPrinter {
    uint16_t kind;
    const char *name;
    void (*print)(const LogRecord &record); // what stands behind the pattern
};
constexpr RecordPrinter printers[] = {
    {RecDelay, "RecDelay", PrintOldAndNew},
    {RecItemValue, "RecItemValue", PrintOldAndNew},
    {RecItemDuration, "RecItemDuration", PrintOldAndNew},
    {RecItemRepeat, "RecItemRepeat", PrintOldAndNew},
    {RecItemScale, "RecItemScale", PrintOldAndNew},
    {RecItemFormat, "RecItemFormat", PrintOldAndNew},
    {RecPatternParams, "RecPatternParams", PrintParams},
    {RecRename, "RecRename", PrintNames},
    {RecTiming, "RecTiming", PrintTiming},
    {RecDeleteTransition, "RecDeleteTransition", PrintTransition},
    {RecInsertTransition, "RecInsertTransition", PrintTransition},
    {RecDeleteReference, "RecDeleteReference", PrintReference},
    {RecInsertReference, "RecInsertReference", PrintReference},
    {RecDeletePattern, "RecDeletePattern", PrintPattern},
    {RecCreatePattern, "RecCreatePattern", PrintPattern},
    {RecRemoveRow, "RecRemoveRow", PrintRow},
    {RecInsertRow, "RecInsertRow", PrintRow},
};

// False for a record that is damaged.
bool PrintRecord(unsigned long long offset, std::span<const uint8_t> payload) {
    LogRecord record;
    if (!ReadRecord(payload, record)) return false;
    const auto *printer = std::find_if(std::begin(printers), std::end(printers),
                                       [&](const RecordPrinter &each) { return each.kind == record.kind; });
    if (printer == std::end(printers)) return false;
    printf("%llu %s", offset, printer->name);
    if (record.kind != RecTiming) PrintField("pattern", record.pattern);
    printer->print(record);
    printf("\n");
    return true;
}

// --- the entries ----------------------------------------------------------------------------------

using File = std::unique_ptr<FILE, decltype(&fclose)>;

// Appends up to `size` bytes of the file, of which there may be fewer. A damaged length may be large, so the
// room grows with what is there.
void Read(FILE *file, size_t size, std::vector<uint8_t> &bytes) {
    constexpr size_t PIECE = 65536;
    size_t count = 1;
    while (size > 0 && count > 0) {
        size_t before = bytes.size();
        bytes.resize(before + std::min(size, PIECE));
        count = fread(bytes.data() + before, 1, bytes.size() - before, file);
        bytes.resize(before + count);
        size -= count;
    }
}

// What stands behind the length word, of which `entry` holds the bytes; false if that is damaged.
bool ReadEntry(FILE *file, std::vector<uint8_t> &entry) {
    if (entry.size() < WORD) return false;
    uint32_t length = LogWordAt(entry.data());
    if (length == ACTION_MARK) return true;
    if (length < ENTRY_FRAME || length % WORD != 0) return false;
    Read(file, length - WORD, entry);
    return entry.size() == length && LogWordAt(entry.data() + length - WORD) == length;
}

bool PrintEntry(unsigned long long offset, const std::vector<uint8_t> &entry) {
    if (entry.size() > WORD) {
        return PrintRecord(offset, std::span(entry).subspan(WORD, entry.size() - ENTRY_FRAME));
    }
    printf("%llu mark\n", offset);
    return true;
}

int PrintEntries(FILE *file, const std::string &name) {
    unsigned long long offset = 0;
    std::vector<uint8_t> entry;
    while (true) {
        entry.clear();
        Read(file, WORD, entry);
        if (entry.empty() && !ferror(file)) return EXIT_DONE;
        bool good = ReadEntry(file, entry);
        if (ferror(file)) {
            PrintError(name, "cannot be read");
            return EXIT_BAD_USAGE;
        }
        if (!good || !PrintEntry(offset, entry)) {
            PrintError(name, "damaged entry at offset " + std::to_string(offset));
            return EXIT_BAD_DOCUMENT;
        }
        offset += entry.size();
    }
}

int Log(const std::string &path) {
    bool readable = CanAccessFile(path.c_str(), FileAccess::Read);
    File file(readable ? fopen(path.c_str(), "rb") : nullptr, fclose);
    if (file) return PrintEntries(file.get(), path);
    PrintError(path, "cannot be read");
    return EXIT_BAD_USAGE;
}

} // namespace

void AddLog(CLI::App &program, int &status) {
    auto path = std::make_shared<std::string>();
    CLI::App *command = AddPlainCommand(program, "log", "Print the entries of an edit log");
    command->add_option("LOGFILE", *path, "edit log")->required();
    command->callback([path, &status] { status = Log(*path); });
}
