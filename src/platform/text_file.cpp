#include "platform/text_file.h"
#include <cstring>

namespace {
constexpr size_t BLOCK_SIZE = 65536;

// Why a file did not open that should have; empty for one that is not there or not to be read.
std::string WhyClosed(const char *path) {
    std::string why = FileFailure();
    return CanAccessFile(path, FileAccess::Read) && !IsDirectory(path) ? why : "";
}

} // namespace

TextReader::TextReader(const char *path) : file(OpenForReading(path)) {
    open = file != NO_FILE;
    if (!open) why = WhyClosed(path);
    if (open) block = std::make_unique<char[]>(BLOCK_SIZE);
}

TextReader::TextReader(std::string_view text)
    : open(true), next(text.data()), end(text.data() + text.size()) {}

TextReader::~TextReader() {
    if (file != NO_FILE) CloseFile(file);
}

bool TextReader::fill() {
    if (file == NO_FILE) return false;
    int64_t count = ReadBytes(file, block.get(), BLOCK_SIZE);
    if (count < 0) why = FileFailure();
    if (count <= 0) return false;
    next = block.get();
    end = next + count;
    return true;
}

int TextReader::readLine(char *buffer, int size) {
    if (size < 2) return -1;
    int used = 0;
    while (next != end || (!failed() && fill())) {
        int room = size - 1 - used;
        if (room == 0) {
            // The buffer is full behind a carriage return: with its line feed it counts as one character.
            if (*next == '\n') {
                buffer[used - 1] = '\n';
                ++next;
            }
            break;
        }
        size_t chunk = end - next < room ? static_cast<size_t>(end - next) : static_cast<size_t>(room);
        const auto *lineFeed = static_cast<const char *>(memchr(next, '\n', chunk));
        if (lineFeed) chunk = static_cast<size_t>(lineFeed + 1 - next);
        memcpy(buffer + used, next, chunk);
        used += static_cast<int>(chunk);
        next += chunk;
        if (lineFeed) {
            if (used >= 2 && buffer[used - 2] == '\r') buffer[--used - 1] = '\n';
            break;
        }
        if (used == size - 1 && buffer[used - 1] != '\r') break;
    }
    buffer[used] = '\0';
    return used > 0 ? used : -1;
}

TextWriter::TextWriter(const char *path) : file(OpenForWriting(path)) {
    if (file != NO_FILE) block = std::make_unique<char[]>(BLOCK_SIZE);
}

TextWriter::TextWriter(FileHandle file)
    : file(file), owned(false), block(std::make_unique<char[]>(BLOCK_SIZE)) {}

TextWriter::~TextWriter() {
    close();
}

void TextWriter::flush() {
    size_t done = 0;
    while (done < used && why.empty()) {
        int64_t count = WriteBytes(file, block.get() + done, used - done);
        if (count <= 0)
            why = FileFailure();
        else
            done += static_cast<size_t>(count);
    }
    used = 0;
}

void TextWriter::append(std::string_view bytes) {
    while (!bytes.empty()) {
        if (used == BLOCK_SIZE) flush();
        size_t count = bytes.size() < BLOCK_SIZE - used ? bytes.size() : BLOCK_SIZE - used;
        memcpy(block.get() + used, bytes.data(), count);
        used += count;
        bytes.remove_prefix(count);
    }
}

void TextWriter::write(std::string_view text) {
    if (file == NO_FILE) return;
    const std::string_view lineEnd = TextLineEnd;
    if (lineEnd == "\n") {
        append(text);
        return;
    }
    for (size_t lineFeed; (lineFeed = text.find('\n')) != text.npos; text.remove_prefix(lineFeed + 1)) {
        append(text.substr(0, lineFeed));
        append(lineEnd);
    }
    append(text);
}

bool TextWriter::close() {
    if (file == NO_FILE) return false;
    flush();
    if (owned) CloseFile(file);
    file = NO_FILE;
    return why.empty();
}

bool ReadsToItsEnd(const char *path, std::string &why) {
    FileHandle file = OpenForReading(path);
    if (file == NO_FILE) {
        why = WhyClosed(path);
        return why.empty();
    }
    auto block = std::make_unique<char[]>(BLOCK_SIZE);
    int64_t count;
    while ((count = ReadBytes(file, block.get(), BLOCK_SIZE)) > 0) {}
    if (count < 0) why = FileFailure();
    CloseFile(file);
    return count == 0;
}
