// What a save does with the document's files, and what it leaves when it fails or is killed.
#include "document/document_files.h"

#include "config/paths.h"
#include "display/rows.h"
#include "display/wave_view.h"
#include "document/document.h"
#include "editlog/edit_log.h"
#include "editlog/recovery.h"
#include "headless/headless.h"
#include "integration/suite/message_service.h"
#include "platform/files_native.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include "unit/support/traced_child.h"
#include "wdl/writer.h"
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

Texts broadcasts;
std::vector<int> pipeEnds;

void KeepBroadcast(uint32_t messageClass, uint32_t detail, uint32_t data) {
    char text[MAX_PATH_SIZE] = "";
    MRStrGetCopy(data, text, sizeof text);
    broadcasts.push_back(std::to_string(messageClass) + " " + std::to_string(detail) + " " + text);
}

const char *const OLD_TEXT = "%ENDTIME = 400;\nCLK { Default } = 1 50 0 50;\nQ { Default } = 0 9;\n";

// The document in memory, as text: what a reload would give.
std::string DocumentText() {
    std::string text;
    WriteWdlText(
        [](const char *piece, int length, void *context) {
            static_cast<std::string *>(context)->append(piece, static_cast<size_t>(length));
        },
        &text);
    for (uint32_t row = 0; row < WaveView.RowCount; row++)
        text += "row " + std::string(PatternFromId(WaveRows[row].PatternId)->name()) + "\n";
    return text;
}

class DocumentFiles : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        PatternStoreFree();
        former = fs::current_path();
        fs::current_path(scratch.path);
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        broadcasts.clear();
        BroadcastListener = KeepBroadcast;
        umask(022);
    }
    void TearDown() override {
        BroadcastListener = nullptr;
        WriteLimitHook = nullptr;
        LogDeleteFile();
        fs::current_path(former);
        FreshStore::TearDown();
    }

    // Opens the document as the program does; the question about a recovery is answered with Yes.
    int open() {
        snprintf(DocumentPath, MAX_PATH_SIZE, "%s", path.c_str());
        int loaded = LoadDocument(DocumentPath);
        if (!loaded) return 0;
        DisplayOpen = 1;
        LogReset(1);
        ValidateDurations();
        return 1;
    }
    void openOld() {
        scratch.write("doc.wdl", OLD_TEXT);
        scratch.write("doc.kel", "Wave CLK\n");
        ASSERT_EQ(open(), 1);
    }
    // Goes away without the end of the program.
    void forget() {
        LogCloseFile();
        PatternStoreFree();
        InitWaveView();
        InitDocument();
        strcpy(EditLog.LogSuffix, LOG_SUFFIX);
        Headless.userErrors.clear();
    }
    // Two actions, of which the first comes to the file; each changes the rows, too, and would show if it
    // were done twice.
    void edit() {
        InsertTransition(FindPattern("CLK"), 0, 1, 7);
        ShowWaveByName("Q");
        LogEndAction();
        LogFlush();
        flushed = DocumentText();
        InsertTransition(FindPattern("Q"), 0, 1, 3);
        HideRow(0);
        LogEndAction();
        edited = DocumentText();
    }
    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto &entry : fs::directory_iterator(scratch.path)) names.insert(entry.path().filename());
        return names;
    }
    std::string contents(const char *name) const { return ReadWholeFile(scratch.file(name)); }
    // The save has failed, and nothing has changed by it.
    void expectUnsaved(const std::string &message) {
        int32_t position = EditLog.rPtr;
        auto before = files();
        std::string log = contents("doc._KL");
        Headless.titles.clear();
        EXPECT_EQ(SaveDocument(false), 0);
        EXPECT_EQ(Headless.userErrors, Texts{message});
        EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
        EXPECT_EQ(contents("doc._KL"), log);
        EXPECT_EQ(EditLog.rPtr, position);
        EXPECT_EQ(IsDocumentModified(), 1);
        EXPECT_TRUE(Headless.titles.empty());
        EXPECT_TRUE(Headless.strips.empty());
        EXPECT_TRUE(broadcasts.empty());
        EXPECT_EQ(files(), before);
        // It can be undone, and saved later.
        EXPECT_EQ(DocumentText(), edited);
    }

    ScratchDirectory scratch;
    std::string path = scratch.file("doc.wdl");
    fs::path former;
    std::string flushed, edited; // the document behind the flush, and behind the last edit
};

