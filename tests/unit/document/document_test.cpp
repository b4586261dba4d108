#include "document/document.h"

#include "config/paths.h"
#include "config/settings.h"
#include "display/overlay.h"
#include "display/rows.h"
#include "display/ruler_cursor.h"
#include "display/viewport.h"
#include "editlog/edit_log.h"
#include "headless/headless.h"
#include "integration/suite/message_service.h"
#include "shell/file_names.h"
#include "shell/reporting.h"
#include "store/mutators.h"
#include "store/pattern_store.h"
#include "store/queries.h"
#include "unit/support/fresh_store.h"
#include <filesystem>

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const char *const SIMPLE = "%ENDTIME = 400;\nCLK { A In Default None 0 1 50 } = 1 50 0 50;\n";

// A document is open, as after the start of the program, in a directory of its own.
class Document : public FreshStore {
protected:
    void SetUp() override {
        FreshStore::SetUp();
        PatternStoreFree();
        former = fs::current_path();
        fs::current_path(directory.path);
        snprintf(SettingsIniPath, MAX_PATH_SIZE, "%s", directory.file("Kelvane.ini").c_str());
    }
    void TearDown() override {
        fs::current_path(former);
        FreshStore::TearDown();
    }

    int load(const std::string &path) {
        snprintf(DocumentPath, MAX_PATH_SIZE, "%s", path.c_str());
        return LoadDocument(DocumentPath);
    }
    int open(const std::string &path) {
        int loaded = load(path);
        DisplayOpen = 1;
        return loaded;
    }
    int open() { return open(directory.write("doc.wdl", SIMPLE)); }
    void modify() { EditLog.rPtr = 12; }

    ScratchDirectory directory;
    fs::path former;
};

TEST_F(Document, ANameWithoutAFileIsAnEmptyDocumentOfThatName) {
    EXPECT_EQ(load(directory.file("none.wdl")), 1);
    EXPECT_EQ(HighestPatternId, 0);
    EXPECT_TRUE(Headless.userErrors.empty());
    EXPECT_TRUE(Headless.alerts.empty());
    EXPECT_FALSE(fs::exists("none.wdl")) << "no file is made before the first save";
    EXPECT_EQ(std::string(DocumentPath), directory.file("none.wdl"));
}

TEST_F(Document, TheExtensionIsForced) {
    directory.write("doc.wdl", SIMPLE);
    EXPECT_EQ(load(directory.file("doc.txt")), 1);
    EXPECT_NE(FindPattern("CLK"), nullptr);
    EXPECT_EQ(std::string(DocumentPath), directory.file("doc.kel"));
}

TEST_F(Document, LoadingStartsFromTheDefaultsAndTheDirectivesOverwriteThem) {
    Settings.DefEndTime = 777;
    Settings.DefClockMultiplier = 3;
    Settings.DefBasicUnit = 9;
    Settings.DefDecimals = 2;
    Settings.DefAutoClockAssign = false;
    Settings.EndTime = 5;
    EXPECT_EQ(load(""), 1);
    EXPECT_EQ(Settings.EndTime, 777u);
    EXPECT_EQ(Settings.ClockMultiplier, 3u);
    EXPECT_EQ(Settings.BasicUnit, 9);
    EXPECT_EQ(Settings.Decimals, 2);
    EXPECT_FALSE(Settings.AutoClockAssign);
    PatternStoreFree();
    EXPECT_EQ(load(directory.write("doc.wdl", SIMPLE)), 1);
    EXPECT_EQ(Settings.EndTime, 400u);
    EXPECT_EQ(Settings.BasicUnit, 9);
}

