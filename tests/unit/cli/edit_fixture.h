// A document with a script of edits that the built kelvane-cli plays on it.
#pragma once

#include "run_cli.h"
#include "unit/support/fresh_store.h"
#include <gtest/gtest.h>
#include <string>
#include <vector>

// "$p" in v and c, a clock, a bus with a repetition, and a composite.
extern const std::string DOCUMENT;
// Its wave list: a row for each of its patterns.
extern const std::string ROWS;

class Edit : public testing::Test {
protected:
    void SetUp() override { open(DOCUMENT, ROWS); }
    // Writes the document and its wave list.
    void open(const std::string &text, const std::string &rows);
    // Plays the script at a scale where every unit of time can be pointed at.
    CliRun play(const std::string &script);
    // What such a script prints, where nothing goes wrong.
    std::string printed(const std::string &script);
    // The items of a statement in the file that was written.
    std::string items(const std::string &name) const;
    // The same behind a script that prints nothing.
    std::string itemsAfter(const std::string &script, const std::string &name = "w");
    // None of the lines is enabled behind `before`, and they change nothing: what was done before is all.
    void notEnabled(const std::string &before, const std::vector<std::string> &lines);
    void notEnabled(const std::string &before, const char *line) {
        notEnabled(before, std::vector<std::string>{line});
    }

    ScratchDirectory directory;
    std::string path;
    std::string out = directory.file("out.wdl");
};

// The items of w in DOCUMENT.
extern const std::string AS_IT_WAS;