TEST_F(DocumentFiles, TheFileIsTheTextAndTheWaveListHoldsTheRows) {
    openOld();
    edit();
    char buffer[MAX_PATH_SIZE];
    snprintf(buffer, sizeof buffer, "%s", path.c_str());
    EXPECT_TRUE(WriteWdlFile(buffer));
    EndSave(buffer);
    EXPECT_EQ(contents("doc.wdl") + "row Q\n", edited);
    EXPECT_EQ(contents("doc.kel"), "Wave Q\n");
    EXPECT_EQ(buffer, scratch.file("doc.kel"));
    EXPECT_EQ(broadcasts, Texts{"7 2 " + path});
}

TEST_F(DocumentFiles, ARowWithoutANameHasALineWithoutOne) {
    openOld();
    WaveRows[1].PatternId = MakePattern("", {{1, 5}});
    WaveView.RowCount = 2;
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(contents("doc.kel"), "Wave CLK\nWave \n");
}

TEST_F(DocumentFiles, ASaveLeavesNothingBesideTheDocument) {
    openOld();
    edit();
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "doc._KL"}));
    EXPECT_EQ(contents("doc._KL"), "");
    EXPECT_EQ(IsDocumentModified(), 0);
}

TEST_F(DocumentFiles, AnOldFileIsReplacedWhole) {
    openOld();
    scratch.write("doc.wdl", std::string(5000, 'x'));
    scratch.write("doc.kel", std::string(5000, 'x'));
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(contents("doc.wdl") + "row CLK\n", DocumentText());
    EXPECT_EQ(contents("doc.kel"), "Wave CLK\n");
}

TEST_F(DocumentFiles, TheLogsHoldIsAsItWas) {
    openOld();
    for (int hold : {0, 1}) {
        LogHoldOpen(hold);
        EXPECT_EQ(SaveDocument(false), 1);
        EXPECT_EQ(LogHoldOpen(0), hold);
    }
}

// --- what a file is besides its bytes ---------------------------------------------------------------

TEST_F(DocumentFiles, TheFileKeepsItsModeAndItsAttributes) {
    openOld();
    fs::permissions(path, static_cast<fs::perms>(0640));
    bool attributes = setxattr(path.c_str(), "user.note", "mine", 4, 0) == 0;
    EXPECT_EQ(SaveDocument(false), 1);
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    char note[8] = "";
    if (attributes) {
        EXPECT_EQ(getxattr(path.c_str(), "user.note", note, sizeof note), 4);
    }
}

TEST_F(DocumentFiles, TheFileKeepsItsOwner) {
    openOld();
    if (chown(path.c_str(), 1, 2) != 0) GTEST_SKIP() << "this user cannot give files away";
    EXPECT_EQ(SaveDocument(false), 1);
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1U);
    EXPECT_EQ(status.st_gid, 2U);
}

TEST_F(DocumentFiles, ANewFileHasTheOrdinaryMode) {
    path = scratch.file("new.wdl");
    ASSERT_EQ(open(), 1);
    EXPECT_EQ(SaveDocument(false), 1);
    struct stat status;
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(DocumentFiles, LinksGoOnLeadingToTheFile) {
    fs::create_directory("far");
    scratch.write("far/real.wdl", OLD_TEXT);
    fs::create_symlink("far/link.wdl", "doc.wdl");
    fs::create_symlink("real.wdl", "far/link.wdl");
    scratch.write("doc.kel", "Wave CLK\n");
    ASSERT_EQ(open(), 1);
    edit();
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_TRUE(fs::is_symlink("doc.wdl"));
    EXPECT_TRUE(fs::is_symlink("far/link.wdl"));
    EXPECT_EQ(contents("far/real.wdl") + "row Q\n", edited);
    EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "doc._KL", "far"}));
    EXPECT_EQ(std::distance(fs::directory_iterator("far"), fs::directory_iterator()), 2);
}

TEST_F(DocumentFiles, ALinkToNothingMakesTheFile) {
    fs::create_symlink("real.wdl", "doc.wdl");
    ASSERT_EQ(open(), 1);
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_TRUE(fs::is_symlink("doc.wdl"));
    EXPECT_TRUE(fs::is_regular_file("real.wdl"));
}

TEST_F(DocumentFiles, AnotherNameOfTheFileGetsTheBytesToo) {
    openOld();
    edit();
    fs::create_hard_link("doc.wdl", "other.wdl");
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(fs::hard_link_count("doc.wdl"), 2U);
    EXPECT_EQ(contents("other.wdl") + "row Q\n", edited);
    EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "doc._KL", "other.wdl"}));
}

