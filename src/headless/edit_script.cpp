#include "headless/edit_script.h"

#include "display/composition.h"
#include "display/drag_preview.h"
#include "display/overlay.h"
#include "display/panes.h"
#include "display/row_metrics.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "document/document.h"
#include "edit/browsers.h"
#include "edit/clipboard.h"
#include "edit/edit_dialog.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "headless/clipboard.h"
#include "headless/edit_dialog.h"
#include "headless/headless.h"
#include "shell/commands.h"
#include "shell/jump_commands.h"
#include "shell/mode_gestures.h"
#include "shell/reporting.h"
#include "shell/view_gestures.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <charconv>
#include <iterator>
#include <span>
#include <vector>

namespace {

// --- a line's arguments ---------------------------------------------------------------------------

constexpr std::string_view BLANKS = " \t";

struct Arguments {
    std::string name;
    TimeVal time = 0, time2 = 0;
    uint32_t number = 0;
    int32_t scale = 0;
    int kind = 0; // of a new wave
    bool on = false;
    std::string text;
    const ScriptOutput *output = nullptr;
};

std::vector<std::string_view> WordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    while (true) {
        size_t start = text.find_first_not_of(BLANKS);
        if (start == std::string_view::npos) return words;
        text.remove_prefix(start);
        words.push_back(text.substr(0, text.find_first_of(BLANKS)));
        text.remove_prefix(words.back().size());
    }
}

std::string_view Trimmed(std::string_view text) {
    size_t start = text.find_first_not_of(BLANKS);
    if (start == std::string_view::npos) return "";
    return text.substr(start, text.find_last_not_of(BLANKS) - start + 1);
}

