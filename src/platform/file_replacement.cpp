#include "platform/file_replacement.h"

#include <utility>

namespace {

// On the stack, so that nothing can fail between two steps for want of memory.
constexpr size_t BLOCK_SIZE = 16384;

bool WriteAll(FileHandle file, std::string_view bytes) {
    while (!bytes.empty()) {
        int64_t count = WriteBytes(file, bytes.data(), bytes.size());
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

// Makes the bytes of the open file `to` those of `from`. What lies there already is written over before the
// length is changed, which needs the least of a disk that is full.
bool CopyBytes(FileHandle from, FileHandle to) {
    char block[BLOCK_SIZE];
    int64_t count, length = 0;
    while ((count = ReadBytes(from, block, BLOCK_SIZE)) > 0) {
        if (!WriteAll(to, {block, static_cast<size_t>(count)})) return false;
        length += count;
    }
    return count == 0 && SetFileLength(to, length) && FlushFile(to);
}

// The same for a file at `to`, which is there, or is made now. False with a reason.
bool CopyFile(const char *from, const char *to, std::string &why) {
    FileHandle source = OpenForReading(from);
    if (source == NO_FILE) {
        why = FileFailure();
        return false;
    }
    bool exists = CanAccessFile(to, FileAccess::Exists);
    FileHandle target = exists ? OpenForUpdate(to) : CreateNewFile(to, false);
    bool good = target != NO_FILE && CopyBytes(source, target);
    if (!good) why = FileFailure();
    if (target != NO_FILE) CloseFile(target);
    CloseFile(source);
    if (!good && !exists && target != NO_FILE) RemoveFile(to);
    return good;
}

// Writes into the old file, of which a copy is kept aside meanwhile.
bool CopyOver(const char *from, const char *to, std::string &why) {
    if (!CanAccessFile(to, FileAccess::Exists)) return CopyFile(from, to, why);
    char kept[MAX_PATH_SIZE];
    if (!MakeTemporaryFile("old", kept)) {
        why = FileFailure();
        return false;
    }
    std::string ignored;
    bool good = CopyFile(to, kept, why);
    if (good && !CopyFile(from, to, why)) {
        good = false;
        if (!CopyFile(kept, to, ignored)) {
            why += std::string("; what it held is kept in ") + kept;
            return false;
        }
    }
    RemoveFile(kept);
    return good;
}

} // namespace

bool PutInPlace(const char *from, const char *to, std::string &why) {
    if (ReplaceFileWith(from, to)) return true;
    if (!CopyOver(from, to, why)) return false;
    RemoveFile(from);
    return true;
}

FileReplacement::FileReplacement(const char *path, const char *suffix) : target(FollowLinks(path)) {
    if (target.empty()) {
        fail();
    } else if (IsDevice(target.c_str()) || IsDirectory(target.c_str())) {
        direct = true;
        file = OpenForWriting(target.c_str());
        if (file == NO_FILE) fail();
    } else {
        bool exists = CanAccessFile(target.c_str(), FileAccess::Exists);
        bool writable = !exists || CanAccessFile(target.c_str(), FileAccess::Write);
        if (!writable || !(openBeside(suffix, exists) || openElsewhere())) fail();
    }
}

FileReplacement::~FileReplacement() {
    if (file != NO_FILE) CloseFile(file);
    if (!temporary.empty() && !placed) RemoveFile(temporary.c_str());
}

bool FileReplacement::fail() {
    why = FileFailure();
    return false;
}

bool FileReplacement::openBeside(const char *suffix, bool exists) {
    std::string name = target;
    if (suffix) {
        // One that a program has left which was killed.
        RemoveFile((name += suffix).c_str());
        file = CreateNewFile(name.c_str(), exists);
    } else {
        for (int n = 1; file == NO_FILE; n++) {
            name = target + "." + std::to_string(n) + ".tmp";
            file = CreateNewFile(name.c_str(), exists);
            if (file == NO_FILE && !CanAccessFile(name.c_str(), FileAccess::Exists)) break;
        }
    }
    beside = file != NO_FILE;
    if (beside) temporary = std::move(name);
    return beside;
}

bool FileReplacement::openElsewhere() {
    char name[MAX_PATH_SIZE];
    temporary.reserve(MAX_PATH_SIZE);
    if (!MakeTemporaryFile("new", name)) return false;
    temporary = name;
    file = OpenForWriting(name);
    return file != NO_FILE;
}

bool FileReplacement::write(std::string_view bytes) {
    return WriteAll(file, bytes) || fail();
}

bool FileReplacement::finish() {
    if (beside) {
        bool exists = CanAccessFile(target.c_str(), FileAccess::Exists);
        writeOver = exists && !AdoptTraits(file, target.c_str());
    }
    bool good = direct || FlushFile(file) || fail();
    CloseFile(file);
    file = NO_FILE;
    return good;
}

bool FileReplacement::commit() {
    placed = direct || (!writeOver && ReplaceFileWith(temporary.c_str(), target.c_str()));
    if (placed) return true;
    placed = CopyOver(temporary.c_str(), target.c_str(), why);
    if (placed) RemoveFile(temporary.c_str());
    return placed;
}
