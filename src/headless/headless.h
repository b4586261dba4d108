// The second implementation of what windows do: it opens none, answers questions as a script told it to, and
// records what it was asked. For the command-line tool and the native tests.
#pragma once

#include "display/panes.h"
#include <deque>
#include <map>
#include <string>
#include <vector>

struct HeadlessAlert {
    std::vector<std::string> lines;
    std::vector<std::string> buttons;
    std::string caption;
    int icon;
};

// What a file dialog was asked with.
struct HeadlessFileQuestion {
    std::string title, label, ext, directory;
    std::string path; // the start value
};

struct HeadlessState {
    // What was shown.
    std::vector<std::string> userErrors;
    std::vector<std::string> programErrors;
    std::vector<std::string> captions; // of the message boxes of both kinds
    std::vector<HeadlessAlert> alerts;
    std::vector<std::string> strips;  // texts of the error strip as shown; "" for a removal
    std::string strip;                // the text that it shows now
    bool stripWasBusy = false;        // ErrorStripBusy when the strip was last shown or removed
    std::vector<std::string> prompts; // PromptText at each paint of the line
    int promptLayouts = 0;            // how often the line was put at its place before
    std::vector<std::string> titles;
    std::vector<uint32_t> postedCommands;
    std::vector<std::pair<uint32_t, bool>> enabledCommands; // calls of EnableCommand
    std::map<uint32_t, bool> checkedCommands;               // the marks in the menu
    std::vector<std::string> startedProcesses;
    std::vector<HeadlessFileQuestion> fileQuestions;
    int frameInvalidations = 0;
    int waitCursors = 0;
    int windowsReleased = 0;
    int frameCloses = 0;
    int framesToFront = 0;
    std::string heldFile;                  // full path of the file that this program holds
    std::vector<std::string> holdersShown; // full paths of files whose holders were brought to the front

    // What is answered. With none left an alert answers 1, a file dialog is cancelled.
    std::deque<int> alertAnswers;
    std::deque<std::string> fileAnswers;    // "" cancels
    std::vector<std::string> heldElsewhere; // full paths of the files that other programs hold

    // The screen and the panels.
    int32_t screenWidth = 1024, screenHeight = 768;
    double screenMagnification = 1.0;
    int32_t paneWidth[4] = {0, 1000, 100, 1000};
    int32_t paneHeight[4] = {0, 34, 600, 600};
    bool panesExist = false;
    int32_t fontHeight = 0;        // of a line, in pixels; 0 for the height of the font that is drawn
    std::vector<Pane> invalidated; // calls of InvalidatePane
    std::vector<Pane> updated;     // calls of UpdatePane
    struct Bar {
        int32_t maximum = 0, position = 0;
    } bars[4][2];
    PixelRect clip[4] = {};

    // Prints messages to standard error as they come, as the command-line tool does it.
    bool printMessages = false;
};
// Written by everything in this folder and, for what is answered, by its users.
extern HeadlessState Headless;
// Puts the start values in place. From then on StartProcess records instead of starting a program.
void InitHeadless();
// Empties the lists of what was shown and asked, which a long session would fill.
void ForgetHeadlessRecord();
