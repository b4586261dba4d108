#include "shell/document_hold.h"

#include "platform/files.h"
#include "shell/file_names.h"
#include "shell/frame_win.h"
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

// What the named object tells the others.
struct Holder {
    uint64_t frame;   // the main window, by its handle
    uint64_t process; // by its id; 0 until it is told
};

struct Hold {
    std::string name;
    HANDLE object;
};
std::vector<Hold> holds;

// --- the names of a file --------------------------------------------------------------------------

HANDLE OpenToLookAt(const char *path) {
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return CreateFileA(path, FILE_READ_ATTRIBUTES, all, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                       nullptr);
}

// The path without links, short names and drives that stand for other places; empty if there is none.
std::string FinalPath(HANDLE file) {
    char path[4 * MAX_PATH_SIZE];
    DWORD length = GetFinalPathNameByHandleA(file, path, sizeof path, FILE_NAME_NORMALIZED);
    return length > 0 && length < sizeof path ? path : "";
}

// Where a file that is not there yet will be.
std::string FuturePath(const char *path) {
    char directory[MAX_PATH_SIZE], full[MAX_PATH_SIZE];
    HANDLE folder = DirectoryOf(path, directory) ? OpenToLookAt(directory) : INVALID_HANDLE_VALUE;
    std::string place;
    if (folder != INVALID_HANDLE_VALUE) {
        place = FinalPath(folder);
        CloseHandle(folder);
    }
    if (!place.empty()) return place + "\\" + FileNamePart(path);
    return FullPath(path, full) ? full : path;
}

// As the names of objects are short, and have no backslash.
std::string NameOfPath(std::string path) {
    LowerCase(path.data());
    // FNV-1a, in 64 bits.
    uint64_t hash = 0xCBF29CE484222325;
    for (char c : path) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    char name[64];
    snprintf(name, sizeof name, "Local\\KelvaneDocument-%016llX", static_cast<unsigned long long>(hash));
    return name;
}

// The same for every name that the file has on its volume, hard links too.
std::string NameOfFile(const BY_HANDLE_FILE_INFORMATION &file) {
    char name[64];
    snprintf(name, sizeof name, "Local\\KelvaneFile-%08lX-%08lX%08lX", file.dwVolumeSerialNumber,
             file.nFileIndexHigh, file.nFileIndexLow);
    return name;
}

// The path's comes first, so that of two programs that start at once one gets both.
std::vector<std::string> NamesOf(const char *path) {
    if (!*path) return {};
    HANDLE file = OpenToLookAt(path);
    if (file == INVALID_HANDLE_VALUE) return {NameOfPath(FuturePath(path))};
    std::string place = FinalPath(file);
    std::vector<std::string> names = {NameOfPath(place.empty() ? FuturePath(path) : place)};
    BY_HANDLE_FILE_INFORMATION information = {};
    if (GetFileInformationByHandle(file, &information)) names.push_back(NameOfFile(information));
    CloseHandle(file);
    return names;
}

// --- the objects ----------------------------------------------------------------------------------

bool IsHeld(const std::string &name) {
    return std::any_of(holds.begin(), holds.end(), [&](const Hold &hold) { return hold.name == name; });
}

void TellHolder(HANDLE object) {
    auto *holder = static_cast<Holder *>(MapViewOfFile(object, FILE_MAP_WRITE, 0, 0, sizeof(Holder)));
    if (!holder) return;
    holder->frame = reinterpret_cast<uintptr_t>(FrameWindow);
    holder->process = GetCurrentProcessId();
    UnmapViewOfFile(holder);
}

Holder ReadHolder(HANDLE object) {
    Holder holder = {};
    if (auto *told = static_cast<const Holder *>(MapViewOfFile(object, FILE_MAP_READ, 0, 0, sizeof holder))) {
        holder = *told;
        UnmapViewOfFile(told);
    }
    return holder;
}

// False once the program has ended. Its objects may outlive it by a moment.
bool IsRunning(const Holder &holder) {
    if (holder.process == 0) return true;
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(holder.process));
    if (!process) return GetLastError() == ERROR_ACCESS_DENIED;
    bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return running;
}

// False if another program has the object. One that cannot be made for any other reason stops nobody.
bool AddHold(const std::string &name) {
    constexpr int TRIES = 100;
    constexpr DWORD MOMENT = 20; // milliseconds
    for (int i = 0; i < TRIES; i++) {
        HANDLE object = CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Holder),
                                           name.c_str());
        DWORD failure = GetLastError();
        if (!object) return failure != ERROR_ACCESS_DENIED;
        if (failure != ERROR_ALREADY_EXISTS) {
            TellHolder(object);
            holds.push_back({name, object});
            return true;
        }
        bool held = IsRunning(ReadHolder(object));
        CloseHandle(object);
        if (held) return false;
        Sleep(MOMENT);
    }
    return true;
}

// Lets go of all that are not among the names.
void KeepOnly(const std::vector<std::string> &names) {
    std::erase_if(holds, [&](const Hold &hold) {
        bool keep = std::find(names.begin(), names.end(), hold.name) != names.end();
        if (!keep) CloseHandle(hold.object);
        return !keep;
    });
}

HWND HolderOf(const std::string &name) {
    HANDLE object = OpenFileMappingA(FILE_MAP_READ, FALSE, name.c_str());
    if (!object) return nullptr;
    Holder holder = ReadHolder(object);
    CloseHandle(object);
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(holder.frame));
}

} // namespace

bool HoldFile(const char *path) {
    std::vector<std::string> before, names = NamesOf(path);
    for (const Hold &hold : holds) before.push_back(hold.name);
    for (const std::string &name : names) {
        if (IsHeld(name) || AddHold(name)) continue;
        KeepOnly(before);
        return false;
    }
    KeepOnly(names);
    return true;
}

void ShowHolderOf(const char *path) {
    for (const std::string &name : NamesOf(path)) {
        HWND frame = HolderOf(name);
        if (!frame || !IsWindow(frame)) continue;
        // Not by a message that waits, as the other program may be busy.
        if (IsIconic(frame)) ShowWindowAsync(frame, SW_RESTORE);
        SetForegroundWindow(GetLastActivePopup(frame));
        return;
    }
}