TEST_F(Document, TheSpanReachesAQuarterBeyondTheEnd) {
    EXPECT_EQ(load(directory.write("doc.wdl", SIMPLE)), 1);
    EXPECT_EQ(WaveView.SpanEnd, 500u);
    EXPECT_EQ(FullSpanEnd, 500u);
    ExtendSpan(80);
    EXPECT_EQ(WaveView.SpanEnd, 500u) << "it only grows";
    ExtendSpan(TIME_FOREVER);
    EXPECT_EQ(WaveView.SpanEnd, TIME_FOREVER);
}

TEST_F(Document, ALongPatternExtendsTheSpan) {
    EXPECT_EQ(load(directory.write("doc.wdl", "%ENDTIME=10;\nA { Default } = 1 1000;\n")), 1);
    EXPECT_EQ(WaveView.SpanEnd, 1250u);
}

TEST_F(Document, TheWaveListBesideTheFileGivesTheRows) {
    directory.write("doc.wdl", std::string(SIMPLE) + "B { Default } = 0 5;\n");
    directory.write("doc.kel", "Wave B\nWave CLK\n");
    EXPECT_EQ(load(directory.file("doc.wdl")), 1);
    ASSERT_EQ(WaveView.RowCount, 2u);
    EXPECT_STREQ(PatternFromId(WaveRows[0].PatternId)->name(), "B");
}

TEST_F(Document, NothingIsRecordedWhileADocumentIsRead) {
    EXPECT_EQ(open(), 1);
    EXPECT_EQ(EditLog.Recording, 1);
    EXPECT_EQ(IsDocumentModified(), 0);
}

TEST_F(Document, AReadOnlyFileIsRefused) {
    std::string path = directory.write("doc.wdl", SIMPLE);
    fs::permissions(path, fs::perms::owner_read);
    EXPECT_EQ(load(path), 0);
    ASSERT_EQ(Headless.alerts.size(), 1u);
    EXPECT_EQ(Headless.alerts[0].lines[0], "File " + path + " is Read Only");
    EXPECT_EQ(Headless.alerts[0].lines[1], "Change permissions and restart the program");
    EXPECT_EQ(Headless.alerts[0].buttons[0], "OK");
    EXPECT_EQ(Headless.alerts[0].icon, static_cast<int>(AlertIcon::Warning));
}

TEST_F(Document, ADirectoryIsRefusedAndLeftAlone) {
    fs::create_directory("dir.wdl");
    EXPECT_EQ(load(directory.file("dir.wdl")), 0);
    EXPECT_EQ(Headless.userErrors, Texts{"Unable to open file " + directory.file("dir.wdl")});
    EXPECT_TRUE(fs::is_directory("dir.wdl"));
}

TEST_F(Document, WhatTheDiskDoesNotGiveIsToldAndNothingIsOpened) {
    // The document, its wave list, and the simulator's file with the state tables.
    snprintf(SimulatorIniPath, MAX_PATH_SIZE, "%s", directory.file("sim.ini").c_str());
    for (const char *name : {"doc.wdl", "doc.kel", "sim.ini"}) {
        directory.write("doc.wdl", SIMPLE);
        directory.write("doc.kel", "Wave CLK\n");
        directory.write("sim.ini", "");
        fs::remove(name);
        fs::create_symlink("/proc/self/mem", name); // of which the first page cannot be read
        Headless.userErrors.clear();
        EXPECT_EQ(load(directory.file("doc.wdl")), 0);
        EXPECT_EQ(Headless.userErrors,
                  Texts{"Unable to read file " + directory.file(name) + ": Input/output error"});
        EXPECT_EQ(EditLog.Recording, 1);
        EXPECT_FALSE(fs::exists("doc.err")) << "it is no fault of the text";
        PatternStoreFree();
        fs::remove(name);
    }
}

TEST_F(Document, AnEmptyFileIsAnEmptyDocument) {
    EXPECT_EQ(load(directory.write("doc.wdl", "")), 1);
    EXPECT_EQ(HighestPatternId, 0);
    EXPECT_TRUE(Headless.userErrors.empty());
}

