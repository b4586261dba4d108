#include "document/document.h"

#include "config/paths.h"
#include "config/settings.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "document/all_nodes.h"
#include "document/document_files.h"
#include "document/held_document.h"
#include "edit/show_selection.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "editlog/replay.h"
#include "integration/suite/message_service.h"
#include "shell/command_ids.h"
#include "shell/file_dialogs.h"
#include "shell/file_names.h"
#include "shell/frame.h"
#include "shell/reporting.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "wdl/compiler.h"
#include <cstdio>
#include <cstring>
#include <memory>

char DocumentPath[MAX_PATH_SIZE] = "";
int32_t ForceSaveAs = 0;

namespace {

constexpr const char *WDL_EXTENSION = ".wdl";
// The broadcast that tells the sibling tools of a new stimulus file.
constexpr uint32_t FILE_MESSAGE_CLASS = 7;
constexpr uint32_t NEW_FILE_DETAIL = 3;
// A failed load takes this much of the pattern table away.
constexpr size_t TABLE_ENTRIES_DROPPED = 2000;

// The titles of the file dialogs' filters for each kind of tool in the suite.
struct FileKind {
    int kind;
    const char *openTitle;
    const char *saveTitle;
    const char *openExtension;
    const char *saveExtension;
};
constexpr FileKind fileKinds[] = {
    {1, "Symbol Files", "Symbol Files", ".wdl", ".wdl"},
    {2, "Schematic Files", "Schematic Files", ".wdl", ".wdl"},
    {3, "Design Files", "Design Files", ".tre", ".wdl"},
    {4, "Files", "Waveform Files", ".wdl", ".wdl"},
    {6, "Stimulus Files", "Stimulus Files", ".wdl", ".wdl"},
    {7, "Setup Files", "Setup Files", ".wdl", ".wdl"},
};
constexpr FileKind otherFileKind = {0, "Files", "All Files", ".wdl", ".*"};

const FileKind &FileKindInForce() {
    for (const FileKind &entry : fileKinds) { // never: the kind is fixed, and in the table
        if (entry.kind == ApplicationKind) return entry;
    }
    return otherFileKind;
}

// Opens the file for a load if it is there. False after a message.
bool OpenDocumentFile(const char *path, std::unique_ptr<TextReader> &file) {
    // A name without a readable file is a new document; nothing is said, and no file is made before a save.
    if (!CanAccessFile(path, FileAccess::Read)) return true;
    if (!CanAccessFile(path, FileAccess::Write)) {
        char line[MAX_PATH_SIZE + 32];
        snprintf(line, sizeof line, "File %s is Read Only", path);
        AlertBox(line, "Change permissions and restart the program", nullptr, "OK", nullptr, nullptr,
                 AlertIcon::Warning);
        return false;
    }
    file = std::make_unique<TextReader>(path);
    if (file->isOpen()) return true;
    UserErrorFormat("Unable to open file %s", path);
    return false;
}

void TellUnread(const char *path, const std::string &why) {
    UserErrorFormat("Unable to read file %s: %s", path, why.c_str());
}

// Compiles the open file into the fresh store, and reads the wave list. False after a message.
bool ReadDocumentFile(TextReader *file, char *path) {
    if (CompileWdl(file, path)) {
        UpdateFullDuration();
        std::string why = ReadWaveList(path);
        if (!why.empty()) TellUnread(path, why);
        return why.empty();
    }
    memset(PatternTable, 0, TABLE_ENTRIES_DROPPED * sizeof *PatternTable);
    if (file->failed()) {
        TellUnread(path, file->failure());
    } else {
        UserErrorFormat("Compilation errors in file %s", FileNamePart(path));
    }
    return false;
}

// What a document starts from, whatever the one before it had.
void ResetForLoad() {
    ResetDocumentSettings();
    WdlVersion = 4;
    FullSpanEnd = Settings.DefEndTime;
}

bool FillStore(TextReader *file, char *path) {
    int held = LogHoldOpen(1);
    EditLog.Recording = 0;
    ResetForLoad();
    bool good = CheckSettingsFile(SimulatorIniPath);
    if (good && !LoadStateTables()) { // never: what cannot be read of the tables is left out
        UserError("Errors loading state tables");
        good = false;
    }
    if (good && file) good = ReadDocumentFile(file, path);
    if (good) ExtendSpan(Settings.EndTime);
    LogHoldOpen(held);
    EditLog.Recording = 1;
    return good;
}

void SetTitleFromPath() {
    char name[MAX_PATH_SIZE];
    BaseName(DocumentPath, name);
    UpperCase(name);
    SetMainTitle(name);
}

// Forgets what the rows, the view and the selection knew of the old document.
void ForgetView() {
    InitShowSelection();
    WaveView.SelectActive = false;
    WaveView.MarkActive = false;
    WaveView.SelectRow = NO_ROW;
    WaveView.SelectRowLast = NO_ROW;
    EnableCommand(COMMAND_HIDE_MARK, false);
    EnableCommand(COMMAND_TO_MARKER, false);
    WaveView.RowCount = 0;
    WaveView.TopRow = 0;
    WaveView.TopPixel = 0;
    WaveView.SpanStart = 0;
    WaveView.SpanEnd = 0;
    RowSelectionChanged();
}

void ShowFreshDocument() {
    int held = LogHoldOpen(1);
    ValidateDurations();
    ZoomToRange(0, WaveView.SpanEnd);
    WaveView.CursorTime = DocumentStart;
    for (Pane pane : {Pane::Wave, Pane::Name, Pane::Ruler}) InvalidatePane(pane);
    LogHoldOpen(held);
}

int OpenNamed(const char *path) {
    snprintf(DocumentPath, sizeof DocumentPath, "%s", path);
    ChangeToDirectoryOf(DocumentPath);
    ShowWaitCursor();
    SetTitleFromPath();
    if (!ReloadDocument()) return 0;
    FrameInvalidate();
    return 1;
}

int OpenUntitled() {
    TakeDocument("");
    ShowWaitCursor();
    DocumentPath[0] = '\0';
    SetMainTitle("");
    int result = ReloadDocument();
    FrameInvalidate();
    return result;
}

// Writes the document to a file that no other program has open.
int WriteTaken(const char *path) {
    if (!TakeDocument(path)) return 0;
    int written = WriteAndReport(path);
    RetakeDocument(DocumentPath);
    return written;
}

// The folder of the document, for a dialog to begin in; null for an untitled one.
const char *DocumentFolder(char (&folder)[MAX_PATH_SIZE]) {
    return DocumentPath[0] != '\0' ? DirectoryOf(DocumentPath, folder) : nullptr;
}

// A new file under a name that the user gives; the other tools are told of it.
void MakeRequestedFile() {
    char path[MAX_PATH_SIZE] = "";
    if (!QuerySaveChanges(true)) return;
    if (!SaveFileDialog("Enter the name for a New Stimulus File", "Stimulus Files:", nullptr, path,
                        sizeof path, WDL_EXTENSION)) {
        return;
    }
    if (!TakeDocument(path)) return;
    snprintf(DocumentPath, sizeof DocumentPath, "%s", path);
    if (!ReloadDocument() || !SaveDocument(false)) return;
    SetExtension(DocumentPath, WDL_EXTENSION);
    ServiceString string = MRStrCreate(DocumentPath);
    MRBroadcastMsg(FILE_MESSAGE_CLASS, NEW_FILE_DETAIL, string);
    MRStrDestroy(string);
}

} // namespace

