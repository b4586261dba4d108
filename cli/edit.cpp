// edit: plays a script of edits on a document.
#include "commands.h"
#include "dump.h"
#include "edit/clipboard.h"
#include "editlog/edit_log.h"
#include "headless/edit_script.h"
#include "load.h"
#include "output.h"
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

namespace {

namespace fs = std::filesystem;

struct EditOptions : CommonOptions {
    std::string out, log, script;
};

// --- the log --------------------------------------------------------------------------------------

bool IsSameFile(const std::string &a, const std::string &b) {
    std::error_code error;
    return fs::equivalent(a, b, error);
}

// The log would overwrite what is read, or be overwritten by what is written.
bool LogIsAnotherFile(const EditOptions &options) {
    for (const std::string *other : {&options.file, &options.script, &options.out}) {
        if (options.log.empty() || other->empty()) continue;
        if (options.log != *other && !IsSameFile(options.log, *other)) continue;
        PrintError(options.log, "cannot be the log as well");
        return false;
    }
    return true;
}

// Begins the log in its file, or in a temporary one. False after a message.
bool StartLog(const std::string &path) {
    if (path.empty()) {
        LogInit(LOG_SUFFIX);
        return true;
    }
    InitEditLog();
    FileHandle file = NO_FILE;
    if (path.size() < MAX_PATH_SIZE && FullPath(path.c_str(), EditLog.LogFileName)) {
        file = CreateForUpdate(EditLog.LogFileName);
    }
    if (file == NO_FILE) {
        PrintError(path, "cannot be written");
        return false;
    }
    CloseFile(file);
    return true;
}

// Leaves the log as a crash would, without what has not been flushed; a temporary one goes.
void StopLog(const std::string &path) {
    if (path.empty()) {
        LogDeleteFile();
    } else {
        LogCloseFile();
    }
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
    }
    if (!script.bad()) return EXIT_DONE;
    PrintError(name, "cannot be read");
    return EXIT_BAD_USAGE;
}

int EditDocument(std::istream &script, const EditOptions &options) {
    if (!StartLog(options.log)) return EXIT_BAD_USAGE;
    BeginEditScript();
    int status = PlayScript(script, options.script);
    EndEditScript();
    DropClipFile();
    StopLog(options.log);
    return status == EXIT_DONE ? WriteDocumentText(options.out) : status;
}

int Edit(const EditOptions &options) {
    if (!LogIsAnotherFile(options)) return EXIT_BAD_USAGE;
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
    command->callback([options, &status] { status = Edit(*options); });
}