bool ReadNumber(std::string_view word, uint32_t &number) {
    auto [stop, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && stop == word.data() + word.size();
}

bool ReadScale(std::string_view word, int32_t &scale) {
    bool negative = word.starts_with('-');
    uint32_t number;
    if (!ReadNumber(word.substr(negative ? 1 : 0), number)) return false;
    if (number > (negative ? 26u : 4u)) return false;
    scale = negative ? -static_cast<int32_t>(number) : static_cast<int32_t>(number);
    return true;
}

bool ReadKind(std::string_view word, int &kind) {
    constexpr std::string_view kinds[] = {"test", "in", "out", "bid", "global"};
    const auto *found = std::find(std::begin(kinds), std::end(kinds), word);
    kind = static_cast<int>(found - kinds);
    return found != std::end(kinds);
}

bool ReadSwitch(std::string_view word, bool &on) {
    on = word == "on";
    return on || word == "off";
}

using Words = std::span<const std::string_view>;

// What a line may have behind its first word; each reads it into `arguments`.
bool Nothing(Words words, Arguments &) {
    return words.empty();
}
bool Name(Words words, Arguments &arguments) {
    if (words.size() != 1) return false;
    arguments.name = words[0];
    return true;
}
bool NameTime(Words words, Arguments &arguments) {
    return words.size() == 2 && Name(words.first(1), arguments) && ReadNumber(words[1], arguments.time);
}
bool NameTimes(Words words, Arguments &arguments) {
    return words.size() == 3 && NameTime(words.first(2), arguments) && ReadNumber(words[2], arguments.time2);
}
bool Time(Words words, Arguments &arguments) {
    return words.size() == 1 && ReadNumber(words[0], arguments.time);
}
bool Number(Words words, Arguments &arguments) {
    return words.size() == 1 && ReadNumber(words[0], arguments.number);
}
bool Scale(Words words, Arguments &arguments) {
    return words.size() == 1 && ReadScale(words[0], arguments.scale);
}
bool Switch(Words words, Arguments &arguments) {
    return words.size() == 1 && ReadSwitch(words[0], arguments.on);
}
bool NewWave(Words words, Arguments &arguments) {
    if (words.empty() || words.size() > 2) return false;
    arguments.name = words[0];
    arguments.kind = words[0].starts_with('$') ? NEW_WAVE_PATTERN : 0;
    if (words.size() == 1) return true;
    return arguments.kind != NEW_WAVE_PATTERN && ReadKind(words[1], arguments.kind);
}
// Takes the rest of the line, whatever it is.
bool Text(Words, Arguments &) {
    return true;
}

// --- what is there --------------------------------------------------------------------------------

uint32_t RowOf(const std::string &name) {
    const Pattern *pattern = FindPattern(name.c_str());
    if (!pattern) return NO_ROW;
    for (uint32_t row = 0; row < WaveView.RowCount; row++) {
        if (WaveRows[row].PatternId == pattern->id) return row;
    }
    return NO_ROW;
}

bool HasRow(const Arguments &arguments) {
    return RowOf(arguments.name) != NO_ROW;
}
bool HasPattern(const Arguments &arguments) {
    return FindPattern(arguments.name.c_str()) != nullptr;
}
bool Always(const Arguments &) {
    return true;
}

template <uint32_t id>
bool CommandAllowed(const Arguments &) {
    return CommandIsAllowed(id);
}
// --- rows -----------------------------------------------------------------------------------------

void ShowPattern(const Arguments &arguments) {
    ShowPatterns({&arguments.name, 1});
}

void HidePattern(const Arguments &arguments) {
    SelectRowHighlight(RowOf(arguments.name), true);
    DispatchCommand(COMMAND_HIDE);
}

// --- the view -------------------------------------------------------------------------------------

void SetScale(const Arguments &arguments) {
    WaveView.Scale = arguments.scale;
}
void SetLeft(const Arguments &arguments) {
    WaveView.ViewLeft = std::min(arguments.time, WaveView.SpanEnd);
}

// --- the mouse ------------------------------------------------------------------------------------

void PressWith(const Arguments &arguments, bool shift) {
    LeftPressedAt(Pane::Wave, {arguments.time, RowOf(arguments.name)}, {shift, false});
}
void Press(const Arguments &arguments) {
    PressWith(arguments, false);
}
void ShiftPressed(const Arguments &arguments) {
    PressWith(arguments, true);
}

void MoveTo(TimeVal time) {
    MouseMovedTo({time, Mouse.row});
}
void Move(const Arguments &arguments) {
    MoveTo(arguments.time);
}
void ReleaseAt(TimeVal time) {
    MoveTo(time);
    LeftReleasedAt({time, Mouse.row});
}
void Release(const Arguments &arguments) {
    ReleaseAt(arguments.time);
}
void SelectTimes(const Arguments &arguments) {
    Press(arguments);
    ReleaseAt(arguments.time2);
}

// --- the dialog -----------------------------------------------------------------------------------

template <uint16_t id>
bool FieldEnabled(const Arguments &) {
    return HeadlessEditDialog.open && HeadlessEditDialog.enabled[id];
}
template <uint16_t id, bool enter>
void TypeField(const Arguments &arguments) {
    HeadlessTypeField(id, arguments.text, enter);
}

bool HasState(const Arguments &arguments) {
    return FieldEnabled<EDIT_STATES>(arguments) && arguments.number < HeadlessEditDialog.states.size();
}
template <bool dblClick>
void ChooseState(const Arguments &arguments) {
    HeadlessPickState(static_cast<int32_t>(arguments.number), dblClick);
}

void SwitchForever(const Arguments &arguments) {
    HeadlessClickForever(arguments.on);
}

// --- commands -------------------------------------------------------------------------------------

template <uint32_t id>
void RunCommand(const Arguments &) {
    DispatchCommand(id);
}

// As a jump command does it.
void GoTo(const Arguments &arguments) {
    ShowErrorStrip(nullptr);
    CommandState.CursorMode = CURSOR_QUERY;
    CommandState.CommandPhase = PHASE_IDLE;
    int held = LogHoldOpen(1);
    JumpToTime(arguments.time);
    FinishCommand();
    LogHoldOpen(held);
    UpdateCommands();
}

// --- patterns -------------------------------------------------------------------------------------

bool MayInsert(const Arguments &arguments) {
    return MayInsertPattern(arguments.name.c_str());
}
void Insert(const Arguments &arguments) {
    InsertPattern(arguments.name.c_str());
}

bool MayAdd(const Arguments &arguments) {
    return !NewWaveName(arguments.name, arguments.kind).empty();
}
void Add(const Arguments &arguments) {
    AddNewWave(arguments.name, arguments.kind);
}

bool MayRemove(const Arguments &arguments) {
    return HasPattern(arguments) && MayRemovePatterns({&arguments.name, 1});
}
void Remove(const Arguments &arguments) {
    RemovePatterns({&arguments.name, 1});
}

// --- what is printed ------------------------------------------------------------------------------

std::string FrameText(const SelFrame &frame) {
    std::string text = " ";
    for (uint32_t number :
         {frame.start, frame.end, frame.repeatIndex, uint32_t{frame.patternId}, uint32_t{frame.item}}) {
        text += " " + std::to_string(number);
    }
    return text + "\n";
}

std::string StatusText() {
    std::string text = std::to_string(EditSelection.SelKind) + " " + SelectionText() + "\n";
    if (EditSelection.SelKind == SEL_NONE) return text;
    for (uint32_t i = 0; i < EditSelection.SelDepth; i++) text += FrameText(EditSelection.SelFrames[i]);
    return text;
}

std::string PromptLine() {
    return std::string(PromptText) + "\t" + Headless.strip + "\n";
}

void PrintStatus(const Arguments &arguments) {
    arguments.output->print(StatusText());
}
void PrintPrompt(const Arguments &arguments) {
    arguments.output->print(PromptLine());
}
void PrintDump(const Arguments &arguments) {
    ValidateDurations();
    arguments.output->dump();
}

// --- the table ------------------------------------------------------------------------------------

// With the button of the mouse up, held down, or in either case.
enum class Button { Up, Down, Any };

struct ScriptLine {
    std::string_view word;
    Button button;
    bool (*read)(Words words, Arguments &arguments);
    bool (*enabled)(const Arguments &arguments);
    void (*play)(const Arguments &arguments);
};

constexpr ScriptLine lines[] = {
    {"show", Button::Up, Name, HasPattern, ShowPattern},
    {"hide", Button::Up, Name, HasRow, HidePattern},
    {"scale", Button::Any, Scale, Always, SetScale},
    {"left", Button::Any, Time, Always, SetLeft},
    {"press", Button::Up, NameTime, HasRow, Press},
    {"press!", Button::Up, NameTime, HasRow, ShiftPressed},
    {"move", Button::Down, Time, Always, Move},
    {"release", Button::Down, Time, Always, Release},
    {"select", Button::Up, NameTimes, HasRow, SelectTimes},
    {"duration", Button::Up, Text, FieldEnabled<EDIT_DURATION>, TypeField<EDIT_DURATION, false>},
    {"duration!", Button::Up, Text, FieldEnabled<EDIT_DURATION>, TypeField<EDIT_DURATION, true>},
    {"value", Button::Up, Text, FieldEnabled<EDIT_VALUE>, TypeField<EDIT_VALUE, false>},
    {"value!", Button::Up, Text, FieldEnabled<EDIT_VALUE>, TypeField<EDIT_VALUE, true>},
    {"scaleby", Button::Up, Text, FieldEnabled<EDIT_SCALE>, TypeField<EDIT_SCALE, false>},
    {"scaleby!", Button::Up, Text, FieldEnabled<EDIT_SCALE>, TypeField<EDIT_SCALE, true>},
    {"repeat", Button::Up, Text, FieldEnabled<EDIT_REPEAT>, TypeField<EDIT_REPEAT, false>},
    {"repeat!", Button::Up, Text, FieldEnabled<EDIT_REPEAT>, TypeField<EDIT_REPEAT, true>},
    {"state", Button::Up, Number, HasState, ChooseState<false>},
    {"state!", Button::Up, Number, HasState, ChooseState<true>},
    {"forever", Button::Up, Switch, FieldEnabled<EDIT_FOREVER>, SwitchForever},
    {"cut", Button::Up, Nothing, CommandAllowed<COMMAND_CUT>, RunCommand<COMMAND_CUT>},
    {"copy", Button::Up, Nothing, CommandAllowed<COMMAND_COPY>, RunCommand<COMMAND_COPY>},
    {"paste", Button::Up, Nothing, CommandAllowed<COMMAND_PASTE>, RunCommand<COMMAND_PASTE>},
    {"delete", Button::Up, Nothing, CommandAllowed<COMMAND_DELETE>, RunCommand<COMMAND_DELETE>},
    {"undo", Button::Up, Nothing, Always, RunCommand<COMMAND_UNDO>},
    {"redo", Button::Up, Nothing, Always, RunCommand<COMMAND_REDO>},
    {"query", Button::Up, Nothing, Always, RunCommand<COMMAND_QUERY_MODE>},
    {"edit", Button::Up, Nothing, Always, RunCommand<COMMAND_EDIT_MODE>},
    {"insert", Button::Up, Name, MayInsert, Insert},
    {"new", Button::Up, NewWave, MayAdd, Add},
    {"remove", Button::Up, Name, MayRemove, Remove},
    {"goto", Button::Up, Time, Always, GoTo},
    {"status", Button::Any, Nothing, Always, PrintStatus},
    {"prompt", Button::Any, Nothing, Always, PrintPrompt},
    {"dump", Button::Any, Nothing, Always, PrintDump},
};

const ScriptLine *FindLine(std::string_view word) {
    for (const ScriptLine &line : lines) {
        if (line.word == word) return &line;
    }
    return nullptr;
}

bool ButtonFits(Button button) {
    return button == Button::Any || (button == Button::Down) == MouseGesture.captured;
}

} // namespace

