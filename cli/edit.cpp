// edit: plays a script of edits on a document.
#include "commands.h"
#include "dump.h"
#include "edit/clipboard.h"
#include "editlog/edit_log.h"
#include "headless/edit_script.h"
#include "load.h"
#include "output.h"
#include "shell/reporting.h"
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

namespace {

struct EditOptions : CommonOptions {
    std::string out, log, script;
};

// Two files may be one: the output may be the document. A log beside the document is not used, and may be
// where the log of this run goes.
bool CanBeUsed(const EditOptions &options) {
    UsedFile document = {"the document", options.file, false};
    UsedFile documentsLog = {"the document's log", FileBeside(options.file, LOG_SUFFIX), false};
    UsedFile waveList = {"the wave list", FileBeside(options.file, ".kel"), false};
    UsedFile simulator = {"the simulator's file", options.simulator, false};
    UsedFile script = {"the script", options.script, true};
    UsedFile out = {"the output", options.out, true};
    UsedFile log = {"the log", options.log, true};
    // One statement each: the compiler in use destroys lists that it has not made where the memory ends in
    // the midst of an "&&".
    if (!AreDifferentFiles({document, waveList, simulator, log, script})) return false;
    if (!AreDifferentFiles({documentsLog, waveList, simulator, script, out})) return false;
    return AreDifferentFiles({log, out});
}

// --- the log --------------------------------------------------------------------------------------

// Drops the clipboard and leaves the log as a crash would, without what has not been flushed; a temporary one
// goes. Also where the memory ends in the midst of a script.
class SessionFiles {
public:
    SessionFiles() = default;
    SessionFiles(const SessionFiles &) = delete;
    SessionFiles &operator=(const SessionFiles &) = delete;
    ~SessionFiles() {
        DropClipFile();
        LogCloseFile();
        if (temporaryLog[0] != '\0') RemoveFile(temporaryLog);
    }
    // The log forgets a file that it cannot open.
    void logIsTemporary() { snprintf(temporaryLog, sizeof temporaryLog, "%s", EditLog.LogFileName); }

private:
    char temporaryLog[MAX_PATH_SIZE] = "";
};

// Begins the log in its file, or in a temporary one. False after a message.
bool StartLog(const std::string &path, SessionFiles &files) {
    if (path.empty()) {
        LogInit(LOG_SUFFIX);
        files.logIsTemporary();
        return FileErrors == 0;
    }
    InitEditLog();
    FileHandle file = NO_FILE;
    if (path.size() < MAX_PATH_SIZE && FullPath(path.c_str(), EditLog.LogFileName)) {
        file = CreateForUpdate(EditLog.LogFileName);
    }
    if (file == NO_FILE) {
        PrintError(path, "cannot be written: " + FileFailure());
        return false;
    }
    CloseFile(file);
    return true;
}

// --- the script -----------------------------------------------------------------------------------

void Print(const std::string &text) {
    fwrite(text.data(), 1, text.size(), stdout);
}

// Takes the next line, without its line feed and a carriage return in front of that.
bool ReadLine(std::istream &script, std::string &line) {
    if (!std::getline(script, line)) return false;
    if (!script.eof() && line.ends_with('\r')) line.pop_back();
    return true;
}

int PlayScript(std::istream &script, const std::string &name) {
    std::string line;
    for (unsigned number = 1; ReadLine(script, line); number++) {
        ScriptOutcome outcome = PlayScriptLine(line, {Print, PrintDocument});
        if (outcome == ScriptOutcome::NotEnabled) fprintf(stderr, "%u: not enabled\n", number);
        if (outcome == ScriptOutcome::NotUnderstood) {
            fprintf(stderr, "%u: not understood\n", number);
            return EXIT_BAD_USAGE;
        }
        // What is done behind it would hang on what has been lost.
        if (FileErrors != 0) return EXIT_BAD_USAGE;
    }
    if (!script.bad()) return EXIT_DONE;
    PrintError(name, "cannot be read");
    return EXIT_BAD_USAGE;
}

int EditDocument(std::istream &script, const EditOptions &options) {
    SessionFiles files;
    if (!StartLog(options.log, files)) return EXIT_BAD_USAGE;
    BeginEditScript();
    int status = PlayScript(script, options.script);
    EndEditScript();
    if (FileErrors != 0) return EXIT_BAD_USAGE;
    return status == EXIT_DONE ? WriteDocumentText(options.out) : status;
}

int Edit(const EditOptions &options) {
    if (!CanBeUsed(options)) return EXIT_BAD_USAGE;
    std::ifstream file;
    if (!options.script.empty()) {
        file.open(options.script, std::ios::binary);
        // A directory can be opened, but not read.
        file.peek();
        if (!file.is_open() || file.bad()) {
            PrintError(options.script, "cannot be read");
            return EXIT_BAD_USAGE;
        }
    }
    if (int status = LoadDocumentFile(options)) return status;
    return EditDocument(options.script.empty() ? std::cin : file, options);
}

constexpr const char *SCRIPT_LINES = R"(The lines of a script; T is a time, TEXT the rest of the line:
  show NAME                a row for the pattern, at the end
  hide NAME                takes its row away
  scale N, left T          the view: -26 to 4, and where it begins
  press NAME T             the button goes down in the row; press! with Shift
  move T, release T        the mouse moves in that row; the button goes up
  select NAME T1 T2        press at T1, move to T2, release
  duration TEXT            the dialog's field, committed as by leaving it;
  value TEXT               with ! behind the word as by Enter
  scaleby TEXT
  repeat TEXT
  state N                  a row of the list of states; state! by a double click
  forever on|off           the check box
  cut, copy, paste, delete, undo, redo, query, edit
  insert NAME              inserts a sub-pattern
  new NAME [KIND]          a new wave: test, in, out, bid or global;
                           a name with $ in front makes a sub-pattern
  remove NAME              removes the pattern
  goto T                   the cursor, and in Edit mode the selection, go to T
  status                   prints the selection
  prompt                   prints the prompt line and the error strip
  dump                     prints the document as the command dump does
A line that begins with # is a comment.)";

} // namespace

void AddEdit(CLI::App &program, int &status) {
    auto options = std::make_shared<EditOptions>();
    CLI::App *command = AddCommand(program, *options, "edit", "Play a script of edits on the document");
    AddOutput(command, options->out, "file to write instead of standard output; may be FILE itself");
    command->add_option("--log", options->log, "the edit log, begun anew and left as a crash would leave it")
        ->type_name("LOGFILE")
        ->check(CheckFileName, "");
    command->add_option("SCRIPT", options->script, "the script; standard input if left out")
        ->check(CheckFileName, "");
    command->footer(SCRIPT_LINES);
    command->callback([options, &status] { status = Edit(*options); });
}
