#include "edit/clipboard.h"

#include "display/composition.h"
#include "display/overlay.h"
#include "display/wave_view.h"
#include "edit/range_edits.h"
#include "edit/selection.h"
#include "edit/show_selection.h"
#include "edit/wrappers.h"
#include "editlog/aux_log.h"
#include "editlog/edit_log.h"
#include "editlog/replay.h"
#include "shell/clipboard_view.h"
#include "shell/command_ids.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include <algorithm>
#include <vector>

char ClipName[MAX_PATH_SIZE];
FileHandle ClipHandle = NO_FILE;
uint16_t ClipWidth;
uint32_t ClipFormat;

namespace {

// How much of the log is copied at a time, and how much of the file is read for another program.
constexpr size_t COPY_BLOCK = 300;
constexpr size_t RENDER_BLOCK = 16384;
// In the format the file's length stands in front of its bytes.
constexpr size_t LENGTH_SIZE = 4;

constexpr int PASTE_MODE = 5;

// --- what is cut ----------------------------------------------------------------------------------

bool HasItem(const Pattern *pattern, uint16_t index, bool reference) {
    return index < pattern->itemCount && pattern->item(index).isReference() == reference;
}

// Takes the selection out of the deepest frame's pattern.
void RemoveSelection(Pattern *pattern) {
    const SelFrame &frame = DeepestFrame();
    switch (EditSelection.SelKind) {
    case SEL_PATTERN:
    case SEL_COMPOSITE:
        if (HasItem(pattern, frame.item, true)) DeleteReference(pattern, frame.item);
        break;
    case SEL_PULSE:
        if (HasItem(pattern, frame.item, false)) DeleteItem(pattern, frame.item);
        break;
    case SEL_SPAN:
        if (LocalTime(frame.start) < LocalTime(frame.end))
            DeleteRange(pattern, LocalTime(frame.start), LocalTime(frame.end));
        break;
    default: // SEL_WHOLE
        DeleteRange(pattern, 0, pattern->duration);
        break;
    }
}

void ForgetSelection() {
    WaveView.SelectActive = false;
    EditSelection.SelKind = SEL_NONE;
}

void TidyUp() {
    Pattern *root = SelectionRoot();
    // A row's pattern has a name, and is not taken away when it is empty.
    if (root && root->nameLength != 0) FlattenPattern(root);
    WaveView.CursorTime = DeepestFrame().start;
    ForgetSelection();
}

// --- the file -------------------------------------------------------------------------------------

void CloseClipFile() {
    if (ClipHandle != NO_FILE) CloseFile(ClipHandle);
    ClipHandle = NO_FILE;
}

bool OpenClipFile() {
    if (ClipHandle == NO_FILE) ClipHandle = OpenForUpdate(ClipName);
    if (ClipHandle != NO_FILE) return true;
    FileError("Failed to open clipboard file %s", ClipName);
    return false;
}

bool CreateClipFile() {
    if (MakeTemporaryFile("cli", ClipName)) ClipHandle = CreateForUpdate(ClipName);
    if (ClipHandle != NO_FILE) return true;
    FileError("Failed to create clipboard file %s", ClipName);
    DropClipFile();
    return false;
}

bool WriteToClipFile(const uint8_t *bytes, size_t size) {
    if (WriteBytes(ClipHandle, bytes, size) == static_cast<int64_t>(size)) return true;
    FileError("Failed to write clipboard file %s", ClipName);
    return false;
}

bool ReadFromLog(uint8_t *bytes, size_t size) {
    if (ReadBytes(EditLog.LogHandle, bytes, size) == static_cast<int64_t>(size)) return true;
    FileError("Failed to read log file %s", EditLog.LogFileName);
    return false;
}

// The log from `start` to its end, which has been flushed.
bool CopyLog(int32_t start) {
    if (!LogOpenFile()) return false;
    SeekFile(EditLog.LogHandle, start);
    uint8_t block[COPY_BLOCK];
    auto left = static_cast<size_t>(EditLog.rEofPtr - start);
    while (left > 0) {
        size_t size = std::min(left, COPY_BLOCK);
        if (!ReadFromLog(block, size) || !WriteToClipFile(block, size)) return false;
        left -= size;
    }
    return true;
}

// Takes the platform's clipboard for a new file with what `fill` writes into it; false from it ends that.
template <class Fill>
void TakeClipboard(Fill fill) {
    if (!ViewOpenClipboard()) {
        ProgramError("CutToClipFile Failed to OpenClipboard");
        return;
    }
    ViewEmptyClipboard();
    // Where that has not told us that we lost it.
    DropClipFile();
    if (CreateClipFile()) {
        bool good = fill();
        CloseClipFile();
        if (good)
            ViewOfferFormat(ClipFormat);
        else
            DropClipFile();
    }
    ViewCloseClipboard();
}

// A copy is a cut that leaves no trace: the patterns come back from memory, whatever the disk does meanwhile,
// and the log never hears of it, so that what can be redone stays.
void CopySelection(Pattern *pattern) {
    StoreCopy before = CopyStore();
    std::vector<uint8_t> records;
    {
        LogAside aside;
        RemoveSelection(pattern);
        records = aside.records();
    }
    RestoreStore(before);
    if (records.empty()) return;
    TakeClipboard([&records] { return WriteToClipFile(records.data(), records.size()); });
}

// The length, and the file's bytes. Empty after a message.
std::vector<uint8_t> ReadClipFile(size_t length) {
    std::vector<uint8_t> block(LENGTH_SIZE + length);
    for (size_t i = 0; i < LENGTH_SIZE; i++) block[i] = static_cast<uint8_t>(length >> (8 * i));
    SeekFile(ClipHandle, 0);
    for (size_t read = 0; read < length;) {
        size_t size = std::min(length - read, RENDER_BLOCK);
        if (ReadBytes(ClipHandle, block.data() + LENGTH_SIZE + read, size) != static_cast<int64_t>(size)) {
            FileError("Failed to read clipboard file %s", ClipName);
            return {};
        }
        read += size;
    }
    return block;
}

// As far as positions reach; 0 if it cannot be told.
int32_t ClipFileLength() {
    return static_cast<int32_t>(std::clamp<int64_t>(FileSize(ClipHandle), 0, INT32_MAX - ENTRY_ROOM));
}

} // namespace