// --- failures ---------------------------------------------------------------------------------------

size_t WriteNothing(size_t) {
    return 0;
}

TEST_F(DocumentFiles, AFullDiskIsToldAndChangesNothing) {
    openOld();
    edit();
    WriteLimitHook = WriteNothing;
    expectUnsaved("Unable to write file " + path + ": No space left on device");
    WriteLimitHook = nullptr;
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(contents("doc.wdl") + "row Q\n", edited);
}

TEST_F(DocumentFiles, NestedPatternsInMorePlacesThanAFileCanHaveFailTheSave) {
    openOld();
    edit();
    uint16_t nested = CreatePattern(0, "", 0)->id, outer = 0;
    for (int level = 0; level < 30; ++level, nested = outer) {
        outer = CreatePattern(0, "", 0)->id;
        InsertReference(PatternFromId(outer), PatternKind::Plain, 0, nested, 1, 1, 0, 0, 0);
        InsertReference(PatternFromId(outer), PatternKind::Plain, 1, nested, 1, 1, 0, 0, 0);
    }
    InsertReference(FindPattern("Q"), PatternKind::Plain, 0, nested, 1, 1, 0, 0, 0);
    auto before = files();
    EXPECT_EQ(SaveDocument(false), 0);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(Headless.userErrors,
              Texts{"Unable to write file " + path + ": its nested patterns are used in too many places"});
    EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
    EXPECT_EQ(IsDocumentModified(), 1);
}

TEST_F(DocumentFiles, AWaveListThatCannotBeWrittenFailsTheSave) {
    openOld();
    edit();
    fs::remove("doc.kel");
    fs::create_directory("doc.kel");
    expectUnsaved("Unable to write file " + scratch.file("doc.kel") + ": Is a directory");
}

TEST_F(DocumentFiles, AFolderThatIsNotThereIsTold) {
    openOld();
    edit();
    Headless.fileAnswers = {scratch.file("missing/doc.wdl")};
    EXPECT_EQ(SaveDocument(true), 0);
    EXPECT_EQ(Headless.userErrors, Texts{"Unable to write file " + scratch.file("missing/doc.wdl") +
                                         ": No such file or directory"});
    EXPECT_EQ(std::string(DocumentPath), path) << "the document keeps its name";
    EXPECT_EQ(IsDocumentModified(), 1);
    EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(DocumentFiles, AFailedSaveKeepsTheProgramFromEnding) {
    openOld();
    edit();
    WriteLimitHook = WriteNothing;
    Headless.alertAnswers = {1};
    EXPECT_EQ(QuerySaveChanges(true), 0);
}

// As a file cannot be made in such a folder even by the superuser, the name is what is too long.
TEST_F(DocumentFiles, WhereNoFileCanBeMadeTheOldOneIsWrittenOver) {
    path = scratch.file(std::string(247, 'n') + ".wdl");
    if (path.size() >= MAX_PATH_SIZE) {
        fs::current_path(scratch.path);
        path = std::string(247, 'n') + ".wdl";
    }
    scratch.write(fs::path(path).filename(), OLD_TEXT);
    scratch.write(std::string(247, 'n') + ".kel", "Wave CLK\n");
    ASSERT_EQ(open(), 1);
    edit();
    auto before = files();
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(ReadWholeFile(path) + "row Q\n", edited);
    forget();
    ASSERT_EQ(open(), 1);
    EXPECT_EQ(DocumentText(), edited) << "the log has ended";
}

int writesToDo;
size_t FailLater(size_t size) {
    return writesToDo-- > 0 ? size : 0;
}

TEST_F(DocumentFiles, AnOldFileThatCannotBeWrittenOverComesBack) {
    openOld();
    edit();
    fs::create_hard_link("doc.wdl", "other.wdl");
    // Both new files and the copy of the old one are written; one write over it fails, and the next is done.
    writesToDo = 3;
    WriteLimitHook = [](size_t size) { return writesToDo-- == 0 ? 0 : size; };
    expectUnsaved("Unable to write file " + path + ": No space left on device");
    // None works any more: the copy stays.
    writesToDo = 3;
    Headless.userErrors.clear();
    WriteLimitHook = FailLater;
    EXPECT_EQ(SaveDocument(false), 0);
    ASSERT_EQ(Headless.userErrors.size(), 1U);
    std::string start =
        "Unable to write file " + path + ": No space left on device; what it held is kept in ";
    ASSERT_EQ(Headless.userErrors[0].substr(0, start.size()), start);
    std::string kept = Headless.userErrors[0].substr(start.size());
    EXPECT_EQ(ReadWholeFile(kept), OLD_TEXT);
    fs::remove(kept);
}

TEST_F(DocumentFiles, AStaleLogBesideANewNameEndsWithTheSave) {
    openOld();
    edit();
    LogFlush();
    LogCloseFile();
    fs::copy_file("doc._KL", "second._KL");
    Headless.fileAnswers = {scratch.file("second.wdl")};
    EXPECT_EQ(SaveDocument(true), 1);
    EXPECT_EQ(files(),
              (std::set<std::string>{"doc.wdl", "doc.kel", "second.wdl", "second.kel", "second._KL"}));
    EXPECT_EQ(contents("second._KL"), "");
}

// --- a save that was killed ---------------------------------------------------------------------------

TEST_F(DocumentFiles, FilesOfASaveThatWasNotDecidedAreTakenAway) {
    scratch.write("doc.wdl._KN", "half");
    scratch.write("doc.kel._KN", "half");
    openOld();
    EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "doc._KL"}));
    EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
}

