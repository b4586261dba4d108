// A file that is written whole or not at all.
//
// The new bytes go to a file of their own beside the old one, and take its place in one step when they are on
// the disk. Where no file can be made there, or the old one has other names or an owner that a new file would
// not have, they go into the old file itself, of which a copy is kept meanwhile and brought back if that
// fails.
#pragma once

#include "platform/files.h"
#include <string>
#include <string_view>

class FileReplacement {
public:
    // Begins the new bytes of the file at `path`, or of what a link there leads to. The file beside it has
    // the old one's name with `suffix` behind it, which is then nobody else's; without one a name that is
    // free.
    explicit FileReplacement(const char *path, const char *suffix = nullptr);
    FileReplacement(const FileReplacement &) = delete;
    FileReplacement &operator=(const FileReplacement &) = delete;
    // Takes away what has not come to its place.
    ~FileReplacement();

    // False if there can be no new bytes. What is no file, like a pipe, gets them at once.
    bool isOpen() const { return file != NO_FILE; }
    FileHandle handle() const { return file; }
    // True if the new bytes lie beside the old file.
    bool isBeside() const { return beside; }
    // Writes all of them; false if not.
    bool write(std::string_view bytes);
    // Ends the writing; true when everything lies on the disk.
    bool finish();
    // Puts the new file in the old one's place, after `finish`. One attempt; the new bytes stay where they
    // are if it fails.
    bool commit();
    // Leaves the new bytes where they are when this ends.
    void keep() { temporary.clear(); }
    // Why the last step failed.
    const std::string &failure() const { return why; }

private:
    bool openBeside(const char *suffix, bool exists);
    bool openElsewhere();
    bool fail();
    std::string target, temporary, why;
    FileHandle file = NO_FILE;
    bool beside = false;   // the new file lies beside the old one
    bool writeOver = true; // it does not take the place of the old one, which gets its bytes
    bool direct = false;   // there is no new file
    bool placed = false;
};

// Puts the bytes of the file `from`, which goes, in the place of `to`, in one step if that can be. False with
// a reason, with `from` and the old bytes of `to` as they were; where even those could not be brought back,
// the reason says where they are kept.
bool PutInPlace(const char *from, const char *to, std::string &why);