TEST_F(Document, ASyntaxErrorFailsTheLoadAndLeavesAListing) {
    std::string text = "A { Default } = 1 5;\nB { Default } = zoo ;\n";
    std::string path = directory.write("doc.wdl", text);
    EXPECT_EQ(load(path), 0);
    EXPECT_EQ(Headless.userErrors, Texts{"Compilation errors in file doc.wdl"});
    EXPECT_EQ(ReadWholeFile("doc.err"),
              "Line   2 SyntaxError - Illegal use of name\nB { Default } = zoo ;\n\n                   ^\n");
    EXPECT_EQ(Headless.startedProcesses, Texts{"notepad.exe doc.err"});
    EXPECT_FALSE(PatternInUse(1)) << "nothing of the document stays";
    EXPECT_EQ(EditLog.Recording, 1);
    EXPECT_EQ(ReadWholeFile(path), text);
}

TEST_F(Document, ALoadWithoutMemorySaysSo) {
    ResizeBlock = [](void *, size_t) -> void * { return nullptr; };
    EXPECT_EQ(load(""), 0);
    ASSERT_FALSE(Headless.programErrors.empty());
    EXPECT_EQ(Headless.programErrors.back(), "Failed to allocate memory for waveform editing");
    ResizeBlock = realloc;
}

TEST_F(Document, ReloadingForgetsTheOldDocument) {
    open();
    WaveView.SelectActive = WaveView.MarkActive = true;
    WaveView.SelectRow = WaveView.SelectRowLast = 0;
    WaveView.RowCount = 3;
    WaveView.TopRow = WaveView.TopPixel = 2;
    WaveView.SpanEnd = 999999;
    modify();
    directory.write("other.wdl", "%ENDTIME=40;\nX { Default } = 1 4;\n");
    directory.write("other.kel", "");
    snprintf(DocumentPath, MAX_PATH_SIZE, "%s", directory.file("other.wdl").c_str());
    EXPECT_EQ(ReloadDocument(), 1);
    EXPECT_FALSE(WaveView.SelectActive);
    EXPECT_FALSE(WaveView.MarkActive);
    EXPECT_EQ(WaveView.SelectRow, NO_ROW);
    EXPECT_EQ(WaveView.SelectRowLast, NO_ROW);
    EXPECT_EQ(WaveView.RowCount, 0u);
    EXPECT_EQ(WaveView.TopRow, 0u);
    EXPECT_EQ(WaveView.SpanEnd, 50u);
    EXPECT_EQ(IsDocumentModified(), 0);
    EXPECT_EQ(FindPattern("CLK"), nullptr);
    EXPECT_EQ(DisplayOpen, 1);
    using Call = std::pair<uint32_t, bool>;
    EXPECT_EQ(Headless.enabledCommands, (std::vector<Call>{{106, false}, {114, false}}));
    EXPECT_EQ(WaveView.CursorTime, 0u);
}

TEST_F(Document, ReloadingTakesOffWhatLiesOverThePanels) {
    open();
    Headless.panesExist = true;
    DrawOverlay(true);
    DrawRulerCursor(true);
    EXPECT_EQ(ReloadDocument(), 1);
    EXPECT_FALSE(Overlay.overlayOn);
    EXPECT_FALSE(RulerCursor.on);
}

TEST_F(Document, AFailedReloadEndsTheProgram) {
    open();
    directory.write("bad.wdl", "A = ;\nB");
    snprintf(DocumentPath, MAX_PATH_SIZE, "%s", directory.file("bad.wdl").c_str());
    EXPECT_EQ(ReloadDocument(), 0);
    EXPECT_EQ(Headless.windowsReleased, 1);
    EXPECT_EQ(PatternHeap, nullptr);
    EXPECT_TRUE(fs::exists("Kelvane.ini")) << "the preferences are written on the way out";
}