TEST_F(DocumentFiles, ASaveThatCannotBeEndedOpensNothing) {
    scratch.write("doc._KM", "");
    scratch.write("doc.wdl._KN", OLD_TEXT);
    fs::create_directory("doc.wdl");
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(Headless.userErrors, Texts{"Unable to write file " + path + ": Is a directory"});
    EXPECT_TRUE(fs::exists("doc._KM"));
    EXPECT_TRUE(fs::exists("doc.wdl._KN"));
    // The same for the wave list, behind the document, which comes to its place.
    fs::remove("doc.wdl");
    fs::create_directory("doc.kel");
    scratch.write("doc.kel._KN", "Wave Q\n");
    Headless.userErrors.clear();
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(Headless.userErrors,
              Texts{"Unable to write file " + scratch.file("doc.kel") + ": Is a directory"});
    EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
    EXPECT_EQ(contents("doc.kel._KN"), "Wave Q\n");
    EXPECT_TRUE(fs::exists("doc._KM"));
    fs::remove("doc.kel");
    EXPECT_EQ(open(), 1);
    EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "doc._KL"}));
    EXPECT_EQ(WaveView.RowCount, 1U);
}

TEST_F(DocumentFiles, WhatStandsInTheWayOfTheLogIsToldAndTheSaveFails) {
    openOld();
    edit();
    fs::create_directory("doc._KM");
    expectUnsaved("Unable to write file " + scratch.file("doc._KM") + ": Is a directory");
}

// What another program does while the document is written, at the first write.
void (*meanwhile)();
size_t DoMeanwhile(size_t size) {
    if (auto *act = std::exchange(meanwhile, nullptr)) act();
    return size;
}

TEST_F(DocumentFiles, WhatComesInTheWayOfTheLogMeanwhileFailsTheSaveToo) {
    openOld();
    edit();
    auto act = [] { fs::create_directory("doc._KM"); };
    for (bool hasLog : {true, false}) {
        if (!hasLog) {
            LogFlush();
            LogCloseFile();
            fs::remove("doc._KL");
        }
        int32_t position = EditLog.rPtr;
        Headless.userErrors.clear();
        meanwhile = act;
        WriteLimitHook = DoMeanwhile;
        EXPECT_EQ(SaveDocument(false), 0);
        EXPECT_EQ(Headless.userErrors,
                  Texts{"Unable to write file " + scratch.file("doc._KM") + ": File exists"});
        EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
        EXPECT_EQ(EditLog.rPtr, position);
        EXPECT_EQ(fs::exists("doc._KL"), hasLog);
        EXPECT_FALSE(fs::exists("doc.wdl._KN"));
        EXPECT_FALSE(fs::exists("doc.kel._KN"));
        fs::remove("doc._KM");
    }
    WriteLimitHook = nullptr;
    EXPECT_EQ(SaveDocument(false), 1);
}

TEST_F(DocumentFiles, AWaveListThatDoesNotComeToItsPlaceIsToldWithTheDocumentSaved) {
    openOld();
    edit();
    meanwhile = [] {
        fs::remove("doc.kel");
        fs::create_directory("doc.kel");
    };
    WriteLimitHook = DoMeanwhile;
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(Headless.userErrors,
              Texts{"Unable to write file " + scratch.file("doc.kel") + ": Is a directory"});
    EXPECT_EQ(contents("doc.wdl") + "row Q\n", edited);
    EXPECT_EQ(IsDocumentModified(), 0);
    EXPECT_EQ(broadcasts, Texts{"7 2 " + path});
}

