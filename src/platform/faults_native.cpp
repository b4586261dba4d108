#include "platform/faults.h"
#include <array>
#include <csignal>

namespace {

void (*lastAct)();
constexpr std::array<int, 5> FAULTS = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
// What was in force before, of each.
std::array<struct sigaction, FAULTS.size()> former;
bool installed;
// The act's own, as the stack may be what has run out.
alignas(16) std::array<char, 65536> actStack;

void GiveBack() {
    for (size_t i = 0; i < FAULTS.size(); i++) sigaction(FAULTS[i], &former[i], nullptr);
    installed = false;
}

// Behind it the fault comes again, and finds what was in force before.
void AtFault(int) {
    auto *act = lastAct;
    lastAct = nullptr;
    GiveBack();
    if (act) act();
}

void Install() {
    stack_t stack = {};
    stack.ss_sp = actStack.data();
    stack.ss_size = actStack.size();
    sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_handler = AtFault;
    action.sa_flags = SA_ONSTACK;
    for (size_t i = 0; i < FAULTS.size(); i++) sigaction(FAULTS[i], &action, &former[i]);
    installed = true;
}

} // namespace

void CallOnFault(void (*act)()) {
    lastAct = act;
    if (act && !installed) Install();
    if (!act && installed) GiveBack();
}