TEST_F(Document, OpeningAsksForAFile) {
    open();
    directory.write("picked.wdl", "%ENDTIME=40;\nX { Default } = 1 4;\n");
    Headless.fileAnswers = {directory.file("Picked.WDL")};
    fs::rename("picked.wdl", "picked.tmp");
    fs::rename("picked.tmp", "picked.wdl");
    EXPECT_EQ(OpenDocument("", false), 1);
    EXPECT_NE(FindPattern("X"), nullptr) << "the base name is lowered";
    EXPECT_EQ(Headless.titles.back(), "Kelvane - PICKED");
    EXPECT_EQ(fs::current_path(), fs::canonical(directory.path));
}

TEST_F(Document, CancellingTheDialogLeavesEverythingAsItWas) {
    open();
    EXPECT_EQ(OpenDocument("", false), 1);
    EXPECT_NE(FindPattern("CLK"), nullptr);
    EXPECT_TRUE(Headless.titles.empty());
}

TEST_F(Document, NewMakesAnUntitledEmptyDocument) {
    open();
    EXPECT_EQ(OpenDocument("", true), 1);
    EXPECT_STREQ(DocumentPath, "");
    EXPECT_EQ(HighestPatternId, 0);
    EXPECT_EQ(Headless.titles.back(), "Kelvane - <untitled>");
}

TEST_F(Document, NewBehindAPathMakesAnUntitledDocumentToo) {
    open();
    EXPECT_EQ(OpenDocument(directory.write("other.wdl", SIMPLE).c_str(), true), 1);
    EXPECT_STREQ(DocumentPath, "");
    EXPECT_EQ(HighestPatternId, 0);
    EXPECT_EQ(Headless.titles, (Texts{"Kelvane - OTHER", "Kelvane - <untitled>"}));
}

TEST_F(Document, ANameFromTheDialogWhoseFullPathIsTooLongStaysAsItIs) {
    std::string name = std::string(MAX_PATH_SIZE - 10, 'N') + ".wdl";
    Headless.fileAnswers = {name};
    char buffer[MAX_PATH_SIZE] = "";
    EXPECT_EQ(BrowseForOpen(buffer, sizeof buffer), 1);
    LowerCase(name.data());
    EXPECT_EQ(buffer, name);
}

TEST_F(Document, CancelInTheQuestionLeavesEverythingAndReportsSuccess) {
    open();
    modify();
    Headless.alertAnswers = {3};
    EXPECT_EQ(OpenDocument(directory.file("other.wdl").c_str(), false), 1);
    EXPECT_NE(FindPattern("CLK"), nullptr);
    EXPECT_EQ(IsDocumentModified(), 1);
}

TEST_F(Document, ABadFileThroughOpenEndsTheProgram) {
    open();
    directory.write("bad.wdl", "A = ;\nB");
    OpenDocument(directory.file("bad.wdl").c_str(), false);
    EXPECT_EQ(Headless.windowsReleased, 1);
    EXPECT_EQ(Headless.userErrors, Texts{"Compilation errors in file bad.wdl"});
    EXPECT_STREQ(DocumentPath, "");
}

TEST_F(Document, SavingWritesBothFilesAndEmptiesTheLog) {
    open();
    ShowWaveByName("CLK");
    modify();
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_NE(ReadWholeFile("doc.wdl").find("CLK { A In Default None 0 1 50 } = 1 50 0 50;\n"),
              std::string::npos);
    EXPECT_EQ(ReadWholeFile("doc.kel"), "Wave CLK\n");
    EXPECT_EQ(IsDocumentModified(), 0);
    EXPECT_EQ(Headless.strips.back(), "File successfully saved");
    EXPECT_EQ(Headless.titles.back(), "Kelvane - DOC");
}

TEST_F(Document, AMissingFileIsMadeByThePlainSave) {
    open(directory.file("fresh.wdl"));
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_TRUE(fs::exists("fresh.wdl"));
    EXPECT_TRUE(fs::exists("fresh.kel"));
}

