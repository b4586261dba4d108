// The documents in examples/.
#include "run_cli.h"
#include "unit/support/fresh_store.h"
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> ExampleNames() {
    std::vector<std::string> names;
    for (auto &entry : fs::directory_iterator(KELVANE_SOURCE_DIR "/examples")) {
        if (entry.path().extension() == ".wdl") names.push_back(entry.path().stem());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Examples : public testing::TestWithParam<std::string> {
protected:
    // The command on the example, with the simulator's file that stands beside it.
    std::vector<std::string> on(const std::string &command) {
        std::vector<std::string> arguments = {command, Example(GetParam() + ".wdl")};
        std::string ini = Example(GetParam() + ".ini");
        if (fs::exists(ini)) arguments.insert(arguments.end(), {"--simulator", ini});
        return arguments;
    }
    std::string text() { return ReadWholeFile(Example(GetParam() + ".wdl")); }
};

TEST_P(Examples, AreWrittenInTheEditorsForm) {
    CliRun run = RunCli(on("format"));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, text());
}

TEST_P(Examples, LoadWithoutTheirSimulatorToo) {
    CliRun run = RunCli({"check", Example(GetParam() + ".wdl")});
    EXPECT_EQ(run.status, 0);
    // Their own state tables are unknown then, and nothing else.
    std::istringstream lines(run.err);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_NE(line.find(": warning: unknown property word"), line.npos) << line;
    }
}

TEST_P(Examples, HaveAWaveListWhoseEveryNameIsShown) {
    nlohmann::json dump = nlohmann::json::parse(RunCli(on("dump")).out);
    std::istringstream list(ReadWholeFile(Example(GetParam() + ".kel")));
    std::vector<std::string> names;
    for (std::string line; std::getline(list, line);) names.push_back(line.substr(5));
    EXPECT_FALSE(names.empty());
    EXPECT_EQ(dump["rows"].get<std::vector<std::string>>(), names);
}

TEST_P(Examples, EndWithTheirNodes) {
    nlohmann::json dump = nlohmann::json::parse(RunCli(on("dump")).out);
    uint32_t end = dump["settings"]["EndTime"];
    for (auto &pattern : dump["patterns"]) {
        uint32_t full = pattern["fullDuration"];
        bool endsByItself = pattern["hasProperties"] == 1 && full != 4294967295u;
        EXPECT_TRUE(!endsByItself || full <= end) << pattern["name"];
    }
    EXPECT_EQ(dump["settings"]["SpanEnd"], end + end / 4);
}

TEST_P(Examples, StandInTheReadme) {
    EXPECT_NE(ReadWholeFile(Example("README.md")).find("`" + GetParam() + ".wdl`"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(All, Examples, testing::ValuesIn(ExampleNames()),
                         [](const auto &info) { return info.param; });

TEST(ExampleFiles, AreAtLeastEight) {
    EXPECT_GE(ExampleNames().size(), 8u);
}

TEST(ExampleFiles, AreTransmittedByTheUartBitByBit) {
    std::string sent;
    for (int byte = 0; byte < 4; ++byte) {
        char value = 0;
        for (int bit = 0; bit < 8; ++bit) {
            int middle = 1736 + byte * 9548 + (bit + 1) * 868 + 434;
            CliRun run = RunCli({"value", Example("uart.wdl"), "TXD", std::to_string(middle)});
            if (run.out == "1\n") value = static_cast<char>(value | 1 << bit);
        }
        sent += value;
    }
    EXPECT_EQ(sent, "KELV");
}

TEST(ExampleFiles, ExpandTheirFormats) {
    auto valuesOf = [](const std::string &name) {
        std::string values;
        for (int t : {90, 110, 210, 230}) {
            values += RunCli({"value", Example("formats.wdl"), name, std::to_string(t), "--sync"}).out[0];
        }
        return values;
    };
    // The two halves of a clock period with 1 and of one with 0.
    EXPECT_EQ(valuesOf("D.NRZ"), "1100");
    EXPECT_EQ(valuesOf("D.RZ"), "1000");
    EXPECT_EQ(valuesOf("D.R1"), "1101");
    EXPECT_EQ(valuesOf("D.RC"), "1001");
}

} // namespace
