// dump: the whole document as one JSON object.
#include "dump.h"
#include "commands.h"
#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "load.h"
#include "output.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

Json SettingsJson() {
    return {{"ClockMultiplier", Settings.ClockMultiplier},
            {"BasicUnit", Settings.BasicUnit},
            {"AutoClockAssign", Settings.AutoClockAssign ? 1 : 0},
            {"Decimals", Settings.Decimals},
            {"EndTime", Settings.EndTime},
            {"SpanEnd", WaveView.SpanEnd}};
}

Json TableJson(const StateTable &table) {
    Json rows = Json::array();
    for (uint32_t i = 0; i < table.rowCount; ++i) {
        const StateRow &row = table.rows()[i];
        rows.push_back({{"level", row.level},
                        {"colorIndex", row.colorIndex},
                        {"stateChar", FromLatin1({&row.stateChar, 1})},
                        {"stateName", FromLatin1(row.stateName)},
                        {"stateAbbrev", FromLatin1(row.stateAbbrev)}});
    }
    return {{"tableName", FromLatin1(table.tableName)}, {"rows", std::move(rows)}};
}

Json ItemJson(const PatternItem &item) {
    if (!item.isReference()) return {{"value", item.value()}, {"duration", item.duration()}};
    return {{"patternId", item.patternId()},
            {"repeat", item.repeat()},
            {"scale", item.scale()},
            {"forcedFormat", item.forcedFormat()},
            {"sliceOffset", item.sliceOffset()},
            {"sliceWidth", item.sliceWidth()}};
}

Json PatternJson(Pattern *pattern) {
    TimeVal fullDuration = PatternDuration(pattern);
    Json items = Json::array();
    for (uint32_t i = 0; i < pattern->itemCount; ++i) items.push_back(ItemJson(pattern->item(i)));
    return {{"id", pattern->id},
            {"name", FromLatin1(pattern->name())},
            {"kind", static_cast<uint32_t>(pattern->kind())},
            {"bus", pattern->isBus() ? 1 : 0},
            {"hasProperties", pattern->hasProperties() ? 1 : 0},
            {"clock", pattern->clock()},
            {"stateTable", pattern->stateTable()},
            {"format", static_cast<uint32_t>(pattern->format())},
            {"pinType", pattern->pinType()},
            {"period", pattern->period},
            {"delay", pattern->delay},
            {"duty", pattern->duty},
            {"width", pattern->width},
            {"itemsDuration", pattern->duration},
            {"fullDuration", fullDuration},
            {"items", std::move(items)}};
}

// Prints the members of an array one by one, so that a large document needs no second copy of itself.
class ArrayPrinter {
public:
    explicit ArrayPrinter(const char *key) { printf(",\n\"%s\": [", key); }
    ~ArrayPrinter() { printf("]"); }
    ArrayPrinter(const ArrayPrinter &) = delete;
    ArrayPrinter &operator=(const ArrayPrinter &) = delete;
    void print(const Json &member) {
        printf("%s\n  %s", first ? "" : ",", member.dump().c_str());
        first = false;
    }

private:
    bool first = true;
};

void PrintTables() {
    ArrayPrinter tables("stateTables");
    for (uint32_t i = 0; StateTable *table = StateTableAt(i); ++i) tables.print(TableJson(*table));
}

void PrintPatterns() {
    ArrayPrinter patterns("patterns");
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (PatternInUse(id)) patterns.print(PatternJson(PatternFromId(id)));
    }
}

void PrintRows() {
    ArrayPrinter rows("rows");
    for (uint32_t row = 0; row < WaveView.RowCount; ++row) {
        rows.print(FromLatin1(PatternFromId(WaveRows[row].PatternId)->name()));
    }
}

int Dump(const CommonOptions &options) {
    if (int status = LoadDocumentFile(options)) return status;
    PrintDocument();
    return EXIT_DONE;
}

} // namespace

void PrintDocument() {
    printf("{\"settings\": %s", SettingsJson().dump().c_str());
    PrintTables();
    PrintPatterns();
    PrintRows();
    printf("}\n");
}

void AddDump(CLI::App &program, int &status) {
    auto options = std::make_shared<CommonOptions>();
    CLI::App *command = AddCommand(program, *options, "dump", "Print the whole document as JSON");
    command->callback([options, &status] { status = Dump(*options); });
}