TEST_F(Document, AnUntitledDocumentIsSavedThroughTheDialog) {
    open("");
    EXPECT_EQ(SaveDocument(false), 0) << "the dialog was cancelled";
    Headless.fileAnswers = {directory.file("Named.wdl")};
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_TRUE(fs::exists("named.wdl")) << "the base name is lowered";
    EXPECT_EQ(std::string(DocumentPath), directory.file("named.kel"));
}

TEST_F(Document, SaveAsAsksEvenWhenThereIsAName) {
    open();
    Headless.fileAnswers = {directory.file("second.wdl")};
    EXPECT_EQ(SaveDocument(true), 1);
    EXPECT_TRUE(fs::exists("second.wdl"));
    EXPECT_TRUE(Headless.alerts.empty());
}

TEST_F(Document, AFileThatBecameReadOnlyAsksForANameFromThenOn) {
    open();
    fs::permissions("doc.wdl", fs::perms::owner_read);
    Headless.fileAnswers = {directory.file("second.wdl"), directory.file("third.wdl")};
    EXPECT_EQ(SaveDocument(false), 1);
    ASSERT_EQ(Headless.alerts.size(), 1u);
    EXPECT_EQ(Headless.alerts[0].lines[0], "This file is read only:");
    EXPECT_EQ(Headless.alerts[0].lines[1], "doc.wdl");
    EXPECT_TRUE(fs::exists("second.wdl"));
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_TRUE(fs::exists("third.wdl"));
    EXPECT_EQ(Headless.alerts.size(), 2u);
}

TEST_F(Document, ForcedNamesShowTheAlertOnEverySave) {
    open();
    ForceSaveAs = 1;
    Headless.fileAnswers = {directory.file("second.wdl")};
    EXPECT_EQ(SaveDocument(false), 1);
    EXPECT_EQ(SaveDocument(false), 0);
    ASSERT_EQ(Headless.alerts.size(), 2u);
    EXPECT_EQ(Headless.alerts[0].lines, (Texts{"This file is read only:", "doc.wdl"}));
    EXPECT_EQ(Headless.alerts[1].lines, (Texts{"This file is read only:", "second.wdl"}));
    EXPECT_EQ(Headless.alerts[0].buttons, Texts{"OK"});
    EXPECT_EQ(ForceSaveAs, 1);
}

TEST_F(Document, ACleanDocumentIsNotAskedAbout) {
    open();
    EXPECT_EQ(QuerySaveChanges(true), 1);
    EXPECT_TRUE(Headless.alerts.empty());
}

TEST_F(Document, TheQuestionNamesTheDocument) {
    open();
    modify();
    Headless.alertAnswers = {2, 2, 2};
    EXPECT_EQ(QuerySaveChanges(true), 1);
    QuerySaveChanges(false);
    EXPECT_EQ(Headless.alerts[0].lines,
              (Texts{"Data has been modified:", "doc.wdl", "Do you wish to save changes ?"}));
    EXPECT_EQ(Headless.alerts[0].buttons, (Texts{"YES", "NO", "Cancel"}));
    EXPECT_EQ(Headless.alerts[0].icon, static_cast<int>(AlertIcon::Warning));
    EXPECT_EQ(Headless.alerts[1].buttons, (Texts{"YES", "NO"}));
    DocumentPath[0] = '\0';
    QuerySaveChanges(true);
    EXPECT_EQ(Headless.alerts[2].lines[1], "(Untitled)");
}

TEST_F(Document, YesSavesNoLosesAndCancelStays) {
    open();
    std::string before = ReadWholeFile("doc.wdl");
    modify();
    Headless.alertAnswers = {2, 3, 0, 1};
    EXPECT_EQ(QuerySaveChanges(true), 1);
    EXPECT_EQ(QuerySaveChanges(true), 0);
    EXPECT_EQ(QuerySaveChanges(true), 0) << "Esc is no consent";
    EXPECT_EQ(ReadWholeFile("doc.wdl"), before);
    EXPECT_EQ(QuerySaveChanges(true), 1);
    EXPECT_NE(ReadWholeFile("doc.wdl"), before);
}