void InitDocument() {
    DocumentPath[0] = '\0';
    ForceSaveAs = 0;
    WdlVersion = 4;
    InitEditLog();
    InitShowSelection();
    InitReplay();
    ExtendSpanHook = ExtendSpan;
}

int LoadDocument(char *path) {
    std::unique_ptr<TextReader> file;
    bool failed = false;
    if (*path != '\0') {
        SetExtension(path, WDL_EXTENSION);
        failed = !SettleSave(path) || !OpenDocumentFile(path, file);
    }
    DocumentStart = 0;
    if (failed) return 0;
    if (!PatternStoreInit()) {
        ProgramError("Failed to allocate memory for waveform editing");
        return 0;
    }
    return FillStore(file.get(), path);
}

int ReloadDocument() {
    PatternStoreFree();
    DrawOverlay(false);
    DrawRulerCursor(false);
    ForgetView();
    LogDeleteFile();
    DisplayOpen = 0;
    if (!LoadDocument(DocumentPath)) {
        // There is no old document left to go back to.
        ReleaseDocument();
        ReleaseWindows();
        return 0;
    }
    ShowNodesWithoutWaveList();
    DisplayOpen = 1;
    MeasureNameWidths();
    UpdateTimeScrollBar();
    UpdateRowScrollBar();
    UpdateNameScrollBar();
    LogReset(1);
    ShowFreshDocument();
    return 1;
}

