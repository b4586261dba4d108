// Loaded in front of a program's own libraries: fails one of its allocations. FAIL_ALLOCATION says which,
// from 1; COUNT_ALLOCATIONS names a file for their number, written at the program's end. What counts, from
// `main` on, is what the program and the C++ library ask for with `new`, and what the program itself asks for
// with `realloc`.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <new>

namespace {

unsigned long allocations, failing;
bool inMain;
int (*programMain)(int, char **, char **);
const char *countFile;
ElfW(Addr) programStart, programEnd;

// Of the first part, which is the program.
int FindProgram(dl_phdr_info *info, size_t, void *) {
    programStart = info->dlpi_addr;
    for (int i = 0; i < info->dlpi_phnum; i++) {
        const auto &part = info->dlpi_phdr[i];
        if (part.p_type == PT_LOAD) programEnd = info->dlpi_addr + part.p_vaddr + part.p_memsz;
    }
    return 1;
}

[[gnu::constructor]] void Begin() {
    dl_iterate_phdr(FindProgram, nullptr);
    const char *number = getenv("FAIL_ALLOCATION");
    failing = number ? strtoul(number, nullptr, 10) : 0;
    countFile = getenv("COUNT_ALLOCATIONS");
}

[[gnu::destructor]] void End() {
    FILE *file = countFile ? fopen(countFile, "w") : nullptr;
    if (!file) return;
    fprintf(file, "%lu", allocations);
    fclose(file);
}

bool Fails() {
    return inMain && ++allocations == failing;
}

int CountedMain(int count, char **arguments, char **environment) {
    inMain = true;
    int status = programMain(count, arguments, environment);
    inMain = false;
    return status;
}

void *Allocate(size_t size) {
    return Fails() ? nullptr : malloc(size ? size : 1);
}

} // namespace

void *operator new(size_t size) {
    void *memory = Allocate(size);
    if (!memory) throw std::bad_alloc();
    return memory;
}

void *operator new[](size_t size) {
    return operator new(size);
}

void *operator new(size_t size, const std::nothrow_t &) noexcept {
    return Allocate(size);
}

void *operator new[](size_t size, const std::nothrow_t &) noexcept {
    return Allocate(size);
}

using MainRoutine = int (*)(int, char **, char **);
extern "C" int __libc_start_main(MainRoutine main, int count, char **arguments, void (*init)(),
                                 void (*fini)(), void (*loaderFini)(), void *stackEnd) {
    using Routine = int (*)(MainRoutine, int, char **, void (*)(), void (*)(), void (*)(), void *);
    auto next = reinterpret_cast<Routine>(dlsym(RTLD_NEXT, "__libc_start_main"));
    programMain = main;
    return next(CountedMain, count, arguments, init, fini, loaderFini, stackEnd);
}

extern "C" void *realloc(void *memory, size_t size) noexcept {
    using Routine = void *(*)(void *, size_t);
    static Routine next = reinterpret_cast<Routine>(dlsym(RTLD_NEXT, "realloc"));
    auto caller = reinterpret_cast<ElfW(Addr)>(__builtin_return_address(0));
    if (caller >= programStart && caller < programEnd && Fails()) {
        errno = ENOMEM;
        return nullptr;
    }
    return next(memory, size);
}
