#include "unit/editlog/log_fixture.h"

#include <cstring>
#include <fstream>

std::vector<Replayed> Notes;
std::string RefusedText;

namespace {

int Note(std::span<const uint8_t> payload, int direction, int32_t, int32_t, int mode) {
    EXPECT_EQ(EditLog.Recording, mode == 0 ? 0 : 1);
    std::string text(payload.begin(), payload.end());
    text = text.substr(0, text.find('\0'));
    if (text == RefusedText) return 0;
    Notes.push_back({text, direction, mode});
    return 1;
}

int (*installedHook)(std::span<const uint8_t>, int, int32_t, int32_t, int);

} // namespace

void LogFixture::SetUp() {
    FreshStore::SetUp();
    installedHook = ExecuteLogHook;
    ExecuteLogHook = Note;
    Notes.clear();
    RefusedText = "\x01";
    InitEditLog();
    strcpy(EditLog.LogSuffix, LOG_SUFFIX);
    scratch.write("document._KL", "");
    snprintf(EditLog.LogFileName, sizeof EditLog.LogFileName, "%s", path.c_str());
}

void LogFixture::TearDown() {
    LogDeleteFile();
    InitEditLog();
    ExecuteLogHook = installedHook;
    FreshStore::TearDown();
}

void LogFixture::record(const std::string &text, uint32_t size) {
    if (size == 0) size = static_cast<uint32_t>(text.size() + 1);
    uint8_t *payload = LogAppend(size);
    ASSERT_NE(payload, nullptr);
    memset(payload, 0, (size + 3) & ~3U);
    memcpy(payload, text.data(), std::min<size_t>(text.size(), size));
}

void LogFixture::action(const std::string &text, uint32_t size) {
    record(text, size);
    LogEndAction();
}

void LogFixture::installFile(const std::string &bytes, bool atEnd) {
    LogCloseFile();
    std::ofstream(path, std::ios::binary) << bytes;
    EditLog.Dirty = 0;
    EditLog.Held = 0;
    EditLog.rBase = 0;
    EditLog.rEofPtr = static_cast<int32_t>(bytes.size());
    EditLog.rPtr = atEnd ? EditLog.rEofPtr : 0;
}

std::vector<std::string> LogFixture::replayed() {
    std::vector<std::string> texts;
    for (const Replayed &note : Notes) texts.push_back((note.direction ? "-" : "") + note.text);
    Notes.clear();
    return texts;
}

std::string Word(uint32_t word) {
    std::string bytes;
    for (int i = 0; i < 4; i++) bytes += static_cast<char>(word >> (8 * i));
    return bytes;
}

std::string Entry(const std::string &text) {
    std::string padded = text + '\0';
    auto length = static_cast<uint32_t>((padded.size() + 11) & ~size_t{3});
    padded.resize(length - 8);
    return Word(length) + padded + Word(length);
}