// The document cannot come to its place, and the log, which is aside by then, not back to its own.
TEST_F(DocumentFiles, ADecidedSaveThatCannotBeTakenBackIsEndedByTheNextOpen) {
    openOld();
    edit();
    meanwhile = [] {
        fs::create_hard_link("doc.wdl", "other.wdl"); // from now on it has to be written over
        WriteLimitHook = [](size_t size) {
            if (!fs::exists("doc._KM")) return size;
            if (!fs::exists("doc._KL")) fs::create_directory("doc._KL");
            return size_t{0};
        };
    };
    WriteLimitHook = DoMeanwhile;
    EXPECT_EQ(SaveDocument(false), 0);
    WriteLimitHook = nullptr;
    EXPECT_EQ(Headless.userErrors, Texts{"Unable to write file " + path + ": No space left on device"});
    EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
    for (const char *name : {"doc._KM", "doc.wdl._KN", "doc.kel._KN"}) EXPECT_TRUE(fs::exists(name)) << name;
    fs::remove("doc._KL");
    forget();
    ASSERT_EQ(open(), 1);
    EXPECT_EQ(DocumentText(), edited);
    EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "other.wdl", "doc._KL"}));
}

// The disk fails when the new bytes are to be brought to it.
TEST_F(DocumentFiles, AFlushThatFailsIsToldAndChangesNothing) {
    openOld();
    edit();
    LogFlush();
    WriteLimitHook = [](size_t size) {
        // From here on the new file's handle is that of a pipe, which cannot be flushed.
        for (const auto &entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code ignored;
            if (fs::read_symlink(entry, ignored).extension() != "._KN") continue;
            int ends[2];
            if (pipe(ends) != 0) continue;
            dup2(ends[1], std::stoi(entry.path().filename()));
            close(ends[1]);
            pipeEnds.push_back(ends[0]);
        }
        return size;
    };
    expectUnsaved("Unable to write file " + path + ": Invalid argument");
    for (int end : pipeEnds) close(end);
    pipeEnds.clear();
}

TEST_F(DocumentFiles, AWaveListOfSeveralNamesIsWrittenOver) {
    openOld();
    edit();
    fs::create_hard_link("doc.kel", "other.kel");
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(contents("doc.wdl") + "row Q\n", edited);
    EXPECT_EQ(contents("other.kel"), "Wave Q\n");
    EXPECT_EQ(contents("doc.kel"), "Wave Q\n");
}

// As its file's name is too long for one with a suffix.
TEST_F(DocumentFiles, AWaveListBesideWhichNoFileCanBeMadeIsWrittenOver) {
    openOld();
    edit();
    std::string name(253, 'n');
    fs::rename("doc.kel", name);
    fs::create_symlink(name, "doc.kel");
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_EQ(contents("doc.wdl") + "row Q\n", edited);
    EXPECT_EQ(contents(name.c_str()), "Wave Q\n");
    EXPECT_TRUE(fs::is_symlink("doc.kel"));
}

TEST_F(DocumentFiles, ASaveOfWhichNobodyCanBeToldIsDone) {
    openOld();
    edit();
    std::vector<ServiceString> strings;
    while (ServiceString string = MRStrCreate("taken")) strings.push_back(string);
    EXPECT_EQ(SaveDocument(false), 1);
    for (ServiceString string : strings) MRStrDestroy(string);
    EXPECT_EQ(broadcasts, Texts{});
    EXPECT_EQ(contents("doc.wdl") + "row Q\n", edited);
}

// Kills the save before each of its system calls.
class KilledSave : public DocumentFiles, public testing::WithParamInterface<const char *> {
protected:
    void setUpFiles() {
        for (const auto &entry : fs::directory_iterator(scratch.path)) fs::remove_all(entry.path());
        fs::create_directory("far");
        scratch.write("doc.wdl", OLD_TEXT);
        scratch.write("doc.kel", "Wave CLK\n");
        std::string how = GetParam();
        if (how == "HardLink") fs::create_hard_link("doc.wdl", "far/doc.wdl");
        if (how == "Link") {
            fs::rename("doc.wdl", "far/doc.wdl");
            fs::create_symlink("far/doc.wdl", "doc.wdl");
        }
    }
    TracedRun save(unsigned call) {
        return RunTraced(
            [this] {
                if (!open()) _exit(1);
                edit();
                MarkTracedCalls();
                int saved = SaveDocument(false);
                MarkTracedCalls();
                LogCloseFile();
                _exit(saved ? 0 : 2);
            },
            {.directory = "", .number = call});
    }
};