int OpenDocument(const char *path, bool isNew) {
    char chosen[MAX_PATH_SIZE];
    snprintf(chosen, sizeof chosen, "%s", path);
    if (!QuerySaveChanges(true)) return 1;
    if (chosen[0] == '\0' && !isNew && !BrowseForOpen(chosen, sizeof chosen)) return 1;
    if (!TakeDocument(chosen)) return 1;
    if (chosen[0] != '\0' && OpenNamed(chosen) && !isNew) return 1;
    return AllowNewDocument ? OpenUntitled() : 0; // never: it is fixed
}

int BrowseForOpen(char *buffer, int size) {
    const FileKind &kind = FileKindInForce();
    char folder[MAX_PATH_SIZE], full[MAX_PATH_SIZE];
    if (!OpenFileDialog(nullptr, kind.openTitle, DocumentFolder(folder), buffer, size, kind.openExtension,
                        false)) {
        return 0;
    }
    if (FullPath(buffer, full)) snprintf(buffer, static_cast<size_t>(size), "%s", full);
    SetExtension(buffer, kind.openExtension);
    LowerCase(FileNamePart(buffer));
    return 1;
}

int BrowseForSave(char *buffer, int size) {
    const FileKind &kind = FileKindInForce();
    if (*buffer != '\0') SetExtension(buffer, kind.saveExtension);
    char folder[MAX_PATH_SIZE];
    return SaveFileDialog(nullptr, kind.saveTitle, DocumentFolder(folder), buffer, size, kind.saveExtension);
}

int SaveDocument(bool saveAs) {
    if (DocumentPath[0] != '\0') {
        SetExtension(DocumentPath, WDL_EXTENSION);
        bool exists = CanAccessFile(DocumentPath, FileAccess::Exists);
        if (exists && !CanAccessFile(DocumentPath, FileAccess::Write)) ForceSaveAs = 1;
    }
    if (!saveAs && !ForceSaveAs && DocumentPath[0] != '\0') return WriteTaken(DocumentPath);
    char name[MAX_PATH_SIZE];
    snprintf(name, sizeof name, "%s", FileNamePart(DocumentPath));
    if (ForceSaveAs) {
        AlertBox("This file is read only:", name, nullptr, "OK", nullptr, nullptr, AlertIcon::Warning);
    }
    if (!BrowseForSave(name, sizeof name)) return 0;
    LowerCase(FileNamePart(name));
    return WriteTaken(name);
}

int WriteAndReport(const char *path) {
    ShowWaitCursor();
    if (!WriteDocumentFiles(path)) return 0;
    ShowErrorStrip("\\File successfully saved");
    SetTitleFromPath();
    return 1;
}

int WriteDocumentFiles(const char *path) {
    char target[MAX_PATH_SIZE];
    snprintf(target, sizeof target, "%s", path);
    SetExtension(target, WDL_EXTENSION);
    LowerCase(FileNamePart(target));
    if (!WriteWdlFile(target)) return 0;
    snprintf(DocumentPath, sizeof DocumentPath, "%s", target);
    LogReset(0);
    EndSave(DocumentPath);
    return 1;
}

int IsDocumentModified() {
    return EditLog.rPtr != 0;
}

int QuerySaveChanges(bool allowCancel) {
    if (!IsDocumentModified()) return 1;
    char name[MAX_PATH_SIZE] = "(Untitled)";
    if (DocumentPath[0] != '\0') {
        snprintf(name, sizeof name, "%s", FileNamePart(DocumentPath));
        SetExtension(name, WDL_EXTENSION);
    }
    int answer = AlertBox("Data has been modified:", name, "Do you wish to save changes ?", "YES", "NO",
                          allowCancel ? "Cancel" : nullptr, AlertIcon::Warning);
    if (answer == 1) return SaveDocument(false);
    return answer == 2;
}

int OnFileRequest(uint32_t code, uint32_t stringHandle) {
    if (code > 1) return 0;
    FrameToFront();
    if (code == 0) {
        MakeRequestedFile();
        return 1;
    }
    char path[MAX_PATH_SIZE];
    if (stringHandle != 0 && MRStrGetCopy(stringHandle, path, 256)) OpenDocument(path, false);
    return 1;
}

void SetMainTitle(const char *name) {
    if (*name == '\0') name = "<untitled>";
    char title[128];
    if (SimulatorName[0] != '\0') {
        snprintf(title, sizeof title, "%.32s - %.32s - %.40s", APPLICATION_TITLE, SimulatorName, name);
    } else {
        snprintf(title, sizeof title, "%.32s - %.40s", APPLICATION_TITLE, name);
    }
    FrameSetTitle(title);
}

void ReleaseDocument() {
    PatternStoreFree();
    FreeWaveRows();
    LogDeleteFile();
    SavePreferences();
}
