// A log with a file of its own, and a replay that notes what it is given.
#pragma once

#include "editlog/aux_log.h"
#include "editlog/edit_log.h"
#include "unit/support/fresh_store.h"

// A record as the replay got it.
struct Replayed {
    std::string text; // of the payload, up to its first NUL
    int direction;
    int mode;
    bool operator==(const Replayed &) const = default;
};

class LogFixture : public FreshStore {
protected:
    void SetUp() override;
    void TearDown() override;

    // Records a payload: the text with a NUL behind it, in `size` bytes (by default what the text takes).
    static void record(const std::string &text, uint32_t size = 0);
    // The same, and ends the action.
    static void action(const std::string &text, uint32_t size = 0);
    // The log's file as it is now.
    std::string file() const { return ReadWholeFile(path); }
    // Replaces the file and makes it the whole log, with the position at its end or at its start.
    void installFile(const std::string &bytes, bool atEnd);
    // The texts replayed since the last call, each with "-" in front for a replay backward.
    static std::vector<std::string> replayed();

    ScratchDirectory scratch;
    std::string path = scratch.file("document._KL");
};

// What the replay noted, and the text that it refuses.
extern std::vector<Replayed> Notes;
extern std::string RefusedText;

// An entry of the file for a payload of this text with a NUL behind it.
std::string Entry(const std::string &text);
std::string Word(uint32_t word);
