#include "document/document_files.h"

#include "display/rows.h"
#include "display/wave_view.h"
#include "editlog/edit_log.h"
#include "integration/suite/message_service.h"
#include "platform/file_replacement.h"
#include "platform/text_file.h"
#include "shell/file_names.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "wdl/writer.h"
#include <cstdio>

namespace {

// A document's path with another extension.
struct PathBeside {
    char text[MAX_PATH_SIZE];
    PathBeside(const char *path, const char *extension) {
        snprintf(text, sizeof text, "%s", path);
        SetExtension(text, extension);
    }
};

bool Exists(const char *path) {
    return CanAccessFile(path, FileAccess::Exists);
}

bool TellUnwritten(const char *path, const std::string &why) {
    UserErrorFormat("Unable to write file %s: %s", path, why.c_str());
    return false;
}

// --- the texts ------------------------------------------------------------------------------------

// Each gives its file a text, or answers why there is none.
using WriteText = std::string (*)(TextWriter &file);

std::string WriteStatements(TextWriter &file) {
    bool good = WriteWdlText(
        [](const char *text, int length, void *context) {
            static_cast<TextWriter *>(context)->write({text, static_cast<size_t>(length)});
        },
        &file);
    return good ? "" : TOO_MANY_NESTS;
}

std::string WriteWaveList(TextWriter &file) {
    for (uint32_t row = 0; row < WaveView.RowCount; ++row) {
        file.write("Wave ");
        file.write(PatternFromId(WaveRows[row].PatternId)->name());
        file.write("\n");
    }
    return "";
}

// Brings a text to the disk, but not to its place yet. False after a message.
bool Prepare(FileReplacement &file, const char *path, WriteText write) {
    if (!file.isOpen()) return TellUnwritten(path, file.failure());
    TextWriter text(file.handle());
    std::string why = write(text);
    if (!text.close()) return TellUnwritten(path, text.failure());
    if (!why.empty()) return TellUnwritten(path, why);
    if (!file.finish()) return TellUnwritten(path, file.failure());
    return true;
}

void BroadcastFileSaved(const char *path) {
    constexpr uint32_t stimulusFiles = 7; // the class of the message, and its detail
    constexpr uint32_t fileWritten = 2;
    ServiceString string = MRStrCreate(path);
    if (string == 0) return;
    MRBroadcastMsg(stimulusFiles, fileWritten, string);
    MRStrDestroy(string);
}

// --- the log aside --------------------------------------------------------------------------------

// The step that decides a save. Without a log an empty file stands for one. False after a message.
bool SetLogAside(const char *path) {
    PathBeside log(path, LOG_SUFFIX), aside(path, ASIDE_SUFFIX);
    LogCloseFile();
    bool good = false;
    if (Exists(log.text)) {
        good = RenameFile(log.text, aside.text);
    } else if (FileHandle file = CreateNewFile(aside.text, true); file != NO_FILE) {
        CloseFile(file);
        good = true;
    }
    if (!good) TellUnwritten(aside.text, FileFailure());
    return good;
}

bool BringLogBack(const char *path) {
    return RenameFile(PathBeside(path, ASIDE_SUFFIX).text, PathBeside(path, LOG_SUFFIX).text);
}

// Puts a file in place that a decided save has left. False after a message.
bool PutLeftInPlace(const char *path) {
    std::string target = FollowLinks(path), left = target + NEW_SUFFIX, why;
    if (!Exists(left.c_str()) || PutInPlace(left.c_str(), target.c_str(), why)) return true;
    return TellUnwritten(path, why);
}

void RemoveLeft(const char *path) {
    RemoveFile((FollowLinks(path) + NEW_SUFFIX).c_str());
}

bool Save(char *path) {
    PathBeside list(path, ".kel");
    FileReplacement document(path, NEW_SUFFIX), waveList(list.text, NEW_SUFFIX);
    if (!Prepare(document, path, WriteStatements) || !Prepare(waveList, list.text, WriteWaveList))
        return false;
    bool aside = document.isBeside() && waveList.isBeside();
    if (aside && !SetLogAside(path)) return false;
    if (!document.commit()) {
        if (aside && !BringLogBack(path)) {
            // Still decided: the next who opens the document has it all.
            document.keep();
            waveList.keep();
        }
        return TellUnwritten(path, document.failure());
    }
    BroadcastFileSaved(path);
    if (!waveList.commit()) TellUnwritten(list.text, waveList.failure());
    SetExtension(path, ".kel");
    return true;
}

} // namespace

bool WriteWdlFile(char *path) {
    int held = LogHoldOpen(1);
    bool good = SettleSave(path) && Save(path);
    LogHoldOpen(held);
    return good;
}

void EndSave(const char *path) {
    RemoveFile(PathBeside(path, ASIDE_SUFFIX).text);
}

bool SettleSave(const char *path) {
    PathBeside document(path, ".wdl"), list(path, ".kel"), aside(path, ASIDE_SUFFIX);
    if (!Exists(aside.text)) {
        RemoveLeft(document.text);
        RemoveLeft(list.text);
        return true;
    }
    if (!PutLeftInPlace(document.text) || !PutLeftInPlace(list.text)) return false;
    if (!RemoveFile(aside.text)) return TellUnwritten(aside.text, FileFailure());
    return true;
}