void BeginEditScript() {
    InitCommands();
    InitMouse();
    InitMouseGesture();
    InitOverlay();
    InitComposition();
    InitRulerCursor();
    InitDragPreview();
    InitSelection();
    InitShowSelection();
    InitModeGestures();
    InitEditDialog();
    InitHeadlessEditDialog();
    InitClipboard();
    InitHeadlessClipboard();
    InitWaveMetrics();
    OpenWindow();
    ZoomToRange(0, WaveView.SpanEnd);
    WaveView.CursorTime = DocumentStart;
    DisplayOpen = 1;
    MeasureNameWidths();
    DispatchCommand(COMMAND_EDIT_MODE);
}

ScriptOutcome PlayScriptLine(std::string_view text, const ScriptOutput &output) {
    text = Trimmed(text);
    if (text.empty() || text.starts_with('#')) return ScriptOutcome::Done;
    std::string_view word = text.substr(0, text.find_first_of(BLANKS));
    std::string_view rest = text.substr(word.size());
    const ScriptLine *line = FindLine(word);
    Arguments arguments;
    arguments.text = Trimmed(rest);
    arguments.output = &output;
    // No text that is typed holds a NUL.
    bool understood = line && rest.find('\0') == std::string_view::npos;
    if (!understood || !line->read(WordsOf(rest), arguments)) return ScriptOutcome::NotUnderstood;
    if (!ButtonFits(line->button) || !line->enabled(arguments)) return ScriptOutcome::NotEnabled;
    line->play(arguments);
    ForgetHeadlessRecord();
    return ScriptOutcome::Done;
}

void EndEditScript() {
    MouseCaptureLost();
    CommandState.CommandPhase = PHASE_ENDING;
    FinishCommand();
    CommandState.CommandPhase = PHASE_IDLE;
}