void InitClipboard() {
    CloseClipFile();
    ClipName[0] = '\0';
    ClipWidth = 0;
    ClipFormat = 0;
    PasteRecordHook = PasteRecord;
}

void CutCopyDelete(uint32_t command) {
    if (!SelectionCanBeCut()) return;
    Pattern *pattern = SelectedPattern();
    uint16_t width = pattern->width;
    int32_t start = EditLog.rPtr;
    bool copy = command == COMMAND_COPY;
    if (copy) {
        CopySelection(pattern);
    } else {
        DrawOverlay(false);
        RemoveSelection(pattern);
        LogFlush();
        if (command == COMMAND_CUT) CutToClipFile(start);
        TidyUp();
    }
    // Of a mere deletion, too.
    ClipWidth = width;
    ValidateDurations();
    ShowSelection();
    if (!copy) RepaintChanged(true);
}

void CutToClipFile(int32_t start) {
    // Without a record there is nothing to cut, and what the clipboard has stays. What can be redone lies
    // behind.
    if (EditLog.rPtr > start) TakeClipboard([start] { return CopyLog(start); });
}

void ReplayClipFile() {
    if (ClipName[0] != '\0' && OpenClipFile()) {
        AuxFile = {&ClipHandle, ClipName};
        AuxReplayBackward(ClipFileLength(), 0, 0, PASTE_MODE);
    }
    if (!ViewOwnsClipboard()) DropClipFile();
}

void RenderClipFormat(uint32_t format) {
    if (ClipName[0] == '\0' || !OpenClipFile()) return;
    int32_t length = ClipFileLength();
    if (length > 0 && format == ClipFormat) {
        std::vector<uint8_t> block = ReadClipFile(static_cast<size_t>(length));
        if (!block.empty()) ViewGiveFormat(format, block);
    }
    CloseClipFile();
}

void RenderAllClipFormats() {
    if (!ViewOpenClipboard()) {
        ProgramError("RENDERALLFORMATS Failed to OpenClipboard");
        return;
    }
    if (ViewOwnsClipboard()) RenderClipFormat(ClipFormat);
    ViewCloseClipboard();
}

void DropClipFile() {
    CloseClipFile();
    if (ClipName[0] != '\0') RemoveFile(ClipName);
    ClipName[0] = '\0';
}
