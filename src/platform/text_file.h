// Buffered text files over the raw ones of the platform.
#pragma once

#include "platform/files.h"
#include <memory>
#include <string>
#include <string_view>

class TextReader {
public:
    // Opens `path`; isOpen tells if that worked.
    explicit TextReader(const char *path);
    // Reads from memory, which must outlive the reader.
    explicit TextReader(std::string_view text);
    TextReader(const TextReader &) = delete;
    TextReader &operator=(const TextReader &) = delete;
    ~TextReader();

    bool isOpen() const { return open; }
    // Reads up to `size` - 1 characters, through the first line feed, and ends them with a NUL. A carriage
    // return in front of a line feed is dropped. Returns the number of characters, at least 1, or -1 at the
    // end of the file.
    int readLine(char *buffer, int size);
    // True once a file that is there and may be read has not opened, or has stopped being readable before its
    // end, which readLine tells like the end; and why.
    bool failed() const { return !why.empty(); }
    const std::string &failure() const { return why; }

private:
    bool fill();
    FileHandle file = NO_FILE;
    bool open = false;
    std::string why;
    std::unique_ptr<char[]> block;
    const char *next = nullptr;
    const char *end = nullptr;
};

class TextWriter {
public:
    // Makes or empties `path`; isOpen tells if that worked. Line feeds become the platform's line ends.
    explicit TextWriter(const char *path);
    // Writes to an open file, which stays open.
    explicit TextWriter(FileHandle file);
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;
    ~TextWriter();

    bool isOpen() const { return file != NO_FILE; }
    void write(std::string_view text);
    // Writes what is buffered and closes what it has opened; true if every byte has been written, false also
    // where nothing is open.
    bool close();
    // Why a byte could not be written; empty if none was lost.
    const std::string &failure() const { return why; }

private:
    void append(std::string_view bytes);
    void flush();
    FileHandle file = NO_FILE;
    bool owned = true;
    std::string why;
    size_t used = 0;
    std::unique_ptr<char[]> block;
};

// True if there is no such file, or it can be read to its end; else the reason to `why`.
bool ReadsToItsEnd(const char *path, std::string &why);
