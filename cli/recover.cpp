// recover: what the editor's crash recovery would bring back, as a stimulus file.
#include "commands.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "load.h"
#include "output.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <cstdio>
#include <memory>

namespace {

struct RecoverOptions : CommonOptions {
    std::string out;
};

bool CanBeWritten(const RecoverOptions &options) {
    return AreDifferentFiles({{"the document", options.file, false},
                              {"the document's log", FileBeside(options.file, LOG_SUFFIX), false},
                              {"the wave list", FileBeside(options.file, ".kel"), false},
                              {"the simulator's file", options.simulator, false},
                              {"the output", options.out, true}});
}

// Makes the log that lies beside the file the one in use, for reading. False after a message.
bool OpenLog(const std::string &file) {
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", FileBeside(file, LOG_SUFFIX).c_str());
    if (EditLog.LogFileName[0] != '\0') EditLog.LogHandle = OpenForReading(EditLog.LogFileName);
    if (EditLog.LogHandle != NO_FILE) return true;
    PrintError(EditLog.LogFileName, "cannot be read");
    return false;
}

// False after a message, when the disk does not give all of the log.
bool ReplayLog(const std::string &file) {
    int64_t size = FileSize(EditLog.LogHandle);
    EditLog.rEofPtr = LogFileLength();
    Recovered recovered = RecoverFromLog();
    if (recovered.unreadable) return false;
    fprintf(stderr, "%s: %u actions came back, %lld bytes at the tail of the log were dropped\n",
            file.c_str(), recovered.actions, static_cast<long long>(size - recovered.position));
    ValidateDurations();
    return true;
}

int Recover(const RecoverOptions &options) {
    if (!CanBeWritten(options)) return EXIT_BAD_USAGE;
    if (int status = LoadDocumentFile(options)) return status;
    InitEditLog();
    // The file stays open all along, as it could not be opened for writing again.
    int held = LogHoldOpen(1);
    bool replayed = OpenLog(options.file) && ReplayLog(options.file);
    LogHoldOpen(held);
    return replayed ? WriteDocumentText(options.out) : EXIT_BAD_USAGE;
}

} // namespace

void AddRecover(CLI::App &program, int &status) {
    auto options = std::make_shared<RecoverOptions>();
    CLI::App *command =
        AddCommand(program, *options, "recover",
                   "Write the document with the edits in the log that a crash has left beside it");
    AddOutput(command, options->out, "file to write")->required();
    command->callback([options, &status] { status = Recover(*options); });
}
