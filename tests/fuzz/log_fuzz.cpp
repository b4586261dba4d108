// Any bytes as the log beside a small document: recovered, undone and redone, and shown. Whatever stands in
// the file, the document stays sound, can be measured, walked, listed and written, and the log can be used
// further.
//
// The first byte chooses how the rest is taken: as the file's bytes, or as payloads that get their frames
// here, so that records are reached behind the first damaged length.
#include "config/settings.h"
#include "display/composition.h"
#include "display/data_listing.h"
#include "display/rows.h"
#include "display/viewport.h"
#include "document/document.h"
#include "edit/walker.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "editlog/replay.h"
#include "headless/headless.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "store/state_table.h"
#include "unit/support/fresh_store.h"
#include "unit/support/log_session.h"
#include "wdl/writer.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace {

// One document for all runs of this process.
const std::string Base =
    std::filesystem::temp_directory_path() / ("kelvane-log-fuzz-" + std::to_string(getpid()));

void Require(bool holds, const char *what) {
    if (holds) return;
    fprintf(stderr, "does not hold: %s\n", what);
    abort();
}

void RemoveLog() {
    RemoveFile((Base + LOG_SUFFIX).c_str());
}

void AppendWord(std::string &bytes, uint32_t word) {
    for (int i = 0; i < 4; i++) bytes += static_cast<char>(word >> (8 * i));
}

// Each piece begins with a byte that tells its length; 0 is a mark.
std::string Framed(const uint8_t *data, size_t size) {
    std::string bytes;
    while (size > 0) {
        size_t length = *data++;
        size--;
        if (length == 0) {
            AppendWord(bytes, ACTION_MARK);
            continue;
        }
        length = std::min(length, size);
        auto whole = static_cast<uint32_t>((length + 11) & ~size_t{3});
        AppendWord(bytes, whole);
        bytes.append(reinterpret_cast<const char *>(data), length);
        bytes.append(whole - 8 - length, '\0');
        AppendWord(bytes, whole);
        data += length;
        size -= length;
    }
    return bytes;
}

void WriteLog(const std::string &bytes) {
    FileHandle file = CreateForUpdate((Base + LOG_SUFFIX).c_str());
    Require(file != NO_FILE &&
                WriteBytes(file, bytes.data(), bytes.size()) == static_cast<int64_t>(bytes.size()),
            "the log's file");
    CloseFile(file);
}

void StartDocument() {
    if (PatternTable) PatternStoreFree();
    FreeWaveRows();
    InitHeadless();
    InitSettings();
    InitWaveView();
    InitComposition();
    InitDocument();
    InitViewport();
    Require(AllocWaveRows() && PatternStoreInit() && LoadStateTables(), "memory");
    BuildSessionDocument();
    snprintf(DocumentPath, MAX_PATH_SIZE, "%s.wdl", Base.c_str());
    strcpy(EditLog.LogSuffix, LOG_SUFFIX);
}

int walked;

int EndSoon(const WalkSegment *) {
    return ++walked < 2000;
}

bool SkipLine(const char *, void *) {
    return true;
}

void Exercise() {
    Require(HeapFault().empty(), "the heap is sound");
    Require(FindReferenceCircle() == 0, "no circle of references");
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        const Pattern *pattern = PatternFromId(id);
        for (uint32_t i = 0; i < pattern->itemCount; i++) {
            const PatternItem &item = pattern->item(i);
            Require(!item.isReference() || PatternInUse(item.patternId()), "no reference names nothing");
        }
    }
    for (uint32_t row = 0; row < WaveView.RowCount; row++) Require(RowPattern(row), "a row shows a pattern");
    ValidateDurations();
    for (uint32_t id = 1; id <= HighestPatternId; id++) {
        if (!PatternInUse(id)) continue;
        walked = 0;
        WalkPattern(EndSoon, PatternFromId(id), 0, TIME_FOREVER, WalkWaves | WalkSync, 1);
        ListPatternData(PatternFromId(id), SkipLine, nullptr);
    }
    size_t length = 0;
    WriteWdlText([](const char *, int piece,
                    void *context) { *static_cast<size_t *>(context) += static_cast<size_t>(piece); },
                 &length);
}

void Finish() {
    FinishReplay();
    Exercise();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    atexit(RemoveLog);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size == 0) return 0;
    StartDocument();
    bool framed = *data & 1;
    DisplayOpen = *data >> 1 & 1;
    WriteLog(framed ? Framed(data + 1, size - 1)
                    : std::string(reinterpret_cast<const char *>(data) + 1, size - 1));
    LogReset(1);
    Exercise();
    for (int i = 0; i < 1000 && EditLog.rPtr > 0 && LogUndo(); i++) continue;
    Finish();
    for (int i = 0; i < 1000 && EditLog.rPtr < EditLog.rEofPtr && LogRedo(); i++) continue;
    Finish();
    // The log goes on.
    LogRollback();
    Finish();
    Random random(static_cast<uint32_t>(size));
    for (int i = 0; i < 3; i++) SessionAction(random);
    LogUndo();
    Finish();
    return 0;
}