TEST_P(KilledSave, LeavesTheOldOrTheNewDocumentWithALogThatFits) {
    if (!CanTraceCalls()) GTEST_SKIP() << "no process can be traced here";
    openOld();
    edit();
    LogDeleteFile();
    forget();
    setUpFiles();
    TracedRun whole = save(0);
    ASSERT_EQ(whole.status, 0);
    ASSERT_GT(whole.calls, 20U);
    unsigned old = 0, fresh = 0;
    for (unsigned call = 1; call <= whole.calls; call++) {
        SCOPED_TRACE("killed before call " + std::to_string(call));
        setUpFiles();
        TracedRun run = save(call);
        // The memory that a process takes is now and then a call more or less.
        ASSERT_EQ(run.status, run.killed ? -SIGKILL : 0);
        // Neither is ever half a file for others, but where it has other names.
        bool inOneStep = std::string(GetParam()) != "HardLink";
        if (inOneStep) {
            EXPECT_TRUE(contents("doc.wdl") == OLD_TEXT || contents("doc.wdl") + "row Q\n" == edited);
        }
        // With a log beside it a document has not yet the log's edits.
        if (!contents("doc._KL").empty()) {
            EXPECT_EQ(contents("doc.wdl"), OLD_TEXT);
        }
        ASSERT_EQ(open(), 1);
        std::string text = DocumentText();
        old += text == flushed;
        fresh += text == edited;
        EXPECT_TRUE(text == flushed || text == edited) << text;
        EXPECT_TRUE(Headless.userErrors.empty());
        EXPECT_EQ(files(), (std::set<std::string>{"doc.wdl", "doc.kel", "doc._KL", "far"}));
        LogDeleteFile();
        forget();
    }
    EXPECT_GT(old, 5U);
    EXPECT_GT(fresh, 5U);
}

INSTANTIATE_TEST_SUITE_P(Places, KilledSave, testing::Values("Plain", "Link", "HardLink"),
                         [](const auto &info) { return std::string(info.param); });

// --- a disk that does not give back what lies on it ---------------------------------------------------

class UnreadableDisk : public DocumentFiles {
protected:
    // What the load says when the disk fails at a read of that number; empty when it has loaded. The texts go
    // through the child's exit status.
    TracedRun load(unsigned read, Texts messages) {
        return RunTraced(
            [&] {
                MarkTracedCalls();
                int loaded = open();
                MarkTracedCalls();
                _exit(loaded ? 0 : Headless.userErrors == messages ? 1 : 2);
            },
            {.directory = "", .call = Call::Read, .number = read, .error = EIO});
    }
};

TEST_F(UnreadableDisk, ADocumentOrAWaveListThatStopsIsToldAndNotOpened) {
    if (!CanTraceCalls()) GTEST_SKIP() << "no process can be traced here";
    // More than a block of each.
    std::string text = OLD_TEXT, list = "Wave CLK\n";
    while (text.size() < 150000) text += "        \n";
    while (list.size() < 150000) list += "\n";
    scratch.write("doc.wdl", text);
    scratch.write("doc.kel", list);
    TracedRun whole = load(0, {});
    ASSERT_EQ(whole.status, 0);
    ASSERT_GE(whole.calls, 8U);
    auto before = files();
    std::string documentMessage = "Unable to read file " + path + ": Input/output error";
    std::string listMessage = "Unable to read file " + scratch.file("doc.kel") + ": Input/output error";
    unsigned documents = 0, lists = 0;
    for (unsigned read = 1; read <= whole.calls; read++) {
        bool ofDocument = load(read, {documentMessage}).status == 1;
        bool ofList = load(read, {listMessage}).status == 1;
        EXPECT_TRUE(ofDocument != ofList) << read;
        documents += ofDocument;
        lists += ofList;
        EXPECT_EQ(files(), before) << "no listing of errors";
    }
    EXPECT_GE(documents, 4U);
    EXPECT_EQ(lists, 4U);
    EXPECT_EQ(contents("doc.wdl"), text);
}

} // namespace