TEST_F(Document, YesFollowedByCancelInTheDialogIsANo) {
    open("");
    modify();
    Headless.alertAnswers = {1};
    EXPECT_EQ(QuerySaveChanges(true), 0);
}

TEST_F(Document, TheTitleNamesSimulatorAndDocument) {
    SetMainTitle("DOC");
    snprintf(SimulatorName, sizeof SimulatorName, "%s", "spark");
    SetMainTitle("");
    SetMainTitle(std::string(60, 'x').c_str());
    EXPECT_EQ(Headless.titles, (Texts{"Kelvane - DOC", "Kelvane - spark - <untitled>",
                                      "Kelvane - spark - " + std::string(40, 'x')}));
}

std::vector<std::string> broadcasts;

TEST_F(Document, ARequestOpensANamedFile) {
    open();
    std::string path = directory.write("asked.wdl", "%ENDTIME=40;\nX { Default } = 1 4;\n");
    ServiceString string = MRStrCreate(path.c_str());
    EXPECT_EQ(OnFileRequest(1, string), 1);
    EXPECT_NE(FindPattern("X"), nullptr);
    MRStrDestroy(string);
    EXPECT_EQ(OnFileRequest(1, 0), 1);
    EXPECT_EQ(OnFileRequest(2, 0), 0);
    EXPECT_EQ(OnFileRequest(1, 64), 1) << "there is no such string";
    EXPECT_NE(FindPattern("X"), nullptr);
}

TEST_F(Document, ARequestMakesANamedFileAndTellsTheOthers) {
    open();
    broadcasts.clear();
    BroadcastListener = [](uint32_t messageClass, uint32_t detail, uint32_t data) {
        char text[260];
        MRStrGetCopy(data, text, sizeof text);
        broadcasts.push_back(std::to_string(messageClass) + " " + std::to_string(detail) + " " + text);
    };
    Headless.fileAnswers = {directory.file("made.wdl")};
    EXPECT_EQ(OnFileRequest(0, 0), 1);
    BroadcastListener = nullptr;
    EXPECT_TRUE(fs::exists("made.wdl"));
    std::string path = directory.file("made.wdl");
    EXPECT_EQ(broadcasts, (Texts{"7 2 " + path, "7 3 " + path}));
}

TEST_F(Document, ARequestThatFailsTellsTheOthersNothing) {
    broadcasts.clear();
    BroadcastListener = [](uint32_t, uint32_t detail, uint32_t) {
        broadcasts.push_back(std::to_string(detail));
    };
    // A file that is there and cannot be read, and one that cannot be made.
    Headless.fileAnswers = {directory.write("bad.wdl", "A = ;\nB"), directory.file("none/made.wdl")};
    for (const char *error : {"Compilation errors in file bad.wdl", "No such file or directory"}) {
        open();
        Headless.userErrors.clear();
        EXPECT_EQ(OnFileRequest(0, 0), 1);
        ASSERT_FALSE(Headless.userErrors.empty());
        EXPECT_TRUE(Headless.userErrors.back().ends_with(error)) << Headless.userErrors.back();
    }
    BroadcastListener = nullptr;
    EXPECT_EQ(broadcasts, Texts{});
    EXPECT_TRUE(Headless.fileAnswers.empty());
}

TEST_F(Document, ARefusedRequestMakesNoFile) {
    open();
    EXPECT_EQ(OnFileRequest(0, 0), 1);
    EXPECT_NE(FindPattern("CLK"), nullptr);
    modify();
    Headless.alertAnswers = {3};
    OnFileRequest(0, 0);
    EXPECT_NE(FindPattern("CLK"), nullptr);
}

} // namespace
