// render: draws the document as the editor's window would show it.
#include "commands.h"
#include "config/settings.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "headless/picture.h"
#include "load.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <memory>

namespace {

struct RenderOptions : CommonOptions {
    std::string picture;
    std::string rows;
    bool rowsGiven = false;
    TimeVal from = 0, to = 0;
    bool toGiven = false;
    int width = 1000;
    int scale = 1;
    bool sync = false;
};

// Takes the names apart. A comma may be part of a name, too: then what is no name by itself goes on behind
// it.
bool NamedRows(const RenderOptions &options, std::vector<uint16_t> &rows) {
    size_t start = 0;
    while (start <= options.rows.size()) {
        const Pattern *pattern = nullptr;
        size_t end = start;
        while (!pattern && end < options.rows.size()) {
            end = options.rows.find(',', end + 1);
            if (end == std::string::npos) end = options.rows.size();
            pattern = FindPattern(options.rows.substr(start, end - start).c_str());
        }
        if (!pattern) {
            size_t comma = options.rows.find(',', start);
            FindNamedPattern(options, options.rows.substr(start, comma - start));
            return false;
        }
        rows.push_back(pattern->id);
        start = end + 1;
    }
    return true;
}

std::vector<uint16_t> WaveListRows() {
    std::vector<uint16_t> rows;
    for (uint32_t row = 0; row < WaveView.RowCount; ++row) rows.push_back(WaveRows[row].PatternId);
    return rows;
}

std::vector<uint16_t> AllNodes() {
    std::vector<uint16_t> rows;
    for (uint32_t id = 1; id <= HighestPatternId; ++id) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        bool isNode = pattern->hasProperties() && pattern->kind() != PatternKind::Reference;
        if (isNode) rows.push_back(static_cast<uint16_t>(id));
    }
    return rows;
}

int Render(const RenderOptions &options) {
    if (int status = LoadDocumentFile(options)) return status;
    Settings.ShowSyncActivity = options.sync;
    PictureRequest request;
    request.path = options.picture.c_str();
    request.from = options.from;
    request.to = options.toGiven ? options.to : WaveView.SpanEnd;
    request.fitRange = true;
    request.width = options.width;
    request.scale = options.scale;
    if (options.rowsGiven) {
        if (!NamedRows(options, request.rows)) return EXIT_BAD_DOCUMENT;
    } else {
        request.rows = WaveListRows();
        if (request.rows.empty()) request.rows = AllNodes();
    }
    std::string error;
    if (RenderPicture(request, error)) return EXIT_DONE;
    PrintError(options.picture, error);
    return EXIT_BAD_USAGE;
}

} // namespace

void AddRender(CLI::App &program, int &status) {
    auto options = std::make_shared<RenderOptions>();
    CLI::App *command =
        AddCommand(program, *options, "render", "Draw the document as the editor would show it");
    command->add_option("-o", options->picture, "picture to write: .png, .svg or .pdf by its extension")
        ->type_name("PICTURE")
        ->required();
    AddTime(command, "--from", options->from, "start of the range; 0 if left out");
    CLI::Option *to =
        AddTime(command, "--to", options->to, "end of the range; the end of the span if left out");
    command->add_option("--width", options->width, "width of the wave pane in pixels; 1000 if left out")
        ->type_name("PX")
        ->check(CLI::Range(1, 32767).description(""));
    CLI::Option *rows = command
                            ->add_option("--rows", options->rows,
                                         "rows to draw; those of the wave list, else all nodes, if left out")
                            ->type_name("NAME,NAME...");
    command->add_option("--scale", options->scale, "magnifies a PNG by this whole number")
        ->type_name("N")
        ->check(CLI::Range(1, 32767).description(""));
    command->add_flag("--sync", options->sync, "shows the phases of clocked formats");
    command->callback([options, rows, to, &status] {
        options->rowsGiven = rows->count() != 0;
        options->toGiven = to->count() != 0;
        status = Render(*options);
    });
}
