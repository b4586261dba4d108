#include "unit/support/traced_child.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <initializer_list>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A call that nothing else makes.
constexpr long MARKER = SYS_personality;
constexpr unsigned long MARKER_ARGUMENT = 0xFFFFFFFF;

bool IsOneOf(long number, std::initializer_list<long> numbers) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

bool IsOfKind(long number, Call call) {
    switch (call) {
    case Call::Any:
        return true;
    case Call::Open:
        return IsOneOf(number, {SYS_open, SYS_openat, SYS_creat});
    case Call::Read:
        return IsOneOf(number, {SYS_read, SYS_pread64, SYS_readv});
    case Call::Write:
        return IsOneOf(number, {SYS_write, SYS_pwrite64, SYS_writev});
    case Call::Flush:
        return IsOneOf(number, {SYS_fsync, SYS_fdatasync});
    case Call::Rename:
        return IsOneOf(number, {SYS_rename, SYS_renameat, SYS_renameat2});
    case Call::Seek:
        return number == SYS_lseek;
    case Call::Remove:
        return IsOneOf(number, {SYS_unlink, SYS_unlinkat});
    case Call::Truncate:
        return number == SYS_ftruncate;
    }
    return false;
}

std::string TextAt(pid_t child, unsigned long address) {
    char text[512];
    iovec local = {text, sizeof text};
    // A string near the end of a page: as much as there is.
    unsigned long toPageEnd = 4096 - address % 4096;
    iovec remote = {reinterpret_cast<void *>(address), std::min<size_t>(sizeof text, toPageEnd)};
    ssize_t count = process_vm_readv(child, &local, 1, &remote, 1, 0);
    if (count <= 0) return "";
    std::string all(text, static_cast<size_t>(count));
    return all.substr(0, all.find('\0'));
}

// Through a pipe of their own the sanitizers find out what memory may be read.
bool IsPipe(pid_t child, unsigned long file) {
    char target[64];
    std::string name = "/proc/" + std::to_string(child) + "/fd/" + std::to_string(file);
    ssize_t length = readlink(name.c_str(), target, sizeof target);
    return length > 0 && std::string(target, static_cast<size_t>(length)).starts_with("pipe:");
}

class Tracer {
public:
    Tracer(pid_t child, const TracedFault &fault) : child(child), fault(fault) {}

    TracedRun run() {
        int status = 0;
        waitpid(child, &status, 0);
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        int signal = 0;
        while (true) {
            ptrace(PTRACE_SYSCALL, child, nullptr, signal);
            if (waitpid(child, &status, 0) != child) break;
            signal = 0;
            if (WIFEXITED(status) || WIFSIGNALED(status)) break;
            int stop = WSTOPSIG(status);
            if (stop == (SIGTRAP | 0x80)) {
                atCall();
            } else if (stop != SIGTRAP) {
                signal = stop;
            }
        }
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        return result;
    }

private:
    void atCall() {
        user_regs_struct registers;
        ptrace(PTRACE_GETREGS, child, nullptr, &registers);
        entering = !entering;
        if (entering) {
            atEntry(registers);
        } else if (failing) {
            failing = false;
            registers.rax = static_cast<unsigned long long>(-static_cast<long long>(fault.error));
            ptrace(PTRACE_SETREGS, child, nullptr, &registers);
        }
    }

    void atEntry(user_regs_struct &registers) {
        long number = static_cast<long>(registers.orig_rax);
        if (number == MARKER && registers.rdi == MARKER_ARGUMENT) {
            counting = !counting;
            return;
        }
        if (!counting && !fault.directory.empty()) {
            unsigned long name = number == SYS_openat ? registers.rsi : registers.rdi;
            counting = IsOfKind(number, Call::Open) && TextAt(child, name).starts_with(fault.directory);
        }
        if (!counting || !IsOfKind(number, fault.call)) return;
        bool moves = fault.call == Call::Read || fault.call == Call::Write;
        if (moves && IsPipe(child, registers.rdi)) return;
        result.calls++;
        bool here = fault.number != 0 &&
                    (result.calls == fault.number || (fault.goesOn && result.calls > fault.number));
        if (!here) return;
        if (fault.error == 0) {
            result.killed = true;
            kill(child, SIGKILL);
            return;
        }
        failing = true;
        registers.orig_rax = static_cast<unsigned long long>(-1);
        ptrace(PTRACE_SETREGS, child, nullptr, &registers);
    }

    pid_t child;
    const TracedFault &fault;
    TracedRun result;
    bool entering = false, counting = false, failing = false;
};

} // namespace

bool CanTraceCalls() {
    static const bool can = [] {
        pid_t child = fork();
        if (child == 0) {
            if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
            raise(SIGSTOP);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, WUNTRACED);
        if (!WIFSTOPPED(status)) return false;
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        return true;
    }();
    return can;
}

TracedRun RunTraced(const std::function<void()> &body, const TracedFault &fault) {
    pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        body();
        _exit(0);
    }
    return Tracer(child, fault).run();
}

void MarkTracedCalls() {
    syscall(MARKER, MARKER_ARGUMENT);
}

void PrepareTracedProgram() {
    const char *options = getenv("ASAN_OPTIONS");
    setenv("ASAN_OPTIONS", (std::string(options ? options : "") + ":detect_leaks=0").c_str(), 1);
}
