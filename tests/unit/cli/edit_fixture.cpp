#include "edit_fixture.h"

#include <algorithm>

const std::string DOCUMENT = "%AUTOASSIGN = 0;\n%ENDTIME = 300;\n$p = 0 5 1 5;\nw = 0 100 1 100 0 50;\n"
                             "v = 1 20 $p #3 0 10;\nB[3:0] = 5 10 a 20 (1 5 2 5)*2#3;\nc = $p + $p;\n";
const std::string ROWS = "Wave w\nWave v\nWave B[3:0]\nWave $p\nWave c\n";
const std::string AS_IT_WAS = "0 100 1 100 0 50";

namespace {

// Each script begins with these lines.
const std::string PREAMBLE = "scale 4\nleft 0\n";

auto LinesOf(const std::string &text) {
    return std::count(text.begin(), text.end(), '\n');
}

} // namespace

void Edit::open(const std::string &text, const std::string &rows) {
    path = directory.write("a.wdl", text);
    directory.write("a.kel", rows);
}

CliRun Edit::play(const std::string &script) {
    return RunCli({"edit", path, directory.write("script", PREAMBLE + script), "-o", out});
}

std::string Edit::printed(const std::string &script) {
    CliRun run = play(script);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "") << script;
    return run.out;
}

std::string Edit::items(const std::string &name) const {
    std::string text = ReadWholeFile(out), found;
    size_t at = text.find("\n" + name + " ");
    if (at == std::string::npos) return "none";
    at = text.find("= ", at) + 2;
    for (char c : text.substr(at, text.find(';', at) - at)) {
        if (c == '\n') c = ' ';
        if (c != ' ' || (!found.empty() && found.back() != ' ')) found += c;
    }
    while (found.ends_with(' ')) found.pop_back();
    return found;
}

std::string Edit::itemsAfter(const std::string &script, const std::string &name) {
    EXPECT_EQ(printed(script), "");
    return items(name);
}

void Edit::notEnabled(const std::string &before, const std::vector<std::string> &lines) {
    const std::string look = "status\nprompt\n";
    std::string status = printed(before + look);
    std::string expected = ReadWholeFile(out);
    std::string script = before, errors;
    auto number = 1 + LinesOf(PREAMBLE + before);
    for (const std::string &line : lines) {
        script += line + "\n";
        errors += std::to_string(number++) + ": not enabled\n";
    }
    CliRun run = play(script + look);
    EXPECT_EQ(run.err, errors) << script;
    EXPECT_EQ(run.out, status) << script;
    EXPECT_EQ(run.status, 0) << script;
    EXPECT_EQ(ReadWholeFile(out), expected) << script;
}
